// The main window on Qt's offscreen platform: layout, menu, keys through the
// window system, and scripts that save maps compared byte for byte.
#include <cstdlib>
#include <memory>
#include <sstream>

#include <QAction>
#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenuBar>
#include <QPushButton>
#include <QScrollBar>
#include <gtest/gtest.h>

#include "document/mapfile.h"
#include "editing/editing.h"
#include "editing/fileflow.h"
#include "editing/mapload.h"
#include "editing/startup.h"
#include "gui/Form1.h"
#include "gui/guitest.h"
#include "gui/qtui.h"
#include "gui/script.h"
#include "testutil.h"

using namespace kv;
using kv::gui::Form1;

namespace {

QApplication& App() { return kvtest::GuiApp(); }

kvtest::MiniApp MiniSetup() {
  kvtest::MiniApp a;
  a.types = {0, 1, 1, 3, 1, 5, 14, 1, 8, 6};
  a.roads = {{}, {1, 0, 0, 1, 0, 0}};
  return a;
}

struct Window {
  kvtest::TempDir app, maps;
  std::unique_ptr<Form1> f;
  explicit Window(int w = 1920, int h = 1080) {
    App();
    gui::Script().active = true;
    gui::Script().answers.clear();
    kvtest::MakeMiniApp(app.path(), MiniSetup());
    f = std::make_unique<Form1>(app.path());
    f->SetScreenSize(w, h);
    EXPECT_TRUE(f->Form_Load());
  }
  template <class T>
  T* Child(const char* name) {
    return f->findChild<T*>(QString::fromLatin1(name));
  }
  // Runs a script; returns its exit status and leaves its output in `out`.
  int Run(const std::string& script, std::string* out = nullptr) { return kvtest::RunScriptText(*f, script, out); }
};

}  // namespace

TEST(Form1Layout, FiguresForAFullHdScreen) {
  Window w;
  const ViewState& v = w.f->session().view;
  // Client 1912 x 1030: width 1912 - (90 + 17) cut to 40 columns + 15, then + 5;
  // height 1030 - (17 + 25 + 50) cut to 18 rows, then + 4.
  auto* p1 = w.Child<QWidget>("Picture1");
  EXPECT_EQ(p1->geometry(), QRect(45, 25, 1820, 904));
  EXPECT_EQ(v.ViewCols, 39);
  EXPECT_EQ(v.ViewRows, 17);
  EXPECT_EQ(w.Child<QScrollBar>("HScroll1")->geometry(), QRect(45, 929, 1820, 17));
  EXPECT_EQ(w.Child<QScrollBar>("VScroll1")->geometry(), QRect(1865, 25, 17, 904));
  EXPECT_EQ(w.Child<QWidget>("Picture2")->geometry(), QRect(40, 946, 364, 54));
  EXPECT_EQ(w.Child<QWidget>("Command1")->geometry(), QRect(65, 0, 57, 25));
  EXPECT_EQ(w.Child<QWidget>("Command2")->x(), 65 + 57 + 65 + 81 + 129);
  EXPECT_EQ(w.Child<QWidget>("Label1")->geometry().topLeft(), QPoint(404, 946));
  EXPECT_EQ(w.Child<QWidget>("Text2")->geometry(), QRect(404 + 31 + 40, 946, 121, 19));
  EXPECT_EQ(w.Child<QWidget>("Text3(0)")->x(), 475 + 121 + 57);
  EXPECT_EQ(w.Child<QScrollBar>("HScroll1")->maximum(), 0);  // 33 columns fit the view
  EXPECT_EQ(v.HScroll1.Max, 32 - 39);
  EXPECT_EQ(v.VScroll1.LargeChange, 17);
}

TEST(Form1Layout, ControlsCaptionsAndTips) {
  Window w;
  EXPECT_EQ(w.f->windowTitle(), "Main: editing newmap.map");
  EXPECT_EQ(w.Child<QPushButton>("Command1")->toolTip(), "Fill a 10x10 block with selected tile.");
  EXPECT_EQ(w.Child<QPushButton>("Command6")->text(), "deployment hexes on/off");
  EXPECT_EQ(w.Child<QPushButton>("Command9")->text(), "Set Elev OFF");
  EXPECT_EQ(w.Child<QLineEdit>("Text4")->text(), "0");
  EXPECT_EQ(w.Child<QLineEdit>("Text3(1)")->text(), "Text3");
  EXPECT_TRUE(w.Child<QWidget>("Label1")->font().bold());
}

TEST(Form1Menu, EntriesInOrderWithCaptionsAndStates) {
  Window w;
  QStringList bar;
  for (QAction* a : w.f->menuBar()->actions())
    if (a->isVisible()) bar << a->text();
  EXPECT_EQ(bar,
            (QStringList{"&File", "&Edit", "Tiles", "Hex Sides", "Hex Control", "Options", "Strategic Map", "Help"}));
  QStringList file;
  for (QAction* a : w.f->findChild<QMenu*>("menu_file")->actions()) file << a->objectName();
  // The editor's own "Recent Maps" stands before Exit.
  EXPECT_EQ(file, (QStringList{"menu_file_new", "menu_file_open", "menu_file_save", "menu_file_save_as", "openpgset",
                               "LoadBitmap", "mNewNations", "", "menu_file_exit"}));
  EXPECT_NE(w.f->findChild<QMenu*>("RecentMaps"), nullptr);
  auto act = [&](const char* n) { return w.f->findChild<QAction*>(n); };
  EXPECT_TRUE(act("mUndo")->isEnabled());
  EXPECT_TRUE(act("openpgset")->isEnabled());
  EXPECT_FALSE(act("BuildAITables")->isVisible());
  EXPECT_TRUE(act("HexControlOFF")->isChecked());
  EXPECT_EQ(act("mShowRoadControl")->text(), "Show Road Control = TRUE");
  EXPECT_EQ(act("mHexSides")->text(), "Hex Outlines OFF");
  act("mHexSides")->trigger();
  EXPECT_EQ(act("mHexSides")->text(), "Hex Outlines ON");
  EXPECT_TRUE(act("mHexSides")->isChecked());
}

TEST(Form1Keys, KeysReachTheFormExceptInTheNameBox) {
  Window w;
  Session& s = w.f->session();
  w.f->show();
  auto press = [&](QWidget* target, int key, const QString& text) {
    QKeyEvent down(QEvent::KeyPress, key, Qt::NoModifier, text);
    QApplication::sendEvent(target, &down);
    QKeyEvent up(QEvent::KeyRelease, key, Qt::NoModifier, text);
    QApplication::sendEvent(target, &up);
  };
  press(w.Child<QWidget>("Command1"), Qt::Key_A, "a");
  EXPECT_EQ(s.pens.AutoTile, -1);
  EXPECT_EQ(w.Child<QPushButton>("Command2")->text(), "Auto-Tile On");
  auto* text2 = w.Child<QLineEdit>("Text2");
  w.f->Text2_GotFocus();
  press(text2, Qt::Key_A, "a");
  EXPECT_EQ(s.pens.AutoTile, -1);  // the name box took the key
  w.f->Text2_LostFocus();
  press(w.Child<QWidget>("Picture1"), Qt::Key_A, "a");
  EXPECT_EQ(s.pens.AutoTile, 0);
}

TEST(Form1Script, StatusLineAndScrollStepThroughProperties) {
  Window w(1000, 700);
  std::string out;
  ASSERT_EQ(w.Run("Form1.Picture1_MouseMove 0 0 100 60\n"
                  "print Form1.Text1.Text Form1.HScroll1.Max\n"
                  "Form1.HScroll1.Value = 1\n"
                  "print ViewX\n"
                  "Form1.Form_KeyDown 37 0\n"
                  "print ViewX Form1.HScroll1.Value\n",
                  &out),
            0)
      << out;
  EXPECT_NE(out.find("Form1.Text1.Text=Hex: (2, 0) Terrain 1(1)  LM(0)  Tile # (2) d=2 Elev:0 ContourMap(0)\n"),
            std::string::npos)
      << out;
  EXPECT_NE(out.find("ViewX=1\nViewX=0\nForm1.HScroll1.Value=0\n"), std::string::npos) << out;
}

TEST(Form1Script, ErrorsNameTheLine) {
  Window w;
  std::string out;
  EXPECT_EQ(w.Run("# comment\n\nprint CurTile\nForm1.NoSuchHandler\nprint CurTile\n", &out), 1);
  EXPECT_NE(out.find("line 4: "), std::string::npos) << out;
  EXPECT_EQ(out.find("CurTile=2\nCurTile"), std::string::npos);
  EXPECT_EQ(w.Run("CurTile = x\n", &out), 1);
  EXPECT_EQ(w.Run("Form1.Form_KeyDown 65\n", &out), 1);
  EXPECT_EQ(w.Run("print \"unclosed\n", &out), 1);
}

TEST(Form1Script, PaintedAndSavedMapEqualsTheCoreEditsByteForByte) {
  Window w;
  std::string out;
  const std::string dir = w.maps.path();
  ASSERT_EQ(w.Run("CurTile = 3\n"
                  "clickhex 4 5\n"
                  "clickhex 7 2\n"
                  "Form1.Label2_Click\n"
                  "Form1.Picture2_MouseDown 1 0 70 10\n"
                  "clickhex 7 2\n"
                  "Form1.Text4.Text = -12\n"
                  "Form1.Command9_Click\n"
                  "clickhex 1 1\n"
                  "Form1.Command9_Click\n"
                  "clickhex 2 2 1 1\n"
                  "clickhex 3 4 1 1\n"
                  "Form1.mCopy_Click\n"
                  "clickhex 20 20 2\n"
                  "Form1.mPaste_Click\n"
                  "Form1.menu_file_save_as_Click\n"
                  "LoadSave.Dir1.Path = \"" +
                      dir +
                      "\"\n"
                      "LoadSave.Text1.Text = scripted\n"
                      "LoadSave.Command2_Click\n"
                      "print MapPath DlgFile\n",
                  &out),
            0)
      << out;
  EXPECT_NE(out.find("MapPath=" + dir + "/scripted.map\nDlgFile=scripted\n"), std::string::npos) << out;

  // The same edits straight on a session of the core.
  HeadlessUi ui;
  Session s(w.app.path(), &ui);
  ASSERT_TRUE(StartSession(s));
  Document& d = s.doc;
  d.HexTile(4, 5) = 3;
  d.HexInfo(4, 5, 0) = 3;
  d.HexTile(7, 2) = 3;
  d.HexInfo(7, 2, 0) = 3;
  d.HexInfo(7, 2, 2) = 2;  // side 2, railroad
  d.HexElev(1, 1) = 127 - 12;
  for (int x = 2; x <= 3; ++x)
    for (int y = 2; y <= 4; ++y) d.HexTile(x + 18, y + 18) = d.HexTile(x, y);
  d.MapFile = "scripted";
  d.MapPath = w.maps / "core.map";
  ASSERT_TRUE(SaveMap(s));
  EXPECT_EQ(kvtest::ReadBytes(w.maps / "scripted.map"), kvtest::ReadBytes(w.maps / "core.map"));
  EXPECT_EQ(kvtest::ReadBytes(w.maps / "scripted.lev"), kvtest::ReadBytes(w.maps / "core.lev"));
  EXPECT_EQ(kvtest::ReadBytes(w.app / "copybuff.dat").size(), 4u + 2 * 6);
}

TEST(Form1Menu, AnalysisCommandsWorkOnTheOpenMap) {
  Window w(800, 600);
  Session& s = w.f->session();
  auto act = [&](const char* n) { return w.f->findChild<QAction*>(n); };
  for (const char* n : {"mCountRoad", "mNextUnconnected", "menu_LandMass", "VerifyHexData", "mDefaultHC", "mRoadsOnly"})
    EXPECT_TRUE(act(n)->isEnabled()) << n;

  // An island of mountains and a lone road hex whose ends lead nowhere.
  std::string out;
  ASSERT_EQ(w.Run("CurTile = 3\nclickhex 3 3\nclickhex 3 4\nCurTile = 1\nclickhex 12 8\n", &out), 0) << out;
  s.doc.HexInfo(12, 8, 1) = s.doc.HexInfo(12, 8, 4) = 1;
  for (int x = 0; x <= s.doc.MapMaxX; ++x)  // the rest is sea
    for (int y = 0; y <= s.doc.MapMaxY; ++y)
      if ((x != 3 || (y != 3 && y != 4)) && (x != 12 || y != 8)) s.doc.HexInfo(x, y, 0) = 0;
  ASSERT_EQ(s.view.ViewX, 0);

  act("menu_LandMass")->trigger();
  const int island = s.doc.HexLandMass(3, 3);
  EXPECT_GT(island, 0);
  EXPECT_EQ(s.doc.HexLandMass(3, 4), island);
  EXPECT_NE(s.doc.HexLandMass(0, 0), island);
  EXPECT_NE(s.doc.HexLandMass(12, 8), island);  // across the sea

  // The fault finder cuts the dangling road sides and brings the hex to the
  // middle of the view.
  act("mNextUnconnected")->trigger();
  EXPECT_EQ(s.doc.HexInfo(12, 8, 1), 0);
  EXPECT_EQ(s.view.ViewX, 12 - s.view.ViewCols / 2);
  EXPECT_EQ(w.Child<QScrollBar>("HScroll1")->value(), s.view.ViewX);

  // A tile number beyond the sheet is put right by the verification.
  s.doc.HexTile(5, 5) = static_cast<int16_t>(s.ref.TileMax + 1);
  act("VerifyHexData")->trigger();
  EXPECT_EQ(s.doc.HexTile(5, 5), 0);
}

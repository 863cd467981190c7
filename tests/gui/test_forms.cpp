// The tile picker, the control form, the grid, help and map-image dialogs and
// the jump map window on Qt's offscreen platform: real mouse and key events
// on their controls, the main window's menu entries, and scripts that drive
// them by name.
#include <cstdlib>
#include <memory>
#include <sstream>

#include <QAction>
#include <QApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QMouseEvent>
#include <QPushButton>
#include <QScrollBar>
#include <QTimer>
#include <gtest/gtest.h>

#include "analysis/aitables.h"
#include "editing/startup.h"
#include "gui/Form1.h"
#include "gui/Form2.h"
#include "gui/Form5.h"
#include "gui/guitest.h"
#include "gui/qtui.h"
#include "gui/script.h"
#include "jumpmap/jumpmap.h"
#include "platform/fileio.h"
#include "testutil.h"
#include "view/geometry.h"

using namespace kv;
using kv::gui::Form1;

namespace {

// A picture control draws its image inside a border of this width.
constexpr int kBorder = 2;

using kvtest::Settle;

void Click(QWidget* w, QPoint at, Qt::MouseButton b = Qt::LeftButton) {
  const QPointF local(at), global(w->mapToGlobal(at));
  QMouseEvent down(QEvent::MouseButtonPress, local, global, b, b, Qt::NoModifier);
  QApplication::sendEvent(w, &down);
  QMouseEvent up(QEvent::MouseButtonRelease, local, global, b, Qt::NoButton, Qt::NoModifier);
  QApplication::sendEvent(w, &up);
  Settle();
}

void Move(QWidget* w, QPoint at) {
  QMouseEvent e(QEvent::MouseMove, QPointF(at), QPointF(w->mapToGlobal(at)), Qt::NoButton, Qt::NoButton,
                Qt::NoModifier);
  QApplication::sendEvent(w, &e);
}

void Key(QWidget* w, int key, const QString& text = {}) {
  QKeyEvent down(QEvent::KeyPress, key, Qt::NoModifier, text);
  QApplication::sendEvent(w, &down);
  QKeyEvent up(QEvent::KeyRelease, key, Qt::NoModifier, text);
  QApplication::sendEvent(w, &up);
  Settle();
}

// A click on the list's entry, as the user makes it.
void ClickRow(QListWidget* l, int row) {
  const QRect r = l->visualItemRect(l->item(row));
  ASSERT_TRUE(r.isValid()) << row;
  Click(l->viewport(), r.center());
}

// Width and height of a BMP file.
QSize BmpSize(const std::string& path) {
  const std::vector<uint8_t> b = kvtest::ReadBytes(path);
  if (b.size() < 26) return {};
  auto i32 = [&](size_t o) { return int(b[o] | b[o + 1] << 8 | b[o + 2] << 16 | b[o + 3] << 24); };
  return {i32(18), std::abs(i32(22))};
}

// A started editor with a full sheet of 256 tiles and four nations whose
// names sort in another order than the set's list file gives them.
kvtest::MiniApp Mini() {
  kvtest::MiniApp mini;
  mini.tiles = 256;
  mini.nations = {"Corvia", "Avaria", "Dremen", "Belmont"};
  return mini;
}

struct Editor : kvtest::EditorWindow {
  explicit Editor(int w = 1920, int h = 1080) : EditorWindow(Mini(), w, h) {}
  Pens& p() { return f->session().pens; }
  QWidget* form(const char* name, bool create = true) {
    gui::VbForm* v = f->FormByName(QString::fromLatin1(name), create);
    return v ? v->formWidget() : nullptr;
  }
  template <class T>
  T* child(const char* formName, const char* name) {
    QWidget* w = form(formName);
    return w ? w->findChild<T*>(QString::fromLatin1(name)) : nullptr;
  }
  QAction* action(const char* name) { return f->findChild<QAction*>(QString::fromLatin1(name)); }
  // Runs a script; its output and any message boxes go to `out`.
  int Run(const std::string& script, std::string* out = nullptr) { return EditorWindow::Run(script, out, true); }
  void Busy() {
    p().SideEdit = 2;
    p().AutoTile = -1;
    p().RandomMode = -1;
    p().CtlMode = 2;
    p().RandomMode = 0;
    f->mRandom_Click();  // on: checked, "Random Tiles ON"
    EXPECT_EQ(p().RandomMode, -1);
  }
};

}  // namespace

TEST(TilePickerWindow, ShownAtStartWithTheWholeSheetOneCellABarStep) {
  Editor e;
  QWidget* f2 = e.form("Form2");
  ASSERT_NE(f2, nullptr);
  EXPECT_TRUE(f2->isVisible());
  EXPECT_EQ(f2->windowTitle(), "Map Tiles");
  auto* sheet = e.child<QWidget>("Form2", "Picture2");
  EXPECT_EQ(sheet->size(), QSize(960 + 2 * kBorder, 800 + 2 * kBorder));
  auto* v = e.child<QScrollBar>("Form2", "VScroll1");
  auto* frame = e.child<QWidget>("Form2", "Picture1");
  EXPECT_EQ(frame->height(), 489);  // 7335 twips
  EXPECT_EQ(v->singleStep(), 50);
  EXPECT_EQ(v->pageStep(), 50);
  EXPECT_EQ(v->maximum(), sheet->height() - frame->height());
  v->setValue(100);
  EXPECT_EQ(sheet->y(), -100);  // two rows of tiles up
  // What the window shows is the sheet the compositor reads.
  const QImage shown = sheet->grab().toImage();
  const Bitmap& tiles = e.s().sprites.TileSheet;
  for (QPoint px : {QPoint(30, 25), QPoint(61, 51), QPoint(900, 790)})
    EXPECT_EQ(shown.pixel(px + QPoint(kBorder, kBorder)) & 0xFFFFFFu, tiles.GetPixel(px.x(), px.y()) & 0xFFFFFFu)
        << px.x() << "," << px.y();
}

TEST(TilePickerWindow, LeftClickTakesThePenAndGoesBackToPlainTilePainting) {
  Editor e;
  auto* sheet = e.child<QWidget>("Form2", "Picture2");
  const struct {
    QPoint at;
    int tile;
  } picks[] = {{{61, 51}, 17}, {{59, 49}, 0}, {{959, 799}, 255}};
  for (const auto& pick : picks) {
    e.Busy();
    ASSERT_EQ(e.action("mRandom")->isChecked(), true);
    Click(sheet, pick.at + QPoint(kBorder, kBorder));
    EXPECT_EQ(e.p().CurTile, pick.tile);
    EXPECT_EQ(e.p().SideEdit, 0);
    EXPECT_EQ(e.p().AutoTile, 0);
    EXPECT_EQ(e.p().RandomMode, 0);
    EXPECT_EQ(e.p().CtlMode, 0);
    // The main window shows the modes at once.
    EXPECT_EQ(e.child<QPushButton>("Form1", "Command2")->text(), "Auto-Tile Off");
    EXPECT_FALSE(e.action("mRandom")->isChecked());
    EXPECT_EQ(e.action("mRandom")->text(), "Random Tiles OFF");
  }
}

TEST(TilePickerWindow, RightClickTakesThePenAndPopsUpTheOptionsLeavingTheModes) {
  Editor e;
  auto* f2 = static_cast<gui::Form2*>(e.form("Form2"));
  auto* sheet = e.child<QWidget>("Form2", "Picture2");
  e.Busy();
  e.p().CurTile = 3;
  Click(sheet, QPoint(61 + kBorder, 51 + kBorder), Qt::RightButton);
  EXPECT_EQ(e.p().CurTile, 17);
  EXPECT_EQ(f2->popups(), 1);
  EXPECT_EQ(e.p().SideEdit, 2);
  EXPECT_EQ(e.p().AutoTile, -1);
  EXPECT_EQ(e.p().RandomMode, -1);
  EXPECT_EQ(e.p().CtlMode, 2);
  EXPECT_TRUE(e.action("mRandom")->isChecked());
  QStringList entries;
  for (QAction* a : e.child<QMenu>("Form2", "mOptions")->actions()) entries << a->text();
  EXPECT_EQ(entries, (QStringList{"Terrain Type", "Road Connections", "Tile Patterns"}));
  // Each entry opens its tile data screen on the pen.
  QAction* roads = e.child<QMenu>("Form2", "mOptions")->findChild<QAction*>("mRoads");
  ASSERT_TRUE(roads->isEnabled());
  roads->trigger();
  Settle();
  EXPECT_EQ(e.s().ed.picker.RoadFormOpen, 1);
  ASSERT_NE(e.form("Form11", false), nullptr);
  EXPECT_TRUE(e.form("Form11", false)->isVisible());
}

TEST(TilePickerWindow, CaptionReadsOutTheTileUnderThePointer) {
  Editor e;
  QWidget* f2 = e.form("Form2");
  auto* sheet = e.child<QWidget>("Form2", "Picture2");
  const std::string name = e.s().ref.TerrainName[e.s().ref.TileType[26]];
  Move(sheet, QPoint(10 * 60 + 5 + kBorder, 50 + 5 + kBorder));
  EXPECT_EQ(f2->windowTitle().toStdString(), "Tiles F2 26(x1A) " + name);
  Move(sheet, QPoint(15 * 60 + 30 + kBorder, 15 * 50 + 10 + kBorder));
  EXPECT_TRUE(f2->windowTitle().startsWith("Tiles F2 255(xFF) ")) << f2->windowTitle().toStdString();
  // Below the last row of cells there is no tile: the caption stays.
  Move(sheet, QPoint(30 + kBorder, 16 * 50 + 1 + kBorder));
  EXPECT_TRUE(f2->windowTitle().startsWith("Tiles F2 255(xFF) "));
}

TEST(TilePickerWindow, ClosedPickerComesBackAndTheSheetStaysWithTheCompositor) {
  Editor e;
  QWidget* f2 = e.form("Form2");
  f2->close();
  Settle();
  EXPECT_FALSE(f2->isVisible());
  EXPECT_EQ(e.s().sprites.TileSheet.Width(), 960);
  EXPECT_EQ(e.s().ref.TileMax, 255);
  // F2 in the main window and the "Map Tiles" button show it again.
  Key(e.child<QWidget>("Form1", "Picture1"), Qt::Key_F2);
  ASSERT_NE(e.form("Form2"), nullptr);
  EXPECT_TRUE(e.form("Form2")->isVisible());
  e.form("Form2")->close();
  Settle();
  e.child<QPushButton>("Form1", "Command3")->click();
  EXPECT_TRUE(e.form("Form2")->isVisible());
}

TEST(TilePickerWindow, F1ShowsTheKeyHelpWithItsNineLabels) {
  Editor e;
  EXPECT_EQ(e.form("Form12", false), nullptr);
  Key(e.form("Form2"), Qt::Key_F1);
  QWidget* help = e.form("Form12", false);
  ASSERT_NE(help, nullptr);
  EXPECT_TRUE(help->isVisible());
  EXPECT_EQ(help->windowTitle(), "Tile Screen Commands");
  auto label = [&](int i) {
    return help->findChild<QLabel*>(QStringLiteral("Label1(%1)").arg(i))->text().toStdString();
  };
  EXPECT_EQ(label(0), "F1 - Display this screen");
  EXPECT_EQ(label(4), "For more info see \\tvk_info\\patterns.");
  EXPECT_EQ(label(8), "F2 - Set Tile Terrain Type");
  // F2 to F4 move the open flags of the tile data screens.
  Key(e.form("Form2"), Qt::Key_F3);
  EXPECT_EQ(e.s().ed.picker.RoadFormOpen, 1);
  Key(e.form("Form2"), Qt::Key_F3);
  EXPECT_EQ(e.s().ed.picker.RoadFormOpen, 0);
}

TEST(ControlFormWindow, HexControlOnShowsTheListsNoneFirstThenSortedByName) {
  Editor e;
  EXPECT_TRUE(e.action("HexControlOFF")->isChecked());
  e.action("HexControlOn")->trigger();
  Settle();
  EXPECT_EQ(e.p().CtlMode, 2);
  EXPECT_TRUE(e.action("HexControlOn")->isChecked());
  EXPECT_FALSE(e.action("HexControlOFF")->isChecked());
  QWidget* f3 = e.form("Form3", false);
  ASSERT_NE(f3, nullptr);
  EXPECT_TRUE(f3->isVisible());
  EXPECT_EQ(f3->windowTitle(), "Control (F3)");
  for (const char* list : {"List1", "List2"}) {
    auto* l = e.child<QListWidget>("Form3", list);
    QStringList items;
    for (int i = 0; i < l->count(); ++i) items << l->item(i)->text();
    EXPECT_EQ(items, (QStringList{"-None-", "Avaria", "Belmont", "Corvia", "Dremen"})) << list;
  }
  e.p().CurObjType = 2;
  e.action("HexControlOFF")->trigger();
  EXPECT_EQ(e.p().CtlMode, 0);
  EXPECT_EQ(e.p().CurObjType, 0);
  EXPECT_TRUE(e.action("HexControlOFF")->isChecked());
  EXPECT_FALSE(e.action("HexControlOn")->isChecked());
}

TEST(ControlFormWindow, ClicksOnTheListsCoupleTheTwoPens) {
  Editor e;
  Key(e.child<QWidget>("Form1", "Picture1"), Qt::Key_F3);
  auto* l1 = e.child<QListWidget>("Form3", "List1");
  auto* l2 = e.child<QListWidget>("Form3", "List2");
  ASSERT_TRUE(l1 && l2);
  ASSERT_TRUE(e.form("Form3")->isVisible());
  // "Belmont", second by name, is the fourth nation of the set.
  ClickRow(l1, 2);
  EXPECT_EQ(e.p().CurNation, 4);
  EXPECT_EQ(e.p().CurOrigNation, 4);
  EXPECT_EQ(l2->currentRow(), 2);
  EXPECT_EQ(e.p().CtlMode, 2);
  // Another original owner by hand stays while the same controller is clicked again.
  ClickRow(l2, 1);
  EXPECT_EQ(e.p().CurOrigNation, 2);
  e.p().CtlMode = 0;
  ClickRow(l1, 2);
  EXPECT_EQ(e.p().CtlMode, 2);
  EXPECT_EQ(e.p().CurNation, 4);
  EXPECT_EQ(e.p().CurOrigNation, 2);
  EXPECT_EQ(l2->currentRow(), 1);
  // "Corvia", the first of the file.
  ClickRow(l1, 3);
  EXPECT_EQ(e.p().CurNation, 1);
  EXPECT_EQ(e.p().CurOrigNation, 1);
  EXPECT_EQ(l2->currentRow(), 3);
  // "-None-": no control, no objective, no original owner.
  e.p().CurObjType = 2;
  ClickRow(l1, 0);
  EXPECT_EQ(e.p().CurNation, 0);
  EXPECT_EQ(e.p().CurObjType, 0);
  EXPECT_EQ(e.p().CurOrigNation, 0);
  EXPECT_EQ(l2->currentRow(), 0);
}

TEST(ControlFormWindow, ObjectiveButtonsAndTheBoldModeLabel) {
  Editor e;
  e.form("Form3");
  auto* hex = e.child<QLabel>("Form3", "Label2(0)");
  auto* area = e.child<QLabel>("Form3", "Label2(1)");
  EXPECT_TRUE(hex->font().bold());
  EXPECT_FALSE(area->font().bold());
  e.child<QPushButton>("Form3", "Command3")->click();  // Oil Resource
  EXPECT_EQ(e.p().CurObjType, 3);
  EXPECT_EQ(e.p().CtlMode, 2);
  EXPECT_EQ(e.p().AreaMode, 1);
  EXPECT_TRUE(hex->font().bold());                     // the mark does not move
  e.child<QPushButton>("Form3", "Command1")->click();  // Primary
  EXPECT_EQ(e.p().CurObjType, 2);
  EXPECT_EQ(e.p().AreaMode, 0);
  Click(area, QPoint(3, 3));
  EXPECT_EQ(e.p().AreaMode, 1);
  EXPECT_TRUE(area->font().bold());
  EXPECT_FALSE(hex->font().bold());
  e.child<QPushButton>("Form3", "Command2")->click();  // Secondary
  EXPECT_EQ(e.p().CurObjType, 1);
  e.child<QPushButton>("Form3", "Command4")->click();  // Road/None
  EXPECT_EQ(e.p().CurObjType, 0);
  EXPECT_EQ(e.p().AreaMode, 0);
  EXPECT_EQ(e.child<QPushButton>("Form3", "Command4")->text(), "Road/None");
  // Its keys: F1 the jump map, F2 the tiles.
  e.form("Form2")->close();
  Key(e.form("Form3"), Qt::Key_F2);
  EXPECT_TRUE(e.form("Form2")->isVisible());
  Key(e.form("Form3"), Qt::Key_F1);
  ASSERT_NE(e.form("Form5", false), nullptr);
  EXPECT_TRUE(e.form("Form5")->isVisible());
}

TEST(ControlFormWindow, ANewNationSetUnloadsItAndF3LoadsTheNewLists) {
  Editor e;
  kvtest::WriteText(e.app / "second/nations/nations.txt", "2\r\n\"Zemla\",1\r\n\"Yorvik\",2\r\n");
  Key(e.child<QWidget>("Form1", "Picture1"), Qt::Key_F3);
  QPointer<QWidget> old = e.form("Form3", false);
  ASSERT_FALSE(old.isNull());
  std::string out;
  ASSERT_EQ(e.Run("Form1.mNewNations_Click\n"
                  "LoadSave.Dir1.Path = \"" +
                      e.app / "second/nations" +
                      "\"\n"
                      "LoadSave.Text1.Text = nations.txt\n"
                      "answer 6\n"
                      "LoadSave.Command1_Click\n"
                      "print NationCount\n",
                  &out),
            0)
      << out;
  ASSERT_NE(out.find("NationCount=2\n"), std::string::npos) << out;
  EXPECT_FALSE(e.s().forms.Form3Loaded);
  // F3 at once: a fresh form with the new set's lists, not the old window.
  Key(e.child<QWidget>("Form1", "Picture1"), Qt::Key_F3);
  QWidget* f3 = e.form("Form3", false);
  ASSERT_NE(f3, nullptr);
  EXPECT_NE(f3, old.data());
  EXPECT_TRUE(f3->isVisible());
  EXPECT_TRUE(old.isNull());
  EXPECT_TRUE(e.s().forms.Form3Loaded);  // the old window's going does not clear it
  auto* l1 = f3->findChild<QListWidget*>("List1");
  QStringList items;
  for (int i = 0; i < l1->count(); ++i) items << l1->item(i)->text();
  EXPECT_EQ(items, (QStringList{"-None-", "Yorvik", "Zemla"}));
}

TEST(MainMenu, EntriesOfThisPartAreLiveAndWork) {
  Editor e;
  for (const char* n : {"HexControlOn", "HexControlOFF", "mOriginalOwner", "Obj_on", "Obj_off", "mGrid", "mGridSet",
                        "helpscreen", "StrategicShow", "StrategicHide"})
    EXPECT_TRUE(e.action(n)->isEnabled()) << n;
  // The Mode menu stays out of the user's way, as designed.
  EXPECT_FALSE(e.f->findChild<QMenu*>("Mode")->menuAction()->isVisible());
  e.action("Obj_on")->trigger();
  EXPECT_EQ(e.p().CtlMode, 3);
  e.action("Obj_off")->trigger();
  EXPECT_EQ(e.p().CtlMode, 0);

  Document& d = e.s().doc;
  d.HexCtl(4, 5, 0) = 3;
  d.HexCtl(4, 5, 1) = 2;
  d.HexOrigOwner(4, 5) = 1;
  d.HexOrigOwner(6, 6) = 2;
  e.action("mOriginalOwner")->trigger();
  EXPECT_EQ(d.HexOrigOwner(4, 5), 3);
  EXPECT_EQ(d.HexOrigOwner(6, 6), 0);
  ASSERT_EQ(d.ObjCount, 1);
  EXPECT_EQ(d.ObjList(1, 4), 3);

  e.action("helpscreen")->trigger();
  QWidget* help = e.form("Form8", false);
  ASSERT_NE(help, nullptr);
  EXPECT_TRUE(help->isVisible());
  EXPECT_EQ(help->windowTitle(), "TVK Map editor Help");
  const QStringList lines = help->findChild<QLabel*>("Label1")->text().split('\n');
  ASSERT_EQ(lines.size(), 14);
  EXPECT_EQ(lines[0], "TVK Map Editor version 580");
  EXPECT_EQ(lines[9], "C - Toggle Jump map box colour from Black to White.");
  // The key "/" of the main window shows it too.
  help->close();
  Settle();
  Key(e.child<QWidget>("Form1", "Picture1"), Qt::Key_Slash, "/");
  ASSERT_NE(e.form("Form8", false), nullptr);
  EXPECT_TRUE(e.form("Form8")->isVisible());
}

TEST(MainMenu, ObjectivePathViewLoadsTheClickedObjectivesTable) {
  Editor e;
  Document& d = e.s().doc;
  d.HexCtl(4, 5, 0) = 1;
  d.HexCtl(4, 5, 1) = 2;  // primary
  d.HexCtl(9, 5, 0) = 2;
  d.HexCtl(9, 5, 1) = 1;  // secondary
  e.action("Obj_on")->trigger();
  std::string out;
  // No AI file yet: the message, and the field as it was.
  d.HexAIDist(6, 5) = 77;
  ASSERT_EQ(e.Run("clickhex 4 5\n", &out), 0) << out;
  EXPECT_NE(out.find("msgbox: Create objective file then try again"), std::string::npos) << out;
  EXPECT_EQ(d.HexAIDist(6, 5), 77);
  EXPECT_EQ(d.HexCtl(4, 5, 1), 2);  // nothing is painted in this mode
  ASSERT_TRUE(WriteAIFile(e.s(), 1));
  ASSERT_EQ(e.Run("clickhex 4 5\n", &out), 0) << out;
  EXPECT_EQ(out.find("msgbox"), std::string::npos) << out;
  EXPECT_EQ(d.HexAIDist(4, 5), 0);  // the objective itself
  EXPECT_EQ(d.HexAIDist(6, 5), 2);
  ASSERT_EQ(e.Run("clickhex 9 5\n", &out), 0) << out;
  EXPECT_EQ(d.HexAIDist(9, 5), 0);
  EXPECT_EQ(d.HexAIDist(6, 5), 3);
}

TEST(GridWindow, ASizeBelowOneIsRefusedWithAMessageWhileTheGridIsOn) {
  Editor e;
  e.action("mGrid")->trigger();
  EXPECT_EQ(e.p().GridOn, -1);
  EXPECT_TRUE(e.action("mGrid")->isChecked());
  e.action("mGridSet")->trigger();
  Settle();
  QWidget* grid = e.form("Form10", false);
  ASSERT_NE(grid, nullptr);
  EXPECT_TRUE(grid->isVisible());
  EXPECT_EQ(grid->windowTitle(), "Grid Dimensions");
  EXPECT_EQ(e.child<QLineEdit>("Form10", "Text1")->text(), "15");
  std::string out;
  for (const char* bad : {"0", "-2", "none"}) {
    ASSERT_EQ(e.Run(std::string("Form10.Text2.Text = ") + bad + "\n", &out), 0) << out;
    testing::internal::CaptureStdout();
    e.child<QPushButton>("Form10", "Command1")->click();  // Done
    Settle();
    out = testing::internal::GetCapturedStdout();
    EXPECT_NE(out.find("msgbox: The grid width and height must be 1 or more"), std::string::npos) << bad;
    EXPECT_EQ(e.p().GridY, 15) << bad;
    ASSERT_NE(e.form("Form10", false), nullptr) << bad;  // still open
    EXPECT_TRUE(e.form("Form10", false)->isVisible()) << bad;
  }
  ASSERT_EQ(e.Run("Form10.Text2.Text = 0\nForm10.Command1_Click\n", &out), 0) << out;
  EXPECT_NE(out.find("msgbox: The grid width and height must be 1 or more"), std::string::npos) << out;
  ASSERT_EQ(
      e.Run("Form10.Text1.Text = 4\nForm10.Text2.Text = \" 6\"\nForm10.Command1_Click\nprint GridX GridY GridOn\n",
            &out),
      0)
      << out;
  EXPECT_NE(out.find("GridX=4\nGridY=6\nGridOn=-1\n"), std::string::npos) << out;
  EXPECT_EQ(out.find("msgbox"), std::string::npos) << out;
  EXPECT_EQ(e.form("Form10", false), nullptr);  // closed

  // Cancel turns the grid off and keeps the sizes.
  e.action("mGridSet")->trigger();
  Settle();
  EXPECT_EQ(e.child<QLineEdit>("Form10", "Text1")->text(), "4");
  e.child<QPushButton>("Form10", "Command2")->click();
  Settle();
  EXPECT_EQ(e.p().GridOn, 0);
  EXPECT_FALSE(e.action("mGrid")->isChecked());
  EXPECT_EQ(e.p().GridX, 4);
  EXPECT_EQ(e.form("Form10", false), nullptr);
}

TEST(MapImageWindow, ZeroNegativesAndTextGiveOneAndTheSectionIsWritten) {
  Editor e;
  const std::string bmp = e.app / "map.bmp";
  Key(e.child<QWidget>("Form1", "Picture1"), Qt::Key_F6);
  QWidget* dlg = e.form("Form9", false);
  ASSERT_NE(dlg, nullptr);
  EXPECT_TRUE(dlg->isVisible());
  EXPECT_EQ(dlg->windowTitle(), "Map to Bitmap");
  EXPECT_EQ(e.child<QLineEdit>("Form9", "Text1")->text(), " 75");
  EXPECT_EQ(e.child<QLineEdit>("Form9", "Text2")->text(), " 75");
  QStringList texts;
  for (QLabel* l : dlg->findChildren<QLabel*>()) {
    texts << l->text();
    EXPECT_GE(l->width(), l->sizeHint().width()) << l->text().toStdString();  // no line is cut
  }
  for (const char* t :
       {"Convert a section of the map to a bitmap.", "Starting at hex in upper left corner of display screen.",
        "If you run out of memory...reduce the Width and Height dimensions.", "Width", "Height"})
    EXPECT_TRUE(texts.contains(QString::fromLatin1(t))) << t;

  std::string out;
  ASSERT_EQ(e.Run("Form9.Text1.Text = 0\nForm9.Text2.Text = abc\n", &out), 0) << out;
  dlg->close();  // the picture is made as the dialog goes
  Settle();
  EXPECT_EQ(e.p().ImgScaleA, 1);
  EXPECT_EQ(e.p().ImgScaleB, 1);
  EXPECT_EQ(BmpSize(bmp), QSize(e.s().ref.ColPitch, e.s().ref.RowPitch));
  EXPECT_EQ(e.form("Form9", false), nullptr);

  ASSERT_EQ(e.Run("Form1.Form_KeyDown 117 0\n"
                  "print Form9.Text1.Text\n"
                  "Form9.Text1.Text = -4\n"
                  "Form9.Text2.Text = \"3 rows\"\n"
                  "Form9.Form_Unload\n"
                  "print ImgScaleA ImgScaleB\n",
                  &out),
            0)
      << out;
  EXPECT_NE(out.find("Form9.Text1.Text= 1\n"), std::string::npos) << out;
  EXPECT_NE(out.find("ImgScaleA=1\nImgScaleB=3\n"), std::string::npos) << out;
  EXPECT_EQ(BmpSize(bmp), QSize(e.s().ref.ColPitch, 3 * e.s().ref.RowPitch));

  // A section past the map's edge: the message, and no file.
  std::remove(bmp.c_str());
  ASSERT_EQ(e.Run("Form1.Form_KeyDown 117 0\nForm9.Text1.Text = 75\nForm9.Form_Unload\n", &out), 0) << out;
  EXPECT_NE(out.find("msgbox: Not enough Memory"), std::string::npos) << out;
  EXPECT_FALSE(FileExists(bmp));
}

TEST(JumpMapWindow, AClickCentresTheMainViewClampedAtTheRangesEnd) {
  Editor e(800, 600);
  Key(e.child<QWidget>("Form1", "Picture1"), Qt::Key_F1);
  auto* f5 = static_cast<gui::Form5*>(e.form("Form5", false));
  ASSERT_NE(f5, nullptr);
  EXPECT_TRUE(f5->isVisible());
  EXPECT_TRUE(f5->windowTitle().startsWith("Jump Map (F1) scale = ")) << f5->windowTitle().toStdString();
  const RefData& r = e.s().ref;
  const ViewState& v = e.s().view;
  ASSERT_GT(v.HScroll1.Max, 10);  // the view shows part of the map
  auto* pic = f5->findChild<QWidget*>("Picture2");
  auto* bar = e.child<QScrollBar>("Form1", "HScroll1");
  auto* vbar = e.child<QScrollBar>("Form1", "VScroll1");

  // Hex (12, 9) comes to the middle of the view.
  Click(pic, QPoint(12 * r.JumpColPitch + 1 + kBorder, 9 * r.JumpRowPitch + 1 + kBorder));
  EXPECT_EQ(v.ViewX, 12 - v.ViewCols / 2);
  EXPECT_EQ(v.ViewY, std::max(0, 9 - v.ViewRows / 2));
  EXPECT_EQ(bar->value(), v.ViewX);
  EXPECT_EQ(vbar->value(), v.ViewY);
  // The box stands round the view, in the box colour, on the shown picture.
  int32_t x1, y1, x2, y2;
  HexToJumpPixel(r, static_cast<int16_t>(v.ViewX), static_cast<int16_t>(v.ViewY), x1, y1);
  HexToJumpPixel(r, static_cast<int16_t>(v.ViewX + v.ViewCols), static_cast<int16_t>(v.ViewY + v.ViewRows), x2, y2);
  EXPECT_EQ(f5->image().pixel(x1, y1) & 0xFFFFFFu, 0u);
  EXPECT_EQ(f5->image().pixel((x1 + x2) / 2, y2) & 0xFFFFFFu, 0u);
  EXPECT_NE(f5->image().pixel(x1 + 3, y1 + 3) & 0xFFFFFFu, 0u);
  // Key C gives a white box, twice the black one again.
  Key(f5, Qt::Key_C, "c");
  EXPECT_EQ(f5->image().pixel(x1, y1) & 0xFFFFFFu, 0xFFFFFFu);
  Key(f5, Qt::Key_C, "c");
  EXPECT_EQ(f5->image().pixel(x1, y1) & 0xFFFFFFu, 0u);

  // Beyond the range the view stops at its last position.
  Click(pic, QPoint(pic->width() - kBorder - 1, pic->height() - kBorder - 1));
  EXPECT_EQ(v.ViewX, v.HScroll1.Max);
  EXPECT_EQ(bar->value(), bar->maximum());
  EXPECT_EQ(v.ViewY, std::max(v.VScroll1.Max, v.VScroll1.Min));
}

TEST(JumpMapWindow, TheMainViewsRedrawLeavesABoxOnTheFormsOwnSurface) {
  Editor e(800, 600);
  Key(e.child<QWidget>("Form1", "Picture1"), Qt::Key_F1);
  auto* f5 = static_cast<gui::Form5*>(e.form("Form5", false));
  ASSERT_NE(f5, nullptr);
  e.child<QScrollBar>("Form1", "HScroll1")->setValue(6);
  Settle();
  const DrawnBox& b = e.s().jump.FormBox;
  ASSERT_TRUE(b.shown);
  EXPECT_EQ(b.x1, std::max(6 - e.s().jump.HScroll1.Value, 0));
  // The surface alone, without the frame that covers it.
  QWidget* c = f5->centralWidget();
  QImage surface(c->size(), QImage::Format_RGB32);
  surface.fill(Qt::white);
  c->render(&surface, QPoint(), QRegion(), QWidget::DrawWindowBackground);
  EXPECT_EQ(surface.pixel(b.x1, b.y1 + 1) & 0xFFFFFFu, 0u);
  EXPECT_EQ(surface.pixel(b.x2, b.y2 - 1) & 0xFFFFFFu, 0u);
  EXPECT_NE(surface.pixel(b.x1 + 2, b.y1 + 2) & 0xFFFFFFu, 0u);
}

TEST(JumpMapWindow, MenusAndTheCountryList) {
  Editor e(800, 600);
  e.action("StrategicShow")->trigger();
  auto* f5 = static_cast<gui::Form5*>(e.form("Form5", false));
  ASSERT_NE(f5, nullptr);
  ASSERT_TRUE(f5->isVisible());
  const QString caption = f5->windowTitle();
  const int width = f5->image().width();
  f5->findChild<QAction*>("mZoomIn")->trigger();
  EXPECT_EQ(f5->windowTitle(), caption);  // the scale comes from the screen again
  f5->findChild<QAction*>("mZoomOut")->trigger();
  EXPECT_EQ(f5->image().width(), width);
  f5->findChild<QAction*>("mCities")->trigger();
  EXPECT_EQ(e.s().jump.JumpFilter, 5);
  f5->findChild<QAction*>("mRoads")->trigger();
  EXPECT_EQ(e.s().jump.JumpFilter, 0);

  auto* list = f5->findChild<QListWidget*>("List1");
  EXPECT_TRUE(list->isHidden());
  f5->findChild<QAction*>("showcountry")->trigger();
  EXPECT_FALSE(list->isHidden());
  QStringList names;
  for (int i = 0; i < list->count(); ++i) names << list->item(i)->text();
  EXPECT_EQ(names, (QStringList{"Corvia", "Avaria", "Dremen", "Belmont"}));  // the file's order
  e.s().ed.dlg.DlgFile = e.app / "none.map";                                 // no map file: a plain picture of it first
  e.s().doc.HexInfo(5, 7, 0) = 1;                                            // land
  e.s().doc.HexInfo(6, 7, 0) = 0;                                            // sea
  ClickRow(list, 1);
  EXPECT_EQ(e.p().CurNation, 2);
  EXPECT_TRUE(list->isHidden());
  // The map's own bitmap, a pixel a hex, land white and sea pale blue.
  EXPECT_TRUE(FileExists(e.app / "none.bmp"));
  EXPECT_EQ(f5->image().pixel(5, 7) & 0xFFFFFFu, 0xFFFFFFu);
  EXPECT_EQ(f5->image().pixel(6, 7) & 0xFFFFFFu, 0xC0FFFFu);

  // Hide unloads the window; the next key brings the jump map back, hidden.
  e.action("StrategicHide")->trigger();
  Settle();
  EXPECT_FALSE(e.s().forms.Form5Loaded);
  Key(e.child<QWidget>("Form1", "Picture1"), Qt::Key_H);
  EXPECT_TRUE(e.s().forms.Form5Loaded);
  ASSERT_NE(e.form("Form5", false), nullptr);
  EXPECT_FALSE(e.form("Form5", false)->isVisible());
}

TEST(JumpMapWindow, ANewDocumentUnloadsTheWindowAndBuildsItAgainHidden) {
  Editor e(800, 600);
  Key(e.child<QWidget>("Form1", "Picture1"), Qt::Key_F1);
  QPointer<QWidget> old = e.form("Form5", false);
  ASSERT_FALSE(old.isNull());
  ASSERT_TRUE(old->isVisible());
  std::string out;
  ASSERT_EQ(e.Run("Form1.menu_file_new_Click\n"
                  "Form6.Text1.Text = 50\n"
                  "Form6.Text2.Text = 40\n"
                  "Form6.Command2_Click\n"
                  "print MapMaxX\n",
                  &out),
            0)
      << out;
  ASSERT_NE(out.find("MapMaxX=50\n"), std::string::npos) << out;
  Settle();
  EXPECT_TRUE(old.isNull());
  auto* f5 = static_cast<gui::Form5*>(e.form("Form5", false));
  ASSERT_NE(f5, nullptr);
  EXPECT_FALSE(f5->isVisible());
  EXPECT_TRUE(e.s().forms.Form5Loaded);
  EXPECT_EQ(f5->image().width(), e.s().ref.JumpColPitch * 51);
  EXPECT_EQ(f5->image().height(), e.s().ref.JumpRowPitch * 41);
  // F1 shows the new picture.
  Key(e.child<QWidget>("Form1", "Picture1"), Qt::Key_F1);
  EXPECT_EQ(e.form("Form5", false), f5);
  EXPECT_TRUE(f5->isVisible());
}

TEST(FormsScript, EveryFormIsReachedByItsNames) {
  Editor e(800, 600);
  std::string out;
  ASSERT_EQ(e.Run("Form2.Picture2_MouseDown 1 0 61 51\n"
                  "Form2.Picture2_MouseMove 0 0 605 55\n"
                  "print CurTile Form2.Caption Form2.mRoads.Caption\n"
                  "Form2.Form_KeyDown 112 0\n"
                  "print Form12.Label1(8).Caption\n"
                  "Form1.Form_KeyDown 114 0\n"
                  "Form3.List1.ListIndex = 3\n"
                  "print CurNation CurOrigNation Form3.List2.ListIndex Form3.List1.ListCount\n"
                  "Form3.Label2_Click 1\n"
                  "print AreaMode Form3.Label2(1).FontBold\n"
                  "Form1.mGrid_Click\n"
                  "print GridOn Form1.mGrid.Checked\n"
                  "Form1.helpscreen_Click\n"
                  "print Form8.Caption\n"
                  "Form1.Form_KeyDown 112 0\n"
                  "Form5.mCities_Click\n"
                  "print Form5.List1.Visible\n"
                  "Form5.showcountry_Click\n"
                  "print Form5.List1.Visible Form5.List1.ListCount\n"
                  "Form5.Picture2_MouseDown 1 0 1 1\n"
                  "print ViewX ViewY Form5.List1.Visible\n",
                  &out),
            0)
      << out;
  const std::string t = e.s().ref.TerrainName[e.s().ref.TileType[26]];
  EXPECT_NE(out.find("CurTile=17\nForm2.Caption=Tiles F2 26(x1A) " + t + "\nForm2.mRoads.Caption=Road Connections\n"),
            std::string::npos)
      << out;
  EXPECT_NE(out.find("Form12.Label1(8).Caption=F2 - Set Tile Terrain Type\n"), std::string::npos) << out;
  EXPECT_NE(out.find("CurNation=1\nCurOrigNation=1\nForm3.List2.ListIndex=3\nForm3.List1.ListCount=5\n"),
            std::string::npos)
      << out;
  EXPECT_NE(out.find("AreaMode=1\nForm3.Label2(1).FontBold=-1\n"), std::string::npos) << out;
  EXPECT_NE(out.find("GridOn=-1\nForm1.mGrid.Checked=-1\n"), std::string::npos) << out;
  EXPECT_NE(out.find("Form8.Caption=TVK Map editor Help\n"), std::string::npos) << out;
  EXPECT_NE(out.find("Form5.List1.Visible=0\nForm5.List1.Visible=-1\nForm5.List1.ListCount=4\n"), std::string::npos)
      << out;
  EXPECT_NE(out.find("ViewX=0\nViewY=0\nForm5.List1.Visible=0\n"), std::string::npos) << out;
}

// The main window in the hand, on Qt's offscreen platform: the layout at any
// size, the tool windows, the status bar and the menus' keys, drag painting,
// the wheel and the zoom, the live jump map, and the Editor names of scripts.
#include <cctype>
#include <memory>

#include <QAction>
#include <QApplication>
#include <QLabel>
#include <QMouseEvent>
#include <QPushButton>
#include <QScrollBar>
#include <QStatusBar>
#include <QTest>
#include <QWheelEvent>
#include <gtest/gtest.h>

#include "gui/Form1.h"
#include "gui/PictureBox.h"
#include "gui/editorscript.h"
#include "gui/guitest.h"
#include "gui/qtui.h"
#include "gui/statusbar.h"
#include "gui/usersettings.h"
#include "jumpmap/jumpmap.h"
#include "testutil.h"
#include "view/geometry.h"
#include "view/transform.h"
#include "view/zoom.h"

using namespace kv;
using kv::gui::Form1;

namespace {

constexpr int kBorder = 2;

void Settle() {
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  QCoreApplication::processEvents();
}

void Mouse(QWidget* w, QEvent::Type t, QPoint at, Qt::MouseButton b, Qt::MouseButtons held,
           Qt::KeyboardModifiers mods = Qt::NoModifier) {
  QMouseEvent e(t, QPointF(at), QPointF(w->mapToGlobal(at)), b, held, mods);
  QApplication::sendEvent(w, &e);
}

void WheelAt(QWidget* w, QPoint at, int delta, Qt::KeyboardModifiers mods = Qt::NoModifier) {
  QWheelEvent e(QPointF(at), QPointF(w->mapToGlobal(at)), QPoint(), QPoint(0, delta), Qt::NoButton, mods,
                Qt::NoScrollPhase, false);
  QApplication::sendEvent(w, &e);
  Settle();
}

struct Editor {
  kvtest::TempDir app, home;
  std::unique_ptr<Form1> f;
  explicit Editor(int w = 1920, int h = 1080, const std::string& settings = {}) {
    kvtest::GuiApp();
    gui::Script().active = true;
    gui::Script().answers.clear();
    kvtest::MiniApp mini;
    mini.tiles = 256;
    kvtest::MakeMiniApp(app.path(), mini);
    gui::SetUserSettingsFile(QString::fromStdString(settings.empty() ? home.path() + "/editor.ini" : settings));
    f = std::make_unique<Form1>(app.path());
    f->SetScreenSize(w, h);
    EXPECT_TRUE(f->Form_Load());
    Settle();
  }
  Session& s() { return f->session(); }
  QWidget* form(const char* name) { return f->FormByName(QString::fromLatin1(name))->formWidget(); }
  QWidget* view() { return f->findChild<QWidget*>(QStringLiteral("Picture1")); }
  // The widget point over the middle of hex (x, y), at the present zoom.
  // Opens the jump map (F1) with live following on; true when it is loaded.
  bool OpenLiveJumpMap() {
    f->hand().LiveJumpMap = true;
    f->Form_KeyDown(112, 0);  // F1
    Settle();
    return s().forms.Form5Loaded;
  }
  QPoint HexPoint(int x, int y) {
    double X = 0, Y = 0;
    ViewTransform(s().ref, s().view).HexCentre(x, y, X, Y);
    return {static_cast<int>(X) + kBorder, static_cast<int>(Y) + kBorder};
  }
  // The editor as a user has it: the layout follows the window, tool windows stay in reach.
  void Comfort() {
    f->hand().LayoutFollowsWindow = true;
    f->hand().WindowsInReach = true;
  }
  int Run(const std::string& script, std::string* out = nullptr) { return kvtest::RunScriptText(*f, script, out); }
};

}  // namespace

TEST(HandWindow, EverySizeShowsTheBarsThePanelAndWholeCaptions) {
  Editor e(1366, 768);
  e.Comfort();
  e.f->show();
  for (QSize size : {QSize(1366, 740), QSize(1000, 600), QSize(800, 560), QSize(1920, 1050)}) {
    SCOPED_TRACE(size.width());
    e.f->resize(size);
    Settle();
    QWidget* c = e.f->centralWidget();
    const QRect inside = c->rect();
    // The view, its bars and every control of the bottom panel lie wholly
    // inside (a panel wider than the window goes on in a second row), and
    // no two controls of the panel overlap.
    std::vector<QWidget*> panel;
    for (const char* n :
         {"HScroll1", "VScroll1", "Picture1", "Picture2", "Label1", "Label2", "Text2", "Label4", "Command4", "Command7",
          "Text3(0)", "Text3(1)", "Text3(2)", "Command8", "Label5", "Label6", "Text4", "Command9"}) {
      auto* w = c->findChild<QWidget*>(QString::fromLatin1(n));
      ASSERT_NE(w, nullptr) << n;
      const QRect g = w->geometry();
      EXPECT_TRUE(inside.contains(g)) << n << " " << g.x() << "," << g.y() << " " << w->width() << "x" << w->height();
      if (std::string(n).find("Scroll") == std::string::npos && std::string(n) != "Picture1") panel.push_back(w);
    }
    for (size_t i = 0; i < panel.size(); ++i)
      for (size_t k = i + 1; k < panel.size(); ++k)
        EXPECT_FALSE(panel[i]->geometry().intersects(panel[k]->geometry()))
            << panel[i]->objectName().toStdString() << " over " << panel[k]->objectName().toStdString();
    for (QLabel* l : c->findChildren<QLabel*>()) {
      if (l->isVisible() && !l->text().isEmpty() && l->objectName() != "Label3") {
        EXPECT_GE(l->width(), l->sizeHint().width()) << l->objectName().toStdString();
      }
    }
    for (QPushButton* b : c->findChildren<QPushButton*>()) EXPECT_GE(b->width(), b->sizeHint().width());
    // The view shows what its size holds, and the bars reach the map's end.
    const ViewState& v = e.s().view;
    EXPECT_EQ(v.ViewCols, (v.ViewPixW + 4) / e.s().ref.ColPitch - 1);
    EXPECT_EQ(v.HScroll1.Max, e.s().doc.MapMaxX - v.ViewCols);
  }
  EXPECT_GT(e.f->centralWidget()->minimumWidth(), 300);
  EXPECT_GT(e.f->centralWidget()->minimumHeight(), 150);
}

TEST(HandWindow, ToolWindowsStayAboveOpenOnTheScreenAndComeBack) {
  kvtest::TempDir keep;
  const std::string settings = keep.path() + "/editor.ini";
  {
    Editor e(1920, 1080, settings);
    e.Comfort();
    e.f->show();
    e.f->Form_KeyDown(114, 0);  // F3: the control form
    Settle();
    QWidget* f3 = e.form("Form3");
    EXPECT_TRUE(f3->windowFlags() & Qt::Tool);
    EXPECT_EQ(f3->parentWidget(), e.f.get());
    // Far off the screen, it comes back onto it when shown.
    f3->hide();
    f3->move(5000, 4000);
    f3->show();
    Settle();
    const QRect screen = f3->screen()->availableGeometry();
    EXPECT_TRUE(screen.contains(f3->geometry())) << f3->x() << "," << f3->y();
    f3->move(60, 90);
    Settle();
    f3->close();
    Settle();
  }
  Editor again(1920, 1080, settings);
  again.Comfort();
  again.f->show();
  again.f->Form_KeyDown(114, 0);
  Settle();
  EXPECT_EQ(again.form("Form3")->pos(), QPoint(60, 90));
}

TEST(HandStatus, ThePenTheZoomAndTheHexUnderThePointer) {
  Editor e;
  e.Comfort();
  auto* bar = e.f->findChild<gui::PenStatusBar*>();
  ASSERT_NE(bar, nullptr);
  e.s().pens.CurTile = 17;
  e.f->Command2_Click();  // auto-tile on
  QStringList t = bar->Texts();
  EXPECT_EQ(t[0].left(13), "Tile 17 (x11)");
  EXPECT_EQ(t[1], "Tiles");
  EXPECT_EQ(t[2], "Auto-tile on");
  EXPECT_EQ(t[3], "Random tiles off");
  EXPECT_EQ(t[4], "Elevation pen off");
  EXPECT_EQ(t[5], "Zoom 100 %");
  Mouse(e.view(), QEvent::MouseMove, e.HexPoint(6, 4), Qt::NoButton, Qt::NoButton);
  EXPECT_EQ(bar->Texts()[6], "Hex (6, 4)");
  EXPECT_FALSE(bar->findChild<QLabel*>("PenPicture")->pixmap().isNull());
}

TEST(HandMenus, EntriesShowTheirKeysAndTheHelpListsEveryWindowsKeys) {
  Editor e;
  auto key = [&](const char* n) { return e.f->findChild<QAction*>(n)->shortcut().toString(); };
  EXPECT_EQ(key("menu_file_open"), "Ctrl+O");
  EXPECT_EQ(key("menu_file_save_as"), "Ctrl+Shift+S");
  EXPECT_EQ(key("StrategicShow"), "F1");
  EXPECT_EQ(key("mUndo"), "F7");
  // A key the window answers itself is only shown: it does not fire twice.
  EXPECT_EQ(e.f->findChild<QAction*>("StrategicShow")->shortcutContext(), Qt::WidgetShortcut);
  EXPECT_EQ(e.f->findChild<QAction*>("menu_file_open")->text(), "&Open Map File");
  e.f->helpscreen_Click();
  Settle();
  auto* keys = e.form("Form8")->findChild<QLabel*>("Keys");
  ASSERT_NE(keys, nullptr);
  for (const char* k : {"Ctrl+wheel", "Tile picker", "Jump map", "Tile data screens", "F8"})
    EXPECT_TRUE(keys->text().contains(QString::fromLatin1(k))) << k;
}

TEST(HandDrag, AStrokePaintsEveryHexThePointerEntersOnceAsAClick) {
  Editor e;
  Session& s = e.s();
  s.doc.HexTile(2, 3) = 5;
  s.pens.CurTile = 9;
  int begun = 0, ended = 0, paintedAtBegin = -1;
  e.f->onStrokeBegin = [&]() { ++begun, paintedAtBegin = s.doc.HexTile(2, 3); };
  e.f->onStrokeEnd = [&]() { ++ended; };
  QWidget* v = e.view();
  // Press in (2, 3), a fast move to (9, 3), a move on to (9, 6), release.
  Mouse(v, QEvent::MouseButtonPress, e.HexPoint(2, 3), Qt::LeftButton, Qt::LeftButton);
  Mouse(v, QEvent::MouseMove, e.HexPoint(9, 3), Qt::NoButton, Qt::LeftButton);
  Mouse(v, QEvent::MouseMove, e.HexPoint(9, 6), Qt::NoButton, Qt::LeftButton);
  Mouse(v, QEvent::MouseButtonRelease, e.HexPoint(9, 6), Qt::LeftButton, Qt::NoButton);
  Settle();
  for (int x = 2; x <= 9; ++x) EXPECT_EQ(s.doc.HexTile(x, 3), 9) << x;
  // One stroke: begun before its first hex was painted, ended at the release.
  EXPECT_EQ(begun, 1);
  EXPECT_EQ(ended, 1);
  EXPECT_EQ(paintedAtBegin, 5);
  for (int y = 3; y <= 6; ++y) EXPECT_EQ(s.doc.HexTile(9, y), 9) << y;
  EXPECT_NE(s.doc.HexTile(5, 5), 9);
  EXPECT_EQ(s.pens.CurHexX, 9);
  EXPECT_EQ(s.pens.CurHexY, 6);
  // After the release a move paints nothing.
  Mouse(v, QEvent::MouseMove, e.HexPoint(5, 5), Qt::NoButton, Qt::NoButton);
  EXPECT_NE(s.doc.HexTile(5, 5), 9);
  // In deployment mode each entered hex toggles once, as a click does.
  s.pens.CtlMode = 1;
  s.pens.CurNation = 2;
  Mouse(v, QEvent::MouseButtonPress, e.HexPoint(3, 8), Qt::LeftButton, Qt::LeftButton);
  Mouse(v, QEvent::MouseMove, e.HexPoint(3, 9) + QPoint(0, -5), Qt::NoButton, Qt::LeftButton);
  Mouse(v, QEvent::MouseMove, e.HexPoint(3, 9) + QPoint(0, 5), Qt::NoButton, Qt::LeftButton);
  Mouse(v, QEvent::MouseButtonRelease, e.HexPoint(3, 9), Qt::LeftButton, Qt::NoButton);
  EXPECT_EQ(s.doc.HexDeploy(3, 8), 2);
  EXPECT_EQ(s.doc.HexDeploy(3, 9), 2);
  // A right-button drag only picks the pen.
  const int16_t before = s.doc.HexTile(6, 8);
  Mouse(v, QEvent::MouseButtonPress, e.HexPoint(4, 8), Qt::RightButton, Qt::RightButton);
  Mouse(v, QEvent::MouseMove, e.HexPoint(6, 8), Qt::NoButton, Qt::RightButton);
  Mouse(v, QEvent::MouseButtonRelease, e.HexPoint(6, 8), Qt::RightButton, Qt::NoButton);
  EXPECT_EQ(s.doc.HexTile(6, 8), before);
}

TEST(HandWheel, TheWheelScrollsThroughTheBarsAndCtrlZoomsRoundThePointer) {
  Editor e(1000, 700);
  e.Comfort();
  Session& s = e.s();
  // A larger map to scroll over.
  ASSERT_EQ(e.Run("Form1.menu_file_new_Click\nForm6.Text1.Text = 200\nForm6.Text2.Text = 150\nForm6.Command2_Click\n"),
            0);
  e.f->show();
  e.f->resize(1000, 700);
  Settle();
  QWidget* v = e.view();
  const QPoint mid(v->width() / 2, v->height() / 2);
  const int x0 = s.view.ViewX, y0 = s.view.ViewY;
  WheelAt(v, mid, -120);  // towards the user: down three rows
  EXPECT_EQ(s.view.ViewY, y0 + 3);
  EXPECT_EQ(s.view.VScroll1.Value, y0 + 3);
  WheelAt(v, mid, -240, Qt::ShiftModifier);
  EXPECT_EQ(s.view.ViewX, x0 + 6);
  WheelAt(v, mid, 120);
  EXPECT_EQ(s.view.ViewY, y0);
  // Into the middle of the map, with room to zoom out round the pointer.
  ASSERT_EQ(e.Run("Form1.HScroll1.Value = 80\nForm1.VScroll1.Value = 60\n"), 0);
  // Ctrl+wheel: a zoom step, the hex under the pointer stays under it.
  const QPoint at(300, 200);
  auto hexAt = [&](QPoint p) {
    int16_t x = 0, y = 0;
    ViewPointHex(s, p.x() - kBorder, p.y() - kBorder, x, y);
    return std::pair<int, int>(x, y);
  };
  const auto before = hexAt(at);
  const int cols = s.view.ViewCols;
  WheelAt(v, at, -120, Qt::ControlModifier);
  EXPECT_EQ(e.s().view.Zoom, 75);
  EXPECT_GT(s.view.ViewCols, cols);  // zoomed out, more hexes
  EXPECT_EQ(hexAt(at), before);
  for (int i = 0; i < 8; ++i) WheelAt(v, at, -120, Qt::ControlModifier);
  EXPECT_EQ(e.s().view.Zoom, 25);
  EXPECT_EQ(hexAt(at), before);
  // A click at the pointer goes through the same transform.
  Mouse(v, QEvent::MouseButtonPress, at, Qt::LeftButton, Qt::LeftButton);
  Mouse(v, QEvent::MouseButtonRelease, at, Qt::LeftButton, Qt::NoButton);
  EXPECT_EQ((std::pair<int, int>(s.pens.CurHexX, s.pens.CurHexY)), before);
}

TEST(HandScript, EditorZoomStrokeAndWheel) {
  Editor e;
  std::string out;
  const int cols = e.s().view.ViewCols;
  ASSERT_EQ(e.Run("print Editor.Zoom\n"
                  "Editor.Zoom = 50\n"
                  "print Editor.Zoom\n"
                  "CurTile = 12\n"
                  "Editor.Stroke 1 0 30 40 200 40\n"
                  "print HexTile(0,0) HexTile(1,0) HexTile(2,0) HexTile(3,0) HexTile(4,0)\n",
                  &out),
            0)
      << out;
  EXPECT_NE(out.find("Editor.Zoom=100\nEditor.Zoom=50\n"), std::string::npos) << out;
  EXPECT_GT(e.s().view.ViewCols, cols);
  // At 50 % the view's points 30..200 at height 40 are the handlers' 60..400 at
  // 80: columns 1 to 8 of row 1.
  for (int x = 1; x <= 8; ++x) EXPECT_EQ(e.s().doc.HexTile(x, 1), 12) << x;
  EXPECT_NE(e.s().doc.HexTile(9, 1), 12);
  ASSERT_EQ(e.Run("Editor.Zoom = 300\n", &out), 1);
  EXPECT_NE(out.find("Editor.Zoom: 25 to 200"), std::string::npos) << out;
  ASSERT_EQ(e.Run("Editor.Wheel -120 0\nprint ViewY\n", &out), 0) << out;
}

// The README names every Editor name of the table as `Editor.NAME`.
TEST(HandScript, TheReadmeNamesEveryEditorName) {
  const std::vector<uint8_t> bytes = kvtest::ReadBytes(std::string(KV_SOURCE_DIR) + "/README.md");
  const std::string readme(bytes.begin(), bytes.end());
  const std::vector<const char*> names = gui::EditorNames();
  EXPECT_GE(names.size(), 13u);
  for (const char* n : names) {
    const std::string quoted = std::string("`Editor.") + n;
    bool found = false;
    for (size_t at = readme.find(quoted); at != std::string::npos && !found; at = readme.find(quoted, at + 1)) {
      const char next = at + quoted.size() < readme.size() ? readme[at + quoted.size()] : ' ';
      found = !std::isalnum(static_cast<unsigned char>(next));  // not the start of a longer name
    }
    EXPECT_TRUE(found) << n;
  }
}

TEST(HandJumpMap, AnOpenJumpMapShowsAPaintedHexAtOnce) {
  Editor e;
  Session& s = e.s();
  ASSERT_TRUE(e.OpenLiveJumpMap());
  const uint32_t before = s.jump.Picture2.GetPixel(s.ref.JumpColPitch * 5 + 1, s.ref.JumpRowPitch * 4 + 1);
  s.pens.CurTile = 0;  // terrain 0
  ASSERT_EQ(e.Run("clickhex 5 4\n"), 0);
  const uint32_t after = s.jump.Picture2.GetPixel(s.ref.JumpColPitch * 5 + 1, s.ref.JumpRowPitch * 4 + 1);
  EXPECT_NE(before, after);
  EXPECT_EQ(after, TerrainColour(s.ref, 0));
  // Off, the picture waits for the next drawing (as the classic window does).
  e.f->hand().LiveJumpMap = false;
  s.pens.CurTile = 4;
  ASSERT_EQ(e.Run("clickhex 5 4\n"), 0);
  EXPECT_EQ(s.jump.Picture2.GetPixel(s.ref.JumpColPitch * 5 + 1, s.ref.JumpRowPitch * 4 + 1), after);
}

TEST(HandJumpMap, AnOpenJumpMapFollowsUndoAndRedoHexByHex) {
  Editor e;
  Session& s = e.s();
  ASSERT_TRUE(e.OpenLiveJumpMap());
  // What the jump map's window shows, and its picture.
  auto* shown = e.form("Form5")->findChild<gui::PictureBox*>(QStringLiteral("Picture2"));
  ASSERT_NE(shown, nullptr);
  auto pixel = [&](int x, int y) {
    const int px = s.ref.JumpColPitch * x + 1, py = s.ref.JumpRowPitch * y + 1;
    const uint32_t own = s.jump.Picture2.GetPixel(px, py);
    EXPECT_EQ(shown->source().pixel(px, py) & 0xFFFFFFu, own) << "the window shows its picture";
    return own;
  };
  const uint32_t before = pixel(5, 4);
  ASSERT_EQ(e.Run("CurTile = 0\nclickhex 5 4\n"), 0);
  const uint32_t painted = pixel(5, 4);
  ASSERT_NE(painted, before);
  // A pixel far from the hex, spoiled: a step that redraws only its own hexes leaves it.
  const int farX = s.ref.JumpColPitch * 12 + 1, farY = s.ref.JumpRowPitch * 9 + 1;
  s.jump.Picture2.SetPixel(farX, farY, 0x123456);
  ASSERT_EQ(e.Run("Editor.Undo\n"), 0);
  EXPECT_EQ(pixel(5, 4), before);
  ASSERT_EQ(e.Run("Editor.Redo\n"), 0);
  EXPECT_EQ(pixel(5, 4), painted);
  // The keys, as the window system delivers them.
  e.f->show();
  Settle();
  e.f->activateWindow();
  QTest::keyClick(e.f.get(), Qt::Key_Z, Qt::ControlModifier);
  Settle();
  EXPECT_EQ(pixel(5, 4), before);
  QTest::keyClick(e.f.get(), Qt::Key_Y, Qt::ControlModifier);
  Settle();
  EXPECT_EQ(pixel(5, 4), painted);
  EXPECT_EQ(s.jump.Picture2.GetPixel(farX, farY), 0x123456u);
}

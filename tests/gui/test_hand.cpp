// The editor in the hand, on Qt's offscreen platform with real mouse, wheel
// and key events: the Shift state of a press, the file dialog, the window's
// layout at any size, the tool windows, the status bar, drag painting, the
// wheel and the zoom.
#include <memory>

#include <QAction>
#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QMouseEvent>
#include <gtest/gtest.h>

#include "editing/fileflow.h"
#include "gui/Form1.h"
#include "gui/guitest.h"
#include "gui/qtui.h"
#include "gui/recentmaps.h"
#include "gui/usersettings.h"
#include "platform/fileio.h"
#include "testutil.h"
#include "view/geometry.h"
#include "view/transform.h"

using namespace kv;
using kv::gui::Form1;

namespace {

constexpr int kBorder = 2;  // a picture control's border

void Settle() {
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  QCoreApplication::processEvents();
}

void Press(QWidget* w, QPoint at, Qt::MouseButton b, Qt::KeyboardModifiers mods = Qt::NoModifier) {
  QMouseEvent e(QEvent::MouseButtonPress, QPointF(at), QPointF(w->mapToGlobal(at)), b, b, mods);
  QApplication::sendEvent(w, &e);
}
void Release(QWidget* w, QPoint at, Qt::MouseButton b, Qt::KeyboardModifiers mods = Qt::NoModifier) {
  QMouseEvent e(QEvent::MouseButtonRelease, QPointF(at), QPointF(w->mapToGlobal(at)), b, Qt::NoButton, mods);
  QApplication::sendEvent(w, &e);
}
void Click(QWidget* w, QPoint at, Qt::MouseButton b = Qt::LeftButton, Qt::KeyboardModifiers mods = Qt::NoModifier) {
  Press(w, at, b, mods);
  Release(w, at, b, mods);
  Settle();
}

void Key(QWidget* w, int key, Qt::KeyboardModifiers mods = Qt::NoModifier, const QString& text = {}) {
  QKeyEvent down(QEvent::KeyPress, key, mods, text);
  QApplication::sendEvent(w, &down);
  QKeyEvent up(QEvent::KeyRelease, key, mods, text);
  QApplication::sendEvent(w, &up);
  Settle();
}

void DoubleClick(QWidget* w, QPoint at) {
  const QPointF local(at), global(w->mapToGlobal(at));
  for (QEvent::Type t : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease, QEvent::MouseButtonDblClick,
                         QEvent::MouseButtonRelease}) {
    QMouseEvent e(t, local, global, Qt::LeftButton, t == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton,
                  Qt::NoModifier);
    QApplication::sendEvent(w, &e);
  }
  Settle();
}

struct Editor {
  kvtest::TempDir app, home;
  std::unique_ptr<Form1> f;
  explicit Editor(int w = 1920, int h = 1080) {
    kvtest::GuiApp();
    gui::Script().active = true;
    gui::Script().answers.clear();
    kvtest::MiniApp mini;
    mini.tiles = 256;
    kvtest::MakeMiniApp(app.path(), mini);
    // The user's settings live in a file of the test's own.
    gui::SetUserSettingsFile(QString::fromStdString(home.path() + "/editor.ini"));
    f = std::make_unique<Form1>(app.path());
    f->SetScreenSize(w, h);
    EXPECT_TRUE(f->Form_Load());
    Settle();
  }
  Session& s() { return f->session(); }
  QWidget* form(const char* name) { return f->FormByName(QString::fromLatin1(name))->formWidget(); }
  QWidget* child(const char* formName, const char* name) {
    return form(formName)->findChild<QWidget*>(QString::fromLatin1(name));
  }
  // The widget point over the middle of hex (x, y) of the main view.
  QPoint HexPoint(int x, int y) {
    double X = 0, Y = 0;
    ViewTransform(s().ref, s().view).HexCentre(x, y, X, Y);
    return {static_cast<int>(X) + kBorder, static_cast<int>(Y) + kBorder};
  }
};

}  // namespace

TEST(HandShift, AShiftClickSelectsRightAfterAClickInThePicker) {
  Editor e;
  Session& s = e.s();
  QWidget* sheet = e.child("Form2", "Picture2");
  QWidget* view = e.child("Form1", "Picture1");
  Click(sheet, QPoint(61, 51) + QPoint(kBorder, kBorder));  // tile 17, the picker has the focus
  ASSERT_EQ(s.pens.CurTile, 17);
  // Shift goes down while the picker has the keyboard: the main window never sees it.
  QKeyEvent shift(QEvent::KeyPress, Qt::Key_Shift, Qt::ShiftModifier);
  QApplication::sendEvent(sheet, &shift);
  ASSERT_EQ(s.pens.ShiftKey, 0);
  const int16_t before = s.doc.HexTile(4, 3);
  Click(view, e.HexPoint(4, 3), Qt::LeftButton, Qt::ShiftModifier);
  EXPECT_EQ(s.doc.HexTile(4, 3), before);  // not painted
  EXPECT_EQ(s.pens.SelX1, 4);
  EXPECT_EQ(s.pens.SelY1, 3);
  EXPECT_EQ(s.pens.SelX2, 4);
  EXPECT_EQ(s.pens.SelY2, 3);
  // And a plain press paints again, whatever the last key said.
  Click(view, e.HexPoint(5, 5));
  EXPECT_EQ(s.doc.HexTile(5, 5), 17);
}

TEST(HandFileDialog, OpensOnTheMapsFolderTakesAbsolutePathsEnterAndDoubleClickAndRemembersTenMaps) {
  Editor e;
  Session& s = e.s();
  s.comfort.DialogFollowsMap = true;
  const std::string a = e.home.path() + "/maps a", b = e.home.path() + "/maps b";
  MakeDirs(a);
  MakeDirs(b);
  ASSERT_TRUE(SaveMapAs(s, a, "first"));
  ASSERT_TRUE(SaveMapAs(s, a, "third"));
  ASSERT_TRUE(SaveMapAs(s, b, "second"));
  e.f->SyncControls();
  // A new map's dialog would open on the program folder; this one on the map's.
  e.f->menu_file_open_Click();
  Settle();
  auto dialog = [&]() { return e.f->FormByName(QStringLiteral("LoadSave"), false)->formWidget(); };
  EXPECT_EQ(s.ed.dlg.Dir1Path, b);
  // An absolute path typed in "File Name" and Enter: loaded as it stands.
  auto* text1 = dialog()->findChild<QLineEdit*>(QStringLiteral("Text1"));
  text1->setText(QString::fromStdString(a + "/first.map"));
  Key(text1, Qt::Key_Return);
  EXPECT_EQ(s.doc.MapPath, a + "/first.map");
  EXPECT_EQ(s.doc.MapFile, "first.map");
  // The next dialog opens there; a double-click on a file loads it.
  e.f->menu_file_open_Click();
  Settle();
  EXPECT_EQ(s.ed.dlg.Dir1Path, a);
  auto* list = dialog()->findChild<QListWidget*>(QStringLiteral("List1"));
  const auto found = list->findItems(QStringLiteral("third.map"), Qt::MatchExactly);
  ASSERT_EQ(found.size(), 1);
  DoubleClick(list->viewport(), list->visualItemRect(found[0]).center());
  EXPECT_EQ(s.doc.MapPath, a + "/third.map");
  // A folder that does not exist is named, and nothing is loaded.
  e.f->menu_file_open_Click();
  Settle();
  text1 = dialog()->findChild<QLineEdit*>(QStringLiteral("Text1"));
  text1->setText(QString::fromStdString(e.home.path() + "/nowhere/x.map"));
  std::string boxes;
  testing::internal::CaptureStdout();
  Key(text1, Qt::Key_Return);
  boxes = testing::internal::GetCapturedStdout();
  EXPECT_NE(boxes.find("The folder " + e.home.path() + "/nowhere does not exist."), std::string::npos) << boxes;
  EXPECT_EQ(s.doc.MapPath, a + "/third.map");
  dialog()->close();
  Settle();
  // File > Recent Maps: newest first, and a choice opens the map.
  auto* recent = e.f->findChild<QMenu*>(QStringLiteral("RecentMaps"));
  ASSERT_NE(recent, nullptr);
  QStringList names;
  for (QAction* act : recent->actions()) names << act->data().toString();
  EXPECT_EQ(names, (QStringList{QString::fromStdString(a + "/third.map"), QString::fromStdString(a + "/first.map"),
                                QString::fromStdString(b + "/second.map")}));
  recent->actions()[2]->trigger();
  Settle();
  EXPECT_EQ(s.doc.MapPath, b + "/second.map");
  EXPECT_EQ(e.f->windowTitle(), "Main: editing second.map");
  // Ten at most, kept for the next run.
  for (int i = 0; i < 12; ++i) ASSERT_TRUE(SaveMapAs(s, b, "m" + std::to_string(i))), e.f->SyncControls();
  EXPECT_EQ(recent->actions().size(), 10);
  EXPECT_EQ(recent->actions()[0]->data().toString(), QString::fromStdString(b + "/m11.map"));
  Editor again;
  gui::SetUserSettingsFile(QString::fromStdString(e.home.path() + "/editor.ini"));
  gui::RecentMaps probe(new QMenu(), nullptr, nullptr);
  EXPECT_EQ(probe.list().size(), 10);
}

TEST(HandFileDialog, AScriptKeepsTheFolderLastShown) {
  Editor e;
  Session& s = e.s();
  ASSERT_FALSE(s.comfort.DialogFollowsMap);
  const std::string a = e.home.path() + "/maps";
  MakeDirs(a);
  ASSERT_TRUE(SaveMapAs(s, a, "first"));
  e.f->menu_file_open_Click();
  Settle();
  EXPECT_EQ(s.ed.dlg.Dir1Path, s.AppPath);
}

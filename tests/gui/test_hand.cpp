// The editor in the hand, on Qt's offscreen platform with real mouse, wheel
// and key events: the Shift state of a press, the file dialog, the window's
// layout at any size, the tool windows, the status bar, drag painting, the
// wheel and the zoom.
#include <gtest/gtest.h>

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <memory>

#include "gui/Form1.h"
#include "gui/guitest.h"
#include "gui/qtui.h"
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

struct Editor {
  kvtest::TempDir app;
  std::unique_ptr<Form1> f;
  explicit Editor(int w = 1920, int h = 1080) {
    kvtest::GuiApp();
    gui::Script().active = true;
    gui::Script().answers.clear();
    kvtest::MiniApp mini;
    mini.tiles = 256;
    kvtest::MakeMiniApp(app.path(), mini);
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

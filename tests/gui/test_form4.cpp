// The bitmap utility's windows on Qt's offscreen platform: the menu entry of
// the main window, Form4's menus and controls, real mouse and key events on
// its picture, and scripts that drive Form4 and Form15 by name.
#include <cstdlib>
#include <memory>
#include <sstream>

#include <QAction>
#include <QApplication>
#include <QGroupBox>
#include <QKeyEvent>
#include <QMenu>
#include <QMenuBar>
#include <QMouseEvent>
#include <QScrollBar>
#include <QTimer>
#include <gtest/gtest.h>

#include "bitmaputil/bitmaputil.h"
#include "gui/Form1.h"
#include "gui/Form4.h"
#include "gui/guitest.h"
#include "gui/qtui.h"
#include "gui/script.h"
#include "gui/vbform.h"
#include "platform/fileio.h"
#include "session.h"
#include "testutil.h"

using namespace kv;
using kv::gui::Form1;
using kv::gui::Form4;
using kv::gui::VbForm;

namespace {

constexpr int kBorder = 2;  // a picture control's border

using kvtest::Settle;

void Mouse(QWidget* w, QEvent::Type type, QPoint at, Qt::MouseButton b) {
  QMouseEvent e(type, QPointF(at), QPointF(w->mapToGlobal(at)), b, type == QEvent::MouseMove ? Qt::NoButton : b,
                Qt::NoModifier);
  QApplication::sendEvent(w, &e);
  Settle();
}

kvtest::MiniApp Mini() {
  kvtest::MiniApp mini;
  mini.types = {0, 1, 1, 3, 1, 5, 14, 1, 8, 6};
  return mini;
}

struct Editor : kvtest::EditorWindow {
  kvtest::TempDir pics;
  Editor() : EditorWindow(Mini()) {}
  Form4* Utility() { return static_cast<Form4*>(f->FormByName(QStringLiteral("Form4"))); }
  template <class T>
  T* Child(const char* name) {
    return Utility()->findChild<T*>(QString::fromLatin1(name));
  }
  std::string Picture(const Bitmap& pic, const std::string& name) {
    EXPECT_TRUE(WriteBmpFile(pics / name, pic, nullptr));
    return pics / name;
  }
  // The lines that load `name` from the pictures folder through the dialog.
  std::string LoadLines(const std::string& name) {
    return "Form4.LoadBitmap_Click\nLoadSave.Dir1.Path = \"" + pics.path() + "\"\nLoadSave.Text1.Text = " + name +
           "\nLoadSave.Command1_Click\n";
  }
};

Bitmap Gradient(int w, int h) {
  Bitmap b(w, h);
  for (int y = 0; y < h; ++y)
    for (int x = 0; x < w; ++x) b.SetPixel(x, y, RGB(x & 255, y & 255, (x + y) & 255));
  return b;
}

}  // namespace

TEST(Form4Window, ReachedFromTheFileMenuWithItsMenusInOrder) {
  Editor e;
  auto* entry = e.f->findChild<QAction*>(QStringLiteral("LoadBitmap"));
  ASSERT_TRUE(entry);
  EXPECT_TRUE(entry->isEnabled());
  EXPECT_EQ(entry->text(), "Bitmap Utilities");
  entry->trigger();
  Settle();
  Form4* u = e.Utility();
  EXPECT_TRUE(u->isVisible());
  EXPECT_EQ(u->windowTitle(), "Bitmap Utility");
  QStringList names, captions;
  for (QAction* a : u->menuBar()->actions()) {
    QObject* named = a->menu() ? static_cast<QObject*>(a->menu()) : a;
    names << named->objectName();
    captions << a->text();
  }
  EXPECT_EQ(names, (QStringList{"LoadBitmap", "FileExit", "Bmp2Map", "CreateSeasonalMaps", "CreateMask", "mExtremis",
                                "mPG2", "menuRC", "Replace_Colour", "Shrink_Image", "menu_colours", "mMapEditMode",
                                "ChangeCRV", "SaveSectors"}));
  EXPECT_EQ(captions[0], "Load Bitmap");
  EXPECT_EQ(captions[6], "PG2 -> Korvane Icon");
  EXPECT_EQ(captions[11], "Map Edit Mode (OFF)");
  QStringList colours;
  for (QAction* a : e.Child<QMenu>("menu_colours")->actions()) colours << a->objectName() + "=" + a->text();
  EXPECT_EQ(colours, (QStringList{"red=red", "green=green", "blue=blue"}));
  // Nothing shown but the empty frame and its bars until a picture is loaded.
  EXPECT_TRUE(e.Child<QWidget>("Picture2")->isHidden());
  EXPECT_TRUE(e.Child<QWidget>("Picture3")->isHidden());
  EXPECT_TRUE(e.Child<QWidget>("Frame1")->isHidden());
  EXPECT_EQ(e.Child<QGroupBox>("Frame1")->title(), "Color Reduction Value");
  EXPECT_EQ(e.Child<QScrollBar>("HScroll1")->pageStep(), 20);
  EXPECT_EQ(e.Child<QScrollBar>("VScroll1")->pageStep(), 10);
}

TEST(Form4Window, ThePictureScrollsAndAnswersThePointer) {
  Editor e;
  e.Picture(Gradient(2000, 1500), "bigx.bmp");
  std::string out;
  ASSERT_EQ(e.Run(e.LoadLines("bigx") + "print Form4.Caption\n", &out), 0) << out;
  EXPECT_EQ(out, "Form4.Caption=bigx.bmp\n");
  auto* p1 = e.Child<QWidget>("Picture1");
  auto* p2 = e.Child<QWidget>("Picture2");
  auto* h = e.Child<QScrollBar>("HScroll1");
  auto* v = e.Child<QScrollBar>("VScroll1");
  EXPECT_FALSE(p2->isHidden());
  EXPECT_EQ(p2->size(), QSize(2004, 1504));
  EXPECT_EQ(h->maximum(), 2000 - (p1->width() - 4));
  EXPECT_EQ(v->maximum(), 1500 - (p1->height() - 4));
  h->setValue(300);
  v->setValue(200);
  EXPECT_EQ(p2->pos(), QPoint(-300, -200));
  // The pointer over pixel (310, 205) of the picture.
  Mouse(p2, QEvent::MouseMove, QPoint(310 + kBorder, 205 + kBorder), Qt::NoButton);
  EXPECT_EQ(e.Utility()->windowTitle(), "bigx.bmp( 310, 205)( 310, 205) 54 205 3");
  // Extreme contrast by its menu and a real click.
  e.Utility()->findChild<QAction*>(QStringLiteral("mExtremis"))->trigger();
  Mouse(p2, QEvent::MouseButtonPress, QPoint(10, 10), Qt::LeftButton);
  const Bitmap& pic = e.s().bmp.Picture2;
  EXPECT_EQ(pic.GetPixel(310, 205), RGB(0, 255, 0));
  EXPECT_EQ(e.s().bmp.ExtremeArmed, 0);
  // The window shows it: the frame's top left corner shows pixel (300, 200).
  const QImage shot = e.Utility()->grab().toImage();
  EXPECT_EQ(shot.pixel(p2->mapTo(e.Utility(), QPoint(kBorder + 300, kBorder + 200))) & 0xFFFFFF,
            pic.GetPixel(300, 200));
  EXPECT_EQ(shot.pixel(p2->mapTo(e.Utility(), QPoint(kBorder + 310, kBorder + 205))) & 0xFFFFFF, RGB(0, 255, 0));
}

TEST(Form4Window, LoadBitmapWaitsForTheDialogsAnswer) {
  Editor e;
  e.Picture(Gradient(5, 3), "wait.bmp");
  gui::Script().active = false;  // the window system's own modal loop
  bool answered = false;
  QTimer::singleShot(0, [&] {
    VbForm* dlg = e.f->FormByName(QStringLiteral("LoadSave"), false);
    if (!dlg || !dlg->formWidget()->isVisible()) return;
    QString err;
    QWidget* w = dlg->formWidget();
    gui::SetControlProperty(*dlg, gui::FindControl(w, QStringLiteral("Dir1")), QStringLiteral("Path"),
                            QString::fromStdString(e.pics.path()), &err);
    gui::SetControlProperty(*dlg, gui::FindControl(w, QStringLiteral("Text1")), QStringLiteral("Text"),
                            QStringLiteral("wait"), &err);
    answered = gui::InvokeHandler(w, QStringLiteral("Command1_Click"), {}, &err);
  });
  // Whatever goes wrong, no window stays waiting for a user.
  QTimer safety;
  QObject::connect(&safety, &QTimer::timeout, [] {
    if (QWidget* m = QApplication::activeModalWidget()) m->close();
  });
  safety.start(3000);
  e.Utility()->LoadBitmap_Click();
  gui::Script().active = true;
  EXPECT_TRUE(answered);
  EXPECT_EQ(e.s().bmp.BitmapName, "wait.bmp");
  EXPECT_EQ(e.s().bmp.Picture2.Width(), 5);
  EXPECT_EQ(e.Utility()->windowTitle(), "wait.bmp");
}

TEST(Form4Window, KeysBAndNStepTheMainWindowsPen) {
  Editor e;
  e.s().pens.CurTile = 3;
  Form4* u = e.Utility();
  u->show();
  Settle();
  QKeyEvent down(QEvent::KeyPress, Qt::Key_N, Qt::NoModifier, QStringLiteral("n"));
  QApplication::sendEvent(u, &down);
  Settle();
  EXPECT_NE(e.s().pens.CurTile, 3);
  u->Form_KeyDown(66, 0);  // B goes back
  EXPECT_EQ(e.s().pens.CurTile, 3);
  u->Form_KeyDown(65, 0);  // other keys stay with the utility
  EXPECT_EQ(e.s().pens.CurTile, 3);
}

TEST(Form4Window, ColourReductionValueThroughTheFrame) {
  Editor e;
  std::string out;
  ASSERT_EQ(e.Run("Form4.ChangeCRV_Click\nprint Form4.Frame1.Visible Form4.Text1.Text\n"
                  "Form4.Text1.Text = 8\nForm4.Label1_Click\nprint ColourCRV Form4.Frame1.Visible\n",
                  &out),
            0)
      << out;
  EXPECT_EQ(out, "Form4.Frame1.Visible=-1\nForm4.Text1.Text= 4\nColourCRV=8\nForm4.Frame1.Visible=0\n");
}

TEST(Form4Window, ReplaceColourByScriptWithForm15) {
  Editor e;
  Bitmap pic(3, 1);
  pic.SetPixel(0, 0, RGB(10, 20, 30));
  pic.SetPixel(1, 0, RGB(10, 20, 31));
  pic.SetPixel(2, 0, RGB(10, 20, 30));
  e.Picture(pic, "pic.bmp");
  std::string out;
  ASSERT_EQ(e.Run(e.LoadLines("pic.bmp") + "Form4.Replace_Colour_Click\n"
                                           "print Form15.Visible Form4.NewColour(0) Form4.ReplaceMode\n"
                                           "Form4.Picture2_MouseDown 1 0 0 0\n"
                                           "print Form4.Picture2.Point(0,0)\n"
                                           "Form15.Text1(0).Text = 200\n"
                                           "Form15.Text1(2).Text = 7\n"
                                           "print Form15.Frame1.BackColor\n"
                                           "Form15.Command1_Click\n"
                                           "print Form15.Visible\n"
                                           "Form4.Picture2_MouseDown 1 0 2 0\n"
                                           "print Form4.Picture2.Point(0,0) Form4.Picture2.Point(1,0) Form4.Caption\n",
                  &out),
            0)
      << out;
  EXPECT_EQ(out,
            "Form15.Visible=-1\nForm4.NewColour(0)=(undefined)\nForm4.ReplaceMode=-1\n"
            "Form4.Picture2.Point(0,0)=1971210\n"
            "Form15.Frame1.BackColor=458952\n"
            "Form15.Visible=0\n"
            "Form4.Picture2.Point(0,0)=458952\nForm4.Picture2.Point(1,0)=2036746\nForm4.Caption=2\n");
  // The preview shows the colour of the boxes.
  QWidget* dlg = e.f->FormByName(QStringLiteral("Form15"), false)->formWidget();
  dlg->show();
  Settle();
  QWidget* preview = dlg->findChild<QWidget*>(QStringLiteral("Frame1"));
  const QImage shot = dlg->grab().toImage();
  EXPECT_EQ(shot.pixel(preview->geometry().center()) & 0xFFFFFF, RGB(200, 0, 7));
  if (const char* dir = std::getenv("KV_SHOT_DIR")) shot.save(QString::fromLocal8Bit(dir) + "/form15.png");
}

TEST(Form4Window, NotABitmapByScriptKeepsThePicture) {
  Editor e;
  e.Picture(Gradient(4, 4), "good.bmp");
  kvtest::WriteText(e.pics / "bad.bmp", "BM but not really");
  std::string out;
  ASSERT_EQ(e.Run(e.LoadLines("good") + e.LoadLines("bad") +
                      "print Form4.Caption Form4.BitmapName DlgFile Form4.Picture2.ScaleWidth\n",
                  &out),
            0)
      << out;
  EXPECT_EQ(out, "Form4.Caption=good.bmp\nForm4.BitmapName=good.bmp\nDlgFile=" + (e.pics / "good.bmp") +
                     "\nForm4.Picture2.ScaleWidth=4\n");
  EXPECT_NE(e.s().bmp.Picture2.GetPixel(3, 3), 0u);
}

TEST(Form4Window, BitmapToMapShowsTheJumpMapBesideTheUtility) {
  Editor e;
  Bitmap pic(6, 4);
  pic.Fill(RGB(0, 0, 200));
  pic.FillRect(0, 0, 3, 2, RGB(200, 0, 0));
  e.Picture(pic, "landx.bmp");
  std::string out;
  ASSERT_EQ(e.Run(e.LoadLines("landx") +
                      "Form1.LoadBitmap_Click\n"
                      "CurTile = 1\n"
                      "Form4.bmp2map_Click\n"
                      "print MapMaxX MapMaxY MapFile FromMapEdit Form4.PixelDone(0,0)\n"
                      "CurTile = 3\n"
                      "Form4.Picture2_MouseDown 1 0 1 1\n"
                      "print HexInfo(1,1,0) HexInfo(3,2,0) HexInfo(4,2,0) HexInfo(0,0,0) Form4.PixelDone(2,1) "
                      "Form4.PixelDone(3,1) Form5.Visible\n",
                  &out),
            0)
      << out;
  EXPECT_EQ(out,
            "MapMaxX=6\nMapMaxY=4\nMapFile=landx.map\nFromMapEdit=-1\nForm4.PixelDone(0,0)=0\n"
            "HexInfo(1,1,0)=3\nHexInfo(3,2,0)=3\nHexInfo(4,2,0)=1\nHexInfo(0,0,0)=1\nForm4.PixelDone(2,1)=1\n"
            "Form4.PixelDone(3,1)=0\nForm5.Visible=-1\n");
  QWidget* jump = e.f->FormByName(QStringLiteral("Form5"), false)->formWidget();
  Form4* u = e.Utility();
  EXPECT_EQ(jump->frameGeometry().left(), u->frameGeometry().right() + 1);
  EXPECT_EQ(jump->size(), u->size());
  ASSERT_EQ(e.Run("Form4.FileExit_Click\nprint FromMapEdit\n", &out), 0);
  EXPECT_EQ(out, "FromMapEdit=0\n");
  EXPECT_FALSE(e.f->FormByName(QStringLiteral("Form4"), false));
}

// A look at the window: the picture with the icon strip under it. With
// KV_SHOT_DIR set (and a screen, e.g. under xvfb-run with QT_QPA_PLATFORM=xcb)
// the window is also saved as a picture there.
TEST(Form4Window, IconStripShownUnderThePicture) {
  Editor e;
  Bitmap pic(240, 150);
  for (int y = 0; y < 150; ++y)
    for (int x = 0; x < 240; ++x)
      pic.SetPixel(x, y, ((x / 80 + y / 50) % 2) ? RGB(40 + x / 2, 90, 160) : RGB(220, 200 - y, 60));
  pic.FillRect(0, 0, 2, 2, RGB(90, 90, 90));
  e.Picture(pic, "tank.bmp");
  ASSERT_EQ(e.Run(e.LoadLines("tank") + "Form1.LoadBitmap_Click\nForm4.mPG2_Click\n"), 0);
  Form4* u = e.Utility();
  u->show();
  Settle();
  auto* p2 = e.Child<QWidget>("Picture2");
  auto* p3 = e.Child<QWidget>("Picture3");
  ASSERT_FALSE(p3->isHidden());
  const QPoint p2At = p2->mapTo(u, QPoint(0, 0)), p3At = p3->mapTo(u, QPoint(0, 0));
  EXPECT_EQ(p3At.x(), p2At.x());
  EXPECT_EQ(p3At.y(), p2At.y() + p2->height());
  // The colour reduction value's entry stands over the picture.
  u->ChangeCRV_Click();
  Settle();
  auto* frame = e.Child<QWidget>("Frame1");
  ASSERT_FALSE(frame->isHidden());
  const QImage shot = u->grab().toImage();
  const QPoint inFrame = frame->mapTo(u, QPoint(frame->width() / 2, 4));
  EXPECT_NE(shot.pixel(inFrame) & 0xFFFFFF,
            e.s().bmp.Picture2.GetPixel(inFrame.x() - p2At.x() - kBorder, inFrame.y() - p2At.y() - kBorder));
  const Bitmap& strip = e.s().bmp.Picture3;
  for (QPoint q : {QPoint(5, 5), QPoint(85, 20), QPoint(399, 49)})
    EXPECT_EQ(shot.pixel(p3At + QPoint(kBorder, kBorder) + q) & 0xFFFFFF, strip.GetPixel(q.x(), q.y()));
  EXPECT_EQ(shot.pixel(p2At + QPoint(kBorder + 220, kBorder + 120)) & 0xFFFFFF, e.s().bmp.Picture2.GetPixel(220, 120));
  if (const char* dir = std::getenv("KV_SHOT_DIR")) shot.save(QString::fromLocal8Bit(dir) + "/form4.png");
}

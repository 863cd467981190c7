#include "gui/Form4.h"

#include <QAction>
#include <QCloseEvent>
#include <QCoreApplication>
#include <QDialog>
#include <QGroupBox>
#include <QLineEdit>
#include <QMenuBar>
#include <QScrollBar>

#include "bitmaputil/bitmaputil.h"
#include "gui/Form1.h"
#include "gui/PictureBox.h"
#include "gui/formkit.h"
#include "gui/keeper.h"
#include "gui/qtui.h"
#include "session.h"
#include "view/layout.h"

namespace kv::gui {

namespace {

// A window-system frame is about 60 a second: column puts closer together
// than that are shown together.
constexpr qint64 kFrameMs = 16;
// The map conversion serves the window system about as often.
constexpr qint64 kServeMs = 30;

void SetBar(QScrollBar* b, const ScrollBarModel& m) {
  const QSignalBlocker block(b);
  b->setMinimum(m.Min);
  b->setMaximum(std::max(m.Min, m.Max));
  b->setPageStep(std::max(1, m.LargeChange));
  b->setValue(m.Value);
}

// A colour as the window system gives a point: red + 256 green + 65536 blue.
QString PointValue(uint32_t rgb) {
  const uint32_t r = (rgb >> 16) & 255, g = (rgb >> 8) & 255, b = rgb & 255;
  return QString::number(r + 256 * g + 65536 * b);
}

// "Name(1, 2, 3)" into its name and numbers; false for anything else.
bool Indexed(const QString& text, QString* name, std::vector<int>* idx) {
  const int open = text.indexOf('('), close = text.lastIndexOf(')');
  if (open <= 0 || close != text.size() - 1) return false;
  *name = text.left(open).trimmed().toLower();
  for (const QString& part : text.mid(open + 1, close - open - 1).split(',')) {
    bool ok = false;
    idx->push_back(part.trimmed().toInt(&ok));
    if (!ok) return false;
  }
  return true;
}

}  // namespace

Form4::Form4(Session& s, QWidget* parent) : QMainWindow(parent, Qt::Window), s_(s) {
  setObjectName(QStringLiteral("Form4"));
  setWindowTitle(QStringLiteral("Bitmap Utility"));
  setAttribute(Qt::WA_DeleteOnClose);
  auto* c = new QWidget(this);
  c->setObjectName(QStringLiteral("centralwidget"));
  setCentralWidget(c);
  Picture1_ = new QWidget(c);
  Picture1_->setObjectName(QStringLiteral("Picture1"));
  Picture1_->setAutoFillBackground(true);
  Picture2_ = new PictureBox(QStringLiteral("Picture2"), Picture1_);
  Picture2_->source = [this]() {
    SyncPicture2(s_);
    return ImageOf(s_.bmp.Picture2);
  };
  Picture2_->onMouseDown = [this](int b, int sh, double x, double y) { Picture2_MouseDown(b, sh, x, y); };
  Picture2_->onMouseMove = [this](int b, int sh, double x, double y) { Picture2_MouseMove(b, sh, x, y); };
  Picture2_->hide();
  Picture3_ = new PictureBox(QStringLiteral("Picture3"), c);
  Picture3_->source = [this]() { return ImageOf(s_.bmp.Picture3); };
  Picture3_->hide();
  VScroll1_ = new QScrollBar(Qt::Vertical, c);
  VScroll1_->setObjectName(QStringLiteral("VScroll1"));
  HScroll1_ = new QScrollBar(Qt::Horizontal, c);
  HScroll1_->setObjectName(QStringLiteral("HScroll1"));
  connect(HScroll1_, &QScrollBar::valueChanged, this, [this](int) {
    if (!syncing_) HScroll1_Change();
  });
  connect(VScroll1_, &QScrollBar::valueChanged, this, [this](int) {
    if (!syncing_) VScroll1_Change();
  });

  Frame1_ = new QGroupBox(QStringLiteral("Color Reduction Value"), c);
  Frame1_->setObjectName(QStringLiteral("Frame1"));
  Frame1_->setGeometry(16, 16, 190, 64);
  Frame1_->setAutoFillBackground(true);  // it stands over the picture
  Text1_ = new QLineEdit(Frame1_);
  Text1_->setObjectName(QStringLiteral("Text1"));
  Text1_->setGeometry(10, 26, 90, 26);
  connect(Text1_, &QLineEdit::textEdited, this, [this](const QString& t) { s_.bmp.Text1 = Latin1(t); });
  Label1_ = new ClickLabel(QStringLiteral("Label1"), QStringLiteral("Done"), Frame1_);
  Label1_->setGeometry(116, 26, 60, 26);
  Label1_->setAlignment(Qt::AlignCenter);
  Label1_->setFrameShape(QFrame::Panel);
  Label1_->setFrameShadow(QFrame::Raised);
  Label1_->onClick = [this]() { Label1_Click(); };
  Frame1_->hide();

  // The menu bar, in order; each entry's name is its handler's.
  struct Entry {
    const char* name;
    const char* caption;
    void (Form4::*handler)();
  };
  const Entry entries[] = {
      {"LoadBitmap", "Load Bitmap", &Form4::LoadBitmap_Click},
      {"FileExit", "Exit", &Form4::FileExit_Click},
      {"Bmp2Map", "Convert Bitmap to Map", &Form4::bmp2map_Click},
      {"CreateSeasonalMaps", "Create Seasonal Versions", &Form4::CreateSeasonalMaps_Click},
      {"CreateMask", "Create Sprite Mask", &Form4::CreateMask_Click},
      {"mExtremis", "Extreme Contrast", &Form4::mExtremis_Click},
      {"mPG2", "PG2 -> Korvane Icon", &Form4::mPG2_Click},
      {"menuRC", "Reduce Colours", &Form4::menuRC_Click},
      {"Replace_Colour", "Replace Colour", &Form4::Replace_Colour_Click},
      {"Shrink_Image", "Shrink Image", &Form4::Shrink_Image_Click},
      {"menu_colours", "Colours", nullptr},
      {"mMapEditMode", "Map Edit Mode (OFF)", &Form4::mMapEditMode_Click},
      {"ChangeCRV", "Change Colour Reduction Value", &Form4::ChangeCRV_Click},
      {"SaveSectors", "Save as Sectors", &Form4::SaveSectors_Click},
  };
  for (const Entry& e : entries) {
    if (!e.handler) {
      QMenu* colours = menuBar()->addMenu(QString::fromLatin1(e.caption));
      colours->setObjectName(QString::fromLatin1(e.name));
      const Entry sub[] = {{"red", "red", &Form4::red_Click},
                           {"green", "green", &Form4::green_Click},
                           {"blue", "blue", &Form4::blue_Click}};
      for (const Entry& k : sub) {
        QAction* a = colours->addAction(QString::fromLatin1(k.caption));
        a->setObjectName(QString::fromLatin1(k.name));
        connect(a, &QAction::triggered, this, k.handler);
      }
      continue;
    }
    QAction* a = menuBar()->addAction(QString::fromLatin1(e.caption));
    a->setObjectName(QString::fromLatin1(e.name));
    a->setParent(this);
    connect(a, &QAction::triggered, this, e.handler);
  }

  keys_ = new KeyPreview(this, [this](int code, int shift) { Form_KeyDown(code, shift); });
  sinceFlush_.start();
  sinceServe_.start();
  // The passes show their columns as they go, and the map conversion lets the
  // window system draw while it runs.
  s_.bmp.ColumnsPut = [this](int x0, int x1) {
    if (!columnRefresh_) return;
    dirty_ |= QRect(x0, 0, x1 - x0 + 1, s_.bmp.Picture2.Height());
    FlushColumns(false);
  };
  s_.bmp.ServeEvents = [this]() {
    if (sinceServe_.elapsed() < kServeMs) return;
    sinceServe_.restart();
    s_.ui().Changed(Change::Label3);
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
  };
  Form_Load();
}

Form4::~Form4() {
  Form_Unload();
  s_.bmp.ColumnsPut = nullptr;
  s_.bmp.ServeEvents = nullptr;
}

void Form4::Form_Load() {
  Form4_Load(s_);
  const int sw = s_.view.ScreenW, sh = s_.view.ScreenH;
  // Wide enough for the whole menu bar on a common screen.
  resize(std::min(1700, std::max(640, sw - 100)), std::min(760, std::max(480, sh - 160)));
  loaded_ = true;
  Layout();
}

void Form4::Layout() {
  QWidget* c = centralWidget();
  const int vw = VScroll1_->sizeHint().width(), hh = HScroll1_->sizeHint().height();
  const int w = std::max(1, c->width() - vw), h = std::max(1, c->height() - hh);
  Picture1_->setGeometry(0, 0, w, h);
  VScroll1_->setGeometry(w, 0, vw, h);
  HScroll1_->setGeometry(0, h, w, hh);
  Form4_ScrollRanges(s_, w - kPictureBorder, h - kPictureBorder);
  SyncControls();
}

void Form4::Form_Resize() {
  if (!loaded_ || isMinimized()) return;
  Layout();
}

void Form4::resizeEvent(QResizeEvent* e) {
  QMainWindow::resizeEvent(e);
  Form_Resize();
}

bool Form4::event(QEvent* e) {
  if (e->type() == QEvent::WindowActivate) Form_Activate();
  return QMainWindow::event(e);
}

void Form4::Form_Activate() {
  if (!loaded_ || unloaded_) return;
  Form4_Activate(s_);
}

void Form4::Form_Unload() {
  if (unloaded_) return;
  unloaded_ = true;
  // Closed by its box: the pictures go with the window, the shared state stays.
  if (s_.bmp.Loaded) Form4_Unload(s_);
}

void Form4::closeEvent(QCloseEvent* e) {
  // A pass that serves the window system cannot be left half done.
  if (s_.bmp.Busy) {
    e->ignore();
    return;
  }
  Form_Unload();
  QMainWindow::closeEvent(e);
}

void Form4::SyncControls() {
  if (syncing_) return;
  syncing_ = true;
  const BitmapUtilState& b = s_.bmp;
  const QString caption = Latin1(b.Caption);
  if (windowTitle() != caption) setWindowTitle(caption);
  if (auto* a = findChild<QAction*>(QStringLiteral("mMapEditMode"))) a->setText(Latin1(b.mMapEditModeCaption));
  if (Frame1_->isHidden() == b.Frame1Visible) {
    Frame1_->setVisible(b.Frame1Visible);
    if (b.Frame1Visible) Frame1_->raise();
  }
  if (Text1_->text() != Latin1(b.Text1)) Text1_->setText(Latin1(b.Text1));
  const bool show2 = b.Picture2Visible && !b.Picture2.Empty();
  if (show2) {
    const QSize want(b.Picture2.Width() + kPictureBorder, b.Picture2.Height() + kPictureBorder);
    if (Picture2_->size() != want) Picture2_->resize(want);
  }
  if (Picture2_->isHidden() == show2) Picture2_->setVisible(show2);
  SetBar(HScroll1_, b.HScroll1);
  SetBar(VScroll1_, b.VScroll1);
  Picture2_->move(-b.HScroll1.Value, -b.VScroll1.Value);
  PlacePicture3();
  if (b.MousePointer == vbHourglass)
    setCursor(Qt::WaitCursor);
  else
    unsetCursor();
  syncing_ = false;
}

void Form4::PlacePicture3() {
  const BitmapUtilState& b = s_.bmp;
  const bool show3 = b.Picture3Visible && !b.Picture3.Empty();
  if (show3) {
    // At the left edge of Picture2 and just under it, kept inside the window.
    const QSize size(b.Picture3.Width() + kPictureBorder, b.Picture3.Height() + kPictureBorder);
    const QPoint at = Picture1_->mapTo(centralWidget(), Picture2_->geometry().bottomLeft() + QPoint(0, 1));
    const int maxY = std::max(0, Picture1_->height() - size.height());
    Picture3_->setGeometry(std::max(0, at.x()), std::min(std::max(0, at.y()), maxY), size.width(), size.height());
    Picture3_->raise();
  }
  if (Picture3_->isHidden() == show3) Picture3_->setVisible(show3);
  if (show3) Picture3_->update();
}

void Form4::OnChanged(Change what) {
  switch (what) {
    case Change::Form4Unload: close(); return;
    case Change::Form4Caption: setWindowTitle(Latin1(s_.bmp.Caption)); return;
    case Change::Form4Picture2:
      dirty_ = QRect();
      // The bars follow a picture of another size.
      Form4_ScrollRanges(s_, Picture1_->width() - kPictureBorder, Picture1_->height() - kPictureBorder);
      SyncControls();
      Picture2_->update();
      return;
    default: SyncControls(); return;
  }
}

void Form4::FlushColumns(bool force) {
  if (dirty_.isEmpty()) return;
  if (!force && sinceFlush_.elapsed() < kFrameMs) return;
  sinceFlush_.restart();
  const QString caption = Latin1(s_.bmp.Caption);
  if (windowTitle() != caption) setWindowTitle(caption);
  // The picture lies inside a 2-pixel border.
  Picture2_->repaint(dirty_.translated(kPictureBorder / 2, kPictureBorder / 2));
  dirty_ = QRect();
  ++refreshes_;
}

void Form4::AfterMainWindowChange() {
  if (auto* main = dynamic_cast<VbForm*>(parentWidget())) main->SyncControls();
}

// ---- Handlers -------------------------------------------------------------------

void Form4::Form_KeyDown(int KeyCode, int Shift) {
  Form4_Form_KeyDown(s_, KeyCode, Shift);
  AfterMainWindowChange();
}

void Form4::LoadBitmap_Click() {
  Form4_LoadBitmap_Click(s_);
  // The dialog waits here for its answer, unless a script drives it.
  if (Script().active) return;
  auto* main = qobject_cast<Form1*>(parentWidget());
  if (!main) return;
  if (auto* dlg = dynamic_cast<QDialog*>(main->FormByName(QStringLiteral("LoadSave"), false))) {
    dlg->hide();
    dlg->exec();
  }
}

void Form4::FileExit_Click() { kv::FileExit_Click(s_); }

void Form4::bmp2map_Click() {
  // The new map replaces the open one: unsaved changes are asked about first.
  if (auto* main = qobject_cast<Form1*>(parentWidget()); main && !main->keeper().Guard()) return;
  kv::bmp2map_Click(s_);
  AfterMainWindowChange();
}

void Form4::CreateSeasonalMaps_Click() { kv::CreateSeasonalMaps_Click(s_); }
void Form4::CreateMask_Click() { kv::CreateMask_Click(s_); }
void Form4::mExtremis_Click() { kv::mExtremis_Click(s_); }
void Form4::mPG2_Click() { kv::mPG2_Click(s_); }
void Form4::menuRC_Click() { kv::menuRC_Click(s_); }
void Form4::Replace_Colour_Click() { kv::Replace_Colour_Click(s_); }
void Form4::Shrink_Image_Click() { kv::Shrink_Image_Click(s_); }
void Form4::red_Click() { kv::red_Click(s_); }
void Form4::green_Click() { kv::green_Click(s_); }
void Form4::blue_Click() { kv::blue_Click(s_); }
void Form4::mMapEditMode_Click() { kv::mMapEditMode_Click(s_); }
void Form4::ChangeCRV_Click() {
  kv::ChangeCRV_Click(s_);
  Text1_->setFocus();
}
void Form4::SaveSectors_Click() { kv::SaveSectors_Click(s_); }
void Form4::Label1_Click() { Form4_Label1_Click(s_); }

void Form4::Picture2_MouseDown(int Button, int Shift, double X, double Y) {
  Form4_Picture2_MouseDown(s_, Button, Shift, X, Y);
  AfterMainWindowChange();
  // While a bitmap becomes a map the jump map stands right of this window.
  if (s_.pens.FromMapEdit != -1) return;
  auto* main = qobject_cast<Form1*>(parentWidget());
  VbForm* f = main ? main->FormByName(QStringLiteral("Form5"), false) : nullptr;
  QWidget* jump = f ? f->formWidget() : nullptr;
  if (jump && jump->isVisible()) {
    const QRect g = frameGeometry();
    jump->resize(size());
    jump->move(g.right() + 1, g.top());
  }
}

void Form4::Picture2_MouseMove(int Button, int Shift, double X, double Y) {
  Form4_Picture2_MouseMove(s_, Button, Shift, X, Y);
}

void Form4::HScroll1_Change() {
  s_.bmp.HScroll1.Value = HScroll1_->value();
  Picture2_->move(-HScroll1_->value(), Picture2_->y());
}

void Form4::VScroll1_Change() {
  s_.bmp.VScroll1.Value = VScroll1_->value();
  Picture2_->move(Picture2_->x(), -VScroll1_->value());
}

// ---- Properties for scripts -------------------------------------------------------

bool Form4::SetOwnProperty(QObject* ctl, const QString& prop, const QString& value) {
  if (ctl == Text1_ && prop == QStringLiteral("TextFromWidget")) {
    s_.bmp.Text1 = Latin1(value);
    return true;
  }
  return false;
}

bool Form4::GetOwnProperty(QObject* ctl, const QString& prop, QString* out) {
  const BitmapUtilState& b = s_.bmp;
  const QString p = prop.toLower();
  if (ctl == this) {
    if (p == "caption") return *out = windowTitle(), true;
    if (p == "bitmapname") return *out = Latin1(b.BitmapName), true;
    if (p == "mapeditmode") return *out = QString::number(b.MapEditMode), true;
    if (p == "extremearmed") return *out = QString::number(b.ExtremeArmed), true;
    if (p == "replacemode") return *out = QString::number(b.ReplaceMode), true;
    if (p == "mousepointer") return *out = QString::number(b.MousePointer), true;
    QString name;
    std::vector<int> i;
    if (!Indexed(prop, &name, &i)) return false;
    if (name == "imagebits" && i.size() == 3) {
      if (i[0] < 0 || i[0] > 3 || !b.ImageBits.Inside(i[1], i[2])) return *out = QStringLiteral("(outside)"), true;
      return *out = QString::number(b.ImageBits(i[0], i[1], i[2])), true;
    }
    if (name == "pixeldone" && i.size() == 2) {
      if (i[0] < 0 || i[1] < 0 || i[0] >= b.PixelDoneW || i[1] >= b.PixelDoneH)
        return *out = QStringLiteral("(outside)"), true;
      return *out = QString::number(b.PixelDone[static_cast<size_t>(i[1]) * b.PixelDoneW + i[0]]), true;
    }
    if (name == "newcolour" && i.size() == 1 && i[0] >= 0 && i[0] < 3)
      return *out = b.NewColourSet ? QString::number(b.NewColour[i[0]]) : QStringLiteral("(undefined)"), true;
    return false;
  }
  if (ctl == Picture2_ || ctl == Picture3_) {
    const Bitmap& pic = ctl == Picture2_ ? b.Picture2 : b.Picture3;
    if (p == "scalewidth") return *out = QString::number(pic.Width()), true;
    if (p == "scaleheight") return *out = QString::number(pic.Height()), true;
    QString name;
    std::vector<int> i;
    if (Indexed(prop, &name, &i) && name == "point" && i.size() == 2) {
      if (i[0] < 0 || i[1] < 0 || i[0] >= pic.Width() || i[1] >= pic.Height()) return *out = QStringLiteral("-1"), true;
      return *out = PointValue(pic.GetPixel(i[0], i[1])), true;
    }
  }
  return false;
}

}  // namespace kv::gui

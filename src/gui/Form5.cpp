#include "gui/Form5.h"

#include <QAction>
#include <QCloseEvent>
#include <QListWidget>
#include <QMenuBar>
#include <QPainter>
#include <QScrollBar>

#include "gui/Form1.h"
#include "gui/PictureBox.h"
#include "gui/formkit.h"
#include "jumpmap/jumpmap.h"
#include "jumpmap/jumpwindow.h"
#include "session.h"

namespace kv::gui {

namespace {

void SetBar(QScrollBar* b, const ScrollBarModel& m) {
  const QSignalBlocker block(b);
  b->setMinimum(m.Min);
  b->setMaximum(std::max(m.Min, m.Max));
  b->setPageStep(std::max(1, m.LargeChange));
  b->setValue(m.Value);
}

}  // namespace

Form5::Form5(Session& s, QWidget* parent) : QMainWindow(parent, Qt::Window), s_(s) {
  setObjectName(QStringLiteral("Form5"));
  setWindowTitle(QStringLiteral("Jump Map (F1)"));
  setAttribute(Qt::WA_DeleteOnClose);
  auto* c = new QWidget(this);
  c->setObjectName(QStringLiteral("centralwidget"));
  setCentralWidget(c);
  c->installEventFilter(this);
  Picture1_ = new QWidget(c);
  Picture1_->setObjectName(QStringLiteral("Picture1"));
  Picture2_ = new PictureBox(QStringLiteral("Picture2"), Picture1_);
  Picture2_->source = [this]() { return image_; };
  Picture2_->onMouseDown = [this](int b, int sh, double x, double y) { Picture2_MouseDown(b, sh, x, y); };
  VScroll1_ = new QScrollBar(Qt::Vertical, c);
  VScroll1_->setObjectName(QStringLiteral("VScroll1"));
  HScroll1_ = new QScrollBar(Qt::Horizontal, c);
  HScroll1_->setObjectName(QStringLiteral("HScroll1"));
  connect(HScroll1_, &QScrollBar::valueChanged, this, &Form5::HScroll1_Change);
  connect(VScroll1_, &QScrollBar::valueChanged, this, &Form5::VScroll1_Change);
  List1_ = new QListWidget(c);
  List1_->setObjectName(QStringLiteral("List1"));
  List1_->setGeometry(8, 8, 170, 260);
  List1_->hide();
  connect(List1_, &QListWidget::itemClicked, this, [this](QListWidgetItem*) { List1_Click(); });

  auto entry = [this](QMenu* menu, const char* name, const char* caption, void (Form5::*h)()) {
    QAction* a =
        menu ? menu->addAction(QString::fromLatin1(caption)) : menuBar()->addAction(QString::fromLatin1(caption));
    a->setObjectName(QString::fromLatin1(name));
    connect(a, &QAction::triggered, this, h);
  };
  entry(nullptr, "showcountry", "Country", &Form5::showcountry_Click);
  entry(nullptr, "show_objectives", "Objectives", &Form5::show_objectives_Click);
  QMenu* terrain = menuBar()->addMenu(QStringLiteral("Terrain"));
  terrain->setObjectName(QStringLiteral("mTerrain"));
  entry(terrain, "mRoads", "Roads", &Form5::mRoads_Click);
  entry(terrain, "mCities", "Cities", &Form5::mCities_Click);
  QMenu* view = menuBar()->addMenu(QStringLiteral("View "));
  view->setObjectName(QStringLiteral("mView"));
  entry(view, "mZoomIn", "Zoom In", &Form5::mZoomIn_Click);
  entry(view, "mZoomOut", "Zoom Out", &Form5::mZoomOut_Click);
  keys_ = new KeyPreview(this, [this](int code, int shift) { Form_KeyDown(code, shift); });
  Form_Load();
}

Form5::~Form5() { Form_Unload(); }

void Form5::Form_Load() {
  int w = 0, h = 0;
  JumpWindowSize(s_, VScroll1_->sizeHint().width(), HScroll1_->sizeHint().height(), w, h);
  resize(w, h + menuBar()->sizeHint().height());
  // Beside the main window: at the right edge of the screen.
  move(std::max(0, s_.view.ScreenW - width() - 8), 40);
  // Opened from the bitmap utility's map mode: its size, right of the utility.
  auto* main = qobject_cast<Form1*>(parentWidget());
  if (s_.pens.FromMapEdit == -1 && main) {
    if (VbForm* f4 = main->FormByName(QStringLiteral("Form4"), false)) {
      const QRect g = f4->formWidget()->frameGeometry();
      resize(f4->formWidget()->size());
      move(g.x() + g.width(), g.y());
    }
  }
  List1_->clear();
  for (const std::string& n : JumpCountryList(s_)) List1_->addItem(Latin1(n));
  s_.jump.ListVisible = false;
  LoadForm5(s_);  // the picture and the objective list
  loaded_ = true;
  Layout(false);
  Refresh();
}

void Form5::Layout(bool afterResize) {
  QWidget* c = centralWidget();
  const JumpWindowLayout l =
      LayoutJumpWindow(c->width(), c->height(), VScroll1_->sizeHint().width(), HScroll1_->sizeHint().height());
  Picture1_->setGeometry(l.Picture1.Left, l.Picture1.Top, l.Picture1.Width, l.Picture1.Height);
  VScroll1_->setGeometry(l.VScroll1.Left, l.VScroll1.Top, l.VScroll1.Width, l.VScroll1.Height);
  HScroll1_->setGeometry(l.HScroll1.Left, l.HScroll1.Top, l.HScroll1.Width, l.HScroll1.Height);
  // The picture's border is the frame's, so the ranges count the picture alone.
  JumpScrollRanges(s_, l.Picture1.Width - kPictureBorder, l.Picture1.Height - kPictureBorder, afterResize);
  SyncControls();
}

void Form5::Form_Resize() {
  if (!loaded_ || isMinimized()) return;
  Layout(true);
}

void Form5::resizeEvent(QResizeEvent* e) {
  QMainWindow::resizeEvent(e);
  Form_Resize();
}

bool Form5::event(QEvent* e) {
  if (e->type() == QEvent::WindowActivate) Form_Activate();
  if (e->type() == QEvent::Show) QMetaObject::invokeMethod(this, &Form5::Form_Activate, Qt::QueuedConnection);
  return QMainWindow::event(e);
}

bool Form5::eventFilter(QObject* obj, QEvent* e) {
  if (obj == centralWidget() && e->type() == QEvent::Paint && s_.jump.FormBox.shown) {
    const DrawnBox& b = s_.jump.FormBox;
    QPainter p(centralWidget());
    p.setPen(QColor(QRgb(b.colour)));
    p.drawRect(b.x1, b.y1, b.x2 - b.x1, b.y2 - b.y1);  // both corners included
  }
  return QMainWindow::eventFilter(obj, e);
}

void Form5::Form_Activate() {
  if (!loaded_ || unloaded_) return;
  QWidget* c = centralWidget();
  JumpWindowActivate(s_, c->width(), c->height(), !HScroll1_->isHidden(), !VScroll1_->isHidden());
  SyncControls();
}

void Form5::Form_GotFocus() { DrawJumpBox(); }

void Form5::Form_Unload() {
  if (unloaded_) return;
  unloaded_ = true;
  UnloadForm5(s_);  // JumpMapOpen off
}

void Form5::Discard() {
  unloaded_ = true;
  hide();
  deleteLater();
}

void Form5::closeEvent(QCloseEvent* e) {
  Form_Unload();
  QMainWindow::closeEvent(e);
}

void Form5::HScroll1_Change() {
  s_.jump.HScroll1.Value = HScroll1_->value();
  Picture2_->move(-HScroll1_->value(), Picture2_->y());
}

void Form5::VScroll1_Change() {
  s_.jump.VScroll1.Value = VScroll1_->value();
  Picture2_->move(Picture2_->x(), -VScroll1_->value());
}

void Form5::AfterViewMoved() {
  Refresh();
  if (auto* main = dynamic_cast<VbForm*>(parentWidget())) main->SyncControls();
}

void Form5::Picture2_MouseDown(int, int, double X, double Y) {
  JumpMapClick(s_, X, Y);
  AfterViewMoved();
}

void Form5::List1_Click() {
  JumpCountryClick(s_, List1_->currentRow());
  Refresh();
}

void Form5::showcountry_Click() {
  JumpShowCountry(s_);
  SyncControls();
}

void Form5::show_objectives_Click() {
  JumpShowObjectives(s_);
  Refresh();
}

void Form5::mRoads_Click() {
  JumpMapSetFilter(s_, 0);
  Refresh();
}
void Form5::mCities_Click() {
  JumpMapSetFilter(s_, 5);
  Refresh();
}
void Form5::mZoomIn_Click() {
  JumpMapZoom(s_, -0.1f);
  Refresh();
}
void Form5::mZoomOut_Click() {
  JumpMapZoom(s_, 0.1f);
  Refresh();
}
void Form5::Form_KeyDown(int KeyCode, int Shift) {
  JumpWindowKeyDown(s_, KeyCode, Shift);
  Refresh();
}

void Form5::DrawJumpBox() {
  kv::DrawJumpBox(s_);
  Refresh();
}

void Form5::Redraw() {
  DrawStrategicMap(s_);
  Layout(false);
  Refresh();
}

void Form5::Refresh() {
  const Bitmap view = JumpMapView(s_.jump);
  image_ = ImageOf(view).copy();
  const QSize want(image_.width() + kPictureBorder, image_.height() + kPictureBorder);
  if (Picture2_->size() != want) {
    Picture2_->resize(want);
    // A picture of another size changes the bars' ranges.
    const QWidget* c = centralWidget();
    const JumpWindowLayout l =
        LayoutJumpWindow(c->width(), c->height(), VScroll1_->sizeHint().width(), HScroll1_->sizeHint().height());
    JumpScrollRanges(s_, l.Picture1.Width - kPictureBorder, l.Picture1.Height - kPictureBorder, false);
  }
  Picture2_->update();
  centralWidget()->update();
  SyncControls();
}

void Form5::SyncControls() {
  const JumpMapState& j = s_.jump;
  const QString caption = Latin1(j.Caption);
  if (windowTitle() != caption) setWindowTitle(caption);
  SetBar(HScroll1_, j.HScroll1);
  SetBar(VScroll1_, j.VScroll1);
  Picture2_->move(-HScroll1_->value(), -VScroll1_->value());
  if (List1_->isHidden() == j.ListVisible) {
    List1_->setVisible(j.ListVisible);
    if (j.ListVisible) List1_->raise();
  }
}

bool Form5::GetOwnProperty(QObject* ctl, const QString& prop, QString* out) {
  if (ctl == this && prop.compare(QStringLiteral("Caption"), Qt::CaseInsensitive) == 0) {
    *out = windowTitle();
    return true;
  }
  return false;
}

}  // namespace kv::gui

#include "gui/Form2.h"

#include <QAction>
#include <QCursor>
#include <QMenuBar>
#include <QResizeEvent>
#include <QScrollBar>

#include "editing/tilepicker.h"
#include "gui/Form1.h"
#include "gui/PictureBox.h"
#include "gui/formkit.h"
#include "gui/qtui.h"
#include "gui/surfaces.h"
#include "session.h"
#include "view/layout.h"

namespace kv::gui {

namespace {
// The frame's height at design, 7335 twips.
constexpr int kFrameHeight = 489;
}  // namespace

Form2::Form2(Session& s, QWidget* parent) : QMainWindow(parent, Qt::Window), s_(s) {
  setObjectName(QStringLiteral("Form2"));
  setWindowTitle(QStringLiteral("Map Tiles"));
  auto* c = new QWidget(this);
  c->setObjectName(QStringLiteral("centralwidget"));
  setCentralWidget(c);
  Picture1_ = new QWidget(c);
  Picture1_->setObjectName(QStringLiteral("Picture1"));
  Picture1_->setAutoFillBackground(true);
  QPalette pal = Picture1_->palette();
  pal.setColor(QPalette::Window, Qt::black);
  Picture1_->setPalette(pal);
  Picture2_ = new PictureBox(QStringLiteral("Picture2"), Picture1_);
  Picture2_->source = [this]() {
    const Bitmap* sheet = TileSheet(s_);
    return sheet ? ImageOf(*sheet) : QImage();
  };
  Picture2_->onMouseDown = [this](int b, int sh, double x, double y) { Picture2_MouseDown(b, sh, x, y); };
  Picture2_->onMouseMove = [this](int b, int sh, double x, double y) { Picture2_MouseMove(b, sh, x, y); };
  VScroll1_ = new QScrollBar(Qt::Vertical, c);
  VScroll1_->setObjectName(QStringLiteral("VScroll1"));
  HScroll1_ = new QScrollBar(Qt::Horizontal, c);
  HScroll1_->setObjectName(QStringLiteral("HScroll1"));
  connect(HScroll1_, &QScrollBar::valueChanged, this, &Form2::HScroll1_Change);
  connect(VScroll1_, &QScrollBar::valueChanged, this, &Form2::VScroll1_Change);

  mOptions_ = menuBar()->addMenu(QStringLiteral("Options"));
  mOptions_->setObjectName(QStringLiteral("mOptions"));
  // Each entry opens a tile data screen; one the editor lacks is not offered.
  auto* main = qobject_cast<Form1*>(parent);
  const struct {
    const char* name;
    const char* caption;
    void (Form2::*handler)();
    const char* screen;
  } entries[] = {{"mTerrain", "Terrain Type", &Form2::mTerrain_Click, "Form14"},
                 {"mRoads", "Road Connections", &Form2::mRoads_Click, "Form11"},
                 {"mPatterns", "Tile Patterns", &Form2::mPatterns_Click, "Form13"}};
  for (const auto& e : entries) {
    QAction* a = mOptions_->addAction(QString::fromLatin1(e.caption));
    a->setObjectName(QString::fromLatin1(e.name));
    connect(a, &QAction::triggered, this, e.handler);
    a->setEnabled(main && main->HasForm(QString::fromLatin1(e.screen)));
  }
  keys_ = new KeyPreview(this, [this](int code, int shift) { Form_KeyDown(code, shift); });
  Form_Load();
}

void Form2::Form_Load() {
  const int barW = VScroll1_->sizeHint().width(), barH = HScroll1_->sizeHint().height();
  const Bitmap* sheet = TileSheet(s_);
  // The sheet keeps its own size, with the picture's border around it.
  Picture2_->resize((sheet ? sheet->Width() : 0) + kPictureBorder, (sheet ? sheet->Height() : 0) + kPictureBorder);
  // The form's width spans the sheet and the bar.
  const int clientW = Picture2_->width() + barW, clientH = kFrameHeight + barH;
  resize(clientW, clientH + menuBar()->sizeHint().height());
  loaded_ = true;
  Form_Resize();
}

void Form2::Form_Resize() {
  if (!loaded_ || isMinimized()) return;
  QWidget* c = centralWidget();
  const int barW = VScroll1_->sizeHint().width(), barH = HScroll1_->sizeHint().height();
  const PickerLayout l =
      LayoutTilePicker(s_.ref, c->width(), c->height(), barW, barH, Picture2_->width(), Picture2_->height());
  Picture1_->setGeometry(l.Picture1.Left, l.Picture1.Top, l.Picture1.Width, l.Picture1.Height);
  Picture2_->move(0, 0);
  VScroll1_->setGeometry(l.VScroll1.Left, l.VScroll1.Top, l.VScroll1.Width, l.VScroll1.Height);
  HScroll1_->setGeometry(l.HScroll1.Left, l.HScroll1.Top, l.HScroll1.Width, l.HScroll1.Height);
  for (auto [bar, m] : {std::pair{VScroll1_, l.V}, std::pair{HScroll1_, l.H}}) {
    const QSignalBlocker block(bar);
    bar->setRange(0, std::max(0, m.Max));
    bar->setSingleStep(m.SmallChange);
    bar->setPageStep(m.LargeChange);
    bar->setValue(0);
  }
}

void Form2::resizeEvent(QResizeEvent* e) {
  QMainWindow::resizeEvent(e);
  Form_Resize();
}

void Form2::HScroll1_Change() { Picture2_->move(-HScroll1_->value(), Picture2_->y()); }
void Form2::VScroll1_Change() { Picture2_->move(Picture2_->x(), -VScroll1_->value()); }

void Form2::AfterPick() {
  if (auto* main = dynamic_cast<VbForm*>(parentWidget())) main->SyncControls();
}

void Form2::Picture2_MouseDown(int Button, int Shift, double X, double Y) {
  const bool popup = TilePicker_MouseDown(s_, Button, Shift, X, Y);
  Picture2_->update();
  AfterPick();
  if (popup) {
    ++popups_;
    if (!Script().active) mOptions_->popup(QCursor::pos());
  }
}

void Form2::Picture2_MouseMove(int Button, int Shift, double X, double Y) {
  TilePicker_MouseMove(s_, Button, Shift, X, Y);
  SyncControls();
}

void Form2::Form_KeyDown(int KeyCode, int Shift) { TilePicker_KeyDown(s_, KeyCode, Shift); }
void Form2::mTerrain_Click() { TilePicker_mTerrain_Click(s_); }
void Form2::mRoads_Click() { TilePicker_mRoads_Click(s_); }
void Form2::mPatterns_Click() { TilePicker_mPatterns_Click(s_); }

void Form2::SyncControls() {
  const QString caption = Latin1(s_.ed.picker.Caption);
  if (windowTitle() != caption) setWindowTitle(caption);
}

bool Form2::GetOwnProperty(QObject* ctl, const QString& prop, QString* out) {
  if (ctl == this && prop.compare(QStringLiteral("Caption"), Qt::CaseInsensitive) == 0) {
    *out = windowTitle();
    return true;
  }
  if (ctl == this && prop.compare(QStringLiteral("KeyPreview"), Qt::CaseInsensitive) == 0) {
    *out = QStringLiteral("-1");
    return true;
  }
  return false;
}

}  // namespace kv::gui

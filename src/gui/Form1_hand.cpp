// The main window's comfort layer: the status bar, the keys in the menus, the
// tool windows, the layout on every change of size, the zoom, the wheel and
// drag painting. All of it calls the classic handlers and changes none.
#include <cmath>

#include <QAction>
#include <QApplication>
#include <QKeySequence>
#include <QLabel>
#include <QLayout>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QResizeEvent>
#include <QScreen>
#include <QScrollBar>
#include <QSettings>
#include <QWheelEvent>

#include "editing/editing.h"
#include "gui/Form1.h"
#include "gui/Form5.h"
#include "gui/PictureBox.h"
#include "gui/statusbar.h"
#include "gui/toolwindows.h"
#include "gui/usersettings.h"
#include "jumpmap/livejump.h"
#include "session.h"
#include "view/render_api.h"
#include "view/scrolling.h"
#include "view/spritebank.h"
#include "view/zoom.h"
#include "view/zoomgrid.h"

namespace kv::gui {

namespace {

// Keys shown beside the menu entries. Those the main window's key handler
// already answers are shown only (the entry answers them while the menu is
// open); the others are the entries' own shortcuts.
struct MenuKey {
  const char* entry;
  const char* key;
  bool own;
};
const MenuKey kMenuKeys[] = {
    {"menu_file_new", "Ctrl+N", true},
    {"menu_file_open", "Ctrl+O", true},
    {"menu_file_save", "Ctrl+S", true},
    {"menu_file_save_as", "Ctrl+Shift+S", true},
    {"menu_file_exit", "Ctrl+Q", true},
    {"mUndo", "F7", false},
    {"mCopy", "Ctrl+C", true},
    {"mPaste", "Ctrl+V", true},
    {"StrategicShow", "F1", false},
    {"helpscreen", "/", false},
    {"mRandom", "R", false},
    {"mHexSides", "Ctrl+H", true},
    {"mGrid", "Ctrl+G", true},
    {"HexControlOn", "F3", false},
};

}  // namespace

void Form1::BuildHand() {
  Session& s = *session_;
  status_ = new PenStatusBar(this);
  setStatusBar(status_);
  tools_ = new ToolWindows(this);
  for (const MenuKey& k : kMenuKeys) {
    auto* a = findChild<QAction*>(QString::fromLatin1(k.entry));
    if (!a) continue;
    a->setShortcut(QKeySequence(QString::fromLatin1(k.key)));
    // A key the main window handles itself only shows beside its entry.
    a->setShortcutContext(k.own ? Qt::WindowShortcut : Qt::WidgetShortcut);
    if (k.own) addAction(a);
  }
  // The zoom has keys, the wheel and the status bar (a menu of its own would
  // change the design's menu bar).
  auto zoomKey = [this](const QKeySequence& seq, int dir) {
    auto* a = new QAction(this);
    a->setShortcut(seq);
    a->setShortcutContext(Qt::WindowShortcut);
    connect(a, &QAction::triggered, this, [this, dir]() {
      const int z = dir == 0 ? 100 : ZoomStep(session_->view.Zoom, dir);
      const QPoint c(Picture1_->width() / 2, Picture1_->height() / 2);
      SetZoom(z, c);
    });
    addAction(a);
  };
  zoomKey(QKeySequence(Qt::CTRL | Qt::Key_Plus), +1);
  zoomKey(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Plus), +1);
  zoomKey(QKeySequence(Qt::CTRL | Qt::Key_Equal), +1);
  zoomKey(QKeySequence(Qt::CTRL | Qt::Key_Minus), -1);
  zoomKey(QKeySequence(Qt::CTRL | Qt::Key_0), 0);
  Picture1_->onMouseUp = [this](int b, int, double, double) { ReleaseOnView(b); };
  // An open jump map follows every edit, hex by hex.
  auto before = ui_.onMapChanged;
  ui_.onMapChanged = [this, before](const MapChange& c) {
    if (before) before(c);
    if (c.kind != MapChange::Kind::Edit || !hand_.LiveJumpMap) return;
    if (JumpMapFollow(*session_, c.area) && form5_) form5_->Refresh();
  };
  Picture1_->onWheel = [this](int dy, int dx, int shift, double x, double y) { Wheel(dy, dx, shift, x, y); };
  (void)s;
}

int Form1::Zoom() const { return session_->view.Zoom; }

void Form1::SyncHand() {
  if (status_) status_->ShowPen(*session_, session_->view.Zoom);
}

void Form1::resizeEvent(QResizeEvent* ev) {
  QMainWindow::resizeEvent(ev);
  FitToWindow();
}

namespace {

int HintW(QWidget* w, int design) { return std::max(design, w->sizeHint().width()); }
int HintH(QWidget* w, int design) { return std::max(design, w->sizeHint().height()); }

}  // namespace

MainLayout Form1::FittedLayout(int W, int H) {
  Session& s = *session_;
  // The classic rules for this size, then every control at least as large as
  // its caption needs, the rows after it moved along.
  auto make = [&](int h) {
    const ViewState keep = s.view;
    MainLayout l = LayoutMainWindow(s, W, h, false);
    s.view = keep;
    LayoutLoadTail(l);
    return l;
  };
  auto widen = [&](MainLayout& l) {
    // The top row.
    int x = l.Text1.Left + l.Text1.Width;
    for (auto [w, r] : {std::pair<QWidget*, Rect*>{Command1_, &l.Command1},
                        {Command3_, &l.Command3},
                        {Command5_, &l.Command5},
                        {Command6_, &l.Command6},
                        {Command2_, &l.Command2}}) {
      r->Left = x;
      r->Width = HintW(w, r->Width);
      r->Height = HintH(w, r->Height);
      x += r->Width;
    }
    l.Label3.Left = x + 8;
    // The bottom panel, column by column.
    struct Col {
      std::vector<std::pair<QWidget*, Rect*>> members;
      int gap;
    };
    std::vector<Col> cols = {
        {{{Label1_, &l.Label1}, {Label2_, &l.Label2}}, 0},
        {{{Text2_, &l.Text2}, {Label4_, &l.Label4}}, 40},
        {{{Command4_, &l.Command4}, {Command7_, &l.Command7}}, 0},
        {{{Text3_[0], &l.Text3_0}, {Text3_[1], &l.Text3_1}}, 0},
        {{{Command8_, &l.Command8}, {Text3_[2], &l.Text3_2}, {Label5_, &l.Label5}}, 0},
        {{{Label6_, &l.Label6}, {Text4_, &l.Text4}}, 0},
        {{{Command9_, &l.Command9}}, 0},
    };
    // A column that would end past the window's right edge starts a second
    // row under the first, from the panel's left edge (a small screen at a
    // large scale factor is narrower than the panel).
    x = l.Picture2.Left + l.Picture2.Width;
    int rowTop = l.Picture2.Top, rowBottom = l.Picture2.Top + l.Picture2.Height;
    bool first = true;
    for (Col& c : cols) {
      int w = 0;
      for (auto& [wd, r] : c.members) w = std::max(w, HintW(wd, r->Width));
      if (!first && x + c.gap + w > W) {
        x = l.Picture2.Left;
        rowTop = rowBottom + 4;
      } else {
        x += c.gap;
      }
      first = false;
      int y = rowTop;
      for (auto& [wd, r] : c.members) {
        r->Left = x;
        r->Top = y;
        r->Width = w;
        r->Height = HintH(wd, r->Height);
        y += r->Height;
      }
      rowBottom = std::max(rowBottom, y);
      x += w;
    }
  };
  MainLayout l = make(H);
  widen(l);
  // The bottom panel must end inside the window: take the rows it needs.
  auto panelBottom = [](const MainLayout& m) {
    int b = m.Picture2.Top + m.Picture2.Height;
    for (const Rect* r : {&m.Label2, &m.Label4, &m.Command7, &m.Text3_1, &m.Label5, &m.Text4, &m.Command9})
      b = std::max(b, r->Top + r->Height);
    return b;
  };
  const int bottom = panelBottom(l);
  if (bottom > H) {
    l = make(H - (bottom - H));
    widen(l);
  }
  return l;
}

void Form1::FitToWindow() {
  Session& s = *session_;
  if (!loaded_ || unloaded_ || !hand_.LayoutFollowsWindow) return;
  // A window not shown (a script's) lays out its parts only when asked: the
  // view then follows the window's size, not the size the parts had at start.
  if (!isVisible() && layout()) layout()->activate();
  QWidget* c = centralWidget();
  const int W = c->width(), H = c->height();
  if (W <= 0 || H <= 0) return;
  const MainLayout l = FittedLayout(W, H);
  // The view: the picture's inside at the zoom, in the view's own pixels.
  ViewState& v = s.view;
  const int z = s.view.Zoom;
  const int pixW = std::max(1, static_cast<int>(ScaleAcross(s.ref, z).Full(l.Picture1.Width - kPictureBorder)));
  const int pixH = std::max(1, static_cast<int>(ScaleDown(s.ref, z).Full(l.Picture1.Height - kPictureBorder)));
  const auto cols = static_cast<int16_t>(std::max(0, (pixW + kPictureBorder) / s.ref.ColPitch - 1));
  const auto rows = static_cast<int16_t>(std::max(0, (pixH + kPictureBorder) / s.ref.RowPitch - 1));
  const bool viewChanged = pixW != v.ViewPixW || pixH != v.ViewPixH || cols != v.ViewCols || rows != v.ViewRows;
  layout_ = l;
  ApplyLayout(true);
  Picture1_->scale = 1.0;  // the view is composed at the zoom's own size
  // The smallest window that shows every control and a few hexes.
  int minW = l.Label3.Left + Label3_->sizeHint().width(), minH = 0;
  for (const Rect* r : {&l.Command9, &l.Label5, &l.Text4, &l.Label2})
    minW = std::max(minW, r->Left + r->Width), minH = std::max(minH, r->Top + r->Height);
  minH = minH - (l.Picture1.Height) + 2 * s.ref.RowPitch * z / 100 + kPictureBorder;
  // Never more than the screen holds (at a large scale factor a small screen
  // is smaller than every control together).
  if (QScreen* sc = isVisible() ? screen() : nullptr) {
    const QRect avail = sc->availableGeometry();
    minW = std::min(minW, avail.width() - 16);
    minH = std::min(minH, avail.height() - menuBar()->height() - (status_ ? status_->height() : 0) - 48);
  }
  c->setMinimumSize(std::max(minW, 200), std::max(minH, 100));
  if (!viewChanged) return;
  v.ViewPixW = pixW;
  v.ViewPixH = pixH;
  v.ViewCols = cols;
  v.ViewRows = rows;
  v.HScroll1.Max = s.doc.MapMaxX - cols;
  v.VScroll1.Max = s.doc.MapMaxY - rows;
  v.ViewMaxX = v.HScroll1.Max;
  v.ViewMaxY = v.VScroll1.Max;
  v.HScroll1.LargeChange = std::max<int>(1, cols);
  v.VScroll1.LargeChange = std::max<int>(1, rows);
  // The view keeps its origin as far as the new ranges allow.
  v.ViewX = std::clamp<int32_t>(v.ViewX, 0, std::max(0, v.HScroll1.Max));
  v.ViewY = std::clamp<int32_t>(v.ViewY, 0, std::max(0, v.VScroll1.Max));
  v.HScroll1.Value = v.ViewX;
  v.VScroll1.Value = v.ViewY;
  SpriteBank& b = s.sprites;
  ComputeBufferSize(s, b.BufW, b.BufH);
  b.BufDC.Create(b.BufW, b.BufH);
  RedrawBuffers(s);
  SyncControls();
}

void Form1::SetZoom(int percent, QPoint at) {
  Session& s = *session_;
  percent = std::clamp(percent, kZoomMin, kZoomMax);
  const int old = session_->view.Zoom;
  if (percent == old) return;
  // The hex under the point stays under it.
  int32_t vx = s.view.ViewX, vy = s.view.ViewY;
  OriginKeepingPoint(s, at.x() - 2, at.y() - 2, percent, vx, vy);
  s.view.Zoom = static_cast<int16_t>(percent);
  s.view.ViewX = vx;
  s.view.ViewY = vy;
  if (loaded_ && hand_.LayoutFollowsWindow) {
    s.view.ViewPixW = -1;  // the view is laid out and drawn anew
    FitToWindow();
  }
  if (QSettings* st = UserSettings()) st->setValue(QStringLiteral("Zoom"), percent);
  SyncControls();
}

void Form1::Wheel(int dy, int dx, int shift, double x, double y) {
  Session& s = *session_;
  if (shift & 2) {
    // Ctrl+wheel: a zoom step a notch, round the hex under the pointer.
    if (dy == 0) return;
    SetZoom(ZoomStep(session_->view.Zoom, dy > 0 ? +1 : -1), QPoint(static_cast<int>(x) + 2, static_cast<int>(y) + 2));
    return;
  }
  // Three rows (or columns) a notch, one step at a time through the bars,
  // so that each is the one-step scroll.
  wheelRest_ += (shift & 1) && dx == 0 ? dy : (dx != 0 ? dx : dy);
  const bool horizontal = (shift & 1) || dx != 0;
  while (std::abs(wheelRest_) >= 40) {
    const int step = wheelRest_ > 0 ? -1 : +1;  // the wheel away from the user scrolls up (or left)
    wheelRest_ += step * 40;
    const ScrollBarModel& b = horizontal ? s.view.HScroll1 : s.view.VScroll1;
    const int to = b.Value + step;
    if (to < b.Min || to > b.Max) continue;
    SetScrollValue(s, horizontal ? Bar::H : Bar::V, to);
  }
  SyncControls();
}

void Form1::PressOnView(int button, int shift, double x, double y) {
  Session& s = *session_;
  // Shift as the press has it: a key pressed while another window had the
  // focus (the tile picker) never reached this window's key handlers.
  s.pens.ShiftKey = static_cast<int16_t>(shift);
  // The handler takes the point of the view and finds the hex through the view transform.
  const double X = x, Y = y;
  // A plain left press in a painting mode starts a stroke, its own hex first.
  EndStroke();
  const bool stroke =
      button == 1 && shift == 0 && s.pens.CtlMode != 3 && !(s.pens.CtlMode == 1 && s.pens.CurNation == 0);
  if (stroke && onStrokeBegin) onStrokeBegin();
  Picture1_MouseDown(button, shift, X, Y);
  stroke_ = stroke;
  strokeX_ = X;
  strokeY_ = Y;
}

void Form1::MoveOnView(int buttons, int shift, double x, double y) {
  Session& s = *session_;
  const double X = x, Y = y;
  if (stroke_ && (buttons & 1)) StrokeTo(X, Y);
  Picture1_MouseMove(buttons, shift, X, Y);
  int16_t hx = 0, hy = 0;
  ViewPointHex(s, X, Y, hx, hy);
  if (status_) status_->ShowHex(hx, hy);
}

void Form1::StrokeTo(double X, double Y) {
  Session& s = *session_;
  // Every hex the pointer enters on its way is painted once, as a click there.
  for (const PathHex& h : HexesAlong(s, strokeX_, strokeY_, X, Y)) {
    if (!stroke_) break;
    Picture1_MouseDown(1, 0, h.X, h.Y);
  }
  strokeX_ = X;
  strokeY_ = Y;
}

void Form1::EndStroke() {
  if (!stroke_) return;
  stroke_ = false;
  if (onStrokeEnd) onStrokeEnd();
}

void Form1::ReleaseOnView(int button) {
  if (button == 1) EndStroke();
}

}  // namespace kv::gui

#include "gui/toolwindows.h"

#include <QEvent>
#include <QGuiApplication>
#include <QScreen>
#include <QSettings>
#include <QTimer>
#include <QWidget>
#include <QWindow>

#include "gui/usersettings.h"

namespace kv::gui {

namespace {
// Room for the frame the window manager puts round a window.
constexpr int kFrameSide = 8, kFrameTop = 32;
const char* const kRestored = "kvRestored";

QString Key(const QWidget* w) { return QStringLiteral("Windows/") + w->objectName(); }
}  // namespace

void ToolWindows::Adopt(QWidget* w) {
  if (!w || !w->isWindow()) return;
  // A utility window of the main window: the window manager keeps it above.
  if (w->windowType() == Qt::Window) w->setWindowFlag(Qt::Tool, true);
  // The main window's own window exists from here on, so that a tool window
  // shown before it (the picker at start) is still known to belong to it.
  if (QWidget* main = w->parentWidget(); main && !main_) {
    main_ = main->window();
    main_->winId();
    main_->installEventFilter(this);
  }
  adopted_.append(w);
  w->installEventFilter(this);
}

void ToolWindows::KeepOnScreen(QWidget* w) {
  QScreen* screen = w->screen() ? w->screen() : QGuiApplication::primaryScreen();
  if (!screen) return;
  const QRect avail = screen->availableGeometry();
  QRect g = w->geometry();
  const int maxW = avail.width() - 2 * kFrameSide, maxH = avail.height() - kFrameTop - kFrameSide;
  if (g.width() > maxW || g.height() > maxH) {
    g.setSize(QSize(std::min(g.width(), maxW), std::min(g.height(), maxH)).expandedTo(w->minimumSize()));
    w->resize(g.size());
  }
  int x = std::clamp(g.x(), avail.left() + kFrameSide,
                     std::max(avail.left() + kFrameSide, avail.right() + 1 - kFrameSide - g.width()));
  int y = std::clamp(g.y(), avail.top() + kFrameTop,
                     std::max(avail.top() + kFrameTop, avail.bottom() + 1 - kFrameSide - g.height()));
  if (x != g.x() || y != g.y()) w->move(x, y);
}

void ToolWindows::Remember(QWidget* w) {
  if (QSettings* st = UserSettings()) st->setValue(Key(w), w->geometry());
}

void ToolWindows::Belong(QWidget* w) {
  if (main_ && w->windowHandle() && main_->windowHandle()) w->windowHandle()->setTransientParent(main_->windowHandle());
}

bool ToolWindows::eventFilter(QObject* obj, QEvent* ev) {
  auto* w = qobject_cast<QWidget*>(obj);
  if (w && w == main_) {
    // The main window appears: the tool windows shown before it go above it.
    // The window manager learns that a window belongs to another when it
    // maps it: one mapped before the main window is mapped again once the
    // main window is on the screen.
    if (ev->type() == QEvent::Show)
      QTimer::singleShot(300, this, [this]() {
        for (const QPointer<QWidget>& t : adopted_)
          if (t && t->isVisible() && main_ && main_->isVisible()) {
            t->hide();
            Belong(t);
            t->show();
          }
      });
    return QObject::eventFilter(obj, ev);
  }
  if (!w || !w->isWindow()) return QObject::eventFilter(obj, ev);
  switch (ev->type()) {
    case QEvent::Show:
      // Where the user left it, the first time it shows in this run.
      if (!w->property(kRestored).toBool()) {
        w->setProperty(kRestored, true);
        if (QSettings* st = UserSettings()) {
          const QRect g = st->value(Key(w)).toRect();
          if (g.isValid()) w->setGeometry(g);
        }
      }
      KeepOnScreen(w);
      Belong(w);
      break;
    case QEvent::Move:
    case QEvent::Resize:
    case QEvent::Hide:
      if (w->isVisible() || ev->type() == QEvent::Hide) Remember(w);
      break;
    default: break;
  }
  return QObject::eventFilter(obj, ev);
}

}  // namespace kv::gui

#include "gui/toolwindows.h"

#include <QEvent>
#include <QGuiApplication>
#include <QScreen>
#include <QSettings>
#include <QWidget>

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
  if (!qobject_cast<QWidget*>(w->parent()) || w->windowType() == Qt::Window) w->setWindowFlag(Qt::Tool, true);
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
  int x = std::clamp(g.x(), avail.left() + kFrameSide, std::max(avail.left() + kFrameSide, avail.right() + 1 - kFrameSide - g.width()));
  int y = std::clamp(g.y(), avail.top() + kFrameTop, std::max(avail.top() + kFrameTop, avail.bottom() + 1 - kFrameSide - g.height()));
  if (x != g.x() || y != g.y()) w->move(x, y);
}

void ToolWindows::Remember(QWidget* w) {
  if (QSettings* st = UserSettings()) st->setValue(Key(w), w->geometry());
}

bool ToolWindows::eventFilter(QObject* obj, QEvent* ev) {
  auto* w = qobject_cast<QWidget*>(obj);
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
      break;
    case QEvent::Move:
    case QEvent::Resize:
    case QEvent::Hide:
      if (w->isVisible() || ev->type() == QEvent::Hide) Remember(w);
      break;
    default:
      break;
  }
  return QObject::eventFilter(obj, ev);
}

}  // namespace kv::gui

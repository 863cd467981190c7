#include "gui/formkit.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>

#include "gui/PictureBox.h"
#include "platform/bitmap.h"

namespace kv::gui {

int VbKeyCode(const QKeyEvent* e) {
  const int k = e->key();
  if (k >= Qt::Key_F1 && k <= Qt::Key_F12) return 112 + (k - Qt::Key_F1);
  if (k >= Qt::Key_A && k <= Qt::Key_Z) return 65 + (k - Qt::Key_A);
  if (k >= Qt::Key_0 && k <= Qt::Key_9) return 48 + (k - Qt::Key_0);
  switch (k) {
    case Qt::Key_Left: return 37;
    case Qt::Key_Up: return 38;
    case Qt::Key_Right: return 39;
    case Qt::Key_Down: return 40;
    case Qt::Key_Slash:
    case Qt::Key_Question: return 191;
    case Qt::Key_Shift: return 16;
    case Qt::Key_Control: return 17;
    case Qt::Key_Alt: return 18;
    case Qt::Key_Return:
    case Qt::Key_Enter: return 13;
    case Qt::Key_Escape: return 27;
    case Qt::Key_Space: return 32;
    default: return 0;
  }
}

QImage ImageOf(const Bitmap& bm) {
  if (bm.Empty()) return {};
  return QImage(reinterpret_cast<const uchar*>(bm.Pixels().data()), bm.Width(), bm.Height(), bm.Width() * 4,
                QImage::Format_RGB32);
}

QString Latin1(const std::string& s) { return QString::fromLatin1(s.data(), static_cast<qsizetype>(s.size())); }
std::string Latin1(const QString& q) { return q.toLatin1().toStdString(); }

void SetBold(QLabel* l, bool bold) {
  QFont f = l->font();
  if (f.bold() != bold) {
    f.setBold(bold);
    l->setFont(f);
  }
}

ClickLabel::ClickLabel(const QString& name, const QString& text, QWidget* parent) : QLabel(text, parent) {
  setObjectName(name);
}

void ClickLabel::mousePressEvent(QMouseEvent* e) {
  QLabel::mousePressEvent(e);
  if (onClick) onClick();
}

KeyPreview::KeyPreview(QWidget* form, std::function<void(int, int)> onKey)
    : QObject(form), form_(form), onKey_(std::move(onKey)) {
  // Not while an event is being delivered: a filter installed then would let
  // the application's other filters see that event a second time.
  QMetaObject::invokeMethod(
      this, [this]() { qApp->installEventFilter(this); }, Qt::QueuedConnection);
}

KeyPreview::~KeyPreview() { qApp->removeEventFilter(this); }

bool KeyPreview::eventFilter(QObject* obj, QEvent* ev) {
  if (ev->type() != QEvent::KeyPress || !enabled) return false;
  auto* w = qobject_cast<QWidget*>(obj);
  if (!w || w->window() != form_) return false;
  // A key the focused control ignores travels on to its parents: take it once,
  // at its first stop.
  QWidget* focus = QApplication::focusWidget();
  if (focus && focus->window() == form_ ? w != focus : w != form_) return false;
  auto* ke = static_cast<QKeyEvent*>(ev);
  const int code = VbKeyCode(ke);
  // Function keys and letters are the form's; the rest go on to the control.
  if (code >= 112 && code <= 123) {
    onKey_(code, PictureBox::ShiftState(ke->modifiers()));
    return true;
  }
  if (code != 0) onKey_(code, PictureBox::ShiftState(ke->modifiers()));
  return false;
}

}  // namespace kv::gui

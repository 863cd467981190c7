#include "gui/PictureBox.h"

#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>

namespace kv::gui {

namespace {
constexpr int kBorder = 2;
int ButtonCode(Qt::MouseButton b) {
  switch (b) {
    case Qt::LeftButton: return 1;
    case Qt::RightButton: return 2;
    case Qt::MiddleButton: return 4;
    default: return 0;
  }
}
}  // namespace

PictureBox::PictureBox(const QString& name, QWidget* parent) : QWidget(parent) {
  setObjectName(name);
  setMouseTracking(true);
  setFocusPolicy(Qt::ClickFocus);
  setAttribute(Qt::WA_OpaquePaintEvent);
}

int PictureBox::ShiftState(Qt::KeyboardModifiers m) {
  return (m & Qt::ShiftModifier ? 1 : 0) | (m & Qt::ControlModifier ? 2 : 0) | (m & Qt::AltModifier ? 4 : 0);
}

void PictureBox::paintEvent(QPaintEvent*) {
  QPainter p(this);
  p.fillRect(rect(), palette().color(QPalette::Window));
  p.fillRect(rect().adjusted(kBorder, kBorder, -kBorder, -kBorder), Qt::black);
  if (source) {
    const QImage img = source();
    if (!img.isNull()) {
      p.setClipRect(rect().adjusted(kBorder, kBorder, -kBorder, -kBorder));
      if (scale == 1.0) {
        p.drawImage(kBorder, kBorder, img);
      } else {
        // Enlarged pixel by pixel (sharp); made smaller, averaged.
        p.setRenderHint(QPainter::SmoothPixmapTransform, scale < 1.0);
        p.drawImage(QRectF(kBorder, kBorder, img.width() * scale, img.height() * scale), img);
      }
      p.setClipping(false);
    }
  }
  p.setPen(palette().color(QPalette::Dark));
  p.drawRect(rect().adjusted(0, 0, -1, -1));
  p.setPen(palette().color(QPalette::Shadow));
  p.drawRect(rect().adjusted(1, 1, -2, -2));
}

void PictureBox::mousePressEvent(QMouseEvent* e) {
  const QPointF pos = e->position() - QPointF(kBorder, kBorder);
  if (onMouseDown) onMouseDown(ButtonCode(e->button()), ShiftState(e->modifiers()), pos.x(), pos.y());
}

void PictureBox::mouseReleaseEvent(QMouseEvent* e) {
  const QPointF pos = e->position() - QPointF(kBorder, kBorder);
  if (onMouseUp) onMouseUp(ButtonCode(e->button()), ShiftState(e->modifiers()), pos.x(), pos.y());
}

void PictureBox::wheelEvent(QWheelEvent* e) {
  if (!onWheel) {
    QWidget::wheelEvent(e);
    return;
  }
  const QPointF pos = e->position() - QPointF(kBorder, kBorder);
  onWheel(e->angleDelta().y(), e->angleDelta().x(), ShiftState(e->modifiers()), pos.x(), pos.y());
  e->accept();
}

void PictureBox::mouseMoveEvent(QMouseEvent* e) {
  const QPointF pos = e->position() - QPointF(kBorder, kBorder);
  int b = 0;
  if (e->buttons() & Qt::LeftButton) b |= 1;
  if (e->buttons() & Qt::RightButton) b |= 2;
  if (onMouseMove) onMouseMove(b, ShiftState(e->modifiers()), pos.x(), pos.y());
}

}  // namespace kv::gui

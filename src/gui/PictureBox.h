// A picture control: shows an image at its top left inside a 2-pixel sunken
// border and reports mouse presses and moves in its own pixels, with the
// button (1 left, 2 right, 4 middle) and shift state (1 shift, 2 control, 4 alt).
#pragma once

#include <functional>

#include <QImage>
#include <QWidget>

namespace kv::gui {

class PictureBox : public QWidget {
  Q_OBJECT
 public:
  explicit PictureBox(const QString& name, QWidget* parent);
  // The image shown; the function is asked at each paint, so the picture can
  // live elsewhere (the view surface of the renderer).
  std::function<QImage()> source;
  std::function<void(int button, int shift, double x, double y)> onMouseDown, onMouseMove, onMouseUp;
  // A turn of the wheel: dy and dx in eighths of a degree (120 a notch).
  std::function<void(int dy, int dx, int shift, double x, double y)> onWheel;
  // The image is shown at this size (1: pixel for pixel), sharp when enlarged.
  double scale = 1.0;
  static int ShiftState(Qt::KeyboardModifiers m);

 protected:
  void paintEvent(QPaintEvent*) override;
  void mousePressEvent(QMouseEvent* e) override;
  void mouseMoveEvent(QMouseEvent* e) override;
  void mouseReleaseEvent(QMouseEvent* e) override;
  void wheelEvent(QWheelEvent* e) override;
};

}  // namespace kv::gui

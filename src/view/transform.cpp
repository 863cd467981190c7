#include "view/transform.h"

#include "platform/textfields.h"
#include "view/geometry.h"

namespace kv {

namespace {

// Rounds a pixel position given in fractions, kept inside the 32-bit range.
int32_t RoundPixel(double v) {
  const double r = RoundHalfEven(v);
  if (r > 2e9) return 2000000000;
  if (r < -2e9) return -2000000000;
  return static_cast<int32_t>(r);
}

}  // namespace

void ViewTransform::ViewToMap(double X, double Y, int32_t& mx, int32_t& my) const {
  if (zoom_ != 100) {
    X = X * 100.0 / zoom_;
    Y = Y * 100.0 / zoom_;
  }
  mx = RoundPixel(X + static_cast<double>(colPitch_) * viewX_);
  my = RoundPixel(Y + static_cast<double>(rowPitch_) * viewY_);
}

void ViewTransform::MapToView(double mx, double my, double& X, double& Y) const {
  X = mx - static_cast<double>(colPitch_) * viewX_;
  Y = my - static_cast<double>(rowPitch_) * viewY_;
  if (zoom_ != 100) {
    X = X * zoom_ / 100.0;
    Y = Y * zoom_ / 100.0;
  }
}

void ViewTransform::HexAt(double X, double Y, int maxX, int maxY, int16_t& x, int16_t& y) const {
  int32_t mx = 0, my = 0;
  ViewToMap(X, Y, mx, my);
  pixel_hex(*ref_, maxX, maxY, mx, my, x, y);
}

void ViewTransform::HexCentre(int x, int y, double& X, double& Y) const {
  int32_t px = 0, py = 0;
  HexToPixel(*ref_, x, y, px, py);
  MapToView(px + colPitch_ / 2, py + rowPitch_ / 2, X, Y);
}

}  // namespace kv

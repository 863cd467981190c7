#include "view/transform.h"

#include <algorithm>
#include <cmath>

#include "platform/textfields.h"
#include "view/geometry.h"
#include "view/zoomgrid.h"

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
    // The pixel under the point, and the map pixel it shows on the zoomed grid.
    const ZoomGrid g(*ref_, view_);
    const double gx = std::clamp(std::floor(X), -1e9, 1e9) + static_cast<double>(g.viewGX);
    const double gy = std::clamp(std::floor(Y), -1e9, 1e9) + static_cast<double>(g.viewGY);
    mx = static_cast<int32_t>(std::clamp<int64_t>(g.sx.MapOf(static_cast<int64_t>(gx)), -2000000000, 2000000000));
    my = static_cast<int32_t>(std::clamp<int64_t>(g.sy.MapOf(static_cast<int64_t>(gy)), -2000000000, 2000000000));
    return;
  }
  mx = RoundPixel(X + static_cast<double>(colPitch_) * viewX_);
  my = RoundPixel(Y + static_cast<double>(rowPitch_) * viewY_);
}

void ViewTransform::MapToView(double mx, double my, double& X, double& Y) const {
  if (zoom_ != 100) {
    const ZoomGrid g(*ref_, view_);
    X = mx * static_cast<double>(g.sx.num) / static_cast<double>(g.sx.den) - static_cast<double>(g.viewGX);
    Y = my * static_cast<double>(g.sy.num) / static_cast<double>(g.sy.den) - static_cast<double>(g.viewGY);
    return;
  }
  X = mx - static_cast<double>(colPitch_) * viewX_;
  Y = my - static_cast<double>(rowPitch_) * viewY_;
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

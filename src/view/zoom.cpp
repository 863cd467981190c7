#include "view/zoom.h"

#include <algorithm>
#include <cmath>

#include "view/geometry.h"
#include "view/mapview.h"
#include "view/transform.h"
#include "view/zoomgrid.h"

namespace kv {

namespace {
constexpr int kSteps[] = {25, 33, 50, 67, 75, 100, 125, 150, 175, 200};
}

int ZoomStep(int percent, int direction) {
  if (direction > 0) {
    for (int z : kSteps)
      if (z > percent) return z;
    return kZoomMax;
  }
  for (int i = static_cast<int>(std::size(kSteps)) - 1; i >= 0; --i)
    if (kSteps[i] < percent) return kSteps[i];
  return kZoomMin;
}

void ViewPointHex(const MapView& s, double X, double Y, int16_t& x, int16_t& y) {
  ViewTransform(s.ref, s.view).HexAt(X, Y, s.doc.MapMaxX, s.doc.MapMaxY, x, y);
}

void OriginKeepingPoint(const MapView& s, double wx, double wy, int newZoom, int32_t& viewX, int32_t& viewY) {
  const RefData& r = s.ref;
  // The map pixel under the point now, and the hex there.
  int32_t mx = 0, my = 0;
  ViewTransform(r, s.view).ViewToMap(wx, wy, mx, my);
  int16_t hx = 0, hy = 0;
  ViewPointHex(s, wx, wy, hx, hy);
  // The origin at the new zoom that puts the same map pixel under the point:
  // on the zoomed grid a column is sx.num pixels, a row sy.num.
  const ZoomScale sx = ScaleAcross(r, newZoom), sy = ScaleDown(r, newZoom);
  const double ex = static_cast<double>(mx) / r.ColPitch - std::floor(wx) / static_cast<double>(sx.num);
  const double ey = static_cast<double>(my) / r.RowPitch - std::floor(wy) / static_cast<double>(sy.num);
  viewX = static_cast<int32_t>(std::lround(ex));
  viewY = static_cast<int32_t>(std::lround(ey));
  ViewState after = s.view;
  after.Zoom = static_cast<int16_t>(newZoom);
  // The origins round the exact one, nearest first.
  const auto fx = static_cast<int32_t>(std::floor(ex)), fy = static_cast<int32_t>(std::floor(ey));
  for (int32_t cx : {fx, fx + 1, fx - 1, fx + 2})
    for (int32_t cy : {fy, fy + 1, fy - 1, fy + 2}) {
      after.ViewX = cx;
      after.ViewY = cy;
      int16_t tx = 0, ty = 0;
      ViewTransform(r, after).HexAt(wx, wy, s.doc.MapMaxX, s.doc.MapMaxY, tx, ty);
      if (tx == hx && ty == hy) {
        viewX = cx;
        viewY = cy;
        return;
      }
    }
}

std::vector<PathHex> HexesAlong(const MapView& s, double X0, double Y0, double X1, double Y1) {
  std::vector<PathHex> out;
  const ViewState& v = s.view;
  // Steps of at most a quarter of the smaller pitch: no hex is stepped over.
  const double step = std::max(1.0, ViewToWindow(std::min(s.ref.ColPitch, s.ref.RowPitch) / 4.0, v.Zoom));
  const ZoomGrid g(s.ref, v);
  const double right = g.picW, bottom = g.picH;
  const double len = std::hypot(X1 - X0, Y1 - Y0);
  const int n = std::max(1, static_cast<int>(std::ceil(len / step)));
  int16_t lx = 0, ly = 0;
  ViewPointHex(s, X0, Y0, lx, ly);
  for (int i = 1; i <= n; ++i) {
    const double X = X0 + (X1 - X0) * i / n, Y = Y0 + (Y1 - Y0) * i / n;
    if (X < 0 || Y < 0 || X >= right || Y >= bottom) continue;
    int16_t x = 0, y = 0;
    ViewPointHex(s, X, Y, x, y);
    if (x == lx && y == ly) continue;
    out.push_back({x, y, X, Y});
    lx = x;
    ly = y;
  }
  return out;
}

}  // namespace kv

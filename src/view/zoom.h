// The view's zoom and the pointer's path over the view. The window shows the
// view at a zoom from 25 % to 200 %; everything below works in the view's own
// pixels (the classic ones), and a point of the window becomes one by a
// division by the zoom, the one step between what the user points at and
// what the handlers take.
#pragma once

#include <cstdint>
#include <vector>

namespace kv {

struct Session;

constexpr int kZoomMin = 25, kZoomMax = 200;

// The next zoom step up (direction > 0) or down from `percent`, within the range.
int ZoomStep(int percent, int direction);
// A point of the window (its pixels inside the view's border) in view pixels.
inline double WindowToView(double windowPx, int zoomPercent) { return windowPx * 100.0 / zoomPercent; }
inline double ViewToWindow(double viewPx, int zoomPercent) { return viewPx * zoomPercent / 100.0; }

// The hex under a point of the view (view pixels), as a press there finds it.
void ViewPointHex(const Session& s, double X, double Y, int16_t& x, int16_t& y);

// The view origin that keeps the hex under window point (wx, wy) under it
// when the zoom goes from `oldZoom` to `newZoom`: of the origins next to the
// exact one, the first that keeps the hex, else the nearest.
void OriginKeepingPoint(const Session& s, double wx, double wy, int oldZoom, int newZoom, int32_t& viewX,
                        int32_t& viewY);

struct PathHex {
  int16_t x, y;
  double X, Y;  // a point of the view inside that hex, on the path
};
// The hexes the pointer enters on its way from (X0, Y0) to (X1, Y1) (view
// pixels), in order and without gaps, each with a point of the path inside
// it; the hex at the start is not listed. Points outside the view are left out.
std::vector<PathHex> HexesAlong(const Session& s, double X0, double Y0, double X1, double Y1);

}  // namespace kv

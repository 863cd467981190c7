// The view's zoom and the pointer's path over the view. The window shows the
// view at ViewState::Zoom, from 25 % to 200 %; points of the view are the
// window's pixels inside the picture's border, and every one of them becomes
// a hex through the one view transform (view/transform.h).
#pragma once

#include <cstdint>
#include <vector>

namespace kv {

struct MapView;

constexpr int kZoomMin = 25, kZoomMax = 200;

// The next zoom step up (direction > 0) or down from `percent`, within the range.
int ZoomStep(int percent, int direction);
// Sizes: the full-size pixels that a length of the window holds at a zoom, and back.
inline double WindowToView(double windowPx, int zoomPercent) { return windowPx * 100.0 / zoomPercent; }
inline double ViewToWindow(double viewPx, int zoomPercent) { return viewPx * zoomPercent / 100.0; }

// The hex under a point of the view at the view's zoom, as a press there finds it.
void ViewPointHex(const MapView& s, double X, double Y, int16_t& x, int16_t& y);

// The view origin that keeps the hex under point (wx, wy) of the view under it
// when the zoom goes from the view's to `newZoom`: of the origins next to the
// exact one, the first that keeps the hex, else the nearest.
void OriginKeepingPoint(const MapView& s, double wx, double wy, int newZoom, int32_t& viewX, int32_t& viewY);

struct PathHex {
  int16_t x, y;
  double X, Y;  // a point of the view inside that hex, on the path
};
// The hexes the pointer enters on its way from (X0, Y0) to (X1, Y1) (points
// of the view), in order and without gaps, each with a point of the path inside
// it; the hex at the start is not listed. Points outside the view are left out.
std::vector<PathHex> HexesAlong(const MapView& s, double X0, double Y0, double X1, double Y1);

}  // namespace kv

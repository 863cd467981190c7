// The one mapping between the map, the view surface (Picture1) and the
// off-screen buffer. Map pixels are HexToPixel's: hex (x, y)'s cell has its
// top left at (ColPitch * x, RowPitch * y), half a row lower in even columns.
// The view shows the map from the top left hex (ViewX, ViewY) at Zoom percent,
// on the zoomed grid of view/zoomgrid.h (its pixel G shows map pixel
// floor(G * 100 / Zoom)); the buffer holds the view at that size with one hex
// of margin on every side.
// Whatever turns a point into a hex or a hex into a point goes through here.
#pragma once

#include <cstdint>

#include "platform/events.h"
#include "refdata/refdata.h"
#include "view/viewstate.h"

namespace kv {

class ViewTransform {
 public:
  ViewTransform(const RefData& ref, const ViewState& view)
      : ref_(&ref),
        view_(view),
        colPitch_(ref.ColPitch),
        rowPitch_(ref.RowPitch),
        viewX_(view.ViewX),
        viewY_(view.ViewY),
        cols_(view.ViewCols),
        rows_(view.ViewRows),
        zoom_(view.Zoom > 0 ? view.Zoom : 100) {}

  int Zoom() const { return zoom_; }

  // The map pixel under view pixel (X, Y); the window system gives fractions,
  // which round to the nearest pixel, halves to even, at 100 %; at another
  // zoom, the map pixel that the pixel under the point shows.
  void ViewToMap(double X, double Y, int32_t& mx, int32_t& my) const;
  // The view pixel of map pixel (mx, my).
  void MapToView(double mx, double my, double& X, double& Y) const;
  // The hex under view pixel (X, Y), clamped to columns 0..maxX and rows 0..maxY.
  void HexAt(double X, double Y, int maxX, int maxY, int16_t& x, int16_t& y) const;
  // The middle of hex (x, y)'s cell in view pixels (where a click on it lands).
  void HexCentre(int x, int y, double& X, double& Y) const;
  // At 100 %: the top left of the cell whose map pixel is (mx, my), in view
  // pixels (the marks drawn straight onto Picture1).
  int32_t ViewLeft(int32_t mx) const { return mx - colPitch_ * viewX_; }
  int32_t ViewTop(int32_t my) const { return my - rowPitch_ * viewY_; }
  // At 100 %: the same in the off-screen buffer, which starts one hex up and left.
  int32_t BufferLeft(int32_t mx) const { return mx - (viewX_ - 1) * colPitch_; }
  int32_t BufferTop(int32_t my) const { return my - (viewY_ - 1) * rowPitch_; }
  // The hexes the view shows, from its top left hex (not cut to the map).
  HexRect Visible() const { return {viewX_, viewY_, viewX_ + cols_, viewY_ + rows_}; }

 private:
  const RefData* ref_;
  ViewState view_;
  int32_t colPitch_, rowPitch_;
  int32_t viewX_, viewY_;
  int32_t cols_, rows_;
  int zoom_;
};

}  // namespace kv

// The view at a zoom, composed at the zoom's own size. The zoomed picture is
// the map's full-size picture sampled at one fixed grid: across, zoomed pixel
// G (a whole number counted from the map's origin) shows map pixel
// floor(G * ColPitch / Z), where Z is the column pitch at the zoom rounded to
// whole pixels; down, the same with the row pitch. A column (row) is so a
// whole number of zoomed pixels: a one-step scroll shifts the buffer by whole
// pixels and the hex under a point can be kept there at every zoom. Every
// sprite is drawn straight onto that grid, so a hex costs its zoomed pixels
// only, the buffer and the view surface are the window's size whatever the
// zoom, and the picture does not depend on where the view stands. At 100 %
// the grid is the map's own pixels and nothing here is used.
#pragma once

#include <cstdint>

#include "refdata/refdata.h"
#include "view/viewstate.h"

namespace kv {

class Bitmap;

// floor(a / b) and ceil(a / b) for b > 0, for either sign of a.
inline int64_t FloorDiv(int64_t a, int64_t b) { return a >= 0 ? a / b : -((-a + b - 1) / b); }
inline int64_t CeilDiv(int64_t a, int64_t b) { return -FloorDiv(-a, b); }

// A rectangle of pixels of one bitmap.
struct BufRect {
  int x = 0, y = 0, w = 0, h = 0;
  bool Empty() const { return w <= 0 || h <= 0; }
};
BufRect Intersect(BufRect a, BufRect b);

// One axis of the grid: num zoomed pixels to den map pixels (den the pitch,
// num the pitch at the zoom in whole pixels).
struct ZoomScale {
  int64_t num = 1, den = 1;
  // The first zoomed pixel that shows map pixel m or one after it.
  int64_t Lo(int64_t m) const { return CeilDiv(m * num, den); }
  // The map pixel that zoomed pixel g shows.
  int64_t MapOf(int64_t g) const { return FloorDiv(g * den, num); }
  // The zoomed pixels of a length of map pixels, and the map pixels of a zoomed length.
  int64_t Zoomed(int64_t len) const { return CeilDiv(len * num, den); }
  int64_t Full(int64_t len) const { return FloorDiv(len * den, num); }
};

// The scale of each axis at a zoom (per cent).
ZoomScale ScaleAcross(const RefData& ref, int zoom);
ZoomScale ScaleDown(const RefData& ref, int zoom);

struct ZoomGrid {
  ZoomGrid(const RefData& ref, const ViewState& view);
  int zoom;                // per cent, 100 when never set
  ZoomScale sx, sy;        // across and down
  int64_t viewGX, viewGY;  // the zoomed pixel at the view's top left
  int marginX, marginY;    // the buffer's margin left of and above the view: a pitch
  int picW, picH;          // the view surface (Picture1) in zoomed pixels

  bool FullSize() const { return zoom == 100; }
  // The zoomed pixel at the buffer's top left.
  int64_t BufGX() const { return viewGX - marginX; }
  int64_t BufGY() const { return viewGY - marginY; }
};

// A bitmap as part of the zoomed grid: its pixel (0, 0) is zoomed pixel
// (gx, gy); nothing outside clip is touched.
struct ZoomTarget {
  Bitmap* bm;
  int64_t gx, gy;
  BufRect clip;
  ZoomScale sx, sy;
};

// The zoomed counterparts of the full-size copies: the w x h rectangle of
// the source at (sx, sy), placed at map pixel (mapX, mapY), drawn onto the
// grid. A source pixel outside its bitmap leaves the pixel as it is, as the
// full-size copies clip. Copy: SRCCOPY. Masked: the mask with AND, then the
// sprite with OR.
void ZoomedCopy(const ZoomTarget& t, int64_t mapX, int64_t mapY, int w, int h, const Bitmap& src, int sx, int sy);
void ZoomedMasked(const ZoomTarget& t, int64_t mapX, int64_t mapY, int w, int h, const Bitmap& mask, int mx, int my,
                  const Bitmap& sprite, int sx, int sy);

}  // namespace kv

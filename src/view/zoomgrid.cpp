#include "view/zoomgrid.h"

#include <algorithm>
#include <vector>

#include "platform/bitmap.h"

namespace kv {

BufRect Intersect(BufRect a, BufRect b) {
  const int x0 = std::max(a.x, b.x), y0 = std::max(a.y, b.y);
  const int x1 = std::min(a.x + a.w, b.x + b.w), y1 = std::min(a.y + a.h, b.y + b.h);
  return {x0, y0, x1 - x0, y1 - y0};
}

namespace {

ZoomScale ScaleOf(int pitch, int zoom) {
  if (pitch <= 0) return {};
  return {std::max<int64_t>(1, (int64_t{pitch} * zoom + 50) / 100), pitch};
}

}  // namespace

ZoomScale ScaleAcross(const RefData& ref, int zoom) { return ScaleOf(ref.ColPitch, zoom); }
ZoomScale ScaleDown(const RefData& ref, int zoom) { return ScaleOf(ref.RowPitch, zoom); }

ZoomGrid::ZoomGrid(const RefData& ref, const ViewState& view)
    : zoom(view.Zoom > 0 ? view.Zoom : 100),
      sx(ScaleAcross(ref, zoom)),
      sy(ScaleDown(ref, zoom)),
      viewGX(sx.Lo(int64_t{view.ViewX} * ref.ColPitch)),
      viewGY(sy.Lo(int64_t{view.ViewY} * ref.RowPitch)),
      marginX(static_cast<int>(sx.Zoomed(ref.ColPitch))),
      marginY(static_cast<int>(sy.Zoomed(ref.RowPitch))),
      picW(static_cast<int>(sx.Zoomed(view.ViewPixW))),
      picH(static_cast<int>(sy.Zoomed(view.ViewPixH))) {}

namespace {

// The zoomed pixels [g0, g1) of one axis that show source pixels of a
// length-n rectangle placed at map pixel m, read from source offset so within
// a source of size srcN, cut to [clip0, clip1).
struct Axis {
  int64_t g0 = 0, g1 = 0;
};

Axis Span(const ZoomScale& z, int64_t m, int n, int so, int srcN, int64_t clip0, int64_t clip1) {
  const int64_t u0 = std::max(0, -so), u1 = std::min<int64_t>(n, int64_t{srcN} - so);
  Axis a;
  if (u0 >= u1) return a;
  a.g0 = std::max(z.Lo(m + u0), clip0);
  a.g1 = std::min(z.Lo(m + u1), clip1);
  return a;
}

enum class Op { Copy, And, Or };

// The target's clip in zoomed pixels, cut to its bitmap.
void ClipOf(const ZoomTarget& t, int64_t& x0, int64_t& x1, int64_t& y0, int64_t& y1) {
  const BufRect c = Intersect(t.clip, {0, 0, t.bm->Width(), t.bm->Height()});
  x0 = t.gx + c.x;
  x1 = c.w > 0 ? t.gx + c.x + c.w : x0;
  y0 = t.gy + c.y;
  y1 = c.h > 0 ? t.gy + c.y + c.h : y0;
}

std::vector<int>& Columns() {
  thread_local std::vector<int> cols;
  return cols;
}

bool Prepare(const ZoomTarget& t, int64_t mapX, int64_t mapY, int w, int h, const Bitmap& src, int sx, int sy, Axis& ax,
             Axis& ay) {
  int64_t x0, x1, y0, y1;
  ClipOf(t, x0, x1, y0, y1);
  ax = Span(t.sx, mapX, w, sx, src.Width(), x0, x1);
  ay = Span(t.sy, mapY, h, sy, src.Height(), y0, y1);
  return ax.g0 < ax.g1 && ay.g0 < ay.g1;
}

void FillColumns(const ZoomScale& z, const Axis& ax, int64_t mapX, int sx) {
  std::vector<int>& cols = Columns();
  cols.resize(static_cast<size_t>(ax.g1 - ax.g0));
  for (int64_t g = ax.g0; g < ax.g1; ++g)
    cols[static_cast<size_t>(g - ax.g0)] = static_cast<int>(sx + z.MapOf(g) - mapX);
}

void Pass(const ZoomTarget& t, int64_t mapX, int64_t mapY, int w, int h, const Bitmap& src, int sx, int sy, Op op) {
  Axis ax, ay;
  if (!Prepare(t, mapX, mapY, w, h, src, sx, sy, ax, ay)) return;
  FillColumns(t.sx, ax, mapX, sx);
  const std::vector<int>& cols = Columns();
  uint32_t* base = t.bm->Pixels().data();
  const size_t stride = static_cast<size_t>(t.bm->Width());
  const int n = static_cast<int>(ax.g1 - ax.g0);
  for (int64_t g = ay.g0; g < ay.g1; ++g) {
    const uint32_t* s = src.Row(static_cast<int>(sy + t.sy.MapOf(g) - mapY));
    uint32_t* d = base + static_cast<size_t>(g - t.gy) * stride + static_cast<size_t>(ax.g0 - t.gx);
    switch (op) {
      case Op::Copy:
        for (int i = 0; i < n; ++i) d[i] = s[cols[i]];
        break;
      case Op::And:
        for (int i = 0; i < n; ++i) d[i] &= s[cols[i]];
        break;
      case Op::Or:
        for (int i = 0; i < n; ++i) d[i] |= s[cols[i]];
        break;
    }
  }
}

}  // namespace

void ZoomedCopy(const ZoomTarget& t, int64_t mapX, int64_t mapY, int w, int h, const Bitmap& src, int sx, int sy) {
  Pass(t, mapX, mapY, w, h, src, sx, sy, Op::Copy);
}

void ZoomedMasked(const ZoomTarget& t, int64_t mapX, int64_t mapY, int w, int h, const Bitmap& mask, int mx, int my,
                  const Bitmap& sprite, int sx, int sy) {
  Axis mxa, mya, sxa, sya;
  const bool m = Prepare(t, mapX, mapY, w, h, mask, mx, my, mxa, mya);
  const bool s = Prepare(t, mapX, mapY, w, h, sprite, sx, sy, sxa, sya);
  if (!m || !s || mxa.g0 != sxa.g0 || mxa.g1 != sxa.g1 || mya.g0 != sya.g0 || mya.g1 != sya.g1) {
    // The two clip differently: one after the other.
    if (m) Pass(t, mapX, mapY, w, h, mask, mx, my, Op::And);
    if (s) Pass(t, mapX, mapY, w, h, sprite, sx, sy, Op::Or);
    return;
  }
  // Both hold the same pixels: one pass, the mask's and the sprite's columns
  // differ by a constant.
  FillColumns(t.sx, mxa, mapX, 0);
  const std::vector<int>& cols = Columns();
  uint32_t* base = t.bm->Pixels().data();
  const size_t stride = static_cast<size_t>(t.bm->Width());
  const int n = static_cast<int>(mxa.g1 - mxa.g0);
  for (int64_t g = mya.g0; g < mya.g1; ++g) {
    const int v = static_cast<int>(t.sy.MapOf(g) - mapY);
    const uint32_t* mr = mask.Row(my + v);
    const uint32_t* sr = sprite.Row(sy + v);
    uint32_t* d = base + static_cast<size_t>(g - t.gy) * stride + static_cast<size_t>(mxa.g0 - t.gx);
    for (int i = 0; i < n; ++i) d[i] = (d[i] & mr[mx + cols[i]]) | sr[sx + cols[i]];
  }
}

}  // namespace kv

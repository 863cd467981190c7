#include "view/scrollfill.h"

#include <algorithm>

#include "view/compose.h"
#include "view/mapview.h"
#include "view/spritebank.h"
#include "view/zoomgrid.h"

namespace kv {

namespace {

// The hexes a full redraw draws, for a view origin (as RedrawBuffers counts them).
struct HexRange {
  int x0, y0, x1, y1;
};

HexRange FullRedrawRange(const MapView& s, int viewX, int viewY) {
  const ViewState& v = s.view;
  return {std::max(viewX - 1, 0), std::max(viewY - 2, 0), std::min<int>(v.ViewCols + viewX + 1, s.doc.MapMaxX),
          std::min<int>(v.ViewRows + viewY + 1, s.doc.MapMaxY)};
}

// The mode a full redraw passes for hex (x, y): 2 on a grid line.
int16_t GridMode(const Pens& p, int x, int y) {
  if (p.GridOn != -1) return 0;
  const bool gridHex = (p.GridX != 0 && x % p.GridX == 0) || (p.GridY != 0 && y % p.GridY == 0);
  return gridHex ? 2 : 0;
}

// The cells, in buffer pixels, of columns cx0..cx1 and rows cy0..cy1 (any
// parity) for the present view origin and zoom.
BufRect CellsOf(const MapView& s, int cx0, int cx1, int cy0, int cy1) {
  if (cx0 > cx1 || cy0 > cy1) return {};
  const RefData& r = s.ref;
  const ZoomGrid g(r, s.view);
  const int half = r.RowPitch / 2;
  const auto left = g.sx.Lo(int64_t{cx0} * r.ColPitch) - g.BufGX();
  const auto right = g.sx.Lo(int64_t{cx1} * r.ColPitch + r.HexW) - g.BufGX();
  const auto top = g.sy.Lo(int64_t{cy0} * r.RowPitch) - g.BufGY();
  const auto bottom = g.sy.Lo(int64_t{cy1} * r.RowPitch + half + r.HexH) - g.BufGY();
  return {static_cast<int>(left), static_cast<int>(top), static_cast<int>(right - left),
          static_cast<int>(bottom - top)};
}

// The view's part of the buffer: view pixel (0, 0) is buffer pixel (ColPitch,
// RowPitch) at 100 %, the pitches on the zoomed grid at another zoom.
BufRect Visible(const MapView& s) {
  const ZoomGrid g(s.ref, s.view);
  return {g.marginX, g.marginY, g.picW, g.picH};
}

// Recomposes r at another zoom: black, then the hexes of the range whose
// zoomed cells meet it, each clipped to r.
void RecomposeZoomed(MapView& s, BufRect r, const HexRange& range, int cx0, int cx1, int cy0, int cy1) {
  SpriteBank& b = s.sprites;
  const ZoomGrid g(s.ref, s.view);
  const RefData& ref = s.ref;
  BitBlt(b.BufDC, r.x, r.y, r.w, r.h, nullptr, 0, 0, BLACKNESS);
  const ZoomTarget t{&b.BufDC, g.BufGX(), g.BufGY(), r, g.sx, g.sy};
  const Document& d = s.doc;
  for (int x = std::max(cx0, range.x0); x <= std::min(cx1, range.x1); ++x)
    for (int y = std::max(cy0, range.y0); y <= std::min(cy1, range.y1); ++y) {
      if (!d.HexPixel.InRange(x, y, 1)) continue;
      const int64_t px = g.sx.Lo(d.HexPixel(x, y, 0)) - t.gx, py = g.sy.Lo(d.HexPixel(x, y, 1)) - t.gy;
      const int64_t pr = g.sx.Lo(int64_t{d.HexPixel(x, y, 0)} + ref.HexW) - t.gx;
      const int64_t pb = g.sy.Lo(int64_t{d.HexPixel(x, y, 1)} + ref.HexH) - t.gy;
      if (pr <= r.x || px >= r.x + r.w || pb <= r.y || py >= r.y + r.h) continue;
      PaintHexZoomed(s, t, static_cast<int16_t>(x), static_cast<int16_t>(y), GridMode(s.pens, x, y));
    }
}

}  // namespace

void RecomposeBufferRect(MapView& s, BufRect r) {
  SpriteBank& b = s.sprites;
  r = Intersect(r, {0, 0, b.BufDC.Width(), b.BufDC.Height()});
  if (r.Empty()) return;
  const RefData& ref = s.ref;
  const ViewState& v = s.view;
  const int W = ref.HexW, H = ref.HexH;
  if (W <= 0 || H <= 0 || ref.ColPitch <= 0 || ref.RowPitch <= 0) return;
  const ZoomGrid g(ref, v);
  if (!g.FullSize()) {
    // The map pixels r shows, and the columns and rows whose cells can meet them.
    const int64_t mx0 = g.sx.MapOf(g.BufGX() + r.x), mx1 = g.sx.MapOf(g.BufGX() + r.x + r.w - 1) + 1;
    const int64_t my0 = g.sy.MapOf(g.BufGY() + r.y), my1 = g.sy.MapOf(g.BufGY() + r.y + r.h - 1) + 1;
    RecomposeZoomed(s, r, FullRedrawRange(s, v.ViewX, v.ViewY), static_cast<int>(FloorDiv(mx0 - W, ref.ColPitch) - 1),
                    static_cast<int>(mx1 / ref.ColPitch + 1),
                    static_cast<int>(FloorDiv(my0 - H - ref.RowPitch, ref.RowPitch) - 1),
                    static_cast<int>(my1 / ref.RowPitch + 1));
    return;
  }
  // A black scratch with a cell's room round r: hexes are drawn whole into it
  // and only r goes back, so nothing outside r changes.
  Bitmap scratch(r.w + 2 * W, r.h + 2 * H + ref.RowPitch);
  const int ox = W - r.x, oy = H - r.y;  // buffer pixel to scratch pixel
  const HexRange range = FullRedrawRange(s, v.ViewX, v.ViewY);
  // Only the columns and rows whose cells can meet r.
  const int bx0 = (v.ViewX - 1) * ref.ColPitch, by0 = (v.ViewY - 1) * ref.RowPitch;
  const int cx0 = std::max(range.x0, (r.x + bx0 - W) / ref.ColPitch - 1);
  const int cx1 = std::min(range.x1, (r.x + r.w + bx0) / ref.ColPitch + 1);
  const int cy0 = std::max(range.y0, (r.y + by0 - H - ref.RowPitch) / ref.RowPitch - 1);
  const int cy1 = std::min(range.y1, (r.y + r.h + by0) / ref.RowPitch + 1);
  const Document& d = s.doc;
  for (int x = cx0; x <= cx1; ++x)
    for (int y = cy0; y <= cy1; ++y) {
      if (!d.HexPixel.InRange(x, y, 1)) continue;
      const int px = d.HexPixel(x, y, 0) - bx0, py = d.HexPixel(x, y, 1) - by0;
      if (px + W <= r.x || px >= r.x + r.w || py + H <= r.y || py >= r.y + r.h) continue;
      PaintHexAt(s, scratch, px + ox, py + oy, static_cast<int16_t>(x), static_cast<int16_t>(y),
                 GridMode(s.pens, x, y));
    }
  BitBlt(b.BufDC, r.x, r.y, r.w, r.h, &scratch, W, H, SRCCOPY);
}

void CompleteScrollStep(MapView& s, int dx, int dy) {
  const ViewState& v = s.view;
  const BufRect vis = Visible(s);
  // What came into the view from the buffer's margin: the part of the view
  // that the old view, shifted by a pitch (on the zoomed grid), does not cover.
  const BufRect old{vis.x - dx * vis.x, vis.y - dy * vis.y, vis.w, vis.h};
  BufRect in;
  if (dx > 0) in = {old.x + old.w, vis.y, vis.x + vis.w - (old.x + old.w), vis.h};
  if (dx < 0) in = {vis.x, vis.y, old.x - vis.x, vis.h};
  if (dy > 0) in = {vis.x, old.y + old.h, vis.w, vis.y + vis.h - (old.y + old.h)};
  if (dy < 0) in = {vis.x, vis.y, vis.w, old.y - vis.y};
  RecomposeBufferRect(s, Intersect(in, vis));
  // The cells of the hexes that joined or left the full redraw's range at
  // either end, and of those the step drew again over their neighbours.
  const HexRange now = FullRedrawRange(s, v.ViewX, v.ViewY);
  const HexRange before = FullRedrawRange(s, v.ViewX - dx, v.ViewY - dy);
  if (dx != 0) {
    if (now.x0 != before.x0)
      RecomposeBufferRect(
          s, Intersect(CellsOf(s, std::min(now.x0, before.x0), std::max(now.x0, before.x0), now.y0, now.y1), vis));
    RecomposeBufferRect(
        s, Intersect(CellsOf(s, std::min(now.x1, before.x1), std::max(now.x1, before.x1), now.y0, now.y1), vis));
    if (dx < 0) RecomposeBufferRect(s, Intersect(CellsOf(s, v.ViewX, v.ViewX, now.y0, now.y1), vis));
  } else if (dy != 0) {
    if (now.y0 != before.y0)
      RecomposeBufferRect(
          s, Intersect(CellsOf(s, now.x0, now.x1, std::min(now.y0, before.y0), std::max(now.y0, before.y0)), vis));
    RecomposeBufferRect(
        s, Intersect(CellsOf(s, now.x0, now.x1, std::min(now.y1, before.y1), std::max(now.y1, before.y1)), vis));
    if (dy < 0) RecomposeBufferRect(s, Intersect(CellsOf(s, now.x0, now.x1, v.ViewY, v.ViewY), vis));
  }
}

}  // namespace kv

#include "view/compose.h"

#include "view/geometry.h"
#include "view/mapview.h"
#include "view/spritebank.h"
#include "view/transform.h"
#include "view/zoomgrid.h"

namespace kv {

int16_t ContourCodeOf(const MapView& s, int16_t x, int16_t y) {
  const Document& d = s.doc;
  int code = 0;
  bool lower = false;
  const uint8_t here = d.HexElev(x, y);
  for (int side = 1; side <= 6; ++side) {
    int nx = x, ny = y;
    HexNeighbour(nx, ny, side);
    if (d.OnMap(nx, ny) && d.HexElev(nx, ny) < here)
      lower = true;
    else
      code += 1 << (side - 1);
  }
  if (!lower) code = -1;
  if (code == 0) code = 63;
  return static_cast<int16_t>(code);
}

void ContourCode(MapView& s, int16_t x, int16_t y, int16_t& c) {
  c = ContourCodeOf(s, x, y);
  s.doc.HexContour(x, y) = static_cast<uint8_t>(c > 0 ? c : 0);
}

namespace {

// Where a hex is drawn: at full size into a bitmap with the cell's top left
// at (px, py), or onto the zoomed grid with the cell at map pixel (ax, ay).
// Offsets are from the cell's top left, in map pixels.
struct Cell {
  Bitmap& buf;
  int px, py;
  const ZoomTarget* zoomed;
  int64_t ax, ay;

  void Masked(int dx, int dy, int w, int h, const Bitmap& mask, int mx, int my, const Bitmap& sprite, int sx,
              int sy) const {
    if (zoomed)
      ZoomedMasked(*zoomed, ax + dx, ay + dy, w, h, mask, mx, my, sprite, sx, sy);
    else
      MaskedBlt(buf, px + dx, py + dy, w, h, mask, mx, my, sprite, sx, sy);
  }
  void Copy(int dx, int dy, int w, int h, const Bitmap& src, int sx, int sy) const {
    if (zoomed)
      ZoomedCopy(*zoomed, ax + dx, ay + dy, w, h, src, sx, sy);
    else
      BitBlt(buf, px + dx, py + dy, w, h, &src, sx, sy, SRCCOPY);
  }
  // The mask with AND, then the sprite from the same rectangle with OR.
  void Sprite(const Bitmap& mask, const Bitmap& sprite, int sx, int sy, int w, int h) const {
    Masked(0, 0, w, h, mask, sx, sy, sprite, sx, sy);
  }
};

// Draws hex (x, y) into its cell, every layer in its order. With storeContour
// the contour code goes into HexContour on the way, as drawing a hex of the
// view does.
void ComposeHex(MapView& s, const Cell& cell, int16_t x, int16_t y, int16_t mode, bool storeContour) {
  Document& d = s.doc;
  const RefData& r = s.ref;
  const Pens& p = s.pens;
  SpriteBank& b = s.sprites;
  const int W = r.HexW, H = r.HexH;

  // 1, 2: knock the hexagon out and paint the tile into the hole.
  const int t = d.HexTile(x, y);
  cell.Masked(0, 0, W, H, b.BlackHexDC, 0, 0, b.TileSheet, (t % 16) * W, (t / 16) * H);

  // 3: outline.
  if (p.HexOutlines == -1) cell.Sprite(b.HexLineMaskDC, b.HexLineDC, 0, 0, W, H);

  // 4: deployment flag, or control marker.
  const int fx = r.FlagDX, fy = r.FlagDY;
  if (p.CtlMode == 1) {
    const int n = d.HexDeploy(x, y);
    if (n > 0) cell.Copy(fx, fy, 20, 13, b.FlagDC, n * 20, 0);
  } else {
    const int n = d.HexCtl(x, y, 0);
    if (n > 0) {
      switch (d.HexCtl(x, y, 1)) {
        case 0:
          if (p.ShowRoadControl == -1) cell.Copy(fx + 5, fy, 9, 9, b.FlagSmallDC, n * 9, 0);
          break;
        case 1: cell.Copy(fx, fy, 20, 13, b.FlagDC, n * 20, 0); break;
        case 2:
          cell.Copy(fx, fy, 21, 14, b.FlagBigDC, n * 21, 0);
          cell.Sprite(b.FxMaskDC, b.FxDC, 5 * W, 0, W, H);
          break;
        case 3:
          cell.Copy(fx, fy, 21, 14, b.FlagBigDC, n * 21, 0);
          cell.Sprite(b.FxMaskDC, b.FxDC, 8 * W, 0, W, H);
          break;
        default: break;
      }
    }
  }

  // 5, 6: road lines while side editing is on, railroad lines always.
  if (p.SideEdit > 0)
    for (int side = 1; side <= 6; ++side)
      if (d.HexInfo(x, y, side) == 1) cell.Sprite(b.RoadMaskDC, b.RoadDC, (side - 1) * W, 0, W, H);
  for (int side = 1; side <= 6; ++side)
    if (d.HexInfo(x, y, side) == 2) cell.Sprite(b.RailMaskDC, b.RailDC, (side - 1) * W, 0, W, H);

  // 7 to 10: the blue overlay for the selection, the grid, the highlighted
  // tile and the highlighted elevation, each on its own condition.
  auto blue = [&] { cell.Sprite(b.FxMaskDC, b.FxDC, kBlueHexLeft, 0, W, H); };
  if (p.SelX1 >= 0 && p.SelX2 > 0 && p.SelY1 >= 0 && p.SelY2 > 0 && p.SelX1 <= x && x <= p.SelX2 && p.SelY1 <= y &&
      y <= p.SelY2)
    blue();
  if (mode == 2) blue();
  if (p.HighlightTile != -1 && t == p.HighlightTile) blue();
  if (p.ElevMode == -1 && d.HexElev(x, y) - 127 == p.ElevValue) blue();

  // 11: contour lines, refreshing HexContour on the way.
  int16_t c;
  if (storeContour)
    ContourCode(s, x, y, c);
  else
    c = ContourCodeOf(s, x, y);
  if (c > -1) cell.Sprite(b.ContourMaskDC, b.ContourDC, (c % 16) * W, (c / 16) * H, W, H);
}

// Whether hex (x, y) can be drawn: on the map and within every array it reads.
bool Drawable(const Document& d, int16_t x, int16_t y) {
  return x >= 0 && y >= 0 && d.OnMap(x, y) && d.HexPixel.InRange(x, y, 1) && d.HexTile.InRange(x, y);
}

}  // namespace

void Print_hex(MapView& s, int16_t x, int16_t y, int16_t mode) {
  const Document& d = s.doc;
  // Negative, or beyond the map (a stale view after the map shrank): nothing is drawn.
  if (!Drawable(d, x, y)) return;
  const RefData& r = s.ref;
  Bitmap& buf = s.sprites.BufDC;
  const ZoomGrid g(r, s.view);
  if (!g.FullSize()) {
    // At another zoom the buffer is a part of the zoomed grid.
    const ZoomTarget t{&buf, g.BufGX(), g.BufGY(), {0, 0, buf.Width(), buf.Height()}, g.sx, g.sy};
    ComposeHex(s, Cell{buf, 0, 0, &t, d.HexPixel(x, y, 0), d.HexPixel(x, y, 1)}, x, y, mode, true);
    return;
  }
  const ViewTransform view(r, s.view);
  const int px = view.BufferLeft(d.HexPixel(x, y, 0));
  const int py = view.BufferTop(d.HexPixel(x, y, 1));
  ComposeHex(s, Cell{buf, px, py, nullptr, 0, 0}, x, y, mode, true);
}

void PaintHexAt(MapView& s, Bitmap& dst, int px, int py, int16_t x, int16_t y, int16_t mode) {
  if (!Drawable(s.doc, x, y)) return;
  ComposeHex(s, Cell{dst, px, py, nullptr, 0, 0}, x, y, mode, false);
}

void PaintHexZoomed(MapView& s, const ZoomTarget& t, int16_t x, int16_t y, int16_t mode) {
  const Document& d = s.doc;
  if (!Drawable(d, x, y)) return;
  ComposeHex(s, Cell{*t.bm, 0, 0, &t, d.HexPixel(x, y, 0), d.HexPixel(x, y, 1)}, x, y, mode, false);
}

void RedrawHex(MapView& s, int16_t x, int16_t y) {
  if (s.viewHooks.HexEdited) s.viewHooks.HexEdited(s, x, y);
  Print_hex(s, x, y, 0);
  BlitPic1(s);
}

namespace {

void MarkHex(MapView& s, int16_t x, int16_t y, int left) {
  const Document& d = s.doc;
  if (!d.HexPixel.InRange(x, y, 1)) return;
  const RefData& r = s.ref;
  SpriteBank& b = s.sprites;
  const ZoomGrid g(r, s.view);
  if (!g.FullSize()) {
    const ZoomTarget t{&b.Picture1, g.viewGX, g.viewGY, {0, 0, b.Picture1.Width(), b.Picture1.Height()}, g.sx, g.sy};
    ZoomedMasked(t, d.HexPixel(x, y, 0), d.HexPixel(x, y, 1), r.HexW, r.HexH, b.FxMaskDC, left, 0, b.FxDC, left, 0);
    s.ui().Changed(Change::Picture1);
    return;
  }
  const ViewTransform view(r, s.view);
  const int sx = view.ViewLeft(d.HexPixel(x, y, 0));
  const int sy = view.ViewTop(d.HexPixel(x, y, 1));
  MaskedBlt(b.Picture1, sx, sy, r.HexW, r.HexH, b.FxMaskDC, left, 0, b.FxDC, left, 0);
  s.ui().Changed(Change::Picture1);
}

}  // namespace

void BlueHex(MapView& s, int16_t x, int16_t y) { MarkHex(s, x, y, kBlueHexLeft); }
void YellowHex(MapView& s, int16_t x, int16_t y) { MarkHex(s, x, y, kYellowHexLeft); }

}  // namespace kv

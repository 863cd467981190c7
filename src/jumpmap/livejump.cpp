#include "jumpmap/livejump.h"

#include <algorithm>
#include <cmath>

#include "jumpmap/jumpmap.h"
#include "session.h"
#include "view/spritebank.h"

namespace kv {

namespace {

int RoundEven(double v) { return static_cast<int>(std::nearbyint(v)); }

// The jump map's pitches and hex sizes as its last full drawing set them.
struct JumpGeometry {
  int colp, rowp, hw, hh;
  float k;
};

JumpGeometry Geometry(const Session& s) {
  const RefData& r = s.ref;
  const float k = s.jump.JumpScale;
  auto scaled = [k](int v) { return std::max(1, RoundEven(static_cast<float>(v) * k)); };
  return {std::max<int>(1, r.JumpColPitch), std::max<int>(1, r.JumpRowPitch), scaled(r.HexW), scaled(r.HexH), k};
}

// Draws hex (x, y) of the hex picture into `pic`, its cell moved by (ox, oy):
// the same steps, in the same order, as the full drawing.
void DrawJumpHex(const Session& s, Bitmap& pic, const JumpGeometry& g, int x, int y, int ox, int oy) {
  const Document& d = s.doc;
  const RefData& r = s.ref;
  const SpriteBank& b = s.sprites;
  int py = g.rowp * y;
  if (x % 2 == 0) py += g.rowp / 2;
  const int px = g.colp * x;
  pic.FillRect(px + ox, py + oy, g.hw + 1, g.hh + 1, TerrainColour(r, d.HexInfo(x, y, 0)));
  const int n = d.HexCtl(x, y, 0), kind = d.HexCtl(x, y, 1);
  if (n <= 0 || kind <= 0) return;
  const float k = g.k;
  const int fx = RoundEven(static_cast<float>(r.FlagDX) * k + static_cast<float>(px)) + ox;
  const int fy = RoundEven(static_cast<float>(r.FlagDY) * k + static_cast<float>(py)) + oy;
  if (kind == 1) {
    StretchBlt(pic, fx, fy, RoundEven(k * 20.0f), RoundEven(k * 13.0f), b.FlagDC, n * 20, 0, 20, 13, SRCCOPY);
  } else if (kind == 2 || kind == 3) {
    StretchBlt(pic, fx, fy, RoundEven(k * 21.0f), RoundEven(k * 14.0f), b.FlagBigDC, n * 21, 0, 21, 14, SRCCOPY);
    StretchBlt(pic, px + ox, py + oy, g.hw, g.hh, b.FxMaskDC, 5 * r.HexW, 0, r.HexW, r.HexH, SRCAND);
    StretchBlt(pic, px + ox, py + oy, g.hw, g.hh, b.FxDC, 5 * r.HexW, 0, r.HexW, r.HexH, SRCPAINT);
  }
}

}  // namespace

bool JumpMapFollow(Session& s, const HexRect& changed) {
  if (!s.forms.Form5Loaded || !s.jump.ShowsDrawnMap) return false;
  const Document& d = s.doc;
  const HexRect area = changed.ClippedTo(d.MapMaxX, d.MapMaxY);
  if (area.Empty()) return false;
  JumpMapState& j = s.jump;
  Bitmap& pic = j.Picture2;
  const JumpGeometry g = Geometry(s);
  if (pic.Width() != g.colp * (d.MapMaxX + 1) || pic.Height() != g.rowp * (d.MapMaxY + 1)) return false;
  if (g.colp <= 1 && g.rowp <= 1) {
    // One dot a hex.
    const RefData& r = s.ref;
    for (int x = area.x1; x <= area.x2; ++x)
      for (int y = area.y1; y <= area.y2; ++y) {
        const int t = d.HexInfo(x, y, 0);
        const bool black = j.JumpFilter == 0 ? r.RoadOf(d.HexTile(x, y)) == 1 : j.JumpFilter == t;
        pic.SetPixel(x, y, black ? 0u : TerrainColour(r, t));
      }
    return true;
  }
  // The pixels of the changed hexes' cells (flags stay inside a cell's reach).
  const int extraX = std::max(g.hw + 1, RoundEven(s.ref.FlagDX * g.k) + RoundEven(g.k * 21.0f));
  const int extraY = std::max(g.hh + 1, RoundEven(s.ref.FlagDY * g.k) + RoundEven(g.k * 14.0f));
  const int left = g.colp * area.x1, right = g.colp * area.x2 + extraX;
  const int top = g.rowp * area.y1, bottom = g.rowp * area.y2 + g.rowp / 2 + extraY;
  const int rx = std::max(0, left), ry = std::max(0, top);
  const int rw = std::min(pic.Width(), right) - rx, rh = std::min(pic.Height(), bottom) - ry;
  if (rw <= 0 || rh <= 0) return false;
  // Every hex whose drawing reaches that rectangle, in the full drawing's
  // order, onto a scratch of the rectangle; then the rectangle goes back.
  Bitmap scratch(rw, rh);
  scratch.Fill(kPictureBackColour);
  const int x0 = std::max(0, (rx - extraX) / g.colp - 1), x1 = std::min<int>(d.MapMaxX, (rx + rw) / g.colp + 1);
  const int y0 = std::max(0, (ry - extraY - g.rowp) / g.rowp - 1),
            y1 = std::min<int>(d.MapMaxY, (ry + rh) / g.rowp + 1);
  for (int x = x0; x <= x1; ++x)
    for (int y = y0; y <= y1; ++y) DrawJumpHex(s, scratch, g, x, y, -rx, -ry);
  BitBlt(pic, rx, ry, rw, rh, &scratch, 0, 0, SRCCOPY);
  return true;
}

}  // namespace kv

#include "view/geometry.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "view/mapview.h"

namespace kv {

void HexToPixel(const RefData& ref, int x, int y, int32_t& px, int32_t& py) {
  py = static_cast<int32_t>(ref.RowPitch) * y;
  if (x % 2 == 0) py += static_cast<int32_t>(std::floor(ref.RowPitch / 2.0));
  px = static_cast<int32_t>(ref.ColPitch) * x;
}

void HexToJumpPixel(const RefData& ref, int16_t x, int16_t y, int32_t& px, int32_t& py) {
  py = static_cast<int32_t>(y) * ref.JumpRowPitch;
  if (x % 2 == 0) py += static_cast<int32_t>(std::floor(ref.JumpRowPitch / 2.0));
  px = static_cast<int32_t>(x) * ref.JumpColPitch;
}

void pixel_hex(const MapState& s, double px, double py, int16_t& outX, int16_t& outY) {
  pixel_hex(s.ref, s.doc.MapMaxX, s.doc.MapMaxY, px, py, outX, outY);
}

void pixel_hex(const RefData& ref, int maxX, int maxY, double pxIn, double pyIn, int16_t& outX, int16_t& outY) {
  // A point far outside any picture (or no number at all) lands on the edge.
  auto keep = [](double v) { return std::isnan(v) ? 0.0 : std::clamp(v, -1e9, 1e9); };
  int32_t px = static_cast<int32_t>(std::nearbyint(keep(pxIn)));
  double py = keep(pyIn);
  int32_t x = px / ref.ColPitch;
  if (x % 2 == 0) py -= ref.RowPitch / 2;
  int32_t y = static_cast<int32_t>(std::trunc(std::nearbyint(py) / ref.RowPitch));
  if (x < 0) x = 0;
  if (y < 0) y = 0;
  if (x > maxX) x = maxX;
  if (y > maxY) y = maxY;
  outX = static_cast<int16_t>(x);
  outY = static_cast<int16_t>(y);
}

void HexNeighbour(int& x, int& y, int side) {
  const bool even = x % 2 == 0;
  switch (side) {
    case 1:
      x += 1;
      y += even ? 1 : 0;
      break;
    case 2: y += 1; break;
    case 3:
      x -= 1;
      y += even ? 1 : 0;
      break;
    case 4:
      x -= 1;
      y += even ? 0 : -1;
      break;
    case 5: y -= 1; break;
    case 6:
      x += 1;
      y += even ? 0 : -1;
      break;
    default: break;
  }
}

int16_t HexDistance(int16_t x1, int16_t y1, int16_t x2, int16_t y2) {
  const int dx = std::abs(x1 - x2), dy = std::abs(y1 - y2);
  if (dx == 0) return static_cast<int16_t>(dy);
  if (dy == 0) return static_cast<int16_t>(dx);
  const bool even = x1 % 2 == 0;
  int n;
  if ((even && y1 > y2) || (!even && y1 < y2))
    n = dy - dx / 2;
  else
    n = static_cast<int>(std::floor(dy - dx / 2.0));
  return static_cast<int16_t>(n > 0 ? dx + n : dx);
}

void FillHexPixel(MapState& s) {
  Document& d = s.doc;
  d.HexPixel.Allocate(d.W(), d.H(), 2);
  for (int x = 0; x <= d.MapMaxX; ++x)
    for (int y = 0; y <= d.MapMaxY; ++y) HexToPixel(s.ref, x, y, d.HexPixel(x, y, 0), d.HexPixel(x, y, 1));
}

void KeepPensOnMap(MapView& s) {
  const Document& d = s.doc;
  Pens& p = s.pens;
  auto inX = [&](int16_t& v) { v = std::clamp<int16_t>(v, 0, d.MapMaxX); };
  auto inY = [&](int16_t& v) { v = std::clamp<int16_t>(v, 0, d.MapMaxY); };
  inX(p.CurHexX);
  inY(p.CurHexY);
  inX(p.SelX1);
  inX(p.SelX2);
  inY(p.SelY1);
  inY(p.SelY2);
}

void AfterDocumentReplaced(MapView& s) {
  KeepPensOnMap(s);
  s.MapReplaced();
  FillHexPixel(s);
  s.forms.Form5Loaded = false;
  s.ui().UnloadForm(FormId::Form5);
}

}  // namespace kv

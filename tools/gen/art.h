// The shape of a hex cell and the few colours that other code checks for.
// Shared by the data generator, the example map maker and the data tests.
#pragma once

#include <cmath>
#include <cstdint>

namespace kvgen {

constexpr int kW = 60, kH = 50;  // cell size
constexpr int kSheetCols = 16;   // cells to a row of the sheet

// The hexagon of a cell, row by row. The top edge runs from x = 15 to 44 and
// each slanted edge has a horizontal run of 15 pixels. Left and right ends
// are chosen so that cells at the column pitch 45 (odd columns 25 pixels
// higher) and the row pitch 50 cover the plane exactly once:
// HexRight(y) + 1 = 45 + HexLeft(y + 25) for the upper half, and the same
// with y - 25 for the lower half.
inline int HexLeftTop(int y) { return (15 * (24 - y) + 12) / 24; }  // y in 0..24
inline int HexLeft(int y) { return HexLeftTop(y < 25 ? y : 49 - y); }
inline int HexRight(int y) { return 44 + (y < 25 ? HexLeftTop(24 - y) : HexLeftTop(y - 25)); }
inline bool InHex(int x, int y) { return y >= 0 && y < kH && x >= HexLeft(y) && x <= HexRight(y); }

struct P {
  double x, y;
};
constexpr P kCentre{29.5, 24.5};

// Corners, clockwise from the right-hand one. Side s (1 lower right, 2 down,
// 3 lower left, 4 upper left, 5 up, 6 upper right) runs from corner s - 1 to
// corner s.
inline P Corner(int i) {
  static const P c[6] = {{59.5, 24.5}, {44.5, 49.5}, {14.5, 49.5}, {-0.5, 24.5}, {14.5, -0.5}, {44.5, -0.5}};
  return c[((i % 6) + 6) % 6];
}
inline P SideMid(int s) {
  P a = Corner(s - 1), b = Corner(s);
  return {(a.x + b.x) / 2, (a.y + b.y) / 2};
}
// Outward unit normal of side s.
inline P SideNormal(int s) {
  P a = Corner(s - 1), b = Corner(s);
  double dx = b.x - a.x, dy = b.y - a.y, l = std::sqrt(dx * dx + dy * dy);
  return {dy / l, -dx / l};
}
// How far a point lies toward side s: 0 at the centre, 1 on the edge.
inline double SideDepth(int s, double x, double y) {
  P n = SideNormal(s), m = SideMid(s);
  double ap = (m.x - kCentre.x) * n.x + (m.y - kCentre.y) * n.y;
  return ((x - kCentre.x) * n.x + (y - kCentre.y) * n.y) / ap;
}
// The pixel where the road across side s is checked: just inside the edge.
inline void SideProbe(int s, int& x, int& y) {
  P m = SideMid(s), n = SideNormal(s);
  x = static_cast<int>(std::floor(m.x - 3.0 * n.x + 0.5));
  y = static_cast<int>(std::floor(m.y - 3.0 * n.y + 0.5));
}

// Ring position p (1 above, then clockwise) to side number, and back.
inline int RingSide(int p) { return (p + 3) % 6 + 1; }
inline int SideRing(int s) { return (s + 1) % 6 + 1; }

// Road surface: every road on a tile has this exact colour along its middle.
constexpr uint32_t kRoadFill = 0xD2B07A;
constexpr uint32_t kRoadEdge = 0x7A5E3A;

}  // namespace kvgen

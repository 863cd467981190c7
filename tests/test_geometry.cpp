// Hex geometry: pixels, hit tests, neighbours and distances.
#include <cstdlib>
#include <map>

#include <gtest/gtest.h>
#include <queue>

#include "session.h"
#include "view/geometry.h"

using namespace kv;

namespace {
void Size(Session& s, int mx, int my) {
  s.doc.MapMaxX = static_cast<int16_t>(mx);
  s.doc.MapMaxY = static_cast<int16_t>(my);
}

// Breadth-first steps between two hexes on an unbounded grid.
int Steps(int x1, int y1, int x2, int y2) {
  std::map<std::pair<int, int>, int> seen{{{x1, y1}, 0}};
  std::queue<std::pair<int, int>> q;
  q.push({x1, y1});
  while (!q.empty()) {
    auto [x, y] = q.front();
    q.pop();
    int d = seen[{x, y}];
    if (x == x2 && y == y2) return d;
    for (int s = 1; s <= 6; ++s) {
      int nx = x, ny = y;
      HexNeighbour(nx, ny, s);
      if (std::abs(nx - x1) > 20 || std::abs(ny - y1) > 20) continue;
      if (seen.emplace(std::make_pair(nx, ny), d + 1).second) q.push({nx, ny});
    }
  }
  return -1;
}
}  // namespace

TEST(Geometry, HexCellsAndHitTestWithDefaultPitches) {
  Session s("/nonexistent");
  Size(s, 40, 40);
  int32_t px, py;
  HexToPixel(s.ref, 0, 0, px, py);
  EXPECT_EQ(px, 0);
  EXPECT_EQ(py, 25);
  HexToPixel(s.ref, 1, 0, px, py);
  EXPECT_EQ(px, 45);
  EXPECT_EQ(py, 0);
  HexToPixel(s.ref, 2, 0, px, py);
  EXPECT_EQ(px, 90);
  EXPECT_EQ(py, 25);
  HexToPixel(s.ref, 1, 1, px, py);
  EXPECT_EQ(py, 50);
  struct Hit {
    int px, py, x, y;
  };
  for (Hit h : {Hit{10, 10, 0, 0}, Hit{50, 10, 1, 0}, Hit{50, 60, 1, 1}, Hit{10, 60, 0, 0}, Hit{10, 80, 0, 1},
                Hit{-5, -90, 0, 0}, Hit{99999, 99999, 40, 40}}) {
    int16_t x, y;
    pixel_hex(s, h.px, h.py, x, y);
    EXPECT_EQ(x, h.x) << h.px << "," << h.py;
    EXPECT_EQ(y, h.y) << h.px << "," << h.py;
  }
}

TEST(Geometry, NeighboursByColumnParityAndTheWayBack) {
  struct Case {
    int x, y, side, nx, ny;
  };
  for (Case c : {Case{4, 4, 6, 5, 4}, Case{4, 4, 1, 5, 5}, Case{4, 4, 3, 3, 5}, Case{4, 4, 4, 3, 4},
                 Case{5, 4, 6, 6, 3}, Case{5, 4, 1, 6, 4}, Case{5, 4, 3, 4, 4}, Case{5, 4, 4, 4, 3},
                 Case{5, 4, 2, 5, 5}, Case{5, 4, 5, 5, 3}, Case{5, 4, 7, 5, 4}}) {
    int x = c.x, y = c.y;
    HexNeighbour(x, y, c.side);
    EXPECT_EQ(x, c.nx) << c.x << "," << c.y << " side " << c.side;
    EXPECT_EQ(y, c.ny) << c.x << "," << c.y << " side " << c.side;
  }
  for (int x0 = 0; x0 < 4; ++x0)
    for (int s = 1; s <= 6; ++s) {
      int x = x0, y = 5;
      HexNeighbour(x, y, s);
      HexNeighbour(x, y, OppositeSide(s));
      EXPECT_EQ(x, x0);
      EXPECT_EQ(y, 5);
    }
}

TEST(Geometry, DistanceMatchesTheFiguresAndShortestPaths) {
  EXPECT_EQ(HexDistance(4, 4, 5, 4), 1);
  EXPECT_EQ(HexDistance(4, 4, 5, 5), 1);
  EXPECT_EQ(HexDistance(4, 4, 5, 3), 2);
  EXPECT_EQ(HexDistance(5, 4, 6, 3), 1);
  EXPECT_EQ(HexDistance(5, 4, 6, 5), 2);
  EXPECT_EQ(HexDistance(2, 2, 2, 9), 7);
  EXPECT_EQ(HexDistance(4, 4, 9, 4), 5);
  for (int x1 = 4; x1 <= 5; ++x1)
    for (int x2 = 0; x2 <= 12; ++x2)
      for (int y2 = 0; y2 <= 12; ++y2) {
        const int d = HexDistance(static_cast<int16_t>(x1), 6, static_cast<int16_t>(x2), static_cast<int16_t>(y2));
        EXPECT_EQ(d, Steps(x1, 6, x2, y2)) << x1 << ",6 to " << x2 << "," << y2;
        EXPECT_EQ(d, HexDistance(static_cast<int16_t>(x2), static_cast<int16_t>(y2), static_cast<int16_t>(x1), 6));
      }
}

TEST(Geometry, HexPixelTableFollowsTheMapSize) {
  Session s("/nonexistent");
  Size(s, 3, 2);
  FillHexPixel(s);
  EXPECT_EQ(s.doc.HexPixel(2, 1, 0), 90);
  EXPECT_EQ(s.doc.HexPixel(2, 1, 1), 75);
  EXPECT_EQ(s.doc.HexPixel(3, 2, 1), 100);
}

// Land and water body numbers: the fast numbering against a plain run of
// the four sweeps on many generated maps, and the cases that pin the rules.
#include <random>

#include <gtest/gtest.h>
#include <queue>

#include "analysis/landmass.h"
#include "landmass_plain.h"
#include "session.h"
#include "view/geometry.h"

using namespace kv;
using kvtest::PlainSweeps;
using kvtest::Terrain;

namespace {

// True bodies by a flood fill over hex neighbours; -1 for the other kind.
std::vector<int> FloodBodies(const Terrain& m, bool land, int& count) {
  std::vector<int> body(m.t.size(), -1);
  count = 0;
  for (int x = 0; x < m.w; ++x)
    for (int y = 0; y < m.h; ++y) {
      if ((m.at(x, y) > 0) != land || body[static_cast<size_t>(y) * m.w + x] >= 0) continue;
      std::queue<std::pair<int, int>> q;
      q.push({x, y});
      body[static_cast<size_t>(y) * m.w + x] = count;
      while (!q.empty()) {
        auto [cx, cy] = q.front();
        q.pop();
        for (int s = 1; s <= 6; ++s) {
          int nx = cx, ny = cy;
          HexNeighbour(nx, ny, s);
          if (!m.on(nx, ny) || (m.at(nx, ny) > 0) != land) continue;
          int& b = body[static_cast<size_t>(ny) * m.w + nx];
          if (b < 0) {
            b = count;
            q.push({nx, ny});
          }
        }
      }
      ++count;
    }
  return body;
}

Terrain RandomMap(std::mt19937& g, int w, int h, double landShare) {
  Terrain m(w, h);
  std::bernoulli_distribution land(landShare);
  for (auto& v : m.t) v = land(g) ? static_cast<uint8_t>(1 + g() % 14) : 0;
  return m;
}

// Land with round lakes punched into it.
Terrain Lakes(std::mt19937& g, int w, int h) {
  Terrain m(w, h, 1);
  const int lakes = 1 + static_cast<int>(g() % 6);
  for (int i = 0; i < lakes; ++i) {
    const int cx = static_cast<int>(g() % w), cy = static_cast<int>(g() % h), r = 1 + static_cast<int>(g() % 4);
    for (int x = 0; x < w; ++x)
      for (int y = 0; y < h; ++y)
        if (HexDistance(static_cast<int16_t>(x), static_cast<int16_t>(y), static_cast<int16_t>(cx),
                        static_cast<int16_t>(cy)) < r)
          m.at(x, y) = 0;
  }
  return m;
}

// Sea reaching into the land from the edges in long inlets.
Terrain Bays(std::mt19937& g, int w, int h) {
  Terrain m(w, h, 3);
  for (int i = 0; i < 2 + static_cast<int>(g() % 5); ++i) {
    int x = static_cast<int>(g() % w), y = 0;
    const int side = 1 + static_cast<int>(g() % 6);
    for (int step = 0; step < w + h && m.on(x, y); ++step) {
      m.at(x, y) = 0;
      HexNeighbour(x, y, (g() % 3) ? side : 2);
    }
  }
  return m;
}

// Teeth of land hanging from a bar, and teeth of sea between them, joined
// only at the far end: many runs that merge late.
Terrain Comb(int w, int h, bool barAtBottom, int gap) {
  Terrain m(w, h);
  for (int x = 0; x < w; ++x)
    for (int y = 0; y < h; ++y) {
      const bool bar = barAtBottom ? y == h - 1 : y == 0;
      if (bar || x % gap == 0) m.at(x, y) = 1;
    }
  return m;
}

// A square spiral of land, one hex wide, with sea between its turns.
Terrain Spiral(int w, int h) {
  Terrain m(w, h);
  int x0 = 0, y0 = 0, x1 = w - 1, y1 = h - 1;
  while (x0 <= x1 && y0 <= y1) {
    for (int x = x0; x <= x1; ++x) m.at(x, y0) = 1;
    for (int y = y0; y <= y1; ++y) m.at(x1, y) = 1;
    if (y1 > y0 + 1)
      for (int x = x0; x <= x1; ++x) m.at(x, y1) = 1;
    if (x1 > x0 + 2)
      for (int y = y0 + 2; y <= y1; ++y) m.at(x0, y) = 1;
    x0 += 2;
    y0 += 2;
    x1 -= 2;
    y1 -= 2;
  }
  return m;
}

// One-hex-wide lines of land running across the columns along one side.
Terrain Diagonals(int w, int h, int side, int every) {
  Terrain m(w, h);
  for (int start = -2 * h; start < w + 2 * h; start += every) {
    int x = start, y = side == 1 ? 0 : h - 1;
    for (int step = 0; step < w + 2 * h; ++step) {
      if (m.on(x, y)) m.at(x, y) = 2;
      HexNeighbour(x, y, side);
    }
  }
  return m;
}

void ExpectSameAsPlain(const Terrain& m, const std::string& what) {
  const auto plain = PlainSweeps(m);
  const auto fast = NumberLandMasses(m.t.data(), m.w, m.h);
  ASSERT_EQ(fast.number.size(), plain.size());
  for (int y = 0; y < m.h; ++y)
    for (int x = 0; x < m.w; ++x) {
      const size_t i = static_cast<size_t>(y) * m.w + x;
      ASSERT_EQ(fast.number[i], plain[i]) << what << " " << m.w << "x" << m.h << " at (" << x << ", " << y << ")";
    }
  int32_t highest = 0;
  for (auto v : plain) highest = std::max(highest, v);
  EXPECT_EQ(fast.highest, highest) << what;
}

}  // namespace

TEST(LandMass, SameNumbersAsThePlainSweepsOnRandomMaps) {
  std::mt19937 g(7);
  for (int i = 0; i < 400; ++i) {
    const int w = 1 + static_cast<int>(g() % 40), h = 1 + static_cast<int>(g() % 40);
    const double share = (g() % 9 + 1) / 10.0;
    ExpectSameAsPlain(RandomMap(g, w, h, share), "random #" + std::to_string(i));
  }
}

TEST(LandMass, SameNumbersAsThePlainSweepsOnShapedMaps) {
  std::mt19937 g(11);
  for (int i = 0; i < 60; ++i) {
    const int w = 2 + static_cast<int>(g() % 45), h = 2 + static_cast<int>(g() % 45);
    ExpectSameAsPlain(Lakes(g, w, h), "lakes");
    ExpectSameAsPlain(Bays(g, w, h), "bays");
  }
  for (int w : {1, 2, 3, 7, 20, 41})
    for (int h : {1, 2, 5, 16, 33}) {
      for (int gap : {2, 3, 5}) {
        ExpectSameAsPlain(Comb(w, h, true, gap), "comb, bar at the bottom");
        ExpectSameAsPlain(Comb(w, h, false, gap), "comb, bar at the top");
      }
      ExpectSameAsPlain(Spiral(w, h), "spiral");
      for (int side : {1, 6})
        for (int every : {2, 3, 4}) ExpectSameAsPlain(Diagonals(w, h, side, every), "diagonals");
    }
}

// Independent of both implementations: every body, land or water, has a
// number of its own, land bodies 1, 2, 3 ... and water bodies k + 2, k + 3 ...
// in the order the column scan first meets them. The merge only ever looks
// at the first numbered neighbour, but the neighbours already numbered when a
// hex is reached (lower left, upper left, above) always include one of every
// body it touches, so no touching bodies stay apart and none are joined.
TEST(LandMass, NumbersAreTheBodiesInTheOrderFirstMet) {
  std::mt19937 g(5);
  for (int i = 0; i < 300; ++i) {
    const int w = 1 + static_cast<int>(g() % 50), h = 1 + static_cast<int>(g() % 50);
    const Terrain m = RandomMap(g, w, h, (g() % 9 + 1) / 10.0);
    const auto fast = NumberLandMasses(m.t.data(), m.w, m.h);
    int lands = 0, waters = 0;
    const auto land = FloodBodies(m, true, lands);
    const auto water = FloodBodies(m, false, waters);
    const int k = std::max(lands, 1);
    ASSERT_EQ(fast.landBodies, k);
    for (size_t j = 0; j < m.t.size(); ++j)
      ASSERT_EQ(fast.number[j], land[j] >= 0 ? land[j] + 1 : k + 2 + water[j]) << "map " << i << " hex " << j;
  }
}

TEST(LandMass, EdgeCases) {
  {  // All sea: no land numbers, k stays 1, the sea is 3.
    Terrain m(9, 7, 0);
    auto r = NumberLandMasses(m.t.data(), m.w, m.h);
    EXPECT_EQ(r.landBodies, 1);
    for (auto v : r.number) ASSERT_EQ(v, 3);
  }
  {  // All land: 1 throughout.
    Terrain m(9, 7, 4);
    auto r = NumberLandMasses(m.t.data(), m.w, m.h);
    for (auto v : r.number) ASSERT_EQ(v, 1);
    EXPECT_EQ(r.highest, 1);
  }
  {  // One island in one sea: 1 and 3, 2 unused.
    Terrain m(8, 8, 0);
    for (int x = 3; x <= 5; ++x)
      for (int y = 3; y <= 5; ++y) m.at(x, y) = 1;
    auto r = NumberLandMasses(m.t.data(), m.w, m.h);
    for (int x = 0; x < 8; ++x)
      for (int y = 0; y < 8; ++y) ASSERT_EQ(r.number[y * 8 + x], m.at(x, y) ? 1 : 3);
  }
  {  // Hexes that look diagonal on the grid are not neighbours: (2, 2) and
     // (3, 1) stay apart (an even column's right neighbours are rows y and
     // y + 1), (3, 2) and (4, 3) too (an odd column's are y - 1 and y).
    Terrain m(7, 6, 0);
    m.at(2, 2) = 1;
    m.at(3, 1) = 1;
    m.at(3, 4) = 1;
    m.at(4, 5) = 1;
    auto r = NumberLandMasses(m.t.data(), m.w, m.h);
    auto n = [&](int x, int y) { return r.number[y * 7 + x]; };
    EXPECT_EQ(n(2, 2), 1);
    EXPECT_EQ(n(3, 1), 2);
    EXPECT_EQ(n(3, 4), 3);
    EXPECT_EQ(n(4, 5), 4);
    EXPECT_EQ(r.landBodies, 4);
    // While true neighbours join: (2, 2) with (3, 2) and (3, 3).
    m.at(3, 3) = 1;
    r = NumberLandMasses(m.t.data(), m.w, m.h);
    EXPECT_EQ(n(2, 2), n(3, 3));
    EXPECT_EQ(n(3, 4), n(3, 3));
  }
  {  // Two lakes either side of a one-hex-wide isthmus stay apart; so do
     // land and water that touch.
    Terrain m(9, 5, 1);
    m.at(2, 2) = 0;
    m.at(6, 2) = 0;
    auto r = NumberLandMasses(m.t.data(), m.w, m.h);
    EXPECT_EQ(r.number[2 * 9 + 2], 3);
    EXPECT_EQ(r.number[2 * 9 + 6], 4);
    EXPECT_EQ(r.number[0], 1);
  }
  {  // Degenerate sizes.
    auto r = NumberLandMasses(nullptr, 0, 0);
    EXPECT_TRUE(r.number.empty());
    Terrain m(1, 1, 1);
    EXPECT_EQ(NumberLandMasses(m.t.data(), 1, 1).number[0], 1);
  }
}

TEST(LandMass, MenuCommandFillsTheMapAndShowsTheColumnCounter) {
  Session s("/nonexistent");
  Document& d = s.doc;
  d.MapMaxX = 12;
  d.MapMaxY = 9;
  d.AllocateAll();
  d.HexLandMass.Fill(77);
  std::mt19937 g(3);
  Terrain m(13, 10);
  for (int x = 0; x < 13; ++x)
    for (int y = 0; y < 10; ++y) d.HexInfo(x, y, 0) = m.at(x, y) = static_cast<uint8_t>(g() % 3 == 0 ? 0 : 2);
  menu_LandMass_Click(s);
  const auto plain = PlainSweeps(m);
  for (int x = 0; x < 13; ++x)
    for (int y = 0; y < 10; ++y) ASSERT_EQ(d.HexLandMass(x, y), plain[y * 13 + x]);
  EXPECT_EQ(s.forms.Label3Caption, "12,10");
  EXPECT_EQ(s.forms.MousePointer, vbArrow);
}

TEST(LandMass, NumbersBeyond16BitsAreRefusedAndTheOldNumbersKept) {
  Session s("/nonexistent");
  Document& d = s.doc;
  d.MapMaxX = 399;
  d.MapMaxY = 399;
  d.AllocateAll();
  d.HexLandMass.Fill(5);
  // Land on even columns and even rows only: 40000 single-hex islands.
  for (int x = 0; x <= 399; x += 2)
    for (int y = 0; y <= 399; y += 2) d.HexInfo(x, y, 0) = 1;
  auto& ui = dynamic_cast<HeadlessUi&>(s.ui());
  EXPECT_FALSE(BuildLandMasses(s));
  ASSERT_EQ(ui.messages.size(), 1u);
  EXPECT_NE(ui.messages[0].find("too many"), std::string::npos);
  EXPECT_EQ(d.HexLandMass(0, 0), 5);
  EXPECT_EQ(d.HexLandMass(399, 399), 5);
  EXPECT_EQ(s.forms.MousePointer, vbArrow);
}

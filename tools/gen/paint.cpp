// The tile pictures. Each tile is painted into a 60 x 50 cell of floating
// point colour, inside the hexagon only; what lies outside stays black.
//
// Pictures that must meet their neighbours (coasts, forest edges, roads,
// rivers) are built from the depth of a point toward each side, so that two
// tiles across a side agree on what lies along it: the random texture is
// damped to nothing at the hexagon's edge.
#include <algorithm>
#include <cmath>
#include <functional>

#include "art.h"
#include "gen.h"

namespace kvgen {
namespace {

// ---- Noise ---------------------------------------------------------------

uint32_t Hash(uint32_t a, uint32_t b, uint32_t c) {
  uint32_t h = a * 0x9E3779B1u ^ (b + 0x7F4A7C15u) * 0x85EBCA77u ^ (c + 0x165667B1u) * 0xC2B2AE3Du;
  h ^= h >> 15;
  h *= 0x2C1B3C6Du;
  h ^= h >> 12;
  h *= 0x297A2D39u;
  h ^= h >> 15;
  return h;
}
double H01(int x, int y, uint32_t seed) {
  return Hash(static_cast<uint32_t>(x), static_cast<uint32_t>(y), seed) / 4294967296.0;
}
double VNoise(double x, double y, uint32_t seed) {
  const double fx0 = std::floor(x), fy0 = std::floor(y);
  const int ix = static_cast<int>(fx0), iy = static_cast<int>(fy0);
  double fx = x - fx0, fy = y - fy0;
  fx = fx * fx * (3 - 2 * fx);
  fy = fy * fy * (3 - 2 * fy);
  const double a = H01(ix, iy, seed), b = H01(ix + 1, iy, seed);
  const double c = H01(ix, iy + 1, seed), d = H01(ix + 1, iy + 1, seed);
  return (a + (b - a) * fx) * (1 - fy) + (c + (d - c) * fx) * fy;
}
double Fbm(double x, double y, uint32_t seed) {
  return 0.55 * VNoise(x, y, seed) + 0.3 * VNoise(x * 2.1, y * 2.1, seed + 17) +
         0.15 * VNoise(x * 4.3, y * 4.3, seed + 41);
}
double Smooth(double e0, double e1, double v) {
  double t = std::clamp((v - e0) / (e1 - e0), 0.0, 1.0);
  return t * t * (3 - 2 * t);
}

// ---- Colour --------------------------------------------------------------

struct C {
  double r = 0, g = 0, b = 0;
};
C Col(uint32_t rgb) { return {double((rgb >> 16) & 255), double((rgb >> 8) & 255), double(rgb & 255)}; }
C Mix(C a, C b, double t) { return {a.r + (b.r - a.r) * t, a.g + (b.g - a.g) * t, a.b + (b.b - a.b) * t}; }
C Scale(C a, double k) { return {a.r * k, a.g * k, a.b * k}; }

struct Cell {
  C px[kH][kW];
  C& at(int x, int y) { return px[y][x]; }
};

// Depth toward the nearest of the given sides (1 on its edge); -1 for none.
double MaxDepth(const std::vector<int>& sides, double x, double y) {
  double f = -1;
  for (int s : sides) f = std::max(f, SideDepth(s, x, y));
  return f;
}
double EdgeDepth(double x, double y) {
  double f = 0;
  for (int s = 1; s <= 6; ++s) f = std::max(f, SideDepth(s, x, y));
  return f;
}
// Noise that fades out toward the edge of the hexagon.
double EdgeNoise(double x, double y, uint32_t seed, double amp) {
  double damp = std::clamp((1 - EdgeDepth(x, y)) * 4, 0.0, 1.0);
  return amp * (VNoise(x / 6, y / 6, seed) - 0.5) * 2 * damp;
}
// Whether a point lies in the band along the given sides (deeper than thr).
double BandValue(const std::vector<int>& sides, double x, double y, uint32_t seed) {
  if (sides.empty()) return -1;
  return MaxDepth(sides, x, y) + EdgeNoise(x, y, seed, 0.09);
}

std::vector<int> Complement(const std::vector<int>& sides) {
  std::vector<int> out;
  for (int s = 1; s <= 6; ++s)
    if (std::find(sides.begin(), sides.end(), s) == sides.end()) out.push_back(s);
  return out;
}
// Side numbers of the ring positions named in a pattern.
std::vector<int> PatternSides(const std::string& pattern) {
  std::vector<int> out;
  for (int p = 1; p <= 6 && p <= static_cast<int>(pattern.size()); ++p)
    if (pattern[p - 1] != '0') out.push_back(RingSide(p));
  std::sort(out.begin(), out.end());
  return out;
}

template <class F>
void ForHex(F f) {
  for (int y = 0; y < kH; ++y)
    for (int x = HexLeft(y); x <= HexRight(y); ++x) f(x, y);
}
void Disc(Cell& c, double cx, double cy, double r, C col) {
  for (int y = static_cast<int>(std::floor(cy - r)); y <= static_cast<int>(std::ceil(cy + r)); ++y)
    for (int x = static_cast<int>(std::floor(cx - r)); x <= static_cast<int>(std::ceil(cx + r)); ++x)
      if (InHex(x, y) && (x - cx) * (x - cx) + (y - cy) * (y - cy) <= r * r) c.at(x, y) = col;
}

// ---- Ground --------------------------------------------------------------

C ClearAt(int x, int y, uint32_t seed) {
  C c = Mix(Col(0x78AA4A), Col(0x96BA56), Fbm(x / 9.0, y / 9.0, seed));
  double h = H01(x, y, seed + 5);
  if (h > 0.93)
    c = Mix(c, Col(0x5C8C3A), 0.7);
  else if (h > 0.91)
    c = Mix(c, Col(0xB4C878), 0.6);
  return c;
}
C SeaAt(int x, int y, uint32_t seed) {
  C c = Mix(Col(0x1C4696), Col(0x2A5CAA), Fbm(x / 12.0, y / 6.0, seed));
  double w = std::sin(x * 0.45 + y * 1.2 + 7 * VNoise(x / 10.0, y / 10.0, seed + 3));
  if (w > 0.94) c = Mix(c, Col(0x6A9AD2), 0.6);
  return c;
}
C SandAt(int x, int y, uint32_t seed) { return Mix(Col(0xD8C890), Col(0xC8B478), H01(x, y, seed + 9)); }

void PaintClear(Cell& c, uint32_t seed) {
  ForHex([&](int x, int y) { c.at(x, y) = ClearAt(x, y, seed); });
}
void PaintSea(Cell& c, uint32_t seed) {
  ForHex([&](int x, int y) { c.at(x, y) = SeaAt(x, y, seed); });
}
void PaintFields(Cell& c, uint32_t seed) {
  const double a = 0.35 + 0.8 * H01(1, 2, seed);
  const double ca = std::cos(a), sa = std::sin(a);
  static const uint32_t crop[4] = {0xD6C46E, 0x82AA46, 0x9A7A52, 0xC8C878};
  ForHex([&](int x, int y) {
    double u = x * ca + y * sa + 40, v = -x * sa + y * ca + 40;
    int pu = static_cast<int>(std::floor(u / 14)), pv = static_cast<int>(std::floor(v / 11));
    C col = Col(crop[Hash(pu, pv, seed) % 4]);
    if (static_cast<int>(std::floor(v)) % 3 == 0) col = Scale(col, 0.9);
    col = Mix(col, Col(0x808040), 0.15 * H01(x, y, seed));
    double fu = u / 14 - pu, fv = v / 11 - pv;
    if (fu < 0.08 || fv < 0.1) col = Col(0x5A8436);
    c.at(x, y) = col;
  });
}
void PaintRough(Cell& c, uint32_t seed) {
  ForHex([&](int x, int y) { c.at(x, y) = Mix(Col(0x9C8C74), Col(0xB4A48C), Fbm(x / 7.0, y / 7.0, seed)); });
  for (int gy = 0; gy < 10; ++gy)
    for (int gx = 0; gx < 12; ++gx) {
      if (H01(gx, gy, seed + 1) < 0.45) continue;
      double cx = gx * 5 + 5 * H01(gx, gy, seed + 2), cy = gy * 5 + 5 * H01(gx, gy, seed + 3);
      double r = 0.8 + 1.2 * H01(gx, gy, seed + 4);
      Disc(c, cx + 0.6, cy + 0.6, r, Col(0x6A5E50));
      Disc(c, cx, cy, r, Col(0xCEC2AE));
    }
}
void PaintSwamp(Cell& c, uint32_t seed) {
  ForHex([&](int x, int y) {
    double n = Fbm(x / 7.0, y / 7.0, seed);
    C col = Mix(Col(0x62784E), Col(0x748A56), n);
    if (n > 0.56)
      col = Mix(Col(0x3E6A6E), Col(0x4E7C80), H01(x, y, seed));
    else if (H01(x, y, seed + 7) > 0.88)
      col = Col(0x3E5A2C);
    c.at(x, y) = col;
  });
}

// Light from the upper left: the slope that rises toward the lower right is lit.
double Shade(const std::function<double(double, double)>& h, double x, double y, double k) {
  double gx = h(x + 1, y) - h(x - 1, y), gy = h(x, y + 1) - h(x, y - 1);
  return std::clamp(1.0 + k * (gx + gy), 0.45, 1.5);
}

void PaintHills(Cell& c, uint32_t seed) {
  // Rolling ground: a few low, broad swells, lit from the upper left, that
  // die away toward the edge so that neighbouring hills meet on level ground.
  constexpr int kN = 3;
  double bx[kN], by[kN], br[kN], bh[kN];
  for (int i = 0; i < kN; ++i) {
    bx[i] = 12 + 36 * H01(i, 1, seed);
    by[i] = 10 + 30 * H01(i, 2, seed);
    br[i] = 11 + 5 * H01(i, 3, seed);
    bh[i] = 0.6 + 0.5 * H01(i, 4, seed);
  }
  auto h = [&](double x, double y) {
    double v = 0;
    for (int i = 0; i < kN; ++i) {
      double d2 = ((x - bx[i]) * (x - bx[i]) + (y - by[i]) * (y - by[i])) / (br[i] * br[i]);
      v = std::max(v, bh[i] * std::exp(-d2 * 1.3));
    }
    return v * Smooth(0.0, 0.3, 1 - EdgeDepth(x, y));
  };
  ForHex([&](int x, int y) {
    const double hv = h(x, y);
    C base = Mix(Col(0x8EAE54), Col(0xB4A862), Smooth(0.1, 0.7, hv));
    base = Mix(base, Col(0x9A9C58), 0.3 * Fbm(x / 8.0, y / 8.0, seed));
    C col = Scale(base, Shade(h, x, y, 0.7));
    if (H01(x, y, seed + 5) > 0.94) col = Mix(col, Col(0x6A7A3A), 0.5);
    c.at(x, y) = col;
  });
}

// The height at which mountain tiles meet each other along their edges.
constexpr double kRockLevel = 0.3;

// Mountain rock by height (0 at the foot, 1 on the peaks), shaded.
C RockAt(double hv, double shade, int x, int y, uint32_t seed) {
  C foot = Mix(Col(0x8A7A5E), Col(0x9A8C6C), H01(x, y, seed));
  C rock = Mix(Col(0x847464), Col(0x9C948A), Fbm(x / 5.0, y / 5.0, seed + 2));
  C col = Mix(foot, rock, Smooth(0.05, 0.35, hv));
  col = Scale(col, shade);
  if (hv > 0.78 + 0.08 * VNoise(x / 4.0, y / 4.0, seed + 8))
    col = Mix(Col(0xF0F2F6), Col(0xB8C0CC), std::clamp(1.2 - shade, 0.0, 1.0));
  return col;
}
void PaintMountain(Cell& c, uint32_t seed, double scale = 1.0) {
  // One peak off the centre and ridges of folded rock running out from it.
  const double px = 22 + 16 * H01(1, 5, seed), py = 18 + 14 * H01(1, 6, seed);
  const double ph = (0.22 + 0.15 * H01(1, 8, seed)) * scale;  // below the snow line
  auto h = [&](double x, double y) {
    const double d = std::hypot(x - px, y - py) / 26;
    const double ridge = 1 - std::abs(2 * Fbm(x / 10.0, y / 10.0, seed + 3) - 1);
    double v = kRockLevel + ph * std::pow(std::max(0.0, 1 - d), 1.3) + 0.22 * (ridge - 0.45) * scale;
    v += 0.05 * (VNoise(x / 3.0, y / 3.0, seed + 4) - 0.5);
    // Toward the edge the ground settles to the level where every mountain
    // tile meets its neighbours: bare rock, so that a range reads as one.
    return kRockLevel + (std::max(kRockLevel, v) - kRockLevel) * Smooth(0.0, 0.45, 1 - EdgeDepth(x, y));
  };
  ForHex([&](int x, int y) { c.at(x, y) = RockAt(h(x, y), Shade(h, x, y, 6), x, y, seed); });
}

// ---- Trees ---------------------------------------------------------------

struct TreeStyle {
  uint32_t ground, leaf[3];
  double rmin, rmax;
  double spacing;
};
const TreeStyle kForest{0x1A4A1E, {0x24602A, 0x1E5424, 0x2E6E30}, 2.6, 3.8, 4.6};
const TreeStyle kWoods{0x2E5A24, {0x4A8A34, 0x3E7A2E, 0x5A9A3E}, 2.2, 3.2, 5.0};

// Trees on the points where `inside` holds; `ground` under them where `under` holds.
void PaintTrees(Cell& c, uint32_t seed, const TreeStyle& st, const std::function<bool(double, double)>& inside,
                const std::function<bool(double, double)>& under) {
  ForHex([&](int x, int y) {
    if (under(x, y)) c.at(x, y) = Mix(Col(st.ground), Scale(Col(st.ground), 0.8), H01(x, y, seed + 1));
  });
  struct T {
    double x, y, r;
    int k;
  };
  std::vector<T> trees;
  const int nx = static_cast<int>(70 / st.spacing), ny = static_cast<int>(60 / st.spacing);
  for (int gy = 0; gy < ny; ++gy)
    for (int gx = 0; gx < nx; ++gx) {
      double x = -4 + gx * st.spacing + (gy % 2) * st.spacing / 2 + (H01(gx, gy, seed + 11) - 0.5) * st.spacing * 0.7;
      double y = -4 + gy * st.spacing * 0.86 + (H01(gx, gy, seed + 12) - 0.5) * st.spacing * 0.6;
      if (!inside(x, y)) continue;
      trees.push_back({x, y, st.rmin + (st.rmax - st.rmin) * H01(gx, gy, seed + 13),
                       static_cast<int>(Hash(gx, gy, seed + 14) % 3)});
    }
  std::stable_sort(trees.begin(), trees.end(), [](const T& a, const T& b) { return a.y < b.y; });
  for (const T& t : trees) {
    const C leaf = Col(st.leaf[t.k]);
    for (int y = static_cast<int>(std::floor(t.y - t.r)); y <= static_cast<int>(std::ceil(t.y + t.r)); ++y)
      for (int x = static_cast<int>(std::floor(t.x - t.r)); x <= static_cast<int>(std::ceil(t.x + t.r)); ++x) {
        if (!InHex(x, y)) continue;
        double dx = x - t.x, dy = y - t.y, d2 = dx * dx + dy * dy;
        if (d2 > t.r * t.r) continue;
        double lit = -(dx + dy) / (t.r * 1.6);  // upper left is lit
        C col = Scale(leaf, 1.0 + 0.35 * lit);
        if (d2 > (t.r - 1) * (t.r - 1) && dx + dy > 0) col = Scale(leaf, 0.62);
        c.at(x, y) = col;
      }
  }
}

// ---- Built-up ground -----------------------------------------------------

void PaintHouses(Cell& c, uint32_t seed, const std::function<bool(double, double)>& where, double density) {
  static const uint32_t roof[5] = {0xAA4632, 0x7A6E64, 0x96583C, 0xBEB4AA, 0x8C3C2C};
  for (int gy = 0; gy < 11; ++gy)
    for (int gx = 0; gx < 11; ++gx) {
      if (H01(gx, gy, seed + 21) > density) continue;
      int x0 = gx * 6 + static_cast<int>(2 * H01(gx, gy, seed + 22)) - 1;
      int y0 = gy * 5 + static_cast<int>(2 * H01(gx, gy, seed + 23)) - 1;
      int w = 3 + static_cast<int>(2 * H01(gx, gy, seed + 24)), h = 2 + static_cast<int>(2 * H01(gx, gy, seed + 25));
      if (!where(x0 + w / 2.0, y0 + h / 2.0)) continue;
      bool fits = true;
      for (int y = y0; y <= y0 + h; ++y)
        for (int x = x0; x <= x0 + w; ++x) fits = fits && InHex(x, y) && where(x, y);
      if (!fits) continue;
      const C r = Col(roof[Hash(gx, gy, seed + 26) % 5]);
      for (int y = y0; y < y0 + h + 1; ++y)
        for (int x = x0; x < x0 + w + 1; ++x) {
          bool shadow = x == x0 + w || y == y0 + h;
          c.at(x, y) = shadow ? Col(0x4E4A44) : (y == y0 ? Scale(r, 1.2) : r);
        }
    }
}

// ---- Lines: roads and rivers ---------------------------------------------

struct Path {
  std::vector<P> pts;
};
// The course of a road or river leaving by the given sides: one side runs to
// the centre; two sides make one smooth curve; more sides meet at the centre.
std::vector<Path> Courses(const std::vector<int>& sides) {
  std::vector<Path> out;
  auto end = [](int s) {
    P m = SideMid(s), n = SideNormal(s);
    return P{m.x + 2 * n.x, m.y + 2 * n.y};
  };
  if (sides.size() == 2) {
    P a = end(sides[0]), b = end(sides[1]);
    Path p;
    for (int i = 0; i <= 200; ++i) {
      double t = i / 200.0, u = 1 - t;
      p.pts.push_back(
          {u * u * a.x + 2 * u * t * kCentre.x + t * t * b.x, u * u * a.y + 2 * u * t * kCentre.y + t * t * b.y});
    }
    out.push_back(p);
    return out;
  }
  for (int s : sides) {
    P a = end(s);
    Path p;
    for (int i = 0; i <= 100; ++i) {
      double t = i / 100.0;
      p.pts.push_back({kCentre.x + (a.x - kCentre.x) * t, kCentre.y + (a.y - kCentre.y) * t});
    }
    out.push_back(p);
  }
  return out;
}
void Stamp(Cell& c, const std::vector<Path>& paths, double r, C col,
           const std::function<bool(double, double)>& where = nullptr) {
  for (const Path& p : paths)
    for (const P& q : p.pts)
      if (!where || where(q.x, q.y)) Disc(c, q.x, q.y, r, col);
}

void PaintRiver(Cell& c, const std::vector<int>& sides, double w, uint32_t seed) {
  std::vector<Path> paths = Courses(sides);
  Stamp(c, paths, w + 1.3, Col(0x56784A));
  Stamp(c, paths, w, Col(0x3E7CCE));
  Stamp(c, paths, w * 0.45, Col(0x5A96DC));
  if (sides.size() == 1) {  // a spring pond
    Disc(c, kCentre.x, kCentre.y, w + 3.3, Col(0x56784A));
    Disc(c, kCentre.x, kCentre.y, w + 2, Col(0x3E7CCE));
    Disc(c, kCentre.x - 1, kCentre.y - 1, w * 0.6, Col(0x5A96DC));
  }
  (void)seed;
}

// A river mouth: the river comes in across side `from` and opens out, between
// sand banks, toward the opposite side, where it meets the sea.
void PaintMouth(Cell& c, int from, uint32_t seed) {
  const int to = (from + 2) % 6 + 1;
  const P a = SideMid(from), b = SideMid(to);
  const double w0 = 3.8, w1 = 12.5;
  ForHex([&](int x, int y) {
    // Where the point lies along the course (0 at `from`, 1 at `to`) and how far off it.
    const double vx = b.x - a.x, vy = b.y - a.y, l2 = vx * vx + vy * vy;
    const double t = std::clamp(((x - a.x) * vx + (y - a.y) * vy) / l2, 0.0, 1.0);
    const double off = std::abs((x - a.x) * vy - (y - a.y) * vx) / std::sqrt(l2);
    const double w = w0 + (w1 - w0) * t * t + 1.2 * (VNoise(x / 5.0, y / 5.0, seed) - 0.5) * t;
    if (off < w) {
      C water = Mix(Col(0x3E7CCE), SeaAt(x, y, seed), Smooth(0.45, 1.0, t));
      if (off < w * 0.4 && t < 0.7) water = Mix(water, Col(0x5A96DC), 0.5);
      c.at(x, y) = water;
    } else if (off < w + 1.3 + 3.5 * t) {
      c.at(x, y) = t > 0.25 ? SandAt(x, y, seed) : Col(0x56784A);
    }
  });
}

// Streets of built-up ground: the terrain itself connects such a hex on
// every side, so its streets are part of the ground, drawn under the houses
// in a colour of their own (never the road surface of the road tiles).
void PaintStreets(Cell& c, const std::vector<int>& sides, double width) {
  std::vector<Path> paths = Courses(sides);
  Stamp(c, paths, width + 0.8, Col(0x8C8676));
  Stamp(c, paths, width, Col(0xC4BCA8));
}

void PaintRoad(Cell& c, const std::vector<int>& sides, int terrain, bool bridge) {
  std::vector<Path> paths = Courses(sides);
  if (terrain == 8 || terrain == 10 || terrain == 12) Stamp(c, paths, 5.2, Col(0x6E9A48));
  if (terrain == 3) Stamp(c, paths, 4.6, Col(0x9C8C70));
  if (bridge) {
    // A stone bridge: the deck with dark parapets over the water.
    auto onBridge = [](double x, double y) {
      return (x - kCentre.x) * (x - kCentre.x) + (y - kCentre.y) * (y - kCentre.y) < 9.5 * 9.5;
    };
    Stamp(c, paths, 6.0, Col(0x3A3630), onBridge);
    Stamp(c, paths, 4.9, Col(0xBCB6A8), onBridge);
    Stamp(c, paths, 3.0, Col(kRoadEdge), [&](double x, double y) { return !onBridge(x, y); });
  } else {
    Stamp(c, paths, 3.0, Col(kRoadEdge));
  }
  Stamp(c, paths, 1.9, Col(kRoadFill));
  if (sides.size() == 1) {  // a road end: a small turning place
    Disc(c, kCentre.x, kCentre.y, 4.2, Col(kRoadEdge));
    Disc(c, kCentre.x, kCentre.y, 3.0, Col(kRoadFill));
  }
}

// ---- The terrains --------------------------------------------------------

void PaintPlainBase(Cell& c, int terrain, uint32_t seed) {
  switch (terrain) {
    case 0: PaintSea(c, seed); break;
    case 3: PaintMountain(c, seed); break;
    case 4: PaintHills(c, seed); break;
    case 7: PaintSwamp(c, seed); break;
    case 9: PaintRough(c, seed); break;
    case 13: PaintFields(c, seed); break;
    case 8:
    case 12:
      PaintTrees(
          c, seed, kForest, [](double, double) { return true; }, [](double, double) { return true; });
      break;
    case 10:
      PaintClear(c, seed);
      PaintTrees(
          c, seed, kWoods, [&](double x, double y) { return VNoise(x / 9, y / 9, seed + 30) > 0.32; },
          [](double, double) { return false; });
      break;
    default: PaintClear(c, seed); break;
  }
}

// Sea meeting land on `land` sides (all six for a lake).
void PaintCoast(Cell& c, const std::vector<int>& land, uint32_t seed) {
  // The shore runs well inside the sea hex, so that a coast reads as a line
  // of its own and not as the outline of the hexes; it still meets each side
  // of a sea neighbour short of that side's middle.
  const double thr = 0.66;
  ForHex([&](int x, int y) {
    double f = MaxDepth(land, x, y) + EdgeNoise(x, y, seed, 0.22);
    C col;
    if (f > thr + 0.09)
      col = ClearAt(x, y, seed);
    else if (f > thr)
      col = SandAt(x, y, seed);
    else if (f > thr - 0.035)
      col = Col(0xC8E2F0);  // surf
    else
      col = Mix(SeaAt(x, y, seed), Col(0x4A8AC0), Smooth(thr - 0.25, thr, f) * 0.7);
    c.at(x, y) = col;
  });
}

void PaintForestEdge(Cell& c, int terrain, const std::vector<int>& open, uint32_t seed) {
  const double thr = 0.62;
  PaintClear(c, seed);
  auto inForest = [&](double x, double y) { return BandValue(open, x, y, seed) <= thr; };
  if (terrain == 10)
    PaintTrees(
        c, seed, kWoods, [&](double x, double y) { return inForest(x, y) && VNoise(x / 9, y / 9, seed + 30) > 0.3; },
        [](double, double) { return false; });
  else
    PaintTrees(c, seed, kForest, inForest,
               [&](double x, double y) { return BandValue(open, x, y, seed) <= thr - 0.05; });
}

// Built-up ground is connected by its terrain on every side: its houses stand
// close without a drawn street.
void PaintCity(Cell& c, const std::vector<int>& open, const std::vector<int>& streets, bool dense, uint32_t seed) {
  const double thr = 0.68;
  auto urban = [&](double x, double y) { return BandValue(open, x, y, seed) <= thr; };
  ForHex([&](int x, int y) {
    c.at(x, y) = urban(x, y) ? Mix(Col(0x9A968E), Col(0xAAA69C), H01(x, y, seed)) : ClearAt(x, y, seed);
  });
  (void)streets;
  auto offStreet = urban;
  PaintHouses(c, seed, offStreet, dense ? 1.0 : 0.92);
}

void PaintPort(Cell& c, const std::vector<int>& sea, uint32_t seed) {
  const double thr = 0.5;
  auto water = [&](double x, double y) { return BandValue(sea, x, y, seed) > thr; };
  ForHex([&](int x, int y) {
    c.at(x, y) = water(x, y) ? SeaAt(x, y, seed) : Mix(Col(0x9A968E), Col(0xAAA69C), H01(x, y, seed));
  });
  PaintHouses(
      c, seed, [&](double x, double y) { return BandValue(sea, x, y, seed) < thr - 0.2; }, 0.9);
  // Quay along the water.
  ForHex([&](int x, int y) {
    if (water(x, y)) return;
    for (auto [dx, dy] : {std::pair{1, 0}, {-1, 0}, {0, 1}, {0, -1}})
      if (InHex(x + dx, y + dy) && water(x + dx, y + dy)) c.at(x, y) = Col(0xC4C2BC);
  });
  // A pier toward each sea side, and a boat beside the first.
  for (size_t i = 0; i < sea.size(); ++i) {
    const int s = sea[i];
    P n = SideNormal(s), m = SideMid(s);
    P dir{m.x - kCentre.x, m.y - kCentre.y};
    for (double t = 0.35; t <= 0.82; t += 0.01) {
      double x = kCentre.x + dir.x * t, y = kCentre.y + dir.y * t;
      if (water(x, y) || t < 0.6) Disc(c, x, y, 1.1, Col(0x8A6A44));
    }
    if (i == 0) {
      double bx = kCentre.x + dir.x * 0.7 - n.y * 5, by = kCentre.y + dir.y * 0.7 + n.x * 5;
      if (water(bx, by)) {
        Disc(c, bx, by, 1.8, Col(0xF2F2EE));
        Disc(c, bx + 0.5, by + 0.5, 0.8, Col(0xB03020));
      }
    }
  }
}

// ---- The mountain massif -------------------------------------------------

// Cell positions of the massif pieces, relative to the west peak 86, in the
// layout of the redraw pass: 94 across side 6 of 86, and the ring around both.
struct Piece {
  int tile, dx, dy;
};
const Piece kMassif[10] = {{86, 0, 0},   {94, 45, -25}, {75, -45, -25}, {76, 0, -50},   {90, -45, 25},
                           {115, 0, 50}, {104, 45, 25}, {78, 45, -75},  {105, 90, -50}, {192, 90, 0}};

// The massif as one picture, cut into its pieces.
struct Massif {
  static constexpr int OX = 45, OY = 75, FW = 200, FH = 180;
  std::vector<double> height;  // FW x FH, 0 outside
  Massif() {
    std::vector<uint8_t> in(FW * FH, 0);
    for (const Piece& p : kMassif)
      for (int y = 0; y < kH; ++y)
        for (int x = HexLeft(y); x <= HexRight(y); ++x) in[(p.dy + OY + y) * FW + (p.dx + OX + x)] = 1;
    // Distance to the outside of the ten hexes, up to 30 pixels.
    std::vector<double> dist(FW * FH, 0);
    for (int y = 0; y < FH; ++y)
      for (int x = 0; x < FW; ++x) {
        if (!in[y * FW + x]) continue;
        double best = 30;
        for (int yy = std::max(0, y - 30); yy < std::min(FH, y + 31); ++yy)
          for (int xx = std::max(0, x - 30); xx < std::min(FW, x + 31); ++xx)
            if (!in[yy * FW + xx]) best = std::min(best, std::sqrt(double((xx - x) * (xx - x) + (yy - y) * (yy - y))));
        dist[y * FW + x] = best;
      }
    // Two peaks on the key hexes and a ridge between them.
    const double p1x = OX + kCentre.x, p1y = OY + kCentre.y;
    const double p2x = OX + 45 + kCentre.x, p2y = OY - 25 + kCentre.y;
    height.assign(FW * FH, kRockLevel);  // also just outside, where the shading looks
    for (int y = 0; y < FH; ++y)
      for (int x = 0; x < FW; ++x) {
        if (!in[y * FW + x]) continue;
        auto cone = [&](double cx, double cy, double r, double h) {
          double d = std::sqrt((x - cx) * (x - cx) + (y - cy) * (y - cy)) / r;
          return h * std::pow(std::max(0.0, 1 - d), 1.1);
        };
        // distance to the ridge segment
        double vx = p2x - p1x, vy = p2y - p1y, t = ((x - p1x) * vx + (y - p1y) * vy) / (vx * vx + vy * vy);
        t = std::clamp(t, 0.0, 1.0);
        double rx = p1x + vx * t, ry = p1y + vy * t;
        double v = std::max({cone(p1x, p1y, 80, 1.15), cone(p2x, p2y, 82, 1.25), cone(rx, ry, 60, 0.95)});
        v += 0.22 * (Fbm(x / 7.0, y / 7.0, 907) - 0.5);
        // spurs running out from the peaks
        v += 0.12 * std::sin(std::atan2(y - p1y, x - p1x) * 5 + 1.3) * Smooth(20, 45, std::hypot(x - p1x, y - p1y));
        height[y * FW + x] = kRockLevel + (std::max(kRockLevel, v) - kRockLevel) * Smooth(0, 22, dist[y * FW + x]);
      }
  }
  double H(double x, double y) const {
    int ix = std::clamp(static_cast<int>(std::lround(x)), 0, FW - 1),
        iy = std::clamp(static_cast<int>(std::lround(y)), 0, FH - 1);
    return height[iy * FW + ix];
  }
  void Paint(int tile, Cell& c) const {
    for (const Piece& p : kMassif) {
      if (p.tile != tile) continue;
      auto h = [&](double x, double y) { return H(x + p.dx + OX, y + p.dy + OY); };
      ForHex([&](int x, int y) {
        // texture in the massif's own frame, so that pieces continue each other
        int fx = x + p.dx + OX, fy = y + p.dy + OY;
        c.at(x, y) = RockAt(h(x, y), Shade(h, x, y, 7), fx, fy, 901);
      });
    }
  }
};

void PaintTile(const TileDef& t, const Massif& massif, Cell& c) {
  const uint32_t seed = 1000u + static_cast<uint32_t>(t.tile) * 7919u;
  ForHex([&](int x, int y) { c.at(x, y) = Col(0x808080); });
  const bool edge = t.art == "edge";
  if (t.art == "massif") {
    massif.Paint(t.tile, c);
  } else if (t.art == "mouth") {
    PaintClear(c, seed);
    PaintMouth(c, t.river.front(), seed);
    return;
  } else if (edge && t.terrain == 0) {
    PaintCoast(c, Complement(PatternSides(t.pattern)), seed);
  } else if (edge && (t.terrain == 8 || t.terrain == 10)) {
    PaintForestEdge(c, t.terrain, Complement(PatternSides(t.pattern)), seed);
  } else if (edge && t.terrain == 5) {
    PaintCity(c, Complement(PatternSides(t.pattern)), t.road, t.pattern == "123456", seed);
  } else if (edge && t.terrain == 14) {
    PaintPort(c, PatternSides(t.pattern), seed);
  } else if (t.terrain == 6) {
    // A village: lanes from every side to a green, farmhouses around it.
    PaintClear(c, seed);
    ForHex([&](int x, int y) {
      if (std::hypot(x - kCentre.x, y - kCentre.y) < 13) c.at(x, y) = Mix(c.at(x, y), Col(0xA8A070), 0.35);
    });
    PaintStreets(c, t.road, 1.0);
    std::vector<Path> lanes = Courses(t.road);
    PaintHouses(
        c, seed,
        [&](double x, double y) {
          const double r = std::hypot(x - kCentre.x, y - kCentre.y);
          if (r > 17 || r < 3) return false;
          for (const Path& p : lanes)
            for (size_t i = 0; i < p.pts.size(); i += 2)
              if (std::hypot(x - p.pts[i].x, y - p.pts[i].y) < 1.9) return false;
          return true;
        },
        0.95);
  } else {
    if (!t.road.empty() && t.terrain == 3)
      PaintMountain(c, seed, 0.7);
    else
      PaintPlainBase(c, t.terrain, seed);
  }
  if (!t.river.empty()) PaintRiver(c, t.river, t.terrain == 2 ? 3.8 : 2.2, seed);
  if (!t.road.empty() && t.terrain != 5 && t.terrain != 6 && t.terrain != 14)
    PaintRoad(c, t.road, t.terrain, !t.river.empty());
}

}  // namespace

void PaintTileSheet(const std::vector<TileDef>& tiles, kv::Bitmap& sheet) {
  sheet.Create(kSheetCols * kW, static_cast<int>((tiles.size() + kSheetCols - 1) / kSheetCols) * kH);
  const Massif massif;
  Cell cell;
  for (const TileDef& t : tiles) {
    PaintTile(t, massif, cell);
    const int ox = (t.tile % kSheetCols) * kW, oy = (t.tile / kSheetCols) * kH;
    ForHex([&](int x, int y) {
      const C& v = cell.at(x, y);
      int r = std::clamp(static_cast<int>(std::lround(v.r)), 0, 255);
      int g = std::clamp(static_cast<int>(std::lround(v.g)), 0, 255);
      int b = std::clamp(static_cast<int>(std::lround(v.b)), 0, 255);
      if (r == 0 && g == 0 && b == 0) r = g = b = 8;  // black is the knock-out colour
      sheet.SetPixel(ox + x, oy + y, kv::RGB(r, g, b));
    });
  }
}

}  // namespace kvgen

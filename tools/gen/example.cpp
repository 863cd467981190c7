// The example map: a 60 x 40 stretch of coast with a port, a river with
// bridges, roads and a railroad, forests, a mountain massif, two sides with
// their objectives, deployment hexes and hex names.
//
// The terrain is laid out here; the tiles come from the editor's own
// operations wherever it has one (auto-tiling of coasts, forest edges,
// cities and ports; the random variants; the mountain pass; the road
// connections and contours), and from the catalogue for rivers, bridges and
// roads, whose course the layout knows. Every draw comes from the session's
// own generator, so the map is the same on every run.
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <map>
#include <set>
#include <unistd.h>

#include "art.h"
#include "autotile/engine.h"
#include "autotile/passes.h"
#include "autotile/random.h"
#include "document/document_ops.h"
#include "document/mapfile.h"
#include "document/namestore.h"
#include "editing/mapload.h"
#include "editing/startup.h"
#include "gen.h"
#include "hexwalk.h"
#include "session.h"
#include "view/compose.h"
#include "view/geometry.h"

namespace fs = std::filesystem;

namespace kvgen {
namespace {

constexpr int kMapW = 60, kMapH = 40;

enum Terrain : uint8_t {
  kSea = 0,
  kClear = 1,
  kRiver = 2,
  kMountain = 3,
  kHills = 4,
  kCity = 5,
  kVillage = 6,
  kSwamp = 7,
  kForest = 8,
  kRough = 9,
  kWoods = 10,
  kFields = 13,
  kPort = 14
};
enum Side : int { kArdenmark = 1, kBelvaro = 2 };

bool OnMap(Hex h) { return h.x >= 0 && h.y >= 0 && h.x < kMapW && h.y < kMapH; }
// Cube coordinates of the layout in which even columns stand half a row lower.
struct Cube {
  double q, r, s;
};
Cube ToCube(Hex h) {
  const double q = h.x, r = h.y - (h.x + (h.x & 1)) / 2;
  return {q, r, -q - r};
}
Hex FromCube(Cube c) {
  double rq = std::round(c.q), rr = std::round(c.r), rs = std::round(c.s);
  const double dq = std::abs(rq - c.q), dr = std::abs(rr - c.r), ds = std::abs(rs - c.s);
  if (dq > dr && dq > ds)
    rq = -rr - rs;
  else if (dr > ds)
    rr = -rq - rs;
  const int x = static_cast<int>(rq);
  return {x, static_cast<int>(rr) + (x + (x & 1)) / 2};
}
int Distance(Hex a, Hex b) {
  Cube p = ToCube(a), q = ToCube(b);
  return static_cast<int>((std::abs(p.q - q.q) + std::abs(p.r - q.r) + std::abs(p.s - q.s)) / 2);
}
// The hexes from a to b, each the neighbour of the one before.
std::vector<Hex> Line(Hex a, Hex b) {
  const int n = Distance(a, b);
  std::vector<Hex> out;
  Cube p = ToCube(a), q = ToCube(b);
  for (int i = 0; i <= n; ++i) {
    const double t = n == 0 ? 0 : static_cast<double>(i) / n;
    // a nudge keeps the rounding away from ties
    out.push_back(FromCube({p.q + (q.q - p.q) * t + 1e-6, p.r + (q.r - p.r) * t + 2e-6, p.s + (q.s - p.s) * t - 3e-6}));
  }
  return out;
}
std::vector<Hex> Route(const std::vector<Hex>& waypoints) {
  std::vector<Hex> out;
  for (size_t i = 0; i + 1 < waypoints.size(); ++i) {
    std::vector<Hex> seg = Line(waypoints[i], waypoints[i + 1]);
    out.insert(out.end(), seg.begin() + (out.empty() ? 0 : 1), seg.end());
  }
  return out;
}
// From a to b in straight runs: each step keeps the side of the step before
// while that still brings b nearer, so the course has few bends.
std::vector<Hex> StraightWalk(Hex a, Hex b) {
  std::vector<Hex> out{a};
  int last = 0;
  while (!(a == b)) {
    const int d = Distance(a, b);
    int pick = 0;
    for (int s = 1; s <= 6; ++s)
      if (Distance(Nb(a, s), b) < d && (pick == 0 || s == last)) pick = s;
    a = Nb(a, pick);
    last = pick;
    out.push_back(a);
  }
  return out;
}
// Centre of a hex in row units: x across, y down.
double Cx(Hex h) { return h.x * 0.866; }
double Cy(Hex h) { return h.y + (h.x % 2 == 0 ? 0.5 : 0.0); }

double Noise(int x, int y, uint32_t seed) {
  uint32_t v = static_cast<uint32_t>(x) * 73856093u ^ static_cast<uint32_t>(y) * 19349663u ^ seed * 83492791u;
  v ^= v >> 13;
  v *= 0x5bd1e995u;
  v ^= v >> 15;
  return (v & 0xFFFF) / 65535.0;
}

// Whether the marked ring positions form one unbroken arc (or all, or none).
bool ArcOrWhole(const std::array<bool, 6>& m) {
  int n = 0, starts = 0;
  for (int p = 0; p < 6; ++p) {
    n += m[p];
    if (m[p] && !m[(p + 5) % 6]) ++starts;
  }
  return n == 0 || n == 6 || starts == 1;
}

class Builder {
 public:
  Builder(kv::Session& s, const std::vector<TileDef>& cat) : s_(s), d_(s.doc), cat_(cat) {
    ter_.assign(kMapW * kMapH, kClear);
    road_.assign(kMapW * kMapH, 0);
    river_.assign(kMapW * kMapH, 0);
    elev_.assign(kMapW * kMapH, 0);
  }
  bool Build(std::string* err);

 private:
  uint8_t& T(Hex h) { return ter_[h.y * kMapW + h.x]; }
  uint8_t& Road(Hex h) { return road_[h.y * kMapW + h.x]; }
  uint8_t& River(Hex h) { return river_[h.y * kMapW + h.x]; }
  int& Elev(Hex h) { return elev_[h.y * kMapW + h.x]; }
  template <class F>
  void ForAll(F f) {
    for (int x = 0; x < kMapW; ++x)
      for (int y = 0; y < kMapH; ++y) f(Hex{x, y});
  }
  // The ring of a hex in the sense of the engine: position p (1 above, then
  // clockwise) matches when `match` holds for the neighbour there.
  template <class F>
  std::array<bool, 6> Ring(Hex h, F match) {
    std::array<bool, 6> m{};
    for (int p = 1; p <= 6; ++p) m[p - 1] = match(Nb(h, RingSide(p)));
    return m;
  }
  bool SeaLike(Hex n) {  // the engine's view from a sea hex
    return !OnMap(n) || n.x == 0 || n.y == 0 || T(n) == kSea || T(n) == kPort;
  }
  bool ForestLike(Hex n) { return OnMap(n) && (T(n) == kForest || T(n) == kWoods || T(n) == 12); }

  void LayTerrain();
  void LayRiver(const std::vector<Hex>& path);
  void LayRoad(const std::vector<Hex>& path);
  void Settle();
  bool PlaceTiles(std::string* err);
  int CatalogueTile(int terrain, uint8_t road, uint8_t river);
  int16_t RandomOf(int terrain);
  void Sides();
  void People();
  // The layout as text, one character a terrain, for messages about it.
  std::string Picture() {
    std::string out = "\nlayout:\n";
    for (int y = 0; y < kMapH; ++y) {
      for (int x = 0; x < kMapW; ++x) out += "~.rMhCv=FoW..fP"[std::min<int>(T({x, y}), 14)];
      out += '\n';
    }
    return out;
  }
  void Name(Hex h, const char* name) { kv::SetHexName(s_, h.x, h.y, name); }

  kv::Session& s_;
  kv::Document& d_;
  const std::vector<TileDef>& cat_;
  std::vector<uint8_t> ter_, road_, river_;
  std::vector<int> elev_;
  std::vector<Hex> rail_;
  std::set<Hex> noTouch_;  // hexes whose terrain the settling must keep
  // Places the layout refers to.
  Hex keyPeak_{49, 12}, inland_{31, 25}, town_{51, 26}, villageN_{27, 9}, villageS_{41, 33};

  Hex port_{-1, -1};
  Hex bridgeW_{}, bridgeE_{}, oil_{};
};

int Bits(const std::vector<int>& sides) {
  int b = 0;
  for (int s : sides) b |= 1 << (s - 1);
  return b;
}

int Builder::CatalogueTile(int terrain, uint8_t road, uint8_t river) {
  for (const TileDef& t : cat_)
    if (t.terrain == terrain && Bits(t.road) == road && Bits(t.river) == river && t.pattern.empty() &&
        t.art != "massif")
      return t.tile;
  return -1;
}

int16_t Builder::RandomOf(int terrain) {
  for (const TileDef& t : cat_)
    if (t.terrain == terrain && t.rnd == 1) {
      s_.pens.CurTile = static_cast<int16_t>(t.tile);
      kv::randomtile(s_);
      return s_.pens.CurTile;
    }
  for (const TileDef& t : cat_)
    if (t.terrain == terrain) return static_cast<int16_t>(t.tile);
  return 0;
}

void Builder::LayTerrain() {
  ForAll([&](Hex h) {
    const double x = Cx(h), y = Cy(h);
    // The coast: a wavy line with a bay around row 29 and open sea in the north-west.
    double coast = 9.0 + 2.2 * std::sin(y * 0.31 + 0.5) + 1.3 * std::sin(y * 0.83 + 2.0);
    coast += 4.5 * std::exp(-((y - 29.5) / 2.6) * ((y - 29.5) / 2.6));
    coast += 4.0 * std::exp(-(y / 5.0) * (y / 5.0));
    uint8_t t = x < coast ? kSea : kClear;
    // An island off the coast.
    if (std::hypot(x - 3.6, y - 15.5) < 1.6) t = kClear;
    if (t == kSea) {
      T(h) = t;
      return;
    }
    const double n = Noise(h.x, h.y, 7);
    // Distance in rows from a column and row, and the same stretched across.
    auto D = [&](double col, double row, double stretch = 1.0) {
      return std::hypot((h.x - col) * 0.866 / stretch, y - row);
    };
    const double dPeak = D(keyPeak_.x + 0.5, Cy(keyPeak_) - 0.3);
    if (dPeak < 2.6 || D(56, 6.5) < 1.6 + 0.4 * n)
      t = kMountain;
    else if (dPeak < 4.4 + 0.8 * n || D(56, 6) < 3.2)
      t = kHills;
    else if (D(46, 34.5, 1.7) < 4.0 + 1.2 * Noise(h.x, h.y, 3))
      t = kForest;
    else if (D(34, 4, 1.3) < 2.6 + 0.8 * Noise(h.x, h.y, 4))
      t = kForest;
    else if (D(19, 12) < 2.2)
      t = kWoods;
    else if (D(55, 20) < 1.9)
      t = kWoods;
    else if (D(17, 22.5) < 2.4 && n > 0.3)
      t = kSwamp;
    else if (D(53, 30) < 2.0)
      t = kRough;
    else if (D(44, 18.5) < 1.5)
      t = kRough;
    else if (D(inland_.x - 3, Cy(inland_) + 3.5) < 2.3)
      t = kFields;
    else if (D(inland_.x + 4, Cy(inland_) - 2.5) < 1.7)
      t = kFields;
    else if (D(21, 34) < 2.6)
      t = kFields;
    else if (D(30, 15.5) < 1.8)
      t = kHills;
    T(h) = t;
  });
  // Elevation: hills 1, mountains 2, the massif 3 and its peaks 4.
  ForAll([&](Hex h) {
    const uint8_t t = T(h);
    Elev(h) = t == kHills ? 1 : t == kMountain ? 2 : 0;
  });
}

void Builder::LayRiver(const std::vector<Hex>& path) {
  for (size_t i = 0; i < path.size(); ++i) {
    const Hex h = path[i];
    if (!OnMap(h)) continue;
    if (T(h) == kSea) break;  // the mouth
    T(h) = kRiver;
    Elev(h) = 0;
    noTouch_.insert(h);
    if (i > 0) River(h) |= 1 << (SideTo(h, path[i - 1]) - 1);
    if (i + 1 < path.size()) River(h) |= 1 << (SideTo(h, path[i + 1]) - 1);
  }
}

void Builder::LayRoad(const std::vector<Hex>& path) {
  for (size_t i = 0; i < path.size(); ++i) {
    const Hex h = path[i];
    if (!OnMap(h)) continue;
    noTouch_.insert(h);
    if (T(h) == kForest || T(h) == kWoods || T(h) == kSwamp || T(h) == kFields || T(h) == kRough) T(h) = kClear;
    if (i > 0) Road(h) |= 1 << (SideTo(h, path[i - 1]) - 1);
    if (i + 1 < path.size()) Road(h) |= 1 << (SideTo(h, path[i + 1]) - 1);
  }
}

// Brings every coast and forest edge to an outline that the tile set draws:
// land sides of a sea hex, and forest sides of a forest hex, in one arc.
void Builder::Settle() {
  for (bool changed = true; changed;) {
    changed = false;
    ForAll([&](Hex h) {
      if (T(h) == kSea && !ArcOrWhole(Ring(h, [&](Hex n) { return SeaLike(n); }))) {
        T(h) = kClear;
        changed = true;
      } else if ((T(h) == kForest || T(h) == kWoods) && !noTouch_.count(h) &&
                 !ArcOrWhole(Ring(h, [&](Hex n) { return ForestLike(n); }))) {
        T(h) = kClear;
        changed = true;
      }
    });
  }
}

bool Builder::PlaceTiles(std::string* err) {
  char msg[160];
  // A road bends only on open ground: the other terrains have straight road
  // tiles only.
  ForAll([&](Hex h) {
    const uint8_t t = T(h);
    if (Road(h) && t != kRiver && t != kCity && t != kVillage && t != kPort && CatalogueTile(t, Road(h), 0) < 0) {
      T(h) = kClear;
      Elev(h) = 0;
    }
  });
  ForAll([&](Hex h) {
    d_.HexInfo(h.x, h.y, 0) = T(h);
    d_.HexElev(h.x, h.y) = static_cast<uint8_t>(127 + Elev(h));
  });
  bool ok = true;
  ForAll([&](Hex h) {
    if (!ok) return;
    const uint8_t t = T(h);
    int16_t tile = -1;
    if (Road(h) && t != kCity && t != kVillage && t != kPort) {
      tile = static_cast<int16_t>(CatalogueTile(t, Road(h), River(h)));
    } else if (t == kRiver) {
      tile = static_cast<int16_t>(CatalogueTile(t, 0, River(h)));
      // Where the river reaches the sea it opens out into a mouth.
      for (int side = 1; side <= 6; ++side)
        if (River(h) == 1 << (side - 1) && OnMap(Nb(h, kv::OppositeSide(side))) &&
            T(Nb(h, kv::OppositeSide(side))) == kSea)
          for (const TileDef& m : cat_)
            if (m.art == "mouth" && m.terrain == t && Bits(m.river) == River(h)) tile = static_cast<int16_t>(m.tile);
    } else if (t == kSea || t == kCity || t == kPort || t == kForest || t == kWoods || t == kVillage) {
      s_.pens.CurTile = RandomOf(t);
      const int16_t pen = s_.pens.CurTile;
      kv::AutoDrawTile(s_, static_cast<int16_t>(h.x), static_cast<int16_t>(h.y), tile);
      // Woods and villages have no tile for every outline: the plain one stands.
      if (tile < 0 && (t == kWoods || t == kVillage || t == kForest)) tile = pen;
    } else {
      tile = RandomOf(t);
    }
    if (tile < 0) {
      std::snprintf(msg, sizeof msg, "no tile for hex %d,%d (terrain %d, road %d, river %d)", h.x, h.y, t, Road(h),
                    River(h));
      *err = std::string(msg) + Picture();
      ok = false;
      return;
    }
    d_.HexTile(h.x, h.y) = tile;
  });
  if (!ok) return false;
  // The massif: its west peak on the key hex, the rest by the editor's pass.
  d_.HexTile(keyPeak_.x, keyPeak_.y) = 86;
  s_.pens.DefaultAreaAll = -1;
  kv::mAutoMoutains_Click(s_);
  s_.pens.AutoTile = 0;
  ForAll([&](Hex h) {
    const int16_t t = d_.HexTile(h.x, h.y);
    if (t == 86 || t == 94)
      Elev(h) = 4;
    else if (T(h) == kMountain && Distance(h, keyPeak_) <= 2)
      Elev(h) = 3;
    d_.HexElev(h.x, h.y) = static_cast<uint8_t>(127 + Elev(h));
  });
  return true;
}

// Road sides from the tiles, as the editor connects them, then the railroad.
void Builder::Sides() {
  kv::doroads_Click(s_);
  for (size_t i = 0; i + 1 < rail_.size(); ++i) {
    const Hex a = rail_[i], b = rail_[i + 1];
    d_.HexInfo(a.x, a.y, SideTo(a, b)) = 2;
    d_.HexInfo(b.x, b.y, SideTo(b, a)) = 2;
  }
}

void Builder::People() {
  auto own = [&](Hex h, int side, int type) {
    d_.HexCtl(h.x, h.y, 0) = static_cast<uint8_t>(side);
    d_.HexCtl(h.x, h.y, 1) = static_cast<uint8_t>(type);
    if (type != 0) d_.HexOrigOwner(h.x, h.y) = static_cast<uint8_t>(side);
  };
  // The two sides hold the land west and east of column 36. As the game
  // wants it, every road hex and every built-up hex has an owner, and no
  // other hex has one.
  ForAll([&](Hex h) {
    const uint8_t t = T(h);
    const int side = h.x < 36 ? kArdenmark : kBelvaro;
    if (t == kCity || t == kPort || t == kVillage || s_.ref.RoadOf(d_.HexTile(h.x, h.y))) own(h, side, 0);
  });
  own(inland_, kArdenmark, 2);
  own(town_, kBelvaro, 2);
  own(port_, kArdenmark, 1);
  own(villageN_, kArdenmark, 1);
  own(villageS_, kBelvaro, 1);
  own(bridgeE_, kBelvaro, 1);
  own(oil_, kBelvaro, 3);
  // Deployment hexes behind each side's line.
  for (Hex h : {Hex{24, 26}, Hex{24, 27}, Hex{25, 27}, Hex{24, 28}, Hex{25, 28}}) d_.HexDeploy(h.x, h.y) = kArdenmark;
  for (Hex h : {Hex{55, 24}, Hex{56, 24}, Hex{55, 25}, Hex{56, 25}, Hex{57, 25}}) d_.HexDeploy(h.x, h.y) = kBelvaro;
  kv::BuildObjList(s_);
}

bool Builder::Build(std::string* err) {
  LayTerrain();
  // The river: from a spring below the massif to the sea, straight where the
  // roads cross it.
  const std::vector<Hex> river =
      Route({{45, 14}, {41, 16}, {37, 18}, {33, 19}, {29, 21}, {24, 21}, {19, 20}, {12, 22}, {6, 22}});
  LayRiver(river);
  Settle();
  // The port: a shore hex of the bay whose sea sides make an arc of two or
  // three, with land for its city across the three opposite sides.
  int landward = 0;
  auto wrap = [](int side) { return (side + 11) % 6 + 1; };
  for (int y : {29, 28, 30, 27, 31, 26, 32}) {
    for (int x = 1; x < kMapW - 1 && !OnMap(port_); ++x) {
      const Hex h{x, y};
      if (T(h) != kClear) continue;
      std::array<bool, 6> sea{};
      int n = 0;
      for (int p = 1; p <= 6; ++p) n += sea[p - 1] = T(Nb(h, RingSide(p))) == kSea;
      if (n < 2 || n > 3 || !ArcOrWhole(sea)) continue;
      // the middle of the arc, as a side
      int mid = 0;
      for (int p = 1; p <= 6; ++p)
        if (sea[p - 1] && sea[(p + 4) % 6] && (n == 2 || sea[p % 6])) mid = RingSide(p);
      const int o = kv::OppositeSide(mid);
      bool fits = true;
      for (int side : {wrap(o - 1), o, wrap(o + 1)}) fits = fits && T(Nb(h, side)) != kSea && T(Nb(h, side)) != kRiver;
      if (fits) port_ = h, landward = o;
    }
    if (OnMap(port_)) break;
  }
  if (!OnMap(port_)) {
    *err = "no shore hex for the port" + Picture();
    return false;
  }
  // Roads: the coast road from the port east through the inland city to the
  // town, two roads north over the river, and one south-east to the forest
  // village. The river runs straight where they cross it.
  const Hex portGate = Nb(port_, landward);
  const std::vector<Hex> coastRoad = Route({portGate, {23, 27}, inland_, {38, 25}, {45, 27}, town_, {59, 25}});
  const std::vector<Hex> northRoad = Route({inland_, {31, 15}, villageN_, {27, 0}});
  const std::vector<Hex> eastRoad = Route({{40, 25}, {40, 8}, {48, 4}, {59, 3}});
  const std::vector<Hex> southRoad = Route({inland_, {35, 29}, villageS_, {43, 39}});
  for (const auto* r : {&coastRoad, &northRoad, &eastRoad, &southRoad}) LayRoad(*r);
  for (Hex h : northRoad)
    if (River(h)) bridgeW_ = h;
  for (Hex h : eastRoad)
    if (River(h)) bridgeE_ = h;
  // The oil wells lie on the road east of the town.
  for (Hex h : coastRoad)
    if (h.x == 56) oil_ = h;
  // The railroad from the port's city to the inland city, a little south of the road.
  rail_ = StraightWalk(Nb(port_, wrap(landward + 1)), Nb(inland_, 3));
  for (Hex h : rail_)
    if (T(h) != kCity) T(h) = kClear, noTouch_.insert(h);

  // Built-up ground: the port and its city, the inland city (a centre and its
  // ring), the town, the villages.
  T(port_) = kPort;
  for (int side : {wrap(landward - 1), landward, wrap(landward + 1)}) T(Nb(port_, side)) = kCity;
  T(inland_) = kCity;
  for (int s = 1; s <= 6; ++s) T(Nb(inland_, s)) = kCity;
  T(town_) = kCity;
  T(Nb(town_, 6)) = kCity;
  T(villageN_) = kVillage;
  T(villageS_) = kVillage;
  for (Hex h : {port_, portGate, inland_, town_, villageN_, villageS_}) noTouch_.insert(h);
  for (int s = 1; s <= 6; ++s) noTouch_.insert(Nb(inland_, s)), noTouch_.insert(Nb(port_, s));
  Settle();

  if (!PlaceTiles(err)) return false;
  Sides();
  People();

  // Names of places.
  Name(inland_, "Veldhaven");
  Name(port_, "Port Sallow");
  Name(town_, "Kessmoor");
  Name(villageN_, "Ardwick");
  Name(villageS_, "Brannock");
  Name(keyPeak_, "Greyspire");
  Name(bridgeW_, "Mill Bridge");
  Name(bridgeE_, "Stone Bridge");
  Name({20, 20}, "River Sallow");
  Name({40, 35}, "Thornwood");
  Name({6, 29}, "Sallow Bay");
  Name(oil_, "Kessmoor Wells");

  // Contours as a drawing leaves them, for every hex.
  ForAll([&](Hex h) {
    int16_t c = 0;
    kv::ContourCode(s_, static_cast<int16_t>(h.x), static_cast<int16_t>(h.y), c);
  });
  return true;
}

}  // namespace

bool MakeExampleMap(const fs::path& dir, const fs::path& src, std::string* err) {
  std::vector<TileDef> cat;
  if (!ReadCatalogue((src / "tiles.txt").string(), cat, err)) return false;
  std::error_code ec;
  const ScratchDir scratch(fs::temp_directory_path(ec) / ("kv_example_app_" + std::to_string(::getpid())));
  const fs::path& app = scratch.path;
  if (!Generate(app, src, err, false)) return false;  // the map asks no pattern store

  fs::create_directories(dir, ec);
  const fs::path map = fs::absolute(dir / "example.map", ec);
  for (const char* ext : {".map", ".lev", ".ctl", ".ndx", ".str", ".bmp"}) {
    fs::path p = map;
    fs::remove(p.replace_extension(ext), ec);
  }

  kv::HeadlessUi ui;
  kv::Session s(app.string(), &ui);
  if (!StartPainting(s, err)) return false;
  kv::Document& d = s.doc;
  d.MapMaxX = kMapW - 1;
  d.MapMaxY = kMapH - 1;
  d.MapFile = "example.map";
  d.MapPath = map.string();
  d.NationSet = "default";
  s.pens.CurTile = 34;
  kv::NewMap(s);

  Builder b(s, cat);
  if (!b.Build(err)) return false;
  const bool saved = kv::SaveMap(s);
  s.names.Close();
  if (!saved || !ui.messages.empty()) {
    *err = "the example map was not saved cleanly";
    for (const std::string& m : ui.messages) *err += "; " + m;
    return false;
  }
  return true;
}

}  // namespace kvgen

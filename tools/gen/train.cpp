// The starter pattern stores: the road, bridge, river and mountain stores of
// the default program folder, learned by the editor itself.
//
// A designer who knows the tile set paints training maps with auto-tile on
// and neighbours following, as a user would: roads on open ground, through
// forest, over hills and mountains, crossroads, junctions, roads out of
// towns, rivers and their mouths, and bridges. Wherever the editor chooses a
// tile whose road or river sides do not meet the hex's neighbours, he paints
// the right one by hand in that very surrounding, which is a lesson of the
// editor's own learners. Then the memorise passes run over finished maps,
// and the massif is memorised from the mountain pass. Every draw comes from
// a generator of our own, so the stores are the same on every run.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <map>
#include <set>
#include <tuple>
#include <unistd.h>

#include "art.h"
#include "autotile/engine.h"
#include "autotile/follow.h"
#include "autotile/passes.h"
#include "autotile/stores.h"
#include "document/document_ops.h"
#include "editing/editing.h"
#include "editing/mapload.h"
#include "editing/startup.h"
#include "gen.h"
#include "hexwalk.h"
#include "platform/fileio.h"
#include "session.h"
#include "view/geometry.h"

namespace fs = std::filesystem;

namespace kvgen {
namespace {

constexpr int kMapW = 26, kMapH = 26;

bool River(int t) { return t == 2 || t == 11 || t == 12; }
bool Built(int t) { return t == 5 || t == 6 || t == 14; }

bool Adjacent(Hex a, Hex b) { return SideTo(a, b) != 0; }

// A small generator of our own (the session's is the editor's).
struct Lcg {
  uint32_t v = 12345;
  uint32_t Next() {
    v = v * 1664525u + 1013904223u;
    return v >> 8;
  }
  int Below(int n) { return static_cast<int>(Next() % static_cast<uint32_t>(n)); }
};

int Bits(const std::vector<int>& sides) {
  int b = 0;
  for (int s : sides) b |= 1 << (s - 1);
  return b;
}

class Teacher {
 public:
  Teacher(kv::Session& s, const std::vector<TileDef>& cat) : s_(s), d_(s.doc) {
    for (const TileDef& t : cat) {
      if (t.art == "massif" || !t.pattern.empty()) continue;
      const auto key = std::make_tuple(t.terrain, Bits(t.road), Bits(t.river));
      // River ends are taught as mouths: the river store cannot tell a spring
      // from a mouth, and a river on a map most often ends at the sea.
      if (t.art == "mouth" || !shape_.count(key)) shape_[key] = t.tile;
    }
    for (const TileDef& t : cat) {
      if (!t.road.empty() && !Built(t.terrain) && t.river.empty())
        roadPens_[t.terrain].push_back(static_cast<int16_t>(t.tile));
      if (Built(t.terrain)) built_.push_back(static_cast<int16_t>(t.tile));
    }
  }

  // An empty map of `terrain` (plain tile `tile`).
  void Clear(uint8_t terrain, int16_t tile) {
    base_ = terrain;
    baseTile_ = tile;
    for (int x = 0; x <= d_.MapMaxX; ++x)
      for (int y = 0; y <= d_.MapMaxY; ++y) {
        d_.HexInfo(x, y, 0) = terrain;
        d_.HexTile(x, y) = tile;
        for (int k = 1; k <= 6; ++k) d_.HexInfo(x, y, k) = 0;
      }
    road_.clear();
    river_.clear();
  }

  // A town, village or port, as painting leaves it: connected on every side.
  void Place(Hex h, int16_t tile) {
    const int t = s_.ref.TypeOf(tile);
    d_.HexInfo(h.x, h.y, 0) = static_cast<uint8_t>(t);
    d_.HexTile(h.x, h.y) = tile;
    for (int k = 1; k <= 6; ++k) d_.HexInfo(h.x, h.y, k) = 1;
  }

  // One click of the pen at h with auto-tile on, the neighbours following
  // when `follow`, and a lesson wherever the editor's choice is wrong.
  void Paint(Hex h, int16_t pen, bool road, bool follow) {
    kv::Pens& p = s_.pens;
    p.CurTile = pen;
    p.AutoTile = -1;
    p.AutoNeighbours = follow ? -1 : 0;
    p.CtlMode = 0;
    p.SideEdit = 0;
    p.RandomMode = 0;
    (road ? road_ : river_).insert(h);
    // Over a river, a road is a bridge: the hex keeps its river terrain.
    want_[h] = road && River(d_.HexInfo(h.x, h.y, 0)) ? d_.HexInfo(h.x, h.y, 0) : road ? base_ : s_.ref.TypeOf(pen);
    kv::SetHex(s_, static_cast<int16_t>(h.x), static_cast<int16_t>(h.y));
    Check(h.x, h.y);
    if (follow)
      kv::FollowNeighbours(s_, static_cast<int16_t>(h.x), static_cast<int16_t>(h.y),
                           [this](int16_t x, int16_t y) { return Check(x, y); });
  }

  // "auto redraw Roads" over the map, with lessons where it goes wrong.
  void RedrawRoads() {
    for (int x = 0; x <= d_.MapMaxX; ++x)
      for (int y = 0; y <= d_.MapMaxY; ++y) {
        if (!road_.count({x, y})) continue;
        int16_t r = -1;
        s_.pens.CurTile = d_.HexTile(x, y);
        kv::CheckRoads(s_, static_cast<int16_t>(x), static_cast<int16_t>(y), r);
        if (r > -1 && s_.ref.TypeOf(r) == d_.HexInfo(x, y, 0)) d_.HexTile(x, y) = r;
        Check(x, y);
      }
  }

  // Whether every road and river hex meets its neighbours.
  bool AllRight() {
    for (const Hex& h : road_)
      if (Wanted(h) >= 0 && d_.HexTile(h.x, h.y) != Wanted(h)) return false;
    for (const Hex& h : river_)
      if (!road_.count(h) && Wanted(h) >= 0 && d_.HexTile(h.x, h.y) != Wanted(h)) return false;
    return true;
  }

  int16_t RandomRoadPen(Lcg& g, int terrain = 1) const {
    const std::vector<int16_t>& pens = roadPens_.at(terrain);
    return pens[g.Below(static_cast<int>(pens.size()))];
  }
  int16_t RandomBuilt(Lcg& g) const { return built_[g.Below(static_cast<int>(built_.size()))]; }
  int lessons() const { return lessons_; }
  // Without lessons: counts the hexes left wrong instead (to see how far the
  // stores reach).
  void Examine(bool on) { examine_ = on; }
  int Wrong() {
    int n = 0;
    for (const Hex& h : road_) n += Wanted(h) >= 0 && d_.HexTile(h.x, h.y) != Wanted(h);
    for (const Hex& h : river_) n += !road_.count(h) && Wanted(h) >= 0 && d_.HexTile(h.x, h.y) != Wanted(h);
    return n;
  }
  int Hexes() const { return static_cast<int>(road_.size() + river_.size()); }

 private:
  // The tile whose sides meet the neighbours, or -1 when the set has none.
  int16_t Wanted(Hex h) {
    const kv::RefData& ref = s_.ref;
    const auto it = want_.find(h);
    const int t = it == want_.end() ? base_ : it->second;
    int roads = 0, rivers = 0;
    for (int side = 1; side <= 6; ++side) {
      const Hex n = Nb(h, side);
      if (!d_.OnMap(n.x, n.y)) continue;
      const int nt = d_.HexInfo(n.x, n.y, 0);
      const int16_t tile = d_.HexTile(n.x, n.y);
      const bool roadHere = ref.RoadOf(tile) == 1 || Built(nt);
      if (road_.count(h) && roadHere) roads |= 1 << (side - 1);
      if (River(ref.TypeOf(tile)) && (!road_.count(h) || ref.RoadOf(tile) == 0)) rivers |= 1 << (side - 1);
    }
    if (!road_.count(h)) {
      const int n = __builtin_popcount(static_cast<unsigned>(rivers));
      if (n < 1 || n > 2) return -1;
    } else if (roads == 0) {
      return -1;  // a lone road hex: nothing to join
    } else if (!River(t)) {
      rivers = 0;
    }
    const auto found = shape_.find(std::make_tuple(t, roads, rivers));
    return found == shape_.end() ? -1 : static_cast<int16_t>(found->second);
  }

  bool Check(int16_t x, int16_t y) {
    const Hex h{x, y};
    const bool road = road_.count(h) > 0;
    if (examine_ || (!road && !river_.count(h))) return false;
    const int16_t tile = Wanted(h);
    if (tile < 0 || (d_.HexTile(x, y) == tile && d_.HexInfo(x, y, 0) == s_.ref.TypeOf(tile))) return false;
    // The lesson: this tile, painted by hand, in this very surrounding.
    const int16_t pen = s_.pens.CurTile;
    s_.pens.CurTile = tile;
    d_.HexInfo(x, y, 0) = s_.ref.TypeOf(tile);
    if (road)
      kv::NewRoadPattern(s_, x, y, tile);
    else
      kv::NewRiverPattern(s_, x, y, tile);
    d_.HexTile(x, y) = tile;
    if (road) kv::ConnectRoads(s_, x, y);
    s_.pens.CurTile = pen;
    ++lessons_;
    return true;
  }

  kv::Session& s_;
  kv::Document& d_;
  std::map<std::tuple<int, int, int>, int> shape_;
  std::map<int, std::vector<int16_t>> roadPens_;  // by terrain
  std::vector<int16_t> built_;
  std::set<Hex> road_, river_;
  std::map<Hex, int> want_;
  uint8_t base_ = 1;
  int16_t baseTile_ = 34;
  int lessons_ = 0;
  bool examine_ = false;
};

// A course of n hexes from `from`, no hex touching another but the ones
// before and after it; empty when the walk runs into a corner.
std::vector<Hex> Walk(Lcg& g, Hex from, int n, int margin) {
  std::vector<Hex> path{from};
  int last = 1 + g.Below(6);
  while (static_cast<int>(path.size()) < n) {
    std::vector<int> ways;
    for (int side = 1; side <= 6; ++side) {
      const Hex c = Nb(path.back(), side);
      if (c.x < margin || c.y < margin || c.x >= kMapW - margin || c.y >= kMapH - margin) continue;
      bool free = true;
      for (size_t i = 0; i + 1 < path.size(); ++i) free = free && !(path[i] == c) && !Adjacent(path[i], c);
      if (free) ways.push_back(side);
    }
    if (ways.empty()) return {};
    // Mostly on, now and then a bend.
    const bool on = std::find(ways.begin(), ways.end(), last) != ways.end() && g.Below(3) != 0;
    last = on ? last : ways[g.Below(static_cast<int>(ways.size()))];
    path.push_back(Nb(path.back(), last));
  }
  return path;
}
// A straight line of n hexes through `mid` across `side`.
std::vector<Hex> Line(Hex mid, int side, int n) {
  std::vector<Hex> out{mid};
  for (int i = 0; i < n / 2; ++i) out.insert(out.begin(), Nb(out.front(), kv::OppositeSide(side)));
  while (static_cast<int>(out.size()) < n) out.push_back(Nb(out.back(), side));
  return out;
}
// The order a hand paints a course in: forward, backward, or from both ends.
std::vector<Hex> Order(Lcg& g, std::vector<Hex> path) {
  switch (g.Below(4)) {
    case 0: std::reverse(path.begin(), path.end()); break;
    case 1: {
      std::vector<Hex> out;
      for (size_t i = 0, j = path.size(); i < j; ++i) {
        out.push_back(path[i]);
        if (i < --j) out.push_back(path[j]);
      }
      return out;
    }
    default: break;
  }
  return path;
}

const Hex kMid{kMapW / 2, kMapH / 2};

void TrainRoads(Teacher& t, Lcg& g, int rounds) {
  for (int i = 0; i < rounds; ++i) {
    if (rounds < 5 && i + 1 < rounds) continue;  // examined: one kind only
    t.Clear(1, 34);
    const bool follow = i % 5 != 4;
    const int16_t pen = t.RandomRoadPen(g);
    switch (i % 4) {
      case 0: {  // a road, painted in any order
        for (Hex h : Order(g, Walk(g, kMid, 3 + g.Below(6), 3))) t.Paint(h, pen, true, follow);
        break;
      }
      case 1: {  // a road, then a branch off it
        const std::vector<Hex> a = Walk(g, kMid, 5 + g.Below(3), 3);
        for (Hex h : Order(g, a)) t.Paint(h, pen, true, follow);
        if (a.size() < 3) break;
        const Hex at = a[1 + g.Below(static_cast<int>(a.size()) - 2)];
        std::vector<Hex> b = Walk(g, Nb(at, 1 + g.Below(6)), 2 + g.Below(4), 3);
        for (Hex h : b) t.Paint(h, t.RandomRoadPen(g), true, follow);
        break;
      }
      case 2: {  // crossroads: two straight roads through one hex
        const int s1 = 1 + g.Below(6), s2 = (s1 + g.Below(2)) % 6 + 1;  // another axis
        for (Hex h : Line(kMid, s1, 5 + g.Below(3))) t.Paint(h, pen, true, follow);
        for (Hex h : Order(g, Line(kMid, s2, 5))) t.Paint(h, pen, true, follow);
        break;
      }
      case 3: {  // a road out of a town, a village or a port, or into one
        const std::vector<Hex> a = Walk(g, kMid, 3 + g.Below(4), 3);
        if (a.size() < 2) break;
        const Hex town = Nb(a.front(), 1 + g.Below(6));
        if (std::find(a.begin(), a.end(), town) != a.end()) break;
        t.Place(town, t.RandomBuilt(g));
        for (Hex h : Order(g, a)) t.Paint(h, pen, true, follow);
        break;
      }
    }
    if (!follow) t.RedrawRoads();
  }
}

// Roads through forest, hills or mountains, painted with a road tile of that
// ground (a road pen of open ground clears the ground it is laid on).
void TrainRoadsOn(Teacher& t, Lcg& g, uint8_t terrain, int16_t tile, int rounds) {
  for (int i = 0; i < rounds; ++i) {
    t.Clear(terrain, tile);
    const int16_t pen = t.RandomRoadPen(g, terrain);
    for (Hex h : Order(g, Walk(g, kMid, 2 + g.Below(6), 3))) t.Paint(h, pen, true, true);
  }
}

void TrainRivers(Teacher& t, Lcg& g, int rounds) {
  for (int i = 0; i < rounds; ++i) {
    t.Clear(1, 34);
    const int16_t pen = static_cast<int16_t>(173 + g.Below(15));  // a river course as the pen
    const std::vector<Hex> river = Walk(g, kMid, 2 + g.Below(8), 3);
    for (Hex h : Order(g, river)) t.Paint(h, pen, false, i % 5 != 4);
    // Now and then a road across it, where it runs straight.
    if (i % 2 == 0 || river.size() < 3) continue;
    for (size_t k = 1; k + 1 < river.size(); ++k) {
      int in = 0, out = 0;
      for (int side = 1; side <= 6; ++side) {
        if (Nb(river[k], side) == river[k - 1]) in = side;
        if (Nb(river[k], side) == river[k + 1]) out = side;
      }
      if (out != kv::OppositeSide(in)) continue;
      const int across = (in + (g.Below(2) ? 0 : 1)) % 6 + 1;  // another axis
      const std::vector<Hex> road = Line(river[k], across, 5);
      bool clear = true;
      for (Hex h : road)
        for (Hex r : river) clear = clear && (h == river[k] || !(h == r));
      if (!clear) continue;
      const int16_t roadPen = t.RandomRoadPen(g);
      for (Hex h : Order(g, road)) t.Paint(h, roadPen, true, true);
      break;
    }
  }
}

// Bridges: a straight stretch of river, and a road across its middle.
void TrainBridges(Teacher& t, Lcg& g, int rounds) {
  for (int i = 0; i < rounds; ++i) {
    t.Clear(1, 34);
    const int along = 1 + g.Below(6), across = (along + g.Below(2)) % 6 + 1;
    const std::vector<Hex> river = Line(kMid, along, 3 + g.Below(5));
    const int16_t pen = static_cast<int16_t>(173 + g.Below(15));
    for (Hex h : Order(g, river)) t.Paint(h, pen, false, true);
    const int16_t roadPen = t.RandomRoadPen(g);
    for (Hex h : Order(g, Line(kMid, across, 3 + 2 * g.Below(2)))) t.Paint(h, roadPen, true, true);
  }
}

// Lessons on finished maps: the memorise passes over a course of each kind.
void Memorise(kv::Session& s, Teacher& t, Lcg& g) {
  t.Clear(1, 34);
  for (Hex h : Walk(g, {5, 5}, 9, 2)) t.Paint(h, t.RandomRoadPen(g), true, true);
  for (Hex h : Line({18, 14}, 2, 9)) t.Paint(h, 113, true, true);
  for (Hex h : Line({18, 14}, 1, 7)) t.Paint(h, 113, true, true);
  if (t.AllRight()) kv::MemorizeRoads_Click(s);
  t.Clear(1, 34);
  for (Hex h : Walk(g, {6, 6}, 12, 2)) t.Paint(h, 180, false, true);
  if (t.AllRight()) kv::MemoriseRivers_Click(s);
  // The massif: a key tile on a field of mountains, the mountain pass, and
  // its memorise pass with a mountain tile as the pen.
  t.Clear(3, 52);
  s.doc.HexTile(kMid.x, kMid.y) = 86;
  s.pens.DefaultAreaAll = -1;
  kv::mAutoMoutains_Click(s);
  s.pens.CurTile = 52;
  kv::mMountains_Click(s);
}

// Store files that hold at least one pair.
bool HoldsPairs(const fs::path& p) {
  std::vector<uint8_t> b;
  if (!kv::ReadFileBytes(p.string(), b, nullptr)) return false;
  bool any = false;
  kv::ScanPatternPairs(b, [&](const std::string&, const std::string&) { return !(any = true); });
  return any;
}

}  // namespace

bool StartPainting(kv::Session& s, std::string* err) {
  s.view.ScreenW = 1280;
  s.view.ScreenH = 1024;
  if (kv::StartSession(s)) return true;
  *err = "the generated program folder does not start an editor session";
  return false;
}

bool TrainStores(const fs::path& out, const std::vector<TileDef>& cat, std::string* err) {
  // The lessons are written in a copy of the folder, in memory where the
  // system has such a place: each lesson rewrites a pattern file whole.
  std::error_code ec;
  fs::path base = fs::exists("/dev/shm", ec) ? fs::path("/dev/shm") : fs::temp_directory_path(ec);
  const ScratchDir scratch(base / ("kv_train_" + std::to_string(::getpid())));
  const fs::path& app = scratch.path;
  fs::copy(out, app, fs::copy_options::recursive, ec);
  if (ec) {
    *err = "cannot copy the program folder to " + app.string();
    return false;
  }
  kv::HeadlessUi ui;
  kv::Session s(app.string(), &ui);
  if (!StartPainting(s, err)) return false;
  s.doc.MapMaxX = kMapW - 1;
  s.doc.MapMaxY = kMapH - 1;
  s.pens.CurTile = 34;
  kv::NewMap(s);

  Teacher t(s, cat);
  Lcg g;
  // Open ground last: where a lesson of another ground has the same
  // surroundings, the store keeps the newer one.
  TrainRoadsOn(t, g, 8, 55, 300);
  TrainRoadsOn(t, g, 4, 49, 300);
  TrainRoadsOn(t, g, 3, 52, 300);
  TrainRivers(t, g, 800);
  TrainBridges(t, g, 1200);
  TrainRoads(t, g, 6000);
  Memorise(s, t, g);
  if (!ui.messages.empty()) {
    *err = "training: " + ui.messages.front();
    return false;
  }
  if (std::getenv("KV_TRAIN_VERBOSE")) {
    std::fprintf(stderr, "kv_gen_data: %d lessons\n", t.lessons());
    // How far the stores reach on courses they were not taught.
    t.Examine(true);
    Lcg other{987654};
    auto examine = [&](const char* what, auto run) {
      int wrong = 0, hexes = 0;
      for (int i = 0; i < 200; ++i) {
        run(i);
        wrong += t.Wrong();
        hexes += t.Hexes();
      }
      std::fprintf(stderr, "  %s: %d of %d hexes wrong\n", what, wrong, hexes);
    };
    examine("roads", [&](int) { TrainRoads(t, other, 1); });
    examine("junctions", [&](int) { TrainRoads(t, other, 2); });
    examine("crossroads", [&](int) { TrainRoads(t, other, 3); });
    examine("towns", [&](int) { TrainRoads(t, other, 4); });
    examine("forest roads", [&](int) { TrainRoadsOn(t, other, 8, 55, 1); });
    examine("rivers", [&](int) { TrainRivers(t, other, 1); });
    examine("bridges", [&](int) { TrainBridges(t, other, 1); });
  }

  // Only the stores come back: the rest of the copy is the editor's own work
  // (random tables, empty files of searches).
  for (const char* store : {"roadpatterns", "bridgepatterns", "riverpatterns", "tilep03"}) {
    const fs::path from = app / "mapedit" / store, to = out / "mapedit" / store;
    if (!fs::is_directory(from, ec)) continue;
    fs::create_directories(to, ec);
    std::vector<fs::path> files;
    for (const auto& e : fs::directory_iterator(from, ec)) files.push_back(e.path());
    std::sort(files.begin(), files.end());
    for (const fs::path& f : files)
      if (HoldsPairs(f) && !fs::copy_file(f, to / f.filename(), fs::copy_options::overwrite_existing, ec)) {
        *err = "cannot write " + (to / f.filename()).string();
        return false;
      }
  }
  return true;
}

}  // namespace kvgen

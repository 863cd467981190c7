#include "autotile/engine.h"

#include "autotile/stores.h"
#include "platform/textfields.h"
#include "view/mapview.h"

namespace kv {

namespace {

bool RiverFamily(int t) { return t == 2 || t == 11 || t == 12; }
bool TerrainGroup(int t) { return t == 8 || t == 10 || t == 12; }

// Where a rule lets the map begin: the readers and the road learner take
// column and row 0 as on the map, the other learners do not.
enum class Edge { From0, From1 };

bool OnMapFrom(const Document& d, int x, int y, Edge e) {
  const int lo = e == Edge::From0 ? 0 : 1;
  return x >= lo && y >= lo && x <= d.MapMaxX && y <= d.MapMaxY;
}

// Walks the ring of (x, y); `connected` is asked only for neighbours on the map.
template <class Connected>
RingOutline Outline(const MapView& s, int x, int y, Edge edge, Connected connected) {
  RingOutline r;
  const Document& d = s.doc;
  for (int p = 1; p <= 6; ++p) {
    int nx, ny;
    RingNeighbour(x, y, p, nx, ny);
    if (OnMapFrom(d, nx, ny, edge) && connected(nx, ny)) {
      r.on[p - 1] = true;
      r.tile[p - 1] = d.HexTile(nx, ny);
    }
  }
  return r;
}

// SideDigits of (x, y): `match` for neighbours on the map, `offMap` elsewhere.
template <class Match>
std::string Digits(const MapView& s, int x, int y, Edge edge, bool offMap, Match match) {
  std::array<bool, 6> m{};
  for (int p = 1; p <= 6; ++p) {
    int nx, ny;
    RingNeighbour(x, y, p, nx, ny);
    m[p - 1] = OnMapFrom(s.doc, nx, ny, edge) ? match(s.doc.HexInfo(nx, ny, 0)) : offMap;
  }
  return SideDigits(m);
}

int PenTerrain(const MapView& s) { return s.ref.TypeOf(s.pens.CurTile); }

std::string Store(const MapView& s, const char* folder, const std::string& name) {
  return s.App(std::string("mapedit/") + folder + "/" + name + ".txt");
}

}  // namespace

// ---- Reading -----------------------------------------------------------------

void AutoDrawTile(MapView& s, int16_t x, int16_t y, int16_t& tile) {
  const RefData& ref = s.ref;
  const int T = PenTerrain(s);
  EnsureFolder(s, s.App("mapedit/t" + TerrainNN(T)));
  auto fromList = [&](bool offMap, auto match) {
    return PickListTile(s, TileListPath(s, T, Digits(s, x, y, Edge::From0, offMap, match)), tile);
  };
  switch (T) {
    case 0: {
      // The sea treats the world beyond the edge, and column and row 0, as sea.
      const std::string digits = Digits(s, x, y, Edge::From1, true, [](int t) { return t == 0 || t == 14; });
      PickListTile(s, TileListPath(s, T, digits), tile);
      break;
    }
    case 2:
    case 11:
      if (ref.RoadOf(s.doc.HexTile(x, y)) != 1) CheckRivers(s, x, y, tile);
      break;
    case 5: fromList(false, [](int t) { return t == 5 || t == 14; }); break;
    case 14: fromList(false, [](int t) { return t == 14 || t == 0; }); break;
    case 8:
    case 10:
    case 12:
      TerrainPattern(s, x, y, tile);
      if (tile == -1) TilePattern(s, x, y, tile);
      break;
    default: {
      const std::string path = TileListPath(s, T, Digits(s, x, y, Edge::From0, false, [T](int t) { return t == T; }));
      const ListPick got = PickListTile(s, path, tile, [&](int16_t rec) { return ref.TypeOf(rec) == T; });
      if (got == ListPick::Rejected) {
        // A record of another terrain: the list is stale. The next save of
        // such a tile on the pattern screen writes it anew.
        DeleteStoreFile(s, path);
        tile = -1;
        return;
      }
      if (got == ListPick::Missing || tile == -1) TilePattern(s, x, y, tile);
      break;
    }
  }
  if (tile > ref.TileMax) tile = -1;
}

std::string TerrainListPath(const MapView& s, int16_t x, int16_t y) {
  const int T = PenTerrain(s);
  switch (T) {
    case 0: return TileListPath(s, T, Digits(s, x, y, Edge::From1, true, [](int t) { return t == 0 || t == 14; }));
    case 2:
    case 11: return {};
    case 5: return TileListPath(s, T, Digits(s, x, y, Edge::From0, false, [](int t) { return t == 5 || t == 14; }));
    case 14: return TileListPath(s, T, Digits(s, x, y, Edge::From0, false, [](int t) { return t == 14 || t == 0; }));
    case 8:
    case 10:
    case 12: return TileListPath(s, T, Digits(s, x, y, Edge::From0, false, TerrainGroup));
    default: return TileListPath(s, T, Digits(s, x, y, Edge::From0, false, [T](int t) { return t == T; }));
  }
}

void TerrainPattern(MapView& s, int16_t x, int16_t y, int16_t& tile) {
  const std::string digits = Digits(s, x, y, Edge::From0, false, TerrainGroup);
  PickListTile(s, TileListPath(s, PenTerrain(s), digits), tile);
}

void TilePattern(MapView& s, int16_t x, int16_t y, int16_t& tile) {
  tile = -1;
  const RefData& ref = s.ref;
  const int T = PenTerrain(s);
  const RingOutline r =
      Outline(s, x, y, Edge::From0, [&](int nx, int ny) { return ref.TypeOf(s.doc.HexTile(nx, ny)) == T; });
  const std::string folder = s.App("mapedit/tilep" + TerrainNN(T));
  EnsureFolder(s, folder);
  tile = FindPatternTile(s, folder + "/" + PatternMask(r, false) + ".txt", PatternKey(r), true);
  if (tile >= 0 && tile <= ref.TileMax && ref.TypeOf(tile) != T) tile = -1;
  if (tile > ref.TileMax) tile = -1;
}

void CheckRivers(MapView& s, int16_t x, int16_t y, int16_t& tile) {
  tile = -1;
  const RefData& ref = s.ref;
  const RingOutline r =
      Outline(s, x, y, Edge::From0, [&](int nx, int ny) { return RiverFamily(ref.TypeOf(s.doc.HexTile(nx, ny))); });
  tile = FindPatternTile(s, Store(s, "riverpatterns", PatternMask(r, true)), PatternKey(r), true);
  if (ref.RoadOf(tile) == 1) tile = -1;  // the river store never paints a bridge
}

void CheckRoads(MapView& s, int16_t x, int16_t y, int16_t& tile) {
  const Document& d = s.doc;
  const RefData& ref = s.ref;
  const int here = d.HexInfo(x, y, 0);
  if (RiverFamily(here)) {
    CheckBridges(s, x, y, tile);
    return;
  }
  tile = -1;
  const RingOutline r = Outline(s, x, y, Edge::From0, [&](int nx, int ny) {
    const int t = d.HexInfo(nx, ny, 0);
    return t == 5 || t == 6 || t == 14 || ref.RoadOf(d.HexTile(nx, ny)) == 1;
  });
  // The road store is not created by a search; a missing file finds nothing.
  tile = FindPatternTile(s, Store(s, "roadpatterns", PatternMask(r, true)), PatternKey(r), false,
                         [&](int16_t t) { return t >= 0 && t <= ref.TileMax && ref.TypeOf(t) == here; });
}

void CheckBridges(MapView& s, int16_t x, int16_t y, int16_t& tile) {
  tile = -1;
  const Document& d = s.doc;
  const RefData& ref = s.ref;
  const RingOutline r = Outline(s, x, y, Edge::From0, [&](int nx, int ny) {
    const int t = d.HexInfo(nx, ny, 0);
    return t == 5 || t == 14 || RiverFamily(t) || ref.RoadOf(d.HexTile(nx, ny)) == 1;
  });
  tile = FindPatternTile(s, Store(s, "bridgepatterns", PatternMask(r, true)), PatternKey(r), true);
  if (tile != -1) return;
  for (int t = 0; t <= ref.TileMax; ++t)
    if (ref.TypeOf(t) == 2 && ref.RoadOf(t) == 1) {
      tile = static_cast<int16_t>(t);
      return;
    }
}

// ---- Learning ----------------------------------------------------------------

namespace {

// Drops a pair past TileMax or with the new key.
PairDrop DropOldOrSame(const MapView& s, const std::string& key) {
  return [&s, key](const std::string& k, const std::string& t) { return Val(t) > s.ref.TileMax || k == key; };
}

// As DropOldOrSame, and also a pair whose tile's terrain is not the hex's now.
PairDrop DropOldSameOrForeign(const MapView& s, const std::string& key, int hexTerrain) {
  return [&s, key, hexTerrain](const std::string& k, const std::string& t) {
    return Val(t) > s.ref.TileMax || k == key || s.ref.TypeOf(PatternTileValue(t)) != hexTerrain;
  };
}

}  // namespace

Lesson NewRoadPattern(MapView& s, int16_t x, int16_t y, int16_t tile) {
  const Document& d = s.doc;
  const RefData& ref = s.ref;
  const bool riverPen = RiverFamily(PenTerrain(s));
  const RingOutline r = Outline(s, x, y, Edge::From0, [&](int nx, int ny) {
    const int t = d.HexInfo(nx, ny, 0);
    if (t == 5 || t == 14) return true;
    for (int k = 1; k <= 6; ++k)
      if (d.HexInfo(nx, ny, k) == 1) return true;
    if (riverPen && RiverFamily(t)) return true;
    return ref.RoadOf(d.HexTile(nx, ny)) == 1;
  });
  const std::string key = PatternKey(r);
  if (key == "0-0-0-0-0-0") return Lesson::None;  // a road with no road around it teaches nothing
  const std::string path = Store(s, riverPen ? "bridgepatterns" : "roadpatterns", PatternMask(r, true));
  StorePatternPair(s, path, key, tile, PatternSeed::Plain, DropOldOrSame(s, key));
  return riverPen ? Lesson::Bridge : Lesson::Road;
}

Lesson NewPattern(MapView& s, int16_t x, int16_t y, int16_t tile) {
  const int t = s.ref.TypeOf(tile);
  if (t == 1) return Lesson::None;  // open ground is never learned
  if (RiverFamily(t)) {
    if (s.ref.RoadOf(tile) == 1) {
      NewBridgePattern(s, x, y, tile);
      return Lesson::Bridge;
    }
    NewRiverPattern(s, x, y, tile);
    return Lesson::River;
  }
  SavePattern(s, x, y, tile);
  return Lesson::Tile;
}

std::string LessonText(Lesson first, Lesson second, int16_t tile) {
  auto name = [](Lesson l) -> std::string {
    switch (l) {
      case Lesson::Road: return "road";
      case Lesson::Bridge: return "bridge";
      case Lesson::River: return "river";
      case Lesson::Tile: return "tile";
      default: return {};
    }
  };
  std::string what = name(first);
  if (second != Lesson::None && second != first) what += (what.empty() ? "" : " and ") + name(second);
  if (what.empty()) return {};
  return "learned: " + what + " pattern for tile " + std::to_string(tile);
}

void NewBridgePattern(MapView& s, int16_t x, int16_t y, int16_t tile) {
  const RefData& ref = s.ref;
  const RingOutline r = Outline(s, x, y, Edge::From1, [&](int nx, int ny) {
    const int16_t nt = s.doc.HexTile(nx, ny);
    return RiverFamily(ref.TypeOf(nt)) || ref.RoadOf(nt) == 1;
  });
  const std::string key = PatternKey(r);
  StorePatternPair(s, Store(s, "bridgepatterns", PatternMask(r, true)), key, tile, PatternSeed::ZeroPair,
                   DropOldSameOrForeign(s, key, s.doc.HexInfo(x, y, 0)));
}

void NewRiverPattern(MapView& s, int16_t x, int16_t y, int16_t tile) {
  const RefData& ref = s.ref;
  const RingOutline r =
      Outline(s, x, y, Edge::From1, [&](int nx, int ny) { return RiverFamily(ref.TypeOf(s.doc.HexTile(nx, ny))); });
  const std::string key = PatternKey(r);
  StorePatternPair(s, Store(s, "riverpatterns", PatternMask(r, true)), key, tile, PatternSeed::ZeroPair,
                   DropOldSameOrForeign(s, key, s.doc.HexInfo(x, y, 0)));
}

void SavePattern(MapView& s, int16_t x, int16_t y, int16_t tile) {
  const RefData& ref = s.ref;
  const int T = PenTerrain(s);
  const RingOutline r =
      Outline(s, x, y, Edge::From1, [&](int nx, int ny) { return ref.TypeOf(s.doc.HexTile(nx, ny)) == T; });
  const std::string folder = s.App("mapedit/tilep" + TerrainNN(T));
  EnsureFolder(s, folder);
  const std::string key = PatternKey(r);
  StorePatternPair(s, folder + "/" + PatternMask(r, false) + ".txt", key, tile, PatternSeed::Plain,
                   [key](const std::string& k, const std::string&) { return k == key; });
}

// ---- Road sides --------------------------------------------------------------

void ConnectRoads(MapView& s, int16_t x, int16_t y) {
  Document& d = s.doc;
  const RefData& ref = s.ref;
  for (int k = 1; k <= 6; ++k) d.HexInfo(x, y, k) = 0;
  const int16_t tile = d.HexTile(x, y);
  const int rows = ref.RoadRows();
  for (int r = 1; r <= rows; ++r)
    if (ref.RoadTable(0, r) == tile) {
      for (int k = 1; k <= 6; ++k) d.HexInfo(x, y, k) = static_cast<uint8_t>(ref.RoadTable(k, r));
      break;
    }
  const int t = d.HexInfo(x, y, 0);
  if (t == 5 || t == 6 || t == 14)
    for (int k = 1; k <= 6; ++k) d.HexInfo(x, y, k) = 1;
}

}  // namespace kv

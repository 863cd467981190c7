// The checks that touch no drawing, so that tests and the command line can
// use them without the view.
#include "analysis/roadcheck.h"

#include <algorithm>
#include <string>

#include "autotile/engine.h"
#include "view/geometry.h"
#include "view/mapview.h"
#include "view/transform.h"

namespace kv {

namespace {

// Terrains that must always have an owner: city, road end, port.
bool MustBeOwned(uint8_t terrain) { return terrain == 5 || terrain == 6 || terrain == 14; }

void ConnectAllRoads(MapView& s) {
  const Document& d = s.doc;
  for (int x = 0; x <= d.MapMaxX; ++x)
    for (int y = 0; y <= d.MapMaxY; ++y) ConnectRoads(s, static_cast<int16_t>(x), static_cast<int16_t>(y));
  s.MapEdited();
}

}  // namespace

const char* FaultReason(FaultKind k) {
  switch (k) {
    case FaultKind::DeadEnd: return "road ends here (fewer than two connected sides)";
    case FaultKind::NoOwner: return "road, city, road end or port without an owner";
    case FaultKind::OwnerOnPlainHex: return "owner on a hex without road, city, road end or port";
  }
  return "";
}

int CountRoadHexes(const MapState& s) {
  const Document& d = s.doc;
  int n = 0;
  for (int x = 0; x <= d.MapMaxX; ++x)
    for (int y = 0; y <= d.MapMaxY; ++y)
      if (s.ref.RoadOf(d.HexTile(x, y)) == 1) ++n;
  return n;
}

void mCountRoad_Click(MapView& s) {
  s.SetPointer(vbHourglass);
  const int n = CountRoadHexes(s);
  s.SetPointer(vbArrow);
  s.MsgBox(std::to_string(n) + " road hexes on map.");
}

std::optional<FaultKind> PruneAndTestHex(MapView& s, int x, int y) {
  Document& d = s.doc;
  for (int side = 1; side <= 6; ++side) {
    if (d.HexInfo(x, y, side) != 1) continue;
    int nx = x, ny = y;
    HexNeighbour(nx, ny, side);
    if (d.OnMap(nx, ny) && d.HexInfo(nx, ny, OppositeSide(side)) == 0) d.HexInfo(x, y, side) = 0;
  }
  const bool road = s.ref.RoadOf(d.HexTile(x, y)) == 1;
  // A road may end in the two outer columns and rows.
  if (road && x > 1 && x < d.MapMaxX && y > 1 && y < d.MapMaxY) {
    int open = 0;
    for (int side = 1; side <= 6; ++side)
      if (d.HexInfo(x, y, side) == 1) ++open;
    if (open < 2) return FaultKind::DeadEnd;
  }
  const bool owned = d.HexCtl(x, y, 0) > 0;
  if (road || MustBeOwned(d.HexInfo(x, y, 0))) {
    if (!owned) return FaultKind::NoOwner;
  } else if (owned) {
    return FaultKind::OwnerOnPlainHex;
  }
  return std::nullopt;
}

bool FindNextFault(MapView& s, int fromX, int16_t& fx, int16_t& fy) {
  ConnectAllRoads(s);
  const Document& d = s.doc;
  for (int x = std::max(fromX, 0); x <= d.MapMaxX; ++x)
    for (int y = 0; y <= d.MapMaxY; ++y)
      if (PruneAndTestHex(s, x, y)) {
        fx = static_cast<int16_t>(x);
        fy = static_cast<int16_t>(y);
        return true;
      }
  return false;
}

std::vector<HexFault> FindAllFaults(MapView& s) {
  ConnectAllRoads(s);
  const Document& d = s.doc;
  std::vector<HexFault> out;
  for (int x = 0; x <= d.MapMaxX; ++x)
    for (int y = 0; y <= d.MapMaxY; ++y)
      if (auto k = PruneAndTestHex(s, x, y)) out.push_back({static_cast<int16_t>(x), static_cast<int16_t>(y), *k});
  return out;
}

int VerifyHexData(MapView& s) {
  Document& d = s.doc;
  int errors = 0;
  for (int x = 0; x <= d.MapMaxX; ++x)
    for (int y = 0; y <= d.MapMaxY; ++y) {
      if (d.HexTile(x, y) < 0 || d.HexTile(x, y) > s.ref.TileMax) {
        d.HexTile(x, y) = 0;
        ++errors;
      }
      if (d.HexInfo(x, y, 0) > s.ref.TerrainMax) {
        d.HexInfo(x, y, 0) = 0;
        ++errors;
      }
      // An objective without an owner is no objective; not counted.
      if (d.HexCtl(x, y, 1) > 0 && d.HexCtl(x, y, 0) == 0) d.HexCtl(x, y, 1) = 0;
    }
  s.MapEdited();
  return errors;
}

void VerifyHexData_Click(MapView& s) {
  if (VerifyHexData(s) > 0) s.MsgBox("Errors found");
}

HexArea BulkArea(const MapView& s) {
  const Document& d = s.doc;
  if (s.pens.DefaultAreaAll == -1) return {0, d.MapMaxX, 0, d.MapMaxY};
  // The visible hexes cut at the map's far edges (the near ones are cut where the area is used).
  const HexRect v = ViewTransform(s.ref, s.view).Visible();
  return {v.x1, std::min<int>(v.x2, d.MapMaxX), v.y1, std::min<int>(v.y2, d.MapMaxY)};
}

void SetDefaultControl(MapView& s, const HexArea& a) {
  Document& d = s.doc;
  const Pens& p = s.pens;
  const auto nation = static_cast<uint8_t>(p.CurNation), orig = static_cast<uint8_t>(p.CurOrigNation);
  for (int x = std::max(a.x1, 0); x <= a.x2; ++x)
    for (int y = std::max(a.y1, 0); y <= a.y2; ++y) {
      const uint8_t t = d.HexInfo(x, y, 0);
      if (MustBeOwned(t)) {
        d.HexCtl(x, y, 0) = nation;
        d.HexOrigOwner(x, y) = orig;
        d.HexCtl(x, y, 1) = static_cast<uint8_t>(t == 5 ? p.CurObjType : t == 6 ? 1 : 2);
      } else if (s.ref.RoadOf(d.HexTile(x, y)) == 1) {
        d.HexCtl(x, y, 0) = nation;
      } else {
        d.HexCtl(x, y, 0) = 0;
        d.HexOrigOwner(x, y) = 0;
        d.HexCtl(x, y, 1) = 0;
      }
    }
  s.MapEdited({a.x1, a.y1, a.x2, a.y2});
}

void SetRoadControl(MapView& s, const HexArea& a) {
  Document& d = s.doc;
  for (int x = std::max(a.x1, 0); x <= a.x2; ++x)
    for (int y = std::max(a.y1, 0); y <= a.y2; ++y)
      if (s.ref.RoadOf(d.HexTile(x, y)) == 1) d.HexCtl(x, y, 0) = static_cast<uint8_t>(s.pens.CurNation);
  s.MapEdited({a.x1, a.y1, a.x2, a.y2});
}

}  // namespace kv

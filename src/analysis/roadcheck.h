// Road network and control checks: counting road hexes, finding road ends
// and ownership faults, repairing out-of-range values, and setting hex
// control in bulk.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

namespace kv {

struct MapState;
struct MapView;

enum class FaultKind {
  DeadEnd,          // a road tile inside the map with fewer than two road sides
  NoOwner,          // a road tile, city, road end or port without an owner
  OwnerOnPlainHex,  // an owner on a hex that should have none
};
const char* FaultReason(FaultKind k);

struct HexFault {
  int16_t x = 0, y = 0;
  FaultKind kind = FaultKind::DeadEnd;
  bool operator==(const HexFault&) const = default;
};

// Hexes whose tile carries a road.
int CountRoadHexes(const MapState& s);
// "Count road hexes": the count in a message box.
void mCountRoad_Click(MapView& s);

// Clears the road sides of hex (x, y) that meet no road on the neighbour
// across them (a side running off the map is kept), then tests the hex:
// first for a dead end, then for its owner. Returns the fault, if any.
std::optional<FaultKind> PruneAndTestHex(MapView& s, int x, int y);
// Rebuilds the road sides of every hex from the tiles, then scans from
// column fromX, columns outer, pruning and testing each hex, and stops at the
// first fault. Returns true and the hex when one is found.
bool FindNextFault(MapView& s, int fromX, int16_t& fx, int16_t& fy);
// Every fault of the whole map: the same rebuild and scan from column 0,
// carried on to the end. One entry a hex, in scan order, with the first test
// it fails. Leaves the road sides pruned.
std::vector<HexFault> FindAllFaults(MapView& s);
// "Find connection/control problems": the next fault from the view's left
// column, the view brought round it and the hex marked; "none found" when
// there is none. (Draws: lives with the view-side commands.)
void mNextUnconnected_Click(MapView& s);

// Resets out-of-range tiles and terrain codes to 0 and takes the objective
// type from objectives without an owner (which does not count); returns the
// number of values reset.
int VerifyHexData(MapView& s);
// "Verify Hex Data": "Errors found" when anything was reset, silence otherwise.
void VerifyHexData_Click(MapView& s);

// The area of a bulk command: the whole map when DefaultAreaAll is on,
// otherwise the view's columns and rows cut at the map's edge. Inclusive.
struct HexArea {
  int x1 = 0, x2 = -1, y1 = 0, y2 = -1;
};
HexArea BulkArea(const MapView& s);
// Control by terrain over the area: cities, road ends and ports take the
// pens' nation, original owner and objective type; other road tiles the
// nation alone; every other hex loses owner, original owner and objective.
void SetDefaultControl(MapView& s, const HexArea& a);
// The pens' nation on every road tile of the area; nothing else changes.
void SetRoadControl(MapView& s, const HexArea& a);
// The menu commands: snapshot first when the area is the whole map, then
// the change and a redraw. (Draw: live with the view-side commands.)
void mDefaultHC_Click(MapView& s);
void mRoadsOnly_Click(MapView& s);

}  // namespace kv

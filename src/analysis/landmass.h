// Land and water bodies: every hex gets the number of the body it belongs to.
//
// Land bodies are numbered 1 to k, k + 1 stays unused, and water bodies take
// k + 2 upward. The numbers are those of the editor's long-standing four-sweep
// pass (a merging sweep that looks only at a hex's first numbered neighbour
// and at the column run, then a renumbering sweep, once for land and once for
// water), reproduced step for step: the merges and the renumbering are
// tracked with union-find structures instead of rescanning the map each
// time, so the work is near-linear rather than quadratic. In effect the
// bodies come out numbered in the order the column scan first meets them.
#pragma once

#include <cstdint>
#include <functional>
#include <vector>

namespace kv {

struct MapState;

struct LandMassNumbers {
  std::vector<int32_t> number;  // per hex, x fastest (the layout of HexLandMass)
  int32_t landBodies = 1;       // k: the highest land number (1 when there is no land)
  int32_t highest = 0;          // the highest number given to any hex
  bool FitsInt16() const { return highest <= 32767; }
};

// Called after each column of each of the four sweeps with the column and the
// row counter as the loop leaves it (the map's height).
using ColumnProgress = std::function<void(int x, int rowCounter)>;

// Numbers the bodies of a terrain plane of w columns by h rows (x fastest):
// land is a code above 0, water is 0.
LandMassNumbers NumberLandMasses(const uint8_t* terrain, int w, int h, const ColumnProgress& progress = {});

// Numbers the bodies of the open map into HexLandMass, with the hourglass and
// the column counter in Label3. A map whose numbers would not fit the 16-bit
// array gets a message and keeps its old numbers; returns false then.
bool BuildLandMasses(MapState& s);
void menu_LandMass_Click(MapState& s);

}  // namespace kv

// Random tiles: per-terrain tables of the tiles that may be scattered, and the
// draw that swaps the pen for one of them.
#pragma once

#include <string>

namespace kv {

struct MapState;
struct MapView;

// "mapedit/NNN.rnd" for terrain t.
std::string RndTablePath(const MapState& s, int terrain);
// Rebuilds every .rnd table from "mapedit/randomtile.dat".
void BuildRndTables(MapState& s);
// Replaces CurTile by a random tile of the same terrain, by direct record access.
void randomtile(MapView& s);

}  // namespace kv

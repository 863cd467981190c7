// Neighbours that follow: with auto-tile on, a painted hex's six neighbours
// are chosen again as the redraw passes would choose them, so that a coast,
// a forest edge, a road or a river joins up as it is painted. A comfort of
// the editor, off unless Pens::AutoNeighbours is on; the classic click never
// calls it.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace kv {

struct MapView;

struct HexRef {
  int16_t x = 0, y = 0;
  bool operator==(const HexRef&) const = default;
};

// Chooses the tile of one hex again from its present surroundings, with its
// own tile as the pen: a road tile through the road (or bridge) store, any
// other tile not of open ground through the terrain engine. A tile that the
// list of its present outline already holds stays, so that a neighbour whose
// outline did not change keeps its variant. A result is taken only when it is
// of the hex's own terrain; a road hex's road sides follow its new tile
// (railroad sides stay). The pen is left as it was. True when the tile changed.
bool FollowHex(MapView& s, int16_t x, int16_t y);

// After a paint of (x, y): the six neighbours on the map follow, then (x, y)
// itself, again until nothing changes (three rounds at most). Returns the
// hexes whose tile changed, each once. `chosen`, when given, is called after
// each hex has been chosen again, and answers true when it changed the hex
// itself (the data generator's teacher does).
using FollowSeen = std::function<bool(int16_t x, int16_t y)>;
std::vector<HexRef> FollowNeighbours(MapView& s, int16_t x, int16_t y, const FollowSeen& chosen = {});

// Whether a paint of (x, y) just now is one that the neighbours follow: tile
// painting with auto-tile on and the comfort switched on.
bool NeighboursFollowPaint(const MapView& s);

}  // namespace kv

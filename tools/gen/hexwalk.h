// Hexes as the generator's painters walk them: a column and a row, the
// neighbour across a side, and the side that leads from one hex to the next.
#pragma once

#include "view/geometry.h"

namespace kvgen {

struct Hex {
  int x = 0, y = 0;
  bool operator<(const Hex& o) const { return x != o.x ? x < o.x : y < o.y; }
  bool operator==(const Hex& o) const = default;
};

// The neighbour across side 1..6.
inline Hex Nb(Hex h, int side) {
  kv::HexNeighbour(h.x, h.y, side);
  return h;
}

// The side of `a` that `b` lies across, 0 when they are not neighbours.
inline int SideTo(Hex a, Hex b) {
  for (int s = 1; s <= 6; ++s)
    if (Nb(a, s) == b) return s;
  return 0;
}

}  // namespace kvgen

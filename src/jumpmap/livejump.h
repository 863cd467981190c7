// The jump map follows edits as they are made: the hexes a change touched are
// drawn again into the jump map's picture, and nothing else, with the pixels
// a full drawing of the picture would give them.
#pragma once

#include "platform/events.h"

namespace kv {

struct Session;

// Draws the hexes of `area` (and what overlaps them) into the open jump map's
// picture. Does nothing while a flag view shows instead of the map
// (JumpMapState::ShowsDrawnMap), or when the jump map is not loaded. Returns
// whether the picture changed.
bool JumpMapFollow(Session& s, const HexRect& area);

}  // namespace kv

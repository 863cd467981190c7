// The bitmaps of the renderer that the secondary forms show.
#pragma once

#include "platform/bitmap.h"
#include "session.h"

namespace kv::gui {

// The tile picker's picture: the tile sheet that the compositor reads.
inline const Bitmap* TileSheet(Session& s) { return &s.sprites.TileSheet; }

}  // namespace kv::gui

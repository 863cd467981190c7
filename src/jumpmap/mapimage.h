// The map image export: a section of the map at full size, tiles only.
#pragma once

#include <string>

#include "platform/bitmap.h"

namespace kv {

struct Session;

// Renders w columns by h rows of hexes from the hex (x, y) at the top left
// into `out` (w * ColPitch by h * RowPitch pixels). Both loops run one step
// past w and h, so the section reads columns x..x+w and rows y..y+h, which
// must all lie on the map. False with a reason in err when they do not, or
// when the picture would be larger than 32767 pixels a side.
bool RenderMapImage(Session& s, int x, int y, int w, int h, Bitmap& out, std::string* err);

// Key F6, after the size dialog has set ImgScaleA and ImgScaleB: renders the
// section at the view's top left into Picture5 and writes "map.bmp" in the
// program folder. On failure shows "Not enough Memory", sets Picture5 to 1 x 1
// and writes nothing. Returns whether the file was written.
bool ExportMapImage(Session& s);

}  // namespace kv

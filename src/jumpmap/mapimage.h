// The map image export: a section of the map at full size, tiles only.
#pragma once

#include <string>

#include "platform/bitmap.h"

namespace kv {

struct Session;
struct Document;
struct RefData;
struct SpriteBank;

// Renders w columns by h rows of hexes from the hex (x, y) at the top left
// into `out` (w * ColPitch by h * RowPitch pixels). Both loops run one step
// past w and h, so the section reads columns x..x+w and rows y..y+h, which
// must all lie on the map. False with a reason in err when they do not, or
// when the picture would be larger than 32767 pixels a side.
bool RenderMapImage(Session& s, int x, int y, int w, int h, Bitmap& out, std::string* err);

// Whether the section of w x h hexes from (x, y) can be drawn: at least one
// hex, on the map with the column and row beyond it, and no side of its
// picture longer than maxSide pixels. False with a reason otherwise.
bool CheckMapSection(const Document& d, const RefData& r, int x, int y, int w, int h, int64_t maxSide,
                     std::string* err);
// Draws rows top .. top + strip.Height() of the section's picture into strip
// (whose width is the picture's): the same pixels as those rows of the
// picture drawn whole. The section must have passed CheckMapSection.
void DrawMapSection(const Document& d, const RefData& r, const SpriteBank& b, int x, int y, int w, int h, int64_t top,
                    Bitmap& strip);

// Key F6, after the size dialog has set ImgScaleA and ImgScaleB: renders the
// section at the view's top left into Picture5 and writes "map.bmp" in the
// program folder. On failure shows "Not enough Memory", sets Picture5 to 1 x 1
// and writes nothing. Returns whether the file was written.
bool ExportMapImage(Session& s);

}  // namespace kv

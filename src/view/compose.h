// Drawing one hex: the layers of a hex in their order and the editor state
// that shows each, the contour code that drawing keeps up to date, and the
// marks made on the view surface without touching the buffer.
#pragma once

#include <cstdint>

namespace kv {

struct MapView;
class Bitmap;
struct ZoomTarget;

// Composes hex (x, y) into the buffer. mode 2 marks a grid hex (blue overlay);
// 0 and 1 are plain. A hex off the map (negative, or beyond the map's last
// column or row) is dropped silently.
void Print_hex(MapView& s, int16_t x, int16_t y, int16_t mode);
// The contour code of hex (x, y): bit (s - 1) set when the hex across side s
// does not lie lower (or is off the map); 63 when all six lie lower, -1 when
// none does. Stores the code in HexContour (0 for -1).
void ContourCode(MapView& s, int16_t x, int16_t y, int16_t& c);
// The same code, computed and not stored.
int16_t ContourCodeOf(const MapView& s, int16_t x, int16_t y);
// Draws hex (x, y) into dst with its cell's top left at (px, py), exactly as
// Print_hex draws it into the buffer, but leaves HexContour as it is: for
// pictures that are not the view's own drawing of the hex.
void PaintHexAt(MapView& s, Bitmap& dst, int px, int py, int16_t x, int16_t y, int16_t mode);
// The same onto the zoomed grid (view/zoomgrid.h), clipped to the target's clip.
void PaintHexZoomed(MapView& s, const ZoomTarget& t, int16_t x, int16_t y, int16_t mode);
// Brings hex (x, y) up to date in the jump map, the buffer and on screen.
void RedrawHex(MapView& s, int16_t x, int16_t y);
// Marks a hex blue (or yellow) on Picture1 only, until the next BlitPic1.
void BlueHex(MapView& s, int16_t x, int16_t y);
void YellowHex(MapView& s, int16_t x, int16_t y);

}  // namespace kv

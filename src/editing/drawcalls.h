// The hex drawing calls that editing makes (compositing of one hex).
#pragma once

#include <cstdint>

#if __has_include("view/compose.h")
#include "view/compose.h"
#else
namespace kv {
struct Session;
// Draws hex (x, y) into the buffer and shows the buffer.
void RedrawHex(Session& s, int16_t x, int16_t y);
// Composes hex (x, y) into the buffer; noGrid 1 leaves the grid overlay out.
void Print_hex(Session& s, int16_t x, int16_t y, int16_t noGrid);
// Marks hex (x, y) as one of the elevation pen's value.
void BlueHex(Session& s, int16_t x, int16_t y);
}  // namespace kv
#endif

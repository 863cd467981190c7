// The hex marking that the analysis commands use.
#pragma once

#include <cstdint>

#if __has_include("view/compose.h")
#include "view/compose.h"
#else
namespace kv {
struct Session;
// Marks hex (x, y) blue on the screen (not in the buffer).
void BlueHex(Session& s, int16_t x, int16_t y);
}  // namespace kv
#endif

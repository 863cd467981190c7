// The two scroll bars of the main view and what a change of their value does.
#pragma once

#include <cstdint>

namespace kv {

struct Session;

enum class Bar { H, V };

// Sets a bar's value as the window system would, firing its change handler.
void SetScrollValue(Session& s, Bar bar, int value);
// New bar ranges after the map's size changed.
void SetScrollRanges(Session& s);
// Brings each bar's value inside its range (as the window system keeps it)
// without firing its change: the view stays where it was put.
void KeepScrollValuesInRange(Session& s);
void HScroll1_Change(Session& s);
void VScroll1_Change(Session& s);
// Brings the view round a hex through the scroll bars (no redraw).
void Center_Hex(Session& s, int16_t x, int16_t y);

}  // namespace kv

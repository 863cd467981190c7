// The two scroll bars of the main view and what a change of their value does.
#pragma once

#include <cstdint>

namespace kv {

struct MapView;

enum class Bar { H, V };

// Sets a bar's value as the window system would, firing its change handler.
void SetScrollValue(MapView& s, Bar bar, int value);
// New bar ranges after the map's size changed.
void SetScrollRanges(MapView& s);
// Brings each bar's value inside its range (as the window system keeps it)
// without firing its change: the view stays where it was put.
void KeepScrollValuesInRange(MapView& s);
void HScroll1_Change(MapView& s);
void VScroll1_Change(MapView& s);
// Brings the view round a hex through the scroll bars (no redraw).
void Center_Hex(MapView& s, int16_t x, int16_t y);

}  // namespace kv

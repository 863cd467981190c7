// The jump map window (Form5) as far as it is not drawing: its size at load,
// where its frame and bars go, the bars' ranges and positions, the country
// list, the objectives view and the keys.
#pragma once

#include <string>
#include <vector>

#include "view/layout.h"

namespace kv {

struct MapState;
struct MapView;
struct Session;

// The window's size at load: 600 x 600, grown to fit a small map's dot
// picture and its bars, never beyond the screen.
void JumpWindowSize(const MapView& s, int vbarW, int hbarH, int& w, int& h);

struct JumpWindowLayout {
  Rect Picture1, VScroll1, HScroll1;
};
// The frame fills the client area less the bars; the bars stand right of it
// and under it.
JumpWindowLayout LayoutJumpWindow(int scaleW, int scaleH, int vbarW, int hbarH);
// The bars' ranges for a frame of frameW x frameH: from 0 to the picture's
// size less the frame's; after a resize grown by one jump pitch.
void JumpScrollRanges(Session& s, int frameW, int frameH, bool afterResize);
// Form_Activate: the bars follow the view (each only when visible), then the
// box is drawn.
void JumpWindowActivate(Session& s, int scaleW, int scaleH, bool hVisible, bool vVisible);

// The country list: the nations in the order of the set's list file.
std::vector<std::string> JumpCountryList(const MapState& s);
// showcountry: the list comes up for a choice.
void JumpShowCountry(Session& s);
// A click on the list's entry: the objectives of the first nation of that
// name, which becomes the pen. False when the map's picture cannot be read.
bool JumpCountryClick(Session& s, int listIndex);
// show_objectives: every objective on the map's picture, and the view's box
// at the hexes' pixels.
bool JumpShowObjectives(Session& s);
// F1 the jump map, F2 the tile picker, F3 the control form, C the box colour.
void JumpWindowKeyDown(Session& s, int keyCode, int shift);

}  // namespace kv

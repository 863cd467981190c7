// The tile picker (Form2): the tile under a click on the sheet becomes the pen,
// the caption names the tile under the pointer, and F1 to F4 reach the help
// screen (Form12) and the three tile data screens.
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "platform/events.h"
#include "view/layout.h"
#include "view/viewstate.h"

namespace kv {

struct MapState;
struct Session;
struct RefData;

// Tiles to a row of the sheet, whatever its width in pixels.
constexpr int kSheetColumns = 16;

// The tile in the cell under pixel (X, Y) of the sheet; X and Y are rounded to
// whole pixels first (halves to even).
int16_t SheetTileAt(const RefData& ref, double X, double Y);
// "Tiles F2 26(x1A) T" for tile n of terrain T.
std::string TileCaption(const MapState& s, int16_t n);

// Picture2_MouseDown: either button takes the tile as the pen; the left one
// also returns the editor to plain tile painting. True when the options menu
// is to pop up (the right button).
bool TilePicker_MouseDown(Session& s, int button, int shift, double X, double Y);
// Picture2_MouseMove: the caption for the tile under the pointer; it stays
// as it was past the last tile.
void TilePicker_MouseMove(Session& s, int button, int shift, double X, double Y);
// Form_KeyDown: F1 help, F2 terrain, F3 roads, F4 patterns.
void TilePicker_KeyDown(Session& s, int keyCode, int shift);
void TilePicker_mTerrain_Click(Session& s);
void TilePicker_mRoads_Click(Session& s);
void TilePicker_mPatterns_Click(Session& s);
// A tile data screen (Form11, Form13 or Form14) closed: the picker no longer
// holds it open (EditorHooks::TileScreenClosed).
void TilePicker_ScreenClosed(Session& s, FormId form);

// Where the picker's controls go in a client area of scaleW x scaleH: the
// frame (Picture1) and its bars; the sheet (Picture2) at the frame's top left.
struct PickerLayout {
  Rect Picture1, HScroll1, VScroll1;
  ScrollBarModel H, V;
};
PickerLayout LayoutTilePicker(const RefData& ref, int scaleW, int scaleH, int barW, int barH, int sheetW, int sheetH);

// Form12's load: the first eight labels from "tvk_info/s2_help.txt" when the
// file holds eight fields; otherwise the design text stands.
void TileHelp_Load(Session& s);

}  // namespace kv

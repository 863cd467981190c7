// The sprite bank and the off-screen buffer: every picture the map is composed
// from, the one bitmap the visible part of the map is composed on, and the
// view surface (Picture1) that the main window shows.
#pragma once

#include <cstdint>

#include "platform/bitmap.h"

namespace kv {

struct MapView;

// Background colour of a picture control that has been cleared.
constexpr uint32_t kPictureBackColour = 0xF0F0F0;

// Left edges in FxDC / FxMaskDC of the overlays drawn at literal positions.
constexpr int kYellowHexLeft = 300;
constexpr int kBlueHexLeft = 420;

struct SpriteBank {
  // The tile sheet, 16 tiles to a row (the tile picker's Picture2).
  Bitmap TileSheet;
  Bitmap BlackHexDC;                // knock-out mask of one hexagon
  Bitmap HexLineDC, HexLineMaskDC;  // hex outline and its mask
  Bitmap FxDC, FxMaskDC;            // whole-hex overlays in one row
  Bitmap RoadDC, RoadMaskDC;        // road across side s at (s - 1) * HexW
  Bitmap RailDC, RailMaskDC;        // railroad, the same layout
  Bitmap ContourDC, ContourMaskDC;  // contour code c at the tile sheet's cell c
  Bitmap FlagDC;                    // 20 x 13 a nation
  Bitmap FlagBigDC;                 // 21 x 14 a nation
  Bitmap FlagSmallDC;               // 9 x 9 a nation

  // The off-screen buffer: one column and one row of margin round the view.
  Bitmap BufDC;
  int32_t BufW = 0, BufH = 0;

  // What the main window shows: ViewPixW x ViewPixH at 100 %, the same part
  // of the map at the zoom's own size at another zoom (view/zoomgrid.h).
  Bitmap Picture1;
  // The hidden canvas of the map image export.
  Bitmap Picture5;
};

// Loads the tile sheet "bmp/mapl.bmp" and sets TileMax from its size
// ((width \ HexW) * (height \ HexH) - 1). False when the file is missing or
// not a readable picture; the sheet is then empty.
bool LoadTileSheet(MapView& s);
// Loads every sprite sheet in order and builds the flag strips. A missing or
// unreadable file leaves its sheet empty, without a message.
void LoadSpriteBank(MapView& s);
// Rebuilds the three flag strips for the nations of the present set.
void BuildFlagBanks(MapView& s);
// Creates the buffer for the present view size and draws the first view.
void BuildViewBuffer(MapView& s);
// Composes the whole view afresh and shows it.
void RedrawBuffers(MapView& s);
// Copies the buffer to Picture1 (and moves the jump map's view box).
void BlitPic1(MapView& s);
// Clears Picture1 to its background colour (at the view's size).
void ClearPicture1(MapView& s);
// One-step moves, run after ViewX or ViewY has taken its new value: shift
// the buffer and draw the column or row that came in. BlitPic1 shows it.
void ScrollLeft(MapView& s);
void ScrollRight(MapView& s);
void ScrollUp(MapView& s);
void ScrollDown(MapView& s);

// BufW and BufH for the present view, geometry and zoom.
void ComputeBufferSize(const MapView& s, int32_t& w, int32_t& h);

}  // namespace kv

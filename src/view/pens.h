// The editing pens and the mode flags that decide what a key or click does.
// Flags are signed 16-bit, -1 on and 0 off, toggled by complement, unless noted.
#pragma once

#include <cstdint>

namespace kv {

struct Pens {
  int16_t CurTile = 0;
  int16_t CurNation = 0, CurOrigNation = 0, CurObjType = 0;
  int16_t CurSide = 0;      // 1..6, chosen in the side strip
  int16_t CurSideKind = 1;  // 1 road, 2 railroad
  int16_t CurHexX = 0, CurHexY = 0;
  int16_t SelX1 = 0, SelX2 = 0, SelY1 = 0, SelY2 = 0;

  int16_t CtlMode = 0;  // 0 tiles, 1 deployment, 2 hex control, 3 objective path
  int16_t AutoTile = 0;
  int16_t AutoTileResume = 0;  // plain 0/1
  int16_t RandomMode = 0;
  int16_t SideEdit = 0;  // 0 or 2
  int16_t ClearSides = 0;
  int16_t ElevMode = 0;
  int16_t ElevValue = 0;
  int16_t HexOutlines = 0;
  int16_t ShowRoadControl = -1;
  int16_t HighlightTile = -1;
  int16_t GridOn = 0, GridX = 15, GridY = 15;
  int16_t DefaultAreaAll = 0;
  int32_t JumpBoxColour = 0;
  int16_t ShiftKey = 0;
  int16_t AreaMode = 0;
  int16_t FromMapEdit = 0;
  int16_t ImgScaleA = 75, ImgScaleB = 75;
  int16_t ColourCRV = 4;

  // Comfort layer, off unless switched on (the editor does; scripts do with
  // Editor.AutoNeighbours = -1): a tile painted with auto-tile on also
  // chooses its six neighbours again (autotile/follow.h).
  int16_t AutoNeighbours = 0;
};

}  // namespace kv

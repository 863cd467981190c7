// The drawing entry points that the document and editing code call.
#pragma once

#include <string>

namespace kv {

struct MapView;

void RedrawBuffers(MapView& s);
void BlitPic1(MapView& s);
void ScrollLeft(MapView& s);
void ScrollRight(MapView& s);
void ScrollUp(MapView& s);
void ScrollDown(MapView& s);
void BuildFlagBanks(MapView& s);
void ClearPicture1(MapView& s);

}  // namespace kv

namespace kv {
// Loads the tile sheet (the tile picker's picture) and sets TileMax from its size.
bool LoadTileSheet(MapView& s);
// Loads every sprite sheet and the flag strips.
void LoadSpriteBank(MapView& s);
// Creates the off-screen buffer for the present view size.
void BuildViewBuffer(MapView& s);
}  // namespace kv

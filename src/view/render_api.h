// The drawing entry points that the document and editing code call.
#pragma once

#include <string>

namespace kv {

struct Session;

void RedrawBuffers(Session& s);
void BlitPic1(Session& s);
void ScrollLeft(Session& s);
void ScrollRight(Session& s);
void ScrollUp(Session& s);
void ScrollDown(Session& s);
void BuildFlagBanks(Session& s);
void ClearPicture1(Session& s);
bool SaveJumpMapImage(Session& s, const std::string& path);

}  // namespace kv

namespace kv {
// Loads the tile sheet (the tile picker's picture) and sets TileMax from its size.
bool LoadTileSheet(Session& s);
// Loads every sprite sheet and the flag strips.
void LoadSpriteBank(Session& s);
// Creates the off-screen buffer for the present view size.
void BuildViewBuffer(Session& s);
}  // namespace kv

// The three tile data screens, opened from the tile picker: terrain type and
// random flag (Form14), road connections (Form11), and the terrain outline a
// tile is drawn for (Form13). Each screen steps through the tiles with the
// pen itself and writes the per-tile data files of "mapedit/".
//
// What a screen shows lives here, between GetStuff and SaveStuff; the forms
// only mirror it.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "platform/bitmap.h"

namespace kv {

struct Session;

enum class TileScreen { Road, Pattern, Terrain };  // Form11, Form13, Form14

// What every screen has: the enlarged tile, its caption, the bold command.
struct TileScreenCommon {
  bool Loaded = false;
  Bitmap Picture1;     // the tile, stretched to the picture's size
  std::string Label1;  // number and terrain name
  std::string Label1Tag;
  int BoldCommand = -1;  // the command shown bold (0 Back, 1 Next, 2 Save), -1 none
};

// Form11: which sides a road leaves the tile by.
struct RoadScreenState : TileScreenCommon {
  std::array<std::string, 6> Image2Tag{"0", "0", "0", "0", "0", "0"};  // ring order
};

// Form13: the sides that touch the same terrain, and whether the tile is
// drawn by the terrain lists at all.
struct PatternScreenState : TileScreenCommon {
  std::array<std::string, 6> Image2Tag{"0", "0", "0", "0", "0", "0"};
  int Option1 = 0;            // 0 "NO", 1 "Yes"
  bool MarksVisible = false;  // the six marks and Label4 follow Option1
  std::string Label4;         // the hint
  std::string OldDigits;      // SideDigits of the tile as shown or last saved
};

// Form14: the terrain and the random flag.
struct TerrainScreenState : TileScreenCommon {
  std::vector<std::string> List1;  // every terrain name; the index is the code
  int ListIndex = -1;
  bool List1Enabled = true;
  std::string Label4;       // name of the stored terrain
  std::string Label4Tag;    // its code
  bool Label4Bold = false;  // the stored terrain is not the one in use
  int Option1 = 0;          // 0 "NO", 1 "YES"
};

struct TileScreens {
  RoadScreenState f11;
  PatternScreenState f13;
  TerrainScreenState f14;
};

// Size of each screen's Picture1: the tile at twice its size.
constexpr int kTileScreenPicW = 120, kTileScreenPicH = 100;
// Caption of an Image2 mark: its picture file for the Tag.
std::string MarkPicture(const std::string& tag);

// ---- Common ----------------------------------------------------------------
void TileScreen_Load(Session& s, TileScreen which);
void TileScreen_Unload(Session& s, TileScreen which);
void TileScreen_GetStuff(Session& s, TileScreen which);
void TileScreen_SaveStuff(Session& s, TileScreen which);
void TileScreen_DrawTile(Session& s, TileScreen which);
// The pen to the next (previous) tile, past the end around, then GetStuff.
void TileScreen_nTile(Session& s, TileScreen which);
void TileScreen_pTile(Session& s, TileScreen which);
// The commands: 0 pTile, 1 nTile, 2 SaveStuff.
void TileScreen_Command(Session& s, TileScreen which, int index);
// B, N and S (66, 78, 83): the command of that key; true when the key was one
// of them (and is consumed on the screens with buttons).
bool TileScreen_KeyDown(Session& s, TileScreen which, int keyCode);
void TileScreen_KeyUp(Session& s, TileScreen which);
// The pointer over the form clears the bold command.
void TileScreen_MouseMove(Session& s, TileScreen which);
// Form11: the command label under the pointer is bold.
void RoadScreen_Label3_MouseMove(Session& s, int index);
// Form11 and Form13: a mark flips between "0" and "1"; nothing is written yet.
void TileScreen_Image2_Click(Session& s, TileScreen which, int index);

// ---- Form13 ----------------------------------------------------------------
void PatternScreen_Option1_Click(Session& s, int index);
// Rebuilds one terrain tile list from "ptiles.dat" and "patterns.dat": every
// tile of the pen's terrain, marked for auto-drawing, whose sides give
// `digits`. A list with no tile is no file.
void BuildPatternFile(Session& s, const std::string& path, const std::string& digits);

// ---- Form14 ----------------------------------------------------------------
void TerrainScreen_List1_Click(Session& s);

}  // namespace kv

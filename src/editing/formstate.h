// What the tile picker, the control form, the grid and map-image dialogs
// show, kept in the session so that their rules live in the core.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace kv {

struct TilePickerState {
  // 1 while the tile data screens (Form11 roads, Form13 patterns, Form14
  // terrain) are open on the picker's behalf.
  uint8_t RoadFormOpen = 0, PatternFormOpen = 0, TerrainFormOpen = 0;
  std::string Caption = "Map Tiles";
  // The labels of the help screen of the tile picker (Form12).
  std::array<std::string, 9> HelpLabels = {
      "F1 - Display this screen",
      "F3 - Set Tile Road Connections",
      "F4 - Set Tile Terrain Patterns (AutoTile Info)",
      "Terrain NOT Tile based patterns. ",
      "For more info see \\tvk_info\\patterns.",
      "Left Click - Select tile to place on Map Screen.",
      "Right Click - Open Road Connections screen.",
      "Same as hitting F2.",
      "F2 - Set Tile Terrain Type",
  };
};

struct ControlFormState {
  std::vector<std::string> List1, List2;  // "-None-", then the nations by name
  int List1Index = -1, List2Index = -1;
  bool Label2Bold[2] = {false, false};
  bool KeyPreview = false;
};

struct GridFormState {
  bool Loaded = false;
  std::string Text1 = "15", Text2 = "15";
};

struct ExportFormState {
  bool Loaded = false;
  std::string Text1 = "Text1", Text2 = "Text2";
  bool ExportPending = false;  // the map image is made when the dialog closes
};

}  // namespace kv

// What the pen is, in words for the status bar, and every key of every
// window for the help screen.
#pragma once

#include <string>
#include <vector>

namespace kv {

struct MapView;

struct PenStatus {
  std::string tile;       // "Tile 17 (x11) Clear"
  std::string mode;       // "Tiles", "Road sides: side 3", "Deployment: Avaria", ...
  std::string autoTile;   // "Auto-tile on" / "Auto-tile off"
  std::string random;     // "Random tiles on" / "Random tiles off"
  std::string elevation;  // "Elevation pen off" / "Elevation pen 12"
};

PenStatus DescribePen(const MapView& s);

// "Zoom 50 %".
std::string ZoomText(int percent);
// "Hex (12, 7)".
std::string HexText(int x, int y);

struct KeyHelp {
  const char* window;  // "Main window", "Tile picker", ...
  const char* key;     // "F1", "Ctrl+wheel", ...
  const char* what;
};
// Every key and mouse gesture of every window, window by window.
const std::vector<KeyHelp>& AllKeys();

}  // namespace kv

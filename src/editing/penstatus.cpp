#include "editing/penstatus.h"

#include <cstdio>

#include "session.h"

namespace kv {

namespace {

std::string NameOf(const std::vector<std::string>& names, int i) {
  return i >= 0 && static_cast<size_t>(i) < names.size() ? names[i] : std::string();
}

}  // namespace

PenStatus DescribePen(const MapView& s) {
  const Pens& p = s.pens;
  const RefData& r = s.ref;
  PenStatus out;
  char hex[16];
  std::snprintf(hex, sizeof hex, "%X", static_cast<unsigned>(static_cast<uint16_t>(p.CurTile)));
  out.tile = "Tile " + std::to_string(p.CurTile) + " (x" + hex + ")";
  if (p.CurTile >= 0 && p.CurTile <= r.TileMax) {
    const std::string terrain = NameOf(r.TerrainName, r.TypeOf(p.CurTile));
    if (!terrain.empty()) out.tile += " " + terrain;
  }
  if (p.ElevMode == -1) {
    out.mode = "Elevation " + std::to_string(p.ElevValue);
  } else {
    switch (p.CtlMode) {
      case 1:
        out.mode = "Deployment";
        if (p.CurNation > 0) out.mode += ": " + NameOf(r.NationName, p.CurNation);
        break;
      case 2: {
        static const char* const kinds[] = {"", ", secondary", ", primary", ", oil"};
        out.mode = "Hex control: " + (p.CurNation > 0 ? NameOf(r.NationName, p.CurNation) : std::string("none"));
        if (p.CurObjType >= 1 && p.CurObjType <= 3) out.mode += kinds[p.CurObjType];
        break;
      }
      case 3: out.mode = "Objective paths"; break;
      default:
        if (p.SideEdit > 0)
          out.mode =
              std::string(p.CurSideKind == 2 ? "Railroad" : "Road") + " sides: side " + std::to_string(p.CurSide);
        else
          out.mode = "Tiles";
        break;
    }
    if (p.ClearSides == -1) out.mode += ", clear sides";
  }
  out.autoTile = p.AutoTile == -1        ? "Auto-tile on"
                 : p.AutoTileResume == 1 ? "Auto-tile after one click"
                                         : "Auto-tile off";
  out.random = p.RandomMode == -1 ? "Random tiles on" : "Random tiles off";
  out.elevation = p.ElevMode == -1 ? "Elevation pen " + std::to_string(p.ElevValue) : "Elevation pen off";
  return out;
}

std::string ZoomText(int percent) { return "Zoom " + std::to_string(percent) + " %"; }

std::string HexText(int x, int y) { return "Hex (" + std::to_string(x) + ", " + std::to_string(y) + ")"; }

const std::vector<KeyHelp>& AllKeys() {
  static const std::vector<KeyHelp> keys = {
      {"Main window", "F1", "Show the jump map"},
      {"Main window", "F2", "Show the tile picker"},
      {"Main window", "F3", "Show the control form"},
      {"Main window", "F4", "Highlight the hexes of the pen's tile in blue, on and off"},
      {"Main window", "F5", "Take the undo snapshot"},
      {"Main window", "F6", "Map to Bitmap: write a section of the map to map.bmp"},
      {"Main window", "F7", "Go back to the undo snapshot"},
      {"Main window", "F8", "The view's forest hexes teach the pen's tile store"},
      {"Main window", "Arrows", "Scroll the map one column or row"},
      {"Main window", "A", "Auto-tile on and off"},
      {"Main window", "B / N", "The current hex takes the previous / next tile of the pen's kind"},
      {"Main window", "C", "The jump map's box black or white"},
      {"Main window", "R", "The current hex takes a random tile of the pen's terrain"},
      {"Main window", "X", "Original owner of every city hex = its owner"},
      {"Main window", "/", "Help"},
      {"Main window", "Ctrl+N / Ctrl+O", "New map / open a map"},
      {"Main window", "Ctrl+S / Ctrl+Shift+S", "Save / save under a name"},
      {"Main window", "Ctrl+C / Ctrl+V", "Copy the selected block / paste it at the current hex"},
      {"Main window", "Ctrl+Q", "Exit"},
      {"Main window", "Ctrl+plus / Ctrl+minus", "Zoom in / out (25 % to 200 %)"},
      {"Main window", "Ctrl+0", "Zoom 100 %"},
      {"Main window", "Left button", "Paint the hex as the mode says; held down, every hex the pointer enters"},
      {"Main window", "Shift+left button", "Extend the selected block"},
      {"Main window", "Right button", "Take the hex's tile as the pen (plain tile painting)"},
      {"Main window", "Wheel / Shift+wheel", "Scroll up and down / left and right"},
      {"Main window", "Ctrl+wheel", "Zoom, keeping the hex under the pointer in place"},
      {"Main window", "Side strip, any button", "Paint hex sides with the side clicked"},
      {"Tile picker", "F1", "Tile Screen Commands"},
      {"Tile picker", "F2", "Tile Terrain Type"},
      {"Tile picker", "F3", "Road Connections"},
      {"Tile picker", "F4", "Terrain Based Tile Pattern"},
      {"Tile picker", "Left button", "Take the tile as the pen (plain tile painting)"},
      {"Tile picker", "Right button", "Take the tile as the pen and open the tile data menu"},
      {"Tile data screens", "B / N", "Previous / next tile of the pen's kind"},
      {"Tile data screens", "S", "Save the tile's data"},
      {"Control form", "F1 / F2 / F3", "Jump map / tile picker / control form"},
      {"Jump map", "F1 / F2 / F3", "Jump map / tile picker / control form"},
      {"Jump map", "C", "The box black or white"},
      {"Jump map", "Any button", "Centre the main view there"},
      {"Bitmap utility", "B / N", "The main window's previous / next tile"},
      {"File dialog", "Enter, double-click", "Load (in Save As: save) the file"},
  };
  return keys;
}

}  // namespace kv

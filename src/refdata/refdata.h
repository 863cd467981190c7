// Reference tables that belong to no single map: tiles, terrains, roads, hex
// geometry and the nation set in use.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace kv {

struct RefData {
  // Tiles (TileMax comes from the tile sheet's size).
  int16_t TileMax = -1;
  std::vector<uint8_t> TileType;  // (0..TileMax) terrain code of a tile
  std::vector<uint8_t> TileRoad;  // (0..TileMax) 1 when the tile carries a road
  // RoadTable (0..6, 0..R), first index fastest; RoadTable(0, 0) = R.
  std::vector<int16_t> RoadTableData = std::vector<int16_t>(7, 0);
  int16_t& RoadTable(int s, int r) { return RoadTableData[static_cast<size_t>(r) * 7 + s]; }
  int16_t RoadTable(int s, int r) const { return RoadTableData[static_cast<size_t>(r) * 7 + s]; }
  int RoadRows() const { return RoadTable(0, 0); }

  // Terrains.
  int16_t TerrainMax = -1;
  std::vector<std::string> TerrainName;
  // TerrainRGB (0..2, 0..TerrainMax): 0 blue, 1 green, 2 red.
  std::vector<int16_t> TerrainRGBData;
  int16_t& TerrainRGB(int c, int t) { return TerrainRGBData[static_cast<size_t>(t) * 3 + c]; }
  int16_t TerrainRGB(int c, int t) const { return TerrainRGBData[static_cast<size_t>(t) * 3 + c]; }

  // Hex geometry, fixed at start-up.
  int16_t HexW = 60, HexH = 50, HexSlant = 30;
  int16_t HexInset = 15, ColPitch = 45, RowPitch = 50;
  int16_t JumpColPitch = 0, JumpRowPitch = 0;
  uint8_t FlagDX = 20, FlagDY = 30;

  // Nation set in use (NationSet itself is part of the document).
  int16_t NationCount = 0;
  std::vector<std::string> NationName = {""};
  std::vector<int16_t> NationCode = {0};
  std::vector<int16_t> NationOrder = {0};

  // Terrain code of tile t, 0 for a tile outside the table.
  uint8_t TypeOf(int t) const { return t >= 0 && static_cast<size_t>(t) < TileType.size() ? TileType[t] : 0; }
  uint8_t RoadOf(int t) const { return t >= 0 && static_cast<size_t>(t) < TileRoad.size() ? TileRoad[t] : 0; }
};

}  // namespace kv

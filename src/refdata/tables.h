// Reading the tile, terrain, road and geometry tables of the program folder.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "platform/programfolder.h"
#include "refdata/refdata.h"

namespace kv {

// "flags.xy": FlagDX, FlagDY (defaults 20, 30 when the file is missing).
void ParseFlagsXY(std::span<const uint8_t> text, RefData& ref);
// "data/hex_info.txt": HexW, HexH, HexSlant, then the derived pitches.
// Returns false (with a reason) for a geometry that cannot be drawn.
bool ParseHexInfo(std::span<const uint8_t> text, RefData& ref, std::string* err);
void DeriveGeometry(RefData& ref);

// "data/terrain.txt" into TerrainMax, TerrainName, TerrainRGB.
bool ParseTerrainTable(std::span<const uint8_t> text, RefData& ref, std::string* err);
// "data/hexdata.txt": the count N and N byte values (all that the file holds,
// which may be more or fewer than the tile sheet has tiles).
bool ParseHexData(std::span<const uint8_t> text, std::vector<uint8_t>& values, std::string* err);
// "mapedit/roadinfo.dat": TileRoad and RoadTable for tiles 0..TileMax; tiles
// beyond the end of the file have no road.
void ParseRoadInfo(std::span<const uint8_t> bytes, RefData& ref);
// Side of each byte of a roadinfo record (bytes go clockwise from the top).
constexpr int kRoadByteSide[6] = {5, 6, 1, 2, 3, 4};

// Start-up readers. They report through the session's message boxes and
// return false when the editor cannot go on.
void ReadFlagsXY(const ProgramFolder& app, RefData& ref);
bool ReadHexInfo(const ProgramFolder& app, RefData& ref);
bool LoadTileInfo(const ProgramFolder& app, RefData& ref);
bool LoadRoadInfo(const ProgramFolder& app, RefData& ref);

}  // namespace kv

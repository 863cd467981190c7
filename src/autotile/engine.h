// The tile selection engine and the pattern learners.
//
// The engine reads the pattern stores (autotile/stores.h) and answers with a
// tile number, or -1 when it has nothing to say; it never writes the map.
// Callers set the tile argument to -1 before each call. The learners turn a
// hand-placed tile into a stored pair; they read the hex's surroundings, so
// painting calls them before the hex changes.
#pragma once

#include <cstdint>
#include <string>

namespace kv {

struct MapView;

// ---- Reading -----------------------------------------------------------------

// Terrain engine for the pen CurTile: a terrain tile list, the river store, or
// a list first and the tile pattern store after it. Writes `tile` only when it
// finds something, or -1 where a stale list was met or a tile is past TileMax.
void AutoDrawTile(MapView& s, int16_t x, int16_t y, int16_t& tile);
// Road engine: the road store for the hex's present terrain (a river-family
// hex goes to CheckBridges). Always writes `tile`.
void CheckRoads(MapView& s, int16_t x, int16_t y, int16_t& tile);
// Bridge store, then the first road tile of terrain 2. Always writes `tile`.
void CheckBridges(MapView& s, int16_t x, int16_t y, int16_t& tile);
// River store; never a road tile. Always writes `tile`.
void CheckRivers(MapView& s, int16_t x, int16_t y, int16_t& tile);
// Draw from the list of the terrain group 8, 10, 12; `tile` stays when there
// is no list.
void TerrainPattern(MapView& s, int16_t x, int16_t y, int16_t& tile);
// Tile pattern store of the pen's terrain. Always writes `tile`.
void TilePattern(MapView& s, int16_t x, int16_t y, int16_t& tile);

// The terrain tile list that AutoDrawTile (or TerrainPattern) draws from for
// the pen at (x, y); "" when the pen's terrain goes to the river store.
std::string TerrainListPath(const MapView& s, int16_t x, int16_t y);

// ---- Learning ----------------------------------------------------------------

// What a learner stored: nothing, or a pair in one of the four stores.
enum class Lesson { None, Road, Bridge, River, Tile };

// Road outline of `tile` at (x, y): road store, or bridge store when the pen's
// terrain is 2, 11 or 12. Stores nothing for the key "0-0-0-0-0-0".
Lesson NewRoadPattern(MapView& s, int16_t x, int16_t y, int16_t tile);
// Dispatches by the tile's terrain: 1 nothing; 2, 11, 12 bridge (road tile)
// or river; anything else SavePattern.
Lesson NewPattern(MapView& s, int16_t x, int16_t y, int16_t tile);
// "learned: road and tile pattern for tile 164", or "" when nothing was learned.
std::string LessonText(Lesson first, Lesson second, int16_t tile);
void NewBridgePattern(MapView& s, int16_t x, int16_t y, int16_t tile);
void NewRiverPattern(MapView& s, int16_t x, int16_t y, int16_t tile);
// Tile pattern store of the pen's terrain (not the tile's).
void SavePattern(MapView& s, int16_t x, int16_t y, int16_t tile);

// Sets the six side values of hex (x, y) from its tile's row of RoadTable;
// cities, road ends and ports (5, 6, 14) get all six.
void ConnectRoads(MapView& s, int16_t x, int16_t y);

}  // namespace kv

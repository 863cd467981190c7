// Passes over an area or the whole map: the auto redraws, the map rebuild
// from terrain, road sides, the memorise passes and the scattered woods. These
// are the handlers of the main window's menu items of the same names.
#pragma once

#include <cstdint>

namespace kv {

struct MapState;
struct MapView;

// The columns and rows a pass covers: the whole map when DefaultAreaAll is
// -1, otherwise the visible columns and rows cut at the map's edge.
struct PassArea {
  int x1 = 0, x2 = -1, y1 = 0, y2 = -1;
  bool whole = false;
};
PassArea DefaultPassArea(const MapView& s);

// "auto redraw Roads": roads on terrain 1 through CheckRoads. Snapshot only
// when the area is the whole map.
void autoredrawroads_Click(MapView& s);
// "auto redraw Terrain": every hex not of terrain 1 through AutoDrawTile with
// its own tile as the pen. Always a snapshot.
void autoredrawterrain_Click(MapView& s);
// "auto redraw Forests": terrain 8 hexes with the first forest tile as pen.
void mAutoForest_Click(MapView& s);
// "auto redraw Mountains": massifs around the key tiles 86 and 94.
void mAutoMoutains_Click(MapView& s);

// "Redraw Map based on Terrain": snapshot, then UpdateTiles.
void mMapRebuild_Click(MapView& s);
void UpdateTiles(MapView& s);
void NewTile(MapView& s, int16_t x, int16_t y);
// The first non-zero side value of the hex, or 0.
int HexHasSides(const MapState& s, int16_t x, int16_t y);
// "Rebuild Terrain based on Tiles": snapshot, then RetypeHexes.
void mRedoTerrain_Click(MapView& s);
// "Fill in Possible Road connections": ConnectRoads everywhere, then clears
// road sides that no neighbour meets.
void doroads_Click(MapView& s);

// The memorise passes over the whole map.
void MemorizeRoads_Click(MapView& s);
void MemoriseRivers_Click(MapView& s);
void mMountains_Click(MapView& s);
// Key F8: the forest hexes of the visible area teach the pen's tile store.
void LearnVisibleForests(MapView& s);

// "Scattered Woods": ScatterWoods, then RedrawBuffers.
void mRndWoods_Click(MapView& s);
// Plants single forest hexes on about one open-ground hex in twenty.
void ScatterWoods(MapView& s);

}  // namespace kv

#include "autotile/passes.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "autotile/engine.h"
#include "autotile/random.h"
#include "autotile/stores.h"
#include "document/document_ops.h"
#include "document/mapfile.h"
#include "platform/ui.h"
#include "view/geometry.h"
#include "view/mapview.h"
#include "view/render_api.h"
#include "view/transform.h"

namespace kv {

namespace {

// The first tile, in ascending order, of terrain t (and road flag when asked).
int FirstTileOf(const RefData& ref, int t, int road = -1) {
  for (int n = 0; n <= ref.TileMax; ++n)
    if (ref.TypeOf(n) == t && (road < 0 || ref.RoadOf(n) == road)) return n;
  return -1;
}

// The frame of the four redraw passes around `work`.
template <class Work>
void RedrawPass(MapView& s, bool snapshot, Work work) {
  const PassArea a = DefaultPassArea(s);
  if (snapshot) WriteSnapshot(s);
  s.SetPointer(vbHourglass);
  ResetStoreProblem(s);
  s.pens.AutoTile = -1;
  work(a);
  // A pass may also set the hexes round the area's edge (a mountain's ring).
  s.MapEdited({a.x1 - 1, a.y1 - 1, a.x2 + 1, a.y2 + 1});
  RedrawBuffers(s);
  s.SetPointer(vbArrow);
}

bool RiverFamily(int t) { return t == 2 || t == 11 || t == 12; }

}  // namespace

PassArea DefaultPassArea(const MapView& s) {
  PassArea a;
  const Document& d = s.doc;
  if (s.pens.DefaultAreaAll == -1) {
    a.x1 = 0;
    a.y1 = 0;
    a.x2 = d.MapMaxX;
    a.y2 = d.MapMaxY;
    a.whole = true;
    return a;
  }
  const HexRect r = ViewTransform(s.ref, s.view).Visible().ClippedTo(d.MapMaxX, d.MapMaxY);
  a.x1 = r.x1;
  a.y1 = r.y1;
  a.x2 = r.x2;
  a.y2 = r.y2;
  return a;
}

void autoredrawroads_Click(MapView& s) {
  RedrawPass(s, s.pens.DefaultAreaAll == -1, [&](const PassArea& a) {
    Document& d = s.doc;
    for (int x = a.x1; x <= a.x2; ++x)
      for (int y = a.y1; y <= a.y2; ++y) {
        if (d.HexInfo(x, y, 0) != 1 || s.ref.RoadOf(d.HexTile(x, y)) != 1) continue;
        int16_t r = -1;
        s.pens.CurTile = d.HexTile(x, y);
        CheckRoads(s, static_cast<int16_t>(x), static_cast<int16_t>(y), r);
        if (r > -1) d.HexTile(x, y) = r;
      }
  });
}

void autoredrawterrain_Click(MapView& s) {
  RedrawPass(s, true, [&](const PassArea& a) {
    Document& d = s.doc;
    for (int x = a.x1; x <= a.x2; ++x) {
      int y = a.y1;
      for (; y <= a.y2; ++y) {
        if (d.HexInfo(x, y, 0) == 1) continue;
        int16_t r = -1;
        s.pens.CurTile = d.HexTile(x, y);
        AutoDrawTile(s, static_cast<int16_t>(x), static_cast<int16_t>(y), r);
        if (r > -1) d.HexTile(x, y) = r;
      }
      // The row counter stands one past the last row when the column is done.
      s.SetLabel3(std::to_string(x) + "," + std::to_string(y));
    }
  });
}

void mAutoForest_Click(MapView& s) {
  RedrawPass(s, false, [&](const PassArea& a) {
    if (const int f = FirstTileOf(s.ref, 8); f >= 0) s.pens.CurTile = static_cast<int16_t>(f);
    Document& d = s.doc;
    for (int x = a.x1; x <= a.x2; ++x)
      for (int y = a.y1; y <= a.y2; ++y) {
        if (d.HexInfo(x, y, 0) != 8) continue;
        int16_t r = -1;
        AutoDrawTile(s, static_cast<int16_t>(x), static_cast<int16_t>(y), r);
        if (r > -1) d.HexTile(x, y) = r;
      }
  });
}

void mAutoMoutains_Click(MapView& s) {
  static constexpr int16_t kFirst[6] = {104, 115, 90, 75, 76, 94};    // around tile 86, sides 1..6
  static constexpr int16_t kSecond[6] = {192, 104, 86, 76, 78, 105};  // around tile 94
  RedrawPass(s, false, [&](const PassArea& a) {
    Document& d = s.doc;
    auto massif = [&](int16_t keyTile, const int16_t* ring) {
      for (int x = a.x1; x <= a.x2; ++x)
        for (int y = a.y1; y <= a.y2; ++y) {
          if (d.HexInfo(x, y, 0) != 3 || d.HexTile(x, y) != keyTile) continue;
          for (int side = 1; side <= 6; ++side) {
            int nx = x, ny = y;
            HexNeighbour(nx, ny, side);
            if (d.OnMap(nx, ny) && d.HexInfo(nx, ny, 0) == 3) d.HexTile(nx, ny) = ring[side - 1];
          }
        }
    };
    massif(86, kFirst);
    massif(94, kSecond);
  });
}

// ---- Whole-map repairs ---------------------------------------------------------

int HexHasSides(const MapState& s, int16_t x, int16_t y) {
  for (int k = 1; k <= 6; ++k)
    if (const int v = s.doc.HexInfo(x, y, k); v != 0) return v;
  return 0;
}

void NewTile(MapView& s, int16_t x, int16_t y) {
  Document& d = s.doc;
  const RefData& ref = s.ref;
  const int t = d.HexInfo(x, y, 0);
  const int road = (t == 5 || t == 6 || t == 14 || t == 0) ? 0 : HexHasSides(s, x, y);
  if (road > 0) {
    if (const int n = FirstTileOf(ref, t, 1); n >= 0) d.HexTile(x, y) = static_cast<int16_t>(n);
    return;
  }
  if (const int n = FirstTileOf(ref, t, 0); n >= 0) {
    s.pens.CurTile = static_cast<int16_t>(n);
    randomtile(s);
    d.HexTile(x, y) = s.pens.CurTile;
  }
}

void UpdateTiles(MapView& s) {
  Document& d = s.doc;
  const RefData& ref = s.ref;
  for (int x = 0; x <= d.MapMaxX; ++x)
    for (int y = 0; y <= d.MapMaxY; ++y) {
      if (d.HexTile(x, y) > ref.TileMax) NewTile(s, x, y);
      const int16_t tile = d.HexTile(x, y);
      if (tile == 544 || ref.TypeOf(tile) != d.HexInfo(x, y, 0)) NewTile(s, x, y);
    }
  s.MapEdited();
  RedrawBuffers(s);
}

void mMapRebuild_Click(MapView& s) {
  WriteSnapshot(s);
  UpdateTiles(s);
}

void mRedoTerrain_Click(MapView& s) {
  WriteSnapshot(s);
  RetypeHexes(s);
  s.MapEdited();
}

void doroads_Click(MapView& s) {
  WriteSnapshot(s);
  Document& d = s.doc;
  for (int x = 0; x <= d.MapMaxX; ++x)
    for (int y = 0; y <= d.MapMaxY; ++y) ConnectRoads(s, x, y);
  // Cleared in place: a side cleared early counts as 0 for later hexes.
  for (int x = 0; x <= d.MapMaxX; ++x)
    for (int y = 0; y <= d.MapMaxY; ++y)
      for (int side = 1; side <= 6; ++side) {
        if (d.HexInfo(x, y, side) != 1) continue;
        int nx = x, ny = y;
        HexNeighbour(nx, ny, side);
        if (d.OnMap(nx, ny) && d.HexInfo(nx, ny, OppositeSide(side)) == 0) d.HexInfo(x, y, side) = 0;
      }
  s.MapEdited();
}

// ---- Memorise passes -----------------------------------------------------------

void MemorizeRoads_Click(MapView& s) {
  Document& d = s.doc;
  ResetStoreProblem(s);
  const StoreBatch batch(s);
  for (int x = 0; x <= d.MapMaxX; ++x) {
    for (int y = 0; y <= d.MapMaxY; ++y) {
      const int t = d.HexInfo(x, y, 0);
      if (t == 14 || t == 5 || t == 6 || s.ref.RoadOf(d.HexTile(x, y)) == 1) {
        s.pens.CurTile = d.HexTile(x, y);
        NewRoadPattern(s, x, y, d.HexTile(x, y));
      }
    }
    s.SetLabel3(std::to_string(x) + " / " + std::to_string(d.MapMaxX));
  }
}

void MemoriseRivers_Click(MapView& s) {
  Document& d = s.doc;
  s.SetPointer(vbHourglass);
  ResetStoreProblem(s);
  {
    const StoreBatch batch(s);
    for (int x = 0; x <= d.MapMaxX; ++x)
      for (int y = 0; y <= d.MapMaxY; ++y)
        if (RiverFamily(d.HexInfo(x, y, 0))) NewRiverPattern(s, x, y, d.HexTile(x, y));
  }
  s.SetPointer(vbArrow);
}

void mMountains_Click(MapView& s) {
  Document& d = s.doc;
  s.SetPointer(vbHourglass);
  ResetStoreProblem(s);
  {
    const StoreBatch batch(s);
    for (int x = 0; x <= d.MapMaxX; ++x)
      for (int y = 0; y <= d.MapMaxY; ++y) {
        const int t = d.HexInfo(x, y, 0);
        if (RiverFamily(t))
          NewRiverPattern(s, x, y, d.HexTile(x, y));
        else if (t == 3)
          SavePattern(s, x, y, d.HexTile(x, y));
      }
  }
  s.SetPointer(vbArrow);
}

void LearnVisibleForests(MapView& s) {
  Document& d = s.doc;
  s.SetPointer(vbHourglass);
  ResetStoreProblem(s);
  const HexRect a = ViewTransform(s.ref, s.view).Visible().ClippedTo(d.MapMaxX, d.MapMaxY);
  {
    const StoreBatch batch(s);
    for (int x = a.x1; x <= a.x2; ++x)
      for (int y = a.y1; y <= a.y2; ++y)
        if (d.HexInfo(x, y, 0) == 8) NewPattern(s, static_cast<int16_t>(x), static_cast<int16_t>(y), d.HexTile(x, y));
  }
  s.SetPointer(vbArrow);
}

// ---- Scattered woods -----------------------------------------------------------

void ScatterWoods(MapView& s) {
  Document& d = s.doc;
  const RefData& ref = s.ref;
  if (const int f = FirstTileOf(ref, 8); f >= 0) s.pens.CurTile = static_cast<int16_t>(f);
  for (int x = 0; x <= d.MapMaxX; ++x)
    for (int y = 0; y <= d.MapMaxY; ++y) {
      if (d.HexInfo(x, y, 0) != 1 || ref.RoadOf(d.HexTile(x, y)) != 0) continue;
      const int r = static_cast<int>(std::floor(s.Rnd() * 20.0f + 1.0f));
      if (r != 1) continue;
      int16_t tile = -1;
      AutoDrawTile(s, x, y, tile);
      if (tile >= 0 && tile <= ref.TileMax) {
        s.pens.CurTile = tile;
        d.HexInfo(x, y, 0) = ref.TypeOf(tile);
        d.HexTile(x, y) = tile;
      }
    }
  s.MapEdited();
}

void mRndWoods_Click(MapView& s) {
  ResetStoreProblem(s);
  ScatterWoods(s);
  RedrawBuffers(s);
}

}  // namespace kv

// The bulk passes: their areas, snapshots and frame, the map rebuild from
// terrain, road sides and their pruning, the memorise passes and the woods.
#include <array>
#include <filesystem>

#include <gtest/gtest.h>

#include "autotile/engine.h"
#include "autotile/passes.h"
#include "autotile_fixture.h"

using namespace kv;
using namespace kvtest;
namespace fs = std::filesystem;

namespace {

// A 20 x 20 map of rough ground (terrain 4) whose view shows columns and rows
// 2..6.
struct PassApp : AutoApp {
  PassApp() {
    Fill(19, 19, tl::Rough);
    s->view.ViewX = 2;
    s->view.ViewY = 2;
    s->view.ViewCols = 4;
    s->view.ViewRows = 4;
    fs::remove(App("autosave.map"));
  }
  // A list of terrain 4 for every outline, each giving Rough2.
  void AllRoughLists() {
    for (int m = 0; m < 64; ++m) {
      std::array<bool, 6> on{};
      for (int i = 0; i < 6; ++i) on[i] = (m >> i) & 1;
      Write("mapedit/t04/" + SideDigits(on) + ".txt", "019\r\n");
    }
  }
  int Count(int16_t tile) {
    int n = 0;
    for (int x = 0; x <= d().MapMaxX; ++x)
      for (int y = 0; y <= d().MapMaxY; ++y) n += d().HexTile(x, y) == tile;
    return n;
  }
};

}  // namespace

TEST(RedrawPasses, TerrainPassAreaSnapshotAndFrame) {
  PassApp a;
  a.AllRoughLists();
  a.Put(3, 3, tl::Open);             // terrain 1: left alone
  a.d().HexTile(4, 4) = tl::Forest;  // a rough hex under a forest tile
  a.Put(5, 5, tl::Road);
  a.d().HexTile(5, 5) = tl::Forest;  // terrain 1 with a tile of another terrain: still left alone
  autoredrawterrain_Click(*a.s);
  EXPECT_TRUE(a.Exists("autosave.map"));  // always a snapshot
  EXPECT_EQ(a.d().HexTile(2, 2), tl::Rough2);
  EXPECT_EQ(a.d().HexTile(6, 6), tl::Rough2);
  EXPECT_EQ(a.d().HexTile(7, 6), tl::Rough);  // outside the view
  EXPECT_EQ(a.d().HexTile(2, 1), tl::Rough);
  EXPECT_EQ(a.d().HexTile(3, 3), tl::Open);
  EXPECT_EQ(a.d().HexTile(5, 5), tl::Forest);
  // The pen is the hex's own tile: a forest tile asks the forest lists, which are empty.
  EXPECT_EQ(a.d().HexTile(4, 4), tl::Forest);
  EXPECT_EQ(a.Count(tl::Rough2), 25 - 3);
  EXPECT_EQ(a.p().AutoTile, -1);
  EXPECT_EQ(a.s->forms.MousePointer, 1);
  EXPECT_EQ(a.s->forms.Label3Caption, "6,7");  // last column, row counter one past the area
  // The whole map with DefaultAreaAll.
  a.p().DefaultAreaAll = -1;
  autoredrawterrain_Click(*a.s);
  EXPECT_EQ(a.Count(tl::Rough2), 400 - 3);
  EXPECT_EQ(a.s->forms.Label3Caption, "19,20");
}

TEST(RedrawPasses, RoadPassSnapshotsOnlyTheWholeMapAndTouchesOnlyOpenGround) {
  PassApp a;
  a.Fill(19, 19, tl::Open);
  for (int y = 2; y <= 8; ++y) a.Put(3, y, tl::Road);
  a.Put(3, 5, tl::RoughRoad);  // a road on other terrain keeps its picture
  a.Write("mapedit/roadpatterns/1-0-0-1-0-0.txt", "3-0-0-3-0-0,3\r\n22-0-0-3-0-0,3\r\n3-0-0-22-0-0,3\r\n-1\r\n");
  a.Write("mapedit/roadpatterns/0-0-0-1-0-0.txt", "0-0-0-3-0-0,2\r\n-1\r\n");  // a bad lesson: open tile
  a.Write("mapedit/roadpatterns/1-0-0-0-0-0.txt", "3-0-0-0-0-0,3\r\n-1\r\n");
  autoredrawroads_Click(*a.s);
  EXPECT_FALSE(a.Exists("autosave.map"));     // screen area: no snapshot
  EXPECT_EQ(a.d().HexTile(3, 2), tl::Open2);  // top end of the road, in the view
  EXPECT_EQ(a.d().HexTile(3, 5), tl::RoughRoad);
  EXPECT_EQ(a.d().HexTile(3, 8), tl::Road);  // below the view
  a.p().DefaultAreaAll = -1;
  autoredrawroads_Click(*a.s);
  EXPECT_TRUE(a.Exists("autosave.map"));
  EXPECT_EQ(a.p().AutoTile, -1);
}

TEST(RedrawPasses, ForestsAndMountains) {
  PassApp a;
  a.Fill(19, 19, tl::Forest);
  a.Write("mapedit/t08/123456.txt", "009\r\n");
  a.p().CurTile = tl::Rough;
  mAutoForest_Click(*a.s);
  EXPECT_EQ(a.p().CurTile, tl::Forest);  // first tile of terrain 8
  EXPECT_EQ(a.Count(tl::Forest2), 25);
  EXPECT_FALSE(a.Exists("autosave.map"));

  // Mountains: the first pass writes key 94 across side 6, which the second
  // pass then uses; the edge and other terrains are skipped.
  a.Fill(9, 9, tl::Mount);
  a.p().DefaultAreaAll = -1;
  a.d().HexTile(4, 4) = 86;
  a.Put(4, 5, tl::Open);  // side 2 of (4, 4): not terrain 3
  a.d().HexTile(0, 0) = 86;
  mAutoMoutains_Click(*a.s);
  EXPECT_EQ(a.d().HexTile(5, 5), 104);  // side 1
  EXPECT_EQ(a.d().HexTile(4, 5), tl::Open);
  EXPECT_EQ(a.d().HexTile(3, 5), 90);  // side 3
  EXPECT_EQ(a.d().HexTile(3, 4), 75);  // side 4
  EXPECT_EQ(a.d().HexTile(4, 3), 76);  // side 5
  EXPECT_EQ(a.d().HexTile(5, 4), 94);  // side 6, a key of the second pass
  // Second pass around (5, 4), odd column: side 3 is (4, 4), side 2 is (5, 5).
  EXPECT_EQ(a.d().HexTile(4, 4), 86);
  EXPECT_EQ(a.d().HexTile(5, 5), 104);
  EXPECT_EQ(a.d().HexTile(6, 4), 192);  // side 1
  EXPECT_EQ(a.d().HexTile(6, 3), 105);  // side 6
  // (0, 0): sides 1, 2, 6 only; nothing beyond the edge.
  EXPECT_EQ(a.d().HexTile(1, 1), 104);
  EXPECT_EQ(a.d().HexTile(0, 1), 115);
  EXPECT_EQ(a.d().HexTile(1, 0), 94);
}

TEST(MapRebuild, UpdateTilesFollowsTheTerrain) {
  PassApp a;
  a.Fill(9, 9, tl::Open);
  fs::remove(a.App("autosave.map"));
  a.d().HexTile(1, 1) = 544;   // past TileMax
  a.d().HexInfo(2, 2, 0) = 4;  // rough terrain under an open tile, no sides
  a.d().HexInfo(3, 3, 0) = 4;  // ... with a road side
  a.d().HexInfo(3, 3, 2) = 1;
  a.d().HexInfo(4, 4, 0) = 5;  // city terrain with a side: the road test is skipped
  a.d().HexInfo(4, 4, 1) = 1;
  a.d().HexInfo(5, 5, 0) = 9;  // a terrain without tiles: left as it was
  mMapRebuild_Click(*a.s);
  EXPECT_TRUE(a.Exists("autosave.map"));
  EXPECT_EQ(a.d().HexTile(1, 1), tl::Open);  // first plain tile of terrain 1; no random tiles listed
  EXPECT_EQ(a.d().HexTile(2, 2), tl::Rough);
  EXPECT_EQ(a.d().HexTile(3, 3), tl::RoughRoad);
  EXPECT_EQ(a.d().HexTile(4, 4), tl::City);
  EXPECT_EQ(a.d().HexTile(5, 5), tl::Open);
  EXPECT_EQ(a.d().HexTile(6, 6), tl::Open);
  // The reverse pass trusts the tiles.
  fs::remove(a.App("autosave.map"));
  mRedoTerrain_Click(*a.s);
  EXPECT_TRUE(a.Exists("autosave.map"));
  EXPECT_EQ(a.d().HexInfo(5, 5, 0), 1);
}

TEST(RoadSides, ConnectRoadsAndPruning) {
  PassApp a;
  Session& s = *a.s;
  a.Fill(9, 9, tl::Open);
  // A city hex: all six whatever its tile; a tile without a row: none; railroad cleared.
  a.d().HexInfo(2, 2, 0) = 5;
  ConnectRoads(s, 2, 2);
  for (int k = 1; k <= 6; ++k) EXPECT_EQ(a.d().HexInfo(2, 2, k), 1);
  a.d().HexInfo(3, 3, 4) = 2;
  ConnectRoads(s, 3, 3);
  for (int k = 1; k <= 6; ++k) EXPECT_EQ(a.d().HexInfo(3, 3, k), 0);
  a.Put(4, 4, tl::Road);  // sides 5 and 2
  ConnectRoads(s, 4, 4);
  EXPECT_EQ(a.d().HexInfo(4, 4, 5), 1);
  EXPECT_EQ(a.d().HexInfo(4, 4, 2), 1);
  EXPECT_EQ(a.d().HexInfo(4, 4, 1), 0);

  // Pruning: (4, 4) and (4, 5) point at each other; (4, 3) is open ground, so
  // side 5 of (4, 4) goes. (7, 0) runs off the top of the map and keeps it.
  a.Put(4, 5, tl::Road);
  a.Put(7, 0, tl::Road);
  a.Put(7, 1, tl::Road);
  a.Put(7, 2, tl::Road);
  fs::remove(a.App("autosave.map"));
  doroads_Click(s);
  EXPECT_TRUE(a.Exists("autosave.map"));
  EXPECT_EQ(a.d().HexInfo(4, 4, 2), 1);
  EXPECT_EQ(a.d().HexInfo(4, 5, 5), 1);
  EXPECT_EQ(a.d().HexInfo(4, 4, 5), 0);
  EXPECT_EQ(a.d().HexInfo(4, 5, 2), 0);
  EXPECT_EQ(a.d().HexInfo(7, 0, 5), 1);  // off the map
  EXPECT_EQ(a.d().HexInfo(7, 0, 2), 1);
  EXPECT_EQ(a.d().HexInfo(7, 2, 2), 0);
  // The inner sides of a straight road meet and stay.
  EXPECT_EQ(a.d().HexInfo(7, 1, 2), 1);
  EXPECT_EQ(a.d().HexInfo(7, 2, 5), 1);
}

TEST(Memorise, RoadsRiversMountainsAndForests) {
  PassApp a;
  Session& s = *a.s;
  a.Fill(9, 9, tl::Open);
  a.Put(3, 3, tl::City);  // no road around: nothing stored (gate)
  a.Put(6, 4, tl::Road);
  a.Put(6, 5, tl::Road);
  MemorizeRoads_Click(s);
  EXPECT_EQ(a.s->forms.Label3Caption, "9 / 9");
  EXPECT_FALSE(a.Exists("mapedit/roadpatterns/0-0-0-0-0-0.txt"));
  EXPECT_EQ(a.Text("mapedit/roadpatterns/0-0-0-1-0-0.txt"), "0-0-0-3-0-0,3\r\n-1\r\n");
  EXPECT_EQ(a.Text("mapedit/roadpatterns/1-0-0-0-0-0.txt"), "3-0-0-0-0-0,3\r\n-1\r\n");
  EXPECT_EQ(a.p().CurTile, tl::Road);  // the last hex learned

  a.Put(2, 6, tl::River);
  a.Put(5, 7, tl::Mount);
  a.p().CurTile = tl::Forest;  // mountains learn under the pen's terrain
  mMountains_Click(s);
  EXPECT_EQ(a.Text("mapedit/riverpatterns/0-0-0-0-0-0.txt"), "0-0-0-0-0-0,4\r\n-1\r\n");
  EXPECT_EQ(a.Text("mapedit/tilep08/000000.txt"), "0-0-0-0-0-0,15\r\n-1\r\n");
  EXPECT_EQ(a.p().CurTile, tl::Forest);
  EXPECT_EQ(a.s->forms.MousePointer, 1);

  // F8: the forest hexes of the view (2..6, 2..6) only.
  a.Put(3, 3, tl::Forest2);
  a.Put(8, 8, tl::Forest2);
  a.Put(4, 3, tl::Forest);
  LearnVisibleForests(s);
  EXPECT_EQ(a.Text("mapedit/tilep08/000000.txt"), "0-0-0-0-0-0,15\r\n-1\r\n");  // (8, 8) not learned
  // (3, 3) odd: (4, 3) is ring position 3; (4, 3) even: (3, 3) is ring position 6.
  EXPECT_EQ(a.Text("mapedit/tilep08/001000.txt"), "0-0-8-0-0-0,9\r\n-1\r\n");
  EXPECT_EQ(a.Text("mapedit/tilep08/000001.txt"), "0-0-0-0-0-9,8\r\n-1\r\n");
}

TEST(ScatteredWoods, PlantsOnlyOnPlainOpenGround) {
  PassApp a;
  Session& s = *a.s;
  a.Fill(19, 19, tl::Open);
  for (int y = 0; y <= 19; ++y) a.Put(10, y, tl::Road);
  a.Write("mapedit/t08/000000.txt", "009\r\n");
  a.p().CurTile = tl::Rough;
  mRndWoods_Click(s);
  int planted = 0;
  for (int x = 0; x <= 19; ++x)
    for (int y = 0; y <= 19; ++y)
      if (a.d().HexTile(x, y) == tl::Forest2) {
        ++planted;
        EXPECT_EQ(a.d().HexInfo(x, y, 0), 8);
        EXPECT_NE(x, 10);
      }
  EXPECT_GT(planted, 0);
  EXPECT_LT(planted, 60);
  EXPECT_EQ(a.p().CurTile, tl::Forest2);
  // A map without open ground changes nothing.
  a.Fill(9, 9, tl::Rough);
  ScatterWoods(s);
  EXPECT_EQ(a.Count(tl::Rough), 100);
}

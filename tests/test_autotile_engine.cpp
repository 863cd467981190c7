// The tile selection engine branch by branch with its fall-backs, the
// learners with their own edges and drop rules, and painting with the engine.
#include <gtest/gtest.h>

#include "autotile/engine.h"
#include "autotile/stores.h"
#include "autotile_fixture.h"
#include "editing/editing.h"

using namespace kv;
using namespace kvtest;

namespace {

int16_t Auto(AutoApp& a, int16_t pen, int x, int y) {
  a.p().CurTile = pen;
  int16_t r = -1;
  AutoDrawTile(*a.s, static_cast<int16_t>(x), static_cast<int16_t>(y), r);
  return r;
}

}  // namespace

TEST(AutoDrawTile, SeaTakesTheEdgeAndColumnZeroAsSea) {
  AutoApp a;
  // Hex (0, 4), even column: the left neighbours lie off the map and the ones
  // above and below in column 0, all of which count as sea; the right ones are land.
  a.Write("mapedit/t00/100456.txt", "014\r\n");
  EXPECT_EQ(Auto(a, tl::Sea, 0, 4), tl::Sea2);
  // Hex (1, 4), odd column: ring positions 5 and 6 lie in column 0 and match
  // whatever their terrain; the rest is open ground.
  a.Write("mapedit/t00/000056.txt", "000\r\n");
  EXPECT_EQ(Auto(a, tl::Sea, 1, 4), tl::Sea);
  // Inside the map, ports and sea match.
  a.PutRing(4, 4, 3, tl::Port);
  a.PutRing(4, 4, 4, tl::Sea);
  a.Write("mapedit/t00/003400.txt", "014\r\n");
  EXPECT_EQ(Auto(a, tl::Sea, 4, 4), tl::Sea2);
  // Row 0 counts as sea too: hex (4, 1) sees it at ring position 1.
  a.Write("mapedit/t00/100000.txt", "014\r\n");
  EXPECT_EQ(Auto(a, tl::Sea, 4, 1), tl::Sea2);
  // No list: the tile argument is untouched, and no tile store is asked.
  EXPECT_EQ(Auto(a, tl::Sea, 6, 6), -1);
  EXPECT_FALSE(a.Exists("mapedit/tilep00"));
}

TEST(AutoDrawTile, CityPortAndTheirPartners) {
  AutoApp a;
  for (int p = 1; p <= 6; ++p) a.PutRing(4, 4, p, tl::Port);
  a.Write("mapedit/t05/123456.txt", "020\r\n");
  EXPECT_EQ(Auto(a, tl::City, 4, 4), tl::City2);
  // A port pen counts sea and ports; the edge is no match for either.
  a.PutRing(4, 4, 2, tl::Sea);
  a.PutRing(4, 4, 3, tl::City);
  a.Write("mapedit/t14/120456.txt", "021\r\n");
  EXPECT_EQ(Auto(a, tl::Port, 4, 4), tl::Port2);
  a.Write("mapedit/t05/000000.txt", "006\r\n");
  EXPECT_EQ(Auto(a, tl::City, 0, 0), tl::City);  // everything off the map, no match
  EXPECT_EQ(Auto(a, tl::City, 8, 8), tl::City);
  EXPECT_EQ(Auto(a, tl::Port, 8, 8), -1);  // no list: nothing, no tile store
  EXPECT_FALSE(a.Exists("mapedit/tilep14"));
}

TEST(AutoDrawTile, ForestGroupListThenTileStore) {
  AutoApp a;
  a.PutRing(4, 4, 1, tl::T10);
  a.PutRing(4, 4, 4, tl::T12);
  a.Write("mapedit/t08/100400.txt", "009\r\n");
  EXPECT_EQ(Auto(a, tl::Forest, 4, 4), tl::Forest2);
  // No list for this outline and nothing learned: -1, and the search leaves an
  // empty pattern file, named by the neighbours' tiles of the pen's terrain.
  a.Put(5, 5, tl::Forest);  // ring position 3 of (4, 4)
  EXPECT_EQ(Auto(a, tl::Forest, 4, 4), -1);
  EXPECT_EQ(a.Text("mapedit/tilep08/001000.txt"), "\"-1\"\r\n");
  // A learned pair answers; one of another terrain does not.
  a.Write("mapedit/tilep08/001000.txt", "0-0-8-0-0-0,13\r\n-1\r\n");
  EXPECT_EQ(Auto(a, tl::Forest, 4, 4), tl::ForestRoad);
  a.Write("mapedit/tilep08/001000.txt", "0-0-8-0-0-0,18\r\n-1\r\n");
  EXPECT_EQ(Auto(a, tl::Forest, 4, 4), -1);
  a.Write("mapedit/tilep08/001000.txt", "0-0-8-0-0-0,300\r\n-1\r\n");
  EXPECT_EQ(Auto(a, tl::Forest, 4, 4), -1);
}

TEST(AutoDrawTile, GeneralListStaleListAndTileStore) {
  AutoApp a;
  a.PutRing(4, 4, 2, tl::Rough);
  a.Write("mapedit/t04/020000.txt", "019\r\n");
  EXPECT_EQ(Auto(a, tl::Rough, 4, 4), tl::Rough2);
  // A record of another terrain: the list goes, -1, and the tile store is not asked.
  a.Write("mapedit/t04/020000.txt", "001\r\n");
  EXPECT_EQ(Auto(a, tl::Rough, 4, 4), -1);
  EXPECT_FALSE(a.Exists("mapedit/t04/020000.txt"));
  EXPECT_FALSE(a.Exists("mapedit/tilep04"));
  // Without a list the tile store answers; a neighbour matches by terrain for
  // the list and by its tile's terrain for the store.
  a.Write("mapedit/tilep04/010000.txt", "0-18-0-0-0-0,22\r\n-1\r\n");
  EXPECT_EQ(Auto(a, tl::Rough, 4, 4), tl::RoughRoad);
  EXPECT_TRUE(a.Exists("mapedit/t04"));  // made on the way
}

TEST(AutoDrawTile, RiversNeverPaintBridgesAndLeaveRoadHexesAlone) {
  AutoApp a;
  a.PutRing(4, 4, 1, tl::River);
  a.PutRing(4, 4, 4, tl::River11);
  a.Write("mapedit/riverpatterns/1-0-0-1-0-0.txt", "4-0-0-17-0-0,17\r\n-1\r\n");
  EXPECT_EQ(Auto(a, tl::River, 4, 4), tl::River11);
  a.Write("mapedit/riverpatterns/1-0-0-1-0-0.txt", "4-0-0-17-0-0,5\r\n-1\r\n");
  EXPECT_EQ(Auto(a, tl::River, 4, 4), -1);  // a bridge is refused
  // A river pen on a hex that carries a road tile: nothing happens.
  a.Write("mapedit/riverpatterns/1-0-0-1-0-0.txt", "4-0-0-17-0-0,17\r\n-1\r\n");
  a.Put(4, 4, tl::Road);
  EXPECT_EQ(Auto(a, tl::River, 4, 4), -1);
  // A new outline leaves an empty file behind.
  EXPECT_EQ(Auto(a, tl::River, 8, 8), -1);
  EXPECT_EQ(a.Text("mapedit/riverpatterns/0-0-0-0-0-0.txt"), "\"-1\"\r\n");
}

TEST(CheckRoads, RoadStoreByThePresentTerrainOfTheHex) {
  AutoApp a;
  Session& s = *a.s;
  int16_t r = 5;
  CheckRoads(s, 4, 4, r);
  EXPECT_EQ(r, -1);  // no road around and no file: none is made
  EXPECT_FALSE(a.Exists("mapedit/roadpatterns/0-0-0-0-0-0.txt"));
  a.PutRing(4, 4, 1, tl::RoadEnd);  // terrain 6 connects
  a.PutRing(4, 4, 4, tl::Road);     // a road tile connects
  a.Put(4, 4, tl::Forest);
  a.Write("mapedit/roadpatterns/1-0-0-1-0-0.txt", "12-0-0-3-0-0,3\r\n12-0-0-3-0-0,13\r\n-1\r\n");
  CheckRoads(s, 4, 4, r);
  EXPECT_EQ(r, tl::ForestRoad);  // the forest pair, though it stands second
  a.Put(4, 4, tl::Open);
  CheckRoads(s, 4, 4, r);
  EXPECT_EQ(r, tl::Road);
  a.Put(4, 4, tl::Rough);
  CheckRoads(s, 4, 4, r);
  EXPECT_EQ(r, -1);
}

TEST(CheckRoads, BridgesOnRiverHexesFallBackToTheFirstBridgeTile) {
  {
    AutoApp a;
    Session& s = *a.s;
    a.Put(4, 4, tl::River);
    a.PutRing(4, 4, 1, tl::RoadEnd);  // terrain 6 does not connect for bridges
    a.PutRing(4, 4, 2, tl::River11);
    a.Write("mapedit/bridgepatterns/0-1-0-0-0-0.txt", "0-17-0-0-0-0,5\r\n-1\r\n");
    int16_t r = -1;
    CheckRoads(s, 4, 4, r);
    EXPECT_EQ(r, tl::Bridge);
    a.PutRing(4, 4, 2, tl::Open);
    CheckRoads(s, 4, 4, r);
    EXPECT_EQ(r, tl::Bridge);  // nothing stored: first road tile of terrain 2
    EXPECT_EQ(a.Text("mapedit/bridgepatterns/0-0-0-0-0-0.txt"), "\"-1\"\r\n");
  }
  AutoApp none(false);
  none.Put(4, 4, tl::River);
  int16_t r = 3;
  CheckBridges(*none.s, 4, 4, r);
  EXPECT_EQ(r, -1);
}

TEST(Learning, EdgesDifferBetweenLearnersAndReaders) {
  AutoApp a;
  Session& s = *a.s;
  // Hex (1, 4), odd column: ring positions 5 and 6 lie in column 0.
  a.Fill(9, 9, tl::Mount);
  a.p().CurTile = tl::Mount;
  SavePattern(s, 1, 4, tl::Mount2);
  // Learned with "0" where column 0 stands ...
  EXPECT_EQ(a.Text("mapedit/tilep03/111100.txt"), "15-15-15-15-0-0,16\r\n-1\r\n");
  // ... read back with column 0 on the map: another key, another file.
  int16_t r = -1;
  TilePattern(s, 1, 4, r);
  EXPECT_EQ(r, -1);
  EXPECT_EQ(a.Text("mapedit/tilep03/111111.txt"), "\"-1\"\r\n");
  // Row 0 likewise: hex (4, 1), even column, ring position 1 is (4, 0).
  SavePattern(s, 4, 1, tl::Mount2);
  EXPECT_EQ(a.Text("mapedit/tilep03/011111.txt"), "0-15-15-15-15-15,16\r\n-1\r\n");
  // The road learner counts column 0.
  a.Fill(9, 9, tl::Open);
  a.Put(0, 4, tl::Road);
  a.p().CurTile = tl::Road;
  NewRoadPattern(s, 1, 4, tl::Road);
  EXPECT_EQ(a.Text("mapedit/roadpatterns/0-0-0-0-1-0.txt"), "0-0-0-0-3-0,3\r\n-1\r\n");
  r = -1;
  CheckRoads(s, 1, 4, r);
  EXPECT_EQ(r, tl::Road);
}

TEST(Learning, GatesDropsAndTheStoresEachLearnerWrites) {
  AutoApp a;
  Session& s = *a.s;
  // A road with no road around teaches nothing; a city with none neither.
  a.p().CurTile = tl::Road;
  NewRoadPattern(s, 4, 4, tl::Road);
  EXPECT_FALSE(a.Exists("mapedit/roadpatterns/0-0-0-0-0-0.txt"));
  // Painting a terrain 1 road with AutoTile off teaches the road store only.
  a.PutRing(4, 4, 1, tl::City);
  a.p().AutoTile = 0;
  a.p().CurTile = tl::Road;
  SetHex(s, 4, 4);
  EXPECT_EQ(a.Text("mapedit/roadpatterns/1-0-0-0-0-0.txt"), "6-0-0-0-0-0,3\r\n-1\r\n");
  EXPECT_FALSE(a.Exists("mapedit/tilep01"));
  // A plain open tile writes nothing at all.
  a.p().CurTile = tl::Open2;
  SetHex(s, 6, 6);
  EXPECT_FALSE(a.Exists("mapedit/tilep01"));
  // A neighbour with a road side connects for the road learner.
  a.d().HexInfo(2, 2, 3) = 1;
  NewRoadPattern(s, 2, 3, tl::Road);
  EXPECT_TRUE(a.Exists("mapedit/roadpatterns/1-0-0-0-0-0.txt"));
  EXPECT_EQ(a.Text("mapedit/roadpatterns/1-0-0-0-0-0.txt"), "6-0-0-0-0-0,3\r\n1-0-0-0-0-0,3\r\n-1\r\n");

  // A bridge pen teaches the bridge store twice, under two rules.
  a.Fill(9, 9, tl::Open);
  a.Put(4, 4, tl::River);
  a.PutRing(4, 4, 1, tl::River);  // river family: connected for both
  a.PutRing(4, 4, 4, tl::Road);
  a.d().HexInfo(5, 4, 0) = 11;  // ring position 2 of (4, 4): river terrain under an open tile
  a.p().CurTile = tl::Bridge;
  a.p().AutoTile = 0;
  SetHex(s, 4, 4);
  // Road rule with a river pen: the terrain-11 hex counts; seed "-1".
  EXPECT_EQ(a.Text("mapedit/bridgepatterns/1-1-0-1-0-0.txt"), "4-1-0-3-0-0,5\r\n-1\r\n");
  // Bridge rule: tiles only. The seed's zero pair names tile 0, of sea, not
  // the hex's terrain (2), so the update drops it.
  EXPECT_EQ(a.Text("mapedit/bridgepatterns/1-0-0-1-0-0.txt"), "4-0-0-3-0-0,5\r\n-1\r\n");

  // River learning drops pairs past TileMax and of another terrain than the hex's.
  a.Write("mapedit/riverpatterns/0-0-0-0-0-0.txt", "1-1-1-1-1-1,4\r\n2-2-2-2-2-2,300\r\n3-3-3-3-3-3,1\r\n-1\r\n");
  a.Fill(9, 9, tl::Open);
  a.Put(4, 4, tl::River);
  NewRiverPattern(s, 4, 4, tl::River);
  EXPECT_EQ(a.Text("mapedit/riverpatterns/0-0-0-0-0-0.txt"), "1-1-1-1-1-1,4\r\n0-0-0-0-0-0,4\r\n-1\r\n");
  // Learning the same key again leaves the new tile as the only answer.
  NewRiverPattern(s, 4, 4, tl::River11);
  EXPECT_EQ(a.Text("mapedit/riverpatterns/0-0-0-0-0-0.txt"), "1-1-1-1-1-1,4\r\n0-0-0-0-0-0,17\r\n-1\r\n");
  // The tile store keeps pairs of any tile; it drops only the same key.
  a.Write("mapedit/tilep04/000000.txt", "1-0-0-0-0-0,300\r\n-1\r\n");
  a.p().CurTile = tl::Rough;
  NewPattern(s, 4, 4, tl::Rough2);
  EXPECT_EQ(a.Text("mapedit/tilep04/000000.txt"), "1-0-0-0-0-0,300\r\n0-0-0-0-0-0,19\r\n-1\r\n");
}

TEST(Painting, AutoTileResultOfAnotherTerrainKeepsThePen) {
  AutoApp a;
  Session& s = *a.s;
  // A clear-ground road pen over a forest hex takes the forest road the store
  // knows, the hex stays forest, and the pen comes back.
  a.Put(4, 4, tl::Forest);
  a.PutRing(4, 4, 1, tl::Road);
  a.Write("mapedit/roadpatterns/1-0-0-0-0-0.txt", "3-0-0-0-0-0,3\r\n3-0-0-0-0-0,13\r\n-1\r\n");
  a.p().AutoTile = -1;
  a.p().CurTile = tl::Road;
  SetHex(s, 4, 4);
  EXPECT_EQ(a.d().HexTile(4, 4), tl::ForestRoad);
  EXPECT_EQ(a.d().HexInfo(4, 4, 0), 8);
  EXPECT_EQ(a.p().CurTile, tl::Road);
  // Sides from the forest road's record: sides 5 and 2.
  EXPECT_EQ(a.d().HexInfo(4, 4, 5), 1);
  EXPECT_EQ(a.d().HexInfo(4, 4, 2), 1);
  EXPECT_EQ(a.d().HexInfo(4, 4, 1), 0);
  // A result of the pen's own terrain becomes the pen.
  a.PutRing(6, 6, 2, tl::Rough);
  a.Write("mapedit/t04/020000.txt", "019\r\n");
  a.p().CurTile = tl::Rough;
  SetHex(s, 6, 6);
  EXPECT_EQ(a.d().HexTile(6, 6), tl::Rough2);
  EXPECT_EQ(a.p().CurTile, tl::Rough2);
}

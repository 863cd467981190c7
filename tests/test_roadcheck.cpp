// Road and control faults, data verification and bulk control.
#include <gtest/gtest.h>

#include "analysis/roadcheck.h"
#include "platform/fileio.h"
#include "session.h"
#include "testutil.h"

using namespace kv;

namespace {

// Tiles of the test table: 0 open ground, 1 road running up and down
// (sides 2 and 5), 2 road ending upward (side 5 only), 3 road ending
// downward (side 2 only), 4 city (terrain 5, no road tile), 5 forest,
// 6 sea, 7 port (terrain 14), 8 road end (terrain 6).
struct RoadMap {
  Session s{"/nonexistent"};
  HeadlessUi& ui = dynamic_cast<HeadlessUi&>(s.ui());
  RoadMap(int maxX, int maxY) {
    RefData& r = s.ref;
    r.TileMax = 8;
    r.TileType = {1, 1, 1, 1, 5, 8, 0, 14, 6};
    r.TileRoad = {0, 1, 1, 1, 0, 0, 0, 0, 0};
    r.TerrainMax = 14;
    const int rows[3][7] = {{1, 0, 1, 0, 0, 1, 0}, {2, 0, 0, 0, 0, 1, 0}, {3, 0, 1, 0, 0, 0, 0}};
    r.RoadTableData.assign(7 * 4, 0);
    r.RoadTable(0, 0) = 3;
    for (int i = 0; i < 3; ++i)
      for (int k = 0; k < 7; ++k) r.RoadTable(k, i + 1) = static_cast<int16_t>(rows[i][k]);
    s.doc.MapMaxX = static_cast<int16_t>(maxX);
    s.doc.MapMaxY = static_cast<int16_t>(maxY);
    s.doc.AllocateAll();
  }
  // Tile, terrain and road sides as the road rebuild gives them.
  void Put(int x, int y, int tile, int owner = 0) {
    Document& d = s.doc;
    d.HexTile(x, y) = static_cast<int16_t>(tile);
    d.HexInfo(x, y, 0) = s.ref.TileType[tile];
    for (int k = 1; k <= 6; ++k) d.HexInfo(x, y, k) = 0;
    for (int r = 1; r <= s.ref.RoadTable(0, 0); ++r)
      if (s.ref.RoadTable(0, r) == tile)
        for (int k = 1; k <= 6; ++k) d.HexInfo(x, y, k) = static_cast<uint8_t>(s.ref.RoadTable(k, r));
    if (d.HexInfo(x, y, 0) == 5 || d.HexInfo(x, y, 0) == 6 || d.HexInfo(x, y, 0) == 14)
      for (int k = 1; k <= 6; ++k) d.HexInfo(x, y, k) = 1;
    d.HexCtl(x, y, 0) = static_cast<uint8_t>(owner);
  }
  // An owned road down column x from row 0 to the bottom edge.
  void Road(int x) {
    for (int y = 0; y <= s.doc.MapMaxY; ++y) Put(x, y, 1, 1);
  }
};

}  // namespace

TEST(RoadCheck, CountsRoadTilesNotCities) {
  RoadMap m(9, 9);
  m.Put(2, 2, 1);
  m.Put(3, 3, 2);
  m.Put(4, 4, 4);               // a city, whose tile carries no road
  m.s.doc.HexTile(5, 5) = 999;  // out of the table: no road
  EXPECT_EQ(CountRoadHexes(m.s), 2);
  mCountRoad_Click(m.s);
  ASSERT_EQ(m.ui.messages.size(), 1u);
  EXPECT_EQ(m.ui.messages[0], "2 road hexes on map.");
  EXPECT_EQ(m.s.forms.MousePointer, vbArrow);
}

TEST(RoadCheck, DeadEndsInsideTheMapOnlyAndControlRules) {
  RoadMap m(9, 9);
  m.Road(4);  // whole and owned: no fault anywhere
  EXPECT_TRUE(FindAllFaults(m.s).empty());

  // A gap at row 5: the hex above loses its lower side and ends there, the
  // one below loses its upper side.
  m.Put(4, 5, 0);
  auto f = FindAllFaults(m.s);
  ASSERT_EQ(f.size(), 2u);
  EXPECT_EQ(f[0], (HexFault{4, 4, FaultKind::DeadEnd}));
  EXPECT_EQ(f[1], (HexFault{4, 6, FaultKind::DeadEnd}));
  EXPECT_EQ(m.s.doc.HexInfo(4, 4, 2), 0);  // pruned on the way
  EXPECT_EQ(m.s.doc.HexInfo(4, 4, 5), 1);

  // Road ends in the two outer columns and rows are no faults.
  RoadMap e(9, 9);
  e.Put(1, 5, 2, 1);  // column 1, one open side
  e.Put(5, 9, 2, 1);  // last row
  e.Put(5, 8, 3, 1);  // meets it from above, itself inside: one side, fault
  e.Put(9, 4, 3, 1);  // last column
  e.Put(6, 1, 3, 1);  // row 1
  f = FindAllFaults(e.s);
  ASSERT_EQ(f.size(), 1u);
  EXPECT_EQ(f[0], (HexFault{5, 8, FaultKind::DeadEnd}));

  // A road tile without owner is a fault although its road is whole; so is
  // a city, a road end or a port without one, and a forest with one.
  RoadMap c(9, 9);
  c.Road(3);
  c.s.doc.HexCtl(3, 6, 0) = 0;
  c.Put(6, 2, 4);     // city
  c.Put(6, 4, 8, 2);  // road end, owned: fine
  c.Put(7, 7, 7);     // port
  c.Put(8, 3, 5, 1);  // forest with an owner
  c.Put(8, 5, 6);     // sea, no owner: fine
  f = FindAllFaults(c.s);
  ASSERT_EQ(f.size(), 4u);
  EXPECT_EQ(f[0], (HexFault{3, 6, FaultKind::NoOwner}));
  EXPECT_EQ(f[1], (HexFault{6, 2, FaultKind::NoOwner}));
  EXPECT_EQ(f[2], (HexFault{7, 7, FaultKind::NoOwner}));
  EXPECT_EQ(f[3], (HexFault{8, 3, FaultKind::OwnerOnPlainHex}));
  // A dead end is reported before a missing owner on the same hex.
  c.Put(5, 5, 2);
  f = FindAllFaults(c.s);
  EXPECT_EQ(f[1], (HexFault{5, 5, FaultKind::DeadEnd}));
}

TEST(RoadCheck, NextFaultSearchStartsAtTheGivenColumnAndStopsThere) {
  RoadMap m(12, 9);
  m.Road(2);
  m.Road(8);
  m.Put(2, 6, 0);      // gap: dead ends at (2, 5) and (2, 7)
  m.Put(8, 3, 0);      // gap: dead ends at (8, 2) and (8, 4)
  m.Put(10, 6, 5, 3);  // owned forest
  int16_t x = -1, y = -1;
  ASSERT_TRUE(FindNextFault(m.s, 0, x, y));
  EXPECT_EQ(x, 2);
  EXPECT_EQ(y, 5);
  // Only hexes up to the fault were pruned: column 8 keeps its sides.
  EXPECT_EQ(m.s.doc.HexInfo(8, 2, 2), 1);
  ASSERT_TRUE(FindNextFault(m.s, 3, x, y));
  EXPECT_EQ(x, 8);
  EXPECT_EQ(y, 2);
  ASSERT_TRUE(FindNextFault(m.s, 9, x, y));
  EXPECT_EQ(x, 10);
  EXPECT_EQ(y, 6);
  EXPECT_FALSE(FindNextFault(m.s, 11, x, y));
}

TEST(RoadCheck, VerifyRepairsAndCountsOnlyBadValues) {
  RoadMap m(5, 5);
  m.Put(1, 1, 1, 1);
  VerifyHexData_Click(m.s);  // a sound map: nothing at all
  EXPECT_TRUE(m.ui.messages.empty());

  Document& d = m.s.doc;
  d.HexCtl(2, 2, 1) = 3;  // an objective without owner: silent repair
  VerifyHexData_Click(m.s);
  EXPECT_TRUE(m.ui.messages.empty());
  EXPECT_EQ(d.HexCtl(2, 2, 1), 0);
  d.HexCtl(3, 3, 0) = 1;
  d.HexCtl(3, 3, 1) = 2;  // owned: kept

  d.HexTile(0, 0) = -1;
  d.HexTile(5, 5) = 9;      // TileMax is 8
  d.HexTile(4, 4) = 8;      // fine
  d.HexInfo(1, 4, 0) = 15;  // TerrainMax is 14
  d.HexInfo(2, 4, 0) = 14;
  EXPECT_EQ(VerifyHexData(m.s), 3);
  EXPECT_EQ(d.HexTile(0, 0), 0);
  EXPECT_EQ(d.HexTile(5, 5), 0);
  EXPECT_EQ(d.HexTile(4, 4), 8);
  EXPECT_EQ(d.HexInfo(1, 4, 0), 0);
  EXPECT_EQ(d.HexInfo(2, 4, 0), 14);
  EXPECT_EQ(d.HexCtl(3, 3, 1), 2);
  d.HexTile(1, 1) = 100;
  VerifyHexData_Click(m.s);
  ASSERT_EQ(m.ui.messages.size(), 1u);
  EXPECT_EQ(m.ui.messages[0], "Errors found");
}

TEST(RoadCheck, BulkAreaAndControlByTerrain) {
  RoadMap m(20, 15);
  Session& s = m.s;
  s.view.ViewX = 14;
  s.view.ViewY = 3;
  s.view.ViewCols = 10;
  s.view.ViewRows = 4;
  HexArea a = BulkArea(s);
  EXPECT_EQ(a.x1, 14);
  EXPECT_EQ(a.x2, 20);  // cut at the map's edge
  EXPECT_EQ(a.y1, 3);
  EXPECT_EQ(a.y2, 7);
  s.pens.DefaultAreaAll = -1;
  a = BulkArea(s);
  EXPECT_EQ(a.x1, 0);
  EXPECT_EQ(a.x2, 20);
  EXPECT_EQ(a.y2, 15);

  Document& d = s.doc;
  s.pens.CurNation = 2;
  s.pens.CurOrigNation = 3;
  s.pens.CurObjType = 4;
  m.Put(15, 4, 4);  // city
  m.Put(16, 4, 8);  // road end
  m.Put(17, 4, 7);  // port
  m.Put(18, 4, 1);  // road tile on open ground, an objective already
  d.HexCtl(18, 4, 1) = 5;
  d.HexOrigOwner(18, 4) = 6;
  m.Put(19, 4, 5, 1);  // forest, owned
  d.HexOrigOwner(19, 4) = 1;
  d.HexCtl(19, 4, 1) = 1;
  m.Put(2, 2, 5, 1);  // outside the screen area
  SetDefaultControl(s, HexArea{14, 20, 3, 7});
  auto ctl = [&](int x, int y) { return std::vector<int>{d.HexCtl(x, y, 0), d.HexOrigOwner(x, y), d.HexCtl(x, y, 1)}; };
  EXPECT_EQ(ctl(15, 4), (std::vector<int>{2, 3, 4}));
  EXPECT_EQ(ctl(16, 4), (std::vector<int>{2, 3, 1}));
  EXPECT_EQ(ctl(17, 4), (std::vector<int>{2, 3, 2}));
  EXPECT_EQ(ctl(18, 4), (std::vector<int>{2, 6, 5}));
  EXPECT_EQ(ctl(19, 4), (std::vector<int>{0, 0, 0}));
  EXPECT_EQ(ctl(2, 2), (std::vector<int>{1, 0, 0}));

  // Roads only: the nation on road tiles, nothing else.
  s.pens.CurNation = 7;
  m.Put(14, 6, 2, 0);
  m.Put(1, 1, 3, 0);
  SetRoadControl(s, HexArea{14, 20, 3, 7});
  EXPECT_EQ(ctl(18, 4), (std::vector<int>{7, 6, 5}));
  EXPECT_EQ(ctl(14, 6), (std::vector<int>{7, 0, 0}));
  EXPECT_EQ(ctl(15, 4), (std::vector<int>{2, 3, 4}));  // city: no road tile
  EXPECT_EQ(ctl(1, 1), (std::vector<int>{0, 0, 0}));   // outside
}

// The menu command: the search runs from the view's left column, and a fault
// brings the view round it, so the next search starts from that view.
TEST(RoadCheck, FaultFinderMovesTheViewAndSearchesFromItsLeftColumn) {
  RoadMap m(40, 30);
  Session& s = m.s;
  ViewState& v = s.view;
  v.ViewCols = 10;
  v.ViewRows = 8;
  v.HScroll1.Max = 30;
  v.VScroll1.Max = 22;
  m.Put(0, 12, 5, 1);   // owned forest in column 0
  m.Put(3, 2, 5, 1);    // owned forest in column 3
  m.Put(38, 29, 5, 1);  // owned forest near the far corner
  mNextUnconnected_Click(s);
  EXPECT_EQ(v.ViewX, 1);  // 0 - 5 brought up to 1
  EXPECT_EQ(v.ViewY, 8);  // 12 - 4
  EXPECT_EQ(v.HScroll1.Value, 1);
  EXPECT_EQ(v.VScroll1.Value, 8);
  EXPECT_TRUE(m.ui.messages.empty());
  // Column 0 now lies left of the view: the next search finds column 3.
  mNextUnconnected_Click(s);
  EXPECT_EQ(v.ViewX, 1);      // 3 - 5
  EXPECT_EQ(v.ViewY, 1);      // 2 - 4
  s.doc.HexCtl(3, 2, 0) = 0;  // the designer repairs it
  mNextUnconnected_Click(s);
  EXPECT_EQ(v.ViewX, 30);  // 38 - 5, held at the bar's maximum
  EXPECT_EQ(v.ViewY, 22);  // 29 - 4, likewise
  EXPECT_EQ(v.HScroll1.Value, 30);
  s.doc.HexCtl(38, 29, 0) = 0;
  mNextUnconnected_Click(s);
  ASSERT_EQ(m.ui.messages.size(), 1u);
  EXPECT_EQ(m.ui.messages[0], "none found");  // column 0 still wrong, but left of the view
  EXPECT_EQ(v.ViewX, 30);
}

TEST(RoadCheck, BulkControlTakesTheSnapshotOnlyForTheWholeMap) {
  kvtest::TempDir dir;
  RoadMap m(20, 15);
  Session& s = m.s;
  s.AppPath = dir.path();
  s.view.ViewCols = 5;
  s.view.ViewRows = 5;
  m.Put(2, 2, 5, 1);
  m.Put(12, 12, 5, 1);
  mDefaultHC_Click(s);
  EXPECT_FALSE(FileExists(dir / "autosave.map"));
  EXPECT_EQ(s.doc.HexCtl(2, 2, 0), 0);
  EXPECT_EQ(s.doc.HexCtl(12, 12, 0), 1);  // outside the screen area
  mRoadsOnly_Click(s);
  EXPECT_FALSE(FileExists(dir / "autosave.map"));
  s.pens.DefaultAreaAll = -1;
  mRoadsOnly_Click(s);
  ASSERT_TRUE(FileExists(dir / "autosave.map"));
  RemoveFile(dir / "autosave.map");
  mDefaultHC_Click(s);
  EXPECT_TRUE(FileExists(dir / "autosave.map"));
  EXPECT_EQ(s.doc.HexCtl(12, 12, 0), 0);
}

// Reference tables: field reading, terrain and tile tables, roads, nations.
#include <gtest/gtest.h>

#include "platform/fileio.h"
#include "platform/textfields.h"
#include "refdata/nations.h"
#include "refdata/tables.h"
#include "session.h"
#include "testutil.h"

using namespace kv;

namespace {
std::span<const uint8_t> Bytes(const std::string& s) { return {reinterpret_cast<const uint8_t*>(s.data()), s.size()}; }
}  // namespace

TEST(FieldReader, CommasLineEndsQuotesAndBlanks) {
  const std::string t = "  a, \"b, c\" ,12x\r\n\r\n\"q\"junk,  -3.5\n,last";
  FieldReader f(Bytes(t));
  EXPECT_EQ(f.Text(), "a");
  EXPECT_EQ(f.Text(), "b, c");
  EXPECT_EQ(f.Number(), 12);  // the number at the field's start
  EXPECT_EQ(f.Text(), "q");   // an empty line between records is no field
  EXPECT_EQ(f.Number(), -3.5);
  EXPECT_EQ(f.Text(), "");  // a line that starts with a comma has an empty field first
  EXPECT_EQ(f.Text(), "last");
  EXPECT_TRUE(f.ok());
  EXPECT_TRUE(f.AtEnd());
  f.Text();
  EXPECT_FALSE(f.ok());
}

TEST(FieldReader, RoundsHalvesToEvenAndClamps) {
  const std::string t = "2.5,3.5,abc,99999,-7";
  FieldReader f(Bytes(t));
  EXPECT_EQ(f.Int(0, 255), 2);
  EXPECT_EQ(f.Int(0, 255), 4);
  EXPECT_EQ(f.Int(0, 255), 0);
  EXPECT_EQ(f.Int(0, 255), 255);
  EXPECT_EQ(f.Int(0, 255), 0);
}

TEST(Tables, TerrainRecordsSpanLinesAndColoursGoBlueFirst) {
  // Fields counted over the whole file, wherever the lines break.
  const std::string t = "Terrains,2,list\r\n\"Open sea\",a,b,c,10,20,30,x\r\nField,a,b,c\r\n1,2,3,x";
  RefData ref;
  std::string err;
  ASSERT_TRUE(ParseTerrainTable(Bytes(t), ref, &err)) << err;
  EXPECT_EQ(ref.TerrainMax, 1);
  EXPECT_EQ(ref.TerrainName[0], "Open sea");
  EXPECT_EQ(ref.TerrainRGB(2, 0), 10);
  EXPECT_EQ(ref.TerrainRGB(0, 0), 30);
  EXPECT_EQ(ref.TerrainName[1], "Field");
  EXPECT_EQ(ref.TerrainRGB(1, 1), 2);
  EXPECT_FALSE(ParseTerrainTable(Bytes("x,3,y\r\nA,0,0,0,1,2,3,0"), ref, &err));
  EXPECT_FALSE(ParseTerrainTable(Bytes("x,100000,y"), ref, &err));
  EXPECT_EQ(ref.TerrainMax, 1);  // a failed read keeps the table
}

TEST(Tables, RoadBytesGoClockwiseFromTheTop) {
  RefData ref;
  ref.TileMax = 4;
  std::vector<uint8_t> b(6 * 4, 0);  // one tile short: tile 4 has no road
  b[6 * 1 + 0] = 1;                  // tile 1, byte 0: side 5
  b[6 * 1 + 2] = 255;                // byte 2: side 1
  b[6 * 3 + 5] = 2;                  // tile 3, byte 5: side 4
  ParseRoadInfo(b, ref);
  EXPECT_EQ(ref.RoadRows(), 2);
  EXPECT_EQ(ref.RoadTable(0, 1), 1);
  EXPECT_EQ(ref.RoadTable(5, 1), 1);
  EXPECT_EQ(ref.RoadTable(1, 1), 1);
  EXPECT_EQ(ref.RoadTable(2, 1), 0);
  EXPECT_EQ(ref.RoadTable(0, 2), 3);
  EXPECT_EQ(ref.RoadTable(4, 2), 1);
  EXPECT_EQ(ref.TileRoad, (std::vector<uint8_t>{0, 1, 0, 1, 0}));
}

TEST(Tables, StaleTileTypeFileIsRebuiltFromHexData) {
  kvtest::TempDir dir;
  kvtest::MiniApp mini;
  mini.tiles = 16;
  kvtest::MakeMiniApp(dir.path(), mini);
  // One byte too many: stale.
  kvtest::WriteBytes(dir / "mapedit/tiletype.dat", std::vector<uint8_t>(17, 9));
  HeadlessUi ui;
  Session s(dir.path(), &ui);
  s.ref.TileMax = 15;
  ASSERT_TRUE(LoadTileInfo(s));
  ASSERT_EQ(ui.messages.size(), 1u);
  EXPECT_EQ(ui.messages[0], "creating new 'tiletype.dat' file.");
  EXPECT_EQ(s.ref.TileType[14], 14);
  EXPECT_EQ(kvtest::ReadBytes(dir / "mapedit/tiletype.dat").size(), 16u);
  // A file of the right size is read as it stands.
  kvtest::WriteBytes(dir / "mapedit/tiletype.dat", std::vector<uint8_t>(16, 9));
  ui.messages.clear();
  ASSERT_TRUE(LoadTileInfo(s));
  EXPECT_TRUE(ui.messages.empty());
  EXPECT_EQ(s.ref.TileType[3], 9);
}

TEST(Tables, MissingSourcesStopWithTheirPath) {
  kvtest::TempDir dir;
  kvtest::MakeMiniApp(dir.path());
  RemoveFile(dir / "mapedit/tiletype.dat");
  RemoveFile(dir / "data/hexdata.txt");
  HeadlessUi ui;
  Session s(dir.path(), &ui);
  s.ref.TileMax = 31;
  EXPECT_FALSE(LoadTileInfo(s));
  EXPECT_EQ(ui.messages.back(), dir / "data/hexdata.txt" + " not found.");

  kvtest::MakeMiniApp(dir.path());
  RemoveFile(dir / "data/terrain.txt");
  EXPECT_FALSE(LoadTileInfo(s));
  EXPECT_EQ(ui.messages.back(), dir / "data/terrain.txt" + " not found.");
}

TEST(Tables, NoRoadTileAtAllShowsThePathAndGivesAnEmptyTable) {
  kvtest::TempDir dir;
  kvtest::MakeMiniApp(dir.path());
  RemoveFile(dir / "mapedit/roadinfo.dat");
  HeadlessUi ui;
  Session s(dir.path(), &ui);
  s.ref.TileMax = 31;
  LoadRoadInfo(s);
  EXPECT_EQ(s.ref.RoadRows(), 0);
  ASSERT_EQ(ui.messages.size(), 1u);
  EXPECT_EQ(ui.messages[0], dir / "mapedit/roadinfo.dat");
  EXPECT_TRUE(FileExists(dir / "mapedit/roadinfo.dat"));  // made empty by the open
}

TEST(Tables, HexInfoDerivesThePitches) {
  RefData ref;
  std::string err;
  ASSERT_TRUE(ParseHexInfo(Bytes("w,64,h,40,s,20"), ref, &err));
  EXPECT_EQ(ref.HexInset, 22);
  EXPECT_EQ(ref.ColPitch, 42);
  EXPECT_EQ(ref.RowPitch, 40);
  EXPECT_FALSE(ParseHexInfo(Bytes("w,0,h,0,s,0"), ref, &err));
  EXPECT_EQ(ref.ColPitch, 42);
}

TEST(Nations, SortByByteValueWithTiesByNumber) {
  NationList l;
  std::string err;
  ASSERT_TRUE(ParseNations(Bytes("5\r\n\"beta\",1\r\n\"Zed\",2\r\nalpha,3\r\n\"Zed\",9\r\n\"Beta\",4\r\n"), l, &err))
      << err;
  RefData ref;
  ref.NationCount = l.NationCount;
  ref.NationName = l.NationName;
  ref.NationCode = l.NationCode;
  SortNations(ref);
  EXPECT_EQ(ref.NationOrder, (std::vector<int16_t>{0, 5, 2, 4, 3, 1}));
  EXPECT_EQ(ref.NationCode[4], 8);
  auto list = FillNationList(ref);
  EXPECT_EQ(list, (std::vector<std::string>{"-None-", "Beta", "Zed", "Zed", "alpha", "beta"}));
  EXPECT_FALSE(ParseNations(Bytes("3\r\nA,1\r\nB,2\r\n"), l, &err));
}

TEST(Nations, AnUnreadableSetKeepsTheOneInUse) {
  kvtest::TempDir dir;
  kvtest::MakeMiniApp(dir.path());
  HeadlessUi ui;
  Session s(dir.path(), &ui);
  ASSERT_TRUE(LoadNations(s));
  EXPECT_EQ(s.doc.NationSet, "default");
  EXPECT_EQ(s.ref.NationCount, 3);
  EXPECT_FALSE(SwitchNationSet(s, "missing"));
  EXPECT_EQ(s.doc.NationSet, "default");
  EXPECT_EQ(s.ref.NationCount, 3);
  ASSERT_EQ(ui.messages.size(), 1u);
  EXPECT_NE(ui.messages[0].find("missing"), std::string::npos);
}

// Reading the older game's scenario sets and writing the order of battle,
// over generated files and a fresh document, without a session.
#include <gtest/gtest.h>

#include "pgfiles.h"
#include "refdata/refdata.h"
#include "scenario/pgformat.h"
#include "scenario/scenario_text.h"

using namespace kv;
using kvtest::PgScn;
using kvtest::PgSet;
using kvtest::PgUnit;

namespace {

// Tiles 0..39 with terrain t % 7; nations 1..4 with list codes 11..14.
RefData Ref(int tiles = 40) {
  RefData r;
  r.TileMax = static_cast<int16_t>(tiles - 1);
  for (int t = 0; t < tiles; ++t) r.TileType.push_back(static_cast<uint8_t>(t % 7));
  r.NationCount = 4;
  r.NationName = {"", "Avaria", "Belmont", "Corvia", "Dresk"};
  r.NationCode = {0, 10, 11, 12, 13};  // second column of the list, less one
  return r;
}

struct Import {
  std::vector<uint8_t> set, scn, eqp;
  ScenarioImport out;
  std::string err;
  bool Run(const RefData& ref = Ref()) {
    MemSource a(set), b(scn), c(eqp);
    out = {};
    err.clear();
    return ConvertScenarioSet({&a, "t/x15.set", &b, "t/game015.scn", &c, "app/data/panzequp.eqp"}, ref, out, &err);
  }
  const Document& doc() const { return out.map.doc; }
};

Import Basic(PgScn scn = {}, PgSet set = {}) {
  Import im;
  im.set = set.Bytes();
  im.scn = scn.Bytes();
  im.eqp = kvtest::PgEquipment({"Rifles", "Light Tank", "Field Gun"});
  return im;
}

std::vector<int> SidesOf(uint8_t v) {
  uint8_t s[7];
  DecodeRoadSides(v, s);
  std::vector<int> on;
  for (int k = 1; k <= 6; ++k)
    if (s[k]) on.push_back(k);
  return on;
}

std::string Oob(const ScenarioImport& im, const RefData& ref = Ref()) {
  VectorSink sink;
  WriteOob(im.scn, im.units, ref, sink);
  return std::string(sink.bytes.begin(), sink.bytes.end());
}

}  // namespace

TEST(ScenarioSet, RoadSideCascade) {
  using V = std::vector<int>;
  EXPECT_EQ(SidesOf(0), V{});
  EXPECT_EQ(SidesOf(4), (V{5, 6}));            // no side of its own: 2, then 1
  EXPECT_EQ(SidesOf(64), (V{1, 2, 3, 5, 6}));  // 32, 16, 8, 2, 1 in turn
  EXPECT_EQ(SidesOf(255), (V{1, 2, 3, 4, 5, 6}));
  EXPECT_EQ(SidesOf(128), V{4});
  EXPECT_EQ(SidesOf(32), V{3});
  EXPECT_EQ(SidesOf(16), V{2});
  EXPECT_EQ(SidesOf(8), V{1});
  EXPECT_EQ(SidesOf(2), V{6});
  EXPECT_EQ(SidesOf(1), V{5});
  EXPECT_EQ(SidesOf(3), (V{5, 6}));
  EXPECT_EQ(SidesOf(136), (V{1, 4}));
}

TEST(ScenarioSet, PlanesGoOneColumnRightAndColumnZeroRepeatsTheFirst) {
  PgSet set;
  set.W = 9;
  set.H = 4;
  const size_t n = set.N();
  for (size_t i = 0; i < n; ++i) {
    set.tiles.push_back(static_cast<int16_t>(i % 40));
    set.roads.push_back(static_cast<uint8_t>(i * 37));
    set.owners.push_back(static_cast<uint8_t>(i % 5));
  }
  Import im = Basic({}, set);
  ASSERT_TRUE(im.Run()) << im.err;
  const Document& d = im.doc();
  EXPECT_EQ(d.MapMaxX, 10);
  EXPECT_EQ(d.MapMaxY, 4);
  for (int y = 0; y <= 4; ++y)
    for (int x = 0; x <= 9; ++x) {
      const size_t i = static_cast<size_t>(y) * 10 + x;
      SCOPED_TRACE("file hex " + std::to_string(x) + "," + std::to_string(y));
      EXPECT_EQ(d.HexTile(x + 1, y), static_cast<int>(i % 40));
      EXPECT_EQ(d.HexInfo(x + 1, y, 0), (i % 40) % 7);
      std::vector<int> sides;
      for (int k = 1; k <= 6; ++k)
        if (d.HexInfo(x + 1, y, k)) sides.push_back(k);
      EXPECT_EQ(sides, SidesOf(static_cast<uint8_t>(i * 37)));
      const uint8_t owner = static_cast<uint8_t>(i % 5);
      EXPECT_EQ(d.HexCtl(x + 1, y, 0), owner);
      EXPECT_EQ(d.HexCtl(x + 1, y, 1), owner ? 1 : 0);  // owner 0 leaves both at 0
      EXPECT_EQ(d.HexElev(x + 1, y), 0);                // not the level ground of a new map
    }
  for (int y = 0; y <= 4; ++y) {
    EXPECT_EQ(d.HexTile(0, y), d.HexTile(1, y));
    for (int k = 0; k <= 6; ++k) EXPECT_EQ(d.HexInfo(0, y, k), d.HexInfo(1, y, k));
    EXPECT_EQ(d.HexCtl(0, y, 0), 0);
    EXPECT_EQ(d.HexCtl(0, y, 1), 0);
  }
}

TEST(ScenarioSet, ObjectivesArePrimaryAndAListStartingWithTheEndHasNone) {
  PgSet set;
  set.W = 4;
  set.H = 3;
  set.owners.assign(set.N(), 0);
  set.owners[1 * 5 + 2] = 3;  // file hex (2, 1) owned: a secondary objective
  {
    PgScn scn;  // the noise behind the -1 reads as (1, 1) pairs
    Import im = Basic(scn, set);
    ASSERT_TRUE(im.Run()) << im.err;
    EXPECT_TRUE(im.out.scn.objectives.empty());
    EXPECT_EQ(im.doc().HexCtl(2, 1, 1), 0);
    EXPECT_EQ(im.doc().HexCtl(3, 1, 1), 1);
  }
  {
    PgScn scn;
    scn.objectives = {{2, 1}, {0, 3}, {4, 0}};
    Import im = Basic(scn, set);
    ASSERT_TRUE(im.Run()) << im.err;
    const Document& d = im.doc();
    EXPECT_EQ(d.HexCtl(3, 1, 1), 2);  // was 1 from the owner plane
    EXPECT_EQ(d.HexCtl(3, 1, 0), 3);
    EXPECT_EQ(d.HexCtl(1, 3, 1), 2);
    EXPECT_EQ(d.HexCtl(5, 0, 1), 2);
    EXPECT_EQ(d.HexCtl(0, 3, 1), 0);
  }
  {
    // A full field of 20 pairs has no room for its -1 and ends with the field.
    PgScn scn;
    for (int i = 0; i < 20; ++i) scn.objectives.push_back({static_cast<int16_t>(i % 5), static_cast<int16_t>(i % 4)});
    scn.objTerminator = false;
    Import im = Basic(scn, set);
    ASSERT_TRUE(im.Run()) << im.err;
    EXPECT_EQ(im.out.scn.objectives.size(), 20u);
  }
}

TEST(ScenarioSet, DeploymentListsOfZeroOneAndMore) {
  PgSet set;
  set.W = 5;
  set.H = 5;
  auto deployed = [](const Document& d) {
    int c = 0;
    for (int x = 0; x <= d.MapMaxX; ++x)
      for (int y = 0; y <= d.MapMaxY; ++y) c += d.HexDeploy(x, y) != 0;
    return c;
  };
  for (int16_t n : {0, 1}) {
    PgScn scn;
    scn.deployN = n;
    scn.deployPairs = {{3, 3}};  // read over, never marked
    scn.prestige1 = -7;
    Import im = Basic(scn, set);
    ASSERT_TRUE(im.Run()) << im.err;
    EXPECT_EQ(deployed(im.doc()), 0) << "N = " << n;
    EXPECT_EQ(im.out.scn.unitsAt, 123u + 16u);  // P is 123 either way
    EXPECT_EQ(im.out.scn.prestige1, -7);
  }
  PgScn scn;
  scn.side1 = {3, 1, 0, 0, 0, 0};
  scn.deployN = 4;
  scn.deployPairs = {{0, 0}, {2, 5}, {5, 1}, {4, 4}};
  scn.prestige2 = 1234;
  Import im = Basic(scn, set);
  ASSERT_TRUE(im.Run()) << im.err;
  const Document& d = im.doc();
  EXPECT_EQ(deployed(d), 3);
  EXPECT_EQ(d.HexDeploy(1, 0), 3);  // the first nation of side 1
  EXPECT_EQ(d.HexDeploy(3, 5), 3);
  EXPECT_EQ(d.HexDeploy(6, 1), 3);
  EXPECT_EQ(d.HexDeploy(5, 4), 0);  // the fourth pair is read over
  EXPECT_EQ(im.out.scn.unitsAt, 119u + 16u + 16u);
  EXPECT_EQ(im.out.scn.prestige2, 1234);
}

TEST(ScenarioSet, UnitsTakeTheRunningSideAndMarkTheirDeploymentHex) {
  PgSet set;
  set.W = 5;
  set.H = 5;
  PgScn scn;
  scn.side1 = {1, 4, 0, 0, 0, 0};
  scn.side2 = {2, 3, 0, 0, 0, 0};
  scn.deployN = 3;
  scn.deployPairs = {{1, 1}, {2, 2}, {0, 0}};
  // 1 and 4 are side 1; the first 3 ends side 1, and a 1 after it is side 2.
  scn.units = {{0, 0, 1, 0, 1, 1}, {1, 0, 4, 0, 3, 3}, {2, 0, 3, 0, 2, 2}, {0, 0, 1, 0, 4, 4}};
  Import im = Basic(scn, set);
  ASSERT_TRUE(im.Run()) << im.err;
  ASSERT_EQ(im.out.units.size(), 4u);
  std::vector<int> sides;
  for (const OobUnit& u : im.out.units) sides.push_back(u.side);
  EXPECT_EQ(sides, (std::vector<int>{1, 1, 2, 2}));
  const Document& d = im.doc();
  EXPECT_EQ(d.HexDeploy(2, 1), 1);  // the unit's nation
  EXPECT_EQ(d.HexDeploy(3, 2), 3);
  EXPECT_EQ(d.HexDeploy(4, 3), 0);  // a unit off the deployment hexes marks nothing
  EXPECT_EQ(d.HexDeploy(5, 4), 0);

  // Nation 0 counts as side 2 as soon as a side-2 slot is empty...
  scn.units = {{0, 0, 1, 0, 0, 0}, {0, 0, 0, 0, 0, 0}, {0, 0, 1, 0, 0, 0}};
  Import zero = Basic(scn, set);
  ASSERT_TRUE(zero.Run()) << zero.err;
  EXPECT_EQ(zero.out.units[1].side, 2);
  EXPECT_EQ(zero.out.units[2].side, 2);
  // ...and not while all six are taken.
  scn.side2 = {2, 3, 2, 3, 2, 3};
  Import full = Basic(scn, set);
  ASSERT_TRUE(full.Run()) << full.err;
  EXPECT_EQ(full.out.units[1].side, 1);
  EXPECT_EQ(full.out.units[2].side, 1);
}

TEST(ScenarioSet, EquipmentNamesAreTrimmedAndFilledToTwenty) {
  std::vector<uint8_t> eqp = kvtest::PgEquipment({
      "Twenty Char Name 123",                                 // all 20 used
      "Short",                                                // NUL padded
      std::string("Mixed  ") + std::string(3, '\0') + "   ",  // blanks, NULs, blanks
      "   ",                                                  // blanks then NULs: the blanks stay
  });
  auto name = [&](int i) {
    MemSource src(eqp);
    std::string out, err;
    EXPECT_TRUE(ReadEquipmentName(src, "e.eqp", i, out, &err)) << err;
    return out;
  };
  EXPECT_EQ(name(0), "Twenty Char Name 123");
  EXPECT_EQ(name(1), "Short               ");
  EXPECT_EQ(name(2), std::string("Mixed  ") + std::string(3, '\0') + std::string(10, ' '));
  EXPECT_EQ(name(3), std::string(20, ' '));
  for (const std::string& n : {name(0), name(1), name(2)}) EXPECT_EQ(n.size(), 20u);
}

TEST(ScenarioText, OobIsWrittenLineByLine) {
  PgSet set;
  set.W = 3;
  set.H = 3;
  PgScn scn;
  scn.side1 = {1, 0, 4, 0, 0, 0};
  scn.side2 = {2, 0, 0, 0, 0, 3};
  scn.unknown6 = {0, 255, 7, 0, 1, 2};
  scn.c1 = 15;
  scn.aux1 = 3;
  scn.c2 = 10;  // below C1: the difference is negative
  scn.turns = 20;
  scn.day = 1;
  scn.month = 9;
  scn.year = 5;
  scn.unknown1 = 0;
  scn.daysPerTurn = 2;
  scn.pool1 = -150;
  scn.pool2 = 0;
  scn.interval1 = 3;
  scn.interval2 = 4;
  scn.unknown4 = {9, 0, 0, 1};
  scn.prestige1 = -1;
  scn.prestige2 = 32767;
  scn.air1 = 1;
  scn.air2 = 0;
  scn.naval1 = 2;
  scn.naval2 = 0;
  scn.unknown8 = {1, 2, 3, 4, 5, 6, 7, 8};
  scn.units = {{1, -1, 1, 5, 0, 2, 10, 3, 2}, {2, 300, 3, -2, 3, 3, 7, 0, 0}};
  Import im = Basic(scn, set);
  im.eqp = kvtest::PgEquipment({"Rifles", "Light Tank Model Two", "Field Gun"});
  ASSERT_TRUE(im.Run()) << im.err;
  const std::string expected =
      "* number of sequences or sides\r"
      "2\r\n"
      "* sequence/side names\r"
      "Avaria\r\n"
      "Belmont\r\n"
      "* Total number of nations in the scenario\r"
      "4\r"
      "* Nation Number-Nation name-production-move sequence-strength tile-id number\r"
      "1,Avaria,0,1,11\r"
      "4,Dresk,0,1,14\r"
      "2,Belmont,0,2,12\r"
      "3,Corvia,0,2,13\r"
      "* number of starting units in scenario\r"
      "2\r\n"
      "* unit name-mapx-mapy-strength-entrenchment-side-nation-unit type-experience-turn of entry-trans1-trans2\r"
      "Light Tank Model Two,1,2,10,30,1,1,1,200,0,-1,5\r\n"
      "Field Gun           ,4,3,7,0,2,3,2,0,0,300,-2\r\n"
      "* Side 1 Nations Available\r\n"
      " 1, 0, 4, 0, 0, 0\r\n"
      "* Side 2 Nations Available\r\n"
      " 2, 0, 0, 0, 0, 3\r\n"
      "* 6 unknown bytes\r\n"
      " 0, 255, 7, 0, 1, 2\r\n"
      "* Side 1 max Core units\r\n"
      " 15\r\n"
      "* Side 1 max Aux units\r\n"
      " 3\r\n"
      "* Side 2 Max Core units\r\n"
      " 15\r\n"
      "* Side 2 max Aux units\r\n"
      "-5\r\n"
      "* Scenario Turns\r\n"
      " 20\r\n"
      "* Day Month Year\r\n"
      " 1, 9,195\r\n"
      "* unknown byte\r\n"
      " 0\r\n"
      "* Days per turn\r\n"
      " 2\r\n"
      "* Side 1 prestige pool\r\n"
      "-150\r\n"
      "* Side 2 prestige pool\r\n"
      " 0\r\n"
      "* Side 1 prestige interval\r\n"
      " 3\r\n"
      "* Side 2 prestige interval\r\n"
      " 4\r\n"
      "* 4 unknown bytes\r\n"
      " 9, 0, 0, 1\r\n"
      "* Side 1 prestige\r\n"
      "-1\r\n"
      "* Side 2 prestige\r\n"
      " 32767\r\n"
      "* Side 1 Air transport available\r\n"
      " 1\r\n"
      "* Side 2 Air transport available\r\n"
      " 0\r\n"
      "* Side 1 Naval transport available\r\n"
      " 2\r\n"
      "* Side 2 Naval transport available\r\n"
      " 0\r\n"
      "* 8 unknown bytes\r\n"
      " 1, 2, 3, 4, 5, 6, 7, 8\r\n"
      "* first turn multiplier\r"
      "1";
  EXPECT_EQ(Oob(im.out), expected);
}

TEST(ScenarioText, YearAndUnitCountFollowTheirRules) {
  PgScn scn;
  scn.year = 41;
  scn.day = 30;
  scn.month = 12;
  Import im = Basic(scn);
  ASSERT_TRUE(im.Run()) << im.err;
  std::string oob = Oob(im.out);
  EXPECT_NE(oob.find("* Day Month Year\r\n 30, 12,1941\r\n"), std::string::npos);
  // No records: the count line still says 1, and no unit line follows.
  EXPECT_NE(oob.find("* number of starting units in scenario\r1\r\n* unit name"), std::string::npos);
  EXPECT_NE(oob.find("trans2\r* Side 1 Nations Available"), std::string::npos);
  // One byte behind three records: L - U - 1 = 42, so the count says 4.
  scn.units.assign(3, PgUnit{});
  scn.extra = 1;
  Import trailing = Basic(scn);
  ASSERT_TRUE(trailing.Run()) << trailing.err;
  EXPECT_EQ(trailing.out.units.size(), 3u);
  EXPECT_EQ(trailing.out.scn.unitCount, 4);
}

// Every fault names its file and leaves nothing half done: the conversion
// fails before anything reaches a session.
TEST(ScenarioFaults, SetFilesThatDoNotFit) {
  auto fails = [](const std::vector<uint8_t>& bytes, const RefData& ref, const std::string& words) {
    MemSource src(bytes);
    SetMap m;
    std::string err;
    EXPECT_FALSE(ReadSetFile(src, "maps/x15.set", ref, m, &err));
    EXPECT_NE(err.find("maps/x15.set"), std::string::npos) << err;
    EXPECT_NE(err.find(words), std::string::npos) << err;
  };
  PgSet set;
  set.W = 3;
  set.H = 2;
  std::vector<uint8_t> whole = set.Bytes();
  std::vector<uint8_t> cut(whole.begin(), whole.end() - 1);
  fails(cut, Ref(), "needs " + std::to_string(whole.size()) + " bytes");
  fails(std::vector<uint8_t>(102, 0), Ref(), "ends before its map size");
  // Sizes of 30000 x 30000 that claim far more than the file holds.
  std::vector<uint8_t> head = PgSet{}.Bytes();
  head[101] = 0x30, head[102] = 0x75, head[103] = 0x30, head[104] = 0x75;
  fails(head, Ref(), "needs");
  head[102] = 0xFF;  // W negative
  fails(head, Ref(), "which no map can have");
  head[101] = 0xFF, head[102] = 0x7F;  // W = 32767: no room for the extra column
  fails(head, Ref(), "wider than");

  set.tiles = {0, 1, 40};  // the table has tiles 0..39
  fails(set.Bytes(), Ref(), "tile number 40");
  set.tiles = {0, -3};
  fails(set.Bytes(), Ref(), "tile number -3");
  set.tiles = {256};  // within a table of 300, but not within a byte
  fails(set.Bytes(), Ref(300), "0..255");
  set.tiles = {255};
  {
    const std::vector<uint8_t> bytes = set.Bytes();
    MemSource src(bytes);
    SetMap m;
    EXPECT_TRUE(ReadSetFile(src, "x", Ref(300), m, nullptr));
  }
  set.tiles = {};
  set.owners = {0, 0, 0, 0, 5};
  fails(set.Bytes(), Ref(), "nation 5");
}

TEST(ScenarioFaults, ScenarioFilesThatEndEarlyOrPointOutside) {
  auto fails = [](Import im, const std::string& file, const std::string& words) {
    EXPECT_FALSE(im.Run());
    EXPECT_NE(im.err.find(file), std::string::npos) << im.err;
    EXPECT_NE(im.err.find(words), std::string::npos) << im.err;
  };
  PgScn scn;
  scn.units = {PgUnit{}, PgUnit{}};
  Import im = Basic(scn);
  const std::vector<uint8_t> whole = im.scn;
  for (size_t len : {size_t{0}, size_t{20}, size_t{60}, size_t{118}, size_t{130}}) {
    Import cut = im;
    cut.scn.resize(len);
    fails(cut, "t/game015.scn", "ends early");
  }
  Import unitCut = im;
  unitCut.scn.resize(whole.size() - 3);
  fails(unitCut, "t/game015.scn", "cut short");
  Import lastByte = im;  // one byte of a record that is never started
  lastByte.scn.resize(whole.size() - 13);
  EXPECT_TRUE(lastByte.Run()) << lastByte.err;
  EXPECT_EQ(lastByte.out.units.size(), 1u);

  PgScn many;  // a deployment count far beyond the file
  many.deployN = 30000;
  many.deployPairs.resize(2);
  Import big = Basic(many);
  big.scn.resize(200);
  fails(big, "t/game015.scn", "30000 deployment hexes");

  PgScn nation = scn;
  nation.side2[3] = 5;
  fails(Basic(nation), "t/game015.scn", "nation 5");
  nation = scn;
  nation.units[1].nation = 9;
  fails(Basic(nation), "t/game015.scn", "nation 9");

  PgScn equip = scn;
  equip.units[0].type = 656;
  fails(Basic(equip), "t/game015.scn", "equipment index 656");
  equip.units[0].type = -1;
  fails(Basic(equip), "t/game015.scn", "equipment index -1");
  equip.units[0].type = 3;  // a valid index past the end of the table
  fails(Basic(equip), "app/data/panzequp.eqp", "name of equipment 3");

  PgScn obj = scn;
  obj.objectives = {{1, 1}, {3, 0}};  // the default set is 3 x 2 hexes
  fails(Basic(obj), "t/game015.scn", "objective hex (3, 0)");
  PgScn dep = scn;
  dep.deployN = 2;
  dep.deployPairs = {{0, -1}, {0, 0}};
  fails(Basic(dep), "t/game015.scn", "deployment hex (0, -1)");

  // The highest index the 16-bit position allows still reads.
  std::vector<std::string> names(656, "Unit");
  names[655] = "Last";
  PgScn last = scn;
  last.units[0].type = 655;
  Import top = Basic(last);
  top.eqp = kvtest::PgEquipment(names);
  ASSERT_TRUE(top.Run()) << top.err;
  EXPECT_EQ(top.out.units[0].name, "Last                ");
}

// Every length of a file is either read whole or refused with a message
// naming the file: no length makes a reader run past the end.
TEST(ScenarioFaults, EveryTruncationIsReadWholeOrRefused) {
  PgSet set;
  set.W = 4;
  set.H = 3;
  set.tiles.assign(set.N(), 5);
  PgScn scn;
  scn.deployN = 3;
  scn.deployPairs = {{1, 1}, {2, 2}, {3, 3}};
  scn.units.assign(3, PgUnit{});
  scn.units[1].type = 2;
  const Import whole = Basic(scn, set);
  const uint64_t u = 119 + 4 * 3 + 16;  // the first unit record

  for (size_t len = 0; len < whole.set.size(); ++len) {
    Import im = whole;
    im.set.resize(len);
    ASSERT_FALSE(im.Run()) << "set of " << len << " bytes";
    EXPECT_EQ(im.err.rfind("t/x15.set", 0), 0u) << im.err;
  }
  for (size_t len = 0; len <= whole.scn.size(); ++len) {
    Import im = whole;
    im.scn.resize(len);
    const bool ok = im.Run();
    const bool wholeRecords = len >= u && ((len - u) % 14 == 0 || (len - u) % 14 == 1);
    ASSERT_EQ(ok, wholeRecords) << "scenario of " << len << " bytes: " << im.err;
    if (ok)
      EXPECT_EQ(im.out.units.size(), (len - u) / 14);
    else
      EXPECT_EQ(im.err.rfind("t/game015.scn", 0), 0u) << im.err;
  }
  // The names needed are those of equipment 0 and 2: the table must reach
  // the end of the third name.
  for (size_t len = 0; len <= whole.eqp.size(); ++len) {
    Import im = whole;
    im.eqp.resize(len);
    ASSERT_EQ(im.Run(), len >= 2 + 50 * 2 + 20) << "equipment table of " << len << " bytes";
    if (!im.err.empty()) {
      EXPECT_EQ(im.err.rfind("app/data/panzequp.eqp", 0), 0u) << im.err;
    }
  }
}

// Damaged bytes anywhere in the set or the scenario give either a document
// or a message naming one of the files, never anything else.
TEST(ScenarioFaults, DamagedBytesGiveADocumentOrAMessage) {
  PgSet set;
  set.W = 3;
  set.H = 2;
  set.tiles.assign(set.N(), 7);
  set.owners.assign(set.N(), 1);
  PgScn scn;
  scn.objectives = {{1, 1}};
  scn.deployN = 2;
  scn.deployPairs = {{0, 0}, {1, 1}};
  scn.units.assign(4, PgUnit{});
  const Import whole = Basic(scn, set);
  uint32_t seed = 12345;
  auto next = [&] { return seed = seed * 1664525u + 1013904223u; };
  int refused = 0;
  for (int round = 0; round < 3000; ++round) {
    Import im = whole;
    auto& bytes = (round % 2) ? im.scn : im.set;
    for (int k = 0; k < 1 + round % 4; ++k) bytes[next() % bytes.size()] = static_cast<uint8_t>(next() >> 24);
    if (im.Run()) {
      const Document& d = im.doc();
      EXPECT_EQ(d.HexTile.W(), d.MapMaxX + 1);
      EXPECT_EQ(im.out.units.size(), (im.scn.size() - im.out.scn.unitsAt) / 14);
      for (const OobUnit& unit : im.out.units) EXPECT_EQ(unit.name.size(), 20u);
    } else {
      ++refused;
      const bool named = im.err.rfind("t/x15.set", 0) == 0 || im.err.rfind("t/game015.scn", 0) == 0 ||
                         im.err.rfind("app/data/panzequp.eqp", 0) == 0;
      EXPECT_TRUE(named) << im.err;
    }
  }
  EXPECT_GT(refused, 100);  // the damage does reach the checks
}

// Pattern stores: names built from the ring, pattern files and tile lists in
// their byte forms after searches and updates, the one-byte-a-tile files, the
// cache's agreement with the files, and an unusable store folder.
#include <chrono>
#include <filesystem>
#include <set>
#include <thread>

#include <gtest/gtest.h>

#include "autotile/engine.h"
#include "autotile/passes.h"
#include "autotile/stores.h"
#include "autotile_fixture.h"
#include "platform/textfields.h"
#include "view/geometry.h"

using namespace kv;
using namespace kvtest;
namespace fs = std::filesystem;

namespace {

// Moves a file's modification time into the past and lets its change time
// fall behind the file system's timestamp granularity, so that the cache may
// trust what it parses.
void Age(const std::string& path) {
  fs::last_write_time(path, fs::file_time_type::clock::now() - std::chrono::seconds(30));
  std::this_thread::sleep_for(std::chrono::milliseconds(150));
}

}  // namespace

TEST(PatternNames, RingMasksKeysAndDigits) {
  // Ring positions 1..6 are sides 5, 6, 1, 2, 3, 4.
  const int sides[] = {5, 6, 1, 2, 3, 4};
  for (int p = 1; p <= 6; ++p) EXPECT_EQ(RingSide(p), sides[p - 1]);
  // The direct visit gives the ring walk's hexes, in even and odd columns.
  for (int x : {4, 5})
    for (int y : {0, 4}) {
      int wx = x, wy = y - 1;
      for (int p = 1; p <= 6; ++p) {
        int nx, ny;
        RingNeighbour(x, y, p, nx, ny);
        EXPECT_EQ(nx, wx) << x << "," << y << " p" << p;
        EXPECT_EQ(ny, wy) << x << "," << y << " p" << p;
        HexNeighbour(wx, wy, p);
      }
    }
  RingOutline r;
  EXPECT_EQ(PatternMask(r, true), "0-0-0-0-0-0");
  EXPECT_EQ(PatternKey(r), "0-0-0-0-0-0");
  r.on = {true, false, true, false, false, false};
  r.tile = {104, 7, 90, 0, 0, 0};
  EXPECT_EQ(PatternMask(r, true), "1-0-1-0-0-0");
  EXPECT_EQ(PatternMask(r, false), "101000");
  EXPECT_EQ(PatternKey(r), "104-0-90-0-0-0");  // an unconnected tile gives "0"
  // A connected neighbour on tile 0: the mask tells, the key cannot.
  RingOutline z;
  z.on[3] = true;
  EXPECT_EQ(PatternMask(z, true), "0-0-0-1-0-0");
  EXPECT_EQ(PatternKey(z), "0-0-0-0-0-0");
  EXPECT_EQ(SideDigits({true, false, true, false, true, false}), "103050");
  EXPECT_EQ(SideDigits({}), "000000");
  EXPECT_EQ(TerrainNN(8), "08");
  EXPECT_EQ(TerrainNN(14), "14");
}

TEST(PatternFiles, SearchCreatesTheQuotedSentinelOnlyWhenAsked) {
  AutoApp a;
  Session& s = *a.s;
  const std::string river = a.App("mapedit/riverpatterns/1-0-0-0-0-0.txt");
  EXPECT_EQ(FindPatternTile(s, river, "4-0-0-0-0-0", true), -1);
  EXPECT_EQ(a.Text("mapedit/riverpatterns/1-0-0-0-0-0.txt"), "\"-1\"\r\n");
  const std::string road = a.App("mapedit/roadpatterns/1-0-0-0-0-0.txt");
  EXPECT_EQ(FindPatternTile(s, road, "4-0-0-0-0-0", false), -1);
  EXPECT_FALSE(fs::exists(road));
  // The quoted sentinel reads like the plain one: a later update keeps no pair of it.
  StorePatternPair(s, river, "4-0-0-0-0-0", 4, PatternSeed::ZeroPair, {});
  EXPECT_EQ(a.Text("mapedit/riverpatterns/1-0-0-0-0-0.txt"), "4-0-0-0-0-0,4\r\n-1\r\n");
}

TEST(PatternFiles, SearchTakesTheFirstPairThatPassesAndStopsAtTheSentinel) {
  AutoApp a;
  Session& s = *a.s;
  const std::string path = a.App("mapedit/roadpatterns/1-0-1-0-0-0.txt");
  a.Write("mapedit/roadpatterns/1-0-1-0-0-0.txt",
          "104-0-90-0-0-0,3\r\n104-0-91-0-0-0,33\r\n104-0-90-0-0-0,13\r\n\"-1\"\r\n7-7-7-7-7-7,9\r\n");
  for (bool cache : {true, false}) {
    SetStoreCache(s, cache);
    EXPECT_EQ(FindPatternTile(s, path, "104-0-90-0-0-0", false), 3);
    EXPECT_EQ(FindPatternTile(s, path, "104-0-91-0-0-0", false), 33);
    // A pair whose tile fails the test does not end the search.
    EXPECT_EQ(FindPatternTile(s, path, "104-0-90-0-0-0", false, [](int16_t t) { return t == 13; }), 13);
    EXPECT_EQ(FindPatternTile(s, path, "104-0-90-0-0-0", false, [](int16_t t) { return t == 99; }), -1);
    // Exact comparison; nothing after the sentinel is read.
    EXPECT_EQ(FindPatternTile(s, path, "104-0-90-0-0", false), -1);
    EXPECT_EQ(FindPatternTile(s, path, "7-7-7-7-7-7", false), -1);
  }
  // A file that lost its sentinel is read to its end.
  a.Write("mapedit/roadpatterns/1-0-1-0-0-0.txt", "1-0-1-0-0-0,3\r\n2-0-2-0-0-0,13");
  EXPECT_EQ(FindPatternTile(s, path, "2-0-2-0-0-0", false), 13);
  EXPECT_EQ(FindPatternTile(s, path, "5-0-5-0-0-0", false), -1);
}

TEST(PatternFiles, UpdatesSeedRewriteAndMoveTheChangedPairToTheEnd) {
  AutoApp a;
  Session& s = *a.s;
  const std::string base = "mapedit/bridgepatterns/";
  // The three seed forms, each followed by one new pair.
  StorePatternPair(s, a.App(base + "a.txt"), "1-2-0-0-0-0", 5, PatternSeed::ZeroPair, {});
  EXPECT_EQ(a.Text(base + "a.txt"), "0-0-0-0-0-0,0\r\n1-2-0-0-0-0,5\r\n-1\r\n");
  StorePatternPair(s, a.App(base + "b.txt"), "1-2-0-0-0-0", 5, PatternSeed::Plain, {});
  EXPECT_EQ(a.Text(base + "b.txt"), "1-2-0-0-0-0,5\r\n-1\r\n");
  EXPECT_EQ(SeedText(PatternSeed::Search), "\"-1\"\r\n");

  // Old pairs keep their order and text; the same key moves to the end.
  a.Write(base + "c.txt", "1-0-0-0-0-0,4\r\n2-0-0-0-0-0,\"05\"\r\n3-0-0-0-0-0,900\r\n-1\r\n");
  auto sameKey = [](const std::string& key) {
    return [key](const std::string& k, const std::string&) { return k == key; };
  };
  StorePatternPair(s, a.App(base + "c.txt"), "1-0-0-0-0-0", 17, PatternSeed::Plain, sameKey("1-0-0-0-0-0"));
  EXPECT_EQ(a.Text(base + "c.txt"), "2-0-0-0-0-0,05\r\n3-0-0-0-0-0,900\r\n1-0-0-0-0-0,17\r\n-1\r\n");
  // A drop rule that also removes tiles past TileMax.
  StorePatternPair(s, a.App(base + "c.txt"), "9-0-0-0-0-0", 4, PatternSeed::Plain,
                   [&](const std::string& k, const std::string& t) { return k == "9-0-0-0-0-0" || Val(t) > 207; });
  EXPECT_EQ(a.Text(base + "c.txt"), "2-0-0-0-0-0,05\r\n1-0-0-0-0-0,17\r\n9-0-0-0-0-0,4\r\n-1\r\n");
  EXPECT_FALSE(a.Exists("mapedit/temp.txt"));
  // A stale work file from an interrupted run does not leak into the store.
  a.Write("mapedit/temp.txt", "garbage");
  StorePatternPair(s, a.App(base + "b.txt"), "1-2-0-0-0-0", 6, PatternSeed::Plain, sameKey("1-2-0-0-0-0"));
  EXPECT_EQ(a.Text(base + "b.txt"), "1-2-0-0-0-0,6\r\n-1\r\n");
}

TEST(TileLists, EveryRecordCanBeDrawnAndAMissingListLeavesTheTile) {
  AutoApp a;
  Session& s = *a.s;
  a.Write("mapedit/t04/000000.txt", "018\r\n019\r\n022\r\n");
  std::set<int> seen;
  for (int i = 0; i < 200; ++i) {
    int16_t t = -1;
    EXPECT_EQ(PickListTile(s, a.App("mapedit/t04/000000.txt"), t), ListPick::Picked);
    seen.insert(t);
  }
  EXPECT_EQ(seen, (std::set<int>{18, 19, 22}));
  a.Write("mapedit/t04/100000.txt", "019\r\n");
  for (int i = 0; i < 20; ++i) {
    int16_t t = -1;
    PickListTile(s, a.App("mapedit/t04/100000.txt"), t);
    EXPECT_EQ(t, 19);
  }
  int16_t keep = 77;
  EXPECT_EQ(PickListTile(s, a.App("mapedit/t04/123456.txt"), keep), ListPick::Missing);
  EXPECT_EQ(keep, 77);
  // The check sees the records read, in order, and a refusal stops the draw.
  std::vector<int> checked;
  int16_t t = -1;
  EXPECT_EQ(PickListTile(s, a.App("mapedit/t04/000000.txt"), t,
                         [&](int16_t rec) {
                           checked.push_back(rec);
                           return rec != 18;
                         }),
            ListPick::Rejected);
  EXPECT_EQ(checked, std::vector<int>{18});
  EXPECT_EQ(t, -1);
}

TEST(TileByteFiles, ReadZeroPastTheEndAndWritesExtend) {
  AutoApp a;
  Session& s = *a.s;
  const std::string path = a.App("mapedit/ptiles.dat");
  EXPECT_EQ(ReadTileByte(s, path, 3), 0);  // missing file
  ASSERT_TRUE(WriteTileBytes(s, path, 4, std::vector<uint8_t>{1}.data(), 1));
  EXPECT_EQ(ReadBytes(path), (std::vector<uint8_t>{0, 0, 0, 0, 1}));
  const uint8_t six[6] = {1, 0, 1, 1, 0, 1};
  ASSERT_TRUE(WriteTileBytes(s, path, 1, six, 6));
  EXPECT_EQ(ReadBytes(path), (std::vector<uint8_t>{0, 1, 0, 1, 1, 0, 1}));
  uint8_t out[4] = {9, 9, 9, 9};
  ReadTileBytes(s, path, 5, out, 4);
  EXPECT_EQ(std::vector<uint8_t>(out, out + 4), (std::vector<uint8_t>{0, 1, 0, 0}));
}

TEST(StoreCache, AgreesWithTheFilesWhenTheyChangeBehindItsBack) {
  AutoApp a;
  Session& s = *a.s;
  const std::string rel = "mapedit/roadpatterns/0-1-0-0-0-0.txt";
  const std::string path = a.App(rel);
  a.Write(rel, "0-3-0-0-0-0,3\r\n-1\r\n");
  Age(path);
  EXPECT_EQ(FindPatternTile(s, path, "0-3-0-0-0-0", false), 3);
  const uint64_t before = StoreCacheHits(s);
  EXPECT_EQ(FindPatternTile(s, path, "0-3-0-0-0-0", false), 3);
  EXPECT_EQ(StoreCacheHits(s), before + 1);  // served from the parse
  // Same size, new text, written by someone else.
  a.Write(rel, "0-3-0-0-0-0,9\r\n-1\r\n");
  EXPECT_EQ(FindPatternTile(s, path, "0-3-0-0-0-0", false), 9);
  // Even with the old modification time put back, the change time gives it away.
  Age(path);
  EXPECT_EQ(FindPatternTile(s, path, "0-3-0-0-0-0", false), 9);
  a.Write(rel, "0-3-0-0-0-0,8\r\n-1\r\n");
  Age(path);
  EXPECT_EQ(FindPatternTile(s, path, "0-3-0-0-0-0", false), 8);
  fs::remove(path);
  EXPECT_EQ(FindPatternTile(s, path, "0-3-0-0-0-0", false), -1);
  // Our own update is seen at once.
  StorePatternPair(s, path, "0-3-0-0-0-0", 12, PatternSeed::Plain, {});
  EXPECT_EQ(FindPatternTile(s, path, "0-3-0-0-0-0", false), 12);
  // Lists likewise.
  a.Write("mapedit/t04/000000.txt", "018\r\n");
  Age(a.App("mapedit/t04/000000.txt"));
  int16_t t = -1;
  PickListTile(s, a.App("mapedit/t04/000000.txt"), t);
  EXPECT_EQ(t, 18);
  a.Write("mapedit/t04/000000.txt", "019\r\n");
  PickListTile(s, a.App("mapedit/t04/000000.txt"), t);
  EXPECT_EQ(t, 19);
}

TEST(StoreFolder, MissingMapeditGivesOneMessageAndNoCrash) {
  AutoApp a;
  Session& s = *a.s;
  fs::remove_all(a.App("mapedit"));
  a.ui.messages.clear();
  a.p().AutoTile = 0;
  a.Fill(5, 5, tl::Forest);
  a.p().CurTile = tl::Forest;
  // Learning and reading over a whole pass.
  mMountains_Click(s);
  for (int x = 1; x <= 4; ++x) NewPattern(s, static_cast<int16_t>(x), 2, tl::Forest);
  int16_t t = -1;
  AutoDrawTile(s, 2, 2, t);
  EXPECT_EQ(t, -1);
  a.p().DefaultAreaAll = -1;
  a.ui.messages.clear();
  autoredrawterrain_Click(s);
  EXPECT_EQ(a.ui.messages.size(), 1u);
  if (!a.ui.messages.empty()) {
    EXPECT_NE(a.ui.messages[0].find("cannot be read or written"), std::string::npos);
  }
  EXPECT_FALSE(a.Exists("mapedit"));  // nothing makes the store folder itself
}

TEST(StoreCache, AFolderRemovedBehindItsBackIsMadeAgainAsWithoutTheCache) {
  for (bool cache : {true, false}) {
    AutoApp a;
    Session& s = *a.s;
    SetStoreCache(s, cache);
    a.p().CurTile = tl::Forest;
    int16_t t = -1;
    AutoDrawTile(s, 4, 4, t);  // no list, nothing learned: the search leaves an empty file
    EXPECT_EQ(t, -1);
    ASSERT_EQ(a.Text("mapedit/tilep08/000000.txt"), "\"-1\"\r\n");
    a.Write("mapedit/tilep08/000000.txt", "0-0-0-0-0-0,9\r\n-1\r\n");
    AutoDrawTile(s, 4, 4, t);
    EXPECT_EQ(t, tl::Forest2) << cache;
    fs::remove_all(a.App("mapedit/tilep08"));
    a.ui.messages.clear();
    t = -1;
    AutoDrawTile(s, 4, 4, t);
    EXPECT_EQ(t, -1) << cache;
    EXPECT_EQ(a.Text("mapedit/tilep08/000000.txt"), "\"-1\"\r\n") << cache;
    EXPECT_TRUE(a.ui.messages.empty()) << cache;
  }
}

TEST(PatternFiles, DamagedFilesAreReadWithoutHarmAndRewrittenWhole) {
  AutoApp a;
  Session& s = *a.s;
  const std::string rel = "mapedit/riverpatterns/1-0-0-0-0-0.txt";
  std::string binary;
  for (int c = 0; c < 256; ++c) binary.push_back(static_cast<char>(c));
  for (const std::string& text :
       {std::string("\"104-0,3\r\n"), std::string("\r\n\r\n,,,,"), binary, std::string("4-0-0-0-0-0"), std::string()}) {
    a.Write(rel, text);
    for (bool cache : {true, false}) {
      SetStoreCache(s, cache);
      EXPECT_EQ(FindPatternTile(s, a.App(rel), "5-0-0-0-0-0", true), -1);
    }
    StorePatternPair(s, a.App(rel), "5-0-0-0-0-0", 4, PatternSeed::ZeroPair, {});
    const std::string out = a.Text(rel);
    ASSERT_GE(out.size(), 19u);
    EXPECT_EQ(out.substr(out.size() - 19), "5-0-0-0-0-0,4\r\n-1\r\n");
    EXPECT_EQ(FindPatternTile(s, a.App(rel), "5-0-0-0-0-0", false), 4);
  }
  // A list with bare line feeds and a short last record: the records still count
  // by length, the lines by their ends.
  a.Write("mapedit/t04/000000.txt", "018\n019\n02");
  std::set<int> seen;
  for (int i = 0; i < 50; ++i) {
    int16_t t = -1;
    PickListTile(s, a.App("mapedit/t04/000000.txt"), t);
    seen.insert(t);
  }
  EXPECT_EQ(seen, (std::set<int>{18, 19}));
}

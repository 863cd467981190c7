// Neighbours that follow, learning that says so, and the reset of the learned
// stores, on private copies of the default program folder.
#include <filesystem>
#include <map>

#include <gtest/gtest.h>

#include "autotile/engine.h"
#include "autotile/follow.h"
#include "autotile/reset.h"
#include "document/document_ops.h"
#include "editing/editing.h"
#include "editing/mapload.h"
#include "editing/startup.h"
#include "session.h"
#include "testutil.h"
#include "view/geometry.h"

namespace fs = std::filesystem;
using namespace kv;

namespace {

const std::string kData = KV_DEFAULT_DATA_DIR;

struct Fresh {
  kvtest::TempDir app;
  HeadlessUi ui;
  std::unique_ptr<Session> s;
  bool started = false;
  // A copy of the default folder and a blank map of `tile` (terrain from the tile).
  explicit Fresh(int16_t tile, int w = 12, int h = 10) {
    fs::copy(kData, app.path(), fs::copy_options::recursive | fs::copy_options::overwrite_existing);
    s = std::make_unique<Session>(app.path(), &ui);
    s->view.ScreenW = 1280;
    s->view.ScreenH = 1024;
    started = StartSession(*s);
    s->doc.MapMaxX = static_cast<int16_t>(w - 1);
    s->doc.MapMaxY = static_cast<int16_t>(h - 1);
    s->pens.CurTile = tile;
    s->pens.RandomMode = 0;
    NewMap(*s);
  }
  void Click(int16_t pen, int x, int y) {
    s->pens.CurTile = pen;
    int32_t px = 0, py = 0;
    HexToPixel(s->ref, x, y, px, py);
    Picture1_MouseDown(*s, 1, 0, px + 30.0, py + 25.0);
  }
  int16_t Tile(int x, int y) const { return s->doc.HexTile(x, y); }
};

// The ring marks of a tile from "patterns.dat": bit p for ring position p + 1.
int Marks(const std::string& app, int16_t tile) {
  const std::vector<uint8_t> m = kvtest::ReadBytes(app + "/mapedit/patterns.dat");
  int bits = 0;
  for (int p = 0; p < 6; ++p) bits |= (m.at(6 * tile + p) != 0) << p;
  return bits;
}

std::map<std::string, std::vector<uint8_t>> Stores(const std::string& app) {
  std::map<std::string, std::vector<uint8_t>> out;
  for (const auto& e : fs::recursive_directory_iterator(app + "/mapedit")) {
    const std::string rel = fs::relative(e.path(), app + "/mapedit").string();
    if (e.is_regular_file() && (rel.rfind("road", 0) == 0 || rel.rfind("bridge", 0) == 0 ||
                                rel.rfind("river", 0) == 0 || rel.rfind("tilep", 0) == 0))
      out[rel] = kvtest::ReadBytes(e.path().string());
  }
  return out;
}

constexpr int kRingSide[6] = {5, 6, 1, 2, 3, 4};

}  // namespace

TEST(NeighboursFollow, ACoastPaintedIntoTheSeaTurnsTheSeaAroundIntoShore) {
  for (bool follow : {false, true}) {
    SCOPED_TRACE(follow ? "following" : "classic");
    Fresh f(0);  // open sea
    ASSERT_TRUE(f.started);
    Session& s = *f.s;
    s.pens.AutoTile = -1;
    s.pens.AutoNeighbours = follow ? -1 : 0;
    std::map<std::pair<int, int>, int16_t> before;
    for (int x = 0; x < 12; ++x)
      for (int y = 0; y < 10; ++y) before[{x, y}] = f.Tile(x, y);
    f.Click(34, 5, 5);  // an island of open ground
    EXPECT_EQ(s.doc.HexInfo(5, 5, 0), 1);
    EXPECT_EQ(s.pens.CurTile, 34);  // the pen is the user's either way
    for (int p = 0; p < 6; ++p) {
      int x = 5, y = 5;
      HexNeighbour(x, y, kRingSide[p]);
      if (!follow) {
        EXPECT_EQ(f.Tile(x, y), (before[{x, y}])) << "the classic click leaves the neighbours";
        continue;
      }
      // The sea around has land toward the island: the ring position
      // opposite p (seen from the neighbour) is land, the others sea.
      const int toIsland = (p + 3) % 6;
      EXPECT_EQ(s.ref.TypeOf(f.Tile(x, y)), 0);
      EXPECT_EQ(Marks(f.app.path(), f.Tile(x, y)), 63 & ~(1 << toIsland)) << "ring " << p + 1;
    }
    // Hexes two away keep their tiles either way.
    EXPECT_EQ(f.Tile(5, 2), (before[{5, 2}]));
    EXPECT_EQ(f.Tile(1, 5), (before[{1, 5}]));
  }
}

TEST(NeighboursFollow, NeighboursWhoseOutlineStaysKeepTheirVariant) {
  // Open sea has several pictures; sea painted into the sea changes no
  // outline, so the sea around keeps the pictures it has.
  Fresh f(0);
  ASSERT_TRUE(f.started);
  Session& s = *f.s;
  s.pens.AutoTile = -1;
  s.pens.AutoNeighbours = -1;
  std::map<std::pair<int, int>, int16_t> before;
  for (int x = 0; x < 12; ++x)
    for (int y = 0; y < 10; ++y) before[{x, y}] = f.Tile(x, y);
  for (int i = 0; i < 3; ++i) {
    f.Click(0, 5, 5);
    f.Click(1, 8, 3);
  }
  for (int x = 0; x < 12; ++x)
    for (int y = 0; y < 10; ++y)
      if (!(x == 5 && y == 5) && !(x == 8 && y == 3)) {
        EXPECT_EQ(f.Tile(x, y), (before[{x, y}])) << x << "," << y;
      }
}

TEST(NeighboursFollow, OnlyTilePaintingWithAutoTileIsFollowed) {
  Fresh f(0);
  ASSERT_TRUE(f.started);
  Session& s = *f.s;
  s.pens.AutoNeighbours = -1;
  s.pens.AutoTile = 0;  // auto-tile off: the classic lesson, nothing more
  const int16_t around = f.Tile(5, 4);
  f.Click(34, 5, 5);
  EXPECT_EQ(f.Tile(5, 4), around);
  s.pens.AutoTile = -1;
  s.pens.CtlMode = 2;  // hex control: no tile is painted
  EXPECT_FALSE(NeighboursFollowPaint(s));
  s.pens.CtlMode = 0;
  EXPECT_TRUE(NeighboursFollowPaint(s));
  s.pens.AutoNeighbours = 0;
  EXPECT_FALSE(NeighboursFollowPaint(s));
}

TEST(NeighboursFollow, AFollowingRoadKeepsItsRailroadSides) {
  Fresh f(34);
  ASSERT_TRUE(f.started);
  Session& s = *f.s;
  s.pens.AutoTile = -1;
  s.pens.AutoNeighbours = -1;
  f.Click(113, 5, 3);
  f.Click(113, 5, 4);
  // A railroad leaves (5, 4) to the lower left; the road goes on below.
  s.doc.HexInfo(5, 4, 3) = 2;
  f.Click(113, 5, 5);
  EXPECT_EQ(s.doc.HexInfo(5, 4, 3), 2);
  EXPECT_EQ(s.doc.HexInfo(5, 4, 2), 1);  // the road now runs on down
  EXPECT_EQ(s.doc.HexInfo(5, 4, 5), 1);
}

TEST(LearningSaysSo, APaintWithAutoTileOffSaysWhatItTaught) {
  Fresh f(34);
  ASSERT_TRUE(f.started);
  Session& s = *f.s;
  std::vector<std::string> said;
  s.ed.hooks.Learned = [&](Session&, const std::string& text) { said.push_back(text); };
  s.pens.AutoTile = 0;
  f.Click(113, 5, 3);  // a road with no road around: nothing to learn
  EXPECT_TRUE(said.empty());
  f.Click(112, 5, 4);  // next to it: a road pattern
  ASSERT_EQ(said.size(), 1u);
  EXPECT_EQ(said[0], "learned: road pattern for tile 112");
  f.Click(55, 8, 4);  // forest: a tile pattern
  ASSERT_EQ(said.size(), 2u);
  EXPECT_EQ(said[1], "learned: tile pattern for tile 55");
  f.Click(164, 6, 4);  // a forest road beside the road: both
  ASSERT_EQ(said.size(), 3u);
  EXPECT_EQ(said[2], "learned: road and tile pattern for tile 164");
  f.Click(34, 2, 2);  // open ground is never learned
  s.pens.AutoTile = -1;
  f.Click(112, 5, 6);  // auto-tile on: the editor chooses, it does not learn
  EXPECT_EQ(said.size(), 3u);
  EXPECT_EQ(LessonText(Lesson::River, Lesson::None, 180), "learned: river pattern for tile 180");
  EXPECT_EQ(LessonText(Lesson::None, Lesson::None, 180), "");
}

TEST(LearningSaysSo, ResetBringsBackTheStarterPatternsAndNothingElse) {
  Fresh f(34);
  ASSERT_TRUE(f.started);
  Session& s = *f.s;
  const auto starter = Stores(kData);
  ASSERT_GT(starter.size(), 20u);
  // Lessons of all kinds: a road, forest, a river; and a store file of the
  // user's own that the starter set does not have.
  s.pens.AutoTile = 0;
  f.Click(113, 5, 3);
  f.Click(112, 5, 4);
  f.Click(55, 8, 4);
  f.Click(180, 2, 4);
  f.Click(180, 2, 5);
  fs::create_directories(f.app.path() + "/mapedit/tilep07");
  kvtest::WriteText(f.app.path() + "/mapedit/tilep07/111111.txt", "1-1-1-1-1-1,46\r\n-1\r\n");
  const auto list = kvtest::ReadBytes(f.app.path() + "/mapedit/t00/123456.txt");
  ASSERT_NE(Stores(f.app.path()), starter);
  std::string err;
  ASSERT_TRUE(ResetLearnedStores(s, kData, &err)) << err;
  EXPECT_EQ(Stores(f.app.path()), starter);
  EXPECT_EQ(kvtest::ReadBytes(f.app.path() + "/mapedit/t00/123456.txt"), list);  // tile lists stay
  // The store reads the reset files, not what it had seen before.
  s.pens.AutoTile = -1;
  s.pens.CurTile = 112;
  int16_t r = -1;
  CheckRoads(s, 5, 4, r);
  EXPECT_NE(r, 112);
  // A folder cannot be reset from itself, nor from one without patterns.
  EXPECT_FALSE(ResetLearnedStores(s, f.app.path(), &err));
  kvtest::TempDir empty;
  EXPECT_FALSE(ResetLearnedStores(s, empty.path(), &err));
  EXPECT_EQ(Stores(f.app.path()), starter);
}

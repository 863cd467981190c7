// The memorise passes write each pattern file once at their end; the files
// must be those that learning hex by hex, one file write a lesson, leaves.
#include <filesystem>
#include <map>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "autotile/engine.h"
#include "autotile/passes.h"
#include "autotile/stores.h"
#include "autotile_fixture.h"

using namespace kv;
using namespace kvtest;
namespace fs = std::filesystem;

namespace {

// Every file under mapedit/, by its path inside the folder.
std::map<std::string, std::vector<uint8_t>> Stores(const AutoApp& a) {
  std::map<std::string, std::vector<uint8_t>> out;
  const fs::path root = a.App("mapedit");
  for (const auto& e : fs::recursive_directory_iterator(root))
    if (e.is_regular_file()) out[fs::relative(e.path(), root).string()] = ReadBytes(e.path().string());
  return out;
}

// A 24 x 18 map of roads, rivers, bridges, mountains, forests and open
// ground, the same for every seed; some lessons are in the stores already.
void Paint(AutoApp& a, unsigned seed) {
  a.Fill(23, 17, tl::Open);
  std::mt19937 gen(seed);
  const int16_t kinds[] = {tl::Road,   tl::River,      tl::Bridge,    tl::Mount,   tl::Mount2,
                           tl::Forest, tl::Forest2,    tl::City,      tl::River11, tl::Open,
                           tl::Open,   tl::ForestRoad, tl::RoughRoad, 86,          94};
  for (int x = 0; x <= 23; ++x)
    for (int y = 0; y <= 17; ++y) a.Put(x, y, kinds[gen() % std::size(kinds)]);
  for (int x = 0; x <= 23; x += 3) a.d().HexInfo(x, 5, 1 + x % 6) = 1;
  a.Write("mapedit/roadpatterns/1-1-0-0-0-0.txt", "3-3-0-0-0-0,99\r\n-1\r\n");
  a.Write("mapedit/riverpatterns/1-0-0-0-0-0.txt", "0-0-0-0-0-0,0\r\n4-0-0-0-0-0,4\r\n-1\r\n");
}

// The passes as they were before: every lesson opens, writes and closes its file.
void PlainRoads(Session& s) {
  for (int x = 0; x <= s.doc.MapMaxX; ++x)
    for (int y = 0; y <= s.doc.MapMaxY; ++y) {
      const int t = s.doc.HexInfo(x, y, 0);
      if (t == 14 || t == 5 || t == 6 || s.ref.RoadOf(s.doc.HexTile(x, y)) == 1) {
        s.pens.CurTile = s.doc.HexTile(x, y);
        NewRoadPattern(s, static_cast<int16_t>(x), static_cast<int16_t>(y), s.doc.HexTile(x, y));
      }
    }
}
void PlainRivers(Session& s, bool mountains) {
  for (int x = 0; x <= s.doc.MapMaxX; ++x)
    for (int y = 0; y <= s.doc.MapMaxY; ++y) {
      const int t = s.doc.HexInfo(x, y, 0);
      if (t == 2 || t == 11 || t == 12)
        NewRiverPattern(s, static_cast<int16_t>(x), static_cast<int16_t>(y), s.doc.HexTile(x, y));
      else if (mountains && t == 3)
        SavePattern(s, static_cast<int16_t>(x), static_cast<int16_t>(y), s.doc.HexTile(x, y));
    }
}
void PlainForests(Session& s) {
  for (int x = 0; x <= s.doc.MapMaxX; ++x)
    for (int y = 0; y <= s.doc.MapMaxY; ++y)
      if (s.doc.HexInfo(x, y, 0) == 8)
        NewPattern(s, static_cast<int16_t>(x), static_cast<int16_t>(y), s.doc.HexTile(x, y));
}

}  // namespace

TEST(MemoriseFiles, EachPassLeavesTheFilesOfOneWriteALesson) {
  for (unsigned seed : {1u, 2u, 3u}) {
    AutoApp batched, plain;
    Paint(batched, seed);
    Paint(plain, seed);
    MemorizeRoads_Click(*batched.s);
    PlainRoads(*plain.s);
    EXPECT_EQ(batched.p().CurTile, plain.p().CurTile);
    // The mountain pass learns with the pen's terrain; hold a mountain tile.
    batched.p().CurTile = plain.p().CurTile = tl::Mount;
    MemoriseRivers_Click(*batched.s);
    PlainRivers(*plain.s, false);
    mMountains_Click(*batched.s);
    PlainRivers(*plain.s, true);
    // Key F8 over the view, which here shows the whole map.
    batched.p().CurTile = plain.p().CurTile = tl::Forest;
    for (Session* s : {batched.s.get(), plain.s.get()}) {
      s->view.ViewX = s->view.ViewY = 0;
      s->view.ViewCols = s->view.ViewRows = 40;
    }
    LearnVisibleForests(*batched.s);
    PlainForests(*plain.s);

    const auto a = Stores(batched), b = Stores(plain);
    ASSERT_EQ(a.size(), b.size()) << seed;
    EXPECT_GT(a.size(), 20u);  // the passes have learned a good deal
    for (const auto& [path, bytes] : b) {
      ASSERT_TRUE(a.count(path)) << path;
      EXPECT_EQ(a.at(path), bytes) << path << " seed " << seed;
    }
    EXPECT_FALSE(batched.Exists("mapedit/temp.txt"));
  }
}

TEST(MemoriseFiles, ABatchWritesNothingUntilItEnds) {
  AutoApp a;
  Paint(a, 4);
  const std::string path = a.App("mapedit/riverpatterns/0-0-0-0-0-0.txt");
  {
    const StoreBatch batch(*a.s);
    StorePatternPair(*a.s, path, "0-0-0-0-0-0", tl::River, PatternSeed::ZeroPair, {});
    StorePatternPair(*a.s, path, "4-0-0-0-0-0", tl::River11, PatternSeed::ZeroPair, {});
    EXPECT_FALSE(fs::exists(path));
  }
  EXPECT_EQ(a.Text("mapedit/riverpatterns/0-0-0-0-0-0.txt"), "0-0-0-0-0-0,0\r\n0-0-0-0-0-0," +
                                                                 std::to_string(tl::River) + "\r\n4-0-0-0-0-0," +
                                                                 std::to_string(tl::River11) + "\r\n-1\r\n");
}

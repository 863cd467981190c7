// AI distance tables: the fields against a plain run of the two sweeps, the
// .ai layout, the file written over without being cut, loading one block.
#include <random>

#include <gtest/gtest.h>

#include "analysis/aitables.h"
#include "analysis/landmass.h"
#include "platform/fileio.h"
#include "session.h"
#include "testutil.h"
#include "view/geometry.h"

using namespace kv;

namespace {

// The two sweeps exactly as described, on the document's arrays: the raw
// field (0 unreached, d + 1 for d steps).
HexArray<int16_t> PlainField(const Document& d, int ox, int oy) {
  HexArray<int16_t> f;
  f.Allocate(d.W(), d.H());
  const int big = std::max(d.MapMaxX, d.MapMaxY);
  f(ox, oy) = 1;
  const int16_t mass = d.HexLandMass(ox, oy);
  auto inner = [&](int x, int y) { return x >= 1 && x <= d.MapMaxX && y >= 1 && y <= d.MapMaxY; };
  auto visit = [&](int cx, int cy) {
    int nx = cx, ny = cy - 1;
    for (int s = 1; s <= 6; ++s) {
      HexNeighbour(nx, ny, s);
      if (!inner(nx, ny)) continue;
      const int n = f(nx, ny), c = f(cx, cy);
      if (n > 0 && (c == 0 || n + 1 < c)) f(cx, cy) = static_cast<int16_t>(n + 1);
    }
  };
  auto ring = [&](int R) {
    int cx = ox, cy = oy - R;
    for (int s = 1; s <= 6; ++s)
      for (int k = 0; k < R; ++k) {
        HexNeighbour(cx, cy, s);
        if (inner(cx, cy) && d.HexInfo(cx, cy, 0) > 0 && d.HexLandMass(cx, cy) == mass) visit(cx, cy);
      }
  };
  int R = 1;
  do {
    ring(R);
    ++R;
  } while (R < big);
  for (R = big; R >= 1; --R) ring(R);
  return f;
}

struct AIMap {
  kvtest::TempDir dir;
  Session s{dir.path()};
  HeadlessUi& ui = dynamic_cast<HeadlessUi&>(s.ui());
  AIMap(int maxX, int maxY) {
    Document& d = s.doc;
    d.MapMaxX = static_cast<int16_t>(maxX);
    d.MapMaxY = static_cast<int16_t>(maxY);
    d.AllocateAll();
    d.HexInfo.Fill(0);
    for (int x = 0; x <= maxX; ++x)
      for (int y = 0; y <= maxY; ++y) d.HexInfo(x, y, 0) = 1;
    d.MapFile = "test.map";
    d.MapPath = dir / "test.map";
  }
  void Objective(int x, int y) {
    s.doc.HexCtl(x, y, 0) = 1;
    s.doc.HexCtl(x, y, 1) = 1;
  }
  // Land masses and the objective table (columns outer, rows inner).
  void Prepare() {
    ASSERT_TRUE(BuildLandMasses(s));
    Document& d = s.doc;
    std::vector<std::pair<int, int>> objs;
    for (int x = 0; x <= d.MapMaxX; ++x)
      for (int y = 0; y <= d.MapMaxY; ++y)
        if (d.HexCtl(x, y, 1) && d.HexCtl(x, y, 0)) objs.push_back({x, y});
    d.ObjCount = static_cast<int16_t>(objs.size());
    d.ObjList.Allocate(d.ObjCount);
    for (size_t i = 0; i < objs.size(); ++i) {
      d.ObjList(static_cast<int>(i) + 1, 0) = static_cast<int16_t>(objs[i].first);
      d.ObjList(static_cast<int>(i) + 1, 1) = static_cast<int16_t>(objs[i].second);
    }
  }
  std::vector<uint8_t> File() { return kvtest::ReadBytes(dir / "test.ai"); }
  // Entry (x, y) of block i of the file.
  int16_t Entry(const std::vector<uint8_t>& f, int i, int x, int y) {
    const Document& d = s.doc;
    const size_t at = static_cast<size_t>(i - 1) * d.N() * 2 + 2 * (static_cast<size_t>(x) * d.H() + y);
    return static_cast<int16_t>(f[at] | (f[at + 1] << 8));
  }
};

}  // namespace

TEST(AITables, FileSizeAndValuesAroundObjectivesLakesAndSea) {
  AIMap m(32, 30);
  Document& d = m.s.doc;
  for (int y = 0; y <= 30; ++y) d.HexInfo(25, y, 0) = d.HexInfo(26, y, 0) = 0;  // a strait splits the land
  for (int x = 10; x <= 12; ++x)
    for (int y = 8; y <= 14; ++y) d.HexInfo(x, y, 0) = 0;  // a lake
  d.HexInfo(28, 10, 0) = 14;                               // a port on the far side of the strait
  m.Objective(6, 11);
  m.Objective(28, 10);
  m.Prepare();
  ASSERT_TRUE(WriteAIFile(m.s, 2));
  const auto f = m.File();
  ASSERT_EQ(f.size(), 4092u);  // 2 objectives x 33 x 31 hexes x 2 bytes

  EXPECT_EQ(m.Entry(f, 1, 6, 11), 0);
  for (int s = 1; s <= 6; ++s) {
    int x = 6, y = 11;
    HexNeighbour(x, y, s);
    EXPECT_EQ(m.Entry(f, 1, x, y), 1);
    HexNeighbour(x, y, s);
    EXPECT_EQ(m.Entry(f, 1, x, y), 2);
  }
  EXPECT_EQ(m.Entry(f, 1, 11, 11), -1);  // the lake
  EXPECT_EQ(m.Entry(f, 1, 25, 11), -1);  // the strait, also next to land
  EXPECT_EQ(m.Entry(f, 1, 30, 11), -1);  // land of another mass
  EXPECT_EQ(m.Entry(f, 1, 5, 0), -1);    // row 0
  EXPECT_EQ(m.Entry(f, 1, 0, 11), -1);   // column 0
  // Straight behind the lake the path goes round it: longer than the plain
  // distance of 8.
  EXPECT_EQ(HexDistance(6, 11, 14, 11), 8);
  EXPECT_GT(m.Entry(f, 1, 14, 11), 8);

  // The port objective reaches its own land and nothing across the strait.
  EXPECT_EQ(m.Entry(f, 2, 28, 10), 0);
  EXPECT_EQ(m.Entry(f, 2, 29, 10), 1);
  EXPECT_EQ(m.Entry(f, 2, 24, 10), -1);
  EXPECT_EQ(m.Entry(f, 2, 6, 11), -1);

  // Every entry as the plain sweeps give it; HexAIDist keeps the raw field
  // of the last objective.
  for (int i = 1; i <= 2; ++i) {
    const auto p = PlainField(d, d.ObjList(i, 0), d.ObjList(i, 1));
    for (int x = 0; x <= 32; ++x) {
      for (int y = 0; y <= 30; ++y) ASSERT_EQ(m.Entry(f, i, x, y), p(x, y) - 1) << i << " " << x << "," << y;
    }
    if (i == 2) {
      EXPECT_EQ(d.HexAIDist, p);
    }
  }
  EXPECT_EQ(m.s.forms.Label3Caption, "Processing Objective # 2 R: 1");
}

TEST(AITables, ObjectivesInRowAndColumnZeroAndTheInwardSweep) {
  AIMap m(14, 12);
  m.Objective(0, 5);
  m.Objective(7, 0);
  m.Objective(3, 3);
  // A wall that the outward sweep cannot get round in time.
  Document& d = m.s.doc;
  for (int y = 1; y <= 10; ++y) d.HexInfo(5, y, 0) = 0;
  m.Prepare();
  ASSERT_TRUE(WriteAIFile(m.s, 1));
  const auto f = m.File();
  ASSERT_EQ(f.size(), 3u * 15 * 13 * 2);
  // Objectives in column 0 and row 0 (blocks 1 and 3 in column order) hold
  // 0, and nothing else is reached.
  ASSERT_EQ(d.ObjList(2, 0), 3);
  for (int i : {1, 3})
    for (int x = 0; x <= 14; ++x) {
      for (int y = 0; y <= 12; ++y) {
        const bool own = x == d.ObjList(i, 0) && y == d.ObjList(i, 1);
        ASSERT_EQ(m.Entry(f, i, x, y), own ? 0 : -1) << i << " " << x << "," << y;
      }
    }
  // Behind the wall: the two sweeps as described, no more.
  const auto p = PlainField(d, 3, 3);
  int reachedBehind = 0;
  for (int x = 0; x <= 14; ++x)
    for (int y = 0; y <= 12; ++y) {
      ASSERT_EQ(m.Entry(f, 2, x, y), p(x, y) - 1);
      reachedBehind += x > 5 && p(x, y) > 0;
    }
  EXPECT_GT(reachedBehind, 0);
}

TEST(AITables, SameFileOnEveryNumberOfThreadsAsThePlainSweeps) {
  std::mt19937 g(9);
  for (int round = 0; round < 6; ++round) {
    const int mx = 5 + static_cast<int>(g() % 30), my = 5 + static_cast<int>(g() % 30);
    AIMap m(mx, my);
    Document& d = m.s.doc;
    for (int x = 0; x <= mx; ++x)
      for (int y = 0; y <= my; ++y) d.HexInfo(x, y, 0) = (g() % 5 == 0) ? 0 : 2;
    for (int i = 0; i < 7; ++i) m.Objective(static_cast<int>(g() % (mx + 1)), static_cast<int>(g() % (my + 1)));
    m.Prepare();
    std::vector<std::vector<uint8_t>> files;
    std::vector<HexArray<int16_t>> last;
    for (int threads : {1, 2, 5}) {
      std::vector<int> order;
      ASSERT_TRUE(WriteAIFile(m.s, threads, [&](int i) { order.push_back(i); }));
      ASSERT_EQ(static_cast<int>(order.size()), d.ObjCount);
      for (size_t k = 0; k < order.size(); ++k) ASSERT_EQ(order[k], static_cast<int>(k) + 1);
      files.push_back(m.File());
      last.push_back(d.HexAIDist);
    }
    EXPECT_EQ(files[0], files[1]);
    EXPECT_EQ(files[0], files[2]);
    EXPECT_EQ(last[0], last[2]);
    for (int i = 1; i <= d.ObjCount; ++i) {
      const auto p = PlainField(d, d.ObjList(i, 0), d.ObjList(i, 1));
      for (int x = 0; x <= mx; ++x)
        for (int y = 0; y <= my; ++y) ASSERT_EQ(m.Entry(files[0], i, x, y), p(x, y) - 1);
    }
  }
}

TEST(AITables, WrittenOverFromTheStartAndNeverCut) {
  AIMap m(6, 6);
  m.Objective(3, 3);
  m.Prepare();
  std::vector<uint8_t> old(200, 0xAB);
  kvtest::WriteBytes(m.dir / "test.ai", old);
  ASSERT_TRUE(WriteAIFile(m.s, 2));
  auto f = m.File();
  ASSERT_EQ(f.size(), 200u);
  EXPECT_EQ(m.Entry(f, 1, 3, 3), 0);
  EXPECT_EQ(f[0], 0xFF);  // column 0: -1
  EXPECT_EQ(f[1], 0xFF);
  EXPECT_EQ(m.Entry(f, 1, 6, 6), HexDistance(3, 3, 6, 6));  // the block's last entry, at bytes 96 and 97
  EXPECT_EQ(f[98], 0xAB);                                   // the old tail
  EXPECT_EQ(f[199], 0xAB);

  // No objectives: an old file stays as it was, and a missing one is made empty.
  m.s.doc.ObjCount = 0;
  m.s.doc.HexAIDist.Fill(42);
  ASSERT_TRUE(WriteAIFile(m.s, 2));
  EXPECT_EQ(m.File(), f);
  EXPECT_EQ(m.s.doc.HexAIDist(0, 0), 42);
  RemoveFile(m.dir / "test.ai");
  ASSERT_TRUE(WriteAIFile(m.s, 2));
  EXPECT_TRUE(FileExists(m.dir / "test.ai"));
  EXPECT_EQ(FileLen(m.dir / "test.ai"), 0);
}

TEST(AITables, LoadingTheTableOfOneObjective) {
  AIMap m(12, 9);
  Document& d = m.s.doc;
  m.Objective(2, 2);
  m.Objective(9, 7);
  m.Prepare();
  d.HexAIDist.Fill(5);
  LoadAITable(m.s, 9, 7);  // no file yet
  ASSERT_EQ(m.ui.messages.size(), 1u);
  EXPECT_EQ(m.ui.messages[0], "Create objective file then try again");
  EXPECT_EQ(d.HexAIDist(0, 0), 5);

  ASSERT_TRUE(WriteAIFile(m.s, 2));
  const auto f = m.File();
  LoadAITable(m.s, 9, 7);  // the second block, from byte B
  for (int x = 0; x <= 12; ++x)
    for (int y = 0; y <= 9; ++y) ASSERT_EQ(d.HexAIDist(x, y), m.Entry(f, 2, x, y));
  EXPECT_EQ(d.HexAIDist(9, 7), 0);
  EXPECT_EQ(d.HexAIDist(2, 2), HexDistance(9, 7, 2, 2));
  LoadAITable(m.s, 2, 2);
  EXPECT_EQ(d.HexAIDist(2, 2), 0);
  EXPECT_EQ(d.HexAIDist(9, 7), HexDistance(2, 2, 9, 7));
  LoadAITable(m.s, 4, 4);  // no objective there: all 0
  for (int x = 0; x <= 12; ++x)
    for (int y = 0; y <= 9; ++y) ASSERT_EQ(d.HexAIDist(x, y), 0);
  EXPECT_EQ(m.ui.messages.size(), 1u);

  // A file too short for the block: a message, and the field all 0.
  kvtest::WriteBytes(m.dir / "test.ai", std::vector<uint8_t>(f.begin(), f.begin() + f.size() - 1));
  LoadAITable(m.s, 9, 7);
  ASSERT_EQ(m.ui.messages.size(), 2u);
  EXPECT_NE(m.ui.messages[1].find("too few"), std::string::npos);
  EXPECT_EQ(d.HexAIDist(2, 2), 0);
  MemSource none(nullptr, 0);
  HexArray<int16_t> field;
  std::string err;
  EXPECT_FALSE(ReadAIBlock(none, 1, 3, 3, field, &err));
  EXPECT_FALSE(ReadAIBlock(none, 0, 3, 3, field, &err));
}

// The menu command builds the objective table itself and leaves the view at
// the last objective, held within the scroll bars.
TEST(AITables, MenuCommandBuildsTheTableAndLeavesTheViewAtTheLastObjective) {
  AIMap m(30, 20);
  Document& d = m.s.doc;
  ViewState& v = m.s.view;
  v.HScroll1.Max = 18;
  v.VScroll1.Max = 10;
  m.Objective(4, 5);
  m.Objective(25, 14);
  d.HexCtl(10, 10, 1) = 2;  // an objective without an owner is none
  ASSERT_TRUE(BuildLandMasses(m.s));
  BuildAITables_Click(m.s);
  EXPECT_EQ(d.ObjCount, 2);
  EXPECT_EQ(d.HexCtl(10, 10, 1), 0);
  EXPECT_EQ(FileLen(m.dir / "test.ai"), 2 * 31 * 21 * 2);
  EXPECT_EQ(v.ViewX, 18);
  EXPECT_EQ(v.ViewY, 10);
  EXPECT_EQ(v.HScroll1.Value, 18);
  EXPECT_EQ(v.VScroll1.Value, 10);
  EXPECT_EQ(d.HexAIDist(25, 14), 1);
  EXPECT_EQ(m.s.forms.MousePointer, vbArrow);
}

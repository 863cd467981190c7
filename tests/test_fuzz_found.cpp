// Inputs the fuzz targets of fuzz/ found, each kept as a test with its bytes,
// and the byte-level entry points those targets (and the editor) read through.
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "autotile/stores.h"
#include "document/mapfile.h"
#include "document/namestore.h"
#include "editing/clipboard.h"
#include "platform/bitmap.h"
#include "refdata/nations.h"
#include "refdata/refdata.h"

using namespace kv;

namespace {

Document SmallMap(int mx, int my) {
  Document d;
  d.MapMaxX = static_cast<int16_t>(mx);
  d.MapMaxY = static_cast<int16_t>(my);
  d.AllocateAll();
  for (int x = 0; x <= mx; ++x)
    for (int y = 0; y <= my; ++y) d.HexTile(x, y) = static_cast<int16_t>(10 * x + y);
  return d;
}

}  // namespace

// fuzz_bmp: a 32-bit picture whose red mask reaches bit 31 made the mask
// decoder shift a 32-bit word by 32 (undefined; reported by the
// undefined-behaviour sanitizer, see scripts/test --sanitize).
TEST(FuzzFound, BmpBitFieldMaskEndingAtTheTopBit) {
  const std::vector<uint8_t> bmp = {
      'B',  'M',  70,   0,    0, 0, 0,    0, 0, 0,    66, 0, 0, 0,         // file header: pixels at 66
      40,   0,    0,    0,    1, 0, 0,    0, 1, 0,    0,  0, 1, 0, 32, 0,  // 1 x 1, 32 bits
      3,    0,    0,    0,    4, 0, 0,    0, 0, 0,    0,  0, 0, 0, 0,  0,  // bit fields
      0,    0,    0,    0,    0, 0, 0,    0,                               //
      0,    0,    0,    0xFF, 0, 0, 0xFF, 0, 0, 0xFF, 0,  0,               // masks: red 0xFF000000, green, blue
      0x44, 0x33, 0x22, 0x11};                                             // the pixel 0x11223344
  MemSource in(bmp.data(), bmp.size());
  Bitmap out;
  std::string err;
  ASSERT_TRUE(ReadBmp(in, out, &err)) << err;
  EXPECT_EQ(out.GetPixel(0, 0), RGB(0x11, 0x22, 0x33));
}

// A nation list of 32767 nations (a 500 KB "nations.txt") took the sort a
// pass over every name for every place: about a minute under the fuzz build.
// The order must stay that of those passes, whose quirk with empty names is
// kept; this is the pass-by-pass pick, kept here as the reference.
std::vector<int16_t> PickByPasses(const RefData& ref) {
  const int n = ref.NationCount;
  std::vector<int16_t> order(n + 1, 0);
  std::vector<bool> free_(n + 1, true);
  for (int p = 1; p <= n; ++p) {
    std::string best;
    int taken = 0;
    for (int i = 1; i <= n; ++i) {
      if (!free_[i]) continue;
      if (best.empty() || ref.NationName[i] < best) {
        best = ref.NationName[i];
        taken = i;
      }
    }
    order[p] = static_cast<int16_t>(taken);
    free_[taken] = false;
  }
  return order;
}

TEST(FuzzFound, NationSortKeepsThePassOrderWithEmptyAndEqualNames) {
  std::mt19937 rng(11);
  const std::vector<std::string> pool = {"", "", "Avaria", "avaria", "Belmont", "B", "Corvia", "Zed", "zed", "A b"};
  for (int round = 0; round < 400; ++round) {
    RefData ref;
    ref.NationCount = static_cast<int16_t>(rng() % 12);
    ref.NationName.assign(ref.NationCount + 1, "");
    for (int i = 1; i <= ref.NationCount; ++i) ref.NationName[i] = pool[rng() % pool.size()];
    SortNations(ref);
    ASSERT_EQ(ref.NationOrder, PickByPasses(ref)) << "round " << round;
  }
  // "B", "", "C": the name after the empty one comes first.
  RefData three;
  three.NationCount = 3;
  three.NationName = {"", "B", "", "C"};
  SortNations(three);
  EXPECT_EQ(three.NationOrder, (std::vector<int16_t>{0, 3, 2, 1}));
}

TEST(FuzzFound, NationSortOfTheLargestList) {
  RefData ref;
  ref.NationCount = 32767;
  ref.NationName.assign(32768, "");
  for (int i = 1; i <= 32767; ++i) ref.NationName[i] = "N" + std::to_string((i * 7919) % 32768 + 100000);
  SortNations(ref);
  for (int p = 2; p <= 32767; ++p)
    ASSERT_LT(ref.NationName[ref.NationOrder[p - 1]], ref.NationName[ref.NationOrder[p]]) << p;
}

TEST(ByteReaders, SnapshotOfTheOpenMapOfAnotherOrDamaged) {
  Document d = SmallMap(3, 2);
  d.ObjCount = 1;
  d.ObjList.Allocate(1);
  d.ObjList(1, 0) = 2;
  VectorSink snap;
  WriteSnapshotFile(d, snap);

  MemSource in(snap.bytes.data(), snap.bytes.size());
  Document m;
  ASSERT_EQ(ReadSnapshotFile(in, 3, 2, m, nullptr), SnapshotRead::Ok);
  EXPECT_EQ(m.HexTile, d.HexTile);
  EXPECT_EQ(m.ObjList(1, 0), 2);

  MemSource other(snap.bytes.data(), snap.bytes.size());
  Document o;
  ASSERT_EQ(ReadSnapshotFile(other, 3, 3, o, nullptr), SnapshotRead::OtherMap);
  EXPECT_EQ(o.W(), 4);  // the snapshot's own size, for the message
  EXPECT_EQ(o.H(), 3);

  MemSource cut(snap.bytes.data(), snap.bytes.size() - 3);
  std::string err;
  Document c;
  EXPECT_EQ(ReadSnapshotFile(cut, 3, 2, c, &err), SnapshotRead::Damaged);
  EXPECT_NE(err.find("objective"), std::string::npos) << err;
}

TEST(ByteReaders, ClipboardBlockPastedOrRefusedWhole) {
  Document d = SmallMap(4, 4);
  const Document before = d;
  // 2 x 1 block (w = 1, h = 0) of tiles 7, 8.
  std::vector<uint8_t> block = {1, 0, 0, 0, 7, 0, 8, 0};
  ASSERT_TRUE(PasteClipboardBytes(d, 4, 1, block));
  EXPECT_EQ(d.HexTile(4, 1), 7);  // the second tile falls off the map
  EXPECT_EQ(d.HexTile(3, 1), before.HexTile(3, 1));

  d = before;
  block.pop_back();  // one byte short of its block
  EXPECT_FALSE(PasteClipboardBytes(d, 0, 0, block));
  EXPECT_EQ(d.HexTile, before.HexTile);
  const std::vector<uint8_t> negative = {0xFF, 0xFF, 0, 0, 1, 0};
  EXPECT_FALSE(PasteClipboardBytes(d, 0, 0, negative));
  EXPECT_EQ(d.HexTile, before.HexTile);
}

TEST(ByteReaders, HexNamesFromIndexAndHeap) {
  // A 2-column map: slots of (0,0) (1,0) (0,1) (1,1).
  const int32_t slots[4] = {1, 0, -5, 9};
  std::vector<uint8_t> ndx(sizeof slots);
  std::memcpy(ndx.data(), slots, sizeof slots);
  const std::string heap = "Alpha               Beta";  // Beta's record is cut short
  MemSource ndxIn(ndx.data(), ndx.size()), strIn(heap.data(), heap.size());
  EXPECT_EQ(ReadHexName(ndxIn, strIn, 1, 0, 0), "Alpha               ");
  EXPECT_EQ(ReadHexName(ndxIn, strIn, 1, 1, 0), "");
  EXPECT_EQ(ReadHexName(ndxIn, strIn, 1, 0, 1), "");  // negative slot
  EXPECT_EQ(ReadHexName(ndxIn, strIn, 1, 1, 1), "");  // record past the end of the heap
  EXPECT_EQ(ReadHexName(ndxIn, strIn, 1, 0, 2), "");  // slot past the end of the index
}

TEST(ByteReaders, TileListLinesEndAtCrLfOrEither) {
  const std::string list = "017\r\n018\n\r203\r";
  const std::vector<int16_t> lines = TileListLines({reinterpret_cast<const uint8_t*>(list.data()), list.size()});
  EXPECT_EQ(lines, (std::vector<int16_t>{17, 18, 0, 203}));
  EXPECT_EQ(TileListCount(list.size()), 2);  // 14 bytes: two whole 5-byte records
  EXPECT_EQ(TileListCount(1000000), 32767);
}

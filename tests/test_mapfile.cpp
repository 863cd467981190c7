// Map files: every version's layout read and lifted to the current form, the
// older interleaved layout, and damaged files of every length.
#include <cstring>
#include <random>

#include <gtest/gtest.h>

#include "document/mapfile.h"
#include "refdata/refdata.h"

using namespace kv;

namespace {

// A map's content, encoded here independently of the editor's writer.
struct Plain {
  int mx = 4, my = 2;
  std::vector<uint8_t> info, ctl, contour;
  std::vector<int16_t> tile, deploy, land, obj;  // obj: 6 columns of c + 1
  int16_t objCount = 0;
  std::string nation;
  int n() const { return (mx + 1) * (my + 1); }
};

Plain RandomPlain(int mx, int my, int objCount, const std::string& nation, unsigned seed) {
  std::mt19937 g(seed);
  Plain p;
  p.mx = mx;
  p.my = my;
  p.objCount = static_cast<int16_t>(objCount);
  p.nation = nation;
  const int n = p.n();
  for (int i = 0; i < 7 * n; ++i) p.info.push_back(static_cast<uint8_t>(g() % 3));
  for (int i = 0; i < 2 * n; ++i) p.ctl.push_back(static_cast<uint8_t>(g() % 4));
  for (int i = 0; i < n; ++i) {
    p.tile.push_back(static_cast<int16_t>(g() % 300 - 10));
    p.deploy.push_back(static_cast<int16_t>(g() % 5));
    p.land.push_back(static_cast<int16_t>(g() % 1000 - 3));
    p.contour.push_back(static_cast<uint8_t>(g() % 64));
  }
  for (int i = 0; i < 6 * (objCount + 1); ++i) p.obj.push_back(static_cast<int16_t>(g() % 50));
  return p;
}

template <class T>
void Put(std::vector<uint8_t>& b, const T& v) {
  const auto* p = reinterpret_cast<const uint8_t*>(&v);
  b.insert(b.end(), p, p + sizeof v);
}
template <class T>
void PutAll(std::vector<uint8_t>& b, const std::vector<T>& v) {
  for (const T& x : v) Put(b, x);
}

std::vector<uint8_t> Encode(const Plain& p, int version) {
  std::vector<uint8_t> b = {'V', 'e', 'r', 's', 'i', 'o', 'n', ' '};
  Put(b, static_cast<int16_t>(version));
  Put(b, static_cast<int16_t>(p.mx));
  Put(b, static_cast<int16_t>(p.my));
  PutAll(b, p.info);
  PutAll(b, p.tile);
  PutAll(b, p.ctl);
  PutAll(b, p.deploy);
  PutAll(b, p.land);
  if (version > 544) {
    Put(b, p.objCount);
    PutAll(b, p.obj);
  }
  if (version >= 558) {
    Put(b, static_cast<int16_t>(p.nation.size()));
    b.insert(b.end(), p.nation.begin(), p.nation.end());
  }
  if (version > 570) PutAll(b, p.contour);
  return b;
}

bool Read(const std::vector<uint8_t>& bytes, LoadedMap& m, std::string* err = nullptr, const RefData& ref = RefData()) {
  MemSource in(bytes);
  return ReadMapFile(in, ref, m, err);
}

std::vector<uint8_t> Write(const Document& d) {
  VectorSink out;
  WriteMapFile(d, out);
  return out.bytes;
}

}  // namespace

TEST(MapFile, EveryVersionIsReadAndSavedAsTheCurrentForm) {
  for (int version : {544, 545, 557, 558, 570, 571, 580}) {
    SCOPED_TRACE(version);
    Plain p = RandomPlain(5, 3, 3, "northern", static_cast<unsigned>(version));
    LoadedMap m;
    std::string err;
    ASSERT_TRUE(Read(Encode(p, version), m, &err)) << err;
    EXPECT_EQ(m.version, version);
    EXPECT_FALSE(m.oldFormat);
    EXPECT_EQ(m.doc.MapMaxX, 5);
    EXPECT_EQ(m.doc.MapMaxY, 3);
    EXPECT_EQ(m.hasObjList, version > 544);
    EXPECT_EQ(m.nationSet, version >= 558 ? "northern" : "");

    // What a file lacks takes the blank values; the set in use stays.
    Plain expect = p;
    if (version <= 544) {
      expect.objCount = 0;
      expect.obj.assign(6, 0);
    }
    if (version <= 570) expect.contour.assign(p.n(), 0);
    expect.nation = version >= 558 ? p.nation : "inuse";
    m.doc.NationSet = m.nationSet.empty() ? "inuse" : m.nationSet;
    EXPECT_EQ(Write(m.doc), Encode(expect, 580));
  }
}

TEST(MapFile, PlaneOrderIsRowAfterRowWithLayersAsWholePlanes) {
  Plain p = RandomPlain(2, 1, 0, "", 7);  // 3 columns, 2 rows
  LoadedMap m;
  ASSERT_TRUE(Read(Encode(p, 580), m));
  const int n = p.n();
  for (int x = 0; x <= 2; ++x)
    for (int y = 0; y <= 1; ++y) {
      const int i = y * 3 + x;
      EXPECT_EQ(m.doc.HexTile(x, y), p.tile[i]);
      for (int k = 0; k < 7; ++k) EXPECT_EQ(m.doc.HexInfo(x, y, k), p.info[k * n + i]);
      EXPECT_EQ(m.doc.HexCtl(x, y, 1), p.ctl[n + i]);
    }
}

TEST(MapFile, ObjectiveTableIsStoredColumnByColumn) {
  Plain p = RandomPlain(3, 3, 2, "x", 11);
  LoadedMap m;
  ASSERT_TRUE(Read(Encode(p, 580), m));
  ASSERT_EQ(m.doc.ObjCount, 2);
  for (int i = 0; i <= 2; ++i)
    for (int j = 0; j < 6; ++j) EXPECT_EQ(m.doc.ObjList(i, j), p.obj[j * 3 + i]) << i << "," << j;
}

TEST(MapFile, EmptyNationNameAndTrailingBytesAreAccepted) {
  Plain p = RandomPlain(1, 1, 0, "", 3);
  auto bytes = Encode(p, 580);
  bytes.insert(bytes.end(), {1, 2, 3, 4});  // a reader stops after the last item
  LoadedMap m;
  ASSERT_TRUE(Read(bytes, m));
  EXPECT_EQ(m.nationSet, "");
}

TEST(MapFile, TruncatedFilesFailCleanlyAtEveryLength) {
  Plain p = RandomPlain(3, 2, 2, "default", 5);
  const auto whole = Encode(p, 580);
  for (size_t len = 0; len < whole.size(); ++len) {
    std::vector<uint8_t> cut(whole.begin(), whole.begin() + len);
    LoadedMap m;
    m.doc.MapMaxX = 77;  // untouched on failure
    std::string err;
    EXPECT_FALSE(Read(cut, m, &err)) << "length " << len;
    EXPECT_FALSE(err.empty()) << "length " << len;
    EXPECT_EQ(m.doc.MapMaxX, 77);
  }
}

TEST(MapFile, ImpossibleSizesAreRefusedBeforeAllocating) {
  Plain p = RandomPlain(1, 1, 0, "", 1);
  auto bytes = Encode(p, 580);
  std::string err;
  LoadedMap m;
  // 32767 x 32767 hexes claimed by a file of a few dozen bytes.
  int16_t big = 32767;
  std::memcpy(&bytes[10], &big, 2);
  std::memcpy(&bytes[12], &big, 2);
  EXPECT_FALSE(Read(bytes, m, &err));
  EXPECT_NE(err.find("bytes"), std::string::npos) << err;
  int16_t neg = -3;
  std::memcpy(&bytes[10], &neg, 2);
  EXPECT_FALSE(Read(bytes, m, &err));
  EXPECT_NE(err.find("impossible"), std::string::npos) << err;
  // A negative objective count, and a nation name longer than the rest.
  bytes = Encode(p, 580);
  const size_t objAt = 14 + 15 * 4;
  std::memcpy(&bytes[objAt], &neg, 2);
  EXPECT_FALSE(Read(bytes, m, &err));
  bytes = Encode(p, 580);
  int16_t longName = 5000;
  std::memcpy(&bytes[objAt + 2 + 12], &longName, 2);
  EXPECT_FALSE(Read(bytes, m, &err));
}

TEST(OldMapFile, RecordsGoByColumnWithTheRoadAndRetypeRules) {
  // 2 columns, 3 rows: record k is hex (k / 3, k % 3).
  const int mx = 1, my = 2, H = 3, n = 6;
  RefData ref;
  ref.TileMax = 9;
  ref.TileType = {0, 1, 2, 3, 4, 5, 6, 7, 8, 14};
  std::vector<uint8_t> b;
  Put(b, static_cast<int16_t>(mx));
  Put(b, static_cast<int16_t>(my));
  // Hex (0, 1) is stored as a city (5) but its tile 2 says terrain 2; hex
  // (1, 0) is stored as open ground with tile 9, a port.
  for (int k = 0; k < n; ++k) {
    const int x = k / H, y = k % H;
    uint8_t code = (x == 0 && y == 1) ? 5 : 1;
    int16_t tile = (x == 0 && y == 1) ? 2 : (x == 1 && y == 0) ? 9 : 1;
    b.push_back(code);
    for (int s = 1; s <= 6; ++s) b.push_back(static_cast<uint8_t>(x == 1 && y == 2 ? 2 : 0));
    Put(b, tile);
  }
  for (int k = 0; k < n; ++k) {
    b.push_back(static_cast<uint8_t>(k + 1));  // owner
    b.push_back(static_cast<uint8_t>(k == 4 ? 2 : 0));
  }
  for (int k = 0; k < n; ++k) Put(b, static_cast<int16_t>(100 + k));
  for (int k = 0; k < n; ++k) Put(b, static_cast<int16_t>(200 + k));
  LoadedMap m;
  std::string err;
  MemSource in(b);
  ASSERT_TRUE(ReadMapFile(in, ref, m, &err)) << err;
  ASSERT_TRUE(m.oldFormat);
  const Document& d = m.doc;
  EXPECT_EQ(d.HexInfo(0, 1, 0), 2);                               // retyped from the tile
  for (int s = 1; s <= 6; ++s) EXPECT_EQ(d.HexInfo(0, 1, s), 1);  // the stored 5 gave roads
  EXPECT_EQ(d.HexInfo(1, 0, 0), 14);                              // retyped to a port, but no roads added
  EXPECT_EQ(d.HexInfo(1, 0, 1), 0);
  EXPECT_EQ(d.HexInfo(1, 2, 3), 2);
  EXPECT_EQ(d.HexCtl(0, 1, 0), 2);  // second record
  EXPECT_EQ(d.HexCtl(1, 1, 1), 2);  // record 4
  EXPECT_EQ(d.HexDeploy(1, 0), 103);
  EXPECT_EQ(d.HexLandMass(0, 2), 202);
  EXPECT_EQ(d.HexElev(0, 0), 0);  // no elevations in the older format
  EXPECT_EQ(d.ObjCount, 0);
}

TEST(OldMapFile, AFileThatIsNoMapIsRefused) {
  const std::string text = "This is a letter, not a map. It goes on for a while.";
  std::vector<uint8_t> b(text.begin(), text.end());
  LoadedMap m;
  std::string err;
  MemSource in(b);
  EXPECT_FALSE(ReadMapFile(in, RefData(), m, &err));
  EXPECT_NE(err.find("Version"), std::string::npos) << err;
}

TEST(Snapshot, StopsAfterTheObjectiveTable) {
  Plain p = RandomPlain(2, 2, 1, "default", 9);
  LoadedMap m;
  ASSERT_TRUE(Read(Encode(p, 580), m));
  VectorSink out;
  WriteSnapshotFile(m.doc, out);
  auto full = Encode(p, 580);
  const size_t snapLen = 14 + 15 * 9 + 2 + 12 * 2;
  ASSERT_EQ(out.bytes.size(), snapLen);
  EXPECT_TRUE(std::equal(out.bytes.begin(), out.bytes.end(), full.begin()));
}

TEST(LevFile, IsOnePlaneAndAShortFileLeavesTheRest) {
  HexArray<uint8_t> elev;
  elev.Allocate(3, 2);
  std::vector<uint8_t> b = {1, 2, 3, 4};
  MemSource in(b);
  ReadLevFile(in, elev);
  EXPECT_EQ(elev(0, 0), 1);
  EXPECT_EQ(elev(0, 1), 4);
  EXPECT_EQ(elev(2, 1), 0);
}

// Small rules that a one-token change of the code would break without any
// other test noticing: loop bounds, parities, source rows, corners, the
// direction of a line, the narrowest copy and the smallest accepted count.
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "bitmaputil/bitmaputil.h"
#include "document/mapinfo.h"
#include "jumpmap/jumpmap.h"
#include "minisession.h"
#include "pgfiles.h"
#include "platform/bitmap.h"
#include "platform/bytes.h"
#include "platform/filestamp.h"
#include "refdata/tables.h"
#include "scenario/pgformat.h"
#include "session.h"
#include "view/compose.h"
#include "view/geometry.h"
#include "view/spritebank.h"

using namespace kv;

namespace {

std::vector<uint8_t> Bytes(const std::string& s) { return {s.begin(), s.end()}; }

RefData Tiles(int n) {
  RefData r;
  r.TileMax = static_cast<int16_t>(n - 1);
  r.TileType.assign(n, 1);
  r.TileRoad.assign(n, 0);
  return r;
}

}  // namespace

TEST(Strength, EverySideOfAnImportedRoadReachesTheMap) {
  // One hex a side: the bit that gives side k alone (32 is side 3, 16 side 2,
  // 8 side 1, 2 side 6, 1 side 5, 128 side 4).
  kvtest::PgSet set;
  set.W = 5;
  set.H = 0;
  set.roads = {8, 16, 32, 128, 1, 2};
  const std::vector<uint8_t> bytes = set.Bytes();
  MemSource src(bytes);
  SetMap m;
  ASSERT_TRUE(ReadSetFile(src, "x.set", Tiles(4), m, nullptr));
  for (int side = 1; side <= 6; ++side)
    for (int k = 1; k <= 6; ++k)
      EXPECT_EQ(m.doc.HexInfo(side, 0, k), k == side ? 1 : 0) << "file column " << side - 1 << " side " << k;
  // Map column 0 repeats file column 0, side 1 included.
  EXPECT_EQ(m.doc.HexInfo(0, 0, 1), 1);
}

TEST(Strength, OneTerrainIsTheSmallestTableAccepted) {
  RefData ref;
  std::string err;
  ASSERT_TRUE(ParseTerrainTable(Bytes("Terrains,1,x\r\nSea,a,b,c,1,2,3,x"), ref, &err)) << err;
  EXPECT_EQ(ref.TerrainMax, 0);
  EXPECT_FALSE(ParseTerrainTable(Bytes("Terrains,0,x\r\nSea,a,b,c,1,2,3,x"), ref, &err));
  EXPECT_FALSE(ParseTerrainTable(Bytes("Terrains,0.4,x\r\nSea,a,b,c,1,2,3,x"), ref, &err));
}

TEST(Strength, LinesRunEitherWayAndStopShortOfTheirEnd) {
  const uint32_t c = 0x123456;
  Bitmap b(8, 8);
  b.Line(6, 2, 1, 2, c);  // right to left
  for (int x = 0; x < 8; ++x) EXPECT_EQ(b.GetPixel(x, 2), x >= 2 && x <= 6 ? c : 0u) << x;
  Bitmap v(8, 8);
  v.Line(3, 7, 3, 0, c);  // bottom to top
  for (int y = 0; y < 8; ++y) EXPECT_EQ(v.GetPixel(3, y), y >= 1 ? c : 0u) << y;
  Bitmap d(8, 8);
  d.Line(5, 5, 1, 1, c);  // up and left on the diagonal
  for (int k = 0; k < 8; ++k) EXPECT_EQ(d.GetPixel(k, k), k >= 2 && k <= 5 ? c : 0u) << k;
}

TEST(Strength, AStretchOnePixelWideCopiesOneColumn) {
  Bitmap src(4, 3);
  for (int y = 0; y < 3; ++y)
    for (int x = 0; x < 4; ++x) src.SetPixel(x, y, static_cast<uint32_t>(0x10 * (x + 1) + y));
  Bitmap dst(5, 3);
  StretchBlt(dst, 2, 0, 1, 3, src, 1, 0, 1, 3, SRCCOPY);
  for (int y = 0; y < 3; ++y)
    for (int x = 0; x < 5; ++x) EXPECT_EQ(dst.GetPixel(x, y), x == 2 ? src.GetPixel(1, y) : 0u) << x << "," << y;
  // One source column stretched over three.
  Bitmap wide(5, 3);
  StretchBlt(wide, 1, 0, 3, 3, src, 3, 0, 1, 3, SRCCOPY);
  for (int y = 0; y < 3; ++y)
    for (int x = 0; x < 5; ++x)
      EXPECT_EQ(wide.GetPixel(x, y), x >= 1 && x <= 3 ? src.GetPixel(3, y) : 0u) << x << "," << y;
}

TEST(Strength, TheJumpBoxHasTheCornersOfTheView) {
  kvtest::MiniSession m;
  Session& s = *m.s;
  LoadForm5(s);  // draws, and sets the pitches from the screen
  s.ref.JumpColPitch = 5;
  s.ref.JumpRowPitch = 7;
  s.view.ViewCols = 5;
  s.view.ViewRows = 6;
  s.pens.JumpBoxColour = 0xFFFFFF;
  // An odd first column stands level; the last column (even) half a row lower.
  s.view.ViewX = 3;
  s.view.ViewY = 2;
  DrawJumpBox(s);
  const DrawnBox& b = s.jump.Picture2Box;
  EXPECT_TRUE(b.shown);
  EXPECT_EQ(b.x1, 15);
  EXPECT_EQ(b.y1, 14);
  EXPECT_EQ(b.x2, 40);
  EXPECT_EQ(b.y2, 56 + 3);
  EXPECT_EQ(b.colour, 0xFFFFFFu);
  // And the other way round.
  s.view.ViewX = 4;
  s.view.ViewCols = 3;
  DrawJumpBox(s);
  EXPECT_EQ(s.jump.Picture2Box.x1, 20);
  EXPECT_EQ(s.jump.Picture2Box.y1, 14 + 3);
  EXPECT_EQ(s.jump.Picture2Box.x2, 35);
  EXPECT_EQ(s.jump.Picture2Box.y2, 56);
}

TEST(Strength, MapEditClicksTakeTheRowByTheColumnsParity) {
  kvtest::MiniSession m;
  Session& s = *m.s;
  Document& d = s.doc;
  d.MapMaxX = 10;
  d.MapMaxY = 10;
  d.AllocateAll();
  FillHexPixel(s);
  s.bmp.Picture2 = Bitmap(100, 100);
  s.bmp.Picture2Visible = true;
  s.bmp.MapEditMode = 1;
  // A column and a row are 10 pixels: even columns stand half a row lower.
  auto click = [&](double X, double Y) {
    Form4_Picture2_MouseDown(s, 2, 0, X, Y);
    return std::pair<int, int>(s.pens.CurHexX, s.pens.CurHexY);
  };
  EXPECT_EQ(click(20, 16), (std::pair<int, int>(2, 1)));
  EXPECT_EQ(click(30, 16), (std::pair<int, int>(3, 2)));
  EXPECT_EQ(click(40, 24), (std::pair<int, int>(4, 2)));
  EXPECT_EQ(click(50, 24), (std::pair<int, int>(5, 2)));
}

TEST(Strength, AnObjectivesBigFlagIsCopiedFromTheTopOfItsStrip) {
  kvtest::MiniSession m;
  Session& s = *m.s;
  SpriteBank& b = s.sprites;
  // A strip in which every pixel differs, and overlays that change nothing.
  b.FlagBigDC = Bitmap(21 * 3, 14 * 2);
  for (int y = 0; y < 28; ++y)
    for (int x = 0; x < 63; ++x) b.FlagBigDC.SetPixel(x, y, RGB(x * 4, y * 9, 77));
  const int W = s.ref.HexW, H = s.ref.HexH;
  b.FxMaskDC = Bitmap(W * 9, H);
  b.FxMaskDC.Fill(0xFFFFFF);
  b.FxDC = Bitmap(W * 9, H);
  for (int kind : {2, 3}) {
    s.doc.HexCtl(2, 2, 0) = 1;
    s.doc.HexCtl(2, 2, 1) = static_cast<uint8_t>(kind);
    Bitmap dst(W + 40, H + 40);
    PaintHexAt(s, dst, 0, 0, 2, 2, 0);
    const int fx = s.ref.FlagDX, fy = s.ref.FlagDY;
    for (int j = 0; j < 14; ++j)
      for (int i = 0; i < 21; ++i)
        ASSERT_EQ(dst.GetPixel(fx + i, fy + j), b.FlagBigDC.GetPixel(21 + i, j)) << kind << ": " << i << "," << j;
  }
}

TEST(Strength, MapInfoGivesTheHighestIndexesAndCountsObjectivesInTheRightNumber) {
  auto lineOf = [](const MapInfo& i, const std::string& key) {
    const std::string s = FormatMapInfo(i);
    const size_t at = s.find(key);
    return at == std::string::npos ? std::string() : s.substr(at + 18, s.find('\n', at) - at - 18);
  };
  MapInfo size;
  size.width = 7;
  size.height = 5;
  EXPECT_EQ(lineOf(size, "Size:"), "7 x 5 hexes (MapMaxX 6, MapMaxY 4)");
  auto tableLine = [&](int version, int count) {
    MapInfo i;
    i.version = version;
    i.objCount = count;
    return lineOf(i, "Objective table:");
  };
  EXPECT_EQ(tableLine(545, 1), "1 objective");
  EXPECT_EQ(tableLine(545, 0), "0 objectives");
  EXPECT_EQ(tableLine(545, 2), "2 objectives");
  EXPECT_EQ(tableLine(544, 2), "(not stored; rebuilt on load)");
}

TEST(Strength, AFileStampSettlesOnlyWellAfterItsLastWrite) {
  // Two writes a few milliseconds apart can carry the same time: a stamp is
  // trusted only once both of its times lie a tenth of a second behind.
  const int64_t now = 50'000'000'000;
  FileStamp st;
  st.exists = true;
  st.mtimeNs = st.ctimeNs = now - 20'000'000;  // 20 ms ago
  EXPECT_FALSE(StampSettled(st, now));
  st.mtimeNs = st.ctimeNs = now - 99'000'000;
  EXPECT_FALSE(StampSettled(st, now));
  st.mtimeNs = st.ctimeNs = now - 101'000'000;
  EXPECT_TRUE(StampSettled(st, now));
  st.ctimeNs = now - 5'000'000;  // the change time alone is recent
  EXPECT_FALSE(StampSettled(st, now));
  st.ctimeNs = now - 200'000'000;
  st.mtimeNs = now - 5'000'000;
  EXPECT_FALSE(StampSettled(st, now));
}

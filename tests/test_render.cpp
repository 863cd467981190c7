// Drawing the map: the sprite bank, the layers of a hex and their gates,
// contour codes, the buffer and its one-step scrolls.
#include <set>

#include <gtest/gtest.h>

#include "jumpmap/jumpmap.h"
#include "platform/fileio.h"
#include "renderkit.h"
#include "view/compose.h"
#include "view/spritebank.h"

using namespace kv;
using namespace kvtest;

namespace {

// Which probe points of hex (x, y) show their layer's colour.
std::set<int> LayersShown(const RenderSession& r, int x, int y) {
  std::set<int> out;
  for (int k = 0; k < kLayers; ++k)
    if ((r.At(x, y, Probe(k)) & 0xFFFF00) == (LayerColour(k) & 0xFFFF00)) out.insert(k);
  return out;
}

}  // namespace

TEST(PrintHex, KnockOutTileAndEveryLayerInOrder) {
  RenderSession r;
  Session& s = r.s;
  Document& d = s.doc;
  const int x = 3, y = 2;
  s.sprites.BufDC.Fill(0x0A0B0C);
  // Elevation 130 with every neighbour lower: contour code 63.
  for (int nx = 0; nx <= d.MapMaxX; ++nx)
    for (int ny = 0; ny <= d.MapMaxY; ++ny) d.HexElev(nx, ny) = 100;
  d.HexElev(x, y) = 130;
  d.HexCtl(x, y, 0) = 2;
  d.HexCtl(x, y, 1) = 2;
  d.HexInfo(x, y, 1) = 1;
  d.HexInfo(x, y, 4) = 1;
  d.HexInfo(x, y, 2) = 2;
  s.pens.HexOutlines = -1;
  s.pens.SideEdit = 2;

  Print_hex(s, x, y, 0);
  // The tile fills the hexagon; the corner outside it keeps what lay there.
  EXPECT_EQ(r.At(x, y, {59, 49}), TileColour(d.HexTile(x, y)));
  EXPECT_EQ(r.At(x, y, {0, 0}), 0x0A0B0Cu);
  EXPECT_EQ(LayersShown(r, x, y), (std::set<int>{kOutline, kObjective, kRoad1, kRoad1 + 3, kRail1 + 1, kContour}));
  EXPECT_EQ(r.At(x, y, Probe(kContour)), LayerColour(kContour, 63));
  EXPECT_EQ(r.At(x, y, {21, 31}), FlagColour(0, 2));  // the large flag at (FlagDX, FlagDY)
  EXPECT_EQ(r.At(x, y, {20 + 21, 31}), TileColour(d.HexTile(x, y)));

  // The common point shows the last layer drawn; take them away from the
  // top down and each earlier layer comes out on top.
  EXPECT_EQ(r.At(x, y, kCommon), LayerColour(kContour, 63));
  s.pens.ElevMode = -1;
  s.pens.ElevValue = 3;   // 130 - 127
  d.HexElev(x, y) = 100;  // no longer above its neighbours: no contour
  s.pens.ElevValue = 100 - 127;
  Print_hex(s, x, y, 0);
  EXPECT_EQ(r.At(x, y, kCommon), LayerColour(kBlue));
  s.pens.ElevMode = 0;
  Print_hex(s, x, y, 0);
  EXPECT_EQ(r.At(x, y, kCommon), LayerColour(kRail1 + 1));
  d.HexInfo(x, y, 2) = 0;
  Print_hex(s, x, y, 0);
  EXPECT_EQ(r.At(x, y, kCommon), LayerColour(kRoad1 + 3));  // sides in rising order
  s.pens.SideEdit = 0;
  Print_hex(s, x, y, 0);
  EXPECT_EQ(r.At(x, y, kCommon), LayerColour(kObjective));
  d.HexCtl(x, y, 1) = 1;
  Print_hex(s, x, y, 0);
  EXPECT_EQ(r.At(x, y, kCommon), LayerColour(kOutline));
  s.pens.HexOutlines = 0;
  Print_hex(s, x, y, 0);
  EXPECT_EQ(r.At(x, y, kCommon), TileColour(d.HexTile(x, y)));
}

TEST(PrintHex, MarkerGates) {
  RenderSession r;
  Session& s = r.s;
  Document& d = s.doc;
  const int x = 4, y = 3;
  const uint32_t tile = TileColour(d.HexTile(x, y));
  const Pt flag{21, 31}, small{26, 31};
  d.HexDeploy(x, y) = 3;
  d.HexCtl(x, y, 0) = 1;
  d.HexCtl(x, y, 1) = 2;
  // Deployment mode: the deployment flag only, no control marker.
  s.pens.CtlMode = 1;
  Print_hex(s, x, y, 0);
  EXPECT_EQ(r.At(x, y, flag), FlagColour(1, 3));
  EXPECT_EQ(LayersShown(r, x, y).count(kObjective), 0u);
  // Other modes: the control marker and not the deployment flag.
  for (int16_t mode : {0, 2, 3}) {
    s.pens.CtlMode = mode;
    Print_hex(s, x, y, 0);
    EXPECT_EQ(r.At(x, y, flag), FlagColour(0, 1)) << mode;
    EXPECT_EQ(LayersShown(r, x, y).count(kObjective), 1u);
  }
  s.pens.CtlMode = 0;
  // Kinds: 1 the middle flag, 3 large flag and oil overlay, 0 the small flag
  // 5 pixels further right only while road control is shown, 4 nothing.
  d.HexCtl(x, y, 1) = 1;
  Print_hex(s, x, y, 0);
  EXPECT_EQ(r.At(x, y, flag), FlagColour(1, 1));
  EXPECT_EQ(r.At(x, y, {20 + 20, 31}), tile);
  d.HexCtl(x, y, 1) = 3;
  Print_hex(s, x, y, 0);
  EXPECT_EQ(r.At(x, y, flag), FlagColour(0, 1));
  EXPECT_EQ(LayersShown(r, x, y), std::set<int>{kOil});
  d.HexCtl(x, y, 1) = 0;
  s.pens.ShowRoadControl = 0;
  Print_hex(s, x, y, 0);
  EXPECT_EQ(r.At(x, y, small), tile);
  EXPECT_EQ(r.At(x, y, flag), tile);
  s.pens.ShowRoadControl = -1;
  Print_hex(s, x, y, 0);
  EXPECT_EQ(r.At(x, y, small), FlagColour(2, 1));
  EXPECT_EQ(r.At(x, y, {24, 31}), tile);
  EXPECT_EQ(r.At(x, y, {25 + 9, 31}), tile);
  d.HexCtl(x, y, 1) = 4;
  Print_hex(s, x, y, 0);
  EXPECT_EQ(r.At(x, y, flag), tile);
  EXPECT_TRUE(LayersShown(r, x, y).empty());
  d.HexCtl(x, y, 0) = 0;
  d.HexCtl(x, y, 1) = 2;  // an objective without owner shows nothing
  Print_hex(s, x, y, 0);
  EXPECT_EQ(r.At(x, y, flag), tile);
}

TEST(PrintHex, RoadsOnlyWhileSideEditingRailroadsAlways) {
  RenderSession r;
  Session& s = r.s;
  for (int side = 1; side <= 6; ++side) s.doc.HexInfo(2, 2, side) = side % 2 ? 1 : 2;
  Print_hex(s, 2, 2, 0);
  EXPECT_EQ(LayersShown(r, 2, 2), (std::set<int>{kRail1 + 1, kRail1 + 3, kRail1 + 5}));
  s.pens.SideEdit = 2;
  Print_hex(s, 2, 2, 0);
  EXPECT_EQ(LayersShown(r, 2, 2), (std::set<int>{kRoad1, kRoad1 + 2, kRoad1 + 4, kRail1 + 1, kRail1 + 3, kRail1 + 5}));
}

TEST(PrintHex, BlueOverlayConditions) {
  RenderSession r;
  Session& s = r.s;
  Pens& p = s.pens;
  auto blue = [&](int x, int y, int16_t mode = 0) {
    s.sprites.BufDC.Fill(0);
    Print_hex(s, static_cast<int16_t>(x), static_cast<int16_t>(y), mode);
    return LayersShown(r, x, y).count(kBlue) == 1;
  };
  EXPECT_FALSE(blue(3, 3));
  EXPECT_TRUE(blue(3, 3, 2));  // a grid hex
  EXPECT_FALSE(blue(3, 3, 1));
  p.SelX1 = 2;
  p.SelX2 = 4;
  p.SelY1 = 1;
  p.SelY2 = 3;
  EXPECT_TRUE(blue(2, 1));
  EXPECT_TRUE(blue(4, 3));
  EXPECT_FALSE(blue(5, 3));
  EXPECT_FALSE(blue(4, 4));
  p.SelY1 = 0;
  p.SelY2 = 0;  // an end at 0 shows no selection
  EXPECT_FALSE(blue(3, 0));
  p.SelX1 = -1;
  p.SelY2 = 3;
  EXPECT_FALSE(blue(3, 0));
  p.SelX1 = 0;
  p.SelX2 = 0;
  p.SelY1 = 0;
  p.SelY2 = 0;
  p.HighlightTile = s.doc.HexTile(5, 5);
  EXPECT_TRUE(blue(5, 5));
  EXPECT_FALSE(blue(5, 6));
  p.HighlightTile = -1;
  s.doc.HexElev(6, 6) = 127 + 4;
  p.ElevValue = 4;
  EXPECT_FALSE(blue(6, 6));
  p.ElevMode = -1;
  EXPECT_TRUE(blue(6, 6));
  EXPECT_FALSE(blue(6, 5));
  // Twice looks the same as once.
  Print_hex(s, 6, 6, 0);
  const Bitmap once = s.sprites.BufDC;
  p.HighlightTile = s.doc.HexTile(6, 6);
  Print_hex(s, 6, 6, 2);
  EXPECT_EQ(s.sprites.BufDC, once);
}

TEST(PrintHex, HexesOffTheMapAreDropped) {
  RenderSession r(5, 5);
  Session& s = r.s;
  s.sprites.BufDC.Fill(0x123456);
  const Bitmap before = s.sprites.BufDC;
  for (auto [x, y] : {std::pair{-1, 0}, {0, -1}, {6, 0}, {0, 6}, {-5, -5}})
    Print_hex(s, static_cast<int16_t>(x), static_cast<int16_t>(y), 0);
  EXPECT_EQ(s.sprites.BufDC, before);
}

TEST(Contour, CodesAndTheirWriteToHexContour) {
  RenderSession r(6, 6);
  Session& s = r.s;
  Document& d = s.doc;
  auto code = [&](int x, int y) {
    int16_t c = 99;
    ContourCode(s, static_cast<int16_t>(x), static_cast<int16_t>(y), c);
    return c;
  };
  // Uniform: no neighbour lower.
  d.HexContour(3, 3) = 17;
  EXPECT_EQ(code(3, 3), -1);
  EXPECT_EQ(d.HexContour(3, 3), 0);
  // All six lower: 63.
  d.HexElev(3, 3) = 140;
  EXPECT_EQ(code(3, 3), 63);
  EXPECT_EQ(d.HexContour(3, 3), 63);
  // Only the hex across side 1 not lower: code 1; across side 6 as well: 33.
  int nx = 3, ny = 3;
  HexNeighbour(nx, ny, 1);
  d.HexElev(nx, ny) = 140;
  EXPECT_EQ(code(3, 3), 1);
  nx = 3, ny = 3;
  HexNeighbour(nx, ny, 6);
  d.HexElev(nx, ny) = 200;
  EXPECT_EQ(code(3, 3), 33);
  EXPECT_EQ(d.HexContour(3, 3), 33);
  // The corner (0, 0): sides 3, 4 and 5 lead off the map and count as not
  // lower; with all on-map neighbours lower only their bits are set.
  d.HexElev(0, 0) = 150;
  EXPECT_EQ(code(0, 0), 4 + 8 + 16);
  // An odd column on the top edge: sides 4, 5, 6 are off the map.
  d.HexElev(5, 0) = 150;
  EXPECT_EQ(code(5, 0), 8 + 16 + 32);
  // The corner with no lower neighbour: -1 and 0 stored.
  d.HexElev(6, 6) = 10;
  EXPECT_EQ(code(6, 6), -1);
  EXPECT_EQ(d.HexContour(6, 6), 0);
  // Drawing a hex refreshes its code and draws that cell of the sheet.
  d.HexContour(0, 0) = 0;
  Print_hex(s, 0, 0, 0);
  EXPECT_EQ(d.HexContour(0, 0), 28);
  EXPECT_EQ(r.At(0, 0, Probe(kContour)), LayerColour(kContour, 28));
}

TEST(Buffer, SizeFirstViewAndGridHexes) {
  RenderSession r(40, 40);
  Session& s = r.s;
  s.view.ViewCols = 20;
  s.view.ViewRows = 14;
  int32_t w, h;
  ComputeBufferSize(s, w, h);
  EXPECT_EQ(w, 1050);
  EXPECT_EQ(h, 875);
  s.ref.HexH = 49;  // 750 + 122.5 rounds to the even 872
  ComputeBufferSize(s, w, h);
  EXPECT_EQ(h, 872);
  s.ref.HexH = 50;

  r.SetView(20, 14, 0, 0);
  s.pens.GridOn = -1;
  s.pens.GridX = 15;
  s.pens.GridY = 5;
  RedrawBuffers(s);
  for (int x = 0; x <= 21; ++x)
    for (int y = 0; y <= 15; ++y)
      EXPECT_EQ(LayersShown(r, x, y).count(kBlue), (x % 15 == 0 || y % 5 == 0) ? 1u : 0u) << x << "," << y;
  // Picture1 is the buffer from (ColPitch, RowPitch).
  const Bitmap& pic = s.sprites.Picture1;
  ASSERT_EQ(pic.Width(), s.view.ViewPixW);
  ASSERT_EQ(pic.Height(), s.view.ViewPixH);
  for (int y = 0; y < pic.Height(); y += 7)
    for (int x = 0; x < pic.Width(); x += 5) ASSERT_EQ(pic.GetPixel(x, y), s.sprites.BufDC.GetPixel(x + 45, y + 50));

  // BuildViewBuffer makes the buffer of that size and draws the first view.
  s.pens.GridOn = 0;
  s.sprites.BufDC = Bitmap();
  BuildViewBuffer(s);
  EXPECT_EQ(s.sprites.BufDC.Width(), 1050);
  EXPECT_EQ(s.sprites.BufDC.Height(), 875);
  EXPECT_EQ(r.At(5, 5, {30, 30}), TileColour(s.doc.HexTile(5, 5)));
}

TEST(Buffer, RedrawClearsEverythingAndLeavesBeyondTheMapBlack) {
  RenderSession r(5, 4);
  Session& s = r.s;
  r.SetView(10, 8, 0, 0);
  s.sprites.BufDC.Fill(0x777777);
  RedrawBuffers(s);
  const Bitmap& b = s.sprites.BufDC;
  // Beyond the last column's cell and below the last row: black.
  const int right = 45 + 5 * 45 + 60, bottom = 50 + 4 * 50 + 25 + 50;
  for (int y = 0; y < b.Height(); ++y)
    for (int x = right; x < b.Width(); ++x) ASSERT_EQ(b.GetPixel(x, y), 0u);
  for (int y = bottom; y < b.Height(); ++y)
    for (int x = 0; x < b.Width(); ++x) ASSERT_EQ(b.GetPixel(x, y), 0u);
  for (int y = 0; y < b.Height(); ++y)
    for (int x = 0; x < b.Width(); ++x) ASSERT_NE(b.GetPixel(x, y), 0x777777u);
  EXPECT_EQ(r.At(5, 4, {30, 30}), TileColour(s.doc.HexTile(5, 4)));
}

// With HexSlant equal to HexW the cells tile the plane without overlap, so
// every pixel of the view belongs to one hex and a hex's tile colour tells
// which. A one-step scroll must then show exactly what a full redraw of the
// new view shows, wherever the full redraw shows a hex that the scrolled
// buffer had or drew (the rows above the view that only the full redraw
// draws are left out by the procedure).
TEST(Scroll, OneStepMatchesAFullRedrawOfTheNewView) {
  struct Move {
    const char* name;
    int dx, dy;
    void (*fn)(MapView&);
  };
  const Move moves[] = {
      {"left", -1, 0, ScrollLeft}, {"right", 1, 0, ScrollRight}, {"up", 0, -1, ScrollUp}, {"down", 0, 1, ScrollDown}};
  for (const Move& m : moves) {
    SCOPED_TRACE(m.name);
    RenderSession r(30, 24, 16 * 50);
    Session& s = r.s;
    Document& d = s.doc;
    for (int x = 0; x <= d.MapMaxX; ++x)
      for (int y = 0; y <= d.MapMaxY; ++y) d.HexTile(x, y) = static_cast<int16_t>(x + 31 * y);
    s.ref.HexW = 40;
    s.ref.HexH = 40;
    s.ref.HexSlant = 40;
    s.ref.HexInset = 0;
    s.ref.ColPitch = 40;
    s.ref.RowPitch = 40;
    s.ref.FlagDX = 10;  // flags inside the cell
    s.ref.FlagDY = 10;
    FillHexPixel(s);
    MakeSprites(s, 16 * 50);
    s.sprites.BlackHexDC.Fill(0);  // whole cells
    for (int t = 0; t < 800; ++t) s.sprites.TileSheet.SetPixel((t % 16) * 40, (t / 16) * 40, TileColour(t));
    // Elevations that make contours, a few flags and railroads.
    for (int x = 0; x <= d.MapMaxX; ++x)
      for (int y = 0; y <= d.MapMaxY; ++y) {
        d.HexElev(x, y) = static_cast<uint8_t>(120 + (x * 3 + y * 5) % 7);
        if ((x + y) % 5 == 0) {
          d.HexCtl(x, y, 0) = 1 + (x % 3);
          d.HexCtl(x, y, 1) = static_cast<uint8_t>(y % 4);
        }
        if ((x * y) % 4 == 1) d.HexInfo(x, y, 1 + (x % 6)) = 2;
      }
    const int vx = 6, vy = 5;
    r.SetView(9, 7, vx, vy);
    RedrawBuffers(s);
    const Bitmap before = s.sprites.Picture1;
    s.view.ViewX = vx + m.dx;
    s.view.ViewY = vy + m.dy;
    m.fn(s);
    BlitPic1(s);
    const Bitmap scrolled = s.sprites.Picture1;
    RedrawBuffers(s);
    const Bitmap full = s.sprites.Picture1;
    ASSERT_EQ(scrolled.Width(), full.Width());

    // Hexes present in the scrolled buffer: those of the old buffer's loops,
    // and the column or row that came in.
    auto inOld = [&](int x, int y) { return x >= vx - 1 && x <= vx + 9 + 1 && y >= vy - 2 && y <= vy + 7 + 1; };
    const int nvx = vx + m.dx, nvy = vy + m.dy;
    auto drawnNow = [&](int x, int y) {
      if (m.dx == -1) return x == nvx && y >= nvy && y <= nvy + 8;
      if (m.dx == 1) return x == nvx + 10 && y >= nvy && y <= nvy + 8;
      if (m.dy == -1) return y == nvy && x >= nvx && x <= nvx + 10;
      return y == nvy + 8 && x >= nvx && x <= nvx + 10;
    };
    int compared = 0, incoming = 0;
    for (int py = 0; py < full.Height(); ++py)
      for (int px = 0; px < full.Width(); ++px) {
        // The hex under this view pixel, from the geometry.
        const int mx = px + nvx * 40, my = py + nvy * 40;
        const int hx = mx / 40;
        const int hy = (my - (hx % 2 == 0 ? 20 : 0)) < 0 ? -1 : (my - (hx % 2 == 0 ? 20 : 0)) / 40;
        if (hy < 0 || hx > d.MapMaxX || hy > d.MapMaxY) continue;
        if (!inOld(hx, hy) && !drawnNow(hx, hy)) continue;
        ++compared;
        if (drawnNow(hx, hy)) ++incoming;
        ASSERT_EQ(scrolled.GetPixel(px, py), full.GetPixel(px, py))
            << "view pixel " << px << "," << py << " hex " << hx << "," << hy;
      }
    EXPECT_GT(compared, full.Width() * full.Height() * 8 / 10);
    EXPECT_GT(incoming, 500);  // the incoming column or row, partly in view
    // And the view really moved.
    EXPECT_NE(scrolled, before);
  }
}

TEST(SpriteBank, LoadsSheetsFlagsAndTileSheet) {
  RenderSession r;
  Session& s = r.s;
  MakeDirs(s.App("bmp"));
  MakeDirs(s.App("flags"));
  auto write = [&](const std::string& rel, int w, int h, uint32_t colour) {
    Bitmap b(w, h);
    b.Fill(colour);
    std::string err;
    ASSERT_TRUE(WriteBmpFile(s.App(rel), b, &err)) << err;
  };
  // Tile sheet: 16 cells by 3 rows and a bit: TileMax 47.
  write("bmp/mapl.bmp", 16 * 60 + 10, 3 * 50 + 49, 0x010203);
  ASSERT_TRUE(LoadTileSheet(s));
  EXPECT_EQ(s.ref.TileMax, 47);
  EXPECT_EQ(s.sprites.TileSheet.GetPixel(5, 5), 0x010203u);
  write("bmp/hexp.bmp", 60, 50, 0x445566);
  write("bmp/rrm.bmp", 360, 50, 0xFFFFFF);
  // Flags: Avaria has its own middle flag, the others take the blank; the
  // large strip has no files at all; small flags larger than a cell are cut.
  write("flags/Avaria02.bmp", 20, 13, 0xAA0000);
  write("flags/blank02.bmp", 20, 13, 0x00BB00);
  write("flags/blank03.bmp", 30, 30, 0x0000CC);
  write("flags/Corvia03.bmp", 5, 5, 0x0000DD);  // smaller: the rest stays black
  s.ref.NationCount = 3;
  s.ref.NationName = {"", "Avaria", "Belmont", "Corvia"};
  LoadSpriteBank(s);
  EXPECT_TRUE(r.ui.messages.empty());
  EXPECT_TRUE(s.sprites.BlackHexDC.Empty());
  EXPECT_TRUE(s.sprites.ContourDC.Empty());
  EXPECT_EQ(s.sprites.HexLineDC.GetPixel(1, 1), 0x445566u);
  EXPECT_EQ(s.sprites.RailMaskDC.Width(), 360);
  const Bitmap& mid = s.sprites.FlagDC;
  ASSERT_EQ(mid.Width(), 80);
  ASSERT_EQ(mid.Height(), 13);
  EXPECT_EQ(mid.GetPixel(5, 5), 0u);  // cell 0 is never drawn into
  EXPECT_EQ(mid.GetPixel(25, 5), 0xAA0000u);
  EXPECT_EQ(mid.GetPixel(45, 5), 0x00BB00u);
  EXPECT_EQ(mid.GetPixel(65, 12), 0x00BB00u);
  const Bitmap& sm = s.sprites.FlagSmallDC;
  ASSERT_EQ(sm.Width(), 36);
  EXPECT_EQ(sm.GetPixel(9 + 8, 8), 0x0000CCu);
  EXPECT_EQ(sm.GetPixel(27 + 4, 4), 0x0000DDu);
  EXPECT_EQ(sm.GetPixel(27 + 6, 6), 0u);
  EXPECT_EQ(s.sprites.FlagBigDC.Width(), 84);
  EXPECT_EQ(s.sprites.FlagBigDC.GetPixel(30, 5), 0u);

  // A missing tile sheet: false, an empty sheet.
  RemoveFile(s.App("bmp/mapl.bmp"));
  EXPECT_FALSE(LoadTileSheet(s));
  EXPECT_TRUE(s.sprites.TileSheet.Empty());
}

TEST(Marks, BlueAndYellowHexOnlyOnTheViewSurface) {
  RenderSession r;
  Session& s = r.s;
  r.SetView(8, 6, 2, 1);
  RedrawBuffers(s);
  const Bitmap buf = s.sprites.BufDC, pic = s.sprites.Picture1;
  BlueHex(s, 4, 3);
  EXPECT_EQ(s.sprites.BufDC, buf);
  int32_t px, py;
  HexToPixel(s.ref, 4, 3, px, py);
  const int sx = px - 45 * 2, sy = py - 50 * 1;
  EXPECT_EQ(s.sprites.Picture1.GetPixel(sx + Probe(kBlue).x, sy + Probe(kBlue).y), LayerColour(kBlue));
  YellowHex(s, 4, 3);  // 300: the objective's cell with this geometry
  EXPECT_EQ(s.sprites.Picture1.GetPixel(sx + Probe(kObjective).x, sy + Probe(kObjective).y), LayerColour(kObjective));
  BlitPic1(s);
  EXPECT_EQ(s.sprites.Picture1, pic);
  // A hex far outside the view changes nothing.
  BlueHex(s, 20, 14);
  EXPECT_EQ(s.sprites.Picture1, pic);
}

TEST(Marks, RedrawHexUpdatesJumpMapBufferAndScreen) {
  RenderSession r;
  Session& s = r.s;
  r.SetView(8, 6, 0, 0);
  RedrawBuffers(s);
  s.doc.HexTile(3, 2) = 9;
  s.doc.HexInfo(3, 2, 0) = 7;
  RedrawHex(s, 3, 2);
  EXPECT_TRUE(s.forms.Form5Loaded);
  EXPECT_EQ(s.jump.Picture2.GetPixel(3, 2), TerrainCol(7));
  EXPECT_EQ(r.At(3, 2, {30, 30}), TileColour(9));
  int32_t px, py;
  HexToPixel(s.ref, 3, 2, px, py);
  EXPECT_EQ(s.sprites.Picture1.GetPixel(px + 30, py + 30), TileColour(9));
}

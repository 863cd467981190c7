// The core of the editor's comfort: the zoom's steps and the origin that keeps
// the hex under the pointer, the hexes a pointer's path enters, the live jump
// map, and the pen in words.
#include <random>
#include <set>

#include <gtest/gtest.h>

#include "editing/penstatus.h"
#include "jumpmap/jumpmap.h"
#include "jumpmap/livejump.h"
#include "renderkit.h"
#include "view/zoom.h"

using namespace kv;
using namespace kvtest;

TEST(HandZoom, StepsStayWithinTheRange) {
  EXPECT_EQ(ZoomStep(100, +1), 125);
  EXPECT_EQ(ZoomStep(100, -1), 75);
  EXPECT_EQ(ZoomStep(25, -1), 25);
  EXPECT_EQ(ZoomStep(200, +1), 200);
  EXPECT_EQ(ZoomStep(60, -1), 50);  // a zoom between steps goes to the next one
  int z = 100, n = 0;
  while (z > kZoomMin && ++n < 20) z = ZoomStep(z, -1);
  EXPECT_EQ(z, 25);
  EXPECT_LT(n, 10);
}

TEST(HandZoom, TheHexUnderThePointerStaysUnderIt) {
  RenderSession r(200, 150);
  Session& s = r.s;
  r.SetView(30, 20, 40, 30);
  std::mt19937 rng(7);
  const int zooms[] = {25, 33, 50, 67, 75, 100, 125, 150, 175, 200};
  for (int i = 0; i < 400; ++i) {
    const int from = zooms[rng() % 10], to = zooms[rng() % 10];
    s.view.ViewX = 20 + static_cast<int>(rng() % 60);
    s.view.ViewY = 20 + static_cast<int>(rng() % 60);
    const double wx = rng() % 1200, wy = rng() % 800;
    int16_t hx = 0, hy = 0, nx = 0, ny = 0;
    s.view.Zoom = static_cast<int16_t>(from);
    ViewPointHex(s, wx, wy, hx, hy);
    int32_t vx = 0, vy = 0;
    OriginKeepingPoint(s, wx, wy, to, vx, vy);
    s.view.ViewX = vx;
    s.view.ViewY = vy;
    s.view.Zoom = static_cast<int16_t>(to);
    ViewPointHex(s, wx, wy, nx, ny);
    ASSERT_EQ(nx, hx) << from << "% -> " << to << "% at " << wx << "," << wy;
    ASSERT_EQ(ny, hy) << from << "% -> " << to << "% at " << wx << "," << wy;
  }
}

TEST(HandStroke, APathEntersEveryHexItCrossesOnceInOrder) {
  RenderSession r(60, 40);
  Session& s = r.s;
  r.SetView(20, 12, 3, 2);
  std::mt19937 rng(11);
  for (int i = 0; i < 300; ++i) {
    const double X0 = rng() % 900, Y0 = rng() % 600, X1 = rng() % 900, Y1 = rng() % 600;
    const std::vector<PathHex> path = HexesAlong(s, X0, Y0, X1, Y1);
    int16_t px = 0, py = 0;
    ViewPointHex(s, X0, Y0, px, py);
    for (const PathHex& h : path) {
      // Each listed hex is the one under its point, and a neighbour of the
      // one before in the rectangular grid of the hit test: nothing skipped.
      int16_t hx = 0, hy = 0;
      ViewPointHex(s, h.X, h.Y, hx, hy);
      ASSERT_EQ(hx, h.x);
      ASSERT_EQ(hy, h.y);
      ASSERT_FALSE(hx == px && hy == py);
      ASSERT_LE(std::abs(hx - px), 1);
      ASSERT_LE(std::abs(hy - py), 1);
      px = hx;
      py = hy;
    }
    int16_t ex = 0, ey = 0;
    ViewPointHex(s, X1, Y1, ex, ey);
    if (!path.empty() || !(ex == px && ey == py)) {
      ASSERT_EQ(px, ex);
      ASSERT_EQ(py, ey);
    }
  }
  // A fast move across the view: every column between is entered.
  const std::vector<PathHex> across = HexesAlong(s, 10, 300, 890, 300);
  std::set<int> columns;
  for (const PathHex& h : across) columns.insert(h.x);
  int16_t a = 0, b = 0, c = 0, d = 0;
  ViewPointHex(s, 10, 300, a, b);
  ViewPointHex(s, 890, 300, c, d);
  for (int x = a + 1; x <= c; ++x) EXPECT_EQ(columns.count(x), 1u) << x;
}

TEST(HandJumpMap, FollowingEditsGivesTheFullDrawingsPicture) {
  for (int screen : {1920, 200}) {  // the hex picture, then one dot a hex
    SCOPED_TRACE(screen);
    RenderSession r(40, 30);
    Session& s = r.s;
    s.view.ScreenW = screen;
    Document& d = s.doc;
    LoadForm5(s);
    ASSERT_TRUE(s.jump.ShowsDrawnMap);
    std::mt19937 rng(5);
    for (int i = 0; i < 200; ++i) {
      const int x = static_cast<int>(rng() % 41), y = static_cast<int>(rng() % 31);
      d.HexInfo(x, y, 0) = static_cast<uint8_t>(rng() % 15);
      d.HexTile(x, y) = static_cast<int16_t>(rng() % 64);
      d.HexCtl(x, y, 0) = static_cast<uint8_t>(rng() % 4);
      d.HexCtl(x, y, 1) = static_cast<uint8_t>(rng() % 4);
      ASSERT_TRUE(JumpMapFollow(s, HexRect::Hex(x, y)));
    }
    const Bitmap followed = s.jump.Picture2;
    DrawStrategicMap(s);
    EXPECT_TRUE(followed == s.jump.Picture2);
  }
}

TEST(HandJumpMap, AFlagViewIsNotDrawnOver) {
  RenderSession r(20, 14);
  Session& s = r.s;
  LoadForm5(s);
  s.jump.ShowsDrawnMap = false;  // as a flag view leaves it
  const Bitmap before = s.jump.Picture2;
  s.doc.HexInfo(3, 3, 0) = 7;
  EXPECT_FALSE(JumpMapFollow(s, HexRect::Hex(3, 3)));
  EXPECT_TRUE(before == s.jump.Picture2);
  s.forms.Form5Loaded = false;
  s.jump.ShowsDrawnMap = true;
  EXPECT_FALSE(JumpMapFollow(s, HexRect::Hex(3, 3)));
}

TEST(HandPen, TheStatusBarsWords) {
  RenderSession r;
  Session& s = r.s;
  s.ref.TerrainName[1] = "Clear";
  s.ref.TileType.assign(64, 0);
  s.ref.TileType[17] = 1;
  Pens& p = s.pens;
  p.CurTile = 17;
  PenStatus t = DescribePen(s);
  EXPECT_EQ(t.tile, "Tile 17 (x11) Clear");
  EXPECT_EQ(t.mode, "Tiles");
  EXPECT_EQ(t.autoTile, "Auto-tile off");
  EXPECT_EQ(t.random, "Random tiles off");
  EXPECT_EQ(t.elevation, "Elevation pen off");
  p.SideEdit = 2;
  p.CurSide = 3;
  p.CurSideKind = 2;
  p.ClearSides = -1;
  EXPECT_EQ(DescribePen(s).mode, "Railroad sides: side 3, clear sides");
  p.SideEdit = 0;
  p.ClearSides = 0;
  p.CtlMode = 2;
  p.CurNation = 2;
  p.CurObjType = 2;
  EXPECT_EQ(DescribePen(s).mode, "Hex control: Belmont, primary");
  p.CtlMode = 1;
  EXPECT_EQ(DescribePen(s).mode, "Deployment: Belmont");
  p.ElevMode = -1;
  p.ElevValue = -12;
  t = DescribePen(s);
  EXPECT_EQ(t.mode, "Elevation -12");
  EXPECT_EQ(t.elevation, "Elevation pen -12");
  p.AutoTile = 0;
  p.AutoTileResume = 1;
  p.RandomMode = -1;
  t = DescribePen(s);
  EXPECT_EQ(t.autoTile, "Auto-tile after one click");
  EXPECT_EQ(t.random, "Random tiles on");
  EXPECT_EQ(ZoomText(50), "Zoom 50 %");
  EXPECT_EQ(HexText(12, 7), "Hex (12, 7)");
}

TEST(HandPen, TheKeyListNamesEveryWindowsKeys) {
  std::set<std::string> windows;
  for (const KeyHelp& k : AllKeys()) windows.insert(k.window);
  for (const char* w :
       {"Main window", "Tile picker", "Tile data screens", "Control form", "Jump map", "Bitmap utility", "File dialog"})
    EXPECT_EQ(windows.count(w), 1u) << w;
  auto has = [](const char* window, const char* key) {
    for (const KeyHelp& k : AllKeys())
      if (std::string(k.window) == window && std::string(k.key) == key) return true;
    return false;
  };
  for (const char* key : {"F1", "F2", "F3", "F4", "F5", "F6", "F7", "F8", "Arrows", "A", "B / N", "C", "R", "X", "/"})
    EXPECT_TRUE(has("Main window", key)) << key;
  EXPECT_TRUE(has("Jump map", "C"));
  EXPECT_TRUE(has("Tile picker", "F4"));
}

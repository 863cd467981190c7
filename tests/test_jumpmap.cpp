// The jump map picture (scale, hex picture, dot picture, flag views, box),
// the jump-map image of a save, and the map image export.
#include <gtest/gtest.h>

#include "jumpmap/jumpmap.h"
#include "jumpmap/mapimage.h"
#include "platform/fileio.h"
#include "renderkit.h"

using namespace kv;
using namespace kvtest;

TEST(JumpMap, ScaleAndHexPicture) {
  RenderSession r(32, 30);
  Session& s = r.s;
  Document& d = s.doc;
  for (int x = 0; x <= 32; ++x)
    for (int y = 0; y <= 30; ++y) d.HexInfo(x, y, 0) = static_cast<uint8_t>((x + y) % 9);
  s.view.ScreenW = 1920;  // half 960, / 32 = 30 pixels a column
  DrawStrategicMap(s);
  JumpMapState& j = s.jump;
  EXPECT_FLOAT_EQ(j.JumpScale, 30.0f / 45.0f);
  EXPECT_EQ(j.Caption, "Jump Map (F1) scale = 0.6666667");
  EXPECT_EQ(s.ref.JumpColPitch, 30);
  EXPECT_EQ(s.ref.JumpRowPitch, 33);  // 33.3
  ASSERT_EQ(j.Picture2.Width(), 30 * 33);
  ASSERT_EQ(j.Picture2.Height(), 33 * 31);
  // hw = 40, hh = 33, both ends included; later hexes overdraw earlier ones.
  // Odd column 1 starts at y 0, even column 2 half a pitch (16) lower.
  EXPECT_EQ(j.Picture2.GetPixel(30, 0), TerrainCol(1));
  EXPECT_EQ(j.Picture2.GetPixel(60, 15), TerrainCol(1));  // column 1 still, 2 begins at 16
  EXPECT_EQ(j.Picture2.GetPixel(65, 16), TerrainCol(2));
  EXPECT_EQ(j.Picture2.GetPixel(70, 33), TerrainCol(2));  // column 2 over column 1's right edge
  EXPECT_EQ(j.Picture2.GetPixel(45, 32), TerrainCol(1));  // column 1, row 0: y 0..33...
  EXPECT_EQ(j.Picture2.GetPixel(45, 33), TerrainCol(2));  // ...its last line under row 1
  EXPECT_EQ(j.Picture2.GetPixel(31, 50), TerrainCol(2));  // column 1 row 1 over column 0 row 1
  EXPECT_EQ(j.Picture2.GetPixel(29, 50), TerrainCol(1));  // column 0, row 1: y 49..82

  // The zoom menus change the scale and the redraw takes it from the screen again.
  const Bitmap before = j.Picture2;
  JumpMapZoom(s, 0.1f);
  EXPECT_EQ(j.Picture2, before);
  EXPECT_EQ(j.Caption, "Jump Map (F1) scale = 0.6666667");
}

TEST(JumpMap, FlagsAndOverlayInTheHexPicture) {
  RenderSession r(32, 30);
  Session& s = r.s;
  Document& d = s.doc;
  s.view.ScreenW = 1920;
  d.HexCtl(1, 0, 0) = 2;
  d.HexCtl(1, 0, 1) = 1;
  d.HexCtl(3, 0, 0) = 3;
  d.HexCtl(3, 0, 1) = 3;
  d.HexCtl(5, 0, 0) = 1;  // owner without an objective: no flag
  DrawStrategicMap(s);
  const Bitmap& p = s.jump.Picture2;
  // Flag at round(20 * k + px), round(30 * k + py): (43, 20) for column 1,
  // 13 by 9 pixels (20 * 2/3, 13 * 2/3).
  EXPECT_EQ(p.GetPixel(43, 20), FlagColour(1, 2));
  EXPECT_EQ(p.GetPixel(43 + 12, 20 + 8), FlagColour(1, 2));
  EXPECT_EQ(p.GetPixel(43 + 13, 20), TerrainCol(0));
  EXPECT_EQ(p.GetPixel(43, 20 + 9), TerrainCol(0));
  // Kind 3: the large flag (14 by 9), and the objective overlay stretched to 40 x 33.
  EXPECT_EQ(p.GetPixel(103, 20), FlagColour(0, 3));
  EXPECT_EQ(p.GetPixel(103 + 13, 20 + 8), FlagColour(0, 3));
  EXPECT_EQ(p.GetPixel(90 + kCommon.x * 2 / 3, 0 + kCommon.y * 2 / 3), LayerColour(kObjective));
  EXPECT_EQ(p.GetPixel(150 + 15, 20), TerrainCol(0));
}

TEST(JumpMap, DotPictureAndFilter) {
  RenderSession r(150, 40);
  Session& s = r.s;
  Document& d = s.doc;
  s.ref.TileRoad.assign(64, 0);
  s.ref.TileRoad[5] = 1;
  for (int x = 0; x <= 150; ++x)
    for (int y = 0; y <= 40; ++y) {
      d.HexTile(x, y) = 1;
      d.HexInfo(x, y, 0) = 2;
    }
  d.HexTile(10, 3) = 5;     // a road tile on terrain 2
  d.HexInfo(11, 4, 0) = 5;  // terrain 5
  s.view.ScreenW = 200;     // 100 / 150 rounds to 1: both pitches 1
  DrawStrategicMap(s);
  const Bitmap& p = s.jump.Picture2;
  EXPECT_EQ(s.ref.JumpColPitch, 1);
  EXPECT_EQ(s.ref.JumpRowPitch, 1);
  ASSERT_EQ(p.Width(), 151);
  ASSERT_EQ(p.Height(), 41);
  EXPECT_EQ(p.GetPixel(10, 3), 0u);
  EXPECT_EQ(p.GetPixel(11, 4), TerrainCol(5));
  EXPECT_EQ(p.GetPixel(12, 4), TerrainCol(2));  // no column shift
  EXPECT_EQ(p.GetPixel(150, 40), TerrainCol(2));
  JumpMapSetFilter(s, 5);
  EXPECT_EQ(p.GetPixel(10, 3), TerrainCol(2));
  EXPECT_EQ(p.GetPixel(11, 4), 0u);
  // A scale of 0: every pitch 1 and still the dot picture.
  s.view.ScreenW = 100;  // 50 / 150 rounds to 0
  DrawStrategicMap(s);
  EXPECT_EQ(s.jump.JumpScale, 0.0f);
  EXPECT_EQ(s.ref.JumpColPitch, 1);
  EXPECT_EQ(p.Width(), 151);
}

TEST(JumpMap, OneColumnTwoRowsPitchDrawsTheHexPicture) {
  RenderSession r(20, 10);
  Session& s = r.s;
  s.ref.RowPitch = 90;  // rowp = round(90 / 45) = 2
  s.ref.HexH = 90;
  s.view.ScreenW = 40;  // 20 / 20 = 1: colp 1
  s.doc.HexInfo(3, 2, 0) = 4;
  DrawStrategicMap(s);
  EXPECT_EQ(s.ref.JumpColPitch, 1);
  EXPECT_EQ(s.ref.JumpRowPitch, 2);
  const Bitmap& p = s.jump.Picture2;
  ASSERT_EQ(p.Height(), 22);
  // Hex (3, 2): odd column, y 4; hw 1, hh 2 with both ends: x 3..4, y 4..6,
  // then column 4 overdraws x 4.
  EXPECT_EQ(p.GetPixel(3, 4), TerrainCol(4));
  EXPECT_EQ(p.GetPixel(3, 5), TerrainCol(4));
  EXPECT_EQ(p.GetPixel(3, 6), TerrainCol(0));  // row 3 overdraws the last line
  EXPECT_EQ(p.GetPixel(4, 5), TerrainCol(0));
}

TEST(JumpMap, BoxFollowsTheViewAndColour) {
  RenderSession r(32, 30);
  Session& s = r.s;
  s.view.ScreenW = 1920;
  r.SetView(10, 8, 4, 3);
  DrawJumpBox(s);  // loads the form, hidden, first
  EXPECT_TRUE(s.forms.Form5Loaded);
  const DrawnBox& b = s.jump.Picture2Box;
  ASSERT_TRUE(b.shown);
  EXPECT_EQ(b.x1, 4 * 30);
  EXPECT_EQ(b.y1, 3 * 33 + 16);
  EXPECT_EQ(b.x2, 14 * 30);
  EXPECT_EQ(b.y2, 11 * 33 + 16);
  EXPECT_EQ(b.colour, 0u);
  Bitmap view = JumpMapView(s.jump);
  EXPECT_EQ(view.GetPixel(b.x1, b.y1), 0u);
  EXPECT_EQ(view.GetPixel(b.x2, b.y2 - 3), 0u);
  EXPECT_NE(view.GetPixel(b.x1 + 2, b.y1 + 2), 0u);
  // A new box replaces the old one; the persistent picture never holds it.
  s.pens.JumpBoxColour = 0xFFFFFF;
  s.view.ViewX = 5;
  DrawJumpBox(s);
  view = JumpMapView(s.jump);
  EXPECT_EQ(view.GetPixel(5 * 30, b.y1), 0xFFFFFFu);
  EXPECT_NE(view.GetPixel(4 * 30, b.y1 + 5), 0u);
  EXPECT_NE(s.jump.Picture2.GetPixel(5 * 30, b.y1), 0xFFFFFFu);
}

TEST(JumpMap, ClickCentresTheMainViewWithinTheBars) {
  RenderSession r(32, 30);
  Session& s = r.s;
  s.view.ScreenW = 1920;
  r.SetView(10, 8, 0, 0);
  DrawStrategicMap(s);
  JumpMapClick(s, 15 * 30 + 5, 12 * 33 + 3);
  EXPECT_EQ(s.view.ViewX, 10);
  EXPECT_EQ(s.view.ViewY, 8);
  EXPECT_EQ(s.view.HScroll1.Value, 10);
  EXPECT_EQ(s.view.ScrollSilent, 0);
  JumpMapClick(s, 5000, 5000);  // beyond the range: the last position
  EXPECT_EQ(s.view.ViewX, 22);
  EXPECT_EQ(s.view.ViewY, 22);
  EXPECT_TRUE(s.jump.Picture2Box.shown);
}

TEST(JumpMap, FlagViewsOnTheMapBitmap) {
  RenderSession r(40, 30);
  Session& s = r.s;
  Document& d = s.doc;
  s.view.ScreenW = 1920;
  for (int x = 0; x <= 40; ++x)
    for (int y = 0; y <= 30; ++y) d.HexInfo(x, y, 0) = 1;
  d.HexInfo(2, 2, 0) = 0;
  auto obj = [&](int x, int y, int owner, int kind, int orig) {
    d.HexCtl(x, y, 0) = static_cast<uint8_t>(owner);
    d.HexCtl(x, y, 1) = static_cast<uint8_t>(kind);
    d.HexOrigOwner(x, y) = static_cast<uint8_t>(orig);
  };
  obj(5, 5, 1, 2, 2);    // primary, originally Belmont's
  obj(25, 12, 3, 1, 2);  // secondary, originally Belmont's
  obj(10, 25, 1, 3, 2);  // oil: never in a flag view
  obj(35, 25, 2, 1, 1);  // secondary, originally Avaria's
  // No map file of that name: the plain bitmap is made and written first.
  s.ed.dlg.DlgFile = s.App("maps/none.map");
  MakeDirs(s.App("maps"));
  ASSERT_TRUE(ZoomFlags(s, 0));
  ASSERT_TRUE(FileExists(s.App("maps/none.bmp")));
  const Bitmap& p = s.jump.Picture2;
  EXPECT_EQ(p.GetPixel(2, 2), 0xC0FFFFu);
  EXPECT_EQ(p.GetPixel(3, 2), 0xFFFFFFu);
  EXPECT_EQ(d.ObjCount, 4);
  // View 0: every objective but oil, at the pixel numbered like the hex.
  EXPECT_EQ(p.GetPixel(5 + 15, 5 + 10), FlagColour(0, 1));  // 16 x 11
  EXPECT_EQ(p.GetPixel(5 + 16, 5 + 10), 0xFFFFFFu);
  EXPECT_EQ(p.GetPixel(25 + 15, 12 + 9), FlagColour(1, 3));  // 16 x 10
  EXPECT_EQ(p.GetPixel(25, 12 + 10), 0xFFFFFFu);
  EXPECT_EQ(p.GetPixel(10, 25), 0xFFFFFFu);
  EXPECT_EQ(p.GetPixel(35, 25), FlagColour(1, 2));
  // A nation's view: its original objectives only, larger.
  ASSERT_TRUE(ZoomFlags(s, 2));
  EXPECT_EQ(p.GetPixel(5 + 17, 5 + 11), FlagColour(0, 1));    // 18 x 12
  EXPECT_EQ(p.GetPixel(25 + 17, 12 + 10), FlagColour(1, 3));  // 18 x 11
  EXPECT_EQ(p.GetPixel(25, 12 + 11), 0xFFFFFFu);
  EXPECT_EQ(p.GetPixel(35, 25), 0xFFFFFFu);
  EXPECT_EQ(p.GetPixel(10, 25), 0xFFFFFFu);
  // An existing map whose bitmap cannot be read: an error, nothing changed.
  kvtest::WriteText(s.App("maps/real.map"), "x");
  kvtest::WriteText(s.App("maps/real.bmp"), "not a picture");
  s.ed.dlg.DlgFile = s.App("maps/real.map");
  const Bitmap before = p;
  std::string err;
  EXPECT_FALSE(ZoomFlags(s, 0, &err));
  EXPECT_NE(err.find("real.bmp"), std::string::npos) << err;
  EXPECT_EQ(s.jump.Picture2, before);
}

TEST(JumpMap, SaveJumpMapImageWritesThePicture) {
  RenderSession r(32, 30);
  Session& s = r.s;
  s.view.ScreenW = 1920;
  s.doc.HexCtl(4, 4, 1) = 2;  // no owner: BuildObjList drops it
  const std::string path = s.App("m.bmp");
  ASSERT_TRUE(SaveJumpMapImage(s, path));
  EXPECT_EQ(s.doc.HexCtl(4, 4, 1), 0);
  Bitmap back;
  std::string err;
  ASSERT_TRUE(ReadBmpFile(path, back, &err)) << err;
  EXPECT_EQ(back, s.jump.Picture2);
  EXPECT_EQ(back.Width(), 990);
  EXPECT_FALSE(SaveJumpMapImage(s, s.App("no/such/folder/m.bmp")));
}

TEST(MapImage, SizesParityAndTheInclusiveLoops) {
  RenderSession r(20, 20);
  Session& s = r.s;
  Bitmap out;
  std::string err;
  // 1 by 1: one pitch by one pitch, and four hexes painted into it.
  ASSERT_TRUE(RenderMapImage(s, 3, 2, 1, 1, out, &err)) << err;
  EXPECT_EQ(out.Width(), 45);
  EXPECT_EQ(out.Height(), 50);
  // Column 3 is odd: its row 2 at y 0; column 4 even: row 2 from y 25 at x 45.
  EXPECT_EQ(out.GetPixel(10, 10), TileColour(s.doc.HexTile(3, 2)));
  EXPECT_EQ(out.GetPixel(44, 10), TileColour(s.doc.HexTile(3, 2)));
  // Column 4 starts at x 45, outside; nothing of it shows. Row 3 of column 3
  // starts at y 50, outside too.
  ASSERT_TRUE(RenderMapImage(s, 2, 2, 2, 1, out, &err)) << err;
  EXPECT_EQ(out.Width(), 90);
  // Column 2 (even) stands lower: its row 2 from y 25; column 3 from y 0.
  EXPECT_EQ(out.GetPixel(10, 30), TileColour(s.doc.HexTile(2, 2)));
  EXPECT_EQ(out.GetPixel(10, 10), kPictureBackColour);  // no hex of the section there
  EXPECT_EQ(out.GetPixel(50, 10), TileColour(s.doc.HexTile(3, 2)));
  EXPECT_EQ(out.GetPixel(89, 10), TileColour(s.doc.HexTile(3, 2)));  // column 3's cell reaches 105
  // The inclusive loop: column 4 (x 90) is drawn but falls off the picture,
  // while row 3 of the even column 2 (y 75..125) shows in part.
  EXPECT_EQ(out.GetPixel(10, 49), TileColour(s.doc.HexTile(2, 2)));
  ASSERT_TRUE(RenderMapImage(s, 2, 2, 2, 2, out, &err));
  EXPECT_EQ(out.GetPixel(10, 80), TileColour(s.doc.HexTile(2, 3)));
  // Odd first column: it stands higher than the second.
  ASSERT_TRUE(RenderMapImage(s, 3, 0, 2, 2, out, &err));
  EXPECT_EQ(out.GetPixel(10, 5), TileColour(s.doc.HexTile(3, 0)));
  EXPECT_EQ(out.GetPixel(50, 5), TileColour(s.doc.HexTile(3, 0)));  // column 3 still (to x 60)
  EXPECT_EQ(out.GetPixel(70, 30), TileColour(s.doc.HexTile(4, 0)));
  EXPECT_EQ(out.GetPixel(70, 20), kPictureBackColour);
}

TEST(MapImage, OffTheMapFailsWithTheMessageAndNoFile) {
  RenderSession r(20, 15);
  Session& s = r.s;
  Bitmap out;
  std::string err;
  // Columns x..x+w and rows y..y+h must be on the map.
  EXPECT_TRUE(RenderMapImage(s, 0, 0, 20, 15, out, &err)) << err;
  EXPECT_FALSE(RenderMapImage(s, 0, 0, 21, 15, out, &err));
  EXPECT_NE(err.find("run off the map"), std::string::npos) << err;
  EXPECT_FALSE(RenderMapImage(s, 1, 0, 20, 15, out, &err));
  EXPECT_FALSE(RenderMapImage(s, 0, 1, 20, 15, out, &err));
  EXPECT_FALSE(RenderMapImage(s, 0, 0, 0, 5, out, &err));
  EXPECT_FALSE(RenderMapImage(s, 0, 0, 1000, 1, out, &err));  // 45000 pixels wide
  EXPECT_NE(err.find("too large"), std::string::npos) << err;

  // The F6 procedure: the defaults of 75 by 75 on a smaller map.
  s.view.ViewX = 2;
  s.view.ViewY = 1;
  EXPECT_FALSE(ExportMapImage(s));
  ASSERT_EQ(r.ui.messages.size(), 1u);
  EXPECT_EQ(r.ui.messages[0], "Not enough Memory");
  EXPECT_EQ(s.sprites.Picture5.Width(), 1);
  EXPECT_EQ(s.sprites.Picture5.Height(), 1);
  EXPECT_FALSE(FileExists(s.App("map.bmp")));
  // A section that fits is written to map.bmp.
  s.pens.ImgScaleA = 10;
  s.pens.ImgScaleB = 5;
  ASSERT_TRUE(ExportMapImage(s));
  Bitmap back;
  ASSERT_TRUE(ReadBmpFile(s.App("map.bmp"), back, &err)) << err;
  EXPECT_EQ(back.Width(), 450);
  EXPECT_EQ(back.Height(), 250);
  EXPECT_EQ(back, s.sprites.Picture5);
  EXPECT_EQ(r.ui.messages.size(), 1u);
}

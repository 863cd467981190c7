// The bitmap utility: each pixel pass on small pictures made here, the files
// it derives, the clicks on its picture, and a bitmap turned into a map.
#include <filesystem>
#include <memory>

#include <gtest/gtest.h>

#include "bitmaputil/bitmaputil.h"
#include "document/document_ops.h"
#include "editing/filemenu.h"
#include "editing/mapload.h"
#include "editing/startup.h"
#include "jumpmap/jumpmap.h"
#include "platform/fileio.h"
#include "session.h"
#include "testutil.h"
#include "view/geometry.h"

using namespace kv;
namespace fs = std::filesystem;

namespace {

ImageStore Store(int w, int h, std::initializer_list<uint32_t> px) {
  Bitmap b(w, h);
  auto it = px.begin();
  for (int y = 0; y < h; ++y)
    for (int x = 0; x < w && it != px.end(); ++x) b.SetPixel(x, y, *it++);
  return StoreOf(b);
}

Bitmap ReadBack(const std::string& path) {
  Bitmap b;
  std::string err;
  EXPECT_TRUE(ReadBmpFile(path, b, &err)) << err;
  return b;
}

// An 8-bit palette picture written byte by byte: rows bottom-up, padded.
std::vector<uint8_t> PaletteBmp(int w, int h, const std::vector<uint32_t>& pal, const std::vector<uint8_t>& idx) {
  const int stride = (w + 3) & ~3;
  const uint32_t off = 54 + 4 * static_cast<uint32_t>(pal.size());
  std::vector<uint8_t> b = {'B', 'M'};
  auto put = [&b](uint32_t v, int n) {
    for (int i = 0; i < n; ++i) b.push_back(static_cast<uint8_t>(v >> (8 * i)));
  };
  put(off + stride * h, 4), put(0, 4), put(off, 4);
  put(40, 4), put(w, 4), put(h, 4), put(1, 2), put(8, 2), put(0, 4), put(stride * h, 4);
  put(0, 4), put(0, 4), put(static_cast<uint32_t>(pal.size()), 4), put(0, 4);
  for (uint32_t c : pal) put(c, 4);
  for (int y = h - 1; y >= 0; --y)
    for (int x = 0; x < stride; ++x) b.push_back(x < w ? idx[static_cast<size_t>(y) * w + x] : 0);
  return b;
}

// A session on a small program folder, with the utility loaded. Tiles 3 and
// 18 are terrain 3, tiles 5 and 20 terrain 5; both pairs are random tiles.
struct Utility {
  kvtest::TempDir app, pics;
  HeadlessUi ui;
  std::unique_ptr<Session> s;
  std::vector<std::string>& shown = ui.shown;  // forms the core asked to show
  Utility() {
    kvtest::MiniApp mini;
    mini.types = {0, 1, 1, 3, 1, 5, 14, 1, 8, 6};
    kvtest::MakeMiniApp(app.path(), mini);
    std::vector<uint8_t> rnd(32, 0);
    rnd[3] = rnd[18] = rnd[5] = rnd[20] = 1;
    kvtest::WriteBytes(app / "mapedit/randomtile.dat", rnd);
    s = std::make_unique<Session>(app.path(), &ui);
    EXPECT_TRUE(StartSession(*s));
    Form4_Load(*s);
  }
  BitmapUtilState& b() { return s->bmp; }
  // Writes `pic` as a bitmap named `name` in the pictures folder and loads it.
  void Load(const Bitmap& pic, const std::string& name = "xmap.bmp") {
    ASSERT_TRUE(WriteBmpFile(pics / name, pic, nullptr));
    ASSERT_TRUE(LoadBitmapFile(*s, pics / name, name));
  }
  uint32_t Px(int x, int y) { return b().Picture2.GetPixel(x, y); }
  std::string LastMessage() { return ui.messages.empty() ? "" : ui.messages.back(); }
};

Bitmap Picture(int w, int h, std::initializer_list<uint32_t> px) { return BitmapOf(Store(w, h, px)); }

}  // namespace

// ---- Pixel passes --------------------------------------------------------------

TEST(BitmapPasses, ColourReductionBringsChannelsDownToMultiples) {
  ImageStore img = Store(3, 1, {RGB(0, 1, 2), RGB(3, 4, 255), RGB(254, 7, 8)});
  ImageStore one = img;
  for (int x = 0; x < 3; ++x) ReduceColumn(one, x, 1);
  EXPECT_EQ(one.bits, img.bits);
  for (int x = 0; x < 3; ++x) ReduceColumn(img, x, 4);
  EXPECT_EQ(PixelRGB(img, 0, 0), RGB(0, 0, 0));
  EXPECT_EQ(PixelRGB(img, 1, 0), RGB(0, 4, 252));
  EXPECT_EQ(PixelRGB(img, 2, 0), RGB(252, 4, 8));
}

TEST(BitmapPasses, DominantColourKeepsTheStrongestChannel) {
  ImageStore img =
      Store(6, 1, {RGB(10, 20, 20), RGB(20, 20, 10), RGB(0, 0, 0), RGB(9, 5, 7), RGB(5, 9, 7), RGB(7, 7, 7)});
  for (int x = 0; x < 6; ++x) DominantColumn(img, x);
  EXPECT_EQ(PixelRGB(img, 0, 0), RGB(0, 0, 20));  // blue wins its tie with green
  EXPECT_EQ(PixelRGB(img, 1, 0), RGB(0, 20, 0));  // green wins its tie with red
  EXPECT_EQ(PixelRGB(img, 2, 0), RGB(0, 0, 0));
  EXPECT_EQ(PixelRGB(img, 3, 0), RGB(9, 0, 0));
  EXPECT_EQ(PixelRGB(img, 4, 0), RGB(0, 9, 0));
  EXPECT_EQ(PixelRGB(img, 5, 0), RGB(0, 0, 7));
}

TEST(BitmapPasses, ShrinkAveragesBlocksAndCutsThemAtTheEdges) {
  // 3 x 3: the last column's blocks hold two pixels and, in the corner, one.
  ImageStore src = Store(3, 3,
                         {RGB(1, 10, 0), RGB(2, 20, 0), RGB(7, 30, 0),  //
                          RGB(3, 30, 0), RGB(2, 40, 0), RGB(8, 31, 0),  //
                          RGB(5, 50, 0), RGB(6, 61, 0), RGB(9, 33, 0)});
  ImageStore dst = src;
  std::fill(dst.bits.begin(), dst.bits.end(), 0);
  for (int x = 0; x < 3; x += 2) ShrinkColumn(src, dst, x);
  // (1 + 2 + 3 + 2) / 4 = 2; (10 + 20 + 30 + 40) / 4 = 25.
  EXPECT_EQ(PixelRGB(dst, 0, 0), RGB(2, 25, 0));
  // Two pixels: (7 + 8) / 2 = 7.5 goes to 8, (30 + 31) / 2 = 30.5 to 30.
  EXPECT_EQ(PixelRGB(dst, 1, 0), RGB(8, 30, 0));
  // Bottom row blocks: (5 + 6) / 2 = 5.5 to 6, (50 + 61) / 2 = 55.5 to 56.
  EXPECT_EQ(PixelRGB(dst, 0, 1), RGB(6, 56, 0));
  EXPECT_EQ(PixelRGB(dst, 1, 1), RGB(9, 33, 0));
  // Everything else of the picture is black.
  EXPECT_EQ(PixelRGB(dst, 2, 0), 0u);
  EXPECT_EQ(PixelRGB(dst, 2, 2), 0u);
  EXPECT_EQ(PixelRGB(dst, 0, 2), 0u);
}

TEST(BitmapPasses, ExtremeContrastSplitsAt127AndReplaceMatchesExactly) {
  ImageStore img = Store(2, 1, {RGB(126, 127, 200), RGB(0, 255, 128)});
  for (int x = 0; x < 2; ++x) ExtremeColumn(img, x);
  EXPECT_EQ(PixelRGB(img, 0, 0), RGB(0, 255, 255));
  EXPECT_EQ(PixelRGB(img, 1, 0), RGB(0, 255, 255));
  ImageStore r = Store(3, 1, {RGB(1, 2, 3), RGB(1, 2, 4), RGB(1, 2, 3)});
  for (int x = 0; x < 3; ++x) ReplaceColumn(r, x, RGB(1, 2, 3), RGB(9, 8, 7));
  EXPECT_EQ(PixelRGB(r, 0, 0), RGB(9, 8, 7));
  EXPECT_EQ(PixelRGB(r, 1, 0), RGB(1, 2, 4));
  EXPECT_EQ(PixelRGB(r, 2, 0), RGB(9, 8, 7));
}

TEST(BitmapPasses, SeasonalTables) {
  EXPECT_EQ(DarkTable()[255], 191);
  EXPECT_EQ(DarkTable()[3], 2);
  EXPECT_EQ(LightTable()[113], 254);
  for (int i = 114; i < 256; ++i) ASSERT_EQ(LightTable()[i], 255) << i;
  ImageStore mud = Store(2, 1, {0xB3B373, 0xB3B374});
  MudLightPass(mud);
  EXPECT_EQ(PixelRGB(mud, 0, 0), RGB(100, 100, 64));  // Dark[Dark[v]], matching no later colour
  EXPECT_EQ(PixelRGB(mud, 1, 0), 0xB3B374u);
}

TEST(BitmapPasses, SectorNamesAndCounts) {
  EXPECT_EQ(SectorFileName(12 * 300, 3 * 300), "1203.bmp");
  EXPECT_EQ(SectorFileName(0, 600), "0002.bmp");
  EXPECT_EQ(SectorCount(299), 1);
  EXPECT_EQ(SectorCount(300), 2);
  EXPECT_EQ(SectorCount(600), 3);
}

// ---- Loading -------------------------------------------------------------------

TEST(BitmapWorkspace, PicturesOfAnyDepthAreWorkedOnAs32Bits) {
  Utility u;
  kvtest::WriteBytes(u.pics / "pal.bmp", PaletteBmp(3, 2, {0x102030, 0xA0B0C0}, {0, 1, 0, 1, 1, 0}));
  ASSERT_TRUE(LoadBitmapFile(*u.s, u.pics / "pal.bmp", "pal.bmp"));
  const ImageStore& img = u.b().ImageBits;
  ASSERT_EQ(img.w, 3);
  ASSERT_EQ(img.bits.size(), 3u * 2 * 4);
  // Channel 0 blue, 1 green, 2 red.
  EXPECT_EQ(img(0, 1, 0), 0xC0);
  EXPECT_EQ(img(1, 1, 0), 0xB0);
  EXPECT_EQ(img(2, 1, 0), 0xA0);
  EXPECT_EQ(PixelRGB(img, 0, 1), 0xA0B0C0u);
  EXPECT_EQ(u.b().Caption, "pal.bmp");
  EXPECT_TRUE(u.b().Picture2Visible);
}

TEST(BitmapWorkspace, AFileThatIsNoBitmapLeavesTheWorkspaceAsItWas) {
  Utility u;
  u.Load(Picture(2, 1, {0x112233, 0x445566}));
  int w = 0, h = 0;
  ReduceColours(*u.s, w, h);
  const Bitmap before = u.b().Picture2;
  const auto bits = u.b().ImageBits.bits;
  kvtest::WriteText(u.pics / "notes.bmp", "these are notes, not a picture");
  // Through the file dialog, as the user picks it.
  Form4_LoadBitmap_Click(*u.s);
  EXPECT_EQ(u.s->ed.dlg.DlgMode, 4);
  u.s->ed.dlg.Dir1Path = u.pics.path();
  u.s->ed.dlg.Text1 = "notes";  // ".bmp" is added
  LoadSave_Command1_Click(*u.s);
  EXPECT_NE(u.LastMessage().find("cannot be loaded as a bitmap"), std::string::npos);
  EXPECT_NE(u.LastMessage().find("does not begin with BM"), std::string::npos);
  EXPECT_EQ(u.b().BitmapName, "xmap.bmp");
  EXPECT_EQ(u.s->ed.dlg.DlgFile, u.pics / "xmap.bmp");
  EXPECT_EQ(u.b().Caption, "xmap.bmp");
  EXPECT_TRUE(u.b().Picture2 == before);
  EXPECT_EQ(u.b().ImageBits.bits, bits);
  // A readable one through the same path takes over.
  ASSERT_TRUE(WriteBmpFile(u.pics / "other.bmp", Picture(1, 1, {0x010203}), nullptr));
  Form4_LoadBitmap_Click(*u.s);
  u.s->ed.dlg.Dir1Path = u.pics.path();
  u.s->ed.dlg.Text1 = "other";
  LoadSave_Command1_Click(*u.s);
  EXPECT_EQ(u.b().BitmapName, "other.bmp");
  EXPECT_EQ(u.s->ed.dlg.DlgFile, u.pics / "other.bmp");
  EXPECT_EQ(u.Px(0, 0), 0x010203u);
}

TEST(BitmapWorkspace, APictureTooLargeForTheUtilityIsRefused) {
  Utility u;
  u.Load(Picture(2, 2, {0x010203}));
  // 1 bit a pixel: 8192 x 8193 pixels in 8 MB, just over the limit.
  const int w = 8192, h = 8193;
  std::vector<uint8_t> bmp = PaletteBmp(1, 1, {0, 0xFFFFFF}, {0});
  const uint32_t stride = w / 8, off = 54 + 8;
  bmp.resize(off);
  auto put32 = [&bmp](size_t at, uint32_t v) {
    for (int i = 0; i < 4; ++i) bmp[at + i] = static_cast<uint8_t>(v >> (8 * i));
  };
  put32(2, off + stride * h);
  put32(10, off);
  put32(18, w);
  put32(22, h);
  bmp[28] = 1;  // bits per pixel
  put32(34, stride * h);
  bmp.resize(off + static_cast<size_t>(stride) * h, 0x55);
  kvtest::WriteBytes(u.pics / "huge.bmp", bmp);
  EXPECT_FALSE(LoadBitmapFile(*u.s, u.pics / "huge.bmp", "huge.bmp"));
  EXPECT_NE(u.LastMessage().find("8192 x 8193 pixels is too large"), std::string::npos);
  EXPECT_EQ(u.b().BitmapName, "xmap.bmp");
  EXPECT_EQ(u.b().Picture2.Width(), 2);
}

TEST(BitmapWorkspace, PointerReadoutInTheCaption) {
  Utility u;
  u.Load(Picture(4, 4, {0, 0, 0, 0, 0, 0, RGB(7, 8, 9)}));
  u.s->ed.f1.Text3[2] = "2";
  // (2, 1): col = 2 \ 2 = 1, odd: row = 1 \ 2 = 0.
  EXPECT_EQ(PointerReadout(*u.s, 2, 1), "xmap.bmp( 2, 1)( 1, 0) 7 8 9");
  // (0.4, 3): col = 0 \ 2 = 0, even: row = round(3 - 2 \ 2) \ 2 = 1.
  EXPECT_EQ(PointerReadout(*u.s, 0.4, 3), "xmap.bmp( 0.4, 3)( 0, 1) 0 0 0");
  // Off the picture the colour is left out; a divisor box of no number counts as 1.
  u.s->ed.f1.Text3[2] = "Text3";
  EXPECT_EQ(PointerReadout(*u.s, -3, 9), "xmap.bmp(-3, 9)(-3, 9)");
  bmp2map_Click(*u.s);
  EXPECT_EQ(PointerReadout(*u.s, 2, 1), "xmap.bmp( 2, 1)( 2, 1) 4 8 8 0");
}

// ---- Colour passes on the workspace --------------------------------------------

TEST(BitmapWorkspace, ReduceColoursSavesAndGivesTheSize) {
  Utility u;
  u.Load(Picture(3, 2, {RGB(0, 3, 255), RGB(5, 6, 7)}));
  std::vector<int> columns;
  std::vector<uint32_t> seen;  // row 0 as the window sees it after each column
  u.b().ColumnsPut = [&](int x0, int x1) {
    columns.push_back(x0 * 100 + x1);
    SyncPicture2(*u.s);
    for (int x = 0; x < 3; ++x) seen.push_back(u.Px(x, 0));
  };
  u.s->pens.ColourCRV = 0;  // acts as 4 and is stored so
  int w = 0, h = 0;
  ReduceColours(*u.s, w, h);
  EXPECT_EQ(u.s->pens.ColourCRV, 4);
  EXPECT_EQ(w, 3);
  EXPECT_EQ(h, 2);
  EXPECT_EQ(u.Px(0, 0), RGB(0, 0, 252));
  EXPECT_EQ(u.Px(1, 0), RGB(4, 4, 4));
  EXPECT_EQ(columns, (std::vector<int>{0, 101, 202}));  // one put a column
  // The change travels across the picture a column at a time.
  EXPECT_EQ(seen, (std::vector<uint32_t>{RGB(0, 0, 252), RGB(5, 6, 7), 0,  //
                                         RGB(0, 0, 252), RGB(4, 4, 4), 0,  //
                                         RGB(0, 0, 252), RGB(4, 4, 4), 0}));
  EXPECT_TRUE(ReadBack(u.app / "picture2.bmp") == u.b().Picture2);
}

TEST(BitmapWorkspace, DominantColourWorksOnTheCanvasAndSavesTemp) {
  Utility u;
  u.Load(Picture(2, 1, {RGB(10, 20, 20), RGB(20, 20, 10)}));
  red_Click(*u.s);
  EXPECT_EQ(u.Px(0, 0), RGB(0, 0, 20));
  EXPECT_EQ(u.Px(1, 0), RGB(0, 20, 0));
  EXPECT_EQ(u.b().Picture3.GetPixel(0, 0), RGB(10, 20, 20));  // the canvas took the picture as it was
  EXPECT_TRUE(ReadBack(u.app / "temp.bmp") == u.b().Picture2);
}

TEST(BitmapWorkspace, ShrinkKeepsTheSizeAndImageBits) {
  Utility u;
  u.Load(Picture(5, 1, {RGB(10, 0, 0), RGB(20, 0, 0), RGB(30, 0, 0), RGB(41, 0, 0), RGB(99, 0, 0)}));
  std::vector<int> columns;
  u.b().ColumnsPut = [&](int x0, int x1) { columns.push_back(x0 * 100 + x1); };
  Shrink_Image_Click(*u.s);
  EXPECT_EQ(u.b().Picture2.Width(), 5);
  EXPECT_EQ(u.Px(0, 0), RGB(15, 0, 0));
  EXPECT_EQ(u.Px(1, 0), RGB(36, 0, 0));  // 35.5 to even
  EXPECT_EQ(u.Px(2, 0), RGB(99, 0, 0));  // the odd last column alone
  EXPECT_EQ(u.Px(3, 0), 0u);
  EXPECT_EQ(u.Px(4, 0), 0u);
  EXPECT_EQ(PixelRGB(u.b().ImageBits, 4, 0), RGB(99, 0, 0));
  EXPECT_EQ(columns, (std::vector<int>{4, 101, 202}));  // the first put shows all of the black
  EXPECT_TRUE(ReadBack(u.app / "picture2.bmp") == u.b().Picture2);
}

TEST(BitmapWorkspace, ExtremeContrastIsArmedByItsMenuAndUsedUpByAClick) {
  Utility u;
  u.Load(Picture(2, 1, {RGB(126, 127, 3), RGB(200, 100, 127)}));
  mExtremis_Click(*u.s);
  mExtremis_Click(*u.s);
  EXPECT_EQ(u.b().ExtremeArmed, 0);
  Form4_Picture2_MouseDown(*u.s, 1, 0, 0, 0);
  EXPECT_EQ(u.Px(0, 0), RGB(126, 127, 3));  // not armed: nothing happened
  mExtremis_Click(*u.s);
  Form4_Picture2_MouseDown(*u.s, 1, 0, 0, 0);
  EXPECT_EQ(u.b().ExtremeArmed, 0);
  EXPECT_EQ(u.Px(0, 0), RGB(0, 255, 0));
  EXPECT_EQ(u.Px(1, 0), RGB(255, 0, 255));
  EXPECT_EQ(u.b().Caption, "1");  // the last column's number
  EXPECT_EQ(u.LastMessage(), "Saved " + (u.app / "picture2.bmp"));
  EXPECT_TRUE(ReadBack(u.app / "picture2.bmp") == u.b().Picture2);
}

TEST(BitmapWorkspace, ReplaceColourAsksForAColourUntilABoxChanged) {
  Utility u;
  u.Load(Picture(3, 1, {RGB(10, 20, 30), RGB(11, 21, 31), RGB(10, 20, 30)}));
  Replace_Colour_Click(*u.s);
  EXPECT_EQ(u.b().ReplaceMode, -1);
  EXPECT_EQ(u.shown, std::vector<std::string>{"Form15"});
  EXPECT_TRUE(u.b().f15.Loaded);
  // No box changed: the click replaces nothing, saves nothing and asks again.
  Form4_Picture2_MouseDown(*u.s, 1, 0, 0, 0);
  EXPECT_EQ(u.Px(0, 0), RGB(10, 20, 30));
  EXPECT_FALSE(FileExists(u.app / "picture2.bmp"));
  EXPECT_NE(u.LastMessage().find("Choose the new colour first"), std::string::npos);
  EXPECT_EQ(u.shown.size(), 2u);
  // The boxes: every change takes all three, clamped.
  u.b().f15.Text1[0] = "300";
  Form15_Text1_Change(*u.s, 0);
  EXPECT_EQ(u.b().f15.Frame1Colour, RGB(255, 0, 0));
  u.b().f15.Text1[1] = "2.5";
  u.b().f15.Text1[2] = "-4";
  Form15_Text1_Change(*u.s, 2);
  EXPECT_EQ(u.b().NewColour[1], 2);
  EXPECT_EQ(u.b().NewColour[2], 0);
  u.b().f15.Text1[0] = "1";
  Form15_Text1_Change(*u.s, 0);
  Form15_Command1_Click(*u.s);
  EXPECT_EQ(u.LastMessage(), "Click on old colour to replace with new colour.");
  EXPECT_FALSE(u.b().f15.Loaded);
  // Now every pixel of exactly the clicked colour takes the new one.
  Form4_Picture2_MouseDown(*u.s, 1, 0, 2.2, 0.3);
  EXPECT_EQ(u.Px(0, 0), RGB(1, 2, 0));
  EXPECT_EQ(u.Px(1, 0), RGB(11, 21, 31));
  EXPECT_EQ(u.Px(2, 0), RGB(1, 2, 0));
  EXPECT_EQ(u.LastMessage(), "Saved " + (u.app / "picture2.bmp"));
  EXPECT_TRUE(ReadBack(u.app / "picture2.bmp") == u.b().Picture2);
}

TEST(BitmapWorkspace, ReplaceRefusesAColourSharingAChannelWithTheNewOne) {
  Utility u;
  u.Load(Picture(2, 1, {RGB(50, 60, 70), RGB(1, 2, 3)}));
  Replace_Colour_Click(*u.s);
  u.b().f15.Text1[0] = "9";
  u.b().f15.Text1[1] = "60";  // green as in the first pixel
  u.b().f15.Text1[2] = "9";
  Form15_Text1_Change(*u.s, 1);
  Form4_Picture2_MouseDown(*u.s, 1, 0, 0, 0);
  ASSERT_GE(u.ui.messages.size(), 2u);
  EXPECT_EQ(u.ui.messages[u.ui.messages.size() - 2],
            "you can not replace the background colour. (colour in upper left corner)");
  EXPECT_EQ(u.Px(0, 0), RGB(50, 60, 70));
  // The click still ends in the save.
  EXPECT_EQ(u.LastMessage(), "Saved " + (u.app / "picture2.bmp"));
  Form4_Picture2_MouseDown(*u.s, 1, 0, 1, 0);
  EXPECT_EQ(u.Px(1, 0), RGB(9, 60, 9));
}

TEST(BitmapWorkspace, MapEditModeEditsTheHexBeforeTheColourIsReplaced) {
  Utility u;
  // 33 x 31 hexes on a picture of 64 x 60 pixels: 2 pixels a column, 2 a row.
  Bitmap pic(64, 60);
  pic.Fill(RGB(5, 5, 5));
  u.Load(pic);
  mMapEditMode_Click(*u.s);
  EXPECT_EQ(u.b().mMapEditModeCaption, "Map Edit Mode (ON)");
  Replace_Colour_Click(*u.s);
  u.b().f15.Text1[0] = "200";
  Form15_Text1_Change(*u.s, 0);
  u.s->pens.CurTile = 3;
  // col = round(9 / 2) = 4 (to even), even: row = round((11 - 1) / 2) = 5.
  Form4_Picture2_MouseDown(*u.s, 1, 0, 9, 11);
  EXPECT_EQ(u.s->pens.AutoTile, -1);
  EXPECT_EQ(u.s->pens.CurHexX, 4);
  EXPECT_EQ(u.s->pens.CurHexY, 5);
  EXPECT_EQ(u.s->doc.HexTile(4, 5), 3);
  EXPECT_EQ(u.Px(63, 59), RGB(200, 0, 0));
  // Another button centres the main view there instead of painting.
  u.s->pens.CurTile = 8;
  Form4_Picture2_MouseDown(*u.s, 2, 0, 20, 41);  // col 10, row 20
  EXPECT_EQ(u.s->pens.CurHexX, 10);
  EXPECT_EQ(u.s->pens.CurHexY, 20);
  EXPECT_NE(u.s->doc.HexTile(10, 20), 8);
  EXPECT_EQ(u.s->doc.HexTile(4, 5), 3);
  mMapEditMode_Click(*u.s);
  EXPECT_EQ(u.b().mMapEditModeCaption, "Map Edit Mode (OFF)");
}

TEST(BitmapWorkspace, MapEditModeOtherButtonCentresTheMainView) {
  Utility u;
  u.s->doc.MapMaxX = 199;
  u.s->doc.MapMaxY = 199;
  NewMap(*u.s);
  Bitmap pic(398, 398);  // 2 pixels a column and a row: the width over the last column's index
  u.Load(pic);
  mMapEditMode_Click(*u.s);
  ASSERT_EQ(u.s->view.ViewX, 0);
  const int16_t tile = u.s->doc.HexTile(150, 150);
  u.s->pens.CurTile = 8;
  // col = round(300 / 2) = 150, even: row = round((301 - 1) / 2) = 150.
  Form4_Picture2_MouseDown(*u.s, 2, 0, 300, 301);
  EXPECT_EQ(u.s->pens.CurHexX, 150);
  EXPECT_EQ(u.s->pens.CurHexY, 150);
  EXPECT_EQ(u.s->doc.HexTile(150, 150), tile);
  // The view stands round the hex.
  EXPECT_EQ(u.s->view.ViewX, 150 - u.s->view.ViewCols / 2);
  EXPECT_EQ(u.s->view.ViewY, 150 - u.s->view.ViewRows / 2);
}

TEST(BitmapWorkspace, ColourReductionValueEntry) {
  Utility u;
  ChangeCRV_Click(*u.s);
  EXPECT_TRUE(u.b().Frame1Visible);
  EXPECT_EQ(u.b().Text1, " 4");
  u.b().Text1 = "6.5";
  Form4_Label1_Click(*u.s);
  EXPECT_FALSE(u.b().Frame1Visible);
  EXPECT_EQ(u.s->pens.ColourCRV, 6);
  ChangeCRV_Click(*u.s);
  Form4_Activate(*u.s);
  EXPECT_FALSE(u.b().Frame1Visible);
}

// ---- Derived files -------------------------------------------------------------

TEST(BitmapDerived, SixSeasonalFiles) {
  Utility u;
  const uint32_t other = RGB(200, 100, 50);
  Bitmap pic = Picture(4, 2,
                       {kWinterColour, kMudColours[0], kMudColours[6], other, RGB(255, 255, 255), kMudColours[3],
                        RGB(0, 0, 0), RGB(4, 8, 12)});
  u.Load(pic, "fieldx.bmp");
  CreateSeasonalMaps_Click(*u.s);
  EXPECT_EQ(u.b().Caption, "Bitmap Utilities");
  EXPECT_EQ(u.b().MousePointer, vbArrow);
  const std::string base = u.pics / "field";
  const Bitmap d = ReadBack(base + "d.bmp"), r = ReadBack(base + "r.bmp"), wl = ReadBack(base + "wl.bmp"),
               wd = ReadBack(base + "wd.bmp"), ml = ReadBack(base + "ml.bmp"), md = ReadBack(base + "md.bmp");
  auto dark = [](uint32_t c) {
    const auto& t = DarkTable();
    return RGB(t[(c >> 16) & 255], t[(c >> 8) & 255], t[c & 255]);
  };
  for (int y = 0; y < 2; ++y)
    for (int x = 0; x < 4; ++x) {
      const uint32_t src = pic.GetPixel(x, y);
      EXPECT_EQ(d.GetPixel(x, y), dark(src));
      EXPECT_EQ(r.GetPixel(x, y), src & 0xFF0000u);  // the red channel alone
      const uint32_t winter = src == kWinterColour ? 0xFFFFFFu : src;
      EXPECT_EQ(wl.GetPixel(x, y), winter);
      EXPECT_EQ(wd.GetPixel(x, y), dark(winter));
      bool isMud = false;
      for (uint32_t m : kMudColours) isMud |= src == m;
      const uint32_t mud = isMud ? dark(dark(src)) : src;
      EXPECT_EQ(ml.GetPixel(x, y), mud);
      EXPECT_EQ(md.GetPixel(x, y), dark(mud));
    }
  EXPECT_EQ(ml.GetPixel(1, 0), RGB(100, 100, 64));
  EXPECT_EQ(d.GetPixel(0, 1), RGB(191, 191, 191));
  // The picture itself is untouched; ImageBits holds the last canvas.
  EXPECT_TRUE(u.b().Picture2 == pic);
  EXPECT_TRUE(BitmapOf(u.b().ImageBits) == md);
}

TEST(BitmapDerived, SpriteMaskWhiteWhereBlack) {
  Utility u;
  u.Load(Picture(3, 1, {0, RGB(1, 0, 0), RGB(255, 255, 255)}), "tank.bmp");
  CreateMask_Click(*u.s);
  const Bitmap m = ReadBack(u.pics / "tankm.bmp");
  EXPECT_EQ(m.GetPixel(0, 0), 0xFFFFFFu);
  EXPECT_EQ(m.GetPixel(1, 0), 0u);
  EXPECT_EQ(m.GetPixel(2, 0), 0u);
  EXPECT_EQ(u.b().Caption, "Creating " + (u.pics / "tankm.bmp"));
}

TEST(BitmapDerived, IconStripWithItsMirroredFrame) {
  Utility u;
  // 240 x 150: every pixel tells where it came from, the background at (0, 0)
  // is grey, and (5, 5) is true black.
  Bitmap pic(240, 150);
  for (int y = 0; y < 150; ++y)
    for (int x = 0; x < 240; ++x) pic.SetPixel(x, y, RGB(x, y, 77));
  const uint32_t grey = RGB(0, 0, 77);
  pic.SetPixel(0, 0, grey);
  pic.SetPixel(3, 0, grey);
  pic.SetPixel(5, 5, 0);
  u.Load(pic, "tank.bmp");
  mPG2_Click(*u.s);
  EXPECT_EQ(u.LastMessage(), (u.pics / "tank_x.bmp") + " saved.");
  // The passes stay in the picture: black survives as (1, 1, 1), the background goes black.
  EXPECT_EQ(u.Px(5, 5), 0x010101u);
  EXPECT_EQ(u.Px(0, 0), 0u);
  EXPECT_EQ(u.Px(3, 0), 0u);
  EXPECT_EQ(u.Px(4, 0), RGB(4, 0, 77));
  const Bitmap strip = ReadBack(u.pics / "tank_x.bmp");
  ASSERT_EQ(strip.Width(), 400);
  ASSERT_EQ(strip.Height(), 50);
  EXPECT_TRUE(strip == u.b().Picture3);
  EXPECT_TRUE(u.b().Picture3Visible);
  for (int y = 0; y < 50; y += 7)
    for (int x = 0; x < 80; x += 3) {
      // The first frame is the second row's frame from x = 80 to 159, mirrored.
      ASSERT_EQ(strip.GetPixel(x, y), u.Px(159 - x, 50 + y)) << x << "," << y;
      ASSERT_EQ(strip.GetPixel(80 + x, y), u.Px(x, y));
      ASSERT_EQ(strip.GetPixel(160 + x, y), u.Px(x, 50 + y));
      ASSERT_EQ(strip.GetPixel(240 + x, y), u.Px(160 + x, 50 + y));
      ASSERT_EQ(strip.GetPixel(320 + x, y), u.Px(160 + x, 100 + y));
    }
  EXPECT_EQ(strip.GetPixel(79, 0), RGB(80, 50, 77));
}

TEST(BitmapDerived, IconOnABlackBackgroundKeepsItsBlackAsOneOneOne) {
  ImageStore img = Store(3, 1, {0, 0, RGB(9, 9, 9)});
  IconPasses(img);
  EXPECT_EQ(PixelRGB(img, 0, 0), 0x010101u);
  EXPECT_EQ(PixelRGB(img, 1, 0), 0x010101u);
  EXPECT_EQ(PixelRGB(img, 2, 0), RGB(9, 9, 9));
}

TEST(BitmapDerived, SectorsAt299And300Pixels) {
  auto names = [](const std::string& dir) {
    std::vector<std::string> n;
    for (const auto& e : fs::directory_iterator(dir)) n.push_back(e.path().filename().string());
    std::sort(n.begin(), n.end());
    return n;
  };
  {
    Utility u;
    Bitmap pic(299, 299);
    pic.Fill(RGB(1, 2, 3));
    u.Load(pic);
    EXPECT_FALSE(DirExists(u.app / "newsectors"));
    SaveSectors_Click(*u.s);
    EXPECT_EQ(names(u.app / "newsectors"), std::vector<std::string>{"0000.bmp"});
    const Bitmap s0 = ReadBack(u.app / "newsectors/0000.bmp");
    EXPECT_EQ(s0.Width(), 300);
    EXPECT_EQ(s0.GetPixel(298, 298), RGB(1, 2, 3));
    EXPECT_EQ(s0.GetPixel(299, 10), 0u);  // beyond the picture
  }
  {
    Utility u;
    Bitmap pic(300, 300);
    for (int y = 0; y < 300; ++y)
      for (int x = 0; x < 300; ++x) pic.SetPixel(x, y, RGB(x & 255, y & 255, 9));
    u.Load(pic);
    ASSERT_TRUE(MakeDirs(u.app / "newsectors"));
    kvtest::WriteText(u.app / "newsectors/0000.bmp", "old");
    SaveSectors_Click(*u.s);
    EXPECT_EQ(names(u.app / "newsectors"), (std::vector<std::string>{"0000.bmp", "0001.bmp", "0100.bmp", "0101.bmp"}));
    EXPECT_TRUE(ReadBack(u.app / "newsectors/0000.bmp") == pic);  // replaced
    Bitmap black(300, 300);
    EXPECT_TRUE(ReadBack(u.app / "newsectors/0101.bmp") == black);
  }
}

// ---- Bitmap to map ---------------------------------------------------------------

TEST(BitmapToMap, ClicksOnNewAndConvertedPixels) {
  Utility u;
  const uint32_t A = RGB(200, 0, 0), B = RGB(0, 0, 200);
  // 4 x 3 pixels, colours already multiples of 4.
  u.Load(Picture(4, 3, {A, A, B, B, B, A, B, A, A, B, B, B}), "landx.bmp");
  u.s->pens.CurTile = 1;  // terrain 1
  bmp2map_Click(*u.s);
  Document& d = u.s->doc;
  EXPECT_EQ(u.s->pens.FromMapEdit, -1);
  EXPECT_EQ(d.MapMaxX, 4);
  EXPECT_EQ(d.MapMaxY, 3);
  EXPECT_EQ(d.MapFile, "landx.map");
  EXPECT_EQ(d.MapPath, u.pics / "landx.map");
  EXPECT_EQ(u.b().PixelDoneW, 5);
  EXPECT_EQ(u.b().PixelDoneH, 4);
  for (uint8_t v : u.b().PixelDone) ASSERT_EQ(v, 0);

  // A click on colour A with a pen of terrain 3: every A pixel becomes a hex
  // of terrain 3 with one of its random tiles, and takes the terrain's colour.
  u.s->pens.CurTile = 3;
  const uint32_t c3 = TerrainColour(u.s->ref, 3);
  Form4_Picture2_MouseDown(*u.s, 1, 0, 0, 0);
  for (int y = 0; y < 3; ++y)
    for (int x = 0; x < 4; ++x) {
      const bool wasA = (y == 0 && x < 2) || (y == 1 && (x == 1 || x == 3)) || (y == 2 && x == 0);
      const uint8_t done = u.b().PixelDone[static_cast<size_t>(y) * 5 + x];
      EXPECT_EQ(done, wasA ? 1 : 0) << x << "," << y;
      EXPECT_EQ(d.HexInfo(x + 1, y + 1, 0), wasA ? 3 : 1);
      if (wasA) {
        EXPECT_TRUE(d.HexTile(x + 1, y + 1) == 3 || d.HexTile(x + 1, y + 1) == 18);
      }
      EXPECT_EQ(u.Px(x, y), wasA ? c3 : B);
    }
  EXPECT_EQ(u.s->forms.Label3Caption, "3,2");
  EXPECT_TRUE(u.s->forms.Form5Loaded);
  EXPECT_EQ(u.shown.back(), "Form5");
  // The jump map was drawn anew with the new terrain.
  int32_t jx = 0, jy = 0;
  HexToJumpPixel(u.s->ref, 1, 1, jx, jy);
  EXPECT_EQ(u.s->jump.Picture2.GetPixel(jx + u.s->ref.JumpColPitch / 2, jy + u.s->ref.JumpRowPitch / 2), c3);

  // A click on a converted pixel changes that one hex's terrain, not its tile
  // nor the other hexes of that colour.
  const int16_t tileBefore = d.HexTile(2, 1);
  u.s->pens.CurTile = 8;
  Form4_Picture2_MouseDown(*u.s, 1, 0, 1, 0);
  EXPECT_EQ(d.HexInfo(2, 1, 0), 8);
  EXPECT_EQ(d.HexTile(2, 1), tileBefore);
  EXPECT_EQ(d.HexInfo(1, 1, 0), 3);
  EXPECT_EQ(u.Px(1, 0), TerrainColour(u.s->ref, 8));
  EXPECT_EQ(u.Px(0, 0), c3);

  // A colour that already is the pen's terrain colour, not converted: nothing.
  u.s->pens.CurTile = 3;
  const Bitmap before = u.b().Picture2;
  Form4_Picture2_MouseDown(*u.s, 1, 0, 0, 0);  // pixel (0, 0) is done: only its hex
  EXPECT_EQ(d.HexInfo(1, 1, 0), 3);
  u.b().PixelDone.assign(u.b().PixelDone.size(), 0);
  Form4_Picture2_MouseDown(*u.s, 1, 0, 3, 1);  // colour c3, no PixelDone
  EXPECT_TRUE(u.b().Picture2 == before);
  for (uint8_t v : u.b().PixelDone) ASSERT_EQ(v, 0);

  // Terrain 5 keeps the pen's own tile; row 0 and column 0 stay blank.
  u.s->pens.CurTile = 5;
  Form4_Picture2_MouseDown(*u.s, 1, 0, 2, 0);  // colour B
  EXPECT_EQ(d.HexTile(3, 1), 5);
  EXPECT_EQ(d.HexInfo(4, 3, 0), 5);
  for (int x = 0; x <= 4; ++x) EXPECT_EQ(d.HexInfo(x, 0, 0), 1);
  for (int y = 0; y <= 3; ++y) EXPECT_EQ(d.HexInfo(0, y, 0), 1);

  FileExit_Click(*u.s);
  EXPECT_EQ(u.s->pens.FromMapEdit, 0);
}

TEST(BitmapToMap, APictureTooLargeForAMapIsRefused) {
  Utility u;
  u.Load(Bitmap(32768, 1));
  const int16_t w = u.s->doc.MapMaxX;
  bmp2map_Click(*u.s);
  EXPECT_NE(u.LastMessage().find("too large to become a map"), std::string::npos);
  EXPECT_EQ(u.s->doc.MapMaxX, w);
  EXPECT_EQ(u.s->pens.FromMapEdit, 0);
}

// Sequences of ordinary actions that once left state behind for the next one
// to trip over: a narrow, tall new map, whole-map passes at the highest index,
// a current hex from a larger map, and values only a script can set.
#include <limits>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "editing/clipboard.h"
#include "gui/Form1.h"
#include "gui/guitest.h"
#include "gui/script.h"
#include "jumpmap/jumpmap.h"
#include "platform/bitmap.h"
#include "session.h"
#include "testutil.h"

using namespace kv;
using kv::gui::Form1;

namespace {

kvtest::MiniApp Mini() {
  kvtest::MiniApp mini;
  mini.types = {0, 1, 1, 3, 1, 5, 14, 1, 8, 6, 2, 3};
  mini.roads = {{}, {1, 0, 0, 1, 0, 0}};
  return mini;
}

struct Editor : kvtest::EditorWindow {
  kvtest::TempDir maps;
  Editor() : EditorWindow(Mini()) {}
  static std::string NewMap(int w, int h) {
    return "Form1.menu_file_new_Click\nForm6.Text1.Text = \"" + std::to_string(w) + "\"\nForm6.Text2.Text = \"" +
           std::to_string(h) + "\"\nForm6.Command2_Click\n";
  }
  std::string SaveAs(const std::string& name) const {
    return "Form1.menu_file_save_as_Click\nLoadSave.Dir1.Path = \"" + maps.path() +
           "\"\nLoadSave.Text1.Text = " + name + "\nLoadSave.Command2_Click\n";
  }
  std::string Open(const std::string& name) const {
    return "Form1.menu_file_open_Click\nLoadSave.Dir1.Path = \"" + maps.path() + "\"\nLoadSave.Text1.Text = " + name +
           "\nLoadSave.Command1_Click\n";
  }
};

long long Pixels(const Bitmap& b) { return static_cast<long long>(b.Width()) * b.Height(); }

}  // namespace

TEST(AnySequence, NarrowTallMapsGetAJumpMapThatGrowsWithTheirHexes) {
  Editor e;
  std::string out;
  // A map of usual shape keeps the scale from the screen, and its caption.
  ASSERT_EQ(e.Run(Editor::NewMap(59, 39) + "print Form5.Caption\n", &out), 0) << out;
  EXPECT_EQ(out, "Form5.Caption=Jump Map (F1) scale = 0.3555556\n");
  EXPECT_EQ(e.s().ref.JumpColPitch, 16);
  EXPECT_EQ(e.s().jump.Picture2.Width(), 16 * 60);

  // One or two columns, many rows: the width alone would give columns of half
  // the screen and a picture of billions of pixels.
  for (int rows : {100, 1000, 32767}) {
    ASSERT_EQ(e.Run(Editor::NewMap(1, rows) + "print MapMaxY Form5.Caption\n", &out), 0) << out;
    EXPECT_NE(out.find("MapMaxY=" + std::to_string(rows) + "\n"), std::string::npos) << out;
    EXPECT_NE(out.find("(reduced to fit)"), std::string::npos) << out;
    const Bitmap& pic = e.s().jump.Picture2;
    EXPECT_LE(Pixels(pic), kJumpPicturePixels) << rows;
    // The whole map is still on it, each hex at the pitches the clicks use.
    EXPECT_GE(pic.Height(), (rows + 1) * e.s().ref.JumpRowPitch) << rows;
    EXPECT_GE(pic.Width(), 2 * e.s().ref.JumpColPitch) << rows;
  }
  // A click at the picture's foot reaches the map's last rows.
  ASSERT_EQ(e.Run("Form1.StrategicShow_Click\nForm5.Picture2_MouseDown 1 0 0 " +
                      std::to_string(e.s().jump.Picture2.Height() - 1) + "\n",
                  &out),
            0)
      << out;
  EXPECT_EQ(e.s().view.ViewY, e.s().view.VScroll1.Max);
  EXPECT_GT(e.s().view.ViewY, 32000);

  // One row of the highest width: one dot a hex, as it always was.
  ASSERT_EQ(e.Run(Editor::NewMap(32767, 0) + "print Form5.Caption\n", &out), 0) << out;
  EXPECT_EQ(out, "Form5.Caption=Jump Map (F1) scale = 0\n");
  EXPECT_EQ(Pixels(e.s().jump.Picture2), 32768);
}

TEST(AnySequence, WholeMapPassesReachTheHighestIndex) {
  Editor e;
  for (auto [w, h] : {std::pair{32767, 0}, std::pair{0, 32767}}) {
    std::string out;
    ASSERT_EQ(e.Run(Editor::NewMap(w, h)), 0);
    Document& d = e.s().doc;
    // Railroads on every side of the last hex, whose plain tile has no road:
    // the passes must get there to clear them.
    d.HexTile(w, h) = 2;
    d.HexInfo(w, h, 0) = 1;
    for (int k = 1; k <= 6; ++k) d.HexInfo(w, h, k) = 2;
    ASSERT_EQ(e.Run("Form1.doroads_Click\n", &out), 0) << out;
    for (int k = 1; k <= 6; ++k) EXPECT_EQ(d.HexInfo(w, h, k), 0) << w << " " << k;
    d.HexInfo(w, h, 0) = 8;
    d.HexTile(w, h) = 8;
    ASSERT_EQ(e.Run("Form1.MemorizeRoads_Click\nprint Form1.Label3.Caption\nForm1.MemoriseRivers_Click\n"
                    "Form1.mMountains_Click\nForm1.mRndWoods_Click\nForm1.mMapRebuild_Click\n",
                    &out),
              0)
        << out;
    EXPECT_EQ(out, "Form1.Label3.Caption=" + std::to_string(w) + " / " + std::to_string(w) + "\n");
    // Rebuilt from its terrain: the first forest tile.
    EXPECT_EQ(d.HexTile(w, h), 8);
  }
}

TEST(AnySequence, TheCurrentHexOfALargerMapDoesNotReachASmallerOne) {
  Editor e;
  std::string out;
  ASSERT_EQ(e.Run(Editor::NewMap(3, 3) + e.SaveAs("small") + Editor::NewMap(59, 39) + e.SaveAs("large") +
                      "clickhex 55 35\nprint CurHexX CurHexY\n" + e.Open("small.map") +
                      "print MapMaxX CurHexX CurHexY\nForm1.Form_KeyDown 78 0\nForm1.Form_KeyDown 66 0\n"
                      "Form1.Form_KeyDown 82 0\nprint HexTile(3,3) CurTile\n",
                  &out),
            0)
      << out;
  EXPECT_EQ(out.substr(0, out.find("HexTile")), "CurHexX=55\nCurHexY=35\nMapMaxX=3\nCurHexX=3\nCurHexY=3\n");
  // The keys work on the hex the current hex was brought to.
  EXPECT_EQ(e.s().doc.HexTile(3, 3), e.s().pens.CurTile);

  // A selection beyond the new map's edge is cut to it.
  ASSERT_EQ(e.Run(e.Open("large.map") + "clickhex 40 30 1 1\nclickhex 50 35 1 1\n" + e.Open("small.map") +
                      "print SelX1 SelX2 SelY1 SelY2\n",
                  &out),
            0)
      << out;
  EXPECT_EQ(out, "SelX1=3\nSelX2=3\nSelY1=3\nSelY2=3\n");
}

TEST(AnySequence, TheBitmapUtilityLeavesNoHexBeyondTheMapItMakes) {
  Editor e;
  Bitmap pic(300, 2);
  pic.Fill(RGB(0, 0, 200));
  ASSERT_TRUE(WriteBmpFile(e.maps / "stripx.bmp", pic, nullptr));
  std::string out;
  ASSERT_EQ(e.Run("Form1.LoadBitmap_Click\nForm4.mMapEditMode_Click\nForm4.LoadBitmap_Click\nLoadSave.Dir1.Path = \"" +
                      e.maps.path() +
                      "\"\nLoadSave.Text1.Text = stripx\nLoadSave.Command1_Click\n"
                      "Form4.Picture2_MouseDown 1 0 290 1\nprint CurHexX CurHexY\n"
                      "Form4.bmp2map_Click\nprint MapMaxX MapMaxY CurHexX CurHexY\nForm4.Form_KeyDown 66 0\n",
                  &out),
            0)
      << out;
  EXPECT_EQ(out, "CurHexX=31\nCurHexY=15\nMapMaxX=300\nMapMaxY=2\nCurHexX=31\nCurHexY=2\n");
  EXPECT_EQ(e.s().doc.HexTile(31, 2), e.s().pens.CurTile);

  // A click where the picture stands for no hex of the map changes nothing.
  ASSERT_EQ(e.Run(Editor::NewMap(3, 3) + "CurHexX = 1\nForm4.Picture2_MouseDown 1 0 2900 1\nprint CurHexX\n", &out), 0)
      << out;
  EXPECT_EQ(out, "CurHexX=1\n");
}

TEST(AnySequence, ValuesOnlyAScriptCanSetAreHarmless) {
  Editor e;
  Session& s = e.s();
  std::string out;
  // A block on the clipboard, then a paste position above the map.
  ASSERT_EQ(e.Run("clickhex 2 2 1 1\nclickhex 4 4 1 1\nForm1.mCopy_Click\nCurHexY = -32767\nCurHexX = 3\n"
                  "Form1.mPaste_Click\n",
                  &out),
            0)
      << out;
  const auto before = s.doc.HexTile.raw();
  ASSERT_EQ(e.Run("CurTile = 3\nclickhex 2 2\nclickhex 0 0 2\nCurHexY = -1\nForm1.mPaste_Click\n", &out), 0) << out;
  s.doc.HexTile(2, 2) = before[2 * (s.doc.MapMaxX + 1) + 2];
  s.doc.HexInfo(2, 2, 0) = 1;
  EXPECT_EQ(s.doc.HexTile.raw(), before);

  // The core alone: a block pasted at a hex off the map writes nothing.
  const std::vector<uint8_t> block = {1, 0, 1, 0, 7, 0, 7, 0, 7, 0, 7, 0};
  EXPECT_TRUE(PasteClipboardBytes(s.doc, 0, -1, block));
  EXPECT_TRUE(PasteClipboardBytes(s.doc, -1, 0, block));
  EXPECT_EQ(s.doc.HexTile.raw(), before);
  EXPECT_TRUE(PasteClipboardBytes(s.doc, s.doc.MapMaxX, s.doc.MapMaxY, block));
  EXPECT_EQ(s.doc.HexTile(s.doc.MapMaxX, s.doc.MapMaxY), 7);

  // A view origin no hex number reaches is refused; the view stays.
  EXPECT_EQ(e.Run("ViewX = 2147483647\nclickhex 1 1\n", &out), 1);
  EXPECT_EQ(out, "line 1: 2147483647 is outside -32768..32767\n");
  EXPECT_EQ(s.view.ViewX, 0);
  ASSERT_EQ(e.Run("ViewX = 32767\nViewY = -32768\nclickhex 1 1\nForm1.Form_KeyDown 67 0\nViewX = 0\nViewY = 0\n", &out),
            0)
      << out;

  // No window system gives a point that is no number.
  EXPECT_EQ(e.Run("Form5.Picture2_MouseDown 1 0 inf 100\n", &out), 1);
  EXPECT_EQ(out.rfind("line 1: argument 3 of Picture2_MouseDown: \"inf\" is no double", 0), 0u) << out;
  EXPECT_EQ(e.Run("Form1.Picture1_MouseDown 1 0 10 nan\n", &out), 1);
  const int before_x = s.view.ViewX;
  JumpMapClick(s, std::numeric_limits<double>::infinity(), 100);
  JumpMapClick(s, 5, std::numeric_limits<double>::quiet_NaN());
  EXPECT_EQ(s.view.ViewX, before_x);
}

// Found by the stateful fuzzer (kv_statefuzz), each with its shortest sequence.
TEST(FuzzFound, ANewMapSmallerThanTheViewKeepsTheScrollBarsInRange) {
  Editor e;
  const ScrollBarModel& h = e.s().view.HScroll1;
  const ScrollBarModel& v = e.s().view.VScroll1;
  auto inRange = [](const ScrollBarModel& b) {
    return std::min(b.Min, b.Max) <= b.Value && b.Value <= std::max(b.Min, b.Max);
  };
  // New Map puts both bars at 1 first; a map of three rows has a range that
  // runs from 0 down to below 0.
  ASSERT_EQ(e.Run(Editor::NewMap(300, 2)), 0);
  EXPECT_LT(v.Max, 0);
  EXPECT_TRUE(inRange(v)) << v.Value << " in " << v.Min << ".." << v.Max;
  EXPECT_TRUE(inRange(h));
  // And New Map again from there: the bar stops at the end of its range.
  ASSERT_EQ(e.Run(Editor::NewMap(2, 300)), 0);
  EXPECT_TRUE(inRange(v));
  EXPECT_TRUE(inRange(h)) << h.Value << " in " << h.Min << ".." << h.Max;
  ASSERT_EQ(e.Run("Form1.menu_file_new_Click\nForm6.Command1_Click\n"), 0);
  EXPECT_TRUE(inRange(h)) << h.Value << " in " << h.Min << ".." << h.Max;
  EXPECT_EQ(e.s().view.ViewX, 1);  // Cancel leaves the origin the menu set
}

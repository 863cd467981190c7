// What a script sees and what a save writes, exactly: the objective table of
// a loaded map, every shared variable by its bare name, and the pixels of
// every picture control.
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "document/document_ops.h"
#include "document/mapfile.h"
#include "editing/mapload.h"
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
  mini.types = {0, 1, 1, 3, 1, 5, 14, 1, 8, 6};
  return mini;
}

struct Editor : kvtest::EditorWindow {
  kvtest::TempDir maps;
  Editor() : EditorWindow(Mini(), 1366, 768) {}
};

uint32_t Point(uint32_t rgb) { return ((rgb >> 16) & 255) + 256 * ((rgb >> 8) & 255) + 65536 * (rgb & 255); }

}  // namespace

TEST(Exactness, AnObjectiveTableReadFromAFileGoesOutUnchanged) {
  Editor e;
  Session& s = e.s();
  Document& d = s.doc;
  // A table that HexCtl would not give: an objective without owner (which a
  // rebuild drops), and rows in another order.
  d.HexCtl(3, 4, 0) = 1;
  d.HexCtl(3, 4, 1) = 2;
  d.HexCtl(5, 6, 1) = 1;
  d.ObjCount = 2;
  d.ObjList.Allocate(2);
  const int16_t rows[2][6] = {{5, 6, 0, 0, 2, 3}, {3, 4, 1, 0, 1, 3}};
  for (int i = 0; i < 2; ++i)
    for (int j = 0; j < 6; ++j) d.ObjList(i + 1, j) = rows[i][j];
  d.MapPath = e.maps / "stale.map";
  ASSERT_TRUE(SaveMap(s));
  const auto written = kvtest::ReadBytes(e.maps / "stale.map");

  // Opened, with the windows that follow a load made and drawn again, then
  // saved: byte for byte what was read.
  std::string out;
  ASSERT_EQ(e.Run("Form1.menu_file_open_Click\nLoadSave.Dir1.Path = \"" + e.maps.path() +
                      "\"\nLoadSave.Text1.Text = stale\nLoadSave.Command1_Click\nprint ObjCount\n"
                      "Form1.menu_file_save_Click\n",
                  &out),
            0)
      << out;
  EXPECT_EQ(out, "ObjCount=2\n");
  EXPECT_EQ(kvtest::ReadBytes(e.maps / "stale.map"), written);

  // Loading the jump map is one of the moments that rebuild it.
  ASSERT_EQ(e.Run("Form1.StrategicShow_Click\nprint ObjCount\n", &out), 0) << out;
  EXPECT_EQ(out, "ObjCount=1\n");
}

TEST(Exactness, EverySharedVariableIsPrintedAndSetByItsName) {
  Editor e;
  const std::vector<QString> names = gui::ScriptVariableNames();
  // The design's shared data, every one.
  for (const char* n : {"CurTile",        "CurNation",
                        "CurOrigNation",  "CurObjType",
                        "CurSide",        "CurSideKind",
                        "CurHexX",        "CurHexY",
                        "SelX1",          "SelX2",
                        "SelY1",          "SelY2",
                        "CtlMode",        "AutoTile",
                        "AutoTileResume", "RandomMode",
                        "SideEdit",       "ClearSides",
                        "ElevMode",       "ElevValue",
                        "HexOutlines",    "ShowRoadControl",
                        "HighlightTile",  "GridOn",
                        "GridX",          "GridY",
                        "DefaultAreaAll", "JumpBoxColour",
                        "ShiftKey",       "AreaMode",
                        "FromMapEdit",    "ImgScaleA",
                        "ImgScaleB",      "ColourCRV",
                        "ViewX",          "ViewY",
                        "ViewCols",       "ViewRows",
                        "ViewPixW",       "ViewPixH",
                        "ScrollSilent",   "DlgMode",
                        "DlgExt",         "DlgDir",
                        "DlgFile",        "MapMaxX",
                        "MapMaxY",        "ObjCount",
                        "TileMax",        "TerrainMax",
                        "NationCount",    "HexW",
                        "HexH",           "HexSlant",
                        "HexInset",       "ColPitch",
                        "RowPitch",       "FlagDX",
                        "FlagDY",         "VersionNo",
                        "JumpScale",      "JumpColPitch",
                        "JumpRowPitch",   "JumpFilter",
                        "JumpMapOpen",    "BufW",
                        "BufH",           "ReplaceMode",
                        "ExtremeArmed",   "MapEditMode",
                        "BitmapName",     "MapFile",
                        "MapPath",        "NdxPath",
                        "StrPath",        "NationSet"})
    EXPECT_NE(std::find(names.begin(), names.end(), QString::fromLatin1(n).toLower()), names.end()) << n;

  // Each prints, and each that may be set takes its own value back, and
  // then another, which it prints.
  const std::vector<std::string> readOnly = {
      "mapmaxx",  "mapmaxy",  "objcount", "tilemax",   "terrainmax",   "nationcount", "hexw", "hexh", "colpitch",
      "rowpitch", "hexinset", "hexslant", "versionno", "mousepointer", "jumpmapopen", "bufw", "bufh"};
  for (const QString& q : names) {
    const std::string n = q.toStdString();
    std::string out;
    ASSERT_EQ(e.Run("print " + n + "\n", &out), 0) << n << ": " << out;
    ASSERT_EQ(out.rfind(n + "=", 0), 0u) << out;
    const std::string value = out.substr(n.size() + 1, out.size() - n.size() - 2);
    const bool ro = std::find(readOnly.begin(), readOnly.end(), n) != readOnly.end();
    EXPECT_EQ(e.Run(n + " = \"" + value + "\"\n", &out), ro ? 1 : 0) << n << ": " << out;
    if (ro) continue;
    const bool text = value.empty() || value.find_first_not_of("-0123456789.") != std::string::npos;
    // Another value: a text, or the first of 1, 0, -1 the variable's range takes.
    std::string other = "x" + value;
    if (!text)
      for (const char* v : {"1", "0", "-1"})
        if (v != value && e.Run(n + " = " + v + "\n") == 0) {
          other = v;
          break;
        }
    ASSERT_EQ(e.Run(n + " = \"" + other + "\"\nprint " + n + "\n", &out), 0) << n << ": " << out;
    EXPECT_EQ(out, n + "=" + other + "\n");
    ASSERT_EQ(e.Run(n + " = \"" + value + "\"\n", &out), 0) << n << ": " << out;
  }
}

TEST(Exactness, ThePixelsOfEveryPictureAsAScriptReadsThem) {
  Editor e;
  Session& s = e.s();
  std::string out;
  ASSERT_EQ(e.Run("CurTile = 3\nclickhex 2 2\nForm1.StrategicShow_Click\n", &out), 0) << out;
  struct Probe {
    const char* item;
    uint32_t rgb;
  };
  const Bitmap jump = JumpMapView(s.jump);
  const Bitmap* sheet = &s.sprites.TileSheet;
  const Probe probes[] = {
      {"Form1.Picture1.Point(100,80)", s.sprites.Picture1.GetPixel(100, 80)},
      {"Form1.Picture1.Point(3,3)", s.sprites.Picture1.GetPixel(3, 3)},
      {"Form2.Picture2.Point(70,60)", sheet->GetPixel(70, 60)},
      {"Form2.Picture2.Point(5,5)", sheet->GetPixel(5, 5)},
      {"Form5.Picture2.Point(10,10)", jump.GetPixel(10, 10)},
      {"Form5.Picture2.Point(1,1)", jump.GetPixel(1, 1)},
  };
  for (const Probe& p : probes) {
    ASSERT_EQ(e.Run(std::string("print ") + p.item + "\n", &out), 0) << out;
    EXPECT_EQ(out, std::string(p.item) + "=" + std::to_string(Point(p.rgb)) + "\n");
  }
  // The strip under the view shows the road picture of the program folder.
  Bitmap strip(40, 20);
  for (int y = 0; y < 20; ++y)
    for (int x = 0; x < 40; ++x) strip.SetPixel(x, y, RGB(x * 5, y * 9, 200 - x));
  ASSERT_TRUE(WriteBmpFile(e.app / "bmp/roads.bmp", strip, nullptr));
  ASSERT_EQ(e.Run("Form1.Label1_Click\nprint Form1.Picture2.Point(7,5)\n", &out), 0) << out;
  EXPECT_EQ(out, "Form1.Picture2.Point(7,5)=" + std::to_string(Point(strip.GetPixel(7, 5))) + "\n");
  // Outside a picture: -1.
  ASSERT_EQ(e.Run("print Form5.Picture2.Point(-1,0) Form1.Picture1.Point(100000,1)\n", &out), 0) << out;
  EXPECT_EQ(out, "Form5.Picture2.Point(-1,0)=-1\nForm1.Picture1.Point(100000,1)=-1\n");
}

// The tile data screens: stepping through the tiles with the pen, what each
// screen reads from its files, and what a save writes to the files, the
// tables and the terrain tile lists. Also the fixed sequence of the random
// generator and the draws that rest on it.
#include <filesystem>

#include <gtest/gtest.h>

#include "autotile/engine.h"
#include "autotile/random.h"
#include "autotile/stores.h"
#include "autotile/tilescreens.h"
#include "autotile_fixture.h"
#include "editing/editing.h"

using namespace kv;
using namespace kvtest;
namespace fs = std::filesystem;

namespace {

std::vector<uint8_t> Bytes(AutoApp& a, const std::string& rel) { return ReadBytes(a.App(rel)); }

// Marks of the pattern screen from a text such as "101000".
void Marks(Session& s, const std::string& m) {
  for (int i = 0; i < 6; ++i) s.tileScreens.f13.Image2Tag[i] = m[i] == '1' ? "1" : "0";
}

}  // namespace

TEST(TileScreens, StepThroughTheTilesWithThePenAndWrapAround) {
  AutoApp a;
  Session& s = *a.s;
  a.p().CurTile = s.ref.TileMax;
  TileScreen_Load(s, TileScreen::Road);
  EXPECT_EQ(s.tileScreens.f11.Label1, "207 Terrain 1");
  TileScreen_Command(s, TileScreen::Road, 1);  // Next on the last tile
  EXPECT_EQ(a.p().CurTile, 0);
  EXPECT_EQ(s.tileScreens.f11.Label1, "0 Terrain 0");
  TileScreen_Command(s, TileScreen::Road, 0);  // Back on tile 0
  EXPECT_EQ(a.p().CurTile, 207);
  // The keys B, N and S; other keys are not the screen's.
  EXPECT_TRUE(TileScreen_KeyDown(s, TileScreen::Road, 78));
  EXPECT_EQ(a.p().CurTile, 0);
  EXPECT_TRUE(TileScreen_KeyDown(s, TileScreen::Road, 78));
  EXPECT_EQ(a.p().CurTile, 1);
  EXPECT_TRUE(TileScreen_KeyDown(s, TileScreen::Road, 66));
  EXPECT_EQ(a.p().CurTile, 0);
  EXPECT_FALSE(TileScreen_KeyDown(s, TileScreen::Road, 65));
  EXPECT_EQ(a.p().CurTile, 0);

  // The bold command: the last used on the screens with buttons, cleared by
  // the pointer over the form; on the road screen the label under the pointer.
  TileScreen_Load(s, TileScreen::Terrain);
  TileScreen_Command(s, TileScreen::Terrain, 1);
  EXPECT_EQ(s.tileScreens.f14.BoldCommand, 1);
  EXPECT_TRUE(s.tileScreens.f14.List1Enabled);  // enabled again at the end of the command
  TileScreen_KeyDown(s, TileScreen::Terrain, 66);
  EXPECT_EQ(s.tileScreens.f14.BoldCommand, 0);
  EXPECT_FALSE(s.tileScreens.f14.List1Enabled);  // until the key comes up
  TileScreen_KeyUp(s, TileScreen::Terrain);
  EXPECT_TRUE(s.tileScreens.f14.List1Enabled);
  TileScreen_MouseMove(s, TileScreen::Terrain);
  EXPECT_EQ(s.tileScreens.f14.BoldCommand, -1);
  TileScreen_Command(s, TileScreen::Road, 1);
  EXPECT_EQ(s.tileScreens.f11.BoldCommand, -1);
  RoadScreen_Label3_MouseMove(s, 2);
  EXPECT_EQ(s.tileScreens.f11.BoldCommand, 2);

  // Unloading a screen clears the picker's flag for it.
  s.ed.picker.RoadFormOpen = s.ed.picker.TerrainFormOpen = s.ed.picker.PatternFormOpen = 1;
  TileScreen_Unload(s, TileScreen::Road);
  TileScreen_Unload(s, TileScreen::Terrain);
  EXPECT_EQ(s.ed.picker.RoadFormOpen, 0);
  EXPECT_EQ(s.ed.picker.TerrainFormOpen, 0);
  EXPECT_EQ(s.ed.picker.PatternFormOpen, 1);
}

TEST(TileScreens, DrawTileStretchesThePenCellOfTheSheet) {
  AutoApp a;
  Session& s = *a.s;
  // Tile 17 is cell (1, 1); mark its top left and bottom right pixels.
  s.sprites.TileSheet.SetPixel(60, 50, 0xFF0000);
  s.sprites.TileSheet.SetPixel(119, 99, 0x00FF00);
  a.p().CurTile = 17;
  TileScreen_Load(s, TileScreen::Pattern);
  const Bitmap& pic = s.tileScreens.f13.Picture1;
  ASSERT_EQ(pic.Width(), kTileScreenPicW);
  ASSERT_EQ(pic.Height(), kTileScreenPicH);
  EXPECT_EQ(pic.GetPixel(0, 0), 0xFF0000u);
  EXPECT_EQ(pic.GetPixel(1, 1), 0xFF0000u);  // twice the size
  EXPECT_EQ(pic.GetPixel(119, 99), 0x00FF00u);
  EXPECT_NE(pic.GetPixel(60, 50), 0xFF0000u);
}

TEST(RoadScreen, MarksFromRoadinfoAndSaveChangesTheRoadFlagAtOnce) {
  AutoApp a;
  Session& s = *a.s;
  a.p().CurTile = tl::RoughRoad;  // road record 0 0 1 0 0 1
  TileScreen_Load(s, TileScreen::Road);
  EXPECT_EQ(s.tileScreens.f11.Image2Tag, (std::array<std::string, 6>{"0", "0", "1", "0", "0", "1"}));
  EXPECT_EQ(MarkPicture(s.tileScreens.f11.Image2Tag[2]), "bmp/c1.bmp");
  EXPECT_EQ(MarkPicture(s.tileScreens.f11.Image2Tag[0]), "bmp/c0.bmp");
  const std::vector<int16_t> table = s.ref.RoadTableData;
  // Clicks change the marks only; the save writes them.
  TileScreen_Image2_Click(s, TileScreen::Road, 2);
  TileScreen_Image2_Click(s, TileScreen::Road, 5);
  EXPECT_EQ(Bytes(a, "mapedit/roadinfo.dat")[6 * tl::RoughRoad + 2], 1);
  TileScreen_Command(s, TileScreen::Road, 2);
  const auto b = Bytes(a, "mapedit/roadinfo.dat");
  EXPECT_EQ(std::vector<uint8_t>(b.begin() + 6 * tl::RoughRoad, b.begin() + 6 * tl::RoughRoad + 6),
            std::vector<uint8_t>(6, 0));
  EXPECT_EQ(s.ref.RoadOf(tl::RoughRoad), 0);  // no longer a road tile
  EXPECT_EQ(s.ref.RoadTableData, table);      // the side table waits for the next start
  // A tile past the end of the file reads all marks off; a save extends the file.
  a.p().CurTile = 200;
  TileScreen_GetStuff(s, TileScreen::Road);
  EXPECT_EQ(s.tileScreens.f11.Image2Tag, (std::array<std::string, 6>{"0", "0", "0", "0", "0", "0"}));
  fs::resize_file(a.App("mapedit/roadinfo.dat"), 6 * 100);
  TileScreen_GetStuff(s, TileScreen::Road);
  TileScreen_Image2_Click(s, TileScreen::Road, 0);
  TileScreen_SaveStuff(s, TileScreen::Road);
  EXPECT_EQ(Bytes(a, "mapedit/roadinfo.dat").size(), 6u * 201);
  EXPECT_EQ(Bytes(a, "mapedit/roadinfo.dat")[6 * 200], 1);
  EXPECT_EQ(s.ref.RoadOf(200), 1);
}

TEST(TerrainScreen, StoredTerrainRandomFlagAndASaveThatCountsAtOnce) {
  AutoApp a;
  Session& s = *a.s;
  a.p().CurTile = tl::Rough;  // terrain 4
  TileScreen_Load(s, TileScreen::Terrain);
  TerrainScreenState& f = s.tileScreens.f14;
  ASSERT_EQ(f.List1.size(), 15u);
  EXPECT_EQ(f.List1[4], "Terrain 4");
  EXPECT_EQ(f.ListIndex, 4);
  EXPECT_EQ(f.Label1, "0018 Terrain 4");  // set by the list's click
  EXPECT_EQ(f.Label1Tag, "4");
  EXPECT_EQ(f.Label4, "Terrain 4");
  EXPECT_FALSE(f.Label4Bold);
  EXPECT_EQ(f.Option1, 0);  // no randomtile.dat: "NO"

  // The stored terrain differs from the one in use: bold.
  std::vector<uint8_t> types = Bytes(a, "mapedit/tiletype.dat");
  types[tl::Rough] = 9;
  WriteBytes(a.App("mapedit/tiletype.dat"), types);
  TileScreen_GetStuff(s, TileScreen::Terrain);
  EXPECT_TRUE(f.Label4Bold);
  EXPECT_EQ(f.Label4, "Terrain 9");

  // Choose terrain 8 and "YES", and save.
  a.Write("mapedit/t04/000000.txt", "018\r\n");
  f.ListIndex = 8;
  TerrainScreen_List1_Click(s);
  EXPECT_EQ(f.Label1, "0018 Terrain 8");
  f.Option1 = 1;
  TileScreen_Command(s, TileScreen::Terrain, 2);
  EXPECT_EQ(s.ref.TypeOf(tl::Rough), 8);  // at once
  EXPECT_EQ(Bytes(a, "mapedit/tiletype.dat")[tl::Rough], 8);
  const auto rnd = Bytes(a, "mapedit/randomtile.dat");
  ASSERT_EQ(rnd.size(), static_cast<size_t>(tl::Rough + 1));
  EXPECT_EQ(rnd[tl::Rough], 1);
  EXPECT_EQ(f.Label4, "Terrain 8");
  EXPECT_EQ(f.Label4Tag, "8");
  // The tile's old list still names it; drawing that record deletes the list.
  a.p().CurTile = tl::Rough2;
  int16_t r = -1;
  AutoDrawTile(s, 5, 5, r);
  EXPECT_EQ(r, -1);
  EXPECT_FALSE(a.Exists("mapedit/t04/000000.txt"));
  // The random tables are not rebuilt by the save.
  EXPECT_EQ(fs::file_size(a.App("mapedit/008.rnd")), 0u);
}

TEST(PatternScreen, ReadsTheFilesAndShowsTheHint) {
  AutoApp a;
  Session& s = *a.s;
  PatternScreenState& f = s.tileScreens.f13;
  std::vector<uint8_t> pat(6 * 20, 0);
  pat[6 * tl::Rough + 1] = 1;
  pat[6 * tl::Rough + 4] = 3;
  WriteBytes(a.App("mapedit/patterns.dat"), pat);
  std::vector<uint8_t> pt(20, 0);
  pt[tl::Rough] = 1;
  WriteBytes(a.App("mapedit/ptiles.dat"), pt);
  a.p().CurTile = tl::Rough;
  TileScreen_Load(s, TileScreen::Pattern);
  EXPECT_EQ(f.Option1, 1);
  EXPECT_TRUE(f.MarksVisible);
  EXPECT_EQ(f.Image2Tag, (std::array<std::string, 6>{"0", "1", "0", "0", "1", "0"}));
  EXPECT_EQ(f.OldDigits, "020050");
  EXPECT_EQ(f.Label1, "018: Terrain 4");
  EXPECT_EQ(f.Label1Tag, "4");
  EXPECT_EQ(f.Label4, "Mark adjacent Terrain 4 hexes.");
  // "NO" hides the marks and the hint.
  PatternScreen_Option1_Click(s, 0);
  EXPECT_FALSE(f.MarksVisible);
  // A port tile's hint, whatever the terrain's name; past the ends of the files
  // everything reads 0.
  a.p().CurTile = tl::Port;
  TileScreen_GetStuff(s, TileScreen::Pattern);
  EXPECT_EQ(f.Label4, "Mark adjacent port, or ocean hexes.");
  EXPECT_EQ(f.Option1, 0);
  EXPECT_FALSE(f.MarksVisible);
  EXPECT_EQ(f.OldDigits, "000000");
}

TEST(PatternScreen, SavesMoveTheTileBetweenListsAndALastTileTakesItsListAlong) {
  AutoApp a;
  Session& s = *a.s;
  PatternScreenState& f = s.tileScreens.f13;
  fs::remove_all(a.App("mapedit/t04"));
  // Rough2 (19) first: "Yes", sides 1 and 3.
  a.p().CurTile = tl::Rough2;
  TileScreen_Load(s, TileScreen::Pattern);
  PatternScreen_Option1_Click(s, 1);
  Marks(s, "101000");
  TileScreen_Command(s, TileScreen::Pattern, 2);
  EXPECT_EQ(a.Text("mapedit/t04/103000.txt"), "019\r\n");
  EXPECT_EQ(f.OldDigits, "103000");
  EXPECT_EQ(Bytes(a, "mapedit/ptiles.dat")[tl::Rough2], 1);
  const auto pat = Bytes(a, "mapedit/patterns.dat");
  EXPECT_EQ(std::vector<uint8_t>(pat.begin() + 6 * tl::Rough2, pat.end()), (std::vector<uint8_t>{1, 0, 1, 0, 0, 0}));
  // Rough (18), another tile of terrain 4, joins the same list: records ascend.
  a.p().CurTile = tl::Rough;
  TileScreen_GetStuff(s, TileScreen::Pattern);
  PatternScreen_Option1_Click(s, 1);
  Marks(s, "101000");
  TileScreen_SaveStuff(s, TileScreen::Pattern);
  EXPECT_EQ(a.Text("mapedit/t04/103000.txt"), "018\r\n019\r\n");
  // Unchanged marks and "Yes": the list is rebuilt in place, byte for byte.
  TileScreen_SaveStuff(s, TileScreen::Pattern);
  EXPECT_EQ(a.Text("mapedit/t04/103000.txt"), "018\r\n019\r\n");
  // Changed marks: the tile leaves the old list and joins the new one.
  Marks(s, "100001");
  TileScreen_SaveStuff(s, TileScreen::Pattern);
  EXPECT_EQ(a.Text("mapedit/t04/103000.txt"), "019\r\n");
  EXPECT_EQ(a.Text("mapedit/t04/100006.txt"), "018\r\n");
  // "NO": the tile leaves its list, and as its last tile the list file goes.
  PatternScreen_Option1_Click(s, 0);
  TileScreen_SaveStuff(s, TileScreen::Pattern);
  EXPECT_FALSE(a.Exists("mapedit/t04/100006.txt"));
  EXPECT_EQ(a.Text("mapedit/t04/103000.txt"), "019\r\n");
  EXPECT_EQ(Bytes(a, "mapedit/ptiles.dat")[tl::Rough], 0);
  // No marks and "Yes": the list named with six "0".
  PatternScreen_Option1_Click(s, 1);
  Marks(s, "000000");
  TileScreen_SaveStuff(s, TileScreen::Pattern);
  EXPECT_EQ(a.Text("mapedit/t04/000000.txt"), "018\r\n");
  // The engine draws from the lists the screen wrote.
  a.Fill(9, 9, tl::Open);
  a.PutRing(4, 4, 1, tl::Rough);
  a.PutRing(4, 4, 3, tl::Rough);
  a.p().CurTile = tl::Rough;
  int16_t r = -1;
  AutoDrawTile(s, 4, 4, r);
  EXPECT_EQ(r, tl::Rough2);
}

TEST(PatternScreen, BuildPatternFileTakesOnlyMarkedTilesOfThePenTerrain) {
  AutoApp a;
  Session& s = *a.s;
  // Tiles 18, 19, 22 are terrain 4; tile 2 is terrain 1 with the same marks.
  std::vector<uint8_t> pat(6 * 23, 0), pt(23, 0);
  for (int t : {2, 18, 19, 22}) {
    pat[6 * t] = 1;
    pt[t] = 1;
  }
  pt[19] = 0;  // not auto-drawn
  WriteBytes(a.App("mapedit/patterns.dat"), pat);
  WriteBytes(a.App("mapedit/ptiles.dat"), pt);
  a.p().CurTile = tl::Rough;
  fs::create_directories(a.App("mapedit/t04"));
  a.Write("mapedit/t04/100000.txt", "777\r\n");
  BuildPatternFile(s, a.App("mapedit/t04/100000.txt"), "100000");
  EXPECT_EQ(a.Text("mapedit/t04/100000.txt"), "018\r\n022\r\n");
  BuildPatternFile(s, a.App("mapedit/t04/100000.txt"), "000000");
  EXPECT_FALSE(a.Exists("mapedit/t04/100000.txt"));
}

TEST(RandomGenerator, TheSameSequenceOnEveryRun) {
  // A fresh generator gives these values, on every run and in every session.
  const float first[] = {0.7055475f, 0.5334240f, 0.5795186f, 0.2895625f, 0.3019480f, 0.7747401f};
  RndGen g;
  for (float v : first) EXPECT_NEAR(g.Next(), v, 1e-6);
  AutoApp a, b;
  for (int i = 0; i < 1000; ++i) {
    const float v = a.s->rnd.Next();
    ASSERT_EQ(v, b.s->rnd.Next());
    ASSERT_GE(v, 0.0f);
    ASSERT_LT(v, 1.0f);
  }
}

TEST(RandomGenerator, ListDrawsAndRandomTilesFollowTheSequence) {
  AutoApp a;
  Session& s = *a.s;
  s.rnd.Reset();
  // r = Int(3 * Rnd + 1) over the values above: records 3, 2, 2, 1, 1, 3.
  a.Write("mapedit/t04/000000.txt", "018\r\n019\r\n022\r\n");
  std::vector<int> got;
  for (int i = 0; i < 6; ++i) {
    int16_t t = -1;
    PickListTile(s, a.App("mapedit/t04/000000.txt"), t);
    got.push_back(t);
  }
  EXPECT_EQ(got, (std::vector<int>{22, 19, 19, 18, 18, 22}));
  // randomtile addresses record Int(n * Rnd): 4 records and 0.7055 give the third.
  a.Write("mapedit/004.rnd", "018\r\n019\r\n022\r\n018\r\n");
  s.rnd.Reset();
  a.p().CurTile = tl::Rough;
  randomtile(s);
  EXPECT_EQ(a.p().CurTile, 22);
  // An empty table leaves the pen, but still takes its draw.
  a.Write("mapedit/004.rnd", "");
  randomtile(s);
  EXPECT_EQ(a.p().CurTile, 22);
  a.Write("mapedit/004.rnd", "018\r\n019\r\n022\r\n018\r\n");
  randomtile(s);  // the third value, 0.5795: index 2
  EXPECT_EQ(a.p().CurTile, 22);
  randomtile(s);  // 0.2896: index 1
  EXPECT_EQ(a.p().CurTile, 19);
}

TEST(RandomTables, BuiltFromTheMasterFileWithTilesPastItsEndLeftOut) {
  AutoApp a;
  Session& s = *a.s;
  // Tiles 18, 19 and 22 are terrain 4; the master file ends before tile 22.
  std::vector<uint8_t> master(20, 0);
  master[18] = master[19] = 1;
  master[4] = 1;  // terrain 2
  master[1] = 2;  // only 1 counts
  WriteBytes(a.App("mapedit/randomtile.dat"), master);
  a.Write("mapedit/003.rnd", "junk");
  BuildRndTables(s);
  EXPECT_EQ(a.Text("mapedit/004.rnd"), "018\r\n019\r\n");
  EXPECT_EQ(a.Text("mapedit/002.rnd"), "004\r\n");
  EXPECT_EQ(a.Text("mapedit/001.rnd"), "");
  EXPECT_EQ(a.Text("mapedit/003.rnd"), "");  // every table is made anew
  EXPECT_TRUE(a.Exists("mapedit/014.rnd"));
}

TEST(RandomTiles, RandomModeDrawsANewPenForEveryPaintedHex) {
  AutoApp a;
  Session& s = *a.s;
  a.Write("mapedit/008.rnd", "008\r\n009\r\n013\r\n");
  mRandom_Click(s);
  EXPECT_EQ(a.p().RandomMode, -1);
  EXPECT_EQ(s.ed.f1.mRandomCaption, "Random Tiles ON");
  EXPECT_TRUE(s.ed.f1.mRandomChecked);
  s.rnd.Reset();
  a.p().CurTile = tl::Forest;
  a.p().AutoTile = 0;
  // Int(3 * Rnd) over the fixed sequence: 2, 1, 1, 0, 0, 2.
  std::vector<int> placed;
  for (int16_t x = 1; x <= 6; ++x) {
    SetHex(s, x, 5);
    placed.push_back(a.d().HexTile(x, 5));
  }
  EXPECT_EQ(placed, (std::vector<int>{13, 9, 9, 8, 8, 13}));
  EXPECT_EQ(a.p().CurTile, 13);  // the pen stays at the tile drawn last
  mRandom_Click(s);
  EXPECT_EQ(a.p().RandomMode, 0);
  EXPECT_EQ(s.ed.f1.mRandomCaption, "Random Tiles OFF");
  EXPECT_FALSE(s.ed.f1.mRandomChecked);
  SetHex(s, 7, 5);
  EXPECT_EQ(a.d().HexTile(7, 5), 13);  // off: the pen as it is
}

// The tile picker, the control form with its menu entries, the grid and
// map-image dialogs, and the jump map window's arithmetic, without a window
// system.
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "editing/controlform.h"
#include "editing/editing.h"
#include "editing/startup.h"
#include "editing/tilepicker.h"
#include "jumpmap/jumpwindow.h"
#include "minisession.h"
#include "session.h"
#include "testutil.h"

using namespace kv;

namespace {

// A started editor on a sheet of 256 tiles and four nations, whose names sort
// in another order than the list file gives them.
kvtest::MiniApp EditorApp() {
  kvtest::MiniApp mini;
  mini.tiles = 256;
  mini.nations = {"Corvia", "Avaria", "Dremen", "Belmont"};
  return mini;
}

struct Editor : kvtest::MiniSession {
  std::vector<std::string>& shown = ui.shown;  // forms asked for
  std::vector<std::string> refreshed;          // tile data screens told
  Editor() : MiniSession(EditorApp()) {
    s->ed.hooks.TileDataGetStuff = [this](Session&, FormId f) { refreshed.push_back(FormName(f)); };
  }
};

}  // namespace

TEST(TilePicker, PickAtTheWorkedPixels) {
  RefData ref;  // 60 x 50 cells
  EXPECT_EQ(SheetTileAt(ref, 61, 51), 17);
  EXPECT_EQ(SheetTileAt(ref, 59, 49), 0);
  EXPECT_EQ(SheetTileAt(ref, 959, 799), 255);
  EXPECT_EQ(SheetTileAt(ref, 60, 0), 1);
  EXPECT_EQ(SheetTileAt(ref, 0, 50), 16);
  // The pixel is rounded first, halves to even: 59.5 is 60, 58.5 is 58,
  // 49.5 is 50, 48.5 is 48.
  EXPECT_EQ(SheetTileAt(ref, 59.5, 0), 1);
  EXPECT_EQ(SheetTileAt(ref, 58.5, 48.5), 0);
  EXPECT_EQ(SheetTileAt(ref, 0, 49.5), 16);
  EXPECT_EQ(SheetTileAt(ref, 0, 49.4), 0);
}

TEST(TilePicker, LeftPickResetsTheModesRightPickOnlyTakesThePen) {
  Editor e;
  EXPECT_EQ(e.s->ref.TileMax, 255);
  auto busy = [&] {
    e.p().SideEdit = 2;
    e.p().AutoTile = -1;
    e.p().RandomMode = -1;
    e.p().CtlMode = 2;
    e.s->ed.f1.mRandomChecked = true;
    e.s->ed.f1.mRandomCaption = "Random Tiles ON";
    e.s->ed.f1.Command2Caption = "Auto-Tile On";
  };
  busy();
  EXPECT_TRUE(TilePicker_MouseDown(*e.s, 2, 0, 61, 51));  // the menu pops up
  EXPECT_EQ(e.p().CurTile, 17);
  EXPECT_EQ(e.p().SideEdit, 2);
  EXPECT_EQ(e.p().AutoTile, -1);
  EXPECT_EQ(e.p().RandomMode, -1);
  EXPECT_EQ(e.p().CtlMode, 2);
  EXPECT_TRUE(e.s->ed.f1.mRandomChecked);

  EXPECT_FALSE(TilePicker_MouseDown(*e.s, 1, 0, 959, 799));
  EXPECT_EQ(e.p().CurTile, 255);
  EXPECT_EQ(e.p().SideEdit, 0);
  EXPECT_EQ(e.p().AutoTile, 0);
  EXPECT_EQ(e.p().RandomMode, 0);
  EXPECT_EQ(e.p().CtlMode, 0);
  EXPECT_EQ(e.s->ed.f1.Command2Caption, "Auto-Tile Off");
  EXPECT_EQ(e.s->ed.f1.mRandomCaption, "Random Tiles OFF");
  EXPECT_FALSE(e.s->ed.f1.mRandomChecked);
  EXPECT_TRUE(e.refreshed.empty());  // no tile data screen is open
}

TEST(TilePicker, OpenTileDataScreensFollowThePenAndKeysToggleTheirFlags) {
  Editor e;
  TilePickerState& t = e.s->ed.picker;
  TilePicker_KeyDown(*e.s, key::F2, 0);
  EXPECT_EQ(t.TerrainFormOpen, 1);
  EXPECT_EQ(e.shown, std::vector<std::string>{"Form14"});
  TilePicker_KeyDown(*e.s, key::F2, 0);  // off again, the screen left as it is
  EXPECT_EQ(t.TerrainFormOpen, 0);
  EXPECT_EQ(e.shown.size(), 1u);
  TilePicker_KeyDown(*e.s, key::F3, 0);
  TilePicker_KeyDown(*e.s, key::F4, 0);
  TilePicker_KeyDown(*e.s, key::F1, 0);
  EXPECT_EQ(e.shown, (std::vector<std::string>{"Form14", "Form11", "Form13", "Form12"}));
  e.shown.clear();
  TilePicker_mTerrain_Click(*e.s);
  TilePicker_mTerrain_Click(*e.s);  // the menu opens, it does not toggle
  EXPECT_EQ(t.TerrainFormOpen, 1);
  e.shown.clear();
  TilePicker_MouseDown(*e.s, 1, 0, 130, 10);
  EXPECT_EQ(e.refreshed, (std::vector<std::string>{"Form11", "Form13", "Form14"}));
  EXPECT_EQ(e.shown, (std::vector<std::string>{"Form11", "Form13", "Form14"}));
  e.refreshed.clear();
  TilePicker_MouseDown(*e.s, 2, 0, 130, 10);  // a right click does not
  EXPECT_TRUE(e.refreshed.empty());
}

TEST(TilePicker, CaptionNamesTheTileInDecimalAndHexadecimal) {
  Editor e;
  e.s->ref.TileType[26] = 3;
  TilePicker_MouseMove(*e.s, 0, 0, 10 * 60 + 5, 1 * 50 + 5);
  EXPECT_EQ(e.s->ed.picker.Caption, "Tiles F2 26(x1A) Terrain 3");
  TilePicker_MouseMove(*e.s, 0, 0, 959, 799);
  EXPECT_EQ(e.s->ed.picker.Caption.substr(0, 18), "Tiles F2 255(xFF) ");
  // Past the last tile the caption stays.
  TilePicker_MouseMove(*e.s, 0, 0, 5, 16 * 50 + 5);
  EXPECT_EQ(e.s->ed.picker.Caption.substr(0, 18), "Tiles F2 255(xFF) ");
}

TEST(TilePicker, LayoutStepsOneCellABarStep) {
  RefData ref;
  const PickerLayout l = LayoutTilePicker(ref, 981, 506, 17, 17, 964, 804);
  EXPECT_EQ(l.Picture1.Width, 964);
  EXPECT_EQ(l.Picture1.Height, 489);
  EXPECT_EQ(l.VScroll1.Left, 964);
  EXPECT_EQ(l.HScroll1.Top, 489);
  EXPECT_EQ(l.V.Max, 804 - 489);
  EXPECT_EQ(l.H.Max, 0);
  EXPECT_EQ(l.V.SmallChange, 50);
  EXPECT_EQ(l.H.LargeChange, 60);
}

TEST(TilePicker, HelpLabelsFromAFileOfEightFieldsOnly) {
  Editor e;
  auto& labels = e.s->ed.picker.HelpLabels;
  TileHelp_Load(*e.s);
  EXPECT_EQ(labels[0], "F1 - Display this screen");
  kvtest::MakeMiniApp(e.app.path(), {});
  kvtest::WriteText(e.app / "tvk_info/s2_help.txt", "one,two,three,four,five,six,seven\r\n");
  TileHelp_Load(*e.s);  // seven fields: the design text stands
  EXPECT_EQ(labels[0], "F1 - Display this screen");
  EXPECT_EQ(labels[7], "Same as hitting F2.");
  kvtest::WriteText(e.app / "tvk_info/s2_help.txt", "one,\"two, too\",three\r\nfour,five,six,seven,eight\r\n");
  TileHelp_Load(*e.s);
  EXPECT_EQ(labels[0], "one");
  EXPECT_EQ(labels[1], "two, too");
  EXPECT_EQ(labels[7], "eight");
  EXPECT_EQ(labels[8], "F2 - Set Tile Terrain Type");
}

TEST(ControlForm, ListsStartWithNoneThenNamesSorted) {
  Editor e;
  Control_Load(*e.s);
  const ControlFormState& f = e.s->ed.f3;
  EXPECT_EQ(f.List1, (std::vector<std::string>{"-None-", "Avaria", "Belmont", "Corvia", "Dremen"}));
  EXPECT_EQ(f.List2, f.List1);
  EXPECT_TRUE(f.Label2Bold[0]);
  EXPECT_FALSE(f.Label2Bold[1]);
  EXPECT_TRUE(e.s->forms.Form3Loaded);
}

TEST(ControlForm, List1CarriesList2UnlessTheSameNationIsClickedAgain) {
  Editor e;
  Control_Load(*e.s);
  const ControlFormState& f = e.s->ed.f3;
  // "Belmont" is the fourth nation of the file, second in the list.
  Control_List1_Click(*e.s, 2);
  EXPECT_EQ(e.p().CurNation, 4);
  EXPECT_EQ(e.p().CurOrigNation, 4);
  EXPECT_EQ(f.List2Index, 2);
  EXPECT_EQ(e.p().CtlMode, 2);
  // Another original owner by hand, then the same controller again.
  Control_List2_Click(*e.s, 3);
  EXPECT_EQ(e.p().CurOrigNation, 1);
  e.p().CtlMode = 0;
  Control_List1_Click(*e.s, 2);
  EXPECT_EQ(e.p().CurOrigNation, 1);
  EXPECT_EQ(f.List2Index, 3);
  EXPECT_EQ(e.p().CtlMode, 2);
  // Another controller takes the original owner with it.
  Control_List1_Click(*e.s, 1);
  EXPECT_EQ(e.p().CurNation, 2);
  EXPECT_EQ(e.p().CurOrigNation, 2);
  // "-None-": no control, no objective, no original owner.
  e.p().CurObjType = 2;
  Control_List1_Click(*e.s, 0);
  EXPECT_EQ(e.p().CurNation, 0);
  EXPECT_EQ(e.p().CurObjType, 0);
  EXPECT_EQ(e.p().CurOrigNation, 0);
  EXPECT_EQ(f.List2Index, 0);
}

TEST(ControlForm, ObjectiveButtonsAndTheModeLabels) {
  Editor e;
  Control_Load(*e.s);
  const ControlFormState& f = e.s->ed.f3;
  Control_Command3_Click(*e.s);
  EXPECT_EQ(e.p().CurObjType, 3);
  EXPECT_EQ(e.p().CtlMode, 2);
  EXPECT_EQ(e.p().AreaMode, 1);
  EXPECT_TRUE(f.Label2Bold[0]);  // the bold mark stays where it was
  EXPECT_FALSE(f.Label2Bold[1]);
  Control_Command1_Click(*e.s);
  EXPECT_EQ(e.p().CurObjType, 2);
  EXPECT_EQ(e.p().AreaMode, 0);
  Control_Command2_Click(*e.s);
  EXPECT_EQ(e.p().CurObjType, 1);
  e.p().AreaMode = 1;
  e.p().CtlMode = 0;
  Control_Command4_Click(*e.s);
  EXPECT_EQ(e.p().CurObjType, 0);
  EXPECT_EQ(e.p().CtlMode, 2);
  EXPECT_EQ(e.p().AreaMode, 1);
  Control_Label2_Click(*e.s, 1);
  EXPECT_FALSE(f.Label2Bold[0]);
  EXPECT_TRUE(f.Label2Bold[1]);
  Control_Label2_Click(*e.s, 0);
  EXPECT_EQ(e.p().AreaMode, 0);
  EXPECT_TRUE(f.Label2Bold[0]);
  EXPECT_FALSE(f.Label2Bold[1]);
}

TEST(ControlForm, MenuEntriesOfHexControl) {
  Editor e;
  HexControlOn_Click(*e.s);
  EXPECT_EQ(e.p().CtlMode, 2);
  EXPECT_TRUE(e.s->ed.f1.HexControlOnChecked);
  EXPECT_FALSE(e.s->ed.f1.HexControlOFFChecked);
  EXPECT_EQ(e.shown, std::vector<std::string>{"Form3"});
  e.p().CurObjType = 2;
  HexControlOFF_Click(*e.s);
  EXPECT_EQ(e.p().CtlMode, 0);
  EXPECT_EQ(e.p().CurObjType, 0);
  EXPECT_FALSE(e.s->ed.f1.HexControlOnChecked);
  EXPECT_TRUE(e.s->ed.f1.HexControlOFFChecked);

  Document& d = e.s->doc;
  d.HexOrigOwner(1, 1) = 3;  // no control: the original owner goes
  d.HexCtl(2, 3, 0) = 2;
  d.HexCtl(2, 3, 1) = 2;
  d.HexOrigOwner(2, 3) = 4;
  mOriginalOwner_Click(*e.s);
  EXPECT_EQ(d.HexOrigOwner(1, 1), 0);
  EXPECT_EQ(d.HexOrigOwner(2, 3), 2);
  ASSERT_EQ(d.ObjCount, 1);
  EXPECT_EQ(d.ObjList(1, 0), 2);
  EXPECT_EQ(d.ObjList(1, 1), 3);
  EXPECT_EQ(d.ObjList(1, 4), 2);
}

TEST(GridForm, SizesBelowOneAreRefusedWhileTheGridIsOn) {
  Editor e;
  mGrid_Click(*e.s);
  EXPECT_EQ(e.p().GridOn, -1);
  EXPECT_TRUE(e.s->ed.f1.mGridChecked);
  Grid_Load(*e.s);
  EXPECT_EQ(e.s->ed.f10.Text1, "15");
  for (const char* bad : {"0", "-3", "abc", "0.4"}) {
    e.s->ed.f10.Text1 = "4";
    e.s->ed.f10.Text2 = bad;
    e.ui.messages.clear();
    EXPECT_FALSE(Grid_Command1_Click(*e.s)) << bad;
    EXPECT_EQ(e.ui.messages.size(), 1u) << bad;
    EXPECT_EQ(e.p().GridX, 15) << bad;
    EXPECT_EQ(e.p().GridY, 15) << bad;
    EXPECT_TRUE(e.s->ed.f10.Loaded) << bad;  // the form stays open
  }
  EXPECT_TRUE(e.ui.unloaded.empty());
  e.s->ed.f10.Text2 = " 6.5xyz";
  EXPECT_TRUE(Grid_Command1_Click(*e.s));
  EXPECT_EQ(e.p().GridX, 4);
  EXPECT_EQ(e.p().GridY, 6);  // CInt: halves to even
  EXPECT_EQ(e.ui.unloaded, std::vector<std::string>{"Form10"});

  // With the grid off any size goes through, but the grid cannot come on.
  mGrid_Click(*e.s);
  EXPECT_EQ(e.p().GridOn, 0);
  Grid_Load(*e.s);
  e.s->ed.f10.Text1 = "0";
  EXPECT_TRUE(Grid_Command1_Click(*e.s));
  EXPECT_EQ(e.p().GridX, 0);
  e.ui.messages.clear();
  mGrid_Click(*e.s);
  EXPECT_EQ(e.p().GridOn, 0);
  EXPECT_FALSE(e.s->ed.f1.mGridChecked);
  EXPECT_EQ(e.ui.messages.size(), 1u);
}

TEST(GridForm, CancelTurnsTheGridOffAndKeepsTheSizes) {
  Editor e;
  mGrid_Click(*e.s);
  Grid_Load(*e.s);
  e.s->ed.f10.Text1 = "7";
  Grid_Command2_Click(*e.s);
  EXPECT_EQ(e.p().GridOn, 0);
  EXPECT_FALSE(e.s->ed.f1.mGridChecked);
  EXPECT_EQ(e.p().GridX, 15);
}

TEST(HelpScreen, TheLinesEachEndedByACarriageReturn) {
  const std::string t = HelpText();
  std::vector<std::string> lines;
  size_t start = 0;
  for (size_t cr; (cr = t.find('\r', start)) != std::string::npos; start = cr + 1)
    lines.push_back(t.substr(start, cr - start));
  EXPECT_EQ(start, t.size());  // nothing after the last carriage return
  ASSERT_EQ(lines.size(), 14u);
  EXPECT_EQ(lines[0], "TVK Map Editor version 580");
  EXPECT_EQ(lines[5], "F4 Select current Map Tile to hightlight in BlUE. ON/OFF");
  EXPECT_EQ(lines[13], "Right Mouse Button (Tile screen) - Set Tile Info.");
  EXPECT_EQ(t.find('\n'), std::string::npos);
}

TEST(MapImageDialog, ZeroNegativesAndTextGiveOne) {
  EXPECT_EQ(ImageSizeValue("0"), 1);
  EXPECT_EQ(ImageSizeValue("-20"), 1);
  EXPECT_EQ(ImageSizeValue("abc"), 1);
  EXPECT_EQ(ImageSizeValue(""), 1);
  EXPECT_EQ(ImageSizeValue(" 75"), 75);
  EXPECT_EQ(ImageSizeValue("12 hexes"), 12);
  EXPECT_EQ(ImageSizeValue("2.5"), 2);
  EXPECT_EQ(ImageSizeValue("3.5"), 4);
  EXPECT_EQ(ImageSizeValue("99999"), 32767);

  Editor e;
  ImageSize_Load(*e.s);
  EXPECT_EQ(e.s->ed.f9.Text1, " 75");
  EXPECT_EQ(e.s->ed.f9.Text2, " 75");
  e.s->ed.f9.Text1 = "x";
  e.s->ed.f9.Text2 = "30";
  ImageSize_Unload(*e.s);
  EXPECT_EQ(e.p().ImgScaleA, 1);
  EXPECT_EQ(e.p().ImgScaleB, 30);
}

TEST(JumpWindow, SizeAtLoadFitsASmallMapWithinTheScreen) {
  Editor e;
  int w = 0, h = 0;
  JumpWindowSize(*e.s, 17, 17, w, h);
  EXPECT_EQ(w, 600);  // 32 columns fit the first size
  EXPECT_EQ(h, 600);
  e.s->doc.MapMaxX = 700;
  e.s->doc.MapMaxY = 900;
  JumpWindowSize(*e.s, 17, 17, w, h);
  EXPECT_EQ(w, 730);
  EXPECT_EQ(h, 976);
  e.s->doc.MapMaxY = 1070;  // capped at the screen
  e.s->doc.MapMaxX = 1920;  // no smaller than the screen: untouched
  JumpWindowSize(*e.s, 17, 17, w, h);
  EXPECT_EQ(w, 600);
  EXPECT_EQ(h, 1080);
}

TEST(JumpWindow, ActivationBringsTheBarsToTheViewWithinTheirRanges) {
  Editor e;
  JumpMapState& j = e.s->jump;
  j.Picture2.Create(400, 300);
  JumpScrollRanges(*e.s, 250, 200, false);
  EXPECT_EQ(j.HScroll1.Max, 150);
  EXPECT_EQ(j.VScroll1.Max, 100);
  EXPECT_EQ(j.HScroll1.LargeChange, 20);
  EXPECT_EQ(j.VScroll1.LargeChange, 10);
  JumpScrollRanges(*e.s, 250, 200, true);
  EXPECT_EQ(j.HScroll1.Max, 150 + e.s->ref.JumpColPitch);
  e.s->view.ViewX = 100;
  e.s->view.ViewCols = 10;
  e.s->view.ViewY = 3;
  e.s->view.ViewRows = 8;
  JumpWindowActivate(*e.s, 100, 60, true, true);
  EXPECT_EQ(j.HScroll1.Value, 60);  // 100 + 10 - 50
  EXPECT_EQ(j.VScroll1.Value, 0);   // 3 + 8 - 30, held at the minimum
  JumpWindowActivate(*e.s, 0, 0, false, true);
  EXPECT_EQ(j.HScroll1.Value, 60);  // a hidden bar stays
  EXPECT_EQ(j.VScroll1.Value, 11);
}

TEST(JumpWindow, KeyCTwiceGivesTheFirstColourAgain) {
  Editor e;
  JumpWindowKeyDown(*e.s, key::C, 0);
  EXPECT_EQ(e.p().JumpBoxColour, 0xFFFFFF);
  EXPECT_EQ(e.s->jump.Picture2Box.colour, 0xFFFFFFu);
  JumpWindowKeyDown(*e.s, key::C, 0);
  EXPECT_EQ(e.p().JumpBoxColour, 0);
  JumpWindowKeyDown(*e.s, key::F2, 0);
  JumpWindowKeyDown(*e.s, key::F3, 0);
  EXPECT_EQ(e.shown, (std::vector<std::string>{"Form2", "Form3"}));
}

TEST(JumpWindow, CountryListInFileOrderAndAClickFindsTheFirstOfTheName) {
  Editor e;
  e.s->ref.NationName[3] = "Avaria";  // a second nation of the same name
  EXPECT_EQ(JumpCountryList(*e.s), (std::vector<std::string>{"Corvia", "Avaria", "Avaria", "Belmont"}));
  e.s->ed.dlg.DlgFile = e.app / "none.map";  // no map file: a plain picture is made first
  JumpShowCountry(*e.s);
  EXPECT_TRUE(e.s->jump.ListVisible);
  EXPECT_TRUE(JumpCountryClick(*e.s, 2));
  EXPECT_EQ(e.p().CurNation, 2);
  EXPECT_FALSE(e.s->jump.ListVisible);
  // A nation without a name is still that nation, not the empty entry 0.
  e.s->ref.NationName[1] = "";
  JumpCountryClick(*e.s, 0);
  EXPECT_EQ(e.p().CurNation, 1);
}

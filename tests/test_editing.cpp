// Editing the map from the main window: SetHex in every mode, the mouse, the
// selection block, the keys, the buttons and the menu toggles.
#include <cstring>
#include <memory>

#include <gtest/gtest.h>

#include "document/mapfile.h"
#include "document/namestore.h"
#include "editing/editing.h"
#include "editing/startup.h"
#include "minisession.h"
#include "session.h"
#include "testutil.h"
#include "view/geometry.h"
#include "view/transform.h"

using namespace kv;

namespace {

// Tile 0 sea, 1 a road on open ground, 2 4 7 16 31 open ground, 3 rough,
// 5 and 6 the terrains whose tiles carry roads on every side, 8 terrain 8.
kvtest::MiniApp EditorApp() {
  kvtest::MiniApp mini = kvtest::RoadTileApp();
  mini.types = {0, 1, 1, 3, 1, 5, 14, 1, 8, 6};
  return mini;
}

struct Editor : kvtest::MiniSession {
  Editor() : MiniSession(EditorApp()) {}
  // A press in the middle of hex (x, y) for the current view.
  void Click(int x, int y, int button = 1) {
    double X = 0, Y = 0;
    ViewTransform(s->ref, s->view).HexCentre(x, y, X, Y);
    Picture1_MouseDown(*s, button, 0, X, Y);
  }
  void Sides(int x, int y, int v) {
    for (int k = 1; k <= 6; ++k) d().HexInfo(x, y, k) = static_cast<uint8_t>(v);
  }
  bool SidesAre(int x, int y, int v) {
    for (int k = 1; k <= 6; ++k)
      if (d().HexInfo(x, y, k) != v) return false;
    return true;
  }
};

}  // namespace

TEST(SetHex, TilePaintSetsTileAndTerrainAndKeepsSides) {
  Editor e;
  e.p().CurTile = 3;
  e.Sides(4, 4, 2);
  SetHex(*e.s, 4, 4);
  EXPECT_EQ(e.d().HexTile(4, 4), 3);
  EXPECT_EQ(e.d().HexInfo(4, 4, 0), 3);
  EXPECT_TRUE(e.SidesAre(4, 4, 2));
  // Terrains 5 and 14 put a road on every side.
  for (int16_t tile : {5, 6}) {
    e.Sides(5, 5, 0);
    e.p().CurTile = tile;
    SetHex(*e.s, 5, 5);
    EXPECT_TRUE(e.SidesAre(5, 5, 1)) << "tile " << tile;
  }
}

TEST(SetHex, AutoTileWithoutEngineAnswerPaintsThePen) {
  Editor e;
  e.p().AutoTile = -1;
  e.p().CurTile = 3;
  SetHex(*e.s, 2, 2);
  EXPECT_EQ(e.d().HexTile(2, 2), 3);
  EXPECT_EQ(e.p().CurTile, 3);
}

TEST(SetHex, ElevationPenChangesOnlyTheElevation) {
  Editor e;
  e.p().ElevMode = -1;
  e.p().ElevValue = -40;
  e.p().CurTile = 3;
  e.p().ClearSides = -1;
  e.p().CtlMode = 2;
  e.p().CurNation = 1;
  e.Sides(1, 1, 1);
  const int16_t before = e.d().HexTile(1, 1);
  SetHex(*e.s, 1, 1);
  EXPECT_EQ(e.d().HexElev(1, 1), 87);
  EXPECT_EQ(e.d().HexTile(1, 1), before);
  EXPECT_TRUE(e.SidesAre(1, 1, 1));
  EXPECT_EQ(e.d().HexCtl(1, 1, 0), 0);
}

TEST(SetHex, SidePaintSetsOneSideAndTakesTheHexTileAsPen) {
  Editor e;
  e.d().HexTile(3, 3) = 4;
  e.p().SideEdit = 2;
  e.p().CurSide = 4;
  e.p().CurSideKind = 2;
  e.p().CurTile = 3;
  SetHex(*e.s, 3, 3);
  EXPECT_EQ(e.d().HexInfo(3, 3, 4), 2);
  EXPECT_EQ(e.d().HexInfo(3, 3, 3), 0);
  EXPECT_EQ(e.d().HexTile(3, 3), 4);
  EXPECT_EQ(e.p().CurTile, 4);
  // A side beside the strip's six cells sets nothing, not even the terrain.
  e.p().CurSide = 9;
  SetHex(*e.s, 3, 3);
  EXPECT_EQ(e.d().HexInfo(3, 3, 0), 1);
}

TEST(SetHex, ClearSidesAfterTilePaintTakesTheHexTile) {
  Editor e;
  e.p().ClearSides = -1;
  e.p().CurTile = 5;  // would set every side to 1
  SetHex(*e.s, 6, 6);
  EXPECT_EQ(e.d().HexTile(6, 6), 5);
  EXPECT_TRUE(e.SidesAre(6, 6, 0));
  EXPECT_EQ(e.p().CurTile, 5);
  // In hex control mode it clears without painting.
  e.p().CtlMode = 2;
  e.p().CurTile = 3;
  e.Sides(7, 7, 2);
  SetHex(*e.s, 7, 7);
  EXPECT_TRUE(e.SidesAre(7, 7, 0));
  EXPECT_NE(e.d().HexTile(7, 7), 3);
}

TEST(SetHex, DeploymentTogglesAndAsksForACountry) {
  Editor e;
  e.p().CtlMode = 1;
  e.p().CurNation = 2;
  SetHex(*e.s, 4, 5);
  EXPECT_EQ(e.d().HexDeploy(4, 5), 2);
  e.p().CurNation = 3;
  SetHex(*e.s, 4, 5);  // a marked hex is cleared whatever its nation
  EXPECT_EQ(e.d().HexDeploy(4, 5), 0);
  EXPECT_TRUE(e.ui.messages.empty());
  e.p().CurNation = 0;
  e.d().HexDeploy(4, 6) = 1;
  SetHex(*e.s, 4, 6);
  ASSERT_EQ(e.ui.messages.size(), 1u);
  EXPECT_EQ(e.ui.messages[0], "Select a Country");
  EXPECT_EQ(e.d().HexDeploy(4, 6), 0);
  SetHex(*e.s, 4, 7);
  EXPECT_EQ(e.d().HexDeploy(4, 7), 0);
  EXPECT_EQ(e.d().HexTile(4, 7), e.d().HexTile(0, 0));  // no tile painted in this mode
}

TEST(SetHex, HexControlWritesOwnerObjectiveAndOriginalOwner) {
  Editor e;
  e.p().CtlMode = 2;
  e.p().CurNation = 2;
  e.p().CurObjType = 3;
  e.p().CurOrigNation = 1;
  e.d().HexTile(8, 2) = 7;
  SetHex(*e.s, 8, 2);
  EXPECT_EQ(e.d().HexCtl(8, 2, 0), 2);
  EXPECT_EQ(e.d().HexCtl(8, 2, 1), 3);
  EXPECT_EQ(e.d().HexOrigOwner(8, 2), 1);
  EXPECT_EQ(e.p().CurTile, 7);
  EXPECT_EQ(e.d().HexTile(8, 2), 7);
}

TEST(MouseDown, LeftPaintsRightPicksThePenAndResetsModes) {
  Editor e;
  e.p().CurTile = 3;
  e.Click(5, 6);
  EXPECT_EQ(e.p().CurHexX, 5);
  EXPECT_EQ(e.p().CurHexY, 6);
  EXPECT_EQ(e.d().HexTile(5, 6), 3);
  e.d().HexElev(9, 9) = 140;
  e.d().HexTile(9, 9) = 8;
  e.p().CtlMode = 1;
  e.p().SideEdit = 2;
  e.p().RandomMode = -1;
  e.p().SelX1 = 2;
  e.p().SelX2 = 4;
  e.p().AutoTile = -1;
  e.Click(9, 9, 2);
  EXPECT_EQ(e.p().CurTile, 8);
  EXPECT_EQ(e.p().CtlMode, 0);
  EXPECT_EQ(e.p().SideEdit, 0);
  EXPECT_EQ(e.p().RandomMode, 0);
  EXPECT_EQ(e.p().AutoTile, 0);
  EXPECT_EQ(e.p().AutoTileResume, 1);
  EXPECT_EQ(e.p().SelX1 + e.p().SelX2, 0);
  EXPECT_EQ(e.s->ed.f1.Command2Caption, "Auto-Tile Off");
  EXPECT_EQ(e.s->ed.f1.mRandomCaption, "Random Tiles OFF");
  EXPECT_EQ(e.s->ed.f1.Text4, "13");
  EXPECT_EQ(e.d().HexTile(9, 9), 8);
  // The next plain left click paints once and turns AutoTile on again.
  e.Click(10, 3);
  EXPECT_EQ(e.d().HexTile(10, 3), 8);
  EXPECT_EQ(e.p().AutoTile, -1);
  EXPECT_EQ(e.p().AutoTileResume, 0);
  EXPECT_EQ(e.s->ed.f1.Command2Caption, "Auto-Tile ON");
}

TEST(MouseDown, ControlOrAltHeldNeitherPaintsNorSelects) {
  Editor e;
  e.p().CurTile = 3;
  e.p().ShiftKey = 2;
  e.Click(5, 5);
  EXPECT_NE(e.d().HexTile(5, 5), 3);
  EXPECT_EQ(e.p().SelX1, 0);
  EXPECT_EQ(e.p().CurHexX, 5);
}

TEST(MouseDown, ClickBeyondTheLastColumnTakesTheLastColumn) {
  Editor e;
  Picture1_MouseDown(*e.s, 2, 0, 100000, 30);
  EXPECT_EQ(e.p().CurHexX, e.d().MapMaxX);
}

TEST(MouseDown, HexNameGoesToTheNameBox) {
  Editor e;
  SetHexName(*e.s, 3, 4, "Hill 203");
  e.Click(3, 4, 2);
  EXPECT_EQ(e.s->ed.f1.Text2, "Hill 203            ");  // all 20 characters
}

TEST(Selection, ShiftClicksGrowThenPullInTheBlock) {
  Editor e;
  e.p().ShiftKey = 1;
  const int16_t tile = e.d().HexTile(4, 3);
  e.p().CurTile = 3;
  e.Click(4, 3);
  EXPECT_EQ(e.d().HexTile(4, 3), tile);  // selecting paints nothing
  EXPECT_EQ(e.p().SelX1, 4);
  EXPECT_EQ(e.p().SelY1, 3);
  EXPECT_EQ(e.p().SelX2, 4);
  EXPECT_EQ(e.p().SelY2, 3);
  e.Click(9, 8);
  EXPECT_EQ(e.p().SelX1, 4);
  EXPECT_EQ(e.p().SelY1, 3);
  EXPECT_EQ(e.p().SelX2, 9);
  EXPECT_EQ(e.p().SelY2, 8);
  e.Click(6, 5);  // inside: right and bottom edges come in
  EXPECT_EQ(e.p().SelX1, 4);
  EXPECT_EQ(e.p().SelY1, 3);
  EXPECT_EQ(e.p().SelX2, 6);
  EXPECT_EQ(e.p().SelY2, 5);
  e.Click(2, 1);  // above and left: the first corner moves
  EXPECT_EQ(e.p().SelX1, 2);
  EXPECT_EQ(e.p().SelY1, 1);
  EXPECT_EQ(e.p().SelX2, 6);
}

TEST(Selection, RowOrColumnZeroStaysAnUnsetBound) {
  Editor e;
  ExtendSelection(*e.s, 0, 5);
  EXPECT_EQ(e.p().SelX1, 0);
  EXPECT_EQ(e.p().SelX2, 0);
  EXPECT_EQ(e.p().SelY1, 5);
  // The next click sets the column bounds as if they were new.
  ExtendSelection(*e.s, 7, 6);
  EXPECT_EQ(e.p().SelX1, 7);
  EXPECT_EQ(e.p().SelX2, 7);
  EXPECT_EQ(e.p().SelY2, 6);
}

TEST(StatusLine, PiecesInOrder) {
  Editor e;
  Document& d = e.d();
  d.HexInfo(12, 7, 0) = 1;
  d.HexLandMass(12, 7) = 2;
  d.HexTile(12, 7) = 7;
  e.p().CurHexX = 12;
  e.p().CurHexY = 3;
  EXPECT_EQ(HexStatusText(*e.s, 12, 7), "Hex: (12, 7) Terrain 1(1)  LM(2)  Tile # (7) d=4 Elev:0 ContourMap(0)");
  d.HexCtl(12, 7, 0) = 1;
  d.HexCtl(12, 7, 1) = 2;
  d.HexOrigOwner(12, 7) = 3;
  d.HexElev(12, 7) = 100;
  d.HexContour(12, 7) = 33;
  SetHexName(*e.s, 12, 7, "Fort");
  EXPECT_EQ(
      HexStatusText(*e.s, 12, 7),
      "Hex: (12, 7) Terrain 1(1)  LM(2) Avaria (Corvia)  Primary Obj.(02) Tile # (7)Fort                 d=4 Elev:-27 "
      "ContourMap(33)");
  // An owner without objective and with the same original owner.
  d.HexCtl(12, 7, 1) = 0;
  d.HexOrigOwner(12, 7) = 1;
  EXPECT_NE(HexStatusText(*e.s, 12, 7).find("LM(2) Avaria(00) Tile"), std::string::npos);
}

TEST(StatusLine, MouseMoveWritesBothPlacesAndNothingElse) {
  Editor e;
  const Pens before = e.p();
  Picture1_MouseMove(*e.s, 0, 0, 45 * 3 + 20, 60);
  EXPECT_EQ(e.s->ed.f1.Text1.rfind("Hex: (3, 1) ", 0), 0u);
  EXPECT_EQ(e.s->forms.Label3Caption, e.s->ed.f1.Text1);
  EXPECT_EQ(std::memcmp(&before, &e.p(), sizeof(Pens)), 0);
}

TEST(SideStrip, ChoosesTheSideAndEntersSidePainting) {
  Editor e;
  e.p().ClearSides = -1;
  e.p().CtlMode = 2;
  Picture2_MouseDown(*e.s, 1, 0, 130, 10);
  EXPECT_EQ(e.p().CurSide, 3);
  EXPECT_EQ(e.p().SideEdit, 2);
  EXPECT_EQ(e.p().CtlMode, 0);
  EXPECT_EQ(e.p().ClearSides, 0);
  EXPECT_EQ(e.s->ed.f1.Command5Caption, "Clear Sides Off");
  Label2_Click(*e.s);
  EXPECT_EQ(e.p().CurSideKind, 2);
  EXPECT_TRUE(e.s->ed.f1.Label2Bold);
  EXPECT_FALSE(e.s->ed.f1.Label1Bold);
  EXPECT_EQ(e.s->ed.f1.Picture2Picture, "bmp/rr.bmp");
  Label1_Click(*e.s);
  EXPECT_EQ(e.p().CurSideKind, 1);
  EXPECT_TRUE(e.s->ed.f1.Label1Bold);
}

TEST(Keys, BAndNStepThroughTilesOfTheKindWithWrapAround) {
  Editor e;
  e.p().CurTile = 2;
  e.p().CurHexX = 3;
  e.p().CurHexY = 3;
  Form_KeyDown(*e.s, key::N, 0);
  EXPECT_EQ(e.p().CurTile, 4);
  EXPECT_EQ(e.d().HexTile(3, 3), 4);
  EXPECT_EQ(e.s->forms.Label3Caption, "Tile 4");
  Form_KeyDown(*e.s, key::B, 0);
  Form_KeyDown(*e.s, key::B, 0);
  EXPECT_EQ(e.p().CurTile, 31);  // below 0 the search goes on at TileMax
  Form_KeyDown(*e.s, key::N, 0);
  EXPECT_EQ(e.p().CurTile, 2);
  // The road tile is the only one of its kind.
  e.p().CurTile = 1;
  Form_KeyDown(*e.s, key::N, 0);
  EXPECT_EQ(e.p().CurTile, 1);
}

TEST(Keys, TogglesAndMapWideOriginalOwners) {
  Editor e;
  Form_KeyDown(*e.s, key::A, 0);
  EXPECT_EQ(e.p().AutoTile, -1);
  EXPECT_EQ(e.s->ed.f1.Command2Caption, "Auto-Tile On");
  Form_KeyDown(*e.s, key::A, 0);
  EXPECT_EQ(e.s->ed.f1.Command2Caption, "Auto-Tile Off");
  e.p().CurTile = 3;
  Form_KeyDown(*e.s, key::F4, 0);
  EXPECT_EQ(e.p().HighlightTile, 3);
  e.p().CurTile = 4;
  Form_KeyDown(*e.s, key::F4, 0);
  EXPECT_EQ(e.p().HighlightTile, -1);
  Form_KeyDown(*e.s, key::C, 0);
  EXPECT_EQ(e.p().JumpBoxColour, 0xFFFFFF);
  Form_KeyDown(*e.s, key::C, 0);
  EXPECT_EQ(e.p().JumpBoxColour, 0);
  e.d().HexInfo(2, 2, 0) = 6;
  e.d().HexCtl(2, 2, 0) = 3;
  e.d().HexInfo(3, 2, 0) = 5;
  e.d().HexCtl(3, 2, 0) = 2;
  Form_KeyDown(*e.s, key::X, 1);
  EXPECT_EQ(e.d().HexOrigOwner(2, 2), 3);
  EXPECT_EQ(e.d().HexOrigOwner(3, 2), 0);
  EXPECT_EQ(e.p().ShiftKey, 1);
  Form_KeyUp(*e.s, 16, 0);
  EXPECT_EQ(e.p().ShiftKey, 0);
}

TEST(Keys, ArrowsStepTheBarsWithinTheirRange) {
  Editor e;
  e.d().MapMaxX = 200;
  e.d().MapMaxY = 200;
  e.d().AllocateAll();
  FillHexPixel(*e.s);
  e.s->view.HScroll1.Max = 50;
  e.s->view.VScroll1.Max = 50;
  Form_KeyDown(*e.s, key::Up, 0);  // at the top: only the focus moves
  EXPECT_EQ(e.s->view.ViewY, 0);
  Form_KeyDown(*e.s, key::Down, 0);
  Form_KeyDown(*e.s, key::Right, 0);
  Form_KeyDown(*e.s, key::Right, 0);
  EXPECT_EQ(e.s->view.ViewY, 1);
  EXPECT_EQ(e.s->view.ViewX, 2);
  EXPECT_EQ(e.s->view.HScroll1.Value, 2);
  Form_KeyDown(*e.s, key::Left, 0);
  EXPECT_EQ(e.s->view.ViewX, 1);
  e.s->view.VScroll1.Value = 50;
  e.s->view.ViewY = 50;
  Form_KeyDown(*e.s, key::Down, 0);
  EXPECT_EQ(e.s->view.ViewY, 50);
}

TEST(Keys, F5SetsTheUndoPointAndF7GoesBackToIt) {
  Editor e;
  e.d().HexTile(1, 1) = 3;
  Form_KeyDown(*e.s, key::F5, 0);
  e.d().HexTile(1, 1) = 4;
  e.d().HexTile(2, 2) = 4;
  Form_KeyDown(*e.s, key::F7, 0);
  EXPECT_EQ(e.d().HexTile(1, 1), 3);
  EXPECT_NE(e.d().HexTile(2, 2), 4);
}

TEST(Buttons, BlockFillCoversTheVisibleAreaCutAtTheMapEdge) {
  Editor e;
  e.s->view.ViewX = 30;
  e.s->view.ViewY = 28;
  e.p().CurTile = 3;
  Command1_Click(*e.s);
  EXPECT_EQ(e.d().HexTile(30, 28), 3);
  EXPECT_EQ(e.d().HexTile(32, 30), 3);
  EXPECT_EQ(e.d().HexInfo(32, 30, 0), 3);
  EXPECT_NE(e.d().HexTile(29, 30), 3);
  EXPECT_NE(e.d().HexTile(31, 27), 3);
}

TEST(Buttons, ElevationPenReadsAndLimitsItsBox) {
  Editor e;
  e.s->ed.f1.Text4 = "250";
  e.p().AutoTile = -1;
  Command9_Click(*e.s);
  EXPECT_EQ(e.p().ElevMode, -1);
  EXPECT_EQ(e.p().ElevValue, 100);
  EXPECT_EQ(e.s->ed.f1.Text4, "100");
  EXPECT_EQ(e.p().AutoTile, 0);
  EXPECT_EQ(e.s->ed.f1.Command9Caption, "Set Elev ON");
  e.s->ed.f1.Text4 = "-250";
  Command9_Click(*e.s);
  EXPECT_EQ(e.p().ElevValue, -100);
  EXPECT_EQ(e.s->ed.f1.Command9Caption, "Set Elev OFF");
  e.s->ed.f1.Text4 = "high";
  Command9_Click(*e.s);
  EXPECT_EQ(e.p().ElevValue, 0);
  EXPECT_EQ(e.s->ed.f1.Text4, "0");
}

TEST(Buttons, ConvertRoundsHalvesToEvenAndScrollsInsideTheBars) {
  Editor e;
  e.d().MapMaxX = 300;
  e.d().MapMaxY = 300;
  e.d().AllocateAll();
  FillHexPixel(*e.s);
  e.s->view.ViewCols = 20;
  e.s->view.ViewRows = 10;
  e.s->view.HScroll1.Max = 280;
  e.s->view.VScroll1.Max = 290;
  Form1Controls& f = e.s->ed.f1;
  f.Text3[0] = "350";  // 350 / 7 = 50
  f.Text3[1] = "2.5";  // 2.5 reads as 3, 3 / 7 = 0
  f.Text3[2] = "junk";
  Command8_Click(*e.s);
  EXPECT_EQ(f.Text3[0], "50");
  EXPECT_EQ(f.Text3[1], "0");
  EXPECT_EQ(e.s->view.HScroll1.Value, 40);
  EXPECT_EQ(e.s->view.ViewX, 40);
  EXPECT_EQ(e.s->view.VScroll1.Value, 0);
  f.Text3[0] = "25";
  f.Text3[1] = "1000";
  f.Text3[2] = "10";  // 2.5 -> 2 and 100
  Command8_Click(*e.s);
  EXPECT_EQ(f.Text3[0], "2");
  EXPECT_EQ(f.Text3[1], "100");
  EXPECT_EQ(e.s->view.HScroll1.Value, 40);  // sx = 0 leaves the bar
  EXPECT_EQ(e.s->view.VScroll1.Value, 95);
}

TEST(Buttons, CaptionsOfTheToggles) {
  Editor e;
  e.p().CtlMode = 2;
  Command6_Click(*e.s);
  EXPECT_EQ(e.p().CtlMode, 1);
  EXPECT_EQ(e.s->ed.f1.Command6Caption, "Deployment Mode On");
  Command6_Click(*e.s);
  EXPECT_EQ(e.p().CtlMode, 0);
  EXPECT_EQ(e.s->ed.f1.Command6Caption, "Deployment Mode Off");
  Command5_Click(*e.s);
  EXPECT_EQ(e.s->ed.f1.Command5Caption, "Clear Sides ON");
  Command2_Click(*e.s);
  EXPECT_EQ(e.s->ed.f1.Command2Caption, "Auto-Tile On");
  mHexSides_Click(*e.s);
  EXPECT_EQ(e.s->ed.f1.mHexSidesCaption, "Hex Outlines ON");
  EXPECT_TRUE(e.s->ed.f1.mHexSidesChecked);
  mShowRoadControl_Click(*e.s);
  EXPECT_EQ(e.s->ed.f1.mShowRoadControlCaption, "Show Road Control = False");
  mDefaultArea_Click(*e.s);
  EXPECT_EQ(e.s->ed.f1.mDefaultAreaCaption, "Default Area (Entire Map)");
  EXPECT_EQ(e.p().DefaultAreaAll, -1);
  mDefaultArea_Click(*e.s);
  EXPECT_EQ(e.s->ed.f1.mDefaultAreaCaption, "Default Area (Screen Only)");
  mRandom_Click(*e.s);
  EXPECT_EQ(e.s->ed.f1.mRandomCaption, "Random Tiles ON");
  EXPECT_EQ(e.p().RandomMode, -1);
}

TEST(Buttons, RenameAndClearTheCurrentHex) {
  Editor e;
  e.Click(6, 2, 2);
  e.s->ed.f1.Text2 = "Bridge";
  Command4_Click(*e.s);
  EXPECT_EQ(GetHexName(*e.s, 6, 2), "Bridge              ");
  Command7_Click(*e.s);
  EXPECT_EQ(GetHexName(*e.s, 6, 2), "");
}

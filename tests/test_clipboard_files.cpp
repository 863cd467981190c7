// The clipboard file and undo; the File menu, the file dialog in each mode
// and the new-map form.
#include <memory>

#include <gtest/gtest.h>

#include "document/mapfile.h"
#include "document/namestore.h"
#include "editing/clipboard.h"
#include "editing/filemenu.h"
#include "editing/startup.h"
#include "minisession.h"
#include "platform/fileio.h"
#include "session.h"
#include "testutil.h"

using namespace kv;

namespace {

struct Editor : kvtest::MiniSession {
  kvtest::TempDir maps;
  Editor() {
    ui.messages.clear();  // the small folder has no road table
  }
  // The dialog's folder list moved to another folder.
  void Folder(const std::string& dir) {
    s->ed.dlg.Dir1Path = dir;
    LoadSave_Dir1_Change(*s);
  }
  void Number() {
    for (int x = 0; x <= d().MapMaxX; ++x)
      for (int y = 0; y <= d().MapMaxY; ++y) d().HexTile(x, y) = static_cast<int16_t>(100 * x + y);
  }
  void Select(int x1, int y1, int x2, int y2) {
    p().SelX1 = static_cast<int16_t>(x1);
    p().SelY1 = static_cast<int16_t>(y1);
    p().SelX2 = static_cast<int16_t>(x2);
    p().SelY2 = static_cast<int16_t>(y2);
  }
};

}  // namespace

TEST(Clipboard, CopyWritesSizeThenTilesRowAfterRow) {
  Editor e;
  e.Number();
  mCopy_Click(*e.s);  // nothing selected: the hex (0, 0)
  EXPECT_EQ(kvtest::ReadBytes(ClipboardPath(*e.s)), (std::vector<uint8_t>{0, 0, 0, 0, 0, 0}));
  e.Select(2, 5, 4, 6);
  mCopy_Click(*e.s);
  const auto b = kvtest::ReadBytes(ClipboardPath(*e.s));
  ASSERT_EQ(b.size(), 4u + 2 * 3 * 2);
  EXPECT_EQ(b[0], 2);
  EXPECT_EQ(b[2], 1);
  // (i, j) at j * (w + 1) + i: 205 305 405 206 306 406
  const int want[] = {205, 305, 405, 206, 306, 406};
  for (int k = 0; k < 6; ++k) EXPECT_EQ(b[4 + 2 * k] | (b[5 + 2 * k] << 8), want[k]) << k;
}

TEST(Clipboard, PasteFromTheFileIsCutAtTheMapEdge) {
  Editor e;
  e.Number();
  e.Select(1, 1, 3, 2);
  mCopy_Click(*e.s);
  const int16_t under = e.d().HexTile(31, 29);
  e.d().HexInfo(32, 30, 0) = 9;
  e.p().CurHexX = 31;
  e.p().CurHexY = 29;
  mPaste_Click(*e.s);
  EXPECT_EQ(e.d().HexTile(31, 29), 101);
  EXPECT_EQ(e.d().HexTile(32, 29), 201);
  EXPECT_EQ(e.d().HexTile(32, 30), 202);
  EXPECT_EQ(e.d().HexInfo(32, 30, 0), 9);  // terrain stays
  EXPECT_NE(under, 101);
  // The block carries its size: pasted into a smaller map it still fits at the top left.
  e.d().MapMaxX = 1;
  e.d().MapMaxY = 1;
  e.d().AllocateAll();
  e.p().CurHexX = 0;
  e.p().CurHexY = 0;
  mPaste_Click(*e.s);
  EXPECT_EQ(e.d().HexTile(0, 0), 101);
  EXPECT_EQ(e.d().HexTile(1, 1), 202);
}

TEST(Clipboard, WithoutTheFileTheSelectionIsCopiedWithinTheMapElementByElement) {
  Editor e;
  e.Number();
  e.Select(2, 2, 4, 2);
  e.p().CurHexX = 3;  // overlaps its source one column to the right
  e.p().CurHexY = 2;
  mPaste_Click(*e.s);
  // Column by column: 3 takes 2, then 4 takes the new 3, then 5 the new 4.
  EXPECT_EQ(e.d().HexTile(3, 2), 202);
  EXPECT_EQ(e.d().HexTile(4, 2), 202);
  EXPECT_EQ(e.d().HexTile(5, 2), 202);
  EXPECT_EQ(e.d().HexTile(6, 2), 602);
}

TEST(Clipboard, DamagedFileOrOffMapSelectionSaysSoAndChangesNothing) {
  Editor e;
  e.Number();
  kvtest::WriteBytes(ClipboardPath(*e.s), {5, 0, 5, 0, 1, 0});
  mPaste_Click(*e.s);
  ASSERT_EQ(e.ui.messages.size(), 1u);
  EXPECT_NE(e.ui.messages[0].find("damaged"), std::string::npos);
  EXPECT_EQ(e.d().HexTile(0, 0), 0);
  e.Select(30, 0, 40, 0);
  mCopy_Click(*e.s);
  EXPECT_EQ(e.ui.messages.size(), 2u);
  EXPECT_EQ(kvtest::ReadBytes(ClipboardPath(*e.s)).size(), 6u);  // the old file stays
}

TEST(Undo, RestoresTheLastSnapshotEachTime) {
  Editor e;
  e.Number();
  ASSERT_TRUE(WriteSnapshot(*e.s));
  e.d().HexTile(5, 5) = 1;
  mUndo_Click(*e.s);
  EXPECT_EQ(e.d().HexTile(5, 5), 505);
  e.d().HexTile(5, 5) = 2;
  mUndo_Click(*e.s);
  EXPECT_EQ(e.d().HexTile(5, 5), 505);
}

TEST(NewMapForm, MakesAMapOfTheTypedHighestIndexes) {
  Editor e;
  e.p().CurTile = 3;
  menu_file_new_Click(*e.s);
  EXPECT_EQ(e.s->view.ViewX, 1);
  EXPECT_EQ(e.s->view.ViewY, 1);
  EXPECT_TRUE(e.s->ed.f6.Loaded);
  EXPECT_EQ(e.s->ed.f6.Text1, "32");
  e.s->ed.f6.Text1 = "9";
  e.s->ed.f6.Text2 = " 0";
  ASSERT_TRUE(Form6_Command2_Click(*e.s));
  EXPECT_EQ(e.d().MapMaxX, 9);
  EXPECT_EQ(e.d().MapMaxY, 0);
  EXPECT_EQ(e.d().HexTile(9, 0), 3);
  EXPECT_EQ(e.d().MapPath, e.app / "newmap.map");
  EXPECT_FALSE(e.s->ed.f6.Loaded);
}

TEST(NewMapForm, BadSizesAreRefusedWithAMessage) {
  Editor e;
  for (const char* bad : {"abc", "-3", "40000", "", "12x"}) {
    menu_file_new_Click(*e.s);
    e.s->ed.f6.Text1 = bad;
    e.s->ed.f6.Text2 = "10";
    EXPECT_FALSE(Form6_Command2_Click(*e.s)) << bad;
    EXPECT_TRUE(e.s->ed.f6.Loaded);
  }
  EXPECT_EQ(e.ui.messages.size(), 5u);
  EXPECT_NE(e.ui.messages[0].find("Map Width must be a whole number"), std::string::npos);
  e.s->ed.f6.Text1 = "30000";
  e.s->ed.f6.Text2 = "30000";
  EXPECT_FALSE(Form6_Command2_Click(*e.s));
  EXPECT_NE(e.ui.messages.back().find("too large"), std::string::npos);
  EXPECT_EQ(e.d().MapMaxX, 32);
  // Cancel changes nothing.
  Form6_Command1_Click(*e.s);
  EXPECT_FALSE(e.s->ed.f6.Loaded);
}

TEST(FileDialog, ListsByPatternAndKeepsItsFolder) {
  Editor e;
  kvtest::WriteText(e.maps / "b.map", "x");
  kvtest::WriteText(e.maps / "A.MAP", "x");
  kvtest::WriteText(e.maps / "c.lev", "x");
  kvtest::WriteText(e.maps / "nations.txt", "x");
  menu_file_open_Click(*e.s);
  DialogState& g = e.s->ed.dlg;
  EXPECT_EQ(g.Dir1Path, e.app.path());  // first use: the program folder
  EXPECT_EQ(g.Text1, "Text1");
  EXPECT_FALSE(g.SaveEnabled);
  e.Folder(e.maps.path());
  EXPECT_EQ(g.List1, (std::vector<std::string>{"A.MAP", "b.map"}));
  g.List1Index = 1;
  LoadSave_List1_Click(*e.s);
  EXPECT_EQ(g.Text1, "b.map");
  LoadSave_Command3_Click(*e.s);
  EXPECT_FALSE(g.Loaded);
  // The next use opens in the last folder; Save As offers the map's name.
  menu_file_save_as_Click(*e.s);
  EXPECT_EQ(g.Dir1Path, e.maps.path());
  EXPECT_TRUE(g.SaveEnabled);
  EXPECT_EQ(g.Text1, "newmap.map");
  LoadSave_Command3_Click(*e.s);
  mNewNations_Click(*e.s);
  EXPECT_EQ(g.List1, (std::vector<std::string>{"nations.txt"}));
}

TEST(FileDialog, SaveAsAsksBeforeReplacingAndTheNamesFollowTheMap) {
  Editor e;
  SetHexName(*e.s, 1, 2, "Ford");
  menu_file_save_Click(*e.s);  // no path yet: nothing
  menu_file_save_as_Click(*e.s);
  DialogState& g = e.s->ed.dlg;
  e.Folder(e.maps.path());
  g.Text1 = "first";
  LoadSave_Command2_Click(*e.s);
  EXPECT_TRUE(FileExists(e.maps / "first.map"));
  EXPECT_EQ(e.d().MapFile, "first");
  EXPECT_EQ(e.s->forms.Form1Caption, "Main: editing first");
  EXPECT_EQ(e.d().NdxPath, e.maps / "first.ndx");
  EXPECT_EQ(g.DlgFile, "first");
  EXPECT_EQ(GetHexName(*e.s, 1, 2).substr(0, 4), "Ford");
  EXPECT_TRUE(e.ui.messages.empty());
  // Again under the same name: the question, and Cancel writes nothing.
  const auto before = kvtest::ReadBytes(e.maps / "first.map");
  e.d().HexTile(0, 0) = 9;
  menu_file_save_as_Click(*e.s);
  g.Text1 = "first.map";
  e.ui.answers.push_back(vbCancel);
  LoadSave_Command2_Click(*e.s);
  ASSERT_EQ(e.ui.messages.size(), 1u);
  EXPECT_EQ(e.ui.messages[0], e.maps / "first.map" + " already exists.\rDo you want to replace it ?");
  EXPECT_EQ(kvtest::ReadBytes(e.maps / "first.map"), before);
  EXPECT_FALSE(g.Loaded);
  // OK replaces it.
  menu_file_save_as_Click(*e.s);
  g.Text1 = "first.map";
  LoadSave_Command2_Click(*e.s);
  EXPECT_NE(kvtest::ReadBytes(e.maps / "first.map"), before);
  // An empty name does nothing and closes the dialog.
  menu_file_save_as_Click(*e.s);
  g.Text1 = "";
  LoadSave_Command2_Click(*e.s);
  EXPECT_EQ(e.d().MapFile, "first.map");
  EXPECT_FALSE(g.Loaded);
}

TEST(FileDialog, LoadOpensAMapAndLoadInSaveAsModeForgetsTheStorePaths) {
  Editor e;
  e.d().HexTile(3, 3) = 7;
  menu_file_save_as_Click(*e.s);
  DialogState& g = e.s->ed.dlg;
  e.Folder(e.maps.path());
  g.Text1 = "m";
  LoadSave_Command2_Click(*e.s);
  e.d().HexTile(3, 3) = 1;
  menu_file_open_Click(*e.s);
  g.Text1 = "m";
  LoadSave_Command1_Click(*e.s);
  EXPECT_EQ(e.d().HexTile(3, 3), 7);
  EXPECT_EQ(e.d().MapFile, "m.map");
  EXPECT_EQ(g.DlgFile, e.maps / "m");
  EXPECT_FALSE(g.Loaded);
  // A name that is no map leaves the open one.
  menu_file_open_Click(*e.s);
  g.Text1 = "missing";
  LoadSave_Command1_Click(*e.s);
  EXPECT_EQ(e.d().MapFile, "m.map");
  EXPECT_FALSE(e.ui.messages.empty());
  EXPECT_EQ(e.d().NdxPath, e.maps / "m.ndx");
  menu_file_save_as_Click(*e.s);
  LoadSave_Command1_Click(*e.s);
  EXPECT_TRUE(e.d().NdxPath.empty());
  EXPECT_TRUE(e.d().StrPath.empty());
}

TEST(FileDialog, NationSetModeAsksThenErasesControlAndReturnsToTheProgramFolder) {
  Editor e;
  kvtest::WriteText(e.app / "other/nations/nations.txt", "2\r\n\"Xan\",1\r\n\"Yor\",2\r\n");
  e.d().HexCtl(1, 1, 0) = 2;
  mNewNations_Click(*e.s);
  DialogState& g = e.s->ed.dlg;
  g.Dir1Path = e.app / "other/nations";
  LoadSave_Dir1_Change(*e.s);
  g.Text1 = "nations.txt";
  LoadSave_Command1_Click(*e.s);  // default answer: No
  EXPECT_EQ(e.d().HexCtl(1, 1, 0), 2);
  EXPECT_EQ(e.d().NationSet, "default");
  EXPECT_EQ(g.DlgDir, e.app.path());
  mNewNations_Click(*e.s);
  g.Dir1Path = e.app / "other/nations";
  g.Text1 = "nations.txt";
  e.ui.answers.push_back(vbYes);
  LoadSave_Command1_Click(*e.s);
  EXPECT_EQ(e.ui.messages.back(), "This will erase all control flags. Continue ?");
  EXPECT_EQ(e.d().HexCtl(1, 1, 0), 0);
  EXPECT_EQ(e.d().NationSet, "other");
  EXPECT_EQ(e.s->ref.NationCount, 2);
}

// The exact words a user reads for each kind of bad input, as listed in the
// README's table "Bad input and what the user sees", and that nothing of the
// open map changes with them.
#include <gtest/gtest.h>

#include "document/document_ops.h"
#include "document/mapfile.h"
#include "editing/clipboard.h"
#include "editing/controlform.h"
#include "editing/fileflow.h"
#include "editing/filemenu.h"
#include "editing/mapload.h"
#include "editing/startup.h"
#include "minisession.h"
#include "platform/fileio.h"
#include "refdata/nations.h"
#include "session.h"
#include "testutil.h"

using namespace kv;

namespace {

struct Fixture : kvtest::MiniSession {
  kvtest::TempDir maps;
  explicit Fixture(bool start = true) : MiniSession({}, start) { ui.messages.clear(); }
  // The one message shown since the last call.
  std::string Message() {
    EXPECT_EQ(ui.messages.size(), 1u);
    std::string m = ui.messages.empty() ? "" : ui.messages.back();
    ui.messages.clear();
    return m;
  }
  void SaveSmallMap(const std::string& name) {
    d().MapMaxX = 3;
    d().MapMaxY = 2;
    d().MapPath = maps / name;
    NewMap(*s);
    ASSERT_TRUE(SaveMap(*s));
    ui.messages.clear();
  }
};

}  // namespace

TEST(BadInput, DamagedOrMissingMapFiles) {
  Fixture f;
  f.SaveSmallMap("good.map");
  const auto whole = kvtest::ReadBytes(f.maps / "good.map");
  const auto tiles = f.d().HexTile;

  kvtest::WriteBytes(f.maps / "cut.map", {whole.begin(), whole.begin() + 30});
  EXPECT_FALSE(OpenMapFile(*f.s, f.maps.path(), "cut.map"));
  EXPECT_EQ(
      f.Message(),
      f.maps / "cut.map" + " is not a readable map: a map of 4 x 3 hexes needs 180 more bytes, but only 16 are left.");

  kvtest::WriteText(f.maps / "text.map", "These are some notes, not a map at all.");
  EXPECT_FALSE(OpenMapFile(*f.s, f.maps.path(), "text.map"));
  EXPECT_EQ(f.Message().rfind(f.maps / "text.map" + " is not a readable map: it has no \"Version \" header", 0), 0u);

  EXPECT_FALSE(OpenMapFile(*f.s, f.maps.path(), "absent.map"));
  EXPECT_EQ(f.Message(),
            "The map cannot be opened: cannot open " + f.maps / "absent.map" + ": No such file or directory.");
  EXPECT_EQ(f.d().HexTile, tiles);
  EXPECT_EQ(f.d().MapPath, f.maps / "good.map");
}

TEST(BadInput, DamagedSnapshotAndClipboard) {
  Fixture f;
  f.SaveSmallMap("m.map");
  ASSERT_TRUE(WriteSnapshot(*f.s));
  auto snap = kvtest::ReadBytes(f.app / "autosave.map");
  snap.resize(snap.size() - 3);
  kvtest::WriteBytes(f.app / "autosave.map", snap);
  f.ui.messages.clear();
  const auto tiles = f.d().HexTile;
  EXPECT_FALSE(RestoreSnapshot(*f.s));
  EXPECT_EQ(f.Message().rfind("The undo snapshot " + f.app / "autosave.map" + " is damaged", 0), 0u);
  EXPECT_EQ(f.d().HexTile, tiles);

  kvtest::WriteBytes(f.app / "copybuff.dat", {2, 0, 2, 0, 1, 0});  // a 3 x 3 block holding one tile
  mPaste_Click(*f.s);
  EXPECT_EQ(f.Message(),
            "The clipboard file " + f.app / "copybuff.dat" + " is damaged: its block does not fit its length.");
  EXPECT_EQ(f.d().HexTile, tiles);
}

TEST(BadInput, MissingOrDamagedDataFilesStopStartUp) {
  {
    Fixture f(false);
    RemoveFile(f.app / "bmp/mapl.bmp");
    EXPECT_FALSE(StartSession(*f.s));
    EXPECT_EQ(f.Message(), f.app / "bmp/mapl.bmp" + " not found or not a readable tile sheet.");
  }
  {
    Fixture f(false);
    RemoveFile(f.app / "data/terrain.txt");
    EXPECT_FALSE(StartSession(*f.s));
    EXPECT_EQ(f.Message(), f.app / "data/terrain.txt" + " not found.");
  }
  {
    Fixture f(false);
    kvtest::WriteText(f.app / "data/terrain.txt", "999\r\n");
    EXPECT_FALSE(StartSession(*f.s));
    EXPECT_EQ(f.Message(), f.app / "data/terrain.txt" + ": the number of terrains is missing or out of range.");
  }
  {
    Fixture f(false);
    EXPECT_TRUE(StartSession(*f.s));
    f.ui.messages.clear();
    kvtest::WriteText(f.app / "cut/nations/nations.txt", "4\r\nOne,1\r\n");
    EXPECT_FALSE(SwitchNationSet(*f.s, "cut"));
    EXPECT_EQ(
        f.Message().rfind("The nation set \"cut\" cannot be read: " + f.app / "cut/nations/nations.txt" + ": ", 0), 0u);
    EXPECT_FALSE(SwitchNationSet(*f.s, "gone"));
    EXPECT_EQ(f.Message(), "The nation set \"gone\" cannot be read: " + NationListPath(*f.s, "gone") + " not found.");
    EXPECT_EQ(f.d().NationSet, "default");
  }
}

TEST(BadInput, FullDiskAndNoPermissionOnSave) {
  Fixture f;
  f.SaveSmallMap("m.map");
  const auto before = kvtest::ReadBytes(f.maps / "m.map");
  const std::string file = f.d().MapFile;
  f.d().HexTile(1, 1) = 3;

  // A full disk: every write fails.
  SetWriteFaultHook([] { return false; });
  EXPECT_FALSE(SaveMap(*f.s));
  SetWriteFaultHook(nullptr);
  EXPECT_EQ(f.Message(), "The map could not be saved: cannot write " + f.maps / "m.map" + ": No space left on device.");
  EXPECT_EQ(f.s->forms.Label3Caption, "Map not saved");
  EXPECT_EQ(kvtest::ReadBytes(f.maps / "m.map"), before);

  // A place where no file can be made (here: "under" a plain file, which
  // fails as a folder without write permission does).
  f.ui.answers.push_back(vbOK);
  EXPECT_FALSE(SaveMapAs(*f.s, f.maps / "m.map", "inside"));
  EXPECT_EQ(f.Message(),
            "The map could not be saved: cannot create " + f.maps / "m.map/inside.map" + ": Not a directory.");
  EXPECT_EQ(f.d().MapPath, f.maps / "m.map");
  EXPECT_EQ(f.d().MapFile, file);
  EXPECT_EQ(kvtest::ReadBytes(f.maps / "m.map"), before);

  // The block clipboard in a program folder that cannot take it.
  f.s->pens.SelX1 = f.s->pens.SelY1 = 0;
  f.s->pens.SelX2 = f.s->pens.SelY2 = 1;
  SetWriteFaultHook([] { return false; });
  mCopy_Click(*f.s);
  SetWriteFaultHook(nullptr);
  EXPECT_EQ(f.Message(),
            "The block could not be copied: cannot write " + f.app / "copybuff.dat" + ": No space left on device.");
}

TEST(BadInput, WrongTextInTheNewMapBoxes) {
  Fixture f;
  f.SaveSmallMap("m.map");
  const auto tiles = f.d().HexTile;
  menu_file_new_Click(*f.s);
  struct Case {
    const char* w;
    const char* h;
    std::string message;
  };
  const Case cases[] = {
      {"ten", "5", "Map Width must be a whole number from 0 to 32767 (the highest column or row index), not \"ten\"."},
      {"10", "-1", "Map Height must be a whole number from 0 to 32767 (the highest column or row index), not \"-1\"."},
      {"10", "", "Map Height must be a whole number from 0 to 32767 (the highest column or row index), not \"\"."},
      {"40000", "1",
       "Map Width must be a whole number from 0 to 32767 (the highest column or row index), not \"40000\"."},
  };
  for (const Case& c : cases) {
    f.s->ed.f6.Text1 = c.w;
    f.s->ed.f6.Text2 = c.h;
    EXPECT_FALSE(Form6_Command2_Click(*f.s));
    EXPECT_EQ(f.Message(), c.message);
    EXPECT_EQ(f.d().HexTile, tiles);
  }
}

TEST(BadInput, WrongTextInTheGridBoxes) {
  Fixture f;
  f.s->pens.GridX = 4;
  f.s->pens.GridY = 3;
  mGrid_Click(*f.s);  // the grid on
  ASSERT_NE(f.s->pens.GridOn, 0);
  Grid_Load(*f.s);
  for (const char* bad : {"0", "-2", "wide", ""}) {
    f.s->ed.f10.Text1 = bad;
    f.s->ed.f10.Text2 = "3";
    EXPECT_FALSE(Grid_Command1_Click(*f.s));
    EXPECT_EQ(f.Message(), "The grid width and height must be 1 or more while the grid is on.");
    EXPECT_EQ(f.s->pens.GridX, 4);
  }
  // With the grid off, a size of 0 is taken, and the grid cannot be put on with it.
  mGrid_Click(*f.s);
  f.s->ed.f10.Text1 = "0";
  EXPECT_TRUE(Grid_Command1_Click(*f.s));
  mGrid_Click(*f.s);
  EXPECT_EQ(f.Message(), "The grid width and height must be 1 or more. Set them with Set Grid Dimensions.");
  EXPECT_EQ(f.s->pens.GridOn, 0);
}

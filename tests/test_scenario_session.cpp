// Importing a scenario set in a whole session: the dialog's Load for sets,
// the order of battle waiting in the program folder, Save As finishing the
// scenario once, and faults that leave the open map as it was.
#include <memory>

#include <gtest/gtest.h>

#include "document/document_ops.h"
#include "document/namestore.h"
#include "editing/fileflow.h"
#include "editing/mapload.h"
#include "editing/startup.h"
#include "pgfiles.h"
#include "platform/fileio.h"
#include "scenario/import.h"
#include "scenario/pgformat.h"
#include "scenario/scenario_text.h"
#include "session.h"
#include "testutil.h"
#include "view/scrolling.h"

using namespace kv;
using kvtest::PgScn;
using kvtest::PgSet;
using kvtest::PgUnit;

namespace {

struct ImportFixture {
  kvtest::TempDir app, sets, maps;
  HeadlessUi ui;
  std::unique_ptr<Session> s;
  PgSet set;
  PgScn scn;

  ImportFixture() {
    kvtest::MakeMiniApp(app.path());  // 32 tiles, nations Avaria, Belmont, Corvia
    s = std::make_unique<Session>(app.path(), &ui);
    EXPECT_TRUE(StartSession(*s));
    ui.messages.clear();  // what start-up says about the small program folder
    set.W = 6;
    set.H = 4;
    for (size_t i = 0; i < set.N(); ++i) set.tiles.push_back(static_cast<int16_t>(i % 32));
    set.owners.assign(set.N(), 0);
    set.owners[2 * 7 + 3] = 2;
    scn.side1 = {1, 0, 0, 0, 0, 0};
    scn.side2 = {2, 3, 0, 0, 0, 0};
    scn.objectives = {{3, 2}};
    scn.deployN = 2;
    scn.deployPairs = {{1, 1}, {5, 3}};
    scn.units = {{0, 0, 1, 0, 1, 1}, {1, 0, 2, 0, 4, 4}};
    kvtest::WriteText(app / "pg_files/mapnames.str", std::string(40, ' '));
    WriteEquipment({"Rifles", "Light Tank"});
  }
  void WriteEquipment(const std::vector<std::string>& names) {
    kvtest::WriteBytes(app / "data/panzequp.eqp", kvtest::PgEquipment(names));
  }
  // The set under any name ending in 15 and ".set", its scenario beside it.
  void WriteSet(const std::string& name = "east front 15.set") {
    kvtest::WriteBytes(sets / name, set.Bytes());
    kvtest::WriteBytes(sets / "game015.scn", scn.Bytes());
  }
  bool Import(const std::string& name = "east front 15.set") { return OpenScenarioSet(*s, sets.path(), name); }
  std::string Text(const std::string& path) {
    auto b = kvtest::ReadBytes(path);
    return std::string(b.begin(), b.end());
  }
  // The order of battle as the import must have written it.
  std::string ExpectedOob() {
    std::vector<uint8_t> sb = set.Bytes(), cb = scn.Bytes(), eb = kvtest::ReadBytes(app / "data/panzequp.eqp");
    MemSource sa(sb), sc(cb), se(eb);
    ScenarioImport r;
    std::string err;
    EXPECT_TRUE(ConvertScenarioSet({&sa, "s", &sc, "c", &se, "e"}, s->ref, r, &err)) << err;
    VectorSink out;
    WriteOob(r.scn, r.units, s->ref, out);
    return std::string(out.bytes.begin(), out.bytes.end());
  }
};

// Everything of the open document that a failed import must leave alone.
struct Snapshot {
  Document doc;
  std::string setPath, oobTmp, caption, dlgDir;
  std::vector<uint8_t> ndx, str;
  explicit Snapshot(ImportFixture& f) {
    Session& s = *f.s;
    doc.MapMaxX = s.doc.MapMaxX;
    doc.MapMaxY = s.doc.MapMaxY;
    doc.HexTile = s.doc.HexTile;
    doc.HexInfo = s.doc.HexInfo;
    doc.HexCtl = s.doc.HexCtl;
    doc.HexElev = s.doc.HexElev;
    doc.HexDeploy = s.doc.HexDeploy;
    doc.MapFile = s.doc.MapFile;
    doc.MapPath = s.doc.MapPath;
    doc.NdxPath = s.doc.NdxPath;
    doc.StrPath = s.doc.StrPath;
    setPath = s.scn.SetPath;
    oobTmp = s.scn.OobTmpPath;
    caption = s.forms.Form1Caption;
    dlgDir = s.ed.dlg.DlgDir;
    ndx = kvtest::ReadBytes(s.doc.NdxPath);
    str = kvtest::ReadBytes(s.doc.StrPath);
  }
  void ExpectSame(ImportFixture& f) const {
    Session& s = *f.s;
    EXPECT_EQ(s.doc.MapMaxX, doc.MapMaxX);
    EXPECT_EQ(s.doc.MapMaxY, doc.MapMaxY);
    EXPECT_EQ(s.doc.HexTile, doc.HexTile);
    EXPECT_EQ(s.doc.HexInfo, doc.HexInfo);
    EXPECT_EQ(s.doc.HexCtl, doc.HexCtl);
    EXPECT_EQ(s.doc.HexElev, doc.HexElev);
    EXPECT_EQ(s.doc.HexDeploy, doc.HexDeploy);
    EXPECT_EQ(s.doc.MapFile, doc.MapFile);
    EXPECT_EQ(s.doc.MapPath, doc.MapPath);
    EXPECT_EQ(s.doc.NdxPath, doc.NdxPath);
    EXPECT_EQ(s.doc.StrPath, doc.StrPath);
    EXPECT_EQ(s.scn.SetPath, setPath);
    EXPECT_EQ(s.scn.OobTmpPath, oobTmp);
    EXPECT_EQ(s.forms.Form1Caption, caption);
    EXPECT_EQ(s.ed.dlg.DlgDir, dlgDir);
    EXPECT_EQ(kvtest::ReadBytes(s.doc.NdxPath), ndx);
    EXPECT_EQ(kvtest::ReadBytes(s.doc.StrPath), str);
  }
};

}  // namespace

TEST(ScenarioImport, ReplacesTheDocumentAndLeavesTheOrderOfBattleWaiting) {
  ImportFixture f;
  Session& s = *f.s;
  f.WriteSet();
  kvtest::WriteText(f.app / "game015.dep", "old");
  kvtest::WriteText(f.app / "game015.oob", "an older import");
  // A name given to the start-up map must not survive into the imported one.
  SetHexName(s, 1, 1, "Old Name");
  ASSERT_TRUE(f.Import());
  EXPECT_TRUE(f.ui.messages.empty()) << f.ui.messages.front();
  EXPECT_EQ(s.scn.SetPath, f.sets / "east front 15.set");
  EXPECT_EQ(s.doc.MapFile, "");
  EXPECT_EQ(s.doc.MapPath, f.app / "newmap.map");
  EXPECT_EQ(s.doc.NdxPath, f.app / "newmap.ndx");
  EXPECT_EQ(s.forms.Form1Caption, "Main: editing east front 15.set");
  EXPECT_EQ(s.ed.dlg.DlgDir, f.sets.path());
  EXPECT_EQ(s.doc.MapMaxX, 7);
  EXPECT_EQ(s.doc.MapMaxY, 4);
  EXPECT_EQ(s.doc.HexTile(4, 2), 2 * 7 + 3);
  EXPECT_EQ(s.doc.HexTile(0, 3), s.doc.HexTile(1, 3));
  EXPECT_EQ(s.doc.HexCtl(4, 2, 0), 2);
  EXPECT_EQ(s.doc.HexCtl(4, 2, 1), 2);
  EXPECT_EQ(s.doc.HexDeploy(2, 1), 1);  // the side-1 unit on it
  EXPECT_EQ(s.doc.ObjCount, 1);         // rebuilt for the new map
  EXPECT_EQ(s.doc.HexPixel.W(), 8);
  EXPECT_EQ(GetHexName(s, 1, 1), "");
  EXPECT_EQ(s.scn.OobTmpPath, f.app / "game015.oob");
  EXPECT_EQ(f.Text(f.app / "game015.oob"), f.ExpectedOob());
  EXPECT_FALSE(FileExists(f.app / "game015.dep"));
}

TEST(ScenarioImport, MissingNameListIsReportedAndTheImportGoesOn) {
  ImportFixture f;
  RemoveFile(f.app / "pg_files/mapnames.str");
  f.WriteSet("x15.SET");
  ASSERT_TRUE(f.Import("x15.SET"));
  ASSERT_EQ(f.ui.messages.size(), 1u);
  EXPECT_EQ(f.ui.messages[0], f.app / "pg_files/mapnames.str" + " not found.");
  EXPECT_EQ(f.s->doc.MapMaxX, 7);
}

TEST(ScenarioImport, FaultsLeaveTheOpenMapItsNamesAndPathsAsTheyWere) {
  ImportFixture f;
  Session& s = *f.s;
  // A named, saved map is open, and an earlier import waits for Save As.
  ASSERT_TRUE(SaveMapAs(s, f.maps.path(), "open"));
  SetHexName(s, 2, 2, "Keep Me");
  s.scn.SetPath = f.sets / "earlier 07.set";
  s.scn.OobTmpPath = f.app / "game007.oob";
  f.ui.messages.clear();

  auto expectFault = [&](const std::string& setName, const std::string& words) {
    Snapshot before(f);
    f.ui.messages.clear();
    EXPECT_FALSE(f.Import(setName));
    ASSERT_FALSE(f.ui.messages.empty());
    EXPECT_NE(f.ui.messages.back().find(words), std::string::npos) << f.ui.messages.back();
    before.ExpectSame(f);
    EXPECT_EQ(GetHexName(s, 2, 2), "Keep Me             ");
  };

  f.WriteSet();
  RemoveFile(f.sets / "game015.scn");
  expectFault("east front 15.set", f.sets / "game015.scn" + " not found");

  f.WriteSet();
  RemoveFile(f.app / "data/panzequp.eqp");
  expectFault("east front 15.set", f.app / "data/panzequp.eqp" + " not found");
  f.WriteEquipment({"Rifles", "Light Tank"});

  expectFault("nothing here 15.set", f.sets / "nothing here 15.set" + " not found");

  auto bytes = f.set.Bytes();
  bytes.resize(bytes.size() - 2);
  kvtest::WriteBytes(f.sets / "short15.set", bytes);
  expectFault("short15.set", "short15.set holds a map of 7 x 5 hexes");

  // Faults inside the files (each one is told apart by the readers' own
  // tests): the tile table and the nation set are the session's.
  f.set.owners[0] = 4;  // three nations in the set
  f.WriteSet();
  expectFault("east front 15.set", "nation 4");
  f.set.owners[0] = 0;

  f.WriteSet();
  auto scnBytes = kvtest::ReadBytes(f.sets / "game015.scn");
  scnBytes.resize(100);
  kvtest::WriteBytes(f.sets / "game015.scn", scnBytes);
  expectFault("east front 15.set", "ends early");

  // A name that is no set re-imports the set of the earlier import.
  expectFault("notes.txt", f.sets / "earlier 07.set" + " not found");

  // Without an earlier import there is nothing to take.
  s.scn.SetPath.clear();
  s.scn.OobTmpPath.clear();
  expectFault("notes.txt", "is no scenario set");

  // A full disk while the order of battle is written.
  s.scn.SetPath = f.sets / "east front 15.set";
  f.WriteSet();
  SetWriteFaultHook([] { return false; });
  expectFault("east front 15.set", "could not be written");
  SetWriteFaultHook(nullptr);

  // After all that, the set itself imports.
  f.WriteSet();
  EXPECT_TRUE(f.Import());
}

TEST(ScenarioImport, SaveAsFinishesTheScenarioOnce) {
  ImportFixture f;
  Session& s = *f.s;
  f.WriteSet();
  ASSERT_TRUE(f.Import());
  const std::string oob = f.ExpectedOob();
  SetHexName(s, 3, 2, "Bridge");
  ASSERT_TRUE(SaveMapAs(s, f.maps.path(), "campaign"));
  EXPECT_TRUE(f.ui.messages.empty());
  for (const char* ext : {".map", ".lev", ".ctl", ".ndx", ".str", ".oob", ".scn"})
    EXPECT_TRUE(FileExists(f.maps / (std::string("campaign") + ext))) << ext;
  EXPECT_EQ(f.Text(f.maps / "campaign.oob"), oob);
  EXPECT_EQ(f.Text(f.maps / "campaign.scn"),
            "campaign.map\rcampaign.bmp\rcampaign.oob\rWeather,clear\rGround Conditions,dry\r"
            "Weather Zone,moderate\rPolitics,False\rScenario Type,0\r");
  EXPECT_FALSE(FileExists(f.app / "game015.oob"));
  EXPECT_TRUE(s.scn.SetPath.empty());
  EXPECT_EQ(GetHexName(s, 3, 2), "Bridge              ");

  // Once only: a second Save As writes neither file.
  ASSERT_TRUE(SaveMapAs(s, f.maps.path(), "second"));
  EXPECT_TRUE(FileExists(f.maps / "second.map"));
  EXPECT_FALSE(FileExists(f.maps / "second.oob"));
  EXPECT_FALSE(FileExists(f.maps / "second.scn"));
}

TEST(ScenarioImport, ReplacingAnExistingOrderOfBattleIsAsked) {
  for (int answer : {vbOK, vbCancel}) {
    SCOPED_TRACE(answer == vbOK ? "OK" : "Cancel");
    ImportFixture f;
    Session& s = *f.s;
    f.WriteSet();
    ASSERT_TRUE(f.Import());
    const std::string oob = f.ExpectedOob();
    kvtest::WriteText(f.maps / "war.oob", "the old order of battle");
    kvtest::WriteText(f.maps / "war.scn", "the old scenario, longer than the new one will be.........");
    f.ui.answers = {answer};
    // Typed with its extension: the siblings replace it, the scenario's lines keep it.
    ASSERT_TRUE(SaveMapAs(s, f.maps.path(), "war.map"));
    ASSERT_EQ(f.ui.messages.size(), 1u);
    EXPECT_EQ(f.ui.messages[0], f.maps / "war.oob" + "already exists.\rDo you want to replace it ?");
    EXPECT_EQ(f.Text(f.maps / "war.oob"), answer == vbOK ? oob : "the old order of battle");
    EXPECT_FALSE(FileExists(f.app / "game015.oob"));  // gone whatever the answer
    EXPECT_TRUE(s.scn.SetPath.empty());
    EXPECT_EQ(f.Text(f.maps / "war.scn"),
              "war.map.map\rwar.map.bmp\rwar.map.oob\rWeather,clear\rGround Conditions,dry\r"
              "Weather Zone,moderate\rPolitics,False\rScenario Type,0\r");
  }
}

TEST(ScenarioImport, RefusedMapOverwriteLeavesTheScenarioUnfinished) {
  ImportFixture f;
  Session& s = *f.s;
  f.WriteSet();
  ASSERT_TRUE(f.Import());
  kvtest::WriteText(f.maps / "taken.map", "someone else's map");
  f.ui.answers = {vbCancel};
  EXPECT_FALSE(SaveMapAs(s, f.maps.path(), "taken"));
  EXPECT_FALSE(FileExists(f.maps / "taken.oob"));
  EXPECT_FALSE(FileExists(f.maps / "taken.scn"));
  EXPECT_TRUE(FileExists(f.app / "game015.oob"));
  EXPECT_FALSE(s.scn.SetPath.empty());
  // The next Save As still finishes it.
  ASSERT_TRUE(SaveMapAs(s, f.maps.path(), "mine"));
  EXPECT_EQ(f.Text(f.maps / "mine.oob"), f.ExpectedOob());
}

TEST(ScenarioImport, AViewBeyondTheImportedMapComesBackToItsEdge) {
  ImportFixture f;
  Session& s = *f.s;
  f.WriteSet();
  // A large map scrolled far to the right and down.
  s.doc.MapMaxX = 199;
  s.doc.MapMaxY = 149;
  s.doc.MapFile = "big.map";
  s.doc.MapPath = f.maps / "big.map";
  NewMap(s);
  SetScrollValue(s, Bar::H, 150);
  SetScrollValue(s, Bar::V, 120);
  ASSERT_EQ(s.view.ViewX, 150);
  const int cols = s.view.ViewCols, rows = s.view.ViewRows;
  ASSERT_TRUE(f.Import());
  // The set's map of 8 x 5 hexes is narrower than the view: both origins go to 0.
  EXPECT_EQ(s.view.ViewX, 0);
  EXPECT_EQ(s.view.ViewY, 0);
  EXPECT_EQ(s.view.HScroll1.Value, 0);
  EXPECT_EQ(s.view.VScroll1.Value, 0);

  // A set larger than the view keeps an origin that still fits, and one
  // beyond the edge stops at the last column and row the bars reach.
  f.set.W = static_cast<int16_t>(cols + 10);
  f.set.H = static_cast<int16_t>(rows + 6);
  f.set.tiles.assign(f.set.N(), 1);
  f.set.owners.assign(f.set.N(), 0);
  f.WriteSet();
  ASSERT_TRUE(f.Import());
  SetScrollValue(s, Bar::H, 4);
  ASSERT_TRUE(f.Import());
  EXPECT_EQ(s.view.ViewX, 4);
  s.doc.MapMaxX = 199;
  s.doc.MapMaxY = 149;
  s.doc.MapPath = f.maps / "big.map";
  NewMap(s);
  SetScrollValue(s, Bar::H, 150);
  SetScrollValue(s, Bar::V, 120);
  ASSERT_TRUE(f.Import());
  EXPECT_EQ(s.view.ViewX, s.doc.MapMaxX - cols);
  EXPECT_EQ(s.view.ViewY, s.doc.MapMaxY - rows);
  EXPECT_EQ(s.view.HScroll1.Value, s.view.ViewX);
  EXPECT_EQ(s.view.VScroll1.Value, s.view.ViewY);
}

TEST(ScenarioImport, AnOrderOfBattleGoneBeforeSaveAsIsReportedAndTheScenarioStillWritten) {
  ImportFixture f;
  Session& s = *f.s;
  f.WriteSet();
  ASSERT_TRUE(f.Import());
  kvtest::WriteText(f.maps / "gone.oob", "an order of battle of another map");
  RemoveFile(f.app / "game015.oob");
  ASSERT_TRUE(SaveMapAs(s, f.maps.path(), "gone"));
  // The replace question first (answered OK), then what went wrong.
  ASSERT_EQ(f.ui.messages.size(), 2u);
  EXPECT_NE(f.ui.messages[1].find(f.app / "game015.oob"), std::string::npos) << f.ui.messages[1];
  EXPECT_NE(f.ui.messages[1].find("gone missing"), std::string::npos) << f.ui.messages[1];
  EXPECT_EQ(f.Text(f.maps / "gone.oob"), "an order of battle of another map");
  EXPECT_EQ(f.Text(f.maps / "gone.scn"),
            "gone.map\rgone.bmp\rgone.oob\rWeather,clear\rGround Conditions,dry\r"
            "Weather Zone,moderate\rPolitics,False\rScenario Type,0\r");
  EXPECT_TRUE(s.scn.SetPath.empty());
}

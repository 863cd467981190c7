// The scenario import as a user reaches it, driven by `korvane-map script`:
// File > Open PG set file, the dialog's Load, then Save As writing the map,
// its side files, the order of battle and the scenario file; and damaged
// files that leave the open map, its names and its paths as they were.
#include <cstdlib>
#include <functional>
#include <string>
#include <sys/wait.h>

#include <gtest/gtest.h>

#include "editing/fileflow.h"
#include "editing/startup.h"
#include "pgfiles.h"
#include "platform/fileio.h"
#include "platform/ui.h"
#include "scenario/import.h"
#include "session.h"
#include "testutil.h"

namespace {

std::string Quote(const std::string& s) { return "'" + s + "'"; }

std::string Text(const std::string& path) {
  auto b = kvtest::ReadBytes(path);
  return std::string(b.begin(), b.end());
}

// A program folder of 32 tiles and the nations Avaria (1), Belmont (2) and
// Corvia (3), and a scenario set "front15.set" with its "game015.scn".
struct ScriptedImport {
  kvtest::TempDir app, sets, maps;
  kvtest::PgSet set;
  kvtest::PgScn scn;

  ScriptedImport() {
    kvtest::MiniApp mini;
    mini.roads = {{}, {1, 0, 0, 1, 0, 0}};  // a road table with a record: start-up says nothing
    kvtest::MakeMiniApp(app.path(), mini);
    kvtest::WriteText(app / "pg_files/mapnames.str", std::string(40, ' '));
    kvtest::WriteBytes(app / "data/panzequp.eqp", kvtest::PgEquipment({"Rifles", "Panzer Grenadier Bn1"}));
    set.W = 5;
    set.H = 3;
    for (size_t i = 0; i < set.N(); ++i) set.tiles.push_back(static_cast<int16_t>(i * 7 % 32));
    set.roads.assign(set.N(), 0);
    set.roads[0] = 4;    // sides 6 and 5
    set.roads[7] = 136;  // sides 4 and 1
    set.owners.assign(set.N(), 0);
    set.owners[2 * 6 + 3] = 2;  // file hex (3, 2)
    set.owners[1 * 6 + 2] = 1;  // file hex (2, 1)
    scn.side1 = {1, 0, 0, 0, 0, 0};
    scn.side2 = {2, 3, 0, 0, 0, 0};
    scn.objectives = {{3, 2}, {0, 0}};  // the second has no owner
    scn.deployN = 3;
    scn.deployPairs = {{1, 1}, {2, 1}, {4, 3}};
    scn.prestige1 = -40;
    scn.units = {{1, 0, 1, 0, 1, 1, 10, 2, 1}, {0, -1, 3, 4, 2, 1, 8, 0, 3}, {1, 0, 1, 0, 0, 3, 12, 1, 0}};
    kvtest::WriteBytes(sets / "front15.set", set.Bytes());
    kvtest::WriteBytes(sets / "game015.scn", scn.Bytes());
    kvtest::WriteText(sets / "notes.txt", "not a set");
  }

  // Runs the script through `korvane-map script`; standard output (printed
  // items and every message box) lands in `out`.
  int Run(const std::string& script, std::string* out) {
    kvtest::WriteText(maps / "script.txt", script);
    const std::string cmd = std::string(KV_BIN_DIR) + "/korvane-map --app " + Quote(app.path()) + " script " +
                            Quote(maps / "script.txt") + " >" + Quote(maps / "out.txt") + " 2>&1";
    const int rc = std::system(cmd.c_str());
    *out = Text(maps / "out.txt");
    kv::RemoveFile(maps / "out.txt");
    kv::RemoveFile(maps / "script.txt");
    return WIFEXITED(rc) ? WEXITSTATUS(rc) : -1;
  }

  std::string ImportLines(const std::string& setName = "front15.set") const {
    return "Form1.openpgset_Click\n"
           "LoadSave.Dir1.Path = \"" +
           sets.path() +
           "\"\n"
           "LoadSave.Text1.Text = \"" +
           setName +
           "\"\n"
           "LoadSave.Command1_Click\n";
  }
  std::string SaveAsLines(const std::string& name) const {
    return "Form1.menu_file_save_as_Click\n"
           "LoadSave.Dir1.Path = \"" +
           maps.path() +
           "\"\n"
           "LoadSave.Text1.Text = \"" +
           name +
           "\"\n"
           "LoadSave.Command2_Click\n";
  }
};

// The order of battle of the set above, written out by hand.
const char* const kOob =
    "* number of sequences or sides\r"
    "2\r\n"
    "* sequence/side names\r"
    "Avaria\r\n"
    "Belmont\r\n"
    "* Total number of nations in the scenario\r"
    "3\r"
    "* Nation Number-Nation name-production-move sequence-strength tile-id number\r"
    "1,Avaria,0,1,1\r"
    "2,Belmont,0,2,2\r"
    "3,Corvia,0,2,3\r"
    "* number of starting units in scenario\r"
    "3\r\n"
    "* unit name-mapx-mapy-strength-entrenchment-side-nation-unit type-experience-turn of entry-trans1-trans2\r"
    "Panzer Grenadier Bn1,2,1,10,20,1,1,1,100,0,0,0\r\n"
    "Rifles              ,3,1,8,0,2,3,0,300,0,-1,4\r\n"
    "Panzer Grenadier Bn1,1,3,12,10,2,1,1,0,0,0,0\r\n"
    "* Side 1 Nations Available\r\n"
    " 1, 0, 0, 0, 0, 0\r\n"
    "* Side 2 Nations Available\r\n"
    " 2, 3, 0, 0, 0, 0\r\n"
    "* 6 unknown bytes\r\n"
    " 6, 5, 4, 3, 2, 1\r\n"
    "* Side 1 max Core units\r\n"
    " 12\r\n"
    "* Side 1 max Aux units\r\n"
    " 4\r\n"
    "* Side 2 Max Core units\r\n"
    " 12\r\n"
    "* Side 2 max Aux units\r\n"
    " 8\r\n"
    "* Scenario Turns\r\n"
    " 18\r\n"
    "* Day Month Year\r\n"
    " 22, 6,1941\r\n"
    "* unknown byte\r\n"
    " 9\r\n"
    "* Days per turn\r\n"
    " 2\r\n"
    "* Side 1 prestige pool\r\n"
    " 300\r\n"
    "* Side 2 prestige pool\r\n"
    " 250\r\n"
    "* Side 1 prestige interval\r\n"
    " 5\r\n"
    "* Side 2 prestige interval\r\n"
    " 6\r\n"
    "* 4 unknown bytes\r\n"
    " 0, 1, 2, 3\r\n"
    "* Side 1 prestige\r\n"
    "-40\r\n"
    "* Side 2 prestige\r\n"
    " 80\r\n"
    "* Side 1 Air transport available\r\n"
    " 1\r\n"
    "* Side 2 Air transport available\r\n"
    " 0\r\n"
    "* Side 1 Naval transport available\r\n"
    " 0\r\n"
    "* Side 2 Naval transport available\r\n"
    " 1\r\n"
    "* 8 unknown bytes\r\n"
    " 8, 7, 6, 5, 4, 3, 2, 1\r\n"
    "* first turn multiplier\r"
    "1";

std::string ScnText(const std::string& mapFile) {
  return mapFile + ".map\r" + mapFile + ".bmp\r" + mapFile + ".oob\r" +
         "Weather,clear\rGround Conditions,dry\rWeather Zone,moderate\rPolitics,False\rScenario Type,0\r";
}

}  // namespace

TEST(ScenarioScript, SetImportedThroughTheMenuAndSavedAsByteForByte) {
  ScriptedImport t;
  std::string out;
  ASSERT_EQ(
      t.Run("print Form1.openpgset.Enabled\n"
            "Form1.openpgset_Click\n"
            "print LoadSave.Caption DlgMode DlgExt LoadSave.Command2.Enabled\n"
            "LoadSave.Dir1.Path = \"" +
                t.sets.path() +
                "\"\n"
                "print LoadSave.List1.ListCount\n"
                "LoadSave.List1.ListIndex = 0\n"
                "print LoadSave.Text1.Text\n"
                "LoadSave.Command1_Click\n"
                "print MapMaxX MapMaxY Form1.Caption MapFile SetPath\n"
                "print HexDeploy(2,1) HexDeploy(3,1) HexDeploy(5,3) HexTile(0,2) HexTile(1,2)\n" +
                t.SaveAsLines("campaign") + "print MapPath DlgFile SetPath Form1.Caption\n" + t.SaveAsLines("again"),
            &out),
      0)
      << out;
  const std::string sets = t.sets.path(), maps = t.maps.path();
  EXPECT_EQ(out,
            "Form1.openpgset.Enabled=-1\n"
            "LoadSave.Caption=File Open\nDlgMode=2\nDlgExt=.set\nLoadSave.Command2.Enabled=0\n"
            "LoadSave.List1.ListCount=1\n"  // the set only: neither the scenario nor the notes
            "LoadSave.Text1.Text=front15.set\n"
            "MapMaxX=6\nMapMaxY=3\nForm1.Caption=Main: editing front15.set\nMapFile=\nSetPath=" +
                sets +
                "/front15.set\n"
                // Units on deployment hexes show their nations; the pair read over marks nothing.
                "HexDeploy(2,1)=1\nHexDeploy(3,1)=3\nHexDeploy(5,3)=0\nHexTile(0,2)=20\nHexTile(1,2)=20\n"
                "MapPath=" +
                maps +
                "/campaign.map\nDlgFile=campaign\nSetPath=\n"
                "Form1.Caption=Main: editing campaign\n");

  EXPECT_EQ(Text(t.maps / "campaign.oob"), kOob);
  EXPECT_EQ(Text(t.maps / "campaign.scn"), ScnText("campaign"));
  EXPECT_FALSE(kv::FileExists(t.app / "game015.oob"));
  // The scenario is finished once: the second Save As writes only the map.
  EXPECT_TRUE(kv::FileExists(t.maps / "again.map"));
  EXPECT_FALSE(kv::FileExists(t.maps / "again.oob"));
  EXPECT_FALSE(kv::FileExists(t.maps / "again.scn"));

  // The map is 7 x 4 hexes: elevations all 0, and the ownership copy holds
  // the owners one column to the right, the objective on an owned hex as
  // primary, the owned hex as secondary, and no objective where nobody owns.
  const size_t hexes = 7 * 4;
  EXPECT_EQ(kvtest::ReadBytes(t.maps / "campaign.lev"), std::vector<uint8_t>(hexes, 0));
  std::vector<uint8_t> ctl(2 * hexes, 0);
  ctl[2 * 7 + 4] = 2;
  ctl[1 * 7 + 3] = 1;
  ctl[hexes + 2 * 7 + 4] = 2;
  ctl[hexes + 1 * 7 + 3] = 1;
  EXPECT_EQ(kvtest::ReadBytes(t.maps / "campaign.ctl"), ctl);

  // The map file equals one written by a session of the core that imports
  // and saves the same set.
  kv::HeadlessUi ui;
  kv::Session s(t.app.path(), &ui);
  ASSERT_TRUE(kv::StartSession(s));
  ASSERT_TRUE(kv::OpenScenarioSet(s, t.sets.path(), "front15.set"));
  kvtest::TempDir core;
  ASSERT_TRUE(kv::SaveMapAs(s, core.path(), "campaign"));
  EXPECT_EQ(kvtest::ReadBytes(t.maps / "campaign.map"), kvtest::ReadBytes(core / "campaign.map"));
  EXPECT_EQ(Text(core / "campaign.oob"), kOob);
}

TEST(ScenarioScript, ReplacingAnOrderOfBattleAnsweredOkAndCancel) {
  for (int answer : {kv::vbOK, kv::vbCancel}) {
    SCOPED_TRACE(answer == kv::vbOK ? "OK" : "Cancel");
    ScriptedImport t;
    kvtest::WriteText(t.maps / "war.oob", "the old order of battle");
    kvtest::WriteText(t.maps / "war.scn", "the old scenario, longer than the new one will ever be ............");
    std::string out;
    ASSERT_EQ(t.Run(t.ImportLines() +
                        "Form1.menu_file_save_as_Click\n"
                        "LoadSave.Dir1.Path = \"" +
                        t.maps.path() +
                        "\"\n"
                        "LoadSave.Text1.Text = war\n"
                        "answer " +
                        std::to_string(answer) +
                        "\n"
                        "LoadSave.Command2_Click\n"
                        "print SetPath\n",
                    &out),
              0)
        << out;
    // The one question, without a blank in front of "already exists.".
    EXPECT_EQ(out, "msgbox: " + t.maps / "war.oob" + "already exists.\\rDo you want to replace it ?\nSetPath=\n");
    EXPECT_EQ(Text(t.maps / "war.oob"), answer == kv::vbOK ? std::string(kOob) : "the old order of battle");
    EXPECT_FALSE(kv::FileExists(t.app / "game015.oob"));  // gone whatever the answer
    EXPECT_EQ(Text(t.maps / "war.scn"), ScnText("war"));  // written anew either way
    EXPECT_TRUE(kv::FileExists(t.maps / "war.map"));
  }
}

TEST(ScenarioScript, DamagedFilesLeaveTheOpenMapItsNamesAndPaths) {
  ScriptedImport t;
  // A named map is open, with a painted hex and a hex name.
  const std::string state =
      "print MapMaxX MapMaxY HexTile(4,5) HexTile(2,2) MapFile MapPath NdxPath StrPath SetPath Form1.Caption\n";
  std::string before;
  const std::string open =
      "CurTile = 3\nclickhex 4 5\n"
      "clickhex 2 2\nForm1.Text2.Text = Ford\nForm1.Command4_Click\n" +
      t.SaveAsLines("mine");
  ASSERT_EQ(t.Run(open + state, &before), 0) << before;
  ASSERT_NE(before.find("HexTile(4,5)=3\n"), std::string::npos) << before;
  const std::vector<uint8_t> names = kvtest::ReadBytes(t.maps / "mine.str");
  ASSERT_NE(Text(t.maps / "mine.str").find("Ford"), std::string::npos);

  struct Fault {
    const char* what;
    std::function<void()> damage;
    std::string words;  // the message names the file and the fault
  };
  const auto setBytes = t.set.Bytes(), scnBytes = t.scn.Bytes();
  const Fault faults[] = {
      {"a truncated set",
       [&] {
         kvtest::WriteBytes(t.sets / "front15.set", {setBytes.begin(), setBytes.end() - 5});
       },
       t.sets / "front15.set holds a map of 6 x 4 hexes"},
      {"a set cut inside its head",
       [&] {
         kvtest::WriteBytes(t.sets / "front15.set", {setBytes.begin(), setBytes.begin() + 102});
       },
       t.sets / "front15.set ends before its map size"},
      {"a tile beyond the table",
       [&] {
         kvtest::PgSet bad = t.set;
         bad.tiles[3] = 32;
         kvtest::WriteBytes(t.sets / "front15.set", bad.Bytes());
       },
       "tile number 32"},
      {"a scenario cut among its units",
       [&] {
         kvtest::WriteBytes(t.sets / "game015.scn", {scnBytes.begin(), scnBytes.end() - 4});
       },
       t.sets / "game015.scn ends early"},
      {"a missing scenario", [&] { kv::RemoveFile(t.sets / "game015.scn"); }, t.sets / "game015.scn not found"},
      {"a truncated equipment table",
       [&] { kvtest::WriteBytes(t.app / "data/panzequp.eqp", kvtest::PgEquipment({"Rifles"})); },
       t.app / "data/panzequp.eqp ends early"},
      {"a missing equipment table", [&] { kv::RemoveFile(t.app / "data/panzequp.eqp"); },
       t.app / "data/panzequp.eqp not found"},
  };
  for (const Fault& f : faults) {
    SCOPED_TRACE(f.what);
    kvtest::WriteBytes(t.sets / "front15.set", setBytes);
    kvtest::WriteBytes(t.sets / "game015.scn", scnBytes);
    kvtest::WriteBytes(t.app / "data/panzequp.eqp", kvtest::PgEquipment({"Rifles", "Panzer Grenadier Bn1"}));
    f.damage();
    std::string out;
    ASSERT_EQ(t.Run("Form1.menu_file_open_Click\n"
                    "LoadSave.Dir1.Path = \"" +
                        t.maps.path() +
                        "\"\n"
                        "LoadSave.Text1.Text = mine\n"
                        "LoadSave.Command1_Click\n" +
                        state + t.ImportLines() + state + "clickhex 2 2\nprint Form1.Text2.Text\n",
                    &out),
              0)
        << out;
    const size_t msg = out.find("msgbox: ");
    ASSERT_NE(msg, std::string::npos) << out;
    EXPECT_NE(out.find(f.words, msg), std::string::npos) << out;
    // What the map looked like before the import is what it looks like after.
    const std::string first = out.substr(0, msg), second = out.substr(out.find('\n', msg) + 1);
    EXPECT_EQ(second.substr(0, first.size()), first);
    EXPECT_EQ(second.substr(first.size()), "Form1.Text2.Text=Ford                \n");
    EXPECT_EQ(kvtest::ReadBytes(t.maps / "mine.str"), names);
    EXPECT_FALSE(kv::FileExists(t.app / "game015.oob"));
  }
}

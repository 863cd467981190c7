// korvane-map import: a generated scenario set becomes a map with all its
// side files, and a set whose scenario is missing is refused.
#include <cstdlib>
#include <string>
#include <sys/wait.h>

#include <gtest/gtest.h>

#include "pgfiles.h"
#include "platform/fileio.h"
#include "testutil.h"

namespace {

std::string Quote(const std::string& s) { return "'" + s + "'"; }

std::string Text(const std::string& path) {
  auto b = kvtest::ReadBytes(path);
  return std::string(b.begin(), b.end());
}

struct CliSet {
  kvtest::TempDir app, work;
  CliSet() {
    kvtest::MakeMiniApp(app.path());
    kvtest::WriteText(app / "pg_files/mapnames.str", std::string(20, ' '));
    kvtest::WriteBytes(app / "data/panzequp.eqp", kvtest::PgEquipment({"Rifles", "Light Tank"}));
    kvtest::PgSet set;
    set.W = 4;
    set.H = 3;
    set.tiles.assign(set.N(), 2);
    kvtest::PgScn scn;
    scn.units = {{1, 0, 1, 0, 2, 2}, {0, 0, 2, 0, 3, 1}};
    kvtest::WriteBytes(work / "front15.set", set.Bytes());
    kvtest::WriteBytes(work / "game015.scn", scn.Bytes());
  }
  int Run(const std::string& set, const std::string& out) {
    const std::string cmd = std::string(KV_BIN_DIR) + "/korvane-map --app " + Quote(app.path()) + " import " +
                            Quote(set) + " " + Quote(out) + " >" + Quote(work / "out.txt") + " 2>" +
                            Quote(work / "err.txt");
    const int rc = std::system(cmd.c_str());
    return WIFEXITED(rc) ? WEXITSTATUS(rc) : -1;
  }
};

}  // namespace

TEST(CliImport, WritesTheMapItsSideFilesAndTheScenario) {
  CliSet c;
  ASSERT_EQ(c.Run(c.work / "front15.set", c.work / "front.map"), 0) << Text(c.work / "err.txt");
  for (const char* ext : {".map", ".lev", ".ctl", ".ndx", ".str", ".oob", ".scn"})
    EXPECT_TRUE(kv::FileExists(c.work / (std::string("front") + ext))) << ext;
  EXPECT_EQ(Text(c.work / "front.scn"),
            "front.map\rfront.bmp\rfront.oob\rWeather,clear\rGround Conditions,dry\rWeather Zone,moderate\r"
            "Politics,False\rScenario Type,0\r");
  const std::string oob = Text(c.work / "front.oob");
  EXPECT_EQ(oob.rfind("* number of sequences or sides\r2\r\n* sequence/side names\rAvaria\r\nBelmont\r\n", 0), 0u);
  EXPECT_NE(oob.find("Light Tank          ,3,2,10,0,1,1,1,0,0,0,0\r\n"), std::string::npos);
  EXPECT_NE(oob.find("Rifles              ,4,1,10,0,2,2,0,0,0,0,0\r\n"), std::string::npos);
  EXPECT_EQ(oob.substr(oob.size() - 25), "* first turn multiplier\r1");  // no line end after the 1
  EXPECT_FALSE(kv::FileExists(c.app / "game015.oob"));                   // moved beside the map
  // A map of 6 x 4 hexes: the set's 5 columns and the extra one.
  EXPECT_EQ(kv::FileLen(c.work / "front.lev"), 24);
}

TEST(CliImport, ASetWithoutItsScenarioIsRefused) {
  CliSet c;
  kv::RemoveFile(c.work / "game015.scn");
  EXPECT_EQ(c.Run(c.work / "front15.set", c.work / "front.map"), 1);
  EXPECT_NE(Text(c.work / "err.txt").find(c.work / "game015.scn"), std::string::npos) << Text(c.work / "err.txt");
  EXPECT_FALSE(kv::FileExists(c.work / "front.map"));
}

// A whole session: start-up, new maps, load and save through the program's
// own procedures, the snapshot, and what a failure leaves behind.
#include <sys/stat.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "document/document_ops.h"
#include "document/mapfile.h"
#include "document/namestore.h"
#include "editing/fileflow.h"
#include "editing/mapload.h"
#include "editing/startup.h"
#include "minisession.h"
#include "platform/fileio.h"
#include "session.h"
#include "testutil.h"

using namespace kv;

namespace {

struct Fixture : kvtest::MiniSession {
  kvtest::TempDir maps;
  Fixture() : MiniSession(kvtest::RoadTileApp()) {}
  // Fills the open map with recognisable content.
  void Paint() {
    Document& doc = d();
    for (int x = 0; x <= doc.MapMaxX; ++x)
      for (int y = 0; y <= doc.MapMaxY; ++y) {
        doc.HexTile(x, y) = static_cast<int16_t>((x * 7 + y) % 6);
        doc.HexInfo(x, y, 0) = static_cast<uint8_t>(x % 4);
        doc.HexInfo(x, y, 1 + (x + y) % 6) = 1 + (x % 2);
        doc.HexElev(x, y) = static_cast<uint8_t>(100 + x + y);
        doc.HexDeploy(x, y) = static_cast<int16_t>(y % 3);
        doc.HexLandMass(x, y) = static_cast<int16_t>(x + 1);
        doc.HexContour(x, y) = static_cast<uint8_t>((x * y) % 64);
      }
    doc.HexCtl(2, 3, 0) = 1;
    doc.HexCtl(2, 3, 1) = 2;
    doc.HexOrigOwner(2, 3) = 3;
    doc.HexCtl(5, 1, 0) = 2;
    doc.HexCtl(5, 1, 1) = 3;
    doc.HexOrigOwner(6, 6) = 2;  // no objective: lost at the next load
    BuildObjList(*s);
  }
};

}  // namespace

TEST(Session, StartUpBuildsTheBlankFirstMap) {
  Fixture f;
  Session& s = *f.s;
  EXPECT_EQ(s.forms.Form1Caption, "Main: editing newmap.map");
  EXPECT_EQ(f.d().MapMaxX, 32);
  EXPECT_EQ(f.d().MapMaxY, 30);
  EXPECT_EQ(s.pens.CurTile, 2);  // first tile of open ground without a road
  EXPECT_EQ(f.d().HexTile(32, 30), 2);
  EXPECT_EQ(f.d().HexInfo(10, 10, 0), 1);
  EXPECT_EQ(f.d().HexElev(0, 0), 127);
  EXPECT_TRUE(f.d().MapPath.empty());
  EXPECT_EQ(f.d().NdxPath, f.app / "newmap.ndx");
  EXPECT_EQ(FileLen(f.app / "newmap.ndx"), 33 * 31 * 4);
  EXPECT_TRUE(DirExists(f.app / "mapedit/riverpatterns"));
  EXPECT_EQ(s.pens.RandomMode, 0);
  EXPECT_EQ(s.doc.NationSet, "default");
  EXPECT_EQ(s.ref.NationCount, 3);
  EXPECT_EQ(s.doc.HexPixel(1, 1, 1), 50);
}

TEST(Session, SaveOnAMapWithoutPathDoesNothing) {
  Fixture f;
  EXPECT_FALSE(SaveMap(*f.s));
  EXPECT_EQ(f.d().MapFile, "newmap.map");
}

TEST(Session, SaveAndLoadBringEverythingBack) {
  Fixture f;
  f.d().MapMaxX = 9;
  f.d().MapMaxY = 7;
  f.d().MapPath = f.maps / "m.map";
  NewMap(*f.s);
  f.Paint();
  ASSERT_TRUE(SaveMap(*f.s));
  EXPECT_EQ(f.s->forms.Label3Caption, "Map Saved");
  const size_t n = 80;
  EXPECT_EQ(FileLen(f.maps / "m.map"), static_cast<int64_t>(14 + 15 * n + 2 + 12 * 3 + 2 + 7 + n));
  EXPECT_EQ(FileLen(f.maps / "m.lev"), static_cast<int64_t>(n));
  EXPECT_EQ(FileLen(f.maps / "m.ctl"), static_cast<int64_t>(2 * n));

  Fixture g;
  ASSERT_TRUE(OpenMapFile(*g.s, f.maps.path(), "m"));
  Document& a = f.d();
  Document& b = g.d();
  EXPECT_EQ(b.MapFile, "m.map");
  EXPECT_EQ(b.MapMaxX, 9);
  EXPECT_EQ(a.HexInfo, b.HexInfo);
  EXPECT_EQ(a.HexTile, b.HexTile);
  EXPECT_EQ(a.HexElev, b.HexElev);
  EXPECT_EQ(a.HexCtl, b.HexCtl);
  EXPECT_EQ(a.HexDeploy, b.HexDeploy);
  EXPECT_EQ(a.HexLandMass, b.HexLandMass);
  EXPECT_EQ(a.HexContour, b.HexContour);
  EXPECT_EQ(a.ObjList, b.ObjList);
  EXPECT_EQ(b.HexOrigOwner(2, 3), 3);
  EXPECT_EQ(b.HexOrigOwner(6, 6), 0);
  // Saved again, the files are the same bytes.
  auto before = kvtest::ReadBytes(f.maps / "m.map");
  ASSERT_TRUE(SaveMap(*g.s));
  EXPECT_EQ(kvtest::ReadBytes(f.maps / "m.map"), before);
}

TEST(Session, MissingLevGivesLevelGroundAndANewSetIsLoaded) {
  Fixture f;
  f.d().MapPath = f.maps / "m.map";
  f.d().NationSet = "other";
  kvtest::WriteText(f.app / "other/nations/nations.txt", "1\r\nSolo,1\r\n");
  ASSERT_TRUE(SaveMap(*f.s));
  RemoveFile(f.maps / "m.lev");
  Fixture g;
  kvtest::WriteText(g.app / "other/nations/nations.txt", "1\r\nSolo,1\r\n");
  ASSERT_TRUE(OpenMapFile(*g.s, f.maps.path(), "m.map"));
  EXPECT_EQ(g.d().HexElev(3, 3), 127);
  EXPECT_EQ(g.d().NationSet, "other");
  EXPECT_EQ(g.s->ref.NationCount, 1);
  EXPECT_EQ(g.s->ref.NationName[1], "Solo");
  // A map naming a set that is not there keeps the set in use.
  f.d().NationSet = "absent";
  ASSERT_TRUE(SaveMap(*f.s));
  ASSERT_TRUE(OpenMapFile(*g.s, f.maps.path(), "m.map"));
  EXPECT_EQ(g.d().NationSet, "other");
  EXPECT_FALSE(g.ui.messages.empty());
}

TEST(Session, AFailedLoadLeavesTheOpenMapAsItWas) {
  Fixture f;
  f.d().MapMaxX = 5;
  f.d().MapMaxY = 4;
  f.d().MapPath = f.maps / "good.map";
  NewMap(*f.s);
  f.Paint();
  ASSERT_TRUE(SaveMap(*f.s));
  SetHexName(*f.s, 1, 1, "Watchtower");
  const auto whole = kvtest::ReadBytes(f.maps / "good.map");
  const auto tiles = f.d().HexTile;
  const std::string path = f.d().MapPath, ndx = f.d().NdxPath;
  for (size_t len = 0; len < whole.size(); len += 7) {
    kvtest::WriteBytes(f.maps / "bad.map", std::vector<uint8_t>(whole.begin(), whole.begin() + len));
    f.ui.messages.clear();
    EXPECT_FALSE(OpenMapFile(*f.s, f.maps.path(), "bad.map")) << len;
    ASSERT_EQ(f.ui.messages.size(), 1u) << len;
    EXPECT_NE(f.ui.messages[0].find("bad.map"), std::string::npos);
    EXPECT_EQ(f.d().HexTile, tiles);
    EXPECT_EQ(f.d().MapPath, path);
    EXPECT_EQ(f.d().NdxPath, ndx);
    EXPECT_EQ(GetHexName(*f.s, 1, 1), "Watchtower          ");
  }
  EXPECT_FALSE(OpenMapFile(*f.s, f.maps.path(), "nothing-here"));
  EXPECT_EQ(f.d().MapPath, path);
}

TEST(Session, AFailedSaveKeepsThePreviousFiles) {
  Fixture f;
  f.d().MapPath = f.maps / "m.map";
  ASSERT_TRUE(SaveMap(*f.s));
  const auto map = kvtest::ReadBytes(f.maps / "m.map");
  const auto lev = kvtest::ReadBytes(f.maps / "m.lev");
  const auto ctl = kvtest::ReadBytes(f.maps / "m.ctl");
  f.d().HexTile(0, 0) = 5;
  f.d().HexElev(0, 0) = 1;
  f.d().HexCtl(0, 0, 0) = 2;
  for (int failAt = 0; failAt < 20; ++failAt) {
    int calls = 0;
    SetWriteFaultHook([&] { return calls++ != failAt; });
    f.ui.messages.clear();
    bool ok = SaveMap(*f.s);
    SetWriteFaultHook(nullptr);
    if (ok) break;  // every write call has been failed once
    EXPECT_EQ(kvtest::ReadBytes(f.maps / "m.map"), map) << failAt;
    EXPECT_EQ(kvtest::ReadBytes(f.maps / "m.lev"), lev) << failAt;
    EXPECT_EQ(kvtest::ReadBytes(f.maps / "m.ctl"), ctl) << failAt;
    ASSERT_EQ(f.ui.messages.size(), 1u);
    EXPECT_NE(f.ui.messages[0].find("could not be saved"), std::string::npos);
  }
  // A folder without write permission (when not running as a user who ignores it).
  ::chmod(f.maps.path().c_str(), 0500);
  if (::access((f.maps / "probe").c_str(), F_OK) != 0 && ::geteuid() != 0) {
    EXPECT_FALSE(SaveMap(*f.s));
    EXPECT_EQ(kvtest::ReadBytes(f.maps / "m.map"), map);
  }
  ::chmod(f.maps.path().c_str(), 0700);
}

TEST(Session, SnapshotRestoreRules) {
  Fixture f;
  f.ui.messages.clear();
  EXPECT_FALSE(RestoreSnapshot(*f.s));  // none taken yet
  ASSERT_EQ(f.ui.messages.size(), 1u);
  f.Paint();
  ASSERT_TRUE(WriteSnapshot(*f.s));
  EXPECT_EQ(f.s->forms.Label3Caption, "Writing map data");
  const auto tiles = f.d().HexTile;
  const auto elevBefore = f.d().HexElev(4, 4);
  f.d().HexTile(4, 4) = 0;
  f.d().HexCtl(2, 3, 0) = 0;
  f.d().HexElev(4, 4) = 3;
  f.d().HexOrigOwner(7, 7) = 2;
  ASSERT_TRUE(RestoreSnapshot(*f.s));
  EXPECT_EQ(f.d().HexTile, tiles);
  EXPECT_EQ(f.d().HexCtl(2, 3, 0), 1);
  EXPECT_EQ(f.d().HexElev(4, 4), 3);  // kept: not in the snapshot
  EXPECT_NE(f.d().HexElev(4, 4), elevBefore);
  EXPECT_EQ(f.d().HexOrigOwner(7, 7), 2);
  // A snapshot of another size changes nothing.
  f.d().MapMaxX = 3;
  f.d().MapMaxY = 3;
  f.d().MapPath = f.maps / "small.map";
  NewMap(*f.s);
  const auto small = f.d().HexTile;
  f.ui.messages.clear();
  EXPECT_FALSE(RestoreSnapshot(*f.s));
  EXPECT_EQ(f.d().HexTile, small);
  ASSERT_EQ(f.ui.messages.size(), 1u);
}

TEST(Session, NewMapFillsWithThePenAndClearsTheNames) {
  Fixture f;
  f.d().MapPath = f.maps / "n.map";
  SetHexName(*f.s, 0, 0, "Old");
  f.d().MapMaxX = 0;  // one column
  f.d().MapMaxY = 2;
  f.s->pens.CurTile = 3;
  NewMap(*f.s);
  EXPECT_EQ(f.d().W(), 1);
  EXPECT_EQ(f.d().HexTile(0, 2), 3);
  EXPECT_EQ(f.d().HexInfo(0, 2, 0), 3);
  EXPECT_EQ(f.d().NdxPath, f.maps / "n.ndx");
  EXPECT_EQ(GetHexName(*f.s, 0, 0), "");
  EXPECT_EQ(f.d().ObjCount, 0);
  EXPECT_EQ(f.s->forms.Form1Caption, "Main: editing newmap.map");

  // A map with no path yet keeps its name store in the program folder.
  f.d().MapPath.clear();
  NewMap(*f.s);
  EXPECT_EQ(f.d().NdxPath, f.s->App("ndx"));
  EXPECT_EQ(f.d().StrPath, f.s->App("str"));
  EXPECT_TRUE(FileExists(f.s->App("ndx")));
}

TEST(Session, ObjectiveTableFollowsControlInColumnOrder) {
  Fixture f;
  Document& d = f.d();
  d.HexCtl(4, 1, 1) = 2;
  d.HexCtl(4, 1, 0) = 3;
  d.HexOrigOwner(4, 1) = 1;
  d.HexCtl(1, 9, 1) = 1;
  d.HexCtl(1, 9, 0) = 2;
  d.HexCtl(3, 3, 1) = 3;  // no owner: ceases to be an objective
  BuildObjList(*f.s);
  ASSERT_EQ(d.ObjCount, 2);
  EXPECT_EQ(d.ObjList(1, 0), 1);
  EXPECT_EQ(d.ObjList(1, 1), 9);
  EXPECT_EQ(d.ObjList(2, 0), 4);
  EXPECT_EQ(d.ObjList(2, 4), 1);
  EXPECT_EQ(d.ObjList(2, 5), 3);
  EXPECT_EQ(d.ObjList(2, 3), 0);
  EXPECT_EQ(d.HexCtl(3, 3, 1), 0);
  d.HexOrigOwner.Fill(0);
  BuildOwnerMap(*f.s);
  EXPECT_EQ(d.HexOrigOwner(4, 1), 1);
}

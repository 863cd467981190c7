// What an interrupted save or a refused load leaves behind: every write call of
// a save is failed in turn (as a full disk or a lost permission would fail it),
// and each time the files the save would have replaced must still hold their
// old bytes; a load that is refused must leave the open map, its hex names and
// its paths as they were.
#include <filesystem>
#include <functional>
#include <map>

#include <gtest/gtest.h>

#include "analysis/aitables.h"
#include "autotile/stores.h"
#include "document/document_ops.h"
#include "document/mapfile.h"
#include "document/namestore.h"
#include "editing/clipboard.h"
#include "editing/fileflow.h"
#include "editing/mapload.h"
#include "editing/startup.h"
#include "minisession.h"
#include "platform/fileio.h"
#include "scenario/scenario_text.h"
#include "session.h"
#include "testutil.h"

using namespace kv;

namespace {

struct Fixture : kvtest::MiniSession {
  kvtest::TempDir maps;
  Fixture() : MiniSession(kvtest::RoadTileApp()) {}
  // Gives the open map recognisable content, two objectives and a hex name.
  void Paint(int seed) {
    Document& doc = d();
    for (int x = 0; x <= doc.MapMaxX; ++x)
      for (int y = 0; y <= doc.MapMaxY; ++y) {
        doc.HexTile(x, y) = static_cast<int16_t>((x * 7 + y + seed) % 6);
        doc.HexElev(x, y) = static_cast<uint8_t>(100 + x + y + seed);
        doc.HexLandMass(x, y) = 1;
      }
    doc.HexCtl(2, 3, 0) = 1;
    doc.HexCtl(2, 3, 1) = 2;
    doc.HexOrigOwner(2, 3) = 3;
    doc.HexCtl(5, 1, 0) = 2;
    doc.HexCtl(5, 1, 1) = static_cast<uint8_t>(1 + seed % 3);
    BuildObjList(*s);
    SetHexName(*s, 1, 1, "Name " + std::to_string(seed));
  }
  // Saves the open map as `name` in the maps folder, answering yes to a replace.
  void SaveAs(const std::string& name) {
    ui.answers.push_back(vbOK);
    ASSERT_TRUE(SaveMapAs(*s, maps.path(), name));
    ui.answers.clear();
    ui.messages.clear();
  }
};

using Snapshot = std::map<std::string, std::vector<uint8_t>>;

Snapshot Take(const std::vector<std::string>& paths) {
  Snapshot out;
  for (const std::string& p : paths) {
    EXPECT_TRUE(FileExists(p)) << p;
    out[p] = kvtest::ReadBytes(p);
  }
  return out;
}

// No half-written temporary file is left in a folder.
void ExpectNoLeftovers(const std::string& dir) {
  for (const auto& e : std::filesystem::directory_iterator(dir))
    EXPECT_EQ(e.path().filename().string().find(".kvtmp"), std::string::npos) << e.path();
}

// Runs `save` again and again, failing its first write call, then its second,
// and so on, until a run meets no failure. After each failed run every file of
// `kept` holds its old bytes (or, with `orNew`, either its old bytes or exactly
// what the run that got through wrote: whole, never half of each), and `after`
// checks anything else. Returns how many runs were failed.
int FailEachWrite(const Snapshot& kept, const std::function<void()>& save,
                  const std::function<void(int failAt)>& after = {}, bool orNew = false) {
  std::vector<Snapshot> seen;
  int failAt = 0;
  for (;; ++failAt) {
    int calls = 0;
    bool hit = false;
    SetWriteFaultHook([&] {
      if (calls++ != failAt) return true;
      hit = true;
      return false;
    });
    save();
    SetWriteFaultHook(nullptr);
    if (!hit) break;
    Snapshot now;
    for (const auto& [path, bytes] : kept) {
      now[path] = kvtest::ReadBytes(path);
      if (!orNew) {
        EXPECT_EQ(now[path], bytes) << path << " at write " << failAt;
      }
    }
    seen.push_back(std::move(now));
    if (after) after(failAt);
    if (failAt > 200) {
      ADD_FAILURE() << "the save never got through";
      break;
    }
  }
  for (size_t run = 0; orNew && run < seen.size(); ++run)
    for (const auto& [path, bytes] : seen[run])
      EXPECT_TRUE(bytes == kept.at(path) || bytes == kvtest::ReadBytes(path)) << path << " at write " << run;
  return failAt;
}

}  // namespace

TEST(LossOnSave, MapLevelsControlAndHexNamesSurviveEveryFailedWrite) {
  Fixture f;
  f.d().MapMaxX = 7;
  f.d().MapMaxY = 6;
  f.d().MapPath = f.maps / "old.map";
  NewMap(*f.s);
  f.Paint(1);
  f.SaveAs("old");
  f.Paint(2);
  f.SaveAs("other");  // now editing other.map, with its own names
  const std::vector<std::string> oldFiles = {f.maps / "old.map", f.maps / "old.lev", f.maps / "old.ctl",
                                             f.maps / "old.ndx", f.maps / "old.str"};
  f.Paint(3);

  // Save As over old.map: its map files and its hex names survive, and a
  // failed map save leaves the open map's paths and caption as they were.
  const Snapshot names = Take({f.maps / "other.ndx", f.maps / "other.str"});
  const std::string path = f.d().MapPath, file = f.d().MapFile, ndx = f.d().NdxPath, str = f.d().StrPath;
  const std::string caption = f.s->forms.Form1Caption;
  Snapshot kept = Take(oldFiles);
  for (auto& [p, b] : names) kept[p] = b;
  Snapshot last = kept;  // the files as the run about to fail finds them
  const int saveAs = FailEachWrite(
      kept,
      [&] {
        f.ui.answers.push_back(vbOK);
        SaveMapAs(*f.s, f.maps.path(), "old");
      },
      [&](int at) {
        ASSERT_FALSE(f.ui.messages.empty()) << at;
        const std::string& msg = f.ui.messages.back();
        if (msg.find("could not be saved") != std::string::npos) {
          // Not one of the files changed in this run.
          for (const auto& [p, bytes] : last) EXPECT_EQ(kvtest::ReadBytes(p), bytes) << p << " at write " << at;
          EXPECT_EQ(f.d().MapPath, path) << at;
          EXPECT_EQ(f.d().MapFile, file) << at;
          EXPECT_EQ(f.d().NdxPath, ndx) << at;
          EXPECT_EQ(f.d().StrPath, str) << at;
          EXPECT_EQ(f.s->forms.Form1Caption, caption) << at;
        } else {
          EXPECT_NE(msg.find("The hex names could not be copied: cannot write " + f.maps / "old."), std::string::npos)
              << msg;
          // The map was saved under its new name and its names were not copied:
          // go back to editing other.map for the next run.
          f.d().MapPath = path;
          f.d().MapFile = file;
          f.d().NdxPath = ndx;
          f.d().StrPath = str;
          ReopenNameStore(*f.s);
          last = Take(oldFiles);
        }
        f.ui.messages.clear();
        f.ui.answers.clear();
      },
      /*orNew=*/true);
  EXPECT_GE(saveAs, 5);  // three map files and two name files
  ExpectNoLeftovers(f.maps.path());
}

TEST(LossOnSave, SnapshotClipboardAndObjectiveTablesSurviveEveryFailedWrite) {
  Fixture f;
  f.d().MapMaxX = 6;
  f.d().MapMaxY = 5;
  f.d().MapPath = f.maps / "m.map";
  NewMap(*f.s);
  f.Paint(1);

  // The undo snapshot.
  ASSERT_TRUE(WriteSnapshot(*f.s));
  f.Paint(2);
  EXPECT_GE(FailEachWrite(Take({f.app / "autosave.map"}), [&] { WriteSnapshot(*f.s); }), 1);

  // The block clipboard.
  f.s->pens.SelX1 = 1;
  f.s->pens.SelY1 = 1;
  f.s->pens.SelX2 = 3;
  f.s->pens.SelY2 = 2;
  f.ui.messages.clear();
  mCopy_Click(*f.s);
  ASSERT_TRUE(f.ui.messages.empty()) << f.ui.messages[0];
  f.s->pens.SelX2 = 4;
  f.ui.messages.clear();
  EXPECT_GE(
      FailEachWrite(
          Take({f.app / "copybuff.dat"}), [&] { mCopy_Click(*f.s); },
          [&](int at) {
            ASSERT_EQ(f.ui.messages.size(), 1u) << at;
            EXPECT_EQ(
                f.ui.messages[0].rfind("The block could not be copied: cannot write " + f.app / "copybuff.dat", 0), 0u);
            f.ui.messages.clear();
          }),
      1);

  // The objective tables.
  ASSERT_GE(f.d().ObjCount, 2);
  ASSERT_TRUE(WriteAIFile(*f.s, 1));
  f.d().HexCtl(5, 1, 0) = 0;
  f.d().HexCtl(3, 4, 0) = 2;
  f.d().HexCtl(3, 4, 1) = 1;
  f.d().HexOrigOwner(3, 4) = 1;
  BuildObjList(*f.s);
  f.ui.messages.clear();
  EXPECT_GE(FailEachWrite(
                Take({AIFilePath(*f.s)}), [&] { WriteAIFile(*f.s, 2); },
                [&](int at) {
                  EXPECT_EQ(f.ui.messages.size(), 1u) << at;
                  f.ui.messages.clear();
                }),
            2);
  ExpectNoLeftovers(f.app.path());
  ExpectNoLeftovers(f.maps.path());
}

TEST(LossOnSave, ScenarioFilesAndPatternStoresSurviveEveryFailedWrite) {
  Fixture f;
  Session& s = *f.s;
  // A finished scenario beside the map, and a new one waiting to be written.
  const std::string map = f.maps / "war.map";
  kvtest::WriteText(f.maps / "war.oob", "the old order of battle");
  kvtest::WriteText(f.maps / "war.scn", "the old scenario");
  const Snapshot scenario = Take({f.maps / "war.oob", f.maps / "war.scn"});
  EXPECT_GE(FailEachWrite(
                scenario,
                [&] {
                  kvtest::WriteText(f.app / "game015.oob", "the new order of battle");
                  s.scn.SetPath = f.maps / "front 15.set";
                  s.scn.OobTmpPath = f.app / "game015.oob";
                  f.ui.answers.push_back(vbOK);
                  FinishScenarioAtSave(s, map);
                },
                [&](int at) {
                  ASSERT_FALSE(f.ui.messages.empty()) << at;
                  const std::string& msg = f.ui.messages.back();
                  if (msg.find("order of battle could not be copied") != std::string::npos) {
                    // The only copy of the new order of battle is kept.
                    EXPECT_TRUE(FileExists(f.app / "game015.oob")) << at;
                  } else {
                    EXPECT_NE(msg.find("The scenario file " + f.maps / "war.scn" + " could not be written"),
                              std::string::npos)
                        << msg;
                  }
                  f.ui.messages.clear();
                  f.ui.answers.clear();
                },
                /*orNew=*/true),
            2);
  EXPECT_FALSE(FileExists(f.app / "game015.oob"));  // moved once it got through

  // A pattern store that learns a new pair.
  const std::string store = f.app / "mapedit/riverpatterns/r01.txt";
  kvtest::WriteText(store, "0-0-0-0-0-0,0\r\n1-1-0-0-0-0,4\r\n-1\r\n");
  const Snapshot patterns = Take({store});
  EXPECT_GE(FailEachWrite(
                patterns, [&] { StorePatternPair(s, store, "0-1-1-0-0-0", 3, PatternSeed::ZeroPair, {}); },
                [&](int at) {
                  EXPECT_TRUE(StoreProblemReported(s)) << at;
                  ResetStoreProblem(s);
                  f.ui.messages.clear();
                }),
            1);
  EXPECT_EQ(FindPatternTile(s, store, "1-1-0-0-0-0", false, {}), 4);
  EXPECT_EQ(FindPatternTile(s, store, "0-1-1-0-0-0", false, {}), 3);  // the run that got through
  ExpectNoLeftovers(f.app / "mapedit/riverpatterns");
  ExpectNoLeftovers(f.app / "mapedit");
}

TEST(LossOnLoad, ARefusedMapLeavesTheOpenMapItsNamesAndAllItsPaths) {
  Fixture f;
  f.d().MapMaxX = 5;
  f.d().MapMaxY = 4;
  f.d().MapPath = f.maps / "good.map";
  NewMap(*f.s);
  f.Paint(1);
  f.SaveAs("good");
  const auto whole = kvtest::ReadBytes(f.maps / "good.map");
  const Document before = f.d();
  const std::string caption = f.s->forms.Form1Caption;
  const Snapshot names = Take({f.maps / "good.ndx", f.maps / "good.str"});
  const std::string name = GetHexName(*f.s, 1, 1);
  ASSERT_EQ(name.substr(0, 6), "Name 1");
  auto expectUnchanged = [&](const std::string& what) {
    SCOPED_TRACE(what);
    EXPECT_EQ(f.d().MapPath, before.MapPath);
    EXPECT_EQ(f.d().MapFile, before.MapFile);
    EXPECT_EQ(f.d().NdxPath, before.NdxPath);
    EXPECT_EQ(f.d().StrPath, before.StrPath);
    EXPECT_EQ(f.d().MapMaxX, before.MapMaxX);
    EXPECT_EQ(f.d().HexTile, before.HexTile);
    EXPECT_EQ(f.d().HexElev, before.HexElev);
    EXPECT_EQ(f.d().HexCtl, before.HexCtl);
    EXPECT_EQ(f.d().ObjList, before.ObjList);
    EXPECT_EQ(f.s->forms.Form1Caption, caption);
    EXPECT_EQ(GetHexName(*f.s, 1, 1), name);
    for (const auto& [p, b] : names) EXPECT_EQ(kvtest::ReadBytes(p), b) << p;
  };
  // A damaged map of another size with hex-name files of its own beside it.
  kvtest::WriteBytes(f.maps / "bad.ndx", std::vector<uint8_t>(200, 0));
  kvtest::WriteBytes(f.maps / "bad.str", std::vector<uint8_t>(20, 'x'));
  for (size_t len : {size_t{0}, size_t{9}, size_t{20}, whole.size() / 2, whole.size() - 1}) {
    kvtest::WriteBytes(f.maps / "bad.map", std::vector<uint8_t>(whole.begin(), whole.begin() + len));
    f.ui.messages.clear();
    EXPECT_FALSE(OpenMapFile(*f.s, f.maps.path(), "bad")) << len;
    ASSERT_EQ(f.ui.messages.size(), 1u) << len;
    EXPECT_NE(f.ui.messages[0].find(f.maps / "bad.map"), std::string::npos) << f.ui.messages[0];
    expectUnchanged("cut at " + std::to_string(len));
  }
  // A path through a regular file (no folder there) and a missing file.
  f.ui.messages.clear();
  EXPECT_FALSE(OpenMapFile(*f.s, f.maps / "good.map", "good"));
  ASSERT_EQ(f.ui.messages.size(), 1u);
  expectUnchanged("a path under a file");
  EXPECT_FALSE(OpenMapFile(*f.s, f.maps.path(), "absent"));
  expectUnchanged("a missing map");
}

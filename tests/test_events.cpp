// The core's announcements: every form and change has its own classic name,
// and every command that changes the map says which hexes it touched.
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "analysis/roadcheck.h"
#include "autotile/passes.h"
#include "document/document_ops.h"
#include "document/mapfile.h"
#include "editing/clipboard.h"
#include "editing/editing.h"
#include "editing/mapload.h"
#include "minisession.h"
#include "platform/events.h"

using namespace kv;

namespace {

TEST(Events, EveryFormAndChangeHasItsOwnName) {
  std::set<std::string> forms;
  for (int i = 0; i < kFormCount; ++i) {
    const auto f = static_cast<FormId>(i);
    const std::string name = FormName(f);
    EXPECT_FALSE(name.empty());
    EXPECT_TRUE(forms.insert(name).second) << name;
    // Scripts name forms in any case.
    std::string upper = name;
    for (char& c : upper) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    EXPECT_EQ(FormFromName(upper), f) << name;
  }
  EXPECT_FALSE(FormFromName("Form7").has_value());
  EXPECT_FALSE(FormFromName("Form1 ").has_value());

  std::set<std::string> changes;
  for (int i = 0; i <= static_cast<int>(Change::Form14Label1); ++i) {
    const auto c = static_cast<Change>(i);
    const std::string name = ChangeName(c);
    EXPECT_FALSE(name.empty()) << i;
    EXPECT_TRUE(changes.insert(name).second) << name;
    // A change named after another form than Form1 belongs to that form.
    const std::string form = FormName(FormOf(c));
    if (name.rfind("Form", 0) == 0 && name.rfind("Form1.", 0) != 0 && name != "Form1") {
      EXPECT_EQ(name.substr(0, name.find('.')), form) << name;
    }
  }
}

TEST(Events, HexRectUnitesAndClips) {
  HexRect none;
  EXPECT_TRUE(none.Empty());
  EXPECT_EQ(none.United(HexRect::Hex(3, 4)), HexRect::Hex(3, 4));
  const HexRect r = HexRect::Hex(3, 4).United(HexRect::Hex(1, 9));
  EXPECT_EQ(r, (HexRect{1, 4, 3, 9}));
  EXPECT_TRUE(r.Contains(2, 5));
  EXPECT_FALSE(r.Contains(0, 5));
  EXPECT_EQ(HexRect::Ring(0, 0).ClippedTo(10, 10), (HexRect{0, 0, 1, 1}));
  EXPECT_TRUE((HexRect{12, 0, 14, 3}).ClippedTo(10, 10).Empty());
}

// Every plane of the map that a file keeps, hex by hex.
struct Planes {
  std::vector<std::vector<int>> hex;  // per hex, all its values
  explicit Planes(const Document& d) {
    for (int x = 0; x <= d.MapMaxX; ++x)
      for (int y = 0; y <= d.MapMaxY; ++y) {
        std::vector<int> v;
        for (int k = 0; k <= 6; ++k) v.push_back(d.HexInfo(x, y, k));
        v.push_back(d.HexTile(x, y));
        v.push_back(d.HexElev(x, y));
        v.push_back(d.HexCtl(x, y, 0));
        v.push_back(d.HexCtl(x, y, 1));
        v.push_back(d.HexDeploy(x, y));
        v.push_back(d.HexLandMass(x, y));
        v.push_back(d.HexOrigOwner(x, y));
        hex.push_back(std::move(v));
      }
  }
};

// Tile 0 sea, 1 a road on open ground, 2 4 7 16 31 open ground, 3 rough
// (mountain), 5 and 6 the terrains whose tiles carry roads on every side.
kvtest::MiniApp EventApp() {
  kvtest::MiniApp mini = kvtest::RoadTileApp();
  mini.tiles = 32;
  mini.types = {0, 1, 1, 3, 1, 5, 14, 1, 8, 6};
  return mini;
}

struct Watched : kvtest::MiniSession {
  std::vector<MapChange> changes;
  Watched() : MiniSession(EventApp()) {
    ui.onMapChanged = [this](const MapChange& c) { changes.push_back(c); };
  }
  // Runs `command` and checks that every hex it changed lies inside a
  // rectangle it announced; returns how many hexes changed.
  template <class F>
  int Check(const char* what, F command) {
    changes.clear();
    const Planes before(d());
    const int w = d().H();
    command();
    const Planes after(d());
    EXPECT_EQ(before.hex.size(), after.hex.size()) << what;
    int changed = 0;
    for (size_t i = 0; i < before.hex.size() && i < after.hex.size(); ++i) {
      if (before.hex[i] == after.hex[i]) continue;
      ++changed;
      const int x = static_cast<int>(i) / w, y = static_cast<int>(i) % w;
      bool told = false;
      for (const MapChange& c : changes) told = told || c.kind == MapChange::Kind::Replaced || c.area.Contains(x, y);
      EXPECT_TRUE(told) << what << ": hex (" << x << ", " << y << ") changed unannounced";
    }
    return changed;
  }
};

TEST(MapChanges, EveryEditAnnouncesTheHexesItTouched) {
  Watched e;
  Session& s = *e.s;
  e.p().CurTile = 3;
  EXPECT_GT(e.Check("a painted hex", [&] { SetHex(s, 4, 5); }), 0);
  ASSERT_FALSE(e.changes.empty());
  EXPECT_EQ(e.changes.back().area, HexRect::Hex(4, 5));

  e.p().CurTile = 5;  // a city: roads on every side
  EXPECT_GT(e.Check("a city hex", [&] { SetHex(s, 6, 6); }), 0);
  e.p().ElevMode = -1;
  e.p().ElevValue = 20;
  EXPECT_GT(e.Check("an elevation", [&] { SetHex(s, 7, 7); }), 0);
  e.p().ElevMode = 0;
  e.p().CtlMode = 2;
  e.p().CurNation = 1;
  e.p().CurObjType = 2;
  EXPECT_GT(e.Check("an owner", [&] { SetHex(s, 8, 3); }), 0);
  e.p().CtlMode = 1;
  EXPECT_GT(e.Check("a deployment hex", [&] { SetHex(s, 9, 3); }), 0);
  e.p().CtlMode = 0;
  e.p().ClearSides = -1;
  EXPECT_GT(e.Check("cleared sides", [&] { SetHex(s, 6, 6); }), 0);
  e.p().ClearSides = 0;

  e.p().CurTile = 2;
  EXPECT_GT(e.Check("the block fill", [&] { Command1_Click(s); }), 0);
  e.p().CurHexX = 2;
  e.p().CurHexY = 2;
  e.p().CurTile = 7;
  EXPECT_GT(e.Check("key N", [&] { Form_KeyDown(s, key::N, 0); }), 0);
  e.d().HexInfo(8, 3, 0) = 6;
  EXPECT_GT(e.Check("key X", [&] { Form_KeyDown(s, key::X, 0); }), 0);

  // Copy a block and paste it elsewhere (through the clipboard file).
  e.d().HexTile(1, 1) = 3;
  e.p().SelX1 = 1, e.p().SelY1 = 1, e.p().SelX2 = 2, e.p().SelY2 = 3;
  mCopy_Click(s);
  e.p().CurHexX = 20, e.p().CurHexY = 20;
  EXPECT_GT(e.Check("a paste", [&] { mPaste_Click(s); }), 0);

  WriteSnapshot(s);
  e.d().HexTile(30, 29) = 9;
  EXPECT_GT(e.Check("an undo", [&] { mUndo_Click(s); }), 0);
}

TEST(MapChanges, PassesAndChecksAnnounceTheirArea) {
  Watched e;
  Session& s = *e.s;
  // Mountains at the view's edge: the pass sets their ring, also outside the view.
  e.d().HexInfo(3, 3, 0) = 3;
  e.d().HexTile(3, 3) = 3;
  for (int x = 0; x <= e.d().MapMaxX; x += 5) e.d().HexTile(x, 10) = 1;
  e.p().DefaultAreaAll = 0;
  e.Check("auto redraw Terrain", [&] { autoredrawterrain_Click(s); });
  e.Check("auto redraw Mountains", [&] { mAutoMoutains_Click(s); });
  e.Check("auto redraw Roads", [&] { autoredrawroads_Click(s); });
  for (int k = 1; k <= 6; ++k) e.d().HexInfo(12, 12, k) = 2;  // no tile of it has these sides
  EXPECT_GT(e.Check("road connections", [&] { doroads_Click(s); }), 0);
  e.Check("scattered woods", [&] { mRndWoods_Click(s); });
  e.d().HexTile(5, 5) = 500;  // beyond the tile sheet
  EXPECT_GT(e.Check("a map rebuilt", [&] { mMapRebuild_Click(s); }), 0);
  e.d().HexInfo(6, 6, 0) = 9;
  EXPECT_GT(e.Check("terrain from tiles", [&] { mRedoTerrain_Click(s); }), 0);
  e.p().CurNation = 2;
  e.d().HexInfo(7, 2, 0) = 5;
  EXPECT_GT(e.Check("default control", [&] { SetDefaultControl(s, BulkArea(s)); }), 0);
  e.d().HexTile(2, 2) = 1;
  e.p().CurNation = 3;
  EXPECT_GT(e.Check("road control", [&] { SetRoadControl(s, BulkArea(s)); }), 0);
  e.d().HexTile(9, 9) = 999;
  EXPECT_GT(e.Check("verify", [&] { VerifyHexData(s); }), 0);
  e.d().HexCtl(4, 4, 1) = 2;  // an objective without an owner is dropped
  EXPECT_GT(e.Check("the objective table", [&] { BuildObjList(s); }), 0);
}

TEST(MapChanges, ANewMapIsAReplacement) {
  Watched e;
  e.s->doc.MapMaxX = 20;
  e.s->doc.MapMaxY = 12;
  NewMap(*e.s);
  ASSERT_FALSE(e.changes.empty());
  EXPECT_EQ(e.changes.front().kind, MapChange::Kind::Replaced);
  EXPECT_EQ(e.changes.front().area, (HexRect{0, 0, 20, 12}));
}

}  // namespace

// The history of steps: undo gives back the document byte for byte, redo
// gives back the result, the hex-name files included; the modified state,
// the memory cap and a replaced document.
#include <functional>
#include <random>

#include <gtest/gtest.h>

#include "analysis/landmass.h"
#include "analysis/roadcheck.h"
#include "autotile/passes.h"
#include "document/document_ops.h"
#include "document/mapfile.h"
#include "document/namestore.h"
#include "editing/clipboard.h"
#include "editing/controlform.h"
#include "editing/editing.h"
#include "editing/history.h"
#include "editing/mapload.h"
#include "minisession.h"

using namespace kv;

namespace {

// Everything the history promises to give back, as plain bytes.
struct DocBytes {
  std::vector<uint8_t> info, elev, ctl, contour, orig;
  std::vector<int16_t> tile, deploy, land;
  int16_t objCount = 0;
  ObjTable objList;
  std::string nationSet;
  std::vector<uint8_t> ndx, str;
  bool operator==(const DocBytes&) const = default;
};

DocBytes Take(Session& s) {
  const Document& d = s.doc;
  DocBytes b;
  b.info.assign(d.HexInfo.raw().begin(), d.HexInfo.raw().end());
  b.elev.assign(d.HexElev.raw().begin(), d.HexElev.raw().end());
  b.ctl.assign(d.HexCtl.raw().begin(), d.HexCtl.raw().end());
  b.contour.assign(d.HexContour.raw().begin(), d.HexContour.raw().end());
  b.orig.assign(d.HexOrigOwner.raw().begin(), d.HexOrigOwner.raw().end());
  b.tile.assign(d.HexTile.raw().begin(), d.HexTile.raw().end());
  b.deploy.assign(d.HexDeploy.raw().begin(), d.HexDeploy.raw().end());
  b.land.assign(d.HexLandMass.raw().begin(), d.HexLandMass.raw().end());
  b.objCount = d.ObjCount;
  b.objList = d.ObjList;
  b.nationSet = d.NationSet;
  b.ndx = kvtest::ReadBytes(d.NdxPath);
  b.str = kvtest::ReadBytes(d.StrPath);
  return b;
}

struct HistoryTest : testing::Test, kvtest::MiniSession {
  HistoryTest() : MiniSession(kvtest::RoadTileApp()) {}
};

// A random edit of the kind the handlers make: a few hexes of some planes, a
// stretch of rows, the objective table, a name.
void RandomEdit(Session& s, std::mt19937& rng) {
  Document& d = s.doc;
  auto pick = [&](int n) { return static_cast<int>(rng() % static_cast<unsigned>(n)); };
  switch (pick(6)) {
    case 0:
      for (int i = 0, n = 1 + pick(4); i < n; ++i)
        d.HexTile(pick(d.W()), pick(d.H())) = static_cast<int16_t>(pick(300) - 20);
      break;
    case 1:
      for (int i = 0, n = 1 + pick(50); i < n; ++i)
        d.HexInfo(pick(d.W()), pick(d.H()), pick(7)) = static_cast<uint8_t>(rng());
      break;
    case 2: {
      const int y = pick(d.H());
      for (int x = 0; x < d.W(); ++x) {
        d.HexElev(x, y) = static_cast<uint8_t>(rng());
        d.HexDeploy(x, y) = static_cast<int16_t>(rng());
        d.HexContour(x, y) = static_cast<uint8_t>(rng() % 64);
      }
      break;
    }
    case 3:
      d.HexCtl(pick(d.W()), pick(d.H()), 1) = 2;
      d.HexOrigOwner(pick(d.W()), pick(d.H())) = 3;
      d.HexLandMass(pick(d.W()), pick(d.H())) = static_cast<int16_t>(rng());
      BuildObjList(s);
      break;
    case 4:
      SetHexName(s, pick(d.W()), pick(d.H()), pick(3) == 0 ? std::string() : "Name" + std::to_string(rng() % 1000));
      break;
    default:
      d.HexTile.Fill(static_cast<int16_t>(pick(30)));  // a whole-map pass
      break;
  }
}

}  // namespace

TEST_F(HistoryTest, UndoGivesBackEveryStateByteForByteAndRedoTheResults) {
  std::mt19937 rng(17);
  for (auto& c : d().HexCtl.raw()) c = static_cast<uint8_t>(rng() % 4);
  SetHexName(*s, 1, 1, "Start");
  History h(*s);
  std::vector<DocBytes> states{Take(*s)};
  for (int i = 0; i < 60; ++i) {
    RandomEdit(*s, rng);
    if (h.Commit("Edit " + std::to_string(i)) == History::Outcome::Step) states.push_back(Take(*s));
  }
  ASSERT_GT(states.size(), 40u);
  ASSERT_EQ(h.UndoCount(), states.size() - 1);
  for (size_t i = states.size() - 1; i > 0; --i) {
    ASSERT_TRUE(h.Undo());
    ASSERT_TRUE(Take(*s) == states[i - 1]) << "after undoing step " << i;
  }
  EXPECT_FALSE(h.Undo());
  for (size_t i = 1; i < states.size(); ++i) {
    ASSERT_TRUE(h.Redo());
    ASSERT_TRUE(Take(*s) == states[i]) << "after redoing step " << i;
  }
  EXPECT_FALSE(h.Redo());
}

TEST_F(HistoryTest, NameStepsWriteTheFilesBackExactly) {
  History h(*s);
  const DocBytes start = Take(*s);
  SetHexName(*s, 2, 3, "Kessmoor");  // a new record: the strings grow by 20 bytes
  h.Commit();
  const DocBytes named = Take(*s);
  SetHexName(*s, 2, 3, "");
  SetHexName(*s, 2, 3, "Veldhaven");  // cleared and named again: a dead record and a new one
  h.Commit();
  const DocBytes renamed = Take(*s);
  ASSERT_EQ(renamed.str.size(), start.str.size() + 40);
  EXPECT_EQ(h.UndoCount(), 2u);
  EXPECT_EQ(h.UndoName(), "Edit");
  ASSERT_TRUE(h.Undo());
  EXPECT_TRUE(Take(*s) == named);
  std::string name = GetHexName(*s, 2, 3);
  EXPECT_EQ(TrimName(name), "Kessmoor");
  ASSERT_TRUE(h.Undo());
  EXPECT_TRUE(Take(*s) == start);
  EXPECT_EQ(GetHexName(*s, 2, 3), "");
  ASSERT_TRUE(h.Redo());
  ASSERT_TRUE(h.Redo());
  EXPECT_TRUE(Take(*s) == renamed);
  // Names alone are on disk already: they leave the map unmodified.
  EXPECT_FALSE(h.Modified());
  EXPECT_TRUE(h.LastChange().names);
  EXPECT_EQ(h.LastChange().hexes.x1, 2);
  EXPECT_EQ(h.LastChange().hexes.y2, 3);
}

TEST_F(HistoryTest, ModifiedFollowsTheSavedStateThroughUndoAndRedo) {
  History h(*s);
  EXPECT_FALSE(h.Modified());
  d().MapPath = app / "m.map";
  d().HexTile(1, 1) = 5;
  h.Commit();
  EXPECT_TRUE(h.Modified());
  ASSERT_TRUE(SaveMap(*s));
  h.Commit();  // the save is seen here
  EXPECT_FALSE(h.Modified());
  d().HexTile(2, 2) = 6;
  h.Commit();
  EXPECT_TRUE(h.Modified());
  h.Undo();
  EXPECT_FALSE(h.Modified());  // back at the saved state
  h.Undo();
  EXPECT_TRUE(h.Modified());
  h.Redo();
  EXPECT_FALSE(h.Modified());
  // A new step after undoing past the save puts the saved state out of reach.
  h.Undo();
  d().HexTile(3, 3) = 7;
  h.Commit();
  EXPECT_TRUE(h.Modified());
  h.Undo();
  EXPECT_TRUE(h.Modified());
  h.MarkUnsaved();
  EXPECT_TRUE(h.Modified());
}

TEST_F(HistoryTest, ARecordedOneHexStepIsSmallAndBracketsNest) {
  History h(*s);
  h.Begin("Stroke");
  d().HexTile(4, 4) = 9;
  d().HexInfo(4, 4, 0) = 3;
  h.Begin("Paint Tile");
  d().HexTile(5, 4) = 9;
  h.End();  // inner: nothing yet
  EXPECT_EQ(h.UndoCount(), 0u);
  h.End();
  ASSERT_EQ(h.UndoCount(), 1u);
  EXPECT_EQ(h.UndoName(), "Stroke");
  EXPECT_LT(h.Bytes(), 1024u);
  const HexRect b = h.LastChange().hexes;
  EXPECT_EQ(b.x1, 4);
  EXPECT_EQ(b.x2, 5);
  EXPECT_EQ(b.y1, 4);
  EXPECT_EQ(b.y2, 4);
  h.Begin();
  h.End();
  EXPECT_EQ(h.UndoCount(), 1u);  // nothing changed: no step
}

TEST_F(HistoryTest, TheCapDropsTheOldestStepsFirst) {
  History h(*s);
  h.SetCap(64 * 1024);
  std::vector<DocBytes> states{Take(*s)};
  for (int i = 0; i < 40; ++i) {
    d().HexTile.Fill(static_cast<int16_t>(i + 1));  // about 2 KB a step
    for (int y = 0; y < d().H(); ++y)
      for (int x = 0; x < d().W(); ++x) d().HexElev(x, y) = static_cast<uint8_t>(x * 7 + y + i);
    h.Commit();
    states.push_back(Take(*s));
  }
  EXPECT_LE(h.Bytes(), h.Cap());
  const size_t kept = h.UndoCount();
  ASSERT_GT(kept, 3u);
  ASSERT_LT(kept, 40u);
  for (int i = 0; i < 100 && h.Undo(); ++i) {
  }
  // The oldest kept state is reached, not the start.
  EXPECT_TRUE(Take(*s) == states[40 - kept]);
  EXPECT_TRUE(h.Modified());  // the saved state went with the dropped steps
}

TEST_F(HistoryTest, AReplacedDocumentStartsANewHistory) {
  History h(*s);
  d().HexTile(1, 1) = 5;
  h.Commit();
  ASSERT_EQ(h.UndoCount(), 1u);
  d().MapPath = app / "newmap.map";
  NewMap(*s);
  EXPECT_EQ(h.Commit(), History::Outcome::Replaced);
  EXPECT_EQ(h.UndoCount(), 0u);
  EXPECT_FALSE(h.Modified());
  EXPECT_FALSE(h.Undo());
}

// Every handler that can change the map, run in random order on random maps
// under random pens: undoing each step gives back the state before it, byte
// for byte, and redoing gives back its result. The history sees only the
// document, never the handlers, so a handler that wrote where it should not
// would show here as a difference.
TEST(HistoryProperty, EveryHandlerUndoesAndRedoesExactly) {
  kvtest::MiniSession ms(kvtest::RoadTileApp());
  Session& s = *ms.s;
  Document& d = s.doc;
  Pens& p = s.pens;
  std::mt19937 rng(2026);
  auto pick = [&](int n) { return static_cast<int>(rng() % static_cast<unsigned>(n)); };
  const int tiles = s.ref.TileMax + 1;

  using Action = std::function<void()>;
  const std::vector<std::pair<const char*, Action>> actions = {
      {"paint",
       [&] {
         p.CtlMode = static_cast<int16_t>(pick(3));
         p.SideEdit = pick(4) == 0 ? 2 : 0;
         p.ClearSides = pick(5) == 0 ? -1 : 0;
         p.ElevMode = pick(5) == 0 ? -1 : 0;
         p.ElevValue = static_cast<int16_t>(pick(201) - 100);
         p.AutoTile = pick(3) == 0 ? -1 : 0;
         p.RandomMode = pick(4) == 0 ? -1 : 0;
         p.CurTile = static_cast<int16_t>(pick(tiles));
         p.CurSide = static_cast<int16_t>(1 + pick(6));
         p.CurSideKind = static_cast<int16_t>(1 + pick(2));
         p.CurNation = static_cast<int16_t>(pick(s.ref.NationCount + 1));
         p.CurOrigNation = static_cast<int16_t>(pick(s.ref.NationCount + 1));
         p.CurObjType = static_cast<int16_t>(pick(4));
         SetHex(s, static_cast<int16_t>(pick(d.W())), static_cast<int16_t>(pick(d.H())));
       }},
      {"keys",
       [&] {
         p.CurHexX = static_cast<int16_t>(pick(d.W()));
         p.CurHexY = static_cast<int16_t>(pick(d.H()));
         const int keys[] = {key::B, key::N, key::R, key::X, key::F4, key::F5, key::F7, key::F8};
         Form_KeyDown(s, keys[pick(8)], 0);
       }},
      {"block fill",
       [&] {
         p.RandomMode = pick(2) == 0 ? -1 : 0;
         Command1_Click(s);
       }},
      {"names",
       [&] {
         p.CurHexX = static_cast<int16_t>(pick(d.W()));
         p.CurHexY = static_cast<int16_t>(pick(d.H()));
         s.ed.f1.Text2 = "Hex " + std::to_string(pick(1000));
         if (pick(3) == 0)
           Command7_Click(s);
         else
           Command4_Click(s);
       }},
      {"copy and paste",
       [&] {
         p.SelX1 = static_cast<int16_t>(pick(d.W()));
         p.SelY1 = static_cast<int16_t>(pick(d.H()));
         p.SelX2 = static_cast<int16_t>(std::min(d.W() - 1, p.SelX1 + pick(6)));
         p.SelY2 = static_cast<int16_t>(std::min(d.H() - 1, p.SelY1 + pick(6)));
         if (pick(2)) mCopy_Click(s);
         p.CurHexX = static_cast<int16_t>(pick(d.W()));
         p.CurHexY = static_cast<int16_t>(pick(d.H()));
         mPaste_Click(s);
       }},
      {"snapshot", [&] { mUndo_Click(s); }},
      {"passes",
       [&] {
         p.DefaultAreaAll = pick(2) == 0 ? -1 : 0;
         p.CurTile = static_cast<int16_t>(pick(tiles));
         switch (pick(7)) {
           case 0: autoredrawroads_Click(s); break;
           case 1: autoredrawterrain_Click(s); break;
           case 2: mAutoForest_Click(s); break;
           case 3: mAutoMoutains_Click(s); break;
           case 4: mMapRebuild_Click(s); break;
           case 5: mRedoTerrain_Click(s); break;
           default: doroads_Click(s); break;
         }
       }},
      {"woods", [&] { mRndWoods_Click(s); }},
      {"checks",
       [&] {
         p.DefaultAreaAll = pick(2) == 0 ? -1 : 0;
         switch (pick(6)) {
           case 0: mDefaultHC_Click(s); break;
           case 1: mRoadsOnly_Click(s); break;
           case 2: menu_LandMass_Click(s); break;
           case 3: VerifyHexData_Click(s); break;
           case 4: mNextUnconnected_Click(s); break;
           default: mOriginalOwner_Click(s); break;
         }
       }},
      {"objectives", [&] { BuildObjList(s); }},
  };

  for (int map = 0; map < 5; ++map) {
    // A random map: a new one of a random size, then random content.
    d.MapMaxX = static_cast<int16_t>(6 + pick(30));
    d.MapMaxY = static_cast<int16_t>(6 + pick(24));
    d.MapFile = "newmap.map";
    d.MapPath = ms.app / "newmap.map";
    NewMap(s);
    for (int y = 0; y < d.H(); ++y)
      for (int x = 0; x < d.W(); ++x) {
        d.HexTile(x, y) = static_cast<int16_t>(pick(tiles));
        d.HexInfo(x, y, 0) = s.ref.TypeOf(d.HexTile(x, y));
        for (int k = 1; k <= 6; ++k) d.HexInfo(x, y, k) = pick(6) == 0 ? static_cast<uint8_t>(1 + pick(2)) : 0;
        d.HexElev(x, y) = static_cast<uint8_t>(127 + pick(41) - 20);
        d.HexCtl(x, y, 0) = static_cast<uint8_t>(pick(s.ref.NationCount + 1));
        d.HexCtl(x, y, 1) = pick(8) == 0 ? static_cast<uint8_t>(1 + pick(3)) : 0;
        d.HexDeploy(x, y) = pick(10) == 0 ? static_cast<int16_t>(1 + pick(s.ref.NationCount)) : 0;
      }
    BuildObjList(s);
    History h(s);
    std::vector<DocBytes> states{Take(s)};
    std::vector<std::string> done;
    for (int i = 0; i < 40; ++i) {
      const auto& [name, act] = actions[static_cast<size_t>(pick(static_cast<int>(actions.size())))];
      h.Begin(name);
      act();
      h.End();
      if (h.UndoCount() == states.size()) {
        states.push_back(Take(s));
        done.push_back(name);
      }
      ASSERT_EQ(h.UndoCount() + 1, states.size());
    }
    ASSERT_GT(states.size(), 15u);
    for (size_t i = states.size() - 1; i > 0; --i) {
      ASSERT_TRUE(h.Undo());
      ASSERT_TRUE(Take(s) == states[i - 1]) << "map " << map << ": undoing \"" << done[i - 1] << "\"";
    }
    for (size_t i = 1; i < states.size(); ++i) {
      ASSERT_TRUE(h.Redo());
      ASSERT_TRUE(Take(s) == states[i]) << "map " << map << ": redoing \"" << done[i - 1] << "\"";
    }
  }
}

// The history of steps: undo gives back the document byte for byte, redo
// gives back the result, the hex-name files included; the modified state,
// the memory cap and a replaced document.
#include <gtest/gtest.h>

#include <random>

#include "document/document_ops.h"
#include "document/history.h"
#include "document/mapfile.h"
#include "document/namestore.h"
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
      for (int i = 0, n = 1 + pick(4); i < n; ++i) d.HexTile(pick(d.W()), pick(d.H())) = static_cast<int16_t>(pick(300) - 20);
      break;
    case 1:
      for (int i = 0, n = 1 + pick(50); i < n; ++i) d.HexInfo(pick(d.W()), pick(d.H()), pick(7)) = static_cast<uint8_t>(rng());
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

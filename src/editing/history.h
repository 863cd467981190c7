// The history of steps behind Undo and Redo (Ctrl+Z, Ctrl+Y), beside the
// classic one-snapshot undo of F5 and F7, which it leaves alone.
//
// How a step is found: the history keeps a copy of the document as it stood
// after the last step (the baseline). When an action ends, the document is
// compared with that copy, plane by plane, and the byte ranges that differ
// become the step. We chose this over routing every write through one writer
// because the classic handlers write the arrays directly, in hundreds of
// places across the core (painting, passes, checks, imports, the scripts'
// own assignments): a comparison cannot miss a writer, present or future,
// while a writer that forgets to announce itself would silently corrupt the
// history. It stays cheap: an untouched plane costs one memcmp, and only the
// ranges that differ are kept. The hex names are the exception: they live in
// two files with one writer (NameFiles::WriteAt), which notes every write.
//
// A step holds, for each changed range, the bytes of the state that is not
// current: undoing swaps them with the document's, and redoing swaps them
// back, so a step costs the changed bytes once.
//
// The document here is everything a save writes and a later action reads:
// the planes of HexInfo, HexTile, HexElev, HexCtl, HexDeploy, HexLandMass,
// HexContour and HexOrigOwner, ObjCount and ObjList, the nation set's name
// and the hex names. Pens, views, pattern stores, tile tables, HexAIDist and
// the snapshot file are not the document and are not undone. A wholesale
// replacement (a new map, a load, an import) starts a new history.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <vector>

#include "document/document.h"
#include "document/namestore.h"
#include "platform/events.h"

namespace kv {

struct Session;

// What one step, undo or redo changed.
struct DocChange {
  HexRect hexes;            // every hex of a changed plane or name lies inside
  bool objectives = false;  // ObjCount or ObjList
  bool nationSet = false;   // the nation set's name (and so its tables)
  bool names = false;       // the hex-name files
  bool Any() const { return !hexes.Empty() || objectives || nationSet || names; }
};

class History {
 public:
  static constexpr size_t kDefaultCapBytes = size_t{256} << 20;

  // Starts with the session's document as it is now: no steps, unmodified.
  explicit History(Session& s);
  ~History();
  History(const History&) = delete;
  History& operator=(const History&) = delete;

  // Brackets around an action: steps nest, and the outermost End compares
  // the document with the baseline. A stroke of painting (press, moves,
  // release) is one Begin ... End. Name gives the open step its words
  // ("Paint Tile"); the first name wins.
  void Begin(const std::string& name = {});
  void Name(const std::string& name);
  void End();
  int Depth() const { return depth_; }

  enum class Outcome { None, Step, Replaced };
  // Compares now, whatever the nesting: a difference becomes a step named by
  // the open name, else `fallback`. A replaced document (another generation
  // or size) starts a new, unmodified history instead.
  Outcome Commit(const std::string& fallback = "Edit");
  // Takes whatever changed into the baseline without a step; only while the
  // history has no steps (the settling of a document just opened).
  bool AbsorbIfEmpty();

  // Each commits what is pending first. False when there is nothing to undo
  // or redo. The change is in LastChange().
  bool Undo();
  bool Redo();
  const DocChange& LastChange() const { return last_; }

  size_t UndoCount() const { return pos_; }
  size_t RedoCount() const { return steps_.size() - pos_; }
  std::string UndoName() const { return pos_ > 0 ? steps_[pos_ - 1].name : std::string(); }
  std::string RedoName() const { return pos_ < steps_.size() ? steps_[pos_].name : std::string(); }

  // Whether the document differs from its last save. Steps that touch only
  // hex names (written to their files at once) do not count. A save is seen
  // by the commit after it; MarkUnsaved makes the present state differ from
  // any save (a recovered or imported map).
  bool Modified() const;
  void MarkUnsaved();
  // Starts a new, empty history on the document as it is.
  void Reset();

  // Memory the steps hold; the oldest steps go when it passes the cap. The
  // baseline (one copy of the document) is not counted.
  size_t Bytes() const { return bytes_; }
  size_t BaselineBytes() const;
  void SetCap(size_t bytes);
  size_t Cap() const { return cap_; }

 private:
  struct Run {
    uint8_t plane = 0;
    size_t offset = 0;
    std::vector<uint8_t> bytes;  // the bytes of the state that is not current
  };
  struct Step {
    std::string name;
    std::vector<Run> runs;
    bool hasObjectives = false;
    int16_t objCount = 0;
    ObjTable objList;
    bool hasNationSet = false;
    std::string nationSet;
    std::vector<NameWrite> names;
    bool changesMap = false;
    HexRect hexes;
    size_t bytes = 0;
  };
  struct Baseline {
    int16_t mapMaxX = -1, mapMaxY = -1;
    uint64_t generation = 0, saves = 0;
    std::vector<uint8_t> planes[8];
    int16_t objCount = 0;
    ObjTable objList;
    std::string nationSet;
  };

  void TakeBaseline();
  bool Replaced() const;
  Step Diff();
  void Apply(Step& st, bool undo);
  void Trim();
  static size_t StepBytes(const Step& st);

  Session& s_;
  Baseline base_;
  std::deque<Step> steps_;
  size_t pos_ = 0;     // steps before pos_ are done, the rest undone
  int64_t first_ = 0;  // the absolute number of steps_[0]
  static constexpr int64_t kNever = -1;
  int64_t savedAt_ = 0;  // absolute position of the saved state, or kNever
  size_t bytes_ = 0, cap_ = kDefaultCapBytes;
  int depth_ = 0;
  std::string name_;
  DocChange last_;
};

}  // namespace kv

#include "editing/history.h"

#include <algorithm>
#include <cstring>

#include "refdata/nations.h"
#include "session.h"
#include "view/render_api.h"

namespace kv {

namespace {

constexpr int kPlanes = 8;
// Equal bytes shorter than this between two differences stay inside one run:
// a run costs more than a few bytes of bookkeeping.
constexpr size_t kGap = 24;
constexpr size_t kBlock = 256;

struct PlaneRef {
  uint8_t* data;
  size_t bytes;
  int elem;  // bytes a hex
};

template <class T>
PlaneRef Ref(HexArray<T>& a) {
  return {reinterpret_cast<uint8_t*>(a.data()), a.bytes(), static_cast<int>(sizeof(T))};
}

PlaneRef PlaneOf(Document& d, int k) {
  switch (k) {
    case 0: return Ref(d.HexInfo);
    case 1: return Ref(d.HexTile);
    case 2: return Ref(d.HexElev);
    case 3: return Ref(d.HexCtl);
    case 4: return Ref(d.HexDeploy);
    case 5: return Ref(d.HexLandMass);
    case 6: return Ref(d.HexContour);
    default: return Ref(d.HexOrigOwner);
  }
}

// The hexes of element indexes first..last of an array with layers of n hexes.
void AddIndexes(HexRect& box, size_t first, size_t last, const Document& d) {
  const size_t n = d.N(), w = static_cast<size_t>(d.W());
  if (n == 0) return;
  if (first / n != last / n || last - first >= n) {
    box = box.United(HexRect::Whole(d.MapMaxX, d.MapMaxY));
    return;
  }
  const size_t a = first % n, b = last % n;
  const int y1 = static_cast<int>(a / w), y2 = static_cast<int>(b / w);
  if (y1 == y2)
    box = box.United(HexRect{static_cast<int>(a % w), y1, static_cast<int>(b % w), y2});
  else
    box = box.United(HexRect{0, y1, d.MapMaxX, y2});
}

void AddNameWrite(HexRect& box, const NameWrite& w, const Document& d) {
  if (w.str || w.after.empty()) return;  // a record is found through its slot
  const size_t first = static_cast<size_t>(w.offset) / 4,
               last = (static_cast<size_t>(w.offset) + w.after.size() - 1) / 4;
  if (first >= d.N()) return;
  AddIndexes(box, first, std::min(last, d.N() - 1), d);
}

}  // namespace

History::History(Session& s) : s_(s) {
  s_.names.KeepJournal(true);
  TakeBaseline();
}

History::~History() { s_.names.KeepJournal(false); }

void History::TakeBaseline() {
  Document& d = s_.doc;
  base_.mapMaxX = d.MapMaxX;
  base_.mapMaxY = d.MapMaxY;
  base_.generation = d.Generation;
  base_.saves = d.Saves;
  for (int k = 0; k < kPlanes; ++k) {
    const PlaneRef p = PlaneOf(d, k);
    base_.planes[k].assign(p.data, p.data + p.bytes);
  }
  base_.objCount = d.ObjCount;
  base_.objList = d.ObjList;
  base_.nationSet = d.NationSet;
  s_.names.TakeJournal();
}

size_t History::BaselineBytes() const {
  size_t n = 0;
  for (const auto& p : base_.planes) n += p.size();
  return n;
}

bool History::Replaced() const {
  Document& d = s_.doc;
  if (d.Generation != base_.generation || d.MapMaxX != base_.mapMaxX || d.MapMaxY != base_.mapMaxY) return true;
  for (int k = 0; k < kPlanes; ++k)
    if (PlaneOf(d, k).bytes != base_.planes[k].size()) return true;
  return false;
}

void History::Begin(const std::string& name) {
  if (depth_++ == 0) name_.clear();
  Name(name);
}

void History::Name(const std::string& name) {
  if (name_.empty()) name_ = name;
}

void History::End() {
  if (depth_ == 0) return;
  if (--depth_ == 0) Commit();
}

History::Step History::Diff() {
  Document& d = s_.doc;
  Step st;
  for (int k = 0; k < kPlanes; ++k) {
    const PlaneRef p = PlaneOf(d, k);
    uint8_t* cur = p.data;
    uint8_t* old = base_.planes[k].data();
    const size_t n = p.bytes;
    size_t i = 0;
    while (i < n) {
      const size_t len = std::min(kBlock, n - i);
      if (std::memcmp(cur + i, old + i, len) == 0) {
        i += len;
        continue;
      }
      size_t first = i;
      while (cur[first] == old[first]) ++first;
      size_t last = first;
      for (size_t j = first + 1; j < n && j - last <= kGap; ++j)
        if (cur[j] != old[j]) last = j;
      Run r;
      r.plane = static_cast<uint8_t>(k);
      r.offset = first;
      r.bytes.assign(old + first, old + last + 1);
      std::memcpy(old + first, cur + first, last + 1 - first);
      AddIndexes(st.hexes, first / p.elem, last / p.elem, d);
      st.runs.push_back(std::move(r));
      i = last + 1;
    }
  }
  if (d.ObjCount != base_.objCount || !(d.ObjList == base_.objList)) {
    st.hasObjectives = true;
    st.objCount = base_.objCount;
    st.objList = base_.objList;
    base_.objCount = d.ObjCount;
    base_.objList = d.ObjList;
  }
  if (d.NationSet != base_.nationSet) {
    st.hasNationSet = true;
    st.nationSet = base_.nationSet;
    base_.nationSet = d.NationSet;
  }
  st.names = s_.names.TakeJournal();
  for (const NameWrite& w : st.names) AddNameWrite(st.hexes, w, d);
  st.changesMap = !st.runs.empty() || st.hasObjectives || st.hasNationSet;
  st.bytes = StepBytes(st);
  return st;
}

size_t History::StepBytes(const Step& st) {
  // What the step holds on the heap, with a word or two of allocation cost
  // for each block.
  constexpr size_t kAlloc = 16;
  size_t n = sizeof(Step) + st.name.capacity() + st.nationSet.capacity();
  for (const Run& r : st.runs) n += sizeof(Run) + r.bytes.capacity() + kAlloc;
  if (st.hasObjectives) n += st.objList.bytes() + kAlloc;
  for (const NameWrite& w : st.names) n += sizeof(NameWrite) + w.before.capacity() + w.after.capacity() + 2 * kAlloc;
  return n;
}

History::Outcome History::Commit(const std::string& fallback) {
  Document& d = s_.doc;
  if (Replaced()) {
    Reset();
    last_ = DocChange{};
    last_.hexes = HexRect::Whole(d.MapMaxX, d.MapMaxY);
    last_.objectives = last_.nationSet = last_.names = true;
    return Outcome::Replaced;
  }
  Step st = Diff();
  const bool saved = d.Saves != base_.saves;
  base_.saves = d.Saves;
  Outcome out = Outcome::None;
  last_ = DocChange{};
  if (st.changesMap || !st.names.empty()) {
    last_.hexes = st.hexes;
    last_.objectives = st.hasObjectives;
    last_.nationSet = st.hasNationSet;
    last_.names = !st.names.empty();
    st.name = name_.empty() ? fallback : name_;
    // A new step ends the redo branch; a save made on it is out of reach.
    const int64_t cur = first_ + static_cast<int64_t>(pos_);
    if (savedAt_ > cur) savedAt_ = kNever;
    while (steps_.size() > pos_) {
      bytes_ -= steps_.back().bytes;
      steps_.pop_back();
    }
    bytes_ += st.bytes;
    steps_.push_back(std::move(st));
    ++pos_;
    out = Outcome::Step;
    Trim();
  }
  if (saved) savedAt_ = first_ + static_cast<int64_t>(pos_);
  if (depth_ == 0) name_.clear();
  return out;
}

bool History::AbsorbIfEmpty() {
  if (!steps_.empty() || Replaced()) return false;
  const bool saved = s_.doc.Saves != base_.saves;
  TakeBaseline();
  if (saved) savedAt_ = 0;
  return true;
}

void History::Trim() {
  while (bytes_ > cap_ && pos_ > 0) {
    bytes_ -= steps_.front().bytes;
    steps_.pop_front();
    ++first_;
    --pos_;
  }
}

void History::SetCap(size_t bytes) {
  cap_ = bytes;
  Trim();
}

void History::Apply(Step& st, bool undo) {
  Document& d = s_.doc;
  for (Run& r : st.runs) {
    const PlaneRef p = PlaneOf(d, r.plane);
    uint8_t* at = p.data + r.offset;
    std::swap_ranges(at, at + r.bytes.size(), r.bytes.data());
    std::memcpy(base_.planes[r.plane].data() + r.offset, at, r.bytes.size());
  }
  if (st.hasObjectives) {
    std::swap(d.ObjCount, st.objCount);
    std::swap(d.ObjList, st.objList);
    base_.objCount = d.ObjCount;
    base_.objList = d.ObjList;
  }
  if (st.hasNationSet) {
    std::swap(d.NationSet, st.nationSet);
    // The tables follow the name, as when a map naming another set is loaded.
    s_.forms.Form3Loaded = false;
    s_.ui().UnloadForm(FormId::Form3);
    if (SwitchNationSet(s_, d.NationSet)) BuildFlagBanks(s_);
    base_.nationSet = d.NationSet;
  }
  if (undo) {
    for (auto it = st.names.rbegin(); it != st.names.rend(); ++it) s_.names.Revert(*it);
  } else {
    for (const NameWrite& w : st.names) s_.names.Reapply(w);
  }
  last_ = DocChange{};
  last_.hexes = st.hexes;
  last_.objectives = st.hasObjectives;
  last_.nationSet = st.hasNationSet;
  last_.names = !st.names.empty();
}

bool History::Undo() {
  Commit();
  if (pos_ == 0) return false;
  Apply(steps_[pos_ - 1], true);
  --pos_;
  return true;
}

bool History::Redo() {
  Commit();
  if (pos_ >= steps_.size()) return false;
  Apply(steps_[pos_], false);
  ++pos_;
  return true;
}

bool History::Modified() const {
  if (savedAt_ == kNever || savedAt_ < first_) return true;
  const int64_t cur = first_ + static_cast<int64_t>(pos_);
  const int64_t lo = std::min(cur, savedAt_), hi = std::max(cur, savedAt_);
  for (int64_t i = lo; i < hi; ++i)
    if (steps_[static_cast<size_t>(i - first_)].changesMap) return true;
  return false;
}

void History::MarkUnsaved() { savedAt_ = kNever; }

void History::Reset() {
  steps_.clear();
  pos_ = 0;
  first_ = 0;
  savedAt_ = 0;
  bytes_ = 0;
  TakeBaseline();
}

}  // namespace kv

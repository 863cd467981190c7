#include "analysis/landmass.h"

#include <string>

#include "document/mapstate.h"

namespace kv {

namespace {

// Union-find over the numbers handed out by one merging sweep, numbers
// first .. first + size - 1. The root of a set remembers the least number of
// its members, which is the number the whole body carries after the merges
// (the lesser number wins each merge).
class NumberSets {
 public:
  explicit NumberSets(int32_t first) : first_(first) {}
  int32_t Add() {
    const int32_t id = static_cast<int32_t>(parent_.size());
    parent_.push_back(id);
    size_.push_back(1);
    least_.push_back(first_ + id);
    return id;
  }
  int32_t Find(int32_t a) {
    while (parent_[a] != a) {
      parent_[a] = parent_[parent_[a]];
      a = parent_[a];
    }
    return a;
  }
  // Joins two sets; returns the root.
  int32_t Join(int32_t a, int32_t b) {
    a = Find(a);
    b = Find(b);
    if (a == b) return a;
    if (size_[a] < size_[b]) std::swap(a, b);
    parent_[b] = a;
    size_[a] += size_[b];
    if (least_[b] < least_[a]) least_[a] = least_[b];
    return a;
  }
  int32_t Least(int32_t root) const { return least_[root]; }
  int32_t Count() const { return static_cast<int32_t>(parent_.size()); }
  int32_t First() const { return first_; }

 private:
  int32_t first_;
  std::vector<int32_t> parent_, size_, least_;
};

// One merging sweep over the hexes of one kind (land or water), on the
// column-major kind mask. Each hex of the kind gets the id of its set in
// `id`. A hex's neighbours that can already carry a number when it is
// reached are the two in the column before (lower left, then upper left) and
// the one above; the others lie ahead of the scan. The first of those that
// is of the kind gives the neighbour's body; the column run's body is that
// of the hex above. The two are merged when they differ.
void MergeSweep(const std::vector<uint8_t>& kind, uint8_t want, int w, int h, NumberSets& sets,
                std::vector<int32_t>& id, const ColumnProgress& progress) {
  for (int x = 0; x < w; ++x) {
    const bool even = x % 2 == 0;
    int32_t cur = -1;  // set of the column run, -1 for none
    const size_t col = static_cast<size_t>(x) * h;
    for (int y = 0; y < h; ++y) {
      const size_t i = col + y;
      if (kind[i] != want) {
        cur = -1;
        continue;
      }
      int32_t n = -1;
      if (x > 0) {
        const size_t prev = col - h;
        // Lower left, then upper left.
        const int ll = even ? y + 1 : y, ul = even ? y : y - 1;
        if (ll < h && kind[prev + ll] == want)
          n = id[prev + ll];
        else if (ul >= 0 && kind[prev + ul] == want)
          n = id[prev + ul];
      }
      if (n < 0 && y > 0 && kind[i - 1] == want) n = id[i - 1];
      if (n < 0)
        cur = sets.Add();
      else if (cur < 0)
        cur = n;
      else
        cur = sets.Join(cur, n);
      id[i] = cur;
    }
    if (progress) progress(x, h);
  }
}

// The renumbering sweep. Bodies are met in scan order; a hex whose number
// is above m makes m one more and gives that number to every hex holding its
// number, which can join it to a body still holding m. Values are tracked
// per group of merged sets: valueGroup[v] is the group holding number v.
class Renumbering {
 public:
  Renumbering(NumberSets& sets) : sets_(sets) {
    const int32_t n = sets.Count();
    gparent_.resize(n);
    value_.resize(n);
    holder_.assign(n + 1, -1);
    for (int32_t a = 0; a < n; ++a) {
      gparent_[a] = a;
      if (sets.Find(a) == a) {
        value_[a] = sets.Least(a);
        holder_[Slot(value_[a])] = a;
      }
    }
  }
  // The number that the hex of set `a` holds now.
  int32_t Value(int32_t a) { return value_[Group(sets_.Find(a))]; }
  // Renumbers a hex of set `a` when its number is above m.
  void Visit(int32_t a, int32_t& m) {
    const int32_t g = Group(sets_.Find(a));
    const int32_t v = value_[g];
    if (v > m && v > 1) {
      m = m + 1;
      holder_[Slot(v)] = -1;
      const int32_t other = holder_[Slot(m)];
      int32_t root = g;
      if (other >= 0) {
        root = Group(other);
        gparent_[g] = root;
      }
      value_[root] = m;
      holder_[Slot(m)] = root;
    }
  }

 private:
  int32_t Group(int32_t a) {
    while (gparent_[a] != a) {
      gparent_[a] = gparent_[gparent_[a]];
      a = gparent_[a];
    }
    return a;
  }
  // Numbers run from first - 1 (the start of m) to first + count - 1.
  size_t Slot(int32_t v) const { return static_cast<size_t>(v - sets_.First()); }

  NumberSets& sets_;
  std::vector<int32_t> gparent_, value_, holder_;
};

}  // namespace

LandMassNumbers NumberLandMasses(const uint8_t* terrain, int w, int h, const ColumnProgress& progress) {
  LandMassNumbers out;
  const size_t n = static_cast<size_t>(w) * h;
  out.number.assign(n, 0);
  if (n == 0) return out;
  // Column-major land mask: the sweeps walk columns outer, rows inner.
  std::vector<uint8_t> land(n);
  for (int y = 0; y < h; ++y)
    for (int x = 0; x < w; ++x) land[static_cast<size_t>(x) * h + y] = terrain[static_cast<size_t>(y) * w + x] > 0;
  std::vector<int32_t> id(n, -1);

  // Land: merge, then renumber from m = 1.
  NumberSets landSets(1);
  MergeSweep(land, 1, w, h, landSets, id, progress);
  int32_t m = 1;
  {
    Renumbering r(landSets);
    for (int x = 0; x < w; ++x) {
      const size_t col = static_cast<size_t>(x) * h;
      for (int y = 0; y < h; ++y)
        if (land[col + y]) r.Visit(id[col + y], m);
      if (progress) progress(x, h);
    }
    for (size_t i = 0; i < n; ++i)
      if (land[i]) out.number[(i % h) * w + i / h] = r.Value(id[i]);
  }
  const int32_t k = m;
  out.landBodies = k;
  out.highest = k;  // land numbers never exceed k

  // Water: new numbers from k + 2, renumbered from m = k + 1.
  NumberSets waterSets(k + 2);
  MergeSweep(land, 0, w, h, waterSets, id, progress);
  m = k + 1;
  {
    Renumbering r(waterSets);
    for (int x = 0; x < w; ++x) {
      const size_t col = static_cast<size_t>(x) * h;
      for (int y = 0; y < h; ++y)
        if (!land[col + y]) r.Visit(id[col + y], m);
      if (progress) progress(x, h);
    }
    for (size_t i = 0; i < n; ++i)
      if (!land[i]) {
        const int32_t v = r.Value(id[i]);
        out.number[(i % h) * w + i / h] = v;
        if (v > out.highest) out.highest = v;
      }
  }
  return out;
}

bool BuildLandMasses(MapState& s) {
  Document& d = s.doc;
  s.SetPointer(vbHourglass);
  auto progress = [&s](int x, int rows) { s.SetLabel3(std::to_string(x) + "," + std::to_string(rows)); };
  LandMassNumbers r = NumberLandMasses(d.HexInfo.plane(0), d.W(), d.H(), progress);
  if (!r.FitsInt16()) {
    s.SetPointer(vbArrow);
    s.MsgBox("This map has too many separate land and water bodies to number (the highest number would be " +
             std::to_string(r.highest) + ", above 32767). The land-mass numbers were left as they were.");
    return false;
  }
  d.HexLandMass.Allocate(d.W(), d.H());
  int16_t* out = d.HexLandMass.data();
  for (size_t i = 0; i < r.number.size(); ++i) out[i] = static_cast<int16_t>(r.number[i]);
  s.MapEdited();
  s.SetPointer(vbArrow);
  return true;
}

void menu_LandMass_Click(MapState& s) { BuildLandMasses(s); }

}  // namespace kv

// The map document: the per-hex arrays, the objective table and the identity
// of the map. One Document lives in each Session.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/hexarray.h"

namespace kv {

constexpr int16_t VersionNo = 580;

// ObjList (0..ObjCount, 0..5), first index fastest: the same column-by-column
// order the map file stores it in.
class ObjTable {
 public:
  void Allocate(int count) {
    c_ = count;
    v_.assign(static_cast<size_t>(count + 1) * 6, 0);
  }
  int16_t& operator()(int i, int j) { return v_[static_cast<size_t>(j) * (c_ + 1) + i]; }
  int16_t operator()(int i, int j) const { return v_[static_cast<size_t>(j) * (c_ + 1) + i]; }
  int Rows() const { return c_ + 1; }
  int16_t* data() { return v_.data(); }
  const int16_t* data() const { return v_.data(); }
  size_t bytes() const { return v_.size() * sizeof(int16_t); }
  bool operator==(const ObjTable&) const = default;

 private:
  int c_ = 0;
  std::vector<int16_t> v_ = std::vector<int16_t>(6, 0);
};

struct Document {
  int16_t MapMaxX = 32, MapMaxY = 30;  // highest indexes, not counts

  HexArray<uint8_t> HexInfo;       // (x, y, 0..6): terrain, then sides 1..6
  HexArray<int16_t> HexTile;       // tile number
  HexArray<uint8_t> HexElev;       // elevation + 127
  HexArray<uint8_t> HexCtl;        // (x, y, 0..1): owner, objective type
  HexArray<int16_t> HexDeploy;     // deployment nation
  HexArray<int16_t> HexLandMass;   // land-mass number
  HexArray<uint8_t> HexContour;    // contour code 0..63
  HexArray<uint8_t> HexOrigOwner;  // original owner of an objective hex
  HexArray<int16_t> HexAIDist;     // distance field of one objective
  HexArray<int32_t> HexPixel;      // (x, y, 0..1): map pixel of the hex's cell

  int16_t ObjCount = 0;
  ObjTable ObjList;

  std::string MapFile = "newmap.map";
  std::string MapPath;
  std::string NdxPath, StrPath;
  std::string NationSet;

  // Counters the history reads: every wholesale replacement (a new map, a
  // load, an import) and every completed save moves one on.
  uint64_t Generation = 0;
  uint64_t Saves = 0;

  int W() const { return MapMaxX + 1; }
  int H() const { return MapMaxY + 1; }
  size_t N() const { return static_cast<size_t>(W()) * H(); }
  bool OnMap(int x, int y) const { return x >= 0 && y >= 0 && x <= MapMaxX && y <= MapMaxY; }

  // Zero-filled allocation of every per-hex array for the current size
  // (HexPixel is filled separately, from the geometry); a new generation.
  void AllocateAll();
  // Takes over the size and every per-hex plane of m except HexPixel, which
  // belongs to the geometry; the objective table and identity stay. A new
  // generation.
  void TakePlanes(Document&& m);
};

// Highest index the data model accepts for either dimension.
constexpr int kMaxMapIndex = 32767;
// Largest number of hexes a new map may have.
constexpr long long kMaxNewMapHexes = 16LL * 1024 * 1024;

}  // namespace kv

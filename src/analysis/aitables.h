// AI tables: for every objective, how many hex steps each hex of its land
// mass lies from it, stored one block an objective in the .ai file beside
// the map.
//
// File layout: no header; block i (objectives in ObjList order, from 1) at
// byte (i - 1) * B with B = (MapMaxX + 1) * (MapMaxY + 1) * 2; within a block
// one signed 16-bit little-endian entry a hex, column after column (x outer,
// y inner). 0 is the objective, 1 and up steps to it, -1 not reached.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "platform/bytes.h"
#include "platform/hexarray.h"

namespace kv {

struct MapState;
struct MapView;
struct Document;

// The .ai file of the open map: the map's name with ".ai" for its last four
// characters, beside the map (in the program folder for a map never saved).
std::string AIFilePath(const MapState& s);

// Computes distance fields on one map. Shared, read-only, by all threads;
// each thread brings its own work buffer.
class AIFieldMaker {
 public:
  explicit AIFieldMaker(const Document& d);
  // The field of the objective at (ox, oy), as file entries, column after
  // column, into block (W * H entries). Two ring sweeps, outward from radius
  // 1 and back inward from the map's larger index; a hex is reached from its
  // neighbours only, column 0 and row 0 never take part, and only land of
  // the objective's land mass is visited.
  void Compute(int ox, int oy, std::vector<int32_t>& work, int16_t* block) const;
  int W() const { return w_; }
  int H() const { return h_; }
  size_t BlockEntries() const { return static_cast<size_t>(w_) * h_; }

 private:
  int w_, h_, stride_;
  std::vector<int32_t> mass_;  // column-major with a padding row and column; kNoVisit where never visited
  std::vector<int16_t> own_;   // land mass of each hex, column-major
};

// Computes the blocks of objectives 1..ObjCount of s.doc.ObjList on up to
// `threads` threads and writes them in order over the .ai file from byte 0
// (a longer old file keeps its tail). beforeObjective(i) runs on the calling
// thread, in order, before block i is written, while later blocks are
// computed; Label3 shows each objective's progress text. Afterwards HexAIDist
// holds the raw field of the last objective (entries plus one, x fastest).
// Returns false after a message when the file cannot be written.
bool WriteAIFile(MapState& s, int threads, const std::function<void(int i)>& beforeObjective = {});
// BuildObjList, then the tables on every core, the view brought to each
// objective in turn as it is processed. (Draws: lives with the view-side
// commands.)
bool WriteAITables(MapView& s);
void BuildAITables_Click(MapView& s);

// Reads block `index` (from 1) of an .ai source for a w x h map into field
// (allocated afresh, x fastest). Fails with a reason, field all 0, when the
// source is too short to hold that block.
bool ReadAIBlock(ByteSource& in, int index, int w, int h, HexArray<int16_t>& field, std::string* err);
// Loads the table of the objective standing at (x, y) into HexAIDist; all 0
// when no objective stands there. Without an .ai file: "Create objective
// file then try again" and HexAIDist stays as it was.
void LoadAITable(MapState& s, int16_t x, int16_t y);

}  // namespace kv

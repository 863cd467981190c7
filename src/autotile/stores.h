// The pattern stores under "mapedit/": how the six neighbours of a hex become
// a file name and a search key, the two text formats (pattern files and tile
// lists), search and update, and the three one-byte-a-tile data files.
//
// Everything the editor has learned lives in these text files, which a
// designer may read and edit at any time. Lookups may be served from a cache
// of parsed files, but only while a file's size, times and identity are those
// it had when it was parsed and those times lie safely in the past; every
// write of our own drops the entry. The results are those of reading the file
// at every lookup.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kv {

struct MapState;

// ---- The neighbour ring -----------------------------------------------------

// Ring position p (1..6, clockwise from the hex above) is hex side p + 4, less
// 6 when that exceeds 6.
constexpr int RingSide(int p) { return p + 4 > 6 ? p - 2 : p + 4; }
// The neighbour of (x, y) at ring position p (no bounds check).
void RingNeighbour(int x, int y, int p, int& nx, int& ny);

// One outline around a hex: for each ring position whether the neighbour is
// connected (or matches), and the key field (its tile, 0 when unconnected).
struct RingOutline {
  std::array<bool, 6> on{};
  std::array<int16_t, 6> tile{};
};

// "1-0-1-0-0-0" (dashed) or "101000" (plain).
std::string PatternMask(const RingOutline& r, bool dashed);
// "104-0-90-0-0-0": the tile of each connected neighbour, "0" elsewhere.
std::string PatternKey(const RingOutline& r);
// "103050": the digit p where ring position p matches, "0" elsewhere.
std::string SideDigits(const std::array<bool, 6>& match);

// ---- Paths and folders ------------------------------------------------------

// Terrain code with at least two digits ("08", "14", "123").
std::string TerrainNN(int terrain);
// "mapedit/tNN/<digits>.txt".
std::string TileListPath(const MapState& s, int terrain, const std::string& digits);
// Makes the folder when a search for it finds nothing. "mapedit/" itself is
// never made: without it the stores report their folder as unusable.
void EnsureFolder(MapState& s, const std::string& folder);

// ---- Pattern files ----------------------------------------------------------

// How a new pattern file starts.
enum class PatternSeed {
  Search,    // "\"-1\"" CR LF, written by a search that finds no file
  Plain,     // "-1" CR LF: road and tile patterns
  ZeroPair,  // "0-0-0-0-0-0,0" CR LF "-1" CR LF: bridge and river patterns
};
std::string_view SeedText(PatternSeed seed);

// Tile number of a pattern file's tile text (Val, rounded, kept in 16 bits).
int16_t PatternTileValue(std::string_view tileText);

// Calls `pair` with each key and tile text in file order until the sentinel
// "-1" (quoted or not) or, in a file that lost it, the end. `pair` returns
// false to stop early.
void ScanPatternPairs(std::span<const uint8_t> text,
                      const std::function<bool(const std::string& key, const std::string& tile)>& pair);

using TileTest = std::function<bool(int16_t tile)>;

// The tile of the first pair from the top whose key equals `key` and whose
// tile passes `accept` (when given); -1 when none does. A missing file gives
// -1, and is first created holding the quoted sentinel when `create` is set.
int16_t FindPatternTile(MapState& s, const std::string& path, const std::string& key, bool create,
                        const TileTest& accept = {});

// Rewrites the file through "mapedit/temp.txt": every old pair for which
// `drop` answers false is copied as read, then the new pair and the sentinel
// are written, so a new or changed pair always ends up last. A missing file
// is first created in the given seed form.
using PairDrop = std::function<bool(const std::string& key, const std::string& tileText)>;
void StorePatternPair(MapState& s, const std::string& path, const std::string& key, int16_t tile, PatternSeed seed,
                      const PairDrop& drop);

// For its lifetime, StorePatternPair changes the files' texts in memory and
// the batch's end writes each changed file once: a pass over a whole map
// leaves the files it would have left writing every lesson at once, at the
// cost of one write a file instead of two a hex. Nothing may look a pattern
// up inside a batch (the memorise passes only learn). Batches nest.
class StoreBatch {
 public:
  explicit StoreBatch(MapState& s);
  ~StoreBatch();
  StoreBatch(const StoreBatch&) = delete;
  StoreBatch& operator=(const StoreBatch&) = delete;

 private:
  MapState& s_;
};

// ---- Tile lists -------------------------------------------------------------

enum class ListPick { Missing, Picked, Rejected };

// The value of each line of a tile list (a line ends at CR, LF or CR LF),
// and the number of records a list of `len` bytes counts as.
std::vector<int16_t> TileListLines(std::span<const uint8_t> b);
int32_t TileListCount(uint64_t len);

// Draws a tile from a list of 5-byte records: r = Int(n * Rnd + 1) with
// n = length \ 5, then r lines are read and the last one is the choice. A
// missing file leaves `tile` alone. `check`, when given, sees every record
// read, in order; the first it refuses stops the draw with Rejected (the file
// is left for the caller to deal with) and `tile` untouched.
ListPick PickListTile(MapState& s, const std::string& path, int16_t& tile, const TileTest& check = {});

// Deletes a store file (a stale list) and forgets it.
void DeleteStoreFile(MapState& s, const std::string& path);
// Writes a whole store file (a rebuilt list) and forgets what was parsed of
// it. False (after the store message) when it cannot be written.
bool WriteStoreFile(MapState& s, const std::string& path, std::string_view bytes);

// ---- One-byte-a-tile files ("patterns.dat", "ptiles.dat", "randomtile.dat") --

// Reads n bytes from the 0-based offset; bytes past the end (or of a missing
// file) read as 0.
void ReadTileBytes(MapState& s, const std::string& path, int64_t offset, uint8_t* out, size_t n);
uint8_t ReadTileByte(MapState& s, const std::string& path, int64_t offset);
// Writes bytes at the offset, extending the file (with zeros) when it is
// shorter, and making it when it is missing. False (after the store message)
// when it cannot be written.
bool WriteTileBytes(MapState& s, const std::string& path, int64_t offset, const uint8_t* data, size_t n);

// ---- Store health and the cache ---------------------------------------------

// Shows, once, that the store folder cannot be read or written. Silent again
// until the stores work or a new pass begins (ResetStoreProblem).
void ReportStoreProblem(MapState& s, const std::string& path);
void ResetStoreProblem(MapState& s);
bool StoreProblemReported(MapState& s);

// Turns the cache of parsed files on or off (on by default); off reads every
// file at every lookup.
void SetStoreCache(MapState& s, bool on);
// Number of lookups served without reading the file, since the session began.
uint64_t StoreCacheHits(MapState& s);

}  // namespace kv

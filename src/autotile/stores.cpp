#include "autotile/stores.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "document/mapstate.h"
#include "platform/bytes.h"
#include "platform/fileio.h"
#include "platform/filestamp.h"
#include "platform/textfields.h"
#include "view/geometry.h"

namespace kv {

// A store file larger than this is not a store file; it is read as empty.
constexpr uint64_t kMaxStoreFile = 64u << 20;

struct PatternStoreState {
  bool cacheOn = true;
  bool problemReported = false;
  uint64_t hits = 0;

  // A parsed pattern file: for each key, its tiles in file order.
  struct Pattern {
    std::unordered_map<std::string, std::vector<int16_t>> byKey;
  };
  // A parsed tile list: the record count n and the value of every line.
  struct List {
    int32_t n = 0;
    std::vector<int16_t> lines;
  };
  struct Entry {
    FileStamp stamp;
    bool settled = false;  // the stamp's times lie safely in the past
    std::shared_ptr<const Pattern> pattern;
    std::shared_ptr<const List> list;
  };
  std::unordered_map<std::string, Entry> files;
  // Folders seen or made. Nothing of ours removes a folder; should someone
  // else, a write into it makes it again (WriteWhole's callers below).
  std::unordered_set<std::string> folders;
  // While a pass learns (StoreBatch), the new text of each pattern file it
  // changed, in the order first changed; written out when the pass ends.
  int batchDepth = 0;
  std::unordered_map<std::string, std::string> pending;
  std::vector<std::string> pendingOrder;

  void Forget(const std::string& path) { files.erase(path); }
};

namespace {

PatternStoreState& State(MapState& s) {
  if (!s.patternStores) s.patternStores = std::make_shared<PatternStoreState>();
  return *s.patternStores;
}

bool ReadWhole(const std::string& path, std::vector<uint8_t>& out) {
  FileSource src;
  if (!src.open(path, nullptr)) return false;
  if (src.size() > kMaxStoreFile) {
    out.clear();
    return true;
  }
  out.resize(src.size());
  return src.read(out.data(), out.size());
}

// Writes a whole small file; false when it cannot be made. A store folder
// removed behind our back since it was last seen is made again first, as the
// search that found it missing would have done.
bool WriteWhole(const std::string& path, std::string_view bytes) {
  const std::filesystem::path dir = std::filesystem::path(path).parent_path();
  std::error_code ec;
  if (!dir.empty() && dir.parent_path().filename() == "mapedit" && !std::filesystem::exists(dir, ec))
    std::filesystem::create_directory(dir, ec);
  // Written whole under a temporary name first: a failed write keeps the old file.
  SafeFileWriter w(path);
  w.write(bytes.data(), bytes.size());
  return w.commit();
}

std::string StoreFolderOf(const MapState& s) { return s.App("mapedit"); }

}  // namespace

std::vector<int16_t> TileListLines(std::span<const uint8_t> b) {
  std::vector<int16_t> out;
  size_t i = 0;
  while (i < b.size()) {
    size_t j = i;
    while (j < b.size() && b[j] != '\r' && b[j] != '\n') ++j;
    out.push_back(PatternTileValue(std::string_view(reinterpret_cast<const char*>(b.data()) + i, j - i)));
    if (j < b.size() && b[j] == '\r') ++j;
    if (j < b.size() && b[j] == '\n') ++j;
    i = j;
  }
  return out;
}

int32_t TileListCount(uint64_t len) { return static_cast<int32_t>(std::min<uint64_t>(len / 5, 32767)); }

namespace {

// r = Int(n * Rnd + 1), in single precision as the generator gives it.
int32_t DrawRecord(MapState& s, int32_t n) {
  const float v = static_cast<float>(n) * s.Rnd() + 1.0f;
  return std::clamp(static_cast<int32_t>(std::floor(v)), 1, std::max(n, 1));
}

// Looks a file up in the cache. Returns the entry when its parse can serve
// this lookup; otherwise fills `stamp` (so the caller need not stat again) and
// returns nullptr.
PatternStoreState::Entry* Cached(PatternStoreState& st, const std::string& path, FileStamp& stamp) {
  stamp = StampOf(path);
  if (!st.cacheOn) return nullptr;
  auto it = st.files.find(path);
  if (it == st.files.end()) return nullptr;
  PatternStoreState::Entry& e = it->second;
  if (!e.settled || !(e.stamp == stamp)) return nullptr;
  ++st.hits;
  return &e;
}

void Remember(PatternStoreState& st, const std::string& path, const FileStamp& stamp,
              std::shared_ptr<const PatternStoreState::Pattern> pattern,
              std::shared_ptr<const PatternStoreState::List> list) {
  if (!st.cacheOn || !stamp.exists) return;
  PatternStoreState::Entry& e = st.files[path];
  e.stamp = stamp;
  e.settled = StampSettled(stamp, FileClockNowNs());
  e.pattern = std::move(pattern);
  e.list = std::move(list);
}

}  // namespace

// ---- Ring and names ---------------------------------------------------------

void RingNeighbour(int x, int y, int p, int& nx, int& ny) {
  nx = x;
  ny = y;
  HexNeighbour(nx, ny, RingSide(p));
}

std::string PatternMask(const RingOutline& r, bool dashed) {
  std::string out;
  out.reserve(11);
  for (int i = 0; i < 6; ++i) {
    if (dashed && i) out.push_back('-');
    out.push_back(r.on[i] ? '1' : '0');
  }
  return out;
}

std::string PatternKey(const RingOutline& r) {
  std::string out;
  out.reserve(30);
  for (int i = 0; i < 6; ++i) {
    if (i) out.push_back('-');
    out += std::to_string(r.on[i] ? r.tile[i] : 0);
  }
  return out;
}

std::string SideDigits(const std::array<bool, 6>& match) {
  std::string out(6, '0');
  for (int i = 0; i < 6; ++i)
    if (match[i]) out[i] = static_cast<char>('1' + i);
  return out;
}

std::string TerrainNN(int terrain) {
  if (terrain >= 0 && terrain < 100)
    return {static_cast<char>('0' + terrain / 10), static_cast<char>('0' + terrain % 10)};
  return std::to_string(terrain);
}

std::string TileListPath(const MapState& s, int terrain, const std::string& digits) {
  return s.App("mapedit/t" + TerrainNN(terrain) + "/" + digits + ".txt");
}

void EnsureFolder(MapState& s, const std::string& folder) {
  PatternStoreState& st = State(s);
  if (st.cacheOn && st.folders.count(folder)) return;
  std::string dir = folder;
  while (dir.size() > 1 && (dir.back() == '/' || dir.back() == '\\')) dir.pop_back();
  if (st.cacheOn && st.folders.count(dir)) return;
  if (StampOf(dir).exists) {
    if (st.cacheOn) st.folders.insert(folder);
    return;
  }
  // One level only: a missing "mapedit/" stays missing and is reported.
  std::error_code ec;
  std::filesystem::create_directory(dir, ec);
  if (ec || !DirExists(dir)) {
    ReportStoreProblem(s, dir);
    return;
  }
  if (st.cacheOn) st.folders.insert(folder);
}

// ---- Pattern files ----------------------------------------------------------

std::string_view SeedText(PatternSeed seed) {
  switch (seed) {
    case PatternSeed::Search: return "\"-1\"\r\n";
    case PatternSeed::Plain: return "-1\r\n";
    case PatternSeed::ZeroPair: return "0-0-0-0-0-0,0\r\n-1\r\n";
  }
  return "-1\r\n";
}

int16_t PatternTileValue(std::string_view tileText) {
  const double v = RoundHalfEven(Val(std::string(tileText)));
  return static_cast<int16_t>(std::clamp(v, -32768.0, 32767.0));
}

void ScanPatternPairs(std::span<const uint8_t> text,
                      const std::function<bool(const std::string&, const std::string&)>& pair) {
  FieldReader in(text);
  for (;;) {
    if (in.AtEnd()) return;  // a file that lost its sentinel ends here
    const std::string key = in.Text();
    if (key == "-1") return;
    if (in.AtEnd()) return;  // a key without its tile
    const std::string tile = in.Text();
    if (!pair(key, tile)) return;
  }
}

int16_t FindPatternTile(MapState& s, const std::string& path, const std::string& key, bool create,
                        const TileTest& accept) {
  PatternStoreState& st = State(s);
  FileStamp stamp;
  if (PatternStoreState::Entry* e = Cached(st, path, stamp); e && e->pattern) {
    auto it = e->pattern->byKey.find(key);
    if (it == e->pattern->byKey.end()) return -1;
    for (int16_t t : it->second)
      if (!accept || accept(t)) return t;
    return -1;
  }
  if (!stamp.exists) {
    if (!create) return -1;
    st.Forget(path);
    if (!WriteWhole(path, SeedText(PatternSeed::Search))) ReportStoreProblem(s, path);
    return -1;
  }
  std::vector<uint8_t> bytes;
  if (!ReadWhole(path, bytes)) {
    ReportStoreProblem(s, path);
    return -1;
  }
  int16_t found = -1;
  if (!st.cacheOn) {
    // Straight from the file: stop at the first pair that answers.
    ScanPatternPairs(bytes, [&](const std::string& k, const std::string& t) {
      if (k != key) return true;
      const int16_t v = PatternTileValue(t);
      if (accept && !accept(v)) return true;
      found = v;
      return false;
    });
    return found;
  }
  auto parsed = std::make_shared<PatternStoreState::Pattern>();
  ScanPatternPairs(bytes, [&](const std::string& k, const std::string& t) {
    parsed->byKey[k].push_back(PatternTileValue(t));
    return true;
  });
  if (auto it = parsed->byKey.find(key); it != parsed->byKey.end())
    for (int16_t t : it->second)
      if (!accept || accept(t)) {
        found = t;
        break;
      }
  Remember(st, path, stamp, std::move(parsed), nullptr);
  return found;
}

namespace {

// The file's text with every pair `drop` refuses left out and the new pair
// and the sentinel at the end.
std::string UpdatedPatternText(std::span<const uint8_t> bytes, const std::string& key, int16_t tile,
                               const PairDrop& drop) {
  std::string out;
  out.reserve(bytes.size() + key.size() + 16);
  ScanPatternPairs(bytes, [&](const std::string& k, const std::string& t) {
    if (!drop || !drop(k, t)) {
      out += k;
      out += ',';
      out += t;
      out += "\r\n";
    }
    return true;
  });
  out += key;
  out += ',';
  out += std::to_string(tile);
  out += "\r\n-1\r\n";
  return out;
}

// A lesson within a batch: the text is changed in memory, from the file as
// the batch last left it (or as it stands on disk, or its seed when missing).
void StorePatternPairInBatch(MapState& s, PatternStoreState& st, const std::string& path, const std::string& key,
                             int16_t tile, PatternSeed seed, const PairDrop& drop) {
  auto it = st.pending.find(path);
  if (it == st.pending.end()) {
    std::vector<uint8_t> bytes;
    if (!FileExists(path)) {
      const std::string_view seedText = SeedText(seed);
      bytes.assign(seedText.begin(), seedText.end());
    } else if (!ReadWhole(path, bytes)) {
      ReportStoreProblem(s, path);
      return;
    }
    st.pendingOrder.push_back(path);
    it = st.pending.emplace(path, UpdatedPatternText(bytes, key, tile, drop)).first;
    return;
  }
  const std::string& cur = it->second;
  it->second = UpdatedPatternText(std::span(reinterpret_cast<const uint8_t*>(cur.data()), cur.size()), key, tile, drop);
}

}  // namespace

StoreBatch::StoreBatch(MapState& s) : s_(s) { ++State(s).batchDepth; }

StoreBatch::~StoreBatch() {
  PatternStoreState& st = State(s_);
  if (--st.batchDepth > 0) return;
  // The work file of a single lesson is never left behind by a batch either.
  const std::string temp = s_.App("mapedit/temp.txt");
  if (!st.pendingOrder.empty() && FileExists(temp)) RemoveFile(temp);
  bool ok = true;
  const bool any = !st.pendingOrder.empty();
  for (const std::string& path : st.pendingOrder) {
    st.Forget(path);
    if (!WriteWhole(path, st.pending[path])) {
      ReportStoreProblem(s_, path);
      ok = false;
    }
  }
  st.pending.clear();
  st.pendingOrder.clear();
  if (ok && any) st.problemReported = false;
}

void StorePatternPair(MapState& s, const std::string& path, const std::string& key, int16_t tile, PatternSeed seed,
                      const PairDrop& drop) {
  PatternStoreState& st = State(s);
  st.Forget(path);
  if (st.batchDepth > 0) {
    StorePatternPairInBatch(s, st, path, key, tile, seed, drop);
    return;
  }
  std::vector<uint8_t> bytes;
  if (!FileExists(path)) {
    const std::string_view seedText = SeedText(seed);
    if (!WriteWhole(path, seedText)) {
      ReportStoreProblem(s, path);
      return;
    }
    bytes.assign(seedText.begin(), seedText.end());
  } else if (!ReadWhole(path, bytes)) {
    ReportStoreProblem(s, path);
    return;
  }
  const std::string temp = s.App("mapedit/temp.txt");
  if (FileExists(temp)) RemoveFile(temp);
  const std::string out = UpdatedPatternText(bytes, key, tile, drop);
  if (!WriteWhole(temp, out)) {
    RemoveFile(temp);
    ReportStoreProblem(s, temp);
    return;
  }
  // rename() puts the new file in the old one's place in one step.
  if (std::rename(temp.c_str(), path.c_str()) != 0) {
    RemoveFile(temp);
    ReportStoreProblem(s, path);
    return;
  }
  st.Forget(path);
  st.problemReported = false;  // the stores work (again)
}

// ---- Tile lists -------------------------------------------------------------

ListPick PickListTile(MapState& s, const std::string& path, int16_t& tile, const TileTest& check) {
  PatternStoreState& st = State(s);
  FileStamp stamp;
  std::shared_ptr<const PatternStoreState::List> list;
  if (PatternStoreState::Entry* e = Cached(st, path, stamp); e && e->list) list = e->list;
  if (!list) {
    if (!stamp.exists) return ListPick::Missing;
    std::vector<uint8_t> bytes;
    if (!ReadWhole(path, bytes)) {
      ReportStoreProblem(s, path);
      return ListPick::Missing;
    }
    auto parsed = std::make_shared<PatternStoreState::List>();
    parsed->n = TileListCount(bytes.size());
    parsed->lines = TileListLines(bytes);
    list = parsed;
    Remember(st, path, stamp, nullptr, parsed);
  }
  const int32_t r = DrawRecord(s, list->n);
  if (list->n == 0 || list->lines.empty()) return ListPick::Picked;  // nothing to read: tile untouched
  const int32_t lines = std::min<int32_t>(r, static_cast<int32_t>(list->lines.size()));
  for (int32_t i = 0; i < lines; ++i)
    if (check && !check(list->lines[i])) return ListPick::Rejected;
  tile = list->lines[lines - 1];
  return ListPick::Picked;
}

void DeleteStoreFile(MapState& s, const std::string& path) {
  State(s).Forget(path);
  RemoveFile(path);
}

bool WriteStoreFile(MapState& s, const std::string& path, std::string_view bytes) {
  State(s).Forget(path);
  if (WriteWhole(path, bytes)) return true;
  RemoveFile(path);
  ReportStoreProblem(s, path);
  return false;
}

// ---- One-byte-a-tile files --------------------------------------------------

void ReadTileBytes(MapState&, const std::string& path, int64_t offset, uint8_t* out, size_t n) {
  std::fill(out, out + n, uint8_t{0});
  if (offset < 0) return;
  FILE* f = std::fopen(path.c_str(), "rb");
  if (!f) return;
  if (std::fseek(f, static_cast<long>(offset), SEEK_SET) == 0) {
    const size_t got = std::fread(out, 1, n, f);
    std::fill(out + got, out + n, uint8_t{0});
  }
  std::fclose(f);
}

uint8_t ReadTileByte(MapState& s, const std::string& path, int64_t offset) {
  uint8_t b = 0;
  ReadTileBytes(s, path, offset, &b, 1);
  return b;
}

bool WriteTileBytes(MapState& s, const std::string& path, int64_t offset, const uint8_t* data, size_t n) {
  if (offset < 0) return false;
  FILE* f = std::fopen(path.c_str(), "r+b");
  if (!f) f = std::fopen(path.c_str(), "w+b");
  if (!f) {
    ReportStoreProblem(s, path);
    return false;
  }
  bool ok = std::fseek(f, 0, SEEK_END) == 0;
  const long len = ok ? std::ftell(f) : 0;
  // A write past the end fills the gap with zeros.
  for (long i = len; ok && i < offset; ++i) ok = std::fputc(0, f) != EOF;
  ok = ok && std::fseek(f, static_cast<long>(offset), SEEK_SET) == 0 && std::fwrite(data, 1, n, f) == n;
  ok = (std::fclose(f) == 0) && ok;
  if (!ok) ReportStoreProblem(s, path);
  return ok;
}

// ---- Store health and the cache ---------------------------------------------

void ReportStoreProblem(MapState& s, const std::string& path) {
  PatternStoreState& st = State(s);
  if (st.problemReported) return;
  st.problemReported = true;
  s.MsgBox("The pattern store folder " + StoreFolderOf(s) +
               " cannot be read or written; tiles are neither chosen nor learned from it (" + path + ").",
           0);
}

void ResetStoreProblem(MapState& s) { State(s).problemReported = false; }
bool StoreProblemReported(MapState& s) { return State(s).problemReported; }

void SetStoreCache(MapState& s, bool on) {
  PatternStoreState& st = State(s);
  st.cacheOn = on;
  if (!on) {
    st.files.clear();
    st.folders.clear();
  }
}

uint64_t StoreCacheHits(MapState& s) { return State(s).hits; }

}  // namespace kv

// The hex name store: a slot file (.ndx) and a record heap (.str) beside the
// map, held open while the map is open; a name costs two positioned reads.
#pragma once

#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

#include "platform/bytes.h"

namespace kv {

struct MapState;

constexpr int kNameLen = 20;

// One write to a name file and what it replaced, so that it can be taken back
// and made again byte for byte.
struct NameWrite {
  bool str = false;  // the .str file, else the .ndx
  long offset = 0;
  std::string before;  // the bytes the file held there (fewer at its end)
  std::string after;   // the bytes written
  long lengthBefore = 0;
};

// The two open files (numbers 11 and 12 of the original design).
class NameFiles {
 public:
  NameFiles() = default;
  ~NameFiles() { Close(); }
  NameFiles(const NameFiles&) = delete;
  NameFiles& operator=(const NameFiles&) = delete;
  void Close();
  void CloseNdx();
  void CloseStr();
  bool OpenNdx(const std::string& path);  // opened for reading and writing, created if missing
  bool OpenStr(const std::string& path);
  std::FILE* ndx() const { return ndx_; }
  std::FILE* str() const { return str_; }

  // Writes n bytes at `offset` of the .str (str) or .ndx file, flushed; while
  // the journal is kept, the write is noted with what it replaced.
  bool WriteAt(bool str, long offset, const void* data, size_t n);
  void KeepJournal(bool keep) {
    journalKept_ = keep;
    journal_.clear();
  }
  std::vector<NameWrite> TakeJournal() { return std::move(journal_); }
  // Takes a noted write back (the file as it was before it, length too) or
  // makes it again; neither is noted.
  void Revert(const NameWrite& w);
  void Reapply(const NameWrite& w);

 private:
  std::FILE* ndx_ = nullptr;
  std::FILE* str_ = nullptr;
  bool journalKept_ = false;
  std::vector<NameWrite> journal_;
};

std::string GetHexName(MapState& s, int x, int y);
// The name of hex (x, y) of a map with highest column mapMaxX, read from an
// index and a string heap: 20 bytes, or "" for an empty, negative or
// out-of-range slot.
std::string ReadHexName(ByteSource& ndx, ByteSource& str, int mapMaxX, int x, int y);
void SetHexName(MapState& s, int x, int y, const std::string& name);
void OpenNameStore(MapState& s);
// Re-opens files 11 and 12 on NdxPath and StrPath.
void ReopenNameStore(MapState& s);
// Strips trailing NULs, then trailing blanks; a string of nothing else stays.
std::string& TrimName(std::string& name);

}  // namespace kv

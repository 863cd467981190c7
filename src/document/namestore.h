// The hex name store: a slot file (.ndx) and a record heap (.str) beside the
// map, held open while the map is open; a name costs two positioned reads.
#pragma once

#include <cstdint>
#include <cstdio>
#include <string>

#include "platform/bytes.h"

namespace kv {

struct Session;

constexpr int kNameLen = 20;

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

 private:
  std::FILE* ndx_ = nullptr;
  std::FILE* str_ = nullptr;
};

std::string GetHexName(Session& s, int x, int y);
// The name of hex (x, y) of a map with highest column mapMaxX, read from an
// index and a string heap: 20 bytes, or "" for an empty, negative or
// out-of-range slot.
std::string ReadHexName(ByteSource& ndx, ByteSource& str, int mapMaxX, int x, int y);
void SetHexName(Session& s, int x, int y, const std::string& name);
void OpenNameStore(Session& s);
// Re-opens files 11 and 12 on NdxPath and StrPath.
void ReopenNameStore(Session& s);
// Strips trailing NULs, then trailing blanks; a string of nothing else stays.
std::string& TrimName(std::string& name);

}  // namespace kv

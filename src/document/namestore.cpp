#include "document/namestore.h"

#include <algorithm>
#include <cstring>
#include <unistd.h>
#include <vector>

#include "document/mapstate.h"
#include "platform/fileio.h"

namespace kv {

namespace {
std::FILE* OpenUpdate(const std::string& path) {
  if (path.empty()) return nullptr;
  std::FILE* f = std::fopen(path.c_str(), "r+b");
  if (!f) f = std::fopen(path.c_str(), "w+b");
  return f;
}

long Length(std::FILE* f) {
  if (std::fseek(f, 0, SEEK_END) != 0) return 0;
  return std::ftell(f);
}

long SlotOffset(const MapState& s, int x, int y) { return 4L * (static_cast<long>(y) * (s.doc.MapMaxX + 1) + x); }

// One of the open name files seen as a byte source (borrowed, not closed).
class OpenFileSource final : public ByteSource {
 public:
  explicit OpenFileSource(std::FILE* f) : f_(f) { size_ = std::max(0L, Length(f)); }
  uint64_t size() const override { return static_cast<uint64_t>(size_); }
  uint64_t pos() const override { return static_cast<uint64_t>(pos_); }
  bool read(void* dst, size_t n) override {
    if (n > static_cast<uint64_t>(size_ - pos_)) return false;
    if (std::fseek(f_, pos_, SEEK_SET) != 0 || std::fread(dst, 1, n, f_) != n) return false;
    pos_ += static_cast<long>(n);
    return true;
  }
  bool seek(uint64_t p) override {
    if (p > static_cast<uint64_t>(size_)) return false;
    pos_ = static_cast<long>(p);
    return true;
  }

 private:
  std::FILE* f_;
  long size_ = 0, pos_ = 0;
};
}  // namespace

void NameFiles::CloseNdx() {
  if (ndx_) std::fclose(ndx_);
  ndx_ = nullptr;
}
void NameFiles::CloseStr() {
  if (str_) std::fclose(str_);
  str_ = nullptr;
}
void NameFiles::Close() {
  CloseNdx();
  CloseStr();
}
bool NameFiles::OpenNdx(const std::string& path) {
  CloseNdx();
  ndx_ = OpenUpdate(path);
  return ndx_ != nullptr;
}
bool NameFiles::OpenStr(const std::string& path) {
  CloseStr();
  str_ = OpenUpdate(path);
  return str_ != nullptr;
}

bool NameFiles::WriteAt(bool str, long offset, const void* data, size_t n) {
  std::FILE* f = str ? str_ : ndx_;
  if (!f) return false;
  if (journalKept_) {
    NameWrite w;
    w.str = str;
    w.offset = offset;
    w.lengthBefore = Length(f);
    if (offset < w.lengthBefore) {
      w.before.resize(std::min<long>(static_cast<long>(n), w.lengthBefore - offset));
      if (std::fseek(f, offset, SEEK_SET) != 0 || std::fread(w.before.data(), 1, w.before.size(), f) != w.before.size())
        w.before.clear();
    }
    w.after.assign(static_cast<const char*>(data), n);
    journal_.push_back(std::move(w));
  }
  const bool ok = std::fseek(f, offset, SEEK_SET) == 0 && std::fwrite(data, 1, n, f) == n;
  std::fflush(f);
  return ok;
}

void NameFiles::Revert(const NameWrite& w) {
  std::FILE* f = w.str ? str_ : ndx_;
  if (!f) return;
  if (!w.before.empty() && std::fseek(f, w.offset, SEEK_SET) == 0) std::fwrite(w.before.data(), 1, w.before.size(), f);
  std::fflush(f);
  if (Length(f) > w.lengthBefore && ftruncate(fileno(f), w.lengthBefore) != 0) return;
}

void NameFiles::Reapply(const NameWrite& w) {
  std::FILE* f = w.str ? str_ : ndx_;
  if (!f) return;
  if (std::fseek(f, w.offset, SEEK_SET) == 0) std::fwrite(w.after.data(), 1, w.after.size(), f);
  std::fflush(f);
}

std::string ReadHexName(ByteSource& ndx, ByteSource& str, int mapMaxX, int x, int y) {
  const uint64_t off = 4ull * (static_cast<uint64_t>(y) * (static_cast<uint64_t>(mapMaxX) + 1) + x);
  int32_t slot = 0;
  // A slot beyond the end of a short index reads as no name.
  if (!ndx.seek(off) || !ndx.get(slot)) return "";
  if (slot <= 0) return "";
  char rec[kNameLen];
  // A slot that points past the end of the strings reads as no name.
  if (!str.seek(static_cast<uint64_t>(slot) - 1) || !str.read(rec, kNameLen)) return "";
  return std::string(rec, kNameLen);
}

std::string GetHexName(MapState& s, int x, int y) {
  std::FILE* ndx = s.names.ndx();
  std::FILE* str = s.names.str();
  if (!ndx || !str || !s.doc.OnMap(x, y)) return "";
  OpenFileSource ndxBytes(ndx), strBytes(str);
  return ReadHexName(ndxBytes, strBytes, s.doc.MapMaxX, x, y);
}

void SetHexName(MapState& s, int x, int y, const std::string& name) {
  NameFiles& files = s.names;
  std::FILE* ndx = files.ndx();
  std::FILE* str = files.str();
  if (!ndx || !str || !s.doc.OnMap(x, y)) return;
  const long off = SlotOffset(s, x, y);
  int32_t slot = 0;
  if (name.empty()) {
    files.WriteAt(false, off, &slot, 4);
    return;
  }
  std::string rec = (name + std::string(kNameLen, ' ')).substr(0, kNameLen);
  if (std::fseek(ndx, off, SEEK_SET) != 0 || std::fread(&slot, 4, 1, ndx) != 1) slot = 0;
  if (slot <= 0) slot = static_cast<int32_t>(Length(str) + 1);
  // Writing a slot beyond the end of a short index fills the gap with zeros.
  long len = Length(ndx);
  if (len < off) {
    std::vector<char> zeros(off - len, 0);
    files.WriteAt(false, len, zeros.data(), zeros.size());
  }
  files.WriteAt(false, off, &slot, 4);
  long slen = Length(str);
  if (slen < slot - 1L) {
    std::vector<char> zeros(slot - 1L - slen, 0);
    files.WriteAt(true, slen, zeros.data(), zeros.size());
  }
  files.WriteAt(true, slot - 1L, rec.data(), kNameLen);
}

void OpenNameStore(MapState& s) {
  Document& d = s.doc;
  s.names.Close();
  if (d.NdxPath.empty()) {
    d.NdxPath = s.App(CutExt(d.MapFile, 3, "ndx"));
    if (FileExists(d.NdxPath)) RemoveFile(d.NdxPath);
  }
  s.names.OpenNdx(d.NdxPath);
  if (std::FILE* ndx = s.names.ndx()) {
    // Every slot of the current size is emptied; a longer file keeps its tail.
    std::vector<int32_t> zeros(d.N(), 0);
    std::fseek(ndx, 0, SEEK_SET);
    std::fwrite(zeros.data(), 4, zeros.size(), ndx);
    std::fflush(ndx);
  }
  if (d.StrPath.empty()) {
    d.StrPath = s.App(CutExt(d.MapFile, 3, "str"));
    if (FileExists(d.StrPath)) RemoveFile(d.StrPath);
  }
  s.names.OpenStr(d.StrPath);
}

void ReopenNameStore(MapState& s) {
  s.names.Close();
  s.names.OpenNdx(s.doc.NdxPath);
  s.names.OpenStr(s.doc.StrPath);
}

std::string& TrimName(std::string& name) {
  auto cut = [&](char c) {
    size_t i = name.size();
    while (i > 0 && name[i - 1] == c) --i;
    if (i > 0) name.resize(i);  // nothing but c: left as it stands
  };
  cut('\0');
  cut(' ');
  return name;
}

}  // namespace kv

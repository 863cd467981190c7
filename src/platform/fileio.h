// File services: existence tests, whole-file reads, and a writer that replaces
// a file only once the new content is completely on disk.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "platform/bytes.h"

namespace kv {

bool FileExists(const std::string& path);
bool DirExists(const std::string& path);
// Length of a file in bytes, or -1 when it cannot be examined.
int64_t FileLen(const std::string& path);
bool ReadFileBytes(const std::string& path, std::vector<uint8_t>& out, std::string* err);
bool WriteFileBytes(const std::string& path, const void* data, size_t n, std::string* err);
bool RemoveFile(const std::string& path);
bool CopyFileTo(const std::string& from, const std::string& to, std::string* err);
bool MakeDirs(const std::string& path);
std::string SystemError();  // text of the last errno

// Joins a folder and a relative name with one separator.
std::string JoinPath(const std::string& dir, const std::string& rel);
// The folder part of a path ("" when it has none).
std::string DirName(const std::string& path);
std::string BaseName(const std::string& path);
// A sibling file: cut the last `cut` characters and append `ext`.
std::string CutExt(const std::string& path, size_t cut, const std::string& ext);

// Writes a file through a temporary name in the same folder and renames it
// into place on commit(); any failure leaves the previous file untouched.
class SafeFileWriter final : public ByteSink {
 public:
  explicit SafeFileWriter(std::string path);
  ~SafeFileWriter() override;
  SafeFileWriter(const SafeFileWriter&) = delete;
  SafeFileWriter& operator=(const SafeFileWriter&) = delete;
  bool ok() const { return err_.empty(); }
  const std::string& error() const { return err_; }
  bool write(const void* src, size_t n) override;
  // Flushes, closes and renames; returns false (and removes the temporary
  // file) if anything failed along the way.
  bool commit() { return finish() && publish(); }
  // The two halves of commit, so that several files can be completed first
  // and put in place only when all of them are whole.
  bool finish();
  bool publish();
  void abandon();
  // Writing "from offset 0" over an existing file does not cut it: bytes of the
  // old file beyond what was written are kept at commit.
  void KeepOldTail(bool keep) { keep_tail_ = keep; }
  // Whether finish() waits until the content is on the disk (the default,
  // kept for maps and their side files). The rename is atomic either way.
  void SetSync(bool sync) { sync_ = sync; }
  const std::string& Path() const { return path_; }
  uint64_t written() const { return written_; }

 private:
  void fail(const std::string& what);
  std::string path_, tmp_, err_;
  std::FILE* f_ = nullptr;
  uint64_t written_ = 0;
  bool keep_tail_ = false;
  bool sync_ = true;
  bool finished_ = false;
};

// Test hook: when set, each write call of a SafeFileWriter asks it first and
// fails (as a full disk would) when it answers false.
using WriteFaultHook = std::function<bool()>;
void SetWriteFaultHook(WriteFaultHook hook);

}  // namespace kv

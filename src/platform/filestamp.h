// The identity of a file's present state: existence, size, modification and
// change times in nanoseconds, and the file's number on its device. Two equal
// stamps taken some time apart mean that nobody replaced or rewrote the file in
// between, unless the second write fell within the file system's timestamp
// granularity of the first (see StampSettled).
#pragma once

#include <cstdint>
#include <string>

namespace kv {

struct FileStamp {
  bool exists = false;
  bool isDir = false;
  int64_t size = -1;
  int64_t mtimeNs = 0, ctimeNs = 0;
  uint64_t ino = 0, dev = 0;
  bool operator==(const FileStamp&) const = default;
};

// One status call on the path; a missing path gives exists = false.
FileStamp StampOf(const std::string& path);
// Now, on the clock the file system stamps files with, in nanoseconds.
int64_t FileClockNowNs();
// True when both times of the stamp lie far enough behind `nowNs` that a later
// write must carry a different timestamp.
bool StampSettled(const FileStamp& st, int64_t nowNs);

}  // namespace kv

#include "platform/filestamp.h"

#include <sys/stat.h>
#include <time.h>

namespace kv {

namespace {
// File times advance in ticks of the kernel's coarse clock (a few
// milliseconds); a generous margin covers every local file system.
constexpr int64_t kStampGranularityNs = 100'000'000;

int64_t Ns(const struct timespec& t) { return static_cast<int64_t>(t.tv_sec) * 1'000'000'000 + t.tv_nsec; }
}  // namespace

FileStamp StampOf(const std::string& path) {
  FileStamp st;
  struct stat sb;
  if (path.empty() || ::stat(path.c_str(), &sb) != 0) return st;
  st.exists = true;
  st.isDir = S_ISDIR(sb.st_mode);
  st.size = static_cast<int64_t>(sb.st_size);
  st.mtimeNs = Ns(sb.st_mtim);
  st.ctimeNs = Ns(sb.st_ctim);
  st.ino = static_cast<uint64_t>(sb.st_ino);
  st.dev = static_cast<uint64_t>(sb.st_dev);
  return st;
}

int64_t FileClockNowNs() {
  struct timespec t;
  ::clock_gettime(CLOCK_REALTIME, &t);
  return Ns(t);
}

bool StampSettled(const FileStamp& st, int64_t nowNs) {
  return nowNs - st.mtimeNs > kStampGranularityNs && nowNs - st.ctimeNs > kStampGranularityNs;
}

}  // namespace kv

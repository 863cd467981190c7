#include "platform/fileio.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <mutex>
#include <sys/stat.h>
#include <unistd.h>

namespace kv {

namespace fs = std::filesystem;

namespace {
std::mutex g_hook_mutex;
WriteFaultHook g_fault_hook;

bool FaultNow() {
  std::lock_guard<std::mutex> lock(g_hook_mutex);
  return g_fault_hook && !g_fault_hook();
}
}  // namespace

void SetWriteFaultHook(WriteFaultHook hook) {
  std::lock_guard<std::mutex> lock(g_hook_mutex);
  g_fault_hook = std::move(hook);
}

std::string SystemError() { return std::strerror(errno); }

bool FileExists(const std::string& path) {
  struct stat st;
  return !path.empty() && ::stat(path.c_str(), &st) == 0 && S_ISREG(st.st_mode);
}

bool DirExists(const std::string& path) {
  struct stat st;
  return !path.empty() && ::stat(path.c_str(), &st) == 0 && S_ISDIR(st.st_mode);
}

int64_t FileLen(const std::string& path) {
  struct stat st;
  if (path.empty() || ::stat(path.c_str(), &st) != 0 || !S_ISREG(st.st_mode)) return -1;
  return static_cast<int64_t>(st.st_size);
}

FileSource::~FileSource() {
  if (f_) std::fclose(f_);
}

bool FileSource::open(const std::string& path, std::string* err) {
  if (f_) std::fclose(f_);
  f_ = std::fopen(path.c_str(), "rb");
  if (!f_) {
    if (err) *err = "cannot open " + path + ": " + SystemError();
    return false;
  }
  struct stat st;
  if (::fstat(fileno(f_), &st) != 0 || !S_ISREG(st.st_mode)) {
    if (err) *err = path + " is not a readable file";
    std::fclose(f_);
    f_ = nullptr;
    return false;
  }
  size_ = static_cast<uint64_t>(st.st_size);
  pos_ = 0;
  return true;
}

bool FileSource::read(void* dst, size_t n) {
  if (!f_ || n > size_ - pos_) return false;
  if (n && std::fread(dst, 1, n, f_) != n) return false;
  pos_ += n;
  return true;
}

bool FileSource::seek(uint64_t pos) {
  if (!f_ || pos > size_ || std::fseek(f_, static_cast<long>(pos), SEEK_SET) != 0) return false;
  pos_ = pos;
  return true;
}

bool ReadFileBytes(const std::string& path, std::vector<uint8_t>& out, std::string* err) {
  FileSource src;
  if (!src.open(path, err)) return false;
  out.resize(src.size());
  if (!src.read(out.data(), out.size())) {
    if (err) *err = "cannot read " + path + ": " + SystemError();
    out.clear();
    return false;
  }
  return true;
}

bool WriteFileBytes(const std::string& path, const void* data, size_t n, std::string* err) {
  SafeFileWriter w(path);
  w.write(data, n);
  if (!w.commit()) {
    if (err) *err = w.error();
    return false;
  }
  return true;
}

bool RemoveFile(const std::string& path) { return ::unlink(path.c_str()) == 0; }

bool CopyFileTo(const std::string& from, const std::string& to, std::string* err) {
  std::vector<uint8_t> bytes;
  if (!ReadFileBytes(from, bytes, err)) return false;
  return WriteFileBytes(to, bytes.data(), bytes.size(), err);
}

bool MakeDirs(const std::string& path) {
  std::error_code ec;
  fs::create_directories(path, ec);
  return DirExists(path);
}

std::string JoinPath(const std::string& dir, const std::string& rel) {
  if (dir.empty()) return rel;
  std::string r = rel;
  while (!r.empty() && (r.front() == '/' || r.front() == '\\')) r.erase(r.begin());
  if (dir.back() == '/') return dir + r;
  return dir + "/" + r;
}

std::string DirName(const std::string& path) {
  auto p = path.find_last_of('/');
  if (p == std::string::npos) return "";
  if (p == 0) return "/";
  return path.substr(0, p);
}

std::string BaseName(const std::string& path) {
  auto p = path.find_last_of('/');
  return p == std::string::npos ? path : path.substr(p + 1);
}

std::string CutExt(const std::string& path, size_t cut, const std::string& ext) {
  std::string base = path.size() >= cut ? path.substr(0, path.size() - cut) : std::string();
  return base + ext;
}

SafeFileWriter::SafeFileWriter(std::string path) : path_(std::move(path)) {
  tmp_ = path_ + ".kvtmp" + std::to_string(::getpid());
  f_ = std::fopen(tmp_.c_str(), "wb");
  if (!f_) fail("cannot create " + path_);
}

SafeFileWriter::~SafeFileWriter() { abandon(); }

void SafeFileWriter::fail(const std::string& what) {
  if (err_.empty()) err_ = what + ": " + SystemError();
}

bool SafeFileWriter::write(const void* src, size_t n) {
  if (!f_ || !err_.empty()) return false;
  if (FaultNow()) {
    errno = ENOSPC;
    fail("cannot write " + path_);
    return false;
  }
  if (n && std::fwrite(src, 1, n, f_) != n) {
    fail("cannot write " + path_);
    return false;
  }
  written_ += n;
  return true;
}

bool SafeFileWriter::finish() {
  if (!f_) {
    if (err_.empty()) err_ = "cannot write " + path_;
    return false;
  }
  if (err_.empty() && keep_tail_) {
    int64_t old = FileLen(path_);
    if (old > static_cast<int64_t>(written_)) {
      std::FILE* in = std::fopen(path_.c_str(), "rb");
      if (!in || std::fseek(in, static_cast<long>(written_), SEEK_SET) != 0) {
        fail("cannot read " + path_);
      } else {
        char buf[65536];
        size_t got;
        while (err_.empty() && (got = std::fread(buf, 1, sizeof buf, in)) > 0) write(buf, got);
      }
      if (in) std::fclose(in);
    }
  }
  if (err_.empty() && std::fflush(f_) != 0) fail("cannot write " + path_);
  if (err_.empty() && sync_ && ::fsync(fileno(f_)) != 0 && errno != EINVAL) fail("cannot write " + path_);
  // Keep the permissions of the file being replaced.
  struct stat st;
  if (err_.empty() && ::stat(path_.c_str(), &st) == 0) ::fchmod(fileno(f_), st.st_mode & 07777);
  if (std::fclose(f_) != 0 && err_.empty()) fail("cannot write " + path_);
  f_ = nullptr;
  finished_ = err_.empty();
  if (!finished_) ::unlink(tmp_.c_str());
  return finished_;
}

bool SafeFileWriter::publish() {
  if (!finished_) return false;
  finished_ = false;
  if (std::rename(tmp_.c_str(), path_.c_str()) != 0) {
    fail("cannot replace " + path_);
    ::unlink(tmp_.c_str());
    return false;
  }
  return true;
}

void SafeFileWriter::abandon() {
  if (f_) {
    std::fclose(f_);
    f_ = nullptr;
    ::unlink(tmp_.c_str());
  }
  if (finished_) {
    finished_ = false;
    ::unlink(tmp_.c_str());
  }
}

}  // namespace kv

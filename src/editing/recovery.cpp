#include "editing/recovery.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <sys/file.h>
#include <unistd.h>

#include "document/mapfile.h"
#include "document/namestore.h"
#include "editing/fileflow.h"
#include "platform/fileio.h"
#include "session.h"

namespace kv {

namespace {

namespace fs = std::filesystem;

constexpr const char* kNote = "belongs.txt";
constexpr const char* kLock = "lock";

// Takes the lock of a folder without waiting; -1 when another holds it.
int TryLock(const std::string& dir) {
  const int fd = ::open(JoinPath(dir, kLock).c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
  if (fd < 0) return -1;
  if (::flock(fd, LOCK_EX | LOCK_NB) != 0) {
    ::close(fd);
    return -1;
  }
  return fd;
}

// The whole of an open name file.
std::vector<uint8_t> ReadAll(std::FILE* f) {
  std::vector<uint8_t> out;
  if (!f || std::fseek(f, 0, SEEK_END) != 0) return out;
  const long n = std::ftell(f);
  if (n <= 0 || std::fseek(f, 0, SEEK_SET) != 0) return out;
  out.resize(static_cast<size_t>(n));
  if (std::fread(out.data(), 1, out.size(), f) != out.size()) out.clear();
  return out;
}

bool WriteWhole(const std::string& path, const void* data, size_t n, std::string* err) {
  SafeFileWriter w(path);
  if (n) w.write(data, n);
  if (w.commit()) return true;
  if (err) *err = w.error();
  return false;
}

bool ReadNote(const std::string& dir, RecoveryCopy& c) {
  std::vector<uint8_t> text;
  if (!ReadFileBytes(JoinPath(dir, kNote), text, nullptr)) return false;
  std::string all(text.begin(), text.end());
  bool sawTime = false;
  size_t at = 0;
  while (at < all.size()) {
    size_t nl = all.find('\n', at);
    if (nl == std::string::npos) nl = all.size();
    const std::string line = all.substr(at, nl - at);
    at = nl + 1;
    const size_t eq = line.find('=');
    if (eq == std::string::npos) continue;
    const std::string key = line.substr(0, eq), value = line.substr(eq + 1);
    if (key == "path") c.mapPath = value;
    if (key == "file") c.mapFile = value;
    if (key == "ndx") c.ndxPath = value;
    if (key == "str") c.strPath = value;
    if (key == "time") {
      c.time = std::strtoll(value.c_str(), nullptr, 10);
      sawTime = true;
    }
  }
  c.dir = dir;
  return sawTime && FileExists(JoinPath(dir, "map.map"));
}

}  // namespace

std::string RecoveryRoot() {
  const char* state = std::getenv("XDG_STATE_HOME");
  std::string base;
  if (state && *state == '/') {
    base = state;
  } else {
    const char* home = std::getenv("HOME");
    base = JoinPath(home && *home ? home : "/tmp", ".local/state");
  }
  return JoinPath(base, "korvane-mapedit/recovery");
}

RecoverySlot::~RecoverySlot() { Release(); }

void RecoverySlot::Release() {
  if (!dir_.empty()) {
    std::error_code ec;
    fs::remove_all(dir_, ec);
  }
  if (lockFd_ >= 0) ::close(lockFd_);
  lockFd_ = -1;
  dir_.clear();
  hasCopy_ = false;
}

bool RecoverySlot::Write(Session& s, const std::string& root, std::string* err) {
  if (dir_.empty()) {
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    const std::string dir =
        JoinPath(root, std::to_string(::getpid()) + "-" +
                           std::to_string(std::chrono::duration_cast<std::chrono::milliseconds>(now).count()));
    if (!MakeDirs(dir)) {
      if (err) *err = "cannot make the folder " + dir + ": " + SystemError();
      return false;
    }
    lockFd_ = TryLock(dir);
    if (lockFd_ < 0) {
      if (err) *err = "cannot lock the folder " + dir + ": " + SystemError();
      std::error_code ec;
      fs::remove_all(dir, ec);
      return false;
    }
    dir_ = dir;
  }
  const Document& d = s.doc;
  {
    SafeFileWriter map(JoinPath(dir_, "map.map"));
    WriteMapFile(d, map);
    if (!map.commit()) {
      if (err) *err = map.error();
      return false;
    }
  }
  const std::vector<uint8_t> ndx = ReadAll(s.names.ndx()), str = ReadAll(s.names.str());
  if (!WriteWhole(JoinPath(dir_, "map.lev"), d.HexElev.data(), d.HexElev.bytes(), err) ||
      !WriteWhole(JoinPath(dir_, "map.ndx"), ndx.data(), ndx.size(), err) ||
      !WriteWhole(JoinPath(dir_, "map.str"), str.data(), str.size(), err))
    return false;
  const long long secs =
      std::chrono::duration_cast<std::chrono::seconds>(std::chrono::system_clock::now().time_since_epoch()).count();
  const std::string note = "path=" + d.MapPath + "\nfile=" + d.MapFile + "\nndx=" + d.NdxPath + "\nstr=" + d.StrPath +
                           "\ntime=" + std::to_string(secs) + "\n";
  if (!WriteWhole(JoinPath(dir_, kNote), note.data(), note.size(), err)) return false;
  hasCopy_ = true;
  return true;
}

void RecoverySlot::Clear() {
  if (dir_.empty() || !hasCopy_) return;
  // The note first: without it the folder holds no copy.
  for (const char* f : {kNote, "map.map", "map.lev", "map.ndx", "map.str"}) RemoveFile(JoinPath(dir_, f));
  hasCopy_ = false;
}

std::vector<RecoveryCopy> FindRecoveryCopies(const std::string& root) {
  std::vector<RecoveryCopy> out;
  std::error_code ec;
  for (const auto& e : fs::directory_iterator(root, ec)) {
    std::error_code ec2;
    if (!e.is_directory(ec2)) continue;
    const std::string dir = e.path().string();
    const int fd = TryLock(dir);
    if (fd < 0) continue;  // a running editor's
    RecoveryCopy c;
    if (ReadNote(dir, c))
      out.push_back(c);
    else
      fs::remove_all(dir, ec2);  // an editor that died before its first copy
    ::close(fd);
  }
  std::sort(out.begin(), out.end(), [](const RecoveryCopy& a, const RecoveryCopy& b) { return a.time > b.time; });
  return out;
}

bool OpenRecoveryCopy(Session& s, const RecoveryCopy& c) {
  Document& d = s.doc;
  if (!OpenMapFile(s, c.dir, "map.map")) return false;
  // The copy's own name files are open now; the map goes back where it belongs.
  d.MapFile = c.mapFile;
  d.MapPath = c.mapPath;
  d.NdxPath = c.ndxPath.empty() ? s.App("newmap.ndx") : c.ndxPath;
  d.StrPath = c.strPath.empty() ? s.App("newmap.str") : c.strPath;
  s.names.Close();
  const bool named = !c.mapPath.empty() && c.mapPath != s.App("newmap.map");
  if (!named || !FileExists(d.NdxPath) || !FileExists(d.StrPath)) {
    std::string err;
    if (!CopyFileTo(JoinPath(c.dir, "map.ndx"), d.NdxPath, &err) ||
        !CopyFileTo(JoinPath(c.dir, "map.str"), d.StrPath, &err))
      s.MsgBox("The hex names could not be recovered: " + err + ".");
  }
  ReopenNameStore(s);
  s.SetForm1Caption("Main: editing " + d.MapFile);
  return true;
}

void RemoveRecoveryCopy(const RecoveryCopy& c) {
  std::error_code ec;
  fs::remove_all(c.dir, ec);
}

}  // namespace kv

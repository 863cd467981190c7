#include "platform/appfolder.h"

#include <cstdlib>
#include <filesystem>

#include "platform/fileio.h"

namespace kv {

namespace fs = std::filesystem;

std::string UserDataFolder() {
  const char* xdg = std::getenv("XDG_DATA_HOME");
  if (xdg && *xdg) return JoinPath(xdg, "korvane-mapedit");
  const char* home = std::getenv("HOME");
  if (home && *home) return JoinPath(home, ".local/share/korvane-mapedit");
  return "";
}

std::string DefaultDataFolder(const std::string& exeDir) {
  for (const char* rel : {"../data", "../share/korvane-mapedit"}) {
    std::string p = JoinPath(exeDir, rel);
    if (FileExists(JoinPath(p, "data/terrain.txt"))) return fs::weakly_canonical(p).string();
  }
  return "";
}

std::string ResolveAppFolder(const std::string& explicitDir, const std::string& exeDir, std::string* err) {
  if (!explicitDir.empty()) {
    if (!DirExists(explicitDir)) {
      if (err) *err = "The program folder " + explicitDir + " does not exist.";
      return "";
    }
    return fs::absolute(explicitDir).lexically_normal().string();
  }
  std::string user = UserDataFolder();
  if (user.empty()) {
    if (err) *err = "No program folder: neither --app, XDG_DATA_HOME nor HOME is set.";
    return "";
  }
  if (FileExists(JoinPath(user, "data/terrain.txt"))) return user;
  std::string seed = DefaultDataFolder(exeDir);
  if (seed.empty()) {
    if (err)
      *err = "The program folder " + user +
             " has no data yet, and the default data was not found beside the program. Start with --app DIR.";
    return "";
  }
  std::error_code ec;
  fs::create_directories(user, ec);
  fs::copy(seed, user, fs::copy_options::recursive | fs::copy_options::skip_existing, ec);
  if (ec || !FileExists(JoinPath(user, "data/terrain.txt"))) {
    if (err) *err = "The program folder " + user + " could not be made from " + seed + ": " + ec.message() + ".";
    return "";
  }
  return user;
}

}  // namespace kv

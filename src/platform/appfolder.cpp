#include "platform/appfolder.h"

#include <cstdlib>
#include <filesystem>

#include "platform/fileio.h"

namespace kv {

namespace fs = std::filesystem;

namespace {

// Copies the default data into the per-user folder, keeping files that are
// there already. Folders are made afresh and every file copied gets its
// owner's write permission: the default data of an installation is
// read-only, its copy is the user's to change.
void CopyDefaultData(const fs::path& seed, const fs::path& user, std::error_code& ec) {
  fs::create_directories(user, ec);
  for (auto it = fs::recursive_directory_iterator(seed, ec); !ec && it != fs::recursive_directory_iterator();
       it.increment(ec)) {
    const fs::path to = user / it->path().lexically_relative(seed);
    if (it->is_directory(ec)) {
      fs::create_directories(to, ec);
    } else if (!ec && fs::copy_file(it->path(), to, fs::copy_options::skip_existing, ec)) {
      fs::permissions(to, fs::perms::owner_read | fs::perms::owner_write, fs::perm_options::add, ec);
    }
    if (ec) return;
  }
}

}  // namespace

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
  CopyDefaultData(seed, user, ec);
  if (ec || !FileExists(JoinPath(user, "data/terrain.txt"))) {
    if (err) *err = "The program folder " + user + " could not be made from " + seed + ": " + ec.message() + ".";
    return "";
  }
  return user;
}

}  // namespace kv

#include "autotile/reset.h"

#include <algorithm>
#include <filesystem>
#include <vector>

#include "autotile/stores.h"
#include "document/mapstate.h"
#include "platform/fileio.h"

namespace fs = std::filesystem;

namespace kv {

namespace {

bool IsStoreFolder(const std::string& name) {
  if (name == "roadpatterns" || name == "bridgepatterns" || name == "riverpatterns") return true;
  return name.size() > 5 && name.compare(0, 5, "tilep") == 0 &&
         std::all_of(name.begin() + 5, name.end(), [](char c) { return c >= '0' && c <= '9'; });
}

// The pattern files of the stores under a "mapedit" folder, relative to it.
std::vector<std::string> StoreFiles(const fs::path& mapedit) {
  std::vector<std::string> out;
  std::error_code ec;
  for (const auto& dir : fs::directory_iterator(mapedit, ec)) {
    if (!dir.is_directory(ec) || !IsStoreFolder(dir.path().filename().string())) continue;
    for (const auto& f : fs::directory_iterator(dir.path(), ec))
      if (f.is_regular_file(ec) && f.path().extension() == ".txt")
        out.push_back(dir.path().filename().string() + "/" + f.path().filename().string());
  }
  std::sort(out.begin(), out.end());
  return out;
}

}  // namespace

bool ResetLearnedStores(MapState& s, const std::string& starter, std::string* err) {
  std::error_code ec;
  const fs::path from = fs::path(starter) / "mapedit", to = fs::path(s.App("mapedit"));
  if (fs::equivalent(from, to, ec)) {
    *err = "This program folder holds the starter patterns itself.";
    return false;
  }
  const std::vector<std::string> fresh = StoreFiles(from);
  if (fresh.empty()) {
    *err = "No starter patterns in " + from.string() + ".";
    return false;
  }
  // Everything learned goes, then the starter files come in.
  for (const std::string& rel : StoreFiles(to)) DeleteStoreFile(s, (to / rel).string());
  for (const std::string& rel : fresh) {
    std::vector<uint8_t> bytes;
    if (!ReadFileBytes((from / rel).string(), bytes, err)) return false;
    fs::create_directories((to / rel).parent_path(), ec);
    const std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    if (!WriteStoreFile(s, (to / rel).string(), text)) {
      *err = "Cannot write " + (to / rel).string() + ".";
      return false;
    }
  }
  return true;
}

}  // namespace kv

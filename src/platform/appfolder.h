// Finding the program folder: --app DIR, or a per-user data folder seeded
// from the default data that comes with the editor.
#pragma once

#include <string>

namespace kv {

// The per-user folder: $XDG_DATA_HOME/korvane-mapedit, else
// ~/.local/share/korvane-mapedit.
std::string UserDataFolder();
// The default data that comes with the binary in exeDir: <exeDir>/../data
// (the build tree) or <exeDir>/../share/korvane-mapedit (an installation).
std::string DefaultDataFolder(const std::string& exeDir);
// Resolves the program folder. With an explicit folder, that folder. Without,
// the per-user folder, copied from the default data when it does not exist
// yet. Returns "" and sets err when no usable folder can be had.
std::string ResolveAppFolder(const std::string& explicitDir, const std::string& exeDir, std::string* err);

}  // namespace kv

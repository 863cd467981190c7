// What happens around loading and saving: file names, the caption, and the
// switch of the hex-name store.
#pragma once

#include <string>

namespace kv {

struct Session;

// Opens a map as the file dialog's Load does in its map mode: `name` as typed
// in folder `dir` (".map" appended unless it ends in "map" or "MAP"). A map
// that cannot be read leaves the document, its names and paths as they were.
bool OpenMapFile(Session& s, const std::string& dir, const std::string& name);

// Saves the map under a name as the dialog's Save button does: `text` as
// typed, in folder `dir`; asks before replacing an existing file (a refusal
// leaves the names and paths as they were); the name store follows the map.
// Returns false when nothing was saved.
bool SaveMapAs(Session& s, const std::string& dir, const std::string& text);

}  // namespace kv

// The recovery copy. While the map has unsaved changes the editor keeps a
// copy of it (the map file, its .lev, its hex names and the path it belongs
// to) in a folder of its own under the user's state folder, never beside the
// map. Each editor holds a lock on its folder while it runs, and removes the
// folder when it ends; a folder whose lock is free at the next start was left
// by an editor that died, and its copy is offered.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace kv {

struct Session;

// $XDG_STATE_HOME/korvane-mapedit/recovery, else ~/.local/state/korvane-mapedit/recovery.
std::string RecoveryRoot();

// A copy left behind.
struct RecoveryCopy {
  std::string dir;      // its folder
  std::string mapPath;  // where the map belongs ("" for a map never named)
  std::string mapFile;  // the name it was edited under
  std::string ndxPath, strPath;
  int64_t time = 0;  // when it was written, seconds since 1970
};

// This editor's copy.
class RecoverySlot {
 public:
  RecoverySlot() = default;
  ~RecoverySlot();  // the folder goes: an editor that ends normally leaves nothing
  RecoverySlot(const RecoverySlot&) = delete;
  RecoverySlot& operator=(const RecoverySlot&) = delete;

  // Writes the copy of the session's map into this editor's folder under
  // `root` (made and locked on first use): each file whole under a
  // temporary name, the note of where the map belongs last. False with the
  // reason in *err.
  bool Write(Session& s, const std::string& root, std::string* err);
  // Removes the copy (the map was saved, or its changes undone).
  void Clear();
  bool HasCopy() const { return hasCopy_; }
  const std::string& dir() const { return dir_; }

 private:
  void Release();
  std::string dir_;
  int lockFd_ = -1;
  bool hasCopy_ = false;
};

// The copies under `root` that no running editor holds, newest first. A
// folder left without a complete copy is removed.
std::vector<RecoveryCopy> FindRecoveryCopies(const std::string& root);

// Opens a copy as the document, under the path it belongs to, so that Save
// writes it there. The map's own name files are kept when they exist (names
// are written at once, so they are never older than the copy's); a map never
// named takes the copy's. False (with a message) when the copy is unreadable;
// the open map then stays.
bool OpenRecoveryCopy(Session& s, const RecoveryCopy& c);

// Removes a copy's folder.
void RemoveRecoveryCopy(const RecoveryCopy& c);

}  // namespace kv

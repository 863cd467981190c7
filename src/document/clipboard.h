// Copy and paste of a block of tile numbers through "copybuff.dat" in the
// program folder, and the one-step undo.
#pragma once

#include <string>

namespace kv {

struct Session;

std::string ClipboardPath(const Session& s);
// Writes the selection block's tiles to the clipboard file.
void mCopy_Click(Session& s);
// Pastes at the hex of the last click: the clipboard file when there is one,
// otherwise the selection block within the map.
void mPaste_Click(Session& s);
// Restores the snapshot.
void mUndo_Click(Session& s);

}  // namespace kv

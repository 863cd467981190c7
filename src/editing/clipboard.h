// Copy and paste of a block of tile numbers through "copybuff.dat" in the
// program folder, and the one-step undo.
#pragma once

#include <cstdint>
#include <span>
#include <string>

namespace kv {

struct MapState;
struct Session;
struct Document;

std::string ClipboardPath(const MapState& s);
// Writes the selection block's tiles to the clipboard file.
void mCopy_Click(Session& s);
// Pastes at the hex of the last click: the clipboard file when there is one,
// otherwise the selection block within the map.
void mPaste_Click(Session& s);
// Pastes the block held in the bytes of a clipboard file with its first
// corner at (x, y); what falls off the map is left out. False, with the map
// untouched, when the block does not fit the length of the bytes.
bool PasteClipboardBytes(Document& d, int x, int y, std::span<const uint8_t> b);

// Restores the snapshot.
void mUndo_Click(Session& s);

}  // namespace kv

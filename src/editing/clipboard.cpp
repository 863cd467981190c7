#include "editing/clipboard.h"

#include <algorithm>
#include <vector>

#include "document/mapfile.h"
#include "editing/mapload.h"
#include "platform/bytes.h"
#include "platform/fileio.h"
#include "session.h"
#include "view/render_api.h"

namespace kv {

std::string ClipboardPath(const MapState& s) { return s.App("copybuff.dat"); }

void mCopy_Click(Session& s) {
  const Document& d = s.doc;
  const Pens& p = s.pens;
  const int w = p.SelX2 - p.SelX1, h = p.SelY2 - p.SelY1;
  // The selection rules keep the block on the map with its first corner
  // above and left of the last; anything else (set by hand) copies nothing.
  if (w < 0 || h < 0 || !d.OnMap(p.SelX1, p.SelY1) || !d.OnMap(p.SelX2, p.SelY2)) {
    s.MsgBox("Nothing copied: the selection block (" + std::to_string(p.SelX1) + ", " + std::to_string(p.SelY1) +
             ") to (" + std::to_string(p.SelX2) + ", " + std::to_string(p.SelY2) + ") does not lie on the map.");
    return;
  }
  std::vector<uint8_t> out;
  out.reserve(4 + static_cast<size_t>(w + 1) * (h + 1) * 2);
  auto put = [&out](int16_t v) {
    out.push_back(static_cast<uint8_t>(v));
    out.push_back(static_cast<uint8_t>(static_cast<uint16_t>(v) >> 8));
  };
  put(static_cast<int16_t>(w));
  put(static_cast<int16_t>(h));
  for (int j = 0; j <= h; ++j)
    for (int i = 0; i <= w; ++i) put(d.HexTile(p.SelX1 + i, p.SelY1 + j));
  const std::string path = ClipboardPath(s);
  std::string err;  // the old block stays until the new one is whole
  if (!WriteFileBytes(path, out.data(), out.size(), &err)) s.MsgBox("The block could not be copied: " + err + ".");
}

namespace {
int16_t Get16(std::span<const uint8_t> b, size_t at) {
  return static_cast<int16_t>(static_cast<uint16_t>(b[at] | (b[at + 1] << 8)));
}
}  // namespace

bool PasteClipboardBytes(Document& d, int x, int y, std::span<const uint8_t> b) {
  const int w = b.size() >= 4 ? Get16(b, 0) : -1, h = b.size() >= 4 ? Get16(b, 2) : -1;
  if (w < 0 || h < 0 || b.size() < 4 + static_cast<size_t>(w + 1) * (h + 1) * 2) return false;
  // A paste position off the map (left there by a script) pastes nothing;
  // from one on it, what falls beyond the right or lower edge is dropped.
  if (!d.OnMap(x, y)) return true;
  for (int i = 0; i <= w; ++i)
    for (int j = 0; j <= h; ++j)
      if (d.OnMap(i + x, j + y)) d.HexTile(i + x, j + y) = Get16(b, 4 + (static_cast<size_t>(j) * (w + 1) + i) * 2);
  return true;
}

void mPaste_Click(Session& s) {
  Document& d = s.doc;
  const Pens& p = s.pens;
  const std::string path = ClipboardPath(s);
  if (FileExists(path)) {
    std::vector<uint8_t> b;
    std::string err;
    if (!ReadFileBytes(path, b, &err)) {
      s.MsgBox("The clipboard file " + path + " cannot be read: " + err + ".");
      return;
    }
    if (!PasteClipboardBytes(d, p.CurHexX, p.CurHexY, b)) {
      s.MsgBox("The clipboard file " + path + " is damaged: its block does not fit its length.");
      return;
    }
    if (d.OnMap(p.CurHexX, p.CurHexY))
      s.MapEdited({p.CurHexX, p.CurHexY, p.CurHexX + Get16(b, 0), p.CurHexY + Get16(b, 2)});
  } else if (d.OnMap(p.CurHexX, p.CurHexY)) {
    const int dx = p.CurHexX - p.SelX1, dy = p.CurHexY - p.SelY1;
    // Element by element in the block's order: a target that overlaps its
    // source reads what was already written.
    for (int x = p.SelX1; x <= p.SelX2; ++x)
      for (int y = p.SelY1; y <= p.SelY2; ++y)
        if (d.OnMap(x, y) && d.OnMap(x + dx, y + dy)) d.HexTile(x + dx, y + dy) = d.HexTile(x, y);
    s.MapEdited({p.SelX1 + dx, p.SelY1 + dy, p.SelX2 + dx, p.SelY2 + dy});
  }
  RedrawBuffers(s);
}

void mUndo_Click(Session& s) { RestoreSnapshot(s); }

}  // namespace kv

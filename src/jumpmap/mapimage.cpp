#include "jumpmap/mapimage.h"

#include <algorithm>

#include "platform/fileio.h"
#include "session.h"
#include "view/spritebank.h"

namespace kv {

namespace {

constexpr int kMaxSide = 32767;  // sizes are 16-bit quantities

bool Fail(std::string* err, const std::string& why) {
  if (err) *err = why;
  return false;
}

}  // namespace

bool CheckMapSection(const Document& d, const RefData& r, int x, int y, int w, int h, int64_t maxSide,
                     std::string* err) {
  if (w < 1 || h < 1) return Fail(err, "the section must be at least 1 by 1 hexes");
  const int64_t pw = int64_t{w} * r.ColPitch, ph = int64_t{h} * r.RowPitch;
  if (pw > maxSide || ph > maxSide)
    return Fail(err, "a picture of " + std::to_string(pw) + " x " + std::to_string(ph) +
                         " pixels is too large (at most " + std::to_string(maxSide) + " a side)");
  // The loops run from 0 to w and 0 to h inclusive: the section reads one
  // column and one row beyond its picture, and all of them must be on the map.
  if (x < 0 || y < 0 || int64_t{x} + w > d.MapMaxX || int64_t{y} + h > d.MapMaxY)
    return Fail(err, "columns " + std::to_string(x) + " to " + std::to_string(int64_t{x} + w) + " and rows " +
                         std::to_string(y) + " to " + std::to_string(int64_t{y} + h) +
                         " run off the map (last column " + std::to_string(d.MapMaxX) + ", last row " +
                         std::to_string(d.MapMaxY) + ")");
  return true;
}

void DrawMapSection(const Document& d, const RefData& r, const SpriteBank& b, int x, int y, int w, int h, int64_t top,
                    Bitmap& strip) {
  strip.Fill(kPictureBackColour);
  const int W = r.HexW, H = r.HexH;
  const int64_t bottom = top + strip.Height();
  // Only the rows of hexes that reach into the strip, in the order of the
  // whole picture's loops (column by column, each from the top), so that every
  // pixel sees the same copies in the same order as in the whole picture.
  const int64_t half = r.RowPitch / 2;
  const int64_t pitch = std::max<int64_t>(r.RowPitch, 1);
  const int64_t jFirst = std::max<int64_t>(0, (top - half - H) / pitch);
  const int64_t jLast = std::min<int64_t>(h, bottom / pitch + 1);
  for (int i = 0; i <= w; ++i) {
    const int col = x + i;
    for (int64_t j = jFirst; j <= jLast; ++j) {
      const int row = y + static_cast<int>(j);
      int64_t py = j * r.RowPitch;
      if (col % 2 == 0) py += half;  // the parity of the map's column
      if (py >= bottom || py + H <= top) continue;
      const int px = i * r.ColPitch;
      const int t = d.HexTile(col, row);
      MaskedBlt(strip, px, static_cast<int>(py - top), W, H, b.BlackHexDC, 0, 0, b.TileSheet, (t % 16) * W,
                (t / 16) * H);
    }
  }
}

bool RenderMapImage(Session& s, int x, int y, int w, int h, Bitmap& out, std::string* err) {
  if (!CheckMapSection(s.doc, s.ref, x, y, w, h, kMaxSide, err)) return false;
  Bitmap pic(w * s.ref.ColPitch, h * s.ref.RowPitch);
  DrawMapSection(s.doc, s.ref, s.sprites, x, y, w, h, 0, pic);
  out = std::move(pic);
  return true;
}

bool ExportMapImage(Session& s) {
  const int w = s.pens.ImgScaleA, h = s.pens.ImgScaleB;
  std::string err;
  Bitmap& canvas = s.sprites.Picture5;
  if (RenderMapImage(s, s.view.ViewX, s.view.ViewY, w, h, canvas, &err) && WriteBmpFile(s.App("map.bmp"), canvas, &err))
    return true;
  s.MsgBox("Not enough Memory", vbOKOnly);
  canvas.Create(1, 1);
  return false;
}

}  // namespace kv

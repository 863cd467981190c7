#include "jumpmap/mapimage.h"

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

bool RenderMapImage(Session& s, int x, int y, int w, int h, Bitmap& out, std::string* err) {
  const Document& d = s.doc;
  const RefData& r = s.ref;
  const SpriteBank& b = s.sprites;
  if (w < 1 || h < 1) return Fail(err, "the section must be at least 1 by 1 hexes");
  const int64_t pw = int64_t{w} * r.ColPitch, ph = int64_t{h} * r.RowPitch;
  if (pw > kMaxSide || ph > kMaxSide)
    return Fail(err, "a picture of " + std::to_string(pw) + " x " + std::to_string(ph) +
                         " pixels is too large (at most " + std::to_string(kMaxSide) + " a side)");
  // The loops run from 0 to w and 0 to h inclusive: the section reads one
  // column and one row beyond its picture, and all of them must be on the map.
  if (x < 0 || y < 0 || int64_t{x} + w > d.MapMaxX || int64_t{y} + h > d.MapMaxY)
    return Fail(err, "columns " + std::to_string(x) + " to " + std::to_string(int64_t{x} + w) +
                         " and rows " + std::to_string(y) + " to " + std::to_string(int64_t{y} + h) +
                         " run off the map (last column " + std::to_string(d.MapMaxX) +
                         ", last row " + std::to_string(d.MapMaxY) + ")");
  Bitmap pic(static_cast<int>(pw), static_cast<int>(ph));
  pic.Fill(kPictureBackColour);
  const int W = r.HexW, H = r.HexH;
  for (int i = 0; i <= w; ++i) {
    const int col = x + i;
    for (int j = 0; j <= h; ++j) {
      const int row = y + j;
      int py = j * r.RowPitch;
      if (col % 2 == 0) py += r.RowPitch / 2;  // the parity of the map's column
      const int px = i * r.ColPitch;
      BitBlt(pic, px, py, W, H, &b.BlackHexDC, 0, 0, SRCAND);
      const int t = d.HexTile(col, row);
      BitBlt(pic, px, py, W, H, &b.TileSheet, (t % 16) * W, (t / 16) * H, SRCPAINT);
    }
  }
  out = std::move(pic);
  return true;
}

bool ExportMapImage(Session& s) {
  const int w = s.pens.ImgScaleA, h = s.pens.ImgScaleB;
  std::string err;
  Bitmap& canvas = s.sprites.Picture5;
  if (RenderMapImage(s, s.view.ViewX, s.view.ViewY, w, h, canvas, &err) &&
      WriteBmpFile(s.App("map.bmp"), canvas, &err))
    return true;
  s.MsgBox("Not enough Memory", vbOKOnly);
  canvas.Create(1, 1);
  return false;
}

}  // namespace kv

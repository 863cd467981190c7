#include "view/spritebank.h"

#include <algorithm>
#include <cmath>

#include "platform/fileio.h"
#include "view/compose.h"
#include "view/mapview.h"
#include "view/render_api.h"
#include "view/zoomgrid.h"

namespace kv {

namespace {

// A sheet that cannot be read stays empty: whatever is composed from it is
// black or unchanged, and the editor runs on.
void LoadSheet(MapView& s, const char* rel, Bitmap& sheet) {
  std::string err;
  Bitmap b;
  if (ReadBmpFile(s.App(rel), b, &err))
    sheet = std::move(b);
  else
    sheet = Bitmap();
}

}  // namespace

bool LoadTileSheet(MapView& s) {
  Bitmap& sheet = s.sprites.TileSheet;
  std::string err;
  Bitmap b;
  if (!ReadBmpFile(s.App("bmp/mapl.bmp"), b, &err)) {
    sheet = Bitmap();
    return false;
  }
  sheet = std::move(b);
  const RefData& r = s.ref;
  if (r.HexW <= 0 || r.HexH <= 0) return false;
  const int cells = (sheet.Width() / r.HexW) * (sheet.Height() / r.HexH);
  if (cells < 1) return false;
  s.ref.TileMax = static_cast<int16_t>(std::min(cells - 1, 32767));
  return true;
}

void LoadSpriteBank(MapView& s) {
  SpriteBank& b = s.sprites;
  LoadSheet(s, "bmp/blackhex.bmp", b.BlackHexDC);
  LoadSheet(s, "bmp/hexp.bmp", b.HexLineDC);
  LoadSheet(s, "bmp/hexm.bmp", b.HexLineMaskDC);
  LoadSheet(s, "bmp/fx2.bmp", b.FxDC);
  LoadSheet(s, "bmp/fx2m.bmp", b.FxMaskDC);
  BuildFlagBanks(s);
  LoadSheet(s, "bmp/roads.bmp", b.RoadDC);
  LoadSheet(s, "bmp/roadsm.bmp", b.RoadMaskDC);
  LoadSheet(s, "bmp/rr.bmp", b.RailDC);
  LoadSheet(s, "bmp/rrm.bmp", b.RailMaskDC);
  LoadSheet(s, "bmp/contours.bmp", b.ContourDC);
  LoadSheet(s, "bmp/contoursm.bmp", b.ContourMaskDC);
}

void BuildFlagBanks(MapView& s) {
  struct Strip {
    Bitmap* bank;
    int w, h;
    const char* suffix;
  };
  const Strip strips[] = {
      {&s.sprites.FlagBigDC, 21, 14, ""}, {&s.sprites.FlagDC, 20, 13, "02"}, {&s.sprites.FlagSmallDC, 9, 9, "03"}};
  const int count = std::max<int>(s.ref.NationCount, 0);
  for (const Strip& st : strips) {
    st.bank->Create((count + 1) * st.w, st.h);
    for (int i = 1; i <= count; ++i) {
      const std::string name = static_cast<size_t>(i) < s.ref.NationName.size() ? s.ref.NationName[i] : std::string();
      std::string path = s.App("flags/" + name + st.suffix + ".bmp");
      if (name.empty() || !FileExists(path)) path = s.App(std::string("flags/blank") + st.suffix + ".bmp");
      Bitmap flag;
      std::string err;
      if (!ReadBmpFile(path, flag, &err)) continue;  // no blank either: the cell stays black
      BitBlt(*st.bank, i * st.w, 0, st.w, st.h, &flag, 0, 0, SRCCOPY);
    }
  }
}

void ComputeBufferSize(const MapView& s, int32_t& w, int32_t& h) {
  const RefData& r = s.ref;
  const ViewState& v = s.view;
  w = static_cast<int32_t>(v.ViewCols) * r.ColPitch + r.ColPitch * 2 + r.HexW;
  // Summed in floating point and rounded to nearest, halves to even.
  h = static_cast<int32_t>(std::nearbyint((v.ViewRows + 1) * static_cast<double>(r.RowPitch) + r.HexH * 2.5));
  w = std::max(w, 0);
  h = std::max(h, 0);
  // At another zoom the buffer holds the same part of the map at the zoom's
  // size (and a pixel more on each side for the rounding).
  const ZoomGrid g(r, v);
  if (!g.FullSize()) {
    w = static_cast<int32_t>(g.sx.Zoomed(w)) + 2;
    h = static_cast<int32_t>(g.sy.Zoomed(h)) + 2;
  }
}

void ClearPicture1(MapView& s) {
  Bitmap& p = s.sprites.Picture1;
  const ZoomGrid g(s.ref, s.view);
  if (p.Width() != g.picW || p.Height() != g.picH) p.Create(g.picW, g.picH);
  p.Fill(kPictureBackColour);
  s.ui().Changed(Change::Picture1);
}

void BuildViewBuffer(MapView& s) {
  SpriteBank& b = s.sprites;
  ComputeBufferSize(s, b.BufW, b.BufH);
  b.BufDC.Create(b.BufW, b.BufH);
  ClearPicture1(s);
  BitBlt(b.BufDC, 0, 0, b.Picture1.Width(), b.Picture1.Height(), &b.Picture1, 0, 0, SRCCOPY);
  const ViewState& v = s.view;
  const int xEnd = std::min<int>(v.ViewCols + v.ViewX + 1, s.doc.MapMaxX);
  const int yEnd = std::min<int>(v.ViewRows + v.ViewY + 1, s.doc.MapMaxY);
  for (int x = v.ViewX - 1; x <= xEnd; ++x)
    for (int y = v.ViewY - 1; y <= yEnd; ++y) Print_hex(s, static_cast<int16_t>(x), static_cast<int16_t>(y), 0);
  BlitPic1(s);
}

void RedrawBuffers(MapView& s) {
  SpriteBank& b = s.sprites;
  BitBlt(b.BufDC, 0, 0, b.BufW, b.BufH, &b.BufDC, 0, 0, BLACKNESS);
  const ViewState& v = s.view;
  const Pens& p = s.pens;
  const int x0 = std::max(v.ViewX - 1, 0), y0 = std::max(v.ViewY - 2, 0);
  const int xEnd = std::min<int>(v.ViewCols + v.ViewX + 1, s.doc.MapMaxX);
  const int yEnd = std::min<int>(v.ViewRows + v.ViewY + 1, s.doc.MapMaxY);
  const bool grid = p.GridOn == -1;
  for (int x = x0; x <= xEnd; ++x) {
    const bool gridCol = grid && p.GridX != 0 && x % p.GridX == 0;
    for (int y = y0; y <= yEnd; ++y) {
      const bool gridHex = gridCol || (grid && p.GridY != 0 && y % p.GridY == 0);
      Print_hex(s, static_cast<int16_t>(x), static_cast<int16_t>(y), gridHex ? 2 : 0);
    }
  }
  BlitPic1(s);
}

void BlitPic1(MapView& s) {
  SpriteBank& b = s.sprites;
  const ViewState& v = s.view;
  // At 100 % the surface is ViewPixW x ViewPixH and the margin a pitch.
  const ZoomGrid g(s.ref, v);
  if (b.Picture1.Width() != g.picW || b.Picture1.Height() != g.picH) {
    b.Picture1.Create(g.picW, g.picH);
    b.Picture1.Fill(kPictureBackColour);
  }
  BitBlt(b.Picture1, 0, 0, g.picW, g.picH, &b.BufDC, g.marginX, g.marginY, SRCCOPY);
  s.ui().Changed(Change::Picture1);
  if (s.forms.Form5Loaded && s.viewHooks.ViewShown) s.viewHooks.ViewShown(s);
}

namespace {

// How far the buffer moves for one column (or row): a pitch, on the zoomed
// grid at another zoom.
int StepPixels(const MapView& s, bool across) {
  const ZoomGrid g(s.ref, s.view);
  return across ? g.marginX : g.marginY;
}

}  // namespace

// The four one-step moves: one copy of the buffer within itself, then the
// hexes that came in, drawn without the grid overlay.
void ScrollLeft(MapView& s) {
  SpriteBank& b = s.sprites;
  const ViewState& v = s.view;
  const int cp = StepPixels(s, true);
  BitBlt(b.BufDC, cp, 0, b.BufW - cp, b.BufH, &b.BufDC, 0, 0, SRCCOPY);
  const int yEnd = std::min<int>(v.ViewRows + v.ViewY + 1, s.doc.MapMaxY);
  for (int y = v.ViewY; y <= yEnd; ++y) Print_hex(s, static_cast<int16_t>(v.ViewX), static_cast<int16_t>(y), 1);
}

void ScrollRight(MapView& s) {
  SpriteBank& b = s.sprites;
  const ViewState& v = s.view;
  const int cp = StepPixels(s, true);
  BitBlt(b.BufDC, 0, 0, b.BufW - cp, b.BufH, &b.BufDC, cp, 0, SRCCOPY);
  const int xEnd = std::min<int>(v.ViewCols + v.ViewX + 1, s.doc.MapMaxX);
  const int yEnd = std::min<int>(v.ViewRows + v.ViewY + 1, s.doc.MapMaxY);
  for (int y = v.ViewY; y <= yEnd; ++y) Print_hex(s, static_cast<int16_t>(xEnd), static_cast<int16_t>(y), 1);
}

void ScrollUp(MapView& s) {
  SpriteBank& b = s.sprites;
  const ViewState& v = s.view;
  const int rp = StepPixels(s, false);
  BitBlt(b.BufDC, 0, rp, b.BufW, b.BufH - rp, &b.BufDC, 0, 0, SRCCOPY);
  const int xEnd = std::min<int>(v.ViewCols + v.ViewX + 1, s.doc.MapMaxX);
  for (int x = v.ViewX; x <= xEnd; ++x) Print_hex(s, static_cast<int16_t>(x), static_cast<int16_t>(v.ViewY), 1);
}

void ScrollDown(MapView& s) {
  SpriteBank& b = s.sprites;
  const ViewState& v = s.view;
  const int rp = StepPixels(s, false);
  BitBlt(b.BufDC, 0, 0, b.BufW, b.BufH - rp, &b.BufDC, 0, rp, SRCCOPY);
  const int xEnd = std::min<int>(v.ViewCols + v.ViewX + 1, s.doc.MapMaxX);
  const int yEnd = std::min<int>(v.ViewRows + v.ViewY + 1, s.doc.MapMaxY);
  for (int x = v.ViewX; x <= xEnd; ++x) Print_hex(s, static_cast<int16_t>(x), static_cast<int16_t>(yEnd), 1);
}

}  // namespace kv

#include "jumpmap/jumpmap.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "document/document_ops.h"
#include "platform/fileio.h"
#include "session.h"
#include "view/geometry.h"
#include "view/scrolling.h"
#include "view/spritebank.h"
#include "view/transform.h"

namespace kv {

namespace {

// Rounds to the nearest integer, halves to even (the default rounding mode).
int RoundEven(double v) { return static_cast<int>(std::nearbyint(v)); }

// The scale as the caption shows it: up to seven significant digits.
std::string ScaleText(float v) {
  char buf[32];
  std::snprintf(buf, sizeof buf, "%.7g", static_cast<double>(v));
  return buf;
}

// Whether a picture of w x h hexes at these pitches stays within the budget.
bool JumpPictureFits(int colp, int rowp, int w, int h) {
  return static_cast<long long>(colp) * w * rowp * h <= kJumpPicturePixels;
}

void DrawBox(Bitmap& b, const DrawnBox& box) {
  if (box.shown) b.Rectangle(box.x1, box.y1, box.x2, box.y2, box.colour);
}

}  // namespace

uint32_t TerrainColour(const RefData& r, int t) {
  if (t < 0 || t > r.TerrainMax || static_cast<size_t>(t) * 3 + 2 >= r.TerrainRGBData.size()) return 0;
  return RGB(r.TerrainRGB(2, t), r.TerrainRGB(1, t), r.TerrainRGB(0, t));
}

Bitmap JumpMapView(const JumpMapState& j) {
  Bitmap b = j.Picture2;
  DrawBox(b, j.Picture2Box);
  return b;
}

void LoadForm5(Session& s) {
  if (s.forms.Form5Loaded) return;
  s.forms.Form5Loaded = true;  // JumpMapOpen
  JumpMapState& j = s.jump;
  j.Picture2Box.shown = false;
  j.FormBox.shown = false;
  j.ListVisible = false;
  j.Picture2.Create(std::max<int>(s.doc.MapMaxX, 1), std::max<int>(s.doc.MapMaxY, 1));
  j.Picture2.Fill(kPictureBackColour);
  DrawStrategicMap(s);
  BuildObjList(s);
}

void UnloadForm5(Session& s) { s.forms.Form5Loaded = false; }

void DrawStrategicMap(Session& s) {
  const Document& d = s.doc;
  RefData& r = s.ref;
  JumpMapState& j = s.jump;
  const SpriteBank& b = s.sprites;

  // About half the screen's width for the whole map, from the screen each time.
  const int half = RoundEven(s.view.ScreenW / 2.0);
  const int c = d.MapMaxX > 0 ? RoundEven(static_cast<double>(half) / d.MapMaxX) : 0;
  float k = static_cast<float>(static_cast<double>(c) / r.ColPitch);
  auto scaled = [&k](int v) { return std::max(1, RoundEven(static_cast<float>(v) * k)); };
  int colp = scaled(r.ColPitch), rowp = scaled(r.RowPitch);
  // The scale comes from the width alone, so a narrow, tall map would get a
  // picture that grows with its rows. Past a sensible size the picture is
  // drawn smaller, down to one dot a hex, which grows with the hexes only.
  const bool reduced = !JumpPictureFits(colp, rowp, d.W(), d.H());
  while (!JumpPictureFits(colp, rowp, d.W(), d.H())) {
    k *= 0.8f;
    colp = scaled(r.ColPitch);
    rowp = scaled(r.RowPitch);
    if (colp == 1 && rowp == 1) break;
  }
  int hw = scaled(r.HexW), hh = scaled(r.HexH);
  j.JumpScale = k;
  j.Caption = "Jump Map (F1) scale = " + ScaleText(k) + (reduced ? " (reduced to fit)" : "");
  r.JumpColPitch = static_cast<int16_t>(colp);
  r.JumpRowPitch = static_cast<int16_t>(rowp);

  Bitmap& pic = j.Picture2;
  j.ShowsDrawnMap = true;
  pic.Create(colp * (d.MapMaxX + 1), rowp * (d.MapMaxY + 1));
  pic.Fill(kPictureBackColour);
  j.Picture2Box.shown = false;

  if (colp > 1 || rowp > 1) {
    const int flagW = RoundEven(k * 20.0f), flagH = RoundEven(k * 13.0f);
    const int bigW = RoundEven(k * 21.0f), bigH = RoundEven(k * 14.0f);
    for (int x = 0; x <= d.MapMaxX; ++x)
      for (int y = 0; y <= d.MapMaxY; ++y) {
        int py = rowp * y;
        if (x % 2 == 0) py += rowp / 2;
        const int px = colp * x;
        // Both ends included.
        pic.FillRect(px, py, hw + 1, hh + 1, TerrainColour(r, d.HexInfo(x, y, 0)));
        const int n = d.HexCtl(x, y, 0), kind = d.HexCtl(x, y, 1);
        if (n > 0 && kind > 0) {
          const int fx = RoundEven(static_cast<float>(r.FlagDX) * k + static_cast<float>(px));
          const int fy = RoundEven(static_cast<float>(r.FlagDY) * k + static_cast<float>(py));
          if (kind == 1) {
            StretchBlt(pic, fx, fy, flagW, flagH, b.FlagDC, n * 20, 0, 20, 13, SRCCOPY);
          } else if (kind == 2 || kind == 3) {
            StretchBlt(pic, fx, fy, bigW, bigH, b.FlagBigDC, n * 21, 0, 21, 14, SRCCOPY);
            StretchBlt(pic, px, py, hw, hh, b.FxMaskDC, 5 * r.HexW, 0, r.HexW, r.HexH, SRCAND);
            StretchBlt(pic, px, py, hw, hh, b.FxDC, 5 * r.HexW, 0, r.HexW, r.HexH, SRCPAINT);
          }
        }
      }
  } else {
    // One dot a hex, no column shift.
    for (int x = 0; x <= d.MapMaxX; ++x)
      for (int y = 0; y <= d.MapMaxY; ++y) {
        const int t = d.HexInfo(x, y, 0);
        const bool black = j.JumpFilter == 0 ? r.RoadOf(d.HexTile(x, y)) == 1 : j.JumpFilter == t;
        pic.SetPixel(x, y, black ? 0u : TerrainColour(r, t));
      }
  }
  s.ui().Changed(Change::Form5Picture2);
  s.ui().Changed(Change::Form5Caption);
}

bool ZoomFlags(Session& s, int16_t view, std::string* err) {
  LoadForm5(s);
  Document& d = s.doc;
  JumpMapState& j = s.jump;
  const SpriteBank& b = s.sprites;
  j.ShowsDrawnMap = false;  // the map's bitmap with flags, from here on
  std::string& dlgFile = s.ed.dlg.DlgFile;
  if (dlgFile.empty()) dlgFile = JoinPath(s.AppPath, "newmap.map");
  const std::string bmpPath = CutExt(dlgFile, 3, "bmp");
  std::string e;
  if (!FileExists(dlgFile)) {
    // No map file: a plain bitmap of the map first, the sea pale blue
    // (0xFFFFC0 as the window system writes colours, blue in the high byte).
    for (int x = 0; x <= d.MapMaxX; ++x)
      for (int y = 0; y <= d.MapMaxY; ++y)
        j.Picture2.SetPixel(x, y, d.HexInfo(x, y, 0) == 0 ? RGB(0xC0, 0xFF, 0xFF) : 0xFFFFFFu);
    if (!WriteBmpFile(bmpPath, j.Picture2, &e)) {
      if (err) *err = e;
      return false;
    }
  }
  Bitmap pic;
  if (!ReadBmpFile(bmpPath, pic, &e)) {
    if (err) *err = e;
    return false;
  }
  j.Picture2 = std::move(pic);
  j.Picture2Box.shown = false;
  BuildObjList(s);
  Bitmap& out = j.Picture2;
  if (view > 0) {
    for (int i = 1; i <= d.ObjCount; ++i) {
      if (d.ObjList(i, 4) != view) continue;
      const int x = d.ObjList(i, 0), y = d.ObjList(i, 1);
      if (!d.OnMap(x, y)) continue;
      const int n = d.HexCtl(x, y, 0), kind = d.HexCtl(x, y, 1);
      if (kind == 2)
        StretchBlt(out, x, y, 18, 12, b.FlagBigDC, n * 21, 0, 21, 14, SRCCOPY);
      else if (kind == 1)
        StretchBlt(out, x, y, 18, 11, b.FlagDC, n * 20, 0, 20, 13, SRCCOPY);
    }
  } else {
    for (int x = 0; x <= d.MapMaxX; ++x)
      for (int y = 0; y <= d.MapMaxY; ++y) {
        const int n = d.HexCtl(x, y, 0), kind = d.HexCtl(x, y, 1);
        if (kind == 2)
          StretchBlt(out, x, y, 16, 11, b.FlagBigDC, n * 21, 0, 21, 14, SRCCOPY);
        else if (kind == 1)
          StretchBlt(out, x, y, 16, 10, b.FlagDC, n * 20, 0, 20, 13, SRCCOPY);
      }
  }
  s.ui().Changed(Change::Form5Picture2);
  return true;
}

void DrawJumpBox(Session& s) {
  LoadForm5(s);
  const HexRect v = ViewTransform(s.ref, s.view).Visible();
  int32_t x1, y1, x2, y2;
  HexToJumpPixel(s.ref, static_cast<int16_t>(v.x1), static_cast<int16_t>(v.y1), x1, y1);
  HexToJumpPixel(s.ref, static_cast<int16_t>(v.x2), static_cast<int16_t>(v.y2), x2, y2);
  s.jump.Picture2Box = {true, x1, y1, x2, y2, static_cast<uint32_t>(s.pens.JumpBoxColour) & 0xFFFFFFu};
  s.ui().Changed(Change::Form5Picture2);
}

void JumpMapClick(Session& s, double X, double Y) {
  RefData& r = s.ref;
  ViewState& v = s.view;
  // The window system gives no point that is no number or beyond any screen.
  if (!std::isfinite(X) || !std::isfinite(Y) || std::abs(X) > 1e9 || std::abs(Y) > 1e9) return;
  s.jump.Picture2Box.shown = false;
  if (r.JumpColPitch == 0) r.JumpColPitch = 1;
  if (r.JumpRowPitch == 0) r.JumpRowPitch = 1;
  int col = static_cast<int>(std::floor(X / r.JumpColPitch));
  int row = static_cast<int>(std::floor(std::nearbyint(Y) / r.JumpRowPitch));
  v.ScrollSilent = -1;
  col -= v.ViewCols / 2;
  row -= v.ViewRows / 2;
  // Clamp as a scroll bar does: to Max first, then to Min.
  col = std::max(std::min(col, v.HScroll1.Max), v.HScroll1.Min);
  row = std::max(std::min(row, v.VScroll1.Max), v.VScroll1.Min);
  SetScrollValue(s, Bar::H, col);
  SetScrollValue(s, Bar::V, row);
  v.ViewX = col;
  v.ViewY = row;
  RedrawBuffers(s);
  v.ScrollSilent = 0;
  s.jump.ListVisible = false;
  DrawJumpBox(s);
}

void JumpMapSetFilter(Session& s, int16_t filter) {
  s.jump.JumpFilter = filter;
  DrawStrategicMap(s);
}

void JumpMapZoom(Session& s, float delta) {
  // The redraw takes the scale from the screen again.
  s.jump.JumpScale += delta;
  DrawStrategicMap(s);
}

bool SaveJumpMapImage(Session& s, const std::string& path) {
  LoadForm5(s);
  DrawStrategicMap(s);
  BuildObjList(s);
  std::string err;
  return WriteBmpFile(path, s.jump.Picture2, &err);
}

void JumpMapHexEdited(Session& s, int16_t x, int16_t y) {
  LoadForm5(s);
  JumpMapState& j = s.jump;
  j.Picture2Box.shown = false;
  if (s.doc.OnMap(x, y)) {
    j.Picture2.SetPixel(x, y, TerrainColour(s.ref, s.doc.HexInfo(x, y, 0)));
    s.ui().Changed(Change::Form5Picture2);
  }
}

void JumpMapFollowView(Session& s) {
  const ViewState& v = s.view;
  JumpMapState& j = s.jump;
  const int bx = std::max(v.ViewX - j.HScroll1.Value, 0);
  const int by = std::max(v.ViewY - j.VScroll1.Value, 0);
  j.FormBox = {true, bx, by, bx + v.ViewCols, by + v.ViewRows, 0};
  s.ui().Changed(Change::Picture2Cls);
  s.ui().Changed(Change::Form5);
}

}  // namespace kv

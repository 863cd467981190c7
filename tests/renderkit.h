// A session for drawing tests, made in memory: a small map and synthetic
// sprite sheets whose colours tell which layer put a pixel there.
//
// Every masked sheet is transparent (mask white, sprite black) except at two
// points of each cell: the layer's own probe point, and the common point
// kCommon that every overlay paints, so that the colour there is the colour
// of the last layer drawn.
#pragma once

#include <memory>

#include "platform/bitmap.h"
#include "platform/ui.h"
#include "session.h"
#include "testutil.h"
#include "view/geometry.h"
#include "view/spritebank.h"
#include "view/transform.h"

namespace kvtest {

struct Pt {
  int x, y;
};
constexpr Pt kCommon{30, 5};

// Probe points and colours of the layers.
enum Layer { kOutline, kObjective, kOil, kRoad1, kRail1 = kRoad1 + 6, kBlue = kRail1 + 6, kYellow, kContour, kLayers };
// Left of x = 45, where the next column does not overlap the cell.
inline Pt Probe(int layer) { return {3 + 3 * (layer % 13), 12 + 6 * (layer / 13)}; }
inline uint32_t LayerColour(int layer, int variant = 0) { return kv::RGB(0x80 + layer, 0x40, variant & 255); }
inline uint32_t TileColour(int t) { return kv::RGB(0x10, (t >> 8) & 255, t & 255) | 0x200000; }
inline uint32_t FlagColour(int strip, int n) { return kv::RGB(0xF0 + strip, n, 0x11); }

// Opaque at the probe point and the common point of cell (cx, cy).
inline void PaintCell(kv::Bitmap& sprite, kv::Bitmap& mask, int cx, int cy, Pt probe, uint32_t colour) {
  for (Pt p : {probe, kCommon}) {
    sprite.SetPixel(cx + p.x, cy + p.y, colour);
    mask.SetPixel(cx + p.x, cy + p.y, 0);
  }
}

inline void MaskedSheet(kv::Bitmap& sprite, kv::Bitmap& mask, int w, int h) {
  sprite.Create(w, h);
  mask.Create(w, h);
  mask.Fill(0xFFFFFF);
}

// Fills the sprite bank of s for the default cell of HexW x HexH.
inline void MakeSprites(kv::Session& s, int tiles = 64, int nations = 3) {
  kv::SpriteBank& b = s.sprites;
  const int W = s.ref.HexW, H = s.ref.HexH;
  // Tiles: the hexagon on black. The cell's corner pixel (0, 0) is outside
  // the hexagon: black in the tile, white in the knock-out mask.
  const int rows = (tiles + 15) / 16;
  b.TileSheet.Create(16 * W, rows * H);
  for (int t = 0; t < tiles; ++t) {
    b.TileSheet.FillRect((t % 16) * W, (t / 16) * H, W, H, TileColour(t));
    b.TileSheet.SetPixel((t % 16) * W, (t / 16) * H, 0);
  }
  s.ref.TileMax = static_cast<int16_t>(tiles - 1);
  b.BlackHexDC.Create(W, H);
  b.BlackHexDC.SetPixel(0, 0, 0xFFFFFF);
  MaskedSheet(b.HexLineDC, b.HexLineMaskDC, W, H);
  PaintCell(b.HexLineDC, b.HexLineMaskDC, 0, 0, Probe(kOutline), LayerColour(kOutline));
  MaskedSheet(b.FxDC, b.FxMaskDC, 9 * W, H);
  PaintCell(b.FxDC, b.FxMaskDC, 5 * W, 0, Probe(kObjective), LayerColour(kObjective));
  PaintCell(b.FxDC, b.FxMaskDC, 8 * W, 0, Probe(kOil), LayerColour(kOil));
  PaintCell(b.FxDC, b.FxMaskDC, kv::kBlueHexLeft, 0, Probe(kBlue), LayerColour(kBlue));
  if (kv::kYellowHexLeft != 5 * W)
    PaintCell(b.FxDC, b.FxMaskDC, kv::kYellowHexLeft, 0, Probe(kYellow), LayerColour(kYellow));
  MaskedSheet(b.RoadDC, b.RoadMaskDC, 6 * W, H);
  MaskedSheet(b.RailDC, b.RailMaskDC, 6 * W, H);
  for (int side = 1; side <= 6; ++side) {
    PaintCell(b.RoadDC, b.RoadMaskDC, (side - 1) * W, 0, Probe(kRoad1 + side - 1), LayerColour(kRoad1 + side - 1));
    PaintCell(b.RailDC, b.RailMaskDC, (side - 1) * W, 0, Probe(kRail1 + side - 1), LayerColour(kRail1 + side - 1));
  }
  MaskedSheet(b.ContourDC, b.ContourMaskDC, 16 * W, 4 * H);
  for (int c = 0; c < 64; ++c)
    PaintCell(b.ContourDC, b.ContourMaskDC, (c % 16) * W, (c / 16) * H, Probe(kContour), LayerColour(kContour, c));
  // Flag strips: cell n in one colour a nation.
  struct {
    kv::Bitmap* bank;
    int w, h;
  } strips[] = {{&b.FlagBigDC, 21, 14}, {&b.FlagDC, 20, 13}, {&b.FlagSmallDC, 9, 9}};
  for (int k = 0; k < 3; ++k) {
    strips[k].bank->Create((nations + 1) * strips[k].w, strips[k].h);
    for (int n = 1; n <= nations; ++n)
      strips[k].bank->FillRect(n * strips[k].w, 0, strips[k].w, strips[k].h, FlagColour(k, n));
  }
}

// Terrain colours: type t is RGB(t * 10, 100 + t, 200).
inline void MakeTerrains(kv::RefData& r, int count = 16) {
  r.TerrainMax = static_cast<int16_t>(count - 1);
  r.TerrainName.assign(count, "t");
  r.TerrainRGBData.assign(static_cast<size_t>(count) * 3, 0);
  for (int t = 0; t < count; ++t) {
    r.TerrainRGB(2, t) = static_cast<int16_t>(t * 10);
    r.TerrainRGB(1, t) = static_cast<int16_t>(100 + t);
    r.TerrainRGB(0, t) = 200;
  }
}
inline uint32_t TerrainCol(int t) { return kv::RGB(t * 10, 100 + t, 200); }

// A session over an empty program folder, with a map of the given size in
// which hex (x, y) carries tile (x + y * 7) % tiles, elevation 127 and nothing else.
struct RenderSession {
  TempDir app;
  kv::HeadlessUi ui;
  std::unique_ptr<kv::Session> sp;
  kv::Session& s;
  explicit RenderSession(int maxX = 20, int maxY = 14, int tiles = 64)
      : sp(std::make_unique<kv::Session>(app.path(), &ui)), s(*sp) {
    kv::Document& d = s.doc;
    d.MapMaxX = static_cast<int16_t>(maxX);
    d.MapMaxY = static_cast<int16_t>(maxY);
    d.AllocateAll();
    for (int x = 0; x <= maxX; ++x)
      for (int y = 0; y <= maxY; ++y) {
        d.HexTile(x, y) = static_cast<int16_t>((x + y * 7) % tiles);
        d.HexElev(x, y) = 127;
      }
    kv::FillHexPixel(s);
    MakeTerrains(s.ref);
    s.ref.NationCount = 3;
    s.ref.NationName = {"", "Avaria", "Belmont", "Corvia"};
    MakeSprites(s, tiles);
    SetView(8, 6, 0, 0);
  }
  // A view of cols + 1 by rows + 1 hexes at (vx, vy), its buffer made.
  void SetView(int cols, int rows, int vx, int vy) {
    kv::ViewState& v = s.view;
    v.ViewCols = static_cast<int16_t>(cols);
    v.ViewRows = static_cast<int16_t>(rows);
    v.ViewPixW = (cols + 1) * s.ref.ColPitch + s.ref.HexInset + 5;
    v.ViewPixH = (rows + 1) * s.ref.RowPitch + 4;
    v.ViewX = vx;
    v.ViewY = vy;
    v.HScroll1.Max = s.doc.MapMaxX - cols;
    v.VScroll1.Max = s.doc.MapMaxY - rows;
    v.HScroll1.Value = vx;
    v.VScroll1.Value = vy;
    kv::SpriteBank& b = s.sprites;
    kv::ComputeBufferSize(s, b.BufW, b.BufH);
    b.BufDC.Create(b.BufW, b.BufH);
  }
  // Buffer pixel of point p of hex (x, y)'s cell.
  uint32_t At(int x, int y, Pt p) const {
    int32_t px, py;
    kv::HexToPixel(s.ref, x, y, px, py);
    const kv::ViewTransform view(s.ref, s.view);
    return s.sprites.BufDC.GetPixel(view.BufferLeft(px) + p.x, view.BufferTop(py) + p.y);
  }
};

}  // namespace kvtest

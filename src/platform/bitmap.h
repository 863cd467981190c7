// The bitmap layer: 32-bit BGRX pixel buffers, rectangle copies under raster
// operations, stretch copies, bulk pixel access and BMP files. Everything the
// editor draws is built from these operations.
#pragma once

#include <atomic>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "platform/bytes.h"

namespace kv {

// Raster operations, with the values the drawing code passes.
constexpr uint32_t SRCCOPY = 0x00CC0020;
constexpr uint32_t SRCAND = 0x008800C6;
constexpr uint32_t SRCPAINT = 0x00EE0086;
constexpr uint32_t BLACKNESS = 0x00000000;  // "raster code 0": destination = black

// A colour as 0x00RRGGBB (the in-memory BGRX pixel read as a little-endian word).
inline uint32_t RGB(int r, int g, int b) {
  return (static_cast<uint32_t>(r & 255) << 16) | (static_cast<uint32_t>(g & 255) << 8) |
         static_cast<uint32_t>(b & 255);
}

class Bitmap {
 public:
  Bitmap() = default;
  Bitmap(int w, int h) { Create(w, h); }
  // A black bitmap of the given size (0 x 0 is allowed: an empty sheet).
  void Create(int w, int h);
  int Width() const { return w_; }
  int Height() const { return h_; }
  bool Empty() const { return w_ <= 0 || h_ <= 0; }

  // Pixels as 0x00RRGGBB words, row after row from the top. Writable access
  // counts as a change (see Generation), so take it anew for each change.
  uint32_t* Row(int y) {
    Touch();
    return px_.data() + static_cast<size_t>(y) * w_;
  }
  const uint32_t* Row(int y) const { return px_.data() + static_cast<size_t>(y) * w_; }
  std::vector<uint32_t>& Pixels() {
    Touch();
    return px_;
  }
  const std::vector<uint32_t>& Pixels() const { return px_; }

  uint32_t GetPixel(int x, int y) const;      // 0 outside the bitmap
  void SetPixel(int x, int y, uint32_t rgb);  // ignored outside
  void Fill(uint32_t rgb);
  void FillRect(int x, int y, int w, int h, uint32_t rgb);
  void Rectangle(int x1, int y1, int x2, int y2, uint32_t rgb);  // unfilled, inclusive corners
  void Line(int x1, int y1, int x2, int y2, uint32_t rgb);       // end point excluded

  // Bulk access in the byte order B, G, R, X (channel 0 blue, 1 green, 2 red,
  // 3 unused), 4 bytes a pixel, rows from the top.
  std::vector<uint8_t> GetBits() const;
  void SetBits(std::span<const uint8_t> bgrx);

  bool operator==(const Bitmap& o) const { return w_ == o.w_ && h_ == o.h_ && px_ == o.px_; }

  // A number that names the present content: it changes with every change
  // (or writable access) and is shared only by copies of the same content.
  // Lets the drawing code keep facts about a sheet's pixels between calls.
  uint64_t Generation() const { return gen_; }

 private:
  static uint64_t NextGeneration() {
    static std::atomic<uint64_t> counter{0};
    return counter.fetch_add(1, std::memory_order_relaxed) + 1;
  }
  void Touch() { gen_ = NextGeneration(); }

  uint64_t gen_ = NextGeneration();
  int w_ = 0, h_ = 0;
  std::vector<uint32_t> px_;
};

// Copies a w x h rectangle from src (sx, sy) to dst (dx, dy) under a raster
// operation. The rectangle is clipped at the edges of both bitmaps, as a
// rectangle copy between device contexts clips; src may be dst (overlapping
// copies behave as if through a temporary).
void BitBlt(Bitmap& dst, int dx, int dy, int w, int h, const Bitmap* src, int sx, int sy, uint32_t rop);

// A mask with AND at (mx, my), then a sprite with OR at (sx, sy), onto the same
// w x h rectangle of dst: the same pixels as the two copies one after the
// other, in one pass where both clip to the same rectangle.
void MaskedBlt(Bitmap& dst, int dx, int dy, int w, int h, const Bitmap& mask, int mx, int my, const Bitmap& sprite,
               int sx, int sy);

// Stretches src (sx, sy, sw, sh) onto dst (dx, dy, dw, dh) with nearest-pixel
// sampling under a raster operation. A negative sw (or dw) mirrors.
void StretchBlt(Bitmap& dst, int dx, int dy, int dw, int dh, const Bitmap& src, int sx, int sy, int sw, int sh,
                uint32_t rop);

// BMP files: reads 1, 4, 8, 16, 24 and 32 bits per pixel, bottom-up and
// top-down, uncompressed (and bit-field 16/32); writes 24 bits per pixel.
bool ReadBmp(ByteSource& in, Bitmap& out, std::string* err);
bool ReadBmpFile(const std::string& path, Bitmap& out, std::string* err);
void WriteBmp(const Bitmap& bmp, ByteSink& out);
bool WriteBmpFile(const std::string& path, const Bitmap& bmp, std::string* err);

}  // namespace kv

// The bitmap layer. Pixels are 0x00RRGGBB words, which in memory are the
// bytes B, G, R, X of a 32-bit device bitmap.
//
// BMP files are read by our own code rather than a general image library:
// we want an error text that says exactly what is wrong with a file, every
// depth of the format (1, 4, 8, 16, 24, 32 bits, core and info headers,
// bottom-up and top-down rows, bit-field masks for 16 and 32 bits), and every
// size in the headers checked against the byte count before anything is
// allocated, so that a damaged or hostile file can never make us allocate or
// read past its end.
#include "platform/bitmap.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <unordered_map>

#include "platform/fileio.h"

namespace kv {

// ---------------------------------------------------------------------------
// Pixels

void Bitmap::Create(int w, int h) {
  if (w < 0) w = 0;
  if (h < 0) h = 0;
  Touch();
  w_ = w;
  h_ = h;
  px_.assign(static_cast<size_t>(w) * static_cast<size_t>(h), 0u);
}

uint32_t Bitmap::GetPixel(int x, int y) const {
  if (x < 0 || y < 0 || x >= w_ || y >= h_) return 0;
  return px_[static_cast<size_t>(y) * w_ + x];
}

void Bitmap::SetPixel(int x, int y, uint32_t rgb) {
  if (x < 0 || y < 0 || x >= w_ || y >= h_) return;
  Touch();
  px_[static_cast<size_t>(y) * w_ + x] = rgb & 0xFFFFFFu;
}

void Bitmap::Fill(uint32_t rgb) {
  Touch();
  std::fill(px_.begin(), px_.end(), rgb & 0xFFFFFFu);
}

void Bitmap::FillRect(int x, int y, int w, int h, uint32_t rgb) {
  int x1 = std::max(x, 0), y1 = std::max(y, 0);
  int x2 = std::min<int64_t>(int64_t{x} + w, w_), y2 = std::min<int64_t>(int64_t{y} + h, h_);
  if (x1 >= x2 || y1 >= y2) return;
  for (int yy = y1; yy < y2; ++yy) std::fill(Row(yy) + x1, Row(yy) + x2, rgb & 0xFFFFFFu);
}

void Bitmap::Rectangle(int x1, int y1, int x2, int y2, uint32_t rgb) {
  if (x1 > x2) std::swap(x1, x2);
  if (y1 > y2) std::swap(y1, y2);
  for (int x = x1; x <= x2; ++x) {
    SetPixel(x, y1, rgb);
    SetPixel(x, y2, rgb);
  }
  for (int y = y1; y <= y2; ++y) {
    SetPixel(x1, y, rgb);
    SetPixel(x2, y, rgb);
  }
}

void Bitmap::Line(int x1, int y1, int x2, int y2, uint32_t rgb) {
  // Bresenham, stopping one short of the end point.
  int dx = std::abs(x2 - x1), dy = -std::abs(y2 - y1);
  int sx = x1 < x2 ? 1 : -1, sy = y1 < y2 ? 1 : -1;
  int err = dx + dy;
  int x = x1, y = y1;
  while (x != x2 || y != y2) {
    SetPixel(x, y, rgb);
    int e2 = 2 * err;
    if (e2 >= dy) {
      err += dy;
      x += sx;
    }
    if (e2 <= dx) {
      err += dx;
      y += sy;
    }
  }
}

std::vector<uint8_t> Bitmap::GetBits() const {
  std::vector<uint8_t> out(px_.size() * 4);
  if (!out.empty()) std::memcpy(out.data(), px_.data(), out.size());  // little-endian BGRX
  return out;
}

void Bitmap::SetBits(std::span<const uint8_t> bgrx) {
  Touch();
  size_t n = std::min(bgrx.size() / 4, px_.size());
  if (n) std::memcpy(px_.data(), bgrx.data(), n * 4);
}

// ---------------------------------------------------------------------------
// Rectangle copies

namespace {

// Cuts a copy of w x h from (sx, sy) to (dx, dy) to the rectangle that lies
// inside both the destination and (when there is one) the source.
bool ClipCopy(int dw, int dh, const Bitmap* src, int& dx, int& dy, int& w, int& h, int& sx, int& sy) {
  if (w <= 0 || h <= 0) return false;
  int64_t x0 = dx, y0 = dy, x1 = int64_t{dx} + w, y1 = int64_t{dy} + h;
  x0 = std::max<int64_t>(x0, 0);
  y0 = std::max<int64_t>(y0, 0);
  x1 = std::min<int64_t>(x1, dw);
  y1 = std::min<int64_t>(y1, dh);
  if (src) {
    // The source rectangle, expressed in destination coordinates.
    int64_t ox = int64_t{dx} - sx, oy = int64_t{dy} - sy;
    x0 = std::max<int64_t>(x0, ox);
    y0 = std::max<int64_t>(y0, oy);
    x1 = std::min<int64_t>(x1, ox + src->Width());
    y1 = std::min<int64_t>(y1, oy + src->Height());
  }
  if (x0 >= x1 || y0 >= y1) return false;
  sx = static_cast<int>(sx + (x0 - dx));
  sy = static_cast<int>(sy + (y0 - dy));
  dx = static_cast<int>(x0);
  dy = static_cast<int>(y0);
  w = static_cast<int>(x1 - x0);
  h = static_cast<int>(y1 - y0);
  return true;
}

// AND and OR a row at a time, 16 pixels a step through vector words (plain
// -O2 does not vectorise the simple loop), then the rest one by one.
#if defined(__GNUC__)
using Vec4 = uint32_t __attribute__((vector_size(16)));
template <bool And>
inline void CombineRow(uint32_t* d, const uint32_t* s, int n) {
  int i = 0;
  for (; i + 16 <= n; i += 16) {
    Vec4 a[4], b[4];
    std::memcpy(a, d + i, sizeof a);
    std::memcpy(b, s + i, sizeof b);
    for (int k = 0; k < 4; ++k) a[k] = And ? (a[k] & b[k]) : (a[k] | b[k]);
    std::memcpy(d + i, a, sizeof a);
  }
  for (; i + 4 <= n; i += 4) {
    Vec4 a, b;
    std::memcpy(&a, d + i, sizeof a);
    std::memcpy(&b, s + i, sizeof b);
    a = And ? (a & b) : (a | b);
    std::memcpy(d + i, &a, sizeof a);
  }
  for (; i < n; ++i) d[i] = And ? (d[i] & s[i]) : (d[i] | s[i]);
}
#else
template <bool And>
inline void CombineRow(uint32_t* d, const uint32_t* s, int n) {
  for (int i = 0; i < n; ++i) d[i] = And ? (d[i] & s[i]) : (d[i] | s[i]);
}
#endif

// d = (d AND m) OR s along a row.
#if defined(__GNUC__)
inline void MaskRow(uint32_t* d, const uint32_t* m, const uint32_t* s, int n) {
  int i = 0;
  for (; i + 8 <= n; i += 8) {
    Vec4 a[2], b[2], c[2];
    std::memcpy(a, d + i, sizeof a);
    std::memcpy(b, m + i, sizeof b);
    std::memcpy(c, s + i, sizeof c);
    for (int k = 0; k < 2; ++k) a[k] = (a[k] & b[k]) | c[k];
    std::memcpy(d + i, a, sizeof a);
  }
  for (; i < n; ++i) d[i] = (d[i] & m[i]) | s[i];
}
#else
inline void MaskRow(uint32_t* d, const uint32_t* m, const uint32_t* s, int n) {
  for (int i = 0; i < n; ++i) d[i] = (d[i] & m[i]) | s[i];
}
#endif

inline void RowOp(uint32_t* d, const uint32_t* s, int n, uint32_t rop) {
  switch (rop) {
    case SRCCOPY: std::memmove(d, s, static_cast<size_t>(n) * 4); break;
    case SRCAND: CombineRow<true>(d, s, n); break;
    case SRCPAINT: CombineRow<false>(d, s, n); break;
    default: break;
  }
}

}  // namespace

void BitBlt(Bitmap& dst, int dx, int dy, int w, int h, const Bitmap* src, int sx, int sy, uint32_t rop) {
  if (rop == BLACKNESS) {
    if (!ClipCopy(dst.Width(), dst.Height(), nullptr, dx, dy, w, h, sx, sy)) return;
    dst.FillRect(dx, dy, w, h, 0);
    return;
  }
  if (!src || (rop != SRCCOPY && rop != SRCAND && rop != SRCPAINT)) return;
  if (!ClipCopy(dst.Width(), dst.Height(), src, dx, dy, w, h, sx, sy)) return;
  if (src == &dst) {
    bool overlap = dx < sx + w && sx < dx + w && dy < sy + h && sy < dy + h;
    if (overlap && (dx != sx || dy != sy)) {
      if (dy != sy || rop == SRCCOPY) {
        // Rows do not overlap (different y) or memmove handles the row:
        // walk rows away from the overlap.
        if (dy > sy) {
          for (int r = h - 1; r >= 0; --r) RowOp(dst.Row(dy + r) + dx, dst.Row(sy + r) + sx, w, rop);
        } else {
          for (int r = 0; r < h; ++r) RowOp(dst.Row(dy + r) + dx, dst.Row(sy + r) + sx, w, rop);
        }
        return;
      }
      // Same rows, sideways, AND or OR: through a temporary row.
      std::vector<uint32_t> tmp(static_cast<size_t>(w));
      for (int r = 0; r < h; ++r) {
        std::memcpy(tmp.data(), dst.Row(sy + r) + sx, static_cast<size_t>(w) * 4);
        RowOp(dst.Row(dy + r) + dx, tmp.data(), w, rop);
      }
      return;
    }
  }
  uint32_t* d = dst.Row(dy) + dx;
  const uint32_t* sp = src->Row(sy) + sx;
  const size_t ds = static_cast<size_t>(dst.Width()), ss = static_cast<size_t>(src->Width());
  switch (rop) {
    case SRCCOPY:
      for (int r = 0; r < h; ++r, d += ds, sp += ss) std::memcpy(d, sp, static_cast<size_t>(w) * 4);
      break;
    case SRCAND:
      for (int r = 0; r < h; ++r, d += ds, sp += ss) CombineRow<true>(d, sp, w);
      break;
    default:
      for (int r = 0; r < h; ++r, d += ds, sp += ss) CombineRow<false>(d, sp, w);
      break;
  }
}

namespace {

// Where a mask and sprite rectangle change anything: per row, the columns from
// the first to the last pixel whose mask is not white or whose sprite is not
// black. Elsewhere (dst AND white) OR black leaves the colour as it is, so the
// copy skips it. Kept per content of the two sheets (their generations).
struct SpanKey {
  uint64_t maskGen, spriteGen;
  int mx, my, sx, sy, w, h;
  bool operator==(const SpanKey&) const = default;
};
struct SpanKeyHash {
  size_t operator()(const SpanKey& k) const {
    uint64_t v = k.maskGen * 0x9E3779B97F4A7C15ull ^ k.spriteGen;
    for (int p : {k.mx, k.my, k.sx, k.sy, k.w, k.h}) v = (v ^ static_cast<uint32_t>(p)) * 0x100000001B3ull;
    return static_cast<size_t>(v ^ (v >> 29));
  }
};
using RowSpans = std::vector<std::pair<int, int>>;  // [first, end) a row, first == end: none

const RowSpans& ActiveSpans(const Bitmap& mask, int mx, int my, const Bitmap& sprite, int sx, int sy, int w, int h) {
  thread_local std::unordered_map<SpanKey, RowSpans, SpanKeyHash> cache;
  const SpanKey key{mask.Generation(), sprite.Generation(), mx, my, sx, sy, w, h};
  if (auto it = cache.find(key); it != cache.end()) return it->second;
  if (cache.size() > 4096) cache.clear();
  RowSpans spans(static_cast<size_t>(h), {0, 0});
  for (int r = 0; r < h; ++r) {
    const uint32_t* m = mask.Row(my + r) + mx;
    const uint32_t* sp = sprite.Row(sy + r) + sx;
    int first = -1, last = -1;
    for (int c = 0; c < w; ++c)
      if ((m[c] & 0xFFFFFFu) != 0xFFFFFFu || sp[c] != 0) {
        if (first < 0) first = c;
        last = c;
      }
    if (first >= 0) spans[static_cast<size_t>(r)] = {first, last + 1};
  }
  return cache.emplace(key, std::move(spans)).first->second;
}

}  // namespace

void MaskedBlt(Bitmap& dst, int dx, int dy, int w, int h, const Bitmap& mask, int mx, int my, const Bitmap& sprite,
               int sx, int sy) {
  int ax = dx, ay = dy, aw = w, ah = h, amx = mx, amy = my;
  int bx = dx, by = dy, bw = w, bh = h, bsx = sx, bsy = sy;
  const bool a = ClipCopy(dst.Width(), dst.Height(), &mask, ax, ay, aw, ah, amx, amy);
  const bool b = ClipCopy(dst.Width(), dst.Height(), &sprite, bx, by, bw, bh, bsx, bsy);
  if (!a || !b || ax != bx || ay != by || aw != bw || ah != bh || &mask == &dst || &sprite == &dst) {
    // The two copies clip differently (or one reads the destination): one after the other.
    BitBlt(dst, dx, dy, w, h, &mask, mx, my, SRCAND);
    BitBlt(dst, dx, dy, w, h, &sprite, sx, sy, SRCPAINT);
    return;
  }
  const size_t ds = static_cast<size_t>(dst.Width()), ms = static_cast<size_t>(mask.Width()),
               ss = static_cast<size_t>(sprite.Width());
  uint32_t* d = dst.Row(ay) + ax;
  const uint32_t* m = mask.Row(amy) + amx;
  const uint32_t* sp = sprite.Row(bsy) + bsx;
  const bool whole = mx >= 0 && my >= 0 && sx >= 0 && sy >= 0 && w > 0 && h > 0 && int64_t{mx} + w <= mask.Width() &&
                     int64_t{my} + h <= mask.Height() && int64_t{sx} + w <= sprite.Width() &&
                     int64_t{sy} + h <= sprite.Height();
  if (!whole) {
    for (int r = 0; r < ah; ++r, d += ds, m += ms, sp += ss) MaskRow(d, m, sp, aw);
    return;
  }
  // Both sources hold the whole rectangle: only the changing spans of each row.
  const RowSpans& spans = ActiveSpans(mask, mx, my, sprite, sx, sy, w, h);
  const int offX = ax - dx, offY = ay - dy;
  for (int r = 0; r < ah; ++r, d += ds, m += ms, sp += ss) {
    const auto [f, e] = spans[static_cast<size_t>(offY) + static_cast<size_t>(r)];
    const int c0 = std::max(f, offX) - offX, c1 = std::min(e, offX + aw) - offX;
    if (c0 < c1) MaskRow(d + c0, m + c0, sp + c0, c1 - c0);
  }
}

void StretchBlt(Bitmap& dst, int dx, int dy, int dw, int dh, const Bitmap& src, int sx, int sy, int sw, int sh,
                uint32_t rop) {
  if (dw == 0 || dh == 0 || sw == 0 || sh == 0) return;
  if (rop != SRCCOPY && rop != SRCAND && rop != SRCPAINT && rop != BLACKNESS) return;
  // A rectangle with a negative extent runs from x + w up to x (exclusive),
  // and is walked from its far end: that is the mirror.
  bool mirrorX = (sw < 0) != (dw < 0), mirrorY = (sh < 0) != (dh < 0);
  int dx0 = dw < 0 ? dx + dw : dx, dy0 = dh < 0 ? dy + dh : dy;
  int sx0 = sw < 0 ? sx + sw : sx, sy0 = sh < 0 ? sy + sh : sy;
  int adw = std::abs(dw), adh = std::abs(dh), asw = std::abs(sw), ash = std::abs(sh);
  if (rop == BLACKNESS) {
    dst.FillRect(dx0, dy0, adw, adh, 0);
    return;
  }
  // Nearest source pixel for each destination column, sampled at centres.
  std::vector<int> col(static_cast<size_t>(adw));
  for (int i = 0; i < adw; ++i) {
    int k = static_cast<int>((int64_t{2} * i + 1) * asw / (int64_t{2} * adw));
    col[i] = sx0 + (mirrorX ? asw - 1 - k : k);
  }
  const Bitmap* from = &src;
  Bitmap copy;
  if (&src == &dst) {
    copy = src;
    from = &copy;
  }
  for (int j = 0; j < adh; ++j) {
    int y = dy0 + j;
    if (y < 0 || y >= dst.Height()) continue;
    int k = static_cast<int>((int64_t{2} * j + 1) * ash / (int64_t{2} * adh));
    int syy = sy0 + (mirrorY ? ash - 1 - k : k);
    if (syy < 0 || syy >= from->Height()) continue;
    uint32_t* d = dst.Row(y);
    const uint32_t* s = from->Row(syy);
    for (int i = 0; i < adw; ++i) {
      int x = dx0 + i, c = col[i];
      if (x < 0 || x >= dst.Width() || c < 0 || c >= from->Width()) continue;
      if (rop == SRCCOPY)
        d[x] = s[c];
      else if (rop == SRCAND)
        d[x] &= s[c];
      else
        d[x] |= s[c];
    }
  }
}

// ---------------------------------------------------------------------------
// BMP files

namespace {

constexpr int kMaxSide = 1 << 20;  // wider or taller than this is not a picture we make

bool Fail(std::string* err, const std::string& what) {
  if (err) *err = what;
  return false;
}

uint16_t U16(const uint8_t* p) { return static_cast<uint16_t>(p[0] | (p[1] << 8)); }
uint32_t U32(const uint8_t* p) {
  return static_cast<uint32_t>(p[0]) | (static_cast<uint32_t>(p[1]) << 8) | (static_cast<uint32_t>(p[2]) << 16) |
         (static_cast<uint32_t>(p[3]) << 24);
}

// Extracts one channel under a bit-field mask, scaled to 0..255.
struct Channel {
  uint32_t mask = 0;
  int shift = 0, bits = 0;
  explicit Channel(uint32_t m = 0) : mask(m) {
    if (!m) return;
    while (!((m >> shift) & 1)) ++shift;
    // A mask reaching the top bit must stop there: a shift by 32 is undefined.
    while (shift + bits < 32 && ((m >> (shift + bits)) & 1)) ++bits;
  }
  uint32_t Get(uint32_t v) const {
    if (!mask) return 0;
    uint32_t x = (v & mask) >> shift;
    if (bits >= 8) return x >> (bits - 8);
    uint32_t max = (1u << bits) - 1;
    return (x * 255 + max / 2) / max;
  }
};

}  // namespace

bool ReadBmp(ByteSource& in, Bitmap& out, std::string* err) {
  const uint64_t total = in.size();
  const uint64_t start = in.pos();
  uint8_t fh[14];
  if (in.remaining() < 14 || !in.read(fh, 14)) return Fail(err, "not a BMP file: shorter than its file header");
  if (fh[0] != 'B' || fh[1] != 'M') return Fail(err, "not a BMP file: it does not begin with BM");
  uint32_t offBits = U32(fh + 10);

  uint8_t sizeBytes[4];
  if (in.remaining() < 4 || !in.read(sizeBytes, 4))
    return Fail(err, "damaged BMP file: the picture header is cut short");
  uint32_t hsize = U32(sizeBytes);
  if (hsize != 12 && hsize != 16 && hsize < 40)
    return Fail(err, "unsupported BMP header of " + std::to_string(hsize) + " bytes");
  if (hsize > 1024 || hsize - 4 > in.remaining())
    return Fail(err, "damaged BMP file: the picture header is longer than the file");
  std::vector<uint8_t> h(hsize);
  std::memcpy(h.data(), sizeBytes, 4);
  if (!in.read(h.data() + 4, hsize - 4)) return Fail(err, "damaged BMP file: the picture header is cut short");

  int64_t width, height;
  int bpp;
  uint32_t compression = 0, clrUsed = 0;
  bool core = hsize == 12;
  if (core) {
    width = U16(&h[4]);
    height = static_cast<int16_t>(U16(&h[6]));
    bpp = U16(&h[10]);
  } else {
    width = static_cast<int32_t>(U32(&h[4]));
    height = static_cast<int32_t>(U32(&h[8]));
    bpp = U16(&h[14]);
    if (hsize >= 40) {
      compression = U32(&h[16]);
      clrUsed = U32(&h[32]);
    }
  }
  bool topDown = height < 0;
  if (topDown) height = -height;
  if (width <= 0 || height <= 0)
    return Fail(err, "damaged BMP file: the picture has no pixels (" + std::to_string(width) + " x " +
                         std::to_string(height) + ")");
  if (width > kMaxSide || height > kMaxSide)
    return Fail(err, "BMP picture too large: " + std::to_string(width) + " x " + std::to_string(height));
  if (bpp != 1 && bpp != 4 && bpp != 8 && bpp != 16 && bpp != 24 && bpp != 32)
    return Fail(err, "unsupported BMP depth of " + std::to_string(bpp) + " bits per pixel");
  switch (compression) {
    case 0: break;
    case 3:
    case 6:
      if (bpp != 16 && bpp != 32)
        return Fail(err, "damaged BMP file: bit-field masks with " + std::to_string(bpp) + " bits per pixel");
      break;
    case 1:
    case 2:
      return Fail(err, "unsupported BMP compression: run-length encoded (RLE" +
                           std::string(compression == 1 ? "8" : "4") + ")");
    case 4: return Fail(err, "unsupported BMP compression: JPEG inside a BMP");
    case 5: return Fail(err, "unsupported BMP compression: PNG inside a BMP");
    default: return Fail(err, "unsupported BMP compression code " + std::to_string(compression));
  }

  // Bit-field masks: inside a longer header, or just after a 40-byte one.
  uint32_t masks[3] = {0, 0, 0};
  if (compression == 3 || compression == 6) {
    if (hsize >= 52) {
      masks[0] = U32(&h[40]);
      masks[1] = U32(&h[44]);
      masks[2] = U32(&h[48]);
    } else {
      size_t n = compression == 6 ? 16 : 12;
      uint8_t m[16];
      if (in.remaining() < n || !in.read(m, n)) return Fail(err, "damaged BMP file: the bit-field masks are cut short");
      masks[0] = U32(m);
      masks[1] = U32(m + 4);
      masks[2] = U32(m + 8);
    }
  } else if (bpp == 16) {
    masks[0] = 0x7C00;
    masks[1] = 0x03E0;
    masks[2] = 0x001F;
  } else if (bpp == 32) {
    masks[0] = 0xFF0000;
    masks[1] = 0x00FF00;
    masks[2] = 0x0000FF;
  }

  // Colour table of the palette depths.
  std::vector<uint32_t> palette;
  if (bpp <= 8) {
    uint32_t maxColours = 1u << bpp;
    uint32_t n = clrUsed ? clrUsed : maxColours;
    if (n > 256) return Fail(err, "damaged BMP file: a colour table of " + std::to_string(n) + " entries");
    size_t entry = core ? 3 : 4;
    // Without a count the table holds as many entries as fit before the
    // pixels, at most one for each value of a pixel.
    if (!clrUsed && offBits > in.pos() - start) {
      uint64_t room = (start + offBits - in.pos()) / entry;
      if (room < n) n = static_cast<uint32_t>(room);
    }
    if (n * entry > in.remaining())
      return Fail(err, "damaged BMP file: the colour table runs past the end of the file");
    std::vector<uint8_t> t(n * entry);
    if (!in.read(t.data(), t.size())) return Fail(err, "damaged BMP file: the colour table is cut short");
    palette.resize(n);
    for (uint32_t i = 0; i < n; ++i) palette[i] = RGB(t[i * entry + 2], t[i * entry + 1], t[i * entry]);
  }

  uint64_t stride = ((static_cast<uint64_t>(width) * bpp + 31) / 32) * 4;
  uint64_t need = stride * static_cast<uint64_t>(height);
  uint64_t dataAt = start + offBits;
  if (offBits == 0 || dataAt > total || need > total - dataAt)
    return Fail(err, "damaged BMP file: the pixels need " + std::to_string(need) + " bytes but the file holds " +
                         std::to_string(dataAt > total ? 0 : total - dataAt) + " after their start");
  if (!in.seek(dataAt)) return Fail(err, "damaged BMP file: cannot reach the pixel data");

  Bitmap bmp(static_cast<int>(width), static_cast<int>(height));
  std::vector<uint8_t> row(static_cast<size_t>(stride));
  Channel cr(masks[0]), cg(masks[1]), cb(masks[2]);
  const int w = static_cast<int>(width);
  for (int64_t r = 0; r < height; ++r) {
    if (!in.read(row.data(), row.size())) return Fail(err, "damaged BMP file: the pixels are cut short");
    int y = static_cast<int>(topDown ? r : height - 1 - r);
    uint32_t* d = bmp.Row(y);
    const uint8_t* p = row.data();
    auto pal = [&](uint32_t i) { return i < palette.size() ? palette[i] : 0u; };
    switch (bpp) {
      case 1:
        for (int x = 0; x < w; ++x) d[x] = pal((p[x >> 3] >> (7 - (x & 7))) & 1);
        break;
      case 4:
        for (int x = 0; x < w; ++x) d[x] = pal((p[x >> 1] >> ((x & 1) ? 0 : 4)) & 15);
        break;
      case 8:
        for (int x = 0; x < w; ++x) d[x] = pal(p[x]);
        break;
      case 16:
        for (int x = 0; x < w; ++x) {
          uint32_t v = U16(p + 2 * x);
          d[x] = (cr.Get(v) << 16) | (cg.Get(v) << 8) | cb.Get(v);
        }
        break;
      case 24:
        for (int x = 0; x < w; ++x) d[x] = RGB(p[3 * x + 2], p[3 * x + 1], p[3 * x]);
        break;
      case 32:
        if (compression == 0) {
          for (int x = 0; x < w; ++x) d[x] = U32(p + 4 * x) & 0xFFFFFFu;
        } else {
          for (int x = 0; x < w; ++x) {
            uint32_t v = U32(p + 4 * x);
            d[x] = (cr.Get(v) << 16) | (cg.Get(v) << 8) | cb.Get(v);
          }
        }
        break;
    }
  }
  out = std::move(bmp);
  return true;
}

bool ReadBmpFile(const std::string& path, Bitmap& out, std::string* err) {
  FileSource f;
  std::string e;
  if (!f.open(path, &e)) return Fail(err, e.empty() ? "cannot open " + path : e);
  if (!ReadBmp(f, out, &e)) return Fail(err, path + ": " + e);
  return true;
}

void WriteBmp(const Bitmap& bmp, ByteSink& out) {
  const int w = bmp.Width(), h = bmp.Height();
  const uint32_t stride = ((static_cast<uint32_t>(w) * 24 + 31) / 32) * 4;
  const uint32_t image = stride * static_cast<uint32_t>(h);
  uint8_t hdr[54] = {};
  auto put16 = [&](int at, uint32_t v) {
    hdr[at] = v & 255;
    hdr[at + 1] = (v >> 8) & 255;
  };
  auto put32 = [&](int at, uint32_t v) {
    put16(at, v & 0xFFFF);
    put16(at + 2, v >> 16);
  };
  hdr[0] = 'B';
  hdr[1] = 'M';
  put32(2, 54 + image);
  put32(10, 54);
  put32(14, 40);
  put32(18, static_cast<uint32_t>(w));
  put32(22, static_cast<uint32_t>(h));
  put16(26, 1);
  put16(28, 24);
  put32(34, image);
  put32(38, 3780);  // 96 dots per inch
  put32(42, 3780);
  out.write(hdr, sizeof hdr);
  std::vector<uint8_t> row(stride, 0);
  for (int y = h - 1; y >= 0; --y) {
    const uint32_t* s = bmp.Row(y);
    for (int x = 0; x < w; ++x) {
      row[3 * x] = s[x] & 255;
      row[3 * x + 1] = (s[x] >> 8) & 255;
      row[3 * x + 2] = (s[x] >> 16) & 255;
    }
    out.write(row.data(), row.size());
  }
}

bool WriteBmpFile(const std::string& path, const Bitmap& bmp, std::string* err) {
  SafeFileWriter f(path);
  WriteBmp(bmp, f);
  if (!f.commit()) return Fail(err, f.error().empty() ? "cannot write " + path : f.error());
  return true;
}

}  // namespace kv

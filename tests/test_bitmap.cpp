// The bitmap layer: raster operations, clipping, stretching, bulk access and
// BMP files of every depth, all on small bitmaps built here.
#include <cstring>

#include <gtest/gtest.h>

#include "platform/bitmap.h"
#include "platform/bytes.h"
#include "testutil.h"

using namespace kv;

namespace {

// A bitmap whose pixel (x, y) is the number 0x010000 * (y + 1) + (x + 1): every
// pixel tells where it came from.
Bitmap Numbered(int w, int h) {
  Bitmap b(w, h);
  for (int y = 0; y < h; ++y)
    for (int x = 0; x < w; ++x) b.SetPixel(x, y, 0x10000u * (y + 1) + (x + 1));
  return b;
}
uint32_t Num(int x, int y) { return 0x10000u * (y + 1) + (x + 1); }

}  // namespace

TEST(Bitmap, RasterOperationsCombinePixels) {
  Bitmap src(2, 1), dst(2, 1);
  src.SetPixel(0, 0, 0x0F0F0F);
  src.SetPixel(1, 0, 0xFFFFFF);
  dst.Fill(0x3C3C3C);
  Bitmap a = dst;
  BitBlt(a, 0, 0, 2, 1, &src, 0, 0, SRCAND);
  EXPECT_EQ(a.GetPixel(0, 0), 0x0C0C0Cu);
  EXPECT_EQ(a.GetPixel(1, 0), 0x3C3C3Cu);
  Bitmap o = dst;
  BitBlt(o, 0, 0, 2, 1, &src, 0, 0, SRCPAINT);
  EXPECT_EQ(o.GetPixel(0, 0), 0x3F3F3Fu);
  EXPECT_EQ(o.GetPixel(1, 0), 0xFFFFFFu);
  Bitmap c = dst;
  BitBlt(c, 1, 0, 1, 1, &src, 0, 0, SRCCOPY);
  EXPECT_EQ(c.GetPixel(0, 0), 0x3C3C3Cu);
  EXPECT_EQ(c.GetPixel(1, 0), 0x0F0F0Fu);
  Bitmap k = dst;
  BitBlt(k, 1, 0, 5, 5, nullptr, 0, 0, BLACKNESS);  // no source needed, clipped at the edge
  EXPECT_EQ(k.GetPixel(0, 0), 0x3C3C3Cu);
  EXPECT_EQ(k.GetPixel(1, 0), 0u);
}

TEST(Bitmap, MaskThenSpritePaintsOnlyTheSprite) {
  // Sprite on black, mask white where transparent: the usual two copies.
  Bitmap sprite(3, 1), mask(3, 1), dst(3, 1);
  sprite.SetPixel(1, 0, 0x123456);
  mask.Fill(0xFFFFFF);
  mask.SetPixel(1, 0, 0);
  dst.Fill(0xA0B0C0);
  BitBlt(dst, 0, 0, 3, 1, &mask, 0, 0, SRCAND);
  BitBlt(dst, 0, 0, 3, 1, &sprite, 0, 0, SRCPAINT);
  EXPECT_EQ(dst.GetPixel(0, 0), 0xA0B0C0u);
  EXPECT_EQ(dst.GetPixel(1, 0), 0x123456u);
  EXPECT_EQ(dst.GetPixel(2, 0), 0xA0B0C0u);
}

TEST(Bitmap, MaskedCopyEqualsTheTwoCopiesWhereverItClips) {
  // Random-looking masks and sprites of different sizes, placed across every
  // edge of the destination and of both sources.
  Bitmap mask = Numbered(23, 9), sprite = Numbered(19, 12);
  for (int y = 0; y < mask.Height(); ++y)
    for (int x = 0; x < mask.Width(); ++x) mask.SetPixel(x, y, ((x * 7 + y * 3) % 5) ? 0xFFFFFFu : 0u);
  for (int y = 0; y < sprite.Height(); ++y)
    for (int x = 0; x < sprite.Width(); ++x) sprite.SetPixel(x, y, ((x * 5 + y) % 3) ? 0u : Num(x, y) * 97u);
  const Bitmap start = Numbered(31, 17);
  int differentClips = 0;
  for (int dx = -25; dx <= 30; dx += 5)
    for (int dy = -11; dy <= 16; dy += 3)
      for (int sx : {-3, 0, 4})
        for (int my : {-2, 0, 3})
          for (int w : {1, 8, 17, 40}) {
            Bitmap fused = start, twice = start;
            MaskedBlt(fused, dx, dy, w, 7, mask, 2, my, sprite, sx, 1);
            BitBlt(twice, dx, dy, w, 7, &mask, 2, my, SRCAND);
            BitBlt(twice, dx, dy, w, 7, &sprite, sx, 1, SRCPAINT);
            ASSERT_EQ(fused, twice) << dx << "," << dy << " sx " << sx << " my " << my << " w " << w;
            if (sx != 0 || my != 0) ++differentClips;
          }
  EXPECT_GT(differentClips, 0);
}

TEST(Bitmap, MaskedCopySeesEveryChangeOfItsSheets) {
  // The copy remembers where a mask and sprite change anything; each way of
  // changing a sheet must make it look again.
  Bitmap mask(8, 4), sprite(8, 4);
  mask.Fill(0xFFFFFF);
  const Bitmap start = Numbered(8, 4);
  auto check = [&](const char* what) {
    Bitmap fused = start, twice = start;
    MaskedBlt(fused, 0, 0, 8, 4, mask, 0, 0, sprite, 0, 0);
    BitBlt(twice, 0, 0, 8, 4, &mask, 0, 0, SRCAND);
    BitBlt(twice, 0, 0, 8, 4, &sprite, 0, 0, SRCPAINT);
    EXPECT_EQ(fused, twice) << what;
  };
  check("all clear");
  sprite.SetPixel(6, 3, 0x00FF00);
  check("SetPixel");
  mask.FillRect(1, 1, 2, 2, 0);
  check("FillRect");
  mask.Row(0)[7] = 0x0000FF;
  check("Row");
  sprite.Pixels()[0] = 0x123456;
  check("Pixels");
  std::vector<uint8_t> bits(8 * 4 * 4, 0);
  bits[4 * 10] = 0xFF;
  sprite.SetBits(bits);
  check("SetBits");
  Bitmap other(8, 4);
  other.Fill(0x00FF00);
  sprite = other;  // a copy carries its source's content and generation
  check("assignment");
  sprite.Create(8, 4);
  mask.Fill(0);
  check("Create and Fill");
}

TEST(Bitmap, CopyClipsAtBothBitmapsEdges) {
  Bitmap src = Numbered(4, 3);
  // Destination partly off its top left: only the part inside lands, and it
  // is the matching part of the source.
  Bitmap d1(3, 3);
  d1.Fill(0xEEEEEE);
  BitBlt(d1, -1, -2, 4, 3, &src, 0, 0, SRCCOPY);
  EXPECT_EQ(d1.GetPixel(0, 0), Num(1, 2));
  EXPECT_EQ(d1.GetPixel(2, 0), Num(3, 2));
  EXPECT_EQ(d1.GetPixel(0, 1), 0xEEEEEEu);
  // Source rectangle off the source's bottom right: destination pixels beyond
  // the source stay as they were.
  Bitmap d2(4, 4);
  d2.Fill(0xEEEEEE);
  BitBlt(d2, 0, 0, 4, 4, &src, 2, 1, SRCCOPY);
  EXPECT_EQ(d2.GetPixel(0, 0), Num(2, 1));
  EXPECT_EQ(d2.GetPixel(1, 1), Num(3, 2));
  EXPECT_EQ(d2.GetPixel(2, 0), 0xEEEEEEu);
  EXPECT_EQ(d2.GetPixel(0, 2), 0xEEEEEEu);
  // Negative source origin: the destination is shifted to match.
  Bitmap d3(4, 3);
  d3.Fill(0xEEEEEE);
  BitBlt(d3, 0, 0, 4, 3, &src, -1, -1, SRCCOPY);
  EXPECT_EQ(d3.GetPixel(0, 0), 0xEEEEEEu);
  EXPECT_EQ(d3.GetPixel(1, 1), Num(0, 0));
  EXPECT_EQ(d3.GetPixel(3, 2), Num(2, 1));
  // Nothing at all: zero sizes, wholly outside, empty bitmaps.
  Bitmap d4 = Numbered(2, 2), before = d4;
  BitBlt(d4, 5, 5, 2, 2, &src, 0, 0, SRCCOPY);
  BitBlt(d4, 0, 0, 0, 2, &src, 0, 0, SRCCOPY);
  BitBlt(d4, 0, 0, -2, 2, &src, 0, 0, SRCCOPY);
  Bitmap empty;
  BitBlt(d4, 0, 0, 2, 2, &empty, 0, 0, SRCCOPY);
  BitBlt(empty, 0, 0, 2, 2, &src, 0, 0, SRCCOPY);
  EXPECT_EQ(d4, before);
}

TEST(Bitmap, OverlappingCopyWithinOneBitmapActsAsThroughATemporary) {
  for (int dx = -2; dx <= 2; ++dx)
    for (int dy = -2; dy <= 2; ++dy)
      for (uint32_t rop : {SRCCOPY, SRCAND, SRCPAINT}) {
        Bitmap b = Numbered(6, 5), copy = b, expect = b;
        BitBlt(b, 1 + dx, 1 + dy, 4, 3, &b, 1, 1, rop);
        BitBlt(expect, 1 + dx, 1 + dy, 4, 3, &copy, 1, 1, rop);
        EXPECT_EQ(b, expect) << dx << "," << dy << " rop " << rop;
      }
}

TEST(Bitmap, StretchScalesAndMirrors) {
  Bitmap src = Numbered(2, 2);
  Bitmap big(4, 4);
  StretchBlt(big, 0, 0, 4, 4, src, 0, 0, 2, 2, SRCCOPY);
  EXPECT_EQ(big.GetPixel(0, 0), Num(0, 0));
  EXPECT_EQ(big.GetPixel(1, 1), Num(0, 0));
  EXPECT_EQ(big.GetPixel(2, 1), Num(1, 0));
  EXPECT_EQ(big.GetPixel(3, 3), Num(1, 1));
  Bitmap small(2, 1);
  StretchBlt(small, 0, 0, 2, 1, Numbered(4, 2), 0, 0, 4, 2, SRCCOPY);
  EXPECT_EQ(small.GetPixel(0, 0), Num(1, 1));  // nearest at the centre of each cell
  EXPECT_EQ(small.GetPixel(1, 0), Num(3, 1));

  // A negative source width takes the columns left of sx, right to left.
  Bitmap strip = Numbered(6, 1), m(3, 1);
  StretchBlt(m, 0, 0, 3, 1, strip, 4, 0, -3, 1, SRCCOPY);
  EXPECT_EQ(m.GetPixel(0, 0), Num(3, 0));
  EXPECT_EQ(m.GetPixel(1, 0), Num(2, 0));
  EXPECT_EQ(m.GetPixel(2, 0), Num(1, 0));
  // The same size unmirrored is a plain copy; a mirrored destination as well.
  Bitmap p(3, 1), q(3, 1);
  StretchBlt(p, 0, 0, 3, 1, strip, 1, 0, 3, 1, SRCCOPY);
  StretchBlt(q, 3, 0, -3, 1, strip, 1, 0, 3, 1, SRCCOPY);
  EXPECT_EQ(p.GetPixel(0, 0), Num(1, 0));
  EXPECT_EQ(q, m);
  // Raster operations and clipping apply as for rectangle copies.
  Bitmap r(2, 2);
  r.Fill(0xFFFFFF);
  StretchBlt(r, -1, 0, 4, 4, src, 0, 0, 2, 2, SRCAND);
  EXPECT_EQ(r.GetPixel(0, 0), Num(0, 0));
  EXPECT_EQ(r.GetPixel(1, 0), Num(1, 0));
  EXPECT_EQ(r.GetPixel(1, 1), Num(1, 0));
}

TEST(Bitmap, BulkBitsAreBlueGreenRedUnused) {
  Bitmap b(2, 1);
  b.SetPixel(0, 0, RGB(10, 20, 30));
  b.SetPixel(1, 0, RGB(40, 50, 60));
  std::vector<uint8_t> bits = b.GetBits();
  ASSERT_EQ(bits.size(), 8u);
  EXPECT_EQ(bits[0], 30);
  EXPECT_EQ(bits[1], 20);
  EXPECT_EQ(bits[2], 10);
  EXPECT_EQ(bits[6], 40);
  bits[2] = 99;
  b.SetBits(bits);
  EXPECT_EQ(b.GetPixel(0, 0), RGB(99, 20, 30));
}

TEST(Bitmap, DrawingPrimitives) {
  Bitmap b(5, 5);
  b.Line(0, 0, 4, 0, 1);  // end point excluded
  EXPECT_EQ(b.GetPixel(3, 0), 1u);
  EXPECT_EQ(b.GetPixel(4, 0), 0u);
  b.Line(0, 1, 3, 4, 2);
  EXPECT_EQ(b.GetPixel(2, 3), 2u);
  EXPECT_EQ(b.GetPixel(3, 4), 0u);
  Bitmap r(5, 5);
  r.Rectangle(3, 3, 1, 1, 7);  // corners in any order, both included, not filled
  EXPECT_EQ(r.GetPixel(1, 1), 7u);
  EXPECT_EQ(r.GetPixel(3, 3), 7u);
  EXPECT_EQ(r.GetPixel(2, 2), 0u);
  EXPECT_EQ(r.GetPixel(4, 4), 0u);
  r.FillRect(-3, -3, 5, 5, 9);
  EXPECT_EQ(r.GetPixel(1, 1), 9u);
  EXPECT_EQ(r.GetPixel(2, 1), 7u);
  r.SetPixel(-1, 0, 5);  // ignored
  EXPECT_EQ(r.GetPixel(-1, 0), 0u);
}

// ---------------------------------------------------------------------------
// BMP files, built byte by byte.

namespace {

struct BmpBuilder {
  int w = 3, h = 2, bpp = 24;
  bool topDown = false;
  uint32_t compression = 0;
  uint32_t headerSize = 40;
  std::vector<uint32_t> masks;    // written after a 40-byte header or inside a longer one
  std::vector<uint32_t> palette;  // 0x00RRGGBB
  // Packed pixel bits per row, top row first, without padding.
  std::vector<std::vector<uint8_t>> rows;

  std::vector<uint8_t> Build() const {
    std::vector<uint8_t> b;
    auto p8 = [&](uint8_t v) { b.push_back(v); };
    auto p16 = [&](uint32_t v) {
      p8(v & 255);
      p8((v >> 8) & 255);
    };
    auto p32 = [&](uint32_t v) {
      p16(v & 0xFFFF);
      p16(v >> 16);
    };
    size_t stride = ((size_t(w) * bpp + 31) / 32) * 4;
    bool core = headerSize == 12;
    size_t extraMasks = (headerSize == 40 && !masks.empty()) ? masks.size() * 4 : 0;
    size_t pal = palette.size() * (core ? 3 : 4);
    uint32_t off = uint32_t(14 + headerSize + extraMasks + pal);
    p8('B');
    p8('M');
    p32(off + uint32_t(stride * h));
    p32(0);
    p32(off);
    p32(headerSize);
    if (core) {
      p16(w);
      p16(h);
      p16(1);
      p16(bpp);
    } else {
      p32(uint32_t(w));
      p32(uint32_t(topDown ? -h : h));
      p16(1);
      p16(bpp);
      p32(compression);
      p32(uint32_t(stride * h));
      p32(0);
      p32(0);
      p32(uint32_t(palette.size()));
      p32(0);
      size_t rest = headerSize - 40;
      for (size_t i = 0; i < rest / 4; ++i) p32(i < masks.size() ? masks[i] : 0);
      if (extraMasks)
        for (uint32_t m : masks) p32(m);
    }
    for (uint32_t c : palette) {
      p8(c & 255);
      p8((c >> 8) & 255);
      p8((c >> 16) & 255);
      if (!core) p8(0);
    }
    for (int r = 0; r < h; ++r) {
      const auto& row = rows[topDown ? r : h - 1 - r];
      std::vector<uint8_t> padded(stride, 0);
      std::memcpy(padded.data(), row.data(), std::min(row.size(), stride));
      b.insert(b.end(), padded.begin(), padded.end());
    }
    return b;
  }
};

bool Read(const std::vector<uint8_t>& bytes, Bitmap& out, std::string& err) {
  MemSource src(bytes);
  return ReadBmp(src, out, &err);
}

// The expected picture for the builders below: a 3 x 2 image.
const uint32_t kPic[2][3] = {{0xFF0000, 0x00FF00, 0x0000FF}, {0xFFFFFF, 0x000000, 0x808080}};

void ExpectPic(const Bitmap& b) {
  ASSERT_EQ(b.Width(), 3);
  ASSERT_EQ(b.Height(), 2);
  for (int y = 0; y < 2; ++y)
    for (int x = 0; x < 3; ++x) EXPECT_EQ(b.GetPixel(x, y), kPic[y][x]) << x << "," << y;
}

}  // namespace

TEST(Bmp, ReadsEveryDepthBothRowOrders) {
  for (bool topDown : {false, true}) {
    SCOPED_TRACE(topDown ? "top-down" : "bottom-up");
    std::string err;
    Bitmap b;
    // 24 bits.
    BmpBuilder b24;
    b24.topDown = topDown;
    for (auto& row : kPic) {
      std::vector<uint8_t> r;
      for (uint32_t c : row) {
        r.push_back(c & 255);
        r.push_back((c >> 8) & 255);
        r.push_back(c >> 16);
      }
      b24.rows.push_back(r);
    }
    ASSERT_TRUE(Read(b24.Build(), b, err)) << err;
    ExpectPic(b);
    // 32 bits, plain and with bit-field masks in a 40-byte header and a V4-sized one.
    BmpBuilder b32 = b24;
    b32.bpp = 32;
    b32.rows.clear();
    for (auto& row : kPic) {
      std::vector<uint8_t> r;
      for (uint32_t c : row) {
        r.push_back(c & 255);
        r.push_back((c >> 8) & 255);
        r.push_back(c >> 16);
        r.push_back(0xAB);
      }
      b32.rows.push_back(r);
    }
    ASSERT_TRUE(Read(b32.Build(), b, err)) << err;
    ExpectPic(b);
    BmpBuilder bf = b32;
    bf.compression = 3;
    bf.rows.clear();
    bf.masks = {0x0000FF00, 0x00FF0000, 0xFF000000};  // R, G, B in the upper three bytes
    for (auto& row : kPic) {
      std::vector<uint8_t> r;
      for (uint32_t c : row) {
        r.push_back(0);
        r.push_back(c >> 16);
        r.push_back((c >> 8) & 255);
        r.push_back(c & 255);
      }
      bf.rows.push_back(r);
    }
    ASSERT_TRUE(Read(bf.Build(), b, err)) << err;
    ExpectPic(b);
    bf.headerSize = 108;
    ASSERT_TRUE(Read(bf.Build(), b, err)) << err;
    ExpectPic(b);
    // 8, 4 and 1 bits through a colour table.
    BmpBuilder b8 = b24;
    b8.bpp = 8;
    b8.palette = {0xFF0000, 0x00FF00, 0x0000FF, 0xFFFFFF, 0x000000, 0x808080};
    b8.rows = {{0, 1, 2}, {3, 4, 5}};
    ASSERT_TRUE(Read(b8.Build(), b, err)) << err;
    ExpectPic(b);
    BmpBuilder b4 = b8;
    b4.bpp = 4;
    b4.rows = {{0x01, 0x20}, {0x34, 0x50}};
    ASSERT_TRUE(Read(b4.Build(), b, err)) << err;
    ExpectPic(b);
    BmpBuilder b1 = b24;
    b1.bpp = 1;
    b1.w = 10;
    b1.palette = {0x112233, 0xAABBCC};
    b1.rows = {{0b10110000, 0b01000000}, {0b00000000, 0b11000000}};
    ASSERT_TRUE(Read(b1.Build(), b, err)) << err;
    ASSERT_EQ(b.Width(), 10);
    EXPECT_EQ(b.GetPixel(0, 0), 0xAABBCCu);
    EXPECT_EQ(b.GetPixel(1, 0), 0x112233u);
    EXPECT_EQ(b.GetPixel(3, 0), 0xAABBCCu);
    EXPECT_EQ(b.GetPixel(9, 0), 0xAABBCCu);
    EXPECT_EQ(b.GetPixel(8, 0), 0x112233u);
    EXPECT_EQ(b.GetPixel(8, 1), 0xAABBCCu);
    EXPECT_EQ(b.GetPixel(7, 1), 0x112233u);
    // 16 bits: 5-5-5 by default, 5-6-5 by masks.
    BmpBuilder b16 = b24;
    b16.bpp = 16;
    b16.w = 2;
    b16.h = 1;
    b16.rows = {{0x00, 0x7C, 0xFF, 0x7F}};  // pure red, white
    ASSERT_TRUE(Read(b16.Build(), b, err)) << err;
    EXPECT_EQ(b.GetPixel(0, 0), 0xFF0000u);
    EXPECT_EQ(b.GetPixel(1, 0), 0xFFFFFFu);
    b16.compression = 3;
    b16.masks = {0xF800, 0x07E0, 0x001F};
    b16.rows = {{0xE0, 0x07, 0x10, 0x00}};  // full green; blue at 16 of 31
    ASSERT_TRUE(Read(b16.Build(), b, err)) << err;
    EXPECT_EQ(b.GetPixel(0, 0), 0x00FF00u);
    EXPECT_EQ(b.GetPixel(1, 0), 0x000084u);
  }
}

TEST(Bmp, ReadsCoreHeaderWithThreeByteColourTable) {
  BmpBuilder b;
  b.headerSize = 12;
  b.bpp = 8;
  b.palette = {0xFF0000, 0x00FF00, 0x0000FF, 0xFFFFFF, 0x000000, 0x808080};
  b.rows = {{0, 1, 2}, {3, 4, 5}};
  Bitmap out;
  std::string err;
  ASSERT_TRUE(Read(b.Build(), out, err)) << err;
  ExpectPic(out);
}

TEST(Bmp, WriteThenReadGivesTheSamePicture) {
  for (int w : {1, 2, 3, 4, 5}) {
    Bitmap b = Numbered(w, 3);
    VectorSink sink;
    WriteBmp(b, sink);
    EXPECT_EQ(sink.bytes[28], 24);  // written at 24 bits per pixel
    EXPECT_EQ(sink.bytes.size(), 54u + 3u * ((w * 3 + 3) / 4 * 4));
    Bitmap back;
    std::string err;
    ASSERT_TRUE(Read(sink.bytes, back, err)) << err;
    EXPECT_EQ(back, b);
  }
  kvtest::TempDir dir;
  Bitmap b = Numbered(7, 4), back;
  std::string err;
  ASSERT_TRUE(WriteBmpFile(dir / "x.bmp", b, &err)) << err;
  ASSERT_TRUE(ReadBmpFile(dir / "x.bmp", back, &err)) << err;
  EXPECT_EQ(back, b);
  EXPECT_FALSE(ReadBmpFile(dir / "missing.bmp", back, &err));
  EXPECT_NE(err.find("missing.bmp"), std::string::npos);
}

TEST(Bmp, BadFilesGiveAClearErrorAndLeaveTheBitmap) {
  BmpBuilder good;
  good.rows = {{1, 2, 3, 4, 5, 6, 7, 8, 9}, {1, 2, 3, 4, 5, 6, 7, 8, 9}};
  const std::vector<uint8_t> base = good.Build();
  struct Case {
    const char* what;
    std::vector<uint8_t> bytes;
    const char* expect;
  };
  auto patch32 = [&](size_t at, uint32_t v) {
    auto b = base;
    for (int i = 0; i < 4; ++i) b[at + i] = (v >> (8 * i)) & 255;
    return b;
  };
  auto patch16 = [&](size_t at, uint16_t v) {
    auto b = base;
    b[at] = v & 255;
    b[at + 1] = v >> 8;
    return b;
  };
  std::vector<Case> cases = {
      {"empty", {}, "not a BMP"},
      {"wrong magic",
       [&] {
         auto b = base;
         b[0] = 'X';
         return b;
       }(),
       "BM"},
      {"cut pixels", std::vector<uint8_t>(base.begin(), base.end() - 1), "pixels need"},
      {"cut header", std::vector<uint8_t>(base.begin(), base.begin() + 30), "header"},
      {"RLE8", patch32(30, 1), "run-length"},
      {"RLE4", patch32(30, 2), "run-length"},
      {"JPEG", patch32(30, 4), "JPEG"},
      {"odd compression", patch32(30, 77), "compression code 77"},
      {"depth 7", patch16(28, 7), "7 bits"},
      {"huge width", patch32(18, 0x7FFFFFFF), "too large"},
      {"huge height in range, no bytes", patch32(22, 100000), "pixels need"},
      {"zero width", patch32(18, 0), "no pixels"},
      {"header size", patch32(14, 20), "header of 20"},
      {"pixels beyond the end", patch32(10, 0xFFFFFF00), "pixels need"},
  };
  for (const auto& c : cases) {
    Bitmap out(1, 1);
    out.SetPixel(0, 0, 0x123456);
    std::string err;
    EXPECT_FALSE(Read(c.bytes, out, err)) << c.what;
    EXPECT_NE(err.find(c.expect), std::string::npos) << c.what << ": " << err;
    EXPECT_EQ(out.GetPixel(0, 0), 0x123456u) << c.what;
  }
  // A colour table longer than the file.
  BmpBuilder p;
  p.bpp = 8;
  p.palette = {1, 2};
  p.rows = {{0, 1, 0}, {1, 0, 1}};
  auto bytes = p.Build();
  bytes[46] = 200;  // biClrUsed
  bytes.resize(60);
  Bitmap out;
  std::string err;
  EXPECT_FALSE(Read(bytes, out, err));
  EXPECT_NE(err.find("colour table"), std::string::npos) << err;
}

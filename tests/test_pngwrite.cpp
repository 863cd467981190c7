// PNG pictures: the writer's files read back chunk by chunk (every CRC, the
// header, one zlib stream through zlib's own inflate, adler included) give
// the pixels written, whatever the strips, threads and level; a failed write
// leaves no file; the map's picture drawn strip by strip is the picture drawn
// whole, also past the 16-bit sides that BMP and the F6 export keep.
#include <array>
#include <filesystem>
#include <random>
#include <zlib.h>

#include <gtest/gtest.h>

#include "jumpmap/mapimage.h"
#include "jumpmap/mappicture.h"
#include "platform/fileio.h"
#include "platform/pngwrite.h"
#include "renderkit.h"

using namespace kv;

namespace {

uint32_t BE32(const uint8_t* p) {
  return (uint32_t{p[0]} << 24) | (uint32_t{p[1]} << 16) | (uint32_t{p[2]} << 8) | p[3];
}

struct Decoded {
  uint32_t w = 0, h = 0;
  int idats = 0;
  std::vector<uint8_t> ihdr;
  Bitmap pic;
};

// Reads a PNG as this writer makes it: 8-bit RGB, every row of filter type 0.
// Fails the test (and returns false) on anything else.
bool DecodePng(const std::vector<uint8_t>& f, Decoded& out) {
  const uint8_t sig[8] = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
  if (f.size() < 8 || !std::equal(sig, sig + 8, f.begin())) {
    ADD_FAILURE() << "no PNG signature";
    return false;
  }
  std::vector<uint8_t> z;
  std::vector<std::string> order;
  size_t at = 8;
  while (at + 12 <= f.size()) {
    const uint32_t len = BE32(&f[at]);
    if (at + 12 + len > f.size()) break;
    const std::string type(f.begin() + static_cast<long>(at) + 4, f.begin() + static_cast<long>(at) + 8);
    const uLong crc = crc32(0L, &f[at + 4], len + 4);
    EXPECT_EQ(crc, BE32(&f[at + 8 + len])) << "CRC of " << type;
    if (type == "IHDR")
      out.ihdr.assign(f.begin() + static_cast<long>(at) + 8, f.begin() + static_cast<long>(at) + 8 + len);
    if (type == "IDAT") {
      z.insert(z.end(), f.begin() + static_cast<long>(at) + 8, f.begin() + static_cast<long>(at) + 8 + len);
      ++out.idats;
    }
    if (order.empty() || order.back() != type) order.push_back(type);
    at += 12 + len;
  }
  EXPECT_EQ(at, f.size()) << "bytes after the last chunk";
  EXPECT_EQ(order, (std::vector<std::string>{"IHDR", "IDAT", "IEND"}));
  if (out.ihdr.size() != 13) {
    ADD_FAILURE() << "IHDR of " << out.ihdr.size() << " bytes";
    return false;
  }
  out.w = BE32(&out.ihdr[0]);
  out.h = BE32(&out.ihdr[4]);
  EXPECT_EQ(std::vector<uint8_t>(out.ihdr.begin() + 8, out.ihdr.end()), (std::vector<uint8_t>{8, 2, 0, 0, 0}));
  const size_t rowBytes = size_t{out.w} * 3 + 1;
  std::vector<uint8_t> raw(rowBytes * out.h + 1);
  z_stream s{};
  inflateInit(&s);
  s.next_in = z.data();
  s.avail_in = static_cast<uInt>(z.size());
  s.next_out = raw.data();
  s.avail_out = static_cast<uInt>(raw.size());
  const int r = inflate(&s, Z_FINISH);  // checks the zlib header and the adler sum
  const size_t got = raw.size() - s.avail_out;
  const uInt left = s.avail_in;
  inflateEnd(&s);
  if (r != Z_STREAM_END || left != 0 || got != rowBytes * out.h) {
    ADD_FAILURE() << "zlib stream: " << r << ", " << left << " bytes left over, " << got << " bytes of "
                  << rowBytes * out.h;
    return false;
  }
  out.pic.Create(static_cast<int>(out.w), static_cast<int>(out.h));
  for (uint32_t y = 0; y < out.h; ++y) {
    const uint8_t* p = &raw[rowBytes * y];
    if (*p++ != 0) {
      ADD_FAILURE() << "row " << y << " has filter " << int{p[-1]};
      return false;
    }
    uint32_t* d = out.pic.Row(static_cast<int>(y));
    for (uint32_t x = 0; x < out.w; ++x, p += 3) d[x] = RGB(p[0], p[1], p[2]);
  }
  return true;
}

// Pixels that compress badly (noise) above pixels that compress well (bands).
Bitmap TestPicture(int w, int h) {
  Bitmap b(w, h);
  std::mt19937 g(7);
  const int noise = std::max(1, std::min(h / 2, 100000 / w));
  for (int y = 0; y < h; ++y)
    for (int x = 0; x < w; ++x) b.SetPixel(x, y, y < noise ? g() & 0xFFFFFF : RGB(x / 7, y % 251, 9));
  return b;
}

class FailingSink final : public ByteSink {
 public:
  explicit FailingSink(size_t room) : room_(room) {}
  bool write(const void*, size_t n) override {
    if (n > room_) return false;
    room_ -= n;
    return true;
  }

 private:
  size_t room_;
};

}  // namespace

TEST(PngWrite, PixelsComeBackForEveryStripLayoutThreadCountAndLevel) {
  // 1 x 1; one strip; a width whose strips are 1048 rows (three strips, the
  // last short); one pixel wide (strips of the whole height).
  const std::pair<int, int> sizes[] = {{1, 1}, {37, 23}, {1000, 2200}, {1, 3000}};
  for (auto [w, h] : sizes)
    for (PngCompression c : {PngCompression::Fast, PngCompression::Default, PngCompression::Best})
      for (int threads : {1, 3}) {
        SCOPED_TRACE(testing::Message() << w << " x " << h << ", level " << static_cast<int>(c) << ", threads "
                                        << threads);
        const Bitmap pic = TestPicture(w, h);
        VectorSink out;
        ASSERT_TRUE(WritePng(pic, out, c, threads));
        Decoded d;
        ASSERT_TRUE(DecodePng(out.bytes, d));
        EXPECT_EQ(d.w, static_cast<uint32_t>(w));
        EXPECT_EQ(d.h, static_cast<uint32_t>(h));
        EXPECT_TRUE(d.pic == pic);
        if (w == 1000) {
          EXPECT_EQ(d.idats, 3);  // one chunk a strip of 1048 rows
        }
      }
}

TEST(PngWrite, ManyStripsInFlightComeOutInTheirOrder) {
  // Ten strips of noise and bands: drawing outruns compressing, so every
  // buffer is in use before the first strip is written.
  Bitmap pic(2048, 5120);
  std::mt19937 g(3);
  for (int y = 0; y < pic.Height(); ++y)
    for (int x = 0; x < pic.Width(); ++x) pic.SetPixel(x, y, (y / 64) % 2 ? g() & 0xFFFFFF : RGB(y, x, 1));
  for (int threads : {2, 4}) {
    VectorSink out;
    ASSERT_TRUE(WritePng(pic, out, PngCompression::Fast, threads));
    Decoded d;
    ASSERT_TRUE(DecodePng(out.bytes, d));
    EXPECT_EQ(d.idats, 10);
    EXPECT_TRUE(d.pic == pic) << threads << " threads";
  }
}

TEST(PngWrite, TheLevelsCompressAsTheirNamesSay) {
  const Bitmap pic = TestPicture(600, 400);
  size_t size[3];
  int i = 0;
  for (PngCompression c : {PngCompression::Fast, PngCompression::Default, PngCompression::Best}) {
    VectorSink out;
    ASSERT_TRUE(WritePng(pic, out, c, 1));
    size[i++] = out.bytes.size();
  }
  EXPECT_GT(size[0], size[1]);
  EXPECT_GE(size[1], size[2]);
  PngCompression c = PngCompression::Best;
  EXPECT_TRUE(ParsePngCompression("fast", c));
  EXPECT_EQ(c, PngCompression::Fast);
  EXPECT_TRUE(ParsePngCompression("default", c));
  EXPECT_EQ(c, PngCompression::Default);
  EXPECT_TRUE(ParsePngCompression("best", c));
  EXPECT_EQ(c, PngCompression::Best);
  EXPECT_FALSE(ParsePngCompression("Fast", c));
  EXPECT_FALSE(ParsePngCompression("", c));
  EXPECT_FALSE(ParsePngCompression("9", c));
}

TEST(PngWrite, StripsAreGivenInOrderAndOnlyUntilThePictureIsWhole) {
  VectorSink out;
  PngWriter w(out, 3000, 1000, PngCompression::Fast, 2);
  EXPECT_EQ(w.StripRows(), 349);  // 1 Mi pixels
  Bitmap* s = w.BeginStrip();
  ASSERT_NE(s, nullptr);
  EXPECT_EQ(w.BeginStrip(), nullptr);  // the first is not ended yet
  EXPECT_EQ(s->Width(), 3000);
  EXPECT_EQ(s->Height(), 349);
  s->Fill(0x123456);
  ASSERT_TRUE(w.EndStrip());
  EXPECT_FALSE(w.EndStrip());  // nothing begun
  EXPECT_EQ(w.RowsDone(), 349);
  EXPECT_FALSE(w.Finish());  // rows missing
  EXPECT_FALSE(w.ok());

  VectorSink out2;
  PngWriter w2(out2, 3000, 1000, PngCompression::Fast, 2);
  std::vector<int> heights;
  while (Bitmap* b = w2.BeginStrip()) {
    heights.push_back(b->Height());
    b->Fill(RGB(static_cast<int>(heights.size()), 0, 0));
    ASSERT_TRUE(w2.EndStrip());
  }
  EXPECT_EQ(heights, (std::vector<int>{349, 349, 302}));
  ASSERT_TRUE(w2.Finish());
  Decoded d;
  ASSERT_TRUE(DecodePng(out2.bytes, d));
  EXPECT_EQ(d.pic.GetPixel(5, 348), RGB(1, 0, 0));
  EXPECT_EQ(d.pic.GetPixel(5, 349), RGB(2, 0, 0));
  EXPECT_EQ(d.pic.GetPixel(2999, 999), RGB(3, 0, 0));

  // Sizes the format cannot hold are refused at once.
  VectorSink out3;
  PngWriter w3(out3, 0, 10, PngCompression::Fast);
  EXPECT_EQ(w3.BeginStrip(), nullptr);
  EXPECT_FALSE(w3.Finish());
  EXPECT_TRUE(out3.bytes.empty());
  for (auto [bigW, bigH] : {std::pair<int64_t, int64_t>{kPngMaxWidth + 1, 1}, {1, kPngMaxSide + 1}, {5, -1}}) {
    PngWriter big(out3, bigW, bigH, PngCompression::Fast);
    EXPECT_FALSE(big.ok()) << bigW << " x " << bigH;
    EXPECT_EQ(big.BeginStrip(), nullptr);
  }
  EXPECT_TRUE(out3.bytes.empty());
}

TEST(PngWrite, AWriteThatFailsAnywhereFailsThePictureAndLeavesNoFile) {
  const Bitmap pic = TestPicture(1500, 2000);  // three strips
  VectorSink whole;
  ASSERT_TRUE(WritePng(pic, whole, PngCompression::Fast, 2));
  for (size_t room :
       {size_t{0}, size_t{20}, size_t{40}, whole.bytes.size() / 2, whole.bytes.size() - 13, whole.bytes.size() - 1}) {
    for (int threads : {1, 2}) {
      FailingSink sink(room);
      EXPECT_FALSE(WritePng(pic, sink, PngCompression::Fast, threads)) << room;
    }
  }
  kvtest::TempDir dir;
  const std::string path = dir / "pic.png";
  kvtest::WriteText(path, "the previous picture");
  std::string err;
  PictureOptions o;
  int calls = 0;
  SetWriteFaultHook([&calls] { return ++calls < 3; });
  EXPECT_FALSE(WritePngFile(path, pic, o, &err));
  SetWriteFaultHook(nullptr);
  EXPECT_NE(err.find(path), std::string::npos) << err;
  EXPECT_EQ(kvtest::ReadBytes(path).size(), 20u);                                    // the previous file stands
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(dir.path()), {}), 1);  // no temporary left
  EXPECT_FALSE(WritePngFile(dir / "no/such/folder/pic.png", pic, o, &err));
  ASSERT_TRUE(WritePngFile(path, pic, o, &err)) << err;
  Decoded d;
  ASSERT_TRUE(DecodePng(kvtest::ReadBytes(path), d));
  EXPECT_TRUE(d.pic == pic);
}

namespace {

// The map picture as it was first drawn: every hex of the section's inclusive
// loops, column by column, the knock-out then the tile, on the whole picture.
Bitmap PlainMapPicture(const Session& s, int x, int y, int w, int h) {
  const RefData& r = s.ref;
  Bitmap pic(w * r.ColPitch, h * r.RowPitch);
  pic.Fill(kPictureBackColour);
  for (int i = 0; i <= w; ++i)
    for (int j = 0; j <= h; ++j) {
      const int col = x + i, py = j * r.RowPitch + (col % 2 == 0 ? r.RowPitch / 2 : 0);
      const int t = s.doc.HexTile(col, y + j);
      BitBlt(pic, i * r.ColPitch, py, r.HexW, r.HexH, &s.sprites.BlackHexDC, 0, 0, SRCAND);
      BitBlt(pic, i * r.ColPitch, py, r.HexW, r.HexH, &s.sprites.TileSheet, (t % 16) * r.HexW, (t / 16) * r.HexH,
             SRCPAINT);
    }
  return pic;
}

}  // namespace

TEST(MapPicture, StripsOfAnyHeightMakeTheWholePicture) {
  kvtest::RenderSession rs(30, 30, 80);
  Session& s = rs.s;
  s.doc.HexTile(7, 8) = 200;  // beyond the sheet: the knock-out alone
  s.doc.HexTile(8, 8) = -3;
  for (auto [x, y, w, h] : {std::array<int, 4>{0, 0, 29, 29}, {3, 2, 10, 7}, {4, 5, 1, 1}, {7, 7, 3, 3}}) {
    SCOPED_TRACE(testing::Message() << x << "," << y << " " << w << " x " << h);
    const Bitmap plain = PlainMapPicture(s, x, y, w, h);
    Bitmap whole;
    std::string err;
    ASSERT_TRUE(RenderMapImage(s, x, y, w, h, whole, &err)) << err;
    EXPECT_TRUE(whole == plain);
    for (int rows : {1, 7, 24, 25, 26, 50, 333}) {
      Bitmap pic(plain.Width(), plain.Height()), strip;
      for (int top = 0; top < plain.Height(); top += rows) {
        strip.Create(plain.Width(), std::min(rows, plain.Height() - top));
        strip.Fill(0x777777);  // whatever was there before
        DrawMapSection(s.doc, s.ref, s.sprites, x, y, w, h, top, strip);
        BitBlt(pic, 0, top, strip.Width(), strip.Height(), &strip, 0, 0, SRCCOPY);
      }
      EXPECT_TRUE(pic == plain) << rows << " rows a strip";
    }
  }
}

TEST(MapPicture, ThePngExportHasNoSixteenBitLimitAndSaysWhatIsWrong) {
  // 800 x 3 hexes: 36000 pixels wide, past BMP's and F6's 32767.
  kvtest::RenderSession rs(801, 4, 64);
  Session& s = rs.s;
  kvtest::TempDir dir;
  Bitmap whole;
  std::string err;
  EXPECT_FALSE(RenderMapImage(s, 0, 0, 800, 3, whole, &err));
  EXPECT_NE(err.find("too large"), std::string::npos) << err;
  PictureOptions o;
  int64_t lastDone = 0, calls = 0;
  o.progress = [&](int64_t done, int64_t rows) {
    EXPECT_GT(done, lastDone);
    EXPECT_EQ(rows, 150);
    lastDone = done;
    ++calls;
  };
  o.threads = 2;
  ASSERT_TRUE(ExportMapPng(s.doc, s.ref, s.sprites, 0, 0, 800, 3, dir / "wide.png", o, &err)) << err;
  EXPECT_EQ(lastDone, 150);
  EXPECT_EQ(calls, 6);  // strips of 29 rows (1 Mi pixels)
  Decoded d;
  ASSERT_TRUE(DecodePng(kvtest::ReadBytes(dir / "wide.png"), d));
  EXPECT_EQ(d.w, 36000u);
  EXPECT_EQ(d.h, 150u);
  EXPECT_TRUE(d.pic == PlainMapPicture(s, 0, 0, 800, 3));

  // A section off the map or empty: the reason, and no file.
  EXPECT_FALSE(ExportMapPng(s.doc, s.ref, s.sprites, 1, 0, 801, 3, dir / "off.png", o, &err));
  EXPECT_NE(err.find("run off the map"), std::string::npos) << err;
  EXPECT_FALSE(ExportMapPng(s.doc, s.ref, s.sprites, 0, 0, 0, 3, dir / "off.png", o, &err));
  EXPECT_FALSE(FileExists(dir / "off.png"));
}

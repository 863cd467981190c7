// BMP files of every depth the reader takes (1, 4, 8, 16, 24, 32 bits,
// bottom-up and top-down, plain and with bit fields).
#include <string>

#include "fuzz_common.h"
#include "platform/bitmap.h"

using namespace kv;

namespace kvfuzz {
namespace {
void Put(Bytes& b, uint32_t v, int n) {
  for (int i = 0; i < n; ++i) b.push_back(static_cast<uint8_t>(v >> (8 * i)));
}
// A w x h picture of the given depth; compression 3 (bit fields) for 16 and
// 32 bits when `fields` is set.
Bytes Bmp(int w, int h, int bpp, bool topDown, bool fields) {
  const int colours = bpp <= 8 ? 1 << bpp : 0;
  const uint32_t stride = ((static_cast<uint32_t>(w) * bpp + 31) / 32) * 4;
  const uint32_t head = 14 + 40 + (fields ? 12 : 0) + colours * 4;
  Bytes b;
  Put(b, 'B' | ('M' << 8), 2);
  Put(b, head + stride * h, 4);
  Put(b, 0, 4);
  Put(b, head, 4);
  Put(b, 40, 4);
  Put(b, static_cast<uint32_t>(w), 4);
  Put(b, static_cast<uint32_t>(topDown ? -h : h), 4);
  Put(b, 1, 2);
  Put(b, static_cast<uint32_t>(bpp), 2);
  Put(b, fields ? 3 : 0, 4);
  Put(b, stride * h, 4);
  Put(b, 2835, 4);
  Put(b, 2835, 4);
  Put(b, static_cast<uint32_t>(colours), 4);
  Put(b, 0, 4);
  if (fields) {
    if (bpp == 16) {
      Put(b, 0xF800, 4);
      Put(b, 0x07E0, 4);
      Put(b, 0x001F, 4);
    } else {
      Put(b, 0xFF0000, 4);
      Put(b, 0x00FF00, 4);
      Put(b, 0x0000FF, 4);
    }
  }
  for (int c = 0; c < colours; ++c) Put(b, RGB(c * 37, c * 91, 255 - c), 4);
  for (uint32_t i = 0; i < stride * h; ++i) b.push_back(static_cast<uint8_t>(i * 29 + 7));
  return b;
}
}  // namespace

std::vector<Bytes> Seeds() {
  std::vector<Bytes> seeds;
  Bitmap pic(5, 3);
  for (int y = 0; y < 3; ++y)
    for (int x = 0; x < 5; ++x) pic.SetPixel(x, y, RGB(x * 50, y * 80, 200));
  VectorSink out;
  WriteBmp(pic, out);
  seeds.push_back(out.bytes);
  for (int bpp : {1, 4, 8, 16, 24, 32}) seeds.push_back(Bmp(3 + bpp % 5, 2, bpp, bpp % 3 == 0, false));
  seeds.push_back(Bmp(3, 3, 16, false, true));
  seeds.push_back(Bmp(2, 4, 32, true, true));
  return seeds;
}
}  // namespace kvfuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  MemSource in(data, size);
  Bitmap bmp;
  std::string err;
  if (!ReadBmp(in, bmp, &err)) {
    if (err.empty()) __builtin_trap();
    return 0;
  }
  if (bmp.Pixels().size() != static_cast<size_t>(bmp.Width()) * bmp.Height()) __builtin_trap();
  return 0;
}

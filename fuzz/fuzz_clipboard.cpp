// The clipboard file ("copybuff.dat"): a block of tiles pasted at a hex of a
// 33 x 31 map. Input: the column and row to paste at, then the file. A file
// that is refused must leave the map as it was.
#include <string>

#include "editing/clipboard.h"
#include "fuzz_common.h"

using namespace kv;

namespace kvfuzz {
std::vector<Bytes> Seeds() {
  std::vector<Bytes> seeds;
  for (auto [x, y, w, h] : {std::array{0, 0, 2, 1}, std::array{30, 29, 4, 3}, std::array{5, 5, 0, 0}}) {
    Bytes b = {static_cast<uint8_t>(x), static_cast<uint8_t>(y)};
    auto put16 = [&b](int v) {
      b.push_back(static_cast<uint8_t>(v));
      b.push_back(static_cast<uint8_t>(v >> 8));
    };
    put16(w);
    put16(h);
    for (int j = 0; j <= h; ++j)
      for (int i = 0; i <= w; ++i) put16(100 + i * 10 + j);
    seeds.push_back(b);
  }
  return seeds;
}
}  // namespace kvfuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const Document before = kvfuzz::SampleDoc(32, 30, 0);
  kvfuzz::Parts parts({data, size});
  const int x = parts.Byte() % 33, y = parts.Byte() % 31;
  Document d = before;
  if (!PasteClipboardBytes(d, x, y, parts.Rest()) && !(d.HexTile == before.HexTile)) __builtin_trap();
  return 0;
}

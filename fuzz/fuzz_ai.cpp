// The AI tables file (.ai): the block of one objective for a map of a given
// size. Input: objective index, width and height, then the file.
#include <string>

#include "analysis/aitables.h"
#include "fuzz_common.h"

using namespace kv;

namespace kvfuzz {
std::vector<Bytes> Seeds() {
  std::vector<Bytes> seeds;
  for (auto [index, w, h, blocks] : {std::array{1, 4, 3, 1}, std::array{2, 6, 5, 3}, std::array{3, 2, 2, 2}}) {
    Bytes b = {static_cast<uint8_t>(index), static_cast<uint8_t>(w), static_cast<uint8_t>(h)};
    for (int k = 0; k < blocks; ++k)
      for (int x = 0; x < w; ++x)
        for (int y = 0; y < h; ++y) {
          const int16_t v = static_cast<int16_t>(x == k && y == k ? 0 : (x + y) % 7 == 6 ? -1 : x + y);
          b.push_back(static_cast<uint8_t>(v));
          b.push_back(static_cast<uint8_t>(static_cast<uint16_t>(v) >> 8));
        }
    seeds.push_back(b);
  }
  return seeds;
}
}  // namespace kvfuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  kvfuzz::Parts parts({data, size});
  const int index = static_cast<int8_t>(parts.Byte());  // 0 and negative included
  const int w = parts.Byte() % 80, h = parts.Byte() % 80;
  auto file = parts.Rest();
  MemSource in(file);
  HexArray<int16_t> field;
  std::string err;
  if (!ReadAIBlock(in, index, w, h, field, &err) && err.empty()) __builtin_trap();
  if (field.size() != static_cast<size_t>(w) * h) __builtin_trap();
  return 0;
}

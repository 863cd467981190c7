// The pattern stores under "mapedit/": pattern files (key and tile pairs up
// to the "-1" sentinel) and tile lists (5-byte records of tile numbers). The
// first byte picks which; the rest is the file.
#include <string>

#include "autotile/stores.h"
#include "fuzz_common.h"

using namespace kv;

namespace kvfuzz {
namespace {
Bytes Tagged(uint8_t kind, std::string_view text) {
  Bytes b = {kind};
  b.insert(b.end(), text.begin(), text.end());
  return b;
}
}  // namespace

std::vector<Bytes> Seeds() {
  return {Tagged(0, SeedText(PatternSeed::Search)),
          Tagged(0, SeedText(PatternSeed::ZeroPair)),
          Tagged(0, "\"104-0-90-0-0-0\",17\r\n\"1-0-1-0-0-0\",\"203\"\r\n104-0-90-0-0-0,18\r\n\"-1\"\r\n"),
          Tagged(0, "0-0-0-0-0-0,0\r\n12-12-12-12-12-12,  45.5\r\n"),
          Tagged(1, "017\r\n018\r\n203\r\n"),
          Tagged(1, "5\n17\r\n\r\n-3\r\n")};
}
}  // namespace kvfuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size == 0) return 0;
  std::span<const uint8_t> text(data + 1, size - 1);
  if (data[0] % 2 == 0) {
    int pairs = 0;
    ScanPatternPairs(text, [&](const std::string& key, const std::string& tile) {
      ++pairs;
      (void)key;
      PatternTileValue(tile);
      return pairs < 100000;
    });
  } else {
    const std::vector<int16_t> lines = TileListLines(text);
    const int32_t n = TileListCount(text.size());
    if (n < 0 || lines.size() > text.size() + 1) __builtin_trap();
  }
  return 0;
}

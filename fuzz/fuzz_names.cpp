// The hex-name store: an index of 4-byte slots (.ndx) and a heap of 20-byte
// records (.str). Input: the highest column and row of the map, the index as
// the first part, the heap as the rest. Every hex is looked up.
#include <cstring>
#include <string>

#include "document/namestore.h"
#include "fuzz_common.h"

using namespace kv;

namespace kvfuzz {
std::vector<Bytes> Seeds() {
  std::vector<Bytes> seeds;
  for (int mx : {3, 9}) {
    const int my = 2;
    Bytes ndx, str;
    int32_t next = 1;
    for (int i = 0; i < (mx + 1) * (my + 1); ++i) {
      int32_t slot = 0;
      if (i % 3 == 1) {
        slot = next;
        std::string rec = "Town " + std::to_string(i) + (i % 2 ? std::string(4, '\0') : "");
        rec.resize(20, ' ');
        str.insert(str.end(), rec.begin(), rec.end());
        next += 20;
      }
      const uint8_t* p = reinterpret_cast<const uint8_t*>(&slot);
      ndx.insert(ndx.end(), p, p + 4);
    }
    Bytes b = {static_cast<uint8_t>(mx), static_cast<uint8_t>(my)};
    PutPart(b, ndx);
    b.insert(b.end(), str.begin(), str.end());
    seeds.push_back(b);
  }
  return seeds;
}
}  // namespace kvfuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  kvfuzz::Parts parts({data, size});
  const int mx = parts.Byte() % 64, my = parts.Byte() % 64;
  auto ndxBytes = parts.Next();
  auto strBytes = parts.Rest();
  MemSource ndx(ndxBytes), str(strBytes);
  for (int y = 0; y <= my; ++y)
    for (int x = 0; x <= mx; ++x) {
      std::string name = ReadHexName(ndx, str, mx, x, y);
      if (!name.empty() && name.size() != static_cast<size_t>(kNameLen)) __builtin_trap();
      TrimName(name);
    }
  return 0;
}

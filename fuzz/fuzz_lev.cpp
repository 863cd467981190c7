// A map with its elevation file (.lev): the map as the first part of the
// input, the .lev as the rest, read as LoadMap reads them.
#include <string>

#include "document/mapfile.h"
#include "fuzz_common.h"

using namespace kv;

namespace kvfuzz {
std::vector<Bytes> Seeds() {
  std::vector<Bytes> seeds;
  for (auto [mx, my, cut] : {std::array{3, 2, 0}, std::array{4, 4, 7}, std::array{0, 0, 0}}) {
    Document d = SampleDoc(mx, my, 1);
    VectorSink map;
    WriteMapFile(d, map);
    Bytes b;
    PutPart(b, map.bytes);
    b.insert(b.end(), d.HexElev.data(), d.HexElev.data() + d.HexElev.size() - cut);
    seeds.push_back(b);
  }
  return seeds;
}
}  // namespace kvfuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const RefData ref = kvfuzz::SampleRef();
  kvfuzz::Parts parts({data, size});
  auto mapBytes = parts.Next();
  auto lev = parts.Rest();
  MemSource in(mapBytes);
  LoadedMap m;
  if (!ReadMapFile(in, ref, m, nullptr) || m.oldFormat) return 0;
  m.doc.HexElev.Fill(0);
  MemSource levIn(lev);
  ReadLevFile(levIn, m.doc.HexElev);
  if (m.doc.HexElev.size() != m.doc.N()) __builtin_trap();
  return 0;
}

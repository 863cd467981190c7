// Map files: the current format (every version the reader knows) and the
// older headerless one. A file read without complaint must give a document
// whose planes match its size and which writes back out; a refusal must say
// why.
#include <cstring>
#include <string>

#include "document/mapfile.h"
#include "fuzz_common.h"

using namespace kv;

namespace kvfuzz {
namespace {
Bytes Current(int mx, int my, int objs, int16_t version, const std::string& set) {
  Document d = SampleDoc(mx, my, objs);
  d.NationSet = set;
  VectorSink out;
  WriteMapFile(d, out);
  std::memcpy(out.bytes.data() + 8, &version, 2);
  return out.bytes;
}
Bytes Older(int mx, int my) {
  Bytes b;
  auto put16 = [&b](int v) {
    b.push_back(static_cast<uint8_t>(v));
    b.push_back(static_cast<uint8_t>(v >> 8));
  };
  put16(mx);
  put16(my);
  const int n = (mx + 1) * (my + 1);
  for (int i = 0; i < n; ++i) {
    for (int k = 0; k < 7; ++k) b.push_back(static_cast<uint8_t>(k == 0 ? (i % 3 ? 5 : 1) : (i + k) % 2));
    put16(i * 13 % 300);
  }
  for (int i = 0; i < n; ++i) put16(i % 4);  // owner, objective
  for (int i = 0; i < n; ++i) put16(i % 5);  // deployment
  for (int i = 0; i < n; ++i) put16(1);      // land mass
  return b;
}
}  // namespace

std::vector<Bytes> Seeds() {
  return {Current(3, 2, 2, 580, "default"),
          Current(0, 0, 0, 580, ""),
          Current(5, 4, 1, 570, "europe"),
          Current(2, 2, 0, 558, "x"),
          Current(2, 3, 3, 545, ""),
          Current(1, 1, 0, 544, ""),
          Older(2, 2),
          Older(0, 0)};
}
}  // namespace kvfuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const RefData ref = kvfuzz::SampleRef();
  MemSource in(data, size);
  LoadedMap m;
  std::string err;
  if (!ReadMapFile(in, ref, m, &err)) {
    if (err.empty()) __builtin_trap();  // a refusal without a reason
    return 0;
  }
  const Document& d = m.doc;
  if (d.HexTile.size() != d.N() || d.HexInfo.size() != 7 * d.N() || d.HexCtl.size() != 2 * d.N() ||
      d.HexElev.size() != d.N() || d.HexContour.size() != d.N() || d.ObjList.Rows() != d.ObjCount + 1)
    __builtin_trap();
  VectorSink out;
  WriteMapFile(d, out);
  return 0;
}

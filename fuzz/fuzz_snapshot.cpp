// The undo snapshot ("autosave.map"), read against an open map of the size
// its header names (so most inputs get past the size check) or of another.
#include <cstring>
#include <string>

#include "document/mapfile.h"
#include "fuzz_common.h"

using namespace kv;

namespace kvfuzz {
std::vector<Bytes> Seeds() {
  std::vector<Bytes> seeds;
  for (auto [mx, my, objs] : {std::array{3, 2, 2}, std::array{0, 0, 0}, std::array{6, 1, 5}}) {
    VectorSink out;
    WriteSnapshotFile(SampleDoc(mx, my, objs), out);
    seeds.push_back(out.bytes);
  }
  return seeds;
}
}  // namespace kvfuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  int16_t mx = 32, my = 30;
  if (size >= 14 && data[size - 1] != 0xFF) {  // the size of the open map: the snapshot's own
    std::memcpy(&mx, data + 10, 2);
    std::memcpy(&my, data + 12, 2);
  }
  MemSource in(data, size);
  Document m;
  std::string err;
  const SnapshotRead r = ReadSnapshotFile(in, mx, my, m, &err);
  if (r == SnapshotRead::Ok &&
      (m.HexTile.size() != m.N() || m.HexInfo.size() != 7 * m.N() || m.ObjList.Rows() != m.ObjCount + 1))
    __builtin_trap();
  if (r == SnapshotRead::OtherMap && m.MapMaxX == mx && m.MapMaxY == my) __builtin_trap();
  return 0;
}

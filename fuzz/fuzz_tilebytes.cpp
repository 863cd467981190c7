// The one-byte-a-tile files: "mapedit/tiletype.dat" (a terrain code a tile,
// taken whole as the tile table the way the map information reader takes
// it), "mapedit/roadinfo.dat" (six side bytes a tile) and
// "mapedit/randomtile.dat" (1 for a tile the random pen may pick). Input:
// tiletype as the first part, roadinfo as the second, randomtile as the rest.
// The tables are then used as the map readers use them: an older map, whose
// hexes take their terrain from the tile table, is read against them.
#include <string>

#include "document/mapfile.h"
#include "fuzz_common.h"
#include "refdata/tables.h"

using namespace kv;

namespace kvfuzz {
std::vector<Bytes> Seeds() {
  std::vector<Bytes> seeds;
  for (int tiles : {16, 300}) {
    Bytes types, roads, random;
    for (int t = 0; t < tiles; ++t) {
      types.push_back(static_cast<uint8_t>(t % 15));
      for (int k = 0; k < 6; ++k) roads.push_back(t % 7 == 3 && k % 2 == 0 ? 1 : 0);
      random.push_back(t % 5 == 0);
    }
    Bytes b;
    PutPart(b, types);
    PutPart(b, roads);
    b.insert(b.end(), random.begin(), random.end());
    seeds.push_back(b);
  }
  return seeds;
}
}  // namespace kvfuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  kvfuzz::Parts parts({data, size});
  auto types = parts.Next();
  auto roads = parts.Next();
  auto random = parts.Rest();
  RefData ref;
  ref.TileType.assign(types.begin(), types.end());
  ref.TileMax = static_cast<int16_t>(static_cast<int>(types.size()) - 1);
  ParseRoadInfo(roads, ref);
  if (ref.TileRoad.size() != static_cast<size_t>(std::max(ref.TileMax + 1, 0)) ||
      ref.RoadTableData.size() != static_cast<size_t>(ref.RoadRows() + 1) * 7)
    __builtin_trap();
  for (int r = 1; r <= ref.RoadRows(); ++r)
    if (ref.RoadTable(0, r) < 0 || ref.RoadTable(0, r) > ref.TileMax) __builtin_trap();
  // The random pen's table: tiles flagged 1 for each terrain.
  std::array<int, 256> perTerrain{};
  for (int t = 0; t <= ref.TileMax; ++t)
    if (static_cast<size_t>(t) < random.size() && random[t] == 1) ++perTerrain[ref.TypeOf(t)];
  // An older map whose tiles run over and past the table.
  static const kvfuzz::Bytes older = [] {
    kvfuzz::Bytes b = {3, 0, 3, 0};
    for (int i = 0; i < 16; ++i) {
      for (int k = 0; k < 7; ++k) b.push_back(k == 0 ? 5 : 0);
      const int16_t tile = static_cast<int16_t>(i * 40 - 20);
      b.push_back(static_cast<uint8_t>(tile));
      b.push_back(static_cast<uint8_t>(static_cast<uint16_t>(tile) >> 8));
    }
    b.insert(b.end(), 16 * 6, 0);
    return b;
  }();
  MemSource in(older.data(), older.size());
  LoadedMap m;
  if (!ReadMapFile(in, ref, m, nullptr)) __builtin_trap();
  return 0;
}

// The older game's scenario set: the map (.set), the scenario
// (game0NN.scn) and the equipment table, converted together as the import
// does. Input: the .set as the first part, the .scn as the second, the
// equipment table as the rest.
#include <string>

#include "fuzz_common.h"
#include "pgfiles.h"
#include "scenario/pgformat.h"

using namespace kv;

namespace kvfuzz {
std::vector<Bytes> Seeds() {
  std::vector<Bytes> seeds;
  for (int variant = 0; variant < 3; ++variant) {
    kvtest::PgSet set;
    set.W = static_cast<int16_t>(3 + variant);
    set.H = static_cast<int16_t>(2 + variant);
    for (size_t i = 0; i < set.N(); ++i) {
      set.tiles.push_back(static_cast<int16_t>((i * 11) % 200));
      set.roads.push_back(static_cast<uint8_t>(i % 3 ? 0 : 1 << (i % 8)));
      set.owners.push_back(static_cast<uint8_t>(i % 4 == 1 ? 1 + i % 3 : 0));
    }
    kvtest::PgScn scn;
    scn.objectives = {{1, 1}, {2, 0}};
    scn.deployN = static_cast<int16_t>(variant + 1);
    scn.deployPairs = {{0, 0}, {1, 2}, {3, 1}};
    for (int u = 0; u < 3 + variant; ++u) {
      kvtest::PgUnit unit;
      unit.type = static_cast<int16_t>(u % 3);
      unit.nation = static_cast<uint8_t>(u < 2 ? 1 : 2);
      unit.x = static_cast<int16_t>(u % (set.W + 1));
      unit.y = static_cast<int16_t>(u % (set.H + 1));
      scn.units.push_back(unit);
    }
    Bytes b;
    PutPart(b, set.Bytes());
    PutPart(b, scn.Bytes());
    const Bytes eqp = kvtest::PgEquipment({"Infantry", std::string("Tank\0\0\0", 7), "Artillery   "});
    b.insert(b.end(), eqp.begin(), eqp.end());
    seeds.push_back(b);
  }
  return seeds;
}
}  // namespace kvfuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const RefData ref = kvfuzz::SampleRef();
  kvfuzz::Parts parts({data, size});
  auto setBytes = parts.Next();
  auto scnBytes = parts.Next();
  auto eqpBytes = parts.Rest();
  MemSource set(setBytes), scn(scnBytes), eqp(eqpBytes);
  ImportSources src{&set, "game.set", &scn, "game001.scn", &eqp, "panzequp.eqp"};
  ScenarioImport out;
  std::string err;
  if (!ConvertScenarioSet(src, ref, out, &err)) {
    if (err.empty()) __builtin_trap();
    return 0;
  }
  const Document& d = out.map.doc;
  if (d.MapMaxX != out.map.W + 1 || d.MapMaxY != out.map.H || d.HexTile.size() != d.N()) __builtin_trap();
  for (const OobUnit& u : out.units)
    if (u.name.size() != 20) __builtin_trap();
  return 0;
}

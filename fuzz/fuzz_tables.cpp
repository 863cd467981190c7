// The four text tables of the program folder: "flags.xy",
// "data/hex_info.txt", "data/terrain.txt" and "data/hexdata.txt". The first
// byte picks the table, the rest is its text. A table that is refused must
// leave the tables in use as they were.
#include <string>

#include "fuzz_common.h"
#include "refdata/tables.h"

using namespace kv;

namespace kvfuzz {
namespace {
Bytes Tagged(uint8_t table, const std::string& text) {
  Bytes b = {table};
  b.insert(b.end(), text.begin(), text.end());
  return b;
}
}  // namespace

std::vector<Bytes> Seeds() {
  std::string hexdata = "40\r\n";
  for (int t = 0; t < 40; ++t) hexdata += std::to_string(t % 15) + (t % 16 == 15 ? "\r\n" : ",");
  return {Tagged(0, "20,30\r\n"),
          Tagged(0, "7\r\n"),
          Tagged(1, "\"HexWidth\",60\r\n\"HexHeight\",50\r\n\"HexSlant\",30\r\n"),
          Tagged(1, "\"HexWidth\",8\r\n\"HexHeight\",6\r\n\"HexSlant\",0\r\n"),
          Tagged(2,
                 "\"Terrains\",3,\"name abbreviation move defence red green blue note\"\r\n"
                 "\"Ocean\",\"OCN\",0,0,28,66,150,\"open sea\"\r\n"
                 "\"Clear\",\"CLR\",1,0,150,192,92,\"open ground\"\r\n"
                 "\"River\",\"RIV\",3,1,72,150,232,\"rivers\"\r\n"),
          Tagged(3, hexdata),
          Tagged(3, "3\r\n1,2,3")};
}
}  // namespace kvfuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size == 0) return 0;
  std::span<const uint8_t> text(data + 1, size - 1);
  RefData ref = kvfuzz::SampleRef();
  std::string err;
  switch (data[0] % 4) {
    case 0: ParseFlagsXY(text, ref); break;
    case 1: {
      const RefData before = ref;
      if (!ParseHexInfo(text, ref, &err)) {
        if (ref.HexW != before.HexW || ref.HexH != before.HexH || err.empty()) __builtin_trap();
      } else if (ref.HexW <= 0 || ref.HexH <= 0 || ref.ColPitch <= 0) {
        __builtin_trap();  // a geometry the view cannot draw
      }
      break;
    }
    case 2: {
      const int16_t before = ref.TerrainMax;
      if (!ParseTerrainTable(text, ref, &err)) {
        if (ref.TerrainMax != before || err.empty()) __builtin_trap();
      } else if (ref.TerrainName.size() != static_cast<size_t>(ref.TerrainMax) + 1 ||
                 ref.TerrainRGBData.size() != 3 * ref.TerrainName.size()) {
        __builtin_trap();
      }
      break;
    }
    case 3: {
      std::vector<uint8_t> values;
      if (!ParseHexData(text, values, &err) && err.empty()) __builtin_trap();
      break;
    }
  }
  return 0;
}

#include "autotile/random.h"

#include <cmath>
#include <cstdio>
#include <vector>

#include "platform/fileio.h"
#include "view/mapview.h"

namespace kv {

std::string RndTablePath(const MapState& s, int terrain) {
  char name[32];
  std::snprintf(name, sizeof name, "mapedit/%03d.rnd", terrain);
  return s.App(name);
}

void BuildRndTables(MapState& s) {
  std::vector<uint8_t> flags;
  ReadFileBytes(s.App("mapedit/randomtile.dat"), flags, nullptr);  // missing: nothing included
  const RefData& ref = s.ref;
  for (int t = 0; t <= ref.TerrainMax; ++t) {
    const std::string path = RndTablePath(s, t);
    if (FileExists(path)) RemoveFile(path);
  }
  for (int t = 0; t <= ref.TerrainMax; ++t) {
    std::string out;
    for (int n = 0; n <= ref.TileMax; ++n) {
      if (ref.TypeOf(n) != t) continue;
      if (static_cast<size_t>(n) < flags.size() && flags[n] == 1) {
        char rec[16];
        // Three digits; a tile number of four would make a longer record.
        std::snprintf(rec, sizeof rec, "%03d\r\n", n);
        out += rec;
      }
    }
    WriteFileBytes(RndTablePath(s, t), out.data(), out.size(), nullptr);
  }
}

void randomtile(MapView& s) {
  const std::string path = RndTablePath(s, s.ref.TypeOf(s.pens.CurTile));
  FILE* f = std::fopen(path.c_str(), "rb");
  if (!f) return;
  std::fseek(f, 0, SEEK_END);
  const long n = std::ftell(f) / 5;
  // The draw comes before the read, also for an empty table, which then
  // leaves the pen as it is.
  const long k = static_cast<long>(std::floor(static_cast<double>(n) * s.Rnd()));
  if (n > 0) {
    char digits[3];
    if (std::fseek(f, 5 * k, SEEK_SET) == 0 && std::fread(digits, 1, 3, f) == 3) {
      int v = 0;
      bool ok = true;
      for (char c : digits) {
        if (c < '0' || c > '9') ok = false;
        v = v * 10 + (c - '0');
      }
      if (ok && v <= s.ref.TileMax) s.pens.CurTile = static_cast<int16_t>(v);
    }
  }
  std::fclose(f);
}

}  // namespace kv

#include "document/mapinfo.h"

#include <cstring>
#include <vector>

#include "document/mapfile.h"
#include "platform/fileio.h"
#include "refdata/refdata.h"

namespace kv {

bool ReadMapInfo(const std::string& path, const std::string& appFolder, MapInfo& out, std::string* err) {
  RefData ref;
  if (!appFolder.empty()) {
    std::vector<uint8_t> types;
    if (ReadFileBytes(JoinPath(appFolder, "mapedit/tiletype.dat"), types, nullptr)) {
      ref.TileType = types;
      ref.TileMax = static_cast<int16_t>(types.size() - 1);
    }
  }
  FileSource in;
  std::string why;
  if (!in.open(path, &why)) {
    if (err) *err = why;
    return false;
  }
  LoadedMap m;
  if (!ReadMapFile(in, ref, m, &why)) {
    if (err) *err = path + " is not a readable map: " + why;
    return false;
  }
  const Document& d = m.doc;
  MapInfo i;
  i.path = path;
  i.oldFormat = m.oldFormat;
  i.version = m.version;
  i.width = d.W();
  i.height = d.H();
  i.nationSet = m.nationSet;
  i.objCount = d.ObjCount;
  for (int x = 0; x <= d.MapMaxX; ++x)
    for (int y = 0; y <= d.MapMaxY; ++y) {
      if (d.HexCtl(x, y, 0) != 0) ++i.ownedHexes;
      if (d.HexCtl(x, y, 1) != 0) ++i.objectiveHexes;
      if (d.HexDeploy(x, y) != 0) ++i.deploymentHexes;
    }
  i.hasLev = !m.oldFormat && FileExists(CutExt(path, 4, ".lev"));
  std::vector<uint8_t> ndx;
  const int64_t strLen = FileLen(CutExt(path, 3, "str"));
  if (strLen >= 0 && ReadFileBytes(CutExt(path, 3, "ndx"), ndx, nullptr)) {
    i.hasNames = true;
    const size_t slots = std::min<size_t>(ndx.size() / 4, d.N());
    for (size_t k = 0; k < slots; ++k) {
      int32_t v;
      std::memcpy(&v, &ndx[k * 4], 4);
      if (v > 0 && v - 1 + 20 <= strLen) ++i.namedHexes;
    }
  }
  out = i;
  return true;
}

std::string FormatMapInfo(const MapInfo& i) {
  std::string s;
  auto line = [&](const char* k, const std::string& v) { s += std::string(k) + v + "\n"; };
  line("Map:              ", i.path);
  line("Format:           ",
       i.oldFormat ? std::string("older format, without a version header") : "version " + std::to_string(i.version));
  line("Size:             ", std::to_string(i.width) + " x " + std::to_string(i.height) + " hexes (MapMaxX " +
                                 std::to_string(i.width - 1) + ", MapMaxY " + std::to_string(i.height - 1) + ")");
  line("Nation set:       ", i.nationSet.empty() ? std::string("(not stored; the set in use applies)") : i.nationSet);
  line("Objective table:  ", i.oldFormat || i.version <= 544
                                 ? std::string("(not stored; rebuilt on load)")
                                 : std::to_string(i.objCount) + (i.objCount == 1 ? " objective" : " objectives"));
  line("Owned hexes:      ", std::to_string(i.ownedHexes));
  line("Objective hexes:  ", std::to_string(i.objectiveHexes));
  line("Deployment hexes: ", std::to_string(i.deploymentHexes));
  line("Named hexes:      ", i.hasNames ? std::to_string(i.namedHexes) : std::string("(no name store beside the map)"));
  line("Elevations:       ",
       i.hasLev ? std::string("from the .lev file") : std::string("(no .lev file: level ground)"));
  return s;
}

}  // namespace kv

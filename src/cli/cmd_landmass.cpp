// korvane-map landmass MAP: numbers the land and water bodies and saves.
#include <algorithm>
#include <cstdio>

#include "analysis/landmass.h"
#include "cli/mapsession.h"
#include "document/mapfile.h"
#include "editing/mapload.h"

namespace kv::cli {

int CmdLandmass(const Options& o) {
  MapSession m;
  if (!OpenMapSession(o, m)) return 1;
  Session& s = *m.s;
  if (!BuildLandMasses(s)) return 1;
  if (!SaveMap(s)) return 1;
  int16_t highest = 0;
  for (int16_t v : s.doc.HexLandMass.raw()) highest = std::max(highest, v);
  std::printf("%s: land and water bodies numbered (highest number %d); saved\n", s.doc.MapPath.c_str(), highest);
  return 0;
}

}  // namespace kv::cli

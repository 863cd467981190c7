// korvane-map check MAP: data verification, then every road and control
// fault of the whole map, one line a hex. Exit status 1 when anything was
// found, 2 when the map could not be checked.
#include <cstdio>

#include "analysis/roadcheck.h"
#include "cli/mapsession.h"

namespace kv::cli {

int CmdCheck(const Options& o) {
  MapSession m;
  if (!OpenMapSession(o, m)) return 2;
  Session& s = *m.s;
  const int errors = VerifyHexData(s);
  if (errors > 0)
    std::printf("Errors found: %d tile or terrain values out of range (reset to 0 for the checks below)\n", errors);
  const auto faults = FindAllFaults(s);
  for (const HexFault& f : faults) std::printf("%d,%d: %s\n", f.x, f.y, FaultReason(f.kind));
  if (errors == 0 && faults.empty()) std::printf("none found\n");
  return errors > 0 || !faults.empty() ? 1 : 0;
}

}  // namespace kv::cli

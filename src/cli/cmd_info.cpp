// korvane-map info MAP
#include <cstdio>

#include "cli/commands.h"
#include "document/mapinfo.h"
#include "platform/appfolder.h"

namespace kv::cli {

int CmdInfo(const Options& o) {
  const std::string& path = o.args[0];
  // The tile table only matters for maps of the older format; use the
  // program folder's when there is one, without insisting.
  std::string err;
  std::string app = ResolveAppFolder(o.app, o.exeDir, &err);
  MapInfo info;
  if (!ReadMapInfo(path, app, info, &err)) {
    std::fprintf(stderr, "korvane-map: %s\n", err.c_str());
    return 1;
  }
  std::fputs(FormatMapInfo(info).c_str(), stdout);
  return 0;
}

}  // namespace kv::cli

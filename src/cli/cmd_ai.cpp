// korvane-map ai MAP: builds the AI tables (the .ai file) and saves the map.
#include <cstdio>

#include "analysis/aitables.h"
#include "cli/mapsession.h"
#include "document/document_ops.h"
#include "document/mapfile.h"
#include "editing/mapload.h"

namespace kv::cli {

int CmdAi(const Options& o) {
  MapSession m;
  if (!OpenMapSession(o, m)) return 1;
  Session& s = *m.s;
  BuildObjList(s);
  if (!WriteAITables(s)) return 1;
  if (!SaveMap(s)) return 1;
  std::printf("%s: AI tables for %d objectives written to %s; map saved\n", s.doc.MapPath.c_str(), s.doc.ObjCount,
              AIFilePath(s).c_str());
  return 0;
}

}  // namespace kv::cli

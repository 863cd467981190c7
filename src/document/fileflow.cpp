#include "document/fileflow.h"

#include "document/mapfile.h"
#include "document/namestore.h"
#include "platform/fileio.h"
#include "session.h"

namespace kv {

bool OpenMapFile(Session& s, const std::string& dir, const std::string& typed) {
  Document& d = s.doc;
  const std::string oldFile = d.MapFile, oldPath = d.MapPath, oldNdx = d.NdxPath, oldStr = d.StrPath,
                    oldCaption = s.forms.Form1Caption;
  std::string name = typed;
  const std::string tail = name.size() >= 3 ? name.substr(name.size() - 3) : name;
  if (tail != "MAP" && tail != "map") name += ".map";
  d.MapFile = name;
  s.SetForm1Caption("Main: editing " + name);
  d.MapPath = JoinPath(dir, name);
  d.StrPath = CutExt(d.MapPath, 3, "str");
  d.NdxPath = CutExt(d.MapPath, 3, "ndx");
  if (!LoadMap(s)) {
    d.MapFile = oldFile;
    d.MapPath = oldPath;
    d.NdxPath = oldNdx;
    d.StrPath = oldStr;
    s.SetForm1Caption(oldCaption);
    return false;
  }
  if (!FileExists(d.StrPath)) OpenNameStore(s);
  ReopenNameStore(s);
  return true;
}

}  // namespace kv

#include "editing/fileflow.h"

#include "document/mapfile.h"
#include "document/namestore.h"
#include "editing/mapload.h"
#include "platform/fileio.h"
#include "scenario/scenario_text.h"
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

namespace {
// Moves one file of the name store to a new path and re-opens it there.
void FollowStore(Session& s, std::string& cur, const std::string& next, bool ndx) {
  if (cur.empty()) cur = next;
  if (next == cur) return;
  if (ndx)
    s.names.CloseNdx();
  else
    s.names.CloseStr();
  std::string err;
  if (FileExists(cur) && !CopyFileTo(cur, next, &err)) s.MsgBox("The hex names could not be copied: " + err + ".");
  cur = next;
  if (ndx)
    s.names.OpenNdx(cur);
  else
    s.names.OpenStr(cur);
}
}  // namespace

bool SaveMapAs(Session& s, const std::string& dir, const std::string& text) {
  Document& d = s.doc;
  if (text.empty()) return false;
  const std::string oldFile = d.MapFile, oldPath = d.MapPath, oldCaption = s.forms.Form1Caption;
  d.MapFile = text;
  s.SetForm1Caption("Main: editing " + text);
  std::string name = text;
  const std::string tail = name.size() >= 4 ? name.substr(name.size() - 4) : name;
  if (tail != ".MAP" && tail != ".map") name += ".map";
  const std::string path = JoinPath(dir, name);
  d.MapPath = path;
  if (FileExists(path) && s.MsgBox(path + " already exists.\rDo you want to replace it ?", vbOKCancel) != vbOK) {
    d.MapFile = oldFile;
    d.MapPath = oldPath;
    s.SetForm1Caption(oldCaption);
    return false;
  }
  if (!SaveMap(s)) {
    // Nothing was written: the map goes on under its old name.
    d.MapFile = oldFile;
    d.MapPath = oldPath;
    s.SetForm1Caption(oldCaption);
    return false;
  }
  FollowStore(s, d.NdxPath, CutExt(path, 3, "ndx"), true);
  FollowStore(s, d.StrPath, CutExt(path, 3, "str"), false);
  // After a scenario import: the order of battle and the scenario file.
  FinishScenarioAtSave(s, path);
  return true;
}

}  // namespace kv

#include "scenario/import.h"

#include <algorithm>

#include "document/document_ops.h"
#include "document/namestore.h"
#include "jumpmap/jumpmap.h"
#include "platform/fileio.h"
#include "scenario/pgformat.h"
#include "scenario/scenario_text.h"
#include "session.h"
#include "view/geometry.h"
#include "view/render_api.h"
#include "view/scrolling.h"

namespace kv {

namespace {

struct BusyPointer {
  Session& s;
  explicit BusyPointer(Session& ss) : s(ss) { s.SetPointer(vbHourglass); }
  ~BusyPointer() { s.SetPointer(vbArrow); }
};

bool OpenSource(Session& s, FileSource& f, const std::string& path, const std::string& what) {
  std::string err;
  if (!FileExists(path)) {
    s.MsgBox(path + " not found: the " + what + " cannot be read, and nothing was imported.");
    return false;
  }
  if (!f.open(path, &err)) {
    s.MsgBox(path + " cannot be opened (" + err + "): nothing was imported.");
    return false;
  }
  return true;
}

// Puts the converted map in place of the open one. The objective table and
// the nation set are not the import's: the table is rebuilt by the jump
// map's loading, which drops objective types on hexes without an owner.
void ReplaceDocument(Session& s, Document&& m) {
  Document& d = s.doc;
  d.TakePlanes(std::move(m));
  OpenNameStore(s);  // slots for the new size
  SetScrollRanges(s);
  // A view origin beyond the new map's edge comes back to the last place
  // the scroll bars reach, as the bars do with a value above their maximum.
  ViewState& v = s.view;
  const int lastX = std::max<int>(0, v.ViewMaxX), lastY = std::max<int>(0, v.ViewMaxY);
  if (v.ViewX > lastX) v.ViewX = v.HScroll1.Value = lastX;
  if (v.ViewY > lastY) v.ViewY = v.VScroll1.Value = lastY;
  s.ui().Changed(Change::HScroll1);
  s.ui().Changed(Change::VScroll1);
  AfterDocumentReplaced(s);
  // The jump map is drawn anew; its loading rebuilds the objective table.
  LoadForm5(s);
  RedrawBuffers(s);
}

}  // namespace

void ReportIfMissing(MapState& s, const std::string& path) {
  if (!FileExists(path)) s.MsgBox(path + " not found.");
}

bool ImportScenarioSet(Session& s) {
  BusyPointer busy(s);
  const std::string setPath = s.scn.SetPath;
  FileSource set;
  if (!OpenSource(s, set, setPath, "scenario set")) return false;
  ReportIfMissing(s, s.App("pg_files/mapnames.str"));

  // NN: the two characters in front of the last four of the set's path.
  const std::string nn = setPath.size() >= 6 ? setPath.substr(setPath.size() - 6, 2) : std::string();
  const std::string oobTmp = s.App("game0" + nn + ".oob");
  const std::string dep = s.App("game0" + nn + ".dep");
  const std::string scnPath = JoinPath(s.ed.dlg.DlgDir, "game0" + nn + ".scn");
  const std::string eqpPath = s.App("data/panzequp.eqp");

  FileSource scn, eqp;
  if (!OpenSource(s, scn, scnPath, "scenario of the set")) return false;
  if (!OpenSource(s, eqp, eqpPath, "equipment table with the unit names")) return false;
  ScenarioImport r;
  std::string err;
  if (!ConvertScenarioSet({&set, setPath, &scn, scnPath, &eqp, eqpPath}, s.ref, r, &err)) {
    s.MsgBox(err + " Nothing was imported.");
    return false;
  }

  // The order of battle waits in the program folder for the next Save As.
  // It replaces one of an earlier import only once it is whole.
  SafeFileWriter oob(oobTmp);
  WriteOob(r.scn, r.units, s.ref, oob);
  if (!oob.commit()) {
    s.MsgBox("The order of battle " + oobTmp + " could not be written: " + oob.error() + ". Nothing was imported.");
    return false;
  }
  if (FileExists(dep)) RemoveFile(dep);  // no step writes one; an old one would not fit
  s.scn.OobTmpPath = oobTmp;
  ReplaceDocument(s, std::move(r.map.doc));
  return true;
}

bool OpenScenarioSet(Session& s, const std::string& dir, const std::string& name) {
  Document& d = s.doc;
  ScenarioState& st = s.scn;
  DialogState& g = s.ed.dlg;
  const std::string oldSet = st.SetPath, oldFile = d.MapFile, oldPath = d.MapPath, oldNdx = d.NdxPath,
                    oldStr = d.StrPath, oldCaption = s.forms.Form1Caption, oldDir = g.DlgDir;
  const std::string tail = name.size() >= 3 ? name.substr(name.size() - 3) : name;
  if (tail == "set" || tail == "SET") st.SetPath = JoinPath(dir, name);
  if (st.SetPath.empty()) {
    s.MsgBox(JoinPath(dir, name) + " is no scenario set: its name does not end in \"set\".");
    return false;
  }
  d.MapFile.clear();
  s.SetForm1Caption("Main: editing " + name);
  d.MapPath = s.App("newmap.map");
  d.StrPath = s.App("newmap.str");
  d.NdxPath = s.App("newmap.ndx");
  g.DlgDir = dir;
  if (!ImportScenarioSet(s)) {
    st.SetPath = oldSet;
    d.MapFile = oldFile;
    d.MapPath = oldPath;
    d.NdxPath = oldNdx;
    d.StrPath = oldStr;
    g.DlgDir = oldDir;
    s.SetForm1Caption(oldCaption);
    return false;
  }
  if (!FileExists(d.StrPath)) OpenNameStore(s);
  ReopenNameStore(s);
  return true;
}

}  // namespace kv

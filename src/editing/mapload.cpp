#include "editing/mapload.h"

#include <cstring>

#include "autotile/random.h"
#include "document/document_ops.h"
#include "document/mapfile.h"
#include "document/namestore.h"
#include "jumpmap/jumpmap.h"
#include "platform/fileio.h"
#include "refdata/nations.h"
#include "session.h"
#include "view/geometry.h"
#include "view/render_api.h"
#include "view/scrolling.h"

namespace kv {

namespace {

// Replaces the document's map content by what was read, keeping its identity.
void TakeMap(Document& d, Document&& m) {
  d.ObjCount = m.ObjCount;
  d.ObjList = std::move(m.ObjList);
  d.TakePlanes(std::move(m));
}

void ViewAfterLoad(Session& s, int origin) {
  ViewState& v = s.view;
  ClearPicture1(s);
  v.ViewX = origin;
  v.ViewY = origin;
  v.ViewMaxX = s.doc.MapMaxX - v.ViewCols;
  v.ViewMaxY = s.doc.MapMaxY - v.ViewRows;
  // A map smaller than the view leaves a bar's maximum as it was.
  if (s.doc.MapMaxX > v.ViewCols) v.HScroll1.Max = s.doc.MapMaxX - v.ViewCols;
  if (s.doc.MapMaxY > v.ViewRows) v.VScroll1.Max = s.doc.MapMaxY - v.ViewRows;
  KeepScrollValuesInRange(s);
  s.ui().Changed(Change::HScroll1);
  s.ui().Changed(Change::VScroll1);
}

struct PointerGuard {
  Session& s;
  explicit PointerGuard(Session& ss) : s(ss) { s.SetPointer(vbHourglass); }
  ~PointerGuard() { s.SetPointer(vbArrow); }
};

}  // namespace

bool LoadMap(Session& s) {
  PointerGuard busy(s);
  Document& d = s.doc;
  const std::string path = d.MapPath;
  LoadedMap m;
  std::string err;
  {
    FileSource in;
    if (!in.open(path, &err)) {
      s.MsgBox("The map cannot be opened: " + err + ".");
      return false;
    }
    if (!ReadMapFile(in, s.ref, m, &err)) {
      s.MsgBox(path + " is not a readable map: " + err + ".");
      return false;
    }
  }
  if (m.oldFormat) {
    // The older format: no elevations, no nation set, view from (1, 1).
    d.MapFile = path;
    TakeMap(d, std::move(m.doc));
    KeepPensOnMap(s);
    s.MapReplaced();
    FillHexPixel(s);
    ViewAfterLoad(s, 1);
    RedrawBuffers(s);
    BuildObjList(s);
    s.forms.Form5Loaded = false;
    s.ui().UnloadForm(FormId::Form5);
    LoadForm5(s);  // drawn again at once
    return true;
  }
  // Elevations from the side file, or level ground.
  const std::string lev = CutExt(path, 4, ".lev");
  m.doc.HexElev.Fill(127);
  if (FileExists(lev)) {
    m.doc.HexElev.Fill(0);
    FileSource in;
    if (in.open(lev, nullptr)) ReadLevFile(in, m.doc.HexElev);
  }
  TakeMap(d, std::move(m.doc));
  KeepPensOnMap(s);
  s.MapReplaced();
  FillHexPixel(s);
  ViewAfterLoad(s, 0);
  std::string set = m.nationSet.empty() ? d.NationSet : m.nationSet;
  if (set != d.NationSet) {
    s.forms.Form3Loaded = false;
    s.ui().UnloadForm(FormId::Form3);
    // A set that cannot be read leaves the one in use (and says so).
    if (SwitchNationSet(s, set)) BuildFlagBanks(s);
  }
  RedrawBuffers(s);
  if (m.version <= 544) BuildObjList(s);
  BuildOwnerMap(s);
  s.forms.Form5Loaded = false;
  s.ui().UnloadForm(FormId::Form5);
  return true;
}

bool SaveMap(Session& s) {
  Document& d = s.doc;
  if (d.MapFile.empty()) d.MapFile = "newmap.map";
  if (d.MapPath.empty()) return false;
  s.SetPointer(vbHourglass);
  s.forms.Label3Visible = true;
  const std::string base = CutExt(d.MapPath, 4, "");
  const std::string bmp = base + ".bmp";
  if (FileExists(bmp)) {
    if (s.MsgBox("Save Strategic/Jump Map image as \r" + bmp, vbYesNo) == vbYes) {
      if (!SaveJumpMapImage(s, bmp)) s.MsgBox("The jump map image could not be written to " + bmp + ".");
    }
  }
  RedrawBuffers(s);
  s.SetLabel3("Writing map data");
  SafeFileWriter map(d.MapPath), lev(base + ".lev"), ctl(base + ".ctl");
  for (SafeFileWriter* w : {&map, &lev, &ctl}) w->KeepOldTail(true);
  WriteMapFile(d, map);
  lev.write(d.HexElev.data(), d.HexElev.bytes());
  ctl.write(d.HexCtl.data(), d.HexCtl.bytes());
  // All three files are completed before any of them replaces its old copy.
  bool ok = map.finish() && lev.finish() && ctl.finish();
  if (ok) ok = map.publish() && lev.publish() && ctl.publish();
  if (!ok) {
    std::string why = !map.ok() ? map.error() : !lev.ok() ? lev.error() : ctl.error();
    map.abandon();
    lev.abandon();
    ctl.abandon();
    s.SetLabel3("Map not saved");
    s.SetPointer(vbArrow);
    s.MsgBox("The map could not be saved: " + why + ".");
    return false;
  }
  ++d.Saves;
  s.SetLabel3("Map Saved");
  s.SetPointer(vbArrow);
  return true;
}

bool RestoreSnapshot(Session& s) {
  const std::string path = s.App("autosave.map");
  FileSource in;
  if (!FileExists(path) || !in.open(path, nullptr)) {
    s.MsgBox("There is nothing to undo: no snapshot has been taken.");
    return false;
  }
  Document& d = s.doc;
  Document m;
  std::string err;
  switch (ReadSnapshotFile(in, d.MapMaxX, d.MapMaxY, m, &err)) {
    case SnapshotRead::Ok: break;
    case SnapshotRead::OtherMap:
      s.MsgBox("The undo snapshot is of a map of " + std::to_string(m.MapMaxX + 1) + " x " +
               std::to_string(m.MapMaxY + 1) + " hexes, not of the open map (" + std::to_string(d.W()) + " x " +
               std::to_string(d.H()) + "); nothing was changed.");
      return false;
    case SnapshotRead::Damaged:
      s.MsgBox("The undo snapshot " + path + " is damaged" + (err.empty() ? "" : ": " + err) + ".");
      return false;
  }
  // Elevations, contours and original owners are not in the snapshot and stay.
  d.HexInfo = std::move(m.HexInfo);
  d.HexTile = std::move(m.HexTile);
  d.HexCtl = std::move(m.HexCtl);
  d.HexDeploy = std::move(m.HexDeploy);
  d.HexLandMass = std::move(m.HexLandMass);
  d.ObjCount = m.ObjCount;
  d.ObjList = std::move(m.ObjList);
  s.MapEdited();
  RedrawBuffers(s);
  return true;
}

void NewMap(Session& s) {
  Document& d = s.doc;
  s.SetForm1Caption("Main: editing " + d.MapFile);
  // The side files are named after the map; a map without a path yet (a new
  // one, or one made from a bitmap) keeps them in the program folder, never
  // in whatever folder the program was started from.
  auto sidePath = [&](const char* ext) {
    std::string p = CutExt(d.MapPath, 3, ext);
    return !p.empty() && p[0] == '/' ? p : s.App(p);
  };
  d.NdxPath = sidePath("ndx");
  if (FileExists(d.NdxPath)) {
    s.names.CloseNdx();
    RemoveFile(d.NdxPath);
  }
  d.StrPath = sidePath("str");
  if (FileExists(d.StrPath)) {
    s.names.CloseStr();
    RemoveFile(d.StrPath);
  }
  OpenNameStore(s);
  d.AllocateAll();
  for (int x = 0; x <= d.MapMaxX; ++x)
    for (int y = 0; y <= d.MapMaxY; ++y) {
      if (s.pens.RandomMode != 0 && s.ref.TypeOf(s.pens.CurTile) != 0) randomtile(s);
      d.HexInfo(x, y, 0) = s.ref.TypeOf(s.pens.CurTile);
      d.HexTile(x, y) = s.pens.CurTile;
      d.HexElev(x, y) = 127;
    }
  AfterDocumentReplaced(s);
  // The jump map window is loaded again (hidden) and draws the new map; its
  // load empties the objective table of the blank map.
  LoadForm5(s);
  SetScrollRanges(s);
  RedrawBuffers(s);
}

}  // namespace kv

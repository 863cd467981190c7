#include "editing/startup.h"

#include "autotile/random.h"
#include "document/document_ops.h"
#include "document/namestore.h"
#include "platform/fileio.h"
#include "refdata/nations.h"
#include "refdata/tables.h"
#include "session.h"
#include "view/geometry.h"
#include "view/render_api.h"

namespace kv {

bool StartupData(Session& s) {
  Pens& p = s.pens;
  Document& d = s.doc;
  p.GridX = 15;
  p.GridY = 15;
  p.HighlightTile = -1;
  p.ShowRoadControl = -1;
  p.JumpBoxColour = 0;
  p.AutoTile = 0;
  p.FromMapEdit = 0;
  p.RandomMode = -1;  // on for the first fill
  // Every path is built from the program folder, so the process's current
  // directory is left alone (several sessions may share the process).
  if (!DirExists(s.AppPath)) {
    s.MsgBox("The program folder " + s.AppPath + " does not exist.");
    return false;
  }
  ReadFlagsXY(s);
  if (!ReadHexInfo(s)) return false;
  if (!LoadTileSheet(s)) {
    s.MsgBox(s.App("bmp/mapl.bmp") + " not found or not a readable tile sheet.");
    return false;
  }
  if (!LoadTileInfo(s)) return false;
  LoadRoadInfo(s);
  d.MapFile = "newmap.map";
  s.SetForm1Caption("Main: editing " + d.MapFile);
  BuildRndTables(s);
  d.MapMaxX = 32;
  d.MapMaxY = 30;
  OpenNameStore(s);
  for (int t = 0; t <= s.ref.TileMax; ++t)
    if (s.ref.TypeOf(t) == 1 && s.ref.RoadOf(t) == 0) {
      p.CurTile = static_cast<int16_t>(t);
      break;
    }
  d.AllocateAll();
  for (int x = 0; x <= d.MapMaxX; ++x)
    for (int y = 0; y <= d.MapMaxY; ++y) {
      randomtile(s);
      d.HexInfo(x, y, 0) = s.ref.TypeOf(p.CurTile);
      d.HexTile(x, y) = p.CurTile;
      d.HexElev(x, y) = 127;
    }
  s.MapReplaced();
  FillHexPixel(s);
  return true;
}

bool StartupAfterLayout(Session& s) {
  if (!LoadNations(s)) return false;
  LoadSpriteBank(s);
  BuildViewBuffer(s);
  RedrawBuffers(s);
  Pens& p = s.pens;
  p.CurSideKind = 1;
  p.ImgScaleA = 75;
  p.ImgScaleB = 75;
  p.RandomMode = 0;
  p.ColourCRV = 4;
  p.HexOutlines = 0;
  for (const char* dir : {"mapedit/roadpatterns", "mapedit/bridgepatterns", "mapedit/riverpatterns"})
    if (!DirExists(s.App(dir))) MakeDirs(s.App(dir));
  return true;
}

}  // namespace kv

#include "view/layout.h"

namespace kv {

bool StartSession(Session& s) {
  if (!StartupData(s)) return false;
  int w = 0, h = 0;
  ClientSizeForScreen(s.view.ScreenW, s.view.ScreenH, w, h);
  LayoutMainWindow(s, w, h, true);
  return StartupAfterLayout(s);
}

}  // namespace kv

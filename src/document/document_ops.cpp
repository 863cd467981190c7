#include "document/document_ops.h"

#include "autotile/random.h"
#include "document/namestore.h"
#include "jumpmap/jumpmap.h"
#include "platform/fileio.h"
#include "session.h"
#include "view/geometry.h"
#include "view/render_api.h"
#include "view/scrolling.h"

#include <algorithm>
#include <utility>

namespace kv {

void Document::AllocateAll() {
  const int w = W(), h = H();
  ++Generation;
  HexTile.Allocate(w, h);
  HexInfo.Allocate(w, h, 7);
  HexElev.Allocate(w, h);
  HexLandMass.Allocate(w, h);
  HexDeploy.Allocate(w, h);
  HexCtl.Allocate(w, h, 2);
  HexOrigOwner.Allocate(w, h);
  HexAIDist.Allocate(w, h);
  HexContour.Allocate(w, h);
}

void Document::TakePlanes(Document&& m) {
  ++Generation;
  MapMaxX = m.MapMaxX;
  MapMaxY = m.MapMaxY;
  HexInfo = std::move(m.HexInfo);
  HexTile = std::move(m.HexTile);
  HexElev = std::move(m.HexElev);
  HexCtl = std::move(m.HexCtl);
  HexDeploy = std::move(m.HexDeploy);
  HexLandMass = std::move(m.HexLandMass);
  HexContour = std::move(m.HexContour);
  HexOrigOwner = std::move(m.HexOrigOwner);
  HexAIDist = std::move(m.HexAIDist);
}

void BuildObjList(Session& s) {
  Document& d = s.doc;
  int count = 0;
  HexRect cleared;
  for (int x = 0; x <= d.MapMaxX; ++x)
    for (int y = 0; y <= d.MapMaxY; ++y)
      if (d.HexCtl(x, y, 1) != 0) {
        if (d.HexCtl(x, y, 0) != 0) {
          ++count;
        } else {
          d.HexCtl(x, y, 1) = 0;
          cleared = cleared.United(HexRect::Hex(x, y));
        }
      }
  if (!cleared.Empty()) s.MapEdited(cleared);
  // ObjCount is a 16-bit count: a map with more objective hexes keeps the
  // first 32767 in column order.
  if (count > 32767) count = 32767;
  d.ObjCount = static_cast<int16_t>(count);
  d.ObjList.Allocate(count);
  int i = 0;
  for (int x = 0; x <= d.MapMaxX && i < count; ++x)
    for (int y = 0; y <= d.MapMaxY && i < count; ++y)
      if (d.HexCtl(x, y, 1) != 0) {
        ++i;
        d.ObjList(i, 0) = static_cast<int16_t>(x);
        d.ObjList(i, 1) = static_cast<int16_t>(y);
        d.ObjList(i, 2) = d.HexCtl(x, y, 0);
        d.ObjList(i, 4) = d.HexOrigOwner(x, y);
        d.ObjList(i, 5) = 3;
      }
}

void BuildOwnerMap(Session& s) {
  Document& d = s.doc;
  d.HexOrigOwner.Allocate(d.W(), d.H());
  for (int i = 1; i <= d.ObjCount; ++i) {
    const int x = d.ObjList(i, 0), y = d.ObjList(i, 1);
    // A table read from a file may point off the map; such rows are skipped.
    if (d.OnMap(x, y)) d.HexOrigOwner(x, y) = static_cast<uint8_t>(d.ObjList(i, 4));
  }
}

void RetypeHexes(Session& s) {
  Document& d = s.doc;
  for (int x = 0; x <= d.MapMaxX; ++x)
    for (int y = 0; y <= d.MapMaxY; ++y) d.HexInfo(x, y, 0) = s.ref.TypeOf(d.HexTile(x, y));
  s.MapEdited();
}

void KeepPensOnMap(Session& s) {
  const Document& d = s.doc;
  Pens& p = s.pens;
  auto inX = [&](int16_t& v) { v = std::clamp<int16_t>(v, 0, d.MapMaxX); };
  auto inY = [&](int16_t& v) { v = std::clamp<int16_t>(v, 0, d.MapMaxY); };
  inX(p.CurHexX);
  inY(p.CurHexY);
  inX(p.SelX1);
  inX(p.SelX2);
  inY(p.SelY1);
  inY(p.SelY2);
}

void AfterDocumentReplaced(Session& s) {
  KeepPensOnMap(s);
  s.MapReplaced();
  FillHexPixel(s);
  s.forms.Form5Loaded = false;
  s.ui().UnloadForm(FormId::Form5);
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

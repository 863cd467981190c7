#include "document/document_ops.h"

#include <utility>

#include "document/mapfile.h"
#include "document/mapstate.h"
#include "platform/fileio.h"

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

void BuildObjList(MapState& s) {
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

void BuildOwnerMap(MapState& s) {
  Document& d = s.doc;
  d.HexOrigOwner.Allocate(d.W(), d.H());
  for (int i = 1; i <= d.ObjCount; ++i) {
    const int x = d.ObjList(i, 0), y = d.ObjList(i, 1);
    // A table read from a file may point off the map; such rows are skipped.
    if (d.OnMap(x, y)) d.HexOrigOwner(x, y) = static_cast<uint8_t>(d.ObjList(i, 4));
  }
}

void RetypeHexes(MapState& s) {
  Document& d = s.doc;
  for (int x = 0; x <= d.MapMaxX; ++x)
    for (int y = 0; y <= d.MapMaxY; ++y) d.HexInfo(x, y, 0) = s.ref.TypeOf(d.HexTile(x, y));
  s.MapEdited();
}

bool WriteSnapshot(MapState& s) {
  s.SetLabel3("Writing map data");
  SafeFileWriter w(s.App("autosave.map"));
  w.KeepOldTail(true);
  WriteSnapshotFile(s.doc, w);
  if (!w.commit()) {
    s.MsgBox("The undo snapshot could not be written: " + w.error() + ".");
    return false;
  }
  return true;
}

}  // namespace kv

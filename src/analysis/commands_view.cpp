// The analysis commands that move the view, draw, or take the undo
// snapshot. Kept apart from the checks themselves, which need none of that.
#include <algorithm>
#include <thread>

#include "analysis/aitables.h"
#include "analysis/roadcheck.h"
#include "document/document_ops.h"
#include "document/mapfile.h"
#include "view/compose.h"
#include "view/mapview.h"
#include "view/render_api.h"
#include "view/scrolling.h"

namespace kv {

namespace {

// Puts the view's top left at (vx, vy) through the scroll bars, whose change
// handlers only show the buffer: the caller redraws.
void PlaceView(MapView& s, int vx, int vy) {
  ViewState& v = s.view;
  v.ViewX = vx;
  v.ViewY = vy;
  SetScrollValue(s, Bar::H, vx);
  SetScrollValue(s, Bar::V, vy);
}

}  // namespace

void mNextUnconnected_Click(MapView& s) {
  int16_t fx = 0, fy = 0;
  if (!FindNextFault(s, s.view.ViewX, fx, fy)) {
    s.MsgBox("none found");
    return;
  }
  // The fault in the middle of the view, the view's corner at least (1, 1)
  // and within the scroll bars' reach.
  const ViewState& v = s.view;
  int vx = std::max(fx - v.ViewCols / 2, 1), vy = std::max(fy - v.ViewRows / 2, 1);
  vx = std::min(vx, v.HScroll1.Max);
  vy = std::min(vy, v.VScroll1.Max);
  PlaceView(s, vx, vy);
  RedrawBuffers(s);
  BlueHex(s, fx, fy);
}

void mDefaultHC_Click(MapView& s) {
  const HexArea a = BulkArea(s);
  if (s.pens.DefaultAreaAll == -1) WriteSnapshot(s);
  SetDefaultControl(s, a);
  RedrawBuffers(s);
}

void mRoadsOnly_Click(MapView& s) {
  const HexArea a = BulkArea(s);
  if (s.pens.DefaultAreaAll == -1) WriteSnapshot(s);
  SetRoadControl(s, a);
  RedrawBuffers(s);
}

bool WriteAITables(MapView& s) {
  BuildObjList(s);
  const int cores = std::max(1u, std::thread::hardware_concurrency());
  s.SetPointer(vbHourglass);
  // The view visits each objective in turn, as it is processed, so that the
  // view and the drawn hexes end as the one-by-one order leaves them.
  const bool ok = WriteAIFile(s, cores, [&s](int i) {
    const ViewState& v = s.view;
    int vx = s.doc.ObjList(i, 0), vy = s.doc.ObjList(i, 1);
    vx = std::min(std::max(vx, v.HScroll1.Min), v.HScroll1.Max);
    vy = std::min(std::max(vy, v.VScroll1.Min), v.VScroll1.Max);
    PlaceView(s, vx, vy);
    RedrawBuffers(s);
  });
  s.SetPointer(vbArrow);
  return ok;
}

void BuildAITables_Click(MapView& s) {
  BuildObjList(s);
  WriteAITables(s);
}

}  // namespace kv

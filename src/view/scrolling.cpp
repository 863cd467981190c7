#include "view/scrolling.h"

#include <algorithm>
#include <cstdlib>

#include "view/mapview.h"
#include "view/render_api.h"
#include "view/scrollfill.h"

namespace kv {

void SetScrollValue(MapView& s, Bar bar, int value) {
  ScrollBarModel& b = bar == Bar::H ? s.view.HScroll1 : s.view.VScroll1;
  // A bar takes no value outside its range (a map smaller than the view has
  // a maximum below the minimum): it stops at the nearer end.
  value = std::clamp(value, std::min(b.Min, b.Max), std::max(b.Min, b.Max));
  if (b.Value == value) return;  // an unchanged value fires nothing
  b.Value = value;
  s.ui().Changed(bar == Bar::H ? Change::HScroll1 : Change::VScroll1);
  if (bar == Bar::H)
    HScroll1_Change(s);
  else
    VScroll1_Change(s);
}

void KeepScrollValuesInRange(MapView& s) {
  for (ScrollBarModel* b : {&s.view.HScroll1, &s.view.VScroll1})
    b->Value = std::clamp(b->Value, std::min(b->Min, b->Max), std::max(b->Min, b->Max));
}

void SetScrollRanges(MapView& s) {
  ViewState& v = s.view;
  v.ViewMaxX = s.doc.MapMaxX - v.ViewCols;
  v.ViewMaxY = s.doc.MapMaxY - v.ViewRows;
  v.HScroll1.Max = v.ViewMaxX;
  v.VScroll1.Max = v.ViewMaxY;
  KeepScrollValuesInRange(s);
  s.ui().Changed(Change::HScroll1);
  s.ui().Changed(Change::VScroll1);
}

void HScroll1_Change(MapView& s) {
  ViewState& v = s.view;
  if (v.ScrollSilent == 0) {
    const int d = v.ViewX - v.HScroll1.Value;
    v.ViewX = v.HScroll1.Value;
    if (d == -1) ScrollRight(s);
    if (d == 1) ScrollLeft(s);
    // The step leaves out what a full redraw would show at the view's edges.
    if (std::abs(d) == 1) CompleteScrollStep(s, -d, 0);
    if (std::abs(d) > 1) RedrawBuffers(s);
  }
  BlitPic1(s);
}

void VScroll1_Change(MapView& s) {
  ViewState& v = s.view;
  if (v.ScrollSilent == 0) {
    const int d = v.ViewY - v.VScroll1.Value;
    v.ViewY = v.VScroll1.Value;
    if (d == -1) ScrollDown(s);
    if (d == 1) ScrollUp(s);
    if (std::abs(d) == 1) CompleteScrollStep(s, 0, -d);
    if (std::abs(d) > 1) RedrawBuffers(s);
  }
  BlitPic1(s);
}

void Center_Hex(MapView& s, int16_t x, int16_t y) {
  ViewState& v = s.view;
  v.ScrollSilent = -1;
  const int cx = v.ViewCols / 2 + v.ViewX, cy = v.ViewRows / 2 + v.ViewY;
  if (std::abs(x - cx) > v.ViewCols / 4) {
    int nx = x - v.ViewCols / 2;
    if (nx < v.HScroll1.Min) nx = v.HScroll1.Min;
    if (nx > v.HScroll1.Max) nx = v.HScroll1.Max;
    v.ViewX = nx;
    if (nx != v.HScroll1.Value) SetScrollValue(s, Bar::H, nx);
  }
  if (std::abs(y - cy) > v.ViewRows / 4) {
    int ny = y - v.ViewRows / 2;
    if (ny < v.VScroll1.Min) ny = v.VScroll1.Min;
    if (ny > v.VScroll1.Max) ny = v.VScroll1.Max;
    v.ViewY = ny;
    if (ny != v.VScroll1.Value) SetScrollValue(s, Bar::V, ny);
  }
  v.ViewX = v.HScroll1.Value;
  v.ViewY = v.VScroll1.Value;
  v.ScrollSilent = 0;
}

}  // namespace kv

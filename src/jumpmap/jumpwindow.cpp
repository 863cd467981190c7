#include "jumpmap/jumpwindow.h"

#include <algorithm>

#include "jumpmap/jumpmap.h"
#include "platform/keys.h"
#include "session.h"

namespace kv {

namespace {

void ShowForm(Session& s, FormId form) { s.ui().ShowForm(form); }

// Tells the user why a flag view cannot be shown.
bool Report(Session& s, bool ok, const std::string& err) {
  if (!ok) s.MsgBox("The map's picture cannot be used: " + err, vbOKOnly);
  return ok;
}

}  // namespace

void JumpWindowSize(const MapView& s, int vbarW, int hbarH, int& w, int& h) {
  w = 600;
  h = 600;
  const int screenW = s.view.ScreenW, screenH = s.view.ScreenH;
  if (s.doc.MapMaxX < screenW) {
    const int want = std::min(s.doc.MapMaxX + vbarW + 13, screenW);
    if (want > w) w = want;
  }
  if (s.doc.MapMaxY < screenH) {
    const int want = std::min(s.doc.MapMaxY + hbarH + 59, screenH);
    if (want > h) h = want;
  }
}

JumpWindowLayout LayoutJumpWindow(int scaleW, int scaleH, int vbarW, int hbarH) {
  JumpWindowLayout l;
  l.Picture1 = {0, 0, std::max(0, scaleW - vbarW), std::max(0, scaleH - hbarH)};
  l.VScroll1 = {l.Picture1.Width, 0, vbarW, l.Picture1.Height};
  l.HScroll1 = {0, l.Picture1.Height, l.Picture1.Width, hbarH};
  return l;
}

void JumpScrollRanges(Session& s, int frameW, int frameH, bool afterResize) {
  JumpMapState& j = s.jump;
  j.HScroll1.Min = j.VScroll1.Min = 0;
  j.HScroll1.Max = j.Picture2.Width() - frameW + (afterResize ? s.ref.JumpColPitch : 0);
  j.VScroll1.Max = j.Picture2.Height() - frameH + (afterResize ? s.ref.JumpRowPitch : 0);
  j.VScroll1.LargeChange = 10;
  j.HScroll1.LargeChange = 20;
  for (ScrollBarModel* b : {&j.HScroll1, &j.VScroll1})
    b->Value = std::clamp(b->Value, b->Min, std::max(b->Min, b->Max));
}

void JumpWindowActivate(Session& s, int scaleW, int scaleH, bool hVisible, bool vVisible) {
  JumpMapState& j = s.jump;
  const ViewState& v = s.view;
  auto follow = [](ScrollBarModel& b, int value) { b.Value = std::clamp(value, b.Min, std::max(b.Min, b.Max)); };
  if (hVisible) follow(j.HScroll1, v.ViewX + v.ViewCols - scaleW / 2);
  if (vVisible) follow(j.VScroll1, v.ViewY + v.ViewRows - scaleH / 2);
  DrawJumpBox(s);
}

std::vector<std::string> JumpCountryList(const MapState& s) {
  std::vector<std::string> out;
  for (int i = 1; i <= s.ref.NationCount; ++i) out.push_back(s.ref.NationName[i]);
  return out;
}

void JumpShowCountry(Session& s) { s.jump.ListVisible = true; }

bool JumpCountryClick(Session& s, int listIndex) {
  const std::vector<std::string> names = JumpCountryList(s);
  if (listIndex < 0 || static_cast<size_t>(listIndex) >= names.size()) return false;
  int16_t n = 0;
  for (int i = 1; i <= s.ref.NationCount; ++i)
    if (s.ref.NationName[i] == names[listIndex]) {
      n = static_cast<int16_t>(i);
      break;
    }
  std::string err;
  const bool ok = ZoomFlags(s, n, &err);
  s.pens.CurNation = n;
  s.jump.ListVisible = false;
  return Report(s, ok, err);
}

bool JumpShowObjectives(Session& s) {
  std::string err;
  if (!Report(s, ZoomFlags(s, 0, &err), err)) return false;
  const ViewState& v = s.view;
  // The box goes to the pixels numbered like the view's hexes.
  s.jump.Picture2Box = {true,
                        v.ViewX,
                        v.ViewY,
                        v.ViewX + v.ViewCols,
                        v.ViewY + v.ViewRows,
                        static_cast<uint32_t>(s.pens.JumpBoxColour) & 0xFFFFFFu};
  s.ui().Changed(Change::Form5Picture2);
  return true;
}

void JumpWindowKeyDown(Session& s, int keyCode, int /*shift*/) {
  switch (keyCode) {
    case key::F1: ShowForm(s, FormId::Form5); break;
    case key::F2: ShowForm(s, FormId::Form2); break;
    case key::F3: ShowForm(s, FormId::Form3); break;
    case key::C:
      s.pens.JumpBoxColour = s.pens.JumpBoxColour == 0xFFFFFF ? 0 : 0xFFFFFF;
      DrawJumpBox(s);
      break;
    default: break;
  }
}

}  // namespace kv

#include "editing/tilepicker.h"

#include <algorithm>
#include <cstdio>

#include "editing/editing.h"
#include "platform/fileio.h"
#include "platform/textfields.h"
#include "session.h"

namespace kv {

namespace {

int Whole(double v) { return static_cast<int>(RoundHalfEven(v)); }

void ShowForm(Session& s, FormId form) { s.ui().ShowForm(form); }

// F2 to F4 and a left click: each flag follows its screen.
void ToggleScreen(Session& s, uint8_t& flag, FormId form) {
  if (flag == 0) {
    flag = 1;
    ShowForm(s, form);
  } else {
    flag = 0;  // the screen stays as it is
  }
}

void OpenScreen(Session& s, uint8_t& flag, FormId form) {
  flag = 1;
  ShowForm(s, form);
}

void FollowPen(Session& s, uint8_t flag, FormId form) {
  if (flag != 1) return;
  if (s.ed.hooks.TileDataGetStuff) s.ed.hooks.TileDataGetStuff(s, form);
  ShowForm(s, form);
}

}  // namespace

int16_t SheetTileAt(const RefData& ref, double X, double Y) {
  const int col = Whole(X) / ref.HexW, row = Whole(Y) / ref.HexH;
  return static_cast<int16_t>(row * kSheetColumns + col);
}

std::string TileCaption(const MapState& s, int16_t n) {
  char hex[16];
  std::snprintf(hex, sizeof hex, "%X", static_cast<unsigned>(static_cast<uint16_t>(n)));
  const uint8_t type = s.ref.TypeOf(n);
  const std::string name = type < s.ref.TerrainName.size() ? s.ref.TerrainName[type] : std::string();
  return "Tiles F2 " + std::to_string(n) + "(x" + hex + ") " + name;
}

bool TilePicker_MouseDown(Session& s, int button, int /*shift*/, double X, double Y) {
  Pens& p = s.pens;
  p.CurTile = SheetTileAt(s.ref, X, Y);
  if (button == 1) {
    if (s.ed.hooks.ClearTilePickerDrawing) s.ed.hooks.ClearTilePickerDrawing(s);
    p.SideEdit = 0;
    p.AutoTile = 0;
    s.ed.f1.Command2Caption = "Auto-Tile Off";
    s.ui().Changed(Change::Command2);
    s.ed.f1.mRandomCaption = "Random Tiles OFF";
    s.ed.f1.mRandomChecked = false;
    p.RandomMode = 0;
    s.ui().Changed(Change::mRandom);
    p.CtlMode = 0;
    const TilePickerState& t = s.ed.picker;
    FollowPen(s, t.RoadFormOpen, FormId::Form11);
    FollowPen(s, t.PatternFormOpen, FormId::Form13);
    FollowPen(s, t.TerrainFormOpen, FormId::Form14);
    return false;
  }
  return button == 2;
}

void TilePicker_MouseMove(Session& s, int /*button*/, int /*shift*/, double X, double Y) {
  if (s.ed.hooks.ClearTilePickerDrawing) s.ed.hooks.ClearTilePickerDrawing(s);
  const int16_t n = SheetTileAt(s.ref, X, Y);
  if (n <= s.ref.TileMax) s.ed.picker.Caption = TileCaption(s, n);
}

void TilePicker_KeyDown(Session& s, int keyCode, int /*shift*/) {
  TilePickerState& t = s.ed.picker;
  switch (keyCode) {
    case key::F1: ShowForm(s, FormId::Form12); break;
    case key::F2: ToggleScreen(s, t.TerrainFormOpen, FormId::Form14); break;
    case key::F3: ToggleScreen(s, t.RoadFormOpen, FormId::Form11); break;
    case key::F4: ToggleScreen(s, t.PatternFormOpen, FormId::Form13); break;
    default: break;
  }
}

void TilePicker_mTerrain_Click(Session& s) { OpenScreen(s, s.ed.picker.TerrainFormOpen, FormId::Form14); }
void TilePicker_mRoads_Click(Session& s) { OpenScreen(s, s.ed.picker.RoadFormOpen, FormId::Form11); }
void TilePicker_mPatterns_Click(Session& s) { OpenScreen(s, s.ed.picker.PatternFormOpen, FormId::Form13); }

void TilePicker_ScreenClosed(Session& s, FormId form) {
  TilePickerState& p = s.ed.picker;
  if (form == FormId::Form11) p.RoadFormOpen = 0;
  if (form == FormId::Form13) p.PatternFormOpen = 0;
  if (form == FormId::Form14) p.TerrainFormOpen = 0;
}

PickerLayout LayoutTilePicker(const RefData& ref, int scaleW, int scaleH, int barW, int barH, int sheetW, int sheetH) {
  PickerLayout l;
  l.Picture1 = {0, 0, std::max(0, scaleW - barW), std::max(0, scaleH - barH)};
  l.VScroll1 = {l.Picture1.Left + l.Picture1.Width, l.Picture1.Top, barW, l.Picture1.Height};
  l.HScroll1 = {l.Picture1.Left, l.Picture1.Top + l.Picture1.Height, l.Picture1.Width, barH};
  l.V.Max = sheetH - l.Picture1.Height;
  l.V.SmallChange = l.V.LargeChange = ref.HexH;
  l.H.Max = sheetW - l.Picture1.Width;
  l.H.SmallChange = l.H.LargeChange = ref.HexW;
  return l;
}

void TileHelp_Load(Session& s) {
  s.ed.picker.HelpLabels = TilePickerState{}.HelpLabels;  // a fresh form shows its design text
  std::vector<uint8_t> text;
  if (!FileExists(s.App("tvk_info/s2_help.txt")) || !ReadFileBytes(s.App("tvk_info/s2_help.txt"), text, nullptr))
    return;
  FieldReader in(text);
  std::array<std::string, 8> f;
  for (auto& v : f) v = in.Text();
  if (!in.ok()) return;  // a shorter file is no usable one
  std::copy(f.begin(), f.end(), s.ed.picker.HelpLabels.begin());
}

}  // namespace kv

#include "autotile/tilescreens.h"

#include <cstdio>

#include "autotile/stores.h"
#include "platform/textfields.h"
#include "session.h"

namespace kv {

namespace {

std::string Pad(int n, int width) {
  char b[16];
  std::snprintf(b, sizeof b, "%0*d", width, n);
  return b;
}

std::string NameOf(const Session& s, int t) {
  return t >= 0 && static_cast<size_t>(t) < s.ref.TerrainName.size() ? s.ref.TerrainName[t] : std::string();
}

TileScreenCommon& Common(Session& s, TileScreen which) {
  switch (which) {
    case TileScreen::Road: return s.tileScreens.f11;
    case TileScreen::Pattern: return s.tileScreens.f13;
    case TileScreen::Terrain: break;
  }
  return s.tileScreens.f14;
}

std::string TileTypePath(const Session& s) { return s.App("mapedit/tiletype.dat"); }
std::string RandomPath(const Session& s) { return s.App("mapedit/randomtile.dat"); }
std::string RoadInfoPath(const Session& s) { return s.App("mapedit/roadinfo.dat"); }
std::string PTilesPath(const Session& s) { return s.App("mapedit/ptiles.dat"); }
std::string PatternsPath(const Session& s) { return s.App("mapedit/patterns.dat"); }

// SideDigits of six pattern bytes: digit p for a non-zero byte at ring position p.
std::string DigitsOf(const uint8_t* six) {
  std::array<bool, 6> on{};
  for (int i = 0; i < 6; ++i) on[i] = six[i] != 0;
  return SideDigits(on);
}

void RoadGetStuff(Session& s) {
  RoadScreenState& f = s.tileScreens.f11;
  const int16_t t = s.pens.CurTile;
  f.Label1 = std::to_string(t) + " " + NameOf(s, s.ref.TypeOf(t));
  uint8_t six[6];
  ReadTileBytes(s, RoadInfoPath(s), 6LL * t, six, 6);
  for (int i = 0; i < 6; ++i) f.Image2Tag[i] = std::to_string(six[i]);
  TileScreen_DrawTile(s, TileScreen::Road);
}

void RoadSaveStuff(Session& s) {
  RoadScreenState& f = s.tileScreens.f11;
  const int16_t t = s.pens.CurTile;
  uint8_t six[6];
  int sum = 0;
  for (int i = 0; i < 6; ++i) {
    six[i] = f.Image2Tag[i] == "1" ? 1 : 0;
    sum += six[i];
  }
  WriteTileBytes(s, RoadInfoPath(s), 6LL * t, six, 6);
  // The road flag changes at once; the side table only at the next start.
  if (t >= 0 && static_cast<size_t>(t) < s.ref.TileRoad.size()) s.ref.TileRoad[t] = sum > 0 ? 1 : 0;
}

void PatternGetStuff(Session& s) {
  PatternScreenState& f = s.tileScreens.f13;
  const int16_t n = s.pens.CurTile;
  PatternScreen_Option1_Click(s, ReadTileByte(s, PTilesPath(s), n) == 0 ? 0 : 1);
  const uint8_t t = ReadTileByte(s, TileTypePath(s), n);
  f.Label1Tag = std::to_string(t);
  f.Label1 = Pad(n, 3) + ": " + NameOf(s, t);
  f.Label4 = t == 14 ? "Mark adjacent port, or ocean hexes." : "Mark adjacent " + NameOf(s, t) + " hexes.";
  f.Image2Tag.fill("0");
  f.OldDigits.clear();
  uint8_t six[6];
  ReadTileBytes(s, PatternsPath(s), 6LL * n, six, 6);
  for (int i = 0; i < 6; ++i)
    if (six[i] > 0) f.Image2Tag[i] = "1";
  f.OldDigits = DigitsOf(six);
  TileScreen_DrawTile(s, TileScreen::Pattern);
}

void PatternSaveStuff(Session& s) {
  PatternScreenState& f = s.tileScreens.f13;
  const int16_t n = s.pens.CurTile;
  const uint8_t flag = f.Option1 == 1 ? 1 : 0;
  WriteTileBytes(s, PTilesPath(s), n, &flag, 1);
  uint8_t six[6];
  for (int i = 0; i < 6; ++i) six[i] = f.Image2Tag[i] == "1" ? 1 : 0;
  WriteTileBytes(s, PatternsPath(s), 6LL * n, six, 6);
  const std::string digits = DigitsOf(six);
  const int T = s.ref.TypeOf(n);
  EnsureFolder(s, s.App("mapedit/t" + TerrainNN(T)));
  const std::string oldPath = TileListPath(s, T, f.OldDigits), newPath = TileListPath(s, T, digits);
  if (flag == 0) {
    BuildPatternFile(s, oldPath, f.OldDigits);  // the tile leaves its list
  } else if (digits != f.OldDigits) {
    BuildPatternFile(s, oldPath, f.OldDigits);
    BuildPatternFile(s, newPath, digits);
  } else {
    BuildPatternFile(s, newPath, digits);
  }
  f.OldDigits = digits;
}

void TerrainLoad(Session& s) {
  TerrainScreenState& f = s.tileScreens.f14;
  f.List1.clear();
  for (int t = 0; t <= s.ref.TerrainMax; ++t) f.List1.push_back(NameOf(s, t));
  f.ListIndex = -1;
}

void TerrainGetStuff(Session& s) {
  TerrainScreenState& f = s.tileScreens.f14;
  const int16_t n = s.pens.CurTile;
  const int type = s.ref.TypeOf(n);
  f.Label1 = std::to_string(n) + " " + NameOf(s, type);
  s.ui().Changed(Change::Form14Label1);  // shown at once
  const uint8_t stored = ReadTileByte(s, TileTypePath(s), n);
  f.Label4Bold = stored != type;
  f.Label4Tag = std::to_string(stored);
  f.Label4 = NameOf(s, stored);
  f.Option1 = ReadTileByte(s, RandomPath(s), n) == 0 ? 0 : 1;
  // Setting the list's index reports a click, as the window system does.
  f.ListIndex = type < static_cast<int>(f.List1.size()) ? type : -1;
  TerrainScreen_List1_Click(s);
  TileScreen_DrawTile(s, TileScreen::Terrain);
}

void TerrainSaveStuff(Session& s) {
  TerrainScreenState& f = s.tileScreens.f14;
  const int16_t n = s.pens.CurTile;
  if (f.ListIndex > -1) {
    f.Label4Tag = std::to_string(f.ListIndex);
    if (n >= 0 && static_cast<size_t>(n) < s.ref.TileType.size()) s.ref.TileType[n] = static_cast<uint8_t>(f.ListIndex);
  }
  const uint8_t code = static_cast<uint8_t>(Val(f.Label4Tag));
  WriteTileBytes(s, TileTypePath(s), n, &code, 1);
  f.Label4 = NameOf(s, code);
  const uint8_t random = f.Option1 == 0 ? 0 : 1;
  WriteTileBytes(s, RandomPath(s), n, &random, 1);
}

Change ScreenChanged(TileScreen which) {
  switch (which) {
    case TileScreen::Road: return Change::Form11;
    case TileScreen::Pattern: return Change::Form13;
    case TileScreen::Terrain: break;
  }
  return Change::Form14;
}

FormId ScreenForm(TileScreen which) {
  switch (which) {
    case TileScreen::Road: return FormId::Form11;
    case TileScreen::Pattern: return FormId::Form13;
    case TileScreen::Terrain: break;
  }
  return FormId::Form14;
}

}  // namespace

std::string MarkPicture(const std::string& tag) { return tag == "1" ? "bmp/c1.bmp" : "bmp/c0.bmp"; }

void TileScreen_Load(Session& s, TileScreen which) {
  ResetStoreProblem(s);
  if (which == TileScreen::Terrain) TerrainLoad(s);
  Common(s, which).Loaded = true;
  TileScreen_GetStuff(s, which);
}

void TileScreen_Unload(Session& s, TileScreen which) {
  Common(s, which).Loaded = false;
  if (s.ed.hooks.TileScreenClosed) s.ed.hooks.TileScreenClosed(s, ScreenForm(which));
}

void TileScreen_GetStuff(Session& s, TileScreen which) {
  switch (which) {
    case TileScreen::Road: RoadGetStuff(s); break;
    case TileScreen::Pattern: PatternGetStuff(s); break;
    case TileScreen::Terrain: TerrainGetStuff(s); break;
  }
  s.ui().Changed(ScreenChanged(which));
}

void TileScreen_SaveStuff(Session& s, TileScreen which) {
  switch (which) {
    case TileScreen::Road: RoadSaveStuff(s); break;
    case TileScreen::Pattern: PatternSaveStuff(s); break;
    case TileScreen::Terrain: TerrainSaveStuff(s); break;
  }
  s.ui().Changed(ScreenChanged(which));
}

void TileScreen_DrawTile(Session& s, TileScreen which) {
  TileScreenCommon& f = Common(s, which);
  const RefData& r = s.ref;
  const int16_t t = s.pens.CurTile;
  f.Picture1.Create(kTileScreenPicW, kTileScreenPicH);
  const Bitmap& sheet = s.sprites.TileSheet;
  if (sheet.Empty() || t < 0) return;
  StretchBlt(f.Picture1, 0, 0, kTileScreenPicW, kTileScreenPicH, sheet, r.HexW * (t % 16), r.HexH * (t / 16), r.HexW,
             r.HexH, SRCCOPY);
}

void TileScreen_nTile(Session& s, TileScreen which) {
  int16_t& t = s.pens.CurTile;
  t = t + 1 > s.ref.TileMax ? int16_t{0} : static_cast<int16_t>(t + 1);
  TileScreen_GetStuff(s, which);
}

void TileScreen_pTile(Session& s, TileScreen which) {
  int16_t& t = s.pens.CurTile;
  t = t - 1 < 0 ? s.ref.TileMax : static_cast<int16_t>(t - 1);
  TileScreen_GetStuff(s, which);
}

void TileScreen_Command(Session& s, TileScreen which, int index) {
  if (index < 0 || index > 2) return;
  if (which == TileScreen::Terrain) s.tileScreens.f14.List1Enabled = false;
  if (which != TileScreen::Road) Common(s, which).BoldCommand = index;
  if (index == 0) TileScreen_pTile(s, which);
  if (index == 1) TileScreen_nTile(s, which);
  if (index == 2) TileScreen_SaveStuff(s, which);
  if (which == TileScreen::Terrain) s.tileScreens.f14.List1Enabled = true;
  s.ui().Changed(ScreenChanged(which));
}

bool TileScreen_KeyDown(Session& s, TileScreen which, int keyCode) {
  const int index = keyCode == 66 ? 0 : keyCode == 78 ? 1 : keyCode == 83 ? 2 : -1;
  if (index < 0) return false;
  if (which == TileScreen::Terrain) s.tileScreens.f14.List1Enabled = false;
  if (which != TileScreen::Road) Common(s, which).BoldCommand = index;
  if (index == 0) TileScreen_pTile(s, which);
  if (index == 1) TileScreen_nTile(s, which);
  if (index == 2) TileScreen_SaveStuff(s, which);
  s.ui().Changed(ScreenChanged(which));
  return true;
}

void TileScreen_KeyUp(Session& s, TileScreen which) {
  if (which != TileScreen::Terrain) return;
  s.tileScreens.f14.List1Enabled = true;
  s.ui().Changed(Change::Form14);
}

void TileScreen_MouseMove(Session& s, TileScreen which) {
  TileScreenCommon& f = Common(s, which);
  if (f.BoldCommand == -1) return;
  f.BoldCommand = -1;
  s.ui().Changed(ScreenChanged(which));
}

void RoadScreen_Label3_MouseMove(Session& s, int index) {
  RoadScreenState& f = s.tileScreens.f11;
  if (f.BoldCommand == index) return;
  f.BoldCommand = index;
  s.ui().Changed(Change::Form11);
}

void TileScreen_Image2_Click(Session& s, TileScreen which, int index) {
  if (index < 0 || index > 5 || which == TileScreen::Terrain) return;
  std::string& tag =
      which == TileScreen::Road ? s.tileScreens.f11.Image2Tag[index] : s.tileScreens.f13.Image2Tag[index];
  tag = tag == "1" ? "0" : "1";
  s.ui().Changed(ScreenChanged(which));
}

void PatternScreen_Option1_Click(Session& s, int index) {
  PatternScreenState& f = s.tileScreens.f13;
  f.Option1 = index == 1 ? 1 : 0;
  f.MarksVisible = f.Option1 == 1;
  s.ui().Changed(Change::Form13);
}

void BuildPatternFile(Session& s, const std::string& path, const std::string& digits) {
  const RefData& r = s.ref;
  const int T = r.TypeOf(s.pens.CurTile);
  const int count = r.TileMax + 1;
  std::vector<uint8_t> flags(static_cast<size_t>(std::max(count, 0)));
  std::vector<uint8_t> marks(static_cast<size_t>(std::max(count, 0)) * 6);
  if (count > 0) {
    ReadTileBytes(s, PTilesPath(s), 0, flags.data(), flags.size());
    ReadTileBytes(s, PatternsPath(s), 0, marks.data(), marks.size());
  }
  DeleteStoreFile(s, path);
  std::string out;
  for (int n = 0; n < count; ++n) {
    if (r.TypeOf(n) != T || flags[n] != 1) continue;
    if (DigitsOf(&marks[static_cast<size_t>(n) * 6]) != digits) continue;
    out += Pad(n, 3);
    out += "\r\n";
  }
  if (!out.empty()) WriteStoreFile(s, path, out);
}

void TerrainScreen_List1_Click(Session& s) {
  TerrainScreenState& f = s.tileScreens.f14;
  const std::string text =
      f.ListIndex >= 0 && f.ListIndex < static_cast<int>(f.List1.size()) ? f.List1[f.ListIndex] : std::string();
  f.Label1 = Pad(s.pens.CurTile, 4) + " " + text;
  f.Label1Tag = std::to_string(f.ListIndex);
  s.ui().Changed(Change::Form14);
}

}  // namespace kv

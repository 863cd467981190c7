#include "editing/editing.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "autotile/engine.h"
#include "autotile/follow.h"
#include "autotile/passes.h"
#include "autotile/random.h"
#include "document/mapfile.h"
#include "document/namestore.h"
#include "editing/mapload.h"
#include "platform/textfields.h"
#include "session.h"
#include "view/compose.h"
#include "view/geometry.h"
#include "view/render_api.h"
#include "view/scrolling.h"
#include "view/transform.h"

namespace kv {

namespace {

bool IsSideRoadTerrain(int t) { return t == 5 || t == 14; }

void SetSides(Document& d, int x, int y, uint8_t v) {
  for (int k = 1; k <= 6; ++k) d.HexInfo(x, y, k) = v;
}

// Tells the form that a control's text or state changed.
void Changed(Session& s, Change what) { s.ui().Changed(what); }

// Rounds a pixel position the window system gives in fractions.
int RoundPixel(double v) {
  const double r = RoundHalfEven(v);
  if (r > 2e9) return 2000000000;
  if (r < -2e9) return -2000000000;
  return static_cast<int>(r);
}

// CInt of a number read from a box, kept inside the 16-bit range (a larger
// value would overflow there).
int CIntBox(double v) {
  const double r = RoundHalfEven(v);
  return static_cast<int>(std::clamp(r, -32768.0, 32767.0));
}

std::string NationNameOf(const Session& s, int n) {
  return n >= 0 && static_cast<size_t>(n) < s.ref.NationName.size() ? s.ref.NationName[n] : std::string();
}

std::string TerrainNameOf(const Session& s, int t) {
  return t >= 0 && static_cast<size_t>(t) < s.ref.TerrainName.size() ? s.ref.TerrainName[t] : std::string();
}

void SetCommand2(Session& s, const char* caption) {
  s.ed.f1.Command2Caption = caption;
  Changed(s, Change::Command2);
}

// The hex under a point of Picture1.
void HexAt(const Session& s, double X, double Y, int16_t& x, int16_t& y) {
  ViewTransform(s.ref, s.view).HexAt(X, Y, s.doc.MapMaxX, s.doc.MapMaxY, x, y);
}

}  // namespace

void SetHex(Session& s, int16_t x, int16_t y) {
  Document& d = s.doc;
  Pens& p = s.pens;
  const RefData& r = s.ref;
  if (!d.OnMap(x, y)) return;

  if (p.ElevMode == -1) {
    RedrawBuffers(s);  // shows the hexes of the pen's elevation before this one joins them
    d.HexElev(x, y) = static_cast<uint8_t>(std::clamp(p.ElevValue + 127, 0, 255));
    s.MapEdited(HexRect::Hex(x, y));
    BlueHex(s, x, y);
    return;
  }

  if (p.CtlMode == 0) {
    if (p.SideEdit == 0) {
      int16_t keep = -1, res = -1;
      if (p.RandomMode == -1) randomtile(s);
      if (p.AutoTile == 0) {
        // The learners read the surroundings before the hex changes.
        const Lesson road = r.RoadOf(p.CurTile) == 1 ? NewRoadPattern(s, x, y, p.CurTile) : Lesson::None;
        const Lesson other = NewPattern(s, x, y, p.CurTile);
        if (s.ed.hooks.Learned && (road != Lesson::None || other != Lesson::None))
          s.ed.hooks.Learned(s, LessonText(road, other, p.CurTile));
      }
      if (p.AutoTile == -1) {
        if (r.RoadOf(p.CurTile) == 1)
          CheckRoads(s, x, y, res);
        else
          AutoDrawTile(s, x, y, res);
        if (res >= 0 && res <= r.TileMax) {
          if (r.TypeOf(res) != r.TypeOf(p.CurTile)) keep = p.CurTile;
          p.CurTile = res;
        }
      }
      d.HexInfo(x, y, 0) = r.TypeOf(p.CurTile);
      d.HexTile(x, y) = p.CurTile;
      if (r.RoadOf(p.CurTile) == 1) ConnectRoads(s, x, y);
      if (IsSideRoadTerrain(r.TypeOf(p.CurTile))) SetSides(d, x, y, 1);
      if (keep != -1) p.CurTile = keep;
    } else if (p.SideEdit > 0) {
      p.CurTile = d.HexTile(x, y);
      // A side outside 1..6 (a click beside the strip's cells) sets nothing.
      if (p.CurSide >= 1 && p.CurSide <= 6) d.HexInfo(x, y, p.CurSide) = static_cast<uint8_t>(p.CurSideKind);
      if (p.AutoTile == -1) {
        int16_t res = -1;
        CheckRoads(s, x, y, res);
        if (res > -1) d.HexTile(x, y) = res;
      }
    }
  }

  if (p.ClearSides == -1) {
    p.CurTile = d.HexTile(x, y);
    SetSides(d, x, y, 0);
    Print_hex(s, x, y, 0);
  }

  switch (p.CtlMode) {
    case 1: {
      if (p.CurNation == 0) s.MsgBox("Select a Country", vbOKOnly);
      const int16_t old = d.HexDeploy(x, y);
      if (old == 0)
        d.HexDeploy(x, y) = p.CurNation;
      else if (old > 0)
        d.HexDeploy(x, y) = 0;
      break;
    }
    case 2:
      p.CurTile = d.HexTile(x, y);
      d.HexCtl(x, y, 0) = static_cast<uint8_t>(p.CurNation);
      d.HexCtl(x, y, 1) = static_cast<uint8_t>(p.CurObjType);
      d.HexOrigOwner(x, y) = static_cast<uint8_t>(p.CurOrigNation);
      // AreaMode 1 ("area") is kept and offered, and paints the one hex as
      // AreaMode 0 does: the design gives the area no effect of its own.
      Print_hex(s, x, y, 0);
      break;
    case 3:
      if (d.HexCtl(x, y, 1) > 0 && s.ed.hooks.LoadAITable) s.ed.hooks.LoadAITable(s, x, y);
      break;
    default: break;
  }
  s.MapEdited(HexRect::Hex(x, y));
}

void ExtendSelection(Session& s, int16_t cx, int16_t cy) {
  Pens& p = s.pens;
  if (p.SelX1 == 0) p.SelX1 = cx;
  if (cx < p.SelX1) p.SelX1 = cx;
  if (p.SelY1 == 0) p.SelY1 = cy;
  if (cy < p.SelY1) p.SelY1 = cy;
  if (p.SelX2 == 0) p.SelX2 = cx;
  if (cx > p.SelX2) p.SelX2 = cx;
  if (p.SelY2 == 0) p.SelY2 = cy;
  if (cy > p.SelY2) p.SelY2 = cy;
  if (p.SelX1 < cx && cx < p.SelX2) p.SelX2 = cx;
  if (p.SelY1 < cy && cy < p.SelY2) p.SelY2 = cy;
}

void Picture1_MouseDown(Session& s, int button, int /*shift*/, double X, double Y) {
  Pens& p = s.pens;
  Document& d = s.doc;
  if (s.ed.hooks.ClearTilePickerDrawing) s.ed.hooks.ClearTilePickerDrawing(s);
  HexAt(s, X, Y, p.CurHexX, p.CurHexY);
  s.ed.f1.Text2 = GetHexName(s, p.CurHexX, p.CurHexY);
  Changed(s, Change::Text2);
  // The shift state that counts is the one of the last key event.
  if (button == 1 && p.ShiftKey == 1) {
    ExtendSelection(s, p.CurHexX, p.CurHexY);
    RedrawBuffers(s);
  }
  if (button == 1 && p.ShiftKey == 0) {
    const bool follow = NeighboursFollowPaint(s);
    SetHex(s, p.CurHexX, p.CurHexY);
    if (follow)
      for (const HexRef& h : FollowNeighbours(s, p.CurHexX, p.CurHexY)) {
        s.MapEdited(HexRect::Hex(h.x, h.y));
        RedrawHex(s, h.x, h.y);
      }
    if (p.AutoTileResume == 1) {
      p.AutoTileResume = 0;
      p.AutoTile = -1;
      SetCommand2(s, "Auto-Tile ON");
    }
  }
  if (button == 2) {
    if (p.AutoTile == -1) p.AutoTileResume = 1;
    p.CtlMode = 0;
    p.CurTile = d.HexTile(p.CurHexX, p.CurHexY);
    p.SideEdit = 0;
    p.AutoTile = 0;
    SetCommand2(s, "Auto-Tile Off");
    p.RandomMode = 0;
    s.ed.f1.mRandomCaption = "Random Tiles OFF";
    s.ed.f1.mRandomChecked = false;
    Changed(s, Change::mRandom);
    p.SelX1 = p.SelX2 = p.SelY1 = p.SelY2 = 0;
    RedrawBuffers(s);
  }
  RedrawHex(s, p.CurHexX, p.CurHexY);
  Changed(s, Change::Picture1);
  s.ed.f1.Text4 = std::to_string(static_cast<int>(d.HexElev(p.CurHexX, p.CurHexY)) - 127);
  Changed(s, Change::Text4);
}

std::string HexStatusText(Session& s, int16_t x, int16_t y) {
  const Document& d = s.doc;
  const Pens& p = s.pens;
  const int t = d.HexInfo(x, y, 0);
  std::string out = "Hex: (" + std::to_string(x) + ", " + std::to_string(y) + ") ";
  out += TerrainNameOf(s, t);
  out += "(" + std::to_string(t) + ") ";
  out += " LM(" + std::to_string(d.HexLandMass(x, y)) + ") ";
  const int owner = d.HexCtl(x, y, 0), obj = d.HexCtl(x, y, 1);
  if (owner > 0 || obj > 0) {
    out += NationNameOf(s, owner);
    if (d.HexOrigOwner(x, y) != owner) out += " (" + NationNameOf(s, d.HexOrigOwner(x, y)) + ") ";
    if (obj == 1) out += " Secondary Obj.";
    if (obj == 2) out += " Primary Obj.";
    if (obj == 3) out += " Oil Resource";
    char buf[16];
    std::snprintf(buf, sizeof buf, "(%02d)", obj);
    out += buf;
  }
  out += " Tile # (" + std::to_string(d.HexTile(x, y)) + ")";
  out += GetHexName(s, x, y);
  out += " d=" + std::to_string(HexDistance(x, y, p.CurHexX, p.CurHexY));
  out += " Elev:" + std::to_string(static_cast<int>(d.HexElev(x, y)) - 127);
  out += " ContourMap(" + std::to_string(d.HexContour(x, y)) + ")";
  return out;
}

void Picture1_MouseMove(Session& s, int, int, double X, double Y) {
  int16_t x = 0, y = 0;
  HexAt(s, X, Y, x, y);
  const std::string text = HexStatusText(s, x, y);
  s.ed.f1.Text1 = text;
  Changed(s, Change::Text1);
  s.SetLabel3(text);
}

void Picture2_MouseDown(Session& s, int, int, double X, double) {
  Pens& p = s.pens;
  p.ClearSides = 0;
  s.ed.f1.Command5Caption = "Clear Sides Off";
  Changed(s, Change::Command5);
  p.CtlMode = 0;
  p.SideEdit = 2;
  RedrawBuffers(s);
  const int side = RoundPixel(X) / std::max<int>(1, s.ref.HexW) + 1;
  p.CurSide = static_cast<int16_t>(std::clamp(side, -32768, 32767));
}

int16_t StepTileOfKind(const Session& s, int16_t from, int dir) {
  const RefData& r = s.ref;
  if (r.TileMax < 0) return from;
  const uint8_t road = r.RoadOf(from), type = r.TypeOf(from);
  int t = from;
  // At most one round of the sheet: a pen outside it may have no tile of its kind.
  for (int n = 0; n <= r.TileMax + 1; ++n) {
    t += dir;
    if (t < 0) t = r.TileMax;
    if (t > r.TileMax) t = 0;
    if (r.RoadOf(t) == road && r.TypeOf(t) == type) return static_cast<int16_t>(t);
  }
  return from;
}

namespace {

void PenToCurrentHex(Session& s) {
  Pens& p = s.pens;
  if (!s.doc.OnMap(p.CurHexX, p.CurHexY)) return;
  s.doc.HexTile(p.CurHexX, p.CurHexY) = p.CurTile;
  s.MapEdited(HexRect::Hex(p.CurHexX, p.CurHexY));
  RedrawHex(s, p.CurHexX, p.CurHexY);
  Changed(s, Change::Picture1);
  s.SetLabel3("Tile " + std::to_string(p.CurTile));
}

void ArrowKey(Session& s, Bar bar, int step) {
  Changed(s, Change::Picture1SetFocus);
  const ScrollBarModel& b = bar == Bar::H ? s.view.HScroll1 : s.view.VScroll1;
  if (step < 0 && b.Value > b.Min) SetScrollValue(s, bar, b.Value - 1);
  if (step > 0 && b.Value < b.Max) SetScrollValue(s, bar, b.Value + 1);
}

void ShowForm(Session& s, FormId form) { s.ui().ShowForm(form); }

}  // namespace

void Form_KeyDown(Session& s, int keyCode, int shift) {
  Pens& p = s.pens;
  Document& d = s.doc;
  p.ShiftKey = static_cast<int16_t>(shift);
  switch (keyCode) {
    case key::F1: ShowForm(s, FormId::Form5); break;
    case key::F2: ShowForm(s, FormId::Form2); break;
    case key::F3: ShowForm(s, FormId::Form3); break;
    case key::F4:
      p.HighlightTile = p.HighlightTile == -1 ? p.CurTile : int16_t{-1};
      RedrawBuffers(s);
      break;
    case key::F5: WriteSnapshot(s); break;
    case key::F6:
      if (s.ed.hooks.ExportMapImage) s.ed.hooks.ExportMapImage(s);
      break;
    case key::F7: RestoreSnapshot(s); break;
    case key::F8: LearnVisibleForests(s); break;
    case key::Up: ArrowKey(s, Bar::V, -1); break;
    case key::Down: ArrowKey(s, Bar::V, +1); break;
    case key::Left: ArrowKey(s, Bar::H, -1); break;
    case key::Right: ArrowKey(s, Bar::H, +1); break;
    case key::A:
      p.AutoTile = static_cast<int16_t>(~p.AutoTile);
      SetCommand2(s, p.AutoTile ? "Auto-Tile On" : "Auto-Tile Off");
      break;
    case key::B:
    case key::N:
      // A current hex left behind by a larger map, or set by a script, is
      // no hex of this map: the key does nothing.
      if (!d.OnMap(p.CurHexX, p.CurHexY)) break;
      p.CurTile = StepTileOfKind(s, p.CurTile, keyCode == key::B ? -1 : +1);
      PenToCurrentHex(s);
      break;
    case key::C: p.JumpBoxColour = p.JumpBoxColour == 0xFFFFFF ? 0 : 0xFFFFFF; break;
    case key::R:
      if (!d.OnMap(p.CurHexX, p.CurHexY)) break;
      randomtile(s);
      PenToCurrentHex(s);
      break;
    case key::X:
      for (int x = 0; x <= d.MapMaxX; ++x)
        for (int y = 0; y <= d.MapMaxY; ++y)
          if (d.HexInfo(x, y, 0) == 6) d.HexOrigOwner(x, y) = d.HexCtl(x, y, 0);
      s.MapEdited();
      break;
    case key::Slash: ShowForm(s, FormId::Form8); break;
    default: break;  // H and every other key: nothing
  }
  if (s.ed.hooks.DrawJumpBox) s.ed.hooks.DrawJumpBox(s);
}

void Form_KeyUp(Session& s, int, int shift) { s.pens.ShiftKey = static_cast<int16_t>(shift); }

void Command1_Click(Session& s) {
  Document& d = s.doc;
  Pens& p = s.pens;
  const HexRect a = ViewTransform(s.ref, s.view).Visible().ClippedTo(d.MapMaxX, d.MapMaxY);
  for (int x = a.x1; x <= a.x2; ++x)
    for (int y = a.y1; y <= a.y2; ++y) {
      if (p.RandomMode == -1) randomtile(s);
      d.HexInfo(x, y, 0) = s.ref.TypeOf(p.CurTile);
      d.HexTile(x, y) = p.CurTile;
    }
  s.MapEdited(a);
  RedrawBuffers(s);
}

void Command2_Click(Session& s) {
  Pens& p = s.pens;
  p.AutoTile = static_cast<int16_t>(~p.AutoTile);
  SetCommand2(s, p.AutoTile ? "Auto-Tile On" : "Auto-Tile Off");
}

void Command4_Click(Session& s) { SetHexName(s, s.pens.CurHexX, s.pens.CurHexY, s.ed.f1.Text2); }

void Command5_Click(Session& s) {
  Pens& p = s.pens;
  p.ClearSides = static_cast<int16_t>(~p.ClearSides);
  s.ed.f1.Command5Caption = p.ClearSides ? "Clear Sides ON" : "Clear Sides Off";
  Changed(s, Change::Command5);
}

void Command6_Click(Session& s) {
  Pens& p = s.pens;
  p.CtlMode = p.CtlMode == 1 ? 0 : 1;
  RedrawBuffers(s);
  s.ed.f1.Command6Caption = p.CtlMode == 1 ? "Deployment Mode On" : "Deployment Mode Off";
  Changed(s, Change::Command6);
}

void Command7_Click(Session& s) { SetHexName(s, s.pens.CurHexX, s.pens.CurHexY, ""); }

void Command8_Click(Session& s) {
  Form1Controls& f = s.ed.f1;
  ViewState& v = s.view;
  int d = CIntBox(Val(f.Text3[2]));
  if (d == 0) d = 7;
  const int a = CIntBox(Val(f.Text3[0])), b = CIntBox(Val(f.Text3[1]));
  const int x = CIntBox(static_cast<double>(a) / d), y = CIntBox(static_cast<double>(b) / d);
  f.Text3[0] = std::to_string(x);
  f.Text3[1] = std::to_string(y);
  Changed(s, Change::Text3);
  const int sx = std::max(x - v.ViewCols / 2, 0), sy = std::max(y - v.ViewRows / 2, 0);
  if (0 < sx && sx < v.HScroll1.Max) SetScrollValue(s, Bar::H, sx);
  if (0 < sy && sy < v.VScroll1.Max) SetScrollValue(s, Bar::V, sy);
}

void Command9_Click(Session& s) {
  Pens& p = s.pens;
  Form1Controls& f = s.ed.f1;
  p.ElevMode = static_cast<int16_t>(~p.ElevMode);
  const double e = std::clamp(RoundHalfEven(Val(f.Text4)), -100.0, 100.0);
  p.ElevValue = static_cast<int16_t>(e);
  f.Text4 = std::to_string(p.ElevValue);
  Changed(s, Change::Text4);
  p.AutoTile = 0;
  f.Command9Caption = p.ElevMode ? "Set Elev ON" : "Set Elev OFF";
  Changed(s, Change::Command9);
}

void Label1_Click(Session& s) {
  Form1Controls& f = s.ed.f1;
  f.Picture2Picture = "bmp/roads.bmp";
  s.pens.CurSideKind = 1;
  f.Label1Bold = true;
  f.Label2Bold = false;
  Changed(s, Change::Picture2);
}

void Label2_Click(Session& s) {
  Form1Controls& f = s.ed.f1;
  f.Picture2Picture = "bmp/rr.bmp";
  s.pens.CurSideKind = 2;
  f.Label2Bold = true;
  f.Label1Bold = false;
  Changed(s, Change::Picture2);
}

void Label4_MouseMove(Session& s) {
  s.ed.f1.Label4Bold = true;
  Changed(s, Change::Label4);
}

void Text2_GotFocus(Session& s) { s.ed.f1.KeyPreview = false; }
void Text2_LostFocus(Session& s) { s.ed.f1.KeyPreview = true; }

void mHexSides_Click(Session& s) {
  Pens& p = s.pens;
  p.HexOutlines = static_cast<int16_t>(~p.HexOutlines);
  s.ed.f1.mHexSidesChecked = p.HexOutlines != 0;
  s.ed.f1.mHexSidesCaption = p.HexOutlines ? "Hex Outlines ON" : "Hex Outlines OFF";
  Changed(s, Change::mHexSides);
  RedrawBuffers(s);
}

void mShowRoadControl_Click(Session& s) {
  Pens& p = s.pens;
  p.ShowRoadControl = static_cast<int16_t>(~p.ShowRoadControl);
  s.ed.f1.mShowRoadControlCaption = std::string("Show Road Control = ") + (p.ShowRoadControl ? "True" : "False");
  Changed(s, Change::mShowRoadControl);
  RedrawBuffers(s);
}

void mDefaultArea_Click(Session& s) {
  Pens& p = s.pens;
  p.DefaultAreaAll = static_cast<int16_t>(~p.DefaultAreaAll);
  s.ed.f1.mDefaultAreaCaption = p.DefaultAreaAll ? "Default Area (Entire Map)" : "Default Area (Screen Only)";
  Changed(s, Change::mDefaultArea);
}

void mRandom_Click(Session& s) {
  Pens& p = s.pens;
  p.RandomMode = static_cast<int16_t>(~p.RandomMode);
  s.ed.f1.mRandomChecked = p.RandomMode != 0;
  s.ed.f1.mRandomCaption = p.RandomMode ? "Random Tiles ON" : "Random Tiles OFF";
  Changed(s, Change::mRandom);
}

void Form1StartupControls(Session& s) {
  Form1Controls& f = s.ed.f1;
  f.Text2.clear();
  f.Label1Bold = true;
  f.Label2Bold = false;
  f.mHexSidesCaption = "Hex Outlines OFF";
  f.mHexSidesChecked = false;
  f.mShowRoadControlCaption = "Show Road Control = TRUE";
  f.HexControlOFFChecked = true;
  f.Text4 = "0";
  f.Command9Caption = "Set Elev OFF";
  f.KeyPreview = true;
  Changed(s, Change::Form1);
}

}  // namespace kv

#include "editing/controlform.h"

#include <algorithm>
#include <cmath>

#include "document/document_ops.h"
#include "editing/editing.h"
#include "platform/textfields.h"
#include "refdata/nations.h"
#include "session.h"
#include "view/render_api.h"

namespace kv {

namespace {

void ShowForm(Session& s, FormId form) { s.ui().ShowForm(form); }

// CInt(Val(text)), kept within 16 bits.
int16_t IntOfText(const std::string& text) {
  const double v = RoundHalfEven(Val(text));
  if (std::isnan(v)) return 0;
  return static_cast<int16_t>(std::clamp(v, -32768.0, 32767.0));
}

int16_t NationAt(const Session& s, int listIndex) {
  const auto& order = s.ref.NationOrder;
  return listIndex >= 0 && static_cast<size_t>(listIndex) < order.size() ? order[listIndex] : int16_t{0};
}

void SetObjective(Session& s, int16_t type, int16_t areaMode) {
  s.pens.CurObjType = type;
  s.pens.CtlMode = 2;
  s.pens.AreaMode = areaMode;
}

}  // namespace

void Control_Load(Session& s) {
  ControlFormState& f = s.ed.f3;
  f.KeyPreview = true;
  f.List1 = FillNationList(s.ref);
  f.List2 = f.List1;
  f.List1Index = f.List2Index = -1;
  f.Label2Bold[0] = f.Label2Bold[1] = false;
  const int a = s.pens.AreaMode;
  if (a == 0 || a == 1) f.Label2Bold[a] = true;
  s.forms.Form3Loaded = true;
}

void Control_Command1_Click(Session& s) { SetObjective(s, 2, 0); }
void Control_Command2_Click(Session& s) { SetObjective(s, 1, 0); }
void Control_Command3_Click(Session& s) { SetObjective(s, 3, 1); }
void Control_Command4_Click(Session& s) {
  s.pens.CtlMode = 2;
  s.pens.CurObjType = 0;
}

void Control_Label2_Click(Session& s, int index) {
  if (index != 0 && index != 1) return;
  ControlFormState& f = s.ed.f3;
  s.pens.AreaMode = static_cast<int16_t>(index);
  f.Label2Bold[0] = f.Label2Bold[1] = false;
  f.Label2Bold[index] = true;
}

void Control_List1_Click(Session& s, int listIndex) {
  Pens& p = s.pens;
  ControlFormState& f = s.ed.f3;
  f.List1Index = listIndex;
  if (listIndex < 0) return;  // nothing chosen
  const int16_t old = p.CurNation;
  p.CurNation = NationAt(s, listIndex);
  p.CtlMode = 2;
  if (p.CurNation == 0) p.CurObjType = 0;
  if (p.CurNation != old && f.List2Index != listIndex) Control_List2_Click(s, listIndex);
}

void Control_List2_Click(Session& s, int listIndex) {
  s.ed.f3.List2Index = listIndex;
  if (listIndex < 0) return;
  s.pens.CurOrigNation = NationAt(s, listIndex);
}

void Control_KeyDown(Session& s, int keyCode, int /*shift*/) {
  switch (keyCode) {
    case key::F1: ShowForm(s, FormId::Form5); break;
    case key::F2: ShowForm(s, FormId::Form2); break;
    case key::F3: ShowForm(s, FormId::Form3); break;
    default: break;
  }
}

void HexControlOn_Click(Session& s) {
  s.ed.f1.HexControlOnChecked = true;
  s.ed.f1.HexControlOFFChecked = false;
  s.pens.CtlMode = 2;
  ShowForm(s, FormId::Form3);
  RedrawBuffers(s);
}

void HexControlOFF_Click(Session& s) {
  s.ed.f1.HexControlOnChecked = false;
  s.ed.f1.HexControlOFFChecked = true;
  s.pens.CtlMode = 0;
  s.pens.CurObjType = 0;
  RedrawBuffers(s);
}

void mOriginalOwner_Click(Session& s) {
  Document& d = s.doc;
  for (int x = 0; x <= d.MapMaxX; ++x)
    for (int y = 0; y <= d.MapMaxY; ++y) d.HexOrigOwner(x, y) = d.HexCtl(x, y, 0);
  s.MapEdited();
  BuildObjList(s);
}

void Obj_on_Click(Session& s) { s.pens.CtlMode = 3; }
void Obj_off_Click(Session& s) { s.pens.CtlMode = 0; }

void mGrid_Click(Session& s) {
  Pens& p = s.pens;
  if (p.GridOn == 0 && (p.GridX <= 0 || p.GridY <= 0)) {
    // The grid marks every GridX-th column and GridY-th row; it needs both.
    s.MsgBox("The grid width and height must be 1 or more. Set them with Set Grid Dimensions.", vbOKOnly);
    return;
  }
  p.GridOn = static_cast<int16_t>(~p.GridOn);
  s.ed.f1.mGridChecked = p.GridOn != 0;
}

void mGridSet_Click(Session& s) { ShowForm(s, FormId::Form10); }
void helpscreen_Click(Session& s) { ShowForm(s, FormId::Form8); }

void Grid_Load(Session& s) {
  GridFormState& f = s.ed.f10;
  f.Loaded = true;
  f.Text1 = std::to_string(s.pens.GridX);
  f.Text2 = std::to_string(s.pens.GridY);
}

bool Grid_Command1_Click(Session& s) {
  GridFormState& f = s.ed.f10;
  const int16_t gx = IntOfText(f.Text1), gy = IntOfText(f.Text2);
  if (s.pens.GridOn != 0 && (gx <= 0 || gy <= 0)) {
    s.MsgBox("The grid width and height must be 1 or more while the grid is on.", vbOKOnly);
    return false;
  }
  s.pens.GridX = gx;
  s.pens.GridY = gy;
  f.Loaded = false;
  s.ui().UnloadForm(FormId::Form10);
  return true;
}

void Grid_Command2_Click(Session& s) {
  s.pens.GridOn = 0;
  s.ed.f1.mGridChecked = false;
  s.ed.f10.Loaded = false;
  s.ui().UnloadForm(FormId::Form10);
}

std::string HelpText() {
  static const char* const kLines[] = {
      "Keyboard commands:",
      "F1 Show jump/strategic map.",
      "F2 Show tiles.",
      "F3 Show Country control/objectives form.",
      "F4 Select current Map Tile to hightlight in BlUE. ON/OFF",
      "Up,Down,Left,Right arrow keys - scroll map up,down,left,right.",
      "A - Toggle AutoDraw on / off",
      "B - Replace current hex tile with previous tile of the terrain type.",
      "C - Toggle Jump map box colour from Black to White.",
      "N - Replace current hex tile with next tile of the terrain type.",
      "R - Toggle Randomize Tiles On or Off.",
      "Right Mouse Button (Main Screen) - Pick up tile.",
      "Right Mouse Button (Tile screen) - Set Tile Info.",
  };
  std::string t = "TVK Map Editor version " + std::to_string(VersionNo) + "\r";
  for (const char* line : kLines) t += std::string(line) + "\r";
  return t;
}

void ImageSize_Load(Session& s) {
  ExportFormState& f = s.ed.f9;
  f.Loaded = true;
  // Str() puts a blank in front of a number that is not negative.
  auto str = [](int16_t v) { return (v >= 0 ? " " : "") + std::to_string(v); };
  f.Text1 = str(s.pens.ImgScaleA);
  f.Text2 = str(s.pens.ImgScaleB);
}

int16_t ImageSizeValue(const std::string& text) { return std::max<int16_t>(1, IntOfText(text)); }

void ImageSize_Unload(Session& s) {
  ExportFormState& f = s.ed.f9;
  s.pens.ImgScaleA = ImageSizeValue(f.Text1);
  s.pens.ImgScaleB = ImageSizeValue(f.Text2);
  f.Loaded = false;
}

}  // namespace kv

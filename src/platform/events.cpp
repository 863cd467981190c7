#include "platform/events.h"

#include <algorithm>
#include <cctype>

namespace kv {

const char* FormName(FormId form) {
  switch (form) {
    case FormId::Form1: return "Form1";
    case FormId::Form2: return "Form2";
    case FormId::Form3: return "Form3";
    case FormId::Form4: return "Form4";
    case FormId::Form5: return "Form5";
    case FormId::Form6: return "Form6";
    case FormId::Form8: return "Form8";
    case FormId::Form9: return "Form9";
    case FormId::Form10: return "Form10";
    case FormId::Form11: return "Form11";
    case FormId::Form12: return "Form12";
    case FormId::Form13: return "Form13";
    case FormId::Form14: return "Form14";
    case FormId::Form15: return "Form15";
    case FormId::LoadSave: return "LoadSave";
  }
  return "";
}

std::optional<FormId> FormFromName(std::string_view name) {
  auto same = [name](std::string_view n) {
    return n.size() == name.size() && std::equal(n.begin(), n.end(), name.begin(), [](char a, char b) {
             return std::tolower(static_cast<unsigned char>(a)) == std::tolower(static_cast<unsigned char>(b));
           });
  };
  for (int i = 0; i < kFormCount; ++i) {
    const auto f = static_cast<FormId>(i);
    if (same(FormName(f))) return f;
  }
  return std::nullopt;
}

const char* ChangeName(Change change) {
  switch (change) {
    case Change::Form1: return "Form1";
    case Change::Form1Caption: return "Form1.Caption";
    case Change::Label3: return "Label3";
    case Change::MousePointer: return "MousePointer";
    case Change::HScroll1: return "HScroll1";
    case Change::VScroll1: return "VScroll1";
    case Change::Picture1: return "Picture1";
    case Change::Picture1SetFocus: return "Picture1.SetFocus";
    case Change::Picture2: return "Picture2";
    case Change::Picture2Cls: return "Form1.Picture2.Cls";
    case Change::Text1: return "Text1";
    case Change::Text2: return "Text2";
    case Change::Text3: return "Text3";
    case Change::Text4: return "Text4";
    case Change::Label4: return "Label4";
    case Change::Command2: return "Command2";
    case Change::Command5: return "Command5";
    case Change::Command6: return "Command6";
    case Change::Command9: return "Command9";
    case Change::mRandom: return "mRandom";
    case Change::mHexSides: return "mHexSides";
    case Change::mShowRoadControl: return "mShowRoadControl";
    case Change::mDefaultArea: return "mDefaultArea";
    case Change::LoadSave: return "LoadSave";
    case Change::LoadSaveHide: return "LoadSave.Hide";
    case Change::Form4: return "Form4";
    case Change::Form4Caption: return "Form4.Caption";
    case Change::Form4Picture2: return "Form4.Picture2";
    case Change::Form4Picture3: return "Form4.Picture3";
    case Change::Form4Unload: return "Form4.Unload";
    case Change::Form15: return "Form15";
    case Change::Form5: return "Form5";
    case Change::Form5Picture2: return "Form5.Picture2";
    case Change::Form5Caption: return "Form5.Caption";
    case Change::Form11: return "Form11";
    case Change::Form13: return "Form13";
    case Change::Form14: return "Form14";
    case Change::Form14Label1: return "Form14.Label1";
  }
  return "";
}

FormId FormOf(Change change) {
  switch (change) {
    case Change::Form1:
    case Change::Form1Caption:
    case Change::Label3:
    case Change::MousePointer:
    case Change::HScroll1:
    case Change::VScroll1:
    case Change::Picture1:
    case Change::Picture1SetFocus:
    case Change::Picture2:
    case Change::Picture2Cls:
    case Change::Text1:
    case Change::Text2:
    case Change::Text3:
    case Change::Text4:
    case Change::Label4:
    case Change::Command2:
    case Change::Command5:
    case Change::Command6:
    case Change::Command9:
    case Change::mRandom:
    case Change::mHexSides:
    case Change::mShowRoadControl:
    case Change::mDefaultArea: return FormId::Form1;
    case Change::LoadSave:
    case Change::LoadSaveHide: return FormId::LoadSave;
    case Change::Form4:
    case Change::Form4Caption:
    case Change::Form4Picture2:
    case Change::Form4Picture3:
    case Change::Form4Unload: return FormId::Form4;
    case Change::Form15: return FormId::Form15;
    case Change::Form5:
    case Change::Form5Picture2:
    case Change::Form5Caption: return FormId::Form5;
    case Change::Form11: return FormId::Form11;
    case Change::Form13: return FormId::Form13;
    case Change::Form14:
    case Change::Form14Label1: return FormId::Form14;
  }
  return FormId::Form1;
}

HexRect HexRect::United(const HexRect& o) const {
  if (Empty()) return o;
  if (o.Empty()) return *this;
  return {std::min(x1, o.x1), std::min(y1, o.y1), std::max(x2, o.x2), std::max(y2, o.y2)};
}

HexRect HexRect::ClippedTo(int32_t maxX, int32_t maxY) const {
  return {std::max(x1, 0), std::max(y1, 0), std::min(x2, maxX), std::min(y2, maxY)};
}

}  // namespace kv

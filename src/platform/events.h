// What the core tells the window system, as names the compiler checks: the
// forms it wants shown or closed, what on screen has changed, and which hexes
// of the map a command changed. FormName and ChangeName give each its classic
// name ("Form5", "Form1.Caption") where scripts and tests speak in them.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace kv {

// The editor's forms. Form7 never existed.
enum class FormId : uint8_t {
  Form1,     // the main window
  Form2,     // tile picker
  Form3,     // control and objectives form
  Form4,     // bitmap utility
  Form5,     // jump map
  Form6,     // new-map size dialog
  Form8,     // key help
  Form9,     // map image size dialog
  Form10,    // grid size dialog
  Form11,    // tile data screen: road connections
  Form12,    // tile picker help
  Form13,    // tile data screen: terrain patterns
  Form14,    // tile data screen: terrain type
  Form15,    // bitmap utility's colour dialog
  LoadSave,  // the file dialog
};
inline constexpr int kFormCount = static_cast<int>(FormId::LoadSave) + 1;

// "Form1" ... "LoadSave".
const char* FormName(FormId form);
// The form of a classic name, whatever its case.
std::optional<FormId> FormFromName(std::string_view name);

// Something the core changed that a form shows; that form brings it up to date.
enum class Change : uint8_t {
  // Form1, the main window.
  Form1,  // any of its controls or menu entries
  Form1Caption,
  Label3,        // the progress word: shown at once, also inside a long pass
  MousePointer,  // hourglass or arrow: shown at once
  HScroll1,
  VScroll1,
  Picture1,          // the map view
  Picture1SetFocus,  // the map view takes the keyboard
  Picture2,          // the side strip's picture (roads or railroads)
  Picture2Cls,       // the side strip's run-time drawing is cleared
  Text1,
  Text2,
  Text3,
  Text4,
  Label4,
  Command2,
  Command5,
  Command6,
  Command9,
  mRandom,
  mHexSides,
  mShowRoadControl,
  mDefaultArea,
  // LoadSave, the file dialog.
  LoadSave,      // its folders, list and buttons
  LoadSaveHide,  // it hides (and keeps its state)
  // Form4, the bitmap utility, and Form15, its colour dialog.
  Form4,
  Form4Caption,
  Form4Picture2,  // the workspace picture (its size may have changed)
  Form4Picture3,  // the colour sample
  Form4Unload,    // it closes itself
  Form15,
  // Form5, the jump map.
  Form5,
  Form5Picture2,
  Form5Caption,
  // The tile data screens.
  Form11,
  Form13,
  Form14,
  Form14Label1,  // shown at once
};

// The classic name of a change: "Form1.Caption", "Picture1", "Form5.Picture2".
const char* ChangeName(Change change);
// The form that shows a change.
FormId FormOf(Change change);

// A rectangle of hexes, both ends included.
struct HexRect {
  int32_t x1 = 0, y1 = 0, x2 = -1, y2 = -1;

  bool Empty() const { return x2 < x1 || y2 < y1; }
  bool Contains(int32_t x, int32_t y) const { return x1 <= x && x <= x2 && y1 <= y && y <= y2; }
  // The smallest rectangle holding both.
  HexRect United(const HexRect& o) const;
  // The part inside columns 0..maxX and rows 0..maxY.
  HexRect ClippedTo(int32_t maxX, int32_t maxY) const;
  bool operator==(const HexRect&) const = default;

  static HexRect Hex(int32_t x, int32_t y) { return {x, y, x, y}; }
  // Hex (x, y) and the six round it.
  static HexRect Ring(int32_t x, int32_t y) { return {x - 1, y - 1, x + 1, y + 1}; }
  static HexRect Whole(int32_t maxX, int32_t maxY) { return {0, 0, maxX, maxY}; }
};

// A change to the map's data.
struct MapChange {
  enum class Kind : uint8_t {
    Edit,      // hexes inside `area` may have changed (size and identity stayed)
    Replaced,  // a new document: a new map, a load, an import (area is all of it)
  };
  Kind kind = Kind::Edit;
  HexRect area;
};

}  // namespace kv

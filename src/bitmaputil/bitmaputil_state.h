// What the bitmap utility keeps: the pixel store of the latest picture read,
// the pictures of Form4 (the one worked on and the hidden work canvas), the
// modes that decide what a click on the picture does, the replacement colour
// of Form15, and the record of pixels already turned into hexes.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "platform/bitmap.h"
#include "view/viewstate.h"

namespace kv {

// ImageBits: bytes (channel, x, y), channel fastest, 4 channels a pixel
// (0 blue, 1 green, 2 red, 3 unused), rows without padding. Every picture is
// worked on in this form, whatever depth its file had.
struct ImageStore {
  std::vector<uint8_t> bits;
  int w = 0, h = 0;
  bool Empty() const { return w <= 0 || h <= 0; }
  bool Inside(int x, int y) const { return x >= 0 && y >= 0 && x < w && y < h; }
  size_t At(int c, int x, int y) const {
    return (static_cast<size_t>(y) * static_cast<size_t>(w) + static_cast<size_t>(x)) * 4 + static_cast<size_t>(c);
  }
  uint8_t& operator()(int c, int x, int y) { return bits[At(c, x, y)]; }
  uint8_t operator()(int c, int x, int y) const { return bits[At(c, x, y)]; }
};

// Form15: the three boxes of the new colour and its preview.
struct Form15State {
  bool Loaded = false;
  std::string Text1[3];              // red, green, blue as typed
  uint32_t Frame1Colour = 0xC0C0C0;  // preview background, 0x00RRGGBB
};

struct BitmapUtilState {
  // Form4 and its controls.
  bool Loaded = false;
  std::string Caption = "Bitmap Utility";
  Bitmap Picture2;               // the picture worked on (its persistent image)
  bool Picture2Visible = false;  // hidden until a bitmap is loaded
  Bitmap Picture3;               // the work canvas
  bool Picture3Visible = false;
  int Picture3Left = 0, Picture3Top = 0;  // in Picture2's frame, when shown
  ScrollBarModel HScroll1{0, 0, 0, 1, 20}, VScroll1{0, 0, 0, 1, 10};
  bool Frame1Visible = false;  // the colour reduction value entry
  std::string Text1;           // its box
  std::string mMapEditModeCaption = "Map Edit Mode (OFF)";
  int MousePointer = 1;

  // Shared state of the utility.
  ImageStore ImageBits;
  std::string BitmapName;
  int16_t MapEditMode = 0;           // 1 on, 0 off
  int16_t ExtremeArmed = 0;          // 1: the next click runs extreme contrast
  int16_t ReplaceMode = 0;           // -1 from the first "Replace Colour" on
  uint8_t NewColour[3] = {0, 0, 0};  // 0 red, 1 green, 2 blue
  bool NewColourSet = false;         // no box of Form15 changed yet: no colour
  std::vector<uint8_t> PixelDone;    // (0..PixelDoneW - 1, 0..PixelDoneH - 1), x fastest
  int PixelDoneW = 0, PixelDoneH = 0;
  bool Busy = false;  // a pass is running: clicks wait for it to end
  // Columns PutX0..PutX1 of PutSource put but not yet copied into Picture2
  // (SyncPicture2 copies them).
  const ImageStore* PutSource = nullptr;
  int PutX0 = 2147483647, PutX1 = -1;

  Form15State f15;

  // Shown on screen as the passes go: the columns x0..x1 of Picture2 have
  // just been put (the caption may have changed with them); and a long loop's
  // pause to serve the window system. Empty hooks do nothing.
  std::function<void(int x0, int x1)> ColumnsPut;
  std::function<void()> ServeEvents;
};

}  // namespace kv

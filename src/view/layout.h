// The main window's layout arithmetic: where the map view and its controls
// go for a given client size, and how many columns and rows the view shows.
#pragma once

namespace kv {

struct MapView;

// Twips to pixels on a 96 dots-per-inch screen.
constexpr int Twips(int tw) { return tw / 15; }

struct Rect {
  int Left = 0, Top = 0, Width = 0, Height = 0;
};

struct MainLayout {
  Rect Text1, Picture1, HScroll1, VScroll1, Picture2;
  Rect Command1, Command3, Command5, Command6, Command2, Label3;
  Rect Label1, Label2, Text2, Command4, Command7;
  // Filled only by the load-time layout.
  Rect Text3_0, Text3_1, Text3_2, Command8, Label4, Label5, Label6, Text4, Command9;
};

// Picture boxes have a 2-pixel border on each side.
constexpr int kPictureBorder = 4;
// The client area of a window placed at (0, 0) with the screen's size.
void ClientSizeForScreen(int screenW, int screenH, int& scaleW, int& scaleH);

// The layout steps shared by load and resize. atLoad picks the load-time
// choices (view origin 0 and the bars' large change). Sets the view state
// and the bar ranges of the session and returns the control rectangles.
MainLayout LayoutMainWindow(MapView& s, int scaleW, int scaleH, bool atLoad);
// The load-time steps after the first drawing (bottom panel, right half).
void LayoutLoadTail(MainLayout& l);

}  // namespace kv

// Where the view stands on the map, and a model of the two scroll bars.
#pragma once

#include <cstdint>

namespace kv {

struct ScrollBarModel {
  int Min = 0, Max = 0, Value = 0, SmallChange = 1, LargeChange = 1;
};

struct ViewState {
  int32_t ViewX = 0, ViewY = 0;        // hex at the top left of the view
  int16_t ViewCols = 0, ViewRows = 0;  // columns and rows shown, less one
  int32_t ViewMaxX = 0, ViewMaxY = 0;
  int32_t ViewPixW = 0, ViewPixH = 0;  // client size of Picture1
  int16_t Zoom = 100;                  // percent: view pixels per 100 map pixels (see ViewTransform)
  int16_t ScrollSilent = 0;
  ScrollBarModel HScroll1, VScroll1;
  int ScreenW = 1920, ScreenH = 1080;  // the screen the layout is made for
};

}  // namespace kv

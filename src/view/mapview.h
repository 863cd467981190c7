// A map on screen: what a map is (MapState) with the pens and mode flags it
// is drawn by, where the view stands, and the sprite sheets, the off-screen
// buffer and the view surface. The view's procedures take a MapView; the
// session (session.h) adds the subsystems' and the forms' state.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "document/mapstate.h"
#include "view/pens.h"
#include "view/spritebank.h"
#include "view/viewstate.h"

namespace kv {

struct MapView;

// What the layers above the view do when the view draws. Installed with the
// session (session.cpp); an empty hook does nothing.
struct ViewHooks {
  // A hex is about to be drawn again after an edit (RedrawHex): the jump map
  // loads if it is not loaded and puts the hex's dot in its picture.
  std::function<void(MapView&, int16_t, int16_t)> HexEdited;
  // The view surface was filled from the buffer (BlitPic1): the jump map's
  // box follows the view.
  std::function<void(MapView&)> ViewShown;
};

struct MapView : MapState {
  explicit MapView(std::string appPath, Ui* ui = nullptr) : MapState(std::move(appPath), ui) {}

  Pens pens;
  ViewState view;
  SpriteBank sprites;  // sprite sheets, the off-screen buffer and the view surface
  ViewHooks viewHooks;
};

}  // namespace kv

// The jump map: a small picture of the whole map with a box round the part the
// main view shows, the two flag views, and the jump-map image of a saved map.
// Form5 is loaded when s.forms.Form5Loaded is set (JumpMapOpen).
#pragma once

#include <cstdint>
#include <string>

#include "platform/bitmap.h"
#include "view/viewstate.h"

namespace kv {

struct Session;
struct RefData;

// The colour of terrain type t (black for a type outside the table).
uint32_t TerrainColour(const RefData& r, int t);

// An unfilled rectangle drawn at run time on top of a persistent picture.
struct DrawnBox {
  bool shown = false;
  int x1 = 0, y1 = 0, x2 = 0, y2 = 0;
  uint32_t colour = 0;
};

struct JumpMapState {
  // Picture2: the persistent picture of the map; Picture2Box is the run-time
  // drawing on top of it (the view box), cleared without touching the picture.
  Bitmap Picture2;
  DrawnBox Picture2Box;
  // The box that BlitPic1 draws on the form's own surface.
  DrawnBox FormBox;
  float JumpScale = 0.0f;
  int16_t JumpFilter = 0;  // 0: road tiles in black; else that terrain type
  std::string Caption = "Jump Map (F1)";
  ScrollBarModel HScroll1, VScroll1;  // Form5's bars, moving Picture2
  bool ListVisible = false;           // List1, the country list
  // Picture2 is the drawn map (set by DrawStrategicMap) rather than a flag
  // view's bitmap (cleared by ZoomFlags): only the drawn map follows edits.
  bool ShowsDrawnMap = false;
};

// The most pixels the jump map's hex picture may have (32 MB); a map whose
// picture at the screen's scale would be larger is drawn at a smaller scale.
// The dot picture, one pixel a hex, is drawn at any size.
constexpr long long kJumpPicturePixels = 8LL * 1024 * 1024;

// Picture2 with its run-time box drawn on it, as the window shows it.
Bitmap JumpMapView(const JumpMapState& j);

// Form5's load, as far as the core goes: JumpMapOpen, the picture and the
// objective list. Does nothing when the form is loaded already.
void LoadForm5(Session& s);
void UnloadForm5(Session& s);

// Sets JumpScale and the jump pitches from the screen width and draws the
// whole map into Picture2: the hex picture, or one dot a hex when a pitch is 1.
void DrawStrategicMap(Session& s);
// The flag views on the map's bitmap: view 0 every objective, above 0 the
// objectives whose original owner is that nation. False (and Picture2 left
// as it was) when the bitmap cannot be read or written; err says why.
bool ZoomFlags(Session& s, int16_t view, std::string* err = nullptr);
// Clears the last box and draws the present one (loading Form5 hidden if
// it is not loaded).
void DrawJumpBox(Session& s);
// A click on Picture2 at (X, Y): centres the main view there.
void JumpMapClick(Session& s, double X, double Y);
// The menus: Roads (filter 0), Cities (filter 5), Zoom In / Out.
void JumpMapSetFilter(Session& s, int16_t filter);
void JumpMapZoom(Session& s, float delta);

// What the jump map does when the main view draws (ViewHooks, installed with
// the session): a hex edited is redrawn there (loading Form5 hidden if it is
// not loaded), and the box follows the view when it is filled again.
void JumpMapHexEdited(Session& s, int16_t x, int16_t y);
void JumpMapFollowView(Session& s);

// SaveMap's jump-map image: DrawStrategicMap, BuildObjList, and Picture2
// written as a BMP file to `path` (through a temporary file).
bool SaveJumpMapImage(Session& s, const std::string& path);

}  // namespace kv

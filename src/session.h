// One editing session: a map on screen (view/mapview.h: the document, the
// tables, the names, the pens and the view) with the subsystems' and the
// forms' state, owned together and passed explicitly to every procedure, so
// that many sessions (each with its own program folder) can live side by
// side. The procedures of the layers below take the narrower MapState or
// MapView; a Session is both.
#pragma once

#include <memory>
#include <string>

#include "autotile/tilescreens.h"
#include "bitmaputil/bitmaputil_state.h"
#include "editing/comfort.h"
#include "editing/editorstate.h"
#include "jumpmap/jumpmap.h"
#include "scenario/scenario_state.h"
#include "view/mapview.h"

namespace kv {

struct Session : MapView {
  // Installs the hooks through which the layers below reach the ones above.
  explicit Session(std::string appPath, Ui* ui = nullptr);
  ~Session();

  EditorState ed;           // the main window's controls, the file dialog, the new-map form
  JumpMapState jump;        // Form5: the jump map picture and its settings
  ScenarioState scn;        // the scenario set last imported, until Save As finishes it
  BitmapUtilState bmp;      // Form4, Form15: the bitmap utility
  TileScreens tileScreens;  // Form11, Form13, Form14: the tile data screens
  ComfortState comfort;     // the editor's additions for the hand
};

}  // namespace kv

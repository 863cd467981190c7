// One editing session: the document, the reference tables, the pens and the
// view, owned together and passed explicitly to every procedure, so that many
// sessions (each with its own program folder) can live side by side.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "autotile/tilescreens.h"
#include "bitmaputil/bitmaputil_state.h"
#include "document/document.h"
#include "document/namestore.h"
#include "editing/comfort.h"
#include "editing/editorstate.h"
#include "editing/pens.h"
#include "jumpmap/jumpmap.h"
#include "platform/programfolder.h"
#include "platform/ui.h"
#include "refdata/nations.h"
#include "refdata/refdata.h"
#include "refdata/tables.h"
#include "scenario/scenario_state.h"
#include "view/spritebank.h"
#include "view/viewstate.h"

namespace kv {

struct PatternStoreState;  // autotile/stores.cpp

// The generator behind Rnd: never seeded, the same sequence on every run.
class RndGen {
 public:
  float Next();  // in [0, 1)
  void Reset() { seed_ = 0x50000; }

 private:
  uint32_t seed_ = 0x50000;
};

// Texts and states of the forms that the core itself changes.
struct FormState {
  std::string Form1Caption = "Main: editing newmap.map";
  std::string Label3Caption = "Progress";
  bool Label3Visible = true;
  int MousePointer = 1;
  bool Form3Loaded = false;
  bool Form5Loaded = false;
};

struct Session {
  explicit Session(std::string appPath, Ui* ui = nullptr);
  ~Session();
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  std::string AppPath;  // the program folder (App.Path)
  Document doc;
  RefData ref;
  Pens pens;
  ViewState view;
  NameFiles names;
  FormState forms;
  EditorState ed;  // the main window's controls, the file dialog, the new-map form
  RndGen rnd;
  SpriteBank sprites;  // sprite sheets, the off-screen buffer and the view surface
  JumpMapState jump;   // Form5: the jump map picture and its settings
  ScenarioState scn;  // the scenario set last imported, until Save As finishes it
  BitmapUtilState bmp;  // Form4, Form15: the bitmap utility
  // Parsed pattern stores and the store folder's health, made on first use.
  std::shared_ptr<PatternStoreState> patternStores;
  TileScreens tileScreens;  // Form11, Form13, Form14: the tile data screens
  ComfortState comfort;     // the editor's additions for the hand

  Ui& ui() { return *ui_; }
  // The program folder and the message boxes, for the readers of the tables.
  ProgramFolder Folder() const { return {AppPath, ui_}; }
  void SetUi(Ui* ui);
  // A path inside the program folder: App("mapedit/tiletype.dat").
  std::string App(const std::string& rel) const;
  int MsgBox(const std::string& text, int style = vbOKOnly) { return ui_->MsgBox(text, style); }
  float Rnd() { return rnd.Next(); }
  void SetLabel3(const std::string& text);
  void SetPointer(int pointer);
  void SetForm1Caption(const std::string& text);
  // Announces that the map's data may have changed inside `area` (cut to the map).
  void MapEdited(const HexRect& area);
  void MapEdited() { MapEdited(HexRect::Whole(doc.MapMaxX, doc.MapMaxY)); }
  // Announces that the document was replaced as a whole (new, load, import).
  void MapReplaced();

 private:
  std::unique_ptr<HeadlessUi> own_ui_;
  Ui* ui_;
};

// The table readers on a session's folder, tables and map.
inline void ReadFlagsXY(Session& s) { ReadFlagsXY(s.Folder(), s.ref); }
inline bool ReadHexInfo(Session& s) { return ReadHexInfo(s.Folder(), s.ref); }
inline bool LoadTileInfo(Session& s) { return LoadTileInfo(s.Folder(), s.ref); }
inline bool LoadRoadInfo(Session& s) { return LoadRoadInfo(s.Folder(), s.ref); }
inline std::string NationListPath(const Session& s, const std::string& set) { return NationListPath(s.Folder(), set); }
inline bool LoadNations(Session& s) { return LoadNations(s.Folder(), s.ref, s.doc.NationSet); }
inline bool SwitchNationSet(Session& s, const std::string& set) {
  return SwitchNationSet(s.Folder(), s.ref, s.doc.NationSet, set);
}

}  // namespace kv

// What a map is: the document, the reference tables, the hex names, the
// pattern stores and the program folder they come from, with the channel to
// the window system (message boxes, the progress label, the pointer, the main
// window's caption) and the announcements of what changed. The bottom of the
// session: the document's procedures take a MapState, the layers above add
// what the editor is doing (view/mapview.h, session.h).
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "document/document.h"
#include "document/namestore.h"
#include "platform/programfolder.h"
#include "platform/ui.h"
#include "refdata/nations.h"
#include "refdata/refdata.h"
#include "refdata/tables.h"

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

struct MapState {
  explicit MapState(std::string appPath, Ui* ui = nullptr);
  ~MapState();
  MapState(const MapState&) = delete;
  MapState& operator=(const MapState&) = delete;

  std::string AppPath;  // the program folder (App.Path)
  Document doc;
  RefData ref;
  NameFiles names;
  FormState forms;
  RndGen rnd;
  // Parsed pattern stores and the store folder's health, made on first use.
  std::shared_ptr<PatternStoreState> patternStores;

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

// The table readers on a map's folder, tables and nation set.
inline void ReadFlagsXY(MapState& s) { ReadFlagsXY(s.Folder(), s.ref); }
inline bool ReadHexInfo(MapState& s) { return ReadHexInfo(s.Folder(), s.ref); }
inline bool LoadTileInfo(MapState& s) { return LoadTileInfo(s.Folder(), s.ref); }
inline bool LoadRoadInfo(MapState& s) { return LoadRoadInfo(s.Folder(), s.ref); }
inline std::string NationListPath(const MapState& s, const std::string& set) { return NationListPath(s.Folder(), set); }
inline bool LoadNations(MapState& s) { return LoadNations(s.Folder(), s.ref, s.doc.NationSet); }
inline bool SwitchNationSet(MapState& s, const std::string& set) {
  return SwitchNationSet(s.Folder(), s.ref, s.doc.NationSet, set);
}

}  // namespace kv

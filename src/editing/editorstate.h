// What the main window, the file dialog and the new-map form show, kept in the
// session so that every rule about them lives in the core: captions, box
// texts, check marks, the dialog's mode and folders. The forms mirror it.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "editing/formstate.h"
#include "platform/events.h"

namespace kv {

struct Session;

// Texts and states of Form1's controls and menu entries, as at design time;
// Form1's load sets the few that differ at start.
struct Form1Controls {
  std::string Text1;  // status line
  std::string Text2;  // name of the current hex
  std::string Text3[3] = {"Text3", "Text3", "Text3"};
  std::string Text4 = "elev";
  std::string Command2Caption = "AutoTile Off";
  std::string Command5Caption = "clear hex sides";
  std::string Command6Caption = "deployment hexes on/off";
  std::string Command9Caption = "EV mode ON";
  bool Label1Bold = true, Label2Bold = false, Label4Bold = false;
  std::string Picture2Picture = "bmp/roads.bmp";  // strip under the view
  bool KeyPreview = true;
  std::string mRandomCaption = "Random Tiles";
  bool mRandomChecked = false;
  std::string mHexSidesCaption = "&Hexsides on";
  bool mHexSidesChecked = false;
  std::string mShowRoadControlCaption = "Show Road Control = TRUE";
  std::string mDefaultAreaCaption = "Default Area (Screen)";
  bool HexControlOnChecked = false, HexControlOFFChecked = true;
  bool mGridChecked = false;
};

// The file dialog's shared settings and the state of its controls.
struct DialogState {
  int16_t DlgMode = 0;
  std::string DlgExt;
  std::string DlgDir;   // the folder last shown; empty at start
  std::string DlgFile;  // full path formed by Load; after a Save As, MapFile
  bool Loaded = false;
  bool Visible = false;
  std::string Dir1Path;  // folder shown ("" until the dialog first loads)
  std::vector<std::string> List1;
  int List1Index = -1;
  std::string Text1 = "Text1";
  bool SaveEnabled = false;
};

struct Form6State {
  bool Loaded = false;
  std::string Text1 = "32", Text2 = "32";
};

// Calls into parts of the editor that live above the caller: the window's
// own (the jump box, the map image, the objective path view, the tile
// picker's drawing and screens), set by the main window, and the editor's
// commands that the subsystems reach, set by the session (session.cpp). An
// empty hook of the first kind does nothing.
struct EditorHooks {
  std::function<void(Session&)> DrawJumpBox;
  std::function<void(Session&)> ExportMapImage;
  std::function<void(Session&, int16_t, int16_t)> LoadAITable;  // objective path view
  std::function<void(Session&)> ClearTilePickerDrawing;
  // The editor's NewMap (editing/mapload.h), for the bitmap utility's "make a
  // map"; set by the session itself.
  std::function<void(Session&)> NewMap;
  // The main window's SetHex and Form_KeyDown and the file dialog's
  // LoadSave_Show (editing/), for the bitmap utility's "Map Edit Mode", its
  // keys B and N and its "Load Bitmap". Set by the session itself.
  std::function<void(Session&, int16_t, int16_t)> SetHex;
  std::function<void(Session&, int, int)> MainKeyDown;
  std::function<void(Session&, int, const std::string&)> ShowFileDialog;
  // A tile data screen (Form11, Form13, Form14) closed: the tile picker no
  // longer holds it open. Set by the session itself.
  std::function<void(Session&, FormId)> TileScreenClosed;
  // An open tile data screen (Form11, Form13, Form14) shows the data of the new pen.
  std::function<void(Session&, FormId)> TileDataGetStuff;
  // Comfort: what a paint with auto-tile off has just taught the stores
  // ("learned: road pattern for tile 112"); the editor shows it in its status bar.
  std::function<void(Session&, const std::string&)> Learned;
};

struct EditorState {
  Form1Controls f1;
  DialogState dlg;
  Form6State f6;
  EditorHooks hooks;
  TilePickerState picker;  // Form2, Form12
  ControlFormState f3;     // Form3
  GridFormState f10;       // Form10
  ExportFormState f9;      // Form9
};

}  // namespace kv

#include "editing/filemenu.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <filesystem>

#include "bitmaputil/bitmaputil.h"
#include "document/document_ops.h"
#include "document/mapfile.h"
#include "editing/fileflow.h"
#include "editing/mapload.h"
#include "platform/fileio.h"
#include "platform/textfields.h"
#include "refdata/nations.h"
#include "scenario/import.h"
#include "session.h"
#include "view/render_api.h"
#include "view/scrolling.h"

namespace kv {

namespace {

std::string Lower(std::string t) {
  for (char& c : t) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return t;
}

bool EndsWithNoCase(const std::string& text, const std::string& tail) {
  return text.size() >= tail.size() && Lower(text.substr(text.size() - tail.size())) == Lower(tail);
}

// Loads the dialog (its controls as at design time) unless it is loaded.
void LoadDialog(Session& s) {
  DialogState& g = s.ed.dlg;
  if (g.Loaded) return;
  g.Loaded = true;
  g.Dir1Path = s.AppPath;  // the current folder, which is the program's
  g.List1.clear();
  g.List1Index = -1;
  g.Text1 = "Text1";
  g.SaveEnabled = false;
}

void FillList(Session& s) {
  DialogState& g = s.ed.dlg;
  g.List1 = DialogFileList(g.Dir1Path, g.DlgMode, g.DlgExt);
  g.List1Index = -1;
}

// A whole number from 0 to the highest index a map may have.
bool ReadSize(Session& s, const std::string& text, const char* what, int& out) {
  std::string t = text;
  while (!t.empty() && t.back() == ' ') t.pop_back();
  size_t i = 0;
  while (i < t.size() && t[i] == ' ') ++i;
  t = t.substr(i);
  bool digits = !t.empty() && t.size() <= 6 &&
                std::all_of(t.begin(), t.end(), [](char c) { return std::isdigit(static_cast<unsigned char>(c)); });
  if (!digits || std::stol(t) > kMaxMapIndex) {
    s.MsgBox(std::string(what) + " must be a whole number from 0 to " + std::to_string(kMaxMapIndex) +
             " (the highest column or row index), not \"" + text + "\".");
    return false;
  }
  out = static_cast<int>(std::stol(t));
  return true;
}

void LoadNationSetFromDialog(Session& s, const std::string& name) {
  DialogState& g = s.ed.dlg;
  if (s.MsgBox("This will erase all control flags. Continue ?", vbYesNoDefaultNo) == vbYes) {
    Document& d = s.doc;
    d.HexCtl.Allocate(d.W(), d.H(), 2);
    s.MapEdited();
    if (name == "nations.txt") {
      // The set is the folder above the one that holds the list.
      std::filesystem::path dir(g.Dir1Path);
      if (!dir.has_filename()) dir = dir.parent_path();
      const std::string set = dir.parent_path().filename().string();
      if (SwitchNationSet(s, set)) {
        s.forms.Form3Loaded = false;
        s.ui().UnloadForm(FormId::Form3);
        BuildFlagBanks(s);
      }
    }
    RedrawBuffers(s);
  }
  g.Dir1Path = s.AppPath;
  g.DlgDir = s.AppPath;
}

}  // namespace

std::vector<std::string> DialogFileList(const std::string& dir, int mode, const std::string& ext) {
  std::vector<std::string> out;
  std::error_code ec;
  for (const auto& e : std::filesystem::directory_iterator(dir, ec)) {
    std::error_code ec2;
    if (!e.is_regular_file(ec2)) continue;
    const std::string name = e.path().filename().string();
    if (mode == 5 ? name == "nations.txt" : EndsWithNoCase(name, ext)) out.push_back(name);
  }
  std::sort(out.begin(), out.end(), [](const std::string& a, const std::string& b) { return Lower(a) < Lower(b); });
  return out;
}

void menu_file_new_Click(Session& s) {
  s.view.ViewX = 1;
  s.view.ViewY = 1;
  SetScrollValue(s, Bar::V, s.view.ViewY);
  SetScrollValue(s, Bar::H, s.view.ViewX);
  Form6State& f = s.ed.f6;
  if (!f.Loaded) {
    f.Loaded = true;
    f.Text1 = "32";
    f.Text2 = "32";
  }
  s.ui().ShowForm(FormId::Form6);
}

bool Form6_Command2_Click(Session& s) {
  Form6State& f = s.ed.f6;
  Document& d = s.doc;
  int w = 0, h = 0;
  if (!ReadSize(s, f.Text1, "Map Width", w) || !ReadSize(s, f.Text2, "Map Height", h)) return false;
  if (static_cast<long long>(w + 1) * (h + 1) > kMaxNewMapHexes) {
    s.MsgBox("A map of " + std::to_string(w + 1) + " x " + std::to_string(h + 1) + " hexes is too large: at most " +
             std::to_string(kMaxNewMapHexes) + " hexes.");
    return false;
  }
  d.MapMaxX = static_cast<int16_t>(w);
  d.MapMaxY = static_cast<int16_t>(h);
  d.MapFile = "newmap.map";
  d.MapPath = s.App(d.MapFile);
  NewMap(s);
  Form6_Command1_Click(s);
  return true;
}

void Form6_Command1_Click(Session& s) {
  s.ed.f6.Loaded = false;
  s.ui().UnloadForm(FormId::Form6);
}

void LoadSave_Show(Session& s, int mode, const std::string& ext) {
  DialogState& g = s.ed.dlg;
  g.DlgExt = ext;
  g.DlgMode = static_cast<int16_t>(mode);
  LoadDialog(s);
  g.Visible = true;
  LoadSave_Form_Activate(s);
  s.ui().ShowForm(FormId::LoadSave);
}

void menu_file_open_Click(Session& s) { LoadSave_Show(s, 1, ".map"); }
void menu_file_save_as_Click(Session& s) { LoadSave_Show(s, 3, ".map"); }
void openpgset_Click(Session& s) { LoadSave_Show(s, 2, ".set"); }
void mNewNations_Click(Session& s) { LoadSave_Show(s, 5, ".txt"); }

void menu_file_save_Click(Session& s) {
  if (s.doc.MapPath.empty()) return;  // no name yet: only Save As gives one
  SaveMap(s);
}

void LoadSave_Form_Activate(Session& s) {
  DialogState& g = s.ed.dlg;
  LoadDialog(s);
  if (g.DlgDir.empty()) g.DlgDir = g.Dir1Path;
  g.Dir1Path = g.DlgDir;
  g.SaveEnabled = g.DlgMode == 3;
  if (g.DlgMode == 3) g.Text1 = s.doc.MapFile;
  FillList(s);
  s.ui().Changed(Change::LoadSave);
}

void LoadSave_Dir1_Change(Session& s) {
  DialogState& g = s.ed.dlg;
  g.DlgDir = g.Dir1Path;
  FillList(s);
  s.ui().Changed(Change::LoadSave);
}

void LoadSave_List1_Click(Session& s) {
  DialogState& g = s.ed.dlg;
  if (g.List1Index >= 0 && g.List1Index < static_cast<int>(g.List1.size())) g.Text1 = g.List1[g.List1Index];
  s.ui().Changed(Change::LoadSave);
}

void LoadSave_Command1_Click(Session& s) {
  DialogState& g = s.ed.dlg;
  Document& d = s.doc;
  g.Visible = false;
  s.ui().Changed(Change::LoadSaveHide);
  const std::string name = g.Text1;
  const std::string previousFile = g.DlgFile;
  g.DlgFile = JoinPath(g.Dir1Path, name);
  switch (g.DlgMode) {
    case 1:
      // A map that cannot be read keeps the open map and its name store.
      if (name.empty())
        s.MsgBox("No file name given.");
      else if (OpenMapFile(s, g.Dir1Path, name))
        g.DlgDir = g.Dir1Path;
      break;
    case 2:
      // A scenario set: the import reads it into a fresh document and swaps
      // it in only when every file of the set was whole; a fault keeps the
      // open map, its name store and its paths.
      OpenScenarioSet(s, g.Dir1Path, name);
      break;
    case 4:
      // The bitmap utility's picture; one that cannot be read leaves the
      // utility's picture and DlgFile as they were.
      d.StrPath.clear();
      d.NdxPath.clear();
      BitmapDialogLoad(s, name, previousFile);
      break;
    case 5:
      d.StrPath.clear();
      d.NdxPath.clear();
      LoadNationSetFromDialog(s, name);
      break;
    default:
      // Save As (3): Load only closes the dialog. Bitmaps (4) are chosen by
      // a form of their own.
      d.StrPath.clear();
      d.NdxPath.clear();
      break;
  }
  LoadSave_Unload(s);
}

void LoadSave_Command2_Click(Session& s) {
  DialogState& g = s.ed.dlg;
  if (!g.Text1.empty() && SaveMapAs(s, g.Dir1Path, g.Text1)) g.DlgFile = s.doc.MapFile;
  LoadSave_Unload(s);
}

void LoadSave_Command3_Click(Session& s) { LoadSave_Unload(s); }

void LoadSave_Unload(Session& s) {
  DialogState& g = s.ed.dlg;
  if (!g.Loaded) return;
  g.Loaded = false;
  g.Visible = false;
  s.ui().UnloadForm(FormId::LoadSave);
}

}  // namespace kv

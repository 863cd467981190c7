// The File menu of the main window, the file dialog (LoadSave) and the
// new-map form (Form6): what their commands and buttons do.
#pragma once

#include <string>
#include <vector>

namespace kv {

struct Session;

// File menu.
void menu_file_new_Click(Session& s);  // view origin to (1, 1), then Form6 is shown
void menu_file_open_Click(Session& s);
void menu_file_save_Click(Session& s);
void menu_file_save_as_Click(Session& s);
void openpgset_Click(Session& s);  // the dialog for a scenario set of the older game
void mNewNations_Click(Session& s);

// Form6. OK takes the two sizes and makes a blank map; a size that is no
// whole number from 0 to 32767, or a map too large to hold, is refused with
// a message and the form stays.
bool Form6_Command2_Click(Session& s);
void Form6_Command1_Click(Session& s);

// LoadSave.
void LoadSave_Show(Session& s, int mode, const std::string& ext);
void LoadSave_Form_Activate(Session& s);
void LoadSave_Dir1_Change(Session& s);
void LoadSave_List1_Click(Session& s);
void LoadSave_Command1_Click(Session& s);  // Load
void LoadSave_Command2_Click(Session& s);  // Save
void LoadSave_Command3_Click(Session& s);  // Cancel
void LoadSave_Unload(Session& s);

// The names in folder `dir` that the dialog lists: files ending in `ext`
// (any case), or only "nations.txt" in the nation-set mode; sorted.
std::vector<std::string> DialogFileList(const std::string& dir, int mode, const std::string& ext);

}  // namespace kv

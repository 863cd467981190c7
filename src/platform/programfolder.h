// The program folder and the message boxes to report through: all that the
// readers of the program's own tables need of the editor.
#pragma once

#include <string>

#include "platform/fileio.h"
#include "platform/ui.h"

namespace kv {

struct ProgramFolder {
  std::string path;  // App.Path
  Ui* ui = nullptr;

  // A path inside the folder: App("mapedit/tiletype.dat").
  std::string App(const std::string& rel) const { return JoinPath(path, rel); }
  int MsgBox(const std::string& text, int style = vbOKOnly) const { return ui->MsgBox(text, style); }
};

}  // namespace kv

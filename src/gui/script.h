// The editor's automation: a script of one command a line, run against a
// main window whose forms exist headless.
//
//   Form.Handler [ARG ...]          call a handler: Form1.Form_KeyDown 116 0
//   Form.Control.Property = VALUE   set a property as the window system would
//   Name = VALUE                    set a shared variable: CurTile = 17
//   print ITEM [ITEM ...]           ITEM=VALUE for variables, array elements, properties
//   answer N                        queue the answer to the next message box
//   clickhex X Y [BUTTON [SHIFT]]   a press inside hex (X, Y) of the current view
#pragma once

#include <cstdio>
#include <istream>
#include <vector>

#include <QString>

namespace kv::gui {

class Form1;

// Runs every line; returns 0 when all ran, 1 after the first line that names
// nothing known or is malformed ("line N: ..." on `err`).
int RunScript(Form1& form, std::istream& in, std::FILE* out, std::FILE* err);

// The shared variables a script reads and sets by bare name (lower case).
std::vector<QString> ScriptVariableNames();

}  // namespace kv::gui

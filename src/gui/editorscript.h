// The pseudo-form Editor of scripts: the comfort layer's commands, settings
// and values, beside the classic forms.
//
//   Editor.NAME [ARG ...]    a command:   Editor.Undo
//   Editor.NAME = VALUE      a setting:   Editor.Guard = -1
//   print Editor.NAME        a value:     print Editor.UndoCount
//
// Every name is one row of the table in editorscript.cpp, kept in
// alphabetical order: a new name goes in its place, so that rows added side
// by side rarely meet. Document each in the README's table of Editor names.
#pragma once

#include <functional>
#include <vector>

#include <QString>
#include <QStringList>

namespace kv::gui {

class Form1;

struct EditorName {
  const char* name;
  // Any of the three may be empty. A failure returns false with the reason in
  // *err (the script stops with it).
  std::function<bool(Form1&, const QStringList& args, QString* err)> run;
  std::function<bool(Form1&, const QString& value, QString* err)> set;
  std::function<QString(Form1&)> get;
};

// The row of a name, whatever its case; nullptr for none.
const EditorName* FindEditorName(const QString& name);
// Every name of the table, in its order.
std::vector<const char*> EditorNames();

// Reads a whole number as scripts write them (True -1, False 0).
bool EditorNumber(const QString& text, long long* out, QString* err);

}  // namespace kv::gui

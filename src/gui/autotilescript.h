// Scripts reach the auto-tile comforts under the pseudo-form Editor:
//
//   Editor.AutoNeighbours = -1     a tile painted with auto-tile on also chooses its
//                                  six neighbours again (0 off, as every script starts)
//   print Editor.AutoNeighbours
//
// A script that switches it on changes nothing of what the editor remembers.
#pragma once

#include <QString>

namespace kv::gui {

class Form1;

// Each returns false when it does not know the name (err stays empty) or the
// value is wrong (err says why).
bool AutoTileScriptGet(Form1& f, const QString& name, QString* out);
bool AutoTileScriptSet(Form1& f, const QString& name, const QString& value, QString* err);

}  // namespace kv::gui

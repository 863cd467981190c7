// Scripts reach the comfort of the map view under the pseudo-form Editor:
//
//   Editor.Zoom = 50                         the zoom, 25 to 200 (per cent); print Editor.Zoom
//   Editor.Stroke BUTTON SHIFT X1 Y1 X2 Y2 … press at the first point of the view, move
//                                            through the others, release
//   Editor.Wheel DELTA SHIFT                 a turn of the wheel over the middle of the view
//                                            (120 a notch; SHIFT 1 Shift, 2 Ctrl)
//
// Points are pixels of the view as the window shows it (at 100 % the
// handlers' own). Setting the zoom lays the window out by the editor's rules.
#pragma once

#include <QString>
#include <QStringList>

namespace kv::gui {

class Form1;

// Each returns false when it does not know the name (err stays empty) or the
// arguments are wrong (err says why).
bool HandScriptCall(Form1& f, const QString& name, const QStringList& args, QString* err);
bool HandScriptGet(Form1& f, const QString& name, QString* out);
bool HandScriptSet(Form1& f, const QString& name, const QString& value, QString* err);

}  // namespace kv::gui

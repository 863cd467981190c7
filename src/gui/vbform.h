// What every form of the editor offers its automation: its controls by name,
// their properties as the window system shows them, and its handlers.
#pragma once

#include <QString>

class QObject;
class QWidget;

namespace kv::gui {

class VbForm {
 public:
  virtual ~VbForm() = default;
  virtual QWidget* formWidget() = 0;
  // Copies the session's state into the controls.
  virtual void SyncControls() {}
  // A property the form keeps itself (a folder list's Path, a box's text that
  // lives in the session): set it as the window system would, firing what it
  // fires. False when the form has no such property.
  virtual bool SetOwnProperty(QObject* ctl, const QString& prop, const QString& value) {
    (void)ctl, (void)prop, (void)value;
    return false;
  }
  virtual bool GetOwnProperty(QObject* ctl, const QString& prop, QString* out) {
    (void)ctl, (void)prop, (void)out;
    return false;
  }
};

// The control named `name` (case-insensitive; "Text3(2)" for an array
// element) among the form's widgets, actions and menus; nullptr if none.
QObject* FindControl(QWidget* form, const QString& name);
// Reads or sets a property: Text, Caption, Checked, Enabled, Visible, Value,
// Min, Max, ListIndex, ListCount, FontBold, Path, ... Setting fires what the
// window system fires (Text: _Change, ListIndex: _Click, a bar's Value: _Change).
bool GetControlProperty(VbForm& form, QObject* ctl, const QString& prop, QString* out, QString* err);
bool SetControlProperty(VbForm& form, QObject* ctl, const QString& prop, const QString& value, QString* err);
// Calls the form's handler `name` (case-insensitive) with arguments converted
// to its parameter types.
bool InvokeHandler(QObject* form, const QString& name, const QStringList& args, QString* err);

}  // namespace kv::gui

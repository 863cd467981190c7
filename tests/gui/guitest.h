// What the window tests share: one application on Qt's offscreen platform
// (or the platform the environment names) and scripts run against a main
// window with their output collected.
#pragma once

#include <QApplication>
#include <string>

namespace kv::gui {
class Form1;
}

namespace kvtest {

// The one application of the test process.
QApplication& GuiApp();

// Runs a script on the window; returns its exit status and leaves in `out`
// (when given) what it printed, then its errors, then with `withBoxes` the
// message boxes it showed.
int RunScriptText(kv::gui::Form1& form, const std::string& script, std::string* out = nullptr,
                  bool withBoxes = false);

}  // namespace kvtest

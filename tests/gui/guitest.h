// What the window tests share: one application on Qt's offscreen platform
// (or the platform the environment names) and scripts run against a main
// window with their output collected.
#pragma once

#include <memory>
#include <string>

#include <QApplication>

#include "testutil.h"

namespace kv {
struct Session;
}
namespace kv::gui {
class Form1;
}

namespace kvtest {

// The one application of the test process.
QApplication& GuiApp();

// Lets posted events run: deferred deletes, then whatever is queued.
void Settle();

// A main window started as the editor starts, on a small program folder of
// its own, at a screen of w x h, with scripts active and no answers queued.
// The user's settings go to `settings` (empty: a file in a folder of the
// window's own), never to the real user's.
struct EditorWindow {
  TempDir app, home;
  std::unique_ptr<kv::gui::Form1> f;
  explicit EditorWindow(const MiniApp& mini, int w = 1920, int h = 1080, const std::string& settings = {});
  ~EditorWindow();
  EditorWindow(const EditorWindow&) = delete;
  EditorWindow& operator=(const EditorWindow&) = delete;
  kv::Session& s();
  // Runs a script (see RunScriptText).
  int Run(const std::string& script, std::string* out = nullptr, bool withBoxes = false);
};

// Runs a script on the window; returns its exit status and leaves in `out`
// (when given) what it printed, then its errors, then with `withBoxes` the
// message boxes it showed.
int RunScriptText(kv::gui::Form1& form, const std::string& script, std::string* out = nullptr, bool withBoxes = false);

}  // namespace kvtest

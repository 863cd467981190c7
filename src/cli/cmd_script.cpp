// korvane-map [--app DIR] [--screen WxH] script FILE: runs an automation
// script against the editor's forms, created headless.
#include <QApplication>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>

#include "cli/commands.h"
#include "gui/Form1.h"
#include "gui/editorapp.h"
#include "gui/qtui.h"
#include "gui/script.h"

namespace kv::cli {

int CmdScript(const Options& o) {
  const std::string file = o.args[0];
  std::ifstream f;
  if (file != "-") {
    f.open(file, std::ios::binary);
    if (!f) {
      std::fprintf(stderr, "korvane-map: cannot open script %s\n", file.c_str());
      return 1;
    }
  }
  const std::string app = AppFolder(o);
  if (app.empty()) return 1;
  setenv("QT_QPA_PLATFORM", "offscreen", 1);
  // Standard output and error belong to the script: the window system's own
  // notices (no runtime folder, no raise on this platform) stay out of them.
  qInstallMessageHandler([](QtMsgType type, const QMessageLogContext&, const QString& msg) {
    if (type == QtCriticalMsg || type == QtFatalMsg) std::fprintf(stderr, "qt: %s\n", msg.toLocal8Bit().constData());
  });
  static int argc = 1;
  static char name[] = "korvane-map";
  static char* argv[] = {name, nullptr};
  kv::gui::EditorApplication qapp(argc, argv);
  gui::Script().active = true;
  gui::Form1 form(app);
  form.SetScreenSize(o.screenW, o.screenH);
  if (!form.Form_Load()) {
    std::fprintf(stderr, "korvane-map: the editor could not start on %s\n", app.c_str());
    return 1;
  }
  const int rc = gui::RunScript(form, file == "-" ? std::cin : f, stdout, stderr);
  form.Form_Unload();
  return rc;
}

}  // namespace kv::cli

// korvane-map [--app DIR] [--screen WxH] script FILE: runs an automation
// script against the editor's forms, created headless. Built into the
// editor's binary, where korvane-map starts it (cmd_script_launch.cpp).
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>

#include <QApplication>

#include "cli/commands.h"
#include "gui/Form1.h"
#include "gui/editorapp.h"
#include "gui/qtui.h"
#include "gui/script.h"
#include "platform/appfolder.h"

namespace kv::cli {

namespace {

int RunScript(const Options& o) {
  const std::string file = o.args[0];
  std::ifstream f;
  if (file != "-") {
    f.open(file, std::ios::binary);
    if (!f) {
      std::fprintf(stderr, "korvane-map: cannot open script %s\n", file.c_str());
      return 1;
    }
  }
  std::string err;
  const std::string app = ResolveAppFolder(o.app, o.exeDir, &err);
  if (app.empty()) {
    std::fprintf(stderr, "korvane-map: %s\n", err.c_str());
    return 1;
  }
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

}  // namespace

int ScriptEntry(int argc, char** argv) {
  Options o;
  std::error_code ec;
  o.exeDir = std::filesystem::canonical("/proc/self/exe", ec).parent_path().string();
  int i = 0;
  for (; i + 1 < argc; i += 2) {
    if (!std::strcmp(argv[i], "--app")) {
      o.app = argv[i + 1];
    } else if (!std::strcmp(argv[i], "--screen")) {
      std::sscanf(argv[i + 1], "%dx%d", &o.screenW, &o.screenH);
    } else {
      break;
    }
  }
  if (i + 1 != argc) {
    std::fprintf(stderr, "korvane-map: the editor was started for a script without one\n");
    return 2;
  }
  o.args.push_back(argv[i]);
  return RunScript(o);
}

}  // namespace kv::cli

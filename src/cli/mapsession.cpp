#include "cli/mapsession.h"

#include <cstdio>
#include <filesystem>

#include "editing/fileflow.h"
#include "editing/startup.h"

namespace kv::cli {

int StderrMessages::MsgBox(const std::string& text, int style) {
  std::string t = text;
  for (char& c : t)
    if (c == '\r') c = ' ';
  std::fprintf(stderr, "korvane-map: %s\n", t.c_str());
  return HeadlessUi::MsgBox(text, style);
}

bool OpenMapSession(const Options& o, MapSession& m) {
  namespace fs = std::filesystem;
  const std::string app = AppFolder(o);
  if (app.empty()) return false;
  std::error_code ec;
  const fs::path map = fs::absolute(o.args[0], ec);
  if (!fs::is_regular_file(map, ec)) {
    std::fprintf(stderr, "korvane-map: %s: no such map file\n", map.string().c_str());
    return false;
  }
  m.s = std::make_unique<Session>(app, &m.ui);
  m.s->view.ScreenW = o.screenW;
  m.s->view.ScreenH = o.screenH;
  if (!StartSession(*m.s)) return false;
  return OpenMapFile(*m.s, map.parent_path().string(), map.filename().string());
}

}  // namespace kv::cli

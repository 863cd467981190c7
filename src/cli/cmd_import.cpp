// korvane-map import SET OUT.map
#include <cstdio>
#include <filesystem>

#include "cli/commands.h"
#include "editing/fileflow.h"
#include "editing/startup.h"
#include "platform/fileio.h"
#include "scenario/import.h"
#include "session.h"

namespace kv::cli {

namespace {
// Messages go to standard error; every question takes its default answer.
class StderrUi final : public HeadlessUi {
 public:
  int MsgBox(const std::string& text, int style) override {
    std::string t = text;
    for (char& c : t)
      if (c == '\r') c = ' ';
    std::fprintf(stderr, "korvane-map: %s\n", t.c_str());
    return HeadlessUi::MsgBox(text, style);
  }
};
}  // namespace

int CmdImport(const Options& o) {
  namespace fs = std::filesystem;
  const std::string app = AppFolder(o);
  if (app.empty()) return 1;
  std::error_code ec;
  const fs::path set = fs::absolute(o.args[0], ec);
  const fs::path out = fs::absolute(o.args[1], ec);
  StderrUi ui;
  Session s(app, &ui);
  s.view.ScreenW = o.screenW;
  s.view.ScreenH = o.screenH;
  if (!StartSession(s)) return 1;
  if (!OpenScenarioSet(s, set.parent_path().string(), set.filename().string())) return 1;
  // The map's name as the scenario file quotes it: without ".map", so that
  // the scenario names OUT.map, OUT.bmp and OUT.oob.
  std::string name = out.filename().string();
  if (name.size() > 4 && (name.ends_with(".map") || name.ends_with(".MAP"))) name.resize(name.size() - 4);
  if (!SaveMapAs(s, out.parent_path().string(), name)) return 1;
  std::printf("%s: %d x %d hexes; %s and its side files written\n", set.string().c_str(), s.doc.W(), s.doc.H(),
              s.doc.MapPath.c_str());
  return 0;
}

}  // namespace kv::cli

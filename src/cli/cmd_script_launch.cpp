// korvane-map script: the script runs on the editor's forms, which need the
// window system's widgets; korvane-map itself loads none of them, so that its
// other commands run without a GUI library. The editor's binary beside it
// runs the script instead (its main passes kScriptEntry on to ScriptEntry).
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <string>
#include <unistd.h>
#include <vector>

#include "cli/commands.h"

namespace kv::cli {

int CmdScript(const Options& o) {
  const std::string editor = o.exeDir + "/korvane-mapedit";
  std::vector<std::string> args = {editor, kScriptEntry};
  if (!o.app.empty()) args.insert(args.end(), {"--app", o.app});
  args.insert(args.end(), {"--screen", std::to_string(o.screenW) + "x" + std::to_string(o.screenH), o.args[0]});
  std::vector<char*> argv;
  for (std::string& a : args) argv.push_back(a.data());
  argv.push_back(nullptr);
  std::fflush(nullptr);
  ::execv(editor.c_str(), argv.data());
  std::fprintf(stderr, "korvane-map: scripts run on the editor's forms, and the editor %s cannot be started: %s\n",
               editor.c_str(), std::strerror(errno));
  return 1;
}

}  // namespace kv::cli

// The command-line tool's subcommands.
#pragma once

#include <string>
#include <vector>

namespace kv::cli {

struct Options {
  std::string app;                     // --app DIR ("" for the per-user folder)
  int screenW = 1920, screenH = 1080;  // --screen WxH
  std::string exeDir;                  // folder of the running binary
  std::vector<std::string> args;       // what follows the subcommand's name
};

// Each returns the process exit status; errors go to standard error.
int CmdInfo(const Options& o);
int CmdImport(const Options& o);  // import SET OUT.map
// Runs an automation script (FILE or - for standard input) on headless forms.
// The forms need the window system's widgets, which korvane-map does not load:
// CmdScript starts the editor's binary beside it with kScriptEntry first, and
// the editor's main hands the rest of its arguments to ScriptEntry.
int CmdScript(const Options& o);
constexpr const char* kScriptEntry = "--korvane-map-script";
// In the editor's binary: the arguments after kScriptEntry, [--app DIR]
// --screen WxH FILE. Returns the script's exit status.
int ScriptEntry(int argc, char** argv);
int CmdCheck(const Options& o);     // check MAP: verification and every road and control fault
int CmdLandmass(const Options& o);  // landmass MAP: number the bodies, then save
int CmdAi(const Options& o);
int CmdRender(const Options& o);   // render MAP OUT [--x X --y Y --w W --h H]
int CmdJumpmap(const Options& o);  // jumpmap MAP OUT        // ai MAP: build the AI tables, then save

// The program folder for a command, or "" after printing why not.
std::string AppFolder(const Options& o);

}  // namespace kv::cli

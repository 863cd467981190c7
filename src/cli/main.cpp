// korvane-map: the editor's command-line tool.
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <string>

#include "cli/commands.h"
#include "platform/appfolder.h"

#ifndef KV_VERSION
#error "KV_VERSION comes from cmake/Version.cmake, which gives it to the two programs' targets"
#endif

namespace {

const char* kUsage =
    "usage: korvane-map [--app DIR] [--screen WxH] COMMAND ARGS...\n"
    "       korvane-map --help | --version\n"
    "commands:\n"
    "  info MAP        size, format, nation set, objectives, owned and named hexes\n"
    "  import SET OUT.map\n"
    "                  a scenario set of the older game as OUT.map with its side files, .oob and .scn\n"
    "  script FILE     run an automation script on the editor's forms (FILE may be -)\n"
    "  check MAP       verify the hex data, then list every road and control fault (status 1 if any)\n"
    "  landmass MAP    number the separate land and water bodies, then save\n"
    "  ai MAP          build the AI tables (the .ai file beside the map), then save\n"
    "  render MAP OUT [--x X --y Y --w W --h H] [PICTURE OPTIONS]\n"
    "                  columns X..X+W and rows Y..Y+H as a picture (.bmp or .png); default the whole map;\n"
    "                  a PNG is drawn and written in strips, of any size; a BMP is at most 32767 a side\n"
    "  jumpmap MAP OUT [PICTURE OPTIONS]\n"
    "                  the jump map picture (.bmp or .png)\n"
    "picture options:\n"
    "  --compression fast|default|best\n"
    "                  PNG compression: fast (the default) is the quickest, best the smallest\n"
    "  --threads N     compress a PNG on N threads (default: one per core)\n"
    "  --quiet         no progress line (otherwise shown on standard error for a picture\n"
    "                  that takes more than a second)\n";

const char* kTryHelp = "Try 'korvane-map --help' for more information.\n";

struct Command {
  const char* name;
  int (*run)(const kv::cli::Options&);
  int minArgs;
};

const Command kCommands[] = {
    {"info", kv::cli::CmdInfo, 1},     {"import", kv::cli::CmdImport, 2},     {"script", kv::cli::CmdScript, 1},
    {"check", kv::cli::CmdCheck, 1},   {"landmass", kv::cli::CmdLandmass, 1}, {"ai", kv::cli::CmdAi, 1},
    {"render", kv::cli::CmdRender, 2}, {"jumpmap", kv::cli::CmdJumpmap, 2},
};

}  // namespace

namespace kv::cli {

std::string AppFolder(const Options& o) {
  std::string err;
  std::string dir = ResolveAppFolder(o.app, o.exeDir, &err);
  if (dir.empty()) std::fprintf(stderr, "korvane-map: %s\n", err.c_str());
  return dir;
}

}  // namespace kv::cli

int main(int argc, char** argv) {
  kv::cli::Options o;
  std::error_code ec;
  o.exeDir = std::filesystem::canonical("/proc/self/exe", ec).parent_path().string();
  int i = 1;
  for (; i < argc; ++i) {
    std::string a = argv[i];
    if (a == "--app" && i + 1 < argc) {
      o.app = argv[++i];
    } else if (a == "--screen" && i + 1 < argc) {
      if (std::sscanf(argv[++i], "%dx%d", &o.screenW, &o.screenH) != 2 || o.screenW < 200 || o.screenH < 200) {
        std::fprintf(stderr, "korvane-map: --screen takes WIDTHxHEIGHT, at least 200x200\n");
        return 2;
      }
    } else if (a == "--help" || a == "-h") {
      std::fputs(kUsage, stdout);
      return 0;
    } else if (a == "--version") {
      std::printf("korvane-map %s\n", KV_VERSION);
      return 0;
    } else if (a == "--app" || a == "--screen") {
      std::fprintf(stderr, "korvane-map: option %s needs a value\n%s", a.c_str(), kTryHelp);
      return 2;
    } else if (!a.empty() && a[0] == '-') {
      std::fprintf(stderr, "korvane-map: unknown option %s\n%s", a.c_str(), kTryHelp);
      return 2;
    } else {
      break;
    }
  }
  if (i >= argc) {
    std::fputs(kUsage, stderr);
    return 2;
  }
  std::string name = argv[i++];
  for (; i < argc; ++i) o.args.push_back(argv[i]);
  for (const Command& c : kCommands) {
    if (name != c.name) continue;
    if (static_cast<int>(o.args.size()) < c.minArgs) {
      std::fprintf(stderr, "korvane-map: %s needs more arguments\n%s", c.name, kUsage);
      return 2;
    }
    return c.run(o);
  }
  std::fprintf(stderr, "korvane-map: unknown command %s\n%s", name.c_str(), kTryHelp);
  return 2;
}

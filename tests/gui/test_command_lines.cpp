// The two programs' command lines: --version gives the version of the build,
// --help and --version need no display, unknown options are named with a
// pointer to --help, and the manual pages describe every command and option
// that --help lists.
#include <cstdlib>
#include <regex>
#include <string>
#include <sys/wait.h>

#include <gtest/gtest.h>

#include "testutil.h"

namespace {

std::string Text(const std::string& path) {
  auto b = kvtest::ReadBytes(path);
  return std::string(b.begin(), b.end());
}

struct Outcome {
  int status = -1;
  std::string out, err;
};

// Runs `env` (VAR=VALUE ... or -u VAR ...) and a program of the build with
// its arguments, both already quoted for the shell.
Outcome Start(const std::string& env, const std::string& program, const std::string& args) {
  kvtest::TempDir tmp;
  const std::string cmd = "env " + env + " " + std::string(KV_BIN_DIR) + "/" + program + " " + args + " >'" +
                          (tmp / "out") + "' 2>'" + (tmp / "err") + "' </dev/null";
  const int rc = std::system(cmd.c_str());
  Outcome r;
  r.status = WIFEXITED(rc) ? WEXITSTATUS(rc) : -1;
  r.out = Text(tmp / "out");
  r.err = Text(tmp / "err");
  return r;
}

const char* kNoDisplay = "-u DISPLAY -u WAYLAND_DISPLAY QT_QPA_PLATFORM=xcb";

// The text of section NAME of a manual page, up to the next section.
std::string Section(const std::string& page, const std::string& name) {
  const size_t at = page.find("\n.SH " + name + "\n");
  if (at == std::string::npos) return "";
  const size_t from = at + 5 + name.size();
  return page.substr(from, page.find("\n.SH ", from) - from);
}

}  // namespace

TEST(CommandLines, VersionIsTheBuildsAndHelpAndVersionNeedNoDisplay) {
  const std::string version = KV_EXPECTED_VERSION;
  ASSERT_TRUE(std::regex_match(version, std::regex("[0-9]+\\.[0-9]+.*"))) << version;
  for (const char* program : {"korvane-map", "korvane-mapedit"}) {
    SCOPED_TRACE(program);
    Outcome v = Start(kNoDisplay, program, "--version");
    EXPECT_EQ(v.status, 0) << v.err;
    EXPECT_EQ(v.out, std::string(program) + " " + version + "\n");
    EXPECT_EQ(v.err, "");
    Outcome h = Start(kNoDisplay, program, "--help");
    EXPECT_EQ(h.status, 0) << h.err;
    EXPECT_EQ(h.out.rfind(std::string("usage: ") + program + " [--app DIR]", 0), 0u) << h.out;
    EXPECT_EQ(Start(kNoDisplay, program, "-h").out, h.out);
  }
}

TEST(CommandLines, UnknownOptionsAndCommandsAreNamedWithAPointerToHelp) {
  Outcome r = Start("", "korvane-map", "--frob info x.map");
  EXPECT_EQ(r.status, 2);
  EXPECT_EQ(r.out, "");
  EXPECT_EQ(r.err, "korvane-map: unknown option --frob\nTry 'korvane-map --help' for more information.\n");
  r = Start("", "korvane-map", "--app");
  EXPECT_EQ(r.status, 2);
  EXPECT_EQ(r.err, "korvane-map: option --app needs a value\nTry 'korvane-map --help' for more information.\n");
  r = Start("", "korvane-map", "frob x.map");
  EXPECT_EQ(r.status, 2);
  EXPECT_EQ(r.err, "korvane-map: unknown command frob\nTry 'korvane-map --help' for more information.\n");

  // The editor stops before any window opens.
  r = Start("QT_QPA_PLATFORM=offscreen", "korvane-mapedit", "--frob x.map");
  EXPECT_EQ(r.status, 2);
  EXPECT_NE(r.err.find("korvane-mapedit: Unknown option 'frob'.\nTry 'korvane-mapedit --help' for more information.\n"),
            std::string::npos)
      << r.err;
  r = Start("QT_QPA_PLATFORM=offscreen", "korvane-mapedit", "a.map b.map");
  EXPECT_EQ(r.status, 2);
  EXPECT_NE(r.err.find("korvane-mapedit: one map at a time\n"), std::string::npos) << r.err;
}

TEST(CommandLines, TheManualPagesDescribeEveryCommandAndOptionOfTheHelp) {
  for (const char* program : {"korvane-map", "korvane-mapedit"}) {
    SCOPED_TRACE(program);
    const std::string page = Text(std::string(KV_SOURCE_DIR) + "/man/" + program + ".1.in");
    ASSERT_FALSE(page.empty());
    for (const char* s : {"NAME", "SYNOPSIS", "DESCRIPTION", "OPTIONS", "COMMANDS", "FILES", "EXAMPLES", "EXIT STATUS"})
      EXPECT_NE(Section(page, s), "") << s;
    EXPECT_NE(Section(page, "NAME").find(std::string(program) + " \\- "), std::string::npos);

    const std::string help = Start(kNoDisplay, program, "--help").out;
    // Options: every --long option of the help, in OPTIONS (or with its
    // command in COMMANDS) as roff writes it.
    const std::string options = Section(page, "OPTIONS") + Section(page, "COMMANDS");
    int n = 0;
    const std::regex option("--([a-z]+)");
    for (auto it = std::sregex_iterator(help.begin(), help.end(), option); it != std::sregex_iterator(); ++it, ++n)
      EXPECT_NE(options.find("\\-\\-" + (*it)[1].str()), std::string::npos) << (*it)[0];
    EXPECT_GE(n, 3);
    // Commands: the lines of the help's command list, each an entry of COMMANDS.
    const std::string commands = Section(page, "COMMANDS");
    const std::regex command("\n  ([a-z]+) [A-Z]");
    n = 0;
    for (auto it = std::sregex_iterator(help.begin(), help.end(), command); it != std::sregex_iterator(); ++it, ++n) {
      const std::string c = (*it)[1].str();
      EXPECT_TRUE(commands.find(".BI " + c + " ") != std::string::npos ||
                  commands.find("\\fB" + c + "\\fP") != std::string::npos)
          << c;
    }
    EXPECT_EQ(n, std::string(program) == "korvane-map" ? 8 : 0);
  }
}

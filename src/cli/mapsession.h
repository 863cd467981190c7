// A headless editing session on one map, for the subcommands that work on a
// map and perhaps save it.
#pragma once

#include <memory>
#include <string>

#include "cli/commands.h"
#include "platform/ui.h"
#include "session.h"

namespace kv::cli {

// Messages go to standard error; every question takes its default answer.
class StderrMessages final : public HeadlessUi {
 public:
  int MsgBox(const std::string& text, int style) override;
};

struct MapSession {
  StderrMessages ui;
  std::unique_ptr<Session> s;
};

// Starts a session on the program folder of the options and opens MAP (the
// first argument). Returns false after saying why.
bool OpenMapSession(const Options& o, MapSession& m);

}  // namespace kv::cli

// A started session on a fresh small program folder: the ground most core
// tests stand on. Fixtures derive from it and add what their tests need.
#pragma once

#include <memory>

#include <gtest/gtest.h>

#include "editing/startup.h"
#include "platform/ui.h"
#include "session.h"
#include "testutil.h"

namespace kvtest {

struct MiniSession {
  TempDir app;
  kv::HeadlessUi ui;
  std::unique_ptr<kv::Session> s;
  // start = false leaves StartSession to the test (for start-up faults).
  explicit MiniSession(const MiniApp& mini = {}, bool start = true) {
    MakeMiniApp(app.path(), mini);
    s = std::make_unique<kv::Session>(app.path(), &ui);
    if (start) {
      EXPECT_TRUE(kv::StartSession(*s));
    }
  }
  kv::Document& d() { return s->doc; }
  kv::Pens& p() { return s->pens; }
};

// The program folder most document tests use: tile 0 sea, tile 1 a road tile
// on open ground (roads leave by sides 1 and 4), tile 2 plain open ground.
inline MiniApp RoadTileApp() {
  MiniApp mini;
  mini.types = {0, 1, 1, 3, 1, 5};
  mini.roads = {{}, {1, 0, 0, 1, 0, 0}};
  return mini;
}

}  // namespace kvtest

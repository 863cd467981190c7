// A small program folder and session for the auto-tiling tests: a tile set
// with one or two tiles of every terrain the engine knows by number, and a
// 10 x 10 map of open ground.
#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "autotile/stores.h"
#include "editing/startup.h"
#include "session.h"
#include "testutil.h"

namespace kvtest {

// Tile numbers of the test set.
namespace tl {
constexpr int16_t Sea = 0, Open = 1, Open2 = 2, Road = 3, River = 4, Bridge = 5, City = 6, Port = 7, Forest = 8,
                  Forest2 = 9, T10 = 10, T12 = 11, RoadEnd = 12, ForestRoad = 13, Sea2 = 14, Mount = 15, Mount2 = 16,
                  River11 = 17, Rough = 18, Rough2 = 19, City2 = 20, Port2 = 21, RoughRoad = 22;
}  // namespace tl

struct AutoApp {
  TempDir app;
  kv::HeadlessUi ui;
  std::unique_ptr<kv::Session> s;

  explicit AutoApp(bool withBridgeTile = true) {
    MiniApp mini;
    mini.tiles = 208;  // tiles 0..207, so the mountain key tiles exist
    mini.types.assign(208, 1);
    const uint8_t types[] = {0, 1, 1, 1, 2, 2, 5, 14, 8, 8, 10, 12, 6, 8, 0, 3, 3, 11, 4, 4, 5, 14, 4};
    for (size_t i = 0; i < sizeof types; ++i) mini.types[i] = types[i];
    for (int t : {75, 76, 78, 86, 90, 94, 104, 105, 115, 192}) mini.types[t] = 3;
    mini.roads.assign(23, {});
    // Road records in ring order (byte 0 is side 5, byte 2 side 1).
    mini.roads[tl::Road] = {1, 0, 0, 1, 0, 0};  // sides 5 and 2
    if (withBridgeTile) mini.roads[tl::Bridge] = {1, 0, 0, 1, 0, 0};
    mini.roads[tl::ForestRoad] = {1, 0, 0, 1, 0, 0};
    mini.roads[tl::RoughRoad] = {0, 0, 1, 0, 0, 1};  // sides 1 and 4
    MakeMiniApp(app.path(), mini);
    s = std::make_unique<kv::Session>(app.path(), &ui);
    EXPECT_TRUE(kv::StartSession(*s));
    Fill(9, 9, tl::Open);
  }
  kv::Document& d() { return s->doc; }
  kv::Pens& p() { return s->pens; }
  std::string App(const std::string& rel) const { return app / rel; }

  // A fresh map of (mx + 1) x (my + 1) hexes of one tile, no sides.
  void Fill(int mx, int my, int16_t tile) {
    d().MapMaxX = static_cast<int16_t>(mx);
    d().MapMaxY = static_cast<int16_t>(my);
    d().AllocateAll();
    for (int x = 0; x <= mx; ++x)
      for (int y = 0; y <= my; ++y) Put(x, y, tile);
  }
  // Tile and its terrain.
  void Put(int x, int y, int16_t tile) {
    d().HexTile(x, y) = tile;
    d().HexInfo(x, y, 0) = s->ref.TypeOf(tile);
  }
  // The neighbour of (x, y) at ring position p.
  void PutRing(int x, int y, int p, int16_t tile) {
    int nx, ny;
    kv::RingNeighbour(x, y, p, nx, ny);
    Put(nx, ny, tile);
  }
  std::string Text(const std::string& rel) const {
    auto b = ReadBytes(app / rel);
    return std::string(b.begin(), b.end());
  }
  void Write(const std::string& rel, const std::string& text) const { WriteText(app / rel, text); }
  bool Exists(const std::string& rel) const { return std::filesystem::exists(app / rel); }
};

}  // namespace kvtest

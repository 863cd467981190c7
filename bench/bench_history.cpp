// The history on a 1000 x 1000 map: recording a one-hex action (time and
// bytes kept), undo and redo of a whole-map pass, and the memory cap.
#include <random>

#include <benchmark/benchmark.h>

#include "editing/history.h"
#include "session.h"

using namespace kv;

namespace {

struct BigSession {
  Session s{"/nonexistent"};
  BigSession() {
    Document& d = s.doc;
    d.MapMaxX = 999;
    d.MapMaxY = 999;
    d.AllocateAll();
    std::mt19937 g(1);
    for (auto& v : d.HexInfo.raw()) v = static_cast<uint8_t>(g() % 3);
    for (auto& v : d.HexTile.raw()) v = static_cast<int16_t>(g() % 256);
    for (auto& v : d.HexElev.raw()) v = static_cast<uint8_t>(127 + g() % 9);
  }
};

// A click that paints one hex: its tile and terrain change, then the step is found.
void BM_RecordOneHexAction(benchmark::State& state) {
  BigSession b;
  Document& d = b.s.doc;
  History h(b.s);
  int i = 0;
  for (auto _ : state) {
    const int x = (i * 37) % 1000, y = (i * 91) % 1000;
    d.HexTile(x, y) = static_cast<int16_t>(d.HexTile(x, y) + 1);
    d.HexInfo(x, y, 0) = static_cast<uint8_t>(d.HexInfo(x, y, 0) ^ 1);
    h.Commit("Paint Tile");
    ++i;
  }
  state.counters["bytes_per_step"] = static_cast<double>(h.Bytes()) / static_cast<double>(h.UndoCount());
  state.counters["steps"] = static_cast<double>(h.UndoCount());
}
BENCHMARK(BM_RecordOneHexAction)->Unit(benchmark::kMillisecond);

// A whole-map pass (every tile and terrain code) undone and redone.
void BM_UndoRedoWholeMapPass(benchmark::State& state) {
  BigSession b;
  Document& d = b.s.doc;
  History h(b.s);
  for (int y = 0; y < 1000; ++y)
    for (int x = 0; x < 1000; ++x) {
      d.HexTile(x, y) = static_cast<int16_t>((x + y) % 200);
      d.HexInfo(x, y, 0) = static_cast<uint8_t>((x * y) % 15);
    }
  h.Commit("auto redraw Terrain");
  for (auto _ : state) {
    h.Undo();
    h.Redo();
  }
  state.counters["step_MB"] = static_cast<double>(h.Bytes()) / (1 << 20);
}
BENCHMARK(BM_UndoRedoWholeMapPass)->Unit(benchmark::kMillisecond);

// Whole-map passes until the cap holds the history: the oldest go first.
void BM_HistoryMemoryCap(benchmark::State& state) {
  BigSession b;
  Document& d = b.s.doc;
  History h(b.s);
  int pass = 0;
  for (auto _ : state) {
    for (auto& v : d.HexTile.raw()) v = static_cast<int16_t>(v + 1);
    for (auto& v : d.HexElev.raw()) v = static_cast<uint8_t>(v + 1);
    h.Commit("pass");
    ++pass;
  }
  state.counters["passes"] = pass;
  state.counters["steps_kept"] = static_cast<double>(h.UndoCount());
  state.counters["history_MB"] = static_cast<double>(h.Bytes()) / (1 << 20);
  state.counters["cap_MB"] = static_cast<double>(h.Cap()) / (1 << 20);
}
BENCHMARK(BM_HistoryMemoryCap)->Iterations(120)->Unit(benchmark::kMillisecond);

}  // namespace

// Map analysis: land-mass numbering on a map shaped to force many merges,
// beside the plain four sweeps (whole-map rescans) on smaller maps of the same shape;
// AI tables for 50 objectives on a 300 x 300 map on one thread and on all.
#include <algorithm>
#include <filesystem>
#include <random>
#include <thread>
#include <unistd.h>

#include <benchmark/benchmark.h>

#include "analysis/aitables.h"
#include "analysis/landmass.h"
#include "landmass_plain.h"
#include "platform/fileio.h"
#include "session.h"

using namespace kv;

namespace {

// Groups of three columns: sea, then single land hexes on every other row
// (each a body of its own when the scan meets it), then a full land column
// that joins them one by one. About a sixth of the hexes force a merge, and
// the plain sweeps rescan the whole map for each.
kvtest::Terrain MergeHeavy(int n) {
  kvtest::Terrain m(n, n);
  for (int x = 0; x < n; ++x)
    for (int y = 0; y < n; ++y)
      if ((x % 3 == 1 && y % 2 == 0) || x % 3 == 2) m.at(x, y) = 1;
  return m;
}

void BM_LandMasses(benchmark::State& st) {
  const auto m = MergeHeavy(static_cast<int>(st.range(0)));
  for (auto _ : st) {
    auto r = NumberLandMasses(m.t.data(), m.w, m.h);
    benchmark::DoNotOptimize(r.number.data());
  }
  st.counters["hexes"] = static_cast<double>(m.t.size());
}
BENCHMARK(BM_LandMasses)->Arg(1000)->Arg(2000)->Arg(4000)->Unit(benchmark::kMillisecond);

void BM_LandMassesPlainSweeps(benchmark::State& st) {
  const auto m = MergeHeavy(static_cast<int>(st.range(0)));
  for (auto _ : st) {
    auto r = kvtest::PlainSweeps(m);
    benchmark::DoNotOptimize(r.data());
  }
  st.counters["hexes"] = static_cast<double>(m.t.size());
}
BENCHMARK(BM_LandMassesPlainSweeps)
    ->Arg(60)
    ->Arg(120)
    ->Arg(250)
    ->Arg(400)
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond);

struct AIBench {
  std::string dir;
  Session s;
  AIBench()
      : dir((std::filesystem::temp_directory_path() / ("kvbench-ai-" + std::to_string(::getpid()))).string()), s(dir) {
    std::filesystem::create_directories(dir);
    Document& d = s.doc;
    d.MapMaxX = 299;
    d.MapMaxY = 299;
    d.AllocateAll();
    std::mt19937 g(4);
    for (int x = 0; x <= 299; ++x)
      for (int y = 0; y <= 299; ++y) d.HexInfo(x, y, 0) = 1;
    for (int lake = 0; lake < 40; ++lake) {  // lakes to walk round
      const int cx = static_cast<int>(g() % 300), cy = static_cast<int>(g() % 300), r = 2 + static_cast<int>(g() % 8);
      for (int x = std::max(0, cx - r); x <= std::min(299, cx + r); ++x)
        for (int y = std::max(0, cy - r); y <= std::min(299, cy + r); ++y) d.HexInfo(x, y, 0) = 0;
    }
    BuildLandMasses(s);
    d.ObjCount = 50;
    d.ObjList.Allocate(50);
    for (int i = 1; i <= 50; ++i) {
      int x, y;
      do {
        x = static_cast<int>(g() % 300);
        y = static_cast<int>(g() % 300);
      } while (d.HexInfo(x, y, 0) == 0);
      d.ObjList(i, 0) = static_cast<int16_t>(x);
      d.ObjList(i, 1) = static_cast<int16_t>(y);
    }
    d.MapFile = "bench.map";
    d.MapPath = dir + "/bench.map";
  }
  ~AIBench() { std::filesystem::remove_all(dir); }
};

void BM_AITables(benchmark::State& st) {
  static AIBench b;
  const int threads = st.range(0) == 0 ? static_cast<int>(std::max(1u, std::thread::hardware_concurrency()))
                                       : static_cast<int>(st.range(0));
  for (auto _ : st) WriteAIFile(b.s, threads);
  st.counters["threads"] = threads;
}
// 1: one thread; 0: every core of the machine.
BENCHMARK(BM_AITables)->Arg(1)->Arg(0)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace

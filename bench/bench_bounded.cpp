// Bounded cost: a new map of the narrowest and widest shapes the New Map box
// takes, against a square map of as many hexes; and the memorise passes,
// which write each pattern file once, against learning hex by hex with a
// file written for every lesson.
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <unistd.h>

#include <benchmark/benchmark.h>

#include "autotile/engine.h"
#include "autotile/passes.h"
#include "autotile/stores.h"
#include "editing/filemenu.h"
#include "editing/startup.h"
#include "session.h"

using namespace kv;
namespace fs = std::filesystem;

namespace {

long RssMb() {
  std::ifstream f("/proc/self/statm");
  long pages = 0, rss = 0;
  f >> pages >> rss;
  return rss * sysconf(_SC_PAGESIZE) / (1024 * 1024);
}

// A started session on a copy of the default program folder.
struct Editor {
  std::string dir;
  std::unique_ptr<Session> s;
  Editor() {
    dir = (fs::temp_directory_path() / ("kvbench-bounded-" + std::to_string(::getpid()))).string();
    fs::remove_all(dir);
    fs::copy(KV_DEFAULT_DATA_DIR, dir, fs::copy_options::recursive);
    s = std::make_unique<Session>(dir);
    if (!StartSession(*s)) std::abort();
  }
  ~Editor() {
    s.reset();
    fs::remove_all(dir);
  }
  int FirstTile(int terrain, int road) const {
    for (int t = 0; t <= s->ref.TileMax; ++t)
      if (s->ref.TypeOf(t) == terrain && s->ref.RoadOf(t) == road) return t;
    std::abort();
  }
  void Fill(int mx, int my, int tile) {
    Document& d = s->doc;
    d.MapMaxX = static_cast<int16_t>(mx);
    d.MapMaxY = static_cast<int16_t>(my);
    d.AllocateAll();
    for (int x = 0; x <= mx; ++x)
      for (int y = 0; y <= my; ++y) {
        d.HexTile(x, y) = static_cast<int16_t>(tile);
        d.HexInfo(x, y, 0) = s->ref.TypeOf(tile);
      }
  }
  void ClearStores() {
    for (const char* sub : {"roadpatterns", "bridgepatterns", "riverpatterns", "tilep03", "tilep08"}) {
      fs::remove_all(dir + "/mapedit/" + sub);
      fs::create_directories(dir + "/mapedit/" + sub);
    }
  }
};

// New Map through its box: Arg 0 and 1 are the highest column and row.
void BM_NewMap(benchmark::State& st) {
  Editor e;
  Session& s = *e.s;
  long rss = 0;
  for (auto _ : st) {
    s.ed.f6.Text1 = std::to_string(st.range(0));
    s.ed.f6.Text2 = std::to_string(st.range(1));
    if (!Form6_Command2_Click(s)) st.SkipWithError("refused");
    rss = std::max(rss, RssMb());
    st.PauseTiming();
    s.ed.f6.Text1 = s.ed.f6.Text2 = "32";
    Form6_Command2_Click(s);
    st.ResumeTiming();
  }
  st.counters["MB"] = static_cast<double>(rss);
}
BENCHMARK(BM_NewMap)
    ->Name("New Map")
    ->Args({1, 32767})
    ->Args({32767, 1})
    ->Args({255, 255})
    ->Unit(benchmark::kMillisecond);

// The passes over a 60 x 60 map of one tile each, every hex a lesson.
enum Pass { Roads, Rivers, Mountains, Forests };

void Plain(Session& s, Pass p) {
  Document& d = s.doc;
  for (int x = 0; x <= d.MapMaxX; ++x)
    for (int y = 0; y <= d.MapMaxY; ++y) {
      const auto hx = static_cast<int16_t>(x), hy = static_cast<int16_t>(y);
      const int t = d.HexInfo(x, y, 0);
      switch (p) {
        case Roads:
          s.pens.CurTile = d.HexTile(x, y);
          NewRoadPattern(s, hx, hy, d.HexTile(x, y));
          break;
        case Rivers: NewRiverPattern(s, hx, hy, d.HexTile(x, y)); break;
        case Mountains:
          if (t == 3) SavePattern(s, hx, hy, d.HexTile(x, y));
          break;
        case Forests: NewPattern(s, hx, hy, d.HexTile(x, y)); break;
      }
    }
}

void BM_Memorise(benchmark::State& st) {
  Editor e;
  Session& s = *e.s;
  const auto pass = static_cast<Pass>(st.range(0));
  const bool plain = st.range(1) == 0;
  const int tile = pass == Roads       ? e.FirstTile(1, 1)
                   : pass == Rivers    ? e.FirstTile(2, 0)
                   : pass == Mountains ? e.FirstTile(3, 0)
                                       : e.FirstTile(8, 0);
  e.Fill(59, 59, tile);
  s.pens.CurTile = static_cast<int16_t>(tile);
  s.view.ViewX = s.view.ViewY = 0;
  s.view.ViewCols = s.view.ViewRows = 59;
  for (auto _ : st) {
    st.PauseTiming();
    e.ClearStores();
    st.ResumeTiming();
    if (plain) {
      Plain(s, pass);
    } else {
      switch (pass) {
        case Roads: MemorizeRoads_Click(s); break;
        case Rivers: MemoriseRivers_Click(s); break;
        case Mountains: mMountains_Click(s); break;
        case Forests: LearnVisibleForests(s); break;
      }
    }
  }
  st.counters["hexes"] = 3600;
}
BENCHMARK(BM_Memorise)
    ->Name("Memorise")
    ->ArgNames({"pass", "batched"})
    ->ArgsProduct({{Roads, Rivers, Mountains, Forests}, {0, 1}})
    ->Unit(benchmark::kMillisecond);

}  // namespace

// "auto redraw Terrain" and "auto redraw Roads" over a 300 x 300 map with
// stores learned from that map, each with the cache of parsed store files
// and with every lookup reading its file, in one run.
#include <chrono>
#include <filesystem>
#include <memory>
#include <random>
#include <thread>
#include <unistd.h>

#include <benchmark/benchmark.h>

#include "autotile/engine.h"
#include "autotile/passes.h"
#include "autotile/stores.h"
#include "document/document.h"
#include "session.h"

using namespace kv;
namespace fs = std::filesystem;

namespace {

// Tiles 0..255: 16 tiles for each of the terrains 0..15; in each terrain the
// tiles 12..15 carry a road on two opposite sides.
constexpr int kTiles = 256;
int TileOf(int terrain, int k) { return terrain * 16 + k; }

struct World {
  std::string dir;
  std::unique_ptr<Session> s;
  HexArray<int16_t> tiles;
  HexArray<uint8_t> info;

  World() {
    dir = (fs::temp_directory_path() / ("kvbench-auto-" + std::to_string(::getpid()))).string();
    for (const char* sub : {"mapedit/roadpatterns", "mapedit/bridgepatterns", "mapedit/riverpatterns"})
      fs::create_directories(dir + "/" + sub);
    s = std::make_unique<Session>(dir);
    RefData& r = s->ref;
    r.TileMax = kTiles - 1;
    r.TerrainMax = 15;
    r.TileType.resize(kTiles);
    r.TileRoad.resize(kTiles);
    r.RoadTableData.assign(7, 0);
    for (int t = 0; t < kTiles; ++t) {
      r.TileType[t] = static_cast<uint8_t>(t / 16);
      r.TileRoad[t] = (t % 16) >= 12;
      if (r.TileRoad[t]) {
        const int row = static_cast<int>(r.RoadTableData.size() / 7);
        r.RoadTableData.resize(r.RoadTableData.size() + 7, 0);
        r.RoadTable(0, row) = static_cast<int16_t>(t);
        r.RoadTable(2, row) = 1;
        r.RoadTable(5, row) = 1;
        r.RoadTable(0, 0) = static_cast<int16_t>(row);
      }
    }
    BuildMap();
    Learn();
    tiles = s->doc.HexTile;
    info = s->doc.HexInfo;
    // Let every store file fall behind the file clock's granularity.
    std::this_thread::sleep_for(std::chrono::milliseconds(200));
  }
  ~World() { fs::remove_all(dir); }

  // Blobs of sea, forest, mountains, rough ground, towns and ports on open
  // ground, rivers across, and roads along rows and columns.
  void BuildMap() {
    Document& d = s->doc;
    d.MapMaxX = 299;
    d.MapMaxY = 299;
    d.AllocateAll();
    std::mt19937 g(7);
    std::vector<uint8_t> terr(300 * 300, 1);
    const int kinds[] = {0, 8, 10, 3, 4, 5, 14, 12, 6};
    for (int b = 0; b < 900; ++b) {
      const int cx = g() % 300, cy = g() % 300, rad = 1 + g() % 5, t = kinds[g() % 9];
      for (int x = std::max(0, cx - rad); x <= std::min(299, cx + rad); ++x)
        for (int y = std::max(0, cy - rad); y <= std::min(299, cy + rad); ++y)
          terr[x * 300 + y] = static_cast<uint8_t>(t);
    }
    for (int k = 0; k < 12; ++k) {  // rivers wander down the map
      int x = g() % 300;
      for (int y = 0; y < 300; ++y) {
        terr[x * 300 + y] = (k % 2) ? 2 : 11;
        x = std::clamp(x + static_cast<int>(g() % 3) - 1, 0, 299);
      }
    }
    for (int x = 0; x <= 299; ++x)
      for (int y = 0; y <= 299; ++y) {
        const int t = terr[x * 300 + y];
        const bool road = (x % 37 == 5) || (y % 41 == 7);
        const int tile = TileOf(t, road ? 12 + static_cast<int>(g() % 4) : static_cast<int>(g() % 12));
        d.HexTile(x, y) = static_cast<int16_t>(tile);
        d.HexInfo(x, y, 0) = static_cast<uint8_t>(t);
      }
    for (int16_t x = 0; x <= 299; ++x)
      for (int16_t y = 0; y <= 299; ++y)
        if (s->ref.TileRoad[d.HexTile(x, y)]) ConnectRoads(*s, x, y);
  }

  // What a designer's stores hold after painting such a map by hand: the
  // memorise passes over all of it, the tile stores learned from a quarter,
  // and a terrain tile list for every outline of sea, towns and ports.
  void Learn() {
    Document& d = s->doc;
    MemorizeRoads_Click(*s);
    MemoriseRivers_Click(*s);
    for (int16_t x = 0; x <= 149; ++x)
      for (int16_t y = 0; y <= 149; ++y) {
        const int16_t t = d.HexTile(x, y);
        s->pens.CurTile = t;
        NewPattern(*s, x, y, t);
      }
    for (int t : {0, 5, 14}) {
      fs::create_directories(dir + "/mapedit/t" + TerrainNN(t));
      for (int m = 0; m < 64; ++m) {
        std::array<bool, 6> on{};
        for (int i = 0; i < 6; ++i) on[i] = (m >> i) & 1;
        std::string recs;
        for (int k = 0; k < 12; k += 1 + m % 3) {
          char b[8];
          std::snprintf(b, sizeof b, "%03d\r\n", TileOf(t, k));
          recs += b;
        }
        FILE* f = std::fopen(TileListPath(*s, t, SideDigits(on)).c_str(), "wb");
        std::fwrite(recs.data(), 1, recs.size(), f);
        std::fclose(f);
      }
    }
  }

  void Restore() {
    s->doc.HexTile = tiles;
    s->doc.HexInfo = info;
    s->pens.DefaultAreaAll = -1;
  }
};

World& TheWorld() {
  static World w;
  return w;
}

template <void (*Pass)(MapView&)>
void BM_Pass(benchmark::State& st) {
  World& w = TheWorld();
  SetStoreCache(*w.s, st.range(0) != 0);
  for (auto _ : st) {
    st.PauseTiming();
    w.Restore();
    st.ResumeTiming();
    Pass(*w.s);
    benchmark::DoNotOptimize(w.s->doc.HexTile.data());
  }
  st.SetItemsProcessed(st.iterations() * 300 * 300);
  st.SetLabel(st.range(0) ? "cached stores" : "reading every lookup");
  SetStoreCache(*w.s, true);
}

}  // namespace

BENCHMARK(BM_Pass<autoredrawterrain_Click>)->Name("auto redraw Terrain")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Pass<autoredrawroads_Click>)->Name("auto redraw Roads")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

// The comfort layer's costs, each beside what it is measured against, in one
// run: the zoom to 25 % of a 1920 x 1080 window over a busy map (goal 100 ms),
// a one-step scroll through the bar at 25 % (goal one frame, 16 ms), the live
// jump map's update of one hex of a 1000 x 1000 map against drawing the whole
// jump map (goal 1 ms and 1/100), and a stroke's hex with auto-tile on (goal
// one frame a hex).
#include <filesystem>
#include <map>
#include <memory>
#include <unistd.h>

#include <benchmark/benchmark.h>

#include "editing/editing.h"
#include "jumpmap/jumpmap.h"
#include "jumpmap/livejump.h"
#include "renderkit.h"
#include "view/render_api.h"
#include "view/scrolling.h"
#include "view/spritebank.h"
#include "view/zoom.h"
#include "view/zoomgrid.h"

using namespace kv;

namespace {

std::string TempDir(const char* what) {
  const std::string dir = (std::filesystem::temp_directory_path() /
                           (std::string("kvbench-hand-") + what + "-" + std::to_string(::getpid())))
                              .string();
  std::filesystem::create_directories(dir + "/mapedit");
  return dir;
}

std::unique_ptr<Session> BusyMap(int maxX, int maxY, const char* what) {
  auto s = std::make_unique<Session>(TempDir(what));
  Document& d = s->doc;
  d.MapMaxX = static_cast<int16_t>(maxX);
  d.MapMaxY = static_cast<int16_t>(maxY);
  d.AllocateAll();
  for (int x = 0; x <= d.MapMaxX; ++x)
    for (int y = 0; y <= d.MapMaxY; ++y) {
      d.HexTile(x, y) = static_cast<int16_t>((x * 7 + y * 13) % 128);
      d.HexInfo(x, y, 0) = static_cast<uint8_t>((x + y) % 15);
      d.HexElev(x, y) = static_cast<uint8_t>(120 + (x * 3 + y * 5) % 9);
      if ((x + y) % 3 == 0) {
        d.HexCtl(x, y, 0) = static_cast<uint8_t>(1 + x % 3);
        d.HexCtl(x, y, 1) = static_cast<uint8_t>((x + 2 * y) % 4);
      }
      for (int side = 1; side <= 6; ++side)
        if ((x + y + side) % 4 == 0) d.HexInfo(x, y, side) = static_cast<uint8_t>(1 + (side % 2));
    }
  FillHexPixel(*s);
  kvtest::MakeTerrains(s->ref);
  kvtest::MakeSprites(*s, 128);
  s->ref.TileType.assign(128, 1);
  s->ref.TileRoad.assign(128, 0);
  s->pens.HexOutlines = -1;
  s->pens.ShowRoadControl = -1;
  return s;
}

// The view of a 1920 x 1080 window's picture (1816 x 900 inside) at a zoom,
// composed at the zoom's own size; or (atFullSize) the same hexes composed
// at full size, as the window had them before it drew at the zoom's size
// (it then scaled that picture down on every paint, not counted here).
void SetZoomedView(Session& s, int zoom, bool atFullSize = false) {
  ViewState& v = s.view;
  v.Zoom = static_cast<int16_t>(zoom);
  v.ViewPixW = static_cast<int>(ScaleAcross(s.ref, zoom).Full(1816));
  v.ViewPixH = static_cast<int>(ScaleDown(s.ref, zoom).Full(900));
  if (atFullSize) v.Zoom = 100;
  v.ViewCols = static_cast<int16_t>((v.ViewPixW + 4) / s.ref.ColPitch - 1);
  v.ViewRows = static_cast<int16_t>((v.ViewPixH + 4) / s.ref.RowPitch - 1);
  v.HScroll1.Max = s.doc.MapMaxX - v.ViewCols;
  v.VScroll1.Max = s.doc.MapMaxY - v.ViewRows;
  SpriteBank& b = s.sprites;
  ComputeBufferSize(s, b.BufW, b.BufH);
  b.BufDC.Create(b.BufW, b.BufH);
  RedrawBuffers(s);
}

// What the editor does when the zoom goes to 25 %: a buffer for the larger
// view, composed whole and shown. Arg 1: at the zoom's size; 0: at full size.
void BM_ZoomTo25(benchmark::State& state) {
  auto s = BusyMap(399, 399, "zoom");
  s->view.ViewX = s->view.ViewY = 20;
  for (auto _ : state) {
    SetZoomedView(*s, 100);
    state.PauseTiming();
    state.ResumeTiming();
    SetZoomedView(*s, 25, state.range(0) == 0);
  }
}
BENCHMARK(BM_ZoomTo25)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond)->Iterations(5);

// One step right (or down), then back, through the bar at 25 %, per step.
// First arg: 0 sideways, 1 up and down; second: 1 at the zoom's size, 0 at
// full size; and the same step at 100 % for comparison (third arg 1).
void BM_ScrollStepAt25(benchmark::State& state) {
  auto s = BusyMap(399, 399, "scroll");
  s->view.ViewX = s->view.ViewY = 20;
  if (state.range(2))
    SetZoomedView(*s, 100);
  else
    SetZoomedView(*s, 25, state.range(1) == 0);
  s->view.HScroll1.Value = s->view.ViewX;
  s->view.VScroll1.Value = s->view.ViewY;
  int dir = 1;
  for (auto _ : state) {
    SetScrollValue(*s, state.range(0) ? Bar::V : Bar::H,
                   (state.range(0) ? s->view.VScroll1.Value : s->view.HScroll1.Value) + dir);
    dir = -dir;
  }
}
BENCHMARK(BM_ScrollStepAt25)
    ->Args({0, 0, 0})
    ->Args({1, 0, 0})
    ->Args({0, 1, 0})
    ->Args({1, 1, 0})
    ->Args({0, 1, 1})
    ->Args({1, 1, 1})
    ->Unit(benchmark::kMillisecond);

// A busy map with its jump map open on a 1920-pixel screen: 1000 x 1000 hexes
// give the one-dot-a-hex picture, 200 x 200 the hex picture (5 x 6 pixels a
// hex, flags drawn).
Session& JumpSession(int maxXY) {
  static std::map<int, std::unique_ptr<Session>> sessions;
  std::unique_ptr<Session>& s = sessions[maxXY];
  if (!s) {
    s = BusyMap(maxXY, maxXY, "jump");
    s->view.ScreenW = 1920;
    LoadForm5(*s);
  }
  return *s;
}

// The live jump map's update after a one-hex edit: each step gives a hex
// another terrain, so its pixels change, and draws it into the open jump map.
// Before timing, one such edit must change the picture; after, the picture
// must be what a whole drawing gives, or the run reports an error.
void BM_JumpMapOneHex(benchmark::State& state) {
  Session& s = JumpSession(static_cast<int>(state.range(0)));
  Document& d = s.doc;
  const int n = d.MapMaxX + 1, terrains = s.ref.TerrainMax + 1;
  auto edit = [&](long long i) {
    const int x = static_cast<int>((i * 37) % n), y = static_cast<int>((i * 53 + i / n) % n);
    uint8_t& t = d.HexInfo(x, y, 0);
    t = static_cast<uint8_t>((t + 1) % terrains);
    return JumpMapFollow(s, HexRect::Hex(x, y));
  };
  const Bitmap before = s.jump.Picture2;
  if (!edit(1) || before == s.jump.Picture2) {
    state.SkipWithError("a one-hex edit did not change the open jump map");
    return;
  }
  long long i = 2, drawn = 0;
  for (auto _ : state) {
    drawn += edit(i);
    ++i;
  }
  const Bitmap followed = s.jump.Picture2;
  DrawStrategicMap(s);
  if (!(followed == s.jump.Picture2) || drawn != i - 2)
    state.SkipWithError("the followed jump map differs from a whole drawing");
  state.counters["pixels"] = static_cast<double>(s.jump.Picture2.Width()) * s.jump.Picture2.Height();
}
BENCHMARK(BM_JumpMapOneHex)->Arg(999)->Arg(199)->Unit(benchmark::kMicrosecond);

void BM_JumpMapWhole(benchmark::State& state) {
  Session& s = JumpSession(static_cast<int>(state.range(0)));
  for (auto _ : state) DrawStrategicMap(s);
  state.counters["pixels"] = static_cast<double>(s.jump.Picture2.Width()) * s.jump.Picture2.Height();
}
BENCHMARK(BM_JumpMapWhole)->Arg(999)->Arg(199)->Unit(benchmark::kMillisecond);

// One hex of a stroke with auto-tile on, as the stroke paints it: the press's
// handler at the hex's point, on a 1920 x 1080 view at 100 %. Per hex.
void BM_StrokeHexAutoTile(benchmark::State& state) {
  auto s = BusyMap(199, 199, "stroke");
  s->view.ViewX = s->view.ViewY = 10;
  SetZoomedView(*s, 100);
  s->pens.AutoTile = -1;
  s->pens.CurTile = 5;
  const std::vector<PathHex> path = HexesAlong(*s, 20, 300, 20 + 50 * 45, 300);
  size_t i = 0;
  for (auto _ : state) {
    const PathHex& h = path[i % std::min<size_t>(path.size(), 40)];
    Picture1_MouseDown(*s, 1, 0, h.X, h.Y);
    ++i;
  }
}
BENCHMARK(BM_StrokeHexAutoTile)->Unit(benchmark::kMicrosecond);

}  // namespace

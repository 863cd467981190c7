// Drawing a view of about 1900 x 1000 pixels on a busy map (flags, roads,
// railroads, outlines and contours on) beside a plain copy of the whole
// buffer, in one run: a full RedrawBuffers should cost at most about 10 such
// copies, a one-step scroll at most 2.
#include <filesystem>
#include <memory>
#include <unistd.h>

#include <benchmark/benchmark.h>

#include "renderkit.h"
#include "view/spritebank.h"

using namespace kv;

namespace {

struct BusyView {
  std::unique_ptr<Session> s;
  BusyView() {
    const std::string dir =
        (std::filesystem::temp_directory_path() / ("kvbench-render-" + std::to_string(::getpid()))).string();
    s = std::make_unique<Session>(dir);
    Document& d = s->doc;
    d.MapMaxX = 199;
    d.MapMaxY = 199;
    d.AllocateAll();
    for (int x = 0; x <= d.MapMaxX; ++x)
      for (int y = 0; y <= d.MapMaxY; ++y) {
        d.HexTile(x, y) = static_cast<int16_t>((x * 7 + y * 13) % 128);
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
    Pens& p = s->pens;
    p.HexOutlines = -1;
    p.SideEdit = 2;
    p.ShowRoadControl = -1;
    p.GridOn = -1;
    ViewState& v = s->view;
    v.ViewCols = 41;  // 1910 x 1004 pixels
    v.ViewRows = 19;
    v.ViewPixW = 42 * 45 + 20;
    v.ViewPixH = 20 * 50 + 4;
    v.ViewX = 50;
    v.ViewY = 50;
    BuildViewBuffer(*s);
    RedrawBuffers(*s);
  }
};

BusyView& View() {
  static BusyView v;
  return v;
}

void BM_BufferCopy(benchmark::State& state) {
  Session& s = *View().s;
  Bitmap other(s.sprites.BufW, s.sprites.BufH);
  for (auto _ : state) {
    BitBlt(other, 0, 0, s.sprites.BufW, s.sprites.BufH, &s.sprites.BufDC, 0, 0, SRCCOPY);
    benchmark::DoNotOptimize(other.Pixels().data());
  }
  state.counters["bufW"] = s.sprites.BufW;
  state.counters["bufH"] = s.sprites.BufH;
}
BENCHMARK(BM_BufferCopy)->Unit(benchmark::kMicrosecond);

void BM_RedrawBuffers(benchmark::State& state) {
  Session& s = *View().s;
  for (auto _ : state) {
    RedrawBuffers(s);
    benchmark::DoNotOptimize(s.sprites.Picture1.Pixels().data());
  }
}
BENCHMARK(BM_RedrawBuffers)->Unit(benchmark::kMicrosecond);

// One step right then one step left, each the buffer shift and one column;
// the time is for one step.
void BM_ScrollStep(benchmark::State& state) {
  Session& s = *View().s;
  for (auto _ : state) {
    ++s.view.ViewX;
    ScrollRight(s);
    --s.view.ViewX;
    ScrollLeft(s);
    benchmark::DoNotOptimize(s.sprites.BufDC.Pixels().data());
  }
  state.SetItemsProcessed(state.iterations() * 2);
  state.counters["per_step_us"] = benchmark::Counter(static_cast<double>(state.iterations()) * 2,
                                                     benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}
BENCHMARK(BM_ScrollStep)->Unit(benchmark::kMicrosecond);

void BM_ScrollStepVertical(benchmark::State& state) {
  Session& s = *View().s;
  for (auto _ : state) {
    ++s.view.ViewY;
    ScrollDown(s);
    --s.view.ViewY;
    ScrollUp(s);
    benchmark::DoNotOptimize(s.sprites.BufDC.Pixels().data());
  }
  state.counters["per_step_us"] = benchmark::Counter(static_cast<double>(state.iterations()) * 2,
                                                     benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}
BENCHMARK(BM_ScrollStepVertical)->Unit(benchmark::kMicrosecond);

}  // namespace

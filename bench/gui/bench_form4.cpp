// The bitmap utility's column-by-column showing: a colour reduction of a
// large picture with every column put into the picture as it is done and the
// window showing the columns as they come (at most one frame in 16 ms),
// beside the same pass with no column put and one update at the end, and
// beside that single final update alone. The column showing should keep the
// whole run within twice the run with one update at the end.
//
// Runs on Qt's offscreen platform unless QT_QPA_PLATFORM names another (under
// xvfb-run: QT_QPA_PLATFORM=xcb).
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <unistd.h>

#include <QApplication>
#include <QCoreApplication>
#include <benchmark/benchmark.h>

#include "bitmaputil/bitmaputil.h"
#include "bitmaputil/bitmaputil_internal.h"
#include "gui/Form4.h"
#include "session.h"

using namespace kv;

namespace {

// Routes the core's notices to the form, as the main window does.
class FormUi : public HeadlessUi {
 public:
  gui::Form4* form = nullptr;
  void Changed(Change what) override {
    if (form && FormOf(what) == FormId::Form4) form->OnChanged(what);
  }
};

struct Workspace {
  FormUi ui;
  std::unique_ptr<Session> s;
  std::unique_ptr<gui::Form4> form;
  Bitmap original;
  explicit Workspace(int w, int h) {
    const auto dir = std::filesystem::temp_directory_path() / ("kvbench-form4-" + std::to_string(::getpid()));
    std::filesystem::create_directories(dir);
    s = std::make_unique<Session>(dir.string(), &ui);
    form = std::make_unique<gui::Form4>(*s, nullptr);
    ui.form = form.get();
    original.Create(w, h);
    for (int y = 0; y < h; ++y)
      for (int x = 0; x < w; ++x) original.SetPixel(x, y, RGB(x * 7, y * 5, x + y));
    form->show();
    Reset();
  }
  ~Workspace() {
    ui.form = nullptr;
    form.reset();
    std::filesystem::remove_all(s->AppPath);
  }
  void Reset() {
    s->bmp.Picture2 = original;
    s->bmp.Picture2Visible = true;
    form->OnChanged(Change::Form4Picture2);
    QCoreApplication::processEvents();
  }
  // The colour reduction's pass, each column put into the picture as it is
  // done (or none of them), then the final put shown.
  void Pass(bool columnPuts) {
    LoadImageData(*s);
    ImageStore& img = s->bmp.ImageBits;
    for (int x = 0; x < img.w; ++x) {
      ReduceColumn(img, x, 4);
      if (columnPuts) bmu::PutColumns(*s, img, x, x);
    }
    FinalShow();
  }
  void FinalShow() {
    bmu::PutAll(*s, s->bmp.ImageBits);
    QCoreApplication::processEvents();  // the window paints the picture
  }
};

Workspace& Shared() {
  static Workspace w(3000, 2000);
  return w;
}

void BM_ReduceColours_ShownByColumns(benchmark::State& st) {
  Workspace& w = Shared();
  w.form->SetColumnRefresh(true);
  const int before = w.form->columnRefreshes();
  for (auto _ : st) {
    st.PauseTiming();
    w.Reset();
    st.ResumeTiming();
    w.Pass(true);
  }
  st.counters["frames_per_run"] = benchmark::Counter(static_cast<double>(w.form->columnRefreshes() - before) /
                                                     static_cast<double>(st.iterations()));
}
BENCHMARK(BM_ReduceColours_ShownByColumns)->Unit(benchmark::kMillisecond)->MinTime(2.0);

// The same pass with no column put at all: one update at the end.
void BM_ReduceColours_OneUpdateAtTheEnd(benchmark::State& st) {
  Workspace& w = Shared();
  for (auto _ : st) {
    st.PauseTiming();
    w.Reset();
    st.ResumeTiming();
    w.Pass(false);
  }
}
BENCHMARK(BM_ReduceColours_OneUpdateAtTheEnd)->Unit(benchmark::kMillisecond)->MinTime(2.0);

// The single final update alone: the whole picture put and painted.
void BM_SingleFinalUpdate(benchmark::State& st) {
  Workspace& w = Shared();
  LoadImageData(*w.s);
  for (auto _ : st) w.FinalShow();
}
BENCHMARK(BM_SingleFinalUpdate)->Unit(benchmark::kMillisecond)->MinTime(2.0);

// The menu command as the user runs it, with its save to "picture2.bmp".
void BM_menuRC_Click(benchmark::State& st) {
  Workspace& w = Shared();
  for (auto _ : st) {
    st.PauseTiming();
    w.Reset();
    st.ResumeTiming();
    menuRC_Click(*w.s);
    QCoreApplication::processEvents();
  }
}
BENCHMARK(BM_menuRC_Click)->Unit(benchmark::kMillisecond)->MinTime(2.0);

}  // namespace

int main(int argc, char** argv) {
  setenv("QT_QPA_PLATFORM", "offscreen", 0);
  QApplication app(argc, argv);
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}

// The PNG writer against the other ways Debian offers to write the same PNG,
// on a band of the real map picture (the example map repeated, 13455 x 1048
// pixels, drawn with the generated program folder), level 1 and filter
// "none" everywhere, the conversion of the pixels to RGB rows included:
//   - ours: zlib, the strips compressed as pieces of one stream, on 1 or 2
//     threads (BM_PngOurs/1, /2);
//   - libdeflate: the whole band as one zlib stream (it has no way to end a
//     piece on a byte boundary without ending the stream, so one thread);
//   - libspng and libpng: through zlib, row by row, one thread.
// Then the disk flush before the rename: a 50 x 50 hex section as BMP and
// PNG, written whole under a temporary name and renamed, with and without
// fsync (BM_PictureFile/format/sync).
#include <filesystem>
#include <memory>
#include <unistd.h>

#include <benchmark/benchmark.h>

#include "document/mapfile.h"
#include "editing/startup.h"
#include "jumpmap/mapimage.h"
#include "jumpmap/mappicture.h"
#include "platform/bitmap.h"
#include "platform/fileio.h"
#include "platform/pngwrite.h"
#include "platform/ui.h"
#include "session.h"
#include "view/spritebank.h"

#ifdef KV_BENCH_LIBDEFLATE
#include <libdeflate.h>
#endif
#ifdef KV_BENCH_SPNG
#include <spng.h>
#endif
#ifdef KV_BENCH_LIBPNG
#include <png.h>
#endif

using namespace kv;
namespace fs = std::filesystem;

namespace {

// The 300 x 320 map of the picture benchmarks in a session on a copy of the
// generated program folder.
struct MapPictures {
  std::string dir;
  HeadlessUi ui;
  std::unique_ptr<Session> s;
  Bitmap band;
  bool ok = false;
  MapPictures() {
    dir = (fs::temp_directory_path() / ("kvbench-png-" + std::to_string(::getpid()))).string();
    fs::create_directories(dir);
    fs::copy(KV_DEFAULT_DATA_DIR, dir + "/app", fs::copy_options::recursive);
    s = std::make_unique<Session>(dir + "/app", &ui);
    if (!StartSession(*s)) return;
    FileSource in;
    LoadedMap m;
    if (!in.open(std::string(KV_SOURCE_DIR) + "/examples/example.map", nullptr) || !ReadMapFile(in, s->ref, m, nullptr))
      return;
    Document& d = s->doc;
    d.MapMaxX = 299;
    d.MapMaxY = 319;
    d.AllocateAll();
    for (int y = 0; y <= d.MapMaxY; ++y)
      for (int x = 0; x <= d.MapMaxX; ++x) d.HexTile(x, y) = m.doc.HexTile(x % m.doc.W(), y % m.doc.H());
    band.Create(299 * s->ref.ColPitch, 1048);
    DrawMapSection(d, s->ref, s->sprites, 0, 0, 299, 319, 2000, band);
    ok = true;
  }
  ~MapPictures() {
    s.reset();
    fs::remove_all(dir);
  }
  size_t RgbBytes() const { return static_cast<size_t>(band.Width()) * band.Height() * 3; }
};

MapPictures& Pictures() {
  static MapPictures p;
  return p;
}

// Rows as PNG wants them: a filter byte (0) and R, G, B a pixel.
void FilteredRows(const Bitmap& b, std::vector<uint8_t>& out) {
  const size_t rowBytes = static_cast<size_t>(b.Width()) * 3 + 1;
  out.resize(rowBytes * b.Height());
  for (int y = 0; y < b.Height(); ++y) {
    uint8_t* o = out.data() + rowBytes * y;
    *o++ = 0;
    const uint32_t* p = b.Row(y);
    for (int x = 0; x < b.Width(); ++x, o += 3) {
      o[0] = static_cast<uint8_t>(p[x] >> 16);
      o[1] = static_cast<uint8_t>(p[x] >> 8);
      o[2] = static_cast<uint8_t>(p[x]);
    }
  }
}

void Report(benchmark::State& st, size_t packed) {
  st.SetBytesProcessed(static_cast<int64_t>(st.iterations() * Pictures().RgbBytes()));
  st.counters["ratio"] = static_cast<double>(packed) / static_cast<double>(Pictures().RgbBytes());
}

void BM_PngOurs(benchmark::State& st) {
  MapPictures& p = Pictures();
  if (!p.ok) return st.SkipWithError("no map picture");
  size_t packed = 0;
  for (auto _ : st) {
    VectorSink out;
    out.bytes.reserve(p.RgbBytes() / 4);
    if (!WritePng(p.band, out, PngCompression::Fast, static_cast<int>(st.range(0)))) st.SkipWithError("failed");
    packed = out.bytes.size();
  }
  Report(st, packed);
}
BENCHMARK(BM_PngOurs)->Arg(1)->Arg(2)->UseRealTime()->MeasureProcessCPUTime()->Unit(benchmark::kMillisecond);

#ifdef KV_BENCH_LIBDEFLATE
void BM_PngLibdeflate(benchmark::State& st) {
  MapPictures& p = Pictures();
  if (!p.ok) return st.SkipWithError("no map picture");
  libdeflate_compressor* c = libdeflate_alloc_compressor(1);
  std::vector<uint8_t> rows, out;
  size_t packed = 0;
  for (auto _ : st) {
    FilteredRows(p.band, rows);
    out.resize(libdeflate_zlib_compress_bound(c, rows.size()));
    packed = libdeflate_zlib_compress(c, rows.data(), rows.size(), out.data(), out.size());
    benchmark::DoNotOptimize(libdeflate_crc32(0, out.data(), packed));
  }
  libdeflate_free_compressor(c);
  Report(st, packed);
}
BENCHMARK(BM_PngLibdeflate)->UseRealTime()->MeasureProcessCPUTime()->Unit(benchmark::kMillisecond);
#endif

#ifdef KV_BENCH_SPNG
void BM_PngLibspng(benchmark::State& st) {
  MapPictures& p = Pictures();
  if (!p.ok) return st.SkipWithError("no map picture");
  std::vector<uint8_t> rgb;
  size_t packed = 0;
  for (auto _ : st) {
    rgb.resize(p.RgbBytes());
    for (int y = 0; y < p.band.Height(); ++y)
      for (int x = 0; x < p.band.Width(); ++x) {
        const uint32_t v = p.band.Row(y)[x];
        uint8_t* o = rgb.data() + (static_cast<size_t>(y) * p.band.Width() + x) * 3;
        o[0] = static_cast<uint8_t>(v >> 16);
        o[1] = static_cast<uint8_t>(v >> 8);
        o[2] = static_cast<uint8_t>(v);
      }
    spng_ctx* ctx = spng_ctx_new(SPNG_CTX_ENCODER);
    spng_set_option(ctx, SPNG_ENCODE_TO_BUFFER, 1);
    spng_ihdr ihdr{};
    ihdr.width = static_cast<uint32_t>(p.band.Width());
    ihdr.height = static_cast<uint32_t>(p.band.Height());
    ihdr.bit_depth = 8;
    ihdr.color_type = SPNG_COLOR_TYPE_TRUECOLOR;
    spng_set_ihdr(ctx, &ihdr);
    spng_set_option(ctx, SPNG_IMG_COMPRESSION_LEVEL, 1);
    spng_set_option(ctx, SPNG_FILTER_CHOICE, SPNG_FILTER_CHOICE_NONE);
    if (spng_encode_image(ctx, rgb.data(), rgb.size(), SPNG_FMT_PNG, SPNG_ENCODE_FINALIZE)) st.SkipWithError("failed");
    int err = 0;
    void* buf = spng_get_png_buffer(ctx, &packed, &err);
    std::free(buf);
    spng_ctx_free(ctx);
  }
  Report(st, packed);
}
BENCHMARK(BM_PngLibspng)->UseRealTime()->MeasureProcessCPUTime()->Unit(benchmark::kMillisecond);
#endif

#ifdef KV_BENCH_LIBPNG
void BM_PngLibpng(benchmark::State& st) {
  MapPictures& p = Pictures();
  if (!p.ok) return st.SkipWithError("no map picture");
  std::vector<uint8_t> row(static_cast<size_t>(p.band.Width()) * 3);
  size_t packed = 0;
  for (auto _ : st) {
    std::vector<uint8_t> out;
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png_create_info_struct(png);
    png_set_write_fn(
        png, &out,
        [](png_structp pp, png_bytep data, png_size_t n) {
          auto* o = static_cast<std::vector<uint8_t>*>(png_get_io_ptr(pp));
          o->insert(o->end(), data, data + n);
        },
        nullptr);
    png_set_IHDR(png, info, static_cast<png_uint_32>(p.band.Width()), static_cast<png_uint_32>(p.band.Height()), 8,
                 PNG_COLOR_TYPE_RGB, PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    png_set_compression_level(png, 1);
    png_set_filter(png, 0, PNG_FILTER_NONE);
    png_write_info(png, info);
    for (int y = 0; y < p.band.Height(); ++y) {
      const uint32_t* s = p.band.Row(y);
      for (int x = 0; x < p.band.Width(); ++x) {
        row[3 * x] = static_cast<uint8_t>(s[x] >> 16);
        row[3 * x + 1] = static_cast<uint8_t>(s[x] >> 8);
        row[3 * x + 2] = static_cast<uint8_t>(s[x]);
      }
      png_write_row(png, row.data());
    }
    png_write_end(png, info);
    png_destroy_write_struct(&png, &info);
    packed = out.size();
  }
  Report(st, packed);
}
BENCHMARK(BM_PngLibpng)->UseRealTime()->MeasureProcessCPUTime()->Unit(benchmark::kMillisecond);
#endif

// A 50 x 50 hex section (2250 x 2500 pixels) written as a picture file,
// format 0 BMP / 1 PNG, with (1) or without (0) the flush before the rename.
void BM_PictureFile(benchmark::State& st) {
  MapPictures& p = Pictures();
  if (!p.ok) return st.SkipWithError("no map picture");
  Bitmap pic;
  std::string err;
  RenderMapImage(*p.s, 100, 100, 50, 50, pic, &err);
  PictureOptions o;
  o.sync = st.range(1) != 0;
  const bool png = st.range(0) != 0;
  const std::string path = p.dir + (png ? "/section.png" : "/section.bmp");
  for (auto _ : st) {
    const bool ok = png ? WritePngFile(path, pic, o, &err) : WriteBmpPictureFile(path, pic, o, &err);
    if (!ok) st.SkipWithError(err.c_str());
  }
}
BENCHMARK(BM_PictureFile)
    ->ArgNames({"png", "sync"})
    ->Args({0, 0})
    ->Args({0, 1})
    ->Args({1, 0})
    ->Args({1, 1})
    ->UseRealTime()
    ->MeasureProcessCPUTime()
    ->Unit(benchmark::kMillisecond);

}  // namespace

// Load and save of a 1000 x 1000 map beside a raw read and write of the same
// number of bytes, in one run.
#include <cstdio>
#include <filesystem>
#include <memory>
#include <random>
#include <unistd.h>

#include <benchmark/benchmark.h>

#include "document/mapfile.h"
#include "platform/fileio.h"
#include "refdata/refdata.h"

using namespace kv;

namespace {

struct BigMap {
  std::string dir, path, raw;
  Document doc;
  size_t bytes = 0;
  BigMap() {
    dir = (std::filesystem::temp_directory_path() / ("kvbench-" + std::to_string(::getpid()))).string();
    std::filesystem::create_directories(dir);
    path = dir + "/big.map";
    raw = dir + "/raw.bin";
    doc.MapMaxX = 999;
    doc.MapMaxY = 999;
    doc.AllocateAll();
    doc.NationSet = "default";
    std::mt19937 g(1);
    for (auto& v : doc.HexInfo.raw()) v = static_cast<uint8_t>(g());
    for (auto& v : doc.HexTile.raw()) v = static_cast<int16_t>(g() % 256);
    doc.ObjCount = 0;
    VectorSink out;
    WriteMapFile(doc, out);
    bytes = out.bytes.size();
    WriteFileBytes(path, out.bytes.data(), out.bytes.size(), nullptr);
    WriteFileBytes(raw, out.bytes.data(), out.bytes.size(), nullptr);
  }
  ~BigMap() { std::filesystem::remove_all(dir); }
};

BigMap& Map() {
  static BigMap m;
  return m;
}

void BM_LoadMap(benchmark::State& st) {
  RefData ref;
  for (auto _ : st) {
    FileSource in;
    in.open(Map().path, nullptr);
    LoadedMap m;
    if (!ReadMapFile(in, ref, m, nullptr)) st.SkipWithError("load failed");
    benchmark::DoNotOptimize(m.doc.HexTile.data());
  }
  st.SetBytesProcessed(static_cast<int64_t>(st.iterations() * Map().bytes));
}

// A raw read into a fresh buffer, as a load needs fresh arrays.
void BM_RawRead(benchmark::State& st) {
  for (auto _ : st) {
    std::unique_ptr<uint8_t[]> buf(new uint8_t[Map().bytes]);
    std::FILE* f = std::fopen(Map().raw.c_str(), "rb");
    size_t got = std::fread(buf.get(), 1, Map().bytes, f);
    std::fclose(f);
    benchmark::DoNotOptimize(got);
  }
  st.SetBytesProcessed(static_cast<int64_t>(st.iterations() * Map().bytes));
}

void BM_SaveMap(benchmark::State& st) {
  for (auto _ : st) {
    SafeFileWriter w(Map().path);
    w.KeepOldTail(true);
    WriteMapFile(Map().doc, w);
    if (!w.commit()) st.SkipWithError("save failed");
  }
  st.SetBytesProcessed(static_cast<int64_t>(st.iterations() * Map().bytes));
}

// The same bytes written and made durable the plain way.
void BM_RawWrite(benchmark::State& st) {
  std::vector<uint8_t> buf(Map().bytes, 7);
  for (auto _ : st) {
    std::FILE* f = std::fopen(Map().raw.c_str(), "wb");
    std::fwrite(buf.data(), 1, buf.size(), f);
    std::fflush(f);
    ::fsync(fileno(f));
    std::fclose(f);
  }
  st.SetBytesProcessed(static_cast<int64_t>(st.iterations() * Map().bytes));
}

}  // namespace

BENCHMARK(BM_LoadMap)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_RawRead)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_SaveMap)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_RawWrite)->Unit(benchmark::kMillisecond);

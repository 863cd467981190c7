// Shared pieces of the fuzz targets: the seed writer every target carries,
// splitting one input into several files, and a small set of tables.
//
// Run a target with KV_FUZZ_WRITE_SEEDS=DIR and it writes its seed corpus
// (files our own writers and generators make) into DIR and exits.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <span>
#include <string>
#include <vector>

#include "document/document.h"
#include "refdata/refdata.h"

namespace kvfuzz {

using Bytes = std::vector<uint8_t>;

// Defined by each target: its seed inputs.
std::vector<Bytes> Seeds();

// Inputs of several files: each part but the last is preceded by its length
// as two little-endian bytes (cut short at the end of the input).
class Parts {
 public:
  explicit Parts(std::span<const uint8_t> in) : in_(in) {}
  std::span<const uint8_t> Next() {
    if (in_.size() < 2) return Rest();
    size_t n = in_[0] | (in_[1] << 8);
    in_ = in_.subspan(2);
    n = std::min(n, in_.size());
    auto part = in_.first(n);
    in_ = in_.subspan(n);
    return part;
  }
  std::span<const uint8_t> Rest() {
    auto r = in_;
    in_ = {};
    return r;
  }
  uint8_t Byte() {
    if (in_.empty()) return 0;
    uint8_t b = in_[0];
    in_ = in_.subspan(1);
    return b;
  }

 private:
  std::span<const uint8_t> in_;
};

inline void PutPart(Bytes& out, const Bytes& part) {
  out.push_back(static_cast<uint8_t>(part.size() & 0xFF));
  out.push_back(static_cast<uint8_t>((part.size() >> 8) & 0xFF));
  out.insert(out.end(), part.begin(), part.end());
}

inline Bytes Text(const std::string& s) { return Bytes(s.begin(), s.end()); }

// Tables as the default program folder has them in shape: 256 tiles over 20
// terrains, 12 nations.
inline kv::RefData SampleRef() {
  kv::RefData ref;
  ref.TileMax = 255;
  ref.TileType.resize(256);
  ref.TileRoad.resize(256);
  for (int i = 0; i < 256; ++i) ref.TileType[i] = static_cast<uint8_t>(i % 20);
  ref.TerrainMax = 19;
  ref.NationCount = 12;
  return ref;
}

// A small map with every plane filled in a pattern, and `objs` objectives.
inline kv::Document SampleDoc(int mx, int my, int objs) {
  kv::Document d;
  d.MapMaxX = static_cast<int16_t>(mx);
  d.MapMaxY = static_cast<int16_t>(my);
  d.AllocateAll();
  for (int x = 0; x <= mx; ++x)
    for (int y = 0; y <= my; ++y) {
      d.HexTile(x, y) = static_cast<int16_t>((x * 7 + y * 3) % 300);
      d.HexInfo(x, y, 0) = static_cast<uint8_t>(d.HexTile(x, y) % 20);
      d.HexInfo(x, y, 1 + (x + y) % 6) = 1;
      d.HexElev(x, y) = static_cast<uint8_t>(120 + (x ^ y) % 16);
      d.HexCtl(x, y, 0) = static_cast<uint8_t>((x / 4) % 3);
      d.HexLandMass(x, y) = static_cast<int16_t>(1 + (x > mx / 2));
    }
  d.ObjCount = static_cast<int16_t>(objs);
  d.ObjList.Allocate(objs);
  for (int i = 1; i <= objs; ++i) {
    d.ObjList(i, 0) = static_cast<int16_t>(i % (mx + 1));
    d.ObjList(i, 1) = static_cast<int16_t>(i % (my + 1));
    d.ObjList(i, 2) = 1;
  }
  return d;
}

}  // namespace kvfuzz

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  const char* dir = std::getenv("KV_FUZZ_WRITE_SEEDS");
  if (!dir) return 0;
  std::filesystem::create_directories(dir);
  int i = 0;
  for (const kvfuzz::Bytes& b : kvfuzz::Seeds()) {
    const std::string path = std::string(dir) + "/seed" + std::to_string(i++);
    if (std::FILE* f = std::fopen(path.c_str(), "wb")) {
      std::fwrite(b.data(), 1, b.size(), f);
      std::fclose(f);
    }
  }
  std::printf("%d seeds written to %s\n", i, dir);
  std::exit(0);
}

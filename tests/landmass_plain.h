// The land and water body numbering as the editor has always described it,
// run plainly (whole-map rescans at each merge and renumbering), for the
// tests and the benchmark to measure the fast numbering against.
#pragma once

#include <cstdint>
#include <vector>

#include "view/geometry.h"

namespace kvtest {

struct Terrain {
  int w = 0, h = 0;
  std::vector<uint8_t> t;  // x fastest, 0 water, above 0 land
  Terrain(int w_, int h_, uint8_t fill = 0) : w(w_), h(h_), t(static_cast<size_t>(w_) * h_, fill) {}
  uint8_t& at(int x, int y) { return t[static_cast<size_t>(y) * w + x]; }
  uint8_t at(int x, int y) const { return t[static_cast<size_t>(y) * w + x]; }
  bool on(int x, int y) const { return x >= 0 && y >= 0 && x < w && y < h; }
};

// The four sweeps exactly as the editor has always described them: merges by
// rescanning the whole map, renumbering by rescanning the whole map.
inline std::vector<int32_t> PlainSweeps(const Terrain& m) {
  std::vector<int32_t> L(m.t.size(), 0);
  auto at = [&](int x, int y) -> int32_t& { return L[static_cast<size_t>(y) * m.w + x]; };
  auto renumberAll = [&](int32_t from, int32_t to) {
    for (auto& v : L)
      if (v == from) v = to;
  };
  auto merging = [&](bool land, int32_t last) {
    auto kind = [&](int x, int y) { return land ? m.at(x, y) > 0 : m.at(x, y) == 0; };
    int32_t cur = 0;
    for (int x = 0; x < m.w; ++x) {
      for (int y = 0; y < m.h; ++y) {
        if (!kind(x, y)) {
          cur = 0;
          continue;
        }
        if (at(x, y) != 0) continue;
        int32_t n = 0;
        int nx = x, ny = y - 1;
        for (int s = 1; s <= 6; ++s) {
          kv::HexNeighbour(nx, ny, s);
          if (m.on(nx, ny) && kind(nx, ny) && at(nx, ny) > 0) {
            n = at(nx, ny);
            break;
          }
        }
        if (n == 0) {
          last = last + 1;
          cur = last;
        } else if (cur == 0) {
          cur = n;
        } else if (n != cur) {
          if (n < cur) {
            renumberAll(cur, n);
            cur = n;
          } else {
            renumberAll(n, cur);
          }
        }
        at(x, y) = cur;
      }
      cur = 0;
    }
  };
  merging(true, 0);
  int32_t m2 = 1;
  for (int x = 0; x < m.w; ++x)
    for (int y = 0; y < m.h; ++y)
      if (at(x, y) > m2 && at(x, y) > 1) {
        m2 = m2 + 1;
        renumberAll(at(x, y), m2);
      }
  const int32_t k = m2;
  merging(false, k + 1);
  int32_t m4 = k + 1;
  for (int x = 0; x < m.w; ++x)
    for (int y = 0; y < m.h; ++y)
      if (m.at(x, y) == 0 && at(x, y) > m4 && at(x, y) > 1) {
        m4 = m4 + 1;
        renumberAll(at(x, y), m4);
      }
  return L;
}

}  // namespace kvtest

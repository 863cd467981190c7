// Generators of the older game's scenario files for the tests: a .set, a
// game0NN.scn and an equipment table, laid out byte by byte from what the
// test asks for. Fields the reader must skip are filled with noise that would
// show if it were read.
#pragma once

#include <array>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

namespace kvtest {

inline void PutI16(std::vector<uint8_t>& b, int16_t v) {
  b.push_back(static_cast<uint8_t>(v & 0xFF));
  b.push_back(static_cast<uint8_t>((static_cast<uint16_t>(v) >> 8) & 0xFF));
}

struct PgSet {
  int16_t W = 2, H = 1;  // highest file column and row
  // One entry per hex, row by row; missing entries are 0.
  std::vector<uint8_t> roads, owners;
  std::vector<int16_t> tiles;
  int extra = 0;  // bytes behind the planes

  size_t N() const { return static_cast<size_t>(W + 1) * (H + 1); }
  std::vector<uint8_t> Bytes() const {
    std::vector<uint8_t> b(101, 0xA5);
    PutI16(b, W);
    PutI16(b, H);
    b.insert(b.end(), 18, 0x5A);
    const size_t n = N();
    for (size_t i = 0; i < n; ++i) PutI16(b, 0x0707);  // skipped int16 plane
    for (size_t i = 0; i < n; ++i) b.push_back(i < roads.size() ? roads[i] : 0);
    for (size_t i = 0; i < n; ++i) b.push_back(i < owners.size() ? owners[i] : 0);
    b.insert(b.end(), n, 0x03);  // skipped byte plane
    for (size_t i = 0; i < n; ++i) PutI16(b, i < tiles.size() ? tiles[i] : 0);
    b.insert(b.end(), extra, 0xEE);
    return b;
  }
};

struct PgUnit {
  int16_t type = 0, trans1 = 0;
  uint8_t nation = 1;
  int16_t trans2 = 0, x = 0, y = 0;
  uint8_t strength = 10, entrench = 0, exper = 0;
};

struct PgScn {
  std::array<uint8_t, 6> side1{1, 0, 0, 0, 0, 0}, side2{2, 0, 0, 0, 0, 0};
  std::array<uint8_t, 6> unknown6{6, 5, 4, 3, 2, 1};
  uint8_t c1 = 12, aux1 = 4, c2 = 20, turns = 18, day = 22, month = 6, year = 41, unknown1 = 9, daysPerTurn = 2;
  int16_t pool1 = 300, pool2 = 250;
  uint8_t interval1 = 5, interval2 = 6;
  std::array<uint8_t, 4> unknown4{0, 1, 2, 3};
  // Objective pairs, written from offset 37 and ended by -1 (when there is room).
  std::vector<std::array<int16_t, 2>> objectives;
  bool objTerminator = true;
  // N and the pairs behind it: N pairs when N > 0, one pair otherwise. The
  // last pair is read over; tests fill it with a hex that must stay unmarked.
  int16_t deployN = 0;
  std::vector<std::array<int16_t, 2>> deployPairs;
  int16_t prestige1 = 100, prestige2 = 80;
  uint8_t air1 = 1, air2 = 0, naval1 = 0, naval2 = 1;
  std::array<uint8_t, 8> unknown8{8, 7, 6, 5, 4, 3, 2, 1};
  std::vector<PgUnit> units;
  int extra = 0;  // bytes behind the last record

  std::vector<uint8_t> Bytes() const {
    std::vector<uint8_t> b;
    for (int i = 0; i < 6; ++i) {
      b.push_back(side1[i]);
      b.push_back(side2[i]);
    }
    b.insert(b.end(), unknown6.begin(), unknown6.end());
    for (uint8_t v : {c1, aux1, c2, turns, day, month, year, unknown1, daysPerTurn}) b.push_back(v);
    PutI16(b, pool1);
    PutI16(b, pool2);
    b.push_back(interval1);
    b.push_back(interval2);
    b.insert(b.end(), unknown4.begin(), unknown4.end());
    // Offset 37: the objective field, 80 bytes, noise behind the -1 that
    // would read as objective (1, 1) pairs.
    std::vector<uint8_t> field;
    for (const auto& o : objectives) {
      PutI16(field, o[0]);
      PutI16(field, o[1]);
    }
    if (objTerminator) PutI16(field, -1);
    while (field.size() < 80) PutI16(field, 1);
    field.resize(80);
    b.insert(b.end(), field.begin(), field.end());
    PutI16(b, deployN);  // offset 117
    const size_t pairs = deployN > 0 ? static_cast<size_t>(deployN) : 1;
    for (size_t i = 0; i < pairs; ++i) {
      std::array<int16_t, 2> p = i < deployPairs.size() ? deployPairs[i] : std::array<int16_t, 2>{0, 0};
      PutI16(b, p[0]);
      PutI16(b, p[1]);
    }
    PutI16(b, prestige1);
    PutI16(b, prestige2);
    for (uint8_t v : {air1, air2, naval1, naval2}) b.push_back(v);
    b.insert(b.end(), unknown8.begin(), unknown8.end());
    for (const PgUnit& u : units) {
      PutI16(b, u.type);
      PutI16(b, u.trans1);
      b.push_back(u.nation);
      PutI16(b, u.trans2);
      PutI16(b, u.x);
      PutI16(b, u.y);
      b.push_back(u.strength);
      b.push_back(u.entrench);
      b.push_back(u.exper);
    }
    b.insert(b.end(), extra, 0xEE);
    return b;
  }
};

// An equipment table: a 2-byte head and records of 50 bytes, each beginning
// with its 20-byte name (given raw, so that padding can be NULs or blanks).
inline std::vector<uint8_t> PgEquipment(const std::vector<std::string>& rawNames) {
  std::vector<uint8_t> b = {0x34, 0x12};
  for (const std::string& n : rawNames) {
    std::vector<uint8_t> rec(50, 0x77);
    for (size_t i = 0; i < 20; ++i) rec[i] = i < n.size() ? static_cast<uint8_t>(n[i]) : 0;
    b.insert(b.end(), rec.begin(), rec.end());
  }
  return b;
}

}  // namespace kvtest

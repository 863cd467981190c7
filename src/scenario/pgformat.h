// The foreign scenario set: the map file (.set), the scenario file
// (game0NN.scn) and the equipment table, read from byte sources, and their
// conversion into a fresh document and the text of an order of battle.
// Nothing here touches a session: the import procedure swaps the result in.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "document/document.h"
#include "platform/bytes.h"

namespace kv {

struct RefData;

// Fixed places in the foreign files.
constexpr uint64_t kSetSizeAt = 101;    // W, then H
constexpr uint64_t kSetPlanesAt = 123;  // first plane
constexpr uint64_t kScnObjAt = 37;      // objective list
constexpr uint64_t kScnDeployAt = 117;  // N, then the deployment pairs
constexpr int kUnitRecordLen = 14;
constexpr int kEquipRecordLen = 50;
constexpr int kEquipHeadLen = 2;
constexpr int kMaxEquipIndex = 655;  // index * 50 + 3 must fit 16 bits

// Decodes a road-side byte into sides[1..6] (1 road, 0 nothing). A cascade
// of tests on what remains, not a bit mask: 64 and 4 have no side of their own.
void DecodeRoadSides(uint8_t v, uint8_t sides[7]);

// A .set converted into map planes. The map is one column wider than the
// file: map column = file column + 1, and column 0 repeats file column 0.
struct SetMap {
  int16_t W = 0, H = 0;  // highest file column and row
  Document doc;          // MapMaxX = W + 1, MapMaxY = H; every per-hex array allocated
};
// Reads a .set (`name` is used in messages). Tiles must fit a byte and the
// tile table of `ref`, owners must be nations of the set in use.
bool ReadSetFile(ByteSource& in, const std::string& name, const RefData& ref, SetMap& out, std::string* err);

struct UnitRecord {
  int16_t type = 0;  // equipment index
  int16_t trans1 = 0;
  uint8_t nation = 0;
  int16_t trans2 = 0;
  int16_t x = 0, y = 0;  // file coordinates
  uint8_t strength = 0, entrench = 0, exper = 0;
  uint64_t at = 0;  // offset of the record in the file
};

struct ScenarioFile {
  // nations[side - 1][i], i = 1..6 in file order; [0] unused.
  uint8_t nations[2][7] = {};
  std::array<uint8_t, 6> unknown6{};
  uint8_t coreMax1 = 0;  // C1
  uint8_t auxMax1 = 0;
  uint8_t c2 = 0;  // C2; C2 - C1 is side 2's aux units
  uint8_t turns = 0, day = 0, month = 0, year = 0, unknown1 = 0, daysPerTurn = 0;
  int16_t pool1 = 0, pool2 = 0;
  uint8_t interval1 = 0, interval2 = 0;
  std::array<uint8_t, 4> unknown4{};
  std::vector<std::array<int16_t, 2>> objectives;  // file coordinates
  int16_t deployN = 0;
  std::vector<std::array<int16_t, 2>> deploy;  // the first N - 1 pairs
  int16_t prestige1 = 0, prestige2 = 0;
  uint8_t air1 = 0, air2 = 0, naval1 = 0, naval2 = 0;
  std::array<uint8_t, 8> unknown8{};
  uint64_t length = 0;   // L
  uint64_t unitsAt = 0;  // U
  int unitCount = 0;     // as the count line of the .oob gives it
  std::vector<UnitRecord> units;

  int NationCount() const;  // non-zero bytes among the twelve
  int AuxMax2() const { return static_cast<int>(c2) - static_cast<int>(coreMax1); }
};
// Reads a scenario file. Nations of the head and of the units must be
// nations of the set in use (`nationCount`).
bool ReadScenarioFile(ByteSource& in, const std::string& name, int nationCount, ScenarioFile& out, std::string* err);

// The 20 bytes of an equipment name, trimmed of trailing NULs and blanks and
// filled with blanks to exactly 20 characters.
bool ReadEquipmentName(ByteSource& eqp, const std::string& name, int index, std::string& out, std::string* err);

// One line of the order of battle: the record, its name and its side.
struct OobUnit {
  UnitRecord rec;
  std::string name;  // 20 characters
  int side = 1;
};

// The whole conversion: a document of the new size with tiles, sides,
// owners, objectives and deployment hexes, and the units of the scenario
// with their names and the running side. Each source keeps its file's name
// for the messages.
struct ScenarioImport {
  SetMap map;
  ScenarioFile scn;
  std::vector<OobUnit> units;
};
struct ImportSources {
  ByteSource* set = nullptr;
  std::string setName;
  ByteSource* scn = nullptr;
  std::string scnName;
  ByteSource* eqp = nullptr;
  std::string eqpName;
};
bool ConvertScenarioSet(const ImportSources& src, const RefData& ref, ScenarioImport& out, std::string* err);

}  // namespace kv

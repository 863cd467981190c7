#include "refdata/tables.h"

#include <algorithm>
#include <cmath>

#include "platform/fileio.h"
#include "platform/textfields.h"

namespace kv {

void ParseFlagsXY(std::span<const uint8_t> text, RefData& ref) {
  FieldReader f(text);
  ref.FlagDX = static_cast<uint8_t>(f.Int(0, 255));
  ref.FlagDY = static_cast<uint8_t>(f.Int(0, 255));
}

void DeriveGeometry(RefData& ref) {
  ref.HexInset = static_cast<int16_t>(std::floor((ref.HexW - ref.HexSlant) / 2.0));
  ref.ColPitch = static_cast<int16_t>(ref.HexSlant + ref.HexInset);
  ref.RowPitch = ref.HexH;
}

bool ParseHexInfo(std::span<const uint8_t> text, RefData& ref, std::string* err) {
  FieldReader f(text);
  RefData r = ref;
  f.Skip();
  r.HexW = static_cast<int16_t>(f.Int(-32768, 32767));
  f.Skip();
  r.HexH = static_cast<int16_t>(f.Int(-32768, 32767));
  f.Skip();
  r.HexSlant = static_cast<int16_t>(f.Int(-32768, 32767));
  DeriveGeometry(r);
  if (r.HexW <= 0 || r.HexH <= 0 || r.HexSlant < 0 || r.HexSlant > r.HexW || r.ColPitch <= 0 || r.HexW > 1000 ||
      r.HexH > 1000) {
    if (err)
      *err = "the hex size " + std::to_string(r.HexW) + " x " + std::to_string(r.HexH) + " with a top edge of " +
             std::to_string(r.HexSlant) + " cannot be drawn";
    return false;
  }
  ref = r;
  return true;
}

bool ParseTerrainTable(std::span<const uint8_t> text, RefData& ref, std::string* err) {
  FieldReader f(text);
  f.Skip();
  double n = f.Number();
  f.Skip();
  if (!f.ok() || n < 1 || n > 32767) {
    if (err) *err = "the number of terrains is missing or out of range";
    return false;
  }
  int count = static_cast<int>(RoundHalfEven(n));
  // Each record is eight fields; a record needs at least eight separators.
  if (static_cast<size_t>(count) * 8 > text.size()) {
    if (err) *err = "it names " + std::to_string(count) + " terrains but is too short to hold them";
    return false;
  }
  std::vector<std::string> names(count);
  std::vector<int16_t> rgb(static_cast<size_t>(count) * 3, 0);
  for (int t = 0; t < count; ++t) {
    names[t] = f.Text();
    f.Skip(3);
    int r = f.Int(-32768, 32767), g = f.Int(-32768, 32767), b = f.Int(-32768, 32767);
    if (!f.ok()) {
      if (err) *err = "it ends in the record of terrain " + std::to_string(t);
      return false;
    }
    f.Skip();  // the eighth field may be the last of the file
    rgb[static_cast<size_t>(t) * 3 + 2] = static_cast<int16_t>(r);
    rgb[static_cast<size_t>(t) * 3 + 1] = static_cast<int16_t>(g);
    rgb[static_cast<size_t>(t) * 3 + 0] = static_cast<int16_t>(b);
  }
  ref.TerrainMax = static_cast<int16_t>(count - 1);
  ref.TerrainName = std::move(names);
  ref.TerrainRGBData = std::move(rgb);
  return true;
}

bool ParseHexData(std::span<const uint8_t> text, std::vector<uint8_t>& values, std::string* err) {
  FieldReader f(text);
  double n = f.Number();
  if (!f.ok() || n < 0 || n > 32768) {
    if (err) *err = "the number of tiles is missing or out of range";
    return false;
  }
  size_t count = static_cast<size_t>(RoundHalfEven(n));
  if (count > text.size()) {
    if (err) *err = "it names " + std::to_string(count) + " tiles but is too short to hold them";
    return false;
  }
  values.assign(count, 0);
  for (size_t i = 0; i < count; ++i) {
    values[i] = static_cast<uint8_t>(f.Int(0, 255));
    if (!f.ok()) {
      if (err) *err = "it ends after " + std::to_string(i) + " of " + std::to_string(count) + " tiles";
      return false;
    }
  }
  return true;
}

void ParseRoadInfo(std::span<const uint8_t> bytes, RefData& ref) {
  int tiles = ref.TileMax + 1;
  ref.TileRoad.assign(std::max(tiles, 0), 0);
  ref.RoadTableData.assign(7, 0);
  int r = 0;
  for (int t = 0; t < tiles; ++t) {
    size_t off = static_cast<size_t>(t) * 6;
    if (off + 6 > bytes.size()) break;  // past the end: no road
    bool any = false;
    for (int k = 0; k < 6; ++k) any |= bytes[off + k] != 0;
    if (!any) continue;
    ref.TileRoad[t] = 1;
    ++r;
    ref.RoadTableData.resize(static_cast<size_t>(r + 1) * 7, 0);
    ref.RoadTable(0, r) = static_cast<int16_t>(t);
    for (int k = 0; k < 6; ++k)
      if (bytes[off + k] != 0) ref.RoadTable(kRoadByteSide[k], r) = 1;
  }
  ref.RoadTable(0, 0) = static_cast<int16_t>(r);
}

void ReadFlagsXY(const ProgramFolder& s, RefData& ref) {
  std::vector<uint8_t> b;
  if (ReadFileBytes(s.App("flags.xy"), b, nullptr)) {
    ParseFlagsXY(b, ref);
  } else {
    ref.FlagDX = 20;
    ref.FlagDY = 30;
  }
}

bool ReadHexInfo(const ProgramFolder& s, RefData& ref) {
  std::string path = s.App("data/hex_info.txt");
  std::vector<uint8_t> b;
  if (!ReadFileBytes(path, b, nullptr)) {
    ref.HexW = 60;
    ref.HexH = 50;
    ref.HexSlant = 30;
    DeriveGeometry(ref);
    return true;
  }
  std::string err;
  if (!ParseHexInfo(b, ref, &err)) {
    s.MsgBox(path + ": " + err + ".");
    return false;
  }
  return true;
}

bool LoadTileInfo(const ProgramFolder& s, RefData& ref) {
  const std::string dat = s.App("mapedit/tiletype.dat");
  const int tiles = ref.TileMax + 1;
  int64_t len = FileLen(dat);
  std::vector<uint8_t> types;
  if (len >= 0 && len - 1 == ref.TileMax) {
    std::string err;
    if (!ReadFileBytes(dat, types, &err)) {
      s.MsgBox(err);
      return false;
    }
  } else {
    s.MsgBox("creating new 'tiletype.dat' file.");
    const std::string src = s.App("data/hexdata.txt");
    std::vector<uint8_t> text;
    if (!ReadFileBytes(src, text, nullptr)) {
      s.MsgBox(src + " not found.");
      return false;
    }
    std::vector<uint8_t> values;
    std::string err;
    if (!ParseHexData(text, values, &err)) {
      s.MsgBox(src + ": " + err + ".");
      return false;
    }
    // The new file holds every value the source names; a count that differs
    // from the tile sheet makes it stale again at the next start.
    if (!WriteFileBytes(dat, values.data(), values.size(), &err)) s.MsgBox(err);
    types.assign(std::max(tiles, 0), 0);
    std::copy_n(values.begin(), std::min(values.size(), types.size()), types.begin());
  }
  ref.TileType = std::move(types);
  ref.TileType.resize(std::max(tiles, 0), 0);

  const std::string terr = s.App("data/terrain.txt");
  std::vector<uint8_t> text;
  if (!ReadFileBytes(terr, text, nullptr)) {
    s.MsgBox(terr + " not found.");
    return false;
  }
  std::string err;
  if (!ParseTerrainTable(text, ref, &err)) {
    s.MsgBox(terr + ": " + err + ".");
    return false;
  }
  return true;
}

bool LoadRoadInfo(const ProgramFolder& s, RefData& ref) {
  const std::string path = s.App("mapedit/roadinfo.dat");
  std::vector<uint8_t> b;
  if (!FileExists(path)) {
    // Opening the table for update makes an empty one.
    WriteFileBytes(path, nullptr, 0, nullptr);
  } else if (!ReadFileBytes(path, b, nullptr)) {
    b.clear();
  }
  ParseRoadInfo(b, ref);
  if (ref.RoadRows() == 0) s.MsgBox(path);
  return true;
}

}  // namespace kv

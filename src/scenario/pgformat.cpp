#include "scenario/pgformat.h"

#include <algorithm>

#include "document/namestore.h"
#include "refdata/refdata.h"

namespace kv {

namespace {

std::string Num(long long v) { return std::to_string(v); }

bool Fail(std::string* err, const std::string& text) {
  if (err) *err = text;
  return false;
}

// Positioned little-endian reads that never pass the end of the source.
struct Reader {
  ByteSource& in;
  bool At(uint64_t pos) { return pos <= in.size() && in.seek(pos); }
  bool U8(uint8_t& v) { return in.get(v); }
  bool I16(int16_t& v) { return in.get(v); }
  bool Bytes(uint8_t* p, size_t n) { return in.read(p, n); }
};

}  // namespace

void DecodeRoadSides(uint8_t v, uint8_t sides[7]) {
  for (int k = 1; k <= 6; ++k) sides[k] = 0;
  int r = v;
  if (r >= 128) sides[4] = 1, r -= 128;
  if (r >= 32) sides[3] = 1, r -= 32;
  if (r >= 16) sides[2] = 1, r -= 16;
  if (r >= 8) sides[1] = 1, r -= 8;
  if (r >= 2) sides[6] = 1, r -= 2;
  if (r >= 1) sides[5] = 1;
}

bool ReadSetFile(ByteSource& in, const std::string& name, const RefData& ref, SetMap& out, std::string* err) {
  Reader r{in};
  int16_t w = 0, h = 0;
  if (!r.At(kSetSizeAt) || !r.I16(w) || !r.I16(h))
    return Fail(err, name + " ends before its map size (" + Num(static_cast<long long>(in.size())) +
                         " bytes); it is no scenario set.");
  if (w < 0 || h < 0)
    return Fail(err, name + " gives a map size of " + Num(w) + " x " + Num(h) + ", which no map can have.");
  if (w >= kMaxMapIndex)
    return Fail(err, name + " is " + Num(w + 1LL) +
                         " columns wide; with the extra column the map would be wider than " + Num(kMaxMapIndex + 1LL) +
                         " columns.");
  const uint64_t n = static_cast<uint64_t>(w + 1) * static_cast<uint64_t>(h + 1);
  const uint64_t need = kSetPlanesAt + 7 * n;
  if (in.size() < need)
    return Fail(err, name + " holds a map of " + Num(w + 1LL) + " x " + Num(h + 1LL) + " hexes, which needs " +
                         Num(static_cast<long long>(need)) + " bytes, but the file has only " +
                         Num(static_cast<long long>(in.size())) + ".");

  // The file is long enough for every plane: now the planes may be allocated.
  std::vector<uint8_t> roads(n), owners(n);
  std::vector<int16_t> tiles(n);
  if (!r.At(kSetPlanesAt + 2 * n) || !r.Bytes(roads.data(), n) || !r.Bytes(owners.data(), n) ||
      !r.At(kSetPlanesAt + 5 * n) || !r.Bytes(reinterpret_cast<uint8_t*>(tiles.data()), 2 * n))
    return Fail(err, name + " could not be read to its end.");

  const int tableTop = std::min<int>(255, static_cast<int>(ref.TileType.size()) - 1);
  for (uint64_t i = 0; i < n; ++i) {
    const int x = static_cast<int>(i % (w + 1)), y = static_cast<int>(i / (w + 1));
    if (tiles[i] < 0 || tiles[i] > tableTop)
      return Fail(err, name + ": hex (" + Num(x) + ", " + Num(y) + ") has tile number " + Num(tiles[i]) +
                           ", beyond the tile table (0.." + Num(tableTop) + ").");
    if (owners[i] > ref.NationCount)
      return Fail(err, name + ": hex (" + Num(x) + ", " + Num(y) + ") is owned by nation " + Num(owners[i]) +
                           ", but the nation set has " + Num(ref.NationCount) + " nations.");
  }

  out.W = w;
  out.H = h;
  Document& d = out.doc;
  d.MapMaxX = static_cast<int16_t>(w + 1);
  d.MapMaxY = h;
  d.AllocateAll();  // all zero: elevations too, not the level ground of a new map
  uint8_t sides[7];
  for (uint64_t i = 0; i < n; ++i) {
    const int x = static_cast<int>(i % (w + 1)), y = static_cast<int>(i / (w + 1));
    DecodeRoadSides(roads[i], sides);
    for (int k = 1; k <= 6; ++k) d.HexInfo(x + 1, y, k) = sides[k];
    if (owners[i] != 0) {
      d.HexCtl(x + 1, y, 0) = owners[i];
      d.HexCtl(x + 1, y, 1) = 1;
    }
    d.HexTile(x + 1, y) = tiles[i];
    d.HexInfo(x + 1, y, 0) = ref.TileType[tiles[i]];
  }
  // Map column 0 repeats file column 0 in terrain, sides and tile, without
  // owner or objective.
  for (int y = 0; y <= h; ++y) {
    for (int k = 0; k <= 6; ++k) d.HexInfo(0, y, k) = d.HexInfo(1, y, k);
    d.HexTile(0, y) = d.HexTile(1, y);
  }
  return true;
}

int ScenarioFile::NationCount() const {
  int c = 0;
  for (int side = 0; side < 2; ++side)
    for (int i = 1; i <= 6; ++i) c += nations[side][i] != 0;
  return c;
}

bool ReadScenarioFile(ByteSource& in, const std::string& name, int nationCount, ScenarioFile& out, std::string* err) {
  Reader r{in};
  ScenarioFile& f = out;
  const uint64_t len = in.size();
  f.length = len;
  auto early = [&](const std::string& what) {
    return Fail(err,
                name + " ends early: it has " + Num(static_cast<long long>(len)) + " bytes, too few for " + what + ".");
  };
  if (!r.At(0)) return early("its head");
  for (int i = 1; i <= 6; ++i)
    if (!r.U8(f.nations[0][i]) || !r.U8(f.nations[1][i])) return early("the nations of its sides");
  if (!r.Bytes(f.unknown6.data(), 6) || !r.U8(f.coreMax1) || !r.U8(f.auxMax1) || !r.U8(f.c2) || !r.U8(f.turns) ||
      !r.U8(f.day) || !r.U8(f.month) || !r.U8(f.year) || !r.U8(f.unknown1) || !r.U8(f.daysPerTurn) || !r.I16(f.pool1) ||
      !r.I16(f.pool2) || !r.U8(f.interval1) || !r.U8(f.interval2) || !r.Bytes(f.unknown4.data(), 4))
    return early("its head");
  for (int side = 0; side < 2; ++side)
    for (int i = 1; i <= 6; ++i)
      if (f.nations[side][i] > nationCount)
        return Fail(err, name + ": side " + Num(side + 1) + " has nation " + Num(f.nations[side][i]) +
                             ", but the nation set has " + Num(nationCount) + " nations.");

  // Objective hexes: int16 values up to a -1. The field is fixed at 80 bytes;
  // a list that fills it without its -1 ends where the field ends.
  std::vector<int16_t> values;
  for (uint64_t at = kScnObjAt; at + 2 <= kScnDeployAt; at += 2) {
    int16_t v = 0;
    if (!r.At(at) || !r.I16(v)) return early("its objective list");
    if (v == -1) break;
    values.push_back(v);
  }
  f.objectives.clear();
  for (size_t i = 0; i + 1 < values.size(); i += 2) f.objectives.push_back({values[i], values[i + 1]});

  // Deployment hexes: N, then N - 1 pairs that are used and one read over.
  if (!r.At(kScnDeployAt) || !r.I16(f.deployN)) return early("its count of deployment hexes");
  const uint64_t used = f.deployN > 1 ? static_cast<uint64_t>(f.deployN - 1) : 0;
  const uint64_t p = kScnDeployAt + 2 + 4 * (used + 1);
  const uint64_t u = p + 16;
  if (len < u) return early(Num(f.deployN) + " deployment hexes and the fields behind them");
  f.deploy.assign(used, {0, 0});
  for (auto& pair : f.deploy)
    if (!r.I16(pair[0]) || !r.I16(pair[1])) return early("its deployment hexes");
  if (!r.At(p) || !r.I16(f.prestige1) || !r.I16(f.prestige2) || !r.U8(f.air1) || !r.U8(f.air2) || !r.U8(f.naval1) ||
      !r.U8(f.naval2) || !r.Bytes(f.unknown8.data(), 8))
    return early("the fields behind its deployment hexes");

  f.unitsAt = u;
  // The count of the order of battle: (L - U - 1) \ 14 + 1, truncated toward zero.
  f.unitCount = static_cast<int>((static_cast<long long>(len) - static_cast<long long>(u) - 1) / kUnitRecordLen + 1);
  f.units.clear();
  f.units.reserve((len - u) / kUnitRecordLen);
  for (uint64_t at = u; at + 1 < len; at += kUnitRecordLen) {
    if (at + kUnitRecordLen > len)
      return Fail(err, name + " ends early: the unit record at offset " + Num(static_cast<long long>(at)) +
                           " is cut short after " + Num(static_cast<long long>(len - at)) + " of its " +
                           Num(kUnitRecordLen) + " bytes.");
    UnitRecord rec;
    rec.at = at;
    if (!r.At(at) || !r.I16(rec.type) || !r.I16(rec.trans1) || !r.U8(rec.nation) || !r.I16(rec.trans2) ||
        !r.I16(rec.x) || !r.I16(rec.y) || !r.U8(rec.strength) || !r.U8(rec.entrench) || !r.U8(rec.exper))
      return early("its unit records");
    if (rec.nation > nationCount)
      return Fail(err, name + ": the unit at offset " + Num(static_cast<long long>(at)) + " is of nation " +
                           Num(rec.nation) + ", but the nation set has " + Num(nationCount) + " nations.");
    if (rec.type < 0 || rec.type > kMaxEquipIndex)
      return Fail(err, name + ": the unit at offset " + Num(static_cast<long long>(at)) + " has equipment index " +
                           Num(rec.type) + ", beyond the highest index the equipment file allows (" +
                           Num(kMaxEquipIndex) + ").");
    f.units.push_back(rec);
  }
  return true;
}

bool ReadEquipmentName(ByteSource& eqp, const std::string& name, int index, std::string& out, std::string* err) {
  if (index < 0 || index > kMaxEquipIndex)
    return Fail(err, name + ": equipment index " + Num(index) + " is beyond the highest index allowed (" +
                         Num(kMaxEquipIndex) + ").");
  const uint64_t at = kEquipHeadLen + static_cast<uint64_t>(kEquipRecordLen) * index;
  char raw[kNameLen];
  if (at + kNameLen > eqp.size() || !eqp.seek(at) || !eqp.read(raw, kNameLen))
    return Fail(err, name + " ends early: it has " + Num(static_cast<long long>(eqp.size())) +
                         " bytes, too few for the name of equipment " + Num(index) + ".");
  std::string n(raw, kNameLen);
  TrimName(n);
  out = (n + std::string(kNameLen, ' ')).substr(0, kNameLen);
  return true;
}

bool ConvertScenarioSet(const ImportSources& src, const RefData& ref, ScenarioImport& out, std::string* err) {
  if (!ReadSetFile(*src.set, src.setName, ref, out.map, err)) return false;
  ScenarioFile& f = out.scn;
  if (!ReadScenarioFile(*src.scn, src.scnName, ref.NationCount, f, err)) return false;
  Document& d = out.map.doc;
  auto inFile = [&](int x, int y) { return x >= 0 && y >= 0 && x <= out.map.W && y <= out.map.H; };
  auto offMap = [&](const char* what, int x, int y) {
    return Fail(err, src.scnName + ": the " + what + " (" + Num(x) + ", " + Num(y) + ") lies off the map of " +
                         Num(out.map.W + 1LL) + " x " + Num(out.map.H + 1LL) + " hexes.");
  };
  // Objectives become primary objectives; an owned hex of the set was a
  // secondary one until now.
  for (const auto& o : f.objectives) {
    if (!inFile(o[0], o[1])) return offMap("objective hex", o[0], o[1]);
    d.HexCtl(o[0] + 1, o[1], 1) = 2;
  }
  for (const auto& p : f.deploy) {
    if (!inFile(p[0], p[1])) return offMap("deployment hex", p[0], p[1]);
    d.HexDeploy(p[0] + 1, p[1]) = f.nations[0][1];
  }
  // Side 1's units come first; the first unit of a side-2 nation ends them.
  out.units.clear();
  out.units.reserve(f.units.size());
  int side = 1;
  for (const UnitRecord& rec : f.units) {
    if (side == 1)
      for (int i = 1; i <= 6; ++i)
        if (rec.nation == f.nations[1][i]) side = 2;
    const int mx = rec.x + 1, my = rec.y;
    // A deployment hex under a unit shows the unit's nation.
    if (d.OnMap(mx, my) && d.HexDeploy(mx, my) > 0) d.HexDeploy(mx, my) = rec.nation;
    OobUnit u;
    u.rec = rec;
    u.side = side;
    if (!ReadEquipmentName(*src.eqp, src.eqpName, rec.type, u.name, err)) return false;
    out.units.push_back(std::move(u));
  }
  return true;
}

}  // namespace kv

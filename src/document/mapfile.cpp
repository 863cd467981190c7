#include "document/mapfile.h"

#include <cstring>

#include "platform/fileio.h"
#include "refdata/refdata.h"

namespace kv {

constexpr char kMapMagic[8] = {'V', 'e', 'r', 's', 'i', 'o', 'n', ' '};

namespace {

constexpr char kMagic[8] = {'V', 'e', 'r', 's', 'i', 'o', 'n', ' '};

std::string Need(const char* what, uint64_t need, uint64_t have) {
  return std::string(what) + " needs " + std::to_string(need) + " more bytes, but only " + std::to_string(have) +
         " are left";
}

template <class T>
bool ReadArray(ByteSource& in, HexArray<T>& a) {
  return in.read(a.data(), a.bytes());
}

bool ReadSizes(ByteSource& in, int16_t& mx, int16_t& my, std::string* err) {
  if (!in.get(mx) || !in.get(my)) {
    if (err) *err = "the file ends inside its header";
    return false;
  }
  if (mx < 0 || my < 0) {
    if (err) *err = "the header gives an impossible size of " + std::to_string(mx) + " by " + std::to_string(my);
    return false;
  }
  return true;
}

}  // namespace

// The planes shared by the map file and the snapshot.
bool ReadPlanes(ByteSource& in, Document& d, std::string* err) {
  const uint64_t n = d.N();
  if (in.remaining() < 15 * n) {
    if (err)
      *err = "a map of " + std::to_string(d.W()) + " x " + std::to_string(d.H()) + " hexes " +
             Need("", 15 * n, in.remaining()).substr(1);
    return false;
  }
  d.HexInfo.AllocateForRead(d.W(), d.H(), 7);
  d.HexTile.AllocateForRead(d.W(), d.H());
  d.HexCtl.AllocateForRead(d.W(), d.H(), 2);
  d.HexDeploy.AllocateForRead(d.W(), d.H());
  d.HexLandMass.AllocateForRead(d.W(), d.H());
  return ReadArray(in, d.HexInfo) && ReadArray(in, d.HexTile) && ReadArray(in, d.HexCtl) &&
         ReadArray(in, d.HexDeploy) && ReadArray(in, d.HexLandMass);
}

bool ReadObjList(ByteSource& in, Document& d, std::string* err) {
  int16_t c = 0;
  if (!in.get(c)) {
    if (err) *err = "the file ends before its objective table";
    return false;
  }
  if (c < 0) {
    if (err) *err = "the objective table has a negative count (" + std::to_string(c) + ")";
    return false;
  }
  const uint64_t need = 12ull * (c + 1);
  if (in.remaining() < need) {
    if (err)
      *err = "the objective table of " + std::to_string(c) + " objectives " + Need("", need, in.remaining()).substr(1);
    return false;
  }
  d.ObjCount = c;
  d.ObjList.Allocate(c);
  return in.read(d.ObjList.data(), d.ObjList.bytes());
}

SnapshotRead ReadSnapshotFile(ByteSource& in, int16_t mapMaxX, int16_t mapMaxY, Document& out, std::string* err) {
  char magic[8];
  int16_t version = 0, mx = 0, my = 0;
  if (!in.read(magic, 8) || std::memcmp(magic, kMagic, 8) != 0 || !in.get(version) || !in.get(mx) || !in.get(my))
    return SnapshotRead::Damaged;
  out.MapMaxX = mx;
  out.MapMaxY = my;
  if (mx != mapMaxX || my != mapMaxY) return SnapshotRead::OtherMap;
  std::string why;
  if (!ReadPlanes(in, out, &why) || !ReadObjList(in, out, &why)) {
    if (err) *err = why.empty() ? "it ends early" : why;
    return SnapshotRead::Damaged;
  }
  return SnapshotRead::Ok;
}

namespace {

bool WritePlanes(const Document& d, ByteSink& out) {
  const int16_t v = VersionNo, mx = d.MapMaxX, my = d.MapMaxY;
  return out.write(kMagic, 8) && out.put(v) && out.put(mx) && out.put(my) &&
         out.write(d.HexInfo.data(), d.HexInfo.bytes()) && out.write(d.HexTile.data(), d.HexTile.bytes()) &&
         out.write(d.HexCtl.data(), d.HexCtl.bytes()) && out.write(d.HexDeploy.data(), d.HexDeploy.bytes()) &&
         out.write(d.HexLandMass.data(), d.HexLandMass.bytes()) && out.put(d.ObjCount) &&
         out.write(d.ObjList.data(), d.ObjList.bytes());
}

}  // namespace

bool ReadMapFile(ByteSource& in, const RefData& ref, LoadedMap& out, std::string* err) {
  char magic[8];
  if (in.size() < 8 || !in.read(magic, 8) || std::memcmp(magic, kMagic, 8) != 0) {
    // No header: the older layout, read from the start.
    if (!in.seek(0)) {
      if (err) *err = "the file cannot be read from its start";
      return false;
    }
    return ReadOldMapFile(in, ref, out, err);
  }
  LoadedMap m;
  if (!in.get(m.version)) {
    if (err) *err = "the file ends inside its header";
    return false;
  }
  Document& d = m.doc;
  if (!ReadSizes(in, d.MapMaxX, d.MapMaxY, err)) return false;
  if (!ReadPlanes(in, d, err)) {
    if (err && err->empty()) *err = "the file ends inside the hex planes";
    return false;
  }
  d.HexElev.Allocate(d.W(), d.H());
  d.HexOrigOwner.Allocate(d.W(), d.H());
  if (m.version <= 570) d.HexContour.Allocate(d.W(), d.H());
  d.HexAIDist.Allocate(d.W(), d.H());
  m.hasObjList = m.version > 544;
  if (m.hasObjList) {
    if (!ReadObjList(in, d, err)) return false;
  } else {
    d.ObjCount = 0;
    d.ObjList.Allocate(0);
  }
  if (m.version >= 558) {
    int16_t len = 0;
    if (!in.get(len)) {
      if (err) *err = "the file ends before the name of its nation set";
      return false;
    }
    if (len < 0 || static_cast<uint64_t>(len) > in.remaining()) {
      if (err) *err = "the name of its nation set has an impossible length (" + std::to_string(len) + ")";
      return false;
    }
    m.nationSet.resize(len);
    if (!in.read(m.nationSet.data(), len)) return false;
  }
  if (m.version > 570) {
    if (in.remaining() < d.N()) {
      if (err) *err = "the contour plane " + Need("", d.N(), in.remaining()).substr(1);
      return false;
    }
    d.HexContour.AllocateForRead(d.W(), d.H());
    if (!ReadArray(in, d.HexContour)) return false;
  }
  out = std::move(m);
  return true;
}

bool ReadOldMapFile(ByteSource& in, const RefData& ref, LoadedMap& out, std::string* err) {
  LoadedMap m;
  m.oldFormat = true;
  Document& d = m.doc;
  if (!ReadSizes(in, d.MapMaxX, d.MapMaxY, err)) return false;
  const uint64_t n = d.N();
  if (in.remaining() < 15 * n) {
    if (err)
      *err = "it has no \"Version \" header, and read as an older map its first bytes give " + std::to_string(d.W()) +
             " x " + std::to_string(d.H()) + " hexes, which need " + std::to_string(4 + 15 * n) +
             " bytes; the file has " + std::to_string(in.size());
    return false;
  }
  d.AllocateAll();
  const int W = d.W(), H = d.H();
  std::vector<uint8_t> rec(static_cast<size_t>(9) * n);
  if (!in.read(rec.data(), rec.size())) return false;
  size_t p = 0;
  for (int x = 0; x < W; ++x)
    for (int y = 0; y < H; ++y) {
      for (int k = 0; k < 7; ++k) d.HexInfo(x, y, k) = rec[p + k];
      // Cities and ports carry roads on every side.
      if (d.HexInfo(x, y, 0) == 5 || d.HexInfo(x, y, 0) == 14)
        for (int k = 1; k <= 6; ++k) d.HexInfo(x, y, k) = 1;
      int16_t tile;
      std::memcpy(&tile, &rec[p + 7], 2);
      d.HexTile(x, y) = tile;
      const uint8_t type = ref.TypeOf(tile);
      if (type != d.HexInfo(x, y, 0)) d.HexInfo(x, y, 0) = type;
      p += 9;
    }
  rec.resize(static_cast<size_t>(2) * n);
  if (!in.read(rec.data(), rec.size())) return false;
  p = 0;
  for (int x = 0; x < W; ++x)
    for (int y = 0; y < H; ++y, p += 2) {
      d.HexCtl(x, y, 0) = rec[p];
      d.HexCtl(x, y, 1) = rec[p + 1];
    }
  for (HexArray<int16_t>* a : {&d.HexDeploy, &d.HexLandMass}) {
    if (!in.read(rec.data(), rec.size())) return false;
    p = 0;
    for (int x = 0; x < W; ++x)
      for (int y = 0; y < H; ++y, p += 2) std::memcpy(&(*a)(x, y), &rec[p], 2);
  }
  d.ObjCount = 0;
  d.ObjList.Allocate(0);
  out = std::move(m);
  return true;
}

void ReadLevFile(ByteSource& in, HexArray<uint8_t>& elev) {
  const size_t n = std::min<uint64_t>(elev.size(), in.remaining());
  in.read(elev.data(), n);
}

bool WriteMapFile(const Document& d, ByteSink& out) {
  const int16_t len = static_cast<int16_t>(d.NationSet.size());
  return WritePlanes(d, out) && out.put(len) && out.write(d.NationSet.data(), d.NationSet.size()) &&
         out.write(d.HexContour.data(), d.HexContour.bytes());
}

bool WriteSnapshotFile(const Document& d, ByteSink& out) { return WritePlanes(d, out); }

}  // namespace kv

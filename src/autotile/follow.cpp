#include "autotile/follow.h"

#include <algorithm>
#include <array>

#include "autotile/engine.h"
#include "autotile/stores.h"
#include "platform/fileio.h"
#include "view/geometry.h"
#include "view/mapview.h"

namespace kv {

namespace {

// Lists are a few records long; anything larger is no list of ours.
constexpr int64_t kMaxListBytes = 64 * 1024;

bool ListHolds(const std::string& path, int16_t tile) {
  if (path.empty() || FileLen(path) <= 0 || FileLen(path) > kMaxListBytes) return false;
  std::vector<uint8_t> bytes;
  if (!ReadFileBytes(path, bytes, nullptr)) return false;
  const std::vector<int16_t> lines = TileListLines(bytes);
  // Only the records a draw can reach count.
  const size_t n = std::min(lines.size(), static_cast<size_t>(TileListCount(bytes.size())));
  return std::find(lines.begin(), lines.begin() + static_cast<std::ptrdiff_t>(n), tile) !=
         lines.begin() + static_cast<std::ptrdiff_t>(n);
}

// Road sides from the tile's row of the road table; railroad sides stay.
void RoadSidesFromTile(MapView& s, int16_t x, int16_t y) {
  Document& d = s.doc;
  const RefData& ref = s.ref;
  const int16_t tile = d.HexTile(x, y);
  std::array<uint8_t, 7> side{};
  for (int r = 1; r <= ref.RoadRows(); ++r)
    if (ref.RoadTable(0, r) == tile) {
      for (int k = 1; k <= 6; ++k) side[k] = static_cast<uint8_t>(ref.RoadTable(k, r));
      break;
    }
  for (int k = 1; k <= 6; ++k)
    if (d.HexInfo(x, y, k) != 2) d.HexInfo(x, y, k) = side[k];
}

}  // namespace

bool NeighboursFollowPaint(const MapView& s) {
  const Pens& p = s.pens;
  return p.AutoNeighbours == -1 && p.AutoTile == -1 && p.CtlMode == 0 && p.SideEdit == 0 && p.ElevMode != -1 &&
         p.ClearSides != -1;
}

bool FollowHex(MapView& s, int16_t x, int16_t y) {
  Document& d = s.doc;
  const RefData& ref = s.ref;
  if (!d.OnMap(x, y)) return false;
  const int16_t own = d.HexTile(x, y);
  const int terrain = d.HexInfo(x, y, 0);
  if (own < 0 || own > ref.TileMax || ref.TypeOf(own) != terrain) return false;
  const bool road = ref.RoadOf(own) == 1;
  if (!road && terrain == 1) return false;  // open ground has nothing to join

  const int16_t pen = s.pens.CurTile;
  s.pens.CurTile = own;
  int16_t r = -1;
  if (road) {
    CheckRoads(s, x, y, r);
  } else if (!ListHolds(TerrainListPath(s, x, y), own)) {
    AutoDrawTile(s, x, y, r);
  }
  s.pens.CurTile = pen;
  if (r < 0 || r > ref.TileMax || r == own || ref.TypeOf(r) != terrain) return false;
  d.HexTile(x, y) = r;
  if (road || ref.RoadOf(r) == 1) RoadSidesFromTile(s, x, y);
  return true;
}

std::vector<HexRef> FollowNeighbours(MapView& s, int16_t x, int16_t y, const FollowSeen& chosen) {
  std::vector<HexRef> changed;
  auto note = [&](int16_t hx, int16_t hy) {
    const HexRef h{hx, hy};
    if (std::find(changed.begin(), changed.end(), h) == changed.end()) changed.push_back(h);
  };
  auto follow = [&](int16_t hx, int16_t hy) {
    bool c = FollowHex(s, hx, hy);
    if (chosen && chosen(hx, hy)) c = true;
    if (c) note(hx, hy);
    return c;
  };
  for (int round = 0; round < 3; ++round) {
    bool any = false;
    for (int p = 1; p <= 6; ++p) {
      int nx = x, ny = y;
      HexNeighbour(nx, ny, RingSide(p));
      if (s.doc.OnMap(nx, ny) && follow(static_cast<int16_t>(nx), static_cast<int16_t>(ny))) any = true;
    }
    if (follow(x, y)) any = true;
    if (!any) break;
  }
  return changed;
}

}  // namespace kv

// The generated default program folder, read back through the editor's own
// readers: the tile sheet and its tables agree with each other and with the
// pictures, the sprites come with exact masks, the starter auto-tile data
// gives the right tile for every outline it claims, the nation set is whole,
// and the generator and the example map come out the same on every run.
#include <array>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <map>
#include <set>
#include <sstream>

#include <gtest/gtest.h>

#include "../tools/gen/art.h"
#include "analysis/roadcheck.h"
#include "autotile/engine.h"
#include "autotile/passes.h"
#include "autotile/stores.h"
#include "document/document_ops.h"
#include "document/namestore.h"
#include "editing/editing.h"
#include "editing/fileflow.h"
#include "editing/mapload.h"
#include "editing/startup.h"
#include "editing/tilepicker.h"
#include "platform/bitmap.h"
#include "refdata/nations.h"
#include "refdata/tables.h"
#include "session.h"
#include "testutil.h"
#include "view/geometry.h"

namespace fs = std::filesystem;
using namespace kv;

namespace {

const std::string kData = KV_DEFAULT_DATA_DIR;

std::string Path(const std::string& rel) { return kData + "/" + rel; }

Bitmap Bmp(const std::string& rel) {
  Bitmap b;
  std::string err;
  EXPECT_TRUE(ReadBmpFile(Path(rel), b, &err)) << rel << ": " << err;
  return b;
}

// A session on a private copy of the folder, since a session writes into its
// program folder (random tables, pattern stores).
struct DataSession {
  kvtest::TempDir app;
  HeadlessUi ui;
  std::unique_ptr<Session> s;
  DataSession() {
    fs::copy(kData, app.path(), fs::copy_options::recursive | fs::copy_options::overwrite_existing);
    s = std::make_unique<Session>(app.path(), &ui);
    s->view.ScreenW = 1280;
    s->view.ScreenH = 1024;
    started = StartSession(*s);
  }
  bool started = false;
};

// A new map of (maxX + 1) x (maxY + 1) hexes filled with tile `pen`.
void NewMapOf(Session& s, int16_t maxX, int16_t maxY, int16_t pen) {
  s.doc.MapMaxX = maxX;
  s.doc.MapMaxY = maxY;
  s.pens.CurTile = pen;
  NewMap(s);
}

// The session shared by the read-only checks.
DataSession& Shared() {
  static DataSession* d = new DataSession;
  return *d;
}

// The number of tiles of the sheet.
int Tiles() { return Shared().s->ref.TileMax + 1; }

// The ring (1 above, then clockwise) as side numbers.
constexpr int kRingSide[6] = {5, 6, 1, 2, 3, 4};

// Where the road across side s is looked for: 3 pixels in from the middle of
// the side's edge, toward the centre of the cell.
void Probe(int s, int& x, int& y) {
  static const double cx[6] = {59, 44, 15, 0, 15, 44}, cy[6] = {25, 49, 49, 25, 0, 0};  // corners 0..5
  const double mx = (cx[s - 1] + cx[s % 6]) / 2, my = (cy[s - 1] + cy[s % 6]) / 2;
  const double dx = 29.5 - mx, dy = 24.5 - my, l = std::hypot(dx, dy);
  x = static_cast<int>(std::lround(mx + 3 * dx / l));
  y = static_cast<int>(std::lround(my + 3 * dy / l));
}

uint32_t TilePixel(const Bitmap& sheet, int tile, int x, int y) {
  return sheet.GetPixel((tile % 16) * 60 + x, (tile / 16) * 50 + y);
}

std::map<std::string, std::vector<uint8_t>> Tree(const std::string& root) {
  std::map<std::string, std::vector<uint8_t>> out;
  for (const auto& e : fs::recursive_directory_iterator(root))
    if (e.is_regular_file()) out[fs::relative(e.path(), root).string()] = kvtest::ReadBytes(e.path().string());
  return out;
}

}  // namespace

// ---- Tables ------------------------------------------------------------------

TEST(DefaultData, StartsAnEditorWithoutAMessage) {
  DataSession& d = Shared();
  ASSERT_TRUE(d.started);
  EXPECT_TRUE(d.ui.messages.empty()) << d.ui.messages.front();
  const RefData& ref = d.s->ref;
  // The tile count follows the sheet's height: 16 cells of 60 x 50 to a row,
  // as many rows as the set needs, and no tile numbered 544 (which the map
  // rebuild never leaves standing).
  const Bitmap sheet = Bmp("bmp/mapl.bmp");
  EXPECT_EQ(sheet.Width(), 16 * 60);
  EXPECT_EQ(sheet.Height() % 50, 0);
  EXPECT_GT(sheet.Height(), 16 * 50);
  EXPECT_EQ(ref.TileMax, sheet.Height() / 50 * 16 - 1);
  EXPECT_LT(ref.TileMax, 544);
  EXPECT_EQ(ref.HexW, 60);
  EXPECT_EQ(ref.HexH, 50);
  EXPECT_EQ(ref.ColPitch, 45);
  EXPECT_EQ(ref.RowPitch, 50);
  EXPECT_EQ(ref.FlagDX, 20);
  EXPECT_EQ(ref.FlagDY, 30);
  // The text source of the terrain table says what the binary one says.
  std::vector<uint8_t> fromText;
  std::string err;
  ASSERT_TRUE(ParseHexData(kvtest::ReadBytes(Path("data/hexdata.txt")), fromText, &err)) << err;
  EXPECT_EQ(fromText, kvtest::ReadBytes(Path("mapedit/tiletype.dat")));
  EXPECT_EQ(fromText, ref.TileType);
}

TEST(DefaultData, TerrainsHaveNamesAndColoursThatReadApart) {
  const RefData& ref = Shared().s->ref;
  ASSERT_GE(ref.TerrainMax, 14);
  std::set<std::string> names;
  for (int t = 0; t <= ref.TerrainMax; ++t) {
    EXPECT_FALSE(ref.TerrainName[t].empty()) << t;
    names.insert(ref.TerrainName[t]);
  }
  EXPECT_EQ(names.size(), static_cast<size_t>(ref.TerrainMax + 1));
  // One pixel a hex on the jump map: no two colours close together.
  for (int a = 0; a <= ref.TerrainMax; ++a)
    for (int b = a + 1; b <= ref.TerrainMax; ++b) {
      double d2 = 0;
      for (int c = 0; c < 3; ++c) d2 += std::pow(ref.TerrainRGB(c, a) - ref.TerrainRGB(c, b), 2);
      EXPECT_GT(std::sqrt(d2), 45) << ref.TerrainName[a] << " and " << ref.TerrainName[b];
    }
  // Every terrain of the sheet is named, and every named one has tiles.
  std::set<int> used(ref.TileType.begin(), ref.TileType.end());
  for (int t = 0; t <= ref.TerrainMax; ++t) EXPECT_TRUE(used.count(t)) << "no tile of " << ref.TerrainName[t];
  EXPECT_LE(*used.rbegin(), ref.TerrainMax);
}

TEST(DefaultData, HelpTextAndFlagPlace) {
  DataSession& d = Shared();
  TileHelp_Load(*d.s);
  const auto& labels = d.s->ed.picker.HelpLabels;
  const auto design = TilePickerState{}.HelpLabels;
  for (int i = 0; i < 8; ++i) {
    EXPECT_FALSE(labels[i].empty()) << i;
    EXPECT_NE(labels[i], design[i]) << i;
  }
  EXPECT_EQ(labels[8], design[8]);
}

// ---- Pictures ----------------------------------------------------------------

TEST(DefaultData, TilesLieOnBlackInsideTheKnockOutHexagon) {
  const Bitmap sheet = Bmp("bmp/mapl.bmp"), hex = Bmp("bmp/blackhex.bmp");
  ASSERT_EQ(hex.Width(), 60);
  ASSERT_EQ(hex.Height(), 50);
  for (int t = 0; t < Tiles(); ++t)
    for (int y = 0; y < 50; ++y)
      for (int x = 0; x < 60; ++x) {
        const uint32_t m = hex.GetPixel(x, y), p = TilePixel(sheet, t, x, y);
        ASSERT_TRUE(m == 0 || m == 0xFFFFFF) << x << "," << y;
        ASSERT_EQ(p == 0, m == 0xFFFFFF) << "tile " << t << " at " << x << "," << y;
      }
}

TEST(DefaultData, HexagonsCoverTheMapOnceAtTheDefaultPitches) {
  const RefData& ref = Shared().s->ref;
  const Bitmap hex = Bmp("bmp/blackhex.bmp");
  std::vector<int> cover(400 * 400, 0);
  for (int x = 0; x < 10; ++x)
    for (int y = 0; y < 9; ++y) {
      int32_t px = 0, py = 0;
      HexToPixel(ref, x, y, px, py);
      for (int j = 0; j < 50; ++j)
        for (int i = 0; i < 60; ++i)
          if (hex.GetPixel(i, j) == 0 && px + i < 400 && py + j < 400) ++cover[(py + j) * 400 + px + i];
    }
  // Away from the edges of the block of hexes every pixel is covered once.
  for (int y = 60; y < 380; ++y)
    for (int x = 60; x < 380; ++x) ASSERT_EQ(cover[y * 400 + x], 1) << x << "," << y;
}

TEST(DefaultData, MasksAreWhiteExactlyWhereSpritesAreBlack) {
  struct Pair {
    const char *sprite, *mask;
    int w, h;
  };
  const Pair pairs[] = {{"hexp", "hexm", 60, 50},
                        {"fx2", "fx2m", 9 * 60, 50},
                        {"roads", "roadsm", 6 * 60, 50},
                        {"rr", "rrm", 6 * 60, 50},
                        {"contours", "contoursm", 960, 200}};
  for (const Pair& p : pairs) {
    SCOPED_TRACE(p.sprite);
    const Bitmap s = Bmp(std::string("bmp/") + p.sprite + ".bmp"), m = Bmp(std::string("bmp/") + p.mask + ".bmp");
    ASSERT_EQ(s.Width(), m.Width());
    ASSERT_EQ(s.Height(), m.Height());
    EXPECT_GE(s.Width(), p.w);
    EXPECT_GE(s.Height(), p.h);
    for (int y = 0; y < s.Height(); ++y)
      for (int x = 0; x < s.Width(); ++x) {
        const uint32_t mv = m.GetPixel(x, y);
        ASSERT_TRUE(mv == 0 || mv == 0xFFFFFF) << x << "," << y;
        ASSERT_EQ(mv == 0xFFFFFF, s.GetPixel(x, y) == 0) << x << "," << y;
      }
  }
  // Each overlay cell the compositor uses, each side strip cell and each
  // contour code has something to show.
  auto opaque = [](const Bitmap& m, int x0, int y0) {
    int n = 0;
    for (int y = 0; y < 50; ++y)
      for (int x = 0; x < 60; ++x) n += m.GetPixel(x0 + x, y0 + y) == 0;
    return n;
  };
  const Bitmap fxm = Bmp("bmp/fx2m.bmp"), roadm = Bmp("bmp/roadsm.bmp"), railm = Bmp("bmp/rrm.bmp"),
               conm = Bmp("bmp/contoursm.bmp");
  for (int left : {300, 420, 480}) EXPECT_GT(opaque(fxm, left, 0), 40) << left;
  for (int s = 0; s < 6; ++s) {
    EXPECT_GT(opaque(roadm, s * 60, 0), 40) << s;
    EXPECT_GT(opaque(railm, s * 60, 0), 40) << s;
  }
  for (int c = 1; c < 64; ++c) EXPECT_GT(opaque(conm, (c % 16) * 60, (c / 16) * 50), 20) << c;
  // Flags, the side strip shown to the user and the toggle marks.
  EXPECT_EQ(Bmp("bmp/roadsp.bmp").Width(), 360);
  EXPECT_FALSE(Bmp("bmp/c0.bmp") == Bmp("bmp/c1.bmp"));
}

// ---- Roads -------------------------------------------------------------------

TEST(DefaultData, RoadSidesAreTheSidesThePicturesLeaveBy) {
  const RefData& ref = Shared().s->ref;
  const Bitmap sheet = Bmp("bmp/mapl.bmp");
  const std::vector<uint8_t> info = kvtest::ReadBytes(Path("mapedit/roadinfo.dat"));
  ASSERT_EQ(info.size(), 6u * Tiles());
  int roadTiles = 0;
  std::set<int> outlines;
  for (int t = 0; t < Tiles(); ++t) {
    int bits = 0;
    for (int k = 0; k < 6; ++k)
      if (info[6 * t + k]) bits |= 1 << (kRingSide[k] - 1);
    for (int s = 1; s <= 6; ++s) {
      int x = 0, y = 0;
      Probe(s, x, y);
      const bool drawn = TilePixel(sheet, t, x, y) == kvgen::kRoadFill;
      EXPECT_EQ(drawn, (bits >> (s - 1)) & 1) << "tile " << t << " side " << s;
    }
    EXPECT_EQ(ref.TileRoad[t], bits ? 1 : 0) << t;
    if (bits) {
      ++roadTiles;
      if (ref.TileType[t] == 1) outlines.insert(bits);
    }
  }
  // Open ground has a road tile for every outline: ends, bends, straights,
  // junctions; and the sheet has bridges, river-family tiles with a road.
  EXPECT_EQ(outlines.size(), 63u);
  EXPECT_EQ(ref.RoadRows(), roadTiles);
  int bridges = 0;
  for (int t = 0; t < Tiles(); ++t) bridges += ref.TileType[t] == 2 && ref.TileRoad[t];
  EXPECT_GE(bridges, 3);
}

// ---- Auto-tile starter data ----------------------------------------------------

TEST(DefaultData, TileListsAreWhatTheListBuilderMakes) {
  const RefData& ref = Shared().s->ref;
  const std::vector<uint8_t> marks = kvtest::ReadBytes(Path("mapedit/patterns.dat"));
  const std::vector<uint8_t> member = kvtest::ReadBytes(Path("mapedit/ptiles.dat"));
  ASSERT_EQ(marks.size(), 6u * Tiles());
  ASSERT_EQ(member.size(), static_cast<size_t>(Tiles()));
  // Scanning the tiles from 0, as the builder does.
  std::map<std::string, std::string> expected;
  for (int t = 0; t < Tiles(); ++t) {
    if (member[t] != 1) continue;
    std::string digits;
    for (int p = 0; p < 6; ++p) digits += marks[6 * t + p] ? static_cast<char>('1' + p) : '0';
    char name[32], rec[8];
    std::snprintf(name, sizeof name, "t%02d/%s.txt", ref.TileType[t], digits.c_str());
    std::snprintf(rec, sizeof rec, "%03d\r\n", t);
    expected[name] += rec;
  }
  std::map<std::string, std::string> found;
  for (const auto& e : fs::directory_iterator(Path("mapedit"))) {
    const std::string dir = e.path().filename().string();
    if (!e.is_directory() || dir.size() != 3 || dir[0] != 't') continue;
    for (const auto& f : fs::directory_iterator(e.path())) {
      const std::vector<uint8_t> b = kvtest::ReadBytes(f.path().string());
      found[dir + "/" + f.path().filename().string()] = std::string(b.begin(), b.end());
      // Every record names a tile of the folder's terrain.
      ASSERT_EQ(b.size() % 5, 0u) << f.path();
      for (size_t i = 0; i + 5 <= b.size(); i += 5) {
        const int tile = std::atoi(std::string(b.begin() + i, b.begin() + i + 3).c_str());
        EXPECT_EQ(ref.TileType[tile], std::atoi(dir.c_str() + 1)) << f.path() << " record " << tile;
      }
    }
  }
  EXPECT_EQ(found, expected);
  // The pattern stores come learned: every file holds pairs, each pair a tile
  // of the sheet, road pairs road tiles, river pairs river tiles.
  std::map<std::string, int> pairs;
  for (const char* d : {"roadpatterns", "bridgepatterns", "riverpatterns", "tilep03"}) {
    ASSERT_TRUE(fs::is_directory(Path(std::string("mapedit/") + d))) << d;
    for (const auto& f : fs::directory_iterator(Path(std::string("mapedit/") + d))) {
      int here = 0;
      ScanPatternPairs(kvtest::ReadBytes(f.path().string()), [&](const std::string& key, const std::string& tile) {
        const int t = std::atoi(tile.c_str());
        EXPECT_TRUE(t >= 0 && t < Tiles()) << f.path() << " " << key;
        if (t < 0 || t >= Tiles()) return true;
        if (std::string(d) == "riverpatterns") {
          EXPECT_TRUE(ref.TileType[t] == 2 && !ref.TileRoad[t]) << key;
        } else if (std::string(d) != "tilep03") {
          EXPECT_TRUE(ref.TileRoad[t]) << key;
        }
        ++here;
        return true;
      });
      EXPECT_GT(here, 0) << f.path();
      pairs[d] += here;
    }
  }
  EXPECT_GT(pairs["roadpatterns"], 1000);
  EXPECT_GT(pairs["bridgepatterns"], 20);
  EXPECT_GT(pairs["riverpatterns"], 100);
  EXPECT_GT(pairs["tilep03"], 10);
  const std::vector<uint8_t> rnd = kvtest::ReadBytes(Path("mapedit/randomtile.dat"));
  ASSERT_EQ(rnd.size(), static_cast<size_t>(Tiles()));
  std::map<int, int> variants;
  for (int t = 0; t < Tiles(); ++t)
    if (rnd[t]) {
      EXPECT_EQ(ref.TileRoad[t], 0) << t;
      ++variants[ref.TileType[t]];
    }
  for (int terrain : {0, 1, 3, 4, 7, 8, 9, 13}) EXPECT_GE(variants[terrain], 3) << terrain;
}

TEST(DefaultData, MassifPiecesAreMountainsAndJoinIntoOneRange) {
  DataSession d;  // own session: the pass writes the map
  ASSERT_TRUE(d.started);
  Session& s = *d.s;
  const int pieces[] = {75, 76, 78, 86, 90, 94, 104, 105, 115, 192};
  for (int t : pieces) EXPECT_EQ(s.ref.TileType[t], 3) << t;
  // The mountain pass around a key tile on a field of mountains.
  Document& doc = s.doc;
  doc.MapMaxX = 8;
  doc.MapMaxY = 8;
  doc.AllocateAll();
  FillHexPixel(s);
  for (int x = 0; x <= 8; ++x)
    for (int y = 0; y <= 8; ++y) {
      doc.HexInfo(x, y, 0) = 3;
      doc.HexTile(x, y) = 52;
    }
  doc.HexTile(4, 4) = 86;
  s.pens.DefaultAreaAll = -1;
  mAutoMoutains_Click(s);
  std::set<int> placed;
  for (int x = 0; x <= 8; ++x)
    for (int y = 0; y <= 8; ++y) placed.insert(doc.HexTile(x, y));
  for (int t : pieces) EXPECT_TRUE(placed.count(t)) << t;
  // Across every side shared by two pieces the pictures continue: the
  // colours on the two sides of the seam differ little.
  const Bitmap sheet = Bmp("bmp/mapl.bmp"), hex = Bmp("bmp/blackhex.bmp");
  auto inHex = [&](int i, int j) { return i >= 0 && j >= 0 && i < 60 && j < 50 && hex.GetPixel(i, j) == 0; };
  // Mean colour step across the sides shared by two pieces, with `tileAt`
  // giving the tile of each hex.
  auto seams = [&](const std::function<int(int, int)>& tileAt) {
    double diff = 0;
    int n = 0;
    for (int x = 0; x <= 8; ++x)
      for (int y = 0; y <= 8; ++y) {
        if (doc.HexTile(x, y) == 52) continue;
        const int a = tileAt(x, y);
        for (int side = 1; side <= 6; ++side) {
          int nx = x, ny = y;
          HexNeighbour(nx, ny, side);
          if (!doc.OnMap(nx, ny) || doc.HexTile(nx, ny) == 52) continue;
          const int b = tileAt(nx, ny);
          const int ox = doc.HexPixel(nx, ny, 0) - doc.HexPixel(x, y, 0),
                    oy = doc.HexPixel(nx, ny, 1) - doc.HexPixel(x, y, 1);
          // Pixel (i, j) of a, and the pixel right of it or below it when
          // that one belongs to b.
          for (int j = 0; j < 50; ++j)
            for (int i = 0; i < 60; ++i) {
              if (!inHex(i, j)) continue;
              for (auto [di, dj] : {std::pair{1, 0}, {0, 1}}) {
                const int bi = i + di - ox, bj = j + dj - oy;
                if (inHex(i + di, j + dj) || !inHex(bi, bj)) continue;
                const uint32_t p = TilePixel(sheet, a, i, j), q = TilePixel(sheet, b, bi, bj);
                for (int c = 0; c < 24; c += 8) diff += std::abs(int((p >> c) & 255) - int((q >> c) & 255)) / 3.0;
                ++n;
              }
            }
        }
      }
    EXPECT_GT(n, 100);
    return diff / std::max(n, 1);
  };
  const double laidOut = seams([&](int x, int y) { return doc.HexTile(x, y); });
  // The same places with the pieces handed round: the seams no longer meet.
  auto next = [&](int t) {
    for (size_t k = 0; k < std::size(pieces); ++k)
      if (pieces[k] == t) return pieces[(k + 1) % std::size(pieces)];
    return t;
  };
  const double shuffled = seams([&](int x, int y) { return next(doc.HexTile(x, y)); });
  EXPECT_LT(laidOut, 16.0);
  EXPECT_LT(laidOut, 0.7 * shuffled) << "laid out " << laidOut << ", handed round " << shuffled;
}

// For every ring outline, the engine's answer on a fresh folder: a tile of
// the pen's terrain whose marks are the outline. Every one of the 64
// outlines has a tile: lakes and coasts with land in several arcs, forest and
// woods edges of every shape, cities and ports built up or open to the sea on
// any sides.
struct Outline {
  const char* what;
  int16_t pen;          // a plain tile of the terrain
  uint8_t same, other;  // neighbour terrain that matches, and one that does not
};

TEST(DefaultData, AutoTilingGivesATileForEveryOutlineOfCoastsForestsWoodsCitiesAndPorts) {
  DataSession d;
  ASSERT_TRUE(d.started);
  Session& s = *d.s;
  Document& doc = s.doc;
  doc.MapMaxX = 6;
  doc.MapMaxY = 6;
  doc.AllocateAll();
  const std::vector<uint8_t> marks = kvtest::ReadBytes(Path("mapedit/patterns.dat"));
  ASSERT_EQ(marks.size(), 6u * (s.ref.TileMax + 1));
  const Bitmap sheet = Bmp("bmp/mapl.bmp");
  // Woods take forest as their own kind of ground, and forest takes woods.
  const Outline outlines[] = {
      {"coast", 0, 0, 1}, {"forest", 55, 10, 1}, {"woods", 95, 8, 4}, {"city", 215, 5, 1}, {"port", 238, 0, 1}};
  for (const Outline& o : outlines) {
    SCOPED_TRACE(o.what);
    const uint8_t terrain = s.ref.TileType[o.pen];
    std::set<int> tiles;
    for (int m = 0; m < 64; ++m) {
      std::array<bool, 6> match{};
      for (int p = 0; p < 6; ++p) match[p] = (m >> p) & 1;
      // Neighbours of (3, 3): none in column 0 or row 0, where the sea's rule differs.
      for (int p = 0; p < 6; ++p) {
        int nx = 3, ny = 3;
        HexNeighbour(nx, ny, kRingSide[p]);
        doc.HexInfo(nx, ny, 0) = match[p] ? o.same : o.other;
        doc.HexTile(nx, ny) = 0;
      }
      s.pens.CurTile = o.pen;
      int16_t tile = -1;
      AutoDrawTile(s, 3, 3, tile);
      ASSERT_GE(tile, 0) << "outline " << m;
      tiles.insert(tile);
      EXPECT_EQ(s.ref.TileType[tile], terrain) << "outline " << m;
      for (int p = 0; p < 6; ++p) EXPECT_EQ(marks[6 * tile + p] != 0, match[p]) << "outline " << m << " tile " << tile;
      if (terrain == 0 || terrain == 14) {
        // The picture: water where the marks say sea (for a port: the sea
        // side of its quay), land elsewhere.
        for (int p = 0; p < 6; ++p) {
          int x = 0, y = 0;
          Probe(kRingSide[p], x, y);
          const uint32_t c = TilePixel(sheet, tile, x, y);
          const int r = (c >> 16) & 255, g = (c >> 8) & 255, b = c & 255;
          const bool sea = terrain == 0 ? match[p] : match[p] && o.same == 0;
          EXPECT_EQ(b > r + 40 && b > g, sea) << "tile " << tile << " ring " << p + 1;
        }
      }
    }
    EXPECT_GE(tiles.size(), 64u);
  }
}

// ---- Painting with the learned stores -------------------------------------------

namespace {

// River sides of each tile, from the catalogue the sheet is drawn from.
std::vector<int> RiverBits() {
  std::vector<int> bits;
  const std::vector<uint8_t> text = kvtest::ReadBytes(std::string(KV_SOURCE_DIR) + "/tools/data/tiles.txt");
  std::istringstream in(std::string(text.begin(), text.end()));
  std::string line;
  while (std::getline(in, line)) {
    if (line.empty() || line[0] == '#') continue;
    std::istringstream ls(line);
    int tile = 0, terrain = 0;
    std::string art, pattern, road, river;
    ls >> tile >> terrain >> art >> pattern >> road >> river;
    if (tile >= static_cast<int>(bits.size())) bits.resize(tile + 1);
    for (char c : river)
      if (c >= '1' && c <= '6') bits[tile] |= 1 << (c - '1');
  }
  return bits;
}

// A left click on the middle of hex (x, y), the view at the map's corner.
void Click(Session& s, int x, int y) {
  int32_t px = 0, py = 0;
  HexToPixel(s.ref, x, y, px, py);
  Picture1_MouseDown(s, 1, 0, px + 30.0, py + 25.0);
}

std::vector<std::pair<int, int>> LineOf(int x, int y, int side, int n) {
  std::vector<std::pair<int, int>> out{{x, y}};
  for (int i = 1; i < n; ++i) {
    HexNeighbour(x, y, side);
    out.push_back({x, y});
  }
  return out;
}

// Every road and river hex whose sides do not meet its neighbours, as text.
std::string Misfits(const Session& s, const std::vector<int>& riverBits) {
  const Document& d = s.doc;
  const RefData& ref = s.ref;
  std::string out;
  for (int x = 0; x <= d.MapMaxX; ++x)
    for (int y = 0; y <= d.MapMaxY; ++y) {
      const int16_t t = d.HexTile(x, y);
      const bool road = ref.TileRoad[t] != 0, river = ref.TileType[t] == 2;
      if (!road && !river) continue;
      int roadBits = 0;
      for (int r = 1; r <= ref.RoadRows(); ++r)
        if (ref.RoadTable(0, r) == t)
          for (int k = 1; k <= 6; ++k) roadBits |= ref.RoadTable(k, r) << (k - 1);
      for (int side = 1; side <= 6; ++side) {
        int nx = x, ny = y;
        HexNeighbour(nx, ny, side);
        if (!d.OnMap(nx, ny)) continue;
        const int16_t n = d.HexTile(nx, ny);
        const int nt = d.HexInfo(nx, ny, 0);
        const bool roadThere = ref.TileRoad[n] || nt == 5 || nt == 6 || nt == 14;
        const bool riverThere =
            (ref.TileType[n] == 2 || ref.TileType[n] == 11 || ref.TileType[n] == 12) && !(road && ref.TileRoad[n]);
        if (road && ((roadBits >> (side - 1)) & 1) != roadThere)
          out += "road " + std::to_string(x) + "," + std::to_string(y) + " tile " + std::to_string(t) + " side " +
                 std::to_string(side) + "\n";
        if (river && ((riverBits[t] >> (side - 1)) & 1) != riverThere)
          out += "river " + std::to_string(x) + "," + std::to_string(y) + " tile " + std::to_string(t) + " side " +
                 std::to_string(side) + "\n";
      }
    }
  return out;
}

}  // namespace

// A fresh program folder, auto-tile on, neighbours following: roads with a
// bend, a crossroads, a junction, a river down to its mouth and a road over
// it, painted hex by hex with one pen each, join up by themselves.
TEST(DefaultData, PaintedRoadsRiversAndBridgesJoinTheirNeighbours) {
  DataSession d;
  ASSERT_TRUE(d.started);
  Session& s = *d.s;
  const std::vector<int> riverBits = RiverBits();
  Document& doc = s.doc;
  NewMapOf(s, 21, 15, 34);
  s.pens.AutoTile = -1;
  s.pens.AutoNeighbours = -1;
  auto paint = [&](int16_t pen, const std::vector<std::pair<int, int>>& hexes) {
    for (auto [x, y] : hexes) {
      s.pens.CurTile = pen;
      Click(s, x, y);
    }
  };
  // A road down and then off to the lower right (a bend).
  auto bend = LineOf(2, 1, 2, 5);
  auto more = LineOf(bend.back().first, bend.back().second, 1, 4);
  bend.insert(bend.end(), more.begin() + 1, more.end());
  paint(113, bend);
  // Crossroads: a road down, then one across it from the lower left.
  paint(113, LineOf(9, 1, 2, 7));
  paint(163, LineOf(7, 5, 6, 5));
  // A junction: a branch off the first road.
  paint(98, LineOf(3, 3, 1, 3));
  // A river from the top down to the bottom edge, and a road over it.
  paint(180, LineOf(16, 1, 2, 12));
  paint(113, LineOf(14, 6, 1, 5));
  const std::string misfits = Misfits(s, riverBits);
  EXPECT_TRUE(misfits.empty()) << misfits;
  // The road over the river is a bridge, the river keeps its terrain there,
  // and every road hex has its sides from its tile.
  int bridges = 0, roads = 0;
  for (int x = 0; x <= doc.MapMaxX; ++x)
    for (int y = 0; y <= doc.MapMaxY; ++y) {
      const int16_t t = doc.HexTile(x, y);
      if (!s.ref.TileRoad[t]) continue;
      ++roads;
      bridges += doc.HexInfo(x, y, 0) == 2;
      EXPECT_EQ(s.ref.TileType[t], doc.HexInfo(x, y, 0)) << x << "," << y;
      for (int k = 1; k <= 6; ++k) {
        int bit = 0;
        for (int r = 1; r <= s.ref.RoadRows(); ++r)
          if (s.ref.RoadTable(0, r) == t) bit = s.ref.RoadTable(k, r);
        EXPECT_EQ(doc.HexInfo(x, y, k), bit) << x << "," << y << " side " << k;
      }
    }
  EXPECT_EQ(bridges, 1);
  EXPECT_GT(roads, 25);
}

// The same roads painted with the classic click leave dead ends; the roads
// pass joins them up from the learned store.
TEST(DefaultData, TheRoadsPassJoinsRoadsPaintedWithoutNeighboursFollowing) {
  DataSession d;
  ASSERT_TRUE(d.started);
  Session& s = *d.s;
  NewMapOf(s, 21, 15, 34);
  s.pens.AutoTile = -1;
  for (auto [x, y] : LineOf(4, 2, 2, 8)) {
    s.pens.CurTile = 113;
    Click(s, x, y);
  }
  const std::string before = Misfits(s, RiverBits());
  EXPECT_FALSE(before.empty());
  s.pens.DefaultAreaAll = -1;
  autoredrawroads_Click(s);
  doroads_Click(s);
  EXPECT_EQ(Misfits(s, RiverBits()), "");
}

// ---- Nations -----------------------------------------------------------------

TEST(DefaultData, NationSetWithThreeFlagsEach) {
  const RefData& ref = Shared().s->ref;
  EXPECT_EQ(Shared().s->doc.NationSet, "default");
  ASSERT_GE(ref.NationCount, 8);
  struct Strip {
    const char* suffix;
    int w, h;
  } strips[] = {{"", 21, 14}, {"02", 20, 13}, {"03", 9, 9}};
  for (const Strip& st : strips) {
    std::set<std::vector<uint32_t>> seen;
    for (int n = 0; n <= ref.NationCount; ++n) {
      const std::string name = n == 0 ? "blank" : ref.NationName[n];
      const Bitmap b = Bmp("flags/" + name + st.suffix + ".bmp");
      EXPECT_EQ(b.Width(), st.w) << name;
      EXPECT_EQ(b.Height(), st.h) << name;
      seen.insert(b.Pixels());
    }
    EXPECT_EQ(seen.size(), static_cast<size_t>(ref.NationCount + 1)) << "two flags alike";
  }
}

// ---- Runs of the generator -----------------------------------------------------

#ifdef KV_GEN_DATA_EXE
TEST(DefaultData, GeneratorWritesTheSameBytesOnEveryRun) {
  kvtest::TempDir a, b;
  const std::string exe = KV_GEN_DATA_EXE;
  ASSERT_EQ(std::system((exe + " " + a.path() + "/data").c_str()), 0);
  ASSERT_EQ(std::system((exe + " " + b.path() + "/data").c_str()), 0);
  const auto first = Tree(a.path() + "/data"), second = Tree(b.path() + "/data");
  EXPECT_GT(first.size(), 100u);
  EXPECT_TRUE(first == second);
  // And the same as the folder the build made (where a session may have
  // added files of its own).
  const auto built = Tree(kData);
  for (const auto& [rel, bytes] : first) {
    const auto it = built.find(rel);
    EXPECT_TRUE(it != built.end() && it->second == bytes) << rel;
  }
  // A folder it did not make is left alone.
  fs::create_directories(a.path() + "/other");
  kvtest::WriteText(a.path() + "/other/keep.txt", "mine");
  EXPECT_NE(std::system((exe + " " + a.path() + "/other 2>/dev/null").c_str()), 0);
  EXPECT_TRUE(fs::exists(a.path() + "/other/keep.txt"));
}

TEST(DefaultData, ExampleMapIsReproducibleAndShowsEverything) {
  kvtest::TempDir out;
  const std::string exe = KV_GEN_DATA_EXE;
  ASSERT_EQ(std::system((exe + " --example " + out.path()).c_str()), 0);
  // The committed copy is what the maker makes.
  for (const char* ext : {".map", ".lev", ".ctl", ".ndx", ".str"}) {
    const std::string rel = std::string("example") + ext;
    EXPECT_EQ(kvtest::ReadBytes(out / rel), kvtest::ReadBytes(std::string(KV_SOURCE_DIR) + "/examples/" + rel))
        << rel << " differs from examples/: rebuild the target kv_example_map";
  }
  DataSession d;
  ASSERT_TRUE(d.started);
  Session& s = *d.s;
  ASSERT_TRUE(OpenMapFile(s, out.path(), "example.map"));
  const Document& doc = s.doc;
  EXPECT_EQ(doc.W(), 60);
  EXPECT_EQ(doc.H(), 40);
  std::map<int, int> terrains;
  std::set<int> owners, objectives, deploy;
  int bridges = 0, rails = 0, roads = 0, contours = 0, names = 0, massif = 0;
  for (int x = 0; x <= doc.MapMaxX; ++x)
    for (int y = 0; y <= doc.MapMaxY; ++y) {
      const int t = doc.HexTile(x, y), terrain = doc.HexInfo(x, y, 0);
      EXPECT_EQ(s.ref.TileType[t], terrain) << x << "," << y;
      ++terrains[terrain];
      bridges += terrain == 2 && s.ref.TileRoad[t];
      massif += t == 86 || t == 94;
      for (int k = 1; k <= 6; ++k) {
        rails += doc.HexInfo(x, y, k) == 2;
        roads += doc.HexInfo(x, y, k) == 1;
      }
      contours += doc.HexContour(x, y) != 0;
      if (doc.HexCtl(x, y, 0)) owners.insert(doc.HexCtl(x, y, 0));
      if (doc.HexCtl(x, y, 0)) objectives.insert(doc.HexCtl(x, y, 1));
      if (doc.HexDeploy(x, y)) deploy.insert(doc.HexDeploy(x, y));
      names += !GetHexName(s, x, y).empty();
    }
  for (int terrain : {0, 1, 2, 3, 4, 5, 6, 8, 10, 14}) EXPECT_GT(terrains[terrain], 0) << terrain;
  EXPECT_GE(bridges, 2);
  EXPECT_GT(rails, 10);
  EXPECT_GT(roads, 40);
  EXPECT_GT(contours, 10);
  EXPECT_EQ(massif, 2);
  EXPECT_EQ(owners, (std::set<int>{1, 2}));
  EXPECT_EQ(objectives, (std::set<int>{0, 1, 2, 3}));
  EXPECT_EQ(deploy, (std::set<int>{1, 2}));
  EXPECT_GE(names, 8);
  EXPECT_EQ(doc.ObjCount, 7);
  // A map ready for the game: no road ends inside it, every road and
  // built-up hex has an owner and no other hex has one.
  const std::vector<HexFault> faults = FindAllFaults(s);
  EXPECT_TRUE(faults.empty()) << faults.size() << " faults, the first at " << faults.front().x << ","
                              << faults.front().y << ": " << FaultReason(faults.front().kind);
}
#endif

// The generator of the default program folder: the catalogues it reads and
// the pictures and tables it makes from them.
#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "art.h"
#include "platform/bitmap.h"

namespace kv {
struct Session;
}

namespace kvgen {

// The default program folder from the catalogues in `src`, written into
// `out` (which must not hold other files than those of an earlier run); with
// `train`, the starter pattern stores too (TrainStores).
bool Generate(const std::filesystem::path& out, const std::filesystem::path& src, std::string* err, bool train = true);
// The same after emptying an earlier run's folder; refuses a folder that
// this program did not make.
bool GenerateFresh(const std::filesystem::path& out, const std::filesystem::path& src, std::string* err);
// The example map: a program folder is generated in a temporary folder, the
// map is built there through the editor's own operations, and saved as
// `dir`/example.map with its side files.
bool MakeExampleMap(const std::filesystem::path& dir, const std::filesystem::path& src, std::string* err);

// A folder the generator works in for a while: emptied when taken, removed
// when it goes.
struct ScratchDir {
  std::filesystem::path path;
  explicit ScratchDir(std::filesystem::path p) : path(std::move(p)) {
    std::error_code ec;
    std::filesystem::remove_all(path, ec);
  }
  ~ScratchDir() {
    std::error_code ec;
    std::filesystem::remove_all(path, ec);
  }
  ScratchDir(const ScratchDir&) = delete;
  ScratchDir& operator=(const ScratchDir&) = delete;
};

// Starts the editor's session `s` on a generated folder, on the screen the
// painters work for; false with the reason in `err` when it does not start.
bool StartPainting(kv::Session& s, std::string* err);

// One line of tools/data/tiles.txt.
struct TileDef {
  int tile = 0;
  int terrain = 0;
  std::string art;         // plain, edge, massif, mouth
  std::string pattern;     // six ring digits, or "" when the tile is in no list
  std::vector<int> road;   // sides the road leaves by
  std::vector<int> river;  // sides the river leaves by
  int rnd = 0;
  std::string note;
};

// One line of tools/data/nations.txt.
struct NationDef {
  std::string name;
  int number = 0;
  std::string design;
  std::array<uint32_t, 3> colour{};
};

// The road, bridge, river and mountain stores of the program folder `out`,
// learned by the editor from training maps painted in a copy of it.
bool TrainStores(const std::filesystem::path& out, const std::vector<TileDef>& cat, std::string* err);

bool ReadCatalogue(const std::string& path, std::vector<TileDef>& out, std::string* err);
bool ReadNationDefs(const std::string& path, std::vector<NationDef>& out, std::string* err);

// Whether the tile's road sides go into roadinfo.dat: city, road-end and port
// tiles draw their streets but are connected by their terrain.
bool RoadInfoCarries(const TileDef& t);

// The tile sheet: 16 cells to a row and as many rows as the tiles fill, tile
// t at ((t % 16) * 60, (t / 16) * 50).
void PaintTileSheet(const std::vector<TileDef>& tiles, kv::Bitmap& sheet);

// The sprite sheets under bmp/ and the flags under flags/.
bool WriteSprites(const std::string& bmpDir, std::string* err);
void DrawFlag(const NationDef& n, kv::Bitmap& out, int w, int h);
void DrawBlankFlag(kv::Bitmap& out, int w, int h);

// The application icon: convex polygons in a 256 x 256 square, drawn in
// order (a hex with the flag of `flag` on its pole).
struct IconShape {
  std::vector<P> points;
  uint32_t rgb = 0;
};
constexpr int kIconSizes[] = {16, 22, 24, 32, 48, 64, 128, 256};
bool IconShapes(const NationDef& flag, std::vector<IconShape>& out, std::string* err);
// The picture at size x size pixels, RGBA, rows from the top; a pixel's alpha
// is the share of it that the shapes cover.
std::vector<uint8_t> RasterIcon(const std::vector<IconShape>& shapes, int size);
std::string IconSvg(const std::vector<IconShape>& shapes);
// out/hicolor/NxN/apps/NAME.png for every size and
// out/hicolor/scalable/apps/NAME.svg.
bool WriteIcons(const std::filesystem::path& out, const std::string& name, const std::filesystem::path& src,
                std::string* err);

}  // namespace kvgen

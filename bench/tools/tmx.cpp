// kv_tmx APPDIR MAP X Y W H OUT.tmx: the section of a map that `korvane-map
// render MAP OUT --x X --y Y --w W --h H` draws, as a hexagonal TMX tile map
// for the benchmark peer's rasterizer, with its tile sheet beside it
// (OUT-tiles.png, made from the program folder's sheet: the pixels outside
// the hexagon knock-out in a key colour the map names as transparent).
//
// The map holds the section's hexes, columns X..X+W and rows Y..Y+H, as
// render's loops read them; columns are staggered as the map's are (even map
// columns stand half a row lower), at 45 pixels a column and 50 a row.
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>
#include <zlib.h>

#include "editing/fileflow.h"
#include "editing/startup.h"
#include "platform/bitmap.h"
#include "platform/fileio.h"
#include "platform/pngwrite.h"
#include "platform/ui.h"
#include "session.h"
#include "view/spritebank.h"

using namespace kv;

namespace {

constexpr uint32_t kKey = 0xFF00FF;

std::string Base64(const std::vector<uint8_t>& in) {
  static const char* k = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string out;
  out.reserve((in.size() + 2) / 3 * 4);
  for (size_t i = 0; i < in.size(); i += 3) {
    uint32_t v = uint32_t{in[i]} << 16;
    if (i + 1 < in.size()) v |= uint32_t{in[i + 1]} << 8;
    if (i + 2 < in.size()) v |= in[i + 2];
    out += k[(v >> 18) & 63];
    out += k[(v >> 12) & 63];
    out += i + 1 < in.size() ? k[(v >> 6) & 63] : '=';
    out += i + 2 < in.size() ? k[v & 63] : '=';
  }
  return out;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 8) {
    std::fprintf(stderr, "usage: kv_tmx APPDIR MAP X Y W H OUT.tmx\n");
    return 2;
  }
  const std::string app = argv[1], map = argv[2], out = argv[7];
  const int x = std::atoi(argv[3]), y = std::atoi(argv[4]), w = std::atoi(argv[5]), h = std::atoi(argv[6]);
  HeadlessUi ui;
  Session s(app, &ui);
  if (!StartSession(s) || !OpenMapFile(s, DirName(map).empty() ? "." : DirName(map), BaseName(map))) {
    std::fprintf(stderr, "kv_tmx: cannot open %s on %s\n", map.c_str(), app.c_str());
    return 1;
  }
  const Document& d = s.doc;
  if (w < 1 || h < 1 || x < 0 || y < 0 || x + w > d.MapMaxX || y + h > d.MapMaxY) {
    std::fprintf(stderr, "kv_tmx: the section runs off the map\n");
    return 1;
  }
  const RefData& r = s.ref;
  const Bitmap& sheet = s.sprites.TileSheet;
  const Bitmap& mask = s.sprites.BlackHexDC;
  const int W = r.HexW, H = r.HexH, rows = sheet.Height() / H;
  // The sheet: each cell's pixels outside the knock-out in the key colour.
  Bitmap tiles = sheet;
  for (int ty = 0; ty < rows * H; ++ty)
    for (int tx = 0; tx < 16 * W; ++tx)
      if ((mask.GetPixel(tx % W, ty % H) & 0xFFFFFF) != 0) tiles.SetPixel(tx, ty, kKey);
  const std::string tilesPath = CutExt(out, 4, "-tiles.png");
  VectorSink png;
  if (!WritePng(tiles, png, PngCompression::Fast) ||
      !WriteFileBytes(tilesPath, png.bytes.data(), png.bytes.size(), nullptr)) {
    std::fprintf(stderr, "kv_tmx: cannot write %s\n", tilesPath.c_str());
    return 1;
  }
  // The layer: global tile ids (tile + 1; 0 for none), little-endian, zlib.
  const int cols = w + 1, lines = h + 1, count = rows * 16;
  std::vector<uint8_t> gids;
  gids.reserve(static_cast<size_t>(cols) * lines * 4);
  for (int j = 0; j < lines; ++j)
    for (int i = 0; i < cols; ++i) {
      const int t = d.HexTile(x + i, y + j);
      const uint32_t gid = t >= 0 && t < count ? static_cast<uint32_t>(t) + 1 : 0;
      for (int b = 0; b < 4; ++b) gids.push_back(static_cast<uint8_t>(gid >> (8 * b)));
    }
  uLongf packedLen = compressBound(static_cast<uLong>(gids.size()));
  std::vector<uint8_t> packed(packedLen);
  compress2(packed.data(), &packedLen, gids.data(), static_cast<uLong>(gids.size()), 6);
  packed.resize(packedLen);
  // Column pitch = (tile width + side length) / 2: 45 for cells of 60 with a
  // side of 30. Stagger: the section's first column stands lower when it is
  // an even column of the map.
  const int side = 2 * r.ColPitch - W;
  std::string tmx = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
  tmx += "<map version=\"1.8\" orientation=\"hexagonal\" renderorder=\"right-down\" width=\"" + std::to_string(cols) +
         "\" height=\"" + std::to_string(lines) + "\" tilewidth=\"" + std::to_string(W) + "\" tileheight=\"" +
         std::to_string(H) + "\" infinite=\"0\" hexsidelength=\"" + std::to_string(side) +
         "\" staggeraxis=\"x\" staggerindex=\"" + (x % 2 == 0 ? "even" : "odd") +
         "\" backgroundcolor=\"#f0f0f0\" nextlayerid=\"2\" nextobjectid=\"1\">\n";
  tmx += " <tileset firstgid=\"1\" name=\"tiles\" tilewidth=\"" + std::to_string(W) + "\" tileheight=\"" +
         std::to_string(H) + "\" tilecount=\"" + std::to_string(count) + "\" columns=\"16\">\n";
  tmx += "  <image source=\"" + BaseName(tilesPath) + "\" trans=\"ff00ff\" width=\"" + std::to_string(16 * W) +
         "\" height=\"" + std::to_string(rows * H) + "\"/>\n </tileset>\n";
  tmx += " <layer id=\"1\" name=\"tiles\" width=\"" + std::to_string(cols) + "\" height=\"" + std::to_string(lines) +
         "\">\n  <data encoding=\"base64\" compression=\"zlib\">\n   " + Base64(packed) + "\n  </data>\n </layer>\n";
  tmx += "</map>\n";
  std::string err;
  if (!WriteFileBytes(out, tmx.data(), tmx.size(), &err)) {
    std::fprintf(stderr, "kv_tmx: %s\n", err.c_str());
    return 1;
  }
  std::printf("%s: %d x %d hexes, tiles in %s\n", out.c_str(), cols, lines, tilesPath.c_str());
  return 0;
}

#include "testutil.h"

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <unistd.h>

namespace fs = std::filesystem;

namespace kvtest {

TempDir::TempDir() {
  std::string tmpl = (fs::temp_directory_path() / "kvtest-XXXXXX").string();
  if (!mkdtemp(tmpl.data())) throw std::runtime_error("mkdtemp failed");
  path_ = tmpl;
}

TempDir::~TempDir() {
  std::error_code ec;
  fs::remove_all(path_, ec);
}

void WriteText(const std::string& path, const std::string& text) {
  fs::create_directories(fs::path(path).parent_path());
  std::ofstream(path, std::ios::binary) << text;
}

void WriteBytes(const std::string& path, const std::vector<uint8_t>& b) {
  fs::create_directories(fs::path(path).parent_path());
  std::ofstream(path, std::ios::binary).write(reinterpret_cast<const char*>(b.data()), b.size());
}

std::vector<uint8_t> ReadBytes(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return std::vector<uint8_t>(std::istreambuf_iterator<char>(in), {});
}

namespace {
void Put32(std::vector<uint8_t>& b, uint32_t v) {
  for (int i = 0; i < 4; ++i) b.push_back(static_cast<uint8_t>(v >> (8 * i)));
}
void Put16(std::vector<uint8_t>& b, uint16_t v) {
  b.push_back(static_cast<uint8_t>(v));
  b.push_back(static_cast<uint8_t>(v >> 8));
}
}  // namespace

std::vector<uint8_t> SolidBmp(int w, int h, uint32_t rgb) {
  const int stride = (w * 3 + 3) & ~3;
  std::vector<uint8_t> b;
  b.push_back('B');
  b.push_back('M');
  Put32(b, 54 + stride * h);
  Put32(b, 0);
  Put32(b, 54);
  Put32(b, 40);
  Put32(b, static_cast<uint32_t>(w));
  Put32(b, static_cast<uint32_t>(h));
  Put16(b, 1);
  Put16(b, 24);
  Put32(b, 0);
  Put32(b, stride * h);
  Put32(b, 2835);
  Put32(b, 2835);
  Put32(b, 0);
  Put32(b, 0);
  for (int y = 0; y < h; ++y) {
    for (int x = 0; x < w; ++x) {
      b.push_back(static_cast<uint8_t>(rgb));
      b.push_back(static_cast<uint8_t>(rgb >> 8));
      b.push_back(static_cast<uint8_t>(rgb >> 16));
    }
    for (int p = w * 3; p < stride; ++p) b.push_back(0);
  }
  return b;
}

void MakeMiniApp(const std::string& dir, const MiniApp& mini) {
  const int rows = (mini.tiles + 15) / 16;
  WriteBytes(dir + "/bmp/mapl.bmp", SolidBmp(16 * 60, rows * 50, 0x00336633));
  std::string terrain = "terrains," + std::to_string(mini.terrains) + ",x\r\n";
  for (int t = 0; t < mini.terrains; ++t)
    terrain += "\"Terrain " + std::to_string(t) + "\",0,0,0," + std::to_string(t * 10) + "," + std::to_string(100 + t) +
               "," + std::to_string(200 - t) + ",0\r\n";
  WriteText(dir + "/data/terrain.txt", terrain);
  const int sheetTiles = rows * 16;
  std::vector<uint8_t> types(sheetTiles);
  for (int t = 0; t < sheetTiles; ++t)
    types[t] = static_cast<uint8_t>(t < static_cast<int>(mini.types.size()) ? mini.types[t] : t % mini.terrains);
  std::string hexdata = std::to_string(sheetTiles);
  for (int t = 0; t < sheetTiles; ++t) hexdata += (t % 16 == 0 ? "\r\n" : ",") + std::to_string(types[t]);
  WriteText(dir + "/data/hexdata.txt", hexdata + "\r\n");
  if (mini.writeTileType) WriteBytes(dir + "/mapedit/tiletype.dat", types);
  std::vector<uint8_t> roads(static_cast<size_t>(sheetTiles) * 6, 0);
  for (size_t t = 0; t < mini.roads.size() && t < static_cast<size_t>(sheetTiles); ++t)
    for (size_t k = 0; k < 6 && k < mini.roads[t].size(); ++k) roads[t * 6 + k] = mini.roads[t][k];
  WriteBytes(dir + "/mapedit/roadinfo.dat", roads);
  std::string nations = std::to_string(mini.nations.size()) + "\r\n";
  for (size_t i = 0; i < mini.nations.size(); ++i)
    nations += "\"" + mini.nations[i] + "\"," + std::to_string(i + 1) + "\r\n";
  WriteText(dir + "/default/nations/nations.txt", nations);
  fs::create_directories(dir + "/flags");
}

}  // namespace kvtest

// Helpers shared by the tests: temporary folders and a small program folder
// made from scratch, so that every file a test reads is one it wrote itself.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace kvtest {

// A fresh folder under the system's temporary folder, removed at the end.
class TempDir {
 public:
  TempDir();
  ~TempDir();
  TempDir(const TempDir&) = delete;
  TempDir& operator=(const TempDir&) = delete;
  const std::string& path() const { return path_; }
  std::string operator/(const std::string& rel) const { return path_ + "/" + rel; }

 private:
  std::string path_;
};

void WriteText(const std::string& path, const std::string& text);
void WriteBytes(const std::string& path, const std::vector<uint8_t>& bytes);
std::vector<uint8_t> ReadBytes(const std::string& path);

// A 24-bit BMP of w x h filled with one colour (0x00RRGGBB).
std::vector<uint8_t> SolidBmp(int w, int h, uint32_t rgb);

// A small program folder: a tile sheet of `tiles` tiles (16 to a row, 60 x 50
// cells), terrain.txt with `terrains` terrains, hexdata.txt giving tile t the
// terrain types[t] (or t % terrains), roadinfo.dat with the given records, and
// the nation set "default" with the given names.
struct MiniApp {
  int tiles = 32;
  int terrains = 15;
  std::vector<uint8_t> types;               // per tile; empty: t % terrains
  std::vector<std::vector<uint8_t>> roads;  // per tile, 6 bytes; missing: no road
  std::vector<std::string> nations = {"Avaria", "Belmont", "Corvia"};
  bool writeTileType = true;  // also write mapedit/tiletype.dat
};
void MakeMiniApp(const std::string& dir, const MiniApp& mini = {});

}  // namespace kvtest

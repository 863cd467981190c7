// kv_tilemap SRC.map COLS ROWS OUT.map: a map of COLS x ROWS hexes made of
// copies of SRC side by side, for the picture benchmarks. Every plane is
// repeated (an even number of source columns keeps the columns' parity, so
// the copies join as the source's own hexes do); the objective table is the
// source's. The source's elevations (.lev) go along when there are any.
#include <cstdio>
#include <cstdlib>
#include <string>

#include "document/mapfile.h"
#include "platform/fileio.h"
#include "refdata/refdata.h"

using namespace kv;

namespace {

template <class T>
void Repeat(const HexArray<T>& src, HexArray<T>& dst) {
  for (int k = 0; k < dst.Layers(); ++k)
    for (int y = 0; y < dst.H(); ++y)
      for (int x = 0; x < dst.W(); ++x) dst(x, y, k) = src(x % src.W(), y % src.H(), k);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 5) {
    std::fprintf(stderr, "usage: kv_tilemap SRC.map COLS ROWS OUT.map\n");
    return 2;
  }
  const std::string srcPath = argv[1], outPath = argv[4];
  const int cols = std::atoi(argv[2]), rows = std::atoi(argv[3]);
  if (cols < 1 || rows < 1 || cols > kMaxMapIndex + 1 || rows > kMaxMapIndex + 1) {
    std::fprintf(stderr, "kv_tilemap: COLS and ROWS must be 1 to %d\n", kMaxMapIndex + 1);
    return 2;
  }
  RefData ref;
  LoadedMap m;
  std::string err;
  FileSource in;
  if (!in.open(srcPath, &err) || !ReadMapFile(in, ref, m, &err)) {
    std::fprintf(stderr, "kv_tilemap: %s: %s\n", srcPath.c_str(), err.c_str());
    return 1;
  }
  const Document& s = m.doc;
  Document d;
  d.MapMaxX = static_cast<int16_t>(cols - 1);
  d.MapMaxY = static_cast<int16_t>(rows - 1);
  d.AllocateAll();
  HexArray<uint8_t> srcElev;
  srcElev.Allocate(s.W(), s.H());
  srcElev.Fill(127);
  const std::string lev = CutExt(srcPath, 4, ".lev");
  FileSource levIn;
  if (FileExists(lev) && levIn.open(lev, nullptr)) {
    srcElev.Fill(0);
    ReadLevFile(levIn, srcElev);
  }
  Repeat(s.HexInfo, d.HexInfo);
  Repeat(s.HexTile, d.HexTile);
  Repeat(srcElev, d.HexElev);
  Repeat(s.HexCtl, d.HexCtl);
  Repeat(s.HexDeploy, d.HexDeploy);
  Repeat(s.HexLandMass, d.HexLandMass);
  Repeat(s.HexContour, d.HexContour);
  Repeat(s.HexOrigOwner, d.HexOrigOwner);
  d.ObjCount = s.ObjCount;
  d.ObjList = s.ObjList;
  d.NationSet = m.nationSet.empty() ? "default" : m.nationSet;
  SafeFileWriter w(outPath);
  WriteMapFile(d, w);
  if (!w.commit()) {
    std::fprintf(stderr, "kv_tilemap: %s\n", w.error().c_str());
    return 1;
  }
  if (!WriteFileBytes(CutExt(outPath, 4, ".lev"), d.HexElev.data(), d.HexElev.bytes(), &err)) {
    std::fprintf(stderr, "kv_tilemap: %s\n", err.c_str());
    return 1;
  }
  std::printf("%s: %d x %d hexes\n", outPath.c_str(), cols, rows);
  return 0;
}

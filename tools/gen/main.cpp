// kv_gen_data OUT [SOURCES]
// kv_gen_data --example MAPDIR [SOURCES]
// kv_gen_data --icons OUT NAME [SOURCES]
//
// Writes the default program folder into OUT from the text catalogues in
// SOURCES (tools/data of the source tree when not given): the tile sheet and
// sprites, the terrain, tile and road tables, the nation set "default" with
// its flags, the starter auto-tile data (tile lists, and the pattern stores
// the editor learns from training maps) and the help texts. The output is
// the same, byte for byte, on every run.
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <sstream>

#include "art.h"
#include "gen.h"

#ifndef KV_TOOLS_DATA_DIR
#define KV_TOOLS_DATA_DIR "tools/data"
#endif

namespace fs = std::filesystem;
using namespace kvgen;

namespace {

const char* kMarker = ".kv_generated";

bool WriteFile(const fs::path& p, const std::string& bytes, std::string* err) {
  std::ofstream out(p, std::ios::binary | std::ios::trunc);
  out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  if (!out) {
    *err = "cannot write " + p.string();
    return false;
  }
  return true;
}
std::string ReadFile(const fs::path& p) {
  std::ifstream in(p, std::ios::binary);
  std::ostringstream s;
  s << in.rdbuf();
  return s.str();
}
// Text files of the program folder end their lines with CR LF.
std::string Crlf(const std::string& text) {
  std::string out;
  for (size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '\n' && (i == 0 || text[i - 1] != '\r')) out += '\r';
    out += text[i];
  }
  return out;
}

}  // namespace

bool kvgen::Generate(const fs::path& out, const fs::path& src, std::string* err, bool train) {
  std::vector<TileDef> tiles;
  std::vector<NationDef> nations;
  if (!ReadCatalogue((src / "tiles.txt").string(), tiles, err)) return false;
  if (!ReadNationDefs((src / "nations.txt").string(), nations, err)) return false;
  const std::string terrain = ReadFile(src / "terrain.txt");
  if (terrain.empty()) {
    *err = "cannot read " + (src / "terrain.txt").string();
    return false;
  }
  for (const char* d : {"bmp", "data", "flags", "mapedit/roadpatterns", "mapedit/bridgepatterns",
                        "mapedit/riverpatterns", "default/nations", "tvk_info"})
    fs::create_directories(out / d);

  // Pictures.
  kv::Bitmap sheet;
  PaintTileSheet(tiles, sheet);
  if (!kv::WriteBmpFile((out / "bmp/mapl.bmp").string(), sheet, err)) return false;
  if (!WriteSprites((out / "bmp").string(), err)) return false;

  // Geometry and flag place.
  if (!WriteFile(out / "data/hex_info.txt", Crlf("\"HexWidth\",60\n\"HexHeight\",50\n\"HexSlant\",30\n"), err))
    return false;
  if (!WriteFile(out / "flags.xy", Crlf("20,30\n"), err)) return false;
  if (!WriteFile(out / "data/terrain.txt", Crlf(terrain), err)) return false;

  // Terrain of each tile, as text and as the binary table.
  // A field ends at a comma or at a line end, so a line carries no comma at
  // its end: the count, then sixteen values a line.
  const int tileCount = static_cast<int>(tiles.size());
  std::string hexdata = std::to_string(tileCount) + "\n", tiletype;
  for (int t = 0; t < tileCount; ++t) {
    hexdata += std::to_string(tiles[t].terrain);
    hexdata += (t % 16 == 15) ? "\n" : ",";
    tiletype += static_cast<char>(tiles[t].terrain);
  }
  if (!WriteFile(out / "data/hexdata.txt", Crlf(hexdata), err)) return false;
  if (!WriteFile(out / "mapedit/tiletype.dat", tiletype, err)) return false;

  // Roads: six bytes a tile, clockwise from the top (sides 5, 6, 1, 2, 3, 4).
  std::string roadinfo(6 * tileCount, '\0');
  for (const TileDef& t : tiles) {
    if (!RoadInfoCarries(t)) continue;
    for (int s : t.road) roadinfo[6 * t.tile + SideRing(s) - 1] = 1;
  }
  if (!WriteFile(out / "mapedit/roadinfo.dat", roadinfo, err)) return false;

  // Auto-tile starter data: the tile marks and the terrain tile lists that
  // the tile data screen would build from them.
  std::string patterns(6 * tileCount, '\0'), ptiles(tileCount, '\0'), random(tileCount, '\0');
  std::map<std::string, std::string> lists;  // path -> records
  for (const TileDef& t : tiles) {
    random[t.tile] = static_cast<char>(t.rnd);
    if (t.pattern.empty()) continue;
    ptiles[t.tile] = 1;
    for (int p = 0; p < 6; ++p) patterns[6 * t.tile + p] = t.pattern[p] != '0' ? 1 : 0;
    char name[64];
    std::snprintf(name, sizeof name, "mapedit/t%02d/%s.txt", t.terrain, t.pattern.c_str());
    char rec[8];
    std::snprintf(rec, sizeof rec, "%03d\r\n", t.tile);
    lists[name] += rec;
  }
  if (!WriteFile(out / "mapedit/patterns.dat", patterns, err)) return false;
  if (!WriteFile(out / "mapedit/ptiles.dat", ptiles, err)) return false;
  if (!WriteFile(out / "mapedit/randomtile.dat", random, err)) return false;
  for (const auto& [name, records] : lists) {
    fs::create_directories((out / name).parent_path());
    if (!WriteFile(out / name, records, err)) return false;
  }

  // The nation set "default" and the flags.
  std::string list = std::to_string(nations.size()) + "\n";
  for (const NationDef& n : nations) list += "\"" + n.name + "\"," + std::to_string(n.number) + "\n";
  if (!WriteFile(out / "default/nations/nations.txt", Crlf(list), err)) return false;
  struct Strip {
    const char* suffix;
    int w, h;
  } strips[] = {{"", 21, 14}, {"02", 20, 13}, {"03", 9, 9}};
  for (const Strip& st : strips) {
    kv::Bitmap b;
    for (const NationDef& n : nations) {
      DrawFlag(n, b, st.w, st.h);
      if (!kv::WriteBmpFile((out / "flags" / (n.name + st.suffix + ".bmp")).string(), b, err)) return false;
    }
    DrawBlankFlag(b, st.w, st.h);
    if (!kv::WriteBmpFile((out / "flags" / (std::string("blank") + st.suffix + ".bmp")).string(), b, err)) return false;
  }

  // The tile screen's key help: eight fields, one a line (the ninth line of
  // that screen, about F2, is its own).
  const std::string help =
      "\"F1 - Show this screen\"\n"
      "\"F3 - Set the road connections of the tile\"\n"
      "\"F4 - Set the terrain pattern of the tile (auto-tile data)\"\n"
      "\"Patterns go by terrain, not by tile.\"\n"
      "\"The lists they make are in \\mapedit\\t<terrain>.\"\n"
      "\"Left click - take the tile as the map pen.\"\n"
      "\"Right click - the menu of the three tile screens.\"\n"
      "\"Each screen has its key too, F2 to F4:\"\n";
  if (!WriteFile(out / "tvk_info/s2_help.txt", Crlf(help), err)) return false;
  if (!WriteFile(out / kMarker, "default program folder, generated\n", err)) return false;
  return !train || TrainStores(out, tiles, err);
}

namespace {

// Starts from nothing, so that no file of an older catalogue survives; but
// never removes a folder that this program did not make.
bool PrepareOut(const fs::path& out, std::string* err) {
  std::error_code ec;
  if (fs::exists(out, ec)) {
    if (!fs::exists(out / kMarker, ec) && !fs::is_empty(out, ec)) {
      *err = out.string() + " exists and was not made by kv_gen_data";
      return false;
    }
    fs::remove_all(out, ec);
  }
  return true;
}

}  // namespace

bool kvgen::GenerateFresh(const fs::path& out, const fs::path& src, std::string* err) {
  return PrepareOut(out, err) && Generate(out, src, err);
}

int main(int argc, char** argv) {
  const std::string mode = argc > 1 ? argv[1] : "";
  const bool example = mode == "--example", icons = mode == "--icons";
  const int first = example ? 2 : icons ? 3 : 1;
  if (argc < first + 1 || argc > first + 2 || (icons && argc < 4)) {
    std::fprintf(stderr,
                 "usage: kv_gen_data OUT [SOURCES]\n"
                 "       kv_gen_data --example MAPDIR [SOURCES]   (writes MAPDIR/example.map and its side files)\n"
                 "       kv_gen_data --icons OUT NAME [SOURCES]   (writes the icon theme's OUT/hicolor/.../NAME)\n");
    return 2;
  }
  const fs::path out = argv[icons ? 2 : first];
  const fs::path src = argc > first + 1 ? fs::path(argv[first + 1]) : fs::path(KV_TOOLS_DATA_DIR);
  std::string err;
  const bool ok = example ? MakeExampleMap(out, src, &err)
                  : icons ? WriteIcons(out, argv[3], src, &err)
                          : GenerateFresh(out, src, &err);
  if (!ok) {
    std::fprintf(stderr, "kv_gen_data: %s\n", err.c_str());
    return 1;
  }
  return 0;
}

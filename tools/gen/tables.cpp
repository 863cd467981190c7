// Reading the catalogues of tools/data.
#include <fstream>
#include <sstream>

#include "art.h"
#include "gen.h"

namespace kvgen {
namespace {

bool Sides(const std::string& text, std::vector<int>& out) {
  out.clear();
  if (text == "-") return true;
  for (char c : text) {
    if (c < '1' || c > '6') return false;
    out.push_back(c - '0');
  }
  return true;
}

}  // namespace

bool RoadInfoCarries(const TileDef& t) { return t.terrain != 5 && t.terrain != 6 && t.terrain != 14; }

bool ReadCatalogue(const std::string& path, std::vector<TileDef>& out, std::string* err) {
  std::ifstream in(path);
  if (!in) {
    *err = "cannot read " + path;
    return false;
  }
  // Tile numbers run from 0 without gaps; the sheet has as many rows as they fill.
  constexpr int kMaxTiles = 999;  // tile lists write three digits
  out.assign(kMaxTiles, TileDef{});
  std::vector<bool> seen(kMaxTiles, false);
  std::string line;
  int lineNo = 0;
  while (std::getline(in, line)) {
    ++lineNo;
    if (line.empty() || line[0] == '#') continue;
    std::istringstream ls(line);
    TileDef t;
    std::string road, river;
    if (!(ls >> t.tile >> t.terrain >> t.art >> t.pattern >> road >> river >> t.rnd)) {
      *err = path + ":" + std::to_string(lineNo) + ": expected seven fields";
      return false;
    }
    std::getline(ls >> std::ws, t.note);
    if (t.pattern == "-") t.pattern.clear();
    bool ok = t.tile >= 0 && t.tile < kMaxTiles && !seen[t.tile] && t.terrain >= 0 && t.terrain < 256 &&
              (t.art == "plain" || t.art == "edge" || t.art == "massif" || t.art == "mouth") && Sides(road, t.road) &&
              Sides(river, t.river) && (t.rnd == 0 || t.rnd == 1) && (t.pattern.empty() || t.pattern.size() == 6);
    for (size_t p = 0; ok && p < t.pattern.size(); ++p)
      ok = t.pattern[p] == '0' || t.pattern[p] == static_cast<char>('1' + p);
    if (!ok) {
      *err = path + ":" + std::to_string(lineNo) + ": bad or repeated tile";
      return false;
    }
    seen[t.tile] = true;
    out[t.tile] = t;
  }
  int count = 0;
  while (count < kMaxTiles && seen[count]) ++count;
  for (int t = count; t < kMaxTiles; ++t)
    if (seen[t]) {
      *err = path + ": tile " + std::to_string(count) + " is missing";
      return false;
    }
  if (count == 0 || count % kSheetCols != 0) {
    *err = path + ": " + std::to_string(count) + " tiles do not fill whole rows of " + std::to_string(kSheetCols);
    return false;
  }
  out.resize(count);
  return true;
}

bool ReadNationDefs(const std::string& path, std::vector<NationDef>& out, std::string* err) {
  std::ifstream in(path);
  if (!in) {
    *err = "cannot read " + path;
    return false;
  }
  out.clear();
  std::string line;
  int lineNo = 0;
  while (std::getline(in, line)) {
    ++lineNo;
    if (line.empty() || line[0] == '#') continue;
    std::istringstream ls(line);
    NationDef n;
    std::string c[3];
    if (!(ls >> n.name >> n.number >> n.design >> c[0] >> c[1] >> c[2])) {
      *err = path + ":" + std::to_string(lineNo) + ": expected six fields";
      return false;
    }
    for (int k = 0; k < 3; ++k) n.colour[k] = static_cast<uint32_t>(std::stoul(c[k], nullptr, 16));
    out.push_back(n);
  }
  if (out.empty()) {
    *err = path + ": no nations";
    return false;
  }
  return true;
}

}  // namespace kvgen

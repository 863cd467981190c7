// A summary of a map file and its side files, for the command line.
#pragma once

#include <cstdint>
#include <string>

namespace kv {

struct MapInfo {
  std::string path;
  bool oldFormat = false;
  int version = 0;
  int width = 0, height = 0;
  std::string nationSet;  // "" when the file names none
  int objCount = 0;       // rows of the stored objective table
  long ownedHexes = 0, objectiveHexes = 0, deploymentHexes = 0, namedHexes = 0;
  bool hasLev = false, hasNames = false;
};

// Reads the map (and its .lev, .ndx and .str beside it). appFolder, when not
// empty, supplies the tile table that maps of the older format need.
bool ReadMapInfo(const std::string& path, const std::string& appFolder, MapInfo& out, std::string* err);
std::string FormatMapInfo(const MapInfo& info);

}  // namespace kv

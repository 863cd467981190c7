// The map file (.map), its side files (.lev, .ctl), the older interleaved
// format, and the snapshot "autosave.map" behind Undo.
#pragma once

#include <cstdint>
#include <string>

#include "document/document.h"
#include "platform/bytes.h"

namespace kv {

struct MapState;
struct RefData;

// What a map file holds, read into a fresh document.
struct LoadedMap {
  Document doc;             // arrays and objective table; identity left empty
  int16_t version = 0;      // version read (0 for the older format)
  bool oldFormat = false;   // no "Version " header
  bool hasObjList = false;  // version above 544
  std::string nationSet;    // "" when the file names none
};

// Reads a map of the current format (after checking the header) or, when the
// first eight bytes are not "Version ", of the older format. Every size is
// checked against the bytes left before anything is allocated.
bool ReadMapFile(ByteSource& in, const RefData& ref, LoadedMap& out, std::string* err);
bool ReadOldMapFile(ByteSource& in, const RefData& ref, LoadedMap& out, std::string* err);
// Reads the elevation plane for a map of n hexes; a short file leaves the
// rest 0.
void ReadLevFile(ByteSource& in, HexArray<uint8_t>& elev);

// The current format, as SaveMap writes it.
bool WriteMapFile(const Document& d, ByteSink& out);
// The snapshot: the map file as far as the objective table.
bool WriteSnapshotFile(const Document& d, ByteSink& out);

// Pieces shared by the map file and the snapshot readers.
extern const char kMapMagic[8];
bool ReadPlanes(ByteSource& in, Document& d, std::string* err);
bool ReadObjList(ByteSource& in, Document& d, std::string* err);

// Reads a snapshot taken of a map of the given highest indexes into `out`
// (planes and objective table only). OtherMap leaves the snapshot's own
// highest indexes in out.MapMaxX/MapMaxY for the message.
enum class SnapshotRead { Ok, Damaged, OtherMap };
SnapshotRead ReadSnapshotFile(ByteSource& in, int16_t mapMaxX, int16_t mapMaxY, Document& out, std::string* err);

// Writes the snapshot of the open map to "autosave.map" in the program folder;
// a failure says why. (Loading, saving and restoring are the editor's
// procedures: editing/mapload.h.)
bool WriteSnapshot(MapState& s);

}  // namespace kv

// The editor's procedures on the map as a whole: load, save, a blank map and
// the undo snapshot's restore. Each updates the view, the forms and the jump
// map after the document (document/), which is why they live here.
#pragma once

namespace kv {

struct Session;

// MapPath and MapFile are set by the caller. A failed load says why and
// leaves the open map untouched.
bool LoadMap(Session& s);
bool SaveMap(Session& s);
// Puts back the planes and the objective table of "autosave.map".
bool RestoreSnapshot(Session& s);
// Replaces the document by a blank map of MapMaxX x MapMaxY filled with the pen.
void NewMap(Session& s);

}  // namespace kv

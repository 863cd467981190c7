// Bringing in a scenario set of the older game: the set's map, its scenario
// and the unit names become the open document and an order of battle.
#pragma once

#include <string>

namespace kv {

struct MapState;
struct Session;

// Shows "<path> not found." when no file of that name exists; the caller
// goes on either way.
void ReportIfMissing(MapState& s, const std::string& path);

// Imports the set at SetPath, with the scenario "game0NN.scn" from DlgDir and
// "data/panzequp.eqp" from the program folder. Everything is read into a
// fresh document first; on success the order of battle is written to the
// program folder (OobTmpPath) and the document is replaced. On any fault a
// message names the file and the fault, and the open document, its name
// store and its paths stay as they were. The caller sets MapFile, MapPath,
// NdxPath and StrPath beforehand (see OpenScenarioSet).
bool ImportScenarioSet(Session& s);

// The file dialog's Load button for scenario sets: `name` as typed in folder
// `dir`. A name ending in "set" or "SET" becomes SetPath (any other keeps the
// set imported last); the document becomes a nameless map on "newmap.*" in
// the program folder, filled by ImportScenarioSet, and the name store is
// opened on it. A failed import puts every name and path back.
bool OpenScenarioSet(Session& s, const std::string& dir, const std::string& name);

}  // namespace kv

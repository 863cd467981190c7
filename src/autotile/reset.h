// Forgetting what the editor has learned: the road, bridge, river and tile
// pattern stores of the program folder go back to the starter stores of the
// default data that comes with the editor.
#pragma once

#include <string>

namespace kv {

struct MapState;

// Removes every pattern file of the four stores ("roadpatterns",
// "bridgepatterns", "riverpatterns", "tilepNN") under the session's
// "mapedit/" and writes those of `starter` (a program folder) in their place.
// The tile lists, tile marks and random tables stay. False, with the reason,
// when `starter` has no stores or is the session's own folder, or a file
// cannot be written; the files already written stay written.
bool ResetLearnedStores(MapState& s, const std::string& starter, std::string* err);

}  // namespace kv

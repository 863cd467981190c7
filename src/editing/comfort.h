// What the editor adds for the hand beyond the classic design: switches that
// change no classic handler, on in the editor and off in scripts until set.
#pragma once

namespace kv {

struct ComfortState {
  // The file dialog opens on the open map's folder (the program folder for a
  // new map) when it opens or saves a map, instead of the folder last shown.
  bool DialogFollowsMap = false;
};

}  // namespace kv

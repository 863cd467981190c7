// No engine yet: the pattern stores do not exist, so the engine knows no tile
// and the learners keep nothing. Replaced whole when the stores are built.
#include "autotile/engine.h"

namespace kv {

bool EngineAvailable() { return false; }
void AutoDrawTile(Session&, int16_t, int16_t, int16_t& r) { r = -1; }
void CheckRoads(Session&, int16_t, int16_t, int16_t& r) { r = -1; }
void ConnectRoads(Session&, int16_t, int16_t) {}
void NewPattern(Session&, int16_t, int16_t, int16_t) {}
void NewRoadPattern(Session&, int16_t, int16_t, int16_t) {}

}  // namespace kv

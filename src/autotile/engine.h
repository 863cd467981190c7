// The tile selection engine and the pattern learners, as painting calls them.
//
// Until the pattern stores are built there is no engine: every question
// returns -1 ("nothing to place", the caller keeps its pen) and the learners
// store nothing. EngineAvailable() says which is the case.
#pragma once

#include <cstdint>

namespace kv {

struct Session;

bool EngineAvailable();
// The tile the stores give for hex (x, y) from its surroundings; r = -1 when
// they know none.
void AutoDrawTile(Session& s, int16_t x, int16_t y, int16_t& r);
// The road tile that fits the sides of hex (x, y); r = -1 when none fits.
void CheckRoads(Session& s, int16_t x, int16_t y, int16_t& r);
// Joins the road on hex (x, y) to the roads of its neighbours.
void ConnectRoads(Session& s, int16_t x, int16_t y);
// Learners: remember `tile` for the surroundings of hex (x, y), read before
// the hex changes.
void NewPattern(Session& s, int16_t x, int16_t y, int16_t tile);
void NewRoadPattern(Session& s, int16_t x, int16_t y, int16_t tile);

}  // namespace kv

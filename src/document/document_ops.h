// Whole-document operations: the objective table, original owners and terrain
// codes from tiles. (A blank map is the editor's procedure NewMap, in
// editing/mapload.h.)
#pragma once

namespace kv {

struct MapState;

void BuildObjList(MapState& s);
void BuildOwnerMap(MapState& s);
void RetypeHexes(MapState& s);

}  // namespace kv

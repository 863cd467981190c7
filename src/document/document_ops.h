// Whole-document operations: a blank map, the objective table, original
// owners and terrain codes from tiles.
#pragma once

namespace kv {

struct Session;

// Replaces the document by a blank map of MapMaxX x MapMaxY filled with the pen.
void NewMap(Session& s);
void BuildObjList(Session& s);
void BuildOwnerMap(Session& s);
void RetypeHexes(Session& s);
// After a wholesale replacement of the document: HexPixel, scroll ranges and
// the closing of the jump map window, which is built again when next shown.
void AfterDocumentReplaced(Session& s);
// The current hex and the selection block brought onto the map (a value
// that is on it stays as it is): a smaller map must not inherit a hex that
// lies beyond its edge.
void KeepPensOnMap(Session& s);

}  // namespace kv

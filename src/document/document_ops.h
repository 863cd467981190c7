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

}  // namespace kv

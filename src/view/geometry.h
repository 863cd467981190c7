// Grid arithmetic: hex to pixel at main and jump-map scale, pixel to hex,
// neighbours across the six sides, distance. Points of the view go through
// ViewTransform (view/transform.h).
#pragma once

#include <cstdint>

namespace kv {

struct MapState;
struct MapView;
struct RefData;

// Integer division truncating toward zero (the language's "\").
inline int IDiv(int a, int b) { return a / b; }

void HexToPixel(const RefData& ref, int x, int y, int32_t& px, int32_t& py);
void HexToJumpPixel(const RefData& ref, int16_t x, int16_t y, int32_t& px, int32_t& py);
// Hex under a map pixel, clamped to columns 0..maxX and rows 0..maxY (the map).
void pixel_hex(const RefData& ref, int maxX, int maxY, double px, double py, int16_t& outX, int16_t& outY);
void pixel_hex(const MapState& s, double px, double py, int16_t& outX, int16_t& outY);
// x, y become the hex across side 1..6 (no bounds check; other sides: no move).
void HexNeighbour(int& x, int& y, int side);
inline int OppositeSide(int s) { return ((s + 2) % 6) + 1; }
int16_t HexDistance(int16_t x1, int16_t y1, int16_t x2, int16_t y2);
// Fills HexPixel for the current map size.
void FillHexPixel(MapState& s);
// The current hex and the selection block brought onto the map (a value
// that is on it stays as it is): a smaller map must not inherit a hex that
// lies beyond its edge.
void KeepPensOnMap(MapView& s);
// After a wholesale replacement of the document (new, load, import): the pens
// kept on the map, the replacement announced, HexPixel filled, and the jump map
// window closed, to be built again when next shown.
void AfterDocumentReplaced(MapView& s);

}  // namespace kv

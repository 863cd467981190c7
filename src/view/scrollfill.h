// What a one-step scroll leaves out. The step shifts the buffer and draws the
// column or row that came in; the hexes in the view's margins and the hexes
// that overlap the new column are not drawn again, which leaves stale or black
// corners in the view until the next full redraw. After the step, the parts of
// the view that may differ from a full redraw are composed again here, hex by
// hex in the full redraw's order and clipped to those parts, so that the view
// shows what a full redraw would. HexContour is left as the step left it.
#pragma once

#include "view/zoomgrid.h"

namespace kv {

struct MapView;

// Recomposes r of the buffer (its own pixels, at the view's zoom) as
// RedrawBuffers composes it (black, then every hex of its range whose cell
// meets r, columns outermost), touching no pixel outside r and no map data.
void RecomposeBufferRect(MapView& s, BufRect r);

// Completes a one-step scroll: dx is +1 after ScrollRight, -1 after ScrollLeft,
// dy +1 after ScrollDown, -1 after ScrollUp (ViewX, ViewY already moved).
void CompleteScrollStep(MapView& s, int dx, int dy);

}  // namespace kv

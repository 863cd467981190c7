// Start-up of a session: the data half of the main window's load, in order.
#pragma once

namespace kv {

struct Session;

// Flags, geometry, tile sheet and tables, random tables, the blank first map
// and its name store. Returns false (after saying why) when the program
// folder cannot support an editor.
bool StartupData(Session& s);
// After the window layout: the nation set, sprites, buffers and first drawing,
// the start-up values of the pens and flags, and the pattern folders.
bool StartupAfterLayout(Session& s);
// Both halves with a layout for the screen size in s.view (no window).
bool StartSession(Session& s);

}  // namespace kv

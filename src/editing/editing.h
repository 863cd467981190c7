// What a key, a click or a button of the main window does to the map and the
// pens. Every handler of Form1 that changes something lands here.
#pragma once

#include <cstdint>
#include <string>

#include "platform/keys.h"

namespace kv {

struct Session;

// Paints hex (x, y) by the mode flags.
void SetHex(Session& s, int16_t x, int16_t y);
// Shift-click: grows (or pulls in) the selection block with hex (cx, cy).
void ExtendSelection(Session& s, int16_t cx, int16_t cy);

// Mouse on the map view; X, Y are pixels of Picture1.
void Picture1_MouseDown(Session& s, int button, int shift, double X, double Y);
void Picture1_MouseMove(Session& s, int button, int shift, double X, double Y);
// The status line for hex (x, y).
std::string HexStatusText(Session& s, int16_t x, int16_t y);
// Mouse on the side strip under the view.
void Picture2_MouseDown(Session& s, int button, int shift, double X, double Y);

void Form_KeyDown(Session& s, int keyCode, int shift);
void Form_KeyUp(Session& s, int keyCode, int shift);

// Buttons and labels.
void Command1_Click(Session& s);  // fill the visible block
void Command2_Click(Session& s);  // AutoTile
void Command4_Click(Session& s);  // rename the current hex from Text2
void Command5_Click(Session& s);  // ClearSides
void Command6_Click(Session& s);  // deployment mode
void Command7_Click(Session& s);  // clear the current hex's name
void Command8_Click(Session& s);  // coordinate convert
void Command9_Click(Session& s);  // elevation pen
void Label1_Click(Session& s);
void Label2_Click(Session& s);
void Label4_MouseMove(Session& s);
void Text2_GotFocus(Session& s);
void Text2_LostFocus(Session& s);

// Menu toggles.
void mHexSides_Click(Session& s);
void mShowRoadControl_Click(Session& s);
void mDefaultArea_Click(Session& s);
void mRandom_Click(Session& s);

// Previous (-1) or next (+1) tile of the pen's kind, with wrap-around.
int16_t StepTileOfKind(const Session& s, int16_t from, int dir);

// Texts and states that Form1's load sets once the layout is finished.
void Form1StartupControls(Session& s);

}  // namespace kv

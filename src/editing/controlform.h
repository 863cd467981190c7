// The control and objectives form (Form3) and the small commands that go with
// it: the Hex Control, Mode, Grid and Help entries of the main menu, the grid
// dialog (Form10), the help screen (Form8), and the size dialog of the map
// image (Form9).
#pragma once

#include <cstdint>
#include <string>

namespace kv {

struct Session;

// Form3: both nation lists, the objective buttons, the hex/area labels.
void Control_Load(Session& s);
void Control_Command1_Click(Session& s);  // Primary
void Control_Command2_Click(Session& s);  // Secondary
void Control_Command3_Click(Session& s);  // Oil Resource
void Control_Command4_Click(Session& s);  // Road/None
void Control_Label2_Click(Session& s, int index);
// The list's new index is taken first, as a click on the list sets it.
void Control_List1_Click(Session& s, int listIndex);
void Control_List2_Click(Session& s, int listIndex);
void Control_KeyDown(Session& s, int keyCode, int shift);

// Menu entries of the main window.
void HexControlOn_Click(Session& s);
void HexControlOFF_Click(Session& s);
void mOriginalOwner_Click(Session& s);
void Obj_on_Click(Session& s);
void Obj_off_Click(Session& s);
// Turning the grid on with a size below 1 is refused with a message.
void mGrid_Click(Session& s);
void mGridSet_Click(Session& s);
void helpscreen_Click(Session& s);

// Form10, the grid dimensions.
void Grid_Load(Session& s);
// Done: takes both sizes and closes; while the grid is on, a size below 1 is
// refused with a message and the form stays open. False when refused.
bool Grid_Command1_Click(Session& s);
// Cancel: the grid goes off, the sizes stay.
void Grid_Command2_Click(Session& s);

// Form8: the help text, each line ended by a carriage return.
std::string HelpText();

// Form9, the size of the map image in hexes.
void ImageSize_Load(Session& s);
// Takes both boxes into ImgScaleA and ImgScaleB; 0, negatives and text give 1.
void ImageSize_Unload(Session& s);
// The value a box of Form9 gives.
int16_t ImageSizeValue(const std::string& text);

}  // namespace kv

// The bitmap utility (Form4): a picture is loaded into one scrolling picture
// and worked on through its raw pixels, one column at a time, each column put
// back as soon as it is done so that the change travels across the screen.
//
// The pixel passes come in two layers: plain functions on an ImageStore (one
// column or one picture, no session), and the menu and click handlers of
// Form4 and Form15 that run them on the session's pictures, put the pixels
// back and save the results.
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "bitmaputil/bitmaputil_state.h"

namespace kv {

struct Session;

// ---- Pixel passes ----------------------------------------------------------

// Clamps to 0..255.
inline int32_t ByteMe(int32_t v) { return v < 0 ? 0 : v > 255 ? 255 : v; }

ImageStore StoreOf(const Bitmap& bm);
Bitmap BitmapOf(const ImageStore& img);
// 0x00RRGGBB of pixel (x, y).
inline uint32_t PixelRGB(const ImageStore& img, int x, int y) { return RGB(img(2, x, y), img(1, x, y), img(0, x, y)); }

// Colour reduction of column x: each of channels 0..2 down to a multiple of v
// (v is never 0 here).
void ReduceColumn(ImageStore& img, int x, int v);
// Dominant-colour filter of column x: only the strongest channel stays, a tie
// going to blue over green and to green over red.
void DominantColumn(ImageStore& img, int x);
// The shrink's step at the even column x: the means of the 2 x 2 blocks of
// `src` (1 or 2 pixels at the last column and row), rounded halves to even,
// stored in column x / 2 of `dst`.
void ShrinkColumn(const ImageStore& src, ImageStore& dst, int x);
// Extreme contrast of column x: each channel 0 below 127, else 255.
void ExtremeColumn(ImageStore& img, int x);
// Every pixel of column x of colour `from` takes colour `to` (0x00RRGGBB).
void ReplaceColumn(ImageStore& img, int x, uint32_t from, uint32_t to);

// The seasonal tables: Dark[i] = i * 0.75 and Light[i] = i * 2.25, rounded
// down and clamped.
const std::array<uint8_t, 256>& DarkTable();
const std::array<uint8_t, 256>& LightTable();
constexpr uint32_t kWinterColour = 0xC3C377;  // (195, 195, 119)
extern const uint32_t kMudColours[7];
// One seasonal step over a whole picture: "d" each channel through Dark; "r"
// green and blue to 0; "wl" the winter colour through Light; "ml" each mud
// colour, in table order, through Dark twice.
void DarkPass(ImageStore& img);
void RedPass(ImageStore& img);
void WinterLightPass(ImageStore& img);
void MudLightPass(ImageStore& img);
// Sprite mask: black becomes white, everything else black.
void MaskPass(ImageStore& img);
// The icon's two passes: black to (1, 1, 1), then the background colour (the
// pixel at (0, 0) before the first pass) to black.
void IconPasses(ImageStore& img);
// The icon strip, 400 x 50 on black, from frames of 80 x 50: first the frame
// left of x = 160 in the second row mirrored left to right, then the frames
// at (0, 0), (0, 50), (160, 50) and (160, 100) as they are.
Bitmap IconStrip(const Bitmap& src);
// The sector file name of the square at pixel (x, y): "1203.bmp".
std::string SectorFileName(int x, int y);
// Sector origins: 0, 300, ... up to and including `size`.
int SectorCount(int size);

// ---- Form4 -----------------------------------------------------------------

void Form4_Load(Session& s);
// The form goes with its pictures; the shared state (ImageBits, BitmapName,
// the modes, PixelDone) stays.
void Form4_Unload(Session& s);
// Exit: FromMapEdit off, and the form unloaded.
void FileExit_Click(Session& s);
void Form4_Activate(Session& s);  // hides Frame1
// The bars' maxima for a frame of frameW x frameH (Form_Load, Form_Resize).
void Form4_ScrollRanges(Session& s, int frameW, int frameH);

// Load Bitmap: the file dialog in its bitmap mode. Its Load button ends in
// BitmapDialogLoad with the name typed (DlgFile already formed from it);
// when the picture cannot be loaded DlgFile goes back to previousDlgFile.
void Form4_LoadBitmap_Click(Session& s);
void BitmapDialogLoad(Session& s, const std::string& name, const std::string& previousDlgFile);
// Reads `path` into Picture2 and ImageBits under the name `name`. A file that
// is no readable bitmap is refused with a message, and the workspace (name,
// path, pictures, pixels) stays as it was.
bool LoadBitmapFile(Session& s, const std::string& path, const std::string& name);
// Pictures of more pixels than this are refused the same way.
constexpr long long kMaxUtilityPixels = 64LL * 1024 * 1024;
// Takes Picture2's image into ImageBits.
void LoadImageData(Session& s);
// Brings Picture2 up to date with the columns a running pass has put since
// it was last looked at (what the window shows at each of its frames).
void SyncPicture2(Session& s);

// Colour reduction by ColourCRV (0 counts as 4 and is stored so); gives back
// the picture's size. Saved to "picture2.bmp".
void ReduceColours(Session& s, int& width, int& height);
void menuRC_Click(Session& s);
// choice 0, 1, 2 from blue, green, red; the filter is the same for all.
void DominantColour(Session& s, int choice);
void red_Click(Session& s);
void green_Click(Session& s);
void blue_Click(Session& s);
void ReduceImage(Session& s);
void Shrink_Image_Click(Session& s);
void mExtremis_Click(Session& s);
void Replace_Colour_Click(Session& s);
void mMapEditMode_Click(Session& s);
void ChangeCRV_Click(Session& s);
void Form4_Label1_Click(Session& s);  // "Done" of the colour reduction value
void Form4_Form_KeyDown(Session& s, int keyCode, int shift);

// A click on Picture2 at (X, Y), in its pixels: map edit mode, then extreme
// contrast, colour replacement and the map conversion, as far as the click
// goes.
void Form4_Picture2_MouseDown(Session& s, int button, int shift, double X, double Y);
// The pointer read-out in the caption.
void Form4_Picture2_MouseMove(Session& s, int button, int shift, double X, double Y);
std::string PointerReadout(Session& s, double X, double Y);

// Derived files.
void CreateSeasonalMaps_Click(Session& s);
void CreateMask_Click(Session& s);
void mPG2_Click(Session& s);
void SaveSectors_Click(Session& s);
void bmp2map_Click(Session& s);

// The main view round hex (x, y), marked blue.
void GoToHex(Session& s, int16_t x, int16_t y);

// ---- Form15 ----------------------------------------------------------------

void Form15_Load(Session& s);
// A change of box `index` (0 red, 1 green, 2 blue) sets NewColour from all three.
void Form15_Text1_Change(Session& s, int index);
void Form15_Command1_Click(Session& s);

}  // namespace kv

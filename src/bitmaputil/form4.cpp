// Form4's workspace: loading a picture, the colour passes that change it in
// place, the pointer read-out, and what a click on the picture does.
#include <algorithm>
#include <climits>
#include <cmath>
#include <cstdio>

#include "autotile/random.h"
#include "bitmaputil/bitmaputil.h"
#include "bitmaputil/bitmaputil_internal.h"
#include "jumpmap/jumpmap.h"
#include "platform/fileio.h"
#include "platform/keys.h"
#include "platform/textfields.h"
#include "session.h"
#include "view/compose.h"
#include "view/render_api.h"

namespace kv {

// ---- Helpers shared by the utility's files ----------------------------------

namespace bmu {

int RoundInt(double v) {
  if (!std::isfinite(v)) return 0;
  const double r = RoundHalfEven(v);
  if (r > 2e9) return 2000000000;
  if (r < -2e9) return -2000000000;
  return static_cast<int>(r);
}

int16_t ClampI16(long long v) { return static_cast<int16_t>(std::clamp<long long>(v, -32768, 32767)); }

bool NeedPicture(Session& s) {
  if (s.bmp.Picture2Visible && !s.bmp.Picture2.Empty()) return true;
  s.MsgBox("Load a bitmap first (Load Bitmap).");
  return false;
}

void SetCaption(Session& s, const std::string& text) {
  s.bmp.Caption = text;
  s.ui().Changed(Change::Form4Caption);
}

void SetPointer(Session& s, int pointer) {
  s.bmp.MousePointer = pointer;
  s.ui().Changed(Change::Form4);
}

void PutColumns(Session& s, const ImageStore& img, int x0, int x1) {
  BitmapUtilState& b = s.bmp;
  Bitmap& pic = b.Picture2;
  if (pic.Width() != img.w || pic.Height() != img.h) {
    SyncPicture2(s);
    pic = BitmapOf(img);
    x0 = 0;
    x1 = img.w - 1;
  } else {
    // The columns reach the picture when it is next looked at, a row at a
    // time: copying them one by one down the rows would cost as much again
    // as the pass itself.
    if (b.PutSource && b.PutSource != &img) SyncPicture2(s);
    b.PutSource = &img;
    b.PutX0 = std::min(b.PutX0, x0);
    b.PutX1 = std::max(b.PutX1, x1);
  }
  if (b.ColumnsPut) b.ColumnsPut(x0, x1);
}

void PutAll(Session& s, const ImageStore& img) {
  BitmapUtilState& b = s.bmp;
  b.PutSource = nullptr;
  b.PutX0 = INT_MAX;
  b.PutX1 = -1;
  b.Picture2 = BitmapOf(img);
  s.ui().Changed(Change::Form4Picture2);
}

bool SavePicture(Session& s, const Bitmap& bm, const std::string& path) {
  std::string err;
  if (WriteBmpFile(path, bm, &err)) return true;
  s.MsgBox("The picture could not be saved: " + err);
  return false;
}

}  // namespace bmu

using namespace bmu;

void SyncPicture2(Session& s) {
  BitmapUtilState& b = s.bmp;
  const ImageStore* img = b.PutSource;
  if (img && b.PutX0 <= b.PutX1 && b.Picture2.Width() == img->w && b.Picture2.Height() == img->h) {
    const int x0 = std::max(b.PutX0, 0), x1 = std::min(b.PutX1, img->w - 1);
    for (int y = 0; y < img->h; ++y) {
      uint32_t* row = b.Picture2.Row(y);
      const uint8_t* p = &img->bits[img->At(0, x0, y)];
      for (int x = x0; x <= x1; ++x, p += 4) row[x] = RGB(p[2], p[1], p[0]);
    }
  }
  b.PutSource = nullptr;
  b.PutX0 = INT_MAX;
  b.PutX1 = -1;
}

namespace {

// A number as the caption shows it: a blank in front unless it is negative.
std::string Num(double v) {
  char buf[40];
  std::snprintf(buf, sizeof buf, "%.7g", v);
  return (v < 0 ? "" : " ") + std::string(buf);
}
std::string Num(long long v) { return (v < 0 ? "" : " ") + std::to_string(v); }

// The pixel under the pointer, kept inside the picture.
void PointerPixel(const ImageStore& img, double X, double Y, int& x, int& y) {
  x = std::clamp(RoundInt(X), 0, std::max(img.w - 1, 0));
  y = std::clamp(RoundInt(Y), 0, std::max(img.h - 1, 0));
}

// Delete-and-save of a click's result: the picture goes to "picture2.bmp"
// (through a temporary file, so a failed save keeps the old one) and stays
// the picture of Picture2.
void SaveClickResult(Session& s) {
  const std::string path = s.App("picture2.bmp");
  if (SavePicture(s, s.bmp.Picture2, path)) s.MsgBox("Saved " + path);
  s.ui().Changed(Change::Form4Picture2);
}

void ExtremeContrast(Session& s) {
  BitmapUtilState& b = s.bmp;
  ImageStore& img = b.ImageBits;
  if (img.Empty()) LoadImageData(s);
  for (int x = 0; x < img.w; ++x) {
    ExtremeColumn(img, x);
    b.Caption = std::to_string(x);
    PutColumns(s, img, x, x);
  }
  PutAll(s, img);
  SaveClickResult(s);
}

// Colour replacement at the pointer; without a colour chosen, it asks for one.
void ReplaceAtPointer(Session& s, double X, double Y) {
  BitmapUtilState& b = s.bmp;
  if (!b.NewColourSet) {
    s.MsgBox("Choose the new colour first: type its red, green and blue values, then click on the old colour.");
    Form15_Load(s);
    s.ui().ShowForm(FormId::Form15);
    return;
  }
  ImageStore& img = b.ImageBits;
  if (img.Empty()) LoadImageData(s);
  if (img.Empty()) return;
  int px = 0, py = 0;
  PointerPixel(img, X, Y, px, py);
  const uint8_t r = img(2, px, py), g = img(1, px, py), bl = img(0, px, py);
  if (r == b.NewColour[0] || g == b.NewColour[1] || bl == b.NewColour[2]) {
    s.MsgBox("you can not replace the background colour. (colour in upper left corner)");
  } else {
    const uint32_t from = RGB(r, g, bl), to = RGB(b.NewColour[0], b.NewColour[1], b.NewColour[2]);
    for (int x = 0; x < img.w; ++x) {
      ReplaceColumn(img, x, from, to);
      b.Caption = std::to_string(x);
      PutColumns(s, img, x, x);
    }
    PutAll(s, img);
  }
  SaveClickResult(s);
}

// A click of the map conversion: a converted pixel changes its own hex; a
// new colour turns every pixel of it into hexes of the pen's terrain.
void ConvertAtPointer(Session& s, double X, double Y) {
  BitmapUtilState& b = s.bmp;
  Document& d = s.doc;
  ImageStore& img = b.ImageBits;
  if (img.Empty()) return;
  int px = 0, py = 0;
  PointerPixel(img, X, Y, px, py);
  const uint32_t colour = PixelRGB(img, px, py);
  const int t = s.ref.TypeOf(s.pens.CurTile);
  const uint32_t tc = TerrainColour(s.ref, t);
  auto done = [&](int x, int y) -> uint8_t* {
    if (x < 0 || y < 0 || x >= b.PixelDoneW || y >= b.PixelDoneH) return nullptr;
    return &b.PixelDone[static_cast<size_t>(y) * b.PixelDoneW + x];
  };
  auto setPixel = [&](int x, int y, uint32_t rgb) {
    img(0, x, y) = rgb & 255;
    img(1, x, y) = (rgb >> 8) & 255;
    img(2, x, y) = (rgb >> 16) & 255;
  };
  if (uint8_t* pd = done(px, py); pd && *pd != 0) {
    if (d.OnMap(px + 1, py + 1)) d.HexInfo(px + 1, py + 1, 0) = static_cast<uint8_t>(t);
    s.MapEdited(HexRect::Hex(px + 1, py + 1));
    setPixel(px, py, tc);
  } else if (colour != tc) {
    b.Busy = true;
    for (int x = 0; x < img.w; ++x)
      for (int y = 0; y < img.h; ++y) {
        s.forms.Label3Caption = std::to_string(x) + "," + std::to_string(y);
        if (b.ServeEvents) b.ServeEvents();
        if (PixelRGB(img, x, y) != colour) continue;
        setPixel(x, y, tc);
        if (!d.OnMap(x + 1, y + 1)) continue;  // another map was opened since
        d.HexInfo(x + 1, y + 1, 0) = s.ref.TypeOf(s.pens.CurTile);
        if (t > 1 && t != 5) randomtile(s);
        d.HexTile(x + 1, y + 1) = s.pens.CurTile;
        if (uint8_t* cell = done(x, y)) *cell = 1;
      }
    b.Busy = false;
    s.MapEdited({1, 1, img.w, img.h});
    s.ui().Changed(Change::Label3);
  }
  PutAll(s, img);
  LoadForm5(s);
  DrawStrategicMap(s);
  s.ui().Changed(Change::Form5);
  s.ui().ShowForm(FormId::Form5);
}

}  // namespace

// ---- The form ----------------------------------------------------------------

void Form4_Load(Session& s) {
  BitmapUtilState& b = s.bmp;
  b.Loaded = true;
  b.Caption = "Bitmap Utility";
  b.Picture2 = Bitmap();
  b.Picture2Visible = false;
  b.Picture3 = Bitmap();
  b.Picture3Visible = false;
  b.Frame1Visible = false;
  b.ExtremeArmed = 0;
  b.MousePointer = vbArrow;
  b.HScroll1 = {0, 0, 0, 1, 20};
  b.VScroll1 = {0, 0, 0, 1, 10};
  // The menu says what the mode is, also when it was left on before.
  b.mMapEditModeCaption = b.MapEditMode == 1 ? "Map Edit Mode (ON)" : "Map Edit Mode (OFF)";
  s.ui().Changed(Change::Form4);
}

void Form4_Unload(Session& s) {
  BitmapUtilState& b = s.bmp;
  b.Loaded = false;
  b.Picture2 = Bitmap();
  b.Picture2Visible = false;
  b.Picture3 = Bitmap();
  b.Picture3Visible = false;
  b.ExtremeArmed = 0;
  b.Caption = "Bitmap Utility";
}

void FileExit_Click(Session& s) {
  s.pens.FromMapEdit = 0;
  Form4_Unload(s);
  s.ui().Changed(Change::Form4Unload);
}

void Form4_Activate(Session& s) {
  s.bmp.Frame1Visible = false;
  s.ui().Changed(Change::Form4);
}

void Form4_ScrollRanges(Session& s, int frameW, int frameH) {
  BitmapUtilState& b = s.bmp;
  const int pw = b.Picture2Visible ? b.Picture2.Width() : 0, ph = b.Picture2Visible ? b.Picture2.Height() : 0;
  b.HScroll1.Min = b.VScroll1.Min = 0;
  b.HScroll1.Max = pw - frameW;
  b.VScroll1.Max = ph - frameH;
  b.HScroll1.LargeChange = 20;
  b.VScroll1.LargeChange = 10;
  b.HScroll1.Value = std::clamp(b.HScroll1.Value, 0, std::max(0, b.HScroll1.Max));
  b.VScroll1.Value = std::clamp(b.VScroll1.Value, 0, std::max(0, b.VScroll1.Max));
}

void Form4_LoadBitmap_Click(Session& s) { s.ed.hooks.ShowFileDialog(s, 4, ".bmp"); }

void BitmapDialogLoad(Session& s, const std::string& name, const std::string& previousDlgFile) {
  DialogState& g = s.ed.dlg;
  if (name.empty()) {
    g.DlgFile = previousDlgFile;
    s.MsgBox("No file name given.");
    return;
  }
  std::string bitmapName = name, path = g.DlgFile;
  const std::string tail = name.size() >= 3 ? name.substr(name.size() - 3) : name;
  if (tail != "BMP" && tail != "bmp") {
    bitmapName += ".bmp";
    path += ".bmp";
  }
  if (!LoadBitmapFile(s, path, bitmapName)) g.DlgFile = previousDlgFile;
}

bool LoadBitmapFile(Session& s, const std::string& path, const std::string& name) {
  Bitmap pic;
  std::string err;
  if (!ReadBmpFile(path, pic, &err)) {
    s.MsgBox("This file cannot be loaded as a bitmap; the picture stays as it was.\r" + err);
    return false;
  }
  // The utility holds a picture several times over (picture, pixel store, canvas).
  if (static_cast<long long>(pic.Width()) * pic.Height() > kMaxUtilityPixels) {
    s.MsgBox("This picture of " + std::to_string(pic.Width()) + " x " + std::to_string(pic.Height()) +
             " pixels is too large for the bitmap utility; the picture stays as it was.");
    return false;
  }
  BitmapUtilState& b = s.bmp;
  b.BitmapName = name;
  s.ed.dlg.DlgFile = path;
  b.Caption = name;
  b.Picture2 = std::move(pic);
  b.Picture2Visible = true;
  b.HScroll1.Value = b.VScroll1.Value = 0;
  LoadImageData(s);
  s.ui().Changed(Change::Form4Picture2);
  s.ui().Changed(Change::Form4);
  return true;
}

void LoadImageData(Session& s) {
  SyncPicture2(s);
  s.bmp.ImageBits = StoreOf(s.bmp.Picture2);
}

void ReduceColours(Session& s, int& width, int& height) {
  int16_t& v = s.pens.ColourCRV;
  if (v == 0) v = 4;
  LoadImageData(s);
  ImageStore& img = s.bmp.ImageBits;
  for (int x = 0; x < img.w; ++x) {
    ReduceColumn(img, x, v);
    PutColumns(s, img, x, x);
  }
  PutAll(s, img);
  width = img.w;
  height = img.h;
  SavePicture(s, s.bmp.Picture2, s.App("picture2.bmp"));
}

void menuRC_Click(Session& s) {
  if (!NeedPicture(s)) return;
  int w = 0, h = 0;
  ReduceColours(s, w, h);
}

void DominantColour(Session& s, int choice) {
  (void)choice;  // the three entries run the same filter
  if (!NeedPicture(s)) return;
  if (s.pens.ColourCRV == 0) s.pens.ColourCRV = 4;
  BitmapUtilState& b = s.bmp;
  b.Picture3 = b.Picture2;
  b.ImageBits = StoreOf(b.Picture3);
  ImageStore& img = b.ImageBits;
  for (int x = 0; x < img.w; ++x) {
    DominantColumn(img, x);
    PutColumns(s, img, x, x);
  }
  PutAll(s, img);
  SavePicture(s, b.Picture2, s.App("temp.bmp"));
}

void red_Click(Session& s) { DominantColour(s, 2); }
void green_Click(Session& s) { DominantColour(s, 1); }
void blue_Click(Session& s) { DominantColour(s, 0); }

void ReduceImage(Session& s) {
  if (!NeedPicture(s)) return;
  BitmapUtilState& b = s.bmp;
  if (b.ImageBits.Empty()) LoadImageData(s);
  const ImageStore& src = b.ImageBits;
  ImageStore half;
  half.w = src.w;
  half.h = src.h;
  half.bits.assign(src.bits.size(), 0);
  for (int x = 0; x < src.w; x += 2) {
    ShrinkColumn(src, half, x);
    // The first put shows the black of the whole new array.
    if (x == 0)
      PutColumns(s, half, 0, half.w - 1);
    else
      PutColumns(s, half, x / 2, x / 2);
  }
  PutAll(s, half);
  SavePicture(s, b.Picture2, s.App("picture2.bmp"));
}

void Shrink_Image_Click(Session& s) { ReduceImage(s); }

void mExtremis_Click(Session& s) {
  s.bmp.ExtremeArmed = s.bmp.ExtremeArmed == 0 ? 1 : 0;
  s.ui().Changed(Change::Form4);
}

void Replace_Colour_Click(Session& s) {
  if (!NeedPicture(s)) return;
  s.bmp.ReplaceMode = -1;
  LoadImageData(s);
  Form15_Load(s);
  s.ui().ShowForm(FormId::Form15);
}

void mMapEditMode_Click(Session& s) {
  BitmapUtilState& b = s.bmp;
  b.MapEditMode = b.MapEditMode == 0 ? 1 : 0;
  b.mMapEditModeCaption = b.MapEditMode == 1 ? "Map Edit Mode (ON)" : "Map Edit Mode (OFF)";
  s.ui().Changed(Change::Form4);
}

void ChangeCRV_Click(Session& s) {
  const int v = s.pens.ColourCRV;
  s.bmp.Text1 = (v < 0 ? "" : " ") + std::to_string(v);
  s.bmp.Frame1Visible = true;
  s.ui().Changed(Change::Form4);
}

void Form4_Label1_Click(Session& s) {
  s.pens.ColourCRV = ClampI16(RoundInt(Val(s.bmp.Text1)));
  s.bmp.Frame1Visible = false;
  s.ui().Changed(Change::Form4);
}

void Form4_Form_KeyDown(Session& s, int keyCode, int shift) {
  if (keyCode == key::B || keyCode == key::N) s.ed.hooks.MainKeyDown(s, keyCode, shift);
}

std::string PointerReadout(Session& s, double X, double Y) {
  const BitmapUtilState& b = s.bmp;
  std::string c = b.BitmapName + "(" + Num(X) + "," + Num(Y) + ")";
  long long d = RoundInt(Val(s.ed.f1.Text3[2]));
  if (d == 0) d = 1;
  const long long col = RoundInt(X) / d;
  const long long row = col % 2 == 0 ? RoundInt(Y - static_cast<double>(d / 2)) / d : RoundInt(Y) / d;
  c += "(" + Num(col) + "," + Num(row) + ")";
  const int x = RoundInt(X), y = RoundInt(Y);
  if (b.ImageBits.Inside(x, y)) {
    const ImageStore& img = b.ImageBits;
    c += Num(static_cast<long long>(img(2, x, y))) + Num(static_cast<long long>(img(1, x, y))) +
         Num(static_cast<long long>(img(0, x, y)));
  }
  if (x >= 0 && y >= 0 && x < b.PixelDoneW && y < b.PixelDoneH)
    c += Num(static_cast<long long>(b.PixelDone[static_cast<size_t>(y) * b.PixelDoneW + x]));
  return c;
}

void Form4_Picture2_MouseMove(Session& s, int, int, double X, double Y) { SetCaption(s, PointerReadout(s, X, Y)); }

void Form4_Picture2_MouseDown(Session& s, int button, int, double X, double Y) {
  BitmapUtilState& b = s.bmp;
  if (b.Busy || !b.Picture2Visible || b.Picture2.Empty()) return;
  Document& d = s.doc;
  Pens& p = s.pens;
  const double pw = static_cast<double>(b.Picture2.Width()) / d.MapMaxX;
  const double ph = static_cast<double>(b.Picture2.Height()) / d.MapMaxY;
  const int16_t col = ClampI16(RoundInt(X / pw));
  const int16_t row = ClampI16(col % 2 == 0 ? RoundInt((Y - ph / 2) / ph) : RoundInt(Y / ph));
  // A point that stands for no hex of the map (the picture and the map need
  // not match) leaves the map and the current hex alone.
  if (b.MapEditMode == 1 && d.OnMap(col, row)) {
    p.AutoTile = -1;
    p.CurHexX = col;
    p.CurHexY = row;
    if (button == 1) {
      s.ed.hooks.SetHex(s, col, row);
    } else {
      GoToHex(s, col, row);
      YellowHex(s, p.CurHexX, p.CurHexY);
    }
    s.ui().Changed(Change::Form1);
  }
  if (b.ExtremeArmed == 1) {
    b.ExtremeArmed = 0;
    ExtremeContrast(s);
    return;
  }
  if (b.ReplaceMode == -1) {
    ReplaceAtPointer(s, X, Y);
    return;
  }
  if (p.FromMapEdit == -1) ConvertAtPointer(s, X, Y);
  RedrawBuffers(s);
  YellowHex(s, p.CurHexX, p.CurHexY);
  s.ui().Changed(Change::Form1);
}

// ---- Form15 ------------------------------------------------------------------

void Form15_Load(Session& s) {
  Form15State& f = s.bmp.f15;
  f.Loaded = true;
  for (std::string& t : f.Text1) t.clear();
  f.Frame1Colour = 0xC0C0C0;
  s.ui().Changed(Change::Form15);
}

void Form15_Text1_Change(Session& s, int index) {
  (void)index;  // every box change takes all three
  BitmapUtilState& b = s.bmp;
  for (int i = 0; i < 3; ++i) b.NewColour[i] = static_cast<uint8_t>(std::clamp(RoundInt(Val(b.f15.Text1[i])), 0, 255));
  b.NewColourSet = true;
  b.f15.Frame1Colour = RGB(b.NewColour[0], b.NewColour[1], b.NewColour[2]);
  s.ui().Changed(Change::Form15);
}

void Form15_Command1_Click(Session& s) {
  s.MsgBox("Click on old colour to replace with new colour.");
  s.bmp.f15.Loaded = false;
  s.ui().Changed(Change::Form15);
}

}  // namespace kv

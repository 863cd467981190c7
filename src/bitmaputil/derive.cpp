// The files the utility derives from its picture (seasonal versions, sprite
// mask, icon strip, sectors), and the turning of a bitmap into a map.
#include <algorithm>

#include "bitmaputil/bitmaputil.h"
#include "bitmaputil/bitmaputil_internal.h"
#include "document/document_ops.h"
#include "platform/fileio.h"
#include "session.h"
#include "view/compose.h"
#include "view/geometry.h"
#include "view/render_api.h"
#include "view/scrolling.h"

namespace kv {

using namespace bmu;

namespace {

// DlgFile less its last `cut` characters, or "" (after saying why) when the
// name is too short to have them.
bool BaseName(Session& s, size_t cut, std::string& base) {
  const std::string& f = s.ed.dlg.DlgFile;
  if (f.size() < cut) {
    s.MsgBox("The bitmap's name \"" + f + "\" is too short to name the files made from it.");
    return false;
  }
  base = f.substr(0, f.size() - cut);
  return true;
}

// The work canvas as a pixel store (the latest picture read), changed by
// `pass`, put back into the canvas and saved to `target`.
bool CanvasStep(Session& s, const std::string& target, bool reload, void (*pass)(ImageStore&)) {
  BitmapUtilState& b = s.bmp;
  SetCaption(s, "Creating " + target);
  if (reload) b.Picture3 = b.Picture2;
  b.ImageBits = StoreOf(b.Picture3);
  pass(b.ImageBits);
  b.Picture3 = BitmapOf(b.ImageBits);
  return SavePicture(s, b.Picture3, target);
}

}  // namespace

void CreateSeasonalMaps_Click(Session& s) {
  std::string base;
  if (!NeedPicture(s) || !BaseName(s, 5, base)) return;
  SetPointer(s, vbHourglass);
  s.SetPointer(vbHourglass);
  struct Step {
    const char* suffix;
    bool reload;
    void (*pass)(ImageStore&);
  };
  static const Step steps[] = {
      {"d.bmp", true, DarkPass},   {"r.bmp", true, RedPass},       {"wl.bmp", true, WinterLightPass},
      {"wd.bmp", false, DarkPass}, {"ml.bmp", true, MudLightPass}, {"md.bmp", false, DarkPass},
  };
  bool ok = true;
  for (const Step& st : steps)
    if (!(ok = CanvasStep(s, base + st.suffix, st.reload, st.pass))) break;
  if (ok) SetCaption(s, "Bitmap Utilities");
  SetPointer(s, vbArrow);
  s.SetPointer(vbArrow);
}

void CreateMask_Click(Session& s) {
  std::string base;
  if (!NeedPicture(s) || !BaseName(s, 4, base)) return;
  SetPointer(s, vbHourglass);
  CanvasStep(s, base + "m.bmp", true, MaskPass);
  SetPointer(s, vbArrow);
}

void mPG2_Click(Session& s) {
  std::string base;
  if (!NeedPicture(s) || !BaseName(s, 4, base)) return;
  BitmapUtilState& b = s.bmp;
  SetPointer(s, vbHourglass);
  SetCaption(s, "Converting image to a Korvane! Icon");
  const std::string target = base + "_x.bmp";
  LoadImageData(s);
  IconPasses(b.ImageBits);
  PutAll(s, b.ImageBits);
  b.Picture3 = IconStrip(b.Picture2);
  b.Picture3Visible = true;
  s.ui().Changed(Change::Form4Picture3);
  if (SavePicture(s, b.Picture3, target)) s.MsgBox(target + " saved.");
  SetPointer(s, vbArrow);
}

void SaveSectors_Click(Session& s) {
  if (!NeedPicture(s)) return;
  BitmapUtilState& b = s.bmp;
  const std::string folder = s.App("newsectors");
  if (!DirExists(folder) && !MakeDirs(folder)) {
    s.MsgBox(SystemError());
    return;
  }
  b.Picture3.Create(300, 300);
  const int w = b.Picture2.Width(), h = b.Picture2.Height();
  for (int x = 0; x <= w; x += 300)
    for (int y = 0; y <= h; y += 300) {
      // Beyond the picture's edge a sector is black.
      b.Picture3.Fill(0);
      BitBlt(b.Picture3, 0, 0, 300, 300, &b.Picture2, x, y, SRCCOPY);
      std::string err;
      if (!WriteBmpFile(JoinPath(folder, SectorFileName(x, y)), b.Picture3, &err)) {
        s.MsgBox(err);
        return;
      }
    }
  s.ui().Changed(Change::Form4Picture3);
}

void bmp2map_Click(Session& s) {
  if (!NeedPicture(s)) return;
  BitmapUtilState& b = s.bmp;
  const long long pw = b.Picture2.Width(), ph = b.Picture2.Height();
  if (pw > kMaxMapIndex || ph > kMaxMapIndex || (pw + 1) * (ph + 1) > kMaxNewMapHexes) {
    s.MsgBox("This picture of " + std::to_string(pw) + " x " + std::to_string(ph) +
             " pixels is too large to become a map: one hex a pixel.");
    return;
  }
  s.pens.FromMapEdit = -1;
  int w = 0, h = 0;
  ReduceColours(s, w, h);
  Document& d = s.doc;
  d.MapMaxX = static_cast<int16_t>(w);
  d.MapMaxY = static_cast<int16_t>(h);
  d.MapFile = CutExt(b.BitmapName, 3, "map");
  d.MapPath = CutExt(s.ed.dlg.DlgFile, 3, "map");
  s.ed.hooks.NewMap(s);
  b.PixelDoneW = w + 1;
  b.PixelDoneH = h + 1;
  b.PixelDone.assign(static_cast<size_t>(b.PixelDoneW) * b.PixelDoneH, 0);
  s.ui().Changed(Change::Form1);
  s.ui().Changed(Change::Form4);
}

void GoToHex(Session& s, int16_t x, int16_t y) {
  Center_Hex(s, x, y);
  RedrawBuffers(s);
  BlueHex(s, x, y);
}

}  // namespace kv

#include "view/layout.h"

#include "view/mapview.h"

namespace kv {

void ClientSizeForScreen(int screenW, int screenH, int& scaleW, int& scaleH) {
  // A sizable frame of 4 pixels, a caption of 22 and a menu bar of 20.
  scaleW = screenW - 8;
  scaleH = screenH - 8 - 22 - 20;
}

MainLayout LayoutMainWindow(MapView& s, int W, int H, bool atLoad) {
  const RefData& r = s.ref;
  ViewState& v = s.view;
  MainLayout l;
  l.Text1 = {0, 0, Twips(975), Twips(375)};
  l.HScroll1.Height = Twips(255);
  l.VScroll1.Width = Twips(255);
  Rect& p = l.Picture1;
  p.Top = l.Text1.Top + l.Text1.Height;
  p.Left = r.ColPitch;
  p.Width = W - (r.ColPitch * 2 + l.VScroll1.Width);
  p.Width = (p.Width / r.ColPitch) * r.ColPitch + r.HexInset;
  p.Height = H - (l.HScroll1.Height + l.Text1.Height + r.RowPitch);
  p.Height = (p.Height / r.RowPitch) * r.RowPitch;
  p.Height += 4;
  p.Width += 5;
  v.ViewPixH = p.Height - kPictureBorder;
  v.ViewPixW = p.Width - kPictureBorder;
  v.ViewX = atLoad ? 0 : 1;
  v.ViewY = atLoad ? 0 : 1;
  v.ViewRows = static_cast<int16_t>(p.Height / r.RowPitch - 1);
  v.ViewCols = static_cast<int16_t>(p.Width / r.ColPitch - 1);
  l.HScroll1 = {p.Left, p.Top + p.Height, p.Width, l.HScroll1.Height};
  v.HScroll1.Min = 0;
  v.HScroll1.Max = s.doc.MapMaxX - v.ViewCols;
  v.HScroll1.SmallChange = 1;
  v.HScroll1.LargeChange = atLoad ? v.ViewCols : 10;
  l.Picture2 = {Twips(600), l.HScroll1.Top + l.HScroll1.Height, Twips(5460), Twips(810)};
  l.VScroll1 = {p.Left + p.Width, p.Top, l.VScroll1.Width, p.Height};
  v.VScroll1.Min = 0;
  v.VScroll1.Max = s.doc.MapMaxY - v.ViewRows;
  v.VScroll1.SmallChange = 1;
  v.VScroll1.LargeChange = atLoad ? v.ViewRows : 10;
  const int top = l.Text1.Top;
  l.Command1 = {l.Text1.Left + l.Text1.Width, top, Twips(855), Twips(375)};
  l.Command3 = {l.Command1.Left + l.Command1.Width, top, Twips(975), Twips(375)};
  l.Command5 = {l.Command3.Left + l.Command3.Width, top, Twips(1215), Twips(375)};
  l.Command6 = {l.Command5.Left + l.Command5.Width, top, Twips(1935), Twips(375)};
  l.Command2 = {l.Command6.Left + l.Command6.Width, top, Twips(1215), Twips(375)};
  l.Label3 = {l.Command2.Left + l.Command2.Width + 8, l.Command6.Top, Twips(615), Twips(195)};
  l.Label1 = {l.Picture2.Left + l.Picture2.Width, l.Picture2.Top, Twips(465), Twips(195)};
  l.Label2 = {l.Label1.Left, l.Label1.Top + l.Label1.Height, Twips(780), Twips(195)};
  l.Text2 = {l.Label1.Left + l.Label1.Width + 40, l.Label1.Top, Twips(1815), Twips(285)};
  l.Command4 = {l.Text2.Left + l.Text2.Width, l.Text2.Top, Twips(855), Twips(255)};
  l.Command7 = {l.Command4.Left, l.Command4.Top + l.Command4.Height, Twips(855), Twips(255)};
  return l;
}

void LayoutLoadTail(MainLayout& l) {
  l.Text3_0 = {l.Command4.Left + l.Command4.Width, l.Command4.Top, Twips(735), Twips(285)};
  l.Text3_1 = {l.Command7.Left + l.Command7.Width, l.Command7.Top, Twips(735), Twips(285)};
  l.Command8 = {l.Text3_0.Left + l.Text3_0.Width, l.Text3_0.Top, Twips(735), Twips(255)};
  l.Label4 = {l.Text2.Left, l.Text2.Top + l.Text2.Height, Twips(750), Twips(195)};
  l.Text3_2 = {l.Command8.Left, l.Command8.Top + l.Command8.Height, Twips(735), Twips(285)};
  l.Label5 = {l.Text3_2.Left, l.Text3_2.Top + l.Text3_2.Height, Twips(480), Twips(195)};
  l.Label6 = {l.Command8.Left + l.Command8.Width, l.Command8.Top, Twips(660), Twips(195)};
  l.Text4 = {l.Label6.Left, l.Label6.Top + l.Label6.Height, Twips(735), Twips(285)};
  l.Command9 = {l.Label6.Left + l.Label6.Width, l.Label6.Top, Twips(1215), Twips(255)};
}

}  // namespace kv

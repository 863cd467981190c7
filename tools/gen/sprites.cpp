// Sprite sheets (each on black, with a mask that is white where the sprite
// is transparent) and the flags.
#include <algorithm>
#include <cmath>
#include <functional>

#include "art.h"
#include "gen.h"

namespace kvgen {
namespace {

constexpr uint32_t kWhite = 0xFFFFFF;

// A sprite sheet and its mask, built together: every pixel drawn is opaque.
struct Sheet {
  kv::Bitmap sprite, mask;
  Sheet(int w, int h) : sprite(w, h), mask(w, h) { mask.Fill(kWhite); }
  void Put(int x, int y, uint32_t rgb) {
    if (x < 0 || y < 0 || x >= sprite.Width() || y >= sprite.Height()) return;
    if (rgb == 0) rgb = 0x080808;  // black would read as transparent
    sprite.SetPixel(x, y, rgb);
    mask.SetPixel(x, y, 0);
  }
  bool Write(const std::string& dir, const std::string& name, const std::string& maskName, std::string* err) {
    return kv::WriteBmpFile(dir + "/" + name, sprite, err) && kv::WriteBmpFile(dir + "/" + maskName, mask, err);
  }
};

// Pixels of the hexagon's boundary along side s (the outermost ring of the
// hexagon's pixels that faces that side).
bool OnSide(int s, int x, int y) {
  if (!InHex(x, y)) return false;
  bool out = false;
  for (auto [dx, dy] : {std::pair{1, 0}, {-1, 0}, {0, 1}, {0, -1}, {1, 1}, {-1, -1}, {1, -1}, {-1, 1}})
    out = out || !InHex(x + dx, y + dy);
  if (!out) return false;
  // the side whose edge the pixel faces most
  int best = 1;
  double bd = -1e9;
  for (int k = 1; k <= 6; ++k) {
    double d = SideDepth(k, x, y);
    if (d > bd) bd = d, best = k;
  }
  return best == s;
}

// Pixels within `width` of the hexagon's edge along side s.
bool NearSide(int s, int x, int y, double width) {
  if (!InHex(x, y)) return false;
  double d = SideDepth(s, x, y);
  for (int k = 1; k <= 6; ++k)
    if (k != s && SideDepth(k, x, y) > d) return false;
  P m = SideMid(s), n = SideNormal(s);
  double ap = (m.x - kCentre.x) * n.x + (m.y - kCentre.y) * n.y;
  return (1 - d) * ap < width;
}

void Line(Sheet& sh, int ox, int oy, double x0, double y0, double x1, double y1, double r, uint32_t rgb) {
  const int steps = 200;
  for (int i = 0; i <= steps; ++i) {
    double x = x0 + (x1 - x0) * i / steps, y = y0 + (y1 - y0) * i / steps;
    for (int yy = static_cast<int>(std::floor(y - r)); yy <= static_cast<int>(std::ceil(y + r)); ++yy)
      for (int xx = static_cast<int>(std::floor(x - r)); xx <= static_cast<int>(std::ceil(x + r)); ++xx)
        if (InHex(xx, yy) && (xx - x) * (xx - x) + (yy - y) * (yy - y) <= r * r) sh.Put(ox + xx, oy + yy, rgb);
  }
}

// A road or rail line from the centre out across side s.
void SpokeEnd(int s, double& x, double& y) {
  P m = SideMid(s), n = SideNormal(s);
  x = m.x + n.x;
  y = m.y + n.y;
}

void Star(Sheet& sh, int ox, int oy, double cx, double cy, double r, uint32_t fill, uint32_t rim) {
  // A five-pointed star by the even-odd rule on its outline.
  P pts[10];
  for (int i = 0; i < 10; ++i) {
    double a = -M_PI / 2 + i * M_PI / 5, rr = (i % 2 == 0) ? r : r * 0.42;
    pts[i] = {cx + rr * std::cos(a), cy + rr * std::sin(a)};
  }
  auto inside = [&](double x, double y) {
    bool in = false;
    for (int i = 0, j = 9; i < 10; j = i++)
      if ((pts[i].y > y) != (pts[j].y > y) &&
          x < (pts[j].x - pts[i].x) * (y - pts[i].y) / (pts[j].y - pts[i].y) + pts[i].x)
        in = !in;
    return in;
  };
  for (int y = static_cast<int>(cy - r - 2); y <= static_cast<int>(cy + r + 2); ++y)
    for (int x = static_cast<int>(cx - r - 2); x <= static_cast<int>(cx + r + 2); ++x) {
      if (inside(x, y))
        sh.Put(ox + x, oy + y, fill);
      else if (inside(x + 1, y) || inside(x - 1, y) || inside(x, y + 1) || inside(x, y - 1))
        sh.Put(ox + x, oy + y, rim);
    }
}

}  // namespace

bool WriteSprites(const std::string& dir, std::string* err) {
  // The knock-out mask: black inside the hexagon, white outside.
  kv::Bitmap black(kW, kH);
  black.Fill(kWhite);
  for (int y = 0; y < kH; ++y)
    for (int x = HexLeft(y); x <= HexRight(y); ++x) black.SetPixel(x, y, 0);
  if (!kv::WriteBmpFile(dir + "/blackhex.bmp", black, err)) return false;

  // Hex outline: the three upper sides only, so that neighbours share one line.
  Sheet outline(kW, kH);
  for (int y = 0; y < kH; ++y)
    for (int x = 0; x < kW; ++x)
      if (OnSide(4, x, y) || OnSide(5, x, y) || OnSide(6, x, y)) outline.Put(x, y, 0x303030);
  if (!outline.Write(dir, "hexp.bmp", "hexm.bmp", err)) return false;

  // Whole-hex overlays: 5 primary objective (also the yellow mark), 7 the
  // blue mark, 8 the oil resource. Other cells are empty.
  Sheet fx(9 * kW, kH);
  {
    const int ox = 5 * kW;
    for (int y = 0; y < kH; ++y)
      for (int x = 0; x < kW; ++x)
        for (int s = 1; s <= 6; ++s)
          if (NearSide(s, x, y, 2.6)) fx.Put(ox + x, y, (x + y) % 5 == 0 ? 0xFFF4A0 : 0xF0C818);
    Star(fx, ox, 0, 30, 15, 7.5, 0xF0C818, 0x6A4A00);
  }
  {
    const int ox = 7 * kW;
    for (int y = 0; y < kH; ++y)
      for (int x = 0; x < kW; ++x) {
        bool rim = false;
        for (int s = 1; s <= 6; ++s) rim = rim || NearSide(s, x, y, 2.0);
        if (rim)
          fx.Put(ox + x, y, 0x2060FF);
        else if (InHex(x, y) && y % 2 == 0 && (x + y) % 4 == 0)
          fx.Put(ox + x, y, 0x3C7CFF);
      }
  }
  {
    const int ox = 8 * kW;
    // A derrick above the flag's place, and a drop of oil.
    const uint32_t steel = 0x3A3A40, hi = 0x8A8A96;
    Line(fx, ox, 0, 24, 27, 30, 5, 0.7, steel);
    Line(fx, ox, 0, 36, 27, 30, 5, 0.7, steel);
    Line(fx, ox, 0, 26, 20, 34, 20, 0.6, steel);
    Line(fx, ox, 0, 27, 14, 33, 14, 0.6, steel);
    Line(fx, ox, 0, 26, 20, 33, 14, 0.5, hi);
    Line(fx, ox, 0, 34, 20, 27, 14, 0.5, hi);
    Line(fx, ox, 0, 22, 27, 38, 27, 0.8, steel);
    for (int y = 0; y < kH; ++y)
      for (int x = 0; x < kW; ++x) {
        double dx = x - 42.0, dy = y - 22.0;
        bool drop = (dy >= 0 && dx * dx + dy * dy <= 9.5) || (dy < 0 && dy > -7 && std::abs(dx) <= (dy + 7) * 0.45);
        if (drop) fx.Put(ox + x, y, dx + dy < -2 ? 0x50505A : 0x18181C);
      }
  }
  if (!fx.Write(dir, "fx2.bmp", "fx2m.bmp", err)) return false;

  // Side strips: road (shown while sides are edited) and railroad lines.
  Sheet roads(6 * kW, kH), rail(6 * kW, kH);
  kv::Bitmap strip(6 * kW, kH);
  for (int s = 1; s <= 6; ++s) {
    const int ox = (s - 1) * kW;
    double ex, ey;
    SpokeEnd(s, ex, ey);
    Line(roads, ox, 0, kCentre.x, kCentre.y, ex, ey, 2.2, 0xE04010);
    Line(roads, ox, 0, kCentre.x, kCentre.y, ex, ey, 0.9, 0xFFB040);
    // Rails: two dark rails with light sleepers across them.
    P d{ex - kCentre.x, ey - kCentre.y};
    double l = std::hypot(d.x, d.y);
    P u{d.x / l, d.y / l}, v{-u.y, u.x};
    for (double t = 2; t < l; t += 3.2)
      Line(rail, ox, 0, kCentre.x + u.x * t - v.x * 3.2, kCentre.y + u.y * t - v.y * 3.2,
           kCentre.x + u.x * t + v.x * 3.2, kCentre.y + u.y * t + v.y * 3.2, 0.55, 0x8C6C46);
    for (double off : {-1.6, 1.6})
      Line(rail, ox, 0, kCentre.x + v.x * off, kCentre.y + v.y * off, ex + v.x * off, ey + v.y * off, 0.55, 0x26262A);
    // The strip shown to the user: the side on a pale hexagon.
    for (int y = 0; y < kH; ++y)
      for (int x = 0; x < kW; ++x) {
        uint32_t c = 0xD8D4C8;
        if (!InHex(x, y))
          c = 0x707070;
        else if (OnSide(1, x, y) || OnSide(2, x, y) || OnSide(3, x, y) || OnSide(4, x, y) || OnSide(5, x, y) ||
                 OnSide(6, x, y))
          c = 0x404040;
        if (InHex(x, y) && NearSide(s, x, y, 3)) c = 0xE8A020;
        strip.SetPixel(ox + x, y, c);
      }
  }
  for (int y = 0; y < kH; ++y)
    for (int x = 0; x < 6 * kW; ++x)
      if (roads.mask.GetPixel(x, y) == 0) strip.SetPixel(x, y, roads.sprite.GetPixel(x, y));
  if (!roads.Write(dir, "roads.bmp", "roadsm.bmp", err)) return false;
  if (!rail.Write(dir, "rr.bmp", "rrm.bmp", err)) return false;
  if (!kv::WriteBmpFile(dir + "/roadsp.bmp", strip, err)) return false;

  // Contours: code c has bit s - 1 set when the hex across side s is not
  // lower; a line is drawn along every side whose neighbour lies lower.
  Sheet contours(16 * kW, 4 * kH);
  for (int c = 0; c < 64; ++c) {
    const int ox = (c % 16) * kW, oy = (c / 16) * kH;
    for (int y = 0; y < kH; ++y)
      for (int x = 0; x < kW; ++x)
        for (int s = 1; s <= 6; ++s) {
          const bool lower = c == 0 || c == 63 || !(c & (1 << (s - 1)));
          if (!lower) continue;
          if (NearSide(s, x, y, 1.0))
            contours.Put(ox + x, oy + y, 0x6A3E16);
          else if (NearSide(s, x, y, 2.0))
            contours.Put(ox + x, oy + y, 0xA8743E);
        }
  }
  if (!contours.Write(dir, "contours.bmp", "contoursm.bmp", err)) return false;

  // Toggle marks of the tile data screens: off and on.
  kv::Bitmap c0(16, 16), c1(16, 16);
  c0.Fill(0xC0C0C0);
  c1.Fill(0xC0C0C0);
  for (int y = 0; y < 16; ++y)
    for (int x = 0; x < 16; ++x) {
      double d = std::hypot(x - 7.5, y - 7.5);
      if (d <= 6.5 && d > 5.2) c0.SetPixel(x, y, 0x606060);
      if (d <= 6.5) c1.SetPixel(x, y, d > 5.2 ? 0x185818 : (x + y < 12 ? 0x60D060 : 0x28A028));
    }
  return kv::WriteBmpFile(dir + "/c0.bmp", c0, err) && kv::WriteBmpFile(dir + "/c1.bmp", c1, err);
}

// ---- Flags -----------------------------------------------------------------

void DrawFlag(const NationDef& n, kv::Bitmap& out, int w, int h) {
  out.Create(w, h);
  const uint32_t a = n.colour[0], b = n.colour[1], c = n.colour[2];
  // Each pixel is judged at its centre in the unit square of the flag.
  auto at = [&](double u, double v) -> uint32_t {
    const std::string& d = n.design;
    if (d == "hbands") return v < 1.0 / 3 ? a : v < 2.0 / 3 ? b : c;
    if (d == "vbands") return u < 1.0 / 3 ? a : u < 2.0 / 3 ? b : c;
    if (d == "cross") {
      double cu = 0.36, cv = 0.5;
      if (std::abs(u - cu) < 0.07 || std::abs(v - cv) < 0.1) return c;
      if (std::abs(u - cu) < 0.13 || std::abs(v - cv) < 0.19) return b;
      return a;
    }
    if (d == "saltire") return (std::abs(u - v) < 0.14 || std::abs(u + v - 1) < 0.14) ? b : a;
    if (d == "canton") {
      if (u < 0.45 && v < 0.5) return b;
      return v > 0.7 ? c : a;
    }
    if (d == "disc") {
      double r = std::hypot((u - 0.5) * w / h, v - 0.5);
      return r < 0.26 ? b : r < 0.34 ? c : a;
    }
    if (d == "diagonal") {
      double t = u + (1 - v) - 1;  // 0 on the diagonal from lower hoist to upper fly... rising
      if (std::abs(t) < 0.12) return c;
      return t < 0 ? a : b;
    }
    if (d == "chevron") {
      if (u < 0.42 * (1 - std::abs(v - 0.5) * 2)) return c;
      return v < 0.5 ? a : b;
    }
    if (d == "border") {
      double bu = 0.1, bv = 0.15;
      if (u < bu || u > 1 - bu || v < bv || v > 1 - bv) return b;
      double x = (u - 0.5) * w / h, y = v - 0.5;
      double ang = std::atan2(y, x), r = std::hypot(x, y);
      double k = std::cos(2.5 * (ang + M_PI / 2));  // five points
      double lim = 0.13 + 0.12 * std::max(0.0, k);
      return r < lim ? c : a;
    }
    if (d == "quarters") {
      double du = std::abs(u - 0.5) * w / h, dv = std::abs(v - 0.5);
      if (du + dv < 0.26) return c;
      return ((u < 0.5) == (v < 0.5)) ? a : b;
    }
    return a;
  };
  for (int y = 0; y < h; ++y)
    for (int x = 0; x < w; ++x) {
      uint32_t col = at((x + 0.5) / w, (y + 0.5) / h);
      if (x == 0 || y == 0 || x == w - 1 || y == h - 1) {
        // a thin darker edge so that light flags stand out on light ground
        int r = (col >> 16) & 255, g = (col >> 8) & 255, bl = col & 255;
        col = kv::RGB(r * 2 / 3, g * 2 / 3, bl * 2 / 3);
      }
      out.SetPixel(x, y, col);
    }
}

void DrawBlankFlag(kv::Bitmap& out, int w, int h) {
  out.Create(w, h);
  out.Fill(0xE8E8E4);
  out.Rectangle(0, 0, w - 1, h - 1, 0x808080);
}

}  // namespace kvgen

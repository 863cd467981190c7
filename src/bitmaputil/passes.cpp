// The pixel passes of the bitmap utility, on a plain pixel store.
#include <cstdio>
#include <cstring>

#include "bitmaputil/bitmaputil.h"

namespace kv {

ImageStore StoreOf(const Bitmap& bm) {
  ImageStore img;
  img.w = bm.Width();
  img.h = bm.Height();
  img.bits = bm.GetBits();
  return img;
}

Bitmap BitmapOf(const ImageStore& img) {
  Bitmap bm(img.w, img.h);
  bm.SetBits(img.bits);
  // The fourth byte of a pixel is not part of its colour.
  for (uint32_t& p : bm.Pixels()) p &= 0xFFFFFFu;
  return bm;
}

void ReduceColumn(ImageStore& img, int x, int v) {
  for (int y = 0; y < img.h; ++y) {
    uint8_t* p = &img(0, x, y);
    for (int c = 0; c < 3; ++c) p[c] = static_cast<uint8_t>(p[c] / v * v);
  }
}

void DominantColumn(ImageStore& img, int x) {
  for (int y = 0; y < img.h; ++y) {
    uint8_t* p = &img(0, x, y);
    uint8_t &b = p[0], &g = p[1], &r = p[2];
    // Each test sees what the one before left.
    if (b >= r && b >= g) r = g = 0;
    if (g >= r && g >= b) r = b = 0;
    if (r >= g && r >= b) g = b = 0;
  }
}

namespace {

// sum / n rounded to nearest, halves to even (n is 1, 2 or 4).
int MeanHalfEven(int sum, int n) {
  int q = sum / n, r = sum % n;
  if (2 * r > n || (2 * r == n && (q & 1))) ++q;
  return q;
}

}  // namespace

void ShrinkColumn(const ImageStore& src, ImageStore& dst, int x) {
  const int x2 = x + 1 < src.w ? x + 1 : x;
  for (int y = 0; y < src.h; y += 2) {
    const int y2 = y + 1 < src.h ? y + 1 : y;
    const int n = (x2 - x + 1) * (y2 - y + 1);
    for (int c = 0; c < 3; ++c) {
      int sum = 0;
      for (int xx = x; xx <= x2; ++xx)
        for (int yy = y; yy <= y2; ++yy) sum += src(c, xx, yy);
      dst(c, x / 2, y / 2) = static_cast<uint8_t>(MeanHalfEven(sum, n));
    }
  }
}

void ExtremeColumn(ImageStore& img, int x) {
  for (int y = 0; y < img.h; ++y) {
    uint8_t* p = &img(0, x, y);
    for (int c = 2; c >= 0; --c) p[c] = p[c] < 127 ? 0 : 255;
  }
}

void ReplaceColumn(ImageStore& img, int x, uint32_t from, uint32_t to) {
  const uint8_t fb = from & 255, fg = (from >> 8) & 255, fr = (from >> 16) & 255;
  const uint8_t tb = to & 255, tg = (to >> 8) & 255, tr = (to >> 16) & 255;
  for (int y = 0; y < img.h; ++y) {
    uint8_t* p = &img(0, x, y);
    if (p[0] == fb && p[1] == fg && p[2] == fr) {
      p[0] = tb;
      p[1] = tg;
      p[2] = tr;
    }
  }
}

const std::array<uint8_t, 256>& DarkTable() {
  static const std::array<uint8_t, 256> t = [] {
    std::array<uint8_t, 256> a{};
    for (int i = 0; i < 256; ++i) a[i] = static_cast<uint8_t>(ByteMe(i * 3 / 4));  // Int(i * 0.75)
    return a;
  }();
  return t;
}

const std::array<uint8_t, 256>& LightTable() {
  static const std::array<uint8_t, 256> t = [] {
    std::array<uint8_t, 256> a{};
    for (int i = 0; i < 256; ++i) a[i] = static_cast<uint8_t>(ByteMe(i * 9 / 4));  // Int(i * 2.25)
    return a;
  }();
  return t;
}

const uint32_t kMudColours[7] = {0xB3B373, 0xEFDB7F, 0xE3C777, 0xCFCF77, 0xDFDB7B, 0xDBBF6F, 0xEFEBA3};

namespace {

template <class F>
void EachPixel(ImageStore& img, F f) {
  for (int x = 0; x < img.w; ++x)
    for (int y = 0; y < img.h; ++y) f(&img(0, x, y));
}

bool Is(const uint8_t* p, uint32_t rgb) {
  return p[0] == (rgb & 255) && p[1] == ((rgb >> 8) & 255) && p[2] == ((rgb >> 16) & 255);
}

void Through(uint8_t* p, const std::array<uint8_t, 256>& t) {
  for (int c = 2; c >= 0; --c) p[c] = t[p[c]];
}

void SetRGB(uint8_t* p, uint32_t rgb) {
  p[0] = rgb & 255;
  p[1] = (rgb >> 8) & 255;
  p[2] = (rgb >> 16) & 255;
}

}  // namespace

void DarkPass(ImageStore& img) {
  const auto& dark = DarkTable();
  EachPixel(img, [&](uint8_t* p) { Through(p, dark); });
}

void RedPass(ImageStore& img) {
  EachPixel(img, [](uint8_t* p) { p[1] = p[0] = 0; });
}

void WinterLightPass(ImageStore& img) {
  const auto& light = LightTable();
  EachPixel(img, [&](uint8_t* p) {
    if (Is(p, kWinterColour)) Through(p, light);
  });
}

void MudLightPass(ImageStore& img) {
  const auto& dark = DarkTable();
  EachPixel(img, [&](uint8_t* p) {
    for (uint32_t mud : kMudColours)
      if (Is(p, mud)) {
        Through(p, dark);
        Through(p, dark);
      }
  });
}

void MaskPass(ImageStore& img) {
  EachPixel(img, [](uint8_t* p) { SetRGB(p, Is(p, 0) ? 0xFFFFFFu : 0u); });
}

void IconPasses(ImageStore& img) {
  if (img.Empty()) return;
  const uint32_t back = PixelRGB(img, 0, 0);
  EachPixel(img, [](uint8_t* p) {
    if (Is(p, 0)) SetRGB(p, 0x010101u);
  });
  // A black background has just become (1, 1, 1): this finds nothing then.
  EachPixel(img, [back](uint8_t* p) {
    if (Is(p, back)) SetRGB(p, 0u);
  });
}

Bitmap IconStrip(const Bitmap& src) {
  Bitmap strip(400, 50);
  StretchBlt(strip, 0, 0, 80, 50, src, 160, 50, -80, 50, SRCCOPY);
  BitBlt(strip, 80, 0, 80, 50, &src, 0, 0, SRCCOPY);
  BitBlt(strip, 160, 0, 80, 50, &src, 0, 50, SRCCOPY);
  BitBlt(strip, 240, 0, 80, 50, &src, 160, 50, SRCCOPY);
  BitBlt(strip, 320, 0, 80, 50, &src, 160, 100, SRCCOPY);
  return strip;
}

std::string SectorFileName(int x, int y) {
  char buf[32];
  std::snprintf(buf, sizeof buf, "%02d%02d.bmp", x / 300, y / 300);
  return buf;
}

int SectorCount(int size) { return size < 0 ? 0 : size / 300 + 1; }

}  // namespace kv

// The application icon: a hex of open ground with the flag of the first
// nation of the catalogue on its pole. The picture is a list of convex
// polygons in a 256 x 256 square, written as SVG as it stands and as PNG
// pictures with transparency at the sizes of the icon theme, each pixel the
// mean of 8 x 8 samples.
#include <cmath>
#include <cstdio>
#include <fstream>

#include "art.h"
#include "gen.h"

#define STB_IMAGE_WRITE_STATIC
#define STB_IMAGE_WRITE_IMPLEMENTATION
#if defined(__GNUC__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wmissing-field-initializers"
#pragma GCC diagnostic ignored "-Wunused-function"
#endif
#include <stb/stb_image_write.h>
#if defined(__GNUC__)
#pragma GCC diagnostic pop
#endif

namespace fs = std::filesystem;

namespace kvgen {

namespace {

constexpr double kCanvas = 256;
constexpr uint32_t kGround = 0x96C05C;     // open ground
constexpr uint32_t kGroundLit = 0xA9CF70;  // its upper half, in the light
constexpr uint32_t kHexEdge = 0x3A5522;    // the hex's rim
constexpr uint32_t kPole = 0x3B2F24;
constexpr uint32_t kFlagEdge = 0x20252B;

// The hexagon of a cell (art.h), scaled into the square: 240 x 200 units.
P HexCorner(int i, double inset) {
  const P c = Corner(i);
  const double k = 4.0, cx = 128, cy = 150;
  const double dx = (c.x - kCentre.x) * k, dy = (c.y - kCentre.y) * k;
  const double r = std::hypot(dx, dy);
  return {cx + dx * (r - inset) / r, cy + dy * (r - inset) / r};
}

IconShape Rect(double x0, double y0, double x1, double y1, uint32_t rgb) {
  return {{{x0, y0}, {x1, y0}, {x1, y1}, {x0, y1}}, rgb};
}

// The flag in the rectangle (x0, y0)-(x1, y1), as the flag files draw it.
bool FlagShapes(const NationDef& n, double x0, double y0, double x1, double y1, std::vector<IconShape>& out,
                std::string* err) {
  const double w = x1 - x0, h = y1 - y0;
  const uint32_t a = n.colour[0], b = n.colour[1], c = n.colour[2];
  auto band = [&](double u0, double v0, double u1, double v1, uint32_t rgb) {
    out.push_back(Rect(x0 + u0 * w, y0 + v0 * h, x0 + u1 * w, y0 + v1 * h, rgb));
  };
  if (n.design == "hbands") {
    band(0, 0, 1, 1.0 / 3, a);
    band(0, 1.0 / 3, 1, 2.0 / 3, b);
    band(0, 2.0 / 3, 1, 1, c);
  } else if (n.design == "vbands") {
    band(0, 0, 1.0 / 3, 1, a);
    band(1.0 / 3, 0, 2.0 / 3, 1, b);
    band(2.0 / 3, 0, 1, 1, c);
  } else if (n.design == "cross") {
    const double cu = 0.36, cv = 0.5;
    band(0, 0, 1, 1, a);
    band(cu - 0.13, 0, cu + 0.13, 1, b);
    band(0, cv - 0.19, 1, cv + 0.19, b);
    band(cu - 0.07, 0, cu + 0.07, 1, c);
    band(0, cv - 0.1, 1, cv + 0.1, c);
  } else {
    *err = "the icon draws the flag of the first nation, whose design " + n.design +
           " is not one of hbands, vbands, cross";
    return false;
  }
  return true;
}

bool Inside(const IconShape& s, double x, double y) {
  int sign = 0;
  const size_t n = s.points.size();
  for (size_t i = 0; i < n; ++i) {
    const P& p = s.points[i];
    const P& q = s.points[(i + 1) % n];
    const double cross = (q.x - p.x) * (y - p.y) - (q.y - p.y) * (x - p.x);
    const int sg = cross > 0 ? 1 : cross < 0 ? -1 : 0;
    if (sg == 0) continue;
    if (sign == 0) sign = sg;
    if (sg != sign) return false;
  }
  return true;
}

}  // namespace

bool IconShapes(const NationDef& flag, std::vector<IconShape>& out, std::string* err) {
  out.clear();
  IconShape rim, body, lit;
  for (int i = 0; i < 6; ++i) {
    rim.points.push_back(HexCorner(i, 0));
    body.points.push_back(HexCorner(i, 9));
  }
  rim.rgb = kHexEdge;
  body.rgb = kGround;
  // The upper half of the body: its left corner, the top edge, its right corner.
  lit.points = {body.points[3], body.points[4], body.points[5], body.points[0]};
  lit.rgb = kGroundLit;
  out.push_back(rim);
  out.push_back(body);
  out.push_back(lit);
  // The pole stands in the middle of the hex; the flag flies from its top.
  const double fx0 = 96, fy0 = 22, fx1 = 222, fy1 = 106;
  out.push_back(Rect(84, 14, 98, 172, kPole));
  out.push_back(Rect(fx0 - 2, fy0 - 4, fx1 + 4, fy1 + 4, kFlagEdge));
  return FlagShapes(flag, fx0, fy0, fx1, fy1, out, err);
}

std::vector<uint8_t> RasterIcon(const std::vector<IconShape>& shapes, int size) {
  constexpr int kSamples = 8;
  std::vector<uint8_t> rgba(static_cast<size_t>(size) * size * 4, 0);
  const double unit = kCanvas / size;
  for (int y = 0; y < size; ++y)
    for (int x = 0; x < size; ++x) {
      double r = 0, g = 0, b = 0;
      int covered = 0;
      for (int sy = 0; sy < kSamples; ++sy)
        for (int sx = 0; sx < kSamples; ++sx) {
          const double px = (x + (sx + 0.5) / kSamples) * unit, py = (y + (sy + 0.5) / kSamples) * unit;
          for (size_t i = shapes.size(); i-- > 0;) {
            if (!Inside(shapes[i], px, py)) continue;
            r += (shapes[i].rgb >> 16) & 255;
            g += (shapes[i].rgb >> 8) & 255;
            b += shapes[i].rgb & 255;
            ++covered;
            break;
          }
        }
      if (covered == 0) continue;
      uint8_t* p = &rgba[(static_cast<size_t>(y) * size + x) * 4];
      p[0] = static_cast<uint8_t>(std::lround(r / covered));
      p[1] = static_cast<uint8_t>(std::lround(g / covered));
      p[2] = static_cast<uint8_t>(std::lround(b / covered));
      p[3] = static_cast<uint8_t>(std::lround(255.0 * covered / (kSamples * kSamples)));
    }
  return rgba;
}

std::string IconSvg(const std::vector<IconShape>& shapes) {
  std::string svg =
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
      "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"256\" height=\"256\" viewBox=\"0 0 256 256\">\n";
  for (const IconShape& s : shapes) {
    svg += "  <polygon points=\"";
    char buf[64];
    for (size_t i = 0; i < s.points.size(); ++i) {
      std::snprintf(buf, sizeof buf, "%s%.2f,%.2f", i ? " " : "", s.points[i].x, s.points[i].y);
      svg += buf;
    }
    std::snprintf(buf, sizeof buf, "\" fill=\"#%06X\"/>\n", s.rgb & 0xFFFFFFu);
    svg += buf;
  }
  return svg + "</svg>\n";
}

bool WriteIcons(const fs::path& out, const std::string& name, const fs::path& src, std::string* err) {
  std::vector<NationDef> nations;
  if (!ReadNationDefs((src / "nations.txt").string(), nations, err)) return false;
  std::vector<IconShape> shapes;
  if (!IconShapes(nations.front(), shapes, err)) return false;
  std::error_code ec;
  for (int size : kIconSizes) {
    const fs::path dir = out / "hicolor" / (std::to_string(size) + "x" + std::to_string(size)) / "apps";
    fs::create_directories(dir, ec);
    const std::vector<uint8_t> rgba = RasterIcon(shapes, size);
    const std::string path = (dir / (name + ".png")).string();
    if (!stbi_write_png(path.c_str(), size, size, 4, rgba.data(), size * 4)) {
      *err = "cannot write " + path;
      return false;
    }
  }
  const fs::path dir = out / "hicolor" / "scalable" / "apps";
  fs::create_directories(dir, ec);
  std::ofstream svg(dir / (name + ".svg"), std::ios::binary | std::ios::trunc);
  svg << IconSvg(shapes);
  if (!svg) {
    *err = "cannot write " + (dir / (name + ".svg")).string();
    return false;
  }
  return true;
}

}  // namespace kvgen

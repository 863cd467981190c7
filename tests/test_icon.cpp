// The application icon as the generator writes it for the icon theme: every
// size, transparent around the hex, the colours of the ground and of the
// first nation's flag where they belong, and an SVG of the same shapes.
#include <cstdlib>
#include <fstream>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <sys/wait.h>

#include <gtest/gtest.h>

#include "testutil.h"

#define STB_IMAGE_STATIC
#define STB_IMAGE_IMPLEMENTATION
#define STBI_ONLY_PNG
#if defined(__GNUC__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wmissing-field-initializers"
#pragma GCC diagnostic ignored "-Wunused-function"
#pragma GCC diagnostic ignored "-Wshadow=local"
#endif
#include <stb/stb_image.h>
#if defined(__GNUC__)
#pragma GCC diagnostic pop
#endif

#ifdef KV_GEN_DATA_EXE

namespace {

const char* kId = "org.korvane.MapEditor";

struct Png {
  int w = 0, h = 0;
  std::vector<uint8_t> rgba;
  uint32_t Rgb(int x, int y) const {
    const uint8_t* p = &rgba[(static_cast<size_t>(y) * w + x) * 4];
    return (uint32_t{p[0]} << 16) | (uint32_t{p[1]} << 8) | p[2];
  }
  int Alpha(int x, int y) const { return rgba[(static_cast<size_t>(y) * w + x) * 4 + 3]; }
};

bool ReadPng(const std::string& path, Png& out) {
  int n = 0;
  stbi_uc* px = stbi_load(path.c_str(), &out.w, &out.h, &n, 4);
  if (!px) return false;
  out.rgba.assign(px, px + static_cast<size_t>(out.w) * out.h * 4);
  stbi_image_free(px);
  return true;
}

std::string Text(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream s;
  s << in.rdbuf();
  return s.str();
}

int RunGen(const std::string& out, const std::string& sources, const std::string& errFile) {
  const std::string cmd =
      std::string(KV_GEN_DATA_EXE) + " --icons '" + out + "' " + kId + " '" + sources + "' 2>'" + errFile + "'";
  const int rc = std::system(cmd.c_str());
  return WIFEXITED(rc) ? WEXITSTATUS(rc) : -1;
}

// The three colours of the first nation of a catalogue.
std::vector<uint32_t> FirstNationColours(const std::string& catalogue) {
  std::istringstream in(Text(catalogue));
  std::string line;
  while (std::getline(in, line)) {
    if (line.empty() || line[0] == '#') continue;
    std::istringstream f(line);
    std::string name, number, design, c[3];
    f >> name >> number >> design >> c[0] >> c[1] >> c[2];
    return {static_cast<uint32_t>(std::stoul(c[0], nullptr, 16)), static_cast<uint32_t>(std::stoul(c[1], nullptr, 16)),
            static_cast<uint32_t>(std::stoul(c[2], nullptr, 16))};
  }
  return {};
}

int Diff(uint32_t a, uint32_t b) {
  int d = 0;
  for (int s = 0; s < 24; s += 8)
    d = std::max(d, std::abs(static_cast<int>((a >> s) & 255) - static_cast<int>((b >> s) & 255)));
  return d;
}

}  // namespace

TEST(Icon, EverySizeIsTransparentAroundTheHexAndShowsGroundAndFlag) {
  kvtest::TempDir out;
  const std::string sources = std::string(KV_SOURCE_DIR) + "/tools/data";
  ASSERT_EQ(RunGen(out.path(), sources, out / "err.txt"), 0) << Text(out / "err.txt");
  const std::vector<uint32_t> flag = FirstNationColours(sources + "/nations.txt");
  ASSERT_EQ(flag.size(), 3u);
  for (int size : {16, 22, 24, 32, 48, 64, 128, 256}) {
    SCOPED_TRACE(size);
    const std::string dir = std::to_string(size) + "x" + std::to_string(size);
    Png png;
    ASSERT_TRUE(ReadPng(out / ("hicolor/" + dir + "/apps/" + kId + ".png"), png));
    ASSERT_EQ(png.w, size);
    ASSERT_EQ(png.h, size);
    const int last = size - 1;
    // Outside the hex and the flag nothing is drawn: the corners of the
    // square and the middle of its left and right edges below the flag.
    for (auto [x, y] : {std::pair{0, 0}, {last, 0}, {0, last}, {last, last}, {0, size / 5}, {last, size / 5}})
      EXPECT_EQ(png.Alpha(x, y), 0) << x << "," << y;
    auto at = [&](double u, double v) { return std::pair{static_cast<int>(u * size), static_cast<int>(v * size)}; };
    // The lower half of the hex is open ground, fully opaque.
    const auto [gx, gy] = at(0.62, 0.80);
    EXPECT_EQ(png.Alpha(gx, gy), 255);
    EXPECT_LE(Diff(png.Rgb(gx, gy), 0x96C05C), 2) << std::hex << png.Rgb(gx, gy);
    if (size < 48) continue;
    // The flag's field at the fly's lower corner has the nation's first colour.
    const auto [fx, fy] = at(0.82, 0.38);
    EXPECT_EQ(png.Alpha(fx, fy), 255);
    EXPECT_LE(Diff(png.Rgb(fx, fy), flag[0]), 2) << std::hex << png.Rgb(fx, fy);
  }
  // The edges are smoothed: the largest picture has partly covered pixels.
  Png big;
  ASSERT_TRUE(ReadPng(out / (std::string("hicolor/256x256/apps/") + kId + ".png"), big));
  int partial = 0;
  for (int y = 0; y < 256; ++y)
    for (int x = 0; x < 256; ++x) partial += big.Alpha(x, y) > 0 && big.Alpha(x, y) < 255;
  EXPECT_GT(partial, 200);

  // The SVG holds the same shapes: each of its colours is a colour of the
  // 256-pixel picture, and the flag's three colours are among them.
  const std::string svg = Text(out / (std::string("hicolor/scalable/apps/") + kId + ".svg"));
  EXPECT_NE(svg.find("viewBox=\"0 0 256 256\""), std::string::npos);
  std::set<uint32_t> pictureColours;
  for (int y = 0; y < 256; ++y)
    for (int x = 0; x < 256; ++x)
      if (big.Alpha(x, y) == 255) pictureColours.insert(big.Rgb(x, y));
  std::set<uint32_t> svgColours;
  const std::regex fill("<polygon points=\"[0-9., ]+\" fill=\"#([0-9A-F]{6})\"/>");
  for (auto it = std::sregex_iterator(svg.begin(), svg.end(), fill); it != std::sregex_iterator(); ++it)
    svgColours.insert(static_cast<uint32_t>(std::stoul((*it)[1].str(), nullptr, 16)));
  EXPECT_GE(svgColours.size(), 7u);
  for (uint32_t c : svgColours) EXPECT_TRUE(pictureColours.count(c)) << std::hex << c;
  for (uint32_t c : flag) EXPECT_TRUE(svgColours.count(c)) << std::hex << c;
}

TEST(Icon, AFlagDesignTheIconCannotDrawIsRefusedByName) {
  kvtest::TempDir src, out;
  kvtest::WriteText(src / "nations.txt", "Corthia 3 disc 0B3D91 FFD200 E8E8E8\n");
  EXPECT_EQ(RunGen(out.path(), src.path(), out / "err.txt"), 1);
  EXPECT_NE(Text(out / "err.txt").find("design disc"), std::string::npos) << Text(out / "err.txt");
}

#endif  // KV_GEN_DATA_EXE

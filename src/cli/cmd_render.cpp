// korvane-map render MAP OUT [--x X --y Y --w W --h H] and jumpmap MAP OUT:
// a section of the map, or its jump map, written as a BMP or PNG picture.
#include <QImage>
#include <cstdio>
#include <cstdlib>

#include "cli/mapsession.h"
#include "jumpmap/jumpmap.h"
#include "jumpmap/mapimage.h"
#include "platform/bitmap.h"

namespace kv::cli {

namespace {

bool EndsWith(const std::string& s, const std::string& tail) {
  if (s.size() < tail.size()) return false;
  for (size_t i = 0; i < tail.size(); ++i)
    if (std::tolower(static_cast<unsigned char>(s[s.size() - tail.size() + i])) != tail[i]) return false;
  return true;
}

// BMP through our own writer; PNG through Qt's image writer.
bool WritePicture(const Bitmap& b, const std::string& path) {
  if (EndsWith(path, ".png")) {
    QImage img(reinterpret_cast<const uchar*>(b.Pixels().data()), b.Width(), b.Height(), b.Width() * 4,
               QImage::Format_RGB32);
    if (!img.save(QString::fromStdString(path), "PNG")) {
      std::fprintf(stderr, "korvane-map: cannot write %s\n", path.c_str());
      return false;
    }
    return true;
  }
  std::string err;
  if (!WriteBmpFile(path, b, &err)) {
    std::fprintf(stderr, "korvane-map: %s\n", err.c_str());
    return false;
  }
  return true;
}

bool ParseInt(const std::string& text, int& out) {
  char* end = nullptr;
  long v = std::strtol(text.c_str(), &end, 10);
  if (text.empty() || *end != '\0' || v < -2147483647L || v > 2147483647L) return false;
  out = static_cast<int>(v);
  return true;
}

}  // namespace

int CmdRender(const Options& o) {
  if (o.args.size() < 2) {
    std::fprintf(stderr, "korvane-map: render MAP OUT [--x X --y Y --w W --h H]\n");
    return 2;
  }
  int x = 0, y = 0, w = -1, h = -1;
  for (size_t i = 2; i < o.args.size(); i += 2) {
    const std::string& k = o.args[i];
    int* target = k == "--x" ? &x : k == "--y" ? &y : k == "--w" ? &w : k == "--h" ? &h : nullptr;
    if (!target || i + 1 >= o.args.size() || !ParseInt(o.args[i + 1], *target)) {
      std::fprintf(stderr, "korvane-map: render: bad option %s (expected --x, --y, --w or --h with a whole number)\n",
                   k.c_str());
      return 2;
    }
  }
  MapSession m;
  if (!OpenMapSession(o, m)) return 1;
  Session& s = *m.s;
  // By default the whole map from (x, y): the section's loops include both ends.
  if (w < 0) w = s.doc.MapMaxX - x;
  if (h < 0) h = s.doc.MapMaxY - y;
  Bitmap out;
  std::string err;
  if (!RenderMapImage(s, x, y, w, h, out, &err)) {
    std::fprintf(stderr, "korvane-map: %s\n", err.c_str());
    return 1;
  }
  if (!WritePicture(out, o.args[1])) return 1;
  std::printf("%s: %d x %d pixels\n", o.args[1].c_str(), out.Width(), out.Height());
  return 0;
}

int CmdJumpmap(const Options& o) {
  MapSession m;
  if (!OpenMapSession(o, m)) return 1;
  Session& s = *m.s;
  LoadForm5(s);
  DrawStrategicMap(s);
  if (!WritePicture(s.jump.Picture2, o.args[1])) return 1;
  std::printf("%s: %d x %d pixels, scale %s\n", o.args[1].c_str(), s.jump.Picture2.Width(), s.jump.Picture2.Height(),
              s.jump.Caption.c_str());
  return 0;
}

}  // namespace kv::cli

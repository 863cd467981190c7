// korvane-map render MAP OUT [--x X --y Y --w W --h H] and jumpmap MAP OUT:
// a section of the map, or its jump map, written as a BMP or PNG picture.
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <unistd.h>

#include "cli/mapsession.h"
#include "jumpmap/jumpmap.h"
#include "jumpmap/mapimage.h"
#include "jumpmap/mappicture.h"
#include "platform/bitmap.h"

namespace kv::cli {

namespace {

bool EndsWith(const std::string& s, const std::string& tail) {
  if (s.size() < tail.size()) return false;
  for (size_t i = 0; i < tail.size(); ++i)
    if (std::tolower(static_cast<unsigned char>(s[s.size() - tail.size() + i])) != tail[i]) return false;
  return true;
}

bool ParseInt(const std::string& text, int& out) {
  char* end = nullptr;
  long v = std::strtol(text.c_str(), &end, 10);
  if (text.empty() || *end != '\0' || v < -2147483647L || v > 2147483647L) return false;
  out = static_cast<int>(v);
  return true;
}

// The progress line on standard error: nothing for a picture done within a
// second; then the share of rows written, on one line rewritten in place on
// a terminal, a line every tenth otherwise.
class Progress {
 public:
  explicit Progress(std::string name) : name_(std::move(name)), tty_(::isatty(2) != 0) {}
  ~Progress() {
    if (shown_ && tty_) std::fputc('\n', stderr);
  }
  void operator()(int64_t done, int64_t rows) {
    const auto now = std::chrono::steady_clock::now();
    if (!shown_ && now - start_ < std::chrono::seconds(1)) return;
    const int pct = rows > 0 ? static_cast<int>(done * 100 / rows) : 100;
    if (tty_) {
      if (shown_ && pct == last_) return;
      std::fprintf(stderr, "\rkorvane-map: writing %s: %3d %% (%lld of %lld rows)", name_.c_str(), pct,
                   static_cast<long long>(done), static_cast<long long>(rows));
    } else {
      if (shown_ && pct / 10 == last_ / 10 && done != rows) return;
      std::fprintf(stderr, "korvane-map: writing %s: %d %% (%lld of %lld rows)\n", name_.c_str(), pct,
                   static_cast<long long>(done), static_cast<long long>(rows));
    }
    std::fflush(stderr);
    shown_ = true;
    last_ = pct;
  }

 private:
  std::string name_;
  bool tty_;
  bool shown_ = false;
  int last_ = -1;
  std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

// The options every picture command takes; a section's own are left to the
// caller through `extra`.
struct PictureArgs {
  PictureOptions pic;
  bool quiet = false;
};

// Reads --compression, --threads and --quiet from args[from..]; anything else
// goes to extra (with its value) when extra is given. False after saying why.
bool ParsePictureArgs(const std::vector<std::string>& args, size_t from, PictureArgs& p,
                      std::vector<std::pair<std::string, std::string>>* extra, const char* cmd) {
  for (size_t i = from; i < args.size(); ++i) {
    const std::string& k = args[i];
    if (k == "--quiet") {
      p.quiet = true;
      continue;
    }
    const bool hasValue = i + 1 < args.size();
    if (k == "--compression") {
      if (!hasValue || !ParsePngCompression(args[i + 1], p.pic.compression)) {
        std::fprintf(stderr, "korvane-map: %s: --compression takes fast, default or best\n", cmd);
        return false;
      }
    } else if (k == "--threads") {
      if (!hasValue || !ParseInt(args[i + 1], p.pic.threads) || p.pic.threads < 1 || p.pic.threads > 64) {
        std::fprintf(stderr, "korvane-map: %s: --threads takes a whole number from 1 to 64\n", cmd);
        return false;
      }
    } else if (extra && hasValue) {
      extra->emplace_back(k, args[i + 1]);
    } else {
      std::fprintf(stderr, "korvane-map: %s: bad option %s\n", cmd, k.c_str());
      return false;
    }
    ++i;
  }
  // Pictures are written whole under a temporary name and renamed into place,
  // without waiting for the disk: see the README ("Map pictures").
  p.pic.sync = false;
  return true;
}

// A picture in memory (the jump map), as BMP or PNG by the name's ending.
bool WritePicture(const Bitmap& b, const std::string& path, const PictureOptions& o) {
  std::string err;
  const bool ok = EndsWith(path, ".png") ? WritePngFile(path, b, o, &err) : WriteBmpPictureFile(path, b, o, &err);
  if (!ok) std::fprintf(stderr, "korvane-map: %s\n", err.c_str());
  return ok;
}

}  // namespace

int CmdRender(const Options& o) {
  if (o.args.size() < 2) {
    std::fprintf(stderr, "korvane-map: render MAP OUT [--x X --y Y --w W --h H] [--compression LEVEL] [--quiet]\n");
    return 2;
  }
  int x = 0, y = 0, w = -1, h = -1;
  PictureArgs p;
  std::vector<std::pair<std::string, std::string>> section;
  if (!ParsePictureArgs(o.args, 2, p, &section, "render")) return 2;
  for (const auto& [k, v] : section) {
    int* target = k == "--x" ? &x : k == "--y" ? &y : k == "--w" ? &w : k == "--h" ? &h : nullptr;
    if (!target || !ParseInt(v, *target)) {
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
  const std::string& out = o.args[1];
  std::string err;
  if (EndsWith(out, ".png")) {
    // Drawn and written strip by strip: no limit but the format's.
    Progress progress(out);
    if (!p.quiet) p.pic.progress = [&progress](int64_t done, int64_t rows) { progress(done, rows); };
    if (!ExportMapPng(s.doc, s.ref, s.sprites, x, y, w, h, out, p.pic, &err)) {
      std::fprintf(stderr, "korvane-map: %s\n", err.c_str());
      return 1;
    }
  } else {
    // BMP: drawn whole, within the format's 16-bit sides.
    Bitmap pic;
    if (!RenderMapImage(s, x, y, w, h, pic, &err)) {
      std::fprintf(stderr, "korvane-map: %s\n", err.c_str());
      return 1;
    }
    if (!WritePicture(pic, out, p.pic)) return 1;
  }
  std::printf("%s: %lld x %lld pixels\n", out.c_str(), static_cast<long long>(int64_t{w} * s.ref.ColPitch),
              static_cast<long long>(int64_t{h} * s.ref.RowPitch));
  return 0;
}

int CmdJumpmap(const Options& o) {
  PictureArgs p;
  if (!ParsePictureArgs(o.args, 2, p, nullptr, "jumpmap")) return 2;
  MapSession m;
  if (!OpenMapSession(o, m)) return 1;
  Session& s = *m.s;
  LoadForm5(s);
  DrawStrategicMap(s);
  if (!WritePicture(s.jump.Picture2, o.args[1], p.pic)) return 1;
  std::printf("%s: %d x %d pixels, scale %s\n", o.args[1].c_str(), s.jump.Picture2.Width(), s.jump.Picture2.Height(),
              s.jump.Caption.c_str());
  return 0;
}

}  // namespace kv::cli

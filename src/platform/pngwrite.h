// PNG pictures: 8-bit RGB, written strip by strip through zlib. Each strip
// of rows is compressed as its own piece of the picture's one deflate stream
// (ended on a byte boundary with a sync flush), so that the pieces can be
// compressed on several cores at once and written out in order; memory holds
// a few strips, whatever the picture's size.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "platform/bytes.h"

namespace kv {

class Bitmap;

enum class PngCompression { Fast, Default, Best };

// "fast", "default" or "best"; false for anything else.
bool ParsePngCompression(const std::string& text, PngCompression& out);

// The largest side a PNG picture may have, and the widest picture this writer
// takes (a row of RGB within 1 GiB).
constexpr int64_t kPngMaxSide = 0x7FFFFFFF;
constexpr int64_t kPngMaxWidth = ((int64_t{1} << 30) - 1) / 3;

class PngWriter {
 public:
  // A picture of width x height pixels (1 to kPngMaxWidth, 1 to kPngMaxSide)
  // into out; any other size fails at once.
  // threads: how many may compress at once (0: one per core). Strips are
  // handed to other threads only when the picture has several of them.
  PngWriter(ByteSink& out, int64_t width, int64_t height, PngCompression level, int threads = 0);
  ~PngWriter();
  PngWriter(const PngWriter&) = delete;
  PngWriter& operator=(const PngWriter&) = delete;

  // Rows a strip has (the last may have fewer): about 4 MB of pixels.
  int StripRows() const;
  // The buffer for the next strip: width x rows of the strip, from the row
  // after the previous strip. Its content is undefined; fill every pixel
  // (0x00RRGGBB words, as in Bitmap), then call EndStrip. Null once every
  // row has been given or after a failure.
  Bitmap* BeginStrip();
  // The strip from BeginStrip is complete; it is compressed (here or on
  // another thread) and written out in its turn. False after a failure.
  bool EndStrip();
  // Rows given so far.
  int64_t RowsDone() const;
  // Waits for every strip and writes the end of the file. False if a write
  // failed, if rows are missing, or if compression failed.
  bool Finish();
  bool ok() const;

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

// A whole picture at once.
bool WritePng(const Bitmap& b, ByteSink& out, PngCompression level, int threads = 0);

}  // namespace kv

// Pictures of the map for the command line: a section of the map drawn and
// written strip by strip, so that memory stays bounded whatever the size.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "platform/pngwrite.h"

namespace kv {

class Bitmap;
struct Document;
struct RefData;
struct SpriteBank;

struct PictureOptions {
  PngCompression compression = PngCompression::Fast;
  int threads = 0;   // compressing threads, 0: one per core
  bool sync = true;  // flush the file to disk before it is renamed into place
  // Called after each strip with the rows written so far and the picture's
  // height.
  std::function<void(int64_t done, int64_t rows)> progress;
};

// The section of w x h hexes from (x, y), as RenderMapImage draws it, as a PNG
// file at path (written whole under a temporary name, then renamed). No side
// limit but the format's. False with a reason, and no file, on failure.
bool ExportMapPng(const Document& d, const RefData& r, const SpriteBank& b, int x, int y, int w, int h,
                  const std::string& path, const PictureOptions& o, std::string* err);

// A picture in memory as a PNG file, written the same way.
bool WritePngFile(const std::string& path, const Bitmap& pic, const PictureOptions& o, std::string* err);
// The same as a BMP file (24 bits a pixel, as WriteBmp writes it); o.sync
// is the only option that applies.
bool WriteBmpPictureFile(const std::string& path, const Bitmap& pic, const PictureOptions& o, std::string* err);

}  // namespace kv

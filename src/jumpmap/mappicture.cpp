#include "jumpmap/mappicture.h"

#include "document/document.h"
#include "jumpmap/mapimage.h"
#include "platform/bitmap.h"
#include "platform/fileio.h"
#include "refdata/refdata.h"
#include "view/spritebank.h"

namespace kv {

namespace {

// Completes the file, or says why not (the temporary file is removed).
bool Close(SafeFileWriter& f, bool written, std::string* err) {
  if (written && f.commit()) return true;
  if (err) *err = f.ok() ? "cannot write the picture " + f.Path() : f.error();
  f.abandon();
  return false;
}

}  // namespace

bool ExportMapPng(const Document& d, const RefData& r, const SpriteBank& b, int x, int y, int w, int h,
                  const std::string& path, const PictureOptions& o, std::string* err) {
  if (!CheckMapSection(d, r, x, y, w, h, kPngMaxSide, err)) return false;
  const int64_t pw = int64_t{w} * r.ColPitch, ph = int64_t{h} * r.RowPitch;
  SafeFileWriter f(path);
  f.SetSync(o.sync);
  if (!f.ok()) return Close(f, false, err);
  PngWriter png(f, pw, ph, o.compression, o.threads);
  while (Bitmap* strip = png.BeginStrip()) {
    DrawMapSection(d, r, b, x, y, w, h, png.RowsDone(), *strip);
    if (!png.EndStrip()) break;
    if (o.progress) o.progress(png.RowsDone(), ph);
  }
  return Close(f, png.Finish(), err);
}

bool WritePngFile(const std::string& path, const Bitmap& pic, const PictureOptions& o, std::string* err) {
  SafeFileWriter f(path);
  f.SetSync(o.sync);
  if (!f.ok()) return Close(f, false, err);
  return Close(f, WritePng(pic, f, o.compression, o.threads), err);
}

bool WriteBmpPictureFile(const std::string& path, const Bitmap& pic, const PictureOptions& o, std::string* err) {
  SafeFileWriter f(path);
  f.SetSync(o.sync);
  if (!f.ok()) return Close(f, false, err);
  WriteBmp(pic, f);
  return Close(f, f.ok(), err);
}

}  // namespace kv

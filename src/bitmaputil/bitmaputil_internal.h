// Helpers shared by the files of the bitmap utility.
#pragma once

#include <cstdint>
#include <string>

#include "bitmaputil/bitmaputil_state.h"

namespace kv {

struct Session;

namespace bmu {

// Rounds to nearest, halves to even, kept within +-2e9 (0 for NaN).
int RoundInt(double v);
int16_t ClampI16(long long v);
// True when a picture is loaded; otherwise says so.
bool NeedPicture(Session& s);
void SetCaption(Session& s, const std::string& text);
void SetPointer(Session& s, int pointer);
// Puts columns x0..x1 of `img` into Picture2 and shows them; `img` must stay
// alive until the pass ends with PutAll (or SyncPicture2 has run).
void PutColumns(Session& s, const ImageStore& img, int x0, int x1);
// Puts the whole of `img` into Picture2.
void PutAll(Session& s, const ImageStore& img);
// Saves a picture as a BMP file; a failure is shown and gives false.
bool SavePicture(Session& s, const Bitmap& bm, const std::string& path);

}  // namespace bmu
}  // namespace kv

// Field-by-field reading of the text data files: a field ends at a comma or at
// the end of a line, blanks in front of it are skipped, and it may stand in
// double quotes. Field numbers count over the whole file, whatever the lines.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace kv {

class FieldReader {
 public:
  explicit FieldReader(std::span<const uint8_t> text) : t_(text) {}
  // False once no field is left.
  bool AtEnd();
  // The next field as text; "" past the end (and ok() turns false).
  std::string Text();
  // The number at the start of the next field, 0 when there is none.
  double Number();
  // The same, rounded to nearest (halves to even) and kept within the range.
  int32_t Int(int32_t lo, int32_t hi);
  void Skip(int count = 1) {
    for (int i = 0; i < count; ++i) Text();
  }
  // False after a read past the last field.
  bool ok() const { return ok_; }
  size_t FieldsRead() const { return fields_; }

 private:
  std::span<const uint8_t> t_;
  size_t p_ = 0;
  bool after_line_end_ = true;
  bool ok_ = true;
  size_t fields_ = 0;
};

// The number at the beginning of a text: optional blanks and sign, digits, a
// fraction; 0 when there is none.
double Val(const std::string& text);
// Rounds to nearest with halves to even.
double RoundHalfEven(double v);

}  // namespace kv

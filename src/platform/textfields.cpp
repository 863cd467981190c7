#include "platform/textfields.h"

#include <algorithm>
#include <cmath>

namespace kv {

namespace {
bool IsBlank(uint8_t c) { return c == ' ' || c == '\t'; }
bool IsLineEnd(uint8_t c) { return c == '\r' || c == '\n'; }
}  // namespace

bool FieldReader::AtEnd() {
  // Skip what cannot start a field: blanks, and empty lines after a line end.
  size_t q = p_;
  bool after = after_line_end_;
  while (q < t_.size()) {
    if (IsBlank(t_[q])) {
      ++q;
    } else if (IsLineEnd(t_[q]) && after) {
      ++q;
    } else if (t_[q] == 0x1A) {  // end-of-file mark of old text files
      return true;
    } else {
      return false;
    }
  }
  return true;
}

std::string FieldReader::Text() {
  if (AtEnd()) {
    ok_ = false;
    p_ = t_.size();
    return {};
  }
  while (p_ < t_.size() && (IsBlank(t_[p_]) || (after_line_end_ && IsLineEnd(t_[p_])))) ++p_;
  std::string out;
  bool quoted = p_ < t_.size() && t_[p_] == '"';
  if (quoted) {
    ++p_;
    while (p_ < t_.size() && t_[p_] != '"') out.push_back(static_cast<char>(t_[p_++]));
    if (p_ < t_.size()) ++p_;  // closing quote
    // Whatever follows the quote up to the separator is dropped.
    while (p_ < t_.size() && t_[p_] != ',' && !IsLineEnd(t_[p_])) ++p_;
  } else {
    while (p_ < t_.size() && t_[p_] != ',' && !IsLineEnd(t_[p_])) out.push_back(static_cast<char>(t_[p_++]));
    while (!out.empty() && IsBlank(static_cast<uint8_t>(out.back()))) out.pop_back();
  }
  // Consume the separator: a comma, or one line end (CR LF counts as one).
  after_line_end_ = false;
  if (p_ < t_.size()) {
    if (t_[p_] == ',') {
      ++p_;
    } else if (t_[p_] == '\r') {
      ++p_;
      if (p_ < t_.size() && t_[p_] == '\n') ++p_;
      after_line_end_ = true;
    } else if (t_[p_] == '\n') {
      ++p_;
      after_line_end_ = true;
    }
  }
  ++fields_;
  return out;
}

double Val(const std::string& s) {
  size_t i = 0;
  while (i < s.size() && IsBlank(static_cast<uint8_t>(s[i]))) ++i;
  bool neg = false;
  if (i < s.size() && (s[i] == '-' || s[i] == '+')) neg = s[i++] == '-';
  double v = 0;
  bool any = false;
  while (i < s.size() && s[i] >= '0' && s[i] <= '9') {
    v = v * 10 + (s[i++] - '0');
    any = true;
  }
  if (i < s.size() && s[i] == '.') {
    ++i;
    double f = 0.1;
    while (i < s.size() && s[i] >= '0' && s[i] <= '9') {
      v += (s[i++] - '0') * f;
      f /= 10;
      any = true;
    }
  }
  if (!any) return 0;
  return neg ? -v : v;
}

double RoundHalfEven(double v) { return std::nearbyint(v); }

double FieldReader::Number() { return Val(Text()); }

int32_t FieldReader::Int(int32_t lo, int32_t hi) {
  double v = RoundHalfEven(Number());
  if (std::isnan(v)) return 0;
  return static_cast<int32_t>(std::clamp(v, static_cast<double>(lo), static_cast<double>(hi)));
}

}  // namespace kv

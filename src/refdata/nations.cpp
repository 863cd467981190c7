#include "refdata/nations.h"

#include <algorithm>

#include "platform/fileio.h"
#include "platform/textfields.h"
#include "refdata/refdata.h"

namespace kv {

bool ParseNations(std::span<const uint8_t> text, NationList& out, std::string* err) {
  FieldReader f(text);
  double n = f.Number();
  if (!f.ok() || n < 0 || n > 32767) {
    if (err) *err = "the number of nations is missing or out of range";
    return false;
  }
  int count = static_cast<int>(RoundHalfEven(n));
  // Every nation takes two fields, each at least one separator long.
  if (static_cast<size_t>(count) * 2 > text.size()) {
    if (err) *err = "it names " + std::to_string(count) + " nations but is too short to hold them";
    return false;
  }
  NationList l;
  l.NationCount = static_cast<int16_t>(count);
  l.NationName.assign(count + 1, "");
  l.NationCode.assign(count + 1, 0);
  for (int i = 1; i <= count; ++i) {
    l.NationName[i] = f.Text();
    l.NationCode[i] = static_cast<int16_t>(f.Int(-32767, 32767) - 1);
    if (!f.ok()) {
      if (err) *err = "it ends after " + std::to_string(i - 1) + " of " + std::to_string(count) + " nations";
      return false;
    }
  }
  out = std::move(l);
  return true;
}

std::string NationListPath(const ProgramFolder& s, const std::string& set) {
  return s.App(set + "/nations/nations.txt");
}

void SortNations(RefData& ref) {
  // The order is that of picking, n times, the first smallest name still
  // free in byte order (capitals before small letters) -- except that a scan
  // always picks an empty name it meets and then the next name after it, so
  // an empty name splits the list: the names after the last empty one come
  // first, sorted, then that empty name, then the names before it back to
  // the previous empty one, and so on. Built that way in n log n, as a list
  // of thousands of nations must not stall the program.
  const int n = ref.NationCount;
  ref.NationOrder.assign(n + 1, 0);
  std::vector<int16_t> order;
  order.reserve(n);
  int end = n + 1;  // the segment runs up to, not including, end
  for (int i = n; i >= 0; --i) {
    if (i > 0 && !ref.NationName[i].empty()) continue;
    const size_t from = order.size();
    for (int k = i + 1; k < end; ++k) order.push_back(static_cast<int16_t>(k));
    std::stable_sort(order.begin() + static_cast<std::ptrdiff_t>(from), order.end(),
                     [&](int16_t a, int16_t b) { return ref.NationName[a] < ref.NationName[b]; });
    if (i > 0) order.push_back(static_cast<int16_t>(i));
    end = i;
  }
  for (int p = 1; p <= n; ++p) ref.NationOrder[p] = order[p - 1];
}

bool SwitchNationSet(const ProgramFolder& s, RefData& ref, std::string& nationSet, const std::string& setName) {
  std::string set = setName.empty() ? "default" : setName;
  std::string path = NationListPath(s, set);
  std::vector<uint8_t> text;
  std::string err;
  if (!ReadFileBytes(path, text, &err)) {
    s.MsgBox("The nation set \"" + set + "\" cannot be read: " + path + " not found.");
    return false;
  }
  NationList l;
  if (!ParseNations(text, l, &err)) {
    s.MsgBox("The nation set \"" + set + "\" cannot be read: " + path + ": " + err + ".");
    return false;
  }
  nationSet = set;
  ref.NationCount = l.NationCount;
  ref.NationName = std::move(l.NationName);
  ref.NationCode = std::move(l.NationCode);
  SortNations(ref);
  return true;
}

bool LoadNations(const ProgramFolder& app, RefData& ref, std::string& nationSet) {
  return SwitchNationSet(app, ref, nationSet, nationSet);
}

std::vector<std::string> FillNationList(const RefData& ref) {
  std::vector<std::string> out{"-None-"};
  for (int p = 1; p <= ref.NationCount; ++p) out.push_back(ref.NationName[ref.NationOrder[p]]);
  return out;
}

}  // namespace kv

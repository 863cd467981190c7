#include "refdata/nations.h"

#include "platform/fileio.h"
#include "platform/textfields.h"
#include "session.h"

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

std::string NationListPath(const Session& s, const std::string& set) {
  return s.App(set + "/nations/nations.txt");
}

void SortNations(RefData& ref) {
  const int n = ref.NationCount;
  ref.NationOrder.assign(n + 1, 0);
  std::vector<bool> free_(n + 1, true);
  for (int p = 1; p <= n; ++p) {
    std::string best;
    int taken = 0;
    for (int i = 1; i <= n; ++i) {
      if (!free_[i]) continue;
      // Byte order: capitals before small letters.
      if (best.empty() || ref.NationName[i] < best) {
        best = ref.NationName[i];
        taken = i;
      }
    }
    ref.NationOrder[p] = static_cast<int16_t>(taken);
    free_[taken] = false;
  }
}

bool SwitchNationSet(Session& s, const std::string& setName) {
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
  s.doc.NationSet = set;
  s.ref.NationCount = l.NationCount;
  s.ref.NationName = std::move(l.NationName);
  s.ref.NationCode = std::move(l.NationCode);
  SortNations(s.ref);
  return true;
}

bool LoadNations(Session& s) { return SwitchNationSet(s, s.doc.NationSet); }

std::vector<std::string> FillNationList(const RefData& ref) {
  std::vector<std::string> out{"-None-"};
  for (int p = 1; p <= ref.NationCount; ++p) out.push_back(ref.NationName[ref.NationOrder[p]]);
  return out;
}

}  // namespace kv

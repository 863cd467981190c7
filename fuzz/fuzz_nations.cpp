// The nation list of a set ("nations.txt"), then sorted and listed as the
// nation picker shows it.
#include <string>

#include "fuzz_common.h"
#include "refdata/nations.h"

using namespace kv;

namespace kvfuzz {
std::vector<Bytes> Seeds() {
  return {Text("3\r\n\"Germany\",1\r\n\"France\",2\r\n\"Britain\",3\r\n"), Text("0\r\n"),
          Text("2\r\n\"Zed\",9,\"Able\",4")};
}
}  // namespace kvfuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  NationList l;
  std::string err;
  if (!ParseNations({data, size}, l, &err)) {
    if (err.empty() || l.NationCount != 0) __builtin_trap();
    return 0;
  }
  if (l.NationName.size() != static_cast<size_t>(l.NationCount) + 1 || l.NationCode.size() != l.NationName.size())
    __builtin_trap();
  RefData ref;
  ref.NationCount = l.NationCount;
  ref.NationName = l.NationName;
  ref.NationCode = l.NationCode;
  SortNations(ref);
  if (FillNationList(ref).size() != static_cast<size_t>(l.NationCount) + 1) __builtin_trap();
  return 0;
}

// libFuzzer target: the stateful fuzzer with the input's bytes as its
// choices. Each input is a fresh editor and up to 40 steps; a broken
// invariant aborts with the lines that led to it.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <unistd.h>
#include <vector>

#include "statefuzz.h"

#ifndef KV_DEFAULT_DATA_DIR
#define KV_DEFAULT_DATA_DIR ""
#endif

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  kvfuzz::EnsureApplication();
  if (!std::freopen("/dev/null", "w", stdout)) return 1;  // message boxes
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const std::string app = [] {
    const char* d = std::getenv("KV_FUZZ_DATA");
    return std::string(d ? d : KV_DEFAULT_DATA_DIR);
  }();
  static const std::string work = "/tmp/kv_fuzz_session." + std::to_string(getpid());
  kvfuzz::ByteChoices c({data, size});
  kvfuzz::Editor ed(app, work);
  std::vector<std::string> lines;
  for (int k = 0; k < 40 && !c.Exhausted(); ++k)
    for (const std::string& line : ed.NextStep(c)) {
      lines.push_back(line);
      const std::string bad = ed.Run(line);
      if (!bad.empty()) {
        std::fprintf(stderr, "broken: %s\nafter:\n", bad.c_str());
        for (const std::string& l : lines) std::fprintf(stderr, "%s\n", l.c_str());
        std::abort();
      }
    }
  return 0;
}

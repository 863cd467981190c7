// What a scenario import leaves behind for the next Save As.
#pragma once

#include <string>

namespace kv {

struct ScenarioState {
  // The scenario set last imported; not empty from the import until the next
  // Save As, which is the sign for Save As to finish the scenario.
  std::string SetPath;
  // Full path of the order of battle written by the import, in the program
  // folder, waiting for its final name.
  std::string OobTmpPath;
};

}  // namespace kv

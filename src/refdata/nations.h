// Nation sets: the list file of a set, the sorted order for the eye, and the
// list-box content used to pick a nation.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "platform/programfolder.h"

namespace kv {

struct RefData;

struct NationList {
  int16_t NationCount = 0;
  std::vector<std::string> NationName = {""};
  std::vector<int16_t> NationCode = {0};
};

// Parses "nations.txt": N, then N pairs of name and number.
bool ParseNations(std::span<const uint8_t> text, NationList& out, std::string* err);
// The list file of a set inside the program folder.
std::string NationListPath(const ProgramFolder& app, const std::string& set);

// Reads the list of nationSet (the map's NationSet) ("default" when empty) and sorts it. On a
// list that cannot be read, says so and keeps the set in use; returns false.
bool LoadNations(const ProgramFolder& app, RefData& ref, std::string& nationSet);
// Loads another set by name; on failure NationSet and the tables stay.
bool SwitchNationSet(const ProgramFolder& app, RefData& ref, std::string& nationSet, const std::string& set);
void SortNations(RefData& ref);
// "-None-", then the names in sorted order.
std::vector<std::string> FillNationList(const RefData& ref);

}  // namespace kv

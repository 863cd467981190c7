// The scenario text files the game reads beside a map: the order of battle
// (.oob) and the short scenario file (.scn). Every line end is written out
// as told, CR alone or CR LF, through a byte sink.
#pragma once

#include <string>
#include <vector>

#include "platform/bytes.h"
#include "scenario/pgformat.h"

namespace kv {

struct Session;
struct RefData;

// Decimal digits with a minus sign where negative.
std::string PlainNum(long long v);
// The same, with one blank in front of a value of 0 or above.
std::string BlankLedNum(long long v);

// The order of battle of an imported scenario, byte for byte; it ends in the
// digit 1 with no line end behind it.
void WriteOob(const ScenarioFile& f, const std::vector<OobUnit>& units, const RefData& ref, ByteSink& out);
// The eight lines of the scenario file, each ended by CR; `mapFile` is the
// map's name as typed in the dialog.
void WriteScnText(const std::string& mapFile, ByteSink& out);

// The last step of Save As after an import (SetPath not empty): the order of
// battle moves from the program folder to `mapPath` with "oob" for its last
// three characters (asking before it replaces a file there), SetPath is
// emptied, and the scenario file is written anew with "scn". Does nothing
// when there is no import to finish.
void FinishScenarioAtSave(Session& s, const std::string& mapPath);

}  // namespace kv

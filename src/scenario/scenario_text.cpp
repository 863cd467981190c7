#include "scenario/scenario_text.h"

#include "platform/fileio.h"
#include "refdata/refdata.h"
#include "session.h"

namespace kv {

namespace {

constexpr const char* CR = "\r";
constexpr const char* CRLF = "\r\n";

class Lines {
 public:
  explicit Lines(ByteSink& out) : out_(out) {}
  void operator()(const std::string& text, const char* end) {
    out_.write(text.data(), text.size());
    if (end) out_.write(end, std::char_traits<char>::length(end));
  }

 private:
  ByteSink& out_;
};

template <class It>
std::string BlankLedList(It first, It last) {
  std::string s;
  for (It i = first; i != last; ++i) {
    if (i != first) s += ",";
    s += BlankLedNum(*i);
  }
  return s;
}

std::string NameOf(const RefData& ref, int n) {
  return n >= 0 && static_cast<size_t>(n) < ref.NationName.size() ? ref.NationName[n] : std::string();
}
int CodeOf(const RefData& ref, int n) {
  return n >= 0 && static_cast<size_t>(n) < ref.NationCode.size() ? ref.NationCode[n] : 0;
}

}  // namespace

std::string PlainNum(long long v) { return std::to_string(v); }
std::string BlankLedNum(long long v) { return v >= 0 ? " " + std::to_string(v) : std::to_string(v); }

void WriteOob(const ScenarioFile& f, const std::vector<OobUnit>& units, const RefData& ref, ByteSink& out) {
  Lines line(out);
  line("* number of sequences or sides", CR);
  line("2", CRLF);
  line("* sequence/side names", CR);
  line(NameOf(ref, f.nations[0][1]), CRLF);
  line(NameOf(ref, f.nations[1][1]), CRLF);
  line("* Total number of nations in the scenario", CR);
  line(PlainNum(f.NationCount()), CR);
  line("* Nation Number-Nation name-production-move sequence-strength tile-id number", CR);
  for (int side = 0; side < 2; ++side)
    for (int i = 1; i <= 6; ++i) {
      const int n = f.nations[side][i];
      if (n == 0) continue;
      line(PlainNum(n) + "," + NameOf(ref, n) + ",0," + PlainNum(side + 1) + "," + PlainNum(CodeOf(ref, n) + 1), CR);
    }
  line("* number of starting units in scenario", CR);
  line(PlainNum(f.unitCount), CRLF);
  line("* unit name-mapx-mapy-strength-entrenchment-side-nation-unit type-experience-turn of entry-trans1-trans2", CR);
  for (const OobUnit& u : units) {
    const UnitRecord& r = u.rec;
    line(u.name + "," + PlainNum(r.x + 1) + "," + PlainNum(r.y) + "," + PlainNum(r.strength) + "," +
             PlainNum(r.entrench * 10) + "," + PlainNum(u.side) + "," + PlainNum(r.nation) + "," + PlainNum(r.type) +
             "," + PlainNum(r.exper * 100) + ",0," + PlainNum(r.trans1) + "," + PlainNum(r.trans2),
         CRLF);
  }
  line("* Side 1 Nations Available", CRLF);
  line(BlankLedList(f.nations[0] + 1, f.nations[0] + 7), CRLF);
  line("* Side 2 Nations Available", CRLF);
  line(BlankLedList(f.nations[1] + 1, f.nations[1] + 7), CRLF);
  line("* 6 unknown bytes", CRLF);
  line(BlankLedList(f.unknown6.begin(), f.unknown6.end()), CRLF);
  line("* Side 1 max Core units", CRLF);
  line(BlankLedNum(f.coreMax1), CRLF);
  line("* Side 1 max Aux units", CRLF);
  line(BlankLedNum(f.auxMax1), CRLF);
  line("* Side 2 Max Core units", CRLF);
  line(BlankLedNum(f.coreMax1), CRLF);
  line("* Side 2 max Aux units", CRLF);
  // C2 below C1 is written as the negative difference it is.
  line(BlankLedNum(f.AuxMax2()), CRLF);
  line("* Scenario Turns", CRLF);
  line(BlankLedNum(f.turns), CRLF);
  line("* Day Month Year", CRLF);
  line(BlankLedNum(f.day) + "," + BlankLedNum(f.month) + ",19" + PlainNum(f.year), CRLF);
  line("* unknown byte", CRLF);
  line(BlankLedNum(f.unknown1), CRLF);
  line("* Days per turn", CRLF);
  line(BlankLedNum(f.daysPerTurn), CRLF);
  line("* Side 1 prestige pool", CRLF);
  line(BlankLedNum(f.pool1), CRLF);
  line("* Side 2 prestige pool", CRLF);
  line(BlankLedNum(f.pool2), CRLF);
  line("* Side 1 prestige interval", CRLF);
  line(BlankLedNum(f.interval1), CRLF);
  line("* Side 2 prestige interval", CRLF);
  line(BlankLedNum(f.interval2), CRLF);
  line("* 4 unknown bytes", CRLF);
  line(BlankLedList(f.unknown4.begin(), f.unknown4.end()), CRLF);
  line("* Side 1 prestige", CRLF);
  line(BlankLedNum(f.prestige1), CRLF);
  line("* Side 2 prestige", CRLF);
  line(BlankLedNum(f.prestige2), CRLF);
  line("* Side 1 Air transport available", CRLF);
  line(BlankLedNum(f.air1), CRLF);
  line("* Side 2 Air transport available", CRLF);
  line(BlankLedNum(f.air2), CRLF);
  line("* Side 1 Naval transport available", CRLF);
  line(BlankLedNum(f.naval1), CRLF);
  line("* Side 2 Naval transport available", CRLF);
  line(BlankLedNum(f.naval2), CRLF);
  line("* 8 unknown bytes", CRLF);
  line(BlankLedList(f.unknown8.begin(), f.unknown8.end()), CRLF);
  line("* first turn multiplier", CR);
  line("1", nullptr);
}

void WriteScnText(const std::string& mapFile, ByteSink& out) {
  Lines line(out);
  line(mapFile + ".map", CR);
  line(mapFile + ".bmp", CR);
  line(mapFile + ".oob", CR);
  line("Weather,clear", CR);
  line("Ground Conditions,dry", CR);
  line("Weather Zone,moderate", CR);
  line("Politics,False", CR);
  line("Scenario Type,0", CR);
}

void FinishScenarioAtSave(Session& s, const std::string& mapPath) {
  ScenarioState& st = s.scn;
  if (st.SetPath.empty()) return;
  const std::string oob = CutExt(mapPath, 3, "oob");
  const std::string scn = CutExt(mapPath, 3, "scn");
  const std::string tmp = st.OobTmpPath;
  if (oob == tmp) {
    // Saved into the program folder under the scenario's own name: the
    // order of battle is already where it belongs.
  } else {
    int answer = vbOK;
    if (FileExists(oob)) answer = s.MsgBox(oob + "already exists.\rDo you want to replace it ?", vbOKCancel);
    bool keepTmp = false;
    if (answer == vbOK) {
      std::string err;
      if (!FileExists(tmp)) {
        s.MsgBox("The order of battle " + tmp + " has gone missing; " + oob + " was not written.");
      } else if (!CopyFileTo(tmp, oob, &err)) {
        // The only copy of the order of battle is not thrown away.
        s.MsgBox("The order of battle could not be copied to " + oob + ": " + err + ". It stays at " + tmp + ".");
        keepTmp = true;
      }
    }
    if (!keepTmp && FileExists(tmp)) RemoveFile(tmp);
  }
  st.SetPath.clear();
  // The scenario file is written anew whole; an old one is replaced only
  // once the new one is complete.
  SafeFileWriter w(scn);
  WriteScnText(s.doc.MapFile, w);
  if (!w.commit()) s.MsgBox("The scenario file " + scn + " could not be written: " + w.error() + ".");
}

}  // namespace kv

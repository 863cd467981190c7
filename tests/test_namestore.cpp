// The hex name store: slots, records, growth, and the emptying rules.
#include <gtest/gtest.h>

#include "document/namestore.h"
#include "platform/fileio.h"
#include "session.h"
#include "testutil.h"

using namespace kv;

namespace {
struct Store {
  kvtest::TempDir dir;
  Session s{dir.path()};
  Store() {
    s.doc.MapMaxX = 4;  // 5 columns
    s.doc.MapMaxY = 3;
    s.doc.MapFile = "newmap.map";
    OpenNameStore(s);
  }
  int64_t StrLen() { return FileLen(s.doc.StrPath); }
};
}  // namespace

TEST(NameStore, RecordsArePaddedAppendedAndOverwritten) {
  Store st;
  EXPECT_EQ(st.s.doc.NdxPath, st.dir / "newmap.ndx");
  EXPECT_EQ(FileLen(st.s.doc.NdxPath), 4 * 20);
  EXPECT_EQ(GetHexName(st.s, 2, 1), "");
  SetHexName(st.s, 2, 1, "Ford");
  EXPECT_EQ(GetHexName(st.s, 2, 1), "Ford                ");
  EXPECT_EQ(st.StrLen(), 20);
  auto ndx = kvtest::ReadBytes(st.s.doc.NdxPath);
  EXPECT_EQ(ndx[4 * (1 * 5 + 2)], 1);                // first record at position 1
  SetHexName(st.s, 2, 1, "Ford of the Long River");  // rename in place, cut at 20
  EXPECT_EQ(GetHexName(st.s, 2, 1), "Ford of the Long Riv");
  EXPECT_EQ(st.StrLen(), 20);
  SetHexName(st.s, 0, 0, "Twenty characters ok");
  EXPECT_EQ(GetHexName(st.s, 0, 0), "Twenty characters ok");
  EXPECT_EQ(st.StrLen(), 40);
  // Clear, then name again: a new record, the old one stays as dead space.
  SetHexName(st.s, 2, 1, "");
  EXPECT_EQ(GetHexName(st.s, 2, 1), "");
  SetHexName(st.s, 2, 1, "Mill");
  EXPECT_EQ(st.StrLen(), 60);
  EXPECT_EQ(GetHexName(st.s, 0, 0), "Twenty characters ok");
}

TEST(NameStore, DamagedSlotsReadAsNoName) {
  Store st;
  SetHexName(st.s, 1, 1, "Hill");
  st.s.names.Close();
  auto ndx = kvtest::ReadBytes(st.s.doc.NdxPath);
  ndx[0] = 0x40;  // hex (0, 0) points far past the end of the strings
  ndx[4] = 0xFF;  // hex (1, 0) is negative
  ndx[5] = ndx[6] = ndx[7] = 0xFF;
  ndx.resize(4 * 7);  // and the index is cut short
  kvtest::WriteBytes(st.s.doc.NdxPath, ndx);
  ReopenNameStore(st.s);
  EXPECT_EQ(GetHexName(st.s, 0, 0), "");
  EXPECT_EQ(GetHexName(st.s, 1, 0), "");
  EXPECT_EQ(GetHexName(st.s, 1, 1), "Hill                ");
  EXPECT_EQ(GetHexName(st.s, 4, 3), "");  // beyond the short index
  SetHexName(st.s, 4, 3, "Edge");         // writing there grows the index
  EXPECT_EQ(GetHexName(st.s, 4, 3), "Edge                ");
}

TEST(NameStore, OpeningWithPathsSetClearsSlotsButKeepsStrings) {
  Store st;
  SetHexName(st.s, 3, 2, "Keep");
  OpenNameStore(st.s);  // paths are set: slots cleared, strings stay
  EXPECT_EQ(GetHexName(st.s, 3, 2), "");
  EXPECT_EQ(st.StrLen(), 20);
  SetHexName(st.s, 3, 2, "Next");
  EXPECT_EQ(st.StrLen(), 40);
  // With empty paths the old files are deleted and made afresh.
  st.s.doc.NdxPath.clear();
  st.s.doc.StrPath.clear();
  OpenNameStore(st.s);
  EXPECT_EQ(st.StrLen(), 0);
}

TEST(NameStore, TrimNameCutsNulsThenBlanks) {
  std::string a = std::string("Bridge  ") + '\0' + '\0';
  EXPECT_EQ(TrimName(a), "Bridge");
  std::string b(5, '\0');
  EXPECT_EQ(TrimName(b), std::string(5, '\0'));  // nothing but NULs stays
  std::string c = "    ";
  EXPECT_EQ(TrimName(c), "    ");
  std::string d = std::string("  ") + '\0';
  EXPECT_EQ(TrimName(d), "  ");  // after the NUL cut only blanks are left
}

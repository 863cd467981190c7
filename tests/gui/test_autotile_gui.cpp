// Auto-tiling in the editor: painting with auto-tile on through a script and
// saving, the passes from the menu with their progress and pointer, and the
// tile data screens opened from the picker, following the pen and saving.
#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <sstream>

#include <QAction>
#include <QApplication>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <gtest/gtest.h>

#include "editing/fileflow.h"
#include "editing/startup.h"
#include "gui/Form1.h"
#include "gui/guitest.h"
#include "gui/qtui.h"
#include "gui/script.h"
#include "testutil.h"

using namespace kv;
using kv::gui::Form1;
namespace fs = std::filesystem;

namespace {

QApplication& App() { return kvtest::GuiApp(); }

// Tiles: 0 sea, 1 and 2 open ground, 3 a road, 4 a second sea, 5 and 6
// forest, 7 a forest road, 8 a city, 9 a port.
namespace tl {
constexpr int Sea = 0, Open = 1, Road = 3, Sea2 = 4, Forest = 5, Forest2 = 6, ForestRoad = 7;
}

kvtest::MiniApp MiniSetup() {
  kvtest::MiniApp a;
  a.types = {0, 1, 1, 1, 0, 8, 8, 8, 5, 14};
  a.roads = {{}, {}, {}, {1, 0, 0, 1, 0, 0}, {}, {}, {}, {1, 0, 0, 1, 0, 0}};
  return a;
}

// Records what a label shows each time it is painted, and whether the
// hourglass stood then.
struct PaintProbe : QObject {
  std::vector<std::string> texts;
  std::vector<bool> busy;
  bool eventFilter(QObject* obj, QEvent* ev) override {
    if (ev->type() == QEvent::Paint) {
      texts.push_back(static_cast<QLabel*>(obj)->text().toStdString());
      busy.push_back(QApplication::overrideCursor() != nullptr);
    }
    return false;
  }
};

struct Window {
  kvtest::TempDir app, maps;
  std::unique_ptr<Form1> f;
  Window() {
    App();
    gui::Script().active = true;
    gui::Script().answers.clear();
    kvtest::MakeMiniApp(app.path(), MiniSetup());
    f = std::make_unique<Form1>(app.path());
    f->SetScreenSize(1280, 800);
    EXPECT_TRUE(f->Form_Load());
  }
  Session& s() { return f->session(); }
  void Write(const std::string& rel, const std::string& text) { kvtest::WriteText(app / rel, text); }
  std::string Text(const std::string& rel) {
    auto b = kvtest::ReadBytes(app / rel);
    return std::string(b.begin(), b.end());
  }
  int Run(const std::string& script, std::string* out) { return kvtest::RunScriptText(*f, script, out); }
};

}  // namespace

TEST(AutoTileScript, PaintACoastAForestEdgeAndARoadWithAutoTileOnThenSave) {
  Window w;
  // What a designer's stores hold: a sea hex with land all around takes tile
  // 4, a sea hex with sea above takes tile 0; a lone forest takes tile 6; a
  // road under a road takes the forest road on forest.
  w.Write("mapedit/t00/000000.txt", "004\r\n");
  w.Write("mapedit/t00/100000.txt", "000\r\n");
  w.Write("mapedit/t08/000000.txt", "006\r\n");
  w.Write("mapedit/roadpatterns/1-0-0-0-0-0.txt", "3-0-0-0-0-0,3\r\n3-0-0-0-0-0,7\r\n-1\r\n");
  std::string out;
  const std::string dir = w.maps.path();
  ASSERT_EQ(w.Run("Form1.Command2_Click\n"  // auto-tile on
                  "print Form1.Command2.Caption AutoTile\n"
                  "CurTile = 0\n"
                  "clickhex 5 5\n"
                  "clickhex 5 6\n"
                  "CurTile = 5\n"
                  "clickhex 10 10\n"
                  "HexTile(12, 9) = 3\n"
                  "HexInfo(12, 9, 0) = 1\n"
                  "clickhex 12 10\n"  // a forest hex below a road
                  "CurTile = 3\n"
                  "clickhex 12 10\n"
                  "print HexTile(5,5) HexTile(5,6) HexTile(10,10) HexTile(12,10) HexInfo(12,10,0) CurTile\n"
                  "Form1.menu_file_save_as_Click\n"
                  "LoadSave.Dir1.Path = \"" +
                      dir +
                      "\"\n"
                      "LoadSave.Text1.Text = coast\n"
                      "LoadSave.Command2_Click\n",
                  &out),
            0)
      << out;
  EXPECT_NE(out.find("Form1.Command2.Caption=Auto-Tile On\nAutoTile=-1\n"), std::string::npos) << out;
  EXPECT_NE(out.find("HexTile(5,5)=4\nHexTile(5,6)=0\nHexTile(10,10)=6\nHexTile(12,10)=7\nHexInfo(12,10,0)=8\n"
                     "CurTile=3\n"),
            std::string::npos)
      << out;

  // The saved map holds the engine's choices.
  HeadlessUi ui;
  Session s(w.app.path(), &ui);
  ASSERT_TRUE(StartSession(s));
  ASSERT_TRUE(OpenMapFile(s, dir, "coast.map"));
  EXPECT_EQ(s.doc.HexTile(5, 5), tl::Sea2);
  EXPECT_EQ(s.doc.HexTile(5, 6), tl::Sea);
  EXPECT_EQ(s.doc.HexTile(10, 10), tl::Forest2);
  EXPECT_EQ(s.doc.HexTile(12, 10), tl::ForestRoad);
  EXPECT_EQ(s.doc.HexInfo(12, 10, 0), 8);
  EXPECT_EQ(s.doc.HexInfo(12, 10, 5), 1);  // the forest road's sides
  EXPECT_EQ(s.doc.HexInfo(12, 10, 2), 1);
}

TEST(AutoTileMenu, PassesAreEnabledAndRunFromTheMenuWithTheirProgress) {
  Window w;
  Session& s = w.s();
  auto act = [&](const char* n) { return w.f->findChild<QAction*>(n); };
  for (const char* n : {"autoredrawroads", "autoredrawterrain", "mAutoForest", "mAutoMoutains", "mMapRebuild",
                        "doroads", "MemorizeRoads", "MemoriseRivers", "mMountains", "mRedoTerrain", "mRndWoods"})
    EXPECT_TRUE(act(n)->isEnabled()) << n;

  // Forest everywhere, one list for every hex with forest all around.
  for (int x = 0; x <= s.doc.MapMaxX; ++x)
    for (int y = 0; y <= s.doc.MapMaxY; ++y) {
      s.doc.HexTile(x, y) = tl::Forest;
      s.doc.HexInfo(x, y, 0) = 8;
    }
  w.Write("mapedit/t08/123456.txt", "006\r\n");
  fs::remove(w.app / "autosave.map");
  // Label3 is painted while the pass runs, column by column, under the hourglass.
  w.f->show();
  for (int i = 0; i < 5; ++i) QApplication::processEvents();
  auto* label = w.f->findChild<QLabel*>("Label3");
  PaintProbe probe;
  label->installEventFilter(&probe);
  s.pens.DefaultAreaAll = -1;
  act("autoredrawterrain")->trigger();
  label->removeEventFilter(&probe);
  // Every column's figure was on screen, with the hourglass up.
  for (int x = 0; x <= 32; ++x) {
    const auto it = std::find(probe.texts.begin(), probe.texts.end(), std::to_string(x) + ",31");
    ASSERT_NE(it, probe.texts.end()) << x;
    EXPECT_TRUE(probe.busy[it - probe.texts.begin()]) << x;
  }
  EXPECT_TRUE(fs::exists(w.app / "autosave.map"));
  EXPECT_EQ(s.doc.HexTile(3, 3), tl::Forest2);
  EXPECT_EQ(s.doc.HexTile(0, 0), tl::Forest);  // the edge is no forest
  EXPECT_EQ(label->text().toStdString(), "32,31");
  EXPECT_EQ(s.forms.MousePointer, 1);
  EXPECT_EQ(QApplication::overrideCursor(), nullptr);
  EXPECT_EQ(s.pens.AutoTile, -1);

  // Memorise roads shows "x / MapMaxX" as it goes; the last one stays.
  act("MemorizeRoads")->trigger();
  EXPECT_EQ(label->text().toStdString(), "32 / 32");
  // The terrain from the tiles, then the tiles from the terrain: both agree.
  act("mRedoTerrain")->trigger();
  act("mMapRebuild")->trigger();
  for (int x = 0; x <= s.doc.MapMaxX; ++x)
    for (int y = 0; y <= s.doc.MapMaxY; ++y) ASSERT_EQ(s.ref.TypeOf(s.doc.HexTile(x, y)), s.doc.HexInfo(x, y, 0));
  // Road sides: a lone road tile points at nothing and loses its sides.
  s.doc.HexTile(4, 4) = tl::Road;
  act("doroads")->trigger();
  for (int k = 1; k <= 6; ++k) EXPECT_EQ(s.doc.HexInfo(4, 4, k), 0);
}

TEST(TileScreensGui, OpenedFromThePickerFollowThePenAndSave) {
  Window w;
  std::string out;
  ASSERT_EQ(w.Run("Form2.Form_KeyDown 115 0\n"            // F4: patterns
                  "Form2.Form_KeyDown 113 0\n"            // F2: terrain
                  "Form2.Form_KeyDown 114 0\n"            // F3: roads
                  "Form2.Picture2_MouseDown 1 0 61 51\n"  // tile 17: every open screen follows
                  "print CurTile Form13.Label1.Caption Form14.Label1.Caption Form11.Label1.Caption\n"
                  "print Form13.Caption Form14.Caption Form11.Caption Form13.Image2(0).Visible\n"
                  "Form13.Option1(1).Value = True\n"
                  "Form13.Image2_Click 0\n"
                  "Form13.Command1_Click 2\n"
                  "print Form13.Image2(0).Tag Form13.Image2(0).Picture Form13.Image2(0).Visible Form13.Label4.Caption\n"
                  "Form14.Form_KeyDown 78 0\n"  // N on the terrain screen: tile 18
                  "print CurTile Form14.Label1.Caption Form14.List1.ListIndex Form14.List1.Enabled\n"
                  "Form14.Form_KeyUp 78 0\n"
                  "Form14.List1.ListIndex = 8\n"
                  "Form14.Option1(1).Value = True\n"
                  "Form14.Command1_Click 2\n"
                  "print TileType(18) Form14.Label4.Caption Form14.Label4.FontBold Form14.List1.Enabled\n"
                  "Form11.Label3_MouseMove 2\n"
                  "print Form11.Label3(2).FontBold Form11.Label3(0).FontBold\n"
                  "Form11.Image2_Click 3\n"
                  "Form11.Label3_Click 2\n"
                  "print TileRoad(18)\n",
                  &out),
            0)
      << out;
  EXPECT_NE(out.find("CurTile=17\nForm13.Label1.Caption=017: Terrain 2\nForm14.Label1.Caption=0017 Terrain 2\n"
                     "Form11.Label1.Caption=17 Terrain 2\n"),
            std::string::npos)
      << out;
  EXPECT_NE(out.find("Form13.Caption=Terrain Based Tile Pattern\nForm14.Caption=Tile Terrain Type\n"
                     "Form11.Caption=Road Connections\nForm13.Image2(0).Visible=0\n"),
            std::string::npos)
      << out;
  EXPECT_NE(out.find("Form13.Image2(0).Tag=1\nForm13.Image2(0).Picture=bmp/c1.bmp\nForm13.Image2(0).Visible=-1\n"
                     "Form13.Label4.Caption=Mark adjacent Terrain 2 hexes.\n"),
            std::string::npos)
      << out;
  EXPECT_NE(out.find("CurTile=18\nForm14.Label1.Caption=0018 Terrain 3\nForm14.List1.ListIndex=3\n"
                     "Form14.List1.Enabled=0\n"),
            std::string::npos)
      << out;
  EXPECT_NE(out.find("TileType(18)=8\nForm14.Label4.Caption=Terrain 8\nForm14.Label4.FontBold=0\n"
                     "Form14.List1.Enabled=-1\n"),
            std::string::npos)
      << out;
  EXPECT_NE(out.find("Form11.Label3(2).FontBold=-1\nForm11.Label3(0).FontBold=0\nTileRoad(18)=1\n"), std::string::npos)
      << out;
  // The files the three saves wrote.
  EXPECT_EQ(w.Text("mapedit/t02/100000.txt"), "017\r\n");
  EXPECT_EQ(kvtest::ReadBytes(w.app / "mapedit/ptiles.dat").at(17), 1);
  EXPECT_EQ(kvtest::ReadBytes(w.app / "mapedit/tiletype.dat").at(18), 8);
  EXPECT_EQ(kvtest::ReadBytes(w.app / "mapedit/randomtile.dat").at(18), 1);
  EXPECT_EQ(kvtest::ReadBytes(w.app / "mapedit/roadinfo.dat").at(6 * 18 + 3), 1);

  // F4 again clears the flag and leaves the screen; closing a screen clears its flag.
  const TilePickerState& p = w.s().ed.picker;
  EXPECT_EQ(p.PatternFormOpen, 1);
  ASSERT_EQ(w.Run("Form2.Form_KeyDown 115 0\nForm14.Form_Unload\n", &out), 0) << out;
  EXPECT_EQ(p.PatternFormOpen, 0);
  EXPECT_EQ(p.TerrainFormOpen, 0);
  EXPECT_EQ(p.RoadFormOpen, 1);
  // The picker's Options menu offers the three screens and opens them too.
  QWidget* picker = w.f->FormByName("Form2")->formWidget();
  for (const char* n : {"mTerrain", "mRoads", "mPatterns"})
    EXPECT_TRUE(picker->findChild<QAction*>(n)->isEnabled()) << n;
  picker->findChild<QAction*>("mTerrain")->trigger();
  EXPECT_EQ(p.TerrainFormOpen, 1);
  ASSERT_NE(w.f->FormByName("Form14", false), nullptr);
  EXPECT_TRUE(w.f->FormByName("Form14", false)->formWidget()->isVisible());
}

// Neighbours that follow: off while a script runs, so that classic scripts
// print what they always printed; on when the script says so, and then the
// Tiles menu shows it checked.
TEST(AutoTileScript, NeighboursFollowOnlyWhenTheScriptSaysSo) {
  Window w;
  w.Write("mapedit/t00/000000.txt", "004\r\n");  // a lake
  w.Write("mapedit/t00/100000.txt", "000\r\n");  // sea above
  w.Write("mapedit/t00/000400.txt", "000\r\n");  // sea below
  std::string out;
  ASSERT_EQ(w.Run("print Editor.AutoNeighbours\n"
                  "Form1.Command2_Click\n"
                  "CurTile = 0\n"
                  "clickhex 5 5\n"
                  "clickhex 5 6\n"
                  "print HexTile(5,5)\n"
                  "Editor.AutoNeighbours = -1\n"
                  "CurTile = 0\n"
                  "clickhex 8 5\n"
                  "clickhex 8 6\n"
                  "print HexTile(8,5) HexTile(8,6) Editor.AutoNeighbours\n",
                  &out),
            0)
      << out;
  EXPECT_NE(out.find("Editor.AutoNeighbours=0\nHexTile(5,5)=4\n"), std::string::npos) << out;
  EXPECT_NE(out.find("HexTile(8,5)=0\nHexTile(8,6)=0\nEditor.AutoNeighbours=-1\n"), std::string::npos) << out;
  auto* entry = w.f->findChild<QAction*>(QStringLiteral("mAutoNeighbours"));
  ASSERT_NE(entry, nullptr);
  EXPECT_TRUE(entry->isCheckable());
  EXPECT_TRUE(entry->isChecked());
  ASSERT_EQ(w.Run("Form1.mAutoNeighbours_Click\nprint Editor.AutoNeighbours\n", &out), 0) << out;
  EXPECT_NE(out.find("Editor.AutoNeighbours=0\n"), std::string::npos) << out;
  EXPECT_FALSE(entry->isChecked());
  ASSERT_EQ(w.Run("Editor.AutoNeighbours = 2\n", &out), 1);
  EXPECT_NE(out.find("Editor.AutoNeighbours: -1 (on) or 0 (off), not 2"), std::string::npos) << out;
}

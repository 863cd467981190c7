// The history, the guard and the recovery copy in the editor's window and
// in scripts (the pseudo-form Editor).
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "gui/Form1.h"
#include "gui/guitest.h"
#include "gui/keeper.h"
#include "gui/qtui.h"
#include "testutil.h"

using namespace kv;
using kv::gui::Form1;

namespace {

kvtest::MiniApp MiniSetup() {
  kvtest::MiniApp a;
  a.types = {0, 1, 1, 3, 1, 5, 14, 1, 8, 6};
  a.roads = {{}, {1, 0, 0, 1, 0, 0}};
  return a;
}

struct Window {
  kvtest::TempDir app, maps;
  std::unique_ptr<Form1> f;
  Window() {
    kvtest::GuiApp();
    gui::Script().active = true;
    gui::Script().answers.clear();
    kvtest::MakeMiniApp(app.path(), MiniSetup());
    f = std::make_unique<Form1>(app.path());
    f->SetScreenSize(1366, 768);
    EXPECT_TRUE(f->Form_Load());
  }
  std::string Run(const std::string& script, int* rc = nullptr) {
    std::string out;
    const int r = kvtest::RunScriptText(*f, script, &out, true);
    if (rc) *rc = r;
    return out;
  }
};

}  // namespace

TEST(EditorScript, UndoAndRedoEveryLineWithItsWords) {
  Window w;
  const std::string out = w.Run(
      "CurTile = 3\n"
      "clickhex 4 5\n"
      "HexTile(4,5) = 7\n"
      "Form1.Text2.Text = \"Kessmoor\"\n"
      "Form1.Command4_Click\n"
      "print Editor.UndoCount Editor.UndoText Editor.Modified\n"
      "Editor.Undo\n"
      "print Editor.UndoText Editor.RedoText HexTile(4,5)\n"
      "Editor.Undo\n"
      "Editor.Undo\n"
      "print HexTile(4,5) Editor.UndoCount Editor.RedoCount Editor.Modified\n"
      "Editor.Redo\n"
      "print HexTile(4,5) Editor.UndoText\n"
      "HexElev(1,1) = 30\n"
      "print Editor.RedoCount\n");
  EXPECT_EQ(out,
            "Editor.UndoCount=3\nEditor.UndoText=Rename\nEditor.Modified=-1\n"
            "Editor.UndoText=Set HexTile(4,5)\nEditor.RedoText=Rename\nHexTile(4,5)=7\n"
            "HexTile(4,5)=2\nEditor.UndoCount=0\nEditor.RedoCount=3\nEditor.Modified=0\n"
            "HexTile(4,5)=3\nEditor.UndoText=Paint Tile\n"
            "Editor.RedoCount=0\n");
}

TEST(EditorScript, UnknownNamesAndWrongUseStopTheScript) {
  Window w;
  int rc = 0;
  EXPECT_EQ(w.Run("Editor.Nothing\n", &rc), "line 1: Editor has no name Nothing\n");
  EXPECT_EQ(rc, 1);
  EXPECT_EQ(w.Run("Editor.Undo 3\n", &rc), "line 1: Editor.Undo: takes no arguments\n");
  EXPECT_EQ(w.Run("Editor.UndoCount = 4\n", &rc), "line 1: Editor.UndoCount cannot be set\n");
  EXPECT_EQ(w.Run("print Editor.Undo\n", &rc), "line 1: Editor.Undo has no value\n");
  EXPECT_EQ(w.Run("editor.undocount\n", &rc), "line 1: Editor.undocount is no command\n");
  EXPECT_EQ(rc, 1);
}

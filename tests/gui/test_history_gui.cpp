// The history, the guard and the recovery copy in the editor's window and
// in scripts (the pseudo-form Editor).
#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QMenu>
#include <QTest>
#include <memory>
#include <string>

#include "gui/Form1.h"
#include "gui/guitest.h"
#include "gui/keeper.h"
#include "gui/qtui.h"
#include "platform/fileio.h"
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

namespace {

QAction* Act(Form1& f, const char* name) { return f.findChild<QAction*>(QString::fromLatin1(name)); }

// A key as the window system delivers it: through the shortcut map first.
void Key(Form1& f, Qt::Key key, Qt::KeyboardModifiers mods = Qt::NoModifier) {
  f.activateWindow();
  QTest::qWaitForWindowActive(&f);
  QWidget* target = QApplication::focusWidget() ? QApplication::focusWidget() : &f;
  QTest::keyClick(target, key, mods);
  QApplication::processEvents();
}

}  // namespace

TEST(HistoryWindow, KeysAndTheEditMenuUndoAndRedoNamingTheStep) {
  Window w;
  Form1& f = *w.f;
  f.show();
  f.activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&f));
  QAction* undo = Act(f, "editUndo");
  QAction* redo = Act(f, "editRedo");
  ASSERT_TRUE(undo && redo);
  EXPECT_FALSE(undo->isEnabled());
  EXPECT_EQ(undo->text(), "Undo");
  // The entries stand at the top of the Edit menu, before the classic ones.
  auto* edit = f.findChild<QMenu*>(QStringLiteral("mEdit"));
  ASSERT_TRUE(edit);
  EXPECT_EQ(edit->actions().value(0), undo);
  EXPECT_EQ(edit->actions().value(1), redo);
  EXPECT_EQ(Act(f, "mUndo")->text(), "Undo");  // F7's snapshot, as it was

  w.Run("CurTile = 3\nclickhex 4 5\n");
  Session& s = f.session();
  ASSERT_EQ(s.doc.HexTile(4, 5), 3);
  EXPECT_EQ(undo->text(), "Undo Paint Tile");
  EXPECT_TRUE(undo->isEnabled());
  EXPECT_EQ(f.windowTitle(), "Main: editing newmap.map *");
  EXPECT_EQ(w.Run("print Form1.Caption\n"), "Form1.Caption=Main: editing newmap.map\n");

  Key(f, Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(s.doc.HexTile(4, 5), 2);
  EXPECT_EQ(f.windowTitle(), "Main: editing newmap.map");
  EXPECT_EQ(redo->text(), "Redo Paint Tile");
  Key(f, Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_EQ(s.doc.HexTile(4, 5), 3);
  Key(f, Qt::Key_Z, Qt::ControlModifier);
  Key(f, Qt::Key_Y, Qt::ControlModifier);
  EXPECT_EQ(s.doc.HexTile(4, 5), 3);
  EXPECT_FALSE(redo->isEnabled());
  undo->trigger();  // the menu entry does the same
  EXPECT_EQ(s.doc.HexTile(4, 5), 2);

  // Ctrl and Alt never reach the form's letters: Ctrl+A leaves auto-tiling,
  // A alone toggles it.
  Key(f, Qt::Key_A, Qt::ControlModifier);
  Key(f, Qt::Key_N, Qt::AltModifier);
  EXPECT_EQ(s.pens.AutoTile, 0);
  EXPECT_EQ(s.doc.HexTile(4, 5), 2);  // no N: the pen's hex is as it was
  Key(f, Qt::Key_A);
  EXPECT_EQ(s.pens.AutoTile, -1);

  // The File menu shows its keys.
  EXPECT_EQ(Act(f, "menu_file_new")->shortcut(), QKeySequence(QStringLiteral("Ctrl+N")));
  EXPECT_EQ(Act(f, "menu_file_open")->shortcut(), QKeySequence(QStringLiteral("Ctrl+O")));
  EXPECT_EQ(Act(f, "menu_file_save")->shortcut(), QKeySequence(QStringLiteral("Ctrl+S")));
  EXPECT_EQ(Act(f, "menu_file_save_as")->shortcut(), QKeySequence(QStringLiteral("Ctrl+Shift+S")));
  // In the window, Save of a map without a file of its own asks for a name.
  gui::Script().active = false;
  Key(f, Qt::Key_S, Qt::ControlModifier);
  gui::Script().active = true;
  EXPECT_TRUE(s.ed.dlg.Visible);
  EXPECT_EQ(s.ed.dlg.DlgMode, 3);
  EXPECT_FALSE(kv::FileExists(w.app / "newmap.map"));
  w.Run("LoadSave.Command3_Click\n");
  // Ctrl+O opens the dialog on maps.
  Key(f, Qt::Key_O, Qt::ControlModifier);
  EXPECT_EQ(s.ed.dlg.DlgMode, 1);
  w.Run("LoadSave.Command3_Click\n");
}

TEST(HistoryWindow, TheGuardSavesDiscardsOrCancels) {
  Window w;
  Form1& f = *w.f;
  Session& s = f.session();
  // Off in scripts until set: a classic script goes on without a question.
  EXPECT_EQ(w.Run("print Editor.Guard\nclickhex 1 1\nForm1.menu_file_new_Click\nprint Form6.Text1.Text\n"),
            "Editor.Guard=0\nForm6.Text1.Text=32\n");
  w.Run("Form6.Command1_Click\n");

  // A map of its own, saved, then changed.
  ASSERT_EQ(w.Run("Editor.Guard = -1\nForm1.menu_file_save_as_Click\nLoadSave.Dir1.Path = \"" + w.maps.path() +
                  "\"\nLoadSave.Text1.Text = \"guarded\"\nLoadSave.Command2_Click\nprint Editor.Modified\n"),
            "Editor.Modified=0\n");
  const std::string map = w.maps / "guarded.map";
  const std::vector<uint8_t> saved = kvtest::ReadBytes(map);
  w.Run("CurTile = 3\nclickhex 2 2\n");

  // Cancel: nothing happens and the change stays.
  EXPECT_EQ(w.Run("answer 2\nForm1.menu_file_new_Click\nprint Editor.Modified HexTile(2,2)\n"),
            "Editor.Modified=-1\nHexTile(2,2)=3\nmsgbox: Save changes to guarded.map?\n");
  EXPECT_FALSE(s.ed.f6.Loaded);
  EXPECT_EQ(kvtest::ReadBytes(map), saved);
  // Closing the window: Cancel keeps it.
  gui::Script().answers.push_back(vbCancel);
  EXPECT_FALSE(f.close());
  EXPECT_EQ(s.doc.HexTile(2, 2), 3);

  // Save: the map is written, then the command goes on.
  EXPECT_EQ(w.Run("answer 6\nForm1.menu_file_open_Click\nprint Editor.Modified DlgMode\n"),
            "Editor.Modified=0\nDlgMode=1\nmsgbox: Save changes to guarded.map?\n");
  EXPECT_NE(kvtest::ReadBytes(map), saved);
  w.Run("LoadSave.Command3_Click\n");

  // Discard: the command goes on and the file stays as it was saved.
  const std::vector<uint8_t> second = kvtest::ReadBytes(map);
  w.Run("clickhex 3 3\n");
  EXPECT_EQ(w.Run("answer 7\nForm1.openpgset_Click\nprint DlgMode\n"),
            "DlgMode=2\nmsgbox: Save changes to guarded.map?\n");
  EXPECT_EQ(kvtest::ReadBytes(map), second);
  w.Run("LoadSave.Command3_Click\n");

  // Save of a map without a file of its own cannot ask a script for a name:
  // it keeps the map open.
  w.Run("answer 7\nForm1.menu_file_new_Click\nForm6.Command2_Click\nCurTile = 5\nclickhex 1 1\n");
  EXPECT_EQ(w.Run("answer 6\nForm1.menu_file_new_Click\nprint Editor.Modified\n"),
            "Editor.Modified=-1\nmsgbox: Save changes to newmap.map?\n");
  EXPECT_FALSE(s.ed.f6.Loaded);
}

// The history, the guard and the recovery copy in the editor's window and
// in scripts (the pseudo-form Editor).
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

#include <QAction>
#include <QApplication>
#include <QMenu>
#include <QTest>
#include <gtest/gtest.h>

#include "document/namestore.h"
#include "editing/recovery.h"
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
  // On a fresh program folder, or on the one given.
  explicit Window(const std::string& appDir = {}) {
    kvtest::GuiApp();
    gui::Script().active = true;
    gui::Script().answers.clear();
    if (appDir.empty()) kvtest::MakeMiniApp(app.path(), MiniSetup());
    f = std::make_unique<Form1>(appDir.empty() ? app.path() : appDir);
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
  EXPECT_EQ(w.Run("Editor.Nothing\n", &rc), "line 1: Editor has no Nothing\n");
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
  ASSERT_TRUE(QTest::qWaitForWindowActive(&f));
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

namespace {

// Sets an environment variable for the life of a test.
struct EnvVar {
  std::string name;
  explicit EnvVar(const char* n, const std::string& value) : name(n) { setenv(n, value.c_str(), 1); }
  ~EnvVar() { unsetenv(name.c_str()); }
};

// The document as a recovery must give it back.
void ExpectSameDocument(Session& a, Session& b) {
  const Document &x = a.doc, &y = b.doc;
  EXPECT_EQ(x.MapMaxX, y.MapMaxX);
  EXPECT_EQ(x.MapMaxY, y.MapMaxY);
  EXPECT_TRUE(x.HexInfo == y.HexInfo);
  EXPECT_TRUE(x.HexTile == y.HexTile);
  EXPECT_TRUE(x.HexElev == y.HexElev);
  EXPECT_TRUE(x.HexCtl == y.HexCtl);
  EXPECT_TRUE(x.HexDeploy == y.HexDeploy);
  EXPECT_TRUE(x.HexLandMass == y.HexLandMass);
  EXPECT_TRUE(x.HexContour == y.HexContour);
  EXPECT_TRUE(x.HexOrigOwner == y.HexOrigOwner);
  EXPECT_EQ(x.ObjCount, y.ObjCount);
  EXPECT_TRUE(x.ObjList == y.ObjList);
  EXPECT_EQ(x.NationSet, y.NationSet);
  for (int yy = 0; yy <= x.MapMaxY; ++yy)
    for (int xx = 0; xx <= x.MapMaxX; ++xx) ASSERT_EQ(GetHexName(a, xx, yy), GetHexName(b, xx, yy));
}

std::string SaveAsLines(const std::string& dir, const std::string& name) {
  return "Form1.menu_file_save_as_Click\nLoadSave.Dir1.Path = \"" + dir + "\"\nLoadSave.Text1.Text = \"" + name +
         "\"\nLoadSave.Command2_Click\n";
}

const char* kEdits =
    "CurTile = 3\nclickhex 2 2\nclickhex 3 2\nHexElev(3,3) = 140\nHexCtl(4,4,0) = 2\nHexCtl(4,4,1) = 2\n"
    "Form1.mOriginalOwner_Click\nForm1.Text2.Text = \"Kessmoor\"\nForm1.Command4_Click\n"
    "DefaultAreaAll = -1\nForm1.mRedoTerrain_Click\nCurTile = 5\nclickhex 6 1\n"
    // F4 twice: the whole view drawn again, its contours from the new elevations.
    "Form1.Form_KeyDown 115 0\nForm1.Form_KeyDown 115 0\n";

}  // namespace

TEST(Recovery, AKilledEditorsWorkIsOfferedAndComesBackEqual) {
  kvtest::TempDir app, maps, state;
  kvtest::MakeMiniApp(app.path(), MiniSetup());
  EnvVar xdg("XDG_STATE_HOME", state.path());
  const std::string root = kv::RecoveryRoot();
  ASSERT_EQ(root, state / "korvane-mapedit/recovery");

  // A real editor: named, changed, its copy written, then killed.
  int toChild[2], fromChild[2];
  ASSERT_EQ(pipe(toChild), 0);
  ASSERT_EQ(pipe(fromChild), 0);
  const pid_t pid = fork();
  ASSERT_GE(pid, 0);
  if (pid == 0) {
    dup2(toChild[0], 0);
    dup2(fromChild[1], 1);
    close(toChild[1]);
    close(fromChild[0]);
    const std::string tool = std::string(KV_BIN_DIR) + "/korvane-map";
    execl(tool.c_str(), "korvane-map", "--app", app.path().c_str(), "--screen", "1366x768", "script", "-",
          static_cast<char*>(nullptr));
    _exit(127);
  }
  close(toChild[0]);
  close(fromChild[1]);
  const std::string script =
      SaveAsLines(maps.path(), "killed") + kEdits + "Editor.WriteRecovery\nprint Editor.Modified\n";
  ASSERT_EQ(write(toChild[1], script.data(), script.size()), static_cast<ssize_t>(script.size()));
  // The editor waits for more lines; its copy is written once it says so.
  std::string said;
  char buf[256];
  while (said.find("Editor.Modified=") == std::string::npos) {
    const ssize_t n = read(fromChild[0], buf, sizeof buf);
    if (n <= 0) break;
    said.append(buf, static_cast<size_t>(n));
  }
  EXPECT_NE(said.find("Editor.Modified=-1"), std::string::npos) << said;
  kill(pid, SIGKILL);
  int status = 0;
  waitpid(pid, &status, 0);
  close(toChild[1]);
  close(fromChild[0]);
  ASSERT_TRUE(WIFSIGNALED(status));
  const std::vector<RecoveryCopy> left = FindRecoveryCopies(root);
  ASSERT_EQ(left.size(), 1u);
  EXPECT_EQ(left[0].mapPath, maps / "killed.map");

  // The same work done here, for comparison.
  Window expected;
  expected.Run(SaveAsLines(expected.maps.path(), "killed") + kEdits);

  // The next start offers it: Later keeps it, Recover opens it, modified,
  // under its own path.
  Window next(app.path());
  EXPECT_EQ(next.Run("answer 2\nEditor.OfferRecovery\nprint Editor.Modified\n").substr(0, 18), "Editor.Modified=0\n");
  ASSERT_EQ(FindRecoveryCopies(root).size(), 1u);
  const std::string out = next.Run("answer 6\nEditor.OfferRecovery\nprint Editor.Modified MapPath Form1.Caption\n");
  EXPECT_EQ(out.substr(0, out.find("msgbox:")),
            "Editor.Modified=-1\nMapPath=" + (maps / "killed.map") + "\nForm1.Caption=Main: editing killed\n");
  EXPECT_NE(out.find("msgbox: Recover unsaved changes to killed.map from "), std::string::npos) << out;
  ExpectSameDocument(expected.f->session(), next.f->session());
  // The dead editor's copy is gone; this editor holds its own.
  EXPECT_TRUE(FindRecoveryCopies(root).empty());
  EXPECT_TRUE(next.f->keeper().HasRecoveryCopy());
  // Save writes it where it belongs, and the copy goes.
  next.Run("Form1.menu_file_save_Click\n");
  EXPECT_FALSE(next.f->keeper().HasRecoveryCopy());
  EXPECT_EQ(next.Run("print Editor.Modified\n"), "Editor.Modified=0\n");
  const std::string folder = next.f->keeper().RecoveryFolder().toStdString();
  EXPECT_FALSE(folder.empty());
  // An editor that ends normally leaves nothing behind.
  next.f.reset();
  EXPECT_FALSE(kv::DirExists(folder));
}

TEST(Recovery, DiscardRemovesTheCopyAndAFreshMapTakesTheCopysNames) {
  kvtest::TempDir state;
  EnvVar xdg("XDG_STATE_HOME", state.path());
  Window w;
  // A map never named: its names live in the program folder's newmap files,
  // which the next start makes afresh.
  w.Run(std::string(kEdits) + "Editor.WriteRecovery\n");
  const std::string root = kv::RecoveryRoot();
  ASSERT_TRUE(w.f->keeper().HasRecoveryCopy());
  // Another editor running meanwhile does not offer a copy in use.
  Window other;
  EXPECT_EQ(other.Run("Editor.OfferRecovery\n"), "");
  // The first one dies: its folder stays, its lock goes.
  const std::string dir = w.f->keeper().RecoveryFolder().toStdString();
  const std::string keep = state / "kept";
  std::filesystem::rename(dir, keep);
  w.f.reset();
  std::filesystem::create_directories(root);
  std::filesystem::rename(keep, dir);
  ASSERT_EQ(FindRecoveryCopies(root).size(), 1u);
  Window next(w.app.path());
  EXPECT_EQ(next.Run("answer 6\nEditor.OfferRecovery\nprint MapPath\n").substr(0, 8), "MapPath=");
  std::string name = GetHexName(next.f->session(), 3, 2);
  EXPECT_EQ(TrimName(name), "Kessmoor");
  EXPECT_EQ(next.f->session().doc.HexElev(3, 3), 140);
  // Discard: a copy is removed without opening it.
  next.Run("Editor.WriteRecovery\n");
  const std::string nextDir = next.f->keeper().RecoveryFolder().toStdString();
  std::filesystem::rename(nextDir, keep);
  next.f.reset();
  std::filesystem::rename(keep, nextDir);
  Window last(w.app.path());
  EXPECT_NE(last.Run("answer 7\nEditor.OfferRecovery\nprint Editor.Modified\n").find("Editor.Modified=0"),
            std::string::npos);
  EXPECT_TRUE(FindRecoveryCopies(root).empty());
}

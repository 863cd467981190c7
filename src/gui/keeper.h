// Keeps the user's work in the editor: the history of steps behind Undo and
// Redo, the modified mark, the unsaved-changes guard and the recovery copy.
// It wraps the classic handlers at the boundary where the user (or a
// script) acts: a step begins before an action and is found by comparing the
// document after it (editing/history.h). It never changes what a handler
// writes.
#pragma once

#include <memory>
#include <optional>

#include <QObject>
#include <QString>
#include <QStringList>

#include "editing/history.h"
#include "editing/recovery.h"

class QAction;
class QTimer;

namespace kv::gui {

class Form1;

class Keeper : public QObject {
  Q_OBJECT
 public:
  explicit Keeper(Form1& form);
  ~Keeper() override;
  History& history() { return *history_; }

  // The window's part: Undo and Redo at the top of the Edit menu, the keys of
  // the File menu, the title's mark. Called once the menu exists.
  void InstallUi();

  // Brackets around one action; the outermost end finds the step. A stroke
  // of painting is one bracket from the press to the release.
  void BeginStep(const QString& name = {});
  void EndStep();
  // Finds what changed since the last step (outside any bracket); what is
  // found without a user's action while the history is empty (a document
  // settling after it was opened) goes into the baseline.
  void Settle(bool userAction = true);

  bool Undo();
  bool Redo();
  // Whether the document differs from its last save (pending changes count).
  bool Modified();

  // The unsaved-changes guard, before the document is closed or replaced:
  // "Save changes to NAME?" with Save, Discard and Cancel. True to go on.
  bool Guard();
  // The guard is on in the editor and off in scripts until a script sets it.
  bool GuardOn() const;
  void SetGuard(bool on) { guard_ = on; }
  // The map has no file of its own yet (new, imported, made from a bitmap):
  // a save asks for a name.
  bool Untitled() const;
  // The window's title: the caption, and " *" while the map is modified.
  QString Title() const;
  // The name the guard and the recovery offer call the map by.
  QString MapName() const;

  // The recovery copy (editing/recovery.h): written at most every
  // RecoveryInterval() seconds while the map is modified, in the editor; a
  // script writes it with Editor.WriteRecovery. It goes when the map is saved
  // or its changes undone, and with the editor when it ends.
  bool WriteRecovery(QString* err = nullptr);
  bool HasRecoveryCopy() const { return slot_.HasCopy(); }
  QString RecoveryFolder() const { return QString::fromStdString(slot_.dir()); }
  // The setting recovery/interval (seconds, 0 never), 60 unless set.
  static int RecoveryInterval();
  // At start: each copy left by an editor that died, newest first: "Recover
  // unsaved changes to NAME from TIME?" with Recover, Discard and Later
  // (kept for the next start). True when one was opened.
  bool OfferRecovery();

  // The words for the action of a handler, as the menus and buttons say it:
  // "auto redraw Terrain", "Rename", "Paint Tile", "Next Tile (N)".
  QString StepName(const QString& handler, const QStringList& args = {}) const;

 protected:
  bool eventFilter(QObject* obj, QEvent* ev) override;

 signals:
  // Undo, redo, a new step or a save changed what the Edit menu and the
  // title show.
  void stateChanged();

 private:
  void AfterOutcome(History::Outcome out);
  void ShowChange();
  void ShowState();
  bool SaveForGuard();
  void RecoveryTick();
  void AfterChange();
  RecoverySlot slot_;
  QTimer* recoveryTimer_ = nullptr;
  bool changedSinceCopy_ = false;
  Form1& form_;
  std::unique_ptr<History> history_;
  std::optional<bool> guard_;
  QAction* undo_ = nullptr;
  QAction* redo_ = nullptr;
  int listener_ = 0;
};

}  // namespace kv::gui

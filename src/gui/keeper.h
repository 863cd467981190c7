// Keeps the user's work in the editor: the history of steps behind Undo and
// Redo, the modified mark, the unsaved-changes guard and the recovery copy.
// It wraps the classic handlers at the boundary where the user (or a
// script) acts: a step begins before an action and is found by comparing the
// document after it (document/history.h). It never changes what a handler
// writes.
#pragma once

#include <QObject>
#include <QString>
#include <QStringList>
#include <memory>

#include "document/history.h"

namespace kv::gui {

class Form1;

class Keeper : public QObject {
  Q_OBJECT
 public:
  explicit Keeper(Form1& form);
  ~Keeper() override;
  History& history() { return *history_; }

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
  bool Modified() const { return history_->Modified(); }

  // The words for the action of a handler, as the menus and buttons say it:
  // "auto redraw Terrain", "Rename", "Paint Tile", "Next Tile (N)".
  QString StepName(const QString& handler, const QStringList& args = {}) const;

 signals:
  // Undo, redo, a new step or a save changed what the Edit menu and the
  // title show.
  void stateChanged();

 private:
  void AfterOutcome(History::Outcome out);
  void ShowChange();
  Form1& form_;
  std::unique_ptr<History> history_;
};

}  // namespace kv::gui

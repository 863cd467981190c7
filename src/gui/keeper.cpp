#include "gui/keeper.h"

#include <QAction>
#include <QPushButton>

#include "document/namestore.h"
#include "gui/Form1.h"
#include "session.h"
#include "view/render_api.h"

namespace kv::gui {

namespace {

QString Plain(QString caption) { return caption.remove(QLatin1Char('&')); }

// What a press on the map does under the pens, in the user's words.
QString PaintName(const Session& s) {
  const Pens& p = s.pens;
  if (p.ElevMode == -1) return QStringLiteral("Set Elevation");
  switch (p.CtlMode) {
    case 1: return QStringLiteral("Set Deployment");
    case 2: return QStringLiteral("Set Hex Control");
    case 3: return QStringLiteral("Objective Path");
    default: break;
  }
  if (p.SideEdit > 0) return QStringLiteral("Set Side");
  if (p.ClearSides == -1) return QStringLiteral("Clear Sides");
  return QStringLiteral("Paint Tile");
}

QString KeyName(int code) {
  switch (code) {
    case 66: return QStringLiteral("Previous Tile (B)");
    case 78: return QStringLiteral("Next Tile (N)");
    case 82: return QStringLiteral("Random Tile (R)");
    case 88: return QStringLiteral("Original Owners (X)");
    case 118: return QStringLiteral("Restore Snapshot (F7)");
    case 119: return QStringLiteral("Learn Forests (F8)");
    default: return QStringLiteral("Key %1").arg(code);
  }
}

}  // namespace

Keeper::Keeper(Form1& form) : form_(form), history_(std::make_unique<History>(form.session())) {}

Keeper::~Keeper() = default;

void Keeper::BeginStep(const QString& name) { history_->Begin(name.toStdString()); }

void Keeper::EndStep() {
  if (history_->Depth() == 1) {
    const History::Outcome out = history_->Commit();
    history_->End();
    AfterOutcome(out);
  } else {
    history_->End();
  }
}

void Keeper::Settle(bool userAction) {
  if (history_->Depth() > 0) return;
  if (!userAction && history_->AbsorbIfEmpty()) return;
  AfterOutcome(history_->Commit());
}

void Keeper::AfterOutcome(History::Outcome out) {
  if (out == History::Outcome::None && !history_->LastChange().Any()) return;
  emit stateChanged();
}

bool Keeper::Undo() {
  const bool ok = history_->Undo();
  if (ok) ShowChange();
  emit stateChanged();
  return ok;
}

bool Keeper::Redo() {
  const bool ok = history_->Redo();
  if (ok) ShowChange();
  emit stateChanged();
  return ok;
}

// The view, the name box and the controls show the document as it now is.
void Keeper::ShowChange() {
  Session& s = form_.session();
  const DocChange& c = history_->LastChange();
  if (c.names) s.ed.f1.Text2 = GetHexName(s, s.pens.CurHexX, s.pens.CurHexY);
  RedrawBuffers(s);
  form_.SyncControls();
}

QString Keeper::StepName(const QString& handler, const QStringList& args) const {
  QString stem = handler;
  if (stem.endsWith(QStringLiteral("_Click"))) stem.chop(6);
  if (auto* a = form_.findChild<QAction*>(stem); a && !a->text().isEmpty()) return Plain(a->text());
  if (auto* b = form_.findChild<QPushButton*>(stem)) return Plain(b->text());
  if (handler == QStringLiteral("Picture1_MouseDown")) {
    // The right button picks the pen; only the left one paints.
    return PaintName(form_.session());
  }
  if (handler == QStringLiteral("Form_KeyDown") && !args.isEmpty()) return KeyName(args[0].toInt());
  return stem;
}

}  // namespace kv::gui

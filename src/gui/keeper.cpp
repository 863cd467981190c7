#include "gui/keeper.h"

#include <QAction>
#include <QApplication>
#include <QDateTime>
#include <QKeyEvent>
#include <QKeySequence>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QSettings>
#include <QTimer>

#include "document/mapfile.h"
#include "document/namestore.h"
#include "editing/filemenu.h"
#include "editing/mapload.h"
#include "gui/Form1.h"
#include "gui/editorapp.h"
#include "gui/qtui.h"
#include "platform/fileio.h"
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

Keeper::Keeper(Form1& form) : form_(form), history_(std::make_unique<History>(form.session())) {
  if (EditorApplication* app = EditorApplication::Instance())
    listener_ = app->AddListener([this](bool userAction) { Settle(userAction); });
}

Keeper::~Keeper() {
  if (EditorApplication* app = EditorApplication::Instance(); app && listener_) app->RemoveListener(listener_);
}

void Keeper::InstallUi() {
  QMenu* edit = form_.findChild<QMenu*>(QStringLiteral("mEdit"));
  QAction* first = edit && !edit->actions().isEmpty() ? edit->actions().first() : nullptr;
  undo_ = new QAction(QStringLiteral("Undo"), &form_);
  undo_->setObjectName(QStringLiteral("editUndo"));
  undo_->setShortcut(QKeySequence(QKeySequence::Undo));
  redo_ = new QAction(QStringLiteral("Redo"), &form_);
  redo_->setObjectName(QStringLiteral("editRedo"));
  redo_->setShortcuts({QKeySequence(QStringLiteral("Ctrl+Shift+Z")), QKeySequence(QStringLiteral("Ctrl+Y"))});
  // Wherever the focus is among the editor's windows; a text box takes its
  // own Ctrl+Z first.
  for (QAction* a : {undo_, redo_}) a->setShortcutContext(Qt::ApplicationShortcut);
  connect(undo_, &QAction::triggered, this, [this]() { Undo(); });
  connect(redo_, &QAction::triggered, this, [this]() { Redo(); });
  if (edit) {
    edit->insertAction(first, undo_);
    edit->insertAction(first, redo_);
    edit->insertSeparator(first);
  } else {
    form_.addAction(undo_);
    form_.addAction(redo_);
  }
  auto keys = [this](const char* name, const char* seq) {
    if (auto* a = form_.findChild<QAction*>(QString::fromLatin1(name)))
      a->setShortcut(QKeySequence(QString::fromLatin1(seq)));
  };
  keys("menu_file_new", "Ctrl+N");
  keys("menu_file_open", "Ctrl+O");
  keys("menu_file_save", "Ctrl+S");
  keys("menu_file_save_as", "Ctrl+Shift+S");
  // A stroke of painting, from the press to the release, is one step.
  form_.onStrokeBegin = [this]() { BeginStep(StepName(QStringLiteral("Picture1_MouseDown"))); };
  form_.onStrokeEnd = [this]() { EndStep(); };
  connect(this, &Keeper::stateChanged, this, &Keeper::ShowState);
  qApp->installEventFilter(this);
  ShowState();
  recoveryTimer_ = new QTimer(this);
  connect(recoveryTimer_, &QTimer::timeout, this, &Keeper::RecoveryTick);
  if (const int secs = RecoveryInterval(); secs > 0) recoveryTimer_->start(secs * 1000);
}

int Keeper::RecoveryInterval() {
  QSettings settings(QStringLiteral("korvane-mapedit"), QStringLiteral("korvane-mapedit"));
  bool ok = false;
  const int secs = settings.value(QStringLiteral("recovery/interval"), 60).toInt(&ok);
  return ok && secs >= 0 ? secs : 60;
}

// After every step, undo or redo: a map back at its saved state needs no copy.
void Keeper::AfterChange() {
  changedSinceCopy_ = true;
  if (!history_->Modified()) slot_.Clear();
}

void Keeper::RecoveryTick() {
  if (Script().active || history_->Depth() > 0) return;
  Settle();
  if (!history_->Modified()) {
    slot_.Clear();
    return;
  }
  if (changedSinceCopy_ || !slot_.HasCopy()) WriteRecovery();
}

bool Keeper::WriteRecovery(QString* err) {
  std::string why;
  if (!slot_.Write(form_.session(), RecoveryRoot(), &why)) {
    if (err) *err = QString::fromStdString(why);
    return false;
  }
  changedSinceCopy_ = false;
  return true;
}

bool Keeper::OfferRecovery() {
  Session& s = form_.session();
  for (const RecoveryCopy& c : FindRecoveryCopies(RecoveryRoot())) {
    const std::string file = BaseName(!c.mapPath.empty() ? c.mapPath : !c.mapFile.empty() ? c.mapFile : "newmap.map");
    const QDateTime when = QDateTime::fromSecsSinceEpoch(c.time);
    const QString time = when.date() == QDate::currentDate() ? when.toString(QStringLiteral("HH:mm"))
                                                             : when.toString(QStringLiteral("yyyy-MM-dd HH:mm"));
    const QString text =
        QStringLiteral("Recover unsaved changes to %1 from %2?").arg(QString::fromLatin1(file.c_str()), time);
    enum { Recover, Discard, Later } answer = Later;
    if (Script().active) {
      // 6 (Yes) recovers, 7 (No) discards, 2 (Cancel) keeps it for later.
      switch (MessageBox(&form_, text.toStdString(), vbYesNo)) {
        case vbYes: answer = Recover; break;
        case vbNo: answer = Discard; break;
        default: answer = Later; break;
      }
    } else {
      QMessageBox box(&form_);
      box.setWindowTitle(QStringLiteral("Korvane Map Editor"));
      box.setIcon(QMessageBox::Question);
      box.setText(text);
      box.setInformativeText(QStringLiteral("The editor ended without saving them."));
      QPushButton* recover = box.addButton(QStringLiteral("Recover"), QMessageBox::AcceptRole);
      QPushButton* discard = box.addButton(QStringLiteral("Discard"), QMessageBox::DestructiveRole);
      box.addButton(QStringLiteral("Later"), QMessageBox::RejectRole);
      box.setDefaultButton(recover);
      box.exec();
      answer = box.clickedButton() == recover ? Recover : box.clickedButton() == discard ? Discard : Later;
    }
    if (answer == Discard) RemoveRecoveryCopy(c);
    if (answer != Recover) continue;
    Settle();
    if (!OpenRecoveryCopy(s, c)) continue;
    // A new document, modified: Save writes it where it belongs.
    history_->Commit();
    history_->MarkUnsaved();
    changedSinceCopy_ = true;
    // This editor's own copy replaces the old one before the old one goes.
    if (WriteRecovery()) RemoveRecoveryCopy(c);
    form_.SyncControls();
    emit stateChanged();
    return true;
  }
  return false;
}

// A text box takes Ctrl+Z and Ctrl+Y only while it has typing of its own to
// undo or redo; otherwise they undo and redo steps of the map, as users
// expect wherever the focus happens to be (the status line has it at start).
bool Keeper::eventFilter(QObject* obj, QEvent* ev) {
  if (ev->type() == QEvent::ShortcutOverride) {
    auto* ke = static_cast<QKeyEvent*>(ev);
    auto* edit = qobject_cast<QLineEdit*>(obj);
    if (edit && ke->matches(QKeySequence::Undo) && !edit->isUndoAvailable()) return true;
    if (edit && (ke->matches(QKeySequence::Redo) || redo_->shortcuts().contains(QKeySequence(ke->keyCombination()))) &&
        !edit->isRedoAvailable())
      return true;
  }
  return QObject::eventFilter(obj, ev);
}

// The Edit menu names the steps; the title bears the mark while modified.
void Keeper::ShowState() {
  if (undo_) {
    const QString u = QString::fromStdString(history_->UndoName()), r = QString::fromStdString(history_->RedoName());
    undo_->setText(u.isEmpty() ? QStringLiteral("Undo") : QStringLiteral("Undo ") + u);
    undo_->setEnabled(!u.isEmpty());
    redo_->setText(r.isEmpty() ? QStringLiteral("Redo") : QStringLiteral("Redo ") + r);
    redo_->setEnabled(!r.isEmpty());
  }
  const QString title = Title();
  if (form_.windowTitle() != title) form_.setWindowTitle(title);
}

QString Keeper::Title() const {
  const QString caption = QString::fromLatin1(form_.session().forms.Form1Caption.c_str());
  return history_->Modified() ? caption + QStringLiteral(" *") : caption;
}

bool Keeper::Modified() {
  if (history_->Depth() == 0)
    Settle();
  else
    history_->Commit();
  return history_->Modified();
}

bool Keeper::GuardOn() const { return guard_.value_or(!Script().active); }

bool Keeper::Untitled() const {
  const Session& s = form_.session();
  return s.doc.MapPath.empty() || s.doc.MapPath == s.App("newmap.map");
}

QString Keeper::MapName() const {
  const Document& d = form_.session().doc;
  const std::string name = BaseName(!d.MapPath.empty() ? d.MapPath : d.MapFile.empty() ? "newmap.map" : d.MapFile);
  return QString::fromLatin1(name.c_str());
}

bool Keeper::Guard() {
  if (!GuardOn() || !Modified()) return true;
  const QString text = QStringLiteral("Save changes to %1?").arg(MapName());
  enum { Save, Discard, Cancel } answer = Cancel;
  if (Script().active) {
    // Scripts answer as they answer every box: 6 (Yes) saves, 7 (No)
    // discards, 2 (Cancel) keeps the map; with no answer queued, Save.
    switch (MessageBox(&form_, text.toStdString(), vbYesNo)) {
      case vbYes: answer = Save; break;
      case vbNo: answer = Discard; break;
      default: answer = Cancel; break;
    }
  } else {
    QMessageBox box(&form_);
    box.setWindowTitle(QStringLiteral("Korvane Map Editor"));
    box.setIcon(QMessageBox::Warning);
    box.setText(text);
    box.setInformativeText(QStringLiteral("Your changes will be lost if you don't save them."));
    box.setStandardButtons(QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel);
    box.setDefaultButton(QMessageBox::Save);
    switch (box.exec()) {
      case QMessageBox::Save: answer = Save; break;
      case QMessageBox::Discard: answer = Discard; break;
      default: answer = Cancel; break;
    }
  }
  if (answer == Discard) return true;
  if (answer == Cancel) return false;
  return SaveForGuard();
}

// Save from the guard: the map's own file, or the Save As dialog for a map
// without one. A save that fails or is cancelled keeps the document open.
bool Keeper::SaveForGuard() {
  Session& s = form_.session();
  if (!Untitled()) {
    SaveMap(s);
  } else if (!Script().active) {
    menu_file_save_as_Click(s);
    if (auto* dlg = dynamic_cast<QDialog*>(form_.FormByName(QStringLiteral("LoadSave"), false))) {
      dlg->hide();
      dlg->exec();
    }
  }
  return !Modified();
}

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
  if (out != History::Outcome::None) changedSinceCopy_ = true;
  if (!history_->Modified()) slot_.Clear();  // saved, or back at the saved state
  emit stateChanged();
}

bool Keeper::Undo() {
  const bool ok = history_->Undo();
  if (ok) ShowChange();
  AfterChange();
  emit stateChanged();
  return ok;
}

bool Keeper::Redo() {
  const bool ok = history_->Redo();
  if (ok) ShowChange();
  AfterChange();
  emit stateChanged();
  return ok;
}

// The view, the name box and the controls show the document as it now is.
void Keeper::ShowChange() {
  Session& s = form_.session();
  const DocChange& c = history_->LastChange();
  if (c.names) s.ed.f1.Text2 = GetHexName(s, s.pens.CurHexX, s.pens.CurHexY);
  s.MapEdited(c.hexes);
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

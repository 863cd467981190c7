#include "gui/LoadSave.h"

#include <QCloseEvent>
#include <QComboBox>
#include <QDir>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>

#include "editing/filemenu.h"
#include "session.h"

namespace kv::gui {

namespace {
QString Q(const std::string& s) { return QString::fromLocal8Bit(s.c_str()); }
std::string S(const QString& q) { return q.toLocal8Bit().toStdString(); }
}  // namespace

LoadSave::LoadSave(Session& s, QWidget* parent) : QDialog(parent), s_(s) {
  setObjectName(QStringLiteral("LoadSave"));
  setWindowTitle(QStringLiteral("File Open"));
  setModal(false);
  resize(420, 330);
  // The platform has no drive letters: the drive list has nothing to do.
  Drive1_ = new QComboBox(this);
  Drive1_->setObjectName(QStringLiteral("Drive1"));
  Drive1_->addItem(QStringLiteral("/"));
  Drive1_->hide();
  dirLabel_ = new QLabel(this);
  dirLabel_->setGeometry(8, 8, 404, 18);
  Dir1_ = new QListWidget(this);
  Dir1_->setObjectName(QStringLiteral("Dir1"));
  Dir1_->setGeometry(8, 30, 200, 220);
  List1_ = new QListWidget(this);
  List1_->setObjectName(QStringLiteral("List1"));
  List1_->setGeometry(214, 30, 198, 220);
  auto* label = new QLabel(QStringLiteral("File Name"), this);
  label->setObjectName(QStringLiteral("Label1"));
  label->setGeometry(8, 258, 80, 20);
  Text1_ = new QLineEdit(QStringLiteral("Text1"), this);
  Text1_->setObjectName(QStringLiteral("Text1"));
  Text1_->setGeometry(90, 256, 322, 24);
  Command1_ = new QPushButton(QStringLiteral("Load"), this);
  Command1_->setObjectName(QStringLiteral("Command1"));
  Command1_->setGeometry(90, 290, 100, 28);
  Command2_ = new QPushButton(QStringLiteral("Save"), this);
  Command2_->setObjectName(QStringLiteral("Command2"));
  Command2_->setGeometry(200, 290, 100, 28);
  Command3_ = new QPushButton(QStringLiteral("Cancel"), this);
  Command3_->setObjectName(QStringLiteral("Command3"));
  Command3_->setGeometry(310, 290, 100, 28);
  for (QPushButton* b : {Command1_, Command2_, Command3_}) b->setAutoDefault(false);

  connect(Command1_, &QPushButton::clicked, this, [this]() { Accept(false); });
  connect(Command2_, &QPushButton::clicked, this, [this]() { Accept(true); });
  // Enter in "File Name" and a double-click (or Enter) on a file do what the
  // dialog is for: save in the Save As dialog, load in the others.
  connect(Text1_, &QLineEdit::returnPressed, this, [this]() { Accept(s_.ed.dlg.DlgMode == 3); });
  connect(List1_, &QListWidget::itemActivated, this, [this](QListWidgetItem*) { Accept(s_.ed.dlg.DlgMode == 3); });
  connect(Command3_, &QPushButton::clicked, this, &LoadSave::Command3_Click);
  connect(Text1_, &QLineEdit::textEdited, this, [this](const QString& t) { s_.ed.dlg.Text1 = S(t); });
  connect(List1_, &QListWidget::currentRowChanged, this, [this](int row) {
    if (syncing_) return;
    s_.ed.dlg.List1Index = row;
    List1_Click();
  });
  connect(Dir1_, &QListWidget::itemActivated, this, [this](QListWidgetItem* item) {
    QDir d(Q(s_.ed.dlg.Dir1Path));
    EnterFolder(QDir::cleanPath(d.absoluteFilePath(item->text())));
  });
  SyncControls();
}

void LoadSave::Showing() {
  const DialogState& g = s_.ed.dlg;
  if (!s_.comfort.DialogFollowsMap || (g.DlgMode != 1 && g.DlgMode != 3)) return;
  // The open map's folder; a new map's is the program folder.
  const QString map = Q(s_.doc.MapPath);
  const QString dir = map.isEmpty() ? Q(s_.AppPath) : QFileInfo(map).absolutePath();
  if (QFileInfo(dir).isDir() && QDir::cleanPath(dir) != QDir::cleanPath(Q(g.Dir1Path))) EnterFolder(dir);
}

void LoadSave::Accept(bool save) {
  QString typed = Text1_->text();
  if (typed.startsWith(QStringLiteral("~/"))) typed = QDir::homePath() + typed.mid(1);
  if (QDir::isAbsolutePath(typed)) {
    const QFileInfo info(typed);
    const QString dir = info.absolutePath();
    if (!QFileInfo(dir).isDir()) {
      s_.MsgBox("The folder " + S(dir) + " does not exist.");
      return;
    }
    EnterFolder(dir);
    s_.ed.dlg.Text1 = S(info.fileName());
    SyncControls();
  }
  if (save)
    Command2_Click();
  else
    Command1_Click();
}

void LoadSave::EnterFolder(const QString& path) {
  s_.ed.dlg.Dir1Path = S(path);
  Dir1_Change();
}

void LoadSave::SyncControls() {
  syncing_ = true;
  const DialogState& g = s_.ed.dlg;
  const QString dir = Q(g.Dir1Path);
  dirLabel_->setText(dir);
  Dir1_->clear();
  if (!dir.isEmpty()) {
    QDir d(dir);
    if (!d.isRoot()) Dir1_->addItem(QStringLiteral(".."));
    Dir1_->addItems(d.entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name | QDir::IgnoreCase));
  }
  // The list is filled again only when its names changed: a click in it must
  // leave its items in place for the double-click that may follow.
  QStringList names;
  for (const std::string& n : g.List1) names << Q(n);
  QStringList shown;
  for (int i = 0; i < List1_->count(); ++i) shown << List1_->item(i)->text();
  if (names != shown) {
    List1_->clear();
    List1_->addItems(names);
  }
  if (List1_->currentRow() != g.List1Index) List1_->setCurrentRow(g.List1Index);
  if (Text1_->text() != Q(g.Text1)) Text1_->setText(Q(g.Text1));
  Command2_->setEnabled(g.SaveEnabled);
  syncing_ = false;
}

bool LoadSave::SetOwnProperty(QObject* ctl, const QString& prop, const QString& value) {
  if (ctl == Dir1_ && prop.compare(QStringLiteral("Path"), Qt::CaseInsensitive) == 0) {
    EnterFolder(value);
    return true;
  }
  if (ctl == Text1_ && prop == QStringLiteral("TextFromWidget")) {
    s_.ed.dlg.Text1 = S(value);
    return true;
  }
  if (ctl == List1_ && prop == QStringLiteral("ListIndexFromWidget")) {
    s_.ed.dlg.List1Index = value.toInt();
    return true;
  }
  return false;
}

bool LoadSave::GetOwnProperty(QObject* ctl, const QString& prop, QString* out) {
  if (ctl == Dir1_ && prop.compare(QStringLiteral("Path"), Qt::CaseInsensitive) == 0) {
    *out = Q(s_.ed.dlg.Dir1Path);
    return true;
  }
  if (ctl == this && prop.compare(QStringLiteral("Caption"), Qt::CaseInsensitive) == 0) {
    *out = windowTitle();
    return true;
  }
  return false;
}

void LoadSave::closeEvent(QCloseEvent* ev) {
  ev->accept();
  if (s_.ed.dlg.Loaded) LoadSave_Unload(s_);
}

void LoadSave::Form_Activate() {
  LoadSave_Form_Activate(s_);
  SyncControls();
}
void LoadSave::Drive1_Change() {
  s_.ed.dlg.Dir1Path.assign(1, '/');  // the root (a one-character literal here trips a false -Wrestrict)
  Dir1_Change();
}
void LoadSave::Dir1_Change() {
  LoadSave_Dir1_Change(s_);
  SyncControls();
}
void LoadSave::List1_Click() {
  LoadSave_List1_Click(s_);
  SyncControls();
}
void LoadSave::Command1_Click() { LoadSave_Command1_Click(s_); }
void LoadSave::Command2_Click() { LoadSave_Command2_Click(s_); }
void LoadSave::Command3_Click() { LoadSave_Command3_Click(s_); }

}  // namespace kv::gui

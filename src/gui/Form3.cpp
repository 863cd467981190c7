#include "gui/Form3.h"

#include <QLabel>
#include <QListWidget>
#include <QPushButton>

#include "editing/controlform.h"
#include "gui/formkit.h"
#include "session.h"

namespace kv::gui {

Form3::Form3(Session& s, QWidget* parent) : QWidget(parent, Qt::Window), s_(s) {
  setObjectName(QStringLiteral("Form3"));
  setWindowTitle(QStringLiteral("Control (F3)"));
  setAttribute(Qt::WA_DeleteOnClose);
  resize(430, 330);
  auto label = [this](const char* name, const char* text, int x, int y, int w) {
    auto* l = new QLabel(QString::fromLatin1(text), this);
    l->setObjectName(QString::fromLatin1(name));
    l->setGeometry(x, y, w, 20);
    return l;
  };
  label("Label3", "Current Control", 10, 8, 150);
  label("Label4", "Original Owner", 170, 8, 150);
  auto list = [this](const char* name, int x) {
    auto* l = new QListWidget(this);
    l->setObjectName(QString::fromLatin1(name));
    l->setGeometry(x, 30, 150, 290);
    return l;
  };
  List1_ = list("List1", 10);
  List2_ = list("List2", 170);
  label("Label1", "Objective Type", 330, 8, 95);
  auto button = [this](const char* name, const char* text, int y, void (Form3::*h)()) {
    auto* b = new QPushButton(QString::fromLatin1(text), this);
    b->setObjectName(QString::fromLatin1(name));
    b->setGeometry(330, y, 90, 28);
    b->setFocusPolicy(Qt::TabFocus);
    connect(b, &QPushButton::clicked, this, h);
  };
  button("Command1", "Primary", 30, &Form3::Command1_Click);
  button("Command2", "Secondary", 64, &Form3::Command2_Click);
  button("Command3", "Oil Resource", 98, &Form3::Command3_Click);
  button("Command4", "Road/None", 132, &Form3::Command4_Click);
  const char* modes[2] = {"Hex Mode", "Area Mode"};
  for (int i = 0; i < 2; ++i) {
    Label2_[i] = new ClickLabel(QStringLiteral("Label2(%1)").arg(i), QString::fromLatin1(modes[i]), this);
    Label2_[i]->setGeometry(335, 190 + 26 * i, 85, 20);
    Label2_[i]->onClick = [this, i]() { Label2_Click(i); };
  }
  // A click, or the arrow keys in the list, move its index.
  connect(List1_, &QListWidget::currentRowChanged, this, [this](int) {
    if (!syncing_) List1_Click();
  });
  connect(List2_, &QListWidget::currentRowChanged, this, [this](int) {
    if (!syncing_) List2_Click();
  });
  // A click on the entry already chosen counts too.
  connect(List1_, &QListWidget::itemClicked, this, [this](QListWidgetItem*) { List1_Click(); });
  connect(List2_, &QListWidget::itemClicked, this, [this](QListWidgetItem*) { List2_Click(); });
  keys_ = new KeyPreview(this, [this](int code, int shift) { Form_KeyDown(code, shift); });
  Form_Load();
}

Form3::~Form3() {
  if (!discarded_) s_.forms.Form3Loaded = false;
}

void Form3::Discard() {
  discarded_ = true;
  hide();
  deleteLater();
}

void Form3::Form_Load() {
  Control_Load(s_);
  const ControlFormState& f = s_.ed.f3;
  syncing_ = true;
  for (auto [w, items] : {std::pair{List1_, &f.List1}, std::pair{List2_, &f.List2}}) {
    w->clear();
    for (const std::string& n : *items) w->addItem(Latin1(n));
  }
  syncing_ = false;
  SyncControls();
}

void Form3::SyncControls() {
  const ControlFormState& f = s_.ed.f3;
  syncing_ = true;
  if (List1_->currentRow() != f.List1Index) List1_->setCurrentRow(f.List1Index);
  if (List2_->currentRow() != f.List2Index) List2_->setCurrentRow(f.List2Index);
  syncing_ = false;
  for (int i = 0; i < 2; ++i) SetBold(Label2_[i], f.Label2Bold[i]);
}

void Form3::AfterChange() {
  SyncControls();
  if (auto* main = dynamic_cast<VbForm*>(parentWidget())) main->SyncControls();
}

void Form3::Command1_Click() {
  Control_Command1_Click(s_);
  AfterChange();
}
void Form3::Command2_Click() {
  Control_Command2_Click(s_);
  AfterChange();
}
void Form3::Command3_Click() {
  Control_Command3_Click(s_);
  AfterChange();
}
void Form3::Command4_Click() {
  Control_Command4_Click(s_);
  AfterChange();
}
void Form3::Label2_Click(int Index) {
  Control_Label2_Click(s_, Index);
  AfterChange();
}
void Form3::List1_Click() {
  Control_List1_Click(s_, List1_->currentRow());
  AfterChange();
}
void Form3::List2_Click() {
  Control_List2_Click(s_, List2_->currentRow());
  AfterChange();
}
void Form3::Form_KeyDown(int KeyCode, int Shift) { Control_KeyDown(s_, KeyCode, Shift); }

bool Form3::SetOwnProperty(QObject* ctl, const QString& prop, const QString& value) {
  // A list's index set from outside fires its click once, as a click would.
  if (prop.compare(QStringLiteral("ListIndex"), Qt::CaseInsensitive) != 0 || (ctl != List1_ && ctl != List2_))
    return false;
  auto* l = static_cast<QListWidget*>(ctl);
  bool ok = false;
  const int v = value.trimmed().toInt(&ok);
  if (!ok || v < -1 || v >= l->count()) return false;  // the generic layer reports it
  syncing_ = true;
  l->setCurrentRow(v);
  syncing_ = false;
  if (l->currentRow() == v) {
    if (ctl == List1_)
      List1_Click();
    else
      List2_Click();
  }
  return true;
}

bool Form3::GetOwnProperty(QObject* ctl, const QString& prop, QString* out) {
  if (ctl == this && prop.compare(QStringLiteral("Caption"), Qt::CaseInsensitive) == 0) {
    *out = windowTitle();
    return true;
  }
  return false;
}

}  // namespace kv::gui

#include "gui/Form10.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include "editing/controlform.h"
#include "gui/formkit.h"
#include "session.h"

namespace kv::gui {

Form10::Form10(Session& s, QWidget* parent) : QDialog(parent), s_(s) {
  setObjectName(QStringLiteral("Form10"));
  setWindowTitle(QStringLiteral("Grid Dimensions"));
  setModal(true);
  resize(230, 120);
  auto* l1 = new QLabel(QStringLiteral("Width"), this);
  l1->setObjectName(QStringLiteral("Label1"));
  l1->setGeometry(16, 16, 60, 20);
  Text1_ = new QLineEdit(QStringLiteral("15"), this);
  Text1_->setObjectName(QStringLiteral("Text1"));
  Text1_->setGeometry(80, 14, 60, 24);
  auto* l2 = new QLabel(QStringLiteral("Height"), this);
  l2->setObjectName(QStringLiteral("Label2"));
  l2->setGeometry(16, 48, 60, 20);
  Text2_ = new QLineEdit(QStringLiteral("15"), this);
  Text2_->setObjectName(QStringLiteral("Text2"));
  Text2_->setGeometry(80, 46, 60, 24);
  auto* done = new QPushButton(QStringLiteral("Done"), this);
  done->setObjectName(QStringLiteral("Command1"));
  done->setGeometry(16, 82, 90, 28);
  done->setDefault(true);
  auto* cancel = new QPushButton(QStringLiteral("Cancel"), this);
  cancel->setObjectName(QStringLiteral("Command2"));
  cancel->setGeometry(120, 82, 90, 28);
  connect(done, &QPushButton::clicked, this, &Form10::Command1_Click);
  connect(cancel, &QPushButton::clicked, this, &Form10::Command2_Click);
  connect(Text1_, &QLineEdit::textEdited, this, [this](const QString& t) { s_.ed.f10.Text1 = Latin1(t); });
  connect(Text2_, &QLineEdit::textEdited, this, [this](const QString& t) { s_.ed.f10.Text2 = Latin1(t); });
  Form_Load();
}

void Form10::Form_Load() {
  Grid_Load(s_);
  SyncControls();
}

void Form10::SyncControls() {
  const QString a = Latin1(s_.ed.f10.Text1), b = Latin1(s_.ed.f10.Text2);
  if (Text1_->text() != a) Text1_->setText(a);
  if (Text2_->text() != b) Text2_->setText(b);
}

void Form10::Command1_Click() {
  if (Grid_Command1_Click(s_) && parentWidget())
    if (auto* main = dynamic_cast<VbForm*>(parentWidget())) main->SyncControls();
}

void Form10::Command2_Click() {
  Grid_Command2_Click(s_);
  if (auto* main = dynamic_cast<VbForm*>(parentWidget())) main->SyncControls();
}

// Closing the window leaves everything as it was.
void Form10::reject() {
  s_.ed.f10.Loaded = false;
  s_.ui().UnloadForm(FormId::Form10);
}

bool Form10::SetOwnProperty(QObject* ctl, const QString& prop, const QString& value) {
  if (prop != QStringLiteral("TextFromWidget")) return false;
  if (ctl == Text1_) s_.ed.f10.Text1 = Latin1(value);
  if (ctl == Text2_) s_.ed.f10.Text2 = Latin1(value);
  return true;
}

bool Form10::GetOwnProperty(QObject* ctl, const QString& prop, QString* out) {
  if (ctl == this && prop.compare(QStringLiteral("Caption"), Qt::CaseInsensitive) == 0) {
    *out = windowTitle();
    return true;
  }
  return false;
}

}  // namespace kv::gui

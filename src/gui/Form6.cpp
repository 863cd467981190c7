#include "gui/Form6.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include "editing/filemenu.h"
#include "session.h"

namespace kv::gui {

Form6::Form6(Session& s, QWidget* parent) : QDialog(parent), s_(s) {
  setObjectName(QStringLiteral("Form6"));
  setWindowTitle(QStringLiteral("Form6"));
  resize(260, 130);
  auto* l1 = new QLabel(QStringLiteral("Map Width"), this);
  l1->setObjectName(QStringLiteral("Label1"));
  l1->setGeometry(12, 14, 90, 20);
  Text1_ = new QLineEdit(QStringLiteral("32"), this);
  Text1_->setObjectName(QStringLiteral("Text1"));
  Text1_->setGeometry(110, 12, 130, 24);
  auto* l2 = new QLabel(QStringLiteral("Map Height"), this);
  l2->setObjectName(QStringLiteral("Label2"));
  l2->setGeometry(12, 46, 90, 20);
  Text2_ = new QLineEdit(QStringLiteral("32"), this);
  Text2_->setObjectName(QStringLiteral("Text2"));
  Text2_->setGeometry(110, 44, 130, 24);
  auto* ok = new QPushButton(QStringLiteral("OK"), this);
  ok->setObjectName(QStringLiteral("Command2"));
  ok->setGeometry(30, 86, 90, 28);
  auto* cancel = new QPushButton(QStringLiteral("Cancel"), this);
  cancel->setObjectName(QStringLiteral("Command1"));
  cancel->setGeometry(140, 86, 90, 28);
  ok->setDefault(true);
  connect(ok, &QPushButton::clicked, this, &Form6::Command2_Click);
  connect(cancel, &QPushButton::clicked, this, &Form6::Command1_Click);
  connect(Text1_, &QLineEdit::textEdited, this, [this](const QString& t) { s_.ed.f6.Text1 = t.toStdString(); });
  connect(Text2_, &QLineEdit::textEdited, this, [this](const QString& t) { s_.ed.f6.Text2 = t.toStdString(); });
}

void Form6::SyncControls() {
  const QString a = QString::fromStdString(s_.ed.f6.Text1), b = QString::fromStdString(s_.ed.f6.Text2);
  if (Text1_->text() != a) Text1_->setText(a);
  if (Text2_->text() != b) Text2_->setText(b);
}

bool Form6::SetOwnProperty(QObject* ctl, const QString& prop, const QString& value) {
  if (prop != QStringLiteral("TextFromWidget")) return false;
  if (ctl == Text1_) s_.ed.f6.Text1 = value.toStdString();
  if (ctl == Text2_) s_.ed.f6.Text2 = value.toStdString();
  return true;
}

void Form6::reject() { Command1_Click(); }
void Form6::Command1_Click() { Form6_Command1_Click(s_); }
void Form6::Command2_Click() {
  Form6_Command2_Click(s_);
  // The main window shows the new map's caption and bars.
  if (auto* p = dynamic_cast<VbForm*>(parentWidget())) p->SyncControls();
}

}  // namespace kv::gui

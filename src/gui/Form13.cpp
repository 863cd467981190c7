#include "gui/Form13.h"

#include <QButtonGroup>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>

#include "gui/formkit.h"
#include "session.h"

namespace kv::gui {

Form13::Form13(Session& s, QWidget* parent)
    : TileScreenForm(s, TileScreen::Pattern, "Form13", "Terrain Based Tile Pattern", parent) {
  AddMarks(&s.tileScreens.f13.Image2Tag);
  Label2_ = new QLabel(QStringLiteral("Tile Pattern"), this);
  Label2_->setObjectName(QStringLiteral("Label2"));
  Label2_->setGeometry(170, 0, 120, 16);
  Label3_ = new QLabel(QStringLiteral("Auto-Draw Tile ?"), this);
  Label3_->setObjectName(QStringLiteral("Label3"));
  Label3_->setGeometry(16, 152, 120, 18);
  auto* group = new QButtonGroup(this);
  const char* options[2] = {"NO", "Yes"};
  for (int i = 0; i < 2; ++i) {
    Option1_[i] = new QRadioButton(QString::fromLatin1(options[i]), this);
    Option1_[i]->setObjectName(QStringLiteral("Option1(%1)").arg(i));
    Option1_[i]->setGeometry(140 + 70 * i, 152, 64, 18);
    group->addButton(Option1_[i], i);
    connect(Option1_[i], &QRadioButton::clicked, this, [this, i]() { Option1_Click(i); });
  }
  Label4_ = new QLabel(this);
  Label4_->setObjectName(QStringLiteral("Label4"));
  Label4_->setGeometry(16, 176, 300, 18);
  const char* captions[3] = {"&Back", "&Next", "&Save"};
  for (int i = 0; i < 3; ++i) {
    Command1_[i] = new QPushButton(QString::fromLatin1(captions[i]), this);
    Command1_[i]->setObjectName(QStringLiteral("Command1(%1)").arg(i));
    Command1_[i]->setGeometry(16 + 80 * i, 204, 72, 26);
    connect(Command1_[i], &QPushButton::clicked, this, [this, i]() { Command1_Click(i); });
  }
  resize(300, 242);
  Form_Load();
}

QWidget* Form13::CommandControl(int i) { return Command1_[i]; }

void Form13::SyncOwn() {
  const PatternScreenState& f = s_.tileScreens.f13;
  Option1_[f.Option1]->setChecked(true);
  Label4_->setText(Latin1(f.Label4));
  Label4_->setVisible(f.MarksVisible);
  for (ClickLabel* m : Image2_) m->setVisible(f.MarksVisible);
}

bool Form13::GetOwnProperty(QObject* ctl, const QString& prop, QString* out) {
  if (prop.compare(QStringLiteral("Value"), Qt::CaseInsensitive) == 0)
    for (int i = 0; i < 2; ++i)
      if (ctl == Option1_[i]) {
        *out = s_.tileScreens.f13.Option1 == i ? QStringLiteral("-1") : QStringLiteral("0");
        return true;
      }
  if (prop.compare(QStringLiteral("OldDigits"), Qt::CaseInsensitive) == 0 && ctl == this) {
    *out = Latin1(s_.tileScreens.f13.OldDigits);
    return true;
  }
  return TileScreenForm::GetOwnProperty(ctl, prop, out);
}

bool Form13::SetOwnProperty(QObject* ctl, const QString& prop, const QString& value) {
  // Selecting an option clicks it.
  if (prop.compare(QStringLiteral("Value"), Qt::CaseInsensitive) == 0)
    for (int i = 0; i < 2; ++i)
      if (ctl == Option1_[i]) {
        const QString v = value.trimmed().toLower();
        if (v == "true" || v == "-1" || v == "1") Option1_Click(i);
        return true;
      }
  return TileScreenForm::SetOwnProperty(ctl, prop, value);
}

void Form13::Command1_Click(int Index) {
  TileScreen_Command(s_, which_, Index);
  SyncControls();
}
void Form13::Image2_Click(int Index) {
  TileScreen_Image2_Click(s_, which_, Index);
  SyncControls();
}
void Form13::Option1_Click(int Index) {
  PatternScreen_Option1_Click(s_, Index);
  SyncControls();
}
void Form13::BuildPatternFile(const QString& path, const QString& digits) {
  kv::BuildPatternFile(s_, Latin1(path), Latin1(digits));
}

}  // namespace kv::gui

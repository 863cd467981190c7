#include "gui/Form14.h"

#include <QButtonGroup>
#include <QGroupBox>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>

#include "gui/formkit.h"
#include "session.h"

namespace kv::gui {

Form14::Form14(Session& s, QWidget* parent)
    : TileScreenForm(s, TileScreen::Terrain, "Form14", "Tile Terrain Type", parent) {
  List1_ = new QListWidget(this);
  List1_->setObjectName(QStringLiteral("List1"));
  List1_->setGeometry(150, 16, 150, 150);
  // A click or an arrow key in the list changes its index, which reports a click.
  connect(List1_, &QListWidget::currentRowChanged, this, [this](int row) {
    if (syncing_) return;
    s_.tileScreens.f14.ListIndex = row;
    List1_Click();
  });
  Label4_ = new QLabel(this);
  Label4_->setObjectName(QStringLiteral("Label4"));
  Label4_->setGeometry(16, 152, 130, 18);
  Frame1_ = new QGroupBox(QStringLiteral("Random"), this);
  Frame1_->setObjectName(QStringLiteral("Frame1"));
  Frame1_->setGeometry(16, 176, 284, 84);
  auto* l2 = new QLabel(QStringLiteral("Include this tile when"), Frame1_);
  l2->setObjectName(QStringLiteral("Label2"));
  l2->setGeometry(8, 18, 160, 16);
  auto* l3 = new QLabel(QStringLiteral("randomly placing tiles ?"), Frame1_);
  l3->setObjectName(QStringLiteral("Label3"));
  l3->setGeometry(8, 36, 160, 16);
  auto* group = new QButtonGroup(this);
  const char* options[2] = {"NO", "YES"};
  for (int i = 0; i < 2; ++i) {
    Option1_[i] = new QRadioButton(QString::fromLatin1(options[i]), Frame1_);
    Option1_[i]->setObjectName(QStringLiteral("Option1(%1)").arg(i));
    Option1_[i]->setGeometry(176, 18 + 26 * i, 64, 20);
    group->addButton(Option1_[i], i);
    connect(Option1_[i], &QRadioButton::clicked, this, [this, i]() { s_.tileScreens.f14.Option1 = i; });
  }
  const char* captions[3] = {"&Back", "&Next", "&Save"};
  for (int i = 0; i < 3; ++i) {
    Command1_[i] = new QPushButton(QString::fromLatin1(captions[i]), this);
    Command1_[i]->setObjectName(QStringLiteral("Command1(%1)").arg(i));
    Command1_[i]->setGeometry(16 + 80 * i, 270, 72, 26);
    connect(Command1_[i], &QPushButton::clicked, this, [this, i]() { Command1_Click(i); });
  }
  resize(316, 308);
  Form_Load();
}

QWidget* Form14::CommandControl(int i) { return Command1_[i]; }

void Form14::SyncOwn() {
  const TerrainScreenState& f = s_.tileScreens.f14;
  if (List1_->count() != static_cast<int>(f.List1.size())) {
    List1_->clear();
    for (const std::string& n : f.List1) List1_->addItem(Latin1(n));
  }
  List1_->setCurrentRow(f.ListIndex);
  List1_->setEnabled(f.List1Enabled);
  Label4_->setText(Latin1(f.Label4));
  SetBold(Label4_, f.Label4Bold);
  Option1_[f.Option1 ? 1 : 0]->setChecked(true);
}

bool Form14::GetOwnProperty(QObject* ctl, const QString& prop, QString* out) {
  const TerrainScreenState& f = s_.tileScreens.f14;
  if (prop.compare(QStringLiteral("Value"), Qt::CaseInsensitive) == 0)
    for (int i = 0; i < 2; ++i)
      if (ctl == Option1_[i]) {
        *out = (f.Option1 ? 1 : 0) == i ? QStringLiteral("-1") : QStringLiteral("0");
        return true;
      }
  if (prop.compare(QStringLiteral("Tag"), Qt::CaseInsensitive) == 0 && ctl == Label4_) {
    *out = Latin1(f.Label4Tag);
    return true;
  }
  return TileScreenForm::GetOwnProperty(ctl, prop, out);
}

bool Form14::SetOwnProperty(QObject* ctl, const QString& prop, const QString& value) {
  TerrainScreenState& f = s_.tileScreens.f14;
  if (prop.compare(QStringLiteral("Value"), Qt::CaseInsensitive) == 0)
    for (int i = 0; i < 2; ++i)
      if (ctl == Option1_[i]) {
        const QString v = value.trimmed().toLower();
        if (v == "true" || v == "-1" || v == "1") f.Option1 = i;
        SyncControls();
        return true;
      }
  if (prop == QStringLiteral("ListIndexFromWidget") && ctl == List1_) {
    f.ListIndex = value.toInt();
    return true;
  }
  return TileScreenForm::SetOwnProperty(ctl, prop, value);
}

void Form14::Command1_Click(int Index) {
  TileScreen_Command(s_, which_, Index);
  SyncControls();
}
void Form14::List1_Click() {
  TerrainScreen_List1_Click(s_);
  SyncControls();
}

}  // namespace kv::gui

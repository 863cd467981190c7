#include "gui/Form15.h"

#include <QCloseEvent>
#include <QFrame>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include "bitmaputil/bitmaputil.h"
#include "gui/formkit.h"
#include "session.h"

namespace kv::gui {

Form15::Form15(Session& s, QWidget* parent) : QDialog(parent), s_(s) {
  setObjectName(QStringLiteral("Form15"));
  setWindowTitle(QStringLiteral("Replace Colour"));
  setModal(true);
  auto* group = new QGroupBox(QStringLiteral("New Colour Values"), this);
  group->setObjectName(QStringLiteral("Frame2"));
  group->setGeometry(10, 10, 230, 130);
  const char* captions[3] = {"Red Value 0-255", "Green VAlue 0-255", "Blue Value 0-255"};
  for (int i = 0; i < 3; ++i) {
    auto* l = new QLabel(QString::fromLatin1(captions[i]), group);
    l->setObjectName(QStringLiteral("Label%1").arg(i + 1));
    l->setGeometry(10, 26 + 34 * i, 120, 24);
    Text1_[i] = new QLineEdit(group);
    Text1_[i]->setObjectName(QStringLiteral("Text1(%1)").arg(i));
    Text1_[i]->setGeometry(140, 26 + 34 * i, 70, 24);
    connect(Text1_[i], &QLineEdit::textEdited, this, [this, i](const QString& t) {
      s_.bmp.f15.Text1[i] = Latin1(t);
      Text1_Change(i);
    });
  }
  Frame1_ = new QFrame(this);
  Frame1_->setObjectName(QStringLiteral("Frame1"));
  Frame1_->setGeometry(250, 18, 90, 90);
  Frame1_->setFrameShape(QFrame::Box);
  Frame1_->setAutoFillBackground(true);
  Command1_ = new QPushButton(QStringLiteral("Done"), this);
  Command1_->setObjectName(QStringLiteral("Command1"));
  Command1_->setGeometry(250, 112, 90, 28);
  connect(Command1_, &QPushButton::clicked, this, &Form15::Command1_Click);
  resize(350, 150);
  Form_Load();
}

void Form15::Form_Load() {
  if (!s_.bmp.f15.Loaded) Form15_Load(s_);
  SyncControls();
}

void Form15::SyncControls() {
  if (syncing_) return;
  syncing_ = true;
  const Form15State& f = s_.bmp.f15;
  for (int i = 0; i < 3; ++i)
    if (Text1_[i]->text() != Latin1(f.Text1[i])) Text1_[i]->setText(Latin1(f.Text1[i]));
  QPalette pal = Frame1_->palette();
  const uint32_t c = f.Frame1Colour;
  pal.setColor(QPalette::Window, QColor((c >> 16) & 255, (c >> 8) & 255, c & 255));
  Frame1_->setPalette(pal);
  // Done unloads the form.
  if (!f.Loaded && isVisible()) {
    done(0);
    hide();
  }
  syncing_ = false;
}

void Form15::Text1_Change(int Index) {
  if (Index < 0 || Index > 2) return;
  Form15_Text1_Change(s_, Index);
  SyncControls();
}

void Form15::Command1_Click() {
  Form15_Command1_Click(s_);
  SyncControls();
}

void Form15::closeEvent(QCloseEvent* e) {
  s_.bmp.f15.Loaded = false;
  QDialog::closeEvent(e);
}

void Form15::reject() {
  s_.bmp.f15.Loaded = false;
  QDialog::reject();
}

bool Form15::SetOwnProperty(QObject* ctl, const QString& prop, const QString& value) {
  if (prop != QStringLiteral("TextFromWidget")) return false;
  for (int i = 0; i < 3; ++i)
    if (ctl == Text1_[i]) {
      s_.bmp.f15.Text1[i] = Latin1(value);
      Text1_Change(i);
    }
  return true;
}

bool Form15::GetOwnProperty(QObject* ctl, const QString& prop, QString* out) {
  if (ctl == Frame1_ && prop.compare(QStringLiteral("BackColor"), Qt::CaseInsensitive) == 0) {
    const uint32_t c = s_.bmp.f15.Frame1Colour;
    *out = QString::number(((c >> 16) & 255) + 256 * ((c >> 8) & 255) + 65536 * (c & 255));
    return true;
  }
  if (ctl == this && prop.compare(QStringLiteral("Caption"), Qt::CaseInsensitive) == 0) {
    *out = windowTitle();
    return true;
  }
  return false;
}

}  // namespace kv::gui

#include "gui/Form9.h"

#include <algorithm>

#include <QCloseEvent>
#include <QLabel>
#include <QLineEdit>

#include "editing/controlform.h"
#include "gui/formkit.h"
#include "session.h"

namespace kv::gui {

Form9::Form9(Session& s, QWidget* parent) : QDialog(parent), s_(s) {
  setObjectName(QStringLiteral("Form9"));
  setWindowTitle(QStringLiteral("Map to Bitmap"));
  setModal(true);
  // The dialog is as wide as its longest line of text.
  int width = 0;
  auto label = [this, &width](const char* name, const char* text, int x, int y, int w) {
    auto* l = new QLabel(QString::fromLatin1(text), this);
    l->setObjectName(QString::fromLatin1(name));
    w = std::max(w, l->sizeHint().width());
    l->setGeometry(x, y, w, 20);
    width = std::max(width, x + w + 16);
  };
  label("Label1", "Convert a section of the map to a bitmap.", 16, 10, 390);
  label("Label2", "Starting at hex in upper left corner of display screen.", 16, 32, 390);
  label("Label3", "Width", 16, 62, 80);
  label("Label4", "Height", 120, 62, 80);
  Text1_ = new QLineEdit(this);
  Text1_->setObjectName(QStringLiteral("Text1"));
  Text1_->setGeometry(16, 84, 80, 24);
  Text2_ = new QLineEdit(this);
  Text2_->setObjectName(QStringLiteral("Text2"));
  Text2_->setGeometry(120, 84, 80, 24);
  label("Label5", "If you run out of memory...reduce the Width and Height dimensions.", 16, 126, 400);
  resize(width, 160);
  connect(Text1_, &QLineEdit::textEdited, this, [this](const QString& t) { s_.ed.f9.Text1 = Latin1(t); });
  connect(Text2_, &QLineEdit::textEdited, this, [this](const QString& t) { s_.ed.f9.Text2 = Latin1(t); });
  // Enter in a box closes the dialog like its close box.
  connect(Text1_, &QLineEdit::returnPressed, this, &QDialog::accept);
  connect(Text2_, &QLineEdit::returnPressed, this, &QDialog::accept);
  Form_Load();
}

Form9::~Form9() {
  // Going with the main window: the sizes are taken, nothing is exported.
  if (!unloaded_) ImageSize_Unload(s_);
}

void Form9::Form_Load() {
  ImageSize_Load(s_);
  SyncControls();
}

void Form9::Form_Unload() {
  if (unloaded_) return;
  unloaded_ = true;
  ImageSize_Unload(s_);
  if (afterUnload) {
    auto next = std::move(afterUnload);
    afterUnload = nullptr;
    next();
  }
  s_.ui().UnloadForm(FormId::Form9);
}

void Form9::done(int r) {
  Form_Unload();
  QDialog::done(r);
}

void Form9::closeEvent(QCloseEvent* e) {
  Form_Unload();
  QDialog::closeEvent(e);
}

void Form9::SyncControls() {
  const QString a = Latin1(s_.ed.f9.Text1), b = Latin1(s_.ed.f9.Text2);
  if (Text1_->text() != a) Text1_->setText(a);
  if (Text2_->text() != b) Text2_->setText(b);
}

bool Form9::SetOwnProperty(QObject* ctl, const QString& prop, const QString& value) {
  if (prop != QStringLiteral("TextFromWidget")) return false;
  if (ctl == Text1_) s_.ed.f9.Text1 = Latin1(value);
  if (ctl == Text2_) s_.ed.f9.Text2 = Latin1(value);
  return true;
}

bool Form9::GetOwnProperty(QObject* ctl, const QString& prop, QString* out) {
  if (ctl == this && prop.compare(QStringLiteral("Caption"), Qt::CaseInsensitive) == 0) {
    *out = windowTitle();
    return true;
  }
  return false;
}

}  // namespace kv::gui

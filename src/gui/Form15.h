// The new colour of "Replace Colour": red, green and blue boxes with a preview
// of the colour, and Done.
#pragma once

#include <QDialog>

#include "gui/vbform.h"

class QFrame;
class QLineEdit;
class QPushButton;

namespace kv {
struct Session;
}

namespace kv::gui {

class Form15 : public QDialog, public VbForm {
  Q_OBJECT
 public:
  Form15(Session& s, QWidget* parent);
  QWidget* formWidget() override { return this; }
  void SyncControls() override;
  bool SetOwnProperty(QObject* ctl, const QString& prop, const QString& value) override;
  bool GetOwnProperty(QObject* ctl, const QString& prop, QString* out) override;

  Q_INVOKABLE void Form_Load();
  Q_INVOKABLE void Text1_Change(int Index);
  Q_INVOKABLE void Command1_Click();

 protected:
  void closeEvent(QCloseEvent* e) override;
  void reject() override;

 private:
  Session& s_;
  QLineEdit* Text1_[3] = {};
  QFrame* Frame1_ = nullptr;
  QPushButton* Command1_ = nullptr;
  bool syncing_ = false;
};

}  // namespace kv::gui

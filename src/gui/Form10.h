// The grid dialog: every how many columns and rows the grid marks a hex.
#pragma once

#include <QDialog>

#include "gui/vbform.h"

class QLineEdit;

namespace kv {
struct Session;
}

namespace kv::gui {

class Form10 : public QDialog, public VbForm {
  Q_OBJECT
 public:
  Form10(Session& s, QWidget* parent);
  QWidget* formWidget() override { return this; }
  void SyncControls() override;
  bool SetOwnProperty(QObject* ctl, const QString& prop, const QString& value) override;
  bool GetOwnProperty(QObject* ctl, const QString& prop, QString* out) override;

  Q_INVOKABLE void Form_Load();
  Q_INVOKABLE void Command1_Click();  // Done
  Q_INVOKABLE void Command2_Click();  // Cancel

 protected:
  void reject() override;

 private:
  Session& s_;
  QLineEdit *Text1_ = nullptr, *Text2_ = nullptr;
};

}  // namespace kv::gui

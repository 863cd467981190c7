// The new-map form: width and height as highest column and row indexes.
#pragma once

#include <QDialog>

#include "gui/vbform.h"

class QLineEdit;

namespace kv {
struct Session;
}

namespace kv::gui {

class Form6 : public QDialog, public VbForm {
  Q_OBJECT
 public:
  Form6(Session& s, QWidget* parent);
  QWidget* formWidget() override { return this; }
  void SyncControls() override;
  bool SetOwnProperty(QObject* ctl, const QString& prop, const QString& value) override;

  Q_INVOKABLE void Command1_Click();  // Cancel
  Q_INVOKABLE void Command2_Click();  // OK

 protected:
  void reject() override;

 private:
  Session& s_;
  QLineEdit *Text1_, *Text2_;
};

}  // namespace kv::gui

// The help screen: the keyboard commands of the main window.
#pragma once

#include <QWidget>

#include "gui/vbform.h"

class QLabel;

namespace kv {
struct Session;
}

namespace kv::gui {

class Form8 : public QWidget, public VbForm {
  Q_OBJECT
 public:
  Form8(Session& s, QWidget* parent);
  QWidget* formWidget() override { return this; }
  bool GetOwnProperty(QObject* ctl, const QString& prop, QString* out) override;
  Q_INVOKABLE void Form_Load();

 private:
  QLabel* Label1_ = nullptr;
  QString text_;  // lines ended by a carriage return
};

}  // namespace kv::gui

// The tile picker's help screen: what its keys and clicks do.
#pragma once

#include <QWidget>

#include "gui/vbform.h"

class QLabel;

namespace kv {
struct Session;
}

namespace kv::gui {

class Form12 : public QWidget, public VbForm {
  Q_OBJECT
 public:
  Form12(Session& s, QWidget* parent);
  QWidget* formWidget() override { return this; }
  bool GetOwnProperty(QObject* ctl, const QString& prop, QString* out) override;
  Q_INVOKABLE void Form_Load();

 private:
  Session& s_;
  QLabel* Label1_[9] = {};
};

}  // namespace kv::gui

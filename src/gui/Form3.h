// The control and objectives form: the nation that controls a painted hex,
// the original owner, and the kind of objective.
#pragma once

#include <QWidget>

#include "gui/vbform.h"

class QListWidget;
class QPushButton;

namespace kv {
struct Session;
}

namespace kv::gui {

class ClickLabel;
class KeyPreview;

class Form3 : public QWidget, public VbForm {
  Q_OBJECT
 public:
  Form3(Session& s, QWidget* parent);
  ~Form3() override;
  QWidget* formWidget() override { return this; }
  // Unloaded by the core (a new nation set): the window goes, and the next
  // F3 loads a fresh one with the new lists.
  void Discard();
  void SyncControls() override;
  bool SetOwnProperty(QObject* ctl, const QString& prop, const QString& value) override;
  bool GetOwnProperty(QObject* ctl, const QString& prop, QString* out) override;

  Q_INVOKABLE void Form_Load();
  Q_INVOKABLE void Command1_Click();
  Q_INVOKABLE void Command2_Click();
  Q_INVOKABLE void Command3_Click();
  Q_INVOKABLE void Command4_Click();
  Q_INVOKABLE void Label2_Click(int Index);
  Q_INVOKABLE void List1_Click();
  Q_INVOKABLE void List2_Click();
  Q_INVOKABLE void Form_KeyDown(int KeyCode, int Shift);

 private:
  void AfterChange();
  Session& s_;
  QListWidget *List1_ = nullptr, *List2_ = nullptr;
  ClickLabel* Label2_[2] = {};
  KeyPreview* keys_ = nullptr;
  bool syncing_ = false;
  bool discarded_ = false;
};

}  // namespace kv::gui

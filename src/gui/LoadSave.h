// The file dialog: folder list, file list by pattern, "File Name" box and the
// buttons Load, Save and Cancel. One dialog serves every file choice; what
// its buttons do depends on the mode the opening command set.
#pragma once

#include <QDialog>

#include "gui/vbform.h"

class QComboBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QPushButton;

namespace kv {
struct Session;
}

namespace kv::gui {

class LoadSave : public QDialog, public VbForm {
  Q_OBJECT
 public:
  LoadSave(Session& s, QWidget* parent);
  QWidget* formWidget() override { return this; }
  void SyncControls() override;
  bool SetOwnProperty(QObject* ctl, const QString& prop, const QString& value) override;
  bool GetOwnProperty(QObject* ctl, const QString& prop, QString* out) override;

  Q_INVOKABLE void Form_Activate();
  Q_INVOKABLE void Drive1_Change();
  Q_INVOKABLE void Dir1_Change();
  Q_INVOKABLE void List1_Click();
  Q_INVOKABLE void Command1_Click();
  Q_INVOKABLE void Command2_Click();
  Q_INVOKABLE void Command3_Click();
  // Comfort: a map's folder when the dialog opens on a map.
  void Showing();

 protected:
  void closeEvent(QCloseEvent* ev) override;

 private:
  void EnterFolder(const QString& path);
  // Load (or Save) as the user asks for it: the buttons, a double-click on a
  // file, Enter in "File Name". An absolute path typed there goes to its folder first.
  void Accept(bool save);
  Session& s_;
  bool syncing_ = false;
  QComboBox* Drive1_;
  QLabel* dirLabel_;
  QListWidget *Dir1_, *List1_;
  QLineEdit* Text1_;
  QPushButton *Command1_, *Command2_, *Command3_;
};

}  // namespace kv::gui

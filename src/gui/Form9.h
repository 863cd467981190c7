// "Map to Bitmap": the size, in hexes, of the map section that key F6 turns
// into a picture. The picture is made when the dialog closes.
#pragma once

#include <functional>

#include <QDialog>

#include "gui/vbform.h"

class QLineEdit;

namespace kv {
struct Session;
}

namespace kv::gui {

class Form9 : public QDialog, public VbForm {
  Q_OBJECT
 public:
  Form9(Session& s, QWidget* parent);
  ~Form9() override;
  QWidget* formWidget() override { return this; }
  void SyncControls() override;
  bool SetOwnProperty(QObject* ctl, const QString& prop, const QString& value) override;
  bool GetOwnProperty(QObject* ctl, const QString& prop, QString* out) override;
  // Runs once the sizes are taken, when the dialog was opened for an export.
  std::function<void()> afterUnload;

  Q_INVOKABLE void Form_Load();
  Q_INVOKABLE void Form_Unload();

 protected:
  void done(int r) override;
  void closeEvent(QCloseEvent* e) override;

 private:
  Session& s_;
  QLineEdit *Text1_ = nullptr, *Text2_ = nullptr;
  bool unloaded_ = false;
};

}  // namespace kv::gui

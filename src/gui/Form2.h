// The tile picker: the whole tile sheet in a scrolling frame. A left click
// makes the tile the pen, a right click pops up the Options menu; F1 shows
// the picker's help, F2 to F4 the tile data screens.
#pragma once

#include <QMainWindow>

#include "gui/vbform.h"

class QMenu;
class QScrollBar;
class QWidget;

namespace kv {
struct Session;
}

namespace kv::gui {

class PictureBox;
class KeyPreview;

class Form2 : public QMainWindow, public VbForm {
  Q_OBJECT
 public:
  Form2(Session& s, QWidget* parent);
  QWidget* formWidget() override { return this; }
  void SyncControls() override;
  bool GetOwnProperty(QObject* ctl, const QString& prop, QString* out) override;
  // How often the Options menu has popped up over the sheet.
  int popups() const { return popups_; }

  Q_INVOKABLE void Form_Load();
  Q_INVOKABLE void Form_Resize();
  Q_INVOKABLE void HScroll1_Change();
  Q_INVOKABLE void VScroll1_Change();
  Q_INVOKABLE void Picture2_MouseDown(int Button, int Shift, double X, double Y);
  Q_INVOKABLE void Picture2_MouseMove(int Button, int Shift, double X, double Y);
  Q_INVOKABLE void Form_KeyDown(int KeyCode, int Shift);
  Q_INVOKABLE void mTerrain_Click();
  Q_INVOKABLE void mRoads_Click();
  Q_INVOKABLE void mPatterns_Click();

 protected:
  void resizeEvent(QResizeEvent* e) override;

 private:
  void AfterPick();
  Session& s_;
  QWidget* Picture1_ = nullptr;
  PictureBox* Picture2_ = nullptr;
  QScrollBar *HScroll1_ = nullptr, *VScroll1_ = nullptr;
  QMenu* mOptions_ = nullptr;
  KeyPreview* keys_ = nullptr;
  bool loaded_ = false;
  int popups_ = 0;
};

}  // namespace kv::gui

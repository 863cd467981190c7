// The bitmap utility: one picture in a scrolling frame, worked on through the
// menus and by clicks on it, with the hidden work canvas and the entry of the
// colour reduction value.
#pragma once

#include <QElapsedTimer>
#include <QMainWindow>
#include <QRect>

#include "gui/vbform.h"
#include "platform/events.h"

class QGroupBox;
class QLineEdit;
class QScrollBar;

namespace kv {
struct Session;
}

namespace kv::gui {

class PictureBox;
class ClickLabel;
class KeyPreview;

class Form4 : public QMainWindow, public VbForm {
  Q_OBJECT
 public:
  Form4(Session& s, QWidget* parent);
  ~Form4() override;
  QWidget* formWidget() override { return this; }
  void SyncControls() override;
  bool SetOwnProperty(QObject* ctl, const QString& prop, const QString& value) override;
  bool GetOwnProperty(QObject* ctl, const QString& prop, QString* out) override;
  // A notice of the core: "Form4", "Form4.Caption", "Form4.Picture2", ...
  void OnChanged(Change what);
  // Shows the columns put since the last frame; `force` shows them at once.
  void FlushColumns(bool force);
  // How many times the picture was shown while a pass ran (for measurements).
  int columnRefreshes() const { return refreshes_; }
  // Column-by-column showing on or off (a measurement compares both).
  void SetColumnRefresh(bool on) { columnRefresh_ = on; }

  Q_INVOKABLE void Form_Load();
  Q_INVOKABLE void Form_Resize();
  Q_INVOKABLE void Form_Activate();
  Q_INVOKABLE void Form_Unload();
  Q_INVOKABLE void Form_KeyDown(int KeyCode, int Shift);
  Q_INVOKABLE void LoadBitmap_Click();
  Q_INVOKABLE void FileExit_Click();
  Q_INVOKABLE void bmp2map_Click();
  Q_INVOKABLE void CreateSeasonalMaps_Click();
  Q_INVOKABLE void CreateMask_Click();
  Q_INVOKABLE void mExtremis_Click();
  Q_INVOKABLE void mPG2_Click();
  Q_INVOKABLE void menuRC_Click();
  Q_INVOKABLE void Replace_Colour_Click();
  Q_INVOKABLE void Shrink_Image_Click();
  Q_INVOKABLE void red_Click();
  Q_INVOKABLE void green_Click();
  Q_INVOKABLE void blue_Click();
  Q_INVOKABLE void mMapEditMode_Click();
  Q_INVOKABLE void ChangeCRV_Click();
  Q_INVOKABLE void SaveSectors_Click();
  Q_INVOKABLE void Label1_Click();
  Q_INVOKABLE void Picture2_MouseDown(int Button, int Shift, double X, double Y);
  Q_INVOKABLE void Picture2_MouseMove(int Button, int Shift, double X, double Y);
  Q_INVOKABLE void HScroll1_Change();
  Q_INVOKABLE void VScroll1_Change();

 protected:
  bool event(QEvent* e) override;
  void resizeEvent(QResizeEvent* e) override;
  void closeEvent(QCloseEvent* e) override;

 private:
  void Layout();
  void PlacePicture3();
  void AfterMainWindowChange();
  Session& s_;
  QWidget* Picture1_ = nullptr;
  PictureBox *Picture2_ = nullptr, *Picture3_ = nullptr;
  QScrollBar *HScroll1_ = nullptr, *VScroll1_ = nullptr;
  QGroupBox* Frame1_ = nullptr;
  QLineEdit* Text1_ = nullptr;
  ClickLabel* Label1_ = nullptr;
  KeyPreview* keys_ = nullptr;
  QElapsedTimer sinceFlush_, sinceServe_;
  QRect dirty_;
  int refreshes_ = 0;
  bool columnRefresh_ = true;
  bool loaded_ = false, unloaded_ = false, syncing_ = false;
};

}  // namespace kv::gui

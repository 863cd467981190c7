// The jump map window: the whole map, small, in a scrolling frame, with a box
// round the part the main view shows. A click centres the main view there.
#pragma once

#include <QImage>
#include <QMainWindow>

#include "gui/vbform.h"

class QListWidget;
class QScrollBar;

namespace kv {
struct Session;
}

namespace kv::gui {

class PictureBox;
class KeyPreview;

class Form5 : public QMainWindow, public VbForm {
  Q_OBJECT
 public:
  Form5(Session& s, QWidget* parent);
  ~Form5() override;
  QWidget* formWidget() override { return this; }
  void SyncControls() override;
  bool GetOwnProperty(QObject* ctl, const QString& prop, QString* out) override;
  // Shows the session's picture and box again.
  void Refresh();
  // The map is drawn anew (after a new document).
  void Redraw();
  void DrawJumpBox();
  // Unloaded by the core (a new document): the window goes without touching
  // the session, which may have loaded the jump map again meanwhile.
  void Discard();
  bool unloaded() const { return unloaded_; }
  // The picture as the window shows it, box included.
  const QImage& image() const { return image_; }

  Q_INVOKABLE void Form_Load();
  Q_INVOKABLE void Form_Resize();
  Q_INVOKABLE void Form_Activate();
  Q_INVOKABLE void Form_GotFocus();
  Q_INVOKABLE void Form_Unload();
  Q_INVOKABLE void HScroll1_Change();
  Q_INVOKABLE void VScroll1_Change();
  Q_INVOKABLE void Picture2_MouseDown(int Button, int Shift, double X, double Y);
  Q_INVOKABLE void List1_Click();
  Q_INVOKABLE void showcountry_Click();
  Q_INVOKABLE void show_objectives_Click();
  Q_INVOKABLE void mRoads_Click();
  Q_INVOKABLE void mCities_Click();
  Q_INVOKABLE void mZoomIn_Click();
  Q_INVOKABLE void mZoomOut_Click();
  Q_INVOKABLE void Form_KeyDown(int KeyCode, int Shift);

 protected:
  bool event(QEvent* e) override;
  // The form's own surface, under the frame: the box that the main window's
  // redraw leaves there.
  bool eventFilter(QObject* obj, QEvent* e) override;
  void resizeEvent(QResizeEvent* e) override;
  void closeEvent(QCloseEvent* e) override;

 private:
  void Layout(bool afterResize);
  void AfterViewMoved();
  Session& s_;
  QWidget* Picture1_ = nullptr;
  PictureBox* Picture2_ = nullptr;
  QScrollBar *HScroll1_ = nullptr, *VScroll1_ = nullptr;
  QListWidget* List1_ = nullptr;
  KeyPreview* keys_ = nullptr;
  QImage image_;
  bool loaded_ = false, unloaded_ = false, syncing_ = false;
};

}  // namespace kv::gui

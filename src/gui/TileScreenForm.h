// What the three tile data screens (Form11, Form13, Form14) share: the
// enlarged tile, its caption, the keys B, N and S, the bold command, and the
// six side marks of the two screens that have them, and the handlers of all
// three; each screen adds its own (Form11.h, Form13.h, Form14.h). They call
// the core in autotile/tilescreens.h.
#pragma once

#include <QWidget>

#include "autotile/tilescreens.h"
#include "gui/vbform.h"

class QLabel;

namespace kv {
struct Session;
}

namespace kv::gui {

class PictureBox;
class ClickLabel;

class TileScreenForm : public QWidget, public VbForm {
  Q_OBJECT
 public:
  TileScreenForm(Session& s, TileScreen which, const char* name, const char* caption, QWidget* parent);
  ~TileScreenForm() override;
  QWidget* formWidget() override { return this; }
  void SyncControls() override;
  bool GetOwnProperty(QObject* ctl, const QString& prop, QString* out) override;
  bool SetOwnProperty(QObject* ctl, const QString& prop, const QString& value) override;
  TileScreen which() const { return which_; }

  // The handlers every screen has; the automation finds them on each screen.
  Q_INVOKABLE void Form_Load();
  Q_INVOKABLE void Form_Unload();
  Q_INVOKABLE void Form_KeyDown(int KeyCode, int Shift);
  Q_INVOKABLE void Form_KeyUp(int KeyCode, int Shift);
  Q_INVOKABLE void Form_MouseMove();
  Q_INVOKABLE void GetStuff();
  Q_INVOKABLE void SaveStuff();
  Q_INVOKABLE void DrawTile();
  Q_INVOKABLE void nTile();
  Q_INVOKABLE void pTile();

 protected:
  TileScreenCommon& common();
  // The six marks around the tile (Form11, Form13), and Image1 beside them.
  void AddMarks(std::array<std::string, 6>* tags);
  // Shown state of the screen's own controls.
  virtual void SyncOwn() {}
  // The command control of index i (a button or, on Form11, a label).
  virtual QWidget* CommandControl(int i) = 0;
  bool eventFilter(QObject* obj, QEvent* ev) override;
  void closeEvent(QCloseEvent* ev) override;
  void mouseMoveEvent(QMouseEvent* ev) override;
  // Handlers reached through the window system (the subclasses also offer
  // them to the automation).
  void DoKeyDown(int KeyCode);
  void DoKeyUp();
  void DoUnload();

  Session& s_;
  TileScreen which_;
  PictureBox* Picture1_ = nullptr;
  QLabel* Label1_ = nullptr;
  QLabel* Image1_ = nullptr;
  ClickLabel* Image2_[6] = {};
  std::array<std::string, 6>* tags_ = nullptr;
  bool unloaded_ = false;
  bool syncing_ = false;
};

}  // namespace kv::gui

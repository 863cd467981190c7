// The main window of the editor: the status line and buttons along the top,
// the map view with its scroll bars, the side strip and the hex-name,
// coordinate and elevation controls along the bottom, and the menu.
#pragma once

#include <functional>
#include <memory>

#include <QMainWindow>
#include <QPointer>

#include "gui/handstate.h"
#include "gui/qtui.h"
#include "gui/vbform.h"
#include "session.h"
#include "view/layout.h"

class QLabel;
class QLineEdit;
class QPushButton;
class QScrollBar;
class QAction;
class QMenu;

namespace kv::gui {

class PictureBox;
class LoadSave;
class Form2;
class Form3;
class Form4;
class Form5;
class Form6;
class Form8;
class Form9;
class Form10;
class Form11;
class Form12;
class Form13;
class Form14;
class Form15;
class Keeper;
class RecentMaps;
class PenStatusBar;
class ToolWindows;

class Form1 : public QMainWindow, public VbForm {
  Q_OBJECT
 public:
  explicit Form1(std::string appPath, QWidget* parent = nullptr);
  ~Form1() override;
  Session& session() { return *session_; }
  // The history, guard and recovery around the classic handlers.
  Keeper& keeper() { return *keeper_; }
  QWidget* formWidget() override { return this; }
  void SyncControls() override;
  bool SetOwnProperty(QObject* ctl, const QString& prop, const QString& value) override;
  bool GetOwnProperty(QObject* ctl, const QString& prop, QString* out) override;
  // The default instance of another form by name, created on first use
  // (nullptr for a form this editor does not have yet).
  VbForm* FormByName(const QString& name, bool create = true, bool* known = nullptr);
  // Whether this editor has a form of that name (created or not).
  bool HasForm(const QString& name);
  const MainLayout& layoutRects() const { return layout_; }
  // The screen the window is laid out for, instead of the primary screen.
  void SetScreenSize(int w, int h);
  // The editor proper (not a script): the comforts the user switched on or
  // off last time (neighbours that follow, on by default) come back, their
  // menu entries remember what they are set to, and "Reset Learned
  // Patterns" takes its starter patterns from `starterFolder`.
  void UseEditorSettings(const std::string& starterFolder);

  // The comfort layer (Form1_hand.cpp): presses, moves and the wheel over
  // the view in the window's pixels inside its border, the zoom, the layout.
  void PressOnView(int button, int shift, double x, double y);
  void MoveOnView(int buttons, int shift, double x, double y);
  void ReleaseOnView(int button);
  void Wheel(int dy, int dx, int shift, double x, double y);
  // Zooms to `percent`, keeping the hex under window point `at` (of Picture1) in place.
  void SetZoom(int percent, QPoint at);
  int Zoom() const;
  HandState& hand() { return hand_; }
  // A stroke (a press in a painting mode, the drag, the release) begins and
  // ends: whatever keeps the edits' history makes one step of the whole stroke.
  std::function<void()> onStrokeBegin, onStrokeEnd;
  // Lays the window out for its present size (when the layout follows the window).
  void FitToWindow();

  // Runs the start-up order; false when the program folder cannot support
  // an editor (the reason has been shown).
  Q_INVOKABLE bool Form_Load();
  Q_INVOKABLE void Form_Resize();
  Q_INVOKABLE void Form_Unload();
  Q_INVOKABLE void Form_KeyDown(int KeyCode, int Shift);
  Q_INVOKABLE void Form_KeyUp(int KeyCode, int Shift);
  Q_INVOKABLE void Picture1_MouseDown(int Button, int Shift, double X, double Y);
  Q_INVOKABLE void Picture1_MouseMove(int Button, int Shift, double X, double Y);
  Q_INVOKABLE void Picture2_MouseDown(int Button, int Shift, double X, double Y);
  Q_INVOKABLE void HScroll1_Change();
  Q_INVOKABLE void VScroll1_Change();
  Q_INVOKABLE void Command1_Click();
  Q_INVOKABLE void Command2_Click();
  Q_INVOKABLE void Command3_Click();
  Q_INVOKABLE void Command4_Click();
  Q_INVOKABLE void Command5_Click();
  Q_INVOKABLE void Command6_Click();
  Q_INVOKABLE void Command7_Click();
  Q_INVOKABLE void Command8_Click();
  Q_INVOKABLE void Command9_Click();
  Q_INVOKABLE void Label1_Click();
  Q_INVOKABLE void Label2_Click();
  Q_INVOKABLE void Label4_MouseMove();
  Q_INVOKABLE void Text2_GotFocus();
  Q_INVOKABLE void Text2_LostFocus();
  Q_INVOKABLE void menu_file_new_Click();
  Q_INVOKABLE void menu_file_open_Click();
  Q_INVOKABLE void menu_file_save_Click();
  Q_INVOKABLE void menu_file_save_as_Click();
  Q_INVOKABLE void openpgset_Click();
  Q_INVOKABLE void LoadBitmap_Click();
  Q_INVOKABLE void mNewNations_Click();
  Q_INVOKABLE void menu_file_exit_Click();
  Q_INVOKABLE void mUndo_Click();
  Q_INVOKABLE void mCopy_Click();
  Q_INVOKABLE void mPaste_Click();
  Q_INVOKABLE void mHexSides_Click();
  Q_INVOKABLE void mShowRoadControl_Click();
  Q_INVOKABLE void mDefaultArea_Click();
  Q_INVOKABLE void mRandom_Click();
  Q_INVOKABLE void mAutoNeighbours_Click();
  Q_INVOKABLE void mResetPatterns_Click();
  Q_INVOKABLE void HexControlOn_Click();
  Q_INVOKABLE void HexControlOFF_Click();
  Q_INVOKABLE void mOriginalOwner_Click();
  Q_INVOKABLE void Obj_on_Click();
  Q_INVOKABLE void Obj_off_Click();
  Q_INVOKABLE void mGrid_Click();
  Q_INVOKABLE void mGridSet_Click();
  Q_INVOKABLE void helpscreen_Click();
  Q_INVOKABLE void StrategicShow_Click();
  Q_INVOKABLE void StrategicHide_Click();
  Q_INVOKABLE void mCountRoad_Click();
  Q_INVOKABLE void mNextUnconnected_Click();
  Q_INVOKABLE void menu_LandMass_Click();
  Q_INVOKABLE void VerifyHexData_Click();
  Q_INVOKABLE void mDefaultHC_Click();
  Q_INVOKABLE void mRoadsOnly_Click();
  Q_INVOKABLE void BuildAITables_Click();
  Q_INVOKABLE void autoredrawroads_Click();
  Q_INVOKABLE void autoredrawterrain_Click();
  Q_INVOKABLE void mAutoForest_Click();
  Q_INVOKABLE void mAutoMoutains_Click();
  Q_INVOKABLE void mMapRebuild_Click();
  Q_INVOKABLE void mRedoTerrain_Click();
  Q_INVOKABLE void doroads_Click();
  Q_INVOKABLE void MemorizeRoads_Click();
  Q_INVOKABLE void MemoriseRivers_Click();
  Q_INVOKABLE void mMountains_Click();
  Q_INVOKABLE void mRndWoods_Click();

 protected:
  bool eventFilter(QObject* obj, QEvent* ev) override;
  void changeEvent(QEvent* ev) override;
  void resizeEvent(QResizeEvent* ev) override;
  void closeEvent(QCloseEvent* ev) override;

 private:
  void BuildControls();
  void BuildMenu();
  void ApplyLayout(bool withTail);
  void OnChanged(Change what);
  void OnUnload(FormId form);
  void ShowPicture2();
  // Shows a form by name as the core asks (modal ones without waiting in a script).
  void ShowForm(FormId form);
  void ExportMapImage();
  void DrawJumpBox();
  void DrawStrategicMapHidden();
  QtUi ui_;
  std::unique_ptr<Session> session_;
  std::unique_ptr<Keeper> keeper_;  // goes before the session it keeps
  MainLayout layout_;
  bool loaded_ = false, unloaded_ = false;
  bool syncing_ = false;
  bool screenGiven_ = false;
  bool rememberSettings_ = false;
  std::string starterFolder_;
  bool busyCursor_ = false;

  QLineEdit *Text1_ = nullptr, *Text2_ = nullptr, *Text4_ = nullptr, *Text3_[3] = {};
  QPushButton *Command1_ = nullptr, *Command2_ = nullptr, *Command3_ = nullptr, *Command4_ = nullptr,
              *Command5_ = nullptr, *Command6_ = nullptr, *Command7_ = nullptr, *Command8_ = nullptr,
              *Command9_ = nullptr;
  QLabel *Label1_ = nullptr, *Label2_ = nullptr, *Label3_ = nullptr, *Label4_ = nullptr, *Label5_ = nullptr,
         *Label6_ = nullptr;
  PictureBox *Picture1_ = nullptr, *Picture2_ = nullptr;
  QImage picture2Image_;
  QScrollBar *HScroll1_ = nullptr, *VScroll1_ = nullptr;
  QPointer<LoadSave> loadSave_;
  QPointer<Form6> form6_;
  QPointer<Form2> form2_;
  QPointer<Form3> form3_;
  QPointer<Form4> form4_;
  QPointer<Form5> form5_;
  QPointer<Form8> form8_;
  QPointer<Form9> form9_;
  QPointer<Form10> form10_;
  QPointer<Form12> form12_;
  QPointer<Form11> form11_;
  QPointer<Form13> form13_;
  QPointer<Form14> form14_;
  QPointer<Form15> form15_;
  RecentMaps* recent_ = nullptr;
  // The comfort layer.
  void BuildHand();
  void SyncHand();
  MainLayout FittedLayout(int W, int H);
  void StrokeTo(double X, double Y);
  void EndStroke();
  HandState hand_;
  PenStatusBar* status_ = nullptr;
  ToolWindows* tools_ = nullptr;
  bool stroke_ = false;
  double strokeX_ = 0, strokeY_ = 0;
  int wheelRest_ = 0;
};

}  // namespace kv::gui

#include "gui/Form1.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QFileInfo>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QPushButton>
#include <QScreen>
#include <QScrollBar>
#include <QSettings>
#include <QStatusBar>

#include "analysis/aitables.h"
#include "analysis/landmass.h"
#include "analysis/roadcheck.h"
#include "autotile/passes.h"
#include "autotile/reset.h"
#include "editing/clipboard.h"
#include "editing/controlform.h"
#include "editing/editing.h"
#include "editing/fileflow.h"
#include "editing/filemenu.h"
#include "editing/startup.h"
#include "gui/Form10.h"
#include "gui/Form11.h"
#include "gui/Form12.h"
#include "gui/Form13.h"
#include "gui/Form14.h"
#include "gui/Form15.h"
#include "gui/Form2.h"
#include "gui/Form3.h"
#include "gui/Form4.h"
#include "gui/Form5.h"
#include "gui/Form6.h"
#include "gui/Form8.h"
#include "gui/Form9.h"
#include "gui/LoadSave.h"
#include "gui/PictureBox.h"
#include "gui/formkit.h"
#include "gui/keeper.h"
#include "gui/recentmaps.h"
#include "gui/toolwindows.h"
#include "gui/usersettings.h"
#include "jumpmap/mapimage.h"
#include "platform/appfolder.h"
#include "platform/bitmap.h"
#include "view/render_api.h"
#include "view/scrolling.h"

namespace kv::gui {

namespace {

// The menu of the main window, in order. Depth 0 is the bar; an entry whose
// work belongs to a part of the editor not built yet is shown disabled.
struct MenuEntry {
  const char* name;
  const char* caption;
  int depth;
  bool enabled;
  bool visible = true;
};
const MenuEntry kMenu[] = {
    {"menu_file", "&File", 0, true},
    {"menu_file_new", "&New Map file", 1, true},
    {"menu_file_open", "&Open Map File", 1, true},
    {"menu_file_save", "&Save Map File", 1, true},
    {"menu_file_save_as", "Save Map File &As", 1, true},
    {"openpgset", "Open PG set file", 1, true},
    {"LoadBitmap", "Bitmap Utilities", 1, true},
    {"mNewNations", "Open New Nations Set", 1, true},
    {"menu_file_exit", "E&xit", 1, true},
    {"mEdit", "&Edit", 0, true},
    {"mUndo", "Undo", 1, true},
    {"mCopy", "&Copy", 1, true},
    {"mPaste", "&Paste", 1, true},
    {"Mode", "Mode", 0, false, false},
    {"Obj_on", "Objective Path ON", 1, true},
    {"Obj_off", "Objective Path Off", 1, true},
    {"Image_Functions", "Tiles", 0, true},
    {"autoredrawroads", "auto redraw Roads", 1, true},
    {"autoredrawterrain", "auto redraw Terrain", 1, true},
    {"mAutoForest", "auto redraw Forests", 1, true},
    {"mAutoMoutains", "auto redraw Mountains", 1, true},
    {"mMapRebuild", "Redraw Map based on Terrain", 1, true},
    {"mRandom", "Random Tiles", 1, true},
    {"mAutoNeighbours", "Neighbours Follow", 1, true},
    {"mResetPatterns", "Reset Learned Patterns...", 1, true},
    {"menu_hexsides", "Hex Sides", 0, true},
    {"mHexSides", "&Hexsides on", 1, true},
    {"HexControl", "Hex Control", 0, true},
    {"HexControlOn", "Hex Control ON", 1, true},
    {"HexControlOFF", "Hex Control OFF", 1, true},
    {"mDefaultHC", "Set Hex Control (Screen Area)", 1, true},
    {"mRoadsOnly", "Set Roads ONLY", 1, true},
    {"mOriginalOwner", "Set Original Owner to Current Owner", 1, true},
    {"menu_options", "Options", 0, true},
    {"Background", "&Background Bitmap", 1, false, false},
    {"mDefaultArea", "Default Area (Screen)", 1, true},
    {"doroads", "Fill in Possible Road connections", 1, true},
    {"mGrid", "Grid Lines", 1, true},
    {"MemorizeRoads", "Memorize Road Tile Patterns", 1, true},
    {"MemoriseRivers", "Memorise River Tile Patterns", 1, true},
    {"mMountains", "Memorise Mountain Patterns", 1, true},
    {"mRedoTerrain", "Rebuild Terrain based on Tiles", 1, true},
    {"mRoadStuff", "Road Stuff", 1, true},
    {"mCountRoad", "Count road hexes", 2, true},
    {"mNextUnconnected", "Find connection/control problems", 2, true},
    {"mShowRoadControl", "Show Road Control = TRUE", 2, true},
    {"mRndWoods", "Scattered Woods", 1, true},
    {"mGridSet", "Set Grid Dimensions", 1, true},
    {"menu_LandMass", "Determine Separate Land Masses", 1, true},
    {"BuildAITables", "Build AI Tables", 1, false, false},
    {"VerifyHexData", "Verify Hex Data", 1, true},
    {"StrategicMap", "Strategic Map", 0, true},
    {"StrategicShow", "Show", 1, true},
    {"StrategicHide", "Hide", 1, true},
    {"helpscreen", "Help", 0, true},
};

// The editor's names for the text conversions of the forms.
QString Q(const std::string& s) { return Latin1(s); }
std::string S(const QString& q) { return Latin1(q); }

void SetText(QLineEdit* e, const std::string& t) {
  const QString q = Q(t);
  if (e->text() != q) e->setText(q);
}

void SetBar(QScrollBar* b, const ScrollBarModel& m) {
  const QSignalBlocker block(b);
  b->setMinimum(m.Min);
  // A map smaller than the view gives a maximum below the minimum: the bar stays put.
  b->setMaximum(std::max(m.Min, m.Max));
  b->setSingleStep(m.SmallChange);
  b->setPageStep(std::max(1, m.LargeChange));
  b->setValue(m.Value);
}

void Place(QWidget* w, const Rect& r) { w->setGeometry(r.Left, r.Top, r.Width, r.Height); }

}  // namespace

Form1::Form1(std::string appPath, QWidget* parent) : QMainWindow(parent) {
  setObjectName(QStringLiteral("Form1"));
  ui_.parent = this;
  ui_.onChanged = [this](Change what) { OnChanged(what); };
  ui_.onShow = [this](FormId form) { ShowForm(form); };
  ui_.onUnload = [this](FormId form) { OnUnload(form); };
  session_ = std::make_unique<Session>(std::move(appPath), &ui_);
  keeper_ = std::make_unique<Keeper>(*this);
  EditorHooks& hooks = session_->ed.hooks;
  hooks.ExportMapImage = [this](Session&) { ExportMapImage(); };
  hooks.DrawJumpBox = [this](Session&) { DrawJumpBox(); };
  // The objective path view: a click on an objective loads its AI table.
  hooks.LoadAITable = [](Session& s, int16_t x, int16_t y) { kv::LoadAITable(s, x, y); };
  hooks.TileDataGetStuff = [this](Session&, FormId form) {
    if (VbForm* f = FormByName(QString::fromLatin1(FormName(form))))
      QMetaObject::invokeMethod(f->formWidget(), "GetStuff", Qt::DirectConnection);
  };
  // What a paint taught: in the status bar, and in the editor (not in a
  // script, whose Label3 stays classic) in Label3 too until the pointer moves.
  hooks.Learned = [this](Session& s, const std::string& text) {
    statusBar()->showMessage(Q(text), 8000);
    if (rememberSettings_) s.SetLabel3(text);
  };
  hooks.ClearTilePickerDrawing = [this](Session&) {
    if (form2_) form2_->SyncControls();
  };
  setWindowTitle(QStringLiteral("Form1"));
  // The comfort that would change what a classic script sees waits for a script to ask.
  session_->comfort.DialogFollowsMap = hand_.LayoutFollowsWindow = hand_.WindowsInReach = hand_.LiveJumpMap =
      !Script().active;
  BuildControls();
  BuildMenu();
  keeper_->InstallUi();
  BuildHand();
}

Form1::~Form1() {
  if (!unloaded_) Form_Unload();
  qApp->removeEventFilter(this);
}

void Form1::BuildControls() {
  auto* c = new QWidget(this);
  c->setObjectName(QStringLiteral("centralwidget"));
  setCentralWidget(c);
  // The design sizes are made for a small, narrow 8-point face.
  QFont small = c->font();
  small.setPointSize(8);
  small.setStretch(QFont::SemiCondensed);
  c->setFont(small);
  auto edit = [c](const char* name, const char* text, int tw, int th) {
    auto* e = new QLineEdit(QString::fromLatin1(text), c);
    e->setObjectName(QString::fromLatin1(name));
    e->resize(Twips(tw), Twips(th));
    return e;
  };
  auto button = [c](const char* name, const char* text, const char* tip, int tw, int th) {
    auto* b = new QPushButton(QString::fromLatin1(text), c);
    b->setObjectName(QString::fromLatin1(name));
    b->setToolTip(QString::fromLatin1(tip));
    b->setFocusPolicy(Qt::TabFocus);
    b->resize(Twips(tw), Twips(th));
    return b;
  };
  auto label = [c](const char* name, const char* text, int tw, int th) {
    auto* l = new QLabel(QString::fromLatin1(text), c);
    l->setObjectName(QString::fromLatin1(name));
    l->resize(Twips(tw), Twips(th));
    return l;
  };
  Text1_ = edit("Text1", "", 975, 375);
  Command1_ = button("Command1", "Block Fill", "Fill a 10x10 block with selected tile.", 855, 375);
  Command3_ = button("Command3", "Map Tiles", "Show Map Tile to select.", 975, 375);
  Command5_ = button("Command5", "clear hex sides", "Clear Hexsides of roads or railroads.", 1215, 375);
  Command6_ = button("Command6", "deployment hexes on/off", "Set PG/AG style deployment hexes.", 1935, 375);
  Command2_ = button("Command2", "AutoTile Off", "", 1215, 375);
  Label3_ = label("Label3", "Progress", 615, 195);
  Label3_->setMinimumWidth(Twips(615));
  Picture1_ = new PictureBox(QStringLiteral("Picture1"), c);
  HScroll1_ = new QScrollBar(Qt::Horizontal, c);
  HScroll1_->setObjectName(QStringLiteral("HScroll1"));
  HScroll1_->resize(100, Twips(255));
  VScroll1_ = new QScrollBar(Qt::Vertical, c);
  VScroll1_->setObjectName(QStringLiteral("VScroll1"));
  VScroll1_->resize(Twips(255), 100);
  Picture2_ = new PictureBox(QStringLiteral("Picture2"), c);
  Picture2_->resize(Twips(5460), Twips(810));
  Label1_ = label("Label1", "Roads", 465, 195);
  Label2_ = label("Label2", "Rail Roads", 780, 195);
  Text2_ = edit("Text2", "", 1815, 285);
  Label4_ = label("Label4", "Hex Name", 750, 195);
  Command4_ = button("Command4", "Rename", "", 855, 255);
  Command7_ = button("Command7", "Clear", "", 855, 255);
  for (int i = 0; i < 3; ++i)
    Text3_[i] = edit(QStringLiteral("Text3(%1)").arg(i).toLatin1().constData(), "Text3", 735, 285);
  Label5_ = label("Label5", "Divisor", 480, 195);
  Command8_ = button("Command8", "Convert", "", 735, 255);
  Label6_ = label("Label6", "Elevation", 660, 195);
  Text4_ = edit("Text4", "elev", 735, 285);
  Command9_ = button("Command9", "EV mode ON", "", 1215, 255);
  SetBold(Label1_, true);
  Label4_->setMouseTracking(true);

  Picture1_->source = [this]() -> QImage {
    const Bitmap* bm = &session_->sprites.Picture1;
    if (bm->Empty()) return {};
    // 0x00RRGGBB words are the memory layout of Format_RGB32.
    return QImage(reinterpret_cast<const uchar*>(bm->Pixels().data()), bm->Width(), bm->Height(), bm->Width() * 4,
                  QImage::Format_RGB32);
  };
  // Presses and moves over the view go through the comfort layer (Form1_hand.cpp).
  Picture1_->onMouseDown = [this](int b, int sh, double x, double y) { PressOnView(b, sh, x, y); };
  Picture1_->onMouseMove = [this](int b, int sh, double x, double y) { MoveOnView(b, sh, x, y); };
  Picture2_->source = [this]() { return picture2Image_; };
  Picture2_->onMouseDown = [this](int b, int sh, double x, double y) { Picture2_MouseDown(b, sh, x, y); };

  connect(Command1_, &QPushButton::clicked, this, &Form1::Command1_Click);
  connect(Command2_, &QPushButton::clicked, this, &Form1::Command2_Click);
  connect(Command3_, &QPushButton::clicked, this, &Form1::Command3_Click);
  connect(Command4_, &QPushButton::clicked, this, &Form1::Command4_Click);
  connect(Command5_, &QPushButton::clicked, this, &Form1::Command5_Click);
  connect(Command6_, &QPushButton::clicked, this, &Form1::Command6_Click);
  connect(Command7_, &QPushButton::clicked, this, &Form1::Command7_Click);
  connect(Command8_, &QPushButton::clicked, this, &Form1::Command8_Click);
  connect(Command9_, &QPushButton::clicked, this, &Form1::Command9_Click);
  // What the user types goes into the session at once.
  auto track = [this](QLineEdit* e, std::string* target) {
    connect(e, &QLineEdit::textEdited, this, [target](const QString& t) { *target = S(t); });
  };
  Form1Controls& f = session_->ed.f1;
  track(Text2_, &f.Text2);
  track(Text4_, &f.Text4);
  for (int i = 0; i < 3; ++i) track(Text3_[i], &f.Text3[i]);
  connect(HScroll1_, &QScrollBar::valueChanged, this, [this](int v) {
    if (!syncing_) {
      SetScrollValue(*session_, Bar::H, v);
      SyncControls();
    }
  });
  connect(VScroll1_, &QScrollBar::valueChanged, this, [this](int v) {
    if (!syncing_) {
      SetScrollValue(*session_, Bar::V, v);
      SyncControls();
    }
  });
  for (QWidget* w : {static_cast<QWidget*>(Label1_), static_cast<QWidget*>(Label2_), static_cast<QWidget*>(Label4_),
                     static_cast<QWidget*>(Text2_)})
    w->installEventFilter(this);
}

void Form1::BuildMenu() {
  QMenu* stack[3] = {};
  for (const MenuEntry& m : kMenu) {
    const QString name = QString::fromLatin1(m.name), caption = QString::fromLatin1(m.caption);
    const bool hasChildren = (&m + 1 < std::end(kMenu)) && (&m + 1)->depth > m.depth;
    QAction* action = nullptr;
    if (hasChildren) {
      QMenu* menu = m.depth == 0 ? menuBar()->addMenu(caption) : stack[m.depth - 1]->addMenu(caption);
      menu->setObjectName(name);
      stack[m.depth] = menu;
      action = menu->menuAction();
    } else {
      action = m.depth == 0 ? menuBar()->addAction(caption) : stack[m.depth - 1]->addAction(caption);
      action->setObjectName(name);
      action->setParent(this);
      const QString handler = name + QStringLiteral("_Click");
      connect(action, &QAction::triggered, this, [this, handler]() {
        QString err;
        InvokeHandler(this, handler, {}, &err);
      });
    }
    action->setEnabled(m.enabled);
    action->setVisible(m.visible);
  }
  for (const char* n : {"mRandom", "mAutoNeighbours", "mHexSides", "HexControlOn", "HexControlOFF", "mGrid"})
    if (auto* a = findChild<QAction*>(QString::fromLatin1(n))) a->setCheckable(true);
  // File > Recent Maps, before Exit.
  recent_ = new RecentMaps(findChild<QMenu*>(QStringLiteral("menu_file")),
                           findChild<QAction*>(QStringLiteral("menu_file_exit")), this);
  recent_->open = [this](const QString& path) {
    const QFileInfo info(path);
    OpenMapFile(*session_, info.absolutePath().toLocal8Bit().toStdString(),
                info.fileName().toLocal8Bit().toStdString());
    SyncControls();
  };
}

void Form1::ApplyLayout(bool withTail) {
  const MainLayout& l = layout_;
  Place(Text1_, l.Text1);
  Place(Picture1_, l.Picture1);
  Place(HScroll1_, l.HScroll1);
  Place(VScroll1_, l.VScroll1);
  Place(Picture2_, l.Picture2);
  Place(Command1_, l.Command1);
  Place(Command3_, l.Command3);
  Place(Command5_, l.Command5);
  Place(Command6_, l.Command6);
  Place(Command2_, l.Command2);
  Label3_->move(l.Label3.Left, l.Label3.Top);
  Place(Label1_, l.Label1);
  Place(Label2_, l.Label2);
  Place(Text2_, l.Text2);
  Place(Command4_, l.Command4);
  Place(Command7_, l.Command7);
  if (withTail) {
    Place(Text3_[0], l.Text3_0);
    Place(Text3_[1], l.Text3_1);
    Place(Text3_[2], l.Text3_2);
    Place(Command8_, l.Command8);
    Place(Label4_, l.Label4);
    Place(Label5_, l.Label5);
    Place(Label6_, l.Label6);
    Place(Text4_, l.Text4);
    Place(Command9_, l.Command9);
  }
}

bool Form1::Form_Load() {
  Session& s = *session_;
  if (QScreen* scr = QGuiApplication::primaryScreen(); scr && !screenGiven_) {
    s.view.ScreenW = scr->size().width();
    s.view.ScreenH = scr->size().height();
  }
  if (!StartupData(s)) return false;
  int w = 0, h = 0;
  ClientSizeForScreen(s.view.ScreenW, s.view.ScreenH, w, h);
  layout_ = LayoutMainWindow(s, w, h, true);
  ApplyLayout(false);
  s.ed.f1.Text2.clear();
  if (!StartupAfterLayout(s)) return false;
  LayoutLoadTail(layout_);
  ApplyLayout(true);
  Form1StartupControls(s);
  move(0, 0);
  resize(s.view.ScreenW - 8, s.view.ScreenH - 8 - 22);
  qApp->installEventFilter(this);  // KeyPreview: the form sees every key first
  loaded_ = true;
  ShowPicture2();
  SyncControls();
  // The tile picker is shown at start and stays loaded.
  ShowForm(FormId::Form2);
  return true;
}

void Form1::SetScreenSize(int w, int h) {
  session_->view.ScreenW = w;
  session_->view.ScreenH = h;
  screenGiven_ = true;
}

void Form1::Form_Resize() {
  Session& s = *session_;
  // Only a maximised window is laid out again; the buffer stays as it is.
  if (!loaded_ || !isMaximized() || centralWidget()->width() == 0) return;
  MainLayout l = LayoutMainWindow(s, centralWidget()->width(), centralWidget()->height(), false);
  const MainLayout tail = layout_;
  layout_ = l;
  layout_.Text3_0 = tail.Text3_0;
  layout_.Text3_1 = tail.Text3_1;
  layout_.Text3_2 = tail.Text3_2;
  layout_.Command8 = tail.Command8;
  layout_.Label4 = tail.Label4;
  layout_.Label5 = tail.Label5;
  layout_.Label6 = tail.Label6;
  layout_.Text4 = tail.Text4;
  layout_.Command9 = tail.Command9;
  ApplyLayout(false);
  s.ed.f1.Picture2Picture = "bmp/roadsp.bmp";
  ShowPicture2();
  SyncControls();
}

void Form1::Form_Unload() {
  if (unloaded_) return;
  unloaded_ = true;
  // Other forms first, then the name store; the sprite bank goes with the session.
  for (QWidget* w : std::initializer_list<QWidget*>{form15_, form4_})
    if (w) delete w;
  for (QWidget* w : std::initializer_list<QWidget*>{form2_, form3_, form5_, form8_, form9_, form10_, form12_, form11_,
                                                    form13_, form14_})
    if (w) delete w;
  for (QWidget* w : {static_cast<QWidget*>(form6_.data()), static_cast<QWidget*>(loadSave_.data())})
    if (w) w->close();
  session_->ed.f6.Loaded = false;
  session_->ed.dlg.Loaded = false;
  session_->names.Close();
  if (busyCursor_) QApplication::restoreOverrideCursor();
  busyCursor_ = false;
}

void Form1::closeEvent(QCloseEvent* ev) {
  // Unsaved changes are asked about first; Cancel keeps the window open.
  if (!unloaded_ && !keeper_->Guard()) {
    ev->ignore();
    return;
  }
  Form_Unload();
  ev->accept();
  qApp->quit();
}

void Form1::changeEvent(QEvent* ev) {
  QMainWindow::changeEvent(ev);
  // The editor lays itself out on every change of size; a script keeps the classic rule.
  if (ev->type() == QEvent::WindowStateChange && !hand_.LayoutFollowsWindow) Form_Resize();
}

void Form1::ShowPicture2() {
  const QString path = Q(session_->App(session_->ed.f1.Picture2Picture));
  picture2Image_ = QImage(path);
  Picture2_->update();
}

void Form1::SyncControls() {
  if (syncing_) return;
  syncing_ = true;
  Session& s = *session_;
  const Form1Controls& f = s.ed.f1;
  // The title bears a mark while the map has unsaved changes; the caption
  // that scripts read stays as the core set it.
  const QString caption = keeper_->Title();
  if (windowTitle() != caption) setWindowTitle(caption);
  SetText(Text1_, f.Text1);
  SetText(Text2_, f.Text2);
  for (int i = 0; i < 3; ++i) SetText(Text3_[i], f.Text3[i]);
  SetText(Text4_, f.Text4);
  Command2_->setText(Q(f.Command2Caption));
  Command5_->setText(Q(f.Command5Caption));
  Command6_->setText(Q(f.Command6Caption));
  Command9_->setText(Q(f.Command9Caption));
  Label3_->setText(Q(s.forms.Label3Caption));
  Label3_->adjustSize();
  Label3_->setVisible(s.forms.Label3Visible);
  SetBold(Label1_, f.Label1Bold);
  SetBold(Label2_, f.Label2Bold);
  SetBold(Label4_, f.Label4Bold);
  auto action = [this](const char* n) { return findChild<QAction*>(QString::fromLatin1(n)); };
  action("mRandom")->setText(Q(f.mRandomCaption));
  action("mRandom")->setChecked(f.mRandomChecked);
  action("mAutoNeighbours")->setChecked(s.pens.AutoNeighbours == -1);
  action("mHexSides")->setText(Q(f.mHexSidesCaption));
  action("mHexSides")->setChecked(f.mHexSidesChecked);
  action("mShowRoadControl")->setText(Q(f.mShowRoadControlCaption));
  action("mDefaultArea")->setText(Q(f.mDefaultAreaCaption));
  action("HexControlOn")->setChecked(f.HexControlOnChecked);
  action("HexControlOFF")->setChecked(f.HexControlOFFChecked);
  action("mGrid")->setChecked(f.mGridChecked);
  SetBar(HScroll1_, s.view.HScroll1);
  SetBar(VScroll1_, s.view.VScroll1);
  if (recent_) recent_->Note(s.doc.MapPath, s.App("newmap.map"));
  SyncHand();
  const bool busy = s.forms.MousePointer == vbHourglass;
  if (busy != busyCursor_) {
    if (busy)
      QApplication::setOverrideCursor(Qt::WaitCursor);
    else
      QApplication::restoreOverrideCursor();
    busyCursor_ = busy;
  }
  syncing_ = false;
}

void Form1::OnChanged(Change what) {
  switch (what) {
    // The bitmap utility and its colour dialog.
    case Change::Form4:
    case Change::Form4Caption:
    case Change::Form4Picture2:
    case Change::Form4Picture3:
    case Change::Form4Unload:
      if (form4_) form4_->OnChanged(what);
      return;
    case Change::Form15:
      if (form15_) form15_->SyncControls();
      return;
    case Change::Picture1: Picture1_->update(); return;
    case Change::Picture1SetFocus: Picture1_->setFocus(); return;
    case Change::Picture2:
      ShowPicture2();
      SyncControls();
      return;
    case Change::LoadSave:
    case Change::LoadSaveHide:
      if (auto* d = static_cast<LoadSave*>(FormByName(QStringLiteral("LoadSave"), false))) {
        d->SyncControls();
        if (what == Change::LoadSaveHide) d->hide();
      }
      return;
    case Change::Form5:
    case Change::Form5Picture2:
    case Change::Form5Caption:
      if (form5_) {
        form5_->Refresh();
      } else if (session_->forms.Form5Loaded) {
        // Drawing loaded the jump map: its window follows, hidden.
        QMetaObject::invokeMethod(
            this,
            [this]() {
              if (loaded_ && !unloaded_ && !form5_ && session_->forms.Form5Loaded) FormByName(QStringLiteral("Form5"));
            },
            Qt::QueuedConnection);
      }
      return;
    case Change::Form11:
    case Change::Form13:
    case Change::Form14:
    case Change::Form14Label1:
      if (VbForm* f = FormByName(QString::fromLatin1(FormName(FormOf(what))), false)) {
        f->SyncControls();
        f->formWidget()->repaint();
      }
      return;
    case Change::Label3:
    case Change::MousePointer:
      // A pass's progress: shown at once, not when the pass has ended.
      SyncControls();
      Label3_->repaint();
      return;
    case Change::Form1:
    case Change::Form1Caption:
    case Change::HScroll1:
    case Change::VScroll1:
    case Change::Picture2Cls:
    case Change::Text1:
    case Change::Text2:
    case Change::Text3:
    case Change::Text4:
    case Change::Label4:
    case Change::Command2:
    case Change::Command5:
    case Change::Command6:
    case Change::Command9:
    case Change::mRandom:
    case Change::mHexSides:
    case Change::mShowRoadControl:
    case Change::mDefaultArea: SyncControls(); return;
  }
}

void Form1::OnUnload(FormId form) {
  switch (form) {
    case FormId::LoadSave:
      if (loadSave_) {
        loadSave_->hide();
        loadSave_->deleteLater();
        loadSave_ = nullptr;
      }
      break;
    case FormId::Form3:
      if (form3_) form3_->Discard();
      form3_ = nullptr;
      break;
    case FormId::Form5:
      // The core has unloaded the jump map already; its window just goes.
      if (form5_) form5_->Discard();
      form5_ = nullptr;
      // The window follows the core: where the new document's jump map was
      // loaded again (a new map, an import) it is built, hidden; after a load
      // it waits for its next use, as making it would rebuild the objective
      // table that the map file brought.
      QMetaObject::invokeMethod(
          this,
          [this]() {
            if (loaded_ && !unloaded_ && session_->forms.Form5Loaded) DrawStrategicMapHidden();
          },
          Qt::QueuedConnection);
      break;
    case FormId::Form9:
      if (form9_) {
        form9_->hide();
        form9_->deleteLater();
        form9_ = nullptr;
      }
      break;
    case FormId::Form10:
      if (form10_) {
        form10_->done(0);
        form10_->hide();
        form10_->deleteLater();
        form10_ = nullptr;
      }
      break;
    case FormId::Form6:
      if (form6_) {
        form6_->done(0);
        form6_->hide();
        form6_->deleteLater();
        form6_ = nullptr;
      }
      break;
    case FormId::Form1:
    case FormId::Form2:
    case FormId::Form4:
    case FormId::Form8:
    case FormId::Form11:
    case FormId::Form12:
    case FormId::Form13:
    case FormId::Form14:
    case FormId::Form15: break;  // closed by their own windows
  }
}

bool Form1::HasForm(const QString& name) {
  bool known = false;
  FormByName(name, false, &known);
  return known;
}

VbForm* Form1::FormByName(const QString& name, bool create, bool* known) {
  if (known) *known = true;
  // A jump map the user has closed is gone, though its window is not deleted yet.
  if (form5_ && form5_->unloaded()) form5_ = nullptr;
  if (name.compare(QStringLiteral("Form1"), Qt::CaseInsensitive) == 0) return this;
  if (name.compare(QStringLiteral("LoadSave"), Qt::CaseInsensitive) == 0) {
    if (!loadSave_ && create) loadSave_ = new LoadSave(*session_, this);
    return loadSave_.data();
  }
  if (name.compare(QStringLiteral("Form6"), Qt::CaseInsensitive) == 0) {
    if (!form6_ && create) form6_ = new Form6(*session_, this);
    return form6_.data();
  }
  // The default instance of a form is made, and loaded, on first use.
  auto get = [&](const char* n, auto& ptr) -> bool {
    if (name.compare(QString::fromLatin1(n), Qt::CaseInsensitive) != 0) return false;
    using F = std::remove_pointer_t<decltype(ptr.data())>;
    if (!ptr && create) {
      ptr = new F(*session_, this);
      if (tools_ && hand_.WindowsInReach) tools_->Adopt(ptr);
    }
    return true;
  };
  if (get("Form2", form2_)) return form2_.data();
  if (get("Form3", form3_)) return form3_.data();
  if (get("Form4", form4_)) return form4_.data();
  if (get("Form5", form5_)) return form5_.data();
  if (get("Form15", form15_)) return form15_.data();
  if (get("Form8", form8_)) return form8_.data();
  if (get("Form9", form9_)) return form9_.data();
  if (get("Form10", form10_)) return form10_.data();
  if (get("Form12", form12_)) return form12_.data();
  if (get("Form11", form11_)) return form11_.data();
  if (get("Form13", form13_)) return form13_.data();
  if (get("Form14", form14_)) return form14_.data();
  if (known) *known = false;
  return nullptr;
}

bool Form1::SetOwnProperty(QObject* ctl, const QString& prop, const QString& value) {
  // A box's text set from outside goes into the session like typed text.
  if (prop == QStringLiteral("TextFromWidget")) {
    Form1Controls& f = session_->ed.f1;
    if (ctl == Text1_) f.Text1 = S(value);
    if (ctl == Text2_) f.Text2 = S(value);
    if (ctl == Text4_) f.Text4 = S(value);
    for (int i = 0; i < 3; ++i)
      if (ctl == Text3_[i]) f.Text3[i] = S(value);
    return true;
  }
  return false;
}

bool Form1::GetOwnProperty(QObject* ctl, const QString& prop, QString* out) {
  if (ctl == this && prop.compare(QStringLiteral("Caption"), Qt::CaseInsensitive) == 0) {
    *out = Q(session_->forms.Form1Caption);
    return true;
  }
  if (ctl == this && prop.compare(QStringLiteral("KeyPreview"), Qt::CaseInsensitive) == 0) {
    *out = session_->ed.f1.KeyPreview ? QStringLiteral("-1") : QStringLiteral("0");
    return true;
  }
  if (ctl == Picture2_ && prop.compare(QStringLiteral("Picture"), Qt::CaseInsensitive) == 0) {
    *out = Q(session_->ed.f1.Picture2Picture);
    return true;
  }
  return false;
}

bool Form1::eventFilter(QObject* obj, QEvent* ev) {
  switch (ev->type()) {
    case QEvent::KeyPress:
    case QEvent::KeyRelease: {
      auto* w = qobject_cast<QWidget*>(obj);
      if (!loaded_ || !w || w->window() != this || !session_->ed.f1.KeyPreview) break;
      auto* ke = static_cast<QKeyEvent*>(ev);
      // A key with Ctrl or Alt is a shortcut of the menus, never one of the
      // form's own keys (Ctrl+A is no A).
      if (ke->modifiers() & (Qt::ControlModifier | Qt::AltModifier)) break;
      const int code = VbKeyCode(ke);
      if (code == 0 || (ke->isAutoRepeat() && ev->type() == QEvent::KeyRelease)) break;
      if (ev->type() == QEvent::KeyPress) {
        Form_KeyDown(code, PictureBox::ShiftState(ke->modifiers()));
        if (code >= 37 && code <= 40) return true;  // the view took the arrow
      } else {
        Form_KeyUp(code, PictureBox::ShiftState(ke->modifiers()));
      }
      break;
    }
    case QEvent::MouseButtonPress:
      if (obj == Label1_) Label1_Click();
      if (obj == Label2_) Label2_Click();
      break;
    case QEvent::MouseMove:
      if (obj == Label4_) Label4_MouseMove();
      break;
    case QEvent::Resize:
      // The view's room changes with the window and with the status bar.
      if (obj == centralWidget()) FitToWindow();
      break;
    case QEvent::FocusIn:
      if (obj == Text2_) Text2_GotFocus();
      break;
    case QEvent::FocusOut:
      if (obj == Text2_) Text2_LostFocus();
      break;
    default: break;
  }
  return QMainWindow::eventFilter(obj, ev);
}

// Handlers: each hands the event to the editing core and shows the result.
void Form1::Form_KeyDown(int KeyCode, int Shift) {
  kv::Form_KeyDown(*session_, KeyCode, Shift);
  SyncControls();
}
void Form1::Form_KeyUp(int KeyCode, int Shift) { kv::Form_KeyUp(*session_, KeyCode, Shift); }
void Form1::Picture1_MouseDown(int Button, int Shift, double X, double Y) {
  kv::Picture1_MouseDown(*session_, Button, Shift, X, Y);
  SyncControls();
}
void Form1::Picture1_MouseMove(int Button, int Shift, double X, double Y) {
  kv::Picture1_MouseMove(*session_, Button, Shift, X, Y);
  SetText(Text1_, session_->ed.f1.Text1);
  Label3_->setText(Q(session_->forms.Label3Caption));
  Label3_->adjustSize();
}
void Form1::Picture2_MouseDown(int Button, int Shift, double X, double Y) {
  kv::Picture2_MouseDown(*session_, Button, Shift, X, Y);
  SyncControls();
}
void Form1::HScroll1_Change() { kv::HScroll1_Change(*session_); }
void Form1::VScroll1_Change() { kv::VScroll1_Change(*session_); }
void Form1::Command1_Click() {
  kv::Command1_Click(*session_);
  SyncControls();
}
void Form1::Command2_Click() {
  kv::Command2_Click(*session_);
  SyncControls();
}
void Form1::Command3_Click() { ShowForm(FormId::Form2); }
void Form1::Command4_Click() {
  kv::Command4_Click(*session_);
  SyncControls();
}
void Form1::Command5_Click() {
  kv::Command5_Click(*session_);
  SyncControls();
}
void Form1::Command6_Click() {
  kv::Command6_Click(*session_);
  SyncControls();
}
void Form1::Command7_Click() {
  kv::Command7_Click(*session_);
  SyncControls();
}
void Form1::Command8_Click() {
  kv::Command8_Click(*session_);
  SyncControls();
}
void Form1::Command9_Click() {
  kv::Command9_Click(*session_);
  SyncControls();
}
void Form1::Label1_Click() {
  kv::Label1_Click(*session_);
  SyncControls();
}
void Form1::Label2_Click() {
  kv::Label2_Click(*session_);
  SyncControls();
}
void Form1::Label4_MouseMove() {
  kv::Label4_MouseMove(*session_);
  SyncControls();
}
void Form1::Text2_GotFocus() { kv::Text2_GotFocus(*session_); }
void Form1::Text2_LostFocus() { kv::Text2_LostFocus(*session_); }
// New Map, Open and Open PG set file ask about unsaved changes first.
void Form1::menu_file_new_Click() {
  if (!keeper_->Guard()) return;
  kv::menu_file_new_Click(*session_);
  SyncControls();
}
void Form1::menu_file_open_Click() {
  if (keeper_->Guard()) kv::menu_file_open_Click(*session_);
}
void Form1::menu_file_save_Click() {
  // In the window a map without a file of its own asks for a name, as users
  // expect of Save (Ctrl+S); a script's Save stays the classic one.
  if (!Script().active && keeper_->Untitled()) return menu_file_save_as_Click();
  kv::menu_file_save_Click(*session_);
  SyncControls();
}
void Form1::menu_file_save_as_Click() { kv::menu_file_save_as_Click(*session_); }
void Form1::openpgset_Click() {
  if (keeper_->Guard()) kv::openpgset_Click(*session_);
}
void Form1::LoadBitmap_Click() { ShowForm(FormId::Form4); }
void Form1::mNewNations_Click() { kv::mNewNations_Click(*session_); }
void Form1::menu_file_exit_Click() { close(); }
void Form1::mUndo_Click() {
  kv::mUndo_Click(*session_);
  SyncControls();
}
void Form1::mCopy_Click() { kv::mCopy_Click(*session_); }
void Form1::mPaste_Click() {
  kv::mPaste_Click(*session_);
  SyncControls();
}
void Form1::mHexSides_Click() {
  kv::mHexSides_Click(*session_);
  SyncControls();
}
void Form1::mShowRoadControl_Click() {
  kv::mShowRoadControl_Click(*session_);
  SyncControls();
}
void Form1::mDefaultArea_Click() {
  kv::mDefaultArea_Click(*session_);
  SyncControls();
}
void Form1::mRandom_Click() {
  kv::mRandom_Click(*session_);
  SyncControls();
}

// ---- Comfort: neighbours that follow, learning that says so --------------------

namespace {
const char* kNeighboursKey = "NeighboursFollow";
}  // namespace

void Form1::UseEditorSettings(const std::string& starterFolder) {
  rememberSettings_ = true;
  starterFolder_ = starterFolder;
  const QSettings* st = UserSettings();
  session_->pens.AutoNeighbours = !st || st->value(QString::fromLatin1(kNeighboursKey), true).toBool() ? -1 : 0;
  SyncControls();
}

void Form1::mAutoNeighbours_Click() {
  Pens& p = session_->pens;
  p.AutoNeighbours = p.AutoNeighbours == -1 ? 0 : -1;
  if (QSettings* st = UserSettings(); st && rememberSettings_)
    st->setValue(QString::fromLatin1(kNeighboursKey), p.AutoNeighbours == -1);
  statusBar()->showMessage(p.AutoNeighbours == -1 ? QStringLiteral("neighbours follow the painted hex")
                                                  : QStringLiteral("neighbours keep their tiles"),
                           5000);
  SyncControls();
}

void Form1::mResetPatterns_Click() {
  Session& s = *session_;
  const std::string starter =
      starterFolder_.empty() ? DefaultDataFolder(QCoreApplication::applicationDirPath().toStdString()) : starterFolder_;
  if (s.MsgBox("Forget every road, bridge, river and tile pattern learned in this program folder, and start "
               "again from the starter patterns that come with the editor?",
               vbYesNoDefaultNo) != 6)
    return;
  std::string err;
  if (!ResetLearnedStores(s, starter, &err)) {
    s.MsgBox(err, vbOKOnly);
    return;
  }
  statusBar()->showMessage(QStringLiteral("learned patterns reset to the starter patterns"), 8000);
}
void Form1::HexControlOn_Click() {
  kv::HexControlOn_Click(*session_);
  SyncControls();
}
void Form1::HexControlOFF_Click() {
  kv::HexControlOFF_Click(*session_);
  SyncControls();
}
void Form1::mOriginalOwner_Click() { kv::mOriginalOwner_Click(*session_); }
void Form1::Obj_on_Click() { kv::Obj_on_Click(*session_); }
void Form1::Obj_off_Click() { kv::Obj_off_Click(*session_); }
void Form1::mGrid_Click() {
  kv::mGrid_Click(*session_);
  SyncControls();
}
void Form1::mGridSet_Click() { kv::mGridSet_Click(*session_); }
void Form1::helpscreen_Click() { kv::helpscreen_Click(*session_); }
// The analysis commands of the Options menu; each may move the view or redraw
// hexes, so the controls and the picture follow.
void Form1::mCountRoad_Click() {
  kv::mCountRoad_Click(*session_);
  SyncControls();
}
void Form1::mNextUnconnected_Click() {
  kv::mNextUnconnected_Click(*session_);
  SyncControls();
}
void Form1::menu_LandMass_Click() {
  kv::menu_LandMass_Click(*session_);
  SyncControls();
}
void Form1::VerifyHexData_Click() {
  kv::VerifyHexData_Click(*session_);
  SyncControls();
}
void Form1::mDefaultHC_Click() {
  kv::mDefaultHC_Click(*session_);
  SyncControls();
}
void Form1::mRoadsOnly_Click() {
  kv::mRoadsOnly_Click(*session_);
  SyncControls();
}
void Form1::BuildAITables_Click() {
  kv::BuildAITables_Click(*session_);
  SyncControls();
}
// The auto-tiling passes of the Tiles and Options menus. Each runs to its end
// inside the click; Label3 and the pointer show their progress meanwhile.
void Form1::autoredrawroads_Click() {
  kv::autoredrawroads_Click(*session_);
  SyncControls();
}
void Form1::autoredrawterrain_Click() {
  kv::autoredrawterrain_Click(*session_);
  SyncControls();
}
void Form1::mAutoForest_Click() {
  kv::mAutoForest_Click(*session_);
  SyncControls();
}
void Form1::mAutoMoutains_Click() {
  kv::mAutoMoutains_Click(*session_);
  SyncControls();
}
void Form1::mMapRebuild_Click() {
  kv::mMapRebuild_Click(*session_);
  SyncControls();
}
void Form1::mRedoTerrain_Click() {
  kv::mRedoTerrain_Click(*session_);
  SyncControls();
}
void Form1::doroads_Click() {
  kv::doroads_Click(*session_);
  SyncControls();
}
void Form1::MemorizeRoads_Click() {
  kv::MemorizeRoads_Click(*session_);
  SyncControls();
}
void Form1::MemoriseRivers_Click() {
  kv::MemoriseRivers_Click(*session_);
  SyncControls();
}
void Form1::mMountains_Click() {
  kv::mMountains_Click(*session_);
  SyncControls();
}
void Form1::mRndWoods_Click() {
  kv::mRndWoods_Click(*session_);
  SyncControls();
}
void Form1::StrategicShow_Click() {
  ShowForm(FormId::Form5);
  DrawJumpBox();
}
void Form1::StrategicHide_Click() {
  if (form5_) form5_->close();
}

void Form1::ShowForm(FormId id) {
  if (id == FormId::LoadSave) {
    auto* d = static_cast<LoadSave*>(FormByName(QStringLiteral("LoadSave")));
    d->SyncControls();
    d->Showing();
    d->show();  // without waiting: the main window stays usable
    if (!Script().active) d->raise();
    return;
  }
  VbForm* form = FormByName(QString::fromLatin1(FormName(id)));
  if (!form) return;
  QWidget* w = form->formWidget();
  form->SyncControls();
  if (auto* dlg = qobject_cast<QDialog*>(w)) {
    // Modal; a script goes on while it is open.
    if (Script().active) {
      dlg->show();
    } else {
      dlg->exec();
    }
    return;
  }
  w->show();
  if (!Script().active) {
    w->raise();
    w->activateWindow();
  }
}

// Key F6: the size dialog first; the picture is made when it closes.
void Form1::ExportMapImage() {
  auto* f = static_cast<Form9*>(FormByName(QStringLiteral("Form9")));
  f->afterUnload = [this]() {
    kv::ExportMapImage(*session_);
    SyncControls();
  };
  ShowForm(FormId::Form9);
}

// The jump map exists implicitly: drawing its box loads it, hidden.
void Form1::DrawJumpBox() {
  auto* f = static_cast<Form5*>(FormByName(QStringLiteral("Form5")));
  f->DrawJumpBox();
}

void Form1::DrawStrategicMapHidden() {
  if (auto* f = static_cast<Form5*>(FormByName(QStringLiteral("Form5"), false)))
    f->Redraw();
  else
    FormByName(QStringLiteral("Form5"));  // its load draws the map
}

}  // namespace kv::gui

#include "gui/TileScreenForm.h"

#include <QApplication>
#include <QCloseEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QPixmap>

#include "gui/PictureBox.h"
#include "gui/formkit.h"
#include "session.h"

namespace kv::gui {

namespace {

QString Flag(bool b) { return b ? QStringLiteral("-1") : QStringLiteral("0"); }

// "Image2(3)" -> 3; -1 for another name.
int IndexIn(const QString& name, const char* base) {
  const QString prefix = QString::fromLatin1(base) + QLatin1Char('(');
  if (!name.startsWith(prefix, Qt::CaseInsensitive) || !name.endsWith(QLatin1Char(')'))) return -1;
  bool ok = false;
  const int i = name.mid(prefix.size(), name.size() - prefix.size() - 1).toInt(&ok);
  return ok ? i : -1;
}

}  // namespace

TileScreenForm::TileScreenForm(Session& s, TileScreen which, const char* name, const char* caption, QWidget* parent)
    : QWidget(parent, Qt::Window), s_(s), which_(which) {
  setObjectName(QString::fromLatin1(name));
  setWindowTitle(QString::fromLatin1(caption));
  setMouseTracking(true);
  Picture1_ = new PictureBox(QStringLiteral("Picture1"), this);
  Picture1_->setGeometry(16, 16, kTileScreenPicW + 4, kTileScreenPicH + 4);
  Picture1_->source = [this]() { return ImageOf(common().Picture1).copy(); };
  Label1_ = new QLabel(this);
  Label1_->setObjectName(QStringLiteral("Label1"));
  Label1_->setGeometry(16, 128, 260, 20);
  // The form sees its keys before its controls.
  qApp->installEventFilter(this);
}

TileScreenForm::~TileScreenForm() {
  qApp->removeEventFilter(this);
  DoUnload();
}

TileScreenCommon& TileScreenForm::common() {
  switch (which_) {
    case TileScreen::Road: return s_.tileScreens.f11;
    case TileScreen::Pattern: return s_.tileScreens.f13;
    case TileScreen::Terrain: break;
  }
  return s_.tileScreens.f14;
}

void TileScreenForm::AddMarks(std::array<std::string, 6>* tags) {
  tags_ = tags;
  // Around the copy of the tile, in ring order: above, then clockwise.
  const int cx = 200, cy = 60;
  const QPoint at[6] = {{cx, cy - 44}, {cx + 40, cy - 22}, {cx + 40, cy + 22},
                        {cx, cy + 44}, {cx - 40, cy + 22}, {cx - 40, cy - 22}};
  Image1_ = new QLabel(this);
  Image1_->setObjectName(QStringLiteral("Image1"));
  Image1_->setGeometry(cx - 30 + 8, cy - 25 + 8, 60, 50);
  Image1_->setScaledContents(true);
  for (int i = 0; i < 6; ++i) {
    Image2_[i] = new ClickLabel(QStringLiteral("Image2(%1)").arg(i), QString(), this);
    Image2_[i]->setGeometry(at[i].x() + 8, at[i].y() + 8, 16, 16);
    Image2_[i]->setScaledContents(true);
    Image2_[i]->onClick = [this, i]() {
      QString err;
      InvokeHandler(this, QStringLiteral("Image2_Click"), {QString::number(i)}, &err);
    };
  }
}

void TileScreenForm::SyncControls() {
  if (syncing_) return;
  syncing_ = true;
  TileScreenCommon& c = common();
  Label1_->setText(Latin1(c.Label1));
  Picture1_->update();
  if (Image1_) Image1_->setPixmap(QPixmap::fromImage(ImageOf(c.Picture1).copy()));
  if (tags_)
    for (int i = 0; i < 6; ++i) {
      const QPixmap pm(Latin1(s_.App(MarkPicture((*tags_)[i]))));
      Image2_[i]->setPixmap(pm);
      if (pm.isNull()) Image2_[i]->setText(Latin1((*tags_)[i]));
    }
  for (int i = 0; i < 3; ++i) {
    QWidget* w = CommandControl(i);
    QFont f = w->font();
    if (f.bold() != (c.BoldCommand == i)) {
      f.setBold(c.BoldCommand == i);
      w->setFont(f);
    }
  }
  SyncOwn();
  syncing_ = false;
}

bool TileScreenForm::GetOwnProperty(QObject* ctl, const QString& prop, QString* out) {
  if (ctl == this && prop.compare(QStringLiteral("Caption"), Qt::CaseInsensitive) == 0) {
    *out = windowTitle();
    return true;
  }
  if (ctl == this && prop.compare(QStringLiteral("KeyPreview"), Qt::CaseInsensitive) == 0) {
    *out = Flag(true);
    return true;
  }
  if (prop.compare(QStringLiteral("Tag"), Qt::CaseInsensitive) == 0) {
    if (ctl == Label1_) {
      *out = Latin1(common().Label1Tag);
      return true;
    }
    const int i = IndexIn(ctl->objectName(), "Image2");
    if (tags_ && i >= 0 && i < 6) {
      *out = Latin1((*tags_)[i]);
      return true;
    }
  }
  if (prop.compare(QStringLiteral("Picture"), Qt::CaseInsensitive) == 0 && tags_) {
    const int i = IndexIn(ctl->objectName(), "Image2");
    if (i >= 0 && i < 6) {
      *out = Latin1(MarkPicture((*tags_)[i]));
      return true;
    }
  }
  return false;
}

bool TileScreenForm::SetOwnProperty(QObject*, const QString&, const QString&) { return false; }

bool TileScreenForm::eventFilter(QObject* obj, QEvent* ev) {
  if (ev->type() != QEvent::KeyPress && ev->type() != QEvent::KeyRelease) return false;
  auto* w = qobject_cast<QWidget*>(obj);
  if (!w || w->window() != this) return false;
  // A key travels from the focused control to its parents: take it once.
  QWidget* focus = QApplication::focusWidget();
  if (focus && focus->window() == this ? w != focus : w != this) return false;
  auto* ke = static_cast<QKeyEvent*>(ev);
  const int code = VbKeyCode(ke);
  if (ev->type() == QEvent::KeyRelease) {
    if (!ke->isAutoRepeat()) {
      QString err;
      InvokeHandler(this, QStringLiteral("Form_KeyUp"), {QString::number(code), QStringLiteral("0")}, &err);
    }
    return false;
  }
  if (code != 66 && code != 78 && code != 83) return false;
  QString err;
  InvokeHandler(this, QStringLiteral("Form_KeyDown"), {QString::number(code), QStringLiteral("0")}, &err);
  return which_ != TileScreen::Road;  // the screens with buttons consume the key
}

void TileScreenForm::Form_Load() {
  TileScreen_Load(s_, which_);
  SyncControls();
}
void TileScreenForm::Form_Unload() { DoUnload(); }
void TileScreenForm::Form_KeyDown(int KeyCode, int) { DoKeyDown(KeyCode); }
void TileScreenForm::Form_KeyUp(int, int) { DoKeyUp(); }
void TileScreenForm::Form_MouseMove() {
  TileScreen_MouseMove(s_, which_);
  SyncControls();
}
void TileScreenForm::GetStuff() {
  TileScreen_GetStuff(s_, which_);
  SyncControls();
}
void TileScreenForm::SaveStuff() {
  TileScreen_SaveStuff(s_, which_);
  SyncControls();
}
void TileScreenForm::DrawTile() {
  TileScreen_DrawTile(s_, which_);
  SyncControls();
}
void TileScreenForm::nTile() {
  TileScreen_nTile(s_, which_);
  SyncControls();
}
void TileScreenForm::pTile() {
  TileScreen_pTile(s_, which_);
  SyncControls();
}

void TileScreenForm::DoKeyDown(int KeyCode) {
  if (!TileScreen_KeyDown(s_, which_, KeyCode)) return;
  // The key's button takes the focus, as if it had been pressed.
  const int i = KeyCode == 66 ? 0 : KeyCode == 78 ? 1 : 2;
  if (which_ != TileScreen::Road) CommandControl(i)->setFocus();
  SyncControls();
}

void TileScreenForm::DoKeyUp() {
  TileScreen_KeyUp(s_, which_);
  SyncControls();
}

void TileScreenForm::DoUnload() {
  if (unloaded_) return;
  unloaded_ = true;
  TileScreen_Unload(s_, which_);
}

void TileScreenForm::closeEvent(QCloseEvent* ev) {
  QString err;
  InvokeHandler(this, QStringLiteral("Form_Unload"), {}, &err);
  ev->accept();
  deleteLater();
}

void TileScreenForm::mouseMoveEvent(QMouseEvent* ev) {
  QWidget::mouseMoveEvent(ev);
  QString err;
  InvokeHandler(this, QStringLiteral("Form_MouseMove"), {}, &err);
}

}  // namespace kv::gui

#include "gui/statusbar.h"

#include <QImage>
#include <QLabel>
#include <QPixmap>

#include "editing/penstatus.h"
#include "session.h"

namespace kv::gui {

PenStatusBar::PenStatusBar(QWidget* parent) : QStatusBar(parent) {
  setObjectName(QStringLiteral("PenStatus"));
  setSizeGripEnabled(true);
  auto label = [this](const char* name, int stretch) {
    auto* l = new QLabel(this);
    l->setObjectName(QString::fromLatin1(name));
    addWidget(l, stretch);
    return l;
  };
  picture_ = label("PenPicture", 0);
  tile_ = label("PenTile", 0);
  mode_ = label("PenMode", 1);
  auto_ = label("PenAutoTile", 0);
  random_ = label("PenRandom", 0);
  elev_ = label("PenElevation", 0);
  zoom_ = label("Zoom", 0);
  hex_ = label("HexUnderPointer", 0);
}

void PenStatusBar::ShowPen(const Session& s, int zoomPercent) {
  const PenStatus p = DescribePen(s);
  auto set = [](QLabel* l, const std::string& t) {
    const QString q = QString::fromLatin1(t.c_str());
    if (l->text() != q) l->setText(q);
  };
  set(tile_, p.tile);
  set(mode_, p.mode);
  set(auto_, p.autoTile);
  set(random_, p.random);
  set(elev_, p.elevation);
  set(zoom_, ZoomText(zoomPercent));
  // The pen's tile, cut from the sheet at half size.
  const Bitmap& sheet = s.sprites.TileSheet;
  const int t = s.pens.CurTile, W = s.ref.HexW, H = s.ref.HexH;
  if (t == shownTile_ && sheet.Generation() == shownSheet_) return;
  shownTile_ = t;
  shownSheet_ = sheet.Generation();
  const int cx = (t % 16) * W, cy = (t / 16) * H;
  if (t < 0 || W <= 0 || H <= 0 || cx + W > sheet.Width() || cy + H > sheet.Height()) {
    picture_->clear();
    return;
  }
  const QImage all(reinterpret_cast<const uchar*>(sheet.Pixels().data()), sheet.Width(), sheet.Height(),
                   sheet.Width() * 4, QImage::Format_RGB32);
  const int h = std::max(16, fontMetrics().height() + 6);
  picture_->setPixmap(QPixmap::fromImage(all.copy(cx, cy, W, H).scaledToHeight(h, Qt::SmoothTransformation)));
}

void PenStatusBar::ShowHex(int x, int y) { hex_->setText(QString::fromLatin1(HexText(x, y).c_str())); }

QStringList PenStatusBar::Texts() const {
  QStringList out;
  for (QLabel* l : {tile_, mode_, auto_, random_, elev_, zoom_, hex_}) out << l->text();
  return out;
}

}  // namespace kv::gui

// The status bar of the main window: what the pen is (its tile's picture,
// number and terrain, the mode, auto-tile, random tiles, the elevation pen),
// the zoom, and the hex under the pointer.
#pragma once

#include <QStatusBar>

class QLabel;

namespace kv {
struct Session;
}

namespace kv::gui {

class PenStatusBar : public QStatusBar {
  Q_OBJECT
 public:
  explicit PenStatusBar(QWidget* parent);
  // Shows the pen and the zoom as the session has them.
  void ShowPen(const Session& s, int zoomPercent);
  void ShowHex(int x, int y);
  // The texts shown, left to right (for tests and scripts).
  QStringList Texts() const;

 private:
  QLabel *picture_, *tile_, *mode_, *auto_, *random_, *elev_, *zoom_, *hex_;
  int shownTile_ = -1;
  uint64_t shownSheet_ = 0;
};

}  // namespace kv::gui

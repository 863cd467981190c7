// Road Connections: which sides a road leaves a tile by. The marks around the
// tile are toggled with a click and written to "roadinfo.dat" by Save; the
// three commands are labels, bold under the pointer.
#pragma once

#include "gui/TileScreenForm.h"

namespace kv::gui {

class Form11 : public TileScreenForm {
  Q_OBJECT
 public:
  Form11(Session& s, QWidget* parent);

  Q_INVOKABLE void Image2_Click(int Index);
  Q_INVOKABLE void Label3_Click(int Index);
  Q_INVOKABLE void Label3_MouseMove(int Index);

 protected:
  QWidget* CommandControl(int i) override;

 private:
  ClickLabel* Label3_[3] = {};
};

}  // namespace kv::gui

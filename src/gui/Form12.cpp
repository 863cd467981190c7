#include "gui/Form12.h"

#include <QLabel>

#include "editing/tilepicker.h"
#include "gui/formkit.h"
#include "session.h"

namespace kv::gui {

Form12::Form12(Session& s, QWidget* parent) : QWidget(parent, Qt::Window), s_(s) {
  setObjectName(QStringLiteral("Form12"));
  setWindowTitle(QStringLiteral("Tile Screen Commands"));
  setAttribute(Qt::WA_DeleteOnClose);
  // Design order on screen: F1, F2, F3, F4, then the notes and the clicks.
  const int rowOf[9] = {0, 2, 3, 4, 5, 6, 7, 8, 1};
  for (int i = 0; i < 9; ++i) {
    Label1_[i] = new QLabel(this);
    Label1_[i]->setObjectName(QStringLiteral("Label1(%1)").arg(i));
    Label1_[i]->setTextFormat(Qt::PlainText);
    Label1_[i]->setGeometry(16, 12 + 24 * rowOf[i], 380, 20);
  }
  resize(410, 12 + 24 * 9 + 8);
  Form_Load();
}

void Form12::Form_Load() {
  TileHelp_Load(s_);
  for (int i = 0; i < 9; ++i) Label1_[i]->setText(Latin1(s_.ed.picker.HelpLabels[i]));
}

bool Form12::GetOwnProperty(QObject* ctl, const QString& prop, QString* out) {
  if (ctl == this && prop.compare(QStringLiteral("Caption"), Qt::CaseInsensitive) == 0) {
    *out = windowTitle();
    return true;
  }
  return false;
}

}  // namespace kv::gui

#include "gui/qtui.h"

#include <cstdio>

#include <QMessageBox>

namespace kv::gui {

ScriptMode& Script() {
  static ScriptMode mode;
  return mode;
}

int MessageBox(QWidget* parent, const std::string& text, int style) {
  ScriptMode& sm = Script();
  if (sm.active) {
    std::string shown;
    for (char c : text) shown += c == '\r' ? std::string("\\r") : std::string(1, c);
    std::printf("msgbox: %s\n", shown.c_str());
    std::fflush(stdout);
    if (sm.answers.empty()) return DefaultAnswer(style);
    int a = sm.answers.front();
    sm.answers.pop_front();
    return a;
  }
  QString body = QString::fromLatin1(text.c_str()).replace('\r', '\n');
  QMessageBox box(parent);
  box.setWindowTitle(QStringLiteral("Korvane Map Editor"));
  box.setText(body);
  switch (style) {
    case vbOKCancel:
      box.setStandardButtons(QMessageBox::Ok | QMessageBox::Cancel);
      box.setDefaultButton(QMessageBox::Ok);
      break;
    case vbYesNo:
      box.setStandardButtons(QMessageBox::Yes | QMessageBox::No);
      box.setDefaultButton(QMessageBox::Yes);
      break;
    case vbYesNoDefaultNo:
      box.setStandardButtons(QMessageBox::Yes | QMessageBox::No);
      box.setDefaultButton(QMessageBox::No);
      break;
    default: box.setStandardButtons(QMessageBox::Ok); break;
  }
  switch (box.exec()) {
    case QMessageBox::Ok: return vbOK;
    case QMessageBox::Cancel: return vbCancel;
    case QMessageBox::Yes: return vbYes;
    case QMessageBox::No: return vbNo;
    default: return style == vbOKCancel ? vbCancel : style == vbOKOnly ? vbOK : vbNo;
  }
}

}  // namespace kv::gui

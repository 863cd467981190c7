#include "gui/Form1.h"

#include <QGuiApplication>
#include <QScreen>

#include "document/startup.h"
#include "view/layout.h"

namespace kv::gui {

Form1::Form1(std::string appPath, QWidget* parent) : QMainWindow(parent) {
  setObjectName(QStringLiteral("Form1"));
  ui_.parent = this;
  ui_.onChanged = [this](const std::string& what) { SyncFromSession(what); };
  session_ = std::make_unique<Session>(std::move(appPath), &ui_);
}

Form1::~Form1() = default;

bool Form1::Form_Load() {
  Session& s = *session_;
  if (QScreen* scr = QGuiApplication::primaryScreen()) {
    s.view.ScreenW = scr->size().width();
    s.view.ScreenH = scr->size().height();
  }
  if (!StartupData(s)) return false;
  int w = 0, h = 0;
  ClientSizeForScreen(s.view.ScreenW, s.view.ScreenH, w, h);
  LayoutMainWindow(s, w, h, true);
  if (!StartupAfterLayout(s)) return false;
  setWindowTitle(QString::fromStdString(s.forms.Form1Caption));
  move(0, 0);
  resize(s.view.ScreenW, s.view.ScreenH);
  return true;
}

void Form1::SyncFromSession(const std::string& what) {
  if (what == "Form1.Caption") setWindowTitle(QString::fromStdString(session_->forms.Form1Caption));
}

}  // namespace kv::gui

// The main window of the editor.
#pragma once

#include <QMainWindow>
#include <memory>

#include "gui/qtui.h"
#include "session.h"

namespace kv::gui {

class Form1 : public QMainWindow {
  Q_OBJECT
 public:
  explicit Form1(std::string appPath, QWidget* parent = nullptr);
  ~Form1() override;
  Session& session() { return *session_; }
  // Runs the start-up order; false when the program folder cannot support
  // an editor (the reason has been shown).
  Q_INVOKABLE bool Form_Load();

 private:
  void SyncFromSession(const std::string& what);
  QtUi ui_;
  std::unique_ptr<Session> session_;
};

}  // namespace kv::gui

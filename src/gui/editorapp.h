// The editor's application object. After each event of the user's (a press,
// a release, a key, a shortcut, a close, a drop) or a queued call has been
// handled outside every other event, it tells its listeners: that is where
// the history finds the step an action made. Events handled inside another
// (a modal dialog's, a message box's) wait for the outermost one to end.
#pragma once

#include <functional>
#include <map>

#include <QApplication>

namespace kv::gui {

class EditorApplication : public QApplication {
 public:
  EditorApplication(int& argc, char** argv);
  ~EditorApplication() override;
  bool notify(QObject* receiver, QEvent* event) override;

  // userAction: an event of the user's, not a queued call.
  using Listener = std::function<void(bool userAction)>;
  int AddListener(Listener f);
  void RemoveListener(int id);
  // The running one, or nullptr when the application is a plain QApplication.
  static EditorApplication* Instance();

 private:
  int depth_ = 0;
  int nextId_ = 1;
  std::map<int, Listener> listeners_;
};

}  // namespace kv::gui

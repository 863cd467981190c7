#include "gui/editorapp.h"

#include <vector>

#include <QEvent>

namespace kv::gui {

namespace {

// 0: not told; 1: the user's; 2: a queued call.
int Kind(QEvent::Type t) {
  switch (t) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::Shortcut:
    case QEvent::Close:
    case QEvent::Drop: return 1;
    case QEvent::MetaCall: return 2;
    default: return 0;
  }
}

}  // namespace

EditorApplication::EditorApplication(int& argc, char** argv) : QApplication(argc, argv) {}

EditorApplication::~EditorApplication() = default;

EditorApplication* EditorApplication::Instance() {
  return dynamic_cast<EditorApplication*>(QCoreApplication::instance());
}

int EditorApplication::AddListener(Listener f) {
  listeners_[nextId_] = std::move(f);
  return nextId_++;
}

void EditorApplication::RemoveListener(int id) { listeners_.erase(id); }

bool EditorApplication::notify(QObject* receiver, QEvent* event) {
  const int kind = Kind(event->type());
  struct Depth {
    int& d;
    explicit Depth(int& dd) : d(dd) { ++d; }
    ~Depth() { --d; }
  };
  bool result = false;
  {
    Depth depth(depth_);
    result = QApplication::notify(receiver, event);
  }
  if (kind != 0 && depth_ == 0 && !listeners_.empty()) {
    // A listener may add or remove listeners.
    std::vector<Listener> now;
    for (const auto& [id, f] : listeners_) now.push_back(f);
    for (const Listener& f : now) f(kind == 1);
  }
  return result;
}

}  // namespace kv::gui

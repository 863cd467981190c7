// The window system's side of the core's Ui: message boxes (all through one
// function), form closing and refresh notices.
#pragma once

#include <deque>
#include <functional>
#include <string>

#include <QObject>

#include "platform/ui.h"

class QWidget;

namespace kv::gui {

// Shows a message box without a title of its own, in the given style, and
// returns the answer. In script mode it prints "msgbox: TEXT" and answers from
// the queue (or with the default button) instead of waiting.
int MessageBox(QWidget* parent, const std::string& text, int style);

struct ScriptMode {
  bool active = false;
  std::deque<int> answers;
};
ScriptMode& Script();

class QtUi : public Ui {
 public:
  int MsgBox(const std::string& text, int style) override { return MessageBox(parent, text, style); }
  void ShowForm(FormId form) override {
    if (onShow) onShow(form);
  }
  void UnloadForm(FormId form) override {
    if (onUnload) onUnload(form);
  }
  void Changed(Change what) override {
    if (onChanged) onChanged(what);
  }
  void MapChanged(const MapChange& change) override {
    if (onMapChanged) onMapChanged(change);
  }
  QWidget* parent = nullptr;
  std::function<void(FormId)> onShow, onUnload;
  std::function<void(Change)> onChanged;
  std::function<void(const MapChange&)> onMapChanged;
};

}  // namespace kv::gui

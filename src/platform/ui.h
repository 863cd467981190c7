// What the core asks of the window system: message boxes, the busy pointer,
// and word that a form should close or a control changed. The editor's forms
// implement it; HeadlessUi answers from a queue, for tests and scripts.
#pragma once

#include <deque>
#include <functional>
#include <string>
#include <vector>

#include "platform/events.h"

namespace kv {

// Message box styles and answers.
constexpr int vbOKOnly = 0, vbOKCancel = 1, vbYesNo = 4, vbYesNoDefaultNo = 260;
constexpr int vbOK = 1, vbCancel = 2, vbYes = 6, vbNo = 7;
// Mouse pointers.
constexpr int vbHourglass = 11, vbArrow = 1;

// The answer a message box gives when the user just presses Enter.
int DefaultAnswer(int style);

class Ui {
 public:
  virtual ~Ui() = default;
  // Shows a plain message box without a title of its own; returns the answer.
  virtual int MsgBox(const std::string& text, int style) = 0;
  // A form the core wants shown (a modal one is not waited for in a script).
  virtual void ShowForm(FormId form) = 0;
  // A form the core wants closed (its state is stale).
  virtual void UnloadForm(FormId form) = 0;
  // Something shown on screen changed in the session: refresh it.
  virtual void Changed(Change what) = 0;
  // The map's data changed (after the change).
  virtual void MapChanged(const MapChange& change) = 0;
};

class HeadlessUi : public Ui {
 public:
  int MsgBox(const std::string& text, int style) override;
  void ShowForm(FormId form) override { shown.push_back(FormName(form)); }
  void UnloadForm(FormId form) override { unloaded.push_back(FormName(form)); }
  void Changed(Change) override {}
  void MapChanged(const MapChange& change) override {
    if (onMapChanged) onMapChanged(change);
  }

  std::deque<int> answers;                             // queued answers, taken in order
  std::vector<std::string> messages;                   // every text shown
  std::vector<std::string> shown;                      // every form asked to show, by name
  std::vector<std::string> unloaded;                   // every form asked to close, by name
  std::function<void(const MapChange&)> onMapChanged;  // told of every change to the map
};

}  // namespace kv

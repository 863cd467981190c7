// What the core asks of the window system: message boxes, the busy pointer,
// and word that a form should close or a control changed. The editor's forms
// implement it; HeadlessUi answers from a queue, for tests and scripts.
#pragma once

#include <deque>
#include <string>
#include <vector>

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
  // A form the core wants closed (its state is stale): "Form3", "Form5", ...
  virtual void UnloadForm(const std::string& form) = 0;
  // Something shown on screen changed in the session ("Form1.Caption",
  // "Label3", "MousePointer", "HScroll1", "Picture1", ...): refresh it.
  virtual void Changed(const std::string& what) = 0;
};

class HeadlessUi : public Ui {
 public:
  int MsgBox(const std::string& text, int style) override;
  void UnloadForm(const std::string& form) override { unloaded.push_back(form); }
  void Changed(const std::string&) override {}

  std::deque<int> answers;            // queued answers, taken in order
  std::vector<std::string> messages;  // every text shown
  std::vector<std::string> unloaded;  // every form asked to close
};

}  // namespace kv

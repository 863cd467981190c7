#include "platform/ui.h"

namespace kv {

int DefaultAnswer(int style) {
  switch (style) {
    case vbYesNo: return vbYes;
    case vbYesNoDefaultNo: return vbNo;
    default: return vbOK;
  }
}

int HeadlessUi::MsgBox(const std::string& text, int style) {
  messages.push_back(text);
  if (answers.empty()) return DefaultAnswer(style);
  int a = answers.front();
  answers.pop_front();
  return a;
}

}  // namespace kv

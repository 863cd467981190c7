// The switches of the main window's comfort layer: on in the editor, off in
// scripts until a script sets them (Editor.Zoom), so that a classic script
// sees what it always saw.
#pragma once

namespace kv::gui {

struct HandState {
  // The window lays itself out on every change of its size, each control as
  // wide as its caption needs, the view at the zoom.
  bool LayoutFollowsWindow = false;
  // Tool windows stay above the main window, open wholly on the screen and
  // come back where the user left them.
  bool WindowsInReach = false;
  // An open jump map shows every edit at once.
  bool LiveJumpMap = false;
};

}  // namespace kv::gui

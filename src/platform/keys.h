// Key codes of the forms' Form_KeyDown handlers, shared by every window that
// takes keys (the main window, the jump map, the bitmap utility).
#pragma once

namespace kv::key {

constexpr int F1 = 112, F2 = 113, F3 = 114, F4 = 115, F5 = 116, F6 = 117, F7 = 118, F8 = 119;
constexpr int Left = 37, Up = 38, Right = 39, Down = 40;
constexpr int A = 65, B = 66, C = 67, H = 72, N = 78, R = 82, X = 88, Slash = 191;

}  // namespace kv::key

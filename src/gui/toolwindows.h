// The tool windows (picker, control form, grid, help, jump map, bitmap
// utility, tile data screens): they stay above the main window, open wholly
// on the screen, and come back where the user left them.
#pragma once

#include <QList>
#include <QObject>
#include <QPointer>

class QWidget;

namespace kv::gui {

class ToolWindows : public QObject {
  Q_OBJECT
 public:
  explicit ToolWindows(QObject* parent) : QObject(parent) {}
  // Takes a tool window in hand before it is first shown; its object name
  // names it in the user's settings.
  void Adopt(QWidget* w);
  // Moves (and if need be shrinks) a window so that it lies wholly on its screen.
  static void KeepOnScreen(QWidget* w);

 protected:
  bool eventFilter(QObject* obj, QEvent* ev) override;

 private:
  void Remember(QWidget* w);
  void Belong(QWidget* w);
  QList<QPointer<QWidget>> adopted_;
  QPointer<QWidget> main_;
};

}  // namespace kv::gui

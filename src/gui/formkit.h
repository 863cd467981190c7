// Small pieces shared by the editor's secondary forms: key codes of the
// window system, a label that reports clicks, and the form-wide key preview.
#pragma once

#include <functional>
#include <string>

#include <QImage>
#include <QLabel>
#include <QObject>

class QKeyEvent;
class QWidget;

namespace kv {
class Bitmap;
}

namespace kv::gui {

// The key code of a key event (F1 = 112, A = 65, arrows 37..40, "/" = 191); 0
// for keys the editor does not use.
int VbKeyCode(const QKeyEvent* e);

// A view of a bitmap's pixels (0x00RRGGBB words) as an image, without a copy.
QImage ImageOf(const Bitmap& bm);

QString Latin1(const std::string& s);
std::string Latin1(const QString& q);

void SetBold(QLabel* l, bool bold);

// A label whose presses count as clicks.
class ClickLabel : public QLabel {
  Q_OBJECT
 public:
  ClickLabel(const QString& name, const QString& text, QWidget* parent);
  std::function<void()> onClick;

 protected:
  void mousePressEvent(QMouseEvent* e) override;
};

// KeyPreview: every key pressed in any widget of `form` reaches `onKey` first.
class KeyPreview : public QObject {
 public:
  KeyPreview(QWidget* form, std::function<void(int code, int shift)> onKey);
  ~KeyPreview() override;
  bool enabled = true;

 protected:
  bool eventFilter(QObject* obj, QEvent* ev) override;

 private:
  QWidget* form_;
  std::function<void(int, int)> onKey_;
};

}  // namespace kv::gui

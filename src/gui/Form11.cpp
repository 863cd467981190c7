#include "gui/Form11.h"

#include <QEvent>

#include "gui/formkit.h"
#include "session.h"

namespace kv::gui {

namespace {

// A command label that reports the pointer over it.
class HoverLabel : public ClickLabel {
 public:
  using ClickLabel::ClickLabel;
  std::function<void()> onHover;

 protected:
  void mouseMoveEvent(QMouseEvent* e) override {
    ClickLabel::mouseMoveEvent(e);
    if (onHover) onHover();
  }
};

}  // namespace

Form11::Form11(Session& s, QWidget* parent)
    : TileScreenForm(s, TileScreen::Road, "Form11", "Road Connections", parent) {
  AddMarks(&s.tileScreens.f11.Image2Tag);
  const char* captions[3] = {"&Back", "&Next", "&Save"};
  for (int i = 0; i < 3; ++i) {
    auto* l = new HoverLabel(QStringLiteral("Label3(%1)").arg(i), QString::fromLatin1(captions[i]), this);
    l->setGeometry(16 + 80 * i, 160, 70, 22);
    l->setAlignment(Qt::AlignCenter);
    l->setTextFormat(Qt::PlainText);
    l->setBuddy(this);  // "&Back" shows as a mnemonic, not with its ampersand
    l->setMouseTracking(true);
    l->onClick = [this, i]() { Label3_Click(i); };
    l->onHover = [this, i]() { Label3_MouseMove(i); };
    Label3_[i] = l;
  }
  resize(270, 196);
  Form_Load();
}

QWidget* Form11::CommandControl(int i) { return Label3_[i]; }

void Form11::Image2_Click(int Index) {
  TileScreen_Image2_Click(s_, which_, Index);
  SyncControls();
}
void Form11::Label3_Click(int Index) {
  TileScreen_Command(s_, which_, Index);
  SyncControls();
}
void Form11::Label3_MouseMove(int Index) {
  RoadScreen_Label3_MouseMove(s_, Index);
  SyncControls();
}

}  // namespace kv::gui

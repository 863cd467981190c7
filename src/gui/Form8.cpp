#include "gui/Form8.h"

#include <QLabel>
#include <QScrollArea>
#include <QVBoxLayout>

#include "editing/controlform.h"
#include "editing/penstatus.h"
#include "gui/formkit.h"

namespace kv::gui {

Form8::Form8(Session&, QWidget* parent) : QWidget(parent, Qt::Window) {
  setObjectName(QStringLiteral("Form8"));
  setWindowTitle(QStringLiteral("TVK Map editor Help"));
  setAttribute(Qt::WA_DeleteOnClose);
  Label1_ = new QLabel(this);
  Label1_->setObjectName(QStringLiteral("Label1"));
  Label1_->setTextFormat(Qt::PlainText);
  auto* box = new QVBoxLayout(this);
  box->addWidget(Label1_);
  // Every key of every window, below the design's own lines.
  auto* keys = new QLabel(this);
  keys->setObjectName(QStringLiteral("Keys"));
  keys->setTextFormat(Qt::RichText);
  QString html = QStringLiteral("<table cellspacing=2>");
  const char* window = "";
  for (const KeyHelp& k : AllKeys()) {
    if (std::string(window) != k.window) {
      window = k.window;
      html += QStringLiteral("<tr><td colspan=2><b>%1</b></td></tr>").arg(QString::fromLatin1(k.window));
    }
    html += QStringLiteral("<tr><td>%1&nbsp;&nbsp;</td><td>%2</td></tr>")
                .arg(QString::fromLatin1(k.key).toHtmlEscaped(), QString::fromLatin1(k.what).toHtmlEscaped());
  }
  keys->setText(html + QStringLiteral("</table>"));
  auto* scroll = new QScrollArea(this);
  scroll->setWidget(keys);
  scroll->setWidgetResizable(true);
  scroll->setMinimumSize(keys->sizeHint().width() + 24, 240);
  box->addWidget(scroll, 1);
  Form_Load();
}

void Form8::Form_Load() {
  text_ = Latin1(HelpText());
  // A carriage return ends each line; the label breaks lines at line feeds.
  QString shown = text_;
  shown.replace(QLatin1Char('\r'), QLatin1Char('\n'));
  Label1_->setText(shown.trimmed());
  adjustSize();
}

bool Form8::GetOwnProperty(QObject* ctl, const QString& prop, QString* out) {
  if (ctl == Label1_ && prop.compare(QStringLiteral("Caption"), Qt::CaseInsensitive) == 0) {
    *out = text_;
    return true;
  }
  if (ctl == this && prop.compare(QStringLiteral("Caption"), Qt::CaseInsensitive) == 0) {
    *out = windowTitle();
    return true;
  }
  return false;
}

}  // namespace kv::gui

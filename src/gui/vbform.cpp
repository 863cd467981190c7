#include "gui/vbform.h"

#include <cmath>

#include <QAbstractButton>
#include <QAction>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QMetaMethod>
#include <QRegularExpression>
#include <QScrollBar>
#include <QStringList>
#include <QVariant>
#include <QWidget>

#include "gui/PictureBox.h"

namespace kv::gui {

namespace {

// The largest number (a position in pixels, a key code) an event argument takes.
constexpr int kMaxEventNumber = 1000000;

QString Flag(bool b) { return b ? QStringLiteral("-1") : QStringLiteral("0"); }

bool ParseBool(const QString& v, bool* ok) {
  const QString t = v.trimmed().toLower();
  *ok = true;
  if (t == "true" || t == "-1" || t == "1") return true;
  if (t == "false" || t == "0") return false;
  *ok = false;
  return false;
}

bool ParseInt(const QString& v, int* out) {
  bool ok = false;
  *out = v.trimmed().toInt(&ok);
  return ok;
}

// Fires `ctl_event` on the form if it has such a handler.
void Fire(QObject* form, QObject* ctl, const char* event) {
  QString err;
  const QString name = ctl->objectName() + QLatin1Char('_') + QLatin1String(event);
  const QMetaObject* mo = form->metaObject();
  for (int i = 0; i < mo->methodCount(); ++i)
    if (QString::fromLatin1(mo->method(i).name()).compare(name, Qt::CaseInsensitive) == 0) {
      InvokeHandler(form, name, {}, &err);
      return;
    }
}

}  // namespace

QObject* FindControl(QWidget* form, const QString& name) {
  if (!form) return nullptr;
  const auto all = form->findChildren<QObject*>();
  for (QObject* o : all)
    if (o->objectName().compare(name, Qt::CaseInsensitive) == 0) return o;
  return nullptr;
}

bool GetControlProperty(VbForm& form, QObject* ctl, const QString& propIn, QString* out, QString* err) {
  if (form.GetOwnProperty(ctl, propIn, out)) return true;
  // Point(X, Y) of a picture as it shows: red + 256 green + 65536 blue, -1
  // outside it.
  if (auto* pb = qobject_cast<PictureBox*>(ctl); pb && pb->source) {
    static const QRegularExpression re(QStringLiteral("^point\\(\\s*(-?\\d+)\\s*,\\s*(-?\\d+)\\s*\\)$"),
                                       QRegularExpression::CaseInsensitiveOption);
    if (const auto m = re.match(propIn.trimmed()); m.hasMatch()) {
      const QImage img = pb->source();
      const int x = m.captured(1).toInt(), y = m.captured(2).toInt();
      if (!img.valid(x, y)) return *out = QStringLiteral("-1"), true;
      const QRgb c = img.pixel(x, y);
      return *out = QString::number(qRed(c) + 256 * qGreen(c) + 65536 * qBlue(c)), true;
    }
  }
  const QString prop = propIn.toLower();
  if (auto* w = qobject_cast<QWidget*>(ctl)) {
    if (prop == "visible") return *out = Flag(!w->isHidden()), true;
    if (prop == "enabled") return *out = Flag(w->isEnabled()), true;
    if (prop == "left") return *out = QString::number(w->x()), true;
    if (prop == "top") return *out = QString::number(w->y()), true;
    if (prop == "width") return *out = QString::number(w->width()), true;
    if (prop == "height") return *out = QString::number(w->height()), true;
    if (prop == "tooltiptext") return *out = w->toolTip(), true;
  }
  if (auto* e = qobject_cast<QLineEdit*>(ctl); e && prop == "text") return *out = e->text(), true;
  if (auto* l = qobject_cast<QLabel*>(ctl)) {
    if (prop == "caption") return *out = l->text(), true;
    if (prop == "fontbold") return *out = Flag(l->font().bold()), true;
  }
  if (auto* b = qobject_cast<QAbstractButton*>(ctl); b && prop == "caption") return *out = b->text(), true;
  if (auto* a = qobject_cast<QAction*>(ctl)) {
    if (prop == "caption") return *out = a->text(), true;
    if (prop == "checked") return *out = Flag(a->isChecked()), true;
    if (prop == "enabled") return *out = Flag(a->isEnabled()), true;
    if (prop == "visible") return *out = Flag(a->isVisible()), true;
  }
  if (auto* m = qobject_cast<QMenu*>(ctl)) {
    if (prop == "caption") return *out = m->title(), true;
    if (prop == "enabled") return *out = Flag(m->menuAction()->isEnabled()), true;
  }
  if (auto* s = qobject_cast<QScrollBar*>(ctl)) {
    if (prop == "value") return *out = QString::number(s->value()), true;
    if (prop == "min") return *out = QString::number(s->minimum()), true;
    if (prop == "max") return *out = QString::number(s->maximum()), true;
    if (prop == "smallchange") return *out = QString::number(s->singleStep()), true;
    if (prop == "largechange") return *out = QString::number(s->pageStep()), true;
  }
  if (auto* l = qobject_cast<QListWidget*>(ctl)) {
    if (prop == "listindex") return *out = QString::number(l->currentRow()), true;
    if (prop == "listcount") return *out = QString::number(l->count()), true;
    if (prop == "text") return *out = l->currentItem() ? l->currentItem()->text() : QString(), true;
  }
  *err = QStringLiteral("%1 has no property %2").arg(ctl->objectName(), propIn);
  return false;
}

bool SetControlProperty(VbForm& form, QObject* ctl, const QString& propIn, const QString& value, QString* err) {
  QObject* f = form.formWidget();
  if (form.SetOwnProperty(ctl, propIn, value)) return true;
  const QString prop = propIn.toLower();
  bool ok = true;
  if (auto* e = qobject_cast<QLineEdit*>(ctl); e && prop == "text") {
    e->setText(value);
    form.SetOwnProperty(ctl, QStringLiteral("TextFromWidget"), value);
    Fire(f, ctl, "Change");
    return true;
  }
  if (auto* s = qobject_cast<QScrollBar*>(ctl); s && prop == "value") {
    int v = 0;
    if (!ParseInt(value, &v)) return *err = QStringLiteral("Value takes a whole number, not \"%1\"").arg(value), false;
    s->setValue(v);  // the bar's own signal reaches its _Change handler
    return true;
  }
  if (auto* l = qobject_cast<QListWidget*>(ctl); l && prop == "listindex") {
    int v = 0;
    if (!ParseInt(value, &v) || v < -1 || v >= l->count())
      return *err = QStringLiteral("ListIndex %1 is outside the list of %2").arg(value).arg(l->count()), false;
    l->setCurrentRow(v);
    form.SetOwnProperty(ctl, QStringLiteral("ListIndexFromWidget"), value);
    Fire(f, ctl, "Click");
    return true;
  }
  if (auto* a = qobject_cast<QAction*>(ctl)) {
    if (prop == "checked") {
      const bool b = ParseBool(value, &ok);
      if (ok) return a->setChecked(b), true;
    } else if (prop == "caption") {
      return a->setText(value), true;
    }
  }
  if (auto* w = qobject_cast<QWidget*>(ctl)) {
    if (prop == "visible" || prop == "enabled") {
      const bool b = ParseBool(value, &ok);
      if (ok) {
        if (prop == "visible")
          w->setVisible(b);
        else
          w->setEnabled(b);
        return true;
      }
      return *err = QStringLiteral("%1 takes True or False, not \"%2\"").arg(propIn, value), false;
    }
  }
  if (auto* l = qobject_cast<QLabel*>(ctl); l && prop == "caption") return l->setText(value), true;
  if (auto* b = qobject_cast<QAbstractButton*>(ctl); b && prop == "caption") return b->setText(value), true;
  *err = QStringLiteral("%1.%2 cannot be set").arg(ctl->objectName(), propIn);
  return false;
}

// The first method of the editor's own classes in the form's chain: handlers
// are looked for there, not among the slots of Qt's widget classes.
static int FirstOwnMethod(const QMetaObject* mo) {
  int first = mo->methodOffset();
  for (const QMetaObject* m = mo; m && QByteArray(m->className()).startsWith("kv::"); m = m->superClass())
    first = m->methodOffset();
  return first;
}

bool InvokeHandler(QObject* form, const QString& name, const QStringList& args, QString* err) {
  const QMetaObject* mo = form->metaObject();
  for (int i = FirstOwnMethod(mo); i < mo->methodCount(); ++i) {
    const QMetaMethod m = mo->method(i);
    if (m.methodType() != QMetaMethod::Method && m.methodType() != QMetaMethod::Slot) continue;
    if (QString::fromLatin1(m.name()).compare(name, Qt::CaseInsensitive) != 0) continue;
    if (m.parameterCount() != args.size()) {
      *err = QStringLiteral("%1 takes %2 argument(s), not %3").arg(name).arg(m.parameterCount()).arg(args.size());
      return false;
    }
    QVariant vals[10];
    QGenericArgument ga[10];
    for (int k = 0; k < args.size() && k < 10; ++k) {
      const int type = m.parameterType(k);
      bool ok = true;
      // Numbers as the window system gives them: whole, finite and within
      // any screen; a script cannot hand a handler more than a user can.
      if (type == QMetaType::Int) {
        const int v = args[k].trimmed().toInt(&ok);
        ok = ok && v >= -kMaxEventNumber && v <= kMaxEventNumber;
        vals[k] = v;
      } else if (type == QMetaType::Double) {
        const double v = args[k].trimmed().toDouble(&ok);
        ok = ok && std::isfinite(v) && std::abs(v) <= kMaxEventNumber;
        vals[k] = v;
      } else if (type == QMetaType::QString)
        vals[k] = args[k];
      else
        ok = false;
      if (!ok) {
        *err = QStringLiteral("argument %1 of %2: \"%3\" is no %4 from -%5 to %5")
                   .arg(k + 1)
                   .arg(name, args[k], QString::fromLatin1(QMetaType(type).name()))
                   .arg(kMaxEventNumber);
        return false;
      }
      ga[k] = QGenericArgument(QMetaType(type).name(), vals[k].constData());
    }
    m.invoke(form, Qt::DirectConnection, ga[0], ga[1], ga[2], ga[3], ga[4], ga[5], ga[6], ga[7], ga[8], ga[9]);
    return true;
  }
  *err = QStringLiteral("%1 has no handler %2").arg(form->objectName(), name);
  return false;
}

}  // namespace kv::gui

#include "gui/editorscript.h"

#include <algorithm>
#include <iterator>

#include "gui/Form1.h"
#include "gui/keeper.h"

namespace kv::gui {

namespace {

bool NoArgs(const QStringList& args, QString* err) {
  if (args.isEmpty()) return true;
  *err = QStringLiteral("takes no arguments");
  return false;
}

QString Bool(bool b) { return b ? QStringLiteral("-1") : QStringLiteral("0"); }

// The table, in alphabetical order of the names.
const EditorName kNames[] = {
    {"Guard", {},
     [](Form1& f, const QString& v, QString* err) {
       long long n = 0;
       if (!EditorNumber(v, &n, err)) return false;
       f.keeper().SetGuard(n != 0);
       return true;
     },
     [](Form1& f) { return Bool(f.keeper().GuardOn()); }},
    {"Modified", {}, {}, [](Form1& f) { return Bool(f.keeper().Modified()); }},
    {"OfferRecovery",
     [](Form1& f, const QStringList& a, QString* err) {
       if (!NoArgs(a, err)) return false;
       f.keeper().OfferRecovery();
       return true;
     },
     {}, {}},
    {"Redo",
     [](Form1& f, const QStringList& a, QString* err) {
       if (!NoArgs(a, err)) return false;
       f.keeper().Redo();
       return true;
     },
     {}, {}},
    {"RedoCount", {}, {}, [](Form1& f) { return QString::number(f.keeper().history().RedoCount()); }},
    {"RedoText", {}, {}, [](Form1& f) { return QString::fromStdString(f.keeper().history().RedoName()); }},
    {"Undo",
     [](Form1& f, const QStringList& a, QString* err) {
       if (!NoArgs(a, err)) return false;
       f.keeper().Undo();
       return true;
     },
     {}, {}},
    {"UndoCount", {}, {}, [](Form1& f) { return QString::number(f.keeper().history().UndoCount()); }},
    {"UndoText", {}, {}, [](Form1& f) { return QString::fromStdString(f.keeper().history().UndoName()); }},
    {"WriteRecovery",
     [](Form1& f, const QStringList& a, QString* err) {
       if (!NoArgs(a, err)) return false;
       return f.keeper().WriteRecovery(err);
     },
     {}, {}},
};

}  // namespace

const EditorName* FindEditorName(const QString& name) {
  auto it = std::find_if(std::begin(kNames), std::end(kNames), [&](const EditorName& n) {
    return name.compare(QLatin1String(n.name), Qt::CaseInsensitive) == 0;
  });
  return it == std::end(kNames) ? nullptr : &*it;
}

bool EditorNumber(const QString& text, long long* out, QString* err) {
  bool ok = false;
  const QString t = text.trimmed();
  *out = t.toLongLong(&ok);
  if (ok) return true;
  if (t.compare(QStringLiteral("true"), Qt::CaseInsensitive) == 0) {
    *out = -1;
    return true;
  }
  if (t.compare(QStringLiteral("false"), Qt::CaseInsensitive) == 0) {
    *out = 0;
    return true;
  }
  *err = QStringLiteral("\"%1\" is no whole number").arg(text);
  return false;
}

}  // namespace kv::gui

#include "gui/editorscript.h"

#include <algorithm>
#include <climits>
#include <iterator>
#include <utility>
#include <vector>

#include <QPoint>

#include "gui/Form1.h"
#include "gui/keeper.h"
#include "session.h"
#include "view/zoom.h"

namespace kv::gui {

namespace {

bool NoArgs(const QStringList& args, QString* err) {
  if (args.isEmpty()) return true;
  *err = QStringLiteral("takes no arguments");
  return false;
}

QString Bool(bool b) { return b ? QStringLiteral("-1") : QStringLiteral("0"); }

bool Int(const QString& text, int* out, QString* err) {
  long long n = 0;
  if (!EditorNumber(text, &n, err)) return false;
  if (n < INT_MIN || n > INT_MAX) {
    *err = QStringLiteral("%1 is out of range").arg(n);
    return false;
  }
  *out = static_cast<int>(n);
  return true;
}

// The middle of the view, in the view's pixels as the window shows it.
QPoint ViewMiddle(Form1& f) {
  const ViewState& v = f.session().view;
  return QPoint(static_cast<int>(ViewToWindow(v.ViewPixW / 2.0, v.Zoom)),
                static_cast<int>(ViewToWindow(v.ViewPixH / 2.0, v.Zoom)));
}

// The table, in alphabetical order of the names.
const EditorName kNames[] = {
    // Neighbours that follow: with auto-tile on, a painted hex's six
    // neighbours are chosen again. Every script starts with it off.
    {"AutoNeighbours",
     {},
     [](Form1& f, const QString& v, QString* err) {
       int n = 0;
       if (!Int(v, &n, err)) return false;
       if (n != 0 && n != -1) {
         *err = QStringLiteral("-1 (on) or 0 (off), not %1").arg(n);
         return false;
       }
       f.session().pens.AutoNeighbours = static_cast<int16_t>(n);
       return true;
     },
     [](Form1& f) { return QString::number(f.session().pens.AutoNeighbours); }},
    {"Guard",
     {},
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
     {},
     {}},
    {"Redo",
     [](Form1& f, const QStringList& a, QString* err) {
       if (!NoArgs(a, err)) return false;
       f.keeper().Redo();
       return true;
     },
     {},
     {}},
    {"RedoCount", {}, {}, [](Form1& f) { return QString::number(f.keeper().history().RedoCount()); }},
    {"RedoText", {}, {}, [](Form1& f) { return QString::fromStdString(f.keeper().history().RedoName()); }},
    // Press at the first point of the view (its pixels as the window shows
    // it), move through the others, release.
    {"Stroke",
     [](Form1& f, const QStringList& a, QString* err) {
       if (a.size() < 4 || a.size() % 2 != 0) {
         *err = QStringLiteral("takes BUTTON SHIFT X1 Y1 [X2 Y2 ...]");
         return false;
       }
       int button = 0, shift = 0;
       if (!Int(a[0], &button, err) || !Int(a[1], &shift, err)) return false;
       std::vector<std::pair<int, int>> pts;
       for (int i = 2; i < a.size(); i += 2) {
         int x = 0, y = 0;
         if (!Int(a[i], &x, err) || !Int(a[i + 1], &y, err)) return false;
         pts.push_back({x, y});
       }
       f.PressOnView(button, shift, pts[0].first, pts[0].second);
       for (size_t i = 1; i < pts.size(); ++i) f.MoveOnView(button, shift, pts[i].first, pts[i].second);
       f.ReleaseOnView(button);
       f.SyncControls();
       return true;
     },
     {},
     {}},
    {"Undo",
     [](Form1& f, const QStringList& a, QString* err) {
       if (!NoArgs(a, err)) return false;
       f.keeper().Undo();
       return true;
     },
     {},
     {}},
    {"UndoCount", {}, {}, [](Form1& f) { return QString::number(f.keeper().history().UndoCount()); }},
    {"UndoText", {}, {}, [](Form1& f) { return QString::fromStdString(f.keeper().history().UndoName()); }},
    {"WriteRecovery",
     [](Form1& f, const QStringList& a, QString* err) {
       if (!NoArgs(a, err)) return false;
       return f.keeper().WriteRecovery(err);
     },
     {},
     {}},
    // A turn of the wheel over the middle of the view: 120 a notch, SHIFT 1
    // Shift, 2 Ctrl.
    {"Wheel",
     [](Form1& f, const QStringList& a, QString* err) {
       int delta = 0, shift = 0;
       if (a.size() != 2) {
         *err = QStringLiteral("takes DELTA SHIFT");
         return false;
       }
       if (!Int(a[0], &delta, err) || !Int(a[1], &shift, err)) return false;
       const QPoint m = ViewMiddle(f);
       f.Wheel(delta, 0, shift, m.x(), m.y());
       return true;
     },
     {},
     {}},
    // The zoom in per cent; setting it asks for the editor's layout.
    {"Zoom",
     {},
     [](Form1& f, const QString& v, QString* err) {
       int z = 0;
       if (!Int(v, &z, err)) return false;
       if (z < kZoomMin || z > kZoomMax) {
         *err = QStringLiteral("%1 to %2 (per cent), not %3").arg(kZoomMin).arg(kZoomMax).arg(z);
         return false;
       }
       f.hand().LayoutFollowsWindow = true;
       f.SetZoom(z, ViewMiddle(f) + QPoint(2, 2));
       f.FitToWindow();
       return true;
     },
     [](Form1& f) { return QString::number(f.session().view.Zoom); }},
};

}  // namespace

const EditorName* FindEditorName(const QString& name) {
  auto it = std::find_if(std::begin(kNames), std::end(kNames), [&](const EditorName& n) {
    return name.compare(QLatin1String(n.name), Qt::CaseInsensitive) == 0;
  });
  return it == std::end(kNames) ? nullptr : &*it;
}

std::vector<const char*> EditorNames() {
  std::vector<const char*> names;
  for (const EditorName& n : kNames) names.push_back(n.name);
  return names;
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

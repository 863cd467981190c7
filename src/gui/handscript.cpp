#include "gui/handscript.h"

#include <QPoint>

#include "gui/Form1.h"
#include "session.h"
#include "view/zoom.h"

namespace kv::gui {

namespace {
bool Int(const QString& t, int* v, QString* err) {
  bool ok = false;
  *v = t.trimmed().toInt(&ok);
  if (!ok && err) *err = QStringLiteral("\"%1\" is no whole number").arg(t);
  return ok;
}
}  // namespace

bool HandScriptCall(Form1& f, const QString& name, const QStringList& args, QString* err) {
  if (name.compare(QStringLiteral("Stroke"), Qt::CaseInsensitive) == 0) {
    if (args.size() < 4 || args.size() % 2 != 0) {
      *err = QStringLiteral("Editor.Stroke takes BUTTON SHIFT X1 Y1 [X2 Y2 ...]");
      return false;
    }
    int button = 0, shift = 0;
    if (!Int(args[0], &button, err) || !Int(args[1], &shift, err)) return false;
    std::vector<std::pair<int, int>> pts;
    for (int i = 2; i < args.size(); i += 2) {
      int x = 0, y = 0;
      if (!Int(args[i], &x, err) || !Int(args[i + 1], &y, err)) return false;
      pts.push_back({x, y});
    }
    f.PressOnView(button, shift, pts[0].first, pts[0].second);
    for (size_t i = 1; i < pts.size(); ++i) f.MoveOnView(button, shift, pts[i].first, pts[i].second);
    f.ReleaseOnView(button);
    f.SyncControls();
    return true;
  }
  if (name.compare(QStringLiteral("Wheel"), Qt::CaseInsensitive) == 0) {
    int delta = 0, shift = 0;
    if (args.size() != 2 || !Int(args[0], &delta, err) || !Int(args[1], &shift, err)) {
      if (err->isEmpty()) *err = QStringLiteral("Editor.Wheel takes DELTA SHIFT");
      return false;
    }
    const ViewState& v = f.session().view;
    const int z = f.session().view.Zoom;
    f.Wheel(delta, 0, shift, ViewToWindow(v.ViewPixW / 2.0, z), ViewToWindow(v.ViewPixH / 2.0, z));
    return true;
  }
  return false;
}

bool HandScriptGet(Form1& f, const QString& name, QString* out) {
  if (name.compare(QStringLiteral("Zoom"), Qt::CaseInsensitive) == 0) {
    *out = QString::number(f.session().view.Zoom);
    return true;
  }
  return false;
}

bool HandScriptSet(Form1& f, const QString& name, const QString& value, QString* err) {
  if (name.compare(QStringLiteral("Zoom"), Qt::CaseInsensitive) == 0) {
    int z = 0;
    if (!Int(value, &z, err)) return false;
    if (z < kZoomMin || z > kZoomMax) {
      *err = QStringLiteral("Editor.Zoom is %1 to %2, not %3").arg(kZoomMin).arg(kZoomMax).arg(z);
      return false;
    }
    // A script that sets the zoom asks for the editor's layout.
    f.hand().LayoutFollowsWindow = true;
    const ViewState& v = f.session().view;
    const int old = f.session().view.Zoom;
    f.SetZoom(z, QPoint(static_cast<int>(ViewToWindow(v.ViewPixW / 2.0, old)) + 2,
                        static_cast<int>(ViewToWindow(v.ViewPixH / 2.0, old)) + 2));
    f.FitToWindow();
    return true;
  }
  return false;
}

}  // namespace kv::gui

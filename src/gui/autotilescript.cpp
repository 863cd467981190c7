#include "gui/autotilescript.h"

#include "gui/Form1.h"
#include "session.h"

namespace kv::gui {

namespace {
bool IsAutoNeighbours(const QString& name) {
  return name.compare(QStringLiteral("AutoNeighbours"), Qt::CaseInsensitive) == 0;
}
}  // namespace

bool AutoTileScriptGet(Form1& f, const QString& name, QString* out) {
  if (!IsAutoNeighbours(name)) return false;
  *out = QString::number(f.session().pens.AutoNeighbours);
  return true;
}

bool AutoTileScriptSet(Form1& f, const QString& name, const QString& value, QString* err) {
  if (!IsAutoNeighbours(name)) return false;
  bool ok = false;
  const int v = value.trimmed().toInt(&ok);
  if (!ok || (v != 0 && v != -1)) {
    *err = QStringLiteral("Editor.AutoNeighbours is -1 (on) or 0 (off), not %1").arg(value.trimmed());
    return false;
  }
  f.session().pens.AutoNeighbours = static_cast<int16_t>(v);
  f.SyncControls();
  return true;
}

}  // namespace kv::gui

#include "gui/usersettings.h"

#include <memory>

#include <QSettings>

#include "gui/qtui.h"

namespace kv::gui {

namespace {
std::unique_ptr<QSettings>& Store() {
  static std::unique_ptr<QSettings> s;
  return s;
}
bool& Chosen() {
  static bool chosen = false;
  return chosen;
}
}  // namespace

QSettings* UserSettings() {
  if (!Chosen()) {
    Chosen() = true;
    // The editor's file in the user's configuration folder; a script keeps none.
    if (!Script().active)
      Store() = std::make_unique<QSettings>(QSettings::IniFormat, QSettings::UserScope,
                                            QStringLiteral("korvane-mapedit"), QStringLiteral("editor"));
  }
  return Store().get();
}

void SetUserSettingsFile(const QString& path) {
  Chosen() = true;
  Store().reset();
  if (!path.isEmpty()) Store() = std::make_unique<QSettings>(path, QSettings::IniFormat);
}

}  // namespace kv::gui

// The user's own settings of the editor, kept between runs: the recent maps,
// where the tool windows stood, the zoom. Nothing is kept while a script runs
// unless a settings file has been named.
#pragma once

#include <QString>

class QSettings;

namespace kv::gui {

// The settings, or nullptr when none are kept.
QSettings* UserSettings();
// Names the settings file (an empty path: keep none).
void SetUserSettingsFile(const QString& path);

}  // namespace kv::gui

// File > "Recent Maps": the last ten maps opened or saved under a name, the
// newest first, kept in the user's settings. A choice opens the map as the
// file dialog's Load does.
#pragma once

#include <functional>
#include <string>

#include <QObject>
#include <QStringList>

class QAction;
class QMenu;

namespace kv::gui {

class RecentMaps : public QObject {
  Q_OBJECT
 public:
  static constexpr int kMax = 10;
  // Adds the submenu to `file` before `before` (or at its end).
  RecentMaps(QMenu* file, QAction* before, QObject* parent);
  // Notes the open map's path when it names a map file that is not the new
  // map in the program folder; called after every command.
  void Note(const std::string& mapPath, const std::string& newMapPath);
  const QStringList& list() const { return list_; }
  QMenu* menu() const { return menu_; }
  // Opens a map of the list (its full path).
  std::function<void(const QString& path)> open;

 private:
  void Load();
  void Rebuild();
  QMenu* menu_;
  QStringList list_;
  std::string last_;
};

}  // namespace kv::gui

#include "gui/recentmaps.h"

#include <QAction>
#include <QDir>
#include <QFileInfo>
#include <QMenu>
#include <QSettings>

#include "gui/usersettings.h"

namespace kv::gui {

RecentMaps::RecentMaps(QMenu* file, QAction* before, QObject* parent) : QObject(parent) {
  menu_ = new QMenu(QStringLiteral("Recent &Maps"), file);
  menu_->setObjectName(QStringLiteral("RecentMaps"));
  file->insertMenu(before, menu_);
  Load();
  Rebuild();
}

void RecentMaps::Load() {
  list_.clear();
  if (QSettings* st = UserSettings()) list_ = st->value(QStringLiteral("RecentMaps")).toStringList();
  while (list_.size() > kMax) list_.removeLast();
}

void RecentMaps::Note(const std::string& mapPath, const std::string& newMapPath) {
  if (mapPath == last_ || mapPath.empty() || mapPath == newMapPath) return;
  // A map being saved gets its path before its file: it is noted once the file is there.
  const QFileInfo info(QString::fromLocal8Bit(mapPath.c_str()));
  if (!info.isFile()) return;
  last_ = mapPath;
  const QString path = QDir::cleanPath(info.absoluteFilePath());
  Load();  // another editor may have added maps meanwhile
  list_.removeAll(path);
  list_.prepend(path);
  while (list_.size() > kMax) list_.removeLast();
  if (QSettings* st = UserSettings()) st->setValue(QStringLiteral("RecentMaps"), list_);
  Rebuild();
}

void RecentMaps::Rebuild() {
  menu_->clear();
  int n = 0;
  for (const QString& path : list_) {
    ++n;
    // "&1 name  (folder)": the number is the entry's key in the open menu.
    const QFileInfo info(path);
    const QString text = QStringLiteral("&%1 %2  (%3)").arg(n % 10).arg(info.fileName(), info.absolutePath());
    QAction* a = menu_->addAction(text);
    a->setData(path);
    connect(a, &QAction::triggered, this, [this, path]() {
      if (open) open(path);
    });
  }
  menu_->setEnabled(!list_.isEmpty());
}

}  // namespace kv::gui

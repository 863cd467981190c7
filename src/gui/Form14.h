// Tile Terrain Type: the terrain a tile shows, chosen from the list of every
// terrain, and whether it is placed at random. Save writes "tiletype.dat" and
// "randomtile.dat"; the terrain counts at once, the random tables from the
// next start.
#pragma once

#include "gui/TileScreenForm.h"

class QGroupBox;
class QListWidget;
class QPushButton;
class QRadioButton;

namespace kv::gui {

class Form14 : public TileScreenForm {
  Q_OBJECT
 public:
  Form14(Session& s, QWidget* parent);
  bool GetOwnProperty(QObject* ctl, const QString& prop, QString* out) override;
  bool SetOwnProperty(QObject* ctl, const QString& prop, const QString& value) override;

  Q_INVOKABLE void Command1_Click(int Index);
  Q_INVOKABLE void List1_Click();

 protected:
  QWidget* CommandControl(int i) override;
  void SyncOwn() override;

 private:
  QPushButton* Command1_[3] = {};
  QListWidget* List1_ = nullptr;
  QGroupBox* Frame1_ = nullptr;
  QRadioButton* Option1_[2] = {};
  QLabel* Label4_ = nullptr;
};

}  // namespace kv::gui

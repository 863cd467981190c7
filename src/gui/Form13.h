// Terrain Based Tile Pattern: whether a tile is drawn from the terrain tile
// lists ("Auto-Draw Tile ?") and which of its sides touch the same terrain.
// Save writes "ptiles.dat" and "patterns.dat" and rebuilds the lists the tile
// leaves and joins.
#pragma once

#include "gui/TileScreenForm.h"

class QPushButton;
class QRadioButton;

namespace kv::gui {

class Form13 : public TileScreenForm {
  Q_OBJECT
 public:
  Form13(Session& s, QWidget* parent);
  bool GetOwnProperty(QObject* ctl, const QString& prop, QString* out) override;
  bool SetOwnProperty(QObject* ctl, const QString& prop, const QString& value) override;

  Q_INVOKABLE void Command1_Click(int Index);
  Q_INVOKABLE void Image2_Click(int Index);
  Q_INVOKABLE void Option1_Click(int Index);
  Q_INVOKABLE void BuildPatternFile(const QString& path, const QString& digits);

 protected:
  QWidget* CommandControl(int i) override;
  void SyncOwn() override;

 private:
  QPushButton* Command1_[3] = {};
  QRadioButton* Option1_[2] = {};
  QLabel *Label2_ = nullptr, *Label3_ = nullptr, *Label4_ = nullptr;
};

}  // namespace kv::gui

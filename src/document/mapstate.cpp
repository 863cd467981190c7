#include "document/mapstate.h"

#include "platform/fileio.h"

namespace kv {

float RndGen::Next() {
  seed_ = (seed_ * 1140671485u + 12820163u) & 0xFFFFFFu;
  return static_cast<float>(seed_) / 16777216.0f;
}

MapState::MapState(std::string appPath, Ui* ui)
    : AppPath(std::move(appPath)), own_ui_(std::make_unique<HeadlessUi>()), ui_(own_ui_.get()) {
  if (ui) ui_ = ui;
}

MapState::~MapState() = default;

void MapState::SetUi(Ui* ui) { ui_ = ui ? ui : own_ui_.get(); }

std::string MapState::App(const std::string& rel) const { return JoinPath(AppPath, rel); }

void MapState::SetLabel3(const std::string& text) {
  forms.Label3Caption = text;
  ui_->Changed(Change::Label3);
}

void MapState::SetPointer(int pointer) {
  forms.MousePointer = pointer;
  ui_->Changed(Change::MousePointer);
}

void MapState::SetForm1Caption(const std::string& text) {
  forms.Form1Caption = text;
  ui_->Changed(Change::Form1Caption);
}

void MapState::MapEdited(const HexRect& area) {
  const HexRect r = area.ClippedTo(doc.MapMaxX, doc.MapMaxY);
  if (!r.Empty()) ui_->MapChanged({MapChange::Kind::Edit, r});
}

void MapState::MapReplaced() { ui_->MapChanged({MapChange::Kind::Replaced, HexRect::Whole(doc.MapMaxX, doc.MapMaxY)}); }

}  // namespace kv

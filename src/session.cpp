#include "session.h"

#include "editing/editing.h"
#include "editing/filemenu.h"
#include "editing/mapload.h"
#include "editing/tilepicker.h"

namespace kv {

// The layers below reach the ones above only through these hooks, set here
// once for every session, so that the classic procedures behave as one.
Session::Session(std::string appPath, Ui* ui) : MapView(std::move(appPath), ui) {
  viewHooks.HexEdited = [this](MapView&, int16_t x, int16_t y) { JumpMapHexEdited(*this, x, y); };
  viewHooks.ViewShown = [this](MapView&) { JumpMapFollowView(*this); };
  ed.hooks.NewMap = [](Session& s) { NewMap(s); };
  ed.hooks.SetHex = [](Session& s, int16_t x, int16_t y) { SetHex(s, x, y); };
  ed.hooks.MainKeyDown = [](Session& s, int keyCode, int shift) { Form_KeyDown(s, keyCode, shift); };
  ed.hooks.ShowFileDialog = [](Session& s, int mode, const std::string& ext) { LoadSave_Show(s, mode, ext); };
  ed.hooks.TileScreenClosed = [](Session& s, FormId form) { TilePicker_ScreenClosed(s, form); };
}

Session::~Session() = default;

}  // namespace kv

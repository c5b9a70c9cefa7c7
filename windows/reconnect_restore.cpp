#include "windows/reconnect_restore.h"

namespace tallowin {

void ReconnectRestore::displaysChanged() {
  waiting_.cancel();
  if (!autoSaveHold_) {
    autoSaveHold_ = services_.layouts.holdAutoSave();
  }
}

void ReconnectRestore::displaysSettled(const DisplaySet& before, const DisplaySet& now) {
  // A restore that a newer change kept from happening is still owed for the displays before it.
  before_ = before_.value_or(before);
  auto layout = layoutFor(*before_, now);
  if (!layout) {
    before_.reset();
    autoSaveHold_.cancel();
    return;
  }
  services_.contents.refresh();
  waiting_ = services_.mainQueue.after(delay - DisplaySetWatch::settleTime,
                                       [this, layout = *std::move(layout)] { restore(layout); });
}

std::optional<WindowLayout> ReconnectRestore::layoutFor(const DisplaySet& before, const DisplaySet& now) {
  const bool more = now.identifiers.size() > before.identifiers.size();
  return more && services_.settings.boolean("restoreOnDisplayReconnect")
             ? services_.layouts.load(layout_name::reconnect, now.key())
             : std::nullopt;
}

void ReconnectRestore::restore(const WindowLayout& layout) {
  before_.reset();
  services_.layouts.restore(layout, services_.snapshot(), [&toasts = services_.toasts](std::size_t moved) {
    if (moved > 0) {
      toasts.show({"Restored " + std::to_string(moved) + " windows to your external display", "display.2"});
    }
  });
  autoSaveHold_.cancel();
}

}  // namespace tallowin

#include "windows/layout_commands.h"

namespace tallowin {

namespace {

constexpr auto layoutSymbol = "rectangle.3.group";

}  // namespace

Outcome LayoutCommands::saveLayout(const SpaceSnapshot& snapshot) {
  const auto count = layouts_.save(layout_name::manual, snapshot).entries.size();
  toasts_.show({"Saved the position of " + std::to_string(count) + " windows", layoutSymbol});
  return Outcome::done();
}

void LayoutCommands::restoreLayout(const SpaceSnapshot& snapshot, const CommandAnswer& answer) {
  const auto setup = layouts_.displaySetup(snapshot);
  auto layout = layouts_.load(layout_name::manual, setup);
  if (!layout) {
    layout = layouts_.load(layout_name::automatic, setup);
  }
  if (!layout) {
    constexpr auto message = "No saved window layout for these displays yet";
    toasts_.show({message, std::nullopt, true});
    answer.refuse(message);
    return;
  }
  layouts_.restore(*layout, snapshot, [&toasts = toasts_, answer](std::size_t moved) {
    toasts.show({"Put " + std::to_string(moved) + " windows back on their Spaces", layoutSymbol});
    answer.done();
  });
}

void LayoutCommands::eject(const SpaceSnapshot& snapshot, const CommandAnswer& answer) {
  layouts_.ejectExternalDisplays(snapshot, [&toasts = toasts_, answer](std::size_t moved) {
    toasts.show({"Moved " + std::to_string(moved) + " windows off external displays. Safe to unplug.", "eject"});
    answer.done();
  });
}

}  // namespace tallowin

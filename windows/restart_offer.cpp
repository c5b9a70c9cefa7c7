#include "windows/restart_offer.h"

namespace tallowin {

void RestartOffer::start() {
  if (services_.clock.systemUptime() < recentRestart) {
    waiting_ = services_.mainQueue.after(delay, [this] { offer(); });
  }
}

void RestartOffer::offer() {
  const auto layout =
      services_.layouts.load(layout_name::automatic, services_.layouts.displaySetup(services_.watcher.latest()));
  if (!layout || layout->entries.empty()) {
    return;
  }
  services_.workspace.activateWithOptions(services_.system.processIdentifier());
  const Alert question{
      "Put your windows back on their Spaces?",
      "Tallowin saved where " + std::to_string(layout->entries.size()) + std::string(services_.texts.beforeRestart),
      {"Restore", "Not Now"}};
  services_.alerts.show(question, lifetime_.bound([this, layout = *layout](std::optional<std::size_t> button) {
    if (button == std::size_t{0}) {
      restore(layout);
    }
  }));
}

void RestartOffer::restore(const WindowLayout& layout) {
  services_.layouts.restore(layout, services_.watcher.latest(), [](std::size_t /*moved*/) {});
}

}  // namespace tallowin

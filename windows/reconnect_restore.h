#pragma once

#include <functional>
#include <optional>

#include "base/settings.h"
#include "platform/toasts.h"
#include "windows/display_set_watch.h"
#include "windows/layout_manager.h"

namespace tallowin {

/// Puts windows back when displays are connected again, and keeps automatic saving from recording what the system did
/// to the windows meanwhile. Told by a DisplaySetWatch. Main thread only.
class ReconnectRestore {
 public:
  /// From the last change of the displays to the restore: the system moves windows about itself at first.
  static constexpr Duration delay = std::chrono::seconds(3);

  struct Services {
    LayoutManager& layouts;
    SpaceContents& contents;
    const Settings& settings;
    Toasts& toasts;
    MainQueue& mainQueue;
    std::function<SpaceSnapshot()> snapshot;  ///< answers the current one
  };

  explicit ReconnectRestore(Services services) : services_(std::move(services)) {}
  ReconnectRestore(const ReconnectRestore&) = delete;
  ReconnectRestore& operator=(const ReconnectRestore&) = delete;

  /// As DisplaySetWatch::onChange. A restore that is waiting does not take place.
  void displaysChanged();

  /// As DisplaySetWatch::onSettled. If there are more displays than before and the setting "restoreOnDisplayReconnect"
  /// is on, the layout last saved for them is put back.
  void displaysSettled(const DisplaySet& before, const DisplaySet& now);

 private:
  [[nodiscard]] std::optional<WindowLayout> layoutFor(const DisplaySet& before, const DisplaySet& now);
  void restore(const WindowLayout& layout);

  const Services services_;
  /// The displays of which the windows still have the arrangement, while a restore waits.
  std::optional<DisplaySet> before_;
  WorkItem waiting_;
  Subscription autoSaveHold_;
};

}  // namespace tallowin

#pragma once

#include <functional>
#include <optional>

#include "core/space.h"
#include "platform/displays.h"
#include "platform/main_queue.h"
#include "platform/notification_center.h"
#include "windows/display_set.h"

namespace tallowin {

/// Tells when the set of connected displays changes and when it has come to rest. Plugging in a dock makes displays
/// come and go several times, and systems report the same set again seconds later: the first counts as one change, the
/// second as none. That no display at all is connected, as while they sleep, is no change either. Main thread only.
class DisplaySetWatch {
 public:
  /// A set that stays the same for this long has come to rest.
  static constexpr Duration settleTime = std::chrono::seconds(2);

  struct Services {
    Displays& displays;
    NotificationCenter& defaultNotifications;
    MainQueue& mainQueue;
    std::function<SpaceSnapshot()> snapshot;  ///< answers the current one
  };

  explicit DisplaySetWatch(Services services) : services_(std::move(services)) {}
  DisplaySetWatch(const DisplaySetWatch&) = delete;
  DisplaySetWatch& operator=(const DisplaySetWatch&) = delete;

  /// Told of every change of the set, before it has come to rest. Not of the first set, which changes nothing.
  std::function<void()> onChange;

  /// Told when a set that changed has come to rest, with the set that was at rest before; they are the same when the
  /// displays came back.
  std::function<void(const DisplaySet& before, const DisplaySet& now)> onSettled;

  /// Looks at once, and from now on whenever the displays' arrangement changes. Call once.
  void start();

  /// Looks at the displays. To be called with every new snapshot too.
  void look();

  /// Whether the set is at rest.
  [[nodiscard]] bool isSettled() const { return !settling_; }

 private:
  void settle();

  const Services services_;
  Subscription observer_;
  std::optional<DisplaySet> latest_;   ///< as last seen
  std::optional<DisplaySet> settled_;  ///< the last one at rest
  WorkItem settling_;                  ///< there while the set is not at rest
};

}  // namespace tallowin

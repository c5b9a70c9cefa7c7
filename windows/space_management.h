#pragma once

#include <cstdint>
#include <expected>
#include <functional>
#include <optional>
#include <string_view>
#include <vector>

#include "platform/accessibility.h"
#include "platform/events.h"
#include "platform/main_queue.h"
#include "platform/window_server.h"
#include "platform/workspace.h"
#include "windows/ax.h"

namespace tallowin {

/// Adds and removes desktops the only way there is: by opening Mission Control and pressing the buttons of its Spaces
/// bar, in the English of the system's own labels. Takes over keyboard and mouse meanwhile. Main thread only.
class SpaceManagement {
 public:
  enum class Failure {
    unavailable,  ///< Mission Control did not open, or another operation is under way
    noButton,
    notFound,
  };

  using Result = std::expected<void, Failure>;
  /// Runs at most once, on the main thread; inside the call if another operation is under way. Success means that the
  /// buttons were pressed. Mission Control has been told to close, unless it never opened.
  using Completion = std::function<void(Result)>;

  struct Services {
    WindowServer& windowServer;
    Workspace& workspace;
    Accessibility& accessibility;
    Events& events;
    MainQueue& mainQueue;
  };

  explicit SpaceManagement(Services services);
  SpaceManagement(const SpaceManagement&) = delete;
  SpaceManagement& operator=(const SpaceManagement&) = delete;

  /// Adds a desktop to the display whose Spaces bar comes first.
  void addDesktop(Completion completion);

  /// Removes the desktop with this number, as Mission Control labels it (Space::desktopNumber).
  void removeDesktop(std::int64_t number, Completion completion);

  /// Whether an operation is under way. Another one is refused until it has completed.
  [[nodiscard]] bool isBusy() const { return static_cast<bool>(completion_); }

 private:
  using Buttons = std::vector<AXUIElement>;
  using Opened = std::function<void(const Buttons&)>;

  void begin(Completion completion, Opened opened);
  void openMissionControl(Opened opened);
  void pollLater(Duration delay, int pollsLeft, Opened opened);
  [[nodiscard]] Buttons findButtons() const;
  [[nodiscard]] AXUIElement desktopButton(const Buttons& buttons, std::int64_t number) const;

  void pressAdd(const Buttons& buttons);
  void hoverOver(const AXUIElement& desktop);
  void pressClose(const CGRect& desktop);
  void closeAndComplete(Result result);
  void complete(Result result);

  const Services services_;
  const AX ax_;
  Completion completion_;  ///< of the operation under way
  CGPoint pointerBefore_;
  WorkItem next_;
};

/// What the user is told of a failure.
[[nodiscard]] std::string_view description(SpaceManagement::Failure failure);

}  // namespace tallowin

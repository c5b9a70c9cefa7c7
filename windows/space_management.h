#pragma once

#include <cstdint>
#include <expected>
#include <functional>
#include <optional>
#include <string_view>
#include <vector>

#include "base/desktop_texts.h"
#include "platform/accessibility.h"
#include "platform/events.h"
#include "platform/main_queue.h"
#include "platform/window_server.h"
#include "platform/workspace.h"
#include "windows/ax.h"
#include "windows/delayed_steps.h"

namespace tallowin {

/// Adds and removes desktops the only way there is: by opening Mission Control and pressing the buttons of its Spaces
/// bar, in the English of the system's own labels. Takes over keyboard and mouse meanwhile. An operation may begin
/// while another one is under way: it uses the Mission Control that is open or opening. Main thread only.
class SpaceManagement {
 public:
  enum class Failure {
    unavailable,  ///< Mission Control did not open
    noButton,
    notFound,
  };

  using Result = std::expected<void, Failure>;
  /// Runs at most once, on the main thread; inside the call if Mission Control is open and has no such button. Success
  /// means that the buttons were pressed. Mission Control has been told to close, unless it never opened or another
  /// operation goes on in it.
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

 private:
  using Buttons = std::vector<AXUIElement>;
  using Opened = std::function<void(const Buttons&)>;  ///< told of no buttons when it did not open

  void openMissionControl(Opened opened);
  void pollLater(Duration delay, int pollsLeft, Opened opened);
  [[nodiscard]] Buttons findButtons() const;
  [[nodiscard]] AXUIElement desktopButton(const Buttons& buttons, std::int64_t number) const;

  void pressAdd(const Buttons& buttons, const Completion& completion);
  void hoverOver(const Buttons& buttons, std::int64_t number, const Completion& completion);
  void pressClose(const CGRect& desktop, const Completion& completion);
  void complete(Result result, const Completion& completion);

  const Services services_;
  const AX ax_;
  int underWay_ = 0;                      ///< how many operations are under way
  int openings_ = 0;                      ///< how many of them wait for Mission Control to open
  std::optional<CGPoint> pointerBefore_;  ///< where the pointer was before they moved it
  DelayedSteps steps_;
};

/// What the user of such a desktop is told of a failure to add or to remove one.
[[nodiscard]] std::string_view additionFailure(SpaceManagement::Failure failure, const DesktopTexts& texts);
[[nodiscard]] std::string_view removalFailure(SpaceManagement::Failure failure, const DesktopTexts& texts);

}  // namespace tallowin

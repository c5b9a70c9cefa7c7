#pragma once

#include <cstdint>
#include <expected>
#include <functional>
#include <optional>
#include <vector>

#include "base/delayed_steps.h"
#include "platform/driven_services.h"
#include "platform/events.h"
#include "platform/main_queue.h"
#include "platform/workspace.h"
#include "windows/driven/driven_windows.h"

namespace tallowin {

/// Adds and removes desktops by opening Mission Control and pressing the buttons of its Spaces bar, in the English of
/// the system's own labels. Takes over keyboard and mouse meanwhile. An operation may begin while another one is under
/// way: it uses the Mission Control that is open or opening. Main thread only.
class MissionControlDriver {
 public:
  enum class Failure {
    unavailable,  ///< Mission Control did not open
    noButton,
    notFound,
  };

  using Result = std::expected<void, Failure>;
  /// Runs inside the call if Mission Control is open and has no such button. Success means that the buttons were
  /// pressed. Mission Control has been told to close, unless it never opened or another operation goes on in it.
  using Completion = std::function<void(Result)>;

  struct Services {
    DrivenServices& driven;
    Workspace& workspace;
    Events& events;
    MainQueue& mainQueue;
  };

  explicit MissionControlDriver(Services services);
  MissionControlDriver(const MissionControlDriver&) = delete;
  MissionControlDriver& operator=(const MissionControlDriver&) = delete;

  /// Adds a desktop to the display whose Spaces bar comes first.
  void addDesktop(Completion completion);

  /// Removes the desktop with this number, as Mission Control labels it (Space::desktopNumber).
  void removeDesktop(std::int64_t number, Completion completion);

 private:
  using Buttons = std::vector<AXUIElement>;
  using Opened = std::function<void(const Buttons&)>;

  /// Completes with the failure when it does not open.
  void openMissionControl(Completion completion, Opened opened);
  void pollLater(Duration delay, int pollsLeft, Completion completion, Opened opened);
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

}  // namespace tallowin

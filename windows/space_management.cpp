#include "windows/space_management.h"

#include <algorithm>
#include <chrono>
#include <string>
#include <utility>

#include "base/unicode.h"
#include "windows/synthetic_input.h"

namespace tallowin {

namespace {

using namespace std::chrono_literals;
using synthetic_input::postMouse;

constexpr auto dock = "com.apple.dock";
constexpr auto openNotification = "com.apple.expose.awake";
constexpr VirtualKeyCode escapeKey = 53;  // HIToolbox/Events.h, kVK_Escape

// The bar is near the top of the Dock's tree; the walk need not see everything below it.
constexpr int deepestElement = 6;

constexpr Duration openingTime = 350ms;
constexpr Duration pollInterval = 100ms;
constexpr int mostPolls = 21;
constexpr Duration addingTime = 500ms;
/// Mission Control shows a desktop's close control only after the pointer has rested on it.
constexpr Duration hoverTime = 700ms;
constexpr Duration removingTime = 600ms;
/// Where the close badge sits when it is no element of its own: so far from the thumbnail's corner, both ways.
constexpr double badgeOffset = 6;

/// Adds the buttons of the Spaces bar below (and with) `element` in tree order.
void collectButtons(const AX& ax, const AXUIElement& element, int depth, bool inBar,
                    std::vector<AXUIElement>& buttons) {
  const auto role = ax.text(element, "AXRole");
  if (role == "AXDockItem") {
    return;
  }
  if (inBar && role == "AXButton") {
    buttons.push_back(element);
  }
  if (depth == deepestElement) {
    return;
  }
  const bool childrenInBar = inBar || ax.text(element, "AXTitle") == "Spaces Bar";
  for (const auto& child : ax.elements(element, "AXChildren")) {
    collectButtons(ax, child, depth + 1, childrenInBar, buttons);
  }
}

template <typename Wanted>
AXUIElement firstOf(const std::vector<AXUIElement>& elements, Wanted wanted) {
  const auto found = std::ranges::find_if(elements, wanted);
  return found != elements.end() ? *found : nullptr;
}

}  // namespace

SpaceManagement::SpaceManagement(Services services)
    : services_(services), ax_(services.accessibility, services.windowServer) {}

void SpaceManagement::addDesktop(Completion completion) {
  begin(std::move(completion), [this](const Buttons& buttons) { pressAdd(buttons); });
}

void SpaceManagement::removeDesktop(std::int64_t number, Completion completion) {
  begin(std::move(completion), [this, number](const Buttons& buttons) { hoverOver(desktopButton(buttons, number)); });
}

void SpaceManagement::begin(Completion completion, Opened opened) {
  if (isBusy()) {
    completion(std::unexpected(Failure::unavailable));
    return;
  }
  completion_ = std::move(completion);
  openMissionControl(std::move(opened));
}

void SpaceManagement::openMissionControl(Opened opened) {
  if (const auto buttons = findButtons(); !buttons.empty()) {
    opened(buttons);
    return;
  }
  services_.windowServer.CGSBridgeDockNotify(openNotification);
  pollLater(openingTime + pollInterval, mostPolls, std::move(opened));
}

void SpaceManagement::pollLater(Duration delay, int pollsLeft, Opened opened) {
  next_ = services_.mainQueue.after(delay, [this, pollsLeft, opened = std::move(opened)] {
    if (const auto buttons = findButtons(); !buttons.empty()) {
      opened(buttons);
    } else if (pollsLeft > 1) {
      pollLater(pollInterval, pollsLeft - 1, opened);
    } else {
      complete(std::unexpected(Failure::unavailable));
    }
  });
}

SpaceManagement::Buttons SpaceManagement::findButtons() const {
  Buttons buttons;
  if (const auto running = services_.workspace.runningApplicationsWithBundleIdentifier(dock); !running.empty()) {
    collectButtons(ax_, ax_.application(running.front().pid), 0, false, buttons);
  }
  return buttons;
}

AXUIElement SpaceManagement::desktopButton(const Buttons& buttons, std::int64_t number) const {
  const auto label = "Desktop " + std::to_string(number);
  const auto titled = firstOf(buttons, [&](const AXUIElement& button) { return ax_.text(button, "AXTitle") == label; });
  return titled != nullptr
             ? titled
             : firstOf(buttons, [&](const AXUIElement& button) { return ax_.text(button, "AXDescription") == label; });
}

void SpaceManagement::pressAdd(const Buttons& buttons) {
  const auto add =
      firstOf(buttons, [&](const AXUIElement& button) { return ax_.text(button, "AXDescription") == "add desktop"; });
  if (add == nullptr) {
    closeAndComplete(std::unexpected(Failure::noButton));
    return;
  }
  ax_.press(add);
  next_ = services_.mainQueue.after(addingTime, [this] { closeAndComplete({}); });
}

void SpaceManagement::hoverOver(const AXUIElement& desktop) {
  const auto frame = ax_.frame(desktop);
  if (!frame) {
    closeAndComplete(std::unexpected(Failure::notFound));
    return;
  }
  pointerBefore_ = synthetic_input::pointerLocation(services_.events);
  services_.events.CGWarpMouseCursorPosition(frame->center());
  postMouse(services_.events, CGMouseEventType::mouseMoved, frame->center());
  next_ = services_.mainQueue.after(hoverTime, [this, frame = *frame] { pressClose(frame); });
}

void SpaceManagement::pressClose(const CGRect& desktop) {
  const auto close = firstOf(findButtons(), [&](const AXUIElement& button) {
    const auto label = lowerCased(ax_.text(button, "AXDescription").value_or(""));
    return label.contains("close") || label.contains("remove");
  });
  if (close != nullptr) {
    ax_.press(close);
  } else {
    const CGPoint badge{desktop.origin.x + badgeOffset, desktop.origin.y + badgeOffset};
    postMouse(services_.events, CGMouseEventType::leftMouseDown, badge);
    postMouse(services_.events, CGMouseEventType::leftMouseUp, badge);
  }
  next_ = services_.mainQueue.after(removingTime, [this] {
    services_.events.CGWarpMouseCursorPosition(pointerBefore_);
    closeAndComplete({});
  });
}

void SpaceManagement::closeAndComplete(Result result) {
  synthetic_input::typeKey(services_.events, escapeKey);
  complete(result);
}

void SpaceManagement::complete(Result result) {
  const auto completion = std::exchange(completion_, nullptr);
  completion(result);
}

std::string_view description(SpaceManagement::Failure failure) {
  using enum SpaceManagement::Failure;
  switch (failure) {
    case unavailable:
      return "Mission Control could not be opened.";
    case noButton:
      return "Mission Control's add-desktop button was not found.";
    case notFound:
      return "That desktop was not found in Mission Control.";
  }
  return {};
}

}  // namespace tallowin

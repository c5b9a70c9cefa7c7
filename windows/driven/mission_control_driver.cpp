#include "windows/driven/mission_control_driver.h"

#include <algorithm>
#include <chrono>
#include <string>
#include <utility>

#include "base/unicode.h"
#include "windows/driven/synthetic_input.h"

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

AXUIElement firstWith(const AX& ax, const std::vector<AXUIElement>& elements, std::string_view attribute,
                      std::string_view text) {
  return firstOf(elements, [&](const AXUIElement& element) { return ax.text(element, attribute) == text; });
}

}  // namespace

MissionControlDriver::MissionControlDriver(Services services)
    : services_(services),
      ax_(services.driven.accessibility, services.driven.windowServer),
      steps_(services.mainQueue) {}

void MissionControlDriver::addDesktop(Completion completion) {
  openMissionControl(completion, [this, completion](const Buttons& buttons) { pressAdd(buttons, completion); });
}

void MissionControlDriver::removeDesktop(std::int64_t number, Completion completion) {
  openMissionControl(completion,
                     [this, number, completion](const Buttons& buttons) { hoverOver(buttons, number, completion); });
}

void MissionControlDriver::openMissionControl(Completion completion, Opened opened) {
  ++underWay_;
  if (const auto buttons = findButtons(); !buttons.empty()) {
    opened(buttons);
    return;
  }
  // The notification closes a Mission Control that is opening.
  if (openings_++ == 0) {
    services_.driven.windowServer.CGSBridgeDockNotify(openNotification);
  }
  pollLater(openingTime, mostPolls, std::move(completion), std::move(opened));
}

void MissionControlDriver::pollLater(Duration delay, int pollsLeft, Completion completion, Opened opened) {
  steps_.after(delay, [this, pollsLeft, completion = std::move(completion), opened = std::move(opened)] {
    const auto buttons = findButtons();
    if (buttons.empty() && pollsLeft > 1) {
      pollLater(pollInterval, pollsLeft - 1, completion, opened);
      return;
    }
    --openings_;
    if (buttons.empty()) {
      complete(std::unexpected(Failure::unavailable), completion);
    } else {
      opened(buttons);
    }
  });
}

MissionControlDriver::Buttons MissionControlDriver::findButtons() const {
  Buttons buttons;
  if (const auto running = services_.workspace.runningApplicationsWithBundleIdentifier(dock); !running.empty()) {
    collectButtons(ax_, ax_.application(running.front().pid), 0, false, buttons);
  }
  return buttons;
}

AXUIElement MissionControlDriver::desktopButton(const Buttons& buttons, std::int64_t number) const {
  const auto label = "Desktop " + std::to_string(number);
  const auto titled = firstWith(ax_, buttons, "AXTitle", label);
  return titled != nullptr ? titled : firstWith(ax_, buttons, "AXDescription", label);
}

void MissionControlDriver::pressAdd(const Buttons& buttons, const Completion& completion) {
  const auto add = firstWith(ax_, buttons, "AXDescription", "add desktop");
  if (add == nullptr) {
    complete(std::unexpected(Failure::noButton), completion);
    return;
  }
  ax_.press(add);
  steps_.after(addingTime, [this, completion] { complete({}, completion); });
}

void MissionControlDriver::hoverOver(const Buttons& buttons, std::int64_t number, const Completion& completion) {
  const auto frame = ax_.frame(desktopButton(buttons, number));
  if (!frame) {
    complete(std::unexpected(Failure::notFound), completion);
    return;
  }
  pointerBefore_ = pointerBefore_.value_or(synthetic_input::pointerLocation(services_.events));
  services_.events.CGWarpMouseCursorPosition(frame->center());
  postMouse(services_.events, CGMouseEventType::mouseMoved, frame->center());
  steps_.after(hoverTime, [this, frame = *frame, completion] { pressClose(frame, completion); });
}

void MissionControlDriver::pressClose(const CGRect& desktop, const Completion& completion) {
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
  steps_.after(removingTime, [this, completion] { complete({}, completion); });
}

/// The last operation under way puts the pointer back and closes Mission Control.
void MissionControlDriver::complete(Result result, const Completion& completion) {
  if (--underWay_ == 0) {
    if (const auto before = std::exchange(pointerBefore_, std::nullopt)) {
      services_.events.CGWarpMouseCursorPosition(*before);
    }
    if (result || result.error() != Failure::unavailable) {
      synthetic_input::typeKey(services_.events, escapeKey);
    }
  }
  completion(result);
}

}  // namespace tallowin

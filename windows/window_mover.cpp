#include "windows/window_mover.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include "core/space_provider.h"
#include "windows/window_list_entry.h"

namespace tallowin {

namespace {

using namespace std::chrono_literals;

constexpr auto category = "WindowMover";

/// The window server says yes to moves that it does not make; by now it has made those that it will.
constexpr Duration verificationDelay = 120ms;
/// The Space must be shown before a window on it can be raised.
constexpr Duration raiseDelay = 250ms;

constexpr auto onScreenWindows = CGWindowListOption::onScreenOnly | CGWindowListOption::excludeDesktopElements;

std::optional<CGRect> firstBounds(const std::optional<PropertyList>& list) {
  return list && list->is_array() && !list->empty() ? windowBounds(list->front()) : std::nullopt;
}

bool contains(const std::vector<ManagedSpaceID>& spaces, ManagedSpaceID space) {
  return std::ranges::find(spaces, space) != spaces.end();
}

/// The active Space of the display that shows a Space; of the menu-bar display, if that is not known.
std::optional<Space> activeSpaceBeside(ManagedSpaceID managedID, const SpaceSnapshot& snapshot) {
  const auto spaces = snapshot.allSpaces();
  const auto space = std::ranges::find(spaces, managedID, &Space::managedID);
  const auto display = space != spaces.end() ? snapshot.display(*space) : std::nullopt;
  const auto active = display ? display->activeSpace() : std::nullopt;
  return active ? active : snapshot.activeSpace();
}

/// Whether a list of the window server's has this Space as one that its display does not show.
bool isKnownHidden(ManagedSpaceID space, const std::optional<PropertyList>& list) {
  const auto displays = list ? SpaceProvider::readDisplays(*list, {}) : std::nullopt;
  return displays && std::ranges::any_of(*displays, [&](const DisplaySpaces& display) {
           const auto found = std::ranges::find(display.spaces, space, &Space::managedID);
           return found != display.spaces.end() && display.activeSpaceID && !found->isActive;
         });
}

}  // namespace

struct WindowMover::Move {
  FrontWindow window;
  Space target;
  SpaceSnapshot snapshot;
  bool follows = false;
  bool allowsDrag = false;
  Completion completion;
};

WindowMover::WindowMover(Services services)
    : services_(services),
      ax_(services.accessibility, services.windowServer),
      drag_(services.events, services.mainQueue),
      steps_(services.mainQueue) {}

std::optional<FrontWindow> WindowMover::frontWindow() const {
  const auto front = services_.workspace.frontmostApplication();
  if (front && front->pid != services_.system.processIdentifier()) {
    if (auto window = focusedWindow(front->pid)) {
      return window;
    }
  }
  return frontmostWindow(services_.windowList.CGWindowListCopyWindowInfo(onScreenWindows, 0),
                         front ? std::optional(front->pid) : std::nullopt);
}

std::optional<FrontWindow> WindowMover::focusedWindow(ProcessID pid) const {
  const auto number = ax_.focusedWindowID(pid);
  if (!number) {
    return {};
  }
  const auto bounds =
      firstBounds(services_.windowList.CGWindowListCopyWindowInfo(CGWindowListOption::includingWindow, *number));
  return bounds ? std::optional(FrontWindow{*number, pid, *bounds}) : std::nullopt;
}

std::vector<ManagedSpaceID> WindowMover::spaces(WindowNumber window) const {
  return services_.windowServer.CGSBridgeCopySpacesForWindow(window).value_or(std::vector<ManagedSpaceID>());
}

bool WindowMover::isOn(WindowNumber window, ManagedSpaceID space) const {
  return contains(spaces(window), space);
}

WindowMover::Result WindowMover::objection(WindowNumber window, const Space& target,
                                           const SpaceSnapshot& snapshot) const {
  if (target.isFullscreen) {
    return std::unexpected(Failure::fullscreenTarget);
  }
  const auto current = spaces(window);
  const auto holdsWindow = [&](const Space& space) { return contains(current, space.managedID); };
  if (holdsWindow(target)) {
    return std::unexpected(Failure::sameSpace);
  }
  const auto all = snapshot.allSpaces();
  const auto first = std::ranges::find_if(all, holdsWindow);
  if (first != all.end() && first->isFullscreen) {
    return std::unexpected(Failure::fullscreenWindow);
  }
  return {};
}

void WindowMover::move(const FrontWindow& window, const Space& target, const SpaceSnapshot& snapshot, bool follow,
                       bool allowDrag, Completion completion) {
  if (const auto possible = objection(window.id, target, snapshot); !possible) {
    completion(possible);
    return;
  }
  services_.windowServer.CGSBridgeMoveWindowToSpace(window.id, target.managedID);
  steps_.after(verificationDelay, [this, move = Move{window, target, snapshot, follow, allowDrag,
                                                     std::move(completion)}] { verify(move); });
}

void WindowMover::verify(const Move& move) {
  if (isOn(move.window.id, move.target.managedID)) {
    if (move.follows) {
      follow(move);
    }
    move.completion({});
  } else if (move.allowsDrag && !drag_.isUnderWay()) {
    services_.log.info(category, "private move did not take, using drag fallback");
    drag(move);
  } else {
    move.completion(std::unexpected(Failure::notMoved));
  }
}

void WindowMover::follow(const Move& move) {
  services_.switcher.switchTo(move.target, move.snapshot);
  raiseAfterSwitch(move.window, move.target.managedID);
}

void WindowMover::drag(const Move& move) {
  if (!services_.accessibility.AXIsProcessTrustedWithOptions(true)) {
    move.completion(std::unexpected(Failure::notMoved));
    return;
  }
  drag_.begin({move.window.frame, [this, move] { services_.switcher.switchTo(move.target, move.snapshot); },
               [this, window = move.window.id, target = move.target.managedID] { return isOn(window, target); },
               [completion = move.completion](bool arrived) {
                 completion(arrived ? Result() : std::unexpected(Failure::notMoved));
               }});
}

void WindowMover::bringHere(const WindowInfo& window, const SpaceSnapshot& snapshot, Completion completion) {
  const auto target = activeSpaceBeside(window.spaceID, snapshot);
  if (!target) {
    completion(std::unexpected(Failure::noWindow));
    return;
  }
  const FrontWindow moved{window.id, window.pid, window.frame};
  move(moved, *target, snapshot, false, false, [this, moved, completion = std::move(completion)](Result result) {
    if (result) {
      raise(moved);
    }
    completion(result);
  });
}

void WindowMover::raise(const FrontWindow& window) {
  if (const auto element = ax_.element(window.id, window.pid)) {
    ax_.raise(element);
    services_.workspace.activateWithOptions(window.pid);
  }
}

void WindowMover::raiseAfterSwitch(const FrontWindow& window, ManagedSpaceID space) {
  raising_ = services_.mainQueue.after(raiseDelay, [this, window, space] { raiseIfShown(window, space); });
}

void WindowMover::forgetRaise() {
  raising_.cancel();
}

void WindowMover::raiseIfShown(const FrontWindow& window, ManagedSpaceID space) {
  const auto current = spaces(window.id);
  const bool hasLeft = !current.empty() && !contains(current, space);
  if (!hasLeft && !isKnownHidden(space, services_.windowServer.CGSBridgeCopyManagedDisplaySpaces())) {
    raise(window);
  }
}

std::string_view description(WindowMover::Failure failure, const DesktopTexts& texts) {
  using enum WindowMover::Failure;
  switch (failure) {
    case noWindow:
      return "There is no window to move.";
    case fullscreenWindow:
      return "Full screen windows cannot be moved to another Space.";
    case fullscreenTarget:
      return "Windows cannot be moved into a full screen Space.";
    case sameSpace:
      return "The window is already on that Space.";
    case notMoved:
      return texts.windowNotMoved;
  }
  return {};
}

}  // namespace tallowin

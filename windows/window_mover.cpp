#include "windows/window_mover.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include "windows/driven/window_drag.h"

namespace tallowin {

namespace {

using namespace std::chrono_literals;

/// The window server says yes to moves that it does not make; by now it has made those that it will.
constexpr Duration verificationDelay = 120ms;
/// The Space must be shown before a window on it can be raised.
constexpr Duration raiseDelay = 250ms;

bool contains(const std::vector<ManagedSpaceID>& spaces, ManagedSpaceID space) {
  return std::ranges::find(spaces, space) != spaces.end();
}

/// The active Space of the display that shows a Space; of the menu-bar display, if that is not known.
std::optional<Space> activeSpaceBeside(ManagedSpaceID managedID, const SpaceSnapshot& snapshot) {
  const auto space = snapshot.managed(managedID);
  const auto display = space ? snapshot.display(*space) : std::nullopt;
  const auto active = display ? display->activeSpace() : std::nullopt;
  return active ? active : snapshot.activeSpace();
}

/// Whether a display has this Space and shows another one.
bool isKnownHidden(ManagedSpaceID space, const std::optional<DesktopReading>& reading) {
  const auto has = [](const DesktopDisplay& display, ManagedSpaceID id) {
    return std::ranges::find(display.spaces, id, &DesktopSpace::id) != display.spaces.end();
  };
  return reading && std::ranges::any_of(reading->displays, [&](const DesktopDisplay& display) {
           return has(display, space) && display.current && has(display, *display.current) && *display.current != space;
         });
}

}  // namespace

std::optional<FrontWindow> frontmostWindow(const std::optional<std::vector<DesktopWindow>>& list,
                                           std::optional<ProcessID> owner) {
  if (!list) {
    return {};
  }
  const auto found = std::ranges::find_if(*list, [&](const DesktopWindow& window) {
    // Strictly larger, where a window that is only listed may be just as large.
    return window.layer == 0 && (!owner || window.pid == *owner) && window.frame.size.width > smallestWindow &&
           window.frame.size.height > smallestWindow;
  });
  return found != list->end() ? std::optional(FrontWindow{found->id, found->pid, found->frame}) : std::nullopt;
}

WindowMover::WindowMover(const Platform& services, SpaceSwitcher& switcher)
    : services_(services),
      switcher_(switcher),
      drag_(services.driven == nullptr
                ? nullptr
                : std::make_unique<WindowDrag>(services.driven->accessibility, services.events, services.mainQueue)) {}

WindowMover::~WindowMover() = default;

std::optional<FrontWindow> WindowMover::frontWindow() const {
  const auto front = services_.workspace.frontmostApplication();
  if (front && front->pid != services_.system.processIdentifier()) {
    if (auto window = focusedWindow(front->pid)) {
      return window;
    }
  }
  return frontmostWindow(services_.windows.list(WindowScope::onScreen),
                         front ? std::optional(front->pid) : std::nullopt);
}

std::optional<FrontWindow> WindowMover::focusedWindow(ProcessID pid) const {
  const auto number = services_.windows.focused(pid);
  const auto window = number ? services_.windows.window(*number) : std::nullopt;
  return window ? std::optional(FrontWindow{*number, pid, window->frame}) : std::nullopt;
}

std::vector<ManagedSpaceID> WindowMover::spaces(WindowNumber window) const {
  return services_.desktop.spacesOfWindow(window).value_or(std::vector<ManagedSpaceID>());
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
  services_.desktop.moveWindow(window.id, target.managedID);
  const auto move =
      moves_.insert(moves_.end(), {window, target, snapshot, follow, allowDrag, std::move(completion), arrivals_, {}});
  move->verification = services_.mainQueue.after(verificationDelay, [this, move] { verify(move); });
}

void WindowMover::windowsChanged() {
  const auto hasArrived = [this](const Move& move) { return isOn(move.window.id, move.target.managedID); };
  Moves done;
  for (auto move = moves_.begin(); move != moves_.end();) {
    const auto next = std::next(move);
    if (hasArrived(*move)) {
      done.splice(done.end(), moves_, move);
    }
    move = next;
  }
  for (const auto& move : done) {
    arrived(move);
  }
}

void WindowMover::verify(Moves::iterator move) {
  Moves due;
  due.splice(due.end(), moves_, move);
  if (isOn(move->window.id, move->target.managedID)) {
    arrived(*move);
  } else if (drag_ == nullptr && std::exchange(move->arrivalsSeen, arrivals_) != arrivals_) {
    // The window manager carries out one request after the other, and this one is still to come.
    move->verification = services_.mainQueue.after(verificationDelay, [this, move] { verify(move); });
    moves_.splice(moves_.end(), due);
  } else if (move->allowsDrag && drag_ != nullptr && !drag_->isUnderWay()) {
    services_.log.info("WindowMover", "private move did not take, using drag fallback");
    drag(*move);
  } else {
    move->completion(std::unexpected(Failure::notMoved));
  }
}

void WindowMover::arrived(const Move& move) {
  ++arrivals_;
  if (move.follows) {
    switcher_.switchTo(move.target, move.snapshot);
    raiseAfterSwitch(move.window, move.target.managedID);
  }
  move.completion({});
}

void WindowMover::drag(const Move& move) {
  drag_->begin({move.window.frame,
                [this, target = move.target, snapshot = move.snapshot] { switcher_.switchTo(target, snapshot); },
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
  if (services_.windows.raise({window.id, window.pid})) {
    services_.workspace.activateWithOptions(window.pid);
  }
}

void WindowMover::raiseAfterSwitch(const FrontWindow& window, ManagedSpaceID space) {
  raising_ = {window, space, services_.mainQueue.after(raiseDelay, [this] { raiseIfShown(); })};
}

void WindowMover::forgetRaise() {
  raising_.reset();
}

void WindowMover::spacesChanged(const SpaceSnapshot& snapshot) {
  const auto active = snapshot.activeSpaces();
  if (drag_ == nullptr && raising_ && std::ranges::find(active, raising_->space, &Space::managedID) != active.end()) {
    raiseIfShown();
  }
}

void WindowMover::raiseIfShown() {
  const auto raising = *std::exchange(raising_, std::nullopt);
  const auto current = spaces(raising.window.id);
  const bool hasLeft = !current.empty() && !contains(current, raising.space);
  if (!hasLeft && !isKnownHidden(raising.space, services_.desktop.read())) {
    raise(raising.window);
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

#include "platform/simulated/asked_desktop.h"

#include <algorithm>
#include <utility>

namespace tallowin {

namespace {

constexpr auto addRequest = "add-space";
constexpr auto removeRequest = "remove-space";
constexpr auto moveRequest = "move-window";
constexpr auto frameRequest = "set-frame";

nlohmann::ordered_json rectangle(const CGRect& frame) {
  return {frame.origin.x, frame.origin.y, frame.size.width, frame.size.height};
}

}  // namespace

void Requests::make(std::string_view request, const nlohmann::ordered_json& arguments, std::function<void()> carryOut) {
  journal_.record(request, arguments);
  if (!behaviour().ignored.contains(request)) {
    after(behaviour().time, std::move(carryOut));
  }
}

DesktopWindow AskedWindows::described(const SimulatedWindow& window) const {
  return {.id = window.number,
          .pid = window.pid,
          .ownerName = state_.applicationName(window.pid),
          .title = window.title,
          .frame = window.frame,
          .layer = static_cast<int>(window.layer),
          .alpha = window.alpha,
          .spaces = window.spaces};
}

std::optional<std::vector<DesktopWindow>> AskedWindows::list(WindowScope scope) {
  std::vector<DesktopWindow> windows;
  for (const auto& window : state_.windows) {
    // Icons and the picture of the desktop lie below everything else.
    if (window.layer >= 0 && (scope == WindowScope::all || state_.isOnScreen(window))) {
      windows.push_back(described(window));
    }
  }
  return windows;
}

std::optional<DesktopWindow> AskedWindows::window(WindowNumber number) {
  const auto* const found = state_.window(number);
  return found != nullptr ? std::optional(described(*found)) : std::nullopt;
}

std::optional<WindowNumber> AskedWindows::focused(ProcessID pid) {
  const auto found = std::ranges::find_if(state_.windows, [&](const SimulatedWindow& window) {
    return window.pid == pid && window.layer == 0 && state_.isOnScreen(window);
  });
  return found != state_.windows.end() ? std::optional(found->number) : std::nullopt;
}

bool AskedWindows::ask(std::string_view request, const WindowRef& window, nlohmann::ordered_json arguments,
                       std::function<void(SimulatedWindow&)> change) {
  if (!mayChange() || state_.window(window.id) == nullptr) {
    return false;
  }
  requests_.make(request, arguments, [this, id = window.id, change = std::move(change)] {
    if (auto* const found = state_.window(id)) {
      change(*found);
      tellChanges();
    }
  });
  return true;
}

bool AskedWindows::raise(const WindowRef& window) {
  return ask("raise-window", window, {{"window", window.id}},
             [this](SimulatedWindow& raised) { state_.raise(raised.number); });
}

bool AskedWindows::setFrame(const WindowRef& window, const CGRect& frame) {
  const auto* const found = state_.window(window.id);
  if (found != nullptr && found->frame == frame) {
    return mayChange();
  }
  return ask(frameRequest, window, {{"window", window.id}, {"frame", rectangle(frame)}},
             [this, frame](SimulatedWindow& changed) {
               changed.frame.origin = frame.origin;
               if (!requests_.isPartly(frameRequest)) {
                 changed.frame.size = frame.size;
               }
             });
}

bool AskedWindows::setMinimized(const WindowRef& window, bool minimized) {
  const auto* const found = state_.window(window.id);
  return found != nullptr && found->minimized != minimized &&
         ask(minimized ? "minimize-window" : "unminimize-window", window, {{"window", window.id}},
             [minimized](SimulatedWindow& changed) { changed.minimized = minimized; });
}

bool AskedWindows::close(const WindowRef& window, Duration atMost) {
  const auto* const found = state_.window(window.id);
  const auto* const owner = found != nullptr ? state_.application(found->pid) : nullptr;
  return owner != nullptr && owner->responseTime.value_or(Duration::max()) <= atMost &&
         ask("close-window", window, {{"window", window.id}},
             [this](SimulatedWindow& closed) { state_.close(closed.number); });
}

std::vector<DesktopWindow> AskedWindows::everything() {
  auto windows = list(WindowScope::all).value_or(std::vector<DesktopWindow>());
  for (auto& window : windows) {
    // What minimising and hiding change is told only by whether the window is on the screen.
    window.layer = state_.isOnScreen(*state_.window(window.id)) ? window.layer : -1;
  }
  return windows;
}

bool AskedWindows::observe(std::function<void()> observer) {
  observer_ = std::move(observer);
  told_ = everything();
  return true;
}

void AskedWindows::tellChanges() {
  if (observer_ && told_ != everything()) {
    told_ = everything();
    telling_ = queue_.after(Duration::zero(), [this] { observer_(); });
  }
}

std::optional<DesktopReading> SimulatedAskedDesktop::read() {
  DesktopReading reading{state_.spaces.displays(), 1};
  if (reading.displays.empty()) {
    return std::nullopt;
  }
  for (auto& display : reading.displays) {
    display.isMenuBarDisplay = display.id == state_.menuBarDisplay;
    if (const auto seen = seen_.find(display.id); isTorn_ && seen != seen_.end()) {
      display.current = seen->second;
    }
  }
  if (std::ranges::none_of(reading.displays, &DesktopDisplay::isMenuBarDisplay)) {
    reading.displays.front().isMenuBarDisplay = true;
  }
  return reading;
}

std::optional<ManagedSpaceID> SimulatedAskedDesktop::activeSpace() {
  const auto reading = read();
  return reading ? std::ranges::find_if(reading->displays, &DesktopDisplay::isMenuBarDisplay)->current : std::nullopt;
}

CGSBridgeHealth SimulatedAskedDesktop::health() {
  using Health = CGSBridgeHealth;
  const auto listed = read() ? Health::spacesListed : Health::Bit{};
  return Health(Health::connection | Health::managedDisplaySpaces | Health::activeMenuBarDisplay | Health::activeSpace |
                Health::notifications | listed);
}

std::optional<std::vector<ManagedSpaceID>> SimulatedAskedDesktop::spacesOfWindow(WindowNumber number) {
  const auto* const window = state_.window(number);
  return window != nullptr ? std::optional(window->spaces) : std::nullopt;
}

DesktopAbilities SimulatedAskedDesktop::abilities() {
  const auto is = [this](const char* request) { return requests_.isPossible(request) && !unheard_.contains(request); };
  return {.addsSpaces = is(addRequest), .removesSpaces = is(removeRequest), .movesWindows = is(moveRequest)};
}

bool SimulatedAskedDesktop::switchTo(ManagedSpaceID space) {
  if (!state_.spaces.displayOf(space)) {
    return false;
  }
  requests_.make("switch", {{"space", space}}, [this, space] { spaces_.switchNow(space); });
  return true;
}

bool SimulatedAskedDesktop::moveWindow(WindowNumber number, ManagedSpaceID space) {
  if (!requests_.isPossible(moveRequest) || !state_.spaces.displayOf(space) || state_.window(number) == nullptr) {
    return false;
  }
  requests_.make(moveRequest, {{"window", number}, {"space", space}}, [this, number, space] {
    auto* const window = state_.window(number);
    if (window != nullptr && state_.spaces.displayOf(space)) {
      window->spaces = {space};
      windows_.tellChanges();
    }
  });
  return true;
}

/// Tells whether it has happened, at the latest when the patience is at its end.
void SimulatedAskedDesktop::ask(std::string_view request, const nlohmann::ordered_json& arguments,
                                std::function<bool()> carryOut, Completion completion) {
  if (!requests_.isPossible(request)) {
    completion(std::unexpected(DesktopRefusal::unable));
    return;
  }
  const auto waiting = std::make_shared<Completion>(std::move(completion));  // whoever is first tells
  requests_.after(patience, [this, waiting, request = std::string(request)] {
    if (const auto told = std::exchange(*waiting, nullptr)) {
      unheard_.insert(request);
      told(std::unexpected(DesktopRefusal::ignored));
    }
  });
  requests_.make(request, arguments, [waiting, carryOut = std::move(carryOut)] {
    if (const auto told = carryOut() ? std::exchange(*waiting, nullptr) : nullptr) {
      told({});
    }
  });
}

void SimulatedAskedDesktop::addSpace(const std::string& display, Completion completion) {
  ask(
      addRequest, {{"display", display}}, [this, display] { return spaces_.addDesktop(display); },
      std::move(completion));
}

/// The Space that gets the windows of one that is removed; nothing when it cannot go.
std::optional<ManagedSpaceID> SimulatedAskedDesktop::heirOf(ManagedSpaceID space) const {
  for (const auto& row : state_.spaces.displays()) {
    const auto at = std::ranges::find(row.spaces, space, &DesktopSpace::id);
    if (at != row.spaces.end()) {
      const auto next = std::next(at);
      return row.spaces.size() < 2 ? std::nullopt
                                   : std::optional(next != row.spaces.end() ? next->id : std::prev(at)->id);
    }
  }
  return std::nullopt;
}

void SimulatedAskedDesktop::removeSpace(ManagedSpaceID space, Completion completion) {
  if (!heirOf(space)) {
    completion(std::unexpected(DesktopRefusal::noSpace));
    return;
  }
  ask(removeRequest, {{"space", space}}, [this, space] { return remove(space); }, std::move(completion));
}

/// False when it stays, as by half: then only its windows have gone.
bool SimulatedAskedDesktop::remove(ManagedSpaceID space) {
  const auto heir = heirOf(space);
  if (!heir) {
    return false;
  }
  for (auto& window : state_.windows) {
    std::ranges::replace(window.spaces, space, *heir);
  }
  windows_.tellChanges();
  return !requests_.isPartly(removeRequest) && spaces_.removeDesktop(space, heir);
}

SimulatedAskedDesktop::Active SimulatedAskedDesktop::active() const {
  Active active;
  for (const auto& row : state_.spaces.displays()) {
    active[row.id] = row.current;
  }
  return active;
}

void SimulatedAskedDesktop::sign(const std::string& reason) {
  if (observer_ && state_.requests.signs != SignTiming::never) {
    observer_({reason, true});
  }
}

void SimulatedAskedDesktop::spacesChanged(WindowServerEvent event) {
  const auto* const reason = event == SimulatedSpaces::activeSpaceEvent ? "the active Space" : "the list of Spaces";
  windows_.tellChanges();
  if (state_.requests.signs != SignTiming::early) {
    seen_ = active();
    sign(reason);
    return;
  }
  isTorn_ = true;
  sign(reason);
  requests_.after(state_.requests.tornFor, [this, reason] {
    isTorn_ = false;
    seen_ = active();
    sign(reason);
  });
}

}  // namespace tallowin

#include "platform/x11/x11_desktop_operations.h"

#include <algorithm>
#include <utility>

#include "platform/x11/x11_window_server.h"

namespace tallowin {

namespace {

constexpr Duration untilMoved = std::chrono::milliseconds(100);
constexpr Duration untilGivenUp = std::chrono::seconds(4);
constexpr Duration untilArrived = std::chrono::seconds(1);

}  // namespace

X11DesktopOperations::X11DesktopOperations(X11Connection& connection, X11DesktopReader& desktops,
                                           KeptDesktopPlaces& places, X11Windows& windows, MainQueue& queue)
    : connection_(connection),
      desktops_(desktops),
      places_(places),
      windows_(windows),
      queue_(queue),
      carrier_(connection, desktops, windows.glance, queue, [this](ManagedSpaceID space) { switchPlainly(space); }) {}

std::vector<DesktopRow> X11DesktopOperations::rows() {
  const auto view = windows_.glance.look();
  const auto& state = view->desktops;
  if (state.spaces.empty()) {
    return {};
  }
  DesktopRow row{.display = X11WindowServer::mainDisplay, .spaces = {}, .active = state.active()};
  for (const auto space : state.spaces) {
    row.spaces.push_back({.id = space});
  }
  return {row};
}

std::optional<std::string> X11DesktopOperations::displayUnderPointer() {
  return X11WindowServer::mainDisplay;
}

void X11DesktopOperations::switchTo(ManagedSpaceID space, SwitchCause /*cause*/) {
  if (!carrier_.carryTo(space)) {
    switchPlainly(space);
  }
}

void X11DesktopOperations::switchPlainly(ManagedSpaceID space) {
  if (const auto index = windows_.glance.present()->desktops.indexOf(space)) {
    switchToIndex(static_cast<std::uint32_t>(*index));
  }
}

void X11DesktopOperations::switchToIndex(std::uint32_t index) {
  // No X event asked for the switch, so there is no time stamp to give.
  connection_.sendToWindowManager(connection_.root(), X11Atom::netCurrentDesktop, {index, XCB_CURRENT_TIME, 0, 0, 0});
}

bool X11DesktopOperations::addDesktop(const std::string& display) {
  const auto state = desktops_.read();
  if (display != X11WindowServer::mainDisplay || !canChangeCount()) {
    return false;
  }
  return change(state, places_.get().withNew());
}

bool X11DesktopOperations::removeDesktop(ManagedSpaceID space) {
  const auto state = desktops_.read();
  const auto index = state.indexOf(space);
  if (!canChangeCount() || state.spaces.size() < 2 || !index) {
    return false;
  }
  return change(state, places_.get().without(*index));
}

std::optional<std::vector<ManagedSpaceID>> X11DesktopOperations::places() {
  const auto state = desktops_.read();
  return state.dynamic || state.spaces.empty() ? std::nullopt : std::optional(state.spaces);
}

void X11DesktopOperations::adopt(const std::vector<ManagedSpaceID>& spaces) {
  if (places() && !change_) {
    places_.adopt(spaces);
    onDesktopsChanged();
  }
}

bool X11DesktopOperations::restore(const std::vector<ManagedSpaceID>& spaces) {
  const auto state = desktops_.read();
  auto wanted = places_.get().withRemoved(spaces);
  return state.spaces == wanted || (canChangeCount() && change(state, std::move(wanted)));
}

/// True when all has happened within a tenth of a second; what comes later is taken in when the server tells of it.
bool X11DesktopOperations::change(const X11DesktopState& before, std::vector<ManagedSpaceID> wanted) {
  if (change_ || wanted.size() > maximumDesktopCount) {
    return false;
  }
  begin(before, std::move(wanted));
  if (change_->wanted.size() != before.spaces.size()) {
    connection_.sendToWindowManager(connection_.root(), X11Atom::netNumberOfDesktops,
                                    {static_cast<std::uint32_t>(change_->wanted.size()), 0, 0, 0, 0});
    if (!windows_.refusals.confirm(X11Refusals::Request::desktopCount, [this] { return hasCount(); })) {
      return false;
    }
  }
  desktopsChanged();
  const bool done = waitUntil([this] { return isDone() && haveWindowsArrived(); }, untilMoved) || isDone();
  if (done) {
    finish();
  }
  return done;
}

void X11DesktopOperations::begin(const X11DesktopState& before, std::vector<ManagedSpaceID> wanted) {
  Change begun;
  begun.before = before;
  begun.wanted = std::move(wanted);
  const auto target = [&](std::size_t index) {
    const auto found = std::ranges::find(begun.wanted, before.spaces[index]);
    const auto place = found != begun.wanted.end() ? static_cast<std::size_t>(found - begun.wanted.begin()) : index;
    return static_cast<std::uint32_t>(std::min(place, begun.wanted.size() - 1));
  };
  for (const auto& window : windows_.reader.read().windows) {
    if (window.desktop && *window.desktop < before.spaces.size() && target(*window.desktop) != *window.desktop) {
      begun.targets[window.id] = target(*window.desktop);
    }
  }
  if (before.current && target(*before.current) != *before.current) {
    begun.current = target(*before.current);
  }
  begun.givingUp = queue_.after(untilGivenUp, [this] { giveUp(); });
  desktops_.hold(before, begun.wanted.size());
  change_ = std::move(begun);
}

bool X11DesktopOperations::hasCount() {
  return desktops_.readPlainly().spaces.size() == change_->wanted.size();
}

void X11DesktopOperations::desktopsChanged() {
  if (change_ && !change_->counted && hasCount()) {
    change_->counted = true;
    windows_.refusals.noteWorking(X11Refusals::Request::desktopCount);
    change_->givingUp = queue_.after(untilArrived, [this] { giveUp(); });
    for (const auto& [window, desktop] : change_->targets) {
      windows_.actions.moveToDesktop(window, desktop, change_->before);
    }
    if (change_->current) {
      switchToIndex(*change_->current);
    }
  } else if (change_ && change_->counted && isDone()) {
    finish();
  }
}

bool X11DesktopOperations::isDone() {
  const auto now = desktops_.readPlainly();
  return !change_->current || now.current == std::size_t{*change_->current};
}

bool X11DesktopOperations::haveWindowsArrived() {
  const auto now = windows_.reader.read();
  return std::ranges::all_of(now.windows, [this](const X11Window& window) {
    const auto target = change_->targets.find(window.id);
    return target == change_->targets.end() || window.desktop == target->second;
  });
}

void X11DesktopOperations::finish() {
  places_.assign(std::move(change_->wanted));
  endChange();
}

/// The window manager has done nothing, or the user has switched meanwhile.
void X11DesktopOperations::giveUp() {
  if (change_->counted) {
    finish();
  } else {
    endChange();
  }
  onDesktopsChanged();
}

void X11DesktopOperations::endChange() {
  change_.reset();
  desktops_.release();
  windows_.moment.end();
}

bool X11DesktopOperations::canChangeCount() {
  const auto state = desktops_.read();
  return !state.dynamic && !state.spaces.empty() && !windows_.refusals.isRefused(X11Refusals::Request::desktopCount);
}

}  // namespace tallowin

#include "platform/x11/x11_desktop_operations.h"

#include <algorithm>
#include <map>

#include "platform/x11/x11_window_server.h"

namespace tallowin {

namespace {

constexpr Duration untilMoved = std::chrono::milliseconds(100);

}  // namespace

X11DesktopOperations::X11DesktopOperations(X11Connection& connection, X11DesktopReader& desktops, X11Windows& windows,
                                           MainQueue& queue)
    : connection_(connection),
      desktops_(desktops),
      windows_(windows),
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
    // No X event asked for the switch, so there is no time stamp to give.
    connection_.sendToWindowManager(connection_.root(), X11Atom::netCurrentDesktop,
                                    {static_cast<std::uint32_t>(*index), XCB_CURRENT_TIME, 0, 0, 0});
  }
}

bool X11DesktopOperations::addDesktop(const std::string& display) {
  const auto state = desktops_.read();
  if (display != X11WindowServer::mainDisplay || !canChangeCount()) {
    return false;
  }
  return askForCount(state.spaces.size() + 1);
}

bool X11DesktopOperations::removeDesktop(ManagedSpaceID space) {
  const auto state = desktops_.read();
  const auto index = state.indexOf(space);
  if (!canChangeCount() || state.spaces.size() < 2 || !index) {
    return false;
  }
  if (*index + 1 < state.spaces.size() && !moveLeft(state, *index + 1)) {
    return false;
  }
  return askForCount(state.spaces.size() - 1);
}

/// Moves what is on the desktops from this one on to the desktop left of each.
bool X11DesktopOperations::moveLeft(const X11DesktopState& state, std::size_t firstDesktop) {
  std::map<xcb_window_t, std::uint32_t> targets;
  for (const auto& window : windows_.reader.read().windows) {
    if (window.desktop && *window.desktop >= firstDesktop && *window.desktop < state.spaces.size()) {
      targets[window.id] = *window.desktop - 1;
    }
  }
  for (const auto& [window, desktop] : targets) {
    windows_.actions.moveToDesktop(window, desktop, state);
  }
  if (state.current && *state.current >= firstDesktop) {
    switchPlainly(state.spaces[*state.current - 1]);
  }
  const auto arrived = [&] {
    const auto now = windows_.reader.read();
    return std::ranges::all_of(now.windows, [&](const X11Window& window) {
      const auto target = targets.find(window.id);
      return target == targets.end() || window.desktop == target->second;
    });
  };
  return waitUntil(arrived, untilMoved);
}

bool X11DesktopOperations::canChangeCount() {
  const auto state = desktops_.read();
  return !state.dynamic && !state.spaces.empty() && !windows_.refusals.isRefused(X11Refusals::Request::desktopCount);
}

bool X11DesktopOperations::askForCount(std::size_t count) {
  if (count > maximumDesktopCount) {
    return false;
  }
  connection_.sendToWindowManager(connection_.root(), X11Atom::netNumberOfDesktops,
                                  {static_cast<std::uint32_t>(count), 0, 0, 0, 0});
  return windows_.refusals.confirm(X11Refusals::Request::desktopCount,
                                   [&] { return desktops_.read().spaces.size() == count; });
}

}  // namespace tallowin

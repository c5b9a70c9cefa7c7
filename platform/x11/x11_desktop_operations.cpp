#include "platform/x11/x11_desktop_operations.h"

#include "platform/x11/x11_window_server.h"

namespace tallowin {

X11DesktopOperations::X11DesktopOperations(X11Connection& connection, X11DesktopReader& desktops, MainQueue& queue)
    : connection_(connection),
      desktops_(desktops),
      carrier_(connection, desktops, queue, [this](ManagedSpaceID space) { switchPlainly(space); }) {}

std::vector<DesktopRow> X11DesktopOperations::rows() {
  const auto state = desktops_.read();
  if (state.spaces.empty()) {
    return {};
  }
  DesktopRow row{.display = X11WindowServer::mainDisplay, .spaces = {}, .active = state.active()};
  for (const auto space : state.spaces) {
    row.spaces.push_back({.id = space});
  }
  return {row};
}

std::optional<std::size_t> X11DesktopOperations::rowUnderPointer() {
  return 0;
}

void X11DesktopOperations::switchTo(ManagedSpaceID space, SwitchCause /*cause*/) {
  if (!carrier_.carryTo(space)) {
    switchPlainly(space);
  }
}

void X11DesktopOperations::switchPlainly(ManagedSpaceID space) {
  if (const auto index = desktops_.read().indexOf(space)) {
    // No X event asked for the switch, so there is no time stamp to give.
    connection_.sendToWindowManager(connection_.root(), X11Atom::netCurrentDesktop,
                                    {static_cast<std::uint32_t>(*index), XCB_CURRENT_TIME, 0, 0, 0});
  }
}

bool X11DesktopOperations::addDesktop(const std::string& display) {
  const auto state = desktops_.read();
  if (display != X11WindowServer::mainDisplay || state.dynamic || state.spaces.empty()) {
    return false;
  }
  return askForCount(state.spaces.size() + 1);
}

bool X11DesktopOperations::removeDesktop(ManagedSpaceID space) {
  const auto state = desktops_.read();
  if (state.dynamic || state.spaces.size() < 2 || state.spaces.back() != space) {
    return false;
  }
  return askForCount(state.spaces.size() - 1);
}

bool X11DesktopOperations::askForCount(std::size_t count) {
  if (count > maximumDesktopCount) {
    return false;
  }
  connection_.sendToWindowManager(connection_.root(), X11Atom::netNumberOfDesktops,
                                  {static_cast<std::uint32_t>(count), 0, 0, 0, 0});
  return connection_.alive();
}

}  // namespace tallowin

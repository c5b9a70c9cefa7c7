#include "app/main/host.h"

#include <cstdlib>
#include <iostream>

#include "commands/outcome.h"
#include "platform/x11/x11_connection.h"
#include "platform/x11/x11_desktop_reader.h"

namespace tallowin {

namespace {

/// Under Wayland only an X server of its own with a window manager, as some desktops have, can be worked on.
bool isWayland() {
  const char* display = std::getenv("WAYLAND_DISPLAY");
  return display != nullptr && *display != '\0';
}

constexpr auto noWayland =
    "this Wayland desktop does not let other programs see or switch its virtual desktops; Tallowin needs an X11 one";

/// A connection to a desktop that can be worked on; null when there is none. The resident program may be started before
/// the window manager is, and then waits for it.
std::unique_ptr<X11Connection> connectToDesktop(const CommandLine& line) {
  const bool canWait = (line.mode == Mode::resident || line.mode == Mode::doctor) && !isWayland();
  auto connection = X11Connection::open();
  const bool isDesktop = connection && (canWait || isManaged(**connection));
  return isDesktop ? *std::move(connection) : nullptr;
}

HostResult makeAutomaticHost(const CommandLine& line, std::unique_ptr<InstanceLock> lock) {
  if (auto connection = connectToDesktop(line)) {
    return makeX11Host(line, std::move(lock), std::move(connection));
  }
  if (isWayland()) {
    if (line.mode == Mode::resident) {
      return std::unexpected(HostError{noWayland, exit_status::unavailable});
    }
    if (line.mode != Mode::doctor) {  // which tells it in its own words
      std::cerr << "tallowin: " << noWayland << '\n';
    }
  }
  return makeNoneHost(line, std::move(lock));
}

/// Settings are the machine's, whatever its desktop; only a simulation in virtual time has its own.
bool needsNoDesktop(const CommandLine& line) {
  return isSettingsMode(line.mode) && !line.simulate;
}

}  // namespace

std::optional<HostError> whyNoDesktop(const CommandLine& line) {
  if (line.platform == PlatformChoice::simulated || line.platform == PlatformChoice::none) {
    return std::nullopt;
  }
  const auto connection = X11Connection::open();
  if (line.platform == PlatformChoice::automatic && isWayland() && !(connection && isManaged(**connection))) {
    return HostError{noWayland, exit_status::unavailable};
  }
  return connection ? std::nullopt : std::optional(HostError{connection.error(), exit_status::unavailable});
}

bool runsLoop(Mode mode) {
  return mode == Mode::resident || mode == Mode::switchSpace || mode == Mode::capture;
}

HostResult makeHost(const CommandLine& line, std::unique_ptr<InstanceLock> lock) {
  if (needsNoDesktop(line)) {
    return makeNoneHost(line, std::move(lock));
  }
  switch (line.platform) {
    case PlatformChoice::automatic:
      return makeAutomaticHost(line, std::move(lock));
    case PlatformChoice::x11: {
      auto connection = X11Connection::open();
      return connection ? makeX11Host(line, std::move(lock), *std::move(connection))
                        : std::unexpected(HostError{connection.error(), exit_status::unavailable});
    }
    case PlatformChoice::simulated:
      return makeSimulatedHost(line, std::move(lock));
    case PlatformChoice::none:
      return makeNoneHost(line, std::move(lock));
  }
  return makeNoneHost(line, std::move(lock));
}

}  // namespace tallowin

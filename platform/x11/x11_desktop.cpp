#include "platform/x11/x11_desktop.h"

#include <utility>

namespace tallowin {

bool X11Desktop::windowManagerPresent() {
  const auto connection = X11Connection::open();
  return connection && X11DesktopReader(**connection).read().checkWindow != XCB_WINDOW_NONE;
}

std::expected<std::unique_ptr<X11Desktop>, std::string> X11Desktop::connect(MainQueue& queue, const Clock& clock,
                                                                            Log& log, Descriptors& descriptors,
                                                                            std::function<void()> onConnectionLost) {
  auto connection = X11Connection::open();
  if (!connection) {
    return std::unexpected(connection.error());
  }
  return std::unique_ptr<X11Desktop>(
      new X11Desktop(std::move(*connection), queue, clock, log, descriptors, std::move(onConnectionLost)));
}

X11Desktop::X11Desktop(std::unique_ptr<X11Connection> connection, MainQueue& queue, const Clock& clock, Log& log,
                       Descriptors& descriptors, std::function<void()> onConnectionLost)
    : connection_(std::move(connection)),
      desktops_(*connection_),
      operations_(*connection_, desktops_, queue),
      dock_(operations_, hotKeys_, queue, clock, log, dockBehaviour()),
      windowServer_(*connection_, desktops_, hotKeys_, dock_),
      events_(*connection_, clock, dock_),
      displays_(*connection_),
      accessibility_(*connection_),
      screenCapture_(*connection_),
      desktopNames_(*connection_, desktops_, queue, clock),
      changes_(*connection_, desktops_, queue,
               {windowServer_, desktopNames_, dock_, workspaceNotifications_, defaultNotifications_}),
      pump_(
          *connection_, queue, descriptors, [this](const xcb_generic_event_t& event) { changes_.handle(event); },
          std::move(onConnectionLost)) {}

DockBehaviour X11Desktop::dockBehaviour() {
  // Window managers switch within a few milliseconds, or not at all.
  constexpr Duration patience = std::chrono::milliseconds(100);
  DockBehaviour behaviour;
  behaviour.patience = patience;
  behaviour.lastReported = [this](const std::string& /*display*/) { return windowServer_.reportedActive(); };
  behaviour.givenUp = [this] { windowServer_.notify(X11Changes::activeSpaceChanged); };
  return behaviour;
}

}  // namespace tallowin

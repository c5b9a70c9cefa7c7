#include "platform/x11/x11_desktop.h"

#include <unistd.h>
#include <utility>

namespace tallowin {

std::optional<std::string> X11Desktop::whyNoServer() {
  const auto connection = X11Connection::open();
  return connection ? std::nullopt : std::optional(connection.error());
}

bool X11Desktop::windowManagerPresent() {
  const auto connection = X11Connection::open();
  KeptDesktopPlaces places;
  return connection && X11DesktopReader(**connection, places).read().checkWindow != XCB_WINDOW_NONE;
}

std::expected<std::unique_ptr<X11Desktop>, std::string> X11Desktop::connect(MainQueue& queue, const Clock& clock,
                                                                            Log& log, Descriptors& descriptors,
                                                                            Processes& processes,
                                                                            KeptDesktopPlaces& places,
                                                                            std::function<void()> onConnectionLost) {
  auto connection = X11Connection::open();
  if (!connection) {
    return std::unexpected(connection.error());
  }
  return std::unique_ptr<X11Desktop>(new X11Desktop(std::move(*connection), queue, clock, log, descriptors, processes,
                                                    places, std::move(onConnectionLost)));
}

X11Desktop::X11Desktop(std::unique_ptr<X11Connection> connection, MainQueue& queue, const Clock& clock, Log& log,
                       Descriptors& descriptors, Processes& processes, KeptDesktopPlaces& places,
                       std::function<void()> onConnectionLost)
    : connection_(std::move(connection)),
      desktops_(*connection_, places),
      windows_(*connection_, desktops_, processes, queue, getpid()),
      operations_(*connection_, desktops_, places, windows_, queue),
      dock_(operations_, hotKeys_, queue, clock, log, dockBehaviour()),
      displays_(*connection_, windows_.glance),
      missionControl_(
          operations_, queue,
          [this](const std::string& /*display*/) { return displays_.CGDisplayBounds(X11Displays::mainDisplay); }),
      windowServer_(*connection_, desktops_, hotKeys_, dock_, windows_,
                    [this](std::string_view notification) { notifyDock(notification); }),
      events_(*connection_, windows_.glance, clock, dock_, missionControl_),
      accessibility_(*connection_, missionControl_, windows_.context),
      windowList_(*connection_, windows_.reader, windows_.applications),
      workspace_(queue, windows_.launcher, windows_.context),
      globalHotKeys_(*connection_),
      pasteboard_(*connection_),
      screenCapture_(*connection_),
      desktopNames_(*connection_, desktops_, queue, clock),
      desktopFacts_(*connection_, desktops_, processes),
      changes_(*connection_, desktops_, queue,
               {operations_, windowServer_, desktopNames_, dock_, workspaceNotifications_, defaultNotifications_}),
      applicationChanges_(*connection_, windows_.reader, windows_.applications, queue, workspaceNotifications_),
      pump_(
          *connection_, queue, descriptors, [this](const xcb_generic_event_t& event) { handle(event); },
          std::move(onConnectionLost)) {
  operations_.onDesktopsChanged = [this] { changes_.desktopsChanged(); };
}

DockBehaviour X11Desktop::dockBehaviour() {
  // Window managers switch within a few milliseconds, or not at all.
  constexpr Duration patience = std::chrono::milliseconds(100);
  DockBehaviour behaviour;
  behaviour.patience = patience;
  behaviour.lastReported = [this](const std::string& /*display*/) { return windowServer_.reportedActive(); };
  behaviour.givenUp = [this] { windowServer_.notify(X11Changes::activeSpaceChanged); };
  return behaviour;
}

void X11Desktop::handle(const xcb_generic_event_t& event) {
  windows_.moment.end();
  changes_.handle(event);
  applicationChanges_.handle(event);
  globalHotKeys_.handle(event);
  pasteboard_.handle(event);
}

void X11Desktop::notifyDock(std::string_view notification) {
  // Where desktops can be neither added nor removed there is nothing to open Mission Control for.
  if (operations_.canChangeCount()) {
    missionControl_.notify(notification);
  }
}

}  // namespace tallowin

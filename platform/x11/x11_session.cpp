#include "platform/x11/x11_session.h"

#include <utility>

namespace tallowin {

std::optional<std::string> X11Session::whyNoServer() {
  const auto connection = X11Connection::open();
  return connection ? std::nullopt : std::optional(connection.error());
}

bool X11Session::windowManagerPresent() {
  const auto connection = X11Connection::open();
  return connection && windowManagerPresent(**connection);
}

bool X11Session::windowManagerPresent(X11Connection& connection) {
  KeptDesktopPlaces places;
  return X11DesktopReader(connection, places).read().checkWindow != XCB_WINDOW_NONE;
}

std::expected<std::unique_ptr<X11Session>, std::string> X11Session::connect(MainQueue& queue, const Clock& clock,
                                                                            Descriptors& descriptors,
                                                                            Processes& processes,
                                                                            KeptDesktopPlaces& places, ProcessID self,
                                                                            std::function<void()> onConnectionLost) {
  auto connection = X11Connection::open();
  if (!connection) {
    return std::unexpected(connection.error());
  }
  return std::make_unique<X11Session>(*std::move(connection), queue, clock, descriptors, processes, places, self,
                                      std::move(onConnectionLost));
}

X11Session::X11Session(std::unique_ptr<X11Connection> connection, MainQueue& queue, const Clock& clock,
                       Descriptors& descriptors, Processes& processes, KeptDesktopPlaces& places, ProcessID self,
                       std::function<void()> onConnectionLost)
    : connection_(std::move(connection)),
      waits_(queue),
      desktopReader_(*connection_, places),
      windowReader_(*connection_, desktopReader_, self),
      installed_(processXdgEnvironment()),
      applications_(*connection_, desktopReader_, windowReader_, installed_),
      actions_(*connection_, windowReader_, desktopReader_, refusals_, waits_),
      launcher_(installed_, processes),
      desktopNames_(*connection_, desktopReader_, queue, clock),
      desktop_({*connection_, desktopReader_, windowReader_, applications_, actions_, refusals_, desktopNames_, places,
                queue}),
      windows_(*connection_, windowReader_, applications_, actions_, queue),
      displays_(*connection_, desktopReader_, queue, defaultNotifications_),
      events_(*connection_),
      workspace_(queue, launcher_, applications_, actions_),
      globalHotKeys_(*connection_),
      pasteboard_(*connection_),
      screenCapture_(*connection_),
      desktopFacts_(*connection_, desktopReader_, processes),
      applicationChanges_(*connection_, windowReader_, applications_, queue, workspaceNotifications_),
      pump_(*connection_, queue, descriptors,
            {.event = [this](const xcb_generic_event_t& event) { handle(event); },
             .allHandled =
                 [this] {
                   waits_.lookAgain();
                   desktop_.allHandled();
                 },
             .connectionLost = std::move(onConnectionLost)}) {}

void X11Session::handle(const xcb_generic_event_t& event) {
  windowReader_.handle(event);
  desktop_.handle(event);
  applicationChanges_.handle(event);
  windows_.handle(event);
  displays_.handle(event);
  globalHotKeys_.handle(event);
  pasteboard_.handle(event);
}

}  // namespace tallowin

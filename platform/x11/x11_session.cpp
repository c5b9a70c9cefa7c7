#include "platform/x11/x11_session.h"

#include <utility>

namespace tallowin {

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
      desktopNames(*connection_, desktopReader_, queue, clock),
      desktop({*connection_, desktopReader_, windowReader_, applications_, actions_, refusals_, desktopNames, places,
               queue}),
      windows(*connection_, windowReader_, applications_, actions_, queue),
      displays(*connection_, desktopReader_, queue, defaultNotifications),
      events(*connection_),
      workspace(queue, processes, installed_, applications_, actions_),
      globalHotKeys(*connection_),
      panelActivations(*connection_),
      pasteboard(*connection_),
      screenCapture(*connection_),
      desktopFacts(*connection_, desktopReader_, windowReader_, processes),
      applicationChanges_(*connection_, windowReader_, applications_, queue, workspaceNotifications),
      pump_(*connection_, queue, descriptors,
            {.event = [this](const xcb_generic_event_t& event) { handle(event); },
             .allHandled =
                 [this] {
                   waits_.lookAgain();
                   globalHotKeys.allHandled();
                   desktop.allHandled();
                 },
             .connectionLost = std::move(onConnectionLost)}) {}

void X11Session::handle(const xcb_generic_event_t& event) {
  windowReader_.handle(event);
  desktop.handle(event);
  applicationChanges_.handle(event);
  windows.handle(event);
  displays.handle(event);
  globalHotKeys.handle(event);
  panelActivations.handle(event);
  pasteboard.handle(event);
}

}  // namespace tallowin

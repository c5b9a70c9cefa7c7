#include <cstdlib>
#include <iostream>
#include <unistd.h>

#include "app/main/host.h"
#include "app/main/machine.h"
#include "base/app_paths.h"
#include "base/main_thread_work_queues.h"
#include "commands/outcome.h"
#include "platform/none/neutral.h"
#include "platform/x11/x11_session.h"
#include "triggers/asked_triggers.h"

namespace tallowin {

namespace {

std::string displayName() {
  const char* name = std::getenv("DISPLAY");
  return name != nullptr ? name : "";
}

class X11Host : public Host {
 public:
  X11Host(const CommandLine& line, std::unique_ptr<InstanceLock> lock, std::unique_ptr<X11Connection> connection)
      : line_(line),
        machine_(line, std::move(lock), displayName()),
        session_(std::move(connection), machine_.mainQueue, machine_.clock, machine_.mainQueue, machine_.processes,
                 places_, getpid(), [this] { connectionLost(); }) {}

  void begin() override { machine_.begin(); }

  Storage& storage() override { return machine_.storage; }

  Platform platform() override {
    return {machine_.systemServices(),
            {.desktop = session_.desktop,
             .asked = &session_.desktop,
             .driven = nullptr,
             .windows = session_.windows,
             .desktopNames = session_.desktopNames,
             .spacePlaces = session_.desktop,
             .events = session_.events,
             .displays = session_.displays,
             .workspace = session_.workspace,
             .workspaceNotifications = session_.workspaceNotifications,
             .defaultNotifications = session_.defaultNotifications,
             .screenCapture = session_.screenCapture,
             .globalHotKeys = session_.globalHotKeys,
             .pasteboard = session_.pasteboard,
             .appleScript = appleScript_,
             .desktopFacts = facts_,
             .desktopQueues = desktopQueues_},
            machine_.userServices(triggers_),
            machine_.waysIn()};
  }

 private:
  void connectionLost() {
    std::cerr << "tallowin: the X server has gone away\n";
    machine_.log.error("X11Session", "the X server has gone away");
    machine_.mainQueue.stop(exit_status::unavailable);
  }

  const CommandLine line_;
  Machine machine_;
  MainThreadWorkQueues desktopQueues_{machine_.mainQueue};  // one connection, one thread
  NeutralAppleScript appleScript_;
  // Only the resident program sees every change, and keeps them.
  KeptDesktopPlaces places_{machine_.storage,
                            AppPaths::supportDirectory(machine_.folders) / KeptDesktopPlaces::fileName,
                            line_.mode == Mode::resident};
  X11Session session_;
  MachineFacts facts_{session_.desktopFacts, machine_};
  AskedTriggers triggers_{{machine_.preferences, machine_.clock, machine_.log, &session_.panelActivations}};
};

}  // namespace

HostResult makeX11Host(const CommandLine& line, std::unique_ptr<InstanceLock> lock,
                       std::unique_ptr<X11Connection> connection) {
  return std::make_unique<X11Host>(line, std::move(lock), std::move(connection));
}

}  // namespace tallowin

#include "app/main/host.h"
#include "app/main/machine.h"
#include "platform/none/neutral.h"
#include "triggers/asked_triggers.h"

namespace tallowin {

namespace {

std::string whyThereIsNone(const CommandLine& line) {
  const auto fault = whyNoDesktop(line);
  return fault ? fault->message : "no platform was found or asked for";
}

class NoneHost : public Host {
 public:
  NoneHost(const CommandLine& line, std::unique_ptr<InstanceLock> lock)
      : line_(line), machine_(line, std::move(lock)) {}

  void begin() override { machine_.begin(); }

  Storage& storage() override { return machine_.storage; }

  Platform platform() override {
    return {machine_.systemServices(),
            {.desktop = desktop_,
             .asked = &desktop_,
             .driven = nullptr,
             .windows = windows_,
             .desktopNames = desktopNames_,
             .spacePlaces = spacePlaces_,
             .events = events_,
             .displays = displays_,
             .workspace = workspace_,
             .workspaceNotifications = notifications_,
             .defaultNotifications = notifications_,
             .screenCapture = screenCapture_,
             .globalHotKeys = globalHotKeys_,
             .pasteboard = pasteboard_,
             .appleScript = appleScript_,
             .desktopFacts = desktopFacts_,
             .desktopQueues = machine_.workQueues},
            machine_.userServices(triggers_),
            machine_.waysIn()};
  }

 private:
  const CommandLine line_;
  Machine machine_;
  NeutralPasteboard pasteboard_;
  NeutralDesktop desktop_;
  NeutralWindows windows_;
  NeutralDesktopNames desktopNames_;
  NeutralSpacePlaces spacePlaces_;
  NeutralEvents events_;
  NeutralDisplays displays_;
  NeutralWorkspace workspace_;
  NeutralGlobalHotKeys globalHotKeys_;
  NeutralAppleScript appleScript_;
  NoDesktopFacts noDesktop_{[this] { return whyThereIsNone(line_); }};
  MachineFacts desktopFacts_{noDesktop_, machine_};
  AskedTriggers triggers_{{machine_.preferences, machine_.clock, machine_.log, nullptr}};
  NeutralNotificationCenter notifications_;
  NeutralScreenCapture screenCapture_;
};

}  // namespace

HostResult makeNoneHost(const CommandLine& line, std::unique_ptr<InstanceLock> lock) {
  return std::make_unique<NoneHost>(line, std::move(lock));
}

}  // namespace tallowin

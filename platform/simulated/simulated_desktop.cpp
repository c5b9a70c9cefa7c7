#include "platform/simulated/simulated_desktop.h"

#include "base/app_paths.h"
#include "base/scrolling_direction.h"

namespace tallowin {

namespace {

/// Later systems take only swipes that carry the device's own report.
constexpr int lastSystemWithPlainSwipes = 26;

DockBehaviour dockBehaviour(const DesktopState& state) {
  DockBehaviour behaviour;
  behaviour.requiresAugmentedSwipes = state.systemVersion.major > lastSystemWithPlainSwipes;
  behaviour.naturalScrolling = [&state] {
    const auto found = state.globalPreferences.find(scrollingDirectionPreference);
    return isNaturalScrolling(found != state.globalPreferences.end() ? std::optional(found->second) : std::nullopt);
  };
  behaviour.screenLocked = [&state] { return state.screenLocked; };
  return behaviour;
}

std::function<CGRect(const std::string&)> boundsIn(const DesktopState& state) {
  return [&state](const std::string& identifier) {
    const auto* const display = state.displayNamed(identifier);
    return display != nullptr ? display->bounds : CGRect{};
  };
}

}  // namespace

SimulatedParts::SimulatedParts(const Scenario& scenario, MainQueue& mainQueue, SimulatedClock& simulatedClock,
                               Images& images, Journal& theJournal)
    : queue(mainQueue),
      clock(simulatedClock),
      journal(theJournal),
      state(scenario.desktop),
      machine(state, journal),
      files(queue, clock, journal),
      preferencesFile(files, scenario.preferences),
      spaces(state, scenario.dock, queue, journal),
      dock(spaces, state.hotKeys, queue, clock, machine, dockBehaviour(state)),
      missionControl(spaces, queue, boundsIn(state), scenario.missionControl),
      windows(state, queue, journal),
      asked(state, spaces, windows, queue, journal),
      dragging(state),
      events(clock, dock, missionControl, dragging, state, journal),
      windowList(state),
      workspace(state, queue, journal, workspaceNotifications),
      accessibility(state, missionControl, journal),
      screenCapture(state, images, journal),
      desktopNames(journal),
      commandChannel(journal),
      scriptEvents(journal),
      desktopService(journal),
      listeners(state, journal),
      alerts(journal),
      user(journal),
      globalHotKeys(state, journal),
      objectiveC(coreFoundation, !scenario.missingFunctions.contains(SimulatedObjectiveC::operationClass)),
      trackpads(state.trackpads, clock, journal),
      windowServer(state, journal, scenario.notificationFailures),
      loader({windowServer, coreFoundation, objectiveC, trackpads, queue,
              [this](std::string_view name) {
                journal.record("CoreDockSendNotification", {{"name", name}});
                missionControl.notify(name);
              }},
             scenario.missingFunctions) {
  placeFiles(scenario);
  connectParts();
  if (state.desktopsByPlace) {
    spaces.keepPlaces(storage, AppPaths::supportDirectory(simulatedFolders()) / KeptDesktopPlaces::fileName);
  }
}

std::filesystem::path SimulatedParts::spacesFile() {
  return simulatedFolders().home / "Library/Preferences/com.apple.spaces.plist";
}

void SimulatedParts::placeFiles(const Scenario& scenario) {
  const auto& folders = simulatedFolders();
  for (const auto& folder : {folders.home, folders.applicationSupport, folders.configuration, folders.cache,
                             folders.documents, folders.runtime}) {
    files.placeFolder(folder);
  }
  files.replace(spacesFile(), "");
  for (const auto& file : scenario.files) {
    if (file.missing) {
      files.take(file.path);
    } else {
      files.replace(file.path, file.bytes);
    }
    files.setUnwritable(file.path, file.unwritable);
  }
  if (scenario.diskFull) {
    files.setRoom(0);
  }
}

void SimulatedParts::connectParts() {
  if (state.isAsked) {
    spaces.onServerEvent = [this](WindowServerEvent event) { asked.spacesChanged(event); };
    workspace.onChange = [this] { windows.tellChanges(); };
  } else {
    spaces.onServerEvent = [this](WindowServerEvent event) {
      windowServer.notify(event);
      if (event == SimulatedSpaces::activeSpaceEvent) {
        workspaceNotifications.post({NotificationName::NSWorkspaceActiveSpaceDidChangeNotification, std::nullopt});
      }
    };
    spaces.onListChanged = [this] { files.replace(spacesFile(), ""); };
  }
  spaces.onArrival = [this](const std::string& display, ManagedSpaceID space) {
    dock.activeSpaceChanged(display);
    if (spaces.displayUnderPointer() == display) {
      dragging.carryTo(space);
    }
  };
}

void SimulatedParts::pressSymbolicHotKey(int hotKey) {
  if (const auto binding = state.hotKeys.binding(hotKey)) {
    sendKeyToDock(binding->keyCode, binding->modifierFlags);
  }
}

void SimulatedParts::pressKey(VirtualKeyCode keyCode, std::uint64_t modifierFlags) {
  if (!globalHotKeys.press(keyCode, modifierFlags) && !missionControl.keyDown(keyCode)) {
    sendKeyToDock(keyCode, modifierFlags);
  }
}

/// From the hardware to the Dock; no permission is needed for one's own keyboard.
void SimulatedParts::sendKeyToDock(VirtualKeyCode keyCode, std::uint64_t modifierFlags) {
  SimulatedEvent event;
  event.timestamp = clock.machAbsoluteTime();
  event.flags = modifierFlags;
  event.fields[SimulatedEvent::keyCodeField] = std::int64_t{keyCode};
  for (const auto type : {SimulatedEvent::keyDown, SimulatedEvent::keyUp}) {
    event.fields[SimulatedEvent::typeField] = type;
    dock.handle(event);
  }
}

void SimulatedParts::connectDisplay(const SimulatedDisplay& display) {
  spaces.connectDisplay(display);
  defaultNotifications.post({NotificationName::NSApplicationDidChangeScreenParametersNotification, std::nullopt});
}

void SimulatedParts::disconnectDisplay(DisplayID display) {
  if (spaces.disconnectDisplay(display)) {
    defaultNotifications.post({NotificationName::NSApplicationDidChangeScreenParametersNotification, std::nullopt});
  }
}

SimulatedDesktop::SimulatedDesktop(const Scenario& scenario, MainQueue& queue, SimulatedClock& clock, Images& images,
                                   Journal& journal)
    : scenario_(scenario), queue_(queue), journal_(journal), parts_(scenario, queue, clock, images, journal) {
  parts_.machine.onTerminate = [this](int status) {
    journal_.record("terminate", {{"status", status}});
    onQuit(status);
  };
}

void SimulatedDesktop::start() {
  for (const auto& entry : scenario_.script) {
    script_.push_back(queue_.after(entry.at, [this, &entry] {
      journal_.record("script", entry.journalled);
      entry.perform(*this);
      parts_.windows.tellChanges();
    }));
  }
}

void SimulatedDesktop::usePreferencesFile(const std::filesystem::path& path) {
  parts_.preferencesFile.use(path);
}

std::optional<PropertyList> SimulatedDesktop::globalPreference(std::string_view key) const {
  const auto& preferences = parts_.state.globalPreferences;
  const auto found = preferences.find(std::string(key));
  return found == preferences.end() ? std::nullopt : std::optional(found->second);
}

DesktopServices simulatedDesktopServices(SimulatedDesktop& simulated, Desktop& desktop, DrivenServices& driven,
                                         Windows& windows, WorkQueues& queues) {
  return {.desktop = desktop,
          .asked = simulated.asked(),
          .driven = simulated.asked() == nullptr ? &driven : nullptr,
          .windows = windows,
          .desktopNames = simulated.desktopNames(),
          .spacePlaces = simulated.spacePlaces(),
          .events = simulated.events(),
          .displays = simulated.displays(),
          .workspace = simulated.workspace(),
          .workspaceNotifications = simulated.workspaceNotifications(),
          .defaultNotifications = simulated.defaultNotifications(),
          .screenCapture = simulated.screenCapture(),
          .globalHotKeys = simulated.globalHotKeys(),
          .pasteboard = simulated.pasteboard(),
          .appleScript = simulated.appleScript(),
          .desktopFacts = simulated.desktopFacts(),
          .desktopQueues = queues};
}

UserServices simulatedUserServices(SimulatedDesktop& simulated) {
  return {simulated.toasts(), simulated.alerts(), simulated.presentation()};
}

Platform simulatedPlatform(SimulatedDesktop& simulated, Desktop& desktop, DrivenServices& driven, Windows& windows,
                           Preferences& preferences, Images& images, VirtualTime& time) {
  return {{.files = simulated.files(),
           .folders = simulated.folders(),
           .preferences = preferences,
           .processes = simulated.processes(),
           .system = simulated.system(),
           .images = images,
           .mainQueue = time,
           .workQueues = time,
           .runLoop = time,
           .clock = time,
           .log = simulated.log()},
          simulatedDesktopServices(simulated, desktop, driven, windows, time),
          simulatedUserServices(simulated),
          {.urlEvents = simulated.urlEvents(),
           .commandChannel = simulated.commandChannel(),
           .scriptEvents = simulated.scriptEvents(),
           .desktopService = simulated.desktopService(),
           .listeners = simulated.listeners()}};
}

}  // namespace tallowin

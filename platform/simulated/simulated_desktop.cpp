#include "platform/simulated/simulated_desktop.h"

#include "base/app_paths.h"

namespace tallowin {

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
      dock(spaces, state, queue, clock, machine),
      missionControl(spaces, state, queue, scenario.missionControl),
      requests(state, queue, journal),
      windows(state, requests, queue),
      asked(state, spaces, windows, requests),
      events(clock, dock, missionControl, state, journal),
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
      functions({state, queue, clock, coreFoundation, journal,
                 [this](std::string_view name) {
                   journal.record("CoreDockSendNotification", {{"name", name}});
                   missionControl.notify(name);
                 }},
                scenario.missingFunctions, scenario.notificationFailures),
      loader(scenario.missingFunctions) {
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
      functions.notify(event);
      if (event == SimulatedSpaces::activeSpaceEvent) {
        workspaceNotifications.post({NotificationName::NSWorkspaceActiveSpaceDidChangeNotification, std::nullopt});
      }
    };
    spaces.onListChanged = [this] { files.replace(spacesFile(), ""); };
  }
  spaces.onArrival = [this](const std::string& display, ManagedSpaceID space) {
    dock.activeSpaceChanged(display);
    if (spaces.displayUnderPointer() == display) {
      events.carryWindowTo(space);
    }
  };
}

void SimulatedParts::pressSymbolicHotKey(int hotKey) {
  const auto found = state.hotKeys.find(hotKey);
  if (found != state.hotKeys.end() && found->second.binding) {
    sendKeyToDock(found->second.binding->keyCode, found->second.binding->modifierFlags);
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
  auto& parts = simulated.parts();
  return {.desktop = desktop,
          .asked = simulated.asked(),
          .driven = simulated.asked() == nullptr ? &driven : nullptr,
          .windows = windows,
          .desktopNames = parts.desktopNames,
          .spacePlaces = parts.spaces,
          .events = parts.events,
          .displays = parts.machine,
          .workspace = parts.workspace,
          .workspaceNotifications = parts.workspaceNotifications,
          .defaultNotifications = parts.defaultNotifications,
          .screenCapture = parts.screenCapture,
          .globalHotKeys = parts.globalHotKeys,
          .pasteboard = parts.user,
          .appleScript = parts.machine,
          .desktopFacts = parts.machine,
          .desktopQueues = queues};
}

Platform simulatedPlatform(SimulatedDesktop& simulated, Desktop& desktop, DrivenServices& driven, Windows& windows,
                           Preferences& preferences, Images& images, VirtualTime& time) {
  auto& parts = simulated.parts();
  return {{.files = parts.files,
           .folders = simulated.folders(),
           .preferences = preferences,
           .processes = parts.machine,
           .system = parts.machine,
           .images = images,
           .mainQueue = time,
           .workQueues = time,
           .runLoop = time,
           .clock = time,
           .log = parts.machine},
          simulatedDesktopServices(simulated, desktop, driven, windows, time),
          {parts.user, parts.alerts, parts.user, parts.user},
          {.urlEvents = parts.urlEvents,
           .commandChannel = parts.commandChannel,
           .scriptEvents = parts.scriptEvents,
           .desktopService = parts.desktopService,
           .listeners = parts.listeners}};
}

}  // namespace tallowin

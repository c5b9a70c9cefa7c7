#include "platform/simulated/simulated_desktop.h"

#include "platform/simulated/simulated_folders.h"
#include "platform/simulated/simulated_parts.h"

namespace tallowin {

SimulatedDesktop::SimulatedDesktop(const Scenario& scenario, MainQueue& queue, SimulatedClock& clock, Images& images,
                                   Journal& journal)
    : scenario_(scenario),
      queue_(queue),
      journal_(journal),
      parts_(std::make_unique<SimulatedParts>(scenario, queue, clock, images, journal)) {
  parts_->system.onTerminate = [this](int status) {
    journal_.record("terminate", {{"status", status}});
    onQuit(status);
  };
}

SimulatedDesktop::~SimulatedDesktop() = default;

void SimulatedDesktop::start() {
  for (const auto& entry : scenario_.script) {
    script_.push_back(queue_.after(entry.at, [this, &entry] {
      journal_.record("script", entry.journalled);
      entry.perform(*this);
    }));
  }
}

void SimulatedDesktop::usePreferencesFile(const std::filesystem::path& path) {
  parts_->preferencesFile.use(path);
}

Accessibility& SimulatedDesktop::accessibility() {
  return parts_->accessibility;
}
Events& SimulatedDesktop::events() {
  return parts_->events;
}
Displays& SimulatedDesktop::displays() {
  return parts_->displays;
}
WindowList& SimulatedDesktop::windowList() {
  return parts_->windowList;
}
Workspace& SimulatedDesktop::workspace() {
  return parts_->workspace;
}
NotificationCenter& SimulatedDesktop::workspaceNotifications() {
  return parts_->workspaceNotifications;
}
NotificationCenter& SimulatedDesktop::defaultNotifications() {
  return parts_->defaultNotifications;
}
ScreenCapture& SimulatedDesktop::screenCapture() {
  return parts_->screenCapture;
}
System& SimulatedDesktop::system() {
  return parts_->system;
}
Log& SimulatedDesktop::log() {
  return parts_->log;
}
Processes& SimulatedDesktop::processes() {
  return parts_->processes;
}
AppleScript& SimulatedDesktop::appleScript() {
  return parts_->appleScript;
}
Toasts& SimulatedDesktop::toasts() {
  return parts_->toasts;
}
DesktopNames& SimulatedDesktop::desktopNames() {
  return parts_->desktopNames;
}
SpacePlaces& SimulatedDesktop::spacePlaces() {
  return parts_->spaces;
}
DesktopFacts& SimulatedDesktop::desktopFacts() {
  return parts_->desktopFacts;
}
Pasteboard& SimulatedDesktop::pasteboard() {
  return parts_->pasteboard;
}

Presentation SimulatedDesktop::presentation() {
  return parts_->presentation.services();
}

Alerts& SimulatedDesktop::alerts() {
  return parts_->alerts;
}
GlobalHotKeys& SimulatedDesktop::globalHotKeys() {
  return parts_->globalHotKeys;
}
URLEvents& SimulatedDesktop::urlEvents() {
  return parts_->urlEvents;
}

CommandChannel& SimulatedDesktop::commandChannel() {
  return parts_->commandChannel;
}
ScriptEvents& SimulatedDesktop::scriptEvents() {
  return parts_->scriptEvents;
}
DesktopService& SimulatedDesktop::desktopService() {
  return parts_->desktopService;
}
TCPListeners& SimulatedDesktop::listeners() {
  return parts_->listeners;
}
Files& SimulatedDesktop::files() {
  return parts_->files;
}
Storage& SimulatedDesktop::storage() {
  return parts_->storage;
}
DynamicLoader& SimulatedDesktop::loader() {
  return parts_->loader;
}
CoreFoundation& SimulatedDesktop::coreFoundation() {
  return parts_->coreFoundation;
}

const Folders& SimulatedDesktop::folders() const {
  return simulatedFolders();
}

std::optional<PropertyList> SimulatedDesktop::globalPreference(std::string_view key) const {
  const auto& preferences = parts_->state.globalPreferences;
  const auto found = preferences.find(std::string(key));
  return found == preferences.end() ? std::nullopt : std::optional(found->second);
}

}  // namespace tallowin

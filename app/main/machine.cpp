#include "app/main/machine.h"

#include <fstream>
#include <iterator>

#include "base/standard_folders.h"
#include "platform/channel/socket_command_channel.h"
#include "platform/none/neutral.h"
#include "platform/xdg/xdg_environment.h"

namespace tallowin {

namespace {

// Linux desktops keep no preferences for all programs under the names that are asked for here.
std::optional<PropertyList> noGlobalPreference(std::string_view /*key*/) {
  return std::nullopt;
}

}  // namespace

Folders machineFolders(const std::optional<std::filesystem::path>& home) {
  if (home) {
    std::error_code error;
    const auto absolute = std::filesystem::absolute(*home, error);
    return foldersBelow(error ? *home : absolute);
  }
  auto folders = standardFolders(processXdgEnvironment().home, processVariable);
  std::ifstream userFolders(folders.configuration / "user-dirs.dirs");
  const std::string text(std::istreambuf_iterator<char>(userFolders), {});
  folders.documents = documentsFolder(text, folders.home).value_or(folders.documents);
  return folders;
}

Machine::Machine(const CommandLine& line, std::unique_ptr<InstanceLock> lock, std::string display)
    : log(line.verbose),
      images(log, line.mode == Mode::capture),
      folders(machineFolders(line.home)),
      preferences(storage, files, mainQueue, preferencesFile(folders), noGlobalPreference),
      channel_(std::make_unique<NeutralCommandChannel>()) {
  if (lock) {
    auto channel = SocketCommandChannel::open({mainQueue, mainQueue, log, {TALLOWIN_VERSION, std::move(display)}},
                                              std::move(lock));
    if (channel) {
      channel_ = *std::move(channel);
    } else {
      log.error("Machine", "no other program can reach this one: " + channel.error());
    }
  }
}

Toasts& Machine::toasts(Mode mode) {
  if (mode == Mode::resident) {
    return notifications;
  }
  return logToasts;
}

Alerts& Machine::alerts(Mode mode) {
  if (mode == Mode::resident) {
    return pendingAlerts;
  }
  return neutralAlerts;
}

DesktopService& Machine::desktopService(Mode mode) {
  if (mode == Mode::resident) {
    return lazyDesktopService;
  }
  return neutralDesktopService;
}

SystemServices Machine::systemServices() {
  return {files, folders, preferences, processes, system, images, mainQueue, workQueues, mainQueue, clock, log};
}

UserServices Machine::userServices(Mode mode, Presentation presentation) {
  return {toasts(mode), alerts(mode), presentation};
}

WaysIn Machine::waysIn(Mode mode) {
  return {urlEvents, commandChannel(), scriptEvents, desktopService(mode), listeners};
}

void Machine::stopOnSignals() {
  signals_ = onTerminationSignal(mainQueue, [this](int signal) {
    constexpr int signalled = 128;  // as shells report it
    mainQueue.stop(signalled + signal);
    signals_.cancel();
  });
}

}  // namespace tallowin

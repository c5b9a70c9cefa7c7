#include "app/main/machine.h"

#include <fstream>
#include <iterator>

#include "app/main/host.h"
#include "base/app_paths.h"
#include "platform/channel/socket_command_channel.h"
#include "platform/xdg/xdg_environment.h"

namespace tallowin {

namespace {

// Linux desktops keep no preferences for all programs under the names that are asked for here.
std::optional<PropertyList> noGlobalPreference(std::string_view /*key*/) {
  return std::nullopt;
}

SetUpCheck busCheck(const BusFacts& bus) {
  if (!bus.answers) {
    return {"D-Bus", false, "There is no message bus of yours, so no calls by other programs, and no notifications.",
            "Install dbus-user-session, or start the desktop by dbus-run-session."};
  }
  return {"D-Bus", true,
          bus.hasProgram ? "Other programs reach Tallowin on the message bus." : "The message bus answers."};
}

SetUpCheck notificationsCheck(const BusFacts& bus) {
  if (!bus.hasNotifications) {
    return {"Notifications", false, "Nothing shows notifications here; messages go to the log only.",
            "Start a notification service, such as dunst."};
  }
  return {"Notifications", true, "Messages and questions are shown as notifications."};
}

/// The program that shows windows, which stands beside this one, on an X server; nothing where there is to be none.
std::optional<ProcessRequest> uiProgram(const CommandLine& line, const std::string& display) {
  std::error_code error;
  const auto self = std::filesystem::read_symlink("/proc/self/exe", error);
  if (line.mode != Mode::resident || line.noUi || display.empty() || error) {
    return std::nullopt;
  }
  ProcessRequest request{(self.parent_path() / TALLOWIN_UI_PROGRAM).string(), {}, {}, {}};
  if (line.home) {
    request.arguments = {"--home", std::filesystem::absolute(*line.home, error).string()};
  }
  return request;
}

SetUpCheck autostartCheck() {
  if (const auto place = autostartPlace(processAutostartFolders())) {
    return {"Autostart", true,
            "Desktops that start programs when you log in start Tallowin, by " + place->string() + "."};
  }
  return {
      "Autostart", true, "Nothing starts Tallowin when you log in, unless your window manager does.",
      "To have it started, write \"exec tallowin\", or what it calls that, into your window manager's configuration."};
}

}  // namespace

std::vector<SetUpCheck> MachineFacts::checks() {
  auto checks = desktop_.checks();
  const auto* const module = loadDBusModule();
  const auto bus = module != nullptr ? module->busFacts() : BusFacts();
  checks.push_back(busCheck(bus));
  const auto windows = machine_.windowsCheck();
  if (windows) {
    checks.push_back(*windows);
  }
  if (bus.answers && !machine_.showsWindows()) {
    checks.push_back(notificationsCheck(bus));
  }
  checks.push_back(autostartCheck());
  return checks;
}

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
      mode_(line.mode),
      isWindowless_(line.noUi),
      ui_({preferences, mainQueue, clock, log, children, dbus_, dbus_, uiProgram(line, display), TALLOWIN_VERSION}),
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

SystemServices Machine::systemServices() {
  return {files, folders, preferences, processes, system, images, mainQueue, workQueues, mainQueue, clock, log};
}

UserServices Machine::userServices(Triggers& triggers) {
  if (mode_ == Mode::resident) {
    return {ui_, pendingAlerts_, ui_, triggers};
  }
  return {logToasts_, neutralAlerts_, windowless_, triggers};
}

WaysIn Machine::waysIn() {
  return {urlEvents_, *channel_, scriptEvents_, desktopService(), listeners};
}

DesktopService& Machine::desktopService() {
  if (mode_ == Mode::resident) {
    return dbus_;
  }
  return neutralDesktopService_;
}

std::optional<SetUpCheck> Machine::windowsCheck() const {
  if (mode_ != Mode::resident) {
    return std::nullopt;
  }
  if (showsWindows()) {
    return SetUpCheck{"Windows", true, "The pop-up, the menu in the panel, messages and questions have windows."};
  }
  if (isWindowless_) {
    return SetUpCheck{"Windows", true, "Tallowin was started without windows (--no-ui)."};
  }
  return SetUpCheck{
      "Windows", false, "Tallowin shows no windows; messages and questions are notifications.",
      "Install tallowin-ui, which the running Tallowin starts; called in a terminal it tells why it ends."};
}

void Machine::begin() {
  if (!runsLoop(mode_)) {
    return;
  }
  signals_ = onTerminationSignal(mainQueue, [this](int signal) {
    constexpr int signalled = 128;  // as shells report it
    mainQueue.stop(signalled + signal);
    signals_.cancel();
  });
}

}  // namespace tallowin

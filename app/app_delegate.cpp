#include "app/app_delegate.h"

#include "app/exit_status.h"

namespace tallowin {

namespace {

constexpr auto category = "AppDelegate";

/// Until windows are known there are no applications on a Space.
std::vector<std::string> noApplications(const Space& /*space*/) {
  return {};
}

}  // namespace

AppDelegate::AppDelegate(const Platform& platform, const Settings& settings, const SpaceProvider& provider,
                         std::ostream& error)
    : platform_(platform),
      error_(error),
      paths_(platform.files, platform.folders),
      store_({platform.files, platform.images, platform.workspace, platform.mainQueue, platform.workQueues,
              platform.clock, platform.log, settings, paths_},
             paths_.supportDirectory() / "spaces.json"),
      switcher_({platform.windowServer, platform.accessibility, platform.events, platform.displays,
                 platform.preferences, platform.system, platform.mainQueue, platform.clock, settings, platform.log}),
      watcher_({provider, platform.windowServer, platform.workspaceNotifications, platform.defaultNotifications,
                platform.files, platform.folders, platform.mainQueue, platform.log}),
      nameMirror_({watcher_, store_, platform.windowServer, platform.desktopNames, platform.mainQueue}),
      performer_({watcher_, store_, history_, switcher_, settings, platform.toasts, platform.clock,
                  // Until windows are known no Space counts as empty.
                  [](const Space&) { return false; }}),
      feed_({platform.clock, watcher_, store_, platform.mainQueue, noApplications}),
      requests_({platform.clock, watcher_, store_, feed_, platform.runLoop, noApplications,
                 [this](const std::string& url) { return handleURLEvent(url); }}) {}

AppDelegate::~AppDelegate() {
  platform_.urlEvents.setHandler(nullptr);
  platform_.commandChannel.setHandler(nullptr);
}

void AppDelegate::applicationDidFinishLaunching() {
  const auto health = platform_.windowServer.CGSBridgeProbe();
  platform_.log.info(category, "bridge health: " + std::to_string(health.bits()));
  if (!health.healthy()) {
    error_ << "tallowin: there are no desktops to watch here yet; --platform simulated makes some up\n";
  }
  watcher_.onSnapshot = [this](const SpaceSnapshot& snapshot) { snapshotChanged(snapshot); };
  watcher_.onActiveSpaceChange = [this](const std::optional<Space>&, const Space& to) { activeSpaceChanged(to); };
  platform_.urlEvents.setHandler([this](const std::string& text) { static_cast<void>(handleURLEvent(text)); });
  watcher_.start();
  platform_.commandChannel.setHandler(
      [this](const Request& request, std::unique_ptr<Caller> caller) { requests_.handle(request, std::move(caller)); });
}

void AppDelegate::snapshotChanged(const SpaceSnapshot& snapshot) {
  switcher_.observe(snapshot);
  const auto spaces = snapshot.allSpaces();
  store_.noteFullscreenKeys(spaces);
  store_.adoptFullscreenMemory(spaces);
  std::set<std::string> ids;
  for (const auto& space : spaces) {
    ids.insert(space.id);
  }
  store_.prune(ids);
  feed_.refresh();
}

void AppDelegate::activeSpaceChanged(const Space& to) {
  history_.visit(to);
  platform_.log.info(category, "active Space: " + store_.displayName(to));
}

void AppDelegate::perform(const SpaceCommand& command) {
  // A switch is a number of steps from the active Space, which may have changed less than a debounce ago.
  watcher_.refresh();
  performer_.perform(command);
}

std::optional<URLFault> AppDelegate::handleURLEvent(const std::string& text) {
  const auto command = commandFromText(text);
  if (command) {
    perform(*command);
    return std::nullopt;
  }
  const auto& [kind, message] = command.error();
  if (kind == URLFault::Kind::doubledKey) {
    error_ << "tallowin: " << message << std::endl;
    platform_.log.error(category, message);
    platform_.system.terminate(exit_status::badData);
  } else if (kind == URLFault::Kind::unknown) {
    platform_.toasts.show({message, std::nullopt, true});
  }
  return command.error();
}

}  // namespace tallowin

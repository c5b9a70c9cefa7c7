#include "app/app_delegate.h"

#include "app/exit_status.h"
#include "commands/command_url.h"

namespace tallowin {

namespace {

constexpr auto category = "AppDelegate";

}  // namespace

AppDelegate::AppDelegate(const Platform& platform, const Settings& settings, const SpaceProvider& provider,
                         std::ostream& error)
    : platform_(platform),
      error_(error),
      paths_(platform.files, platform.folders),
      store_({platform.files, platform.images, platform.workspace, platform.mainQueue, platform.clock, platform.log,
              settings, paths_},
             paths_.supportDirectory() / "spaces.json"),
      switcher_({platform.windowServer, platform.accessibility, platform.events, platform.displays,
                 platform.preferences, platform.system, platform.mainQueue, platform.clock, settings, platform.log}),
      watcher_({provider, platform.windowServer, platform.workspaceNotifications, platform.defaultNotifications,
                platform.files, platform.folders, platform.mainQueue, platform.log}),
      performer_({watcher_, store_, history_, switcher_, settings, platform.toasts,
                  // Until windows are known no Space counts as empty.
                  [](const Space&) { return false; }}) {}

AppDelegate::~AppDelegate() {
  platform_.urlEvents.setHandler(nullptr);
}

void AppDelegate::applicationDidFinishLaunching() {
  const auto health = platform_.windowServer.CGSBridgeProbe();
  platform_.log.info(category, "bridge health: " + std::to_string(health.bits()));
  if (!health.healthy()) {
    error_ << "tallowin: there are no desktops to watch here yet; --platform simulated makes some up\n";
  }
  watcher_.onSnapshot = [this](const SpaceSnapshot& snapshot) { snapshotChanged(snapshot); };
  watcher_.onActiveSpaceChange = [this](const std::optional<Space>&, const Space& to) { activeSpaceChanged(to); };
  platform_.urlEvents.setHandler([this](const std::string& text) { handleURLEvent(text); });
  watcher_.start();
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
}

void AppDelegate::activeSpaceChanged(const Space& to) {
  history_.visit(to);
  platform_.log.info(category, "active Space: " + store_.displayName(to));
}

void AppDelegate::handleURLEvent(const std::string& text) {
  const auto url = URL::parse(text);
  if (!url) {
    return;
  }
  const auto command = commandFromURL(*url);
  if (!command) {
    error_ << "tallowin: " << command.error().message() << std::endl;
    platform_.log.error(category, command.error().message());
    platform_.system.terminate(exit_status::badData);
  } else if (*command) {
    perform(**command);
  } else {
    platform_.toasts.show({"Tallowin does not understand " + url->host.value_or(text), std::nullopt, true});
  }
}

}  // namespace tallowin

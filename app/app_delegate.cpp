#include "app/app_delegate.h"

#include "app/exit_status.h"

namespace tallowin {

namespace {

constexpr auto category = "AppDelegate";

/// A change of the active Space sooner than this after a switch that this program started is its own doing.
constexpr auto switchTime = std::chrono::seconds(1);

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
      browserTabs_(platform.workspace, platform.appleScript),
      windows_({platform_, settings, paths_, store_, switcher_, browserTabs_.reader(),
                [this] { return watcher_.snapshot().get(); },
                [this] {
                  watcher_.refresh();
                  return watcher_.snapshot().get();
                },
                [this](const Space& space) { switchTo(space); }}),
      records_({platform_, settings, paths_, store_, watcher_, windows_.contents, windows_.management}),
      automation_(
          {store_, platform.workspace, platform.processes, platform.events, platform.system, platform.mainQueue,
           platform.folders, settings, platform.log},
          [this](const Space& space) { return windows_.isEmpty(space); },
          [this](const Space& space) { return windows_.appsOn(space); }),
      noteFiles_(platform.files, platform.workspace, platform.folders),
      windowCommands_({windows_, watcher_, store_, switcher_, platform.workspace, settings, platform.toasts}),
      performer_({watcher_, store_, history_, switcher_, settings, platform.toasts, windowCommands_, records_,
                  noteFiles_, [this](const Space& space) { return windows_.isEmpty(space); },
                  [this](const Space& space) { switchTo(space); }}),
      feed_({platform.clock, watcher_, store_, platform.mainQueue, appNames(windows_.contents)}),
      spaceRequests_({platform.clock, watcher_, store_, feed_, platform.runLoop, platform.alerts,
                      appNames(windows_.contents), [this](const std::string& url) { return handleURLEvent(url); }}),
      windowRequests_({windows_, watcher_, store_, platform.workspace, settings}),
      recordRequests_({records_, watcher_, store_, settings, platform.files}),
      editRequests_({watcher_, store_, automation_, platform.files, platform.images, appNames(windows_.contents)}),
      requests_(answers()) {
  switcher_.willSwitch = [this](const SpaceSnapshot& snapshot) { willSwitch(snapshot); };
}

AppDelegate::~AppDelegate() {
  records_.tracker.flush();
  platform_.urlEvents.setHandler(nullptr);
  platform_.commandChannel.setHandler(nullptr);
}

void AppDelegate::applicationDidFinishLaunching() {
  const auto health = platform_.windowServer.CGSBridgeProbe();
  platform_.log.info(category, "bridge health: " + std::to_string(health.bits()));
  if (!health.healthy()) {
    error_ << "tallowin: there are no desktops to watch here yet; --platform simulated makes some up\n";
  }
  windows_.contents.start();
  windows_.layouts.startAutoSave([this] { return watcher_.snapshot().get(); });
  windows_.restartOffer.start();
  windows_.spaceLock.start();
  watcher_.onSnapshot = [this](const SpaceSnapshot& snapshot) { snapshotChanged(snapshot); };
  watcher_.onActiveSpaceChange = [this](const std::optional<Space>& from, const Space& to) {
    activeSpaceChanged(from, to);
  };
  platform_.urlEvents.setHandler([this](const std::string& text) { static_cast<void>(handleURLEvent(text)); });
  watcher_.start();
  windows_.displaySets.start();
  observeChanges();
  platform_.commandChannel.setHandler(
      [this](const Request& request, std::unique_ptr<Caller> caller) { requests_.handle(request, std::move(caller)); });
}

void AppDelegate::observeChanges() {
  observers_.push_back(platform_.preferences.observe([this] { records_.stateExporter.schedule(); }));
  const auto observe = [this](NotificationName name, const std::function<void()>& work) {
    observers_.push_back(platform_.workspaceNotifications.addObserver(name, [work](const Notification&) { work(); }));
  };
  observe(NotificationName::NSWorkspaceScreensDidSleepNotification, [this] { records_.tracker.screensDidSleep(); });
  observe(NotificationName::NSWorkspaceScreensDidWakeNotification,
          [this] { records_.tracker.screensDidWake(watcher_.snapshot().get()); });
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
  records_.automaticProfile.look(snapshot);
  windows_.displaySets.look();
  feed_.refresh();
}

void AppDelegate::activeSpaceChanged(const std::optional<Space>& from, const Space& to) {
  const bool ours = initiatedByUs();
  if (windows_.spaceLock.spaceChanged(from, to, ours)) {
    return;
  }
  if (from && !ours) {
    windows_.focusMemory.leaving(*from);
  }
  windows_.focusMemory.entered(to, windows_.contents);
  history_.visit(to);
  records_.tracker.spaceChanged(to);
  automation_.spaceChanged(from, to);
  platform_.log.info(category, "active Space: " + store_.displayName(to));
}

bool AppDelegate::initiatedByUs() const {
  return lastSwitch_ && platform_.clock.now() - *lastSwitch_ < switchTime;
}

void AppDelegate::switchTo(const Space& space) {
  if (switcher_.switchTo(space, watcher_.snapshot().get())) {
    lastSwitch_ = platform_.clock.now();
  }
}

/// Windows that are carried along take the user to another Space as well.
void AppDelegate::willSwitch(const SpaceSnapshot& snapshot) {
  lastSwitch_ = platform_.clock.now();
  if (const auto active = snapshot.activeSpace()) {
    windows_.focusMemory.leaving(*active);
  }
}

RequestTable AppDelegate::answers() {
  RequestTable table;
  spaceRequests_.addTo(table);
  windowRequests_.addTo(table);
  recordRequests_.addTo(table);
  editRequests_.addTo(table);
  return table;
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

#include "app/app_delegate.h"

#include <algorithm>
#include <iomanip>
#include <sstream>

#include "app/doctor.h"
#include "app/program.h"
#include "base/unicode.h"
#include "commands/outcome.h"
#include "presentation/link/messages.h"
#include "presentation/presentation.h"
#include "triggers/triggers.h"

namespace tallowin {

namespace {

constexpr auto appDelegateCategory = "AppDelegate";

/// A change of the active Space sooner than this after a switch that this program started is its own doing.
constexpr auto switchTime = std::chrono::seconds(1);

constexpr Duration settingsWindowDelay = std::chrono::milliseconds(500);
constexpr Duration onboardingDelay = std::chrono::milliseconds(1500);

/// Whether what is asked for tells the user itself why nothing was done.
bool tellsTheUser(const std::vector<std::string>& arguments) {
  const auto words = readRequestWords(arguments);
  return words && (words->kind == RequestKind::url || words->kind == RequestKind::command ||
                   words->kind == RequestKind::mark || words->kind == RequestKind::jump);
}

/// Whoever presses a key or chooses from a menu, who sees why nothing was done, and nothing else.
class PressingUser : public Caller {
 public:
  PressingUser(Toasts& toasts, bool isTold) : toasts_(toasts), isTold_(isTold) {}

  bool out(std::string_view /*text*/) override { return true; }
  bool err(std::string_view text) override {
    reason_ += text;
    return true;
  }
  void exit(int status) override {
    constexpr std::string_view prefix = "tallowin: ";
    if (status != exit_status::success && !isTold_) {
      const auto reason = reason_.starts_with(prefix) ? reason_.substr(prefix.size()) : reason_;
      toasts_.show({std::string(trimmed(reason)), std::nullopt, true});
    }
  }
  void exitAtEnd(int status) override { exit(status); }

 private:
  Toasts& toasts_;
  const bool isTold_;
  std::string reason_;
};

}  // namespace

AppDelegate::AppDelegate(const Platform& platform, Storage& storage, const Settings& settings,
                         const SpaceProvider& provider, const LaunchOptions& options, std::ostream& error)
    : platform_(platform),
      storage_(storage),
      settings_(settings),
      options_(options),
      error_(error),
      paths_(platform.files, platform.folders),
      store_({platform.files, platform.images, platform.workspace, platform.log, settings, paths_}, storage,
             paths_.supportDirectory() / "spaces.json"),
      switcher_({platform, settings}),
      watcher_({provider, platform.desktop, platform.desktopKind(), platform.workspaceNotifications,
                platform.defaultNotifications, platform.files, platform.folders, settings, platform.mainQueue,
                platform.log}),
      services_{platform, storage, settings, paths_, store_, watcher_, programVersion()},
      changes_(services_),
      nameMirror_(services_, changes_),
      windows_(services_, switcher_, [this](const Space& space) { performer_.switchTo(space); }),
      automaticNames_(services_, windows_.contents),
      records_(services_, changes_, windows_.contents, windows_.management),
      automation_(
          services_, [this](const Space& space) { return windows_.isEmpty(space); },
          [this](const Space& space) { return windows_.appsOn(space); }),
      noteFiles_(services_),
      naming_(services_),
      newSpaces_(services_, naming_, [this] { return records_.templateCommands.isAddingDesktops(); }),
      thumbnails_(platform_, paths_),
      previews_(services_, thumbnails_),
      pipeline_({services_, windows_, history_, records_.tracker, automation_, previews_,
                 [this] { return initiatedByUs(); }}),
      underWay_(watcher_, platform.mainQueue),
      windowCommands_(services_, switcher_, windows_),
      performer_({services_, history_, switcher_, windowCommands_, records_, noteFiles_, naming_, underWay_,
                  [this](const Space& space) { return windows_.isEmpty(space); },
                  [this](const Space& space) { return switchTo(space); }}),
      feed_(services_, changes_, appNames(windows_.contents)),
      statusItem_(services_, changes_),
      shortcuts_(services_, platform.presentation.hasOverview()),
      answers_(answers()),
      desktopObject_(
          services_, changes_, underWay_, scripting_, [this](const std::string& url) { return handleURLEvent(url); },
          [this](const Request& request, std::unique_ptr<Caller> caller) {
            handleRequest(answers_, underWay_, request, std::move(caller));
          }),
      localAPI_(platform_, paths_, settings, options.port) {
  localAPI_.onCommand = [this](const SpaceCommand& command) { perform(command); };
  localAPI_.onDoubledKey = [this](const DoubledQueryKey& mistake) { endOn(mistake.message()); };
  switcher_.willSwitch = [this](const SpaceSnapshot& snapshot) { willSwitch(snapshot); };
  records_.shortcutFailures = [this] { return shortcuts_.failures(); };
  automaticNames_.onChange = [this] { changes_.tell(); };
  // The profile chosen for the displays comes into use before windows go back to where they were with them.
  windows_.reconnect.onChange = [this] { records_.profiles.displaysChanged(); };
  windows_.contents.onNewWindows = [this](const std::vector<WindowInfo>& windows) {
    windows_.appRules.apply(windows, watcher_.latest());
    pipeline_.updateSpaceDock();
  };
}

AppDelegate::~AppDelegate() {
  records_.tracker.flush();
  platform_.scriptEvents.setHandlers({});
  platform_.urlEvents.setHandler(nullptr);
  platform_.commandChannel.setHandler(nullptr);
  static_cast<void>(storage_.saveNow());
}

void AppDelegate::applicationDidFinishLaunching() {
  openSettingsIfAsked();
  presentDegradedAlert();
  windows_.contents.start();
  wireScripting();
  startSettingsServices();
  wireTriggers();
  windows_.spaceLock.start();
  startWatching();
  noteFirstSpace();
  observeChanges();
  previews_.startRefreshTimer();
  beginPresentation();
  onboarding_ = platform_.mainQueue.after(onboardingDelay, [this] { runOnboardingIfNeeded(); });
  platform_.commandChannel.setHandler([this](const Request& request, std::unique_ptr<Caller> caller) {
    platform_.preferences.synchronize();  // whoever has just changed a setting waits for the answer to know it used
    handleRequest(answers_, underWay_, request, std::move(caller));
  });
}

void AppDelegate::openSettingsIfAsked() {
  if (options_.settingsTab) {
    settingsWindow_ = platform_.mainQueue.after(settingsWindowDelay, [this] {
      std::ignore = platform_.presentation.showSettings(options_.settingsTab, std::nullopt);
    });
  }
}

void AppDelegate::presentDegradedAlert() {
  const auto health = platform_.desktop.health();
  platform_.log.info(appDelegateCategory, "bridge health: " + std::to_string(health.bits()));
  if (!health.healthy()) {
    error_ << "tallowin: there are no desktops to watch here yet; --platform simulated makes some up\n";
    platform_.alerts.show({"Tallowin cannot see your Spaces",
                           "What it needs of the desktop is missing. Names, notes and settings are kept, but nothing "
                           "can be switched. \"tallowin --probe\" tells what is missing.",
                           {"OK"}},
                          [](std::optional<std::size_t> /*button*/) {});
  }
}

void AppDelegate::wireScripting() {
  scripting_.handler = [this](const SpaceCommand& command) { perform(command); };
  scripting_.currentName = [this] {
    const auto space = watcher_.latest().activeSpace();
    return space ? store_.displayName(*space) : "";
  };
  scripting_.currentNumber = [this] {
    const auto space = watcher_.latest().activeSpace();
    return space ? space->desktopNumber.value_or(0) : 0;
  };
  scripting_.allNames = [this] {
    std::vector<std::string> names;
    for (const auto& space : watcher_.latest().allSpaces()) {
      names.push_back(store_.displayName(space));
    }
    return names;
  };
  platform_.scriptEvents.setHandlers(
      {[this](const ScriptCommandEvent& event) { return performScriptCommand(event, scripting_); },
       [this](const IntentEvent& event) { return performIntent(event, scripting_); },
       [this](const std::string& phrase) { return performPhrase(phrase, scripting_); }});
  desktopObject_.offer();
}

void AppDelegate::startSettingsServices() {
  platform_.urlEvents.setHandler([this](const std::string& text) { static_cast<void>(handleURLEvent(text)); });
  localAPI_.refresh();
  windows_.layouts.startAutoSave();
  windows_.restartOffer.start();
}

void AppDelegate::wireTriggers() {
  shortcuts_.onPressed = [this](const std::string& action) { shortcutPressed(action); };
  shortcuts_.refresh();
  platform_.triggers.setOverviewHandler([this] { perform(command::Overview()); });
  platform_.triggers.refresh();
  platform_.triggers.setBounceBack([this](const std::string& spaceID) { bounceBack(spaceID); });
}

void AppDelegate::startWatching() {
  watcher_.onSnapshot = [this](const SpaceSnapshot& snapshot) { snapshotChanged(snapshot); };
  watcher_.onActiveSpaceChange = [this](const std::optional<Space>& from, const Space& to) {
    pipeline_.activeSpaceChanged(from, to);
  };
  if ((platform_.desktop.health().bits() & CGSBridgeHealth::connection) != 0) {
    underWay_.awaitFirstSnapshot();
  }
  watcher_.start();
  windows_.reconnect.start();
}

void AppDelegate::noteFirstSpace() {
  if (const auto active = watcher_.latest().activeSpace()) {
    history_.visit(*active);
    records_.tracker.flush();
    platform_.triggers.refreshDockGuard(active->id);
  }
}

void AppDelegate::observeChanges() {
  observers_.add(platform_.preferences.observe([this] { settingsChanged(); }));
  const auto observe = [this](NotificationName name, const std::function<void()>& work) {
    observers_.add(platform_.workspaceNotifications.addObserver(name, [work](const Notification&) { work(); }));
  };
  observe(NotificationName::NSWorkspaceScreensDidSleepNotification, [this] {
    records_.tracker.screensDidSleep();
    previews_.screensDidSleep();
  });
  observe(NotificationName::NSWorkspaceScreensDidWakeNotification, [this] {
    records_.tracker.screensDidWake(watcher_.latest());
    previews_.screensDidWake();
  });
}

void AppDelegate::beginPresentation() {
  statusItem_.refresh();
  platform_.presentation.begin({[this] { return menuNow(services_, history_, windows_, records_); },
                                [this](const std::vector<std::string>& words) { performForUser(words); }});
}

void AppDelegate::settingsChanged() {
  shortcuts_.refresh();
  statusItem_.refresh();
  platform_.triggers.refresh();
  if (const auto active = watcher_.latest().activeSpace()) {
    platform_.triggers.refreshDockGuard(active->id);
  }
  localAPI_.refresh();
  automaticNames_.lookSoon();
  previews_.startRefreshTimer();
  records_.stateExporter.schedule();
}

void AppDelegate::runOnboardingIfNeeded() {
  if (!settings_.get(setting::didShowOnboarding) && platform_.presentation.welcome()) {
    settings_.set(setting::didShowOnboarding, true);
  }
}

void AppDelegate::snapshotChanged(const SpaceSnapshot& snapshot) {
  switcher_.observe(snapshot);
  windows_.mover.spacesChanged(snapshot);
  windows_.contents.spacesChanged();
  const auto spaces = snapshot.allSpaces();
  store_.noteFullscreenKeys(spaces);
  store_.adoptFullscreenMemory(spaces);
  std::set<std::string> ids;
  for (const auto& space : spaces) {
    ids.insert(space.id);
  }
  store_.prune(ids);
  newSpaces_.look(snapshot);
  windows_.reconnect.look();
  feed_.refresh();
}

bool AppDelegate::initiatedByUs() const {
  return lastSwitch_ && std::chrono::nanoseconds(platform_.clock.machAbsoluteTime() - *lastSwitch_) < switchTime;
}

bool AppDelegate::switchTo(const Space& space) {
  const bool posted = switcher_.switchTo(space, watcher_.latest());
  if (posted) {
    lastSwitch_ = platform_.clock.machAbsoluteTime();
  }
  return posted;
}

/// A word with blanks stands in quotation marks.
void AppDelegate::shortcutPressed(const std::string& action) {
  std::vector<std::string> words;
  std::istringstream text(action);
  for (std::string word; text >> std::quoted(word);) {
    words.push_back(word);
  }
  performForUser(words);
}

void AppDelegate::performForUser(const std::vector<std::string>& words) {
  handleRequest(answers_, underWay_, {words, platform_.folders.home.string()},
                std::make_unique<PressingUser>(platform_.toasts, tellsTheUser(words)));
}

void AppDelegate::bounceBack(const std::string& spaceID) {
  const auto spaces = watcher_.latest().allSpaces();
  if (const auto space = std::ranges::find(spaces, spaceID, &Space::id); space != spaces.end()) {
    switchTo(*space);
  }
}

/// Windows that are carried along take the user to another Space as well.
void AppDelegate::willSwitch(const SpaceSnapshot& snapshot) {
  lastSwitch_ = platform_.clock.machAbsoluteTime();
  if (const auto active = snapshot.activeSpace()) {
    windows_.focusMemory.leaving(*active);
  }
}

RequestTable AppDelegate::answers() {
  RequestTable table;
  addCommandRequests(table, services_, performer_, underWay_,
                     [this](const std::string& url) { return handleURLEvent(url); });
  addSpaceRequests(table, services_, feed_, appNames(windows_.contents));
  addWindowRequests(table, services_, windows_);
  addRecordRequests(table, services_, records_, [this](const SpaceCommand& command, OutcomeHandler done) {
    performer_.perform(command, {}, std::move(done));
  });
  addEditRequests(table, services_, automation_, appNames(windows_.contents));
  addShortcutRequests(table, shortcuts_);
  addShownRequests(table);
  table[RequestKind::doctor] = [this](const RequestJob& job) {
    answerDoctor(job, reportOfInstance(setUpChecks(platform_, storage_), settings_, localAPI_.openPort()));
  };
  return table;
}

void AppDelegate::addShownRequests(RequestTable& table) {
  table[RequestKind::menu] = [this](const RequestJob& job) {
    const auto menu = menuNow(services_, history_, windows_, records_);
    job.print(job.words.json() ? ui::encodeMenu(menu) + "\n" : menuText(menu));
  };
  table[RequestKind::ui] = [this](const RequestJob& job) {
    platform_.presentation.hear(job.words.operands, job.caller);
  };
  table[RequestKind::askNote] = [this](const RequestJob& job) {
    const auto ref = job.words.operands.empty() ? SpaceRef::current() : spaceRefFromText(job.words.operands.front());
    const auto space = resolve(ref, watcher_.latest(), store_);
    if (!space) {
      job.fail(notFoundMessage(ref).value_or(noActiveSpace));
    } else if (const auto shown = naming_.askForNote(*space); !shown) {
      job.fail(shown.error());
    } else {
      job.succeed();
    }
  };
}

std::optional<URLFault> AppDelegate::handleURLEvent(const std::string& text) {
  const auto command = commandFromText(text);
  if (command) {
    const auto known = std::make_shared<Outcome>();  // shared with an answer that may come later
    performer_.perform(*command, {}, [known](const Outcome& outcome) { *known = outcome; });
    return known->kind == Outcome::Kind::refused ? std::optional(URLFault{URLFault::Kind::refused, known->sentence})
                                                 : std::nullopt;
  }
  const auto& [kind, message] = command.error();
  if (kind == URLFault::Kind::doubledKey) {
    endOn(message);
  } else if (kind == URLFault::Kind::unknown) {
    platform_.toasts.show({message, std::nullopt, true});
  }
  return command.error();
}

/// A URL that must not be. Whoever sent it is answered first.
void AppDelegate::endOn(const std::string& mistake) {
  error_ << "tallowin: " << mistake << std::endl;
  platform_.log.error(appDelegateCategory, mistake);
  ending_ = platform_.mainQueue.after(Duration::zero(), [this] {
    static_cast<void>(storage_.saveNow());
    platform_.system.terminate(exit_status::badData);
  });
}

}  // namespace tallowin

// How the application controller starts: everything in its order.

#include <tuple>

#include "app/app_delegate.h"

namespace tallowin {

namespace {

constexpr auto startUpCategory = "AppDelegate";

constexpr Duration settingsWindowDelay = std::chrono::milliseconds(500);
constexpr Duration onboardingDelay = std::chrono::milliseconds(1500);

}  // namespace

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
  onboarding_ = platform_.mainQueue.after(onboardingDelay, [this] { runOnboardingIfNeeded(); });
  platform_.commandChannel.setHandler([this](const Request& request, std::unique_ptr<Caller> caller) {
    platform_.preferences.synchronize();  // whoever has just changed a setting waits for the answer to know it used
    requests_.handle(request, std::move(caller));
  });
}

void AppDelegate::openSettingsIfAsked() {
  if (options_.settingsTab) {
    settingsWindow_ = platform_.mainQueue.after(settingsWindowDelay, [this] {
      std::ignore = platform_.presentation.settingsWindow.show(options_.settingsTab, std::nullopt);
    });
  }
}

void AppDelegate::presentDegradedAlert() {
  const auto health = platform_.desktop.health();
  platform_.log.info(startUpCategory, "bridge health: " + std::to_string(health.bits()));
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
  scripting_.open([this](const SpaceCommand& command) { perform(command); });
}

void AppDelegate::startSettingsServices() {
  platform_.urlEvents.setHandler([this](const std::string& text) { static_cast<void>(handleURLEvent(text)); });
  localAPI_.refresh();
  windows_.layouts.startAutoSave();
  windows_.restartOffer.start();
}

void AppDelegate::wireTriggers() {
  const auto& presentation = platform_.presentation;
  const auto toggleOverview = [this] { perform(command::Overview()); };
  presentation.edges.setHandler(toggleOverview);
  presentation.touch.setHandler(toggleOverview);
  presentation.edges.refresh();
  presentation.touch.refresh();
  presentation.dockGuard.setBounceBack([this](const std::string& spaceID) { bounceBack(spaceID); });
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
    platform_.presentation.dockGuard.refresh(active->id);
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

void AppDelegate::settingsChanged() {
  const auto& presentation = platform_.presentation;
  presentation.edges.refresh();
  presentation.touch.refresh();
  if (const auto active = watcher_.latest().activeSpace()) {
    presentation.dockGuard.refresh(active->id);
  }
  localAPI_.refresh();
  automaticNames_.lookSoon();
  previews_.startRefreshTimer();
  records_.stateExporter.schedule();
}

void AppDelegate::runOnboardingIfNeeded() {
  if (!settings_.get(setting::didShowOnboarding) && platform_.presentation.tour.welcome()) {
    settings_.set(setting::didShowOnboarding, true);
  }
}

}  // namespace tallowin

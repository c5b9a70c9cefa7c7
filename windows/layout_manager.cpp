#include "windows/layout_manager.h"

#include "windows/display_ejection.h"
#include "windows/display_set.h"
#include "windows/layout_matching.h"
#include "windows/space_lookup.h"

namespace tallowin {

namespace {

constexpr auto autoSaveTolerance = std::chrono::seconds(60);

}  // namespace

LayoutManager::LayoutManager(Services services)
    : services_(services),
      ax_(services.accessibility, services.windowServer),
      files_(services.storage, services.paths) {}

std::string LayoutManager::displaySetup(const SpaceSnapshot& snapshot) const {
  return connectedDisplays(services_.displays, snapshot).key();
}

WindowLayout LayoutManager::capture(std::string_view name, const SpaceSnapshot& snapshot) const {
  WindowLayout layout{std::string(name), services_.clock.now(), displaySetup(snapshot), {}};
  for (const auto& window : services_.contents.windows().get()) {
    const auto space = spaceWithManagedID(snapshot, window.spaceID);
    if (window.bundleID && space && !space->isFullscreen) {
      layout.entries.push_back({*window.bundleID, window.title, window.frame, space->id, space->displayID});
    }
  }
  return layout;
}

WindowLayout LayoutManager::save(std::string_view name, const SpaceSnapshot& snapshot) {
  auto layout = capture(name, snapshot);
  if (!layout.entries.empty()) {
    files_.write(layout, name);
    if (name == layout_name::automatic) {
      files_.write(layout, layout_name::reconnect);
    }
  }
  return layout;
}

std::optional<WindowLayout> LayoutManager::load(std::string_view name, std::string_view setup) {
  return files_.read(name, setup);
}

void LayoutManager::restore(const WindowLayout& layout, const SpaceSnapshot& snapshot, Completion completion) {
  const auto windows = services_.contents.windows().get();
  auto tally = tallyFor(std::move(completion));
  for (const auto& match : matchLayout(windows, layout.entries)) {
    const auto& entry = layout.entries[match.entry];
    if (const auto space = snapshot.space(entry.spaceUUID)) {
      place(windows[match.window], entry, *space, snapshot, tally);
    }
  }
  tally.close(services_.mainQueue);
}

void LayoutManager::place(const WindowInfo& window, const WindowLayout::Entry& entry, const Space& space,
                          const SpaceSnapshot& snapshot, MoveTally& tally) {
  if (window.spaceID != space.managedID) {
    move(window, space, snapshot, tally);
  }
  const auto element = ax_.element(window.id, window.pid);
  if (element && ax_.frame(element) != entry.frame) {
    ax_.setFrame(element, entry.frame);
  }
}

void LayoutManager::move(const WindowInfo& window, const Space& space, const SpaceSnapshot& snapshot,
                         MoveTally& tally) {
  services_.mover.move({window.id, window.pid, window.frame}, space, snapshot, false, false, tally.expect());
}

/// A tally that holds automatic saving until it is complete: a layout saved half way would be the wrong one.
MoveTally LayoutManager::tallyFor(Completion completion) {
  auto hold = std::make_shared<Subscription>(holdAutoSave());
  return MoveTally([this, hold, alive = std::weak_ptr(alive_), completion = std::move(completion)](std::size_t moved) {
    hold->cancel();
    if (!alive.expired()) {
      services_.contents.refresh();
      completion(moved);
    }
  });
}

void LayoutManager::startAutoSave(std::function<SpaceSnapshot()> snapshot) {
  snapshot_ = std::move(snapshot);
  autoSaveTimer_ = services_.mainQueue.every(autoSaveInterval, autoSaveTolerance, [this] {
    if (*holds_ == 0 && services_.settings.boolean("autoSaveLayout")) {
      save(layout_name::automatic, snapshot_());
    }
  });
}

Subscription LayoutManager::holdAutoSave() {
  ++*holds_;
  return Subscription([holds = holds_] { --*holds; });
}

void LayoutManager::ejectExternalDisplays(const SpaceSnapshot& snapshot, Completion completion) {
  save(layout_name::automatic, snapshot);
  auto tally = tallyFor(std::move(completion));
  if (const auto home = homeDisplay(services_.displays, snapshot)) {
    for (const auto& [from, to] : planEjection(snapshot, *home)) {
      for (const auto& window : services_.contents.windows(from.managedID)) {
        move(window, to, snapshot, tally);
      }
    }
  }
  tally.close(services_.mainQueue);
}

}  // namespace tallowin

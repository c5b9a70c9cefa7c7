#include "windows/layout_manager.h"

#include <algorithm>
#include <utility>

namespace tallowin {

namespace {

constexpr auto autoSaveTolerance = std::chrono::seconds(60);
/// From setting frames to looking where the windows are.
constexpr auto frameDelay = std::chrono::milliseconds(120);

constexpr auto layoutSymbol = "rectangle.3.group";

}  // namespace

MoveTally::MoveTally(Completion completion) : state_(std::make_shared<State>()) {
  state_->completion = std::move(completion);
}

WindowMover::Completion MoveTally::expect() {
  ++state_->pending;
  return [state = state_](WindowMover::Result result) {
    --state->pending;
    state->moved += result ? 1U : 0U;
    if (state->closed && state->pending == 0) {
      state->completion(state->moved);
    }
  };
}

void MoveTally::close(MainQueue& mainQueue) {
  if (state_->pending == 0) {
    mainQueue.async([state = state_] { state->completion(state->moved); });
  } else {
    state_->closed = true;
  }
}

LayoutManager::LayoutManager(const ProgramServices& services, SpaceContents& contents, WindowMover& mover)
    : services_(services),
      contents_(contents),
      mover_(mover),
      files_(services.storage, services.paths),
      steps_(services.mainQueue) {}

std::string LayoutManager::displaySetup(const SpaceSnapshot& snapshot) const {
  return displaySetKey(connectedDisplays(services_.displays, snapshot));
}

WindowLayout LayoutManager::capture(std::string_view name, const SpaceSnapshot& snapshot) const {
  WindowLayout layout{std::string(name), services_.clock.now(), displaySetup(snapshot), {}};
  for (const auto& window : contents_.windows().get()) {
    const auto space = snapshot.managed(window.spaceID);
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
  const auto windows = contents_.windows().get();
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
  services_.windows.setFrame({window.id, window.pid}, entry.frame);
}

void LayoutManager::move(const WindowInfo& window, const Space& space, const SpaceSnapshot& snapshot,
                         MoveTally& tally) {
  mover_.move({window.id, window.pid, window.frame}, space, snapshot, false, false, tally.expect());
}

/// A tally that holds automatic saving until it is complete: a layout saved half way would be the wrong one.
MoveTally LayoutManager::tallyFor(Completion completion) {
  auto hold = std::make_shared<Subscription>(holdAutoSave());
  return MoveTally(lifetime_.bound([this, hold, completion = std::move(completion)](std::size_t moved) {
    contents_.refresh();
    completion(moved);
    hold->cancel();
  }));
}

void LayoutManager::startAutoSave() {
  autoSaveTimer_ = services_.mainQueue.every(autoSaveInterval, autoSaveTolerance, [this] { autoSave(); });
}

void LayoutManager::autoSave() {
  autoSaveDue_ = autoSaveHolds_ > 0;
  if (!autoSaveDue_ && services_.settings.get(setting::autoSaveLayout)) {
    save(layout_name::automatic, services_.watcher.latest());
  }
}

Subscription LayoutManager::holdAutoSave() {
  ++autoSaveHolds_;
  return Subscription(lifetime_.bound([this] {
    if (--autoSaveHolds_ == 0 && autoSaveDue_) {
      contents_.readNow();
      autoSave();
    }
  }));
}

void LayoutManager::ejectExternalDisplays(const SpaceSnapshot& snapshot, Completion completion) {
  save(layout_name::automatic, snapshot);
  auto tally = tallyFor([this, completion = std::move(completion)](std::size_t moved) {
    autoSaveDue_ = false;  // where the windows were is saved, and would be overwritten
    completion(moved);
  });
  if (const auto monitors = services_.displays.monitors(); !monitors.empty()) {
    moveToHomeMonitor(monitors, tally);
  } else {
    moveToHomeDisplay(snapshot, tally);
  }
  tally.close(services_.mainQueue);
}

void LayoutManager::moveToHomeDisplay(const SpaceSnapshot& snapshot, MoveTally& tally) {
  const auto home = homeDisplay(services_.displays, snapshot);
  for (const auto& [from, to] : home ? planEjection(snapshot, *home) : std::vector<SpaceEjection>()) {
    for (const auto& window : contents_.windows(from.managedID)) {
      move(window, to, snapshot, tally);
    }
  }
}

void LayoutManager::moveToHomeMonitor(const std::vector<Monitor>& monitors, MoveTally& tally) {
  std::vector<std::pair<WindowNumber, WindowMover::Completion>> moves;
  for (const auto& [window, frame] : planEjection(contents_.windows().get(), monitors)) {
    if (services_.windows.setFrame({window.id, window.pid}, frame)) {
      moves.emplace_back(window.id, tally.expect());
    }
  }
  if (moves.empty()) {
    return;
  }
  steps_.after(frameDelay, [this, monitors, moves = std::move(moves)] {
    contents_.readNow();
    const auto left = planEjection(contents_.windows().get(), monitors);
    for (const auto& [window, completion] : moves) {
      const bool stayed = std::ranges::any_of(left, [&](const auto& other) { return other.window.id == window; });
      completion(stayed ? WindowMover::Result(std::unexpected(WindowMover::Failure::notMoved)) : WindowMover::Result());
    }
  });
}

Outcome LayoutManager::saveLayout(const SpaceSnapshot& snapshot) {
  const auto count = save(layout_name::manual, snapshot).entries.size();
  services_.toasts.show({"Saved the position of " + std::to_string(count) + " windows", layoutSymbol});
  return Outcome::done();
}

void LayoutManager::restoreLayout(const SpaceSnapshot& snapshot, const CommandAnswer& answer) {
  const auto setup = displaySetup(snapshot);
  auto layout = load(layout_name::manual, setup);
  if (!layout) {
    layout = load(layout_name::automatic, setup);
  }
  if (!layout) {
    constexpr auto message = "No saved window layout for these displays yet";
    services_.toasts.show({message, std::nullopt, true});
    answer.refuse(message);
    return;
  }
  restore(*layout, snapshot, [&toasts = services_.toasts, answer](std::size_t moved) {
    toasts.show({"Put " + std::to_string(moved) + " windows back on their Spaces", layoutSymbol});
    answer.done();
  });
}

void LayoutManager::eject(const SpaceSnapshot& snapshot, const CommandAnswer& answer) {
  ejectExternalDisplays(snapshot, [&toasts = services_.toasts, answer](std::size_t moved) {
    toasts.show({"Moved " + std::to_string(moved) + " windows off external displays. Safe to unplug.", "eject"});
    answer.done();
  });
}

}  // namespace tallowin

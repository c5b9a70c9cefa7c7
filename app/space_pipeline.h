#pragma once

#include <functional>
#include <optional>

#include "app/previews.h"
#include "automation/automation_runner.h"
#include "automation/time_tracker.h"
#include "core/space_history.h"
#include "core/space_store.h"
#include "core/space_watcher.h"
#include "platform/log.h"
#include "presentation/presentation.h"
#include "triggers/triggers.h"
#include "windows/conveniences.h"
#include "windows/space_contents.h"
#include "windows/space_lock.h"

namespace tallowin {

/// What happens when another Space becomes active, in its order. Main thread only.
class SpacePipeline {
 public:
  struct Services {
    SpaceWatcher& watcher;
    SpaceStore& store;
    SpaceContents& contents;
    SpaceLock& spaceLock;
    FocusMemory& focusMemory;
    SpaceHistory& history;
    TimeTracker& tracker;
    AutomationRunner& automation;
    PreviewRefresh& previews;
    Presentation& presentation;
    Triggers& triggers;
    MainQueue& mainQueue;
    Log& log;
    /// Whether this program has just started a switch.
    std::function<bool()> initiatedByUs;
  };

  explicit SpacePipeline(Services services) : services_(std::move(services)) {}
  SpacePipeline(const SpacePipeline&) = delete;
  SpacePipeline& operator=(const SpacePipeline&) = delete;

  /// The active Space of the menu-bar display has changed. Who takes the user back where he was ends it: nobody else
  /// reacts to that change.
  void activeSpaceChanged(const std::optional<Space>& from, const Space& to);

  /// Has the Space dock show the applications of the active Space as they are known now.
  void updateSpaceDock();

 private:
  void record(const std::optional<Space>& from, const Space& to);
  void show(const Space& to);

  const Services services_;
  WorkItem spaceDockUpdate_;
};

}  // namespace tallowin

#pragma once

#include <functional>
#include <optional>

#include "app/previews.h"
#include "automation/automation_runner.h"
#include "automation/time_tracker.h"
#include "core/program_services.h"
#include "core/space.h"
#include "windows/window_services.h"

namespace tallowin {

/// What happens when another Space becomes active, in its order. Main thread only.
class SpacePipeline {
 public:
  struct Services {
    const ProgramServices& program;
    WindowServices& windows;
    SpaceHistory& history;
    TimeTracker& tracker;
    AutomationRunner& automation;
    PreviewRefresh& previews;
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

#include "app/space_pipeline.h"

#include "app/shown_state.h"
#include "automation/record_services.h"
#include "presentation/presentation.h"
#include "triggers/triggers.h"

namespace tallowin {

namespace {

constexpr auto spacePipelineCategory = "AppDelegate";

/// The windows of the Space are known by then.
constexpr Duration spaceDockDelay = std::chrono::milliseconds(300);
/// The switch has been drawn by then.
constexpr Duration previewDelay = std::chrono::milliseconds(600);

}  // namespace

void SpacePipeline::activeSpaceChanged(const std::optional<Space>& from, const Space& to) {
  const bool ours = services_.initiatedByUs();
  if (services_.program.triggers.spaceChanged(to.id, ours)) {
    return;
  }
  if (services_.windows.spaceLock.spaceChanged(from, to, ours)) {
    return;
  }
  if (from && !ours) {
    services_.windows.focusMemory.leaving(*from);
  }
  services_.windows.focusMemory.entered(to);
  spaceDockUpdate_ = services_.program.mainQueue.after(spaceDockDelay, [this] { updateSpaceDock(); });
  record(from, to);
  show(to);
}

void SpacePipeline::record(const std::optional<Space>& from, const Space& to) {
  services_.history.visit(to);
  services_.tracker.spaceChanged(to);
  services_.automation.spaceChanged(from, to);
}

void SpacePipeline::show(const Space& to) {
  auto& presentation = services_.program.presentation;
  const auto& snapshot = services_.program.watcher.latest();
  const auto shown = spaceRow(to, snapshot, services_.program.store);
  services_.program.log.info(spacePipelineCategory, "active Space: " + shown.name);
  if (const auto hud = hudFor(to, services_.program); hud && !presentation.isOverviewShown()) {
    presentation.showHUD(*hud);
  }
  presentation.giveFeedback(shown);
  services_.previews.capture(previewDelay);
  std::map<std::string, SpaceRow> active;
  for (const auto& space : snapshot.activeSpaces()) {
    active.emplace(space.displayID, spaceRow(space, snapshot, services_.program.store));
  }
  presentation.updateDesktopLabels(active);
}

void SpacePipeline::updateSpaceDock() {
  if (const auto active = services_.program.watcher.latest().activeSpace()) {
    services_.program.presentation.updateSpaceDock(appNames(services_.windows.contents)(*active));
  }
}

}  // namespace tallowin

#include "automation/time_tracker.h"

#include <chrono>

namespace tallowin {

namespace {

constexpr auto saveDelay = std::chrono::seconds(5);
/// Longer intervals are sleep that was not noticed, or a clock that was set.
constexpr double dropped = 6 * 3600;

}  // namespace

TimeTracker::TimeTracker(const ProgramServices& services)
    : services_(services),
      file_(services.storage, services.paths.supportDirectory() / "stats.json", "TimeTracker",
            {.delay = saveDelay, .limit = std::nullopt, .isOwed = false}),
      since_(services.clock.now()),
      tracking_(services.settings.get(setting::timeTracking)) {
  const auto parse = [](std::string_view text) -> std::expected<TimeRecord, std::string> {
    auto record = timeRecordFromJSON(text);
    return record ? std::expected<TimeRecord, std::string>(*std::move(record))
                  : std::unexpected("it is no record of times");
  };
  days_ = file_.read(parse).value_or(TimeRecord());
  settingsObserver_ = services_.settings.defaults().observe([this] { settingsChanged(); });
}

void TimeTracker::spaceChanged(const Space& to) {
  setCurrentID(to.id);
}

void TimeTracker::screensDidSleep() {
  setCurrentID(std::nullopt);
}

void TimeTracker::screensDidWake(const SpaceSnapshot& snapshot) {
  const auto active = snapshot.activeSpace();
  setCurrentID(active ? std::optional(active->id) : std::nullopt);
}

void TimeTracker::setCurrentID(std::optional<std::string> id) {
  flush();
  currentID_ = std::move(id);
}

void TimeTracker::flush() {
  tracking_ = services_.settings.get(setting::timeTracking);
  takeInterval(tracking_);
}

void TimeTracker::settingsChanged() {
  // The time until the change counts by what was set before.
  if (services_.settings.get(setting::timeTracking) != tracking_) {
    takeInterval(tracking_);
    tracking_ = !tracking_;
  }
}

void TimeTracker::takeInterval(bool counts) {
  const auto now = services_.clock.now();
  const double elapsed = std::chrono::duration<double>(now - since_).count();
  since_ = now;
  if (!counts || !currentID_ || elapsed <= 0 || elapsed >= dropped) {
    return;
  }
  days_[dayKey(services_.clock.localDay(now))][*currentID_] += elapsed;
  file_.changed([this] { return [days = days_] { return jsonText(days); }; });
  changed_.tell();
}

SpaceTimes TimeTracker::totals(std::int64_t lastDays) {
  flush();
  return sumOfDays(days_, services_.clock.localDay(services_.clock.now()), lastDays);
}

std::string TimeTracker::csv(const SpaceNames& names) {
  flush();
  return csvText(days_, names);
}

}  // namespace tallowin

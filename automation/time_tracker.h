#pragma once

#include <optional>
#include <string>

#include "automation/time_record.h"
#include "base/broadcaster.h"
#include "core/program_services.h"
#include "platform/pinned.h"

namespace tallowin {

/// Records how long the user is in each Space on each day, by the wall clock, in "stats.json" in the support folder.
/// Nothing leaves the machine. A change is saved 5 seconds after the last one; what was not saved when the program ends
/// is lost. Main thread only.
class TimeTracker : Pinned {
 public:
  /// Reads the record. One that is missing, or cannot be read or understood, counts as empty; what was not understood
  /// is kept aside before the record is written.
  explicit TimeTracker(const ProgramServices& services);

  /// The active Space of the menu-bar display has changed.
  void spaceChanged(const Space& to);
  /// Nobody looks at a Space while the screens sleep.
  void screensDidSleep();
  void screensDidWake(const SpaceSnapshot& snapshot);

  /// Adds the interval since the last flush to the day on which it ends, and begins the next one. Intervals of six
  /// hours and more, and those that a clock set back made negative, are dropped; so is everything while the setting
  /// "timeTracking" is off.
  void flush();

  [[nodiscard]] const TimeRecord& days() const { return days_; }
  /// The Space being timed; nothing while the screens sleep.
  [[nodiscard]] const std::optional<std::string>& currentID() const { return currentID_; }

  /// Calls `observer` after every change of the record.
  Subscription observe(std::function<void()> observer) { return changed_.subscribe(std::move(observer)); }

  /// The seconds in each Space over the last `lastDays` calendar days, today included. Flushes.
  [[nodiscard]] SpaceTimes totals(std::int64_t lastDays);

  /// The whole record as comma-separated text. Flushes.
  [[nodiscard]] std::string csv(const SpaceNames& names);

 private:
  void setCurrentID(std::optional<std::string> id);
  /// Takes the interval since the last call; it counts if `counts`.
  void takeInterval(bool counts);
  void settingsChanged();

  const ProgramServices& services_;
  RecordFile file_;
  TimeRecord days_;
  Broadcaster<> changed_;
  std::optional<std::string> currentID_;
  Date since_;
  bool tracking_;  ///< the setting "timeTracking" as last seen
  Subscription settingsObserver_;
};

}  // namespace tallowin

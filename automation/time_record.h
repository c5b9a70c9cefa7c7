#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/space_store.h"
#include "platform/clock.h"
#include "platform/property_list.h"

namespace tallowin {

/// Seconds by Space id.
using SpaceTimes = std::map<std::string, double>;

/// By day key: the seconds spent in each Space on that day.
using TimeRecord = std::map<std::string, SpaceTimes>;

/// "2026-03-02", so that keys sort in the order of their days.
[[nodiscard]] std::string dayKey(const CalendarDay& day);

/// Whether the text is the key of a day that exists.
[[nodiscard]] bool isDayKey(std::string_view text);

/// The day that many days earlier by the calendar, but none before the year 0. `days` is not negative.
[[nodiscard]] CalendarDay daysBefore(const CalendarDay& day, std::int64_t days);

/// The record as one line of JSON: an object of objects of numbers.
[[nodiscard]] std::string jsonText(const TimeRecord& record);

/// Reads such a text. Nothing for anything else, whatever the bytes.
[[nodiscard]] std::optional<TimeRecord> timeRecordFromJSON(std::string_view text);

/// The sum over the last `lastDays` days, the one that `today` names included. Nothing less than 0.
[[nodiscard]] SpaceTimes sumOfDays(const TimeRecord& record, const CalendarDay& today, std::int64_t lastDays);

/// What to call the Space with an id.
using SpaceNames = std::function<std::string(const std::string& id)>;

/// The names for tracked times: what everybody calls the Spaces of the snapshot, the stored names of others, and
/// "Removed Space". The snapshot and the store must outlive the answer.
[[nodiscard]] SpaceNames namesOfTimes(const SpaceSnapshot& snapshot, const SpaceStore& store);

/// For people, cut off to whole minutes: "<1m", "45m", "2h 05m".
[[nodiscard]] std::string shortDuration(double seconds);

/// A record as comma-separated text: the line "date,space,minutes", then one line for each Space of each day, days in
/// order, the Space with the most time first; minutes are rounded. No line feed at the end.
[[nodiscard]] std::string csvText(const TimeRecord& record, const SpaceNames& names);

/// One Space's total.
struct TimeRow {
  std::string id;
  std::string name;
  double seconds = 0;
  bool operator==(const TimeRow&) const = default;
};

/// Totals with names, the largest first; those that are equal by Space id.
[[nodiscard]] std::vector<TimeRow> timeRows(const SpaceTimes& totals, const SpaceNames& names);

/// The rows for reading in a terminal of so many columns: name, bar and duration, one line each. Names are cut where
/// they do not fit, and without room for them there are no bars. "No time recorded yet." without rows.
[[nodiscard]] std::string timeTable(const std::vector<TimeRow>& rows, std::size_t width);

/// The rows for programs: a list of {"id", "name", "seconds"}.
[[nodiscard]] PropertyList toJson(const std::vector<TimeRow>& rows);

}  // namespace tallowin

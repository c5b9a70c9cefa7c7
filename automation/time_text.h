#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "automation/time_record.h"
#include "core/space_store.h"
#include "platform/property_list.h"

namespace tallowin {

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

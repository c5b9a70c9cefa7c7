#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "platform/clock.h"

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

}  // namespace tallowin

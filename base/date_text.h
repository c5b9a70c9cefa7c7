#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/clock.h"

namespace tallowin {

/// ISO 8601 in UTC to the second, as in files: "2026-03-01T09:00:00Z". Fractions are cut off.
[[nodiscard]] std::string iso8601(Date date);

/// The instant that such a text names; nothing for anything else, impossible days and years before 1677 or after 2262,
/// which a Date cannot hold, included.
[[nodiscard]] std::optional<Date> dateFromISO8601(std::string_view text);

/// To the minute in the machine's time zone, for people: "2026-03-01 10:00".
[[nodiscard]] std::string localDateText(Date date, const Clock& clock);

/// The same instant in a form for file names: "20260301T090000Z".
[[nodiscard]] std::string fileNameDate(Date date);

}  // namespace tallowin

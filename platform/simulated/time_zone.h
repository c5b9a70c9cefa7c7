#pragma once

#include <chrono>
#include <cstdint>
#include <expected>
#include <string>
#include <string_view>
#include <vector>

#include "platform/clock.h"

namespace tallowin {

/// A time zone as a value, so that a scenario's day does not depend on the zone of the process. By default UTC.
class TimeZone {
 public:
  TimeZone() = default;

  /// "UTC", a fixed offset such as "+02:00", or an IANA name such as "Europe/Berlin", whose rules come from the
  /// system's zone files. The error says what is wrong with the name.
  [[nodiscard]] static std::expected<TimeZone, std::string> named(std::string_view name);

  /// The zone that a TZif file (RFC 8536) describes, for dates up to the last change of offset that it lists and with
  /// that offset ever after. Total: an error for bytes that are no such file.
  [[nodiscard]] static std::expected<TimeZone, std::string> fromTZif(std::string_view bytes);

  /// How far local time is ahead of UTC at that instant.
  [[nodiscard]] std::chrono::seconds offsetAt(Date date) const;

  [[nodiscard]] CalendarDay localDay(Date date) const;

  bool operator==(const TimeZone&) const = default;

 private:
  struct Change {
    std::int64_t at = 0;      ///< in seconds since 1970
    std::int64_t offset = 0;  ///< from then on, in seconds
    bool operator==(const Change&) const = default;
  };

  std::int64_t firstOffset_ = 0;  ///< before every change
  std::vector<Change> changes_;   ///< in ascending order
};

}  // namespace tallowin

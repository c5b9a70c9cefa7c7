#include "platform/simulated/time_zone.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <system_error>

#include "base/words.h"

namespace tallowin {

namespace {

constexpr auto zoneFolder = "/usr/share/zoneinfo/";

/// Reads big-endian numbers; a number that is not wholly there reads as nothing.
std::optional<std::int64_t> bigEndian(std::string_view bytes, std::size_t offset, std::size_t width) {
  if (offset > bytes.size() || bytes.size() - offset < width) {
    return std::nullopt;
  }
  // Starts from the sign, so that narrow numbers keep theirs.
  std::uint64_t value = (static_cast<unsigned char>(bytes[offset]) & 0x80U) != 0 ? ~std::uint64_t{0} : 0;
  for (std::size_t i = 0; i < width; ++i) {
    value = value << 8 | static_cast<unsigned char>(bytes[offset + i]);
  }
  return static_cast<std::int64_t>(value);
}

/// The counts in a TZif header (RFC 8536, section 3.1).
struct Header {
  static constexpr std::size_t size = 44;
  std::size_t isUTC = 0;
  std::size_t isStandard = 0;
  std::size_t leapSeconds = 0;
  std::size_t changes = 0;
  std::size_t types = 0;
  std::size_t characters = 0;

  /// How long the data are that follow, with times of this width.
  [[nodiscard]] std::size_t dataSize(std::size_t timeWidth) const {
    return changes * (timeWidth + 1) + types * 6 + characters + leapSeconds * (timeWidth + 4) + isStandard + isUTC;
  }
};

std::optional<Header> readHeader(std::string_view bytes, std::size_t offset) {
  constexpr std::int64_t most = 100'000;
  std::size_t counts[6] = {};
  for (std::size_t i = 0; i < std::size(counts); ++i) {
    const auto count = bigEndian(bytes, offset + 20 + i * 4, 4).value_or(-1);
    if (count < 0 || count > most) {
      return std::nullopt;
    }
    counts[i] = static_cast<std::size_t>(count);
  }
  return bytes.substr(offset, 4) == "TZif"
             ? std::optional(Header{counts[0], counts[1], counts[2], counts[3], counts[4], counts[5]})
             : std::nullopt;
}

std::expected<TimeZone, std::string> readFile(std::string_view name) {
  const bool plain = std::ranges::all_of(
      name, [](unsigned char c) { return std::isalnum(c) != 0 || c == '/' || c == '_' || c == '-' || c == '+'; });
  if (name.empty() || !plain || name.front() == '/') {
    return std::unexpected("no time zone has this name");
  }
  const auto path = zoneFolder + std::string(name);
  std::error_code failed;
  // Reading a folder as a file would throw.
  if (!std::filesystem::is_regular_file(path, failed)) {
    return std::unexpected("no time zone has this name");
  }
  std::ifstream file(path, std::ios::binary);
  const std::string bytes((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
  return TimeZone::fromTZif(bytes);
}

/// "+02:00" in seconds.
std::optional<std::int64_t> fixedOffset(std::string_view name) {
  if (name.size() != 6 || (name[0] != '+' && name[0] != '-') || name[3] != ':') {
    return std::nullopt;
  }
  const auto number = [](std::string_view digits) {
    return std::ranges::all_of(digits, [](char c) { return c >= '0' && c <= '9'; }) ? decimalInteger(digits).value()
                                                                                    : 99;
  };
  const auto hours = number(name.substr(1, 2));
  const auto minutes = number(name.substr(4, 2));
  if (hours > 23 || minutes > 59) {
    return std::nullopt;
  }
  return (name[0] == '-' ? -1 : 1) * (hours * 3600 + minutes * 60);
}

}  // namespace

std::expected<TimeZone, std::string> TimeZone::named(std::string_view name) {
  if (name == "UTC") {
    return TimeZone{};
  }
  if (const auto offset = fixedOffset(name)) {
    TimeZone zone;
    zone.firstOffset_ = *offset;
    return zone;
  }
  return readFile(name);
}

std::expected<TimeZone, std::string> TimeZone::fromTZif(std::string_view bytes) {
  const auto refused = std::unexpected("no time zone has this name");
  const auto first = readHeader(bytes, 0);
  // From version 2 on a second block with 64-bit times follows the first one.
  if (!first || bytes[4] < '2') {
    return refused;
  }
  const std::size_t second = Header::size + first->dataSize(4);
  const auto header = readHeader(bytes, second);
  const std::size_t times = second + Header::size;
  if (!header || header->types == 0 || bytes.size() - times < header->dataSize(8)) {
    return refused;
  }
  const std::size_t indices = times + header->changes * 8;
  const std::size_t types = indices + header->changes;
  TimeZone zone;
  zone.firstOffset_ = bigEndian(bytes, types, 4).value_or(0);
  for (std::size_t i = 0; i < header->changes; ++i) {
    const auto type = static_cast<unsigned char>(bytes[indices + i]);
    if (type >= header->types) {
      return refused;
    }
    zone.changes_.push_back({bigEndian(bytes, times + i * 8, 8).value_or(0),
                             bigEndian(bytes, types + std::size_t{type} * 6, 4).value_or(0)});
  }
  return std::ranges::is_sorted(zone.changes_, {}, &Change::at) ? std::expected<TimeZone, std::string>(zone) : refused;
}

std::chrono::seconds TimeZone::offsetAt(Date date) const {
  const auto seconds = std::chrono::floor<std::chrono::seconds>(date).time_since_epoch().count();
  const auto next = std::ranges::upper_bound(changes_, seconds, {}, &Change::at);
  return std::chrono::seconds{next == changes_.begin() ? firstOffset_ : std::prev(next)->offset};
}

CalendarDay TimeZone::localDay(Date date) const {
  const auto local = date + offsetAt(date);
  const std::chrono::year_month_day day{std::chrono::floor<std::chrono::days>(local)};
  return {static_cast<int>(day.year()), static_cast<int>(static_cast<unsigned>(day.month())),
          static_cast<int>(static_cast<unsigned>(day.day()))};
}

}  // namespace tallowin

#include "automation/time_record.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <unordered_map>

#include "base/date_text.h"
#include "base/json_text.h"
#include "base/unicode.h"
#include "base/words.h"

namespace tallowin {

namespace {

/// Reads a record as it is parsed: of years of use the tree that a parser would build takes longer than all the rest.
class RecordHandler : public nlohmann::json_sax<PropertyList> {
 public:
  TimeRecord record;

  bool null() override { return false; }
  bool boolean(bool /*value*/) override { return false; }
  bool number_integer(number_integer_t value) override { return number(static_cast<double>(value)); }
  bool number_unsigned(number_unsigned_t value) override { return number(static_cast<double>(value)); }
  bool number_float(number_float_t value, const string_t& /*text*/) override { return number(value); }
  bool string(string_t& /*value*/) override { return false; }
  bool binary(binary_t& /*value*/) override { return false; }
  bool start_object(std::size_t /*elements*/) override { return ++depth_ <= daysDepth + 1; }
  /// Copies: a key that was moved out would cost the parser its buffer.
  bool key(string_t& key) override {
    if (depth_ == daysDepth) {
      day_ = &record.try_emplace(record.end(), key)->second;
    } else {
      seconds_ = &day_->try_emplace(day_->end(), key)->second;
    }
    return true;
  }
  bool end_object() override {
    --depth_;
    return true;
  }
  bool start_array(std::size_t /*elements*/) override { return false; }
  bool end_array() override { return false; }
  bool parse_error(std::size_t /*position*/, const std::string& /*token*/,
                   const PropertyList::exception& /*error*/) override {
    return false;
  }

 private:
  static constexpr int daysDepth = 1;
  static constexpr double mostSeconds = 1e15;  // beyond any life, and harmless in sums

  bool number(double value) {
    if (depth_ != daysDepth + 1 || std::abs(value) > mostSeconds) {
      return false;
    }
    *seconds_ = value;
    return true;
  }

  int depth_ = 0;
  SpaceTimes* day_ = nullptr;
  double* seconds_ = nullptr;
};

void appendQuoted(std::string& text, const std::string& key) {
  const bool plain = std::ranges::all_of(key, [](char c) { return c >= ' ' && c < 0x7F && c != '"' && c != '\\'; });
  text += plain ? '"' + key + '"' : compactJSON(key);
}

void appendNumber(std::string& text, double number) {
  std::array<char, 32> digits{};  // the longest shortest form of a double has 24 characters
  const auto end = std::to_chars(digits.begin(), digits.end(), number).ptr;
  text.append(digits.begin(), end);
}

void appendTimes(std::string& text, const SpaceTimes& times) {
  text += '{';
  bool first = true;
  for (const auto& [id, seconds] : times) {
    text += first ? "" : ",";
    first = false;
    appendQuoted(text, id);
    text += ':';
    appendNumber(text, seconds);
  }
  text += '}';
}

std::chrono::sys_days sysDays(const CalendarDay& day) {
  return std::chrono::year_month_day(std::chrono::year(day.year), std::chrono::month(static_cast<unsigned>(day.month)),
                                     std::chrono::day(static_cast<unsigned>(day.day)));
}

constexpr double secondsPerMinute = 60;
constexpr std::size_t leastBar = 4;  ///< columns; a shorter bar tells nothing
constexpr std::size_t leastName = 8;
constexpr std::size_t eighths = 8;

std::string quoted(const std::string& name) {
  std::string text = "\"";
  for (const char c : name) {
    text += c == '"' ? "\"\"" : std::string(1, c);
  }
  return text + '"';
}

std::string wholeMinutes(double seconds) {
  std::array<char, 512> digits{};  // a double has up to 309 digits
  // Adding zero makes a plain zero of a negative one.
  const double minutes = std::round(seconds / secondsPerMinute) + 0.0;
  const auto end = std::to_chars(digits.begin(), digits.end(), minutes, std::chars_format::fixed, 0).ptr;
  return {digits.begin(), end};
}

/// The entries of one day, the one with the most time first, then by Space id.
std::vector<const SpaceTimes::value_type*> byTime(const SpaceTimes& times) {
  std::vector<const SpaceTimes::value_type*> entries;
  entries.reserve(times.size());
  for (const auto& entry : times) {
    entries.push_back(&entry);
  }
  std::ranges::stable_sort(entries, std::greater(), [](const auto* entry) { return entry->second; });
  return entries;
}

/// The longest beginning of the text, with "…" behind it, that takes at most so many columns; the text itself if it
/// fits.
std::string shortened(const std::string& text, std::size_t width) {
  if (displayWidth(text) <= width) {
    return text;
  }
  const auto isInside = [&](std::size_t at) {
    return at < text.size() && (static_cast<unsigned char>(text[at]) & 0xC0U) == 0x80U;
  };
  std::size_t end = 0;
  for (std::size_t columns = 1; columns <= width;) {
    std::size_t next = end + 1;
    while (isInside(next)) {
      ++next;
    }
    columns += displayWidth(text.substr(end, next - end));
    end = columns <= width ? next : end;
  }
  return text.substr(0, end) + "…";
}

/// A bar for a share of at most 1 of so many columns, to an eighth of a column; a share above 0 is never invisible.
std::string bar(double share, std::size_t width) {
  constexpr auto parts = std::to_array<const char*>({"", "▏", "▎", "▍", "▌", "▋", "▊", "▉"});
  auto filled = static_cast<std::size_t>(std::lround(share * static_cast<double>(width * eighths)));
  filled = share > 0 ? std::max<std::size_t>(filled, 1) : 0;
  std::string text;
  for (std::size_t i = 0; i < filled / eighths; ++i) {
    text += "█";
  }
  return text + parts.at(filled % eighths);
}

}  // namespace

std::string dayKey(const CalendarDay& day) {
  std::array<char, 40> text{};
  const int length = std::snprintf(text.data(), text.size(), "%04d-%02d-%02d", day.year, day.month, day.day);
  return {text.data(), static_cast<std::size_t>(length)};
}

bool isDayKey(std::string_view text) {
  return dateFromISO8601(std::string(text) + "T00:00:00Z").has_value();
}

CalendarDay daysBefore(const CalendarDay& day, std::int64_t days) {
  constexpr std::chrono::sys_days earliest = std::chrono::year(0) / 1 / 1;
  const auto last = sysDays(day);
  const auto most = std::max<std::int64_t>((last - earliest).count(), 0);
  const std::chrono::year_month_day found = last - std::chrono::days(std::min(days, most));
  return {static_cast<int>(found.year()), static_cast<int>(static_cast<unsigned>(found.month())),
          static_cast<int>(static_cast<unsigned>(found.day()))};
}

std::string jsonText(const TimeRecord& record) {
  std::string text = "{";
  for (const auto& [day, times] : record) {
    text += text.size() > 1 ? "," : "";
    appendQuoted(text, day);
    text += ':';
    appendTimes(text, times);
  }
  return text + "}";
}

std::optional<TimeRecord> timeRecordFromJSON(std::string_view text) {
  RecordHandler handler;
  const bool good = PropertyList::sax_parse(text, &handler);
  return good ? std::optional(std::move(handler.record)) : std::nullopt;
}

SpaceTimes sumOfDays(const TimeRecord& record, const CalendarDay& today, std::int64_t lastDays) {
  SpaceTimes sum;
  if (lastDays <= 0) {
    return sum;
  }
  const auto last = dayKey(today);
  for (auto day = record.lower_bound(dayKey(daysBefore(today, lastDays - 1)));
       day != record.end() && day->first <= last; ++day) {
    // Between two days other texts may stand that somebody has written there.
    if (isDayKey(day->first)) {
      for (const auto& [id, seconds] : day->second) {
        sum[id] += seconds;
      }
    }
  }
  return sum;
}

SpaceNames namesOfTimes(const SpaceSnapshot& snapshot, const SpaceStore& store) {
  return [&snapshot, &store](const std::string& id) {
    if (const auto space = snapshot.space(id)) {
      return store.displayName(*space);
    }
    return store.meta(id).name.value_or("Removed Space");
  };
}

std::string shortDuration(double seconds) {
  constexpr double most = 1e15;  // more than anybody can have spent, and small enough for an integer
  constexpr std::int64_t minutesPerHour = 60;
  const auto minutes = static_cast<std::int64_t>(std::clamp(seconds, 0.0, most) / secondsPerMinute);
  if (minutes < 1) {
    return "<1m";
  }
  if (minutes < minutesPerHour) {
    return std::to_string(minutes) + "m";
  }
  const auto rest = std::to_string(minutes % minutesPerHour);
  return std::to_string(minutes / minutesPerHour) + "h " + (rest.size() < 2 ? "0" : "") + rest + "m";
}

std::string csvText(const TimeRecord& record, const SpaceNames& names) {
  // The same few Spaces stand in thousands of days.
  std::unordered_map<std::string, std::string> quotedNames;
  std::string text = "date,space,minutes";
  for (const auto& [day, times] : record) {
    for (const auto* entry : byTime(times)) {
      auto& name = quotedNames[entry->first];
      if (name.empty()) {
        name = quoted(names(entry->first));
      }
      text += '\n';
      text += day;
      text += ',';
      text += name;
      text += ',';
      text += wholeMinutes(entry->second);
    }
  }
  return text;
}

std::vector<TimeRow> timeRows(const SpaceTimes& totals, const SpaceNames& names) {
  std::vector<TimeRow> rows;
  for (const auto* entry : byTime(totals)) {
    rows.push_back({entry->first, names(entry->first), entry->second});
  }
  return rows;
}

std::string timeTable(const std::vector<TimeRow>& rows, std::size_t width) {
  if (rows.empty()) {
    return "No time recorded yet.\n";
  }
  std::size_t nameWidth = 0;
  std::size_t durationWidth = 0;
  for (const auto& row : rows) {
    nameWidth = std::max(nameWidth, displayWidth(printable(row.name)));
    durationWidth = std::max(durationWidth, shortDuration(row.seconds).size());
  }
  constexpr std::size_t gap = 2;
  const auto less = [](std::size_t all, std::size_t part) { return all - std::min(all, part); };
  const auto forBoth = less(width, durationWidth + 2 * gap);
  // Bars get half of the room at least, but leave names a few columns.
  const auto barWidth = std::min(std::max(less(forBoth, nameWidth), forBoth / 2), less(forBoth, leastName));
  const bool bars = barWidth >= leastBar && rows.front().seconds > 0;
  nameWidth = std::min(nameWidth, std::max(leastName, less(forBoth, bars ? barWidth : 0)));

  std::string text;
  for (const auto& row : rows) {
    const auto duration = shortDuration(row.seconds);
    text += padded(shortened(printable(row.name), nameWidth), nameWidth + gap);
    if (bars) {
      text += padded(bar(std::max(row.seconds, 0.0) / rows.front().seconds, barWidth), barWidth + gap);
    }
    text += std::string(durationWidth - duration.size(), ' ') + duration + '\n';
  }
  return text;
}

PropertyList toJson(const std::vector<TimeRow>& rows) {
  auto list = PropertyList::array();
  for (const auto& row : rows) {
    list.push_back({{"id", row.id}, {"name", row.name}, {"seconds", row.seconds}});
  }
  return list;
}

}  // namespace tallowin

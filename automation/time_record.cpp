#include "automation/time_record.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdio>

#include "base/date_text.h"
#include "base/json_text.h"

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

}  // namespace tallowin

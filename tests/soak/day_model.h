#pragma once

#include <algorithm>
#include <chrono>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "platform/clock.h"

namespace tallowin {

/// What the records of a day must be, worked out from what happened: a small second opinion on the program's rules.
class DayModel {
 public:
  using Times = std::map<std::string, std::map<std::string, double>>;  ///< by day, then by Space: seconds

  DayModel(Date start, std::chrono::seconds ahead) : since_(start), ahead_(ahead) {}

  /// The user has come to a Space.
  void visit(const std::string& id, Date now) {
    visits_.push_back(id);
    enter(id, now);
  }
  void sleep(Date now) { enter(std::nullopt, now); }
  void wake(Date now) { enter(visits_.back(), now); }
  void closeInterval(Date now) {
    counts_ = tracking;
    close(now);
  }

  /// The program has seen that the user changed a setting.
  void settingsSeen(Date now) {
    if (counts_ != tracking) {
      close(now);
      counts_ = tracking;
    }
  }

  /// The Spaces visited last, the latest first, none twice, at most so many.
  [[nodiscard]] std::vector<std::string> recent() const {
    constexpr std::size_t most = 20;
    std::vector<std::string> ids;
    for (auto visit = visits_.rbegin(); visit != visits_.rend() && ids.size() < most; ++visit) {
      if (std::ranges::find(ids, *visit) == ids.end()) {
        ids.push_back(*visit);
      }
    }
    return ids;
  }

  [[nodiscard]] std::string day(Date now) const {
    const std::chrono::year_month_day date(std::chrono::floor<std::chrono::days>(now + ahead_));
    char text[16];
    std::snprintf(text, sizeof text, "%04d-%02u-%02u", static_cast<int>(date.year()),
                  static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()));
    return text;
  }

  bool tracking = true;  ///< the setting as the user has it
  Times times;
  bool timesChanged = false;  ///< since somebody set it to false

 private:
  void enter(const std::optional<std::string>& id, Date now) {
    closeInterval(now);
    current_ = id;
  }

  void close(Date now) {
    const auto spent = now - since_;
    since_ = now;
    if (counts_ && current_ && spent > Duration::zero() && spent < std::chrono::hours(6)) {
      times[day(now)][*current_] += std::chrono::duration<double>(spent).count();
      timesChanged = true;
    }
  }

  std::vector<std::string> visits_;
  std::optional<std::string> current_;
  bool counts_ = true;  ///< the setting as the program last saw it
  Date since_;
  std::chrono::seconds ahead_;
};

}  // namespace tallowin

// What becomes of the files.

#include <algorithm>
#include <cmath>
#include <map>
#include <set>

#include "automation/time_record.h"
#include "tests/soak/random/invariant.h"

namespace tallowin {

namespace {

using Json = nlohmann::ordered_json;

/// Files that nobody can understand are still there in the end, under their names or others.
class ForeignBytesAreKept : public Invariant {
 public:
  explicit ForeignBytesAreKept(const SoakRun& run) : Invariant(run) {
    const auto all = run.program.files().contents();
    for (const auto& [path, file] : all.items()) {
      const bool isOwn = path.starts_with(supportFolder) || path.ends_with("/tallowin/preferences.json");
      if (isOwn && path.ends_with(".json") && !(file.is_string() && Json::accept(file.get<std::string>()))) {
        foreign_[path] = file;
      }
    }
  }

  void hear(const Json& record) override { foreign_.erase(rewrittenFile(record)); }

  void ended() override {
    const auto all = run_.program.files().contents();
    for (const auto& [path, file] : foreign_) {
      if (std::ranges::find(all, file) == all.end()) {
        run_.fail("what is not understood is kept aside", path);
      }
    }
  }

 private:
  std::map<std::string, Json> foreign_;
};

/// A write that fails leaves the file as it was before; only where the folder cannot be flushed it is a new one.
class FailedWritesLeaveTheOldFile : public Invariant {
 public:
  using Invariant::Invariant;

  void hear(const Json& record) override {
    if (actionIn(record) == "failDisk") {
      folderFails_ = folderFails_ || record["stage"] == "folder";
    } else if (record["op"] == "rename") {
      contents_.erase(record["from"].get<std::string>());
      contents_.erase(record["to"].get<std::string>());
    } else if (const auto path = writtenFile(record); !path.empty()) {
      const auto before = contents_.find(path);
      if (record.contains("error") && !folderFails_ && before != contents_.end() && *before != content(path)) {
        run_.fail("a failed write leaves the old file", path);
      }
      contents_[path] = content(path);
    }
    contents_.erase(rewrittenFile(record));
  }

 private:
  /// Null where there is no file.
  [[nodiscard]] Json content(const std::string& path) const {
    return run_.program.files().contents().value(path, Json());
  }

  Json contents_ = run_.program.files().contents();
  bool folderFails_ = false;
};

/// A fresh start understands every file that the program has written.
class FilesCanBeReadAgain : public Invariant {
 public:
  using Invariant::Invariant;

  void hear(const Json& record) override {
    if (const auto path = writtenFile(record); !path.empty() && !record.contains("error")) {
      own_.insert(path);
    }
    own_.erase(rewrittenFile(record));
  }

  void ended() override {
    for (const auto& path : own_) {
      const auto text = run_.program.desktop.files().read(path);
      if (path.ends_with(".json") && text && !Json::accept(*text)) {
        run_.fail("files can be read again", path + ": " + *text);
      }
    }
    const auto questions = Json::parse(R"([
      {"at": 1, "do": "runCommand", "arguments": ["profile", "list"]},
      {"at": 1, "do": "runCommand", "arguments": ["template", "list"]},
      {"at": 1, "do": "runCommand", "arguments": ["saved-spaces"]},
      {"at": 1, "do": "openURL", "url": "tallowin://restore-layout"},
      {"at": 2, "do": "quit"}])");
    ResidentProgram next(Json{{"files", run_.program.files().contents()}, {"script", questions}}.dump());
    next.onLine = [this](const std::string& line) { hearNextStart(Json::parse(line)); };
    next.live();
  }

 private:
  /// What a program that starts on these files says of them.
  void hearNextStart(const Json& record) const {
    const std::string message = record["op"] == "log" && record["level"] == "error" ? record["message"] : Json("");
    for (const auto& path : own_) {
      if (message.find("cannot understand " + path) != std::string::npos ||
          message.find("cannot read " + path) != std::string::npos) {
        run_.fail("files can be read again", message);
      }
    }
  }

  std::set<std::string> own_;  ///< files whose content is the program's own
};

/// The times that are recorded are those of the visits on a calm desktop, and on others never more than has passed.
class TimesAreThoseOfTheVisits : public Invariant {
 public:
  explicit TimesAreThoseOfTheVisits(const SoakRun& run)
      : Invariant(run), settings_(run.program.preferences.observe([this] {
          if (counts_ != isCounting()) {
            takeInterval();
          }
        })) {}

  void hear(const Json& record) override {
    const auto action = actionIn(record);
    if (record["op"] == "hud") {
      enter(visited_ = record["id"]);
    } else if (action == "sleepScreens") {
      enter("");
    } else if (action == "runCommand") {
      ++callers_;
      if (record["arguments"][0] == "time") {
        askers_.insert(callers_);
      }
    } else if (record["op"] == "answer" && askers_.erase(record["caller"].get<int>()) > 0) {
      enter(current_);  // the answer to who asks for the times closes the interval
    } else if (action == "wakeScreens") {
      enter(visited_);
    } else if (action == "jumpClock") {
      jumped_ += std::abs(record["by"].get<double>());
    }
    isSeen_ = isSeen_ && !hidesVisits(record);
    tampered_ = tampered_ || rewrittenFile(record).ends_with("stats.json");
  }

  void settled() override {
    if (isCalm_ && isSeen_ && rounded(recorded()) != rounded(expected_)) {
      run_.fail("the times are those of the visits", Json(recorded()).dump() + " instead of " + Json(expected_).dump());
    }
  }

  void ended() override {
    const double most = std::chrono::duration<double>(run_.now()).count() + jumped_ + 1e-6;
    if (!tampered_ && sum(recorded()) - sum(before_) > most) {
      run_.fail("no more time is recorded than has passed", Json(recorded()).dump() + " > " + std::to_string(most));
    }
  }

 private:
  using Times = std::map<std::string, std::map<std::string, double>>;  ///< by day, then by Space: seconds

  [[nodiscard]] Times recorded() const {
    Times times;
    const auto file = run_.supportFile("stats.json");
    for (const auto& [day, spaces] : file.items()) {
      for (const auto& [id, seconds] : spaces.items()) {
        times[day][id] = seconds.is_number() ? seconds.get<double>() : 0;
      }
    }
    return times;
  }

  static double sum(const Times& times) {
    double total = 0;
    for (const auto& [day, spaces] : times) {
      for (const auto& [id, seconds] : spaces) {
        total += seconds;
      }
    }
    return total;
  }

  /// In microseconds, as they are sums of the same intervals in whichever order.
  static Times rounded(Times times) {
    for (auto& [day, spaces] : times) {
      for (auto& [id, seconds] : spaces) {
        seconds = std::round(seconds * 1e6);
      }
    }
    return times;
  }

  [[nodiscard]] bool isCounting() const { return run_.program.settings.get(setting::timeTracking); }

  void enter(const std::string& id) {
    counts_ = isCounting();
    takeInterval();
    current_ = id;
  }

  /// The time until now counts by what was set before, unless it is too long for somebody to have been there.
  void takeInterval() {
    const auto now = run_.program.time.now();
    const auto spent = now - std::exchange(since_, now);
    if (std::exchange(counts_, isCounting()) && !current_.empty() && spent > Duration::zero() &&
        spent < std::chrono::hours(6)) {
      expected_[dayKey(run_.program.time.localDay(now))][current_] += std::chrono::duration<double>(spent).count();
    }
  }

  const Times before_ = recorded();
  Times expected_ = before_;
  int callers_ = 0;
  std::set<int> askers_;  ///< who has asked for the times and waits for the answer
  std::string visited_;
  std::string current_;  ///< empty while the screens sleep
  Date since_ = run_.program.time.now();
  bool counts_ = isCounting();
  double jumped_ = 0;
  bool isSeen_ = true;
  bool tampered_ = false;
  Subscription settings_;
};

}  // namespace

void addFileInvariants(const SoakRun& run, Invariants& invariants) {
  add<ForeignBytesAreKept, FailedWritesLeaveTheOldFile, FilesCanBeReadAgain, TimesAreThoseOfTheVisits>(run, invariants);
}

}  // namespace tallowin

// What becomes of the files.

#include <cmath>
#include <map>
#include <set>

#include "tests/soak/random/invariant.h"

namespace tallowin {

namespace {

using Json = nlohmann::ordered_json;

bool isJSON(const std::string& text) {
  return Json::accept(text);
}

bool isUnderSupport(const std::string& path) {
  return path.starts_with(supportFolder) || path.find("/tallowin/preferences.json") != std::string::npos;
}

/// Files that nobody can understand are still there in the end, under their names or others.
class ForeignBytesAreKept : public Invariant {
 public:
  explicit ForeignBytesAreKept(const SoakRun& run) : Invariant(run) {
    const auto all = contents();
    for (const auto& [path, file] : all.items()) {
      const auto bytes = run_.program.desktop.files().read(path);
      if (isUnderSupport(path) && path.ends_with(".json") && bytes && !isJSON(*bytes)) {
        foreign_[path] = file;
      }
    }
  }

  void hear(const Json& record) override { foreign_.erase(rewrittenFile(record)); }

  void ended() override {
    const auto all = contents();
    for (const auto& [path, file] : foreign_) {
      if (std::ranges::find(all, file) == all.end()) {
        run_.fail("what is not understood is kept aside", path);
      }
    }
  }

 private:
  [[nodiscard]] Json contents() const { return run_.program.files().contents(); }

  std::map<std::string, Json> foreign_;
};

/// A fresh start understands every file that the program has written.
class FilesCanBeReadAgain : public Invariant {
 public:
  using Invariant::Invariant;

  void hear(const Json& record) override {
    if (record["op"] == "writeAtomically" && !record.contains("error")) {
      own_.insert(record["path"].get<std::string>());
    } else {
      own_.erase(rewrittenFile(record));
    }
  }

  void ended() override {
    for (const auto& path : own_) {
      const auto text = run_.program.desktop.files().read(path);
      if (path.ends_with(".json") && text && !isJSON(*text)) {
        run_.fail("files can be read again", path + ": " + *text);
      }
    }
    startAgain();
  }

 private:
  void startAgain() {
    const auto files = run_.program.files().contents();
    const auto questions = Json::parse(R"([
      {"at": 1, "do": "runCommand", "arguments": ["profile", "list"]},
      {"at": 1, "do": "runCommand", "arguments": ["template", "list"]},
      {"at": 1, "do": "runCommand", "arguments": ["saved-spaces"]},
      {"at": 1, "do": "openURL", "url": "tallowin://restore-layout"},
      {"at": 2, "do": "quit"}])");
    ResidentProgram next(Json{{"files", files}, {"script", questions}}.dump());
    next.onLine = [this](const std::string& line) { hearNextStart(line); };
    next.live();
  }

  /// What a program that starts on these files says of them.
  void hearNextStart(const std::string& line) const {
    const auto record = Json::parse(line);
    if (record["op"] != "log" || record["level"] != "error") {
      return;
    }
    const std::string message = record["message"];
    for (const auto& path : own_) {
      if (message.find("cannot understand " + path) != std::string::npos ||
          message.find("cannot read " + path) != std::string::npos) {
        run_.fail("files can be read again", message);
      }
    }
  }

  std::set<std::string> own_;  ///< files whose content is the program's own
};

/// The times of a day are never more than there was.
class TimesDoNotExceedTheDay : public Invariant {
 public:
  explicit TimesDoNotExceedTheDay(const SoakRun& run) : Invariant(run), before_(sum()) {}

  void hear(const Json& record) override {
    if (record["op"] == "script" && record["do"] == "jumpClock") {
      jumped_ += std::abs(record["by"].get<double>());
    }
    tampered_ = tampered_ || rewrittenFile(record).ends_with("stats.json");
  }

  void ended() override {
    const double most = std::chrono::duration<double>(run_.now()).count() + jumped_ + 1e-6;
    if (!tampered_ && sum() - before_ > most) {
      run_.fail("no more time is recorded than has passed", std::to_string(sum()) + " > " + std::to_string(most));
    }
  }

 private:
  [[nodiscard]] double sum() const {
    const auto text = run_.program.desktop.files().read(supportFolder + "stats.json");
    const auto days = Json::parse(text.value_or("{}"), nullptr, false);
    double total = 0;
    if (days.is_object()) {
      for (const auto& [day, times] : days.items()) {
        for (const auto& seconds : times.is_object() ? times : Json::object()) {
          total += seconds.is_number() ? seconds.get<double>() : 0;
        }
      }
    }
    return total;
  }

  double before_;
  double jumped_ = 0;
  bool tampered_ = false;
};

}  // namespace

void addFileInvariants(const SoakRun& run, Invariants& invariants) {
  invariants.push_back(std::make_unique<ForeignBytesAreKept>(run));
  invariants.push_back(std::make_unique<FilesCanBeReadAgain>(run));
  invariants.push_back(std::make_unique<TimesDoNotExceedTheDay>(run));
}

}  // namespace tallowin

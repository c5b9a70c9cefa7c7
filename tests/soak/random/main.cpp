// Runs randomly drawn scenarios against what must always be so, and makes short scenario files of those that fail.
//   tallowin_soak --hours H | --count N [--from NUMBER] [--jobs N] [--reports FOLDER]
//   tallowin_soak --draw NUMBER     prints the scenario of a number
//   tallowin_soak FILE...           judges scenario files

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <map>
#include <memory>
#include <poll.h>
#include <random>
#include <sstream>
#include <thread>

#include "tests/soak/random/isolated_run.h"
#include "tests/soak/random/random_scenario.h"
#include "tests/soak/random/shrinking.h"

namespace tallowin {
namespace {

using Json = nlohmann::ordered_json;
using SteadyClock = std::chrono::steady_clock;

struct Options {
  double hours = 0;
  std::uint64_t count = 0;  ///< 0: as many as there is time for
  std::uint64_t from = 0;
  std::size_t jobs = std::max(1U, std::thread::hardware_concurrency());
  std::filesystem::path reports = "build/soak";
  std::string program;
};

class Soak {
 public:
  explicit Soak(Options options) : options_(std::move(options)) {}

  /// Whether all scenarios were as they must be.
  bool run() {
    std::cout << "scenarios from number " << options_.from << " on" << std::endl;
    while (mayBegin() || !running_.empty()) {
      while (mayBegin() && running_.size() < options_.jobs) {
        begin(options_.from + begun_++);
      }
      collect();
      tellProgress();
    }
    tell();
    return failures_ == 0;
  }

 private:
  struct Drawn {
    std::uint64_t number;
    Json scenario;
    std::unique_ptr<IsolatedRun> run;
  };

  [[nodiscard]] std::chrono::duration<double> elapsed() const { return SteadyClock::now() - since_; }

  [[nodiscard]] bool mayBegin() const {
    constexpr int mostFailures = 20;
    const bool more = options_.count > 0 ? begun_ < options_.count : elapsed().count() < options_.hours * 3600;
    return more && failures_ < mostFailures;
  }

  void begin(std::uint64_t number) {
    constexpr std::uint64_t twiceEvery = 16;
    auto scenario = drawScenario(number);
    auto run = std::make_unique<IsolatedRun>(scenario.dump(), number % twiceEvery == 0, false);
    running_.push_back({number, std::move(scenario), std::move(run)});
  }

  void collect() {
    std::vector<pollfd> waiting;
    for (const auto& drawn : running_) {
      waiting.push_back({drawn.run->descriptor(), POLLIN, 0});
    }
    poll(waiting.data(), waiting.size(), 1000);
    for (auto i = running_.size(); i-- > 0;) {
      if (waiting[i].revents != 0 || running_[i].run->isLate()) {
        const auto drawn = std::move(running_[i]);
        running_.erase(running_.begin() + static_cast<std::ptrdiff_t>(i));
        ++done_;
        if (const auto verdict = drawn.run->verdict(); !verdict.invariant.empty()) {
          report(drawn, verdict);
        }
      }
    }
  }

  void report(const Drawn& drawn, const Verdict& verdict) {
    constexpr int shrunkOfAKind = 3;
    ++failures_;
    std::cout << "number " << drawn.number << ": it does not hold that " << verdict.invariant << "\n  "
              << verdict.detail << std::endl;
    if (++kinds_[verdict.invariant] > shrunkOfAKind) {
      return;
    }
    constexpr auto patience = std::chrono::seconds(60);
    const auto until = SteadyClock::now() + patience;
    const bool twice = verdict.invariant == "a scenario has one journal";
    const auto scenario = shrunk(
        drawn.scenario,
        [&](const Json& candidate) {
          return judgeIsolated(candidate.dump(), twice, false).invariant == verdict.invariant;
        },
        [&] { return SteadyClock::now() < until; });
    auto name = std::to_string(drawn.number) + " " + verdict.invariant;
    std::ranges::replace(name, ' ', '-');
    const auto file = options_.reports / (name + ".json");
    std::filesystem::create_directories(options_.reports);
    std::ofstream(file) << scenario.dump(2) << "\n";
    std::cout << "  short scenario: " << file.string() << "\n  again:   " << options_.program << " " << file.string()
              << "\n  journal: tallowin --simulate " << file.string() << std::endl;
  }

  void tellProgress() {
    constexpr auto interval = std::chrono::minutes(1);
    if (SteadyClock::now() - told_ >= interval) {
      told_ = SteadyClock::now();
      tell();
    }
  }

  void tell() const {
    std::cout << done_ << " scenarios, "
              << static_cast<std::uint64_t>(static_cast<double>(done_) * 60 / elapsed().count()) << " a minute, "
              << failures_ << " failed" << std::endl;
  }

  const Options options_;
  const SteadyClock::time_point since_ = SteadyClock::now();
  SteadyClock::time_point told_ = since_;
  std::vector<Drawn> running_;
  std::uint64_t begun_ = 0;
  std::uint64_t done_ = 0;
  int failures_ = 0;
  std::map<std::string, int> kinds_;  ///< failures by invariant
};

bool judgeFiles(const std::vector<std::string>& files) {
  bool good = true;
  for (const auto& file : files) {
    std::ifstream stream(file);
    std::ostringstream text;
    text << stream.rdbuf();
    const auto verdict = judgeIsolated(text.str(), true, true);
    std::cout << file << ": " << (verdict.invariant.empty() ? "good" : "it does not hold that " + verdict.invariant)
              << "\n  " << verdict.detail << "\n";
    good = good && verdict.invariant.empty();
  }
  return good;
}

template <typename Number>
bool read(const std::string& text, Number& number) {
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return error == std::errc() && end == text.data() + text.size();
}

int runWith(const std::vector<std::string>& words) {
  Options options;
  options.program = words.front();
  options.from = std::random_device()();
  std::vector<std::string> files;
  for (std::size_t i = 1; i < words.size();) {
    const auto& word = words[i++];
    if (!word.starts_with("--")) {
      files.push_back(word);
      continue;
    }
    const auto value = i < words.size() ? words[i] : "";
    bool good = true;
    if (std::uint64_t number = 0; word == "--draw" && read(value, number)) {
      std::cout << drawScenario(number).dump(2) << "\n";
      return EXIT_SUCCESS;
    } else if (word == "--hours") {
      good = read(value, options.hours);
    } else if (word == "--count") {
      good = read(value, options.count);
    } else if (word == "--from") {
      good = read(value, options.from);
    } else if (word == "--jobs") {
      good = read(value, options.jobs) && options.jobs > 0;
    } else if (word == "--reports") {
      options.reports = value;
    } else {
      good = false;
    }
    if (!good) {
      std::cerr << "tallowin_soak: not understood: " << word << " " << value << "\n";
      return EXIT_FAILURE;
    }
    ++i;
  }
  return (files.empty() ? Soak(options).run() : judgeFiles(files)) ? EXIT_SUCCESS : EXIT_FAILURE;
}

}  // namespace
}  // namespace tallowin

int main(int argc, char** argv) {
  return tallowin::runWith({argv, argv + argc});
}

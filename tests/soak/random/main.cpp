// Runs randomly drawn scenarios against what must always be so, and makes short scenario files of those that fail.
//   tallowin_soak --hours H | --count N [--from NUMBER] [--jobs N] [--reports FOLDER]
//   tallowin_soak --draw NUMBER     prints the scenario of a number
//   tallowin_soak FILE...           judges scenario files

#include <algorithm>
#include <atomic>
#include <charconv>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iostream>
#include <iterator>
#include <map>
#include <new>
#include <poll.h>
#include <random>
#include <stdexcept>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

#include "tests/soak/random/random_scenario.h"
#include "tests/soak/random/verdict.h"

namespace tallowin {
namespace {

using Json = nlohmann::ordered_json;
using SteadyClock = std::chrono::steady_clock;

[[noreturn]] void judgeAndExit(const std::string& scenarioJSON, bool twice, bool loud, int writer) {
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  if (!loud) {
    const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
    dup2(nowhere, STDOUT_FILENO);
    dup2(nowhere, STDERR_FILENO);
  }
  const auto verdict = judge(scenarioJSON, twice);
  constexpr std::size_t longest = 4000;  // a pipe takes it at once, and it arrives at once
  const auto text = nlohmann::json{verdict.invariant, verdict.detail.substr(0, longest), verdict.journal}.dump(
      -1, ' ', false, nlohmann::json::error_handler_t::replace);
  const auto written = write(writer, text.data(), text.size());
  _exit(written == static_cast<ssize_t>(text.size()) ? EXIT_SUCCESS : EXIT_FAILURE);
}

/// Judges in a process of its own, as a scenario may crash or never end. `loud`: what the process prints is seen, such
/// as what a sanitizer found.
Verdict judgeIsolated(const std::string& scenarioJSON, bool twice, bool loud) {
  int ends[2];
  pid_t process = -1;
  if (pipe2(ends, O_CLOEXEC) != 0 || (process = fork()) < 0) {
    throw std::runtime_error("no process can be started");
  }
  if (process == 0) {
    judgeAndExit(scenarioJSON, twice, loud, ends[1]);
  }
  close(ends[1]);
  constexpr int patience = 180'000;  // a scenario takes milliseconds, hours of it with sanitizers half a minute
  pollfd waiting{ends[0], POLLIN, 0};
  const bool isLate = poll(&waiting, 1, patience) == 0;
  if (isLate) {
    kill(process, SIGKILL);
  }
  std::string text(PIPE_BUF * 16, '\0');
  text.resize(static_cast<std::size_t>(std::max<ssize_t>(read(ends[0], text.data(), text.size()), 0)));
  close(ends[0]);
  int status = 0;
  waitpid(process, &status, 0);
  const auto json = nlohmann::json::parse(text, nullptr, false);
  if (isLate) {
    return {"the program ends", "it still runs after three minutes", 0};
  }
  if (!json.is_array()) {
    const auto how = WIFSIGNALED(status) ? "signal " + std::to_string(WTERMSIG(status))
                                         : "status " + std::to_string(WEXITSTATUS(status));
    return {"the program does not crash", how, 0};
  }
  return {json[0], json[1], json[2]};
}

/// Takes everything out of a scenario that still fails without it: actions, windows, displays, files, settings, in ever
/// smaller pieces, until nothing more can go or a minute is over.
class Shrinker {
  using Place = Json::json_pointer;

 public:
  Shrinker(Json scenario, std::function<bool(const Json&)> stillFails)
      : scenario_(std::move(scenario)), stillFails_(std::move(stillFails)) {}

  Json shrink() {
    do {
      changed_ = false;
      shrinkAt(Place("/script"));  // most of a scenario, and what keeps the rest in use
      shrinkAt(Place());
    } while (changed_ && mayGoOn());
    return scenario_;
  }

 private:
  [[nodiscard]] bool mayGoOn() const { return SteadyClock::now() < until_; }

  void shrinkAt(const Place& place) {
    if (!scenario_.contains(place) || !scenario_[place].is_structured()) {
      return;
    }
    for (auto piece = scenario_[place].size(); piece > 0; piece /= 2) {
      for (std::size_t from = 0; from < scenario_[place].size() && mayGoOn();) {
        from = takeOut(place, from, piece) ? from : from + piece;
      }
    }
    for (std::size_t i = scenario_[place].size(); i-- > 0 && mayGoOn();) {
      shrinkAt(place / key(place, i));
    }
  }

  /// What the entry is called in the JSON pointer.
  [[nodiscard]] std::string key(const Place& place, std::size_t index) const {
    const auto& node = scenario_[place];
    return node.is_array() ? std::to_string(index) : std::next(node.begin(), static_cast<std::ptrdiff_t>(index)).key();
  }

  bool takeOut(const Place& place, std::size_t from, std::size_t count) {
    auto candidate = scenario_;
    auto& node = candidate[place];
    const auto to = std::min(from + count, node.size());
    for (auto i = to; i-- > from;) {
      node.erase(std::next(node.begin(), static_cast<std::ptrdiff_t>(i)));
    }
    if (!stillFails_(candidate)) {
      return false;
    }
    scenario_ = std::move(candidate);
    changed_ = true;
    return true;
  }

  Json scenario_;
  const std::function<bool(const Json&)> stillFails_;
  const SteadyClock::time_point until_ = SteadyClock::now() + std::chrono::minutes(1);
  bool changed_ = false;
};

struct Options {
  double hours = 0;
  std::uint64_t count = 0;  ///< 0: as many as there is time for
  std::uint64_t from = std::random_device()();
  std::size_t jobs = std::max(1U, std::thread::hardware_concurrency());
  std::filesystem::path reports = "build/soak";
  std::string program;
};

/// What the workers have done, each in a process of its own, in memory that they share.
struct Totals {
  std::atomic<std::uint64_t> begun = 0;
  std::atomic<std::uint64_t> done = 0;
  std::atomic<std::uint64_t> failed = 0;
};

Totals& sharedTotals() {
  auto* const memory = mmap(nullptr, sizeof(Totals), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  if (memory == MAP_FAILED) {
    throw std::bad_alloc();
  }
  return *new (memory) Totals();
}

class Soak {
 public:
  explicit Soak(Options options) : options_(std::move(options)), totals_(sharedTotals()) {}

  /// Whether all scenarios were as they must be.
  bool run() {
    std::cout << "scenarios from number " << options_.from << " on" << std::endl;
    for (std::size_t i = 0; i < options_.jobs; ++i) {
      if (fork() == 0) {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        work();
        _exit(EXIT_SUCCESS);
      }
    }
    while (wait(nullptr) > 0) {
    }
    tell();
    return totals_.failed == 0 && totals_.done > 0 && totals_.done >= options_.count;
  }

 private:
  [[nodiscard]] std::chrono::duration<double> elapsed() const { return SteadyClock::now() - since_; }

  void work() {
    constexpr int mostFailures = 20;
    constexpr std::uint64_t twiceEvery = 16;
    while (totals_.failed < mostFailures && (options_.count > 0 || elapsed().count() < options_.hours * 3600)) {
      const auto number = totals_.begun++;
      if (options_.count > 0 && number >= options_.count) {
        return;
      }
      const auto scenario = drawScenario(options_.from + number);
      const auto verdict = judgeIsolated(scenario.dump(), number % twiceEvery == 0, false);
      const auto done = ++totals_.done;
      if (!verdict.invariant.empty()) {
        ++totals_.failed;
        report(options_.from + number, scenario, verdict);
      }
      if (done % 1000 == 0) {
        tell();
      }
    }
  }

  void report(std::uint64_t number, const Json& drawn, const Verdict& verdict) {
    const auto text = std::to_string(number) + ": it does not hold that " + verdict.invariant + "\n";
    std::cout << "number " + text + "  " + verdict.detail << std::endl;
    constexpr int shrunkOfAKind = 3;
    if (++kinds_[verdict.invariant] > shrunkOfAKind) {
      return;
    }
    const bool twice = verdict.invariant == "a scenario has one journal";
    const auto scenario = Shrinker(drawn, [&](const Json& candidate) {
                            return judgeIsolated(candidate.dump(), twice, false).invariant == verdict.invariant;
                          }).shrink();
    auto name = std::to_string(number) + " " + verdict.invariant;
    std::ranges::replace(name, ' ', '-');
    const auto file = options_.reports / (name + ".json");
    std::filesystem::create_directories(options_.reports);
    std::ofstream(file) << scenario.dump(2) << "\n";
    std::cout << "  short scenario: " + file.string() + "\n  again:   " + options_.program + " " + file.string() +
                     "\n  journal: tallowin --simulate " + file.string()
              << std::endl;
  }

  void tell() const {
    const auto aMinute = static_cast<std::uint64_t>(static_cast<double>(totals_.done) * 60 / elapsed().count());
    std::cout << totals_.done << " scenarios, " << aMinute << " a minute, " << totals_.failed << " failed" << std::endl;
  }

  const Options options_;
  const SteadyClock::time_point since_ = SteadyClock::now();
  Totals& totals_;
  std::map<std::string, int> kinds_;  ///< failures that this worker has seen, by invariant
};

bool isGood(const std::string& file) {
  std::ifstream stream(file);
  const auto verdict = judgeIsolated({std::istreambuf_iterator(stream), {}}, true, true);
  std::cout << file << ": " << (verdict.invariant.empty() ? "good" : "it does not hold that " + verdict.invariant)
            << "\n  " << verdict.detail << std::endl;
  return verdict.invariant.empty();
}

template <typename Number>
bool read(std::string_view text, Number& number) {
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return error == std::errc() && end == text.data() + text.size();
}

int runWith(const std::vector<std::string>& words) {
  Options options;
  options.program = words.front();
  std::uint64_t drawn = 0;
  const std::map<std::string, std::function<bool(const std::string&)>> readers = {
      {"--hours", [&](const auto& value) { return read(value, options.hours); }},
      {"--count", [&](const auto& value) { return read(value, options.count); }},
      {"--from", [&](const auto& value) { return read(value, options.from); }},
      {"--jobs", [&](const auto& value) { return read(value, options.jobs) && options.jobs > 0; }},
      {"--reports", [&](const auto& value) { return options.reports = value, true; }},
      {"--draw", [&](const auto& value) { return read(value, drawn); }},
  };
  if (words.size() > 1 && !words[1].starts_with("--")) {
    return std::count_if(words.begin() + 1, words.end(), std::not_fn(isGood)) == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
  }
  for (std::size_t i = 1; i < words.size(); i += 2) {
    const auto reader = readers.find(words[i]);
    if (reader == readers.end() || i + 1 == words.size() || !reader->second(words[i + 1])) {
      std::cerr << "tallowin_soak: not understood: " << words[i] << "\n";
      return EXIT_FAILURE;
    }
  }
  if (words.size() == 3 && words[1] == "--draw") {
    std::cout << drawScenario(drawn).dump(2) << "\n";
    return EXIT_SUCCESS;
  }
  return Soak(options).run() ? EXIT_SUCCESS : EXIT_FAILURE;
}

}  // namespace
}  // namespace tallowin

int main(int argc, char** argv) {
  return tallowin::runWith({argv, argv + argc});
}

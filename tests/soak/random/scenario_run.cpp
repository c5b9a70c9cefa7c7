#include "tests/soak/random/invariant.h"
#include "tests/soak/random/verdict.h"

namespace tallowin {

namespace {

using Json = nlohmann::ordered_json;
using namespace std::chrono_literals;

/// Nobody needs more than that in a second.
constexpr std::uint64_t mostWork = 4000;
constexpr std::size_t mostLines = 3000;
/// After so long a time without events everything has settled.
constexpr Duration settlingTime = 15s;

class JudgedLife {
 public:
  explicit JudgedLife(const std::string& json) : scenario_(Json::parse(json)), program_(json) {
    program_.onLine = [this](const std::string& line) { hear(line); };
    for (auto* const add : {addDesktopInvariants, addFileInvariants, addNameInvariants, addWindowInvariants}) {
      add(run_, invariants_);
    }
  }

  Verdict verdict() {
    program_.begin();
    const auto [lastAction, end] = times();
    while (!program_.time.stopped() && program_.time.elapsed() < end - 1ms) {
      advance(std::min<Duration>(1s, end - 1ms - program_.time.elapsed()));
    }
    if (!program_.time.stopped() && end - lastAction >= settlingTime) {
      tell(&Invariant::settled);
    }
    if (!program_.time.stopped()) {
      program_.time.run();
    }
    program_.delegate.reset();
    tell(&Invariant::ended);
    return verdict_;
  }

 private:
  /// When the last thing happens that nobody just asks about, and when the end comes.
  [[nodiscard]] std::pair<Duration, Duration> times() const {
    Duration last{};
    auto end = program_.scenario.end;
    for (const auto& entry : program_.scenario.script) {
      const auto text = entry.journalled.dump();
      if (text.find("\"quit\"") != std::string::npos) {
        end = std::min(end, entry.at);
      } else if (text.find("\"list\",\"--json\"") == std::string::npos) {
        last = std::max(last, entry.at);
      }
    }
    return {last, end};
  }

  void advance(Duration duration) {
    const auto work = program_.time.asked();
    const auto lines = program_.lines.size();
    program_.time.advance(duration);
    if (program_.time.asked() - work > mostWork) {
      fail("work is bounded", std::to_string(program_.time.asked() - work) + " pieces in a second");
    }
    if (program_.lines.size() - lines > mostLines) {
      fail("the journal is bounded", std::to_string(program_.lines.size() - lines) + " lines in a second");
    }
  }

  void hear(const std::string& line) {
    verdict_.journal = verdict_.journal * 1'099'511'628'211ULL ^ std::hash<std::string>()(line);
    const auto record = Json::parse(line);
    for (const auto& invariant : invariants_) {
      invariant->hear(record);
    }
  }

  void tell(void (Invariant::*what)()) {
    for (const auto& invariant : invariants_) {
      (*invariant.*what)();
    }
  }

  void fail(const std::string& invariant, const std::string& detail) {
    if (verdict_.invariant.empty()) {
      verdict_.invariant = invariant;
      verdict_.detail =
          "after " + std::to_string(std::chrono::duration<double>(program_.time.elapsed()).count()) + " s: " + detail;
    }
  }

  const Json scenario_;
  ResidentProgram program_;
  Verdict verdict_;
  const SoakRun run_{scenario_, program_,
                     [this](const std::string& invariant, const std::string& detail) { fail(invariant, detail); }};
  Invariants invariants_;
};

}  // namespace

Verdict judge(const std::string& scenarioJSON, bool twice) {
  if (const auto scenario = Scenario::parse(scenarioJSON); !scenario) {
    return {"scenarios can be read", scenario.error()};
  }
  auto verdict = JudgedLife(scenarioJSON).verdict();
  if (twice && verdict.invariant.empty() && JudgedLife(scenarioJSON).verdict().journal != verdict.journal) {
    verdict.invariant = "a scenario has one journal";
  }
  return verdict;
}

}  // namespace tallowin

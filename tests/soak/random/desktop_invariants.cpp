// What the program knows of the desktop, and in what state it leaves it.

#include <algorithm>

#include "tests/soak/random/invariant.h"

namespace tallowin {

namespace {

using Json = nlohmann::ordered_json;
using namespace std::chrono_literals;

/// The program knows the Spaces as they are, and has told the others.
class TheSpacesAreKnown : public Invariant {
 public:
  using Invariant::Invariant;

  void hear(const Json& record) override {
    const bool isAction = record["op"] == "script";
    if (record["op"] == "activeSpace") {
      quiet_ = false;
    } else if (isAction && mentions(record, "setMenuBarDisplay")) {
      quiet_ = true;
    } else if (record["op"] == "writeAtomically" && record["path"] == supportFolder + "state.json") {
      refused_ = record.contains("error");
    } else if (rewrittenFile(record) == supportFolder + "state.json") {
      refused_ = true;
    }
    staysElsewhere_ = staysElsewhere_ || (isAction && mentions(record, "clickDock")) || mentions(record, "spaceLock");
  }

  void settled() override {
    const bool deaf = run_.state().requests.signs == SignTiming::never ||
                      run_.scenario.contains("notificationFailures") || run_.scenario.contains("missingFunctions");
    if (!run_.hasIntactSpaces() || !run_.canReadSpaces() || quiet_ || deaf) {
      return;
    }
    const auto recent = run_.recent();
    if (!staysElsewhere_ && (recent.empty() || recent.front() != run_.activeID())) {
      run_.fail("the history ends where the user is", run_.activeID() + ", not " + Json(recent).dump());
    }
    if (!refused_) {
      checkState();
    }
  }

 private:
  void checkState() {
    const auto state = run_.supportFile("state.json");
    const auto said = run_.supportFile("spaces.json");
    const auto seen = state.value("spaces", Json());
    auto expected = seen;
    const auto all = run_.spaces();
    for (std::size_t i = 0; i < all.size() && all.size() == seen.size(); ++i) {
      const auto& space = all[i];
      expected[i].update({{"id", space.id}, {"display", space.display}, {"isActive", space.active}});
      expected[i]["number"] = space.number == 0 ? Json() : Json(space.number);
      if (isCalm_ && space.number != 0 && !run_.program.settings.get(setting::demoMode)) {
        const auto words = said.value(space.id, Json::object());
        expected[i]["name"] = words.value("name", "Desktop " + std::to_string(space.number));
        expected[i]["note"] = words.value("note", Json());
      }
    }
    if (all.size() != seen.size() || seen != expected || state.value("current", "") != run_.activeID()) {
      run_.fail("state.json tells what is", state.dump() + " instead of " + expected.dump());
    }
  }

  bool refused_ = false;  ///< writing it the last time, or somebody has changed it since
  bool quiet_ = false;    ///< the menu bar has moved, which the system tells nobody
  /// Both hold the user back, and then it is where they take the user that counts as visited.
  bool staysElsewhere_ = mentions(run_.scenario, "spaceLock");
};

/// What is remembered of visits is what the user was shown: the latest first, none twice, at most so many.
class TheHistoryIsTheVisits : public Invariant {
 public:
  using Invariant::Invariant;

  void hear(const Json& record) override {
    isSeen_ = isSeen_ && !hidesVisits(record);
    if (record["op"] == "script") {
      settled();
    } else if (record["op"] == "hud") {
      const std::string id = record["id"];
      std::erase(visits_, id);
      visits_.insert(visits_.begin(), id);
      visits_.resize(std::min<std::size_t>(visits_.size(), 20));
      if (isCalm_ && std::ranges::count(run_.spaces(), id, &TrueSpace::id) != 1) {
        run_.fail("who is told of a visit finds the Space", record.dump());
      }
    }
  }

  void settled() override {
    if (isSeen_ && run_.recent() != visits_) {
      run_.fail("the history is the visits", Json(run_.recent()).dump() + " instead of " + Json(visits_).dump());
    }
  }

 private:
  std::vector<std::string> visits_;
  bool isSeen_ = true;
};

/// Who asks for the current Space after a switch has been answered is told of the Space that was switched to.
class QueriesSeeCommands : public Invariant {
 public:
  using Invariant::Invariant;

  void hear(const Json& record) override {
    if (!isCalm_) {
      return;
    }
    if (record["op"] == "script") {
      hearAction(record);
    } else if (record["op"] == "answer" && record["caller"] == switcher_) {
      isAnswered_ = isAnswered_ || record.value("status", -1) == 0;
    } else if (record["op"] == "answer" && record["caller"] == asker_ && record.contains("out")) {
      const auto told = Json::parse(record["out"].get<std::string>());
      if (!target_.empty() && told.value("id", "") != target_) {
        run_.fail("queries see commands", told.dump() + " after a switch to " + target_);
      }
    }
  }

 private:
  /// Longer than anything takes to happen that was begun before.
  static constexpr auto quiet = 3s;

  void hearAction(const Json& action) {
    const bool isCall = action["do"] == "runCommand";
    const std::vector<std::string> words = isCall ? action["arguments"] : Json::array();
    callers_ += isCall ? 1 : 0;
    if (words == std::vector<std::string>{"current", "--json"} && isAnswered_ && run_.now() - changedAt_ < 400ms) {
      asker_ = callers_;
      return;
    }
    const bool wasQuiet = run_.now() - changedAt_ > quiet;
    changedAt_ = run_.now();
    isAnswered_ = false;
    switcher_ = asker_ = 0;
    const std::string url = words.empty() ? "" : words.front();
    const std::string start = "tallowin://switch/";
    if (wasQuiet && url.starts_with(start)) {
      switcher_ = callers_;
      target_ = otherDesktop(url.substr(start.size()));
    }
  }

  /// The id of a desktop that is not active, as to another one the switch may go back; else empty.
  [[nodiscard]] std::string otherDesktop(const std::string& number) const {
    const auto all = run_.spaces();
    const auto found = std::ranges::find(all, number, [](const auto& space) { return std::to_string(space.number); });
    return found == all.end() || found->active || found->display != run_.state().menuBarDisplay ? "" : found->id;
  }

  int callers_ = 0;
  int switcher_ = 0;  ///< the caller of the switch; 0 for none
  int asker_ = 0;     ///< the caller who asks; 0 for none
  bool isAnswered_ = false;
  std::string target_;
  Duration changedAt_ = Duration::zero();
};

/// What the program borrowed is given back: the user's hot keys, the mouse button.
class BorrowedThingsAreGivenBack : public Invariant {
 public:
  using Invariant::Invariant;

  void hear(const Json& record) override {
    if (record["op"] == "script" && record["do"] == "setSymbolicHotKey") {
      hotKeys_.erase(record["hotKey"].get<int>());
    }
    // Who may no longer post events cannot let go of a button either.
    usesMouse_ = usesMouse_ ||
                 (record["op"] == "script" && (mentions(record, "Mouse\"") || mentions(record, "\"accessibility\"")));
  }

  void settled() override {
    for (const auto& [key, hotKey] : hotKeys_) {
      if (run_.state().hotKeys.at(key) != hotKey) {
        run_.fail("what was borrowed is given back", "hot key " + std::to_string(key));
      }
    }
    if (!usesMouse_ && run_.state().pressedMouseButtons != 0) {
      run_.fail("what was borrowed is given back", "a mouse button is held down");
    }
  }

 private:
  SymbolicHotKeys hotKeys_ = run_.state().hotKeys;
  bool usesMouse_ = run_.state().pressedMouseButtons != 0;
};

/// Nothing is an error on a calm desktop, and the program ends only when told to.
class ErrorsHaveCauses : public Invariant {
 public:
  using Invariant::Invariant;

  void hear(const Json& record) override {
    const std::string op = record["op"];
    if (op == "script" && mentions(record, "&name=b")) {
      mayEnd_ = true;  // a URL that names a key twice
    } else if (op == "terminate" && !mayEnd_) {
      run_.fail("the program ends only when told to", record.dump());
    } else if (isCalm_ && op == "log" && record["level"] == "error" && !isTheUsersDoing(record["message"])) {
      run_.fail("errors have causes", record.dump());
    }
  }

 private:
  /// Switches that cross each other look like bounces, and windows of full-screen Spaces cannot obey a rule.
  static bool isTheUsersDoing(const std::string& message) {
    return message.find("bounce") != std::string::npos || message.starts_with("rule move failed: Full screen");
  }

  bool mayEnd_ = false;
};

}  // namespace

void addDesktopInvariants(const SoakRun& run, Invariants& invariants) {
  add<TheSpacesAreKnown, TheHistoryIsTheVisits, QueriesSeeCommands, BorrowedThingsAreGivenBack, ErrorsHaveCauses>(
      run, invariants);
}

}  // namespace tallowin

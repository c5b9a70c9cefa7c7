// What the program knows of the desktop, and in what state it leaves it.

#include <algorithm>

#include "tests/soak/random/invariant.h"

namespace tallowin {

namespace {

using Json = nlohmann::ordered_json;

/// The program knows the Spaces as they are, and has told the others.
class TheSpacesAreKnown : public Invariant {
 public:
  using Invariant::Invariant;

  void hear(const Json& record) override {
    const auto action = actionIn(record);
    quiet_ = action == "setMenuBarDisplay" || (quiet_ && record["op"] != "activeSpace");
    if (writtenFile(record) == stateFile || rewrittenFile(record) == stateFile) {
      refused_ = record.contains("error") || !action.empty();
    }
    staysElsewhere_ = staysElsewhere_ || action == "clickDock" || mentions(record, "spaceLock");
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

  const std::string stateFile = supportFolder + "state.json";
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

/// What the program borrowed is given back: the user's hot keys, the mouse button.
class BorrowedThingsAreGivenBack : public Invariant {
 public:
  using Invariant::Invariant;

  void hear(const Json& record) override {
    if (actionIn(record) == "setSymbolicHotKey") {
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
  add<TheSpacesAreKnown, TheHistoryIsTheVisits, BorrowedThingsAreGivenBack, ErrorsHaveCauses>(run, invariants);
}

}  // namespace tallowin

// What the program knows of the desktop, and in what state it leaves it.

#include <map>

#include "tests/soak/random/invariant.h"

namespace tallowin {

namespace {

using Json = nlohmann::ordered_json;

/// The program knows the Spaces as they are, and has told the others.
class TheSpacesAreKnown : public Invariant {
 public:
  using Invariant::Invariant;

  void hear(const Json& record) override {
    const std::string op = record["op"];
    const auto text = record.dump();
    if (op == "activeSpace") {
      quiet_ = false;
    } else if (op == "script" && (text.find("setMenuBarDisplay") != std::string::npos)) {
      quiet_ = true;
    } else if (op == "writeAtomically" && record["path"] == stateFile) {
      refused_ = record.contains("error");
    } else if (rewrittenFile(record) == stateFile) {
      refused_ = true;
    } else if (op == "script" && (text.find("clickDock") != std::string::npos)) {
      staysElsewhere_ = true;
    }
    // Both hold the user back, and then it is where they take the user that counts as visited.
    staysElsewhere_ = staysElsewhere_ || text.find("spaceLock") != std::string::npos;
  }

  void settled() override {
    const bool deaf = run_.scenario.contains("notificationFailures") || run_.scenario.contains("missingFunctions");
    if (!run_.hasIntactSpaces() || !run_.canReadSpaces() || quiet_ || deaf) {
      return;
    }
    const auto active = trueActiveID(run_.state());
    const auto recent = run_.program.delegate->history().recent();
    const auto locks = staysElsewhere_ || run_.scenario.dump().find("spaceLock") != std::string::npos;
    if (!locks && (recent.empty() || recent.front() != active)) {
      run_.fail("the history ends where the user is", active + ", not " + Json(recent).dump());
    }
    if (!refused_) {
      checkState(active);
    }
  }

 private:
  void checkState(const std::string& active) {
    const auto text = run_.program.desktop.files().read(stateFile);
    const auto state = Json::parse(text.value_or(""), nullptr, false);
    auto expected = Json::array();
    for (const auto& space : run_.spaces()) {
      expected.push_back({space.id, space.display, space.active, space.number == 0 ? Json() : Json(space.number)});
    }
    auto seen = Json::array();
    if (state.is_object()) {
      for (const auto& space : state["spaces"]) {
        seen.push_back({space["id"], space["display"], space["isActive"], space["number"]});
      }
    }
    if (seen != expected || state["current"] != active) {
      run_.fail("state.json tells what is", state.dump() + " instead of " + expected.dump());
    }
  }

  const std::string stateFile = supportFolder + "state.json";
  bool refused_ = false;  ///< writing it the last time, or somebody has changed it since
  bool quiet_ = false;    ///< the menu bar has moved, which the system tells nobody
  bool staysElsewhere_ = false;
};

/// What the program borrowed is given back: the user's hot keys, the mouse button.
class BorrowedThingsAreGivenBack : public Invariant {
 public:
  explicit BorrowedThingsAreGivenBack(const SoakRun& run) : Invariant(run), buttons_(run.state().pressedMouseButtons) {
    for (int key = 79; key <= 133; ++key) {
      enabled_[key] = run.state().hotKeys.isEnabled(key);
    }
  }

  void hear(const Json& record) override {
    if (record["op"] == "script" && record["do"] == "setSymbolicHotKey") {
      enabled_.erase(record["hotKey"].get<int>());
    }
    usesMouse_ = usesMouse_ || (record["op"] == "script" && record.dump().find("Mouse\"") != std::string::npos);
  }

  void settled() override {
    for (const auto& [key, enabled] : enabled_) {
      if (run_.state().hotKeys.isEnabled(key) != enabled) {
        run_.fail("what was borrowed is given back", "hot key " + std::to_string(key));
      }
    }
    if (!usesMouse_ && buttons_ == 0 && run_.state().pressedMouseButtons != 0) {
      run_.fail("what was borrowed is given back", "a mouse button is held down");
    }
  }

 private:
  std::map<int, bool> enabled_;
  const std::uint32_t buttons_;
  bool usesMouse_ = false;
};

/// Nothing is an error on a calm desktop, and the program ends only when told to.
class ErrorsHaveCauses : public Invariant {
 public:
  explicit ErrorsHaveCauses(const SoakRun& run) : Invariant(run), isCalm_(run.isCalm()) {}

  void hear(const Json& record) override {
    const std::string op = record["op"];
    if (op == "script" && record.dump().find("&name=b") != std::string::npos) {
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

  const bool isCalm_;
  bool mayEnd_ = false;
};

}  // namespace

void addDesktopInvariants(const SoakRun& run, Invariants& invariants) {
  invariants.push_back(std::make_unique<TheSpacesAreKnown>(run));
  invariants.push_back(std::make_unique<BorrowedThingsAreGivenBack>(run));
  invariants.push_back(std::make_unique<ErrorsHaveCauses>(run));
}

}  // namespace tallowin

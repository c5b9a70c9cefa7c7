// What becomes of windows, and of those who ask for something.

#include <algorithm>
#include <map>
#include <set>

#include "tests/soak/random/invariant.h"

namespace tallowin {

namespace {

using Json = nlohmann::ordered_json;
using namespace std::chrono_literals;

/// When a move is reported, a window that the window server was asked to move is where it should be.
class ReportedMovesHappened : public Invariant {
 public:
  using Invariant::Invariant;

  void hear(const Json& record) override {
    const std::string op = record["op"];
    if (op == "SLSSpaceSetCompatID") {
      compatID_[record["compatID"]] = record["space"];
    } else if (op == "SLSSetWindowListWorkspace") {
      ask(record["windows"], compatID_[record["workspace"]]);
    } else if (op == "SLSMoveWindowsToManagedSpace" || op == "SLSBridgedMoveWindowsToManagedSpaceOperation") {
      ask(record["windows"], record["space"]);
    } else if (op == "move-window") {
      ask({record["window"]}, record["space"]);
    } else if (op == "toast" && record["text"].get<std::string>().starts_with("Moved App") && !oneHappened()) {
      run_.fail("moves that are reported have happened", record.dump());
    }
  }

 private:
  struct Request {
    Duration at;
    WindowNumber window;
    ManagedSpaceID space;
  };

  void ask(const std::vector<WindowNumber>& windows, ManagedSpaceID space) {
    for (const auto window : windows) {
      requests_.push_back({run_.now(), window, space});
    }
  }

  bool oneHappened() {
    std::erase_if(requests_, [&](const Request& request) { return run_.now() - request.at > 2s; });
    // Where the window server was not asked at all, the window was dragged, and nobody says which one.
    return requests_.empty() || std::ranges::any_of(requests_, [&](const Request& request) {
             return std::ranges::count(run_.program.spacesOf(request.window), request.space) > 0;
           });
  }

  std::vector<Request> requests_;
  std::map<std::uint32_t, ManagedSpaceID> compatID_;
};

/// Windows are closed only once what is to bring them back is in the file.
class WindowsAreSavedBeforeTheyAreClosed : public Invariant {
 public:
  using Invariant::Invariant;

  void hear(const Json& record) override {
    if (writtenFile(record) == supportFolder + "saved-spaces.json") {
      savedAt_ = record.contains("error") ? Duration(-1) : run_.now();
    } else if (closes(record) && savedAt_ != run_.now()) {
      run_.fail("windows are saved before they are closed", record.dump());
    }
  }

 private:
  static bool closes(const Json& record) {
    return record["op"] == "close-window" ||
           (record["op"] == "AXUIElementPerformAction" && record["action"] == "AXPress" &&
            record["element"] == Json{{"role", "AXButton"}});
  }

  Duration savedAt_{-1};
};

/// Whoever asks something is answered.
class CallersAreAnswered : public Invariant {
 public:
  using Invariant::Invariant;

  void hear(const Json& record) override {
    static const std::map<std::string, std::string> replies = {{"httpRequest", "respond"},
                                                               {"callDBus", "busReply"},
                                                               {"runIntent", "scriptResult"},
                                                               {"speak", "scriptResult"},
                                                               {"runScriptCommand", "scriptResult"}};
    const auto action = actionIn(record);
    if (const auto reply = replies.find(action); reply != replies.end()) {
      ++open_[reply->second];
    } else if (action == "runCommand") {
      ++callers_;
      const bool mayWait =
          record["arguments"] == Json::array({"watch"}) || record["arguments"] == Json::array({"mark"});
      if (!mayWait) {
        waiting_.insert(callers_);
      }
    } else if (action == "interruptCommand" || (record["op"] == "answer" && record.contains("status"))) {
      waiting_.erase(record["caller"].get<int>());
    } else if (open_.contains(record["op"].get<std::string>())) {
      --open_[record["op"]];
    }
  }

  void settled() override {
    for (const auto& [reply, count] : open_) {
      if (count != 0) {
        run_.fail("callers are answered", "so many without " + reply + ": " + std::to_string(count));
      }
    }
    for (const auto caller : waiting_) {
      run_.fail("callers are answered", "no answer for caller " + std::to_string(caller));
    }
  }

 private:
  int callers_ = 0;
  std::set<int> waiting_;
  std::map<std::string, int> open_;  ///< answers that are still to come, by their kind
};

/// On a calm desktop a switch that nothing comes between arrives.
class SwitchesArrive : public Invariant {
 public:
  using Invariant::Invariant;

  void hear(const Json& record) override {
    if (!isCalm_ || record["op"] != "script") {
      return;
    }
    settled();
    const bool isAlone = run_.now() - lastAt_ > 2500ms && record["do"] != "httpRequest";
    lastAt_ = run_.now();
    target_ = isAlone ? targetOf(record.dump()) : TrueSpace();
  }

  void settled() override {
    const auto all = target_.id.empty() ? std::vector<TrueSpace>() : run_.spaces();
    const auto space = std::ranges::find(all, target_.id, &TrueSpace::id);
    if (run_.now() - lastAt_ > 2s && space != all.end() && !space->active) {
      run_.fail("switches arrive", target_.id);
    }
  }

 private:
  /// Where a switch should lead; nowhere for other actions.
  [[nodiscard]] TrueSpace targetOf(const std::string& action) const {
    static const std::string word = "tallowin://switch/";
    const auto found = action.find(word);
    if (found == std::string::npos) {
      return action.find("tallowin://back") != std::string::npos ? previous() : TrueSpace();
    }
    const auto all = run_.spaces();
    const auto space = std::ranges::find(all, std::stoi(action.substr(found + word.size())), &TrueSpace::number);
    if (space == all.end() || space->number > lastWithHotKey) {
      return {};
    }
    return space->id == run_.activeID() && run_.program.settings.get(setting::backAndForth) ? previous() : *space;
  }

  /// Where the user has been before, as far as it is still there.
  [[nodiscard]] TrueSpace previous() const {
    const auto all = run_.spaces();
    for (const auto& id : run_.recent()) {
      const auto space = std::ranges::find(all, id, &TrueSpace::id);
      if (space != all.end() && id != run_.activeID()) {
        return space->number >= 1 && space->number <= lastWithHotKey ? *space : TrueSpace();
      }
    }
    return {};
  }

  static constexpr int lastWithHotKey = 16;  ///< beyond it, keys go to the pointer's display
  TrueSpace target_{};                       ///< where the last action should lead
  Duration lastAt_ = -1h;
};

}  // namespace

void addWindowInvariants(const SoakRun& run, Invariants& invariants) {
  add<ReportedMovesHappened, WindowsAreSavedBeforeTheyAreClosed, CallersAreAnswered, SwitchesArrive>(run, invariants);
}

}  // namespace tallowin

// What the user said of Spaces is kept.

#include <algorithm>
#include <map>
#include <optional>
#include <set>

#include "base/url.h"
#include "tests/soak/random/invariant.h"

namespace tallowin {

namespace {

using Json = nlohmann::ordered_json;
using namespace std::chrono_literals;

const std::string namesFile = supportFolder + "spaces.json";

class NamesAreKept : public Invariant {
 public:
  explicit NamesAreKept(const SoakRun& run) : Invariant(run) {
    const auto names = run.supportFile("spaces.json");
    for (const auto& [id, record] : names.items()) {
      said_[id] = {{"name", record.value("name", "")}};
    }
  }

  void hear(const Json& record) override {
    const std::string op = record["op"];
    if (op == "script" || op == "spaceAdded" || op == "spaceRemoved") {
      forgetSpacesThatAreGone();
    }
    if (op == "script") {
      hearAction(record);
    } else if (op == "answer") {
      hearAnswer(record["caller"], record.value("status", -1));
    } else if (op == "renameDialog") {
      asked_ = record["id"];
    } else if (writtenFile(record) == namesFile) {
      written_ = !record.contains("error");
      tampered_ = tampered_ && !written_;
      pendingSince_ = written_ ? std::nullopt : pendingSince_;
    } else if (op == "log" && mentions(record, "cannot write " + namesFile)) {
      written_ = false;
    }
    if (known_ && written_ && !tampered_ && run_.now() - pendingSince_.value_or(run_.now()) > 5s) {
      run_.fail("what is accepted is written within 5 seconds", record.dump());
    }
  }

  void ended() override {
    forgetSpacesThatAreGone();
    if (isCalm_) {
      for (const auto& space : run_.spaces()) {
        if (!forgotten_.contains(space.id)) {                    // one that has come back may be known again
          said_[space.id].insert({{"name", ""}, {"note", ""}});  // that nobody has given others
        }
      }
    }
    lookForNames("names are kept");
  }

 private:
  using Said = std::map<std::string, std::string>;  ///< by member: name and note
  struct Edit {
    std::string id;  ///< of the Space
    Said said;
    bool isSavedFirst;  ///< before it is answered
  };
  static constexpr int notSaved = 73;

  /// Everything that was said is in the file, unless that could not be written or was written by others.
  void lookForNames(const std::string& invariant) {
    if (!known_ || tampered_ || !written_) {
      return;
    }
    const auto kept = run_.supportFile("spaces.json");
    for (const auto& [id, said] : said_) {
      for (const auto& [key, value] : said) {
        if (kept.value(id, Json::object()).value(key, "") != value) {
          run_.fail(invariant, id + " should have the " + key + " \"" + value + "\": " + kept.dump());
        }
      }
    }
  }

  /// Names of Spaces that are gone, were it for a moment, may be forgotten.
  void forgetSpacesThatAreGone() {
    const Json list = run_.state().spaces.list();
    if (!list.is_array() || list.empty()) {
      return;  // nothing can be read from it, and nothing may be forgotten
    }
    const auto all = run_.hasIntactSpaces() ? run_.spaces() : std::vector<TrueSpace>();
    std::erase_if(said_, [&](const auto& each) {
      const bool isGone = std::ranges::count(all, each.first, &TrueSpace::id) == 0;
      if (isGone) {
        forgotten_.insert(each.first);
      }
      return isGone;
    });
  }

  void hearAnswer(int caller, int status) {
    const auto found = edits_.find(caller);
    if (found == edits_.end() || (status != 0 && status != notSaved)) {
      return;
    }
    const auto& [id, said, isSavedFirst] = found->second;
    say(id, said);
    if (isSavedFirst && written_) {
      pendingSince_.reset();  // status 73 may tell of another file
    }
    if (isSavedFirst && status == 0) {
      lookForNames("what is acknowledged as saved is in the file");
    }
  }

  void hearAction(const Json& action) {
    const std::string name = action["do"];
    if (name == "runCommand") {
      ++callers_;
      if (auto edit = editIn(action["arguments"])) {
        edits_[callers_] = *std::move(edit);
      }
    } else if (name == "answerRenameDialog" && asked_) {
      if (const auto id = *std::exchange(asked_, std::nullopt); action["name"].is_string()) {
        say(id, {{"name", action["name"]}});
      }
    }
    // A slash is encoded in an address.
    for (const auto* const elsewhere : {"\"use\"", "\"use-automatically\"", "\"apply\"", "profile/", "profile%2F",
                                        "template/", "template%2F", "\"import\"", "\"restore\""}) {
      known_ = known_ && !mentions(action, elsewhere);
    }
    tampered_ = tampered_ || rewrittenFile(action) == namesFile;
  }

  /// What a call says, as far as it says anything. The number counts the desktops as they are now.
  [[nodiscard]] std::optional<Edit> editIn(const std::vector<std::string>& words) const {
    static const std::map<std::string, std::string> members = {{"rename", "name"}, {"note", "note"}};
    const auto word = words.empty() ? "" : words[0];
    if (words.size() > 3 && word == "edit") {
      Edit edit{idOfDesktop(words[1]), {}, true};
      for (std::size_t i = 2; i + 1 < words.size(); i += 2) {
        edit.said[words[i].substr(2)] = words[i + 1];
      }
      return edit;
    }
    if (words.size() == 3 && members.contains(word)) {
      return Edit{idOfDesktop(words[1]), {{members.at(word), words[2]}}, word == "rename"};
    }
    const auto url = URL::parse(word);
    if (!url || !url->host || !members.contains(*url->host) || url->queryItems.empty()) {
      return std::nullopt;
    }
    const auto number = url->pathComponents.empty() ? "" : url->pathComponents.front();
    return Edit{idOfDesktop(number), {{members.at(*url->host), url->queryItems.front().value.value_or("")}}, false};
  }

  /// Empty when only the program can tell.
  [[nodiscard]] std::string idOfDesktop(const std::string& number) const {
    const auto all = run_.hasIntactSpaces() && run_.canReadSpaces() ? run_.spaces() : std::vector<TrueSpace>();
    const auto found = std::ranges::find(all, number, [](const auto& space) { return std::to_string(space.number); });
    return found != all.end() ? found->id : "";
  }

  void say(const std::string& id, const Said& what) {
    pendingSince_ = pendingSince_.value_or(run_.now());
    known_ = known_ && !id.empty();
    for (const auto& [key, value] : what) {
      said_[id][key] = value;
    }
  }

  std::map<std::string, Said> said_;  ///< by Space
  std::set<std::string> forgotten_;   ///< Spaces that something was said of, and that have been gone
  std::map<int, Edit> edits_;         ///< by caller: done once it is answered
  std::optional<std::string> asked_;
  int callers_ = 0;
  bool known_ = true;
  bool written_ = true;
  bool tampered_ = false;
  std::optional<Duration> pendingSince_;  ///< since when something that was said waits to be written
};

/// Keeps a book of its own of who is who where desktops have no identity of their own. Everything that is said of a
/// desktop is kept under its id.
class DesktopsStayThemselves : public Invariant {
 public:
  explicit DesktopsStayThemselves(const SoakRun& run) : Invariant(run) { openBook(); }

  void hear(const Json& record) override {
    const std::string op = record["op"];
    known_ = known_ && !mentions(record, "setManagedDisplaySpaces");
    if (!known_) {
      return;
    }
    if (op == "spaceAdded") {
      book_.push_back(newDesktop());
    } else if (op == "spaceRemoved") {
      std::erase_if(book_, [&](int desktop) { return ids_[desktop] == record["space"]; });
    } else if (op == "desktopCount") {
      count(record["count"]);
    } else if (op == "restorePlaces") {
      restore(record["spaces"]);
    } else if (op == "adoptPlaces") {
      openBook();
    } else {
      return;
    }
    compare();
  }

 private:
  void openBook() {
    known_ = run_.areByPlace() && run_.hasIntactSpaces();
    book_.clear();
    parked_.clear();
    ids_.clear();
    for (const auto& space : known_ ? run_.spaces() : std::vector<TrueSpace>()) {
      book_.push_back(newDesktop());
      ids_[book_.back()] = space.managedID;
    }
  }

  int newDesktop() { return ++lastDesktop_; }

  void count(std::size_t wanted) {
    while (book_.size() > wanted) {
      parked_.push_back(book_.back());
      book_.pop_back();
    }
    while (book_.size() < wanted) {
      book_.push_back(parked_.empty() ? newDesktop() : parked_.back());
      if (!parked_.empty()) {
        parked_.pop_back();
      }
    }
  }

  void restore(const Json& ids) {
    book_.clear();
    for (const auto& id : ids) {
      const auto known = std::ranges::find_if(ids_, [&](const auto& each) { return each.second == id; });
      book_.push_back(known != ids_.end() ? known->first : newDesktop());
    }
  }

  void compare() {
    const auto all = run_.spaces();
    std::set<ManagedSpaceID> others;
    for (const auto& [desktop, id] : ids_) {
      others.insert(id);
    }
    for (std::size_t place = 0; place < book_.size() && place < all.size(); ++place) {
      const auto id = all[place].managedID;
      const auto [known, isNew] = ids_.try_emplace(book_[place], id);
      if (known->second != id || (isNew && others.contains(id))) {
        run_.fail("desktops stay themselves", "desktop " + std::to_string(place + 1) + " has the id " +
                                                  std::to_string(id) + (isNew ? ", which another one had" : ""));
      }
    }
  }

  bool known_ = false;
  std::vector<int> book_;    ///< who stands at which place
  std::vector<int> parked_;  ///< whom others have taken away, the latest last
  std::map<int, ManagedSpaceID> ids_;
  int lastDesktop_ = 0;
};

}  // namespace

void addNameInvariants(const SoakRun& run, Invariants& invariants) {
  add<NamesAreKept, DesktopsStayThemselves>(run, invariants);
}

}  // namespace tallowin

// What the user said of Spaces is kept.

#include <map>
#include <optional>

#include "base/url.h"
#include "tests/soak/random/invariant.h"

namespace tallowin {

namespace {

using Json = nlohmann::ordered_json;
using namespace std::chrono_literals;

const std::string namesFile = supportFolder + "spaces.json";

class NamesAreKept : public Invariant {
 public:
  explicit NamesAreKept(const SoakRun& run) : Invariant(run) { readFirstNames(); }

  void hear(const Json& record) override {
    const std::string op = record["op"];
    if (op == "script" || op == "spaceAdded" || op == "spaceRemoved") {
      forgetSpacesThatAreGone();
    }
    if (op == "script") {
      hearAction(record);
    } else if (op == "answer") {
      hearAnswer(record);
    } else if (op == "renameDialog") {
      asked_ = record["id"];
    } else if (op == "writeAtomically" && record["path"] == namesFile) {
      written_ = !record.contains("error");
      writtenAt_ = run_.now();
      tampered_ = false;
    } else if (op == "log" && record["message"].get<std::string>().find("did not replace") != std::string::npos) {
      mayReplace_ = false;
    }
  }

  void ended() override {
    forgetSpacesThatAreGone();
    const bool saved = saidAt_ < writtenAt_ || (saidAt_ == Duration::zero() && writtenAt_ == Duration::zero());
    if (!known_ || tampered_ || !mayReplace_ || !written_ || run_.now() - saidAt_ < 400ms) {
      return;
    }
    if (!saved) {
      run_.fail("names are kept", "nothing was written after the last change");
    }
    const auto text = run_.program.desktop.files().read(namesFile);
    const auto json = Json::parse(text.value_or("{}"), nullptr, false);
    for (const auto& [id, said] : said_) {
      const auto record = json.is_object() ? json.value(id, Json::object()) : Json::object();
      for (const auto& [key, value] : said) {
        if (record.value(key, "") != value) {
          run_.fail("names are kept", id + " should have the " + key + " \"" + value + "\": " + json.dump());
        }
      }
    }
  }

 private:
  using Said = std::map<std::string, std::string>;  ///< by member: name and note
  struct Edit {
    std::string id;
    Said said;
  };

  void readFirstNames() {
    const auto text = run_.program.desktop.files().read(namesFile);
    const auto json = Json::parse(text.value_or("{}"), nullptr, false);
    if (json.is_object()) {
      for (const auto& [id, record] : json.items()) {
        said_[id] = {{"name", record.value("name", "")}};
      }
    }
  }

  /// Names of Spaces that are gone, were it for a moment, may be forgotten.
  void forgetSpacesThatAreGone() {
    const Json list = run_.state().spaces.list();
    if (!list.is_array() || list.empty()) {
      return;  // nothing can be read from it, and nothing may be forgotten
    }
    if (!run_.hasIntactSpaces()) {
      said_.clear();
      return;
    }
    const auto all = run_.spaces();
    std::erase_if(said_, [&](const auto& each) { return std::ranges::count(all, each.first, &TrueSpace::id) == 0; });
  }

  void hearAction(const Json& action) {
    const std::string name = action["do"];
    const auto text = action.dump();
    if (name == "runCommand") {
      edits_[++callers_] = editIn(action["arguments"]);
    } else if (name == "answerRenameDialog" && asked_) {
      if (const auto id = *std::exchange(asked_, std::nullopt); action["name"].is_string()) {
        say(Edit{id, Said{{"name", action["name"].get<std::string>()}}});
      }
    }
    if (text.find("\"use\"") != std::string::npos || text.find("profile/") != std::string::npos ||
        text.find("template/") != std::string::npos || text.find("\"import\"") != std::string::npos) {
      known_ = false;  // names from elsewhere
    }
    tampered_ = tampered_ || rewrittenFile(action) == namesFile;
  }

  /// What a call says, as far as it says anything. The number counts the desktops as they are now.
  std::optional<Edit> editIn(const std::vector<std::string>& words) {
    const auto url = words.empty() ? std::nullopt : URL::parse(words[0]);
    if (words.size() > 3 && words[0] == "edit") {
      Edit edit{idOfDesktop(words[1]), {}};
      for (std::size_t i = 2; i + 1 < words.size(); i += 2) {
        edit.said[words[i].substr(2)] = words[i + 1];
      }
      return edit;
    }
    if (!url || (url->host != "rename" && url->host != "note") || url->queryItems.empty()) {
      return std::nullopt;
    }
    const auto number = url->pathComponents.empty() ? "" : url->pathComponents.front();
    const auto member = url->host == "rename" ? "name" : "note";
    return Edit{idOfDesktop(number), {{member, url->queryItems.front().value.value_or("")}}};
  }

  std::string idOfDesktop(const std::string& number) {
    if (run_.hasIntactSpaces() && run_.canReadSpaces()) {
      for (const auto& space : run_.spaces()) {
        if (std::to_string(space.number) == number) {
          return space.id;
        }
      }
    }
    return "";
  }

  void hearAnswer(const Json& record) {
    const auto edit = edits_.find(record["caller"]);
    if (edit != edits_.end() && edit->second && record.value("status", -1) == 0) {
      say(*edit->second);
    }
  }

  void say(const Edit& edit) {
    saidAt_ = run_.now();
    if (edit.id.empty()) {
      known_ = false;  // of a Space that only the program can tell
      return;
    }
    for (const auto& [key, value] : edit.said) {
      said_[edit.id][key] = value;
    }
  }

  std::map<std::string, Said> said_;          ///< by Space
  std::map<int, std::optional<Edit>> edits_;  ///< by caller: done once it is answered
  std::optional<std::string> asked_;
  int callers_ = 0;
  bool known_ = true;
  bool written_ = true;
  bool tampered_ = false;
  bool mayReplace_ = true;
  Duration saidAt_ = Duration::zero();
  Duration writtenAt_ = Duration::zero();
};

}  // namespace

void addNameInvariants(const SoakRun& run, Invariants& invariants) {
  invariants.push_back(std::make_unique<NamesAreKept>(run));
}

}  // namespace tallowin

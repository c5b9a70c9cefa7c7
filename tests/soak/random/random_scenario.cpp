#include "tests/soak/random/random_scenario.h"

#include <algorithm>

#include "base/url.h"

namespace tallowin {

namespace {

using Json = nlohmann::ordered_json;

/// What happens, so often among others. A list happens one after the other, in quick succession.
struct Event {
  int weight;
  const char* pattern;
};

constexpr Event calmEvents[] = {
    {18, R"({"do": "switchSpace", "space": "$space"})"},
    {8, R"({"command": "switch/$number"})"},
    {5, R"({"command": "move-window/$number"})"},
    {5, R"({"command": "?next|previous|up|down|back|overview|settings|diagnostics|launcher|scratchpad|demo-tour"})"},
    {5, R"({"command": "?save-layout|restore-layout|eject|windows/all|minimize-all|undo-minimize|save-space"})"},
    {4, R"({"command": "?add-desktop|remove-desktop/$number|setup/$number|notes/$number|rename/$number|nothing"})"},
    {3, R"({"command": "?move-window/next|move-window/previous|profile/Work|template/Mine"})"},
    {8, R"({"do": "runCommand", "arguments": ["edit", "$number", "--name", "$words", "--note", "$words"]})"},
    {3, R"({"do": "runCommand", "arguments": ["tallowin://rename/$number?name=$encoded"]})"},
    {3, R"({"do": "runCommand", "arguments": ["tallowin://note/$number?text=$encoded"]})"},
    {3, R"({"do": "runCommand", "arguments": ["?rename|note", "$number", "$words"]})"},
    {1, R"({"do": "runCommand", "arguments": ["?profile|template", "?use|apply|use-automatically", "?Work|Mine"]})"},
    {6,
     R"([{"do": "runCommand", "arguments": ["tallowin://switch/$number"]},
         {"do": "runCommand", "arguments": ["current", "--json"]}])"},
    {3, R"({"do": "openWindow", "number": "$window", "pid": "$pid", "title": "$words", "space": "$space"})"},
    {2, R"({"do": "closeWindow", "number": "$window"})"},
    {2, R"({"do": "moveWindow", "number": "$window", "space": "$space"})"},
    {1, R"({"do": "retitleWindow", "number": "$window", "title": "$words"})"},
    {1, R"({"do": "minimizeWindow", "number": "$window", "minimized": "$flag"})"},
    {2, R"({"do": "launchApplication", "name": "App104", "pid": 104, "bundleID": "org.example.App104"})"},
    {3, R"({"do": "?activateApplication|hideApplication|unhideApplication|quitApplication", "pid": "$pid"})"},
    {2, R"({"do": "movePointer", "to": ["$x", "$y"]})"},
    {5, R"({"do": "addSpace"})"},
    {3, R"({"do": "removeSpace", "space": "$space"})"},
    {2, R"({"do": "setDesktopCount", "count": "$few"})"},
    {1, R"({"do": "runCommand", "arguments": ["list", "--json"]})"},
    {1, R"({"do": "runCommand", "arguments": ["watch"]})"},
    {2, R"({"do": "runCommand", "arguments": ["?windows|saved-spaces|current|diagnostics|mark|bogus"]})"},
    {2, R"({"do": "runCommand", "arguments": ["?mark|jump", "a"]})"},
    {1, R"({"do": "runCommand", "arguments": ["?reopen|answer", "?Desktop 1|Restore|Mail"]})"},
    {2, R"({"do": "runCommand", "arguments": ["pin", "App$pid", "$number"]})"},
    {2, R"({"do": "runCommand", "arguments": ["profile", "?save|use|delete", "Work"]})"},
    {1, R"({"do": "runCommand", "arguments": ["?export|import", "/home/user/all.json"]})"},
    {2, R"({"do": "runCommand", "arguments": ["restore", "$number"]})"},
    {1, R"({"do": "runCommand", "arguments": ["time", "--csv", "/home/user/times.csv"]})"},
    {2, R"({"do": "httpRequest", "target": "/spaces"})"},
    {1, R"({"do": "runIntent", "intent": "SwitchSpaceIntent", "parameters": {"space": "$number"}})"},
    {1, R"({"do": "runScriptCommand", "class": "TWMoveWindowCommand", "directParameter": "$number"})"},
    {1, R"({"do": "speak", "phrase": "Go back to my last space in Tallowin"})"},
    {1, R"({"do": "?listenToDBus|renamePlist|sleepScreens|wakeScreens|wake"})"},
    {2, R"({"do": "answerRenameDialog", "name": "$words"})"},
    {1, R"({"do": "answerRenameDialog", "name": null})"},
    {1, R"({"do": "runCommand", "arguments": ["time", "--days", "1", "--json"]})"},
    {1, R"({"do": "jumpClock", "by": "$jump"})"},
    {4, R"({"do": "setPreference", "key": "?timeTracking|backAndForth|localAPI|spaceLock|wrapAround|restoreFocus|)"
        R"(followMovedWindow|askToNameNewSpaces|autoSaveLayout|hideEmptySpaces", "value": "$flag"})"},
};

constexpr Event faultyEvents[] = {
    {2, R"({"do": "?fillDisk|freeDisk"})"},
    {1, R"({"do": "fillDisk", "room": "$room"})"},
    {2, R"({"do": "failDisk", "stage": "?open|write|flush|rename|folder"})"},
    {2, R"({"do": "?makeUnwritable|makeWritable", "path": "$path"})"},
    {2, R"({"do": "?corruptFile|deleteFile", "path": "$path"})"},
    {1, R"({"do": "writeFile", "path": "$path", "text": "{torn", "replace": "$flag"})"},
    {2, R"({"do": "setPermission", "permission": "?accessibility|screenRecording", "allowed": "$flag"})"},
    {1, R"({"do": "?lockScreen|unlockScreen"})"},
    {2, R"({"do": "bounceDock", "count": "$few", "after": "$moment"})"},
    {2, R"({"do": "?pressMouse|releaseMouse|clickDock"})"},
    {1, R"({"do": "setManagedDisplaySpaces", "list": "$malformed"})"},
    {1, R"({"do": "setManagedDisplaySpaces", "list": null})"},
    {1, R"({"do": "setMenuBarDisplay", "display": "D15B0000-0000-4000-8000-00000000000$id"})"},
    {2, R"({"do": "setResponseTime", "pid": "$pid", "responseTime": null})"},
    {3, R"({"do": "setRequests", "ignored": ["?switch|add-space|remove-space|move-window|raise-window"]})"},
    {2, R"({"do": "setRequests", "time": "$while", "partly": ["?remove-space|set-frame"]})"},
    {2, R"({"do": "setRequests", "signs": "?exact|early|never", "tornFor": "$moment"})"},
    {2, R"({"do": "setRequests", "time": 0.001, "impossible": [], "ignored": [], "partly": [], "signs": "exact"})"},
    {1, R"({"do": "setSymbolicHotKey", "hotKey": "$key", "binding": null})"},
    {1, R"({"do": "interruptCommand", "caller": "$caller"})"},
    {1, R"({"do": "httpRequest", "text": "?GET|POST /command HTTP/1.1"})"},
    {1, R"([{"command": "move-window/$number"}, {"do": "quitApplication", "pid": "$pid"}])"},
    {1, R"([{"command": "move-window/$number"}, {"do": "closeWindow", "number": "$window"}])"},
    {4, R"([{"displayComes": "$flag"}])"},
    {2,
     R"([{"displayComes": true}, {"displayComes": false}, {"displayComes": true}, {"displayComes": false},
         {"displayComes": "$flag"}, {"displayComes": "$flag"}, {"displayComes": "$flag"}])"},
};

constexpr auto mending = R"json([{"do": "freeDisk"}, {"do": "unlockScreen"},
    {"do": "setRequests", "time": 0.001, "impossible": [], "ignored": [], "partly": [], "signs": "exact"},
    {"do": "makeWritable", "path": "~/.local/share/Tallowin"},
    {"do": "makeWritable", "path": "~/.local/share/Tallowin/spaces.json"},
    {"do": "makeWritable", "path": "~/.local/share/Tallowin/stats.json"},
    {"do": "makeWritable", "path": "~/.local/share/Tallowin/state.json"},
    {"do": "runCommand", "arguments": ["edit", "$number", "--name", "$words"]}])json";

constexpr auto endOfStory = R"([{"do": "switchSpace", "space": "$space"}, {"do": "switchSpace", "space": "$space"}])";

/// Writes a script, event after event.
class ScriptDrawer {
 public:
  ScriptDrawer(Dice& dice, bool calm) : dice_(dice), calm_(calm) {}

  Json draw() {
    const int steps = dice_.chance(70) ? dice_.pick(3, 25) : dice_.pick(25, 90);
    for (int i = 0; i < steps; ++i) {
      const int kind = dice_.pick(1, 100);
      milliseconds_ += dice_.pick(0, kind <= 20   ? 1
                                     : kind <= 50 ? 200
                                     : kind <= 94 ? 4000
                                     : kind <= 98 ? 60'000
                                     : kind <= 99 ? 400'000
                                                  : 30'000'000);
      add(calm_ || dice_.chance(80) ? drawn(calmEvents) : drawn(faultyEvents));
    }
    end();
    return script_;
  }

 private:
  template <std::size_t size>
  const char* drawn(const Event (&events)[size]) {
    int sum = 0;
    for (const auto& event : events) {
      sum += event.weight;
    }
    int at = dice_.pick(1, sum);
    return std::ranges::find_if(events, [&](const Event& event) { return (at -= event.weight) <= 0; })->pattern;
  }

  void add(std::string_view pattern) {
    const auto event = dice_.fill(pattern);
    for (const auto& action : event.is_array() ? event : Json::array({event})) {
      Json entry = {{"at", milliseconds_ / 1000.0}};
      entry.update(action.contains("command")        ? command(action["command"])
                   : action.contains("displayComes") ? display(action["displayComes"])
                                                     : action);
      script_.push_back(std::move(entry));
      milliseconds_ += event.is_array() ? dice_.pick(0, 90) : 0;
    }
  }

  /// A command through any of the channels.
  Json command(const std::string& rest) {
    const auto url = "tallowin://" + rest;
    const auto target = "/command?url=" + percentEncoded(url);
    const auto* const token = dice_.chance(90) ? "Bearer 5e7f2c1a" : "Bearer wrong";
    const Json words = Json::array({url});
    const auto slash = std::min(rest.find('/'), rest.size());
    const auto plain =
        slash == rest.size() ? Json::array({rest}) : Json::array({rest.substr(0, slash), rest.substr(slash + 1)});
    return dice_.oneOf(std::to_array<Json>({
        {{"do", "openURL"}, {"url", url}},
        {{"do", "callDBus"}, {"member", "Perform"}, {"arguments", words}},
        {{"do", "httpRequest"}, {"method", "POST"}, {"target", target}, {"headers", {{"Authorization", token}}}},
        {{"do", "runCommand"}, {"arguments", words}},
        {{"do", "runCommand"}, {"arguments", plain}},
        {{"do", "callDBus"}, {"member", "Do"}, {"arguments", Json::array({plain})}},
    }));
  }

  Json display(bool comes) {
    const int id = dice_.pick(1, 3);
    Json action = {{"do", comes ? "connectDisplay" : "disconnectDisplay"}};
    action.update(comes ? displayRecord(id) : Json{{"id", id}});
    return action;
  }

  /// Mostly the faults of the machine are mended first, and something is said and done then. Long after that the end
  /// comes, or, as for a session that is logged out of, at any time.
  void end() {
    if (dice_.chance(20)) {
      milliseconds_ += dice_.pick(0, 6000);
      add(R"({"do": "runCommand", "arguments": ["tallowin://rename/$number?name=$encoded"]})");
      milliseconds_ += dice_.pick(0, 600);
      add(R"({"do": "quit"})");
      return;
    }
    milliseconds_ += 3000;
    if (!calm_ && dice_.chance(70)) {
      add(mending);
    }
    add(endOfStory);
    milliseconds_ += 20'000;
    add(R"({"do": "runCommand", "arguments": ["list", "--json"]})");
    milliseconds_ += 100;
    add(R"({"do": "quit"})");
  }

  Dice& dice_;
  const bool calm_;
  int milliseconds_ = 0;
  Json script_ = Json::array();
};

}  // namespace

bool isCalmAction(const std::string& name) {
  // The last ones are those of every script.
  return std::ranges::any_of(calmEvents,
                             [&](const Event& event) {
                               return std::string_view(event.pattern).find(name) != std::string_view::npos;
                             }) ||
         std::ranges::count(std::to_array<std::string>({"openURL", "callDBus", "quit"}), name) > 0;
}

Json drawScenario(std::uint64_t number) {
  Dice dice(number);
  const bool calm = dice.chance(25);
  auto scenario = drawDesktop(dice, calm);
  scenario["script"] = ScriptDrawer(dice, calm).draw();
  return scenario;
}

}  // namespace tallowin

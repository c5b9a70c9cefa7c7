// Every command of the vocabulary is carried out the same way, through whichever channel it comes.

#include <algorithm>
#include <gtest/gtest.h>
#include <set>

#include "commands/command_url.h"
#include "commands/dbus/desktop_methods.h"
#include "tests/resident_program.h"

namespace tallowin {
namespace {

using Json = nlohmann::ordered_json;

/// One way to use a command.
struct Use {
  std::size_t command;      ///< which alternative of SpaceCommand
  const char* url;          ///< after "tallowin://"
  const char* words;        ///< on a command line, as JSON; null where there are none
  const char* method;       ///< of the D-Bus object
  const char* arguments;    ///< for it, as JSON
  const char* seen;         ///< what the journal or a file then says, and does not say without the command
  const char* before = "";  ///< a command that comes a second earlier
};

// [1 Mail] 2 3 4      windows on 1: Editor, Mail      on 2: Player      visited: 2, then 1
constexpr Use uses[] = {
    {0, "switch/3", R"(["switch","3"])", "SwitchTo", R"(["3"])", R"("activeSpace","display":"Main","space":3)"},
    {1, "next", R"(["next"])", "Step", "[true]", R"("activeSpace","display":"Main","space":2)"},
    {2, "move-window/3", R"(["move-window","3"])", "MoveWindow", R"(["3"])",
     R"("toast","text":"Moved Editor to Desktop 3")"},
    {3, "move-window/next", R"(["move-window","next"])", "MoveWindowStep", "[true]",
     R"("toast","text":"Moved Editor to Desktop 2")"},
    {4, "rename/3?name=Garden", R"(["rename","3","Garden"])", "Rename", R"(["3","Garden"])",
     R"("publishDesktopNames","names":{"1":"Mail","3":"Garden"})"},
    {4, "rename/3", nullptr, "AskForName", R"(["3"])", R"("renameDialog","id":"5ACE0000-0000-4000-8000-000000000003")"},
    {5, "note/3?text=water", R"(["note","3","water"])", "Note", R"(["3","water"])", R"(\"note\": \"water\")"},
    {5, "note/3", nullptr, "AskForNote", R"(["3"])", R"("openURL","url":"file:///home/user/Documents)"},
    {6, "setup/3", R"(["setup","3"])", "Setup", R"(["3"])",
     R"("settingsWindow","tab":"spaces","spaceID":"5ACE0000-0000-4000-8000-000000000003")"},
    {7, "profile/Work", R"(["profile","use","Work"])", "Profile", R"(["Work"])", R"("toast","text":"Profile: Work")"},
    {8, "template/Mine", R"(["template","apply","Mine"])", "Template", R"(["Mine"])",
     R"("toast","text":"Applied Mine template")"},
    {9, "windows/all", R"(["search","--all"])", "Windows", "[true]", R"("windowPanel","allSpaces":true)"},
    {10, "remove-desktop/4", R"(["remove-desktop","4"])", "RemoveDesktop", R"(["4"])",
     R"("spaceRemoved","display":"Main","space":4)"},
    {11, "notes/3", R"(["notes","3"])", "Notes", R"(["3"])", R"("openURL","url":"file:///home/user/Documents)"},
    {12, "down", R"(["down"])", "Step2D", "[false]", R"("activeSpace","display":"Main","space":3)"},
    {13, "back", R"(["back"])", "Back", "[]", R"("activeSpace","display":"Main","space":2)"},
    {14, "overview", R"(["overview"])", "Overview", "[]", R"("overview","shown":true)"},
    {15, "settings", R"(["settings"])", "Settings", "[]", R"("settingsWindow","tab":null)"},
    {16, "diagnostics", R"(["copy-diagnostics"])", "Diagnostics", "[]", R"("toast","text":"Diagnostics copied")"},
    {17, "save-layout", R"(["save-layout"])", "SaveLayout", "[]",
     R"("toast","text":"Saved the position of 3 windows")"},
    {18, "restore-layout", R"(["restore-layout"])", "RestoreLayout", "[]",
     R"("toast","text":"Put 0 windows back on their Spaces")", "save-layout"},
    {19, "eject", R"(["eject"])", "Eject", "[]", R"("toast","text":"Moved 0 windows off external displays)"},
    {20, "launcher", R"(["launcher"])", "Launcher", "[]", R"("launcher")"},
    {21, "scratchpad", R"(["scratchpad"])", "Scratchpad", "[]", R"("toast","text":"Choose a scratchpad app)"},
    {22, "minimize-all", R"(["minimize-all"])", "MinimizeAll", "[]", R"("toast","text":"Minimized 2 windows.)"},
    {23, "undo-minimize", R"(["undo-minimize"])", "UndoMinimize", "[]", R"("attribute":"AXMinimized","value":false)",
     "minimize-all"},
    {24, "save-space", R"(["save-space"])", "SaveAndClose", "[]",
     R"("toast","text":"Saved Mail with 2 apps and closed its windows")"},
    {25, "add-desktop", R"(["add-desktop"])", "AddDesktop", "[]", R"("spaceAdded","display":"Main","space":5)"},
    {26, "demo-tour", R"(["demo-tour"])", "DemoTour", "[]", R"("toast","text":"Turn on demo mode first")"},
};

constexpr bool eachIsUsed() {
  for (std::size_t command = 0; command < std::variant_size_v<SpaceCommand>; ++command) {
    if (std::ranges::count(uses, command, &Use::command) == 0) {
      return false;
    }
  }
  return true;
}
static_assert(eachIsUsed(), "a command has no row in the table");

constexpr auto token = "5e7f2c1a";

std::string urlOf(const char* rest) {
  return std::string("tallowin://") + rest;
}

/// The actions by which a command comes: by name of its channel, for the script.
std::map<std::string, Json> channels(const Use& use) {
  const auto url = urlOf(use.url);
  const Json headers = {{"Authorization", std::string("Bearer ") + token}};
  std::map<std::string, Json> all = {
      {"the system", {{"do", "openURL"}, {"url", url}}},
      {"the command line", {{"do", "runCommand"}, {"arguments", {url}}}},
      {"HTTP",
       {{"do", "httpRequest"},
        {"method", "POST"},
        {"target", "/command?url=" + percentEncoded(url)},
        {"headers", headers}}},
      {"D-Bus", {{"do", "callDBus"}, {"member", use.method}, {"arguments", Json::parse(use.arguments)}}}};
  if (use.words != nullptr) {
    all["words"] = {{"do", "runCommand"}, {"arguments", Json::parse(use.words)}};
  }
  return all;
}

/// The desktop that all start from, on which `actions` happen 3 seconds after the start.
std::string scenarioWith(const Use& use, const std::vector<Json>& actions) {
  auto scenario = Json::parse(R"json({
    "end": 9,
    "preferences": {"localAPI": true, "gridColumns": 2, "thumbnailsEnabled": false},
    "applications": [
      {"name": "Editor", "pid": 100, "bundleID": "org.example.Editor", "active": true},
      {"name": "Mail", "pid": 200, "bundleID": "org.example.Mail"},
      {"name": "Player", "pid": 300, "bundleID": "org.example.Player"}
    ],
    "windows": [
      {"number": 11, "pid": 100, "title": "one", "frame": [10, 20, 600, 400], "space": 1},
      {"number": 21, "pid": 200, "title": "Inbox", "frame": [50, 60, 500, 300], "space": 1},
      {"number": 31, "pid": 300, "title": "film", "space": 2}
    ],
    "files": {
      "~/.local/share/Tallowin/api-token.txt": "5e7f2c1a",
      "~/.local/share/Tallowin/spaces.json": "{\"5ACE0000-0000-4000-8000-000000000001\": {\"name\": \"Mail\"}}",
      "~/mine.json": "{\"name\": \"Mine\", \"summary\": \"One.\", \"slots\": [{\"name\": \"One\"}]}"
    },
    "script": [
      {"at": 0.4, "do": "runCommand", "arguments": ["template", "import", "/home/user/mine.json"]},
      {"at": 0.5, "do": "runCommand", "arguments": ["profile", "save", "Work"]},
      {"at": 1, "do": "switchSpace", "space": 2},
      {"at": 1.5, "do": "switchSpace", "space": 1}
    ]})json");
  auto& script = scenario["script"];
  if (*use.before != '\0') {
    script.push_back({{"at", 2}, {"do", "openURL"}, {"url", urlOf(use.before)}});
  }
  for (auto action : actions) {
    action["at"] = 3;
    script.push_back(std::move(action));
  }
  return scenario.dump();
}

/// What the program did to the desktop from that time on, and its files at the end; how a command came is left out.
std::vector<std::string> story(const std::string& scenario) {
  ResidentProgram program(scenario);
  program.begin();
  program.time.run();
  const std::set<std::string> transport = {"script", "answer", "respond", "busReply", "restrictMode"};
  std::erase_if(program.lines, [&](const std::string& line) {
    const auto record = Json::parse(line);
    return record["t"] < 3 || transport.contains(record["op"]);
  });
  program.lines.push_back(Json(program.files().contents()).dump());
  return program.lines;
}

bool says(const std::vector<std::string>& lines, const std::string& text) {
  return std::ranges::any_of(lines, [&](const std::string& line) { return line.find(text) != std::string::npos; });
}

TEST(EveryCommand, IsCarriedOutTheSameWayThroughEveryChannel) {
  for (const auto& use : uses) {
    EXPECT_EQ(commandFromURL(*URL::parse(urlOf(use.url)))->value().index(), use.command) << use.url;
    const auto without = story(scenarioWith(use, {}));
    EXPECT_FALSE(says(without, use.seen)) << use.url << " is seen to be done when nobody asks for it";
    std::vector<std::string> first;
    for (const auto& [channel, action] : channels(use)) {
      const auto lines = story(scenarioWith(use, {action}));
      EXPECT_TRUE(says(lines, use.seen)) << use.url << " through " << channel;
      first = first.empty() ? lines : first;
      const bool isSavedSooner = channel == "words" && std::string_view(use.url).starts_with("rename");
      EXPECT_TRUE(lines == first || isSavedSooner) << use.url << " through " << channel;
    }
  }
}

TEST(EveryCommand, HasAllMethodsOfTheBusAmongItsUses) {
  const ScriptingBridge bridge;
  for (const auto& method : desktopMethods(bridge, {}, {}, "")) {
    const auto& name = method.declared.name;
    const bool isOther =
        method.interface != commandInterface || name.ends_with("Intent") || name == "Perform" || name == "Do";
    EXPECT_TRUE(isOther || std::ranges::any_of(uses, [&](const Use& use) { return use.method == name; })) << name;
  }
}

}  // namespace
}  // namespace tallowin

// The resident program through a day of a busy user, checked at every step against a second opinion on its rules.

#include <cmath>
#include <deque>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <iostream>
#include <iterator>
#include <random>

#include "tests/resident_program.h"
#include "tests/soak/busy_desktop.h"
#include "tests/soak/day_model.h"

namespace tallowin {
namespace {

using namespace std::chrono_literals;
using Json = nlohmann::ordered_json;

const std::string support = "/home/user/.local/share/Tallowin/";

class BusyDay {
 public:
  explicit BusyDay(std::uint64_t start) : random_(start), program_(desktopAt(pick<unsigned>(0, 23))) {
    program_.begin();
    // What came before is at the same instant.
    for (const auto& line : program_.lines) {
      hear(line);
    }
    program_.onLine = [this](const std::string& line) { hear(line); };
    settings_ = program_.preferences.observe([this] { model_.settingsSeen(program_.time.now()); });
  }

  /// Lives through it, until something is wrong.
  void live() {
    const auto nap = Duration(pick<std::int64_t>(1, 17)) * 3'600'000'000'000;
    bool rested = false;
    while (program_.time.elapsed() < 24h && !::testing::Test::HasFailure()) {
      const bool sleepsIn = !std::exchange(rested, program_.time.elapsed() >= nap) && rested;
      step(sleepsIn ? 5h + pick<int>(0, 119) * 1min : pause());
    }
    program_.time.advance(20s);
    check();
    if (::testing::Test::HasFailure()) {
      std::ranges::copy(lastActions_, std::ostream_iterator<Json>(std::cout, "\n"));
      std::ranges::copy(program_.lines, std::ostream_iterator<std::string>(std::cout, "\n"));
    }
    std::cout << steps_ << " steps, " << visits_ << " visits, " << checks_ << " checks\n";
  }

 private:
  struct Said {
    std::string name;
    std::string note;
    bool operator==(const Said&) const = default;
  };

  template <typename Number>
  Number pick(Number least, Number most) {
    return std::uniform_int_distribution<Number>(least, most)(random_);
  }
  bool chance(int percent) { return pick(1, 100) <= percent; }

  /// A text as users write them, sometimes none.
  std::string words() {
    static const std::vector<std::string> all = {"",           "Mail",         "mail", "Größe & more",
                                                 "a/b?c#d%20", "\"q\" \\ 'z'", "日本", "x y"};
    return all[pick<std::size_t>(0, all.size() - 1)];
  }

  Duration pause() {
    const auto kind = pick(1, 100);
    const auto most = kind <= 40 ? 200 : kind <= 85 ? 9'000 : kind <= 97 ? 60'000 : 240'000;
    return pick(0, most) * 1ms;
  }

  std::vector<TrueSpace> spaces() { return trueSpaces(program_.state()); }
  std::string activeID() { return trueActiveID(program_.state()); }
  bool exists(const std::string& id) { return std::ranges::count(spaces(), id, &TrueSpace::id) == 1; }

  // What the program does.

  void hear(const std::string& line) {
    const auto record = Json::parse(line);
    const std::string op = record["op"];
    if (op == "hud") {
      EXPECT_TRUE(exists(record["id"])) << line;
      model_.visit(record["id"], program_.time.now());
      ++visits_;
    } else if (op == "renameDialog") {
      asked_ = record["id"];
    } else if (op == "answer" && record.contains("out")) {
      printed_ = record["out"];
    }
    EXPECT_FALSE(op == "terminate" || (op == "log" && record["level"] == "error" &&
                                       record["message"].get<std::string>().find("bounce") == std::string::npos))
        << line;
    if (op != "writeAtomically" && op != "respond" && op != "answer") {
      lastEvent_ = program_.time.elapsed();
    }
  }

  // What the user does.

  void act(Json action) {
    action["at"] = std::chrono::duration<double>(program_.time.elapsed()).count();
    lastActions_.push_back(action);
    if (lastActions_.size() > 40) {
      lastActions_.pop_front();
    }
    action["at"] = 0;
    const auto scenario = Scenario::parse(Json{{"script", Json::array({action})}}.dump());
    ASSERT_TRUE(scenario) << scenario.error();
    lastEvent_ = program_.time.elapsed();
    scenario->script.front().perform(program_.desktop);
  }

  void ask(const std::vector<std::string>& arguments) { act({{"do", "runCommand"}, {"arguments", arguments}}); }

  /// Gives a command through any of the channels.
  void command(const std::string& rest) {
    const auto url = "tallowin://" + rest;
    switch (pick(1, 4)) {
      case 1:
        return act({{"do", "openURL"}, {"url", url}});
      case 2:
        return ask({url});
      case 3:
        return act({{"do", "callDBus"}, {"member", "Perform"}, {"arguments", Json::array({url})}});
      default:
        return act({{"do", "httpRequest"},
                    {"method", "POST"},
                    {"target", "/command?url=" + percentEncoded(url)},
                    {"headers", {{"Authorization", "Bearer 5e7f2c1a"}}}});
    }
  }

  void say(std::size_t number) {
    const auto name = words();
    const auto note = words();
    auto& said = said_[spaces()[number - 1].id];
    if (chance(50)) {
      ask({"edit", std::to_string(number), "--name", name, "--note", note});
      said = {name, note};
    } else if (chance(50)) {
      command("rename/" + std::to_string(number) + "?name=" + percentEncoded(name));
      said.name = name;
    } else {
      command("note/" + std::to_string(number) + "?text=" + percentEncoded(note));
      said.note = note;
    }
  }

  void answerDialog() {
    const auto name = words();
    if (asked_ && exists(*asked_)) {
      const bool cancels = chance(30);
      const auto id = *std::exchange(asked_, std::nullopt);
      if (!cancels) {
        said_[id].name = name;
      }
      act({{"do", "answerRenameDialog"}, {"name", cancels ? Json() : Json(name)}});
    }
  }

  /// Commands whose outcome is the business of other tests.
  void useSomething(std::size_t number) {
    const std::vector<std::string> all = {"next",
                                          "previous",
                                          "up",
                                          "down",
                                          "move-window/next",
                                          "move-window/" + std::to_string(number),
                                          "save-layout",
                                          "restore-layout",
                                          "minimize-all",
                                          "undo-minimize",
                                          "eject",
                                          "windows",
                                          "launcher",
                                          "settings",
                                          "diagnostics",
                                          "scratchpad"};
    command(all[pick<std::size_t>(0, all.size() - 1)]);
  }

  void useWindows() {
    const auto number = pick(10, 40);
    const auto all = spaces();
    const auto space = all[pick<std::size_t>(0, all.size() - 1)].managedID;
    const auto pid = pick(100, 105);
    switch (pick(1, 8)) {
      case 1:
      case 2:
        return act({{"do", "openWindow"}, {"number", number}, {"pid", pid}, {"title", words()}, {"space", space}});
      case 3:
        return act({{"do", "closeWindow"}, {"number", number}});
      case 4:
        return act({{"do", "moveWindow"}, {"number", number}, {"space", space}});
      case 5:
        return act({{"do", "retitleWindow"}, {"number", number}, {"title", words()}});
      case 6:
        return act({{"do", "launchApplication"},
                    {"name", "App" + std::to_string(pid)},
                    {"pid", pid},
                    {"active", true},
                    {"bundleID", "org.example.app" + std::to_string(pid)}});
      case 7:
        return act({{"do", chance(80) ? "activateApplication" : "hideApplication"}, {"pid", pid}});
      default:
        return act({{"do", "quitApplication"}, {"pid", pid}});
    }
  }

  void changeDesktops(std::size_t number) {
    const auto all = spaces();
    const auto& space = all[number - 1];
    switch (pick(1, 8)) {
      case 1:
      case 2:
      case 3:
        return all.size() < 30 ? act({{"do", "addSpace"}, {"display", space.display}}) : void();
      case 4:
        return act({{"do", "removeSpace"}, {"space", space.managedID}});
      case 5:
        return command(chance(50) && all.size() < 30 ? "add-desktop" : "remove-desktop/" + std::to_string(number));
      case 6:
        movePointer();  // systems let it not stay where no display is
        return act({{"do", "disconnectDisplay"}, {"id", 2}});
      default:
        return act({{"do", "connectDisplay"},
                    {"id", 2},
                    {"uuid", outerDisplay},
                    {"bounds", Json::array({1440, 0, 1920, 1080})}});
    }
  }

  void movePointer(int most = 1439) {
    act({{"do", "movePointer"}, {"to", Json::array({pick(0, most), pick(0, 800)})}});
  }

  void changeSetting() {
    const std::vector<std::string> keys = {"wrapAround",        "backAndForth",       "restoreFocus",
                                           "followMovedWindow", "askToNameNewSpaces", "timeTracking",
                                           "autoSaveLayout",    "hideEmptySpaces",    "timeTracking"};
    const auto& key = keys[pick<std::size_t>(0, keys.size() - 1)];
    const bool value = chance(70);
    if (key == "timeTracking") {
      model_.tracking = value;
    }
    act({{"do", "setPreference"}, {"key", key}, {"value", value}});
  }

  void sleepOrWake() {
    asleep_ = !asleep_;
    act({{"do", asleep_ ? "sleepScreens" : "wakeScreens"}});
    asleep_ ? model_.sleep(program_.time.now()) : model_.wake(program_.time.now());
  }

  /// Asks for the times, which closes the running interval.
  void askTimes() {
    ask({"time", "--days", "1", "--json"});
    model_.closeInterval(program_.time.now());
    Times printed;
    for (const auto& row : Json::parse(printed_)) {
      printed[row["id"]] = row["seconds"];
    }
    const auto today = model_.times.find(model_.day(program_.time.now()));
    expectTimes(printed, today != model_.times.end() ? today->second : Times());
  }

  /// Switches, and knows where that must lead if nothing comes between.
  void switchOrGoBack(std::size_t number) {
    const auto all = spaces();
    const auto active = activeID();
    std::optional<std::string> before;
    for (const auto& id : model_.recent()) {
      if (!before && id != active && exists(id)) {
        before = id;
      }
    }
    const bool back = chance(30);
    const auto& target = all[number - 1].id;
    const bool returns = back || (target == active && program_.settings.boolean("backAndForth"));
    expected_ = returns ? before : target;
    command(back ? "back" : "switch/" + std::to_string(number));
  }

  void step(Duration wait) {
    const bool calm = program_.time.elapsed() - lastEvent_ > 2s;
    expected_ = std::nullopt;
    const auto number = pick<std::size_t>(1, spaces().size());
    const auto kind = pick(1, 100);
    if (kind <= 25) {
      act({{"do", "switchSpace"}, {"space", spaces()[number - 1].managedID}});
    } else if (kind <= 50) {
      switchOrGoBack(number);
    } else if (kind <= 62) {
      say(number);
    } else if (kind <= 70) {
      useSomething(number);
    } else if (kind <= 84) {
      useWindows();
    } else if (kind <= 89) {
      changeDesktops(number);
    } else if (kind <= 92) {
      changeSetting();
    } else if (kind <= 94) {
      sleepOrWake();
    } else if (kind <= 96) {
      askTimes();
    } else if (kind <= 98) {
      answerDialog();
    } else if (kind == 99) {
      movePointer(program_.state().displays.size() > 1 ? 3000 : 1439);
    } else if (chance(20)) {
      act({{"do", "jumpClock"}, {"by", pick(-9, 9) * 3600.5}});
    }
    model_.timesChanged = false;
    program_.time.advance(wait);
    ++steps_;
    EXPECT_EQ(program_.delegate->history().recent(), model_.recent());
    if (calm && wait >= 3s && expected_) {
      const auto all = spaces();
      const auto found = std::ranges::find(all, *expected_, &TrueSpace::id);
      // After two bounces keys are pressed, and those for desktops without a number go to the pointer's display.
      EXPECT_TRUE(found->active || found - all.begin() >= 16) << "not at " << *expected_;
    }
    if (program_.time.elapsed() - lastEvent_ >= 500ms) {
      check();
    }
    if (!::testing::Test::HasFailure()) {
      program_.lines.clear();
    }
  }

  // What must be so when nothing has happened for half a second.

  void check() {
    ++checks_;
    EXPECT_EQ(model_.recent().front(), activeID());
    std::erase_if(said_, [&](const auto& each) { return !exists(each.first) || each.second == Said{}; });
    checkNames();
    const auto quiet = program_.time.elapsed() - lastEvent_;
    if (quiet >= 1500ms) {  // news of windows puts the export off
      checkState(spaces());
    }
    if (!model_.timesChanged && quiet >= 6s) {
      const auto text = program_.desktop.files().read(support + "stats.json");
      const auto written = text ? Json::parse(*text).get<DayModel::Times>() : DayModel::Times();
      ASSERT_EQ(written.size(), model_.times.size());
      for (const auto& [day, times] : written) {
        expectTimes(times, model_.times[day]);
      }
    }
  }

  void checkNames() {
    auto expected = Json::object();
    for (const auto& [id, said] : said_) {
      expected[id] = Json::object();
      if (!said.name.empty()) {
        expected[id]["name"] = said.name;
      }
      if (!said.note.empty()) {
        expected[id]["note"] = said.note;
      }
    }
    const auto text = program_.desktop.files().read(support + "spaces.json");
    EXPECT_EQ(text ? Json::parse(*text) : Json::object(), expected);
  }

  void checkState(const std::vector<TrueSpace>& all) {
    const auto state = Json::parse(program_.desktop.files().read(support + "state.json").value());
    EXPECT_EQ(state["current"], activeID());
    ASSERT_EQ(state["spaces"].size(), all.size());
    for (std::size_t i = 0; i < all.size(); ++i) {
      const auto& written = state["spaces"][i];
      const auto& said = said_[all[i].id];
      const auto name = said.name.empty() ? "Desktop " + std::to_string(i + 1) : said.name;
      EXPECT_EQ((Json{written["id"], written["display"], written["isActive"], written["number"], written["name"]}),
                (Json{all[i].id, all[i].display, all[i].active, i + 1, name}));
      EXPECT_EQ(written["note"], said.note.empty() ? Json() : Json(said.note));
    }
  }

  using Times = std::map<std::string, double>;

  /// They are sums of the same intervals, in whichever order.
  static void expectTimes(const Times& seen, const Times& expected) {
    const auto rounded = [](const Times& times) {
      std::map<std::string, long long> microseconds;
      for (const auto& [id, seconds] : times) {
        microseconds[id] = std::llround(seconds * 1e6);
      }
      return microseconds;
    };
    EXPECT_EQ(rounded(seen), rounded(expected));
  }

  std::mt19937_64 random_;
  ResidentProgram program_;
  DayModel model_{program_.time.now(), 5h + 30min};
  Subscription settings_;
  std::map<std::string, Said> said_;     ///< by Space id
  std::optional<std::string> asked_;     ///< whose name the program asks for
  std::optional<std::string> expected_;  ///< where the switch leads
  std::string printed_;
  bool asleep_ = false;
  Duration lastEvent_ = Duration::zero();
  std::deque<Json> lastActions_;
  int steps_ = 0;
  int visits_ = 0;
  int checks_ = 0;
};

TEST(BusyDay, EndsAsASecondOpinionSays) {
  const auto* const given = std::getenv("TALLOWIN_RANDOM_START");
  const auto start = given != nullptr ? std::strtoull(given, nullptr, 10) : std::random_device()();
  std::cout << "TALLOWIN_RANDOM_START=" << start << "\n";
  BusyDay(start).live();
}

}  // namespace
}  // namespace tallowin

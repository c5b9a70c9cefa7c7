// What the simulated user does to alerts, keys and applications.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/platform/simulated/story.h"

namespace tallowin {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using Answer = std::optional<std::size_t>;

TEST(SimulatedAlertsTest, theUserAnswersTheAlertInFront) {
  Story story(R"({"script": [{"at": 1, "do": "answerAlert", "button": "No such"},
                             {"at": 2, "do": "answerAlert", "button": "Later"},
                             {"at": 3, "do": "answerAlert", "button": null},
                             {"at": 4, "do": "answerAlert", "button": "Restore"}]})");
  std::vector<std::pair<std::string, Answer>> answers;
  for (const auto* const name : {"first", "second"}) {
    story.desktop.alerts().show({name, "Really?", {"Restore", "Later"}},
                                [&answers, name](Answer answer) { answers.emplace_back(name, answer); });
  }
  story.time.advance(1s);
  EXPECT_TRUE(answers.empty());
  story.time.advance(5s);
  EXPECT_THAT(answers, ElementsAre(std::pair("second", Answer(1)), std::pair("first", Answer())));
  EXPECT_EQ(story.journal("alert").front(),
            R"({"messageText":"first","informativeText":"Really?","buttons":["Restore","Later"]})");
}

TEST(SimulatedGlobalHotKeysTest, pressesReachWhoeverHasTheCombination) {
  Story story(R"({"takenHotKeys": [{"key": "q", "modifiers": 1048576}],
                  "script": [{"at": 1, "do": "pressKey", "key": "a"},
                             {"at": 2, "do": "pressKey", "key": 0, "modifiers": 262144},
                             {"at": 3, "do": "pressKey", "key": "q", "modifiers": 1048576},
                             {"at": 4, "do": "pressKey", "key": "a"},
                             {"at": 5, "do": "pressKey", "key": 19, "modifiers": 262144}]})");
  auto& keys = story.desktop.globalHotKeys();
  EXPECT_FALSE(keys.registerHotKey(12, CGEventFlag::command, [] {}));
  int plain = 0;
  std::optional<Subscription> letter;
  letter = keys.registerHotKey(0, 0, [&] {
    ++plain;
    letter.reset();  // as a program does that waits for one letter
  });
  ASSERT_TRUE(letter);
  story.time.run();
  EXPECT_EQ(plain, 1);
  EXPECT_EQ(story.activeOn("Main"), 2) << "keys that nobody has registered reach the Dock";
  EXPECT_THAT(story.journal("registerHotKey"), ElementsAre(R"({"keyCode":12,"modifiers":1048576,"accepted":false})",
                                                           R"({"keyCode":0,"modifiers":0,"accepted":true})"));
  EXPECT_THAT(story.journal("unregisterHotKey"), ElementsAre(R"({"keyCode":0,"modifiers":0})"));
}

TEST(SimulatedWorkspaceTest, whoeverIsBehindAHiddenApplicationTakesOver) {
  Story story(R"({"applications": [{"pid": 7, "name": "Mail", "active": true}, {"pid": 8, "name": "Notes"}],
                  "windows": [{"number": 1, "pid": 7}, {"number": 2, "pid": 8}],
                  "script": [{"at": 1, "do": "hideApplication", "pid": 7},
                             {"at": 2, "do": "unhideApplication", "pid": 7}]})");
  std::vector<std::optional<ProcessID>> activated;
  const auto subscription = story.desktop.workspaceNotifications().addObserver(
      NotificationName::NSWorkspaceDidActivateApplicationNotification,
      [&](const Notification& notification) { activated.push_back(notification.application); });
  story.time.run();
  EXPECT_THAT(activated, ElementsAre(8));
  EXPECT_FALSE(story.parts.state.application(7)->isHidden);
  EXPECT_TRUE(story.parts.state.application(8)->isActive);
}

TEST(SimulatedWindowServerTest, aMoveThatIsIgnoredIsStillAccepted) {
  Story story(
      R"({"ignoredMoves": ["SLSMoveWindowsToManagedSpace"], "windows": [{"number": 5, "pid": 350, "space": 1}]})");
  auto& server = story.parts.windowServer;
  server.moveWindows("SLSMoveWindowsToManagedSpace", {5}, 2);
  EXPECT_EQ(server.spacesOf(5), std::vector<ManagedSpaceID>{1});
  server.moveWindows("SLSBridgedMoveWindowsToManagedSpaceOperation", {5}, 2);
  EXPECT_EQ(server.spacesOf(5), std::vector<ManagedSpaceID>{2});
  for (const auto* const mistake :
       {R"({"ignoredMoves": ["SLSGetActiveSpace"]})", R"({"takenHotKeys": [{"key": "ab"}]})",
        R"({"applications": [{"name": "A", "responseTime": "slow"}]})"}) {
    EXPECT_FALSE(Scenario::parse(mistake)) << mistake;
  }
}

}  // namespace
}  // namespace tallowin

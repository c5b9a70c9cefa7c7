#include "platform/x11/x11_desktop_names.h"

#include <gmock/gmock.h>
#include <optional>

#include "tests/platform/x11/x11_session_fixture.h"

namespace tallowin {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

/// Somebody else looks at the root window's properties and writes them.
class X11DesktopNamesTest : public X11DesktopTest {
 protected:
  void SetUp() override {
    const std::uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_change_window_attributes(somebody_.raw(), somebody_.root(), XCB_CW_EVENT_MASK, &mask);
  }

  std::vector<std::string> read(X11Atom property) {
    auto& connection = somebody_.connection();
    return parseDesktopNames(connection.takeProperty(
        connection.requestProperty(somebody_.root(), property, connection.atom(X11Atom::utf8String))));
  }

  /// The names in short: "Mail|2|".
  std::string names() {
    std::string text;
    for (const auto& name : read(X11Atom::netDesktopNames)) {
      text += name + "|";
    }
    return text;
  }

  void writeNames(const std::vector<std::string>& names) {
    somebody_.setText(somebody_.root(), X11Atom::netDesktopNames, encodeTexts(names));
    somebody_.sync();
  }

  void deleteNames() {
    xcb_delete_property(somebody_.raw(), somebody_.root(), somebody_.atom(X11Atom::netDesktopNames));
    somebody_.sync();
  }

  /// How often the names were written or deleted since the last call.
  int takeChanges() {
    somebody_.sync();
    int changes = 0;
    while (const XcbPtr<xcb_generic_event_t> event{xcb_poll_for_event(somebody_.raw())}) {
      const auto& change = reinterpret_cast<const xcb_property_notify_event_t&>(*event);
      const bool isProperty = (event->response_type & 0x7F) == XCB_PROPERTY_NOTIFY;
      changes += isProperty && change.atom == somebody_.atom(X11Atom::netDesktopNames) ? 1 : 0;
    }
    return changes;
  }

  void publish(const std::map<ManagedSpaceID, std::string>& names) { session_->desktopNames.publish(names); }

  /// Lets everything that has happened take its effect, and the time pass.
  void settle(Duration time = 50ms) {
    ids();  // a round trip: all events are here
    loop_.advance(time);
    ids();
    loop_.runReady();
  }

  TestClient somebody_;
};

TEST_F(X11DesktopNamesTest, MirrorsNamesAndGivesTheOldOnesBackEvenAfterBeingKilled) {
  ScriptedWindowManager manager;
  manager.setDesktops(4, 0, {"one\0two\0", 8});
  connect();
  settle();
  takeChanges();
  EXPECT_EQ(names(), "one|two|") << "before the first publication";

  const struct {
    std::map<ManagedSpaceID, std::string> names;
    const char* shown;
    int changes;
    bool killedBefore = false;
  } steps[] = {
      {{{3, "Mail"}}, "one|two|Mail|Desktop 4|", 1},
      {{{3, "Mail"}}, "one|two|Mail|Desktop 4|", 0},
      {{{1, "Home"}, {3, "Post"}, {9, "None"}}, "Home|two|Post|Desktop 4|", 1},
      {{{1, "Home"}}, "Home|two|Desktop 3|Desktop 4|", 1, true},
      {{{1, "Home"}, {2, "two"}}, "Home|two|Desktop 3|Desktop 4|", 0},
      {{}, "one|two|", 1, true},
  };
  for (const auto& [published, shown, changes, killedBefore] : steps) {
    if (killedBefore) {
      session_.reset();
      connect();
      settle();
    }
    publish(published);
    settle(49ms);
    EXPECT_EQ(takeChanges(), 0);
    settle(1ms);
    EXPECT_EQ(names(), shown);
    settle(1s);
    EXPECT_EQ(takeChanges(), changes) << shown;
    EXPECT_FALSE(loop_.hasDelayedWork());
  }
  EXPECT_THAT(read(X11Atom::tallowinDesktopNames), IsEmpty());
}

TEST_F(X11DesktopNamesTest, DoesNotFightForTheNames) {
  ScriptedWindowManager manager;
  manager.setDesktops(2, 0, {"one\0two\0", 8});
  connect();
  publish({{2, "Mail"}});
  settle();
  const auto rewriteAfter = [&](Duration pause) {
    settle(pause);
    writeNames({"x", "y"});
    settle();
    return names();
  };
  for (int times = 0; times < 3; ++times) {
    EXPECT_EQ(rewriteAfter(950ms), "x|Mail|") << "a second after the last time";
  }
  EXPECT_EQ(rewriteAfter(949ms), "x|y|") << "twice within a second";
  EXPECT_EQ(rewriteAfter(10s), "x|y|") << "nor later";
  EXPECT_FALSE(loop_.hasDelayedWork());
  publish({{2, "Mail"}});
  settle();
  EXPECT_EQ(names(), "x|y|") << "those are the same names";
  publish({{2, "Post"}});
  settle();
  EXPECT_EQ(names(), "x|Post|");

  EXPECT_EQ(rewriteAfter(0ms), "x|Post|");
  EXPECT_EQ(rewriteAfter(0ms), "x|y|");
  const ScriptedWindowManager another;
  settle();
  EXPECT_EQ(names(), "x|Post|") << "the window manager has restarted";

  // A window manager that deletes and rewrites has changed them once.
  takeChanges();
  settle(1s);
  deleteNames();
  settle(20ms);
  writeNames({"1", "2"});
  settle();
  EXPECT_EQ(names(), "1|Post|");
  settle(1s);
  EXPECT_EQ(takeChanges(), 3);
}

TEST_F(X11DesktopNamesTest, DesktopsThatComeAndGoAreNoFight) {
  ScriptedWindowManager manager;
  manager.setDesktops(2, 0, {"one\0two\0", 8});
  connect();
  publish({{2, "Mail"}, {4, "Web"}});
  settle();
  for (const std::uint32_t count : {3U, 4U, 3U, 2U, 3U, 4U}) {
    manager.setDesktops(count, 0, {"1\0002\0003\0", 6});
    settle();
    EXPECT_EQ(names(), count == 4 ? "1|Mail|3|Web|" : "1|Mail|3|");
  }
}

TEST_F(X11DesktopNamesTest, DynamicDesktopsStayThemselves) {
  ScriptedWindowManager manager("i3");
  manager.setDesktops(2, 0, {"1\0mail\0", 7});
  connect();
  const auto mail = ids().at(1);
  ASSERT_THAT(ids(), ElementsAre(1, mail));
  publish({{1, "mail"}});  // named as another workspace is already
  settle();
  EXPECT_EQ(names(), "mail|mail|");
  EXPECT_THAT(ids(), ElementsAre(1, mail));
  manager.setDesktops(1, 0, {"1\0", 2});
  settle();
  EXPECT_EQ(names(), "mail|");
  EXPECT_THAT(ids(), ElementsAre(1));
  manager.setDesktops(2, 1, {"1\0mail\0", 7});
  manager.setDesktops(1, 0, {"mail\0", 5});  // which is just what was written for workspace 1
  settle(0ms);
  EXPECT_THAT(ids(), ElementsAre(mail));
  settle();
  EXPECT_EQ(names(), "mail|");
  EXPECT_THAT(ids(), ElementsAre(mail));

  // A new start finds everything mirrored, and hears of the next change all the same.
  manager.setDesktops(1, 0, {"1\0", 2});
  settle();
  session_.reset();
  connect();
  publish({{1, "mail"}});
  settle();
  EXPECT_THAT(ids(), ElementsAre(1));
  manager.setDesktops(1, 0, {"mail\0", 5});
  settle(0ms);
  EXPECT_THAT(ids(), ElementsAre(mail));
}

}  // namespace
}  // namespace tallowin

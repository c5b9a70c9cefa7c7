// The desktop on a real server: what the window manager is asked for, what is heard of it, keys, clicks and pictures.

#include <X11/keysym.h>
#include <gmock/gmock.h>
#include <optional>
#include <xcb/xtest.h>

#include "tests/platform/x11/x11_session_fixture.h"

namespace tallowin {
namespace {

using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

TEST_F(X11DesktopTest, TakesTheWindowAlongWhoseTitleBarIsDragged) {
  ScriptedWindowManager manager;
  manager.setDesktops(4, 0);
  manager.showFramedWindow({100, 100});  // its title bar is 20 pixels high
  connect();
  const auto holdAt = [&](std::int16_t x, std::int16_t y, std::uint8_t button) {
    xcb_test_fake_input(manager.raw(), XCB_MOTION_NOTIFY, 0, XCB_CURRENT_TIME, manager.root(), x, y, 0);
    xcb_test_fake_input(manager.raw(), button, 1, XCB_CURRENT_TIME, manager.root(), 0, 0, 0);
    manager.sync();
    loop_.advance(std::chrono::seconds(1));
  };
  std::vector<std::string> seen;
  const auto runUntilAsked = [&](std::size_t count) {
    return loop_.runUntil([&] {
      std::ranges::move(requests(manager), std::back_inserter(seen));
      return seen.size() >= count;
    });
  };

  holdAt(110, 150, XCB_BUTTON_PRESS);  // in the window: a selection, say
  EXPECT_TRUE(desktop().switchTo(2));
  EXPECT_THAT(requests(manager), ElementsAre("_NET_CURRENT_DESKTOP 1 0 0 0 0"));
  manager.setCurrent(1);
  ASSERT_TRUE(runUntilTold(1));
  holdAt(110, 150, XCB_BUTTON_RELEASE);

  holdAt(110, 105, XCB_BUTTON_PRESS);
  desktop().switchTo(3);
  desktop().switchTo(4);  // on the way the user wants to go farther
  ASSERT_TRUE(runUntilAsked(4));
  EXPECT_THAT(seen, ElementsAre("_NET_WM_DESKTOP 4294967295 2 0 0 0", "_NET_WM_DESKTOP 4294967295 2 0 0 0",
                                "_NET_CURRENT_DESKTOP 3 0 0 0 0", "_NET_WM_DESKTOP 3 2 0 0 0"));

  desktop().switchTo(1);
  EXPECT_THAT(requests(manager), ElementsAre("_NET_WM_DESKTOP 4294967295 2 0 0 0"));
  session_.reset();  // which must not leave the window on all desktops
  EXPECT_THAT(manager.takeRequests(), ElementsAre("_NET_WM_DESKTOP 0 2 0 0 0"));
}

TEST_F(X11DesktopTest, CountsFromWhereItIsHeadingUntilThatIsLate) {
  ScriptedWindowManager manager;
  manager.setDesktops(4, 0);
  connect();
  EXPECT_TRUE(desktop().switchTo(3));
  EXPECT_EQ(spaces(), "1 2 [3] 4");
  EXPECT_EQ(desktop().activeSpace(), 1);
  EXPECT_TRUE(desktop().switchTo(3));
  EXPECT_THAT(requests(manager), ElementsAre("_NET_CURRENT_DESKTOP 2 0 0 0 0")) << "once";
  manager.setCurrent(1);
  EXPECT_EQ(spaces(), "1 [2] 3 4") << "somebody else was faster";
  ASSERT_TRUE(runUntilTold(1));
  EXPECT_TRUE(desktop().switchTo(4));
  EXPECT_FALSE(desktop().switchTo(5));
  loop_.advance(std::chrono::milliseconds(100));
  EXPECT_EQ(spaces(), "1 [2] 3 4") << "the window manager does not do it";
  EXPECT_THAT(told_, ElementsAre("the current desktop", "a switch that did not come"));
}

TEST_F(X11DesktopTest, IsDegradedWhileThereIsNoWindowManager) {
  EXPECT_FALSE(isManaged(**X11Connection::open()));
  connect();
  EXPECT_EQ(spaces(), "none");
  EXPECT_EQ(desktop().health().bits(), 0b0011111U);
  std::set<std::uint64_t> managers;
  // The second one is given the ids of the first; the third is another.
  for (const std::uint32_t desktops : {2U, 3U, 4U}) {
    std::optional<ScriptedWindowManager> manager(std::in_place);
    manager->setDesktops(desktops, 0);
    ASSERT_TRUE(loop_.runUntil([&] { return desktop().health().healthy(); }));
    EXPECT_TRUE(isManaged(**X11Connection::open()));
    loop_.runReady();
    EXPECT_EQ(desktop().read()->displays[0].spaces.size(), desktops);
    managers.insert(desktop().read()->manager);
    told_.clear();
    manager.reset();
    ASSERT_TRUE(runUntilTold(1)) << "nobody said that the window manager is gone";
    EXPECT_THAT(told_, ElementsAre("the end of the window manager"));
    EXPECT_EQ(spaces(), "none");
  }
  EXPECT_EQ(managers.size(), 3U) << "each is told from the one before";
}

TEST_F(X11DesktopTest, IsReadAsBeforeUntilASlowWindowManagerHasChangedAll) {
  ScriptedWindowManager manager;
  manager.setDesktops(3, 1);
  connect();
  ASSERT_EQ(spaces(), "1 [2] 3");
  EXPECT_FALSE(desktop().restore({1, 9, 2, 3})) << "it has not happened yet";
  EXPECT_THAT(requests(manager), ElementsAre("_NET_NUMBER_OF_DESKTOPS 4 0 0 0 0"));
  EXPECT_EQ(spaces(), "1 [2] 3");
  manager.setDesktops(4, 1);
  EXPECT_EQ(spaces(), "1 [2] 3") << "the view has not followed";
  loop_.runReady();
  EXPECT_THAT(requests(manager), Contains("_NET_CURRENT_DESKTOP 2 0 0 0 0"));
  manager.setCurrent(2);
  EXPECT_EQ(spaces(), "1 [2] 3");
  ASSERT_TRUE(loop_.runUntil([&] { return spaces() == "1 9 [2] 3"; }));
  manager.setDesktops(1, 0);
  EXPECT_EQ(spaces(), "[1]");
  manager.setDesktops(5, 2);
  EXPECT_EQ(spaces(), "1 9 [2] 3 10") << "those that were there come back first";
  // One that does not do it this time is not waited for longer than a second.
  desktop().addSpace("Main", intoOutcome());
  loop_.advance(std::chrono::milliseconds(999));
  EXPECT_EQ(outcome_, "waiting");
  loop_.advance(std::chrono::milliseconds(1));
  EXPECT_EQ(outcome_, "ignored");
  EXPECT_TRUE(desktop().abilities().addsSpaces) << "it has worked before";
  manager.setDesktops(6, 2);
  EXPECT_EQ(spaces(), "1 9 [2] 3 10 11");
}

TEST_F(X11DesktopTest, CarriesOutOneRequestAfterTheOtherAndGivesOneSignForEach) {
  ScriptedWindowManager manager;
  manager.setDesktops(4, 3);
  connect();
  desktop().removeSpace(2, intoOutcome());
  std::string second = "waiting";
  desktop().removeSpace(2, [&](const auto& result) {
    second = !result && result.error() == DesktopRefusal::noSpace ? "noSpace" : "another";
  });
  EXPECT_THAT(requests(manager), ElementsAre("_NET_NUMBER_OF_DESKTOPS 3 0 0 0 0"));
  manager.setDesktops(3, 2);
  ASSERT_TRUE(loop_.runUntil([&] { return outcome_ == "done"; }));
  EXPECT_EQ(second, "noSpace") << "it has just gone";
  EXPECT_EQ(spaces(), "1 3 [4]");
  EXPECT_THAT(told_, ElementsAre("the number of desktops"));
}

TEST_F(X11DesktopTest, ReleasesAtTheEndWhatIsHeld) {
  ScriptedWindowManager manager;
  connect();
  post(999, 0, true);  // there is no such key
  post(2, 0, false);
  post(53, CGEventFlag::alternate, true);
  (void)desktop().activeSpace();  // a round trip: the server has done what was posted before
  const auto held = [&] {
    const XcbPtr<xcb_query_keymap_reply_t> state{
        xcb_query_keymap_reply(manager.raw(), xcb_query_keymap(manager.raw()), nullptr)};
    return std::ranges::count_if(state->keys, [](std::uint8_t keys) { return keys != 0; });
  };
  EXPECT_EQ(held(), 2);
  session_.reset();
  manager.sync();
  EXPECT_EQ(held(), 0);
}

TEST_F(X11DesktopTest, HearsEventsThatWereReadOnTheSide) {
  ScriptedWindowManager manager;
  manager.setDesktops(2, 0);
  connect();
  manager.setCurrent(1);
  EXPECT_EQ(spaces(), "1 [2]");  // which reads the event as well: nothing is left to read from the descriptor
  ASSERT_TRUE(runUntilTold(1));
  told_.clear();
  manager.setCurrent(0);
  manager.sync();
  desktop().moveWindow(manager.manageWindow(0), 1);
  EXPECT_TRUE(runUntilTold(1)) << "after a request without a reply";
}

TEST_F(X11DesktopTest, ObserverMayBeReplacedWhileItIsTold) {
  ScriptedWindowManager manager;
  manager.setDesktops(2, 0);
  connect();
  std::string order;
  desktop().observe([&, kept = std::string(100, 'x')](const DesktopSign&) {
    desktop().observe([&](const DesktopSign&) { order += "second"; });
    order += kept.size() == 100 ? "first " : "";
  });
  manager.setCurrent(1);
  ASSERT_TRUE(loop_.runUntil([&] { return !order.empty(); }));
  manager.setCurrent(0);
  ASSERT_TRUE(loop_.runUntil([&] { return order == "first second"; }));
}

TEST_F(X11DesktopTest, AnswersNothingOnceTheServerIsGone) {
  {
    ScriptedWindowManager manager;
    manager.setDesktops(2, 0);
    connect();
  }
  server_.stop();
  post(0, 0, true);  // writes to a server that is gone
  ASSERT_TRUE(loop_.runUntil([&] { return lost_ > 0; }));
  EXPECT_EQ(loop_.watchCount(), 0U) << "a descriptor at its end is always readable";
  EXPECT_EQ(spaces(), "none");
  EXPECT_FALSE(desktop().switchTo(1));
  desktop().removeSpace(1, intoOutcome());
  EXPECT_EQ(outcome_, "unable");
  EXPECT_FALSE(windows().mayChange());
  EXPECT_EQ(windows().list(WindowScope::all), std::nullopt);
  EXPECT_FALSE(session_->workspace.activateWithOptions(1));
  EXPECT_EQ(session_->workspace.frontmostApplication(), std::nullopt);
  EXPECT_EQ(session_->displays.CGMainDisplayID(), 0U);
  EXPECT_THAT(session_->displays.screens(), IsEmpty());
  EXPECT_EQ(session_->screenCapture.captureDisplay(1), std::nullopt);
  loop_.runReady();
  EXPECT_EQ(lost_, 1);
}

TEST_F(X11DesktopTest, CapturesTheScreenAndDescribesIt) {
  ScriptedWindowManager manager;
  connect();
  const std::uint32_t orange = 0xFF8000;
  xcb_change_window_attributes(manager.raw(), manager.root(), XCB_CW_BACK_PIXEL, &orange);
  xcb_clear_area(manager.raw(), 0, manager.root(), 0, 0, 320, 480);
  manager.sync();
  const auto image = session_->screenCapture.captureDisplay(1);
  ASSERT_TRUE(image);
  EXPECT_EQ(image->width, 640);
  EXPECT_EQ(image->height, 480);
  ASSERT_EQ(image->pixels.size(), 640U * 480U);
  EXPECT_EQ(image->pixels[479 * 640 + 319], 0xFFFF8000U);
  EXPECT_NE(image->pixels[479 * 640 + 320], 0xFFFF8000U);
  EXPECT_EQ(session_->screenCapture.captureDisplay(2), std::nullopt);

  auto& displays = session_->displays;
  EXPECT_THAT(displays.screens(), ElementsAre(Screen{1, {{0, 0}, {640, 480}}, "screen"}));
  EXPECT_THAT(displays.displaySetIdentifiers(), ElementsAre("screen"));
  EXPECT_EQ(displays.CGDisplayBounds(2), CGRect{});
  EXPECT_FALSE(displays.CGDisplayIsBuiltin(1));

  manager.setWords(manager.root(), X11Atom::netWorkarea, XCB_ATOM_CARDINAL, {0, 20, 640, 440});
  manager.sync();
  const Monitor screen{"screen", {{0, 0}, {640, 480}}, {{0, 20}, {640, 440}}, false, false};
  EXPECT_THAT(displays.monitors(), ElementsAre(screen));
}

TEST_F(X11DesktopTest, HotKeysArriveWhateverTheLocks) {
  ScriptedWindowManager manager;
  connect();
  auto& hotKeys = session_->globalHotKeys;
  std::string seen;
  const auto type = [&](const std::vector<Keysym>& keysyms) {
    const auto map = takeKeyMap(manager.connection(), requestKeyMap(manager.connection()));
    std::vector<xcb_keycode_t> keycodes;
    for (const auto keysym : keysyms) {
      keycodes.push_back(findKey(map, keysym, 0).value_or(KeyPosition{}).keycode);
    }
    for (const auto event : {std::uint8_t{XCB_KEY_PRESS}, std::uint8_t{XCB_KEY_RELEASE}}) {
      for (const auto keycode : keycodes) {
        // After two milliseconds: a press at the very time of the last release would be the key repeating.
        xcb_test_fake_input(manager.raw(), event, keycode, 2, XCB_NONE, 0, 0, 0);
      }
    }
    manager.sync();
    (void)desktop().activeSpace();  // a round trip, which brings the events
    loop_.runReady();
    return std::exchange(seen, "");
  };
  auto letter = hotKeys.registerHotKey(0, 0, [&] { seen += "a"; });
  auto second = hotKeys.registerHotKey(0, 0, [&] { seen += "A"; });
  auto combination = hotKeys.registerHotKey(20, CGEventFlag::control | CGEventFlag::alternate, [&] { seen += "3"; });
  for (const auto& hotKey : {letter.get(), second.get(), combination.get()}) {
    EXPECT_EQ(hotKey->state(), HotKeyState::works);
  }
  EXPECT_EQ(type({XK_a}), "aA");
  EXPECT_EQ(type({XK_Control_L, XK_a}), "") << "with another modifier";
  for (const auto lock : {XK_Num_Lock, XK_Caps_Lock, XK_Num_Lock, XK_Caps_Lock}) {
    type({static_cast<Keysym>(lock)});
    EXPECT_EQ(type({XK_Control_L, XK_Alt_L, XK_3}), "3");
  }
  second.reset();
  EXPECT_EQ(type({XK_a}), "a") << "the other one is still there";
  auto once = hotKeys.registerHotKey(11, 0, [&] {
    seen += "b";
    combination.reset();
    letter.reset();
  });
  EXPECT_EQ(type({XK_b}), "b");
  EXPECT_EQ(type({XK_a}) + type({XK_Control_L, XK_Alt_L, XK_3}), "");

  const auto rival = X11Connection::open();
  X11GlobalHotKeys taken(**rival);
  EXPECT_EQ(taken.registerHotKey(0, 0, [] {})->state(), HotKeyState::works) << "released above";
  auto kept = taken.registerHotKey(1, 0, [] {});
  EXPECT_EQ(kept->state(), HotKeyState::works);
  const auto wanted = hotKeys.registerHotKey(1, 0, [&] { seen += "s"; });
  EXPECT_EQ(wanted->state(), HotKeyState::taken) << "another program has it";
  EXPECT_EQ(hotKeys.registerHotKey(999, 0, [] {})->state(), HotKeyState::missingKey);
  kept.reset();
  EXPECT_EQ(taken.registerHotKey(2, 0, [] {})->state(), HotKeyState::works) << "the server has seen it released";
  hotKeys.retry();
  EXPECT_EQ(wanted->state(), HotKeyState::works) << "and has let go of it";
  EXPECT_EQ(type({XK_s}), "s");
  session_.reset();
  once.reset();
}

TEST_F(X11DesktopTest, TellsWhatTheWindowManagerIsAndLacks) {
  connect();
  EXPECT_EQ(session_->desktopFacts.windowManager(), std::nullopt);
  ScriptedWindowManager manager("Otherbox");
  manager.claim({X11Atom::netCurrentDesktop, X11Atom::netCloseWindow});
  const auto facts = session_->desktopFacts.windowManager();
  ASSERT_TRUE(facts);
  EXPECT_EQ(facts->name, "Otherbox");
  EXPECT_EQ(facts->version, "") << "this program is not known to tell it";
  const std::pair<const char*, const char*> versions[] = {
      {"Openbox 3.6.1\nCopyright (c) 2004 Mikael Magnusson 1.0", "3.6.1"},
      {"i3 version 4.22 (2023-01-02) \u00a9 2009 Michael Stapelberg", "4.22"},
      {"JWM v2.4.3 by Joe Wingbermuehle", "2.4.3"},
      {"icewm 3.3.1, Copyright 1997-2012 Marko Macek", "3.3.1"},
      {"no 1 knows", ""},
  };
  for (const auto& [text, version] : versions) {
    EXPECT_EQ(versionIn(text), version) << text;
  }
  EXPECT_THAT(facts->missingHints, AllOf(Contains("_NET_RESTACK_WINDOW"), Contains("_NET_WM_DESKTOP"),
                                         Not(Contains("_NET_CURRENT_DESKTOP")), Not(Contains("_NET_CLOSE_WINDOW"))));
}

}  // namespace
}  // namespace tallowin

// The desktop on a real server: what the window manager is asked for, what is heard of it, keys, clicks and pictures.

#include <X11/keysym.h>
#include <gmock/gmock.h>
#include <optional>
#include <thread>
#include <xcb/xcb_keysyms.h>
#include <xcb/xtest.h>

#include "platform/x11/x11_desktop_facts.h"
#include "tests/platform/x11/obedient_window_manager.h"
#include "tests/platform/x11/x11_desktop_fixture.h"

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
  const auto holdAt = [&](CGPoint location, CGMouseEventType type) {
    auto& events = desktop_->events();
    events.CGEventPost(CGEventTap::hid, *events.CGEventCreateMouseEvent(type, location));
  };
  const auto pressDigit = [&](VirtualKeyCode keyCode) {
    post(keyCode, CGEventFlag::control, true);
    post(keyCode, CGEventFlag::control, false);
    loop_.runReady();
  };
  std::vector<std::string> seen;
  const auto runUntilAsked = [&](std::size_t count) {
    return loop_.runUntil([&] {
      std::ranges::move(requests(manager), std::back_inserter(seen));
      return seen.size() >= count;
    });
  };

  holdAt({110, 150}, CGMouseEventType::leftMouseDown);  // in the window: a selection, say
  pressDigit(19);
  EXPECT_THAT(requests(manager), ElementsAre("_NET_CURRENT_DESKTOP 1 0 0 0 0"));
  holdAt({110, 150}, CGMouseEventType::leftMouseUp);
  manager.setCurrent(1);
  ASSERT_TRUE(runUntilTold(1));

  holdAt({110, 105}, CGMouseEventType::leftMouseDown);
  pressDigit(20);
  pressDigit(21);  // on the way the user wants to go farther
  ASSERT_TRUE(runUntilAsked(4));
  EXPECT_THAT(seen, ElementsAre("_NET_WM_DESKTOP 4294967295 2 0 0 0", "_NET_WM_DESKTOP 4294967295 2 0 0 0",
                                "_NET_CURRENT_DESKTOP 3 0 0 0 0", "_NET_WM_DESKTOP 3 2 0 0 0"));

  pressDigit(18);
  EXPECT_THAT(requests(manager), ElementsAre("_NET_WM_DESKTOP 4294967295 2 0 0 0"));
  desktop_.reset();  // which must not leave the window on all desktops
  EXPECT_THAT(manager.takeRequests(), ElementsAre("_NET_WM_DESKTOP 0 2 0 0 0"));
}

TEST_F(X11DesktopTest, IsDegradedWhileThereIsNoWindowManager) {
  EXPECT_FALSE(X11Desktop::windowManagerPresent());
  connect();
  EXPECT_EQ(spaces(), "none");
  EXPECT_EQ(windowServer().CGSBridgeProbe().bits(), 0b0111111U);
  // The second one is given the ids of the first; the third is another.
  for (const std::uint32_t desktops : {2U, 3U, 4U}) {
    std::optional<ScriptedWindowManager> manager(std::in_place);
    manager->setDesktops(desktops, 0);
    ASSERT_TRUE(loop_.runUntil([&] { return windowServer().CGSBridgeProbe().healthy(); }));
    EXPECT_TRUE(X11Desktop::windowManagerPresent());
    EXPECT_EQ(windowServer().CGSBridgeCopyManagedDisplaySpaces()->at(0)["Spaces"].size(), desktops);
    loop_.runReady();
    told_.clear();
    manager.reset();
    ASSERT_TRUE(runUntilTold(1)) << "nobody said that the window manager is gone";
    EXPECT_THAT(told_, ElementsAre(X11Changes::spacesChanged));
    EXPECT_EQ(spaces(), "none");
  }
}

TEST_F(X11DesktopTest, IsReadAsBeforeUntilASlowWindowManagerHasChangedAll) {
  ScriptedWindowManager manager;
  manager.setDesktops(3, 1);
  connect();
  ASSERT_EQ(spaces(), "1 [2] 3");
  EXPECT_FALSE(desktop_->spacePlaces().restore({1, 9, 2, 3})) << "it has not happened yet";
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
  // One that never does it is waited for no longer than four seconds.
  EXPECT_FALSE(desktop_->spacePlaces().restore({1, 11}));
  loop_.advance(std::chrono::seconds(4));
  manager.setDesktops(6, 2);
  EXPECT_EQ(spaces(), "1 9 [2] 3 10 11");
}

TEST_F(X11DesktopTest, ReleasesAtTheEndWhatIsHeld) {
  ScriptedWindowManager manager;
  connect();
  post(999, 0, true);  // there is no such key
  post(2, 0, false);
  post(53, CGEventFlag::alternate, true);
  desktop_->events().mouseLocation();  // a round trip: the server has done what was posted before
  const auto held = [&] {
    const XcbPtr<xcb_query_keymap_reply_t> state{
        xcb_query_keymap_reply(manager.raw(), xcb_query_keymap(manager.raw()), nullptr)};
    return std::ranges::count_if(state->keys, [](std::uint8_t keys) { return keys != 0; });
  };
  EXPECT_EQ(held(), 2);
  desktop_.reset();
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
  const auto window = manager.manageWindow(0);
  std::thread([&] { windowServer().CGSBridgeCopySpacesForWindow(window); }).join();
  EXPECT_TRUE(runUntilTold(1)) << "after a reply on another thread";
  told_.clear();
  manager.setCurrent(1);
  desktop_->events().CGWarpMouseCursorPosition({1, 1});
  EXPECT_TRUE(runUntilTold(1)) << "after a request without a reply";
}

TEST_F(X11DesktopTest, ReceiverMayBeReplacedWhileItIsTold) {
  ScriptedWindowManager manager;
  manager.setDesktops(2, 0);
  connect();
  std::string order;
  windowServer().CGSBridgeRegisterSpaceNotifications([&, kept = std::string(100, 'x')](WindowServerEvent) {
    windowServer().CGSBridgeRegisterSpaceNotifications([&](WindowServerEvent) { order += "second"; });
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
  post(18, CGEventFlag::control, true);  // writes to a server that is gone
  post(0, 0, true);
  ASSERT_TRUE(loop_.runUntil([&] { return lost_ > 0; }));
  EXPECT_EQ(loop_.watchCount(), 0U) << "a descriptor at its end is always readable";
  EXPECT_EQ(spaces(), "none");
  EXPECT_EQ(windowServer().CGSBridgeConnection(), 0U);
  EXPECT_EQ(windowServer().CGSBridgeCopyActiveMenuBarDisplayIdentifier(), std::nullopt);
  EXPECT_FALSE(windowServer().CGSBridgeProbe().healthy());
  EXPECT_FALSE(windowServer().CGSBridgeMoveWindowToSpace(1, 1));
  EXPECT_FALSE(desktop_->accessibility().AXIsProcessTrusted());
  EXPECT_EQ(desktop_->events().pressedMouseButtons(), 0U);
  EXPECT_EQ(desktop_->events().mouseLocation(), CGPoint{});
  desktop_->events().CGWarpMouseCursorPosition({1, 1});
  EXPECT_EQ(desktop_->displays().CGMainDisplayID(), 0U);
  EXPECT_THAT(desktop_->displays().screens(), IsEmpty());
  EXPECT_THAT(desktop_->displays().displaySetIdentifiers(), IsEmpty());
  EXPECT_FALSE(desktop_->screenCapture().CGPreflightScreenCaptureAccess());
  EXPECT_EQ(desktop_->screenCapture().captureDisplay(1), std::nullopt);
  loop_.runReady();
  EXPECT_EQ(lost_, 1);
  desktop_.reset();
  EXPECT_FALSE(tryToConnect()) << "there is nothing to connect to";
}

TEST_F(X11DesktopTest, CapturesTheScreenAndDescribesIt) {
  ScriptedWindowManager manager;
  connect();
  const std::uint32_t orange = 0xFF8000;
  xcb_change_window_attributes(manager.raw(), manager.root(), XCB_CW_BACK_PIXEL, &orange);
  xcb_clear_area(manager.raw(), 0, manager.root(), 0, 0, 320, 480);
  manager.sync();
  const auto image = desktop_->screenCapture().captureDisplay(1);
  ASSERT_TRUE(image);
  EXPECT_EQ(image->width, 640);
  EXPECT_EQ(image->height, 480);
  ASSERT_EQ(image->pixels.size(), 640U * 480U);
  EXPECT_EQ(image->pixels[479 * 640 + 319], 0xFFFF8000U);
  EXPECT_NE(image->pixels[479 * 640 + 320], 0xFFFF8000U);
  EXPECT_EQ(desktop_->screenCapture().captureDisplay(2), std::nullopt);

  auto& displays = desktop_->displays();
  EXPECT_THAT(displays.screens(), ElementsAre(Screen{1, {{0, 0}, {640, 480}}, "screen"}));
  EXPECT_THAT(displays.displaySetIdentifiers(), ElementsAre("screen"));
  EXPECT_EQ(displays.CGDisplayBounds(2), CGRect{});
  EXPECT_FALSE(displays.CGDisplayIsBuiltin(1));

  manager.setWords(manager.root(), X11Atom::netWorkarea, XCB_ATOM_CARDINAL, {0, 20, 640, 440});
  manager.sync();
  const Monitor screen{"screen", {{0, 0}, {640, 480}}, {{0, 20}, {640, 440}}, false, false};
  EXPECT_THAT(displays.monitors(), ElementsAre(screen));
}

TEST_F(X11DesktopTest, SaysWhatIsWrongWithTheAddress) {
  setenv("DISPLAY", ":99999", 1);
  const auto unreachable = tryToConnect();
  ASSERT_FALSE(unreachable);
  EXPECT_EQ(unreachable.error(), "cannot reach the X server \":99999\" that DISPLAY names");
  EXPECT_FALSE(X11Desktop::windowManagerPresent());
  unsetenv("DISPLAY");
  const auto unset = tryToConnect();
  ASSERT_FALSE(unset);
  EXPECT_EQ(unset.error(), "cannot reach an X server: DISPLAY is not set");
}

TEST_F(X11DesktopTest, MissionControlTakesTheClicksInIt) {
  const ObedientWindowManager manager(3);
  connect();
  auto& accessibility = desktop_->accessibility();
  const auto text = [&](const AXUIElement& element, std::string_view attribute) {
    const auto value = accessibility.AXUIElementCopyAttributeValue(element, attribute);
    const auto* found = std::get_if<std::string>(&value);
    return found == nullptr ? std::string() : *found;
  };
  const std::function<AXUIElement(const AXUIElement&, std::string_view)> find = [&](const auto& element, auto wanted) {
    if (text(element, "AXTitle") == wanted || text(element, "AXDescription") == wanted) {
      return element;
    }
    AXUIElement found;
    const auto children = accessibility.AXUIElementCopyAttributeValue(element, "AXChildren");
    if (const auto* list = std::get_if<std::vector<AXUIElement>>(&children)) {
      std::ranges::for_each(*list, [&](const auto& child) { found = found ? found : find(child, wanted); });
    }
    return found;
  };
  const auto shown = [&](std::string_view wanted) {
    const auto docks = desktop_->workspace().runningApplicationsWithBundleIdentifier("com.apple.dock");
    return find(accessibility.AXUIElementCreateApplication(docks.at(0).pid), wanted);
  };
  const auto mouse = [&](CGMouseEventType type, CGPoint location) {
    auto& events = desktop_->events();
    events.CGEventPost(CGEventTap::hid, *events.CGEventCreateMouseEvent(type, location));
  };

  windowServer().CGSBridgeDockNotify("com.apple.expose.awake");
  ASSERT_TRUE(loop_.runUntil([&] { return shown("Desktop 2") != nullptr; }));
  const auto corner = std::get<CGPoint>(accessibility.AXUIElementCopyAttributeValue(shown("Desktop 2"), "AXPosition"));
  mouse(CGMouseEventType::mouseMoved, {corner.x + 6, corner.y + 6});
  ASSERT_TRUE(loop_.runUntil([&] { return shown("Remove Desktop") != nullptr; }));
  mouse(CGMouseEventType::leftMouseDown, {corner.x + 6, corner.y + 6});
  EXPECT_EQ(desktop_->events().pressedMouseButtons(), 0U) << "what is below does not get the click";
  mouse(CGMouseEventType::leftMouseUp, {corner.x + 6, corner.y + 6});
  EXPECT_EQ(spaces(), "[1] 3");
}

TEST_F(X11DesktopTest, HotKeysArriveWhateverTheLocks) {
  ScriptedWindowManager manager;
  connect();
  auto& hotKeys = desktop_->globalHotKeys();
  std::string seen;
  const auto type = [&](const std::vector<Keysym>& keysyms) {
    const std::unique_ptr<xcb_key_symbols_t, decltype(&xcb_key_symbols_free)> symbols(
        xcb_key_symbols_alloc(manager.raw()), xcb_key_symbols_free);
    std::vector<xcb_keycode_t> keycodes;
    for (const auto keysym : keysyms) {
      const std::unique_ptr<xcb_keycode_t, FreeMemory> found(xcb_key_symbols_get_keycode(symbols.get(), keysym));
      keycodes.push_back(found ? *found : xcb_keycode_t{0});
    }
    for (const auto event : {std::uint8_t{XCB_KEY_PRESS}, std::uint8_t{XCB_KEY_RELEASE}}) {
      for (const auto keycode : keycodes) {
        // After two milliseconds: a press at the very time of the last release would be the key repeating.
        xcb_test_fake_input(manager.raw(), event, keycode, 2, XCB_NONE, 0, 0, 0);
      }
    }
    manager.sync();
    windowServer().CGSBridgeActiveSpace();  // a round trip, which brings the events
    loop_.runReady();
    return std::exchange(seen, "");
  };
  auto letter = hotKeys.registerHotKey(0, 0, [&] { seen += "a"; });
  auto second = hotKeys.registerHotKey(0, 0, [&] { seen += "A"; });
  auto combination = hotKeys.registerHotKey(20, CGEventFlag::control | CGEventFlag::alternate, [&] { seen += "3"; });
  ASSERT_TRUE(letter && second && combination);
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
  EXPECT_TRUE(taken.registerHotKey(0, 0, [] {})) << "released above";
  const auto kept = taken.registerHotKey(1, 0, [] {});
  ASSERT_TRUE(kept);
  EXPECT_FALSE(hotKeys.registerHotKey(1, 0, [] {})) << "another program has it";
  EXPECT_FALSE(hotKeys.registerHotKey(999, 0, [] {})) << "no such key";
  desktop_.reset();
  once.reset();
}

TEST(WindowManagerVersion, IsFoundInWhatProgramsPrint) {
  const std::pair<const char*, const char*> cases[] = {
      {"Openbox 3.6.1\nCopyright (c) 2004 Mikael Magnusson 1.0", "3.6.1"},
      {"i3 version 4.22 (2023-01-02) \u00a9 2009 Michael Stapelberg", "4.22"},
      {"\tThis is xfwm4 version 4.18.0 (revision 7e7473c5b) for Xfce 4.18\n", "4.18.0"},
      {"kwin 5.27.5", "5.27.5"},
      {"JWM v2.4.3 by Joe Wingbermuehle", "2.4.3"},
      {"icewm 3.3.1, Copyright 1997-2012 Marko Macek", "3.3.1"},
      {"no 1 knows", ""},
      {"", ""},
  };
  for (const auto& [text, version] : cases) {
    EXPECT_EQ(versionIn(text), version) << text;
  }
  EXPECT_EQ(versionArgument("openbox"), "--version");
  EXPECT_EQ(versionArgument("somethingwm"), "") << "who knows what it would do";
}

TEST_F(X11DesktopTest, TellsWhatTheWindowManagerLacks) {
  connect();
  EXPECT_EQ(desktop_->desktopFacts().windowManager(), std::nullopt);
  ScriptedWindowManager manager("Otherbox");
  manager.claim({X11Atom::netCurrentDesktop, X11Atom::netCloseWindow});
  const auto facts = desktop_->desktopFacts().windowManager();
  ASSERT_TRUE(facts);
  EXPECT_EQ(facts->name, "Otherbox");
  EXPECT_EQ(facts->version, "") << "this program is not known to tell it";
  EXPECT_THAT(facts->missingHints, AllOf(Contains("_NET_RESTACK_WINDOW"), Contains("_NET_WM_DESKTOP"),
                                         Not(Contains("_NET_CURRENT_DESKTOP")), Not(Contains("_NET_CLOSE_WINDOW"))));
}

}  // namespace
}  // namespace tallowin

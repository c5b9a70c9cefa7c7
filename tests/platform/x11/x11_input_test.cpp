#include <X11/keysym.h>
#include <gmock/gmock.h>
#include <optional>
#include <xcb/xcb_keysyms.h>
#include <xcb/xtest.h>

#include "tests/platform/x11/obedient_window_manager.h"
#include "tests/platform/x11/x11_desktop_fixture.h"

namespace tallowin {
namespace {

using testing::IsEmpty;

using X11InputTest = X11DesktopTest;

TEST_F(X11InputTest, AddsAndRemovesDesktopsByMissionControl) {
  std::optional<ObedientWindowManager> manager(std::in_place, 2);
  connect();
  auto& accessibility = desktop_->accessibility();
  const auto text = [&](const AXUIElement& element, std::string_view attribute) {
    const auto value = accessibility.AXUIElementCopyAttributeValue(element, attribute);
    const auto* found = std::get_if<std::string>(&value);
    return found == nullptr ? std::string() : *found;
  };
  std::function<void(const AXUIElement&, std::vector<AXUIElement>&)> collect = [&](const auto& element, auto& buttons) {
    if (text(element, "AXRole") == "AXButton") {
      buttons.push_back(element);
    }
    const auto children = accessibility.AXUIElementCopyAttributeValue(element, "AXChildren");
    if (const auto* list = std::get_if<std::vector<AXUIElement>>(&children)) {
      std::ranges::for_each(*list, [&](const auto& child) { collect(child, buttons); });
    }
  };
  const auto buttons = [&] {
    const auto docks = desktop_->workspace().runningApplicationsWithBundleIdentifier("com.apple.dock");
    std::vector<AXUIElement> found;
    collect(accessibility.AXUIElementCreateApplication(docks.at(0).pid), found);
    return found;
  };
  const auto find = [&](std::string_view attribute, std::string_view wanted) {
    const auto all = buttons();
    const auto found =
        std::ranges::find_if(all, [&](const AXUIElement& button) { return text(button, attribute) == wanted; });
    return found == all.end() ? AXUIElement() : *found;
  };
  const auto openMissionControl = [&] {
    windowServer().CGSBridgeDockNotify("com.apple.expose.awake");
    return loop_.runUntil([&] { return !buttons().empty(); });
  };
  const auto mouse = [&](CGMouseEventType type, CGPoint location) {
    auto& events = desktop_->events();
    events.CGEventPost(CGEventTap::hid, *events.CGEventCreateMouseEvent(type, location));
  };

  EXPECT_THAT(buttons(), IsEmpty());
  ASSERT_TRUE(openMissionControl());
  EXPECT_TRUE(accessibility.AXUIElementPerformAction(find("AXDescription", "add desktop"), "AXPress"));
  EXPECT_EQ(spaces(), "[1] 2 3");
  post(53, 0, true);
  post(53, 0, false);
  EXPECT_THAT(buttons(), IsEmpty()) << "Escape closes it";

  ASSERT_TRUE(openMissionControl());
  const auto thumbnail = find("AXTitle", "Desktop 2");
  const auto corner = std::get<CGPoint>(accessibility.AXUIElementCopyAttributeValue(thumbnail, "AXPosition"));
  mouse(CGMouseEventType::mouseMoved, {corner.x + 6, corner.y + 6});
  ASSERT_TRUE(loop_.runUntil([&] { return find("AXDescription", "Remove Desktop") != nullptr; }));
  mouse(CGMouseEventType::leftMouseDown, {corner.x + 6, corner.y + 6});
  EXPECT_EQ(desktop_->events().pressedMouseButtons(), 0U) << "what is below does not get the click";
  mouse(CGMouseEventType::leftMouseUp, {corner.x + 6, corner.y + 6});
  EXPECT_EQ(spaces(), "[1] 2");
  post(53, 0, true);

  manager.reset();
  ScriptedWindowManager i3("i3");
  i3.setDesktops(2, 0, {"1\0002\0", 4});
  windowServer().CGSBridgeDockNotify("com.apple.expose.awake");
  ASSERT_TRUE(loop_.runUntil([&] { return !loop_.hasTimers(); }));
  EXPECT_THAT(buttons(), IsEmpty()) << "desktops that come and go by themselves";
}

TEST_F(X11InputTest, HotKeysArriveWhateverTheLocks) {
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

TEST_F(X11InputTest, DragsInSeveralMotions) {
  ScriptedWindowManager manager;
  const std::uint32_t mask =
      XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_POINTER_MOTION | XCB_EVENT_MASK_BUTTON_PRESS;
  xcb_change_window_attributes(manager.raw(), manager.root(), XCB_CW_EVENT_MASK, &mask);
  manager.sync();
  connect();
  auto& events = desktop_->events();
  const auto at = [&](CGMouseEventType type, CGPoint location) {
    events.CGEventPost(CGEventTap::hid, *events.CGEventCreateMouseEvent(type, location));
  };
  at(CGMouseEventType::leftMouseDown, {100, 100});
  at(CGMouseEventType::leftMouseDragged, {104, 100});
  EXPECT_EQ(events.CGEventGetLocation(*events.CGEventCreate()), (CGPoint{104, 100}));
  manager.sync();
  std::vector<int> motions;
  while (const XcbPtr<xcb_generic_event_t> event{xcb_poll_for_event(manager.raw())}) {
    const auto& motion = reinterpret_cast<const xcb_motion_notify_event_t&>(*event);
    if (event->response_type == XCB_MOTION_NOTIFY && (motion.state & XCB_BUTTON_MASK_1) != 0) {
      motions.push_back(motion.root_x);
    }
  }
  EXPECT_GE(motions.size(), 4U);
  EXPECT_GE(std::ranges::max(motions), 116) << "beyond the thresholds of window managers";
  EXPECT_EQ(motions.back(), 104);
  at(CGMouseEventType::leftMouseUp, {104, 100});
}

}  // namespace
}  // namespace tallowin

#include <X11/keysym.h>
#include <gmock/gmock.h>
#include <xcb/xcb_keysyms.h>
#include <xcb/xtest.h>

#include "tests/platform/x11/obedient_window_manager.h"
#include "tests/platform/x11/x11_desktop_fixture.h"

namespace tallowin {
namespace {

using X11InputTest = X11DesktopTest;

TEST_F(X11InputTest, MissionControlTakesTheClicksInIt) {
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
  EXPECT_EQ(spaces(), "[1] 2");
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

}  // namespace
}  // namespace tallowin

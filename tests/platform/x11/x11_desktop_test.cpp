#include <X11/keysym.h>
#include <gmock/gmock.h>
#include <optional>
#include <thread>
#include <xcb/xcb_keysyms.h>

#include "tests/platform/x11/x11_desktop_fixture.h"

namespace tallowin {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// A press ('+') or release ('-') of the key with this keysym.
std::string keyText(char sign, Keysym keysym) {
  return std::string(1, sign).append(std::to_string(keysym));
}

TEST_F(X11DesktopTest, SwitchesByHotKeyAndHearsOfIt) {
  ScriptedWindowManager manager;
  manager.setDesktops(4, 1);
  connect();
  EXPECT_EQ(spaces(), "1 [2] 3 4");
  EXPECT_TRUE(windowServer().CGSBridgeProbe().healthy());
  int posted = 0;
  const auto observer = desktop_->workspaceNotifications().addObserver(
      NotificationName::NSWorkspaceActiveSpaceDidChangeNotification, [&](const Notification&) { ++posted; });

  post(21, CGEventFlag::control, true);  // Control-4
  post(21, CGEventFlag::control, false);
  loop_.runReady();
  EXPECT_THAT(requests(manager), ElementsAre("_NET_CURRENT_DESKTOP 3 0 0 0 0"));
  EXPECT_THAT(told_, IsEmpty());
  manager.setCurrent(3);
  ASSERT_TRUE(runUntilTold(1));
  EXPECT_THAT(told_, ElementsAre(X11Changes::activeSpaceChanged));
  EXPECT_EQ(posted, 1);
  EXPECT_EQ(windowServer().CGSBridgeActiveSpace(), 4U);
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

TEST_F(X11DesktopTest, KeepsToTheNamesOfDynamicDesktops) {
  ScriptedWindowManager manager("i3");
  manager.setDesktops(3, 0, {"1\0003: web\0mail\0", 14});
  connect();
  const auto mail = windowServer().CGSBridgeCopyManagedDisplaySpaces()->at(0)["Spaces"][2]["ManagedSpaceID"];
  EXPECT_EQ(spaces(), "[1] 3 " + mail.dump());

  post(19, CGEventFlag::control, true);  // Control-2: the second Space, which is the desktop of index 1
  loop_.runReady();
  EXPECT_THAT(requests(manager), ElementsAre("_NET_CURRENT_DESKTOP 1 0 0 0 0"));

  int posted = 0;
  const auto observer = desktop_->workspaceNotifications().addObserver(
      NotificationName::NSWorkspaceActiveSpaceDidChangeNotification, [&](const Notification&) { ++posted; });
  manager.setDesktops(2, 0, {"3: web\0mail\0", 12});  // workspace 1 is gone, and the index of the current one stayed
  ASSERT_TRUE(loop_.runUntil([&] { return posted > 0; }));
  EXPECT_EQ(spaces(), "[3] " + mail.dump());
}

TEST_F(X11DesktopTest, FindsAndMovesWindows) {
  ScriptedWindowManager manager;
  manager.setDesktops(3, 0);
  const auto one = manager.manageWindow(1);
  const auto everywhere = manager.manageWindow(0xFFFFFFFF);
  const auto nowhere = manager.manageWindow(7);
  const auto unmanaged = manager.createWindow();
  manager.sync();
  connect();
  using Spaces = std::vector<ManagedSpaceID>;
  EXPECT_EQ(windowServer().CGSBridgeCopySpacesForWindow(one), (Spaces{2}));
  EXPECT_EQ(windowServer().CGSBridgeCopySpacesForWindow(everywhere), (Spaces{1, 2, 3}));
  for (const WindowNumber window : {nowhere, unmanaged, xcb_window_t{0}, xcb_window_t{0x1FFFFFFF}}) {
    EXPECT_EQ(windowServer().CGSBridgeCopySpacesForWindow(window), std::nullopt);
  }
  EXPECT_TRUE(windowServer().CGSBridgeMoveWindowToSpace(one, 3));
  EXPECT_FALSE(windowServer().CGSBridgeMoveWindowToSpace(one, 4));
  EXPECT_FALSE(windowServer().CGSBridgeMoveWindowToSpace(unmanaged, 1));
  EXPECT_THAT(requests(manager), ElementsAre("_NET_WM_DESKTOP 2 2 0 0 0"));
}

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
  EXPECT_FALSE(X11Desktop::connect(loop_, clock_, log_, loop_, processes_, [] {})) << "there is nothing to connect to";
}

TEST_F(X11DesktopTest, TypesKeysWithTheirModifiers) {
  ScriptedWindowManager manager;
  const auto window = manager.createWindow();
  const std::uint32_t mask = XCB_EVENT_MASK_KEY_PRESS | XCB_EVENT_MASK_KEY_RELEASE;
  xcb_change_window_attributes(manager.raw(), window, XCB_CW_EVENT_MASK, &mask);
  xcb_map_window(manager.raw(), window);
  xcb_set_input_focus(manager.raw(), XCB_INPUT_FOCUS_POINTER_ROOT, window, XCB_CURRENT_TIME);
  manager.sync();
  connect();
  const std::unique_ptr<xcb_key_symbols_t, decltype(&xcb_key_symbols_free)> symbols(
      xcb_key_symbols_alloc(manager.raw()), xcb_key_symbols_free);
  const auto received = [&] {
    desktop_->events().mouseLocation();  // a round trip: the server has done what was posted before
    manager.sync();
    std::vector<std::string> keys;
    while (const XcbPtr<xcb_generic_event_t> event{xcb_poll_for_event(manager.raw())}) {
      const auto& key = reinterpret_cast<const xcb_key_press_event_t&>(*event);
      const bool press = event->response_type == XCB_KEY_PRESS;
      if (press || event->response_type == XCB_KEY_RELEASE) {
        keys.push_back(keyText(press ? '+' : '-', xcb_key_symbols_get_keysym(symbols.get(), key.detail, 0)));
      }
    }
    return keys;
  };

  post(1, CGEventFlag::command | CGEventFlag::shift, true);
  EXPECT_THAT(received(), ElementsAre(keyText('+', XK_Super_L), keyText('+', XK_Shift_L), keyText('+', XK_s)));
  post(1, CGEventFlag::command | CGEventFlag::shift, false);
  EXPECT_THAT(received(), ElementsAre(keyText('-', XK_s), keyText('-', XK_Shift_L), keyText('-', XK_Super_L)));
  post(999, 0, true);
  post(2, 0, false);
  EXPECT_THAT(received(), IsEmpty()) << "keys that do not exist or are not held";
  post(53, CGEventFlag::alternate, true);
  EXPECT_THAT(received(), ElementsAre(keyText('+', XK_Alt_L), keyText('+', XK_Escape)));
  desktop_.reset();
  manager.sync();
  const XcbPtr<xcb_query_keymap_reply_t> state{
      xcb_query_keymap_reply(manager.raw(), xcb_query_keymap(manager.raw()), nullptr)};
  ASSERT_TRUE(state);
  EXPECT_THAT(state->keys, testing::Each(0)) << "what is held is released at the end";
}

TEST_F(X11DesktopTest, MovesThePointerAndPressesItsButton) {
  ScriptedWindowManager manager;
  connect();
  auto& events = desktop_->events();
  events.CGWarpMouseCursorPosition({100, 50});
  EXPECT_EQ(events.mouseLocation(), (CGPoint{100, 430}));
  EXPECT_EQ(events.CGEventGetLocation(*events.CGEventCreate()), (CGPoint{100, 50}));
  const struct {
    CGMouseEventType type;
    CGPoint location;
    std::uint32_t buttons;
    CGPoint arrives;
  } steps[] = {
      {CGMouseEventType::mouseMoved, {20, 30}, 0, {20, 30}},
      {CGMouseEventType::leftMouseDown, {21, 31}, 1, {21, 31}},
      {CGMouseEventType::leftMouseDragged, {300, 200}, 1, {300, 200}},
      {CGMouseEventType::leftMouseUp, {1e9, -1e9}, 0, {639, 0}},
  };
  for (const auto& [type, location, buttons, arrives] : steps) {
    events.CGEventPost(CGEventTap::hid, *events.CGEventCreateMouseEvent(type, location));
    EXPECT_EQ(events.pressedMouseButtons(), buttons);
    EXPECT_EQ(events.CGEventGetLocation(*events.CGEventCreate()), arrives);
  }
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
}

TEST_F(X11DesktopTest, SaysWhatIsWrongWithTheAddress) {
  setenv("DISPLAY", ":99999", 1);
  const auto unreachable = X11Desktop::connect(loop_, clock_, log_, loop_, processes_, [] {});
  ASSERT_FALSE(unreachable);
  EXPECT_EQ(unreachable.error(), "cannot reach the X server \":99999\" that DISPLAY names");
  EXPECT_FALSE(X11Desktop::windowManagerPresent());
  unsetenv("DISPLAY");
  const auto unset = X11Desktop::connect(loop_, clock_, log_, loop_, processes_, [] {});
  ASSERT_FALSE(unset);
  EXPECT_EQ(unset.error(), "cannot reach an X server: DISPLAY is not set");
}

}  // namespace
}  // namespace tallowin

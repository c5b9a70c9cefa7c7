#include <gmock/gmock.h>
#include <optional>
#include <thread>

#include "tests/platform/x11/x11_desktop_fixture.h"

namespace tallowin {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

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
  EXPECT_FALSE(X11Desktop::connect(loop_, clock_, log_, loop_, processes_, [] {})) << "there is nothing to connect to";
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

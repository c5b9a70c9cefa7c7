#include "platform/x11/x11_windows.h"

#include <gmock/gmock.h>

#include "platform/x11/x11_displays.h"
#include "platform/x11/x11_process_identity.h"
#include "platform/x11/x11_window_server.h"
#include "tests/lines_log.h"
#include "tests/platform/x11/x11_windows_fixture.h"
#include "tests/set_clock.h"

namespace tallowin {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Optional;

TEST_F(X11WindowsTest, ListsManagedWindowsFrontToBackHoweverDeepTheirFrames) {
  for (const int depth : {1, 2}) {
    start(4, {}, depth);
    TestClient client;
    const auto first = open(client, "Editor", "caf\xC3\xA9");
    const auto second = open(client, "Editor", "two");
    const auto third = open(client, "Editor", "three");
    client.open("Popup", "not managed", true);
    EXPECT_THAT(order(), ElementsAre(third, second, first)) << depth;
    EXPECT_TRUE(windows_->actions.raise(first));
    EXPECT_THAT(order(), ElementsAre(first, third, second)) << depth;
    connection_->moveToDesktop(third, 2);
    ASSERT_TRUE(eventually([&] { return read(third).desktop == 2U; }));
    client.setWords(second, X11Atom::netWmWindowOpacity, XCB_ATOM_CARDINAL, {0});
    client.setWords(second, X11Atom::netWmWindowType, XCB_ATOM_ATOM,
                    {connection_->atom(X11Atom::netWmWindowTypeDesktop)});
    ASSERT_TRUE(eventually([&] { return read(second).layer < 0; }));

    const auto all = *list_->CGWindowListCopyWindowInfo(0, 0);
    ASSERT_EQ(all.size(), 3U);
    const PropertyList expected = {{"kCGWindowLayer", 0},
                                   {"kCGWindowOwnerPID", getpid()},
                                   {"kCGWindowNumber", first},
                                   {"kCGWindowBounds", {{"X", 30.0}, {"Y", 40.0}, {"Width", 204.0}, {"Height", 122.0}}},
                                   {"kCGWindowAlpha", 1.0},
                                   {"kCGWindowName", "caf\xC3\xA9"},
                                   {"kCGWindowOwnerName", "Editor"}};
    EXPECT_EQ(all[0], expected);
    EXPECT_EQ(all[2]["kCGWindowAlpha"], 0.0);
    EXPECT_EQ(list_->CGWindowListCopyWindowInfo(CGWindowListOption::excludeDesktopElements, 0)->size(), 2U);
    const auto onScreen = *list_->CGWindowListCopyWindowInfo(17, 0);
    ASSERT_EQ(onScreen.size(), 1U) << "one is on another desktop, one is the desktop's picture";
    EXPECT_EQ(onScreen[0], expected);
    EXPECT_EQ(*list_->CGWindowListCopyWindowInfo(CGWindowListOption::includingWindow, first),
              PropertyList::array({expected}));
    EXPECT_EQ(list_->CGWindowListCopyWindowInfo(CGWindowListOption::includingWindow, connection_->root())->size(), 0U);
    manager_.reset();
  }
}

TEST_F(X11WindowsTest, WindowsOfThisProcessAreNotListed) {
  start();
  TestClient client;
  const auto window = open(client, "Own");
  X11WindowReader other(*connection_, getpid());
  EXPECT_THAT(other.read().windows, IsEmpty());
  EXPECT_EQ(other.read(window), std::nullopt);
}

TEST_F(X11WindowsTest, WindowsOfOtherMachinesHaveAProcessOfTheirOwn) {
  start();
  TestClient near;
  TestClient far;
  TestClient farther;
  const auto local = open(near, "Local");
  std::vector<ProcessID> pids = {read(local).pid};
  for (auto* client : {&far, &far, &farther}) {
    const auto window = open(*client, "Remote", "", "elsewhere.example.org");
    client->setWords(window, X11Atom::netWmPid, XCB_ATOM_CARDINAL, {4711});
    client->sync();
    pids.push_back(read(window).pid);
  }
  windows_->applications.invalidate();
  EXPECT_EQ(pids[0], getpid());
  EXPECT_GE(pids[1], firstStandInPid);
  EXPECT_EQ(pids[1], pids[2]);
  EXPECT_GT(pids[3], firstStandInPid);
  EXPECT_NE(pids[1], pids[3]);
  EXPECT_EQ(workspace_->runningApplications().size(), 3U);
  EXPECT_EQ(workspace_->runningApplicationWithProcessIdentifier(pids[3])->bundleIdentifier, "Remote");
}

TEST_F(X11WindowsTest, SetsFramesWithTheDecorationTakenIntoAccount) {
  start();
  TestClient client;
  const auto window = open(client, "Editor");
  const auto frameIs = [&](const CGRect& frame) { return eventually([&] { return read(window).frame == frame; }); };
  EXPECT_TRUE(set(window, "AXPosition", CGPoint{-10, 55}));
  EXPECT_TRUE(set(window, "AXSize", CGSize{304, 222}));
  EXPECT_TRUE(frameIs({{-10, 55}, {304, 222}}));
  EXPECT_EQ(get(window, "AXPosition"), AXValue(CGPoint{-10, 55}));
  EXPECT_EQ(get(window, "AXSize"), AXValue(CGSize{304, 222}));

  for (const auto state : {X11Atom::netWmStateMaximizedVert, X11Atom::netWmStateFullscreen}) {
    connection_->sendToWindowManager(window, X11Atom::netWmState, {1, connection_->atom(state), 0, 2, 0});
    ASSERT_TRUE(eventually([&] { return read(window).maximized || read(window).fullscreen; }));
    EXPECT_TRUE(set(window, "AXPosition", CGPoint{1, 2}));
    EXPECT_TRUE(frameIs({{1, 2}, {304, 222}}));
    EXPECT_FALSE(read(window).maximized || read(window).fullscreen);
  }
  const auto button = std::get<AXUIElement>(get(window, "AXCloseButton"));
  EXPECT_TRUE(accessibility_->AXUIElementPerformAction(button, "AXPress"));
  ASSERT_TRUE(eventually([&] { return !windows_->reader.read(window); }));
  EXPECT_FALSE(set(window, "AXPosition", CGPoint{1, 2}));
  EXPECT_FALSE(set(window, "AXMinimized", true));
  EXPECT_FALSE(set(window, "AXMain", true));
  EXPECT_FALSE(set(window, "AXSize", CGSize{1, 2}));
  EXPECT_EQ(get(window, "AXTitle"), AXValue());
  EXPECT_FALSE(accessibility_->AXUIElementPerformAction(element(window), "AXRaise"));
  EXPECT_FALSE(accessibility_->AXUIElementPerformAction(button, "AXPress"));
}

TEST_F(X11WindowsTest, MinimisesHidesAndBringsBack) {
  start();
  TestClient client;
  const auto one = open(client, "Editor");
  const auto two = open(client, "Editor");
  const auto three = open(client, "Editor");
  const auto pid = getpid();
  EXPECT_TRUE(set(one, "AXMinimized", true));
  EXPECT_EQ(get(one, "AXMinimized"), AXValue(true));
  EXPECT_TRUE(windows_->actions.minimize(three));
  connection_->moveToDesktop(three, 3);
  ASSERT_TRUE(eventually([&] { return read(three).desktop == 3U; }));
  EXPECT_TRUE(set(three, "AXMinimized", false)) << "on another desktop";
  EXPECT_EQ(read(three).desktop, 3U);

  EXPECT_TRUE(workspace_->hide(pid));
  EXPECT_TRUE(read(two).hidden && read(three).hidden);
  EXPECT_TRUE(workspace_->runningApplicationWithProcessIdentifier(pid)->isHidden);
  EXPECT_TRUE(workspace_->unhide(pid));
  EXPECT_FALSE(read(two).hidden || read(three).hidden);
  EXPECT_TRUE(read(one).hidden) << "it was minimised before";
  EXPECT_FALSE(workspace_->runningApplicationWithProcessIdentifier(pid)->isHidden);

  EXPECT_TRUE(workspace_->hide(pid));
  EXPECT_TRUE(windows_->actions.restore(two));
  EXPECT_FALSE(workspace_->runningApplicationWithProcessIdentifier(pid)->isHidden) << "the user got a window back";
  EXPECT_FALSE(workspace_->hide(1));
  EXPECT_FALSE(workspace_->unhide(1));
}

TEST_F(X11WindowsTest, ActivatesTheMainWindowAfterSwitchingToItsDesktop) {
  start();
  TestClient client;
  const auto there = open(client, "Editor");
  const auto here = open(client, "Editor");
  connection_->moveToDesktop(there, 2);
  ASSERT_TRUE(eventually([&] { return read(there).desktop == 2U; }));
  EXPECT_TRUE(workspace_->activateWithOptions(getpid()));
  ASSERT_TRUE(eventually([&] { return windows_->reader.activeWindow() == here; }));
  EXPECT_EQ(desktops_->read().current, 0U) << "it has a window on the desktop in front";

  EXPECT_TRUE(set(there, "AXMain", true));
  EXPECT_TRUE(workspace_->activateWithOptions(getpid()));
  EXPECT_EQ(desktops_->read().current, 2U);
  ASSERT_TRUE(eventually([&] { return windows_->reader.activeWindow() == there; }));
  EXPECT_EQ(workspace_->frontmostApplication()->pid, getpid());
  EXPECT_TRUE(workspace_->frontmostApplication()->isActive);

  const auto application = accessibility_->AXUIElementCreateApplication(getpid());
  const auto focused =
      std::get<AXUIElement>(accessibility_->AXUIElementCopyAttributeValue(application, "AXFocusedWindow"));
  EXPECT_EQ(dynamic_cast<const X11WindowElement&>(*focused).number(), there);
  EXPECT_FALSE(workspace_->activateWithOptions(1));
}

TEST_F(X11WindowsTest, KnowsWhatTheWindowManagerIgnores) {
  start(4, {X11Atom::netRestackWindow, X11Atom::wmChangeState, X11Atom::netWmState, X11Atom::netCurrentDesktop,
            X11Atom::netNumberOfDesktops});
  TestClient client;
  const auto one = open(client, "Editor");
  const auto two = open(client, "Editor");
  EXPECT_FALSE(windows_->actions.minimize(one));
  EXPECT_TRUE(windows_->refusals.isRefused(X11Refusals::Request::minimize));
  EXPECT_TRUE(windows_->actions.raise(two)) << "it is in front already, which teaches nothing";
  EXPECT_FALSE(windows_->refusals.isRefused(X11Refusals::Request::restack));
  EXPECT_TRUE(windows_->actions.raise(one)) << "by making it active";
  EXPECT_TRUE(eventually([&] { return order() == std::vector<WindowNumber>({one, two}); }));
  connection_->moveToDesktop(two, 1);
  ASSERT_TRUE(eventually([&] { return read(two).desktop == 1U; }));
  EXPECT_FALSE(windows_->actions.activate(two)) << "its desktop does not come";
  EXPECT_EQ(manager_->count(X11Atom::netActiveWindow), 1) << "so nobody is asked to fetch it";
  EXPECT_TRUE(operations_->canChangeCount()) << "nothing is known yet";
  EXPECT_FALSE(operations_->addDesktop("Main"));
  EXPECT_FALSE(operations_->canChangeCount());
  manager_.reset();
  manager_.emplace(4, std::set<X11Atom>(), 1, "Another");
  EXPECT_TRUE(eventually([&] { return operations_->canChangeCount(); })) << "another one may";
}

TEST_F(X11WindowsTest, RemovesADesktopInTheMiddle) {
  start(4);
  TestClient client;
  std::vector<xcb_window_t> windows;
  for (const std::uint32_t desktop : {0U, 1U, 2U, 3U, X11Connection::allDesktops}) {
    windows.push_back(open(client, "Editor"));
    connection_->moveToDesktop(windows.back(), desktop);
  }
  operations_->switchTo(4, SwitchCause::gesture);
  ASSERT_TRUE(eventually([&] { return desktops_->read().current == 3U && read(windows[4]).desktop > 4U; }));
  EXPECT_TRUE(operations_->removeDesktop(2));
  const auto state = desktops_->read();
  EXPECT_THAT(state.spaces, ElementsAre(1, 3, 4));
  EXPECT_EQ(state.active(), 4) << "the same windows are in front";
  const auto placesOfWindows = [&] {
    std::vector<std::uint32_t> found;
    for (const auto window : windows) {
      found.push_back(*read(window).desktop);
    }
    return found;
  };
  EXPECT_THAT(placesOfWindows(), ElementsAre(0, 1, 1, 2, X11Connection::allDesktops));
  EXPECT_TRUE(operations_->removeDesktop(4)) << "the last one goes by itself";
  EXPECT_TRUE(operations_->addDesktop("Main"));
  EXPECT_THAT(desktops_->read().spaces, ElementsAre(1, 3, 5));
  EXPECT_FALSE(operations_->removeDesktop(9));
  EXPECT_TRUE(operations_->restore({1, 2, 3}));
  EXPECT_THAT(desktops_->read().spaces, ElementsAre(1, 2, 3, 5));
  EXPECT_EQ(desktops_->read().active(), 3);
  EXPECT_THAT(placesOfWindows(), ElementsAre(0, 2, 2, 2, X11Connection::allDesktops)) << "windows stay with their ids";
}

TEST_F(X11WindowsTest, AnswersNothingOnceTheServerIsGone) {
  start();
  TestClient client;
  const auto window = open(client, "Editor");
  client.close(window);
  server_.stop();
  EXPECT_EQ(list_->CGWindowListCopyWindowInfo(16, 0), std::nullopt);
  EXPECT_FALSE(workspace_->activateWithOptions(getpid()));
  EXPECT_EQ(workspace_->frontmostApplication(), std::nullopt);
  EXPECT_FALSE(windows_->actions.close(window));
  EXPECT_FALSE(operations_->removeDesktop(1));
}

/// One reading of all windows answers what is asked about each of them, but never what has changed since.
class X11MomentTest : public X11WindowsTest {
 protected:
  void startServing() {
    start();
    dock_.emplace(*operations_, hotKeys_, loop_, clock_, log_, DockBehaviour{});
    windowServer_.emplace(*connection_, *desktops_, hotKeys_, *dock_, *windows_, [](std::string_view) {});
  }

  void read() { list_->CGWindowListCopyWindowInfo(CGWindowListOption::excludeDesktopElements, 0); }

  auto spaces(xcb_window_t window) { return windowServer_->CGSBridgeCopySpacesForWindow(window); }

  /// So many answers of the server `work` takes.
  int answersTaken(const std::function<void()>& work) {
    int answers = 0;
    connection_->setReadObserver([&] { ++answers; });
    work();
    connection_->setReadObserver([] {});
    return answers;
  }

  SetClock clock_;
  LinesLog log_;
  SymbolicHotKeys hotKeys_;
  std::optional<EmulatedDock> dock_;
  std::optional<X11WindowServer> windowServer_;
};

TEST_F(X11MomentTest, AReadingAnswersForEachOfItsWindows) {
  startServing();
  TestClient client;
  std::vector<xcb_window_t> windows;
  for (std::uint32_t i = 0; i < 4; ++i) {
    windows.push_back(open(client, "Editor"));
    connection_->moveToDesktop(windows.back(), i);
    ASSERT_TRUE(eventually([&] { return X11WindowsTest::read(windows.back()).desktop == i; }));
  }
  const auto askAboutAll = [&] {
    for (ManagedSpaceID i = 0; i < 4; ++i) {
      EXPECT_THAT(spaces(windows[static_cast<std::size_t>(i)]), Optional(ElementsAre(i + 1)));
      EXPECT_TRUE(workspace_->runningApplicationWithProcessIdentifier(getpid())->isActive);
    }
  };
  const int apart = answersTaken(askAboutAll);
  read();
  const int first = answersTaken([&] { spaces(windows[0]); });
  EXPECT_EQ(answersTaken(askAboutAll), 0) << "the desktops have been read beside the windows";
  EXPECT_GT(apart, 4 * first);
}

TEST_F(X11MomentTest, IsOverWithTheTurnAndWithEveryRequest) {
  startServing();
  TestClient client;
  TestClient pager;
  const auto window = open(client, "Editor");
  read();
  EXPECT_THAT(spaces(window), Optional(ElementsAre(1)));
  EXPECT_EQ(spaces(connection_->root()), std::nullopt) << "not managed";
  EXPECT_FALSE(windowServer_->CGSBridgeMoveWindowToSpace(connection_->root(), 1));
  EXPECT_FALSE(windowServer_->CGSBridgeMoveWindowToSpace(window, 5));
  EXPECT_TRUE(windowServer_->CGSBridgeMoveWindowToSpace(window, 3));
  EXPECT_TRUE(eventually([&] { return spaces(window) == std::vector<ManagedSpaceID>{3}; })) << "in the same turn";

  pager.connection().moveToDesktop(window, X11Connection::allDesktops);
  EXPECT_TRUE(eventually([&] { return spaces(window) == std::vector<ManagedSpaceID>({1, 2, 3, 4}); }));
  pager.connection().moveToDesktop(window, 2);
  EXPECT_TRUE(eventually([&] { return spaces(window) == std::vector<ManagedSpaceID>{3}; }));

  const auto isMovedByOthersTo = [&](std::uint32_t desktop) {
    pager.connection().moveToDesktop(window, desktop);
    return eventually([&] { return X11WindowsTest::read(window).desktop == desktop; });
  };
  const std::pair<const char*, std::function<void()>> ends[] = {
      {"the next turn", [&] { loop_.runReady(); }},
      {"an event", [&] { windows_->moment.end(); }},
      {"windows that come or go", [&] { windows_->applications.invalidate(); }},
  };
  for (std::uint32_t desktop = 0; const auto& [what, end] : ends) {
    loop_.runReady();
    read();
    ASSERT_TRUE(isMovedByOthersTo(desktop));
    EXPECT_THAT(spaces(window), Optional(ElementsAre(desktop == 0 ? 3 : desktop))) << "as it was read";
    end();
    EXPECT_THAT(spaces(window), Optional(ElementsAre(desktop + 1))) << what;
    ++desktop;
  }
}

TEST_F(X11MomentTest, ASnapshotIsAlwaysFreshAndAnswersWhatTheSwitchAsks) {
  startServing();
  TestClient pager;
  X11Displays displays(*connection_, windows_->glance);
  const auto snapshotShows = [&](ManagedSpaceID space) {
    return eventually([&] {
      const auto list = windowServer_->CGSBridgeCopyManagedDisplaySpaces();
      return list && list->at(0)["Current Space"]["ManagedSpaceID"] == space;
    });
  };
  pager.connection().sendToWindowManager(connection_->root(), X11Atom::netCurrentDesktop,
                                         {2, XCB_CURRENT_TIME, 0, 0, 0});
  EXPECT_TRUE(snapshotShows(3)) << "all in one turn";
  EXPECT_EQ(answersTaken([&] {
              EXPECT_GT(displays.CGDisplayBounds(X11Displays::mainDisplay).size.width, 0);
              EXPECT_EQ(windows_->applications.activeWindow(), XCB_WINDOW_NONE);
              EXPECT_EQ(operations_->displayUnderPointer(), X11WindowServer::mainDisplay);
            }),
            0);
  EXPECT_EQ(answersTaken([&] { operations_->switchTo(1, SwitchCause::gesture); }), 1) << "it is sent, nothing is read";
  EXPECT_GT(answersTaken([&] { (void)windows_->applications.activeWindow(); }), 0) << "something was sent";
  EXPECT_TRUE(snapshotShows(1));
}

}  // namespace
}  // namespace tallowin

#include "platform/x11/x11_windows.h"

#include <gmock/gmock.h>

#include "tests/platform/x11/x11_session_fixture.h"

namespace tallowin {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Optional;

class X11WindowListTest : public X11WindowsTest, public testing::WithParamInterface<int> {};

INSTANTIATE_TEST_SUITE_P(HoweverDeepTheirFrames, X11WindowListTest, testing::Values(1, 2));

TEST_P(X11WindowListTest, HasManagedWindowsFrontToBack) {
  start(4, {}, GetParam());
  TestClient client;
  const auto first = open(client, "Editor", "caf\xC3\xA9");
  const auto second = open(client, "Editor", "two");
  const auto third = open(client, "Editor", "three");
  client.open("Popup", "not managed", true);
  EXPECT_THAT(order(), ElementsAre(third, second, first));
  EXPECT_TRUE(windows().raise(ref(first)));
  EXPECT_TRUE(eventually([&] { return order() == std::vector<WindowNumber>({first, third, second}); }));
  moveToDesktop(third, 2);
  client.setWords(second, X11Atom::netWmWindowOpacity, XCB_ATOM_CARDINAL, {0});
  client.sync();

  const auto all = *windows().list(WindowScope::all);
  ASSERT_EQ(all.size(), 3U);
  const DesktopWindow expected = {.id = first,
                                  .pid = getpid(),
                                  .ownerName = "Editor",
                                  .title = "caf\xC3\xA9",
                                  .frame = {{30, 40}, {204, 122}},
                                  .spaces = std::vector<ManagedSpaceID>{1}};
  EXPECT_EQ(all[0], expected);
  EXPECT_THAT(all[1].spaces, Optional(ElementsAre(3)));
  EXPECT_EQ(all[2].alpha, 0.0);
  client.setWords(second, X11Atom::netWmWindowType, XCB_ATOM_ATOM, {client.atom(X11Atom::netWmWindowTypeDesktop)});
  client.sync();
  EXPECT_EQ(windows().list(WindowScope::all)->size(), 2U);
  EXPECT_THAT(windows().list(WindowScope::onScreen), Optional(ElementsAre(expected)))
      << "one is on another desktop, one is the desktop's picture";
  EXPECT_EQ(windows().window(first), expected);
  EXPECT_EQ(windows().window(client.root()), std::nullopt);
}

TEST_F(X11WindowsTest, WindowsOfThisProcessAreNotListed) {
  start();
  TestClient client;
  const auto window = open(client, "Own");
  X11WindowReader other(*witness_, *witnessDesktops_, getpid());
  EXPECT_THAT(other.read().windows, IsEmpty());
  EXPECT_EQ(other.read(window), std::nullopt);
}

TEST_F(X11WindowsTest, WindowsOfOtherMachinesHaveAProcessOfTheirOwn) {
  start();
  TestClient near;
  TestClient far;
  TestClient farther;
  std::vector<ProcessID> pids = {read(open(near, "Local")).pid};
  for (auto* client : {&far, &far, &farther}) {
    const auto window = open(*client, "Remote", "", "elsewhere.example.org");
    client->setWords(window, X11Atom::netWmPid, XCB_ATOM_CARDINAL, {4711});
    client->sync();
    pids.push_back(read(window).pid);
  }
  EXPECT_EQ(pids[0], getpid());
  EXPECT_GE(pids[1], firstStandInPid);
  EXPECT_EQ(pids[1], pids[2]);
  EXPECT_GT(pids[3], firstStandInPid);
  EXPECT_NE(pids[1], pids[3]);
  EXPECT_EQ(session_->workspace.runningApplications().size(), 3U);
  EXPECT_EQ(session_->workspace.runningApplicationWithProcessIdentifier(pids[3])->bundleIdentifier, "Remote");
}

TEST_F(X11WindowsTest, SetsFramesWithTheDecorationTakenIntoAccount) {
  start();
  TestClient client;
  const auto window = open(client, "Editor");
  const auto frameIs = [&](const CGRect& frame) { return eventually([&] { return read(window).frame == frame; }); };
  EXPECT_TRUE(windows().setFrame(ref(window), {{-10, 55}, {304, 222}}));
  EXPECT_TRUE(frameIs({{-10, 55}, {304, 222}}));
  EXPECT_TRUE(windows().setFrame(ref(window), {{-10, 55}, {304, 222}}));
  EXPECT_EQ(manager_->count(X11Atom::netMoveresizeWindow), 1) << "it has it";

  for (const auto state : {X11Atom::netWmStateMaximizedVert, X11Atom::netWmStateFullscreen}) {
    witness_->sendToWindowManager(window, X11Atom::netWmState, {1, witness_->atom(state), 0, 2, 0});
    ASSERT_TRUE(eventually([&] { return read(window).maximized || read(window).fullscreen; }));
    const CGRect frame{{1, state == X11Atom::netWmStateFullscreen ? 2.0 : 3.0}, {304, 222}};
    EXPECT_TRUE(windows().setFrame(ref(window), frame));
    EXPECT_TRUE(frameIs(frame));
    EXPECT_FALSE(read(window).maximized || read(window).fullscreen);
  }
}

TEST_F(X11WindowsTest, MinimisesHidesAndBringsBack) {
  start();
  TestClient client;
  const auto one = open(client, "Editor");
  const auto two = open(client, "Editor");
  const auto three = open(client, "Editor");
  const auto pid = getpid();
  auto& workspace = session_->workspace;
  const auto isHidden = [&](xcb_window_t window) { return read(window).hidden; };
  const auto applicationIsHidden = [&] { return workspace.runningApplicationWithProcessIdentifier(pid)->isHidden; };
  EXPECT_TRUE(windows().minimize(ref(one)));
  EXPECT_TRUE(windows().minimize(ref(three)));
  ASSERT_TRUE(eventually([&] { return isHidden(one) && isHidden(three); }));
  moveToDesktop(three, 3);
  EXPECT_TRUE(windows().unminimize(ref(three))) << "on another desktop";
  ASSERT_TRUE(eventually([&] { return !isHidden(three); }));
  EXPECT_EQ(read(three).desktop, 3U);

  EXPECT_TRUE(workspace.hide(pid));
  ASSERT_TRUE(eventually([&] { return isHidden(two) && isHidden(three); }));
  EXPECT_TRUE(applicationIsHidden());
  EXPECT_TRUE(windows().unminimize(ref(two)));
  ASSERT_TRUE(eventually([&] { return !isHidden(two); }));
  EXPECT_FALSE(applicationIsHidden()) << "the user got a window back";
  EXPECT_TRUE(workspace.unhide(pid));
  ASSERT_TRUE(eventually([&] { return !isHidden(three); }));
  EXPECT_TRUE(isHidden(one)) << "it was minimised before";
  EXPECT_FALSE(workspace.hide(1));
  EXPECT_FALSE(workspace.unhide(1));
}

TEST_F(X11WindowsTest, ShowsAMinimisedWindowForItsMoveWhereThatWouldBeLost) {
  start(4, {}, 1, "Fluxbox");
  TestClient client;
  const auto window = open(client, "Editor");
  EXPECT_TRUE(windows().minimize(ref(window)));
  ASSERT_TRUE(eventually([&] { return read(window).hidden; }));
  EXPECT_TRUE(desktop().moveWindow(window, 3));
  EXPECT_TRUE(eventually([&] { return read(window).desktop == 2U && read(window).hidden; }));
  EXPECT_EQ(manager_->count(X11Atom::netActiveWindow), 1) << "it was shown";
}

TEST_F(X11WindowsTest, ActivatesTheMainWindowAfterSwitchingToItsDesktop) {
  start();
  TestClient client;
  const auto there = open(client, "Editor");
  const auto here = open(client, "Editor");
  moveToDesktop(there, 2);
  auto& workspace = session_->workspace;
  const auto isActive = [&](xcb_window_t window) { return witnessDesktops_->look().activeWindow == window; };
  EXPECT_TRUE(workspace.activateWithOptions(getpid()));
  ASSERT_TRUE(eventually([&] { return isActive(here); }));
  EXPECT_EQ(desktop().activeSpace(), 1) << "it has a window on the desktop in front";

  EXPECT_TRUE(windows().raise(ref(there)));
  EXPECT_TRUE(workspace.activateWithOptions(getpid()));
  ASSERT_TRUE(eventually([&] { return isActive(there); }));
  EXPECT_EQ(desktop().activeSpace(), 3);
  EXPECT_EQ(workspace.frontmostApplication()->pid, getpid());
  EXPECT_TRUE(workspace.frontmostApplication()->isActive);
  EXPECT_EQ(windows().focused(getpid()), there);
  EXPECT_EQ(windows().focused(1), std::nullopt);
  EXPECT_FALSE(workspace.activateWithOptions(1));
}

TEST_F(X11WindowsTest, KnowsWhatTheWindowManagerIgnores) {
  start(4, {X11Atom::netRestackWindow, X11Atom::wmChangeState, X11Atom::netWmState, X11Atom::netCurrentDesktop,
            X11Atom::netNumberOfDesktops});
  TestClient client;
  const auto one = open(client, "Editor");
  const auto two = open(client, "Editor");
  EXPECT_TRUE(windows().minimize(ref(one))) << "nothing is known yet";
  EXPECT_TRUE(eventually([&] { return !windows().minimize(ref(one)); }));
  EXPECT_TRUE(windows().raise(ref(two))) << "it is in front already, which teaches nothing";
  EXPECT_EQ(manager_->count(X11Atom::netRestackWindow), 0);
  EXPECT_TRUE(windows().raise(ref(one)));
  EXPECT_TRUE(eventually([&] { return order() == std::vector<WindowNumber>({one, two}); })) << "by making it active";
  EXPECT_TRUE(windows().raise(ref(two)));
  EXPECT_EQ(manager_->count(X11Atom::netRestackWindow), 1) << "the second time at once";
  moveToDesktop(two, 1);
  const auto activations = manager_->count(X11Atom::netActiveWindow);
  EXPECT_TRUE(windows().raise(ref(two)));
  EXPECT_TRUE(session_->workspace.activateWithOptions(getpid()));
  EXPECT_TRUE(eventually([&] { return !loop_.hasTimers(); }));
  EXPECT_EQ(manager_->count(X11Atom::netActiveWindow), activations) << "its desktop does not come: it is not fetched";
  desktop().addSpace("Main", intoOutcome());
  EXPECT_TRUE(eventually([&] { return outcome_ == "ignored"; }));
  EXPECT_FALSE(desktop().abilities().addsSpaces);
  manager_.reset();
  manager_.emplace(4, std::set<X11Atom>(), 1, "Another");
  EXPECT_TRUE(eventually([&] { return desktop().abilities().addsSpaces; })) << "another one may";
}

TEST_F(X11WindowsTest, RemovesDesktopsAndRestoresThem) {
  start(4);
  TestClient client;
  std::vector<xcb_window_t> opened;
  for (const std::uint32_t index : {1U, 3U, X11Connection::allDesktops}) {
    opened.push_back(open(client, "Editor"));
    moveToDesktop(opened.back(), index);
  }
  EXPECT_THAT(desktop().spacesOfWindow(opened[2]), Optional(ElementsAre(1, 2, 3, 4)));
  EXPECT_TRUE(desktop().switchTo(4));
  ASSERT_TRUE(eventually([&] { return desktop().activeSpace() == 4; }));
  desktop().removeSpace(2, intoOutcome());
  EXPECT_TRUE(eventually([&] { return outcome_ == "done"; }));
  EXPECT_EQ(spaces(), "1 3 [4]") << "the same windows are in front";
  EXPECT_TRUE(desktop().restore({1, 2, 3}));
  EXPECT_EQ(spaces(), "1 2 3 [4]");
  EXPECT_EQ(read(opened[0]).desktop, 2U) << "it went to the right, and stays there";
  EXPECT_EQ(read(opened[1]).desktop, 3U);
  EXPECT_EQ(read(opened[2]).desktop, X11Connection::allDesktops);
}

TEST_F(X11WindowsTest, TellsWhatBecomesOfWindows) {
  start();
  TestClient client;
  const auto window = open(client, "Editor");
  int told = 0;
  EXPECT_TRUE(windows().observe([&] { ++told; }));
  EXPECT_TRUE(eventually([&] { return !loop_.hasTimers(); }));
  const std::pair<const char*, std::function<void()>> changes[] = {
      {"title", [&] { client.setText(window, X11Atom::netWmName, "another"); }},
      {"desktop", [&] { moveToDesktop(window, 1); }},
      {"frame", [&] { windows().setFrame(ref(window), {{1, 2}, {300, 200}}); }},
      {"state", [&] { windows().minimize(ref(window)); }},
      {"list", [&] { client.close(window); }},
  };
  for (const auto& [what, change] : changes) {
    told = 0;
    change();
    EXPECT_TRUE(eventually([&] { return told > 0; })) << what;
    EXPECT_TRUE(eventually([&] { return !loop_.hasTimers(); }));
  }
}

TEST_F(X11WindowsTest, OneReadingAnswersUntilTheTurnEndsOrSomethingIsSent) {
  start();
  TestClient client;
  TestClient pager;
  const auto window = open(client, "Editor", "first");
  const auto spacesOf = [&] { return desktop().spacesOfWindow(window); };
  const auto movedByOthersTo = [&](std::uint32_t index) {
    pager.connection().writeMoveToDesktop(window, index);
    pager.connection().flush();
    while (read(window).desktop != index) {
    }
  };
  for (const auto* title : {"second", "third"}) {
    client.setText(window, X11Atom::netWmName, title);
    client.sync();
    EXPECT_EQ(windows().list(WindowScope::all)->at(0).title, title) << "a list never has what was changed before";
  }
  movedByOthersTo(1);
  EXPECT_THAT(spacesOf(), Optional(ElementsAre(1))) << "as it was read";
  EXPECT_EQ(desktop().spacesOfWindow(client.root()), std::nullopt) << "not managed";
  EXPECT_FALSE(desktop().moveWindow(client.root(), 1));
  EXPECT_FALSE(desktop().moveWindow(window, 5));
  EXPECT_TRUE(desktop().moveWindow(window, 3));
  while (read(window).desktop != 2U) {
  }
  EXPECT_THAT(spacesOf(), Optional(ElementsAre(3))) << "in the same turn: something was sent";
  windows().list(WindowScope::all);
  movedByOthersTo(X11Connection::allDesktops);
  EXPECT_THAT(spacesOf(), Optional(ElementsAre(3)));
  loop_.runReady();
  EXPECT_THAT(spacesOf(), Optional(ElementsAre(1, 2, 3, 4))) << "the next turn";
}

}  // namespace
}  // namespace tallowin

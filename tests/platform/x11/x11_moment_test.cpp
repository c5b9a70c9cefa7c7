// One reading of all windows answers what is asked about each of them, but never what has changed since.

#include "platform/x11/x11_window_server.h"
#include "tests/platform/x11/x11_desktop_fixture.h"
#include "tests/platform/x11/x11_windows_fixture.h"

namespace tallowin {
namespace {

using testing::ElementsAre;
using testing::Optional;

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

}  // namespace
}  // namespace tallowin

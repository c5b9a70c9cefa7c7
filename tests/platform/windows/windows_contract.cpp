// What platform/windows.h promises, for every implementation.

#include <algorithm>
#include <functional>
#include <gmock/gmock.h>
#include <memory>
#include <vector>

#include "platform/windows.h"
#include "tests/platform/x11/x11_world.h"
#include "tests/simulated_program.h"

namespace tallowin {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

/// A desktop for the tests of what every Windows promises: on the Space that is shown a window of one program in front
/// of two of another one, and one more of the latter on another Space. In that order, each 300 points wide and 200
/// high.
class WindowsWorld {
 public:
  virtual ~WindowsWorld() = default;

  virtual Windows& windows() = 0;
  /// Lets everything happen that is under way, and everybody be told.
  virtual void settle() = 0;
  /// The windows of the start.
  [[nodiscard]] virtual std::vector<WindowRef> all() const = 0;
};

/// An implementation of Windows.
struct WindowsImplementation {
  const char* name;
  std::function<std::unique_ptr<WindowsWorld>()> make;
};

class WindowsContract : public testing::TestWithParam<WindowsImplementation> {
 protected:
  Windows& windows() { return world->windows(); }
  /// The windows of the start that are listed, by their places then.
  [[nodiscard]] std::vector<std::size_t> listed(WindowScope scope) {
    std::vector<std::size_t> places;
    for (const auto& window : windows().list(scope).value_or(std::vector<DesktopWindow>())) {
      const auto found = std::ranges::find(all, window.id, &WindowRef::id);
      if (found != all.end()) {
        places.push_back(static_cast<std::size_t>(found - all.begin()));
      }
    }
    return places;
  }

  std::unique_ptr<WindowsWorld> world = GetParam().make();
  const std::vector<WindowRef> all = world->all();
};

class SimulatedWindowsWorld : public WindowsWorld {
 public:
  explicit SimulatedWindowsWorld(const std::string& kind)
      : program_(R"({"desktop": ")" + kind + R"(", "applications": [{"pid": 7, "name": "Mail", "active": true},
                                                                    {"pid": 8, "name": "Editor"}],
                     "windows": [{"number": 10, "pid": 7, "frame": [0, 0, 300, 200], "title": "Inbox"},
                                 {"number": 11, "pid": 8, "frame": [100, 0, 300, 200]},
                                 {"number": 12, "pid": 8, "frame": [200, 0, 300, 200]},
                                 {"number": 13, "pid": 8, "frame": [300, 0, 300, 200], "space": 2}]})") {}

  Windows& windows() override { return program_.windowService; }
  void settle() override { program_.time.advance(1s); }
  [[nodiscard]] std::vector<WindowRef> all() const override { return {{10, 7}, {11, 8}, {12, 8}, {13, 8}}; }

 private:
  SimulatedProgram program_;
};

class X11WindowsWorld : public WindowsWorld {
 public:
  X11WindowsWorld() {
    const auto elsewhere = world_.open(mail_, 1);
    const auto behind = world_.open(mail_, 0);
    const auto middle = world_.open(mail_, 0);
    const auto front = world_.open(editor_, 0, "elsewhere.example.org");
    all_ = {front, middle, behind, elsewhere};
    for (const auto& window : all_) {
      world_.session().windows.setFrame(window, {{30, 40}, {300, 200}});
    }
    settle();
  }

  Windows& windows() override { return world_.session().windows; }
  void settle() override { world_.settle(); }
  [[nodiscard]] std::vector<WindowRef> all() const override { return all_; }

 private:
  X11World world_;
  TestClient mail_;
  TestClient editor_;
  std::vector<WindowRef> all_;
};

constexpr WindowRef nobody{4'000'000'000, 1};

TEST_P(WindowsContract, areListedFrontToBack) {
  EXPECT_THAT(listed(WindowScope::onScreen), ElementsAre(0, 1, 2));
  EXPECT_THAT(listed(WindowScope::all), testing::UnorderedElementsAre(0, 1, 2, 3));
  const auto front = windows().window(all[0].id);
  ASSERT_TRUE(front);
  EXPECT_EQ(front->id, all[0].id);
  EXPECT_EQ(front->pid, all[0].pid);
  EXPECT_EQ(front->frame.size, (CGSize{300, 200}));
  EXPECT_EQ(front->layer, 0);
  EXPECT_GT(front->alpha, 0);
  const auto list = windows().list(WindowScope::all).value_or(std::vector<DesktopWindow>());
  const auto found = std::ranges::find(list, all[0].id, &DesktopWindow::id);
  ASSERT_NE(found, list.end());
  EXPECT_EQ(found->title, front->title);
  EXPECT_FALSE(windows().window(nobody.id));
}

TEST_P(WindowsContract, areRaisedAndFocused) {
  EXPECT_TRUE(windows().mayChange());
  EXPECT_EQ(windows().focused(all[1].pid), all[1].id);
  EXPECT_TRUE(windows().raise(all[2]));
  world->settle();
  const auto order = listed(WindowScope::onScreen);
  EXPECT_LT(std::ranges::find(order, 2U), std::ranges::find(order, 1U));
  EXPECT_EQ(windows().focused(all[2].pid), all[2].id);
  EXPECT_FALSE(windows().raise(nobody));
}

TEST_P(WindowsContract, takeAFrame) {
  const CGRect frame{{40, 60}, {500, 350}};
  EXPECT_TRUE(windows().setFrame(all[0], frame));
  world->settle();
  EXPECT_EQ(windows().window(all[0].id)->frame, frame);
  EXPECT_TRUE(windows().setFrame(all[0], frame)) << "it has it already";
  EXPECT_FALSE(windows().setFrame(nobody, frame));
}

TEST_P(WindowsContract, areMinimisedAndShownAgain) {
  EXPECT_TRUE(windows().minimize(all[1]));
  world->settle();
  EXPECT_THAT(listed(WindowScope::onScreen), ElementsAre(0, 2));
  EXPECT_EQ(listed(WindowScope::all).size(), 4U);
  EXPECT_FALSE(windows().minimize(all[1])) << "it is minimised";
  EXPECT_TRUE(windows().unminimize(all[1]));
  world->settle();
  EXPECT_EQ(listed(WindowScope::onScreen).size(), 3U);
}

TEST_P(WindowsContract, areClosed) {
  EXPECT_TRUE(windows().close(all[1], Windows::patience));
  world->settle();
  EXPECT_FALSE(windows().window(all[1].id));
  EXPECT_FALSE(windows().close(nobody, Windows::patience));
}

TEST_P(WindowsContract, tellTheirChangesIfTheySaySo) {
  int told = 0;
  const bool tells = windows().observe([&] { ++told; });
  world->settle();
  told = 0;
  windows().setFrame(all[0], {{40, 60}, {500, 350}});
  world->settle();
  EXPECT_EQ(told > 0, tells);
}

WindowsImplementation simulated(const char* kind) {
  return {kind, [kind] { return std::make_unique<SimulatedWindowsWorld>(kind); }};
}

const WindowsImplementation x11{"x11", [] { return std::make_unique<X11WindowsWorld>(); }};
INSTANTIATE_TEST_SUITE_P(Every, WindowsContract, testing::Values(simulated("asked"), simulated("driven"), x11),
                         [](const testing::TestParamInfo<WindowsImplementation>& made) { return made.param.name; });

}  // namespace
}  // namespace tallowin

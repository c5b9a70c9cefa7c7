// What platform/desktop.h promises, for every implementation.

#include <algorithm>
#include <functional>
#include <gmock/gmock.h>
#include <memory>

#include "platform/desktop.h"
#include "tests/platform/x11/x11_world.h"
#include "tests/simulated_program.h"

namespace tallowin {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

/// A desktop for the tests of what every Desktop promises: one display with four desktops, the first one active, and
/// one window on each. Places count from 0.
class DesktopWorld {
 public:
  virtual ~DesktopWorld() = default;

  virtual Desktop& desktop() = 0;
  /// The same where it can be asked; else null.
  virtual AskedDesktop* asked() = 0;
  /// Lets everything happen that is under way, and everybody be told.
  virtual void settle() = 0;
  /// Somebody else switches.
  virtual void userSwitchesTo(std::size_t place) = 0;
  /// The window that was on this desktop at the start.
  virtual WindowNumber window(std::size_t place) = 0;
};

/// An implementation of Desktop.
struct DesktopImplementation {
  const char* name;
  std::function<std::unique_ptr<DesktopWorld>()> make;
};

class DesktopContract : public testing::TestWithParam<DesktopImplementation> {
 protected:
  [[nodiscard]] DesktopDisplay display() {
    return world->desktop().read().value_or(DesktopReading{{{}}}).displays.front();
  }
  [[nodiscard]] std::vector<ManagedSpaceID> ids() {
    std::vector<ManagedSpaceID> ids;
    for (const auto& space : display().spaces) {
      ids.push_back(space.id);
    }
    return ids;
  }
  /// Where a window is: nothing when nobody knows it.
  [[nodiscard]] std::vector<ManagedSpaceID> spacesOf(std::size_t place) {
    return world->desktop().spacesOfWindow(world->window(place)).value_or(std::vector<ManagedSpaceID>());
  }

  std::unique_ptr<DesktopWorld> world = GetParam().make();
};

/// What beyond that every desktop promises that can be asked.
class AskedDesktopContract : public DesktopContract {
 protected:
  AskedDesktop& asked() { return *world->asked(); }
  /// Notes what comes of a request.
  AskedDesktop::Completion noted() {
    return [this](std::expected<void, DesktopRefusal> outcome) { outcomes.push_back(outcome); };
  }

  std::vector<std::expected<void, DesktopRefusal>> outcomes;
  const std::vector<std::expected<void, DesktopRefusal>> done = {{}};
};

class SimulatedWorld : public DesktopWorld {
 public:
  explicit SimulatedWorld(const std::string& members)
      : program_("{" + members + R"("windows": [
          {"number": 10, "pid": 350, "space": 1}, {"number": 11, "pid": 350, "space": 2},
          {"number": 12, "pid": 350, "space": 3}, {"number": 13, "pid": 350, "space": 4}]})") {}

  Desktop& desktop() override { return program_.spaces; }
  AskedDesktop* asked() override { return program_.desktop.asked(); }
  void settle() override { program_.time.advance(5s); }
  void userSwitchesTo(std::size_t place) override {
    program_.desktop.parts().spaces.switchNow(static_cast<ManagedSpaceID>(place) + 1);
  }
  WindowNumber window(std::size_t place) override { return static_cast<WindowNumber>(10 + place); }

 private:
  SimulatedProgram program_;
};

class X11DesktopWorld : public DesktopWorld {
 public:
  X11DesktopWorld() {
    for (std::uint32_t place = 0; place < 4; ++place) {
      windows_.push_back(world_.open(client_, place).id);
    }
    (void)desktop().observe([](const DesktopSign&) {});
  }

  Desktop& desktop() override { return world_.session().desktop; }
  AskedDesktop* asked() override { return &world_.session().desktop; }
  void settle() override { world_.settle(); }
  void userSwitchesTo(std::size_t place) override {
    client_.connection().sendToWindowManager(client_.root(), X11Atom::netCurrentDesktop,
                                             {static_cast<std::uint32_t>(place), 0, 0, 0, 0});
  }
  WindowNumber window(std::size_t place) override { return windows_.at(place); }

 private:
  X11World world_;
  TestClient client_;
  std::vector<WindowNumber> windows_;
};

TEST_P(DesktopContract, tellsTheSpacesFromLeftToRight) {
  const auto reading = world->desktop().read();
  ASSERT_TRUE(reading);
  ASSERT_EQ(reading->displays.size(), 1U);
  const auto& only = reading->displays.front();
  EXPECT_TRUE(only.isMenuBarDisplay);
  ASSERT_EQ(only.spaces.size(), 4U);
  for (std::size_t place = 0; place < 4; ++place) {
    EXPECT_EQ(only.spaces[place].index, place);
    EXPECT_FALSE(only.spaces[place].isFullscreen);
    EXPECT_EQ(std::ranges::count(only.spaces, only.spaces[place].id, &DesktopSpace::id), 1);
  }
  EXPECT_EQ(only.current, only.spaces.front().id);
  EXPECT_EQ(world->desktop().activeSpace(), only.current);
  EXPECT_EQ(world->desktop().read(), reading) << "nothing has happened";
  EXPECT_TRUE(world->desktop().health().healthy());
}

TEST_P(DesktopContract, givesASignWhenAnotherSpaceIsShown) {
  std::vector<std::optional<ManagedSpaceID>> seen;
  EXPECT_TRUE(world->desktop().observe([&](const DesktopSign& sign) {
    EXPECT_NE(sign.reason, "");
    seen.push_back(display().current);
  }));
  world->settle();
  seen.clear();
  world->userSwitchesTo(2);
  world->settle();
  ASSERT_FALSE(seen.empty());
  EXPECT_EQ(seen.back(), ids()[2]);
  EXPECT_EQ(world->desktop().activeSpace(), ids()[2]);
}

TEST_P(DesktopContract, knowsWhereWindowsAreAndMovesThem) {
  const auto spaces = ids();
  EXPECT_THAT(spacesOf(1), ElementsAre(spaces[1]));
  EXPECT_TRUE(world->desktop().moveWindow(world->window(1), spaces[3]));
  world->settle();
  EXPECT_THAT(spacesOf(1), ElementsAre(spaces[3]));
  EXPECT_THAT(spacesOf(2), ElementsAre(spaces[2]));
  constexpr WindowNumber nobody = 4'000'000'000;
  EXPECT_EQ(world->desktop().spacesOfWindow(nobody).value_or(std::vector<ManagedSpaceID>()),
            std::vector<ManagedSpaceID>());
}

TEST_P(AskedDesktopContract, showsTheSpaceThatItIsAskedFor) {
  int signs = 0;
  asked().observe([&](const DesktopSign&) { ++signs; });
  EXPECT_TRUE(asked().switchTo(ids()[3]));
  world->settle();
  EXPECT_EQ(display().current, ids()[3]);
  EXPECT_GT(signs, 0);
}

TEST_P(AskedDesktopContract, addsASpaceBehindTheLast) {
  ASSERT_TRUE(asked().abilities().addsSpaces);
  const auto before = ids();
  asked().addSpace(display().id, noted());
  world->settle();
  EXPECT_EQ(outcomes, done);
  auto after = ids();
  ASSERT_EQ(after.size(), 5U);
  EXPECT_EQ(std::ranges::count(before, after.back()), 0);
  after.pop_back();
  EXPECT_EQ(after, before);
}

TEST_P(AskedDesktopContract, removesASpaceAndLeavesTheOthersAsTheyWere) {
  ASSERT_TRUE(asked().abilities().removesSpaces);
  const auto before = ids();
  bool isDone = false;
  asked().observe([&](const DesktopSign&) {
    EXPECT_EQ(ids().size(), 3U) << "no sign is given before it is done";
    isDone = true;
  });
  asked().removeSpace(before[1], noted());
  EXPECT_TRUE(isDone || ids() == before) << "everybody reads the Spaces as they were";
  world->settle();
  EXPECT_EQ(outcomes, done);
  EXPECT_THAT(ids(), ElementsAre(before[0], before[2], before[3]));
  EXPECT_THAT(spacesOf(0), ElementsAre(before[0]));
  EXPECT_THAT(spacesOf(1), ElementsAre(before[2])) << "on its right";
  EXPECT_THAT(spacesOf(2), ElementsAre(before[2]));
  EXPECT_THAT(spacesOf(3), ElementsAre(before[3]));
  EXPECT_EQ(display().current, before[0]);

  asked().observe([](const DesktopSign&) {});
  asked().removeSpace(before[3], noted());
  world->settle();
  EXPECT_THAT(ids(), ElementsAre(before[0], before[2]));
  EXPECT_THAT(spacesOf(3), ElementsAre(before[2])) << "the last one's go to the left";
}

TEST_P(AskedDesktopContract, keepsTheOnlySpace) {
  asked().removeSpace(ids().back() + 1000, noted());
  world->settle();
  while (ids().size() > 1 && outcomes.size() < 5) {
    asked().removeSpace(ids().front(), noted());
    world->settle();
  }
  asked().removeSpace(ids().front(), noted());
  world->settle();
  ASSERT_EQ(outcomes.size(), 5U);
  EXPECT_EQ(outcomes.front(), std::unexpected(DesktopRefusal::noSpace)) << "there is none of this id";
  EXPECT_EQ(outcomes.back(), std::unexpected(DesktopRefusal::noSpace));
  EXPECT_EQ(ids().size(), 1U);
  EXPECT_EQ(display().current, ids().front());
}

TEST_P(AskedDesktopContract, tellsNobodyAfterItsEnd) {
  const auto before = ids();
  asked().removeSpace(before[1], noted());
  const auto told = outcomes.size();  // where nothing has to be waited for
  world.reset();
  EXPECT_EQ(outcomes.size(), told);
}

DesktopImplementation simulated(const char* name, const char* members) {
  return {name, [members] { return std::make_unique<SimulatedWorld>(members); }};
}

const auto simulatedAsked = simulated("asked", R"("desktop": "asked", )");
const auto simulatedByPlace = simulated("askedByPlace", R"("desktop": "asked", "desktopsByPlace": true, )");
const auto simulatedDriven = simulated("driven", "");
const DesktopImplementation x11{"x11", [] { return std::make_unique<X11DesktopWorld>(); }};

const auto nameOf = [](const testing::TestParamInfo<DesktopImplementation>& info) { return info.param.name; };
INSTANTIATE_TEST_SUITE_P(Every, DesktopContract,
                         testing::Values(simulatedAsked, simulatedByPlace, simulatedDriven, x11), nameOf);
INSTANTIATE_TEST_SUITE_P(Every, AskedDesktopContract, testing::Values(simulatedAsked, simulatedByPlace, x11), nameOf);

}  // namespace
}  // namespace tallowin

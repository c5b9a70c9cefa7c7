#include "tests/platform/desktop/desktop_contract.h"
#include "tests/platform/x11/x11_world.h"

namespace tallowin {
namespace {

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

const DesktopImplementation x11{"x11", [] { return std::make_unique<X11DesktopWorld>(); }};
const auto nameOf = [](const testing::TestParamInfo<DesktopImplementation>& info) { return info.param.name; };
INSTANTIATE_TEST_SUITE_P(X11, DesktopContract, testing::Values(x11), nameOf);
INSTANTIATE_TEST_SUITE_P(X11, AskedDesktopContract, testing::Values(x11), nameOf);

}  // namespace
}  // namespace tallowin

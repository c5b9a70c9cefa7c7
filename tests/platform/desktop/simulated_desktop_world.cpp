#include "tests/platform/desktop/desktop_contract.h"
#include "tests/simulated_program.h"

namespace tallowin {
namespace {

using namespace std::chrono_literals;

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

DesktopImplementation simulated(const char* name, const char* members) {
  return {name, [members] { return std::make_unique<SimulatedWorld>(members); }};
}

const auto asked = simulated("asked", R"("desktop": "asked", )");
const auto byPlace = simulated("askedByPlace", R"("desktop": "asked", "desktopsByPlace": true, )");
const auto driven = simulated("driven", "");

const auto name = [](const testing::TestParamInfo<DesktopImplementation>& info) { return info.param.name; };
INSTANTIATE_TEST_SUITE_P(Simulated, DesktopContract, testing::Values(asked, byPlace, driven), name);
INSTANTIATE_TEST_SUITE_P(Simulated, AskedDesktopContract, testing::Values(asked, byPlace), name);

}  // namespace
}  // namespace tallowin

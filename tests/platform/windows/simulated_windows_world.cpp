#include "tests/platform/windows/windows_contract.h"
#include "tests/simulated_program.h"

namespace tallowin {
namespace {

using namespace std::chrono_literals;

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

WindowsImplementation simulated(const char* kind) {
  return {kind, [kind] { return std::make_unique<SimulatedWindowsWorld>(kind); }};
}

INSTANTIATE_TEST_SUITE_P(Simulated, WindowsContract, testing::Values(simulated("asked"), simulated("driven")),
                         [](const testing::TestParamInfo<WindowsImplementation>& made) { return made.param.name; });

}  // namespace
}  // namespace tallowin

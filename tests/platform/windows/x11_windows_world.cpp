#include "tests/platform/windows/windows_contract.h"
#include "tests/platform/x11/x11_world.h"

namespace tallowin {
namespace {

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

const WindowsImplementation x11{"x11", [] { return std::make_unique<X11WindowsWorld>(); }};
INSTANTIATE_TEST_SUITE_P(X11, WindowsContract, testing::Values(x11),
                         [](const testing::TestParamInfo<WindowsImplementation>& made) { return made.param.name; });

}  // namespace
}  // namespace tallowin

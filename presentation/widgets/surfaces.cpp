#include "presentation/widgets/surfaces.h"

#include <variant>

namespace tallowin {

namespace {

template <typename... Cases>
struct Match : Cases... {
  using Cases::operator()...;
};

}  // namespace

void Surfaces::show(const ui::Message& message) {
  std::visit(Match{[this](const HUD& hud) { hud_.show(hud); }, [this](const Toast& toast) { hud_.show(toast); },
                   [this](const StatusItem& item) { statusItem_.show(item); },
                   [this](const ui::Feedback& feedback) { feedback_.give(feedback); },
                   [this](const auto& other) {
                     if constexpr (requires { dialogs_.show(other); }) {
                       dialogs_.show(other);
                     }
                   }},
             message);
}

}  // namespace tallowin

#include <algorithm>

#include "tests/soak/random/verdict.h"

namespace tallowin {

namespace {

using Json = nlohmann::ordered_json;
using Place = Json::json_pointer;

class Shrinker {
 public:
  Shrinker(Json scenario, const std::function<bool(const Json&)>& stillFails, const std::function<bool()>& mayGoOn)
      : scenario_(std::move(scenario)), stillFails_(stillFails), mayGoOn_(mayGoOn) {}

  Json shrink() {
    do {
      changed_ = false;
      shrinkAt(Place("/script"));  // most of a scenario, and what keeps the rest in use
      shrinkAt(Place());
    } while (changed_ && mayGoOn_());
    return scenario_;
  }

 private:
  void shrinkAt(const Place& place) {
    if (!scenario_.contains(place) || !scenario_[place].is_structured()) {
      return;
    }
    for (auto piece = scenario_[place].size(); piece > 0; piece /= 2) {
      for (std::size_t from = 0; from < scenario_[place].size() && mayGoOn_();) {
        from = takeOut(place, from, piece) ? from : from + piece;
      }
    }
    for (std::size_t i = scenario_[place].size(); i-- > 0 && mayGoOn_();) {
      shrinkAt(place / key(place, i));
    }
  }

  /// What the entry is called in the JSON pointer.
  [[nodiscard]] std::string key(const Place& place, std::size_t index) const {
    const auto& node = scenario_[place];
    return node.is_array() ? std::to_string(index) : std::next(node.begin(), static_cast<std::ptrdiff_t>(index)).key();
  }

  bool takeOut(const Place& place, std::size_t from, std::size_t count) {
    auto candidate = scenario_;
    auto& node = candidate[place];
    const auto to = std::min(from + count, node.size());
    for (auto i = to; i-- > from;) {
      node.erase(std::next(node.begin(), static_cast<std::ptrdiff_t>(i)));
    }
    if (!stillFails_(candidate)) {
      return false;
    }
    scenario_ = std::move(candidate);
    changed_ = true;
    return true;
  }

  Json scenario_;
  const std::function<bool(const Json&)>& stillFails_;
  const std::function<bool()>& mayGoOn_;
  bool changed_ = false;
};

}  // namespace

Json shrunk(const Json& scenario, const std::function<bool(const Json&)>& stillFails,
            const std::function<bool()>& mayGoOn) {
  return Shrinker(scenario, stillFails, mayGoOn).shrink();
}

}  // namespace tallowin

#pragma once

#include <chrono>
#include <nlohmann/json.hpp>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/simulated/journal.h"
#include "platform/simulated/scenario.h"
#include "platform/simulated/simulated_desktop.h"
#include "platform/simulated/simulated_parts.h"
#include "platform/simulated/virtual_time.h"

namespace tallowin {

/// Pictures without drawing: keeps what it was to sketch.
class SketchOnlyImages : public Images {
 public:
  std::optional<Image> decode(std::string_view /*bytes*/) override { return std::nullopt; }
  std::optional<Image> scaled(const Image& /*image*/, int /*width*/, int /*height*/) override { return std::nullopt; }
  std::string encodePNG(const Image& /*image*/) override { return {}; }
  std::string encodeJPEG(const Image& /*image*/, int /*quality*/) override { return {}; }
  std::optional<Image> sketch(int width, int height, const std::vector<SketchBox>& boxes) override {
    sketched = boxes;
    return Image{width, height, {}};
  }

  std::vector<SketchBox> sketched;
};

/// A scenario in virtual time as a test tells it, its script under way, and the journal that it has given so far.
class Story {
 public:
  explicit Story(std::string_view text = "{}") : scenario(parsed(text)) {
    time.endAt(scenario.end);
    desktop.start();
  }

  /// The journal's lines with this op, without their time and op.
  [[nodiscard]] std::vector<std::string> journal(std::string_view op) const {
    std::vector<std::string> found;
    for (const auto& line : lines) {
      auto entry = nlohmann::ordered_json::parse(line);
      if (entry["op"] == op) {
        entry.erase("t");
        entry.erase("op");
        found.push_back(entry.dump());
      }
    }
    return found;
  }

  [[nodiscard]] std::optional<ManagedSpaceID> activeOn(std::string_view display) {
    return parts.state.spaces.activeOn(display);
  }

  /// The C function of this name, as whoever looks it up gets it.
  template <typename Function>
  [[nodiscard]] Function function(std::string_view name) {
    return reinterpret_cast<Function>(desktop.loader().symbol(nullptr, name));
  }

  const Scenario scenario;
  SketchOnlyImages images;
  std::vector<std::string> lines;
  VirtualTime time{scenario.clock};
  Journal journalled{time, [this](std::string_view line) { lines.emplace_back(line); }};
  SimulatedDesktop desktop{scenario, time, time, images, journalled};
  SimulatedParts& parts = desktop.parts();

 private:
  static Scenario parsed(std::string_view text) {
    auto scenario = Scenario::parse(text);
    if (!scenario) {
      throw std::invalid_argument(scenario.error());
    }
    return *std::move(scenario);
  }
};

}  // namespace tallowin

#pragma once

#include <functional>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "base/preferences.h"
#include "base/settings.h"
#include "core/driven/cgs_bridge.h"
#include "core/driven/driven_desktop.h"
#include "core/space_provider.h"
#include "platform/simulated/journal.h"
#include "platform/simulated/simulated_desktop.h"
#include "platform/simulated/virtual_time.h"
#include "windows/driven/driven_windows.h"

namespace tallowin {

/// For tests whose desktop has no pictures.
class NoImages : public Images {
 public:
  std::optional<Image> decode(std::string_view /*bytes*/) override { return {}; }
  std::optional<Image> scaled(const Image& /*image*/, int /*width*/, int /*height*/) override { return {}; }
  std::string encodePNG(const Image& /*image*/) override { return {}; }
  std::string encodeJPEG(const Image& /*image*/, int /*quality*/) override { return {}; }
  std::optional<Image> sketch(int /*width*/, int /*height*/, const std::vector<SketchBox>& /*boxes*/) override {
    return {};
  }
};

/// A simulated desktop in virtual time with the window-server bridge and the settings on top of it, and what the
/// journal has recorded.
class SimulatedProgram {
 public:
  explicit SimulatedProgram(std::string_view scenarioJSON) : scenario(parsed(scenarioJSON)), time(scenario.clock) {
    desktop.usePreferencesFile("/home/user/.config/tallowin/preferences.json");
    settings.registerDefaults();
    desktop.start();
  }

  /// The journal's lines of one operation since the last call, without their times.
  [[nodiscard]] std::vector<nlohmann::ordered_json> take(std::string_view op) {
    std::vector<nlohmann::ordered_json> taken;
    for (const auto& line : std::exchange(lines, {})) {
      auto record = nlohmann::ordered_json::parse(line);
      if (record["op"] == op) {
        record.erase("t");
        record.erase("op");
        taken.push_back(std::move(record));
      }
    }
    return taken;
  }

  /// The messages logged since the last take() of anything.
  [[nodiscard]] std::vector<std::string> takeLog() {
    std::vector<std::string> messages;
    for (const auto& record : take("log")) {
      messages.push_back(record.at("message"));
    }
    return messages;
  }

  /// Toasts since the last look at the journal: "text (symbol)", errors with "!" in front.
  [[nodiscard]] std::vector<std::string> takeToasts() {
    std::vector<std::string> toasts;
    for (const auto& record : take("toast")) {
      toasts.push_back((record.at("error") == true ? "! " : "") + record.at("text").get<std::string>() +
                       (record.contains("symbol") ? " (" + record.at("symbol").get<std::string>() + ")" : ""));
    }
    return toasts;
  }

  [[nodiscard]] SpaceSnapshot snapshot() const { return provider.snapshot().value_or(SpaceSnapshot::empty()); }
  [[nodiscard]] Space spaceNumbered(ManagedSpaceID managedID) const {
    for (const auto& space : snapshot().allSpaces()) {
      if (space.managedID == managedID) {
        return space;
      }
    }
    ADD_FAILURE() << "no Space " << managedID;
    return {};
  }

  [[nodiscard]] DesktopState& state() { return desktop.parts().state; }
  [[nodiscard]] SimulatedFiles& files() { return desktop.parts().files; }
  /// A file's content; "none" when there is no such file.
  [[nodiscard]] std::string fileText(const std::string& path) { return desktop.files().read(path).value_or("none"); }
  /// The Spaces of a window; empty when it does not exist.
  [[nodiscard]] std::vector<ManagedSpaceID> spacesOf(WindowNumber window) {
    const auto* const found = state().window(window);
    return found != nullptr ? found->spaces : std::vector<ManagedSpaceID>();
  }

  const Scenario scenario;
  VirtualTime time;
  std::vector<std::string> lines;
  /// Told of every line as it is written, with the clock as it is then.
  std::function<void(const std::string& line)> onLine = [](const std::string&) {};
  Journal journal{time, [this](std::string_view line) { onLine(lines.emplace_back(line)); }};
  NoImages images;
  SimulatedDesktop desktop{scenario, time, time, images, journal};
  CGSBridge bridge{desktop.loader(), desktop.coreFoundation()};
  DrivenServices driven{bridge, desktop.accessibility(), desktop.windowList()};
  DrivenDesktop drivenSpaces{bridge, time};
  DrivenWindows drivenWindows{driven};
  Desktop& spaces = desktop.asked() != nullptr ? static_cast<Desktop&>(*desktop.asked()) : drivenSpaces;
  Windows& windowService = desktop.asked() != nullptr ? desktop.windows() : drivenWindows;
  Storage& storage = desktop.storage();
  Preferences preferences{storage, desktop.files(), time, "/home/user/.config/tallowin/preferences.json",
                          [this](std::string_view key) { return desktop.globalPreference(key); }};
  Settings settings{preferences};
  SpaceProvider provider{spaces, time, desktop.log()};
  const Platform platform = simulatedPlatform(desktop, spaces, driven, windowService, preferences, images, time);

 private:
  static Scenario parsed(std::string_view json) {
    auto scenario = Scenario::parse(json);
    if (!scenario) {
      ADD_FAILURE() << scenario.error();
      return *Scenario::parse("{}");
    }
    return *std::move(scenario);
  }
};

}  // namespace tallowin

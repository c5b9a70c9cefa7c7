#include "platform/simulated/simulated_machine.h"

#include <algorithm>
#include <cctype>

namespace tallowin {

namespace {

bool isUUID(std::string_view text) {
  constexpr std::string_view pattern = "hhhhhhhh-hhhh-hhhh-hhhh-hhhhhhhhhhhh";
  return std::ranges::equal(
      text, pattern, [](unsigned char c, char expected) { return expected == '-' ? c == '-' : std::isxdigit(c) != 0; });
}

}  // namespace

void SimulatedMachine::write(Level level, std::string_view category, std::string_view message) {
  if (level != Level::debug) {
    journal_.record(
        "log", {{"level", level == Level::error ? "error" : "info"}, {"category", category}, {"message", message}});
  }
}

DisplayID SimulatedMachine::CGMainDisplayID() {
  return state_.displays.empty() ? 0 : state_.displays.front().id;
}

CGRect SimulatedMachine::CGDisplayBounds(DisplayID display) {
  const auto* const found = state_.display(display);
  return found != nullptr ? found->bounds : CGRect{};
}

DisplayID SimulatedMachine::CGDisplayGetDisplayIDFromUUID(std::string_view uuid) {
  const auto* const found = isUUID(uuid) ? state_.displayNamed(uuid) : nullptr;
  return found != nullptr ? found->id : 0;
}

bool SimulatedMachine::CGDisplayIsBuiltin(DisplayID display) {
  const auto* const found = state_.display(display);
  return found != nullptr && found->builtin;
}

std::vector<Screen> SimulatedMachine::screens() {
  std::vector<Screen> screens;
  for (const auto& display : state_.displays) {
    screens.push_back({display.id, display.bounds, display.name});
  }
  return screens;
}

std::string SimulatedMachine::operatingSystemVersionString() {
  const auto& version = state_.systemVersion;
  const auto patch = version.patch > 0 ? "." + std::to_string(version.patch) : "";
  return "Version " + std::to_string(version.major) + "." + std::to_string(version.minor) + patch + " (simulated)";
}

PropertyList SimulatedMachine::CGSessionCopyCurrentDictionary() {
  PropertyList dictionary = {{"kCGSSessionOnConsoleKey", true}};
  // As on the real system, the key is there only while the screen is locked.
  if (state_.screenLocked) {
    dictionary["CGSSessionScreenIsLocked"] = true;
  }
  return dictionary;
}

std::expected<void, std::string> SimulatedMachine::launch(const ProcessRequest& request) {
  const auto child = start("launch", request);
  return child ? std::expected<void, std::string>() : std::unexpected(child.error());
}

std::expected<std::string, std::string> SimulatedMachine::run(const ProcessRequest& request) {
  return start("run", request);
}

/// What it prints.
std::expected<std::string, std::string> SimulatedMachine::start(std::string_view op, const ProcessRequest& request) {
  journal_.record(op, {{"executable", request.executable},
                       {"arguments", request.arguments},
                       {"addedEnvironment", request.addedEnvironment}});
  const auto found = state_.programs.find(request.executable);
  if (found == state_.programs.end()) {
    return "";
  }
  return found->second.missing ? std::expected<std::string, std::string>(std::unexpected("there is no such program"))
                               : found->second.output;
}

std::optional<std::vector<std::string>> SimulatedMachine::executeAndReturnError(std::string_view source) {
  journal_.record("executeAndReturnError", {{"source", source}});
  const auto found = state_.appleScripts.find(source);
  return found == state_.appleScripts.end() ? std::nullopt : std::optional(found->second);
}

}  // namespace tallowin

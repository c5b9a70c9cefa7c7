#include "platform/simulated/scenario_records.h"

#include <algorithm>

#include "platform/simulated/simulated_files.h"

namespace tallowin {

namespace {

/// The requests that this may come of.
void readRequests(ScenarioObject& from, const char* name, const char* what,
                  std::initializer_list<std::string_view> known, std::optional<NameSet>& requests) {
  const auto member = from.find(name);
  for (const auto& request : member ? member->list() : std::vector<ScenarioValue>()) {
    if (std::ranges::find(known, request.as<std::string>()) == known.end()) {
      request.expected("a request that can be " + std::string(what));
    }
  }
  from.read(name, requests);
}

}  // namespace

void readRecord(ScenarioObject& from, DisplayRecord& record) {
  auto& display = record.display;
  from.require("id", display.id);
  from.require("uuid", display.uuid);
  const auto bounds = from.require("bounds");
  bounds.into(display.bounds);
  constexpr double longestSide = 10'000;  // a picture of it is still one that can be handled
  if (display.bounds.size.width > longestSide || display.bounds.size.height > longestSide) {
    bounds.fail("a display has at most 10000 points a side");
  }
  display.name = "Display " + std::to_string(display.id);
  from.read("name", display.name);
  from.read("builtin", display.builtin);
  from.read("main", record.main);
}

void readRecord(ScenarioObject& from, SimulatedApplication& application) {
  from.require("name", application.name);
  from.read("pid", application.pid);
  from.read("bundleID", application.bundleIdentifier);
  if (const auto policy = from.find("activationPolicy")) {
    application.activationPolicy = policy->oneOf<ActivationPolicy>({{"regular", ActivationPolicy::regular},
                                                                    {"accessory", ActivationPolicy::accessory},
                                                                    {"prohibited", ActivationPolicy::prohibited}});
  }
  from.read("active", application.isActive);
  from.read("hidden", application.isHidden);
  if (const auto time = from.find("responseTime")) {
    application.responseTime = time->as<Nullable<Duration>>().value;
  }
  from.read("refusesClose", application.refusesClose);
}

void readRecord(ScenarioObject& from, SpacesRecord& record) {
  const auto one = from.find("space");
  const auto several = from.find("spaces");
  if (one && several) {
    several->fail("either \"space\" or \"spaces\", not both");
  } else if (one) {
    record.spaces = {one->as<ManagedSpaceID>()};
  } else if (several) {
    several->into(record.spaces);
  }
}

void readRecord(ScenarioObject& from, WindowRecord& record) {
  auto& window = record.window;
  from.require("number", window.number);
  from.require("pid", window.pid);
  from.read("title", window.title);
  window.frame = {{100, 100}, {800, 600}};
  from.read("frame", window.frame);
  from.read("layer", window.layer);
  from.read("alpha", window.alpha);
  from.read("minimized", window.minimized);
  SpacesRecord on;
  readRecord(from, on);
  record.onActiveSpace = !on.spaces;
  window.spaces = std::move(on.spaces).value_or(std::vector<ManagedSpaceID>());
}

SimulatedWindow WindowRecord::placedIn(const DesktopState& state) const {
  auto placed = window;
  if (onActiveSpace) {
    placed.spaces = state.activeSpacesAt(placed.frame.center());
  }
  return placed;
}

void readValue(const ScenarioValue& from, KeyRecord& key) {
  // HIToolbox/Events.h, kVK_ANSI_A to kVK_ANSI_Z.
  constexpr VirtualKeyCode letters[] = {0,  11, 8,  2,  14, 3, 5,  4,  34, 38, 40, 37, 46,
                                        45, 31, 35, 12, 15, 1, 17, 32, 9,  13, 7,  16, 6};
  if (!from.isText()) {
    from.into(key.code);
    return;
  }
  const auto text = from.as<std::string>();
  if (text.size() == 1 && text[0] >= 'a' && text[0] <= 'z') {
    key.code = letters[text[0] - 'a'];
  } else {
    from.expected("a letter from \"a\" to \"z\" or a virtual key code");
  }
}

void readRecord(ScenarioObject& from, SymbolicHotKey& hotKey) {
  hotKey = {SymbolicHotKeyBinding{}, true};
  from.require("keyCode", hotKey.binding->keyCode);
  from.read("modifiers", hotKey.binding->modifierFlags);
  from.read("enabled", hotKey.enabled);
}

void RequestRecord::applyTo(RequestBehaviour& behaviour) const {
  behaviour.time = time.value_or(behaviour.time);
  behaviour.tornFor = tornFor.value_or(behaviour.tornFor);
  behaviour.signs = signs.value_or(behaviour.signs);
  behaviour.impossible = impossible.value_or(behaviour.impossible);
  behaviour.ignored = ignored.value_or(behaviour.ignored);
  behaviour.partly = partly.value_or(behaviour.partly);
}

void readRecord(ScenarioObject& from, RequestRecord& record) {
  from.read("time", record.time);
  from.read("tornFor", record.tornFor);
  if (const auto signs = from.find("signs")) {
    record.signs = signs->oneOf<SignTiming>(
        {{"exact", SignTiming::exact}, {"early", SignTiming::early}, {"never", SignTiming::never}});
  }
  readRequests(from, "impossible", "impossible", {"add-space", "remove-space", "move-window"}, record.impossible);
  readRequests(from, "ignored", "ignored",
               {"switch", "add-space", "remove-space", "move-window", "raise-window", "set-frame", "minimize-window",
                "unminimize-window", "close-window"},
               record.ignored);
  readRequests(from, "partly", "carried out partly", {"remove-space", "set-frame"}, record.partly);
}

void readRecord(ScenarioObject& from, BytesRecord& record) {
  const auto encoded = from.find("base64");
  if (encoded && from.find("text")) {
    encoded->fail("either \"text\" or \"base64\", not both");
  }
  from.read("text", record.bytes);
  if (encoded) {
    const auto bytes = bytesOfBase64(encoded->as<std::string>());
    if (!bytes) {
      encoded->expected("Base64");
    }
    record.bytes = bytes.value_or("");
  }
}

void readValue(const ScenarioValue& from, PathRecord& record) {
  record.path = from.isText() ? simulatedPath(from.as<std::string>()) : "";
  if (record.path.empty()) {
    from.expected("an absolute path, or one that begins with \"~/\"");
  }
}

}  // namespace tallowin

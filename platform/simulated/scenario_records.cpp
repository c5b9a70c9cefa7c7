#include "platform/simulated/scenario_records.h"

#include <algorithm>

#include "platform/simulated/byte_text.h"
#include "platform/simulated/simulated_files.h"

namespace tallowin {

namespace {

constexpr std::pair<std::string_view, ActivationPolicy> policies[] = {{"regular", ActivationPolicy::regular},
                                                                      {"accessory", ActivationPolicy::accessory},
                                                                      {"prohibited", ActivationPolicy::prohibited}};
constexpr std::pair<std::string_view, SignTiming> signTimings[] = {
    {"exact", SignTiming::exact}, {"early", SignTiming::early}, {"never", SignTiming::never}};

/// What may come of requests, and of which.
struct RequestFate {
  std::string_view name;
  std::set<std::string, std::less<>> RequestBehaviour::* requests;
  std::vector<std::string_view> known;
};
const std::vector<RequestFate>& requestFates() {
  static const std::vector<RequestFate> fates = {
      {"impossible", &RequestBehaviour::impossible, {"add-space", "remove-space", "move-window"}},
      {"ignored",
       &RequestBehaviour::ignored,
       {"switch", "add-space", "remove-space", "move-window", "raise-window", "set-frame", "minimize-window",
        "unminimize-window", "close-window"}},
      {"partly", &RequestBehaviour::partly, {"remove-space", "set-frame"}}};
  return fates;
}

}  // namespace

DisplayRecord readDisplay(ScenarioObject& object) {
  DisplayRecord record;
  auto& display = record.display;
  display.id = object.require("id").integer<DisplayID>();
  display.uuid = object.require("uuid").text();
  const auto bounds = object.require("bounds");
  display.bounds = bounds.rect();
  constexpr double longestSide = 10'000;  // a picture of it is still one that can be handled
  if (display.bounds.size.width > longestSide || display.bounds.size.height > longestSide) {
    bounds.fail("a display has at most 10000 points a side");
  }
  display.name = "Display " + std::to_string(display.id);
  object.read("name", display.name);
  object.read("builtin", display.builtin);
  object.read("main", record.main);
  return record;
}

SimulatedApplication readApplication(ScenarioObject& object) {
  SimulatedApplication application;
  application.name = object.require("name").text();
  object.read("pid", application.pid);
  object.read("bundleID", application.bundleIdentifier);
  if (const auto policy = object.find("activationPolicy")) {
    application.activationPolicy = policy->oneOf(policies);
  }
  object.read("active", application.isActive);
  object.read("hidden", application.isHidden);
  if (const auto time = object.find("responseTime")) {
    application.responseTime = readResponseTime(*time);
  }
  object.read("refusesClose", application.refusesClose);
  return application;
}

std::optional<std::vector<ManagedSpaceID>> readSpaces(ScenarioObject& object) {
  const auto one = object.find("space");
  const auto several = object.find("spaces");
  if (one && several) {
    several->fail("either \"space\" or \"spaces\", not both");
  }
  if (one) {
    return std::vector{one->integer<ManagedSpaceID>()};
  }
  if (!several) {
    return std::nullopt;
  }
  std::vector<ManagedSpaceID> spaces;
  for (const auto& space : several->list()) {
    spaces.push_back(space.integer<ManagedSpaceID>());
  }
  return spaces;
}

WindowRecord readWindow(ScenarioObject& object) {
  WindowRecord record;
  auto& window = record.window;
  window.number = object.require("number").integer<WindowNumber>();
  window.pid = object.require("pid").integer<ProcessID>();
  const auto title = object.find("title");
  window.title = title ? title->text() : "";
  const auto frame = object.find("frame");
  window.frame = frame ? frame->rect() : CGRect{{100, 100}, {800, 600}};
  object.read("layer", window.layer);
  if (const auto alpha = object.find("alpha")) {
    window.alpha = alpha->number();
  }
  object.read("minimized", window.minimized);
  auto spaces = readSpaces(object);
  record.onActiveSpace = !spaces;
  window.spaces = std::move(spaces).value_or(std::vector<ManagedSpaceID>());
  return record;
}

SimulatedWindow WindowRecord::placedIn(const DesktopState& state) const {
  auto placed = window;
  if (onActiveSpace) {
    placed.spaces = state.activeSpacesAt(placed.frame.center());
  }
  return placed;
}

std::optional<Duration> readResponseTime(const ScenarioValue& value) {
  return value.isNull() ? std::nullopt : std::optional(value.seconds());
}

VirtualKeyCode readKey(const ScenarioValue& value) {
  // HIToolbox/Events.h, kVK_ANSI_A to kVK_ANSI_Z.
  constexpr VirtualKeyCode letters[] = {0,  11, 8,  2,  14, 3, 5,  4,  34, 38, 40, 37, 46,
                                        45, 31, 35, 12, 15, 1, 17, 32, 9,  13, 7,  16, 6};
  if (!value.isText()) {
    return value.integer<VirtualKeyCode>();
  }
  const auto text = value.text();
  if (text.size() != 1 || text[0] < 'a' || text[0] > 'z') {
    value.expected("a letter from \"a\" to \"z\" or a virtual key code");
    return 0;
  }
  return letters[text[0] - 'a'];
}

HotKeyRecord readHotKey(ScenarioObject& object) {
  HotKeyRecord record;
  record.binding = SymbolicHotKeyBinding{object.require("keyCode").integer<VirtualKeyCode>(), 0};
  if (const auto modifiers = object.find("modifiers")) {
    record.binding->modifierFlags = modifiers->integer<std::uint64_t>();
  }
  const auto enabled = object.find("enabled");
  record.enabled = !enabled || enabled->boolean();
  return record;
}

void HotKeyRecord::applyTo(SymbolicHotKeys& hotKeys, int hotKey) const {
  hotKeys.bind(hotKey, binding);
  hotKeys.setEnabled(hotKey, enabled);
}

void RequestRecord::applyTo(RequestBehaviour& behaviour) const {
  behaviour.time = time.value_or(behaviour.time);
  behaviour.tornFor = tornFor.value_or(behaviour.tornFor);
  behaviour.signs = signs.value_or(behaviour.signs);
  for (const auto& fate : requestFates()) {
    if (const auto found = requests.find(fate.name); found != requests.end()) {
      behaviour.*fate.requests = found->second;
    }
  }
}

RequestRecord readRequests(ScenarioObject& object) {
  RequestRecord record;
  object.read("time", record.time);
  object.read("tornFor", record.tornFor);
  if (const auto signs = object.find("signs")) {
    record.signs = signs->oneOf(signTimings);
  }
  for (const auto& [fate, member, known] : requestFates()) {
    const auto list = object.find(fate);
    auto* const requests = list ? &record.requests[fate] : nullptr;
    for (const auto& request : list ? list->list() : std::vector<ScenarioValue>()) {
      if (std::ranges::find(known, request.text()) == known.end()) {
        request.expected("a request that can be " + std::string(fate == "partly" ? "carried out partly" : fate));
      }
      requests->insert(request.text());
    }
  }
  return record;
}

std::string readBytes(ScenarioObject& object) {
  const auto text = object.find("text");
  const auto encoded = object.find("base64");
  if (text && encoded) {
    encoded->fail("either \"text\" or \"base64\", not both");
  }
  if (!encoded) {
    return text ? text->text() : "";
  }
  const auto bytes = bytesOfBase64(encoded->text());
  if (!bytes) {
    encoded->expected("Base64");
  }
  return bytes.value_or("");
}

std::string readPath(const ScenarioValue& value) {
  auto path = value.isText() ? simulatedPath(value.text()) : "";
  if (path.empty()) {
    value.expected("an absolute path, or one that begins with \"~/\"");
  }
  return path;
}

}  // namespace tallowin

#include "platform/simulated/simulated_input.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstring>
#include <memory>
#include <utility>

#include "platform/events.h"
#include "platform/simulated/byte_text.h"

namespace tallowin {

void WindowDragging::begin(CGPoint location) {
  const auto found = std::ranges::find_if(state_.windows, [&](const SimulatedWindow& window) {
    return state_.isOnScreen(window) && window.frame.contains(location);
  });
  held_.reset();
  if (found != state_.windows.end() && location.y < found->frame.origin.y + titleBarHeight) {
    held_ = {found->number, location};
  }
}

void WindowDragging::pointerMoved(CGPoint location) {
  auto* const window = held_ ? state_.window(held_->number) : nullptr;
  if (window == nullptr) {
    return;
  }
  window->frame.origin.x += location.x - held_->pointer.x;
  window->frame.origin.y += location.y - held_->pointer.y;
  held_->pointer = location;
}

void WindowDragging::carryTo(ManagedSpaceID space) {
  if (auto* const window = held_ ? state_.window(held_->number) : nullptr) {
    window->spaces = {space};
  }
}

namespace {

constexpr std::uint32_t leftButton = 1;

struct MouseEventName {
  CGMouseEventType type;
  const char* name;
};
constexpr MouseEventName mouseEvents[] = {
    {CGMouseEventType::leftMouseDown, "leftMouseDown"},
    {CGMouseEventType::leftMouseUp, "leftMouseUp"},
    {CGMouseEventType::mouseMoved, "mouseMoved"},
    {CGMouseEventType::leftMouseDragged, "leftMouseDragged"},
};

const char* mouseEventName(std::int64_t type) {
  for (const auto& entry : mouseEvents) {
    if (static_cast<std::int64_t>(entry.type) == type) {
      return entry.name;
    }
  }
  return nullptr;
}

/// What the journal tells of an event: the fields that matter for its type, all fields for types without a name.
nlohmann::ordered_json described(const SimulatedEvent& event) {
  nlohmann::ordered_json description;
  if (event.type() == SimulatedEvent::keyDown || event.type() == SimulatedEvent::keyUp) {
    description["keyCode"] = event.integer(SimulatedEvent::keyCodeField);
    description["down"] = event.type() == SimulatedEvent::keyDown;
    description["flags"] = event.flags;
    return description;
  }
  if (const auto* name = mouseEventName(event.type())) {
    description["type"] = name;
    description["location"] = {event.location.x, event.location.y};
    return description;
  }
  auto& fields = description["fields"] = nlohmann::ordered_json::object();
  for (const auto& [number, value] : event.fields) {
    std::visit([&, field = std::to_string(number)](auto content) { fields[field] = content; }, value);
  }
  if (!event.payload.empty()) {
    description["payload"] = hexadecimal(event.payload);
  }
  return description;
}

// Every event that reaches this service was made by it.
SimulatedEvent& ours(CGEvent& event) {
  return static_cast<SimulatedEvent&>(event);
}

const SimulatedEvent& ours(const CGEvent& event) {
  return static_cast<const SimulatedEvent&>(event);
}

}  // namespace

CGEventPtr SimulatedEvents::CGEventCreate() {
  auto event = std::make_unique<SimulatedEvent>();
  event->timestamp = clock_.machAbsoluteTime();
  event->location = state_.pointer;
  return event;
}

CGEventPtr SimulatedEvents::CGEventCreateKeyboardEvent(VirtualKeyCode keyCode, bool down) {
  auto event = std::make_unique<SimulatedEvent>();
  event->timestamp = clock_.machAbsoluteTime();
  event->fields[SimulatedEvent::typeField] = down ? SimulatedEvent::keyDown : SimulatedEvent::keyUp;
  event->fields[SimulatedEvent::keyCodeField] = std::int64_t{keyCode};
  return event;
}

CGEventPtr SimulatedEvents::CGEventCreateMouseEvent(CGMouseEventType type, CGPoint location) {
  auto event = std::make_unique<SimulatedEvent>();
  event->timestamp = clock_.machAbsoluteTime();
  event->location = location;
  event->fields[SimulatedEvent::typeField] = static_cast<std::int64_t>(type);
  return event;
}

CGEventPtr SimulatedEvents::CGEventCreateFromData(std::string_view data) {
  auto event = SimulatedEvent::deserialised(data);
  return event ? std::make_unique<SimulatedEvent>(std::move(*event)) : nullptr;
}

std::string SimulatedEvents::CGEventCreateData(const CGEvent& event) {
  return ours(event).serialised();
}

void SimulatedEvents::CGEventSetFlags(CGEvent& event, std::uint64_t flags) {
  ours(event).flags = flags;
}

void SimulatedEvents::CGEventSetIntegerValueField(CGEvent& event, CGEventField field, std::int64_t value) {
  ours(event).fields[field] = value;
}

void SimulatedEvents::CGEventSetDoubleValueField(CGEvent& event, CGEventField field, double value) {
  ours(event).fields[field] = value;
}

double SimulatedEvents::CGEventGetDoubleValueField(const CGEvent& event, CGEventField field) {
  return ours(event).real(field);
}

std::uint64_t SimulatedEvents::CGEventGetTimestamp(const CGEvent& event) {
  return ours(event).timestamp;
}

CGPoint SimulatedEvents::CGEventGetLocation(const CGEvent& event) {
  return ours(event).location;
}

void SimulatedEvents::CGEventPost(CGEventTap tap, const CGEvent& event) {
  nlohmann::ordered_json arguments = {{"tap", static_cast<std::uint32_t>(tap)}};
  arguments.update(described(ours(event)));
  if (!state_.accessibilityAllowed) {
    arguments["dropped"] = true;
  }
  if (auto words = dock_.meaning(ours(event)); !words.empty()) {
    arguments["means"] = std::move(words);
  }
  journal_.record("CGEventPost", arguments);
  if (state_.accessibilityAllowed && !dock_.handle(ours(event))) {
    perform(ours(event));
  }
}

void SimulatedEvents::CGWarpMouseCursorPosition(CGPoint position) {
  journal_.record("CGWarpMouseCursorPosition", {{"position", {position.x, position.y}}});
  state_.pointer = position;
}

CGPoint SimulatedEvents::mouseLocation() {
  const double height = state_.displays.empty() ? 0 : state_.displays.front().bounds.size.height;
  return {state_.pointer.x, height - state_.pointer.y};
}

void SimulatedEvents::perform(const SimulatedEvent& event) {
  if (event.type() == SimulatedEvent::keyDown) {
    missionControl_.keyDown(static_cast<VirtualKeyCode>(event.integer(SimulatedEvent::keyCodeField)));
    return;
  }
  if (mouseEventName(event.type()) == nullptr) {
    return;
  }
  movePointer(event.location);
  if (event.type() == static_cast<std::int64_t>(CGMouseEventType::leftMouseDown)) {
    pressLeftButton();
  } else if (event.type() == static_cast<std::int64_t>(CGMouseEventType::leftMouseUp)) {
    releaseLeftButton();
  }
}

void SimulatedEvents::movePointer(CGPoint location) {
  state_.pointer = location;
  missionControl_.pointerMoved(location);
  dragging_.pointerMoved(location);
}

void SimulatedEvents::pressLeftButton() {
  state_.pressedMouseButtons |= leftButton;
  if (!missionControl_.isOpen()) {
    dragging_.begin(state_.pointer);
  }
}

void SimulatedEvents::releaseLeftButton() {
  state_.pressedMouseButtons &= ~leftButton;
  dragging_.end();
  missionControl_.clicked(state_.pointer);
}

std::optional<Subscription> SimulatedGlobalHotKeys::registerHotKey(VirtualKeyCode keyCode, std::uint64_t modifierFlags,
                                                                   std::function<void()> pressed) {
  const auto modifiers = modifierFlags & CGEventFlag::modifiers;
  const bool accepted = !state_.takenHotKeys.contains({keyCode, modifiers});
  journal_.record("registerHotKey", {{"keyCode", keyCode}, {"modifiers", modifiers}, {"accepted", accepted}});
  if (!accepted) {
    return {};
  }
  auto entry = presses_.subscribe([keyCode, modifiers, pressed = std::move(pressed)](Press& press) {
    if (press.keyCode == keyCode && press.modifierFlags == modifiers) {
      press.taken = true;
      pressed();
    }
  });
  // Shared only because the end of a subscription must be copyable.
  return Subscription([this, keyCode, modifiers, kept = std::make_shared<Subscription>(std::move(entry))] {
    journal_.record("unregisterHotKey", {{"keyCode", keyCode}, {"modifiers", modifiers}});
    kept->cancel();
  });
}

bool SimulatedGlobalHotKeys::press(VirtualKeyCode keyCode, std::uint64_t modifierFlags) {
  Press press{keyCode, modifierFlags & CGEventFlag::modifiers, false};
  if (state_.takenHotKeys.contains({press.keyCode, press.modifierFlags})) {
    return true;
  }
  presses_.tell(press);
  return press.taken;
}

std::vector<const void*> SimulatedTrackpads::devices() const {
  std::vector<const void*> references;
  for (const auto& device : devices_) {
    references.push_back(&device);
  }
  return references;
}

SimulatedTrackpads::Device* SimulatedTrackpads::find(const void* device) {
  const auto found = std::ranges::find_if(devices_, [&](const Device& candidate) { return &candidate == device; });
  return found == devices_.end() ? nullptr : &*found;
}

void SimulatedTrackpads::registerCallback(const void* device, private_functions::ContactFrameCallback callback) {
  journal_.record("MTRegisterContactFrameCallback");
  if (auto* const found = find(device); found != nullptr && callback != nullptr) {
    found->callbacks.push_back(callback);
  }
}

private_functions::Error SimulatedTrackpads::start(const void* device, std::int32_t mode) {
  journal_.record("MTDeviceStart", {{"mode", mode}});
  auto* const found = find(device);
  if (found == nullptr) {
    return 1;
  }
  found->started = true;
  return 0;
}

void SimulatedTrackpads::touch(const std::vector<CGPoint>& contacts) {
  if (devices_.empty() || !devices_.front().started) {
    return;
  }
  std::vector<std::byte> records(contacts.size() * private_functions::contactSize);
  for (std::size_t i = 0; i < contacts.size(); ++i) {
    const float position[] = {static_cast<float>(contacts[i].x), static_cast<float>(contacts[i].y)};
    std::memcpy(&records[i * private_functions::contactSize + private_functions::contactPositionOffset], position,
                sizeof position);
  }
  const auto now = std::chrono::duration<double>(clock_.systemUptime()).count();
  ++frame_;
  const auto callbacks = devices_.front().callbacks;
  for (const auto callback : callbacks) {
    callback(&devices_.front(), records.data(), static_cast<std::int32_t>(contacts.size()), now, frame_);
  }
}

}  // namespace tallowin

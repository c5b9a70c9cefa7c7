#include "platform/simulated/simulated_events.h"

#include "platform/simulated/byte_text.h"

namespace tallowin {

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
nlohmann::ordered_json described(const EmulatedEvent& event) {
  nlohmann::ordered_json description;
  if (event.type() == EmulatedEvent::keyDown || event.type() == EmulatedEvent::keyUp) {
    description["keyCode"] = event.integer(EmulatedEvent::keyCodeField);
    description["down"] = event.type() == EmulatedEvent::keyDown;
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

}  // namespace

void SimulatedEvents::CGEventPost(CGEventTap tap, const CGEvent& event) {
  nlohmann::ordered_json arguments = {{"tap", static_cast<std::uint32_t>(tap)}};
  // Every event that reaches this service was made by it.
  arguments.update(described(static_cast<const EmulatedEvent&>(event)));
  if (!state_.accessibilityAllowed) {
    arguments["dropped"] = true;
  }
  journal_.record("CGEventPost", arguments);
  if (state_.accessibilityAllowed) {
    EmulatedEvents::CGEventPost(tap, event);
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

void SimulatedEvents::postInput(const EmulatedEvent& event) {
  if (event.type() == EmulatedEvent::keyDown) {
    missionControl_.keyDown(static_cast<VirtualKeyCode>(event.integer(EmulatedEvent::keyCodeField)));
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

}  // namespace tallowin

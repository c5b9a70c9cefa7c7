#include "platform/simulated/simulated_input.h"

#include <algorithm>
#include <utility>

namespace tallowin {

namespace {

constexpr std::uint32_t leftButton = 1;
/// The title bar takes this much of a window's top, in points.
constexpr double titleBarHeight = 28;

/// Null for events that are none of the mouse.
const char* mouseEventName(std::int64_t type) {
  switch (static_cast<CGMouseEventType>(type)) {
    case CGMouseEventType::leftMouseDown:
      return "leftMouseDown";
    case CGMouseEventType::leftMouseUp:
      return "leftMouseUp";
    case CGMouseEventType::mouseMoved:
      return "mouseMoved";
    case CGMouseEventType::leftMouseDragged:
      return "leftMouseDragged";
    default:
      return nullptr;
  }
}

std::string hexadecimal(std::string_view bytes) {
  constexpr std::string_view digits = "0123456789abcdef";
  std::string text;
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    text += digits[byte >> 4];
    text += digits[byte & 0xF];
  }
  return text;
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
    fields[std::to_string(number)] = value;
  }
  if (!event.payload.empty()) {
    description["payload"] = hexadecimal(event.payload);
  }
  return description;
}

}  // namespace

std::unique_ptr<SimulatedEvent> SimulatedEvents::makeEvent(CGPoint location) const {
  auto event = std::make_unique<SimulatedEvent>();
  event->timestamp = clock_.machAbsoluteTime();
  event->location = location;
  return event;
}

CGEventPtr SimulatedEvents::CGEventCreateKeyboardEvent(VirtualKeyCode keyCode, bool down) {
  auto event = makeEvent({});
  event->fields[SimulatedEvent::typeField] = down ? SimulatedEvent::keyDown : SimulatedEvent::keyUp;
  event->fields[SimulatedEvent::keyCodeField] = std::int64_t{keyCode};
  return event;
}

CGEventPtr SimulatedEvents::CGEventCreateMouseEvent(CGMouseEventType type, CGPoint location) {
  auto event = makeEvent(location);
  event->fields[SimulatedEvent::typeField] = static_cast<std::int64_t>(type);
  return event;
}

CGEventPtr SimulatedEvents::CGEventCreateFromData(std::string_view data) {
  auto event = SimulatedEvent::deserialised(data);
  return event ? std::make_unique<SimulatedEvent>(std::move(*event)) : nullptr;
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
  if (auto* const window = heldWindow()) {
    window->frame.origin.x += location.x - held_->pointer.x;
    window->frame.origin.y += location.y - held_->pointer.y;
    held_->pointer = location;
  }
}

void SimulatedEvents::pressLeftButton() {
  state_.pressedMouseButtons |= leftButton;
  if (missionControl_.isOpen()) {
    return;
  }
  const auto at = state_.pointer;
  const auto found = std::ranges::find_if(state_.windows, [&](const SimulatedWindow& window) {
    return state_.isOnScreen(window) && window.frame.contains(at);
  });
  held_.reset();
  if (found != state_.windows.end() && at.y < found->frame.origin.y + titleBarHeight) {
    held_ = {found->number, at};
  }
}

void SimulatedEvents::releaseLeftButton() {
  state_.pressedMouseButtons &= ~leftButton;
  held_.reset();
  missionControl_.clicked(state_.pointer);
}

void SimulatedEvents::carryWindowTo(ManagedSpaceID space) {
  if (auto* const window = heldWindow()) {
    window->spaces = {space};
  }
}

class SimulatedGlobalHotKeys::Registration : public HotKey {
 public:
  Registration(SimulatedGlobalHotKeys& owner, VirtualKeyCode keyCode, std::uint64_t modifiers,
               std::function<void()> pressed)
      : owner_(owner), keyCode_(keyCode), modifiers_(modifiers), pressed_(std::move(pressed)) {
    owner_.registrations_.push_back(this);
    take();
  }
  ~Registration() override {
    std::erase(owner_.registrations_, this);
    if (presses_) {
      owner_.journal_.record("unregisterHotKey", {{"keyCode", keyCode_}, {"modifiers", modifiers_}});
    }
  }
  Registration(const Registration&) = delete;
  Registration& operator=(const Registration&) = delete;

  HotKeyState state() override { return presses_ ? HotKeyState::works : HotKeyState::taken; }

  /// Takes the combination, unless this has it.
  void take() {
    if (presses_) {
      return;
    }
    const bool accepted = !owner_.state_.takenHotKeys.contains({keyCode_, modifiers_});
    owner_.journal_.record("registerHotKey",
                           {{"keyCode", keyCode_}, {"modifiers", modifiers_}, {"accepted", accepted}});
    if (accepted) {
      presses_ =
          owner_.presses_.subscribe([keyCode = keyCode_, modifiers = modifiers_, pressed = pressed_](Press& press) {
            if (press.keyCode == keyCode && press.modifierFlags == modifiers) {
              press.taken = true;
              pressed();
            }
          });
    }
  }

 private:
  SimulatedGlobalHotKeys& owner_;
  const VirtualKeyCode keyCode_;
  const std::uint64_t modifiers_;
  const std::function<void()> pressed_;
  Subscription presses_;  ///< nothing while another program has the combination
};

std::unique_ptr<HotKey> SimulatedGlobalHotKeys::registerHotKey(VirtualKeyCode keyCode, std::uint64_t modifierFlags,
                                                               std::function<void()> pressed) {
  return std::make_unique<Registration>(*this, keyCode, modifierFlags & CGEventFlag::modifiers, std::move(pressed));
}

void SimulatedGlobalHotKeys::retry() {
  for (auto* const registration : registrations_) {
    registration->take();
  }
}

bool SimulatedGlobalHotKeys::press(VirtualKeyCode keyCode, std::uint64_t modifierFlags) {
  Press press{keyCode, modifierFlags & CGEventFlag::modifiers, false};
  if (state_.takenHotKeys.contains({press.keyCode, press.modifierFlags})) {
    return true;
  }
  presses_.tell(press);
  return press.taken;
}

}  // namespace tallowin

#include "platform/emulated/emulated_events.h"

namespace tallowin {

namespace {

// Every event that reaches this service was made by it.
EmulatedEvent& emulated(CGEvent& event) {
  return static_cast<EmulatedEvent&>(event);
}

const EmulatedEvent& emulated(const CGEvent& event) {
  return static_cast<const EmulatedEvent&>(event);
}

}  // namespace

CGEventPtr EmulatedEvents::CGEventCreate() {
  auto event = std::make_unique<EmulatedEvent>();
  event->timestamp = clock_.machAbsoluteTime();
  event->location = pointerLocation();
  return event;
}

CGEventPtr EmulatedEvents::CGEventCreateKeyboardEvent(VirtualKeyCode keyCode, bool down) {
  auto event = std::make_unique<EmulatedEvent>();
  event->timestamp = clock_.machAbsoluteTime();
  event->fields[EmulatedEvent::typeField] = down ? EmulatedEvent::keyDown : EmulatedEvent::keyUp;
  event->fields[EmulatedEvent::keyCodeField] = std::int64_t{keyCode};
  return event;
}

CGEventPtr EmulatedEvents::CGEventCreateMouseEvent(CGMouseEventType type, CGPoint location) {
  auto event = std::make_unique<EmulatedEvent>();
  event->timestamp = clock_.machAbsoluteTime();
  event->location = location;
  event->fields[EmulatedEvent::typeField] = static_cast<std::int64_t>(type);
  return event;
}

CGEventPtr EmulatedEvents::CGEventCreateFromData(std::string_view data) {
  auto event = EmulatedEvent::deserialised(data);
  return event ? std::make_unique<EmulatedEvent>(std::move(*event)) : nullptr;
}

std::string EmulatedEvents::CGEventCreateData(const CGEvent& event) {
  return emulated(event).serialised();
}

void EmulatedEvents::CGEventSetFlags(CGEvent& event, std::uint64_t flags) {
  emulated(event).flags = flags;
}

void EmulatedEvents::CGEventSetIntegerValueField(CGEvent& event, CGEventField field, std::int64_t value) {
  emulated(event).fields[field] = value;
}

void EmulatedEvents::CGEventSetDoubleValueField(CGEvent& event, CGEventField field, double value) {
  emulated(event).fields[field] = value;
}

double EmulatedEvents::CGEventGetDoubleValueField(const CGEvent& event, CGEventField field) {
  return emulated(event).real(field);
}

std::uint64_t EmulatedEvents::CGEventGetTimestamp(const CGEvent& event) {
  return emulated(event).timestamp;
}

CGPoint EmulatedEvents::CGEventGetLocation(const CGEvent& event) {
  return emulated(event).location;
}

void EmulatedEvents::CGEventPost(CGEventTap /*tap*/, const CGEvent& event) {
  if (!dock_.handle(emulated(event))) {
    postInput(emulated(event));
  }
}

}  // namespace tallowin

#pragma once

#include "platform/clock.h"
#include "platform/emulated/emulated_dock.h"
#include "platform/emulated/emulated_event.h"
#include "platform/events.h"

namespace tallowin {

/// Everything of the event services that needs no system: building events, and offering each posted one to the Dock
/// first. A platform adds the pointer and what becomes of the events that the Dock leaves.
class EmulatedEvents : public Events {
 public:
  EmulatedEvents(const Clock& clock, EmulatedDock& dock) : clock_(clock), dock_(dock) {}

  CGEventPtr CGEventCreate() override;
  CGEventPtr CGEventCreateKeyboardEvent(VirtualKeyCode keyCode, bool down) override;
  CGEventPtr CGEventCreateMouseEvent(CGMouseEventType type, CGPoint location) override;
  CGEventPtr CGEventCreateFromData(std::string_view data) override;
  std::string CGEventCreateData(const CGEvent& event) override;
  void CGEventSetFlags(CGEvent& event, std::uint64_t flags) override;
  void CGEventSetIntegerValueField(CGEvent& event, CGEventField field, std::int64_t value) override;
  void CGEventSetDoubleValueField(CGEvent& event, CGEventField field, double value) override;
  double CGEventGetDoubleValueField(const CGEvent& event, CGEventField field) override;
  std::uint64_t CGEventGetTimestamp(const CGEvent& event) override;
  CGPoint CGEventGetLocation(const CGEvent& event) override;
  void CGEventPost(CGEventTap tap, const CGEvent& event) override;

 protected:
  /// Where the pointer is, origin top left.
  virtual CGPoint pointerLocation() = 0;

  /// What the Dock makes of an event, in words; empty when it is nothing to it.
  [[nodiscard]] std::string meaning(const EmulatedEvent& event) const { return dock_.meaning(event); }

  /// Performs a key press or a mouse event that the Dock left; other types need nothing done.
  virtual void postInput(const EmulatedEvent& event) = 0;

 private:
  const Clock& clock_;
  EmulatedDock& dock_;
};

}  // namespace tallowin

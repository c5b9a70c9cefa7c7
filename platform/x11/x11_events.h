#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <vector>
#include <xcb/xcb.h>

#include "platform/emulated/emulated_events.h"
#include "platform/emulated/mission_control.h"
#include "platform/x11/key_map.h"
#include "platform/x11/x11_connection.h"
#include "platform/x11/x11_glance.h"

namespace tallowin {

/// Input through the XTEST extension. A key goes to where the keyboard's layout has it, with Command as the left Super
/// key, Option as left Alt; its modifiers are held until its release is posted. A drag is posted as several motions.
/// Escape, motions and clicks are offered to the emulated Mission Control while it is open. Without XTEST nothing is
/// posted.
class X11Events : public EmulatedEvents {
 public:
  X11Events(X11Connection& connection, X11Glance& glance, const Clock& clock, EmulatedDock& dock,
            MissionControl& missionControl)
      : EmulatedEvents(clock, dock), connection_(connection), glance_(glance), missionControl_(missionControl) {}
  /// Releases what is still held.
  ~X11Events() override;

  void CGWarpMouseCursorPosition(CGPoint position) override;
  std::uint32_t pressedMouseButtons() override;
  CGPoint mouseLocation() override;

 protected:
  CGPoint pointerLocation() override;
  void postInput(const EmulatedEvent& event) override;

 private:
  void pressKey(VirtualKeyCode keyCode, std::uint64_t flags);
  void releaseKey(VirtualKeyCode keyCode);
  void postMouse(CGMouseEventType type, CGPoint location);
  void drag(CGPoint location);
  void fake(std::uint8_t type, std::uint8_t detail, CGPoint location = {});

  X11Connection& connection_;
  X11Glance& glance_;
  MissionControl& missionControl_;
  bool clicking_ = false;  ///< the left button is held on Mission Control
  /// The keycodes that were pressed for each key that is held, in the order of pressing.
  std::map<VirtualKeyCode, std::vector<std::uint8_t>> held_;
};

}  // namespace tallowin

#pragma once

#include "platform/emulated/emulated_events.h"
#include "platform/emulated/mission_control.h"
#include "platform/simulated/desktop_state.h"
#include "platform/simulated/journal.h"
#include "platform/simulated/window_dragging.h"

namespace tallowin {

/// The simulated event services: every posted event is a line of the journal, then goes to the Dock, to Mission Control
/// and to the window under the pointer. Without accessibility permission it is dropped. Main thread only.
class SimulatedEvents : public EmulatedEvents {
 public:
  SimulatedEvents(const Clock& clock, EmulatedDock& dock, MissionControl& missionControl, WindowDragging& dragging,
                  DesktopState& state, Journal& journal)
      : EmulatedEvents(clock, dock),
        missionControl_(missionControl),
        dragging_(dragging),
        state_(state),
        journal_(journal) {}

  void CGEventPost(CGEventTap tap, const CGEvent& event) override;
  void CGWarpMouseCursorPosition(CGPoint position) override;
  std::uint32_t pressedMouseButtons() override { return state_.pressedMouseButtons; }
  CGPoint mouseLocation() override;

  /// What the user's own hand does, with the same effects as posted events.
  void movePointer(CGPoint location);
  void pressLeftButton();
  void releaseLeftButton();

 protected:
  CGPoint pointerLocation() override { return state_.pointer; }
  void postInput(const EmulatedEvent& event) override;

 private:
  MissionControl& missionControl_;
  WindowDragging& dragging_;
  DesktopState& state_;
  Journal& journal_;
};

}  // namespace tallowin

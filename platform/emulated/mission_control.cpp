#include "platform/emulated/mission_control.h"

#include "platform/emulated/mission_control_bar.h"
#include "platform/emulated/mission_control_elements.h"

namespace tallowin {

namespace {

constexpr VirtualKeyCode escapeKey = 53;  // HIToolbox/Events.h, kVK_Escape

}  // namespace

MissionControl::MissionControl(DesktopOperations& desktops, MainQueue& queue,
                               std::function<CGRect(const std::string& display)> boundsOf,
                               MissionControlBehaviour behaviour)
    : bar_(std::make_shared<MissionControlBar>(desktops, queue, std::move(boundsOf), behaviour)) {}

void MissionControl::notify(std::string_view notification) {
  if (notification == awakeNotification) {
    bar_->toggle();
  }
}

bool MissionControl::keyDown(VirtualKeyCode keyCode) {
  const bool takes = keyCode == escapeKey && !bar_->isClosed();
  if (takes) {
    bar_->close();
  }
  return takes;
}

void MissionControl::pointerMoved(CGPoint location) {
  bar_->hover(location);
}

bool MissionControl::clicked(CGPoint location) {
  const bool takes = bar_->isOpen();
  if (takes) {
    bar_->click(location);
  }
  return takes;
}

bool MissionControl::isOpen() const {
  return bar_->isOpen();
}

AXUIElement MissionControl::dockElement() const {
  return makeDockElement(bar_);
}

}  // namespace tallowin

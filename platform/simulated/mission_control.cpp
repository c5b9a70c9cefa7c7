#include "platform/simulated/mission_control.h"

#include <algorithm>

namespace tallowin {

namespace {

constexpr double thumbnailWidth = 160;
constexpr double thumbnailHeight = 100;
constexpr double gap = 20;
constexpr double margin = 40;  // above and to the left of the first thumbnail

/// The close badge is a square of this side in a thumbnail's top left corner.
constexpr double badgeSize = 24;

CGRect frameAt(const CGRect& display, std::size_t place) {
  const double x = display.origin.x + margin + static_cast<double>(place) * (thumbnailWidth + gap);
  return {{x, display.origin.y + margin}, {thumbnailWidth, thumbnailHeight}};
}

constexpr VirtualKeyCode escapeKey = 53;  // HIToolbox/Events.h, kVK_Escape

}  // namespace

void MissionControl::notify(std::string_view notification) {
  if (notification != awakeNotification) {
    return;
  }
  if (stage_ != Stage::closed) {
    close();
  } else if (behaviour_.opens) {
    stage_ = Stage::opening;
    opening_ = queue_.after(behaviour_.openingTime, [this] { stage_ = Stage::open; });
  }
}

bool MissionControl::keyDown(VirtualKeyCode keyCode) {
  const bool takes = keyCode == escapeKey && stage_ != Stage::closed;
  if (takes) {
    close();
  }
  return takes;
}

void MissionControl::close() {
  stage_ = Stage::closed;
  opening_.cancel();
  hovering_.cancel();
  hovered_.reset();
  hoveredLongEnough_ = false;
}

void MissionControl::pointerMoved(CGPoint location) {
  const auto thumbnail = isOpen() ? thumbnailAt(location) : std::nullopt;
  const auto space = thumbnail ? std::optional(thumbnail->space) : std::nullopt;
  if (space == hovered_) {
    return;
  }
  hovered_ = space;
  hoveredLongEnough_ = false;
  hovering_.cancel();
  if (hovered_) {
    hovering_ = queue_.after(behaviour_.hoverTime, [this] { hoveredLongEnough_ = true; });
  }
}

bool MissionControl::clicked(CGPoint location) {
  if (!isOpen()) {
    return false;
  }
  if (const auto thumbnail = thumbnailAt(location)) {
    const auto corner = thumbnail->frame.origin;
    const bool onBadge = location.x < corner.x + badgeSize && location.y < corner.y + badgeSize;
    if (thumbnail->showsBadge && onBadge) {
      remove(thumbnail->space);
    } else {
      choose(thumbnail->space);
    }
  }
  return true;
}

bool MissionControl::choose(ManagedSpaceID space) {
  close();
  desktops_.switchTo(space, SwitchCause::missionControl);
  return true;
}

bool MissionControl::remove(ManagedSpaceID space) {
  const bool removed = desktops_.removeDesktop(space);
  if (removed && hovered_ == space) {
    // What is under the pointer now is seen when it moves.
    hovered_.reset();
    hoveredLongEnough_ = false;
  }
  return removed;
}

std::vector<std::string> MissionControl::displays() const {
  std::vector<std::string> displays;
  for (const auto& row : desktops_.displays()) {
    displays.push_back(row.id);
  }
  return displays;
}

std::vector<MissionControl::Thumbnail> MissionControl::thumbnails(const std::string& display) const {
  std::vector<Thumbnail> thumbnails;
  std::size_t number = 0;
  for (const auto& row : desktops_.displays()) {
    const auto ordinary = std::ranges::count(row.spaces, false, &DesktopSpace::isFullscreen);
    for (const auto& space : row.spaces) {
      number += space.isFullscreen ? 0 : 1;
      if (row.id != display) {
        continue;
      }
      // The last desktop cannot be closed, and neither can full-screen Spaces, by their thumbnail.
      const bool badge = !space.isFullscreen && ordinary > 1 && hovered_ == space.id && hoveredLongEnough_;
      thumbnails.push_back({space.id, space.isFullscreen ? "Full Screen" : "Desktop " + std::to_string(number),
                            frameAt(boundsOf_(display), thumbnails.size()), badge,
                            badge && behaviour_.hasCloseButtons});
    }
  }
  return thumbnails;
}

CGRect MissionControl::addButtonFrame(const std::string& display) const {
  return frameAt(boundsOf_(display), thumbnails(display).size());
}

std::optional<MissionControl::Thumbnail> MissionControl::thumbnailAt(CGPoint location) const {
  for (const auto& display : displays()) {
    for (const auto& thumbnail : thumbnails(display)) {
      if (thumbnail.frame.contains(location)) {
        return thumbnail;
      }
    }
  }
  return std::nullopt;
}

}  // namespace tallowin

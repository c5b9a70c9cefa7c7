#include "platform/simulated/mission_control.h"

#include <algorithm>
#include <functional>
#include <utility>

#include "platform/simulated/simulated_accessibility.h"
#include "platform/simulated/simulated_spaces.h"

namespace tallowin {

namespace {

constexpr double thumbnailWidth = 160;
constexpr double thumbnailHeight = 100;
constexpr double gap = 20;
constexpr double margin = 40;  // above and to the left of the first thumbnail

/// The close badge is a square of this side in a thumbnail's top left corner.
constexpr double badgeSize = 24;

constexpr VirtualKeyCode escapeKey = 53;  // HIToolbox/Events.h, kVK_Escape

using Elements = std::vector<AXUIElement>;

/// What an element is like; what does not apply is left empty.
struct Description {
  std::string role = {};
  std::string title = {};
  std::string description = {};
  std::optional<CGRect> frame = {};
  std::function<Elements()> children = {};
  std::function<bool()> press = {};
  bool isPartOfMissionControl = true;
};

class DockElement : public SimulatedElement {
 public:
  DockElement(const MissionControl& bar, Description description) : bar_(bar), description_(std::move(description)) {}

  [[nodiscard]] AXValue attribute(std::string_view name) const override {
    const auto& [role, title, words, frame, children, press, isPart] = description_;
    const auto text = [](const std::string& value) { return value.empty() ? AXValue() : AXValue(value); };
    return !isShown()                         ? AXValue()
           : name == "AXRole"                 ? text(role)
           : name == "AXTitle"                ? text(title)
           : name == "AXDescription"          ? text(words)
           : name == "AXChildren" && children ? AXValue(children())
           : name == "AXPosition" && frame    ? AXValue(frame->origin)
           : name == "AXSize" && frame        ? AXValue(frame->size)
                                              : AXValue();
  }

  bool perform(std::string_view action) const override {
    return isShown() && action == "AXPress" && description_.press && description_.press();
  }

 private:
  [[nodiscard]] bool isShown() const { return bar_.isOpen() || !description_.isPartOfMissionControl; }

  const MissionControl& bar_;
  const Description description_;
};

AXUIElement element(const MissionControl& bar, Description description) {
  return std::make_shared<DockElement>(bar, std::move(description));
}

AXUIElement group(const MissionControl& bar, std::string title, std::function<Elements()> children) {
  return element(bar, {.role = "AXGroup", .title = std::move(title), .children = std::move(children)});
}

Elements buttons(MissionControl& bar, const std::string& display) {
  Elements elements;
  for (const auto& thumbnail : bar.thumbnails(display)) {
    const auto space = thumbnail.space;
    elements.push_back(
        element(bar, {.role = "AXButton", .title = thumbnail.title, .frame = thumbnail.frame, .press = [&bar, space] {
                        return bar.choose(space);
                      }}));
    if (thumbnail.hasCloseButton) {
      elements.push_back(element(bar, {.role = "AXButton", .description = "Remove Desktop", .press = [&bar, space] {
                                         return bar.remove(space);
                                       }}));
    }
  }
  if (bar.hasAddButton()) {
    elements.push_back(element(bar, {.role = "AXButton",
                                     .description = "add desktop",
                                     .frame = bar.addButtonFrame(display),
                                     .press = [&bar, display] { return bar.add(display); }}));
  }
  return elements;
}

Elements displayGroups(MissionControl& bar) {
  Elements groups;
  for (const auto& display : bar.displays()) {
    groups.push_back(group(bar, "", [&bar, display] {
      return Elements{group(bar, "Spaces Bar", [&bar, display] { return buttons(bar, display); })};
    }));
  }
  return groups;
}

/// What the Dock shows whether Mission Control is open or not.
AXUIElement permanent(const MissionControl& bar, std::string role, std::string title,
                      std::function<Elements()> children) {
  return element(bar, {.role = std::move(role),
                       .title = std::move(title),
                       .children = std::move(children),
                       .isPartOfMissionControl = false});
}

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
  spaces_.switchTo(space, SwitchCause::missionControl);
  return true;
}

bool MissionControl::add(const std::string& display) {
  return behaviour_.hasAddButton && spaces_.addDesktop(display);
}

bool MissionControl::remove(ManagedSpaceID space) {
  const bool removed = spaces_.removeDesktop(space);
  if (removed && hovered_ == space) {
    // What is under the pointer now is seen when it moves.
    hovered_.reset();
    hoveredLongEnough_ = false;
  }
  return removed;
}

std::vector<std::string> MissionControl::displays() const {
  std::vector<std::string> displays;
  for (const auto& row : spaces_.displays()) {
    displays.push_back(row.id);
  }
  return displays;
}

std::vector<MissionControl::Thumbnail> MissionControl::thumbnails(const std::string& display) const {
  std::vector<Thumbnail> thumbnails;
  std::size_t number = 0;
  for (const auto& row : spaces_.displays()) {
    const auto ordinary = std::ranges::count(row.spaces, false, &DesktopSpace::isFullscreen);
    for (const auto& space : row.spaces) {
      number += space.isFullscreen ? 0 : 1;
      if (row.id != display) {
        continue;
      }
      // The last desktop cannot be closed, and neither can full-screen Spaces, by their thumbnail.
      const bool badge = !space.isFullscreen && ordinary > 1 && hovered_ == space.id && hoveredLongEnough_;
      thumbnails.push_back({space.id, space.isFullscreen ? "Full Screen" : "Desktop " + std::to_string(number),
                            frameAt(display, thumbnails.size()), badge, badge && behaviour_.hasCloseButtons});
    }
  }
  return thumbnails;
}

CGRect MissionControl::frameAt(const std::string& display, std::size_t place) const {
  const auto* const shown = state_.displayNamed(display);
  const auto origin = shown != nullptr ? shown->bounds.origin : CGPoint{};
  const double x = origin.x + margin + static_cast<double>(place) * (thumbnailWidth + gap);
  return {{x, origin.y + margin}, {thumbnailWidth, thumbnailHeight}};
}

CGRect MissionControl::addButtonFrame(const std::string& display) const {
  return frameAt(display, thumbnails(display).size());
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

AXUIElement MissionControl::dockElement() {
  return permanent(*this, "AXApplication", "Dock", [this] {
    Elements children = {permanent(*this, "AXList", "", [this] {
      return Elements{permanent(*this, "AXDockItem", "Finder", {}), permanent(*this, "AXDockItem", "Trash", {})};
    })};
    if (isOpen()) {
      children.push_back(group(*this, "Mission Control", [this] { return displayGroups(*this); }));
    }
    return children;
  });
}

}  // namespace tallowin

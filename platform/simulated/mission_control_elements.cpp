#include <utility>

#include "platform/simulated/mission_control.h"
#include "platform/simulated/simulated_element.h"

namespace tallowin {

namespace {

using WeakMissionControl = std::weak_ptr<MissionControl>;
using Elements = std::vector<AXUIElement>;

/// What an element is like; what does not apply is left empty.
struct Description {
  std::string role = {};
  std::string title = {};
  std::string description = {};
  std::optional<CGRect> frame = {};
  std::function<Elements(MissionControl&)> children = {};
  std::function<bool(MissionControl&)> press = {};
  bool isPartOfMissionControl = true;
};

class DockElement : public SimulatedElement {
 public:
  DockElement(WeakMissionControl bar, Description description)
      : bar_(std::move(bar)), description_(std::move(description)) {}

  [[nodiscard]] AXValue attribute(std::string_view name) const override {
    const auto bar = shown();
    if (bar == nullptr) {
      return {};
    }
    const std::pair<std::string_view, const std::string&> texts[] = {
        {"AXRole", description_.role}, {"AXTitle", description_.title}, {"AXDescription", description_.description}};
    for (const auto& [attribute, text] : texts) {
      if (attribute == name) {
        return text.empty() ? AXValue() : AXValue(text);
      }
    }
    if (name == "AXChildren") {
      return description_.children ? AXValue(description_.children(*bar)) : AXValue();
    }
    if (!description_.frame) {
      return {};
    }
    return name == "AXPosition" ? AXValue(description_.frame->origin)
           : name == "AXSize"   ? AXValue(description_.frame->size)
                                : AXValue();
  }

  bool perform(std::string_view action) const override {
    const auto bar = shown();
    return bar != nullptr && action == "AXPress" && description_.press && description_.press(*bar);
  }

 private:
  [[nodiscard]] std::shared_ptr<MissionControl> shown() const {
    auto bar = bar_.lock();
    return bar != nullptr && (bar->isOpen() || !description_.isPartOfMissionControl) ? bar : nullptr;
  }

  const WeakMissionControl bar_;
  const Description description_;
};

AXUIElement element(const WeakMissionControl& bar, Description description) {
  return std::make_shared<DockElement>(bar, std::move(description));
}

AXUIElement group(const WeakMissionControl& bar, std::string title, std::function<Elements(MissionControl&)> children) {
  return element(bar, {.role = "AXGroup", .title = std::move(title), .children = std::move(children)});
}

Elements buttons(const WeakMissionControl& bar, MissionControl& shown, const std::string& display) {
  Elements elements;
  for (const auto& thumbnail : shown.thumbnails(display)) {
    elements.push_back(element(bar, {.role = "AXButton",
                                     .title = thumbnail.title,
                                     .frame = thumbnail.frame,
                                     .press = [thumbnail](auto& pressed) { return pressed.choose(thumbnail.space); }}));
    if (thumbnail.hasCloseButton) {
      elements.push_back(
          element(bar, {.role = "AXButton", .description = "Remove Desktop", .press = [thumbnail](auto& pressed) {
                          return pressed.remove(thumbnail.space);
                        }}));
    }
  }
  if (shown.hasAddButton()) {
    elements.push_back(element(bar, {.role = "AXButton",
                                     .description = "add desktop",
                                     .frame = shown.addButtonFrame(display),
                                     .press = [display](auto& pressed) { return pressed.add(display); }}));
  }
  return elements;
}

Elements displayGroups(const WeakMissionControl& bar, MissionControl& shown) {
  Elements groups;
  for (const auto& display : shown.displays()) {
    groups.push_back(group(bar, "", [bar, display](auto& /*shown*/) {
      return Elements{group(bar, "Spaces Bar", [bar, display](auto& open) { return buttons(bar, open, display); })};
    }));
  }
  return groups;
}

AXUIElement icons(const WeakMissionControl& bar) {
  return element(bar, {.role = "AXList",
                       .children =
                           [bar](auto& /*shown*/) {
                             Elements items;
                             for (const auto* const title : {"Finder", "Trash"}) {
                               items.push_back(element(
                                   bar, {.role = "AXDockItem", .title = title, .isPartOfMissionControl = false}));
                             }
                             return items;
                           },
                       .isPartOfMissionControl = false});
}

}  // namespace

AXUIElement MissionControl::dockElement() const {
  const WeakMissionControl bar = self_;
  return element(bar, {.role = "AXApplication",
                       .title = "Dock",
                       .children =
                           [bar](MissionControl& shown) {
                             Elements children = {icons(bar)};
                             if (shown.isOpen()) {
                               children.push_back(group(bar, "Mission Control",
                                                        [bar](auto& open) { return displayGroups(bar, open); }));
                             }
                             return children;
                           },
                       .isPartOfMissionControl = false});
}

}  // namespace tallowin

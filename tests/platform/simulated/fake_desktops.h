#pragma once

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "platform/simulated/desktop_operations.h"
#include "tests/lines_log.h"

namespace tallowin {

/// Desktops that remember what they were asked for; switches arrive only when the test says so.
class FakeDesktops : public DesktopOperations {
 public:
  std::vector<DesktopRow> rows() override { return displays; }
  std::optional<std::string> displayUnderPointer() override {
    return pointed && *pointed < displays.size() ? std::optional(displays[*pointed].display) : std::nullopt;
  }
  void switchTo(ManagedSpaceID space, SwitchCause cause) override {
    switched.push_back(space);
    causes.push_back(cause);
  }
  bool addDesktop(const std::string& display) override {
    added.push_back(display);
    return true;
  }
  bool removeDesktop(ManagedSpaceID space) override {
    removed.push_back(space);
    for (auto& row : displays) {
      std::erase_if(row.spaces, [&](const DockSpace& candidate) { return candidate.id == space; });
    }
    return true;
  }

  // display Left: [1] 2 (full screen 9) 3      display Right: [5] 6
  std::vector<DesktopRow> displays = {{"Left", {{1, true}, {2, true}, {9, false}, {3, true}}, 1},
                                      {"Right", {{5, true}, {6, true}}, 5}};
  std::optional<std::size_t> pointed = 0;
  std::vector<ManagedSpaceID> switched;
  std::vector<SwitchCause> causes;
  std::vector<std::string> added;
  std::vector<ManagedSpaceID> removed;
};

}  // namespace tallowin

#pragma once

#include "base/lifetime.h"
#include "platform/desktop.h"
#include "platform/main_queue.h"
#include "platform/window_server.h"

namespace tallowin {

/// The displays that a managed-display-spaces list describes. Of each display the list's "Display Identifier" (text)
/// and "Spaces" (list of dictionaries) are required; of each Space "ManagedSpaceID" (integer). "Current Space", "type",
/// "TileLayoutManager", "uuid" and "pid" are read where they are. What lacks something required is left out; nothing at
/// all when `list` is no list of dictionaries. When no display is called `menuBarDisplay`, the first one counts as the
/// menu-bar display.
[[nodiscard]] std::optional<std::vector<DesktopDisplay>> readDisplays(const PropertyList& list,
                                                                      const std::string& menuBarDisplay);

/// The Spaces as the window server tells and changes them.
class DrivenDesktop : public Desktop {
 public:
  DrivenDesktop(WindowServer& windowServer, MainQueue& mainQueue)
      : windowServer_(windowServer), mainQueue_(mainQueue) {}

  /// Makes two calls to the window server and one pass over its list.
  std::optional<DesktopReading> read() override;
  std::optional<ManagedSpaceID> activeSpace() override;
  CGSBridgeHealth health() override { return windowServer_.CGSBridgeProbe(); }
  bool observe(std::function<void(const DesktopSign&)> observer) override;
  std::optional<std::vector<ManagedSpaceID>> spacesOfWindow(WindowNumber window) override {
    return windowServer_.CGSBridgeCopySpacesForWindow(window);
  }
  bool moveWindow(WindowNumber window, ManagedSpaceID space) override {
    return windowServer_.CGSBridgeMoveWindowToSpace(window, space);
  }

 private:
  WindowServer& windowServer_;
  MainQueue& mainQueue_;
  std::function<void(const DesktopSign&)> observer_;
  Lifetime lifetime_;
};

}  // namespace tallowin

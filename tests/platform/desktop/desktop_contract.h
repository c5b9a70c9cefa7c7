#pragma once

#include <functional>
#include <gtest/gtest.h>
#include <memory>

#include "platform/desktop.h"

namespace tallowin {

/// A desktop for the tests of what every Desktop promises: one display with four desktops, the first one active, and
/// one window on each. Places count from 0.
class DesktopWorld {
 public:
  virtual ~DesktopWorld() = default;

  virtual Desktop& desktop() = 0;
  /// The same where it can be asked; else null.
  virtual AskedDesktop* asked() = 0;
  /// Lets everything happen that is under way, and everybody be told.
  virtual void settle() = 0;
  /// Somebody else switches.
  virtual void userSwitchesTo(std::size_t place) = 0;
  /// The window that was on this desktop at the start.
  virtual WindowNumber window(std::size_t place) = 0;
};

/// An implementation of Desktop. Each has a source file here that makes its worlds and instantiates the suites.
struct DesktopImplementation {
  const char* name;
  std::function<std::unique_ptr<DesktopWorld>()> make;
};

class DesktopContract : public testing::TestWithParam<DesktopImplementation> {
 protected:
  [[nodiscard]] DesktopDisplay display() {
    return world->desktop().read().value_or(DesktopReading{{{}}}).displays.front();
  }
  [[nodiscard]] std::vector<ManagedSpaceID> ids();
  /// Where a window is: nothing when nobody knows it.
  [[nodiscard]] std::vector<ManagedSpaceID> spacesOf(std::size_t place);

  std::unique_ptr<DesktopWorld> world = GetParam().make();
};

/// What beyond that every desktop promises that can be asked.
class AskedDesktopContract : public DesktopContract {
 protected:
  AskedDesktop& asked() { return *world->asked(); }
  /// Notes what comes of a request.
  AskedDesktop::Completion noted() {
    return [this](std::expected<void, DesktopRefusal> outcome) { outcomes.push_back(outcome); };
  }

  std::vector<std::expected<void, DesktopRefusal>> outcomes;
  const std::vector<std::expected<void, DesktopRefusal>> done = {{}};
};

}  // namespace tallowin

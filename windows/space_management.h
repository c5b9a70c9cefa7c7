#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

#include "base/desktop_texts.h"
#include "base/lifetime.h"
#include "platform/pinned.h"
#include "platform/platform.h"
#include "windows/driven/mission_control_driver.h"

namespace tallowin {

/// Adds and removes desktops: by asking the desktop for it, or through Mission Control. Main thread only.
class SpaceManagement : Pinned {
 public:
  /// Of a desktop that can be asked, `unavailable` says that it does not do that.
  using Failure = MissionControlDriver::Failure;
  using Result = MissionControlDriver::Result;
  /// Runs at most once, on the main thread, maybe inside the call. Success means that a desktop that can be asked has
  /// done it, and of others that the buttons were pressed.
  using Completion = MissionControlDriver::Completion;

  explicit SpaceManagement(const Platform& services);
  ~SpaceManagement();

  /// Adds a desktop to the first display.
  void addDesktop(Completion completion);

  /// Whether success is to be seen in a snapshot that is taken then.
  [[nodiscard]] bool showsAtOnce() const { return asked_ != nullptr; }

  /// Removes the desktop with this number (Space::desktopNumber).
  void removeDesktop(std::int64_t number, Completion completion);

 private:
  [[nodiscard]] AskedDesktop::Completion told(Completion completion) const;

  AskedDesktop* const asked_;                           ///< null where the desktop is driven
  const std::unique_ptr<MissionControlDriver> driver_;  ///< null where the desktop is asked
  Lifetime lifetime_;
};

/// What the user of such a desktop is told of a failure to add or to remove one.
[[nodiscard]] std::string_view additionFailure(SpaceManagement::Failure failure, const DesktopTexts& texts);
[[nodiscard]] std::string_view removalFailure(SpaceManagement::Failure failure, const DesktopTexts& texts);

}  // namespace tallowin

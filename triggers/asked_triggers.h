#pragma once

#include <functional>
#include <optional>
#include <string>

#include "base/lacks.h"
#include "base/preferences.h"
#include "base/settings.h"
#include "platform/clock.h"
#include "platform/log.h"
#include "platform/panel_activations.h"
#include "platform/pinned.h"
#include "triggers/triggers.h"

namespace tallowin {

/// What is noticed on desktops that are asked. A window that a panel or dock activates on another Space takes the user
/// there: while "dockClickProtection" is on, he is taken back. Main thread only.
class AskedTriggers : public Triggers, Pinned {
 public:
  /// A change of the Space sooner than this after a panel's request was caused by it.
  static constexpr std::chrono::nanoseconds pullTime = std::chrono::milliseconds(700);

  struct Services {
    Preferences& preferences;
    const Clock& clock;
    Log& log;
    PanelActivations* panelActivations;  ///< null where they cannot be noticed
  };

  explicit AskedTriggers(Services services)
      : services_(services), settings_(services.preferences), lacks_(services.log, "Triggers") {
    settings_.registerDefaults();
  }

  void setOverviewHandler(std::function<void()> /*pulled*/) override {}
  void refresh() override;
  void setBounceBack(std::function<void(const std::string& spaceID)> bounceBack) override {
    bounceBack_ = std::move(bounceBack);
  }
  void refreshDockGuard(const std::string& currentSpaceID) override;
  bool spaceChanged(const std::string& toSpaceID, bool isOurs) override;

 private:
  const Services services_;
  Settings settings_;
  Lacks lacks_;
  std::function<void(const std::string& spaceID)> bounceBack_;
  std::string current_;                          ///< the id of the Space that the user is in, or is taken back to
  std::optional<std::uint64_t> lastActivation_;  ///< as Clock::machAbsoluteTime()
  Subscription activations_;                     ///< while the setting is on
};

}  // namespace tallowin

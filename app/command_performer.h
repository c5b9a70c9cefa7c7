#pragma once

#include <functional>

#include "app/stepping.h"
#include "base/settings.h"
#include "commands/space_command.h"
#include "commands/space_switcher.h"
#include "core/space_history.h"
#include "core/space_store.h"
#include "core/space_watcher.h"
#include "platform/toasts.h"

namespace tallowin {

/// Carries out commands against the watcher's latest snapshot. Main thread only.
class CommandPerformer {
 public:
  struct Services {
    SpaceWatcher& watcher;
    SpaceStore& store;
    SpaceHistory& history;
    SpaceSwitcher& switcher;
    const Settings& settings;
    Toasts& toasts;
    const Clock& clock;
    /// Whether a Space has no windows.
    std::function<bool(const Space&)> isSpaceEmpty;
  };

  explicit CommandPerformer(Services services) : services_(std::move(services)) {}

  /// Does what the command asks for. Whatever the user must know is shown as a toast.
  void perform(const SpaceCommand& command);

  /// When this program last started a switch; nothing while it has not.
  [[nodiscard]] std::optional<Date> lastSwitch() const { return lastSwitch_; }

  /// One for each command that can be carried out; the others say that they are not available yet.
  void operator()(const command::SwitchTo& command);
  void operator()(const command::Step& command);
  void operator()(const command::Step2D& command);
  void operator()(const command::Back& command);
  void operator()(const command::Rename& command);
  void operator()(const command::Note& command);
  template <typename Other>
  void operator()(const Other& /*command*/) {
    notAvailable();
  }

 private:
  [[nodiscard]] const SpaceSnapshot& snapshot() { return services_.watcher.snapshot().get(); }
  [[nodiscard]] std::optional<Space> find(const SpaceRef& ref);
  void switchTo(const std::optional<Space>& space);
  void notAvailable();

  const Services services_;
  std::optional<Date> lastSwitch_;
};

}  // namespace tallowin

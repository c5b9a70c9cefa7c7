#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "base/lifetime.h"
#include "commands/cli/request_job.h"
#include "core/program_services.h"
#include "platform/global_hot_keys.h"
#include "platform/main_queue.h"
#include "platform/pinned.h"
#include "triggers/shortcuts.h"

namespace tallowin {

/// How a shortcut stands.
enum class ShortcutState {
  works,
  taken,                ///< another program has the combination
  doneByWindowManager,  ///< the window manager has it, and does the same
  missingKey,           ///< the keyboard has no such key
  notACombination       ///< it is written in a way that is not understood
};

/// The state as it is printed.
[[nodiscard]] std::string_view nameOf(ShortcutState state);

/// Takes the keys that the settings ask for, and says what is done when one is pressed. Main thread only.
class ShortcutManager : Pinned {
 public:
  /// A shortcut and how it stands.
  struct Row {
    Shortcut shortcut;
    ShortcutState state;
  };

  /// `hasOverview`: there is an overview to open.
  ShortcutManager(const ProgramServices& services, bool hasOverview) : services_(services), hasOverview_(hasOverview) {}

  /// Told the action of every shortcut that is pressed.
  std::function<void(const std::string& action)> onPressed = [](const std::string& /*action*/) {};

  /// Follows the settings. To be called at the start and when they have changed. What another program has taken is
  /// said soon after, once for each shortcut, but for what the window manager does itself; if that is the overview's
  /// default, another one is offered.
  void refresh();

  /// All shortcuts in their order. Those that another program had are tried again first.
  [[nodiscard]] std::vector<Row> rows();

  /// The names of those that do not work, as another program has them.
  [[nodiscard]] std::vector<std::string> failures();

 private:
  struct Registered {
    Shortcut shortcut;
    std::unique_ptr<HotKey> hotKey;  ///< nothing for a text that is no key combination
  };

  void tellOfTaken();
  void offerAnother();

  const ProgramServices& services_;
  const bool hasOverview_;
  std::vector<Registered> registered_;
  WorkItem telling_;
  const Lifetime lifetime_;
};

/// Answers what is asked about shortcuts.
void addShortcutRequests(RequestTable& table, ShortcutManager& shortcuts);

}  // namespace tallowin

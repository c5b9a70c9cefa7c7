#pragma once

#include <optional>
#include <string>
#include <vector>

#include "automation/record_services.h"
#include "base/subscriptions.h"
#include "core/program_services.h"
#include "core/space_changes.h"
#include "platform/pinned.h"
#include "presentation/presentation.h"
#include "windows/window_services.h"

namespace tallowin {

/// A Space as the user knows it.
[[nodiscard]] SpaceRow spaceRow(const Space& space, const SpaceSnapshot& snapshot, const SpaceStore& store);

/// All of them, displays in order.
[[nodiscard]] std::vector<SpaceRow> spaceRows(const SpaceSnapshot& snapshot, const SpaceStore& store);

/// The pop-up for a Space that has become active; nothing while the setting "hudEnabled" is off.
[[nodiscard]] std::optional<HUD> hudFor(const Space& space, const ProgramServices& services);

/// The menu of the status item as it is now.
[[nodiscard]] Menu menuNow(const ProgramServices& services, const SpaceHistory& history, WindowServices& windows,
                           RecordServices& records);

/// A menu for reading, one line to an entry, those of submenus indented, with what each asks for.
[[nodiscard]] std::string menuText(const Menu& menu);

/// Shows the status item, and shows it anew whenever it has become another one. Main thread only.
class StatusItemUpdates : Pinned {
 public:
  StatusItemUpdates(const ProgramServices& services, SpaceChanges& changes);

  /// Shows it for the first time; to be called too when settings have changed.
  void refresh();

 private:
  const ProgramServices& services_;
  std::optional<StatusItem> shown_;
  Subscription changes_;
};

}  // namespace tallowin

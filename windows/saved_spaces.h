#pragma once

#include <expected>
#include <optional>
#include <string_view>
#include <vector>

#include "base/app_paths.h"
#include "base/record_file.h"
#include "base/uuid.h"
#include "commands/outcome.h"
#include "core/space_store.h"
#include "platform/clock.h"
#include "platform/log.h"
#include "platform/toasts.h"
#include "platform/workspace.h"
#include "windows/browser_tabs_reader.h"
#include "windows/saved_space.h"
#include "windows/space_contents.h"

namespace tallowin {

/// Saves what is open on a Space and closes its windows, and opens it again later. Records are kept in
/// "saved-spaces.json" in the support folder. Main thread only.
class SavedSpaces {
 public:
  enum class Failure {
    noWindows,  ///< there is nothing to save
    notSaved,   ///< the record could not be written, and is not tried again; logged
  };

  struct Services {
    const SpaceStore& store;
    const SpaceContents& contents;
    Windows& windows;
    Workspace& workspace;
    Storage& storage;
    const AppPaths& paths;
    const Clock& clock;
    Log& log;
  };

  SavedSpaces(Services services, BrowserTabsReader browserTabs, RandomBits random);

  /// Adds a record of what is open on the Space.
  [[nodiscard]] std::expected<SavedSpace, Failure> save(const Space& space);

  /// Presses the close buttons of the Space's windows, as they were read last, without waiting for their applications,
  /// which may ask their users.
  void closeWindows(const Space& space) const;

  /// Opens the applications and tabs of a saved Space, where the user is now; applications that run are asked for
  /// another window. Its record stays. Browsers whose tabs are opened are not opened themselves; applications that are
  /// not installed are passed over.
  void restore(const SavedSpace& space);

  /// Every record, oldest first. Empty when the file cannot be understood.
  [[nodiscard]] std::vector<SavedSpace> list();

  /// The latest record with this name, ignoring case.
  [[nodiscard]] std::optional<SavedSpace> named(std::string_view name);

 private:
  [[nodiscard]] SavedSpace record(const Space& space, const std::vector<WindowInfo>& windows) const;
  void addTabs(SavedSpace& space) const;
  [[nodiscard]] PropertyList records();
  [[nodiscard]] bool append(const SavedSpace& space);
  [[nodiscard]] bool opensByTabs(const SavedSpace& space, const std::string& bundleID) const;

  const Services services_;
  const BrowserTabsReader browserTabs_;
  const RandomBits random_;
  RecordFile file_;
};

/// The user's commands about saved Spaces, with what the user is told of them. Main thread only.
class SavedSpaceCommands {
 public:
  SavedSpaceCommands(SavedSpaces& savedSpaces, Toasts& toasts) : savedSpaces_(savedSpaces), toasts_(toasts) {}

  /// Saves the Space, tells the user, and closes its windows. What could not be saved is not closed.
  Outcome saveAndClose(const Space& space);
  void reopen(const SavedSpace& space);

 private:
  SavedSpaces& savedSpaces_;
  Toasts& toasts_;
};

}  // namespace tallowin

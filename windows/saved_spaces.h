#pragma once

#include <expected>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "commands/outcome.h"
#include "core/program_services.h"
#include "platform/geometry.h"
#include "platform/property_list.h"
#include "windows/space_contents.h"

namespace tallowin {

/// What was open on a Space that was saved and then closed. Its JSON keys are its members' names.
struct SavedSpace {
  std::string id;                                     ///< a UUID as text
  std::string name;                                   ///< what the Space was called
  Date savedAt;                                       ///< kept to the second
  std::vector<std::string> apps;                      ///< bundle identifiers, each once
  std::vector<std::string> urls;                      ///< the tabs of those applications that are browsers
  std::map<std::string, std::vector<CGRect>> frames;  ///< of the windows, by bundle identifier; origin top left
  /// Browsers among `apps` of which no tabs could be had, so that nothing in `urls` stands for them. Written only when
  /// there are any.
  std::vector<std::string> browsersWithoutTabs;
  bool operator==(const SavedSpace&) const = default;
};

[[nodiscard]] PropertyList toJson(const SavedSpace& space);

/// Nothing when a member has the wrong type, or the id, name or date is missing; other missing members read as empty.
[[nodiscard]] std::optional<SavedSpace> savedSpaceFromJson(const PropertyList& json);

/// Asks browsers for the tabs that they have open. Main thread only.
class BrowserTabs {
 public:
  BrowserTabs(Workspace& workspace, AppleScript& appleScript) : workspace_(workspace), appleScript_(appleScript) {}

  /// Whether the tabs of the application with this bundle identifier can be read. Asks no application.
  [[nodiscard]] static bool isBrowser(std::string_view bundleIdentifier);

  /// The URLs of the tabs of the browser's front window, in their order; none when it is no such browser, does not run
  /// or does not answer.
  [[nodiscard]] std::vector<std::string> urls(std::string_view bundleIdentifier) const;

 private:
  Workspace& workspace_;
  AppleScript& appleScript_;
};

/// Saves what is open on a Space and closes its windows, and opens it again later. Records are kept in
/// "saved-spaces.json" in the support folder. Main thread only.
class SavedSpaces {
 public:
  enum class Failure {
    noWindows,  ///< there is nothing to save
    notSaved,   ///< the record could not be written, and is not tried again; logged
  };

  SavedSpaces(const ProgramServices& services, const SpaceContents& contents);

  /// Adds a record of what is open on the Space.
  [[nodiscard]] std::expected<SavedSpace, Failure> save(const Space& space);

  /// The user's command, of which the user is told: saves the Space and closes its windows. What could not be saved is
  /// not closed.
  Outcome saveAndClose(const Space& space);

  /// The same: opens a saved Space again.
  void reopen(const SavedSpace& space);

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

  const ProgramServices& services_;
  const SpaceContents& contents_;
  const BrowserTabs browserTabs_;
  RecordFile file_;
};

}  // namespace tallowin

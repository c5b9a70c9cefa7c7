#pragma once

#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "base/broadcaster.h"
#include "base/record_file.h"
#include "base/replaced_file_watch.h"

namespace tallowin {

/// Looks up a preference of the whole system.
using GlobalPreferences = std::function<std::optional<PropertyList>(std::string_view key)>;

/// The system's preference that says whether content follows the fingers.
inline constexpr auto scrollingDirectionPreference = "com.apple.swipescrolldirection";

/// What that preference means: natural scrolling, unless it is zero or false. Systems store it as a boolean or as an
/// integer.
[[nodiscard]] bool isNaturalScrolling(const std::optional<PropertyList>& preference);

/// The user's preferences for this program (NSUserDefaults standardUserDefaults), in one JSON file that people may edit
/// by hand: an object with one member for each key, sorted. An edit
/// takes effect in the next turn of the main queue, and observers are told of it. A file that is not such an object is
/// reported in the log while the values read before stay in force; the next write keeps it aside under a time-stamped
/// name. A file that cannot be read at all is never replaced. Processes that write at the same time take turns. What
/// cannot be written is in force all the same, and is put into the file, as that stands then, when it can be.
class Preferences {
 public:
  /// `file` and its folder need not exist; both are made when something is set.
  Preferences(Storage& storage, Files& files, MainQueue& mainQueue, std::filesystem::path file,
              GlobalPreferences global);

  Preferences(const Preferences&) = delete;
  Preferences& operator=(const Preferences&) = delete;

  /// What the user set for `key`, whatever its type; nothing when the user has not. Registered defaults are not
  /// consulted: base/settings.h does that.
  [[nodiscard]] std::optional<PropertyList> objectForKey(std::string_view key);

  /// Stores a value for the user. False when it could not be written yet.
  bool setObject(std::string_view key, PropertyList value);
  /// The same for several at once.
  bool setObjects(const std::map<std::string, PropertyList>& values);
  /// Forgets what the user set. False when that could not be written yet.
  bool removeObject(std::string_view key);

  /// Why the user's values cannot be read now; nothing while they can.
  [[nodiscard]] std::optional<std::string> fault();

  /// Everything that the user has set and that is stored.
  [[nodiscard]] std::map<std::string, PropertyList> persistentDomain();

  /// Takes over what other programs have written, and tells the observers of changes, before it returns
  /// (-[NSUserDefaults synchronize]).
  void synchronize();

  /// Calls `observer` on the main thread after every change, by whomever (NSUserDefaultsDidChangeNotification).
  Subscription observe(std::function<void()> observer);

  /// A preference that belongs to the whole system, for any application, the current user and any host
  /// (CFPreferencesCopyValue). Nothing when it is not set.
  [[nodiscard]] std::optional<PropertyList> CFPreferencesCopyValue(std::string_view key) const { return global_(key); }

 private:
  using Values = std::map<std::string, PropertyList, std::less<>>;
  using Edits = std::map<std::string, std::optional<PropertyList>, std::less<>>;  ///< without a value: removed

  void lookOncePerTurn();
  void readIfChanged();
  void read();
  bool change(Edits edits);
  [[nodiscard]] RecordFile::Text textToWrite();
  [[nodiscard]] Values current() const;
  void tellIfChanged();

  Files& files_;
  MainQueue& mainQueue_;
  const std::filesystem::path path_;
  const GlobalPreferences global_;
  RecordFile file_;

  Values values_;                   ///< those in the file
  Edits unsaved_;                   ///< what is to come into it
  Values told_;                     ///< what the observers know; whoever reads a value may have seen a newer one first
  std::optional<FileStamp> stamp_;  ///< of the content that was last looked at
  /// Whether the file was looked at in this turn of the main queue. Owned here and by the end of that turn.
  std::shared_ptr<bool> looked_ = std::make_shared<bool>(false);
  Broadcaster<> changed_;
  std::unique_ptr<ReplacedFileWatch> watch_;  ///< from the first observer on
};

}  // namespace tallowin

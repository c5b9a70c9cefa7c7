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
#include "platform/preferences.h"

namespace tallowin {

/// Looks up a preference of the whole system.
using GlobalPreferences = std::function<std::optional<PropertyList>(std::string_view key)>;

/// Preferences in one JSON file that people may edit by hand: an object with one member for each key, sorted. An edit
/// takes effect in the next turn of the main queue, and observers are told of it. A file that is not such an object is
/// reported in the log while the values read before stay in force; the next write keeps it aside under a time-stamped
/// name. A file that cannot be read at all is never replaced. Processes that write at the same time take turns. What
/// cannot be written is in force all the same, and is put into the file, as that stands then, when it can be.
class FilePreferences : public Preferences {
 public:
  /// `file` and its folder need not exist; both are made when something is set.
  FilePreferences(Storage& storage, Files& files, MainQueue& mainQueue, std::filesystem::path file,
                  GlobalPreferences global);

  std::optional<PropertyList> objectForKey(std::string_view key) override;
  bool setObject(std::string_view key, PropertyList value) override;
  bool setObjects(const std::map<std::string, PropertyList>& values) override;
  bool removeObject(std::string_view key) override;
  std::optional<std::string> fault() override;
  std::map<std::string, PropertyList> persistentDomain() override;
  void synchronize() override;
  Subscription observe(std::function<void()> observer) override;
  std::optional<PropertyList> CFPreferencesCopyValue(std::string_view key) override;

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

#pragma once

#include <filesystem>
#include <functional>
#include <map>
#include <optional>
#include <string>

#include "base/broadcaster.h"
#include "platform/clock.h"
#include "platform/files.h"
#include "platform/log.h"
#include "platform/preferences.h"

namespace tallowin {

/// Looks up a preference of the whole system.
using GlobalPreferences = std::function<std::optional<PropertyList>(std::string_view key)>;

/// Preferences in one JSON file that people may edit by hand: an object with one member for each key, sorted. An edit
/// takes effect at the next read. A file that is not such an object is kept aside under a time-stamped name and
/// reported in the log; the values read before stay in force. A file that cannot be read at all is never replaced.
class FilePreferences : public Preferences {
 public:
  /// `file` and its folder need not exist; both are made when something is set.
  FilePreferences(Files& files, const Clock& clock, Log& log, std::filesystem::path file, GlobalPreferences global);

  std::optional<PropertyList> objectForKey(std::string_view key) override;
  bool setObject(std::string_view key, PropertyList value) override;
  bool removeObject(std::string_view key) override;
  std::map<std::string, PropertyList> persistentDomain() override;
  Subscription observe(std::function<void()> observer) override;
  std::optional<PropertyList> CFPreferencesCopyValue(std::string_view key) override;

 private:
  using Values = std::map<std::string, PropertyList, std::less<>>;

  void readIfChanged();
  void read();
  void reportUnreadable(const std::string& why);
  bool write(Values values);

  Files& files_;
  const Clock& clock_;
  Log& log_;
  const std::filesystem::path file_;
  const GlobalPreferences global_;

  Values values_;
  std::optional<FileStamp> stamp_;  ///< of the content that values_ holds
  bool replaceable_ = true;         ///< what stands in the file is known or kept aside, or there is no file
  Broadcaster<> changed_;
};

}  // namespace tallowin

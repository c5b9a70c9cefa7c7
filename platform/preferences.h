#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "platform/property_list.h"
#include "platform/subscription.h"

namespace tallowin {

/// The user's preferences for this program (NSUserDefaults standardUserDefaults). Main thread only.
class Preferences {
 public:
  virtual ~Preferences() = default;

  /// What the user set for `key`, whatever its type; nothing when the user has not. Registered defaults are not
  /// consulted: base/settings.h does that.
  virtual std::optional<PropertyList> objectForKey(std::string_view key) = 0;

  /// Stores a value for the user. False when it could not be written yet; it is in force all the same, and written when
  /// that is possible.
  virtual bool setObject(std::string_view key, PropertyList value) = 0;

  /// The same for several at once.
  virtual bool setObjects(const std::map<std::string, PropertyList>& values) = 0;

  /// Forgets what the user set. False when that could not be written yet.
  virtual bool removeObject(std::string_view key) = 0;

  /// Why the user's values cannot be read now; nothing while they can. The values read before stay in force, and
  /// writing keeps what cannot be understood aside.
  [[nodiscard]] virtual std::optional<std::string> fault() = 0;

  /// Everything that the user has set and that is stored.
  virtual std::map<std::string, PropertyList> persistentDomain() = 0;

  /// Takes over what other programs have written, and tells the observers of changes, before it returns
  /// (-[NSUserDefaults synchronize]).
  virtual void synchronize() = 0;

  /// Calls `observer` on the main thread after every change, by whomever (NSUserDefaultsDidChangeNotification).
  virtual Subscription observe(std::function<void()> observer) = 0;

  /// A preference that belongs to the whole system, for any application, the current user and any host
  /// (CFPreferencesCopyValue), such as "com.apple.swipescrolldirection". Nothing when it is not set.
  virtual std::optional<PropertyList> CFPreferencesCopyValue(std::string_view key) = 0;
};

}  // namespace tallowin

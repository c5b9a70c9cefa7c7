#pragma once

#include <compare>
#include <cstdint>
#include <string>

#include "platform/identifiers.h"
#include "platform/property_list.h"

namespace tallowin {

/// NSOperatingSystemVersion.
struct OperatingSystemVersion {
  int major = 0;
  int minor = 0;
  int patch = 0;
  auto operator<=>(const OperatingSystemVersion&) const = default;
};

/// This process and the login it belongs to (NSProcessInfo, CGSession). Main thread only, except randomBits(), which
/// any thread may call.
class System {
 public:
  virtual ~System() = default;

  virtual OperatingSystemVersion operatingSystemVersion() = 0;
  /// "macOS", or what the system of the machine is called.
  virtual std::string operatingSystemName() = 0;
  /// As the system words it, for reports.
  virtual std::string operatingSystemVersionString() = 0;
  virtual ProcessID processIdentifier() = 0;
  /// 64 random bits that nobody can foretell; in a simulation the same ones in every run.
  virtual std::uint64_t randomBits() = 0;

  /// Ends the process at once; nothing is flushed or tidied up. On the simulated system the work that is running is
  /// finished first.
  virtual void terminate(int status) = 0;

  /// The login's dictionary (CGSessionCopyCurrentDictionary); "CGSSessionScreenIsLocked" is true in it while the screen
  /// is locked. An empty dictionary when the system does not tell.
  virtual PropertyList CGSessionCopyCurrentDictionary() = 0;
};

}  // namespace tallowin

#pragma once

#include "platform/system.h"

namespace tallowin {

/// This process on a Unix machine. The version is the kernel's; sessions do not tell whether their screen is locked.
class UnixSystem : public System {
 public:
  OperatingSystemVersion operatingSystemVersion() override;
  std::string operatingSystemVersionString() override;
  ProcessID processIdentifier() override;
  PropertyList CGSessionCopyCurrentDictionary() override;
};

}  // namespace tallowin

#pragma once

#include "platform/system.h"

namespace tallowin {

/// This process on a Unix machine. The version is the kernel's; whether the screen is locked is not known.
class UnixSystem : public System {
 public:
  OperatingSystemVersion operatingSystemVersion() override;
  std::string operatingSystemName() override;
  std::string operatingSystemVersionString() override;
  ProcessID processIdentifier() override;
  std::uint64_t randomBits() override;
  void terminate(int status) override;
  PropertyList CGSessionCopyCurrentDictionary() override;
};

}  // namespace tallowin

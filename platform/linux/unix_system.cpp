#include "platform/linux/unix_system.h"

#include <cstdio>
#include <sys/random.h>
#include <sys/utsname.h>
#include <unistd.h>

namespace tallowin {

namespace {

utsname kernel() {
  utsname names{};
  ::uname(&names);
  return names;
}

}  // namespace

OperatingSystemVersion UnixSystem::operatingSystemVersion() {
  OperatingSystemVersion version;
  std::sscanf(kernel().release, "%d.%d.%d", &version.major, &version.minor, &version.patch);
  return version;
}

std::string UnixSystem::operatingSystemName() {
  return kernel().sysname;
}

std::string UnixSystem::operatingSystemVersionString() {
  return kernel().release;
}

std::uint64_t UnixSystem::randomBits() {
  std::uint64_t bits = 0;
  while (::getrandom(&bits, sizeof bits, 0) != sizeof bits) {
  }
  return bits;
}

ProcessID UnixSystem::processIdentifier() {
  return ::getpid();
}

void UnixSystem::terminate(int status) {
  ::_exit(status);
}

PropertyList UnixSystem::CGSessionCopyCurrentDictionary() {
  return PropertyList::object();
}

}  // namespace tallowin

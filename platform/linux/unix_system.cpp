#include "platform/linux/unix_system.h"

#include <cstdio>
#include <fstream>
#include <sys/random.h>
#include <sys/utsname.h>
#include <unistd.h>

namespace tallowin {

namespace {

/// The name of the distribution for people, os-release(5).
std::string distribution() {
  constexpr std::string_view key = "PRETTY_NAME=";
  std::ifstream file("/etc/os-release");
  for (std::string line; std::getline(file, line);) {
    if (line.starts_with(key)) {
      line.erase(0, key.size());
      std::erase(line, '"');
      return line;
    }
  }
  return "Unix";
}

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
  const auto names = kernel();
  return distribution() + ", " + names.sysname + " " + names.release;
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

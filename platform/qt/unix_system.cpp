#include "platform/qt/unix_system.h"

#include <QRandomGenerator>
#include <QSysInfo>
#include <QVersionNumber>
#include <sys/utsname.h>
#include <unistd.h>

namespace tallowin {

OperatingSystemVersion UnixSystem::operatingSystemVersion() {
  const auto version = QVersionNumber::fromString(QSysInfo::kernelVersion());
  return {version.majorVersion(), version.minorVersion(), version.microVersion()};
}

std::string UnixSystem::operatingSystemName() {
  utsname names{};
  return ::uname(&names) == 0 ? names.sysname : "Unix";
}

std::string UnixSystem::operatingSystemVersionString() {
  return (QSysInfo::prettyProductName() + ", " + QSysInfo::kernelType() + " " + QSysInfo::kernelVersion())
      .toStdString();
}

std::uint64_t UnixSystem::randomBits() {
  return QRandomGenerator::system()->generate64();
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

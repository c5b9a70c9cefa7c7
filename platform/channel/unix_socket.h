#pragma once

#include <cstring>
#include <string>
#include <sys/socket.h>
#include <sys/un.h>

namespace tallowin {

/// The address of a socket in the file system. Paths that are too long are cut off, which no file answers to.
inline sockaddr_un unixAddress(const std::string& path) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  std::memcpy(address.sun_path, path.data(), path.size() < sizeof address.sun_path ? path.size() : 0);
  return address;
}

}  // namespace tallowin

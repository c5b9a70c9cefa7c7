#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>

#include "tests/platform/child_process.h"

namespace tallowin {

/// A message bus with nothing on it, at an address of its own, which is the user's bus while this exists.
class MessageBus {
 public:
  MessageBus() {
    char folder[] = "/tmp/tallowin-bus-XXXXXX";
    folder_ = mkdtemp(folder) != nullptr ? folder : "";
    std::ofstream(folder_ / "config") << "<busconfig><type>session</type><listen>" << address()
                                      << "</listen><policy context=\"default\"><allow send_destination=\"*\"/>"
                                         "<allow receive_sender=\"*\"/><allow own=\"*\"/></policy></busconfig>";
    setenv("DBUS_SESSION_BUS_ADDRESS", address().c_str(), 1);
  }

  ~MessageBus() {
    stop();
    unsetenv("DBUS_SESSION_BUS_ADDRESS");
    std::filesystem::remove_all(folder_);
  }
  MessageBus(const MessageBus&) = delete;
  MessageBus& operator=(const MessageBus&) = delete;

  /// False when there is no dbus-daemon.
  bool start() {
    daemon_.emplace(std::vector<std::string>{"dbus-daemon", "--nofork", "--nopidfile",
                                             "--config-file=" + (folder_ / "config").string(),
                                             "--print-address=" + std::to_string(ChildProcess::lineDescriptor)});
    return !daemon_->readLine().empty();
  }

  void stop() { daemon_.reset(); }

  [[nodiscard]] std::filesystem::path socket() const { return folder_ / "socket"; }

 private:
  [[nodiscard]] std::string address() const { return "unix:path=" + socket().string(); }

  std::filesystem::path folder_;
  std::optional<ChildProcess> daemon_;
};

}  // namespace tallowin

#pragma once

#include <array>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <span>
#include <string>
#include <thread>
#include <unordered_map>
#include <vector>

#include "platform/descriptors.h"
#include "platform/log.h"
#include "platform/main_queue.h"
#include "platform/pinned.h"
#include "platform/ways_in.h"

namespace tallowin {

/// One client: one read, one answer, and the end. Never waits.
class TCPConnection {
 public:
  using Time = std::chrono::steady_clock::time_point;

  /// What it waits for.
  enum class Wait { toRead, toWrite, over };

  /// `responder` must live until the request has been read.
  TCPConnection(OwnedDescriptor socket, const TCPResponder& responder)
      : socket_(std::move(socket)), responder_(&responder) {}

  /// Does what can be done now. `scratch` is room for one read; its content means nothing afterwards.
  Wait advance(std::span<char> scratch);

  /// Whether nothing has come yet, so that the responder is still needed.
  [[nodiscard]] bool isUnread() const { return responder_ != nullptr; }
  /// Whether only the client's end is waited for.
  [[nodiscard]] bool isAnswered() const { return !isUnread() && sent_ == answer_.size(); }

  /// When it is given up. For whoever keeps the connection.
  Time deadline = Time::max();

 private:
  Wait write();
  Wait drain(std::span<char> scratch);

  OwnedDescriptor socket_;
  const TCPResponder* responder_;
  std::string answer_;
  std::size_t sent_ = 0;
};

/// How much clients may ask of the thread that serves them.
struct TCPLimits {
  std::size_t connections = 256;              ///< so many at a time; others wait in the system's queue
  Duration idle = std::chrono::seconds{5};    ///< for a client that sends nothing, or takes nothing
  Duration ending = std::chrono::seconds{1};  ///< for one that has its answer, to end its side
  Duration pause = std::chrono::seconds{1};   ///< without new clients, when the system has no descriptors left
};

/// One thread that accepts connections and serves them all, with epoll(7). Its functions are for one other thread.
class TCPService : Pinned {
 public:
  TCPService(Log& log, const TCPLimits& limits);
  /// Drops whoever is being served.
  ~TCPService();

  /// False when the system had no descriptors left for it; it must not be used then.
  [[nodiscard]] bool isReady() const { return epoll_ && wakeUp_; }

  using EntranceID = std::uint64_t;

  /// Serves the connections that come in by these listening sockets.
  EntranceID open(std::vector<OwnedDescriptor> sockets, TCPResponder responder);

  /// Closes them, and drops the connections from there that have not sent anything; others get their answers. When this
  /// returns the responder is not called any more.
  void close(EntranceID entrance);

 private:
  using Time = TCPConnection::Time;

  struct Entrance {
    std::vector<OwnedDescriptor> sockets;
    TCPResponder responder;
  };
  struct Client {
    TCPConnection connection;
    EntranceID entrance;
    std::uint32_t events;  ///< that epoll tells of
  };
  using Clients = std::unordered_map<int, Client>;

  void run();
  void onThread(std::function<void()> work);
  void runPosted();
  void handle(int descriptor);
  void acceptFrom(int socket);
  [[nodiscard]] bool makeRoom();
  void add(int socket, EntranceID entrance);
  void advance(Clients::iterator client);
  void watchFor(Clients::iterator client, TCPConnection::Wait wait);
  void lookAtAnswered(Time now);
  void dropOverdue(Time now);
  void setAccepting(bool accepting);
  void resumeAccepting(Time now);
  [[nodiscard]] int timeout(Time now) const;

  Log& log_;
  const TCPLimits limits_;
  const OwnedDescriptor epoll_;
  const OwnedDescriptor wakeUp_;

  // The service thread's.
  std::map<EntranceID, Entrance> entrances_;
  std::unordered_map<int, EntranceID> listening_;  ///< by socket
  Clients clients_;                                ///< by socket
  std::deque<std::pair<Time, int>> answered_;      ///< sockets that epoll does not watch, and when to look at them
  bool accepting_ = true;
  bool ending_ = false;
  Time acceptAgain_;                 ///< not before that time, after the system had no descriptors left
  Time nextDeadline_ = Time::max();  ///< no client is overdue before that
  std::array<char, largestTCPRequest> scratch_{};

  EntranceID lastEntrance_ = 0;  ///< the other thread's
  std::mutex mutex_;
  std::function<void()> posted_;  ///< work for the service thread that has not run yet; guarded by the mutex
  std::condition_variable hasRun_;
  std::thread thread_;  ///< last, since it uses the others from its start
};

/// Ports of this machine. All of them are served by one thread, which starts with the first.
class SocketTCPListeners : public TCPListeners {
 public:
  explicit SocketTCPListeners(Log& log, TCPLimits limits = {}) : log_(log), limits_(limits) {}

  std::expected<std::unique_ptr<TCPListener>, std::string> listen(std::uint16_t port, TCPResponder responder) override;

 private:
  Log& log_;
  const TCPLimits limits_;
  std::unique_ptr<TCPService> service_;
};

}  // namespace tallowin

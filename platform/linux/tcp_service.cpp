#include "platform/linux/tcp_service.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <pthread.h>
#include <sys/epoll.h>
#include <sys/eventfd.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <utility>

namespace tallowin {

namespace {

/// A failed call that may be made again when the socket is ready.
bool isNotReady() {
  return errno == EAGAIN || errno == EWOULDBLOCK || errno == EINTR;
}

constexpr auto tcpServiceCategory = "TCPService";

using SteadyClock = std::chrono::steady_clock;

/// Most clients end their side as soon as they have their answer: looking once, a little later, costs less than having
/// epoll tell.
constexpr auto untilClientsEnd = std::chrono::milliseconds(2);

void watch(int epoll, int operation, int descriptor, std::uint32_t events) {
  epoll_event event{};
  event.events = events;
  event.data.fd = descriptor;
  ::epoll_ctl(epoll, operation, descriptor, &event);
}

/// What a listening socket is watched for.
std::uint32_t newConnections(bool wanted) {
  return wanted ? std::uint32_t{EPOLLIN} : 0;
}

/// A thread that takes no signals, which are the main thread's.
std::thread startedWithoutSignals(std::function<void()> work) {
  sigset_t all;
  sigset_t before;
  sigfillset(&all);
  ::pthread_sigmask(SIG_SETMASK, &all, &before);
  std::thread thread(std::move(work));
  ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
  return thread;
}

}  // namespace

TCPConnection::Wait TCPConnection::advance(std::span<char> scratch) {
  if (isAnswered()) {
    return drain(scratch);
  }
  if (!isUnread()) {
    return write();
  }
  const auto count = ::recv(socket_.get(), scratch.data(), scratch.size(), 0);
  if (count <= 0) {
    return count < 0 && isNotReady() ? Wait::toRead : Wait::over;
  }
  const auto& responder = *std::exchange(responder_, nullptr);
  answer_ = responder(std::string(scratch.data(), static_cast<std::size_t>(count)));
  return write();
}

TCPConnection::Wait TCPConnection::write() {
  while (sent_ < answer_.size()) {
    // MSG_MORE lets the end of the connection travel with the end of the answer.
    const auto count = ::send(socket_.get(), answer_.data() + sent_, answer_.size() - sent_, MSG_NOSIGNAL | MSG_MORE);
    if (count < 0) {
      return isNotReady() ? Wait::toWrite : Wait::over;
    }
    sent_ += static_cast<std::size_t>(count);
  }
  // Closing with bytes unread, or about to come, would reset the connection and take the answer with it. So this side
  // ends first, and the other side's end is waited for.
  ::shutdown(socket_.get(), SHUT_WR);
  return Wait::toRead;
}

/// One read at a time, so that a client that sends without end holds nobody up.
TCPConnection::Wait TCPConnection::drain(std::span<char> scratch) {
  const auto count = ::recv(socket_.get(), scratch.data(), scratch.size(), 0);
  return count > 0 || (count < 0 && isNotReady()) ? Wait::toRead : Wait::over;
}

TCPService::TCPService(Log& log, const TCPLimits& limits)
    : log_(log),
      limits_(limits),
      epoll_(::epoll_create1(EPOLL_CLOEXEC)),
      wakeUp_(::eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC)) {
  if (isReady()) {
    watch(epoll_.get(), EPOLL_CTL_ADD, wakeUp_.get(), EPOLLIN);
    thread_ = startedWithoutSignals([this] { run(); });
  }
}

TCPService::~TCPService() {
  if (thread_.joinable()) {
    onThread([this] { ending_ = true; });
    thread_.join();
  }
}

TCPService::EntranceID TCPService::open(std::vector<OwnedDescriptor> sockets, TCPResponder responder) {
  const auto id = ++lastEntrance_;
  onThread([&] {
    for (const auto& socket : sockets) {
      listening_[socket.get()] = id;
      watch(epoll_.get(), EPOLL_CTL_ADD, socket.get(), newConnections(accepting_));
    }
    entrances_[id] = {std::move(sockets), std::move(responder)};
  });
  return id;
}

void TCPService::close(EntranceID entrance) {
  onThread([&] {
    std::erase_if(clients_, [&](const auto& entry) {
      return entry.second.entrance == entrance && entry.second.connection.isUnread();
    });
    std::erase_if(listening_, [&](const auto& entry) { return entry.second == entrance; });
    entrances_.erase(entrance);
  });
}

/// Runs the work on the service thread, and returns when it has run.
void TCPService::onThread(std::function<void()> work) {
  std::unique_lock lock(mutex_);
  posted_ = std::move(work);
  ::eventfd_write(wakeUp_.get(), 1);
  hasRun_.wait(lock, [this] { return posted_ == nullptr; });
}

void TCPService::runPosted() {
  eventfd_t count = 0;
  ::eventfd_read(wakeUp_.get(), &count);
  const std::lock_guard lock(mutex_);
  if (posted_ != nullptr) {
    posted_();
    posted_ = nullptr;
  }
  hasRun_.notify_one();
}

void TCPService::run() {
  constexpr int lowPriority = 5;
  ::pthread_setname_np(::pthread_self(), "tallowin.tcp");
  ::setpriority(PRIO_PROCESS, static_cast<id_t>(::gettid()), lowPriority);
  std::array<epoll_event, 64> events{};
  while (!ending_) {
    const int count =
        ::epoll_wait(epoll_.get(), events.data(), static_cast<int>(events.size()), timeout(SteadyClock::now()));
    for (int i = 0; i < count; ++i) {
      handle(events[static_cast<std::size_t>(i)].data.fd);
    }
    const auto now = SteadyClock::now();
    lookAtAnswered(now);
    dropOverdue(now);
    resumeAccepting(now);
  }
}

/// The descriptor may have been closed, and may be another connection by now: then there is just nothing to do yet.
void TCPService::handle(int descriptor) {
  if (descriptor == wakeUp_.get()) {
    runPosted();
  } else if (listening_.contains(descriptor)) {
    acceptFrom(descriptor);
  } else if (const auto client = clients_.find(descriptor); client != clients_.end()) {
    advance(client);
  }
}

/// One at a time: epoll tells of the next one in any case, and asking whether there is one costs as much.
void TCPService::acceptFrom(int socket) {
  if (!makeRoom()) {
    setAccepting(false);
    return;
  }
  const int accepted = ::accept4(socket, nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC);
  if (accepted >= 0) {
    add(accepted, listening_.at(socket));
  } else if (errno != EAGAIN && errno != EINTR && errno != ECONNABORTED) {
    // The socket would stay readable, and nothing could be done about it at once.
    log_.error(tcpServiceCategory, std::string("cannot accept a connection: ") + std::strerror(errno));
    acceptAgain_ = SteadyClock::now() + limits_.pause;
    nextDeadline_ = std::min(nextDeadline_, acceptAgain_);
    setAccepting(false);
  }
}

/// Whether there is room for another client. One that has its answer gives way: the first of them.
bool TCPService::makeRoom() {
  if (clients_.size() < limits_.connections) {
    return true;
  }
  auto first = clients_.end();
  for (auto client = clients_.begin(); client != clients_.end(); ++client) {
    const auto& connection = client->second.connection;
    if (connection.isAnswered() &&
        (first == clients_.end() || connection.deadline < first->second.connection.deadline)) {
      first = client;
    }
  }
  if (first != clients_.end()) {
    clients_.erase(first);
  }
  return clients_.size() < limits_.connections;
}

void TCPService::add(int socket, EntranceID entrance) {
  const auto& responder = entrances_.at(entrance).responder;
  const auto [client, added] =
      clients_.emplace(socket, Client{TCPConnection(OwnedDescriptor(socket), responder), entrance, 0});
  advance(client);
}

void TCPService::advance(Clients::iterator client) {
  auto& [connection, entrance, events] = client->second;
  const auto wait = connection.advance(scratch_);
  if (wait == TCPConnection::Wait::over) {
    clients_.erase(client);
    return;
  }
  const auto now = SteadyClock::now();
  // One that has its answer cannot go on for ever by sending more.
  connection.deadline =
      connection.isAnswered() ? std::min(connection.deadline, now + limits_.ending) : now + limits_.idle;
  nextDeadline_ = std::min(nextDeadline_, connection.deadline);
  if (events == 0 && connection.isAnswered()) {
    answered_.emplace_back(now + untilClientsEnd, client->first);
    nextDeadline_ = std::min(nextDeadline_, answered_.front().first);
  } else {
    watchFor(client, wait);
  }
}

void TCPService::watchFor(Clients::iterator client, TCPConnection::Wait wait) {
  auto& events = client->second.events;
  const std::uint32_t wanted = wait == TCPConnection::Wait::toRead ? EPOLLIN : EPOLLOUT;
  if (wanted != events) {
    watch(epoll_.get(), events == 0 ? EPOLL_CTL_ADD : EPOLL_CTL_MOD, client->first, wanted);
    events = wanted;
  }
}

/// Those that have not ended by now are watched. (A socket may have become another client's: that one is looked at a
/// little early.)
void TCPService::lookAtAnswered(Time now) {
  while (!answered_.empty() && answered_.front().first <= now) {
    const auto client = clients_.find(answered_.front().second);
    answered_.pop_front();
    if (client == clients_.end() || client->second.events != 0 || !client->second.connection.isAnswered()) {
      continue;
    }
    const auto wait = client->second.connection.advance(scratch_);
    if (wait == TCPConnection::Wait::over) {
      clients_.erase(client);
    } else {
      watchFor(client, wait);
    }
  }
}

void TCPService::dropOverdue(Time now) {
  if (now < nextDeadline_) {
    return;
  }
  std::erase_if(clients_, [now](const auto& entry) { return entry.second.connection.deadline <= now; });
  nextDeadline_ = acceptAgain_ > now ? acceptAgain_ : Time::max();
  nextDeadline_ = answered_.empty() ? nextDeadline_ : std::min(nextDeadline_, answered_.front().first);
  for (const auto& [socket, client] : clients_) {
    nextDeadline_ = std::min(nextDeadline_, client.connection.deadline);
  }
}

void TCPService::setAccepting(bool accepting) {
  accepting_ = accepting;
  for (const auto& [socket, entrance] : listening_) {
    watch(epoll_.get(), EPOLL_CTL_MOD, socket, newConnections(accepting));
  }
}

void TCPService::resumeAccepting(Time now) {
  if (!accepting_ && now >= acceptAgain_ && makeRoom()) {
    setAccepting(true);
  }
}

/// In milliseconds, for epoll_wait(2).
int TCPService::timeout(Time now) const {
  if (nextDeadline_ == Time::max()) {
    return -1;
  }
  const auto left = std::chrono::ceil<std::chrono::milliseconds>(nextDeadline_ - now).count();
  return static_cast<int>(std::max<std::chrono::milliseconds::rep>(left, 0));
}

}  // namespace tallowin

#include "platform/dbus/bus_link.h"

#include <algorithm>
#include <cstring>
#include <ctime>
#include <sys/epoll.h>
#include <unistd.h>
#include <utility>

namespace tallowin {

namespace {

constexpr std::uint64_t noTimeout = UINT64_MAX;

/// Now, on the clock of sd_bus_get_timeout(3).
std::chrono::microseconds monotonicTime() {
  timespec now{};
  clock_gettime(CLOCK_MONOTONIC, &now);
  return std::chrono::duration_cast<std::chrono::microseconds>(std::chrono::seconds(now.tv_sec) +
                                                               std::chrono::nanoseconds(now.tv_nsec));
}

}  // namespace

std::expected<std::unique_ptr<UserBus>, std::string> UserBus::open(MainQueue& queue, Descriptors& descriptors,
                                                                   std::function<void()> onLost) {
  sd_bus* bus = nullptr;
  const int status = sd_bus_open_user(&bus);
  if (status < 0) {
    return std::unexpected(std::strerror(-status));
  }
  std::unique_ptr<UserBus> opened(new UserBus(bus, epoll_create1(EPOLL_CLOEXEC), queue, std::move(onLost)));
  if (!opened->watchEvents(EPOLL_CTL_ADD) || !opened->awaitTimeout()) {
    return std::unexpected("the connection cannot be watched");
  }
  opened->watch_ = descriptors.watchReadable(opened->poll_.get(), [bus = opened.get()] { bus->turn(); });
  return opened;
}

UserBus::UserBus(sd_bus* bus, int poll, MainQueue& queue, std::function<void()> onLost)
    : bus_(bus), poll_(poll), queue_(queue), onLost_(std::move(onLost)) {}

UserBus::~UserBus() {
  watch_.cancel();
  sd_bus_close_unref(bus_);
}

void UserBus::serve() {
  if (!watchEvents(EPOLL_CTL_MOD) || !awaitTimeout()) {
    work_ = queue_.after(Duration::zero(), [this] { lose(); });
  }
}

bool UserBus::watchEvents(int operation) {
  const int wanted = sd_bus_get_events(bus_);
  epoll_event event{};
  event.events = static_cast<std::uint32_t>(std::max(wanted, 0));  // those of poll(2) have the same values
  return wanted >= 0 && epoll_ctl(poll_.get(), operation, sd_bus_get_fd(bus_), &event) == 0;
}

bool UserBus::awaitTimeout() {
  std::uint64_t due = noTimeout;
  if (sd_bus_get_timeout(bus_, &due) < 0) {
    return false;
  }
  work_.cancel();
  if (due != noTimeout) {
    const auto delay = std::chrono::microseconds(due) - monotonicTime();
    work_ = queue_.after(delay, [this] { turn(); });
  }
  return true;
}

void UserBus::turn() {
  int status = 0;
  do {
    status = sd_bus_process(bus_, nullptr);
  } while (status > 0);
  if (status < 0 || !watchEvents(EPOLL_CTL_MOD) || !awaitTimeout()) {
    lose();
  }
}

void UserBus::lose() {
  watch_.cancel();
  work_.cancel();
  if (const auto tell = std::exchange(onLost_, nullptr)) {
    tell();
  }
}

std::expected<void, std::string> BusLink::open() {
  if (bus_) {
    return {};
  }
  auto opened = UserBus::open(queue_, descriptors_, [this] { drop(); });
  if (!opened) {
    return std::unexpected(std::move(opened).error());
  }
  bus_ = *std::move(opened);
  opened_.tell();
  if (!bus_) {
    return std::unexpected("the connection does not work");
  }
  return {};
}

void BusLink::drop() {
  if (bus_) {
    bus_.reset();
    lost_.tell();
  }
}

}  // namespace tallowin

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

bool BusLink::watchEvents(int operation) {
  const int wanted = sd_bus_get_events(bus_.get());
  epoll_event event{};
  event.events = static_cast<std::uint32_t>(std::max(wanted, 0));  // those of poll(2) have the same values
  return wanted >= 0 && epoll_ctl(poll_.get(), operation, sd_bus_get_fd(bus_.get()), &event) == 0;
}

bool BusLink::awaitTimeout() {
  std::uint64_t due = noTimeout;
  if (sd_bus_get_timeout(bus_.get(), &due) < 0) {
    return false;
  }
  work_.cancel();
  if (due != noTimeout) {
    const auto delay = std::chrono::microseconds(due) - monotonicTime();
    work_ = queue_.after(delay, [this] { turn(); });
  }
  return true;
}

void BusLink::turn() {
  int status = 0;
  do {
    status = sd_bus_process(bus_.get(), nullptr);
  } while (status > 0);
  if (status < 0 || !watchEvents(EPOLL_CTL_MOD) || !awaitTimeout()) {
    drop();
  }
}

std::expected<void, std::string> BusLink::open() {
  if (bus_) {
    return {};
  }
  sd_bus* opened = nullptr;
  if (const int status = sd_bus_open_user(&opened); status < 0) {
    return std::unexpected(std::strerror(-status));
  }
  bus_.reset(opened);
  poll_ = OwnedDescriptor(epoll_create1(EPOLL_CLOEXEC));
  if (!watchEvents(EPOLL_CTL_ADD) || !awaitTimeout()) {
    work_.cancel();
    bus_.reset();
    return std::unexpected("the connection cannot be watched");
  }
  watch_ = descriptors_.watchReadable(poll_.get(), [this] { turn(); });
  opened_.tell();
  if (!bus_) {
    return std::unexpected("the connection does not work");
  }
  return {};
}

void BusLink::serve() {
  if (!watchEvents(EPOLL_CTL_MOD) || !awaitTimeout()) {
    work_ = queue_.after(Duration::zero(), [this] { drop(); });
  }
}

void BusLink::drop() {
  if (bus_) {
    watch_.cancel();
    work_.cancel();
    bus_.reset();
    lost_.tell();
  }
}

}  // namespace tallowin

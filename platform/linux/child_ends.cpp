#include "platform/linux/child_ends.h"

#include <atomic>
#include <cerrno>
#include <csignal>
#include <memory>
#include <sys/eventfd.h>
#include <unistd.h>

namespace tallowin {

namespace {

// A signal handler has no context, so where it writes to has to be global. Blocking the signal and reading it from a
// descriptor would not do: a thread in which it is not blocked would swallow it.
std::atomic<int> wakeUp = -1;
static_assert(std::atomic<int>::is_always_lock_free);

void childEnded(int /*signal*/) {
  const int before = errno;
  ::eventfd_write(wakeUp, 1);
  errno = before;
}

}  // namespace

Subscription onChildEnds(Descriptors& descriptors, std::function<void()> onEnd) {
  const int descriptor = ::eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC);
  if (descriptor < 0) {
    return {};
  }
  wakeUp = descriptor;
  struct sigaction action{};
  struct sigaction before{};
  action.sa_handler = childEnded;
  action.sa_flags = SA_RESTART | SA_NOCLDSTOP;
  ::sigaction(SIGCHLD, &action, &before);
  // Owned by the subscription alone; a function object has to be copyable.
  auto watch =
      std::make_shared<Subscription>(descriptors.watchReadable(descriptor, [descriptor, onEnd = std::move(onEnd)] {
        eventfd_t ignored = 0;
        ::eventfd_read(descriptor, &ignored);
        onEnd();
      }));
  return Subscription([descriptor, watch, before] {
    watch->cancel();
    ::sigaction(SIGCHLD, &before, nullptr);
    wakeUp = -1;
    ::close(descriptor);
  });
}

}  // namespace tallowin

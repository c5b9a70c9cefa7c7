#include "platform/linux/termination_signals.h"

#include <csignal>
#include <memory>
#include <sys/signalfd.h>
#include <unistd.h>

namespace tallowin {

namespace {

sigset_t terminationSignals() {
  sigset_t signals;
  sigemptyset(&signals);
  for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
    sigaddset(&signals, signal);
  }
  return signals;
}

}  // namespace

Subscription onTerminationSignal(Descriptors& descriptors, std::function<void(int signal)> onSignal) {
  const sigset_t signals = terminationSignals();
  const int descriptor = ::signalfd(-1, &signals, SFD_NONBLOCK | SFD_CLOEXEC);
  if (descriptor < 0) {
    return {};
  }
  ::pthread_sigmask(SIG_BLOCK, &signals, nullptr);
  // Owned by the subscription alone; a function object has to be copyable.
  auto watch = std::make_shared<Subscription>(
      descriptors.watchReadable(descriptor, [descriptor, onSignal = std::move(onSignal)] {
        signalfd_siginfo info{};
        if (::read(descriptor, &info, sizeof info) == sizeof info) {
          onSignal(static_cast<int>(info.ssi_signo));
        }
      }));
  return Subscription([descriptor, watch, signals] {
    watch->cancel();
    ::close(descriptor);
    ::pthread_sigmask(SIG_UNBLOCK, &signals, nullptr);
  });
}

}  // namespace tallowin

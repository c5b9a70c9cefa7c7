#include "platform/qt/qt_main_queue.h"

#include <QPointer>
#include <QTimer>
#include <limits>
#include <sys/eventfd.h>
#include <unistd.h>

namespace tallowin {

namespace {

/// Qt counts whole milliseconds; a delay is never cut short.
int milliseconds(Duration duration) {
  const auto count = std::chrono::ceil<std::chrono::milliseconds>(duration).count();
  return static_cast<int>(std::clamp<std::int64_t>(count, 0, std::numeric_limits<int>::max()));
}

WorkItem started(QTimer* timer, Duration interval) {
  timer->start(milliseconds(interval));
  return WorkItem([kept = QPointer<QTimer>(timer)] {
    if (kept) {
      kept->stop();
      kept->deleteLater();
    }
  });
}

}  // namespace

QtMainQueue::QtMainQueue()
    : wakeUp_(::eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC)), notifier_(wakeUp_, QSocketNotifier::Read) {
  QObject::connect(&notifier_, &QSocketNotifier::activated, &context_, [this] { runArrived(); });
}

QtMainQueue::~QtMainQueue() {
  notifier_.setEnabled(false);
  ::close(wakeUp_);
}

void QtMainQueue::async(std::function<void()> work) {
  const std::lock_guard lock(mutex_);
  arrived_.push_back(std::move(work));
  ::eventfd_write(wakeUp_, 1);
}

/// Runs what had arrived by now; what arrives meanwhile waits for its own turn of the event loop.
void QtMainQueue::runArrived() {
  eventfd_t count = 0;
  ::eventfd_read(wakeUp_, &count);
  for (; count > 0 && !stopped_; --count) {
    std::unique_lock lock(mutex_);
    const auto work = std::move(arrived_.front());
    arrived_.pop_front();
    lock.unlock();
    work();
  }
}

WorkItem QtMainQueue::after(Duration delay, std::function<void()> work) {
  auto* timer = new QTimer(&context_);
  timer->setSingleShot(true);
  timer->setTimerType(Qt::PreciseTimer);
  QObject::connect(timer, &QTimer::timeout, timer, [timer, work = std::move(work)] {
    timer->deleteLater();
    work();
  });
  return started(timer, delay);
}

WorkItem QtMainQueue::every(Duration interval, Duration tolerance, std::function<void()> work) {
  auto* timer = new QTimer(&context_);
  // A coarse timer may be up to 5 % late or early, a very coarse one up to a second.
  const bool coarse = tolerance * 20 >= interval;
  timer->setTimerType(coarse ? Qt::CoarseTimer : Qt::PreciseTimer);
  QObject::connect(timer, &QTimer::timeout, timer, std::move(work));
  return started(timer, interval);
}

int QtMainQueue::run() {
  if (!stopped_) {
    loop_.exec();
  }
  return stopped_.value_or(0);
}

void QtMainQueue::runFor(Duration duration) {
  if (stopped_) {
    return;
  }
  const auto end = after(duration, [this] { loop_.quit(); });
  loop_.exec();
}

void QtMainQueue::stop(int status) {
  stopped_ = status;
  loop_.quit();
}

}  // namespace tallowin

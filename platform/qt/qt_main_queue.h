#pragma once

#include <QEventLoop>
#include <QObject>
#include <QSocketNotifier>
#include <deque>
#include <mutex>
#include <optional>

#include "platform/main_queue.h"

namespace tallowin {

/// The main queue as Qt's event loop on the thread that makes it. A QCoreApplication must exist.
class QtMainQueue : public MainQueue, public RunLoop {
 public:
  QtMainQueue();
  QtMainQueue(const QtMainQueue&) = delete;
  QtMainQueue& operator=(const QtMainQueue&) = delete;
  ~QtMainQueue() override;

  void async(std::function<void()> work) override;
  WorkItem after(Duration delay, std::function<void()> work) override;
  WorkItem every(Duration interval, Duration tolerance, std::function<void()> work) override;

  int run() override;
  void runFor(Duration duration) override;
  void stop(int status) override;
  [[nodiscard]] std::optional<int> stopped() const override { return stopped_; }

 private:
  void runArrived();

  QObject context_;
  QEventLoop loop_;
  std::optional<int> stopped_;

  // Work from other threads: guarded by the mutex, and announced by a count that the event loop waits for (eventfd(2)).
  std::mutex mutex_;
  std::deque<std::function<void()>> arrived_;
  const int wakeUp_;
  QSocketNotifier notifier_;
};

}  // namespace tallowin

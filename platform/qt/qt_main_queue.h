#pragma once

#include <QEventLoop>
#include <QObject>
#include <optional>

#include "platform/main_queue.h"

namespace tallowin {

/// The main queue as Qt's event loop on the thread that makes it. A QCoreApplication must exist.
class QtMainQueue : public MainQueue, public RunLoop {
 public:
  void async(std::function<void()> work) override;
  WorkItem after(Duration delay, std::function<void()> work) override;
  WorkItem every(Duration interval, Duration tolerance, std::function<void()> work) override;

  int run() override;
  void runFor(Duration duration) override;
  void stop(int status) override;
  [[nodiscard]] std::optional<int> stopped() const override { return stopped_; }

 private:
  QObject context_;
  QEventLoop loop_;
  std::optional<int> stopped_;
};

}  // namespace tallowin

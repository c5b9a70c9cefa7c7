#include "platform/qt/qt_work_queues.h"

#include <QThread>
#include <QTimer>

namespace tallowin {

namespace {

class QtWorkQueue : public WorkQueue {
 public:
  explicit QtWorkQueue(const std::string& label) {
    thread_.setObjectName(QString::fromStdString(label));
    worker_.moveToThread(&thread_);
    thread_.start(QThread::LowPriority);
  }

  ~QtWorkQueue() override {
    thread_.quit();
    thread_.wait();
  }

  void after(Duration delay, std::function<void()> work) override {
    const auto due = std::chrono::steady_clock::now() + delay;
    QMetaObject::invokeMethod(&worker_, [this, due, work = std::move(work)] {
      const auto left = std::chrono::ceil<std::chrono::milliseconds>(due - std::chrono::steady_clock::now());
      QTimer::singleShot(std::max(left, std::chrono::milliseconds(0)), Qt::PreciseTimer, &worker_, work);
    });
  }

 private:
  QObject worker_;
  QThread thread_;
};

}  // namespace

std::unique_ptr<WorkQueue> QtWorkQueues::make(const std::string& label) {
  return std::make_unique<QtWorkQueue>(label);
}

}  // namespace tallowin

#include "presentation/link/ui_process.h"

#include <utility>

namespace tallowin {

namespace {

constexpr auto uiProcessCategory = "UiProcess";

}  // namespace

void UiProcess::start() {
  if (process_) {
    return;
  }
  restart_.cancel();
  starts_.push_back(services_.clock.machAbsoluteTime());
  if (starts_.size() > mostStarts) {
    starts_.pop_front();
  }
  auto started = services_.processes.start(services_.program, [this](const std::string& how) { ended(how); });
  if (started) {
    process_ = *std::move(started);
  } else {
    services_.log.error(uiProcessCategory, "no windows: " + services_.program.executable + ": " + started.error());
    services_.onFailed();
  }
}

void UiProcess::startSoon() {
  const auto now = services_.clock.machAbsoluteTime();
  if (starts_.size() == mostStarts && std::chrono::nanoseconds(now - starts_.front()) < startsCountFor) {
    services_.log.error(uiProcessCategory, "it has ended too often: not started again before a window is asked for");
    services_.onFailed();
    return;
  }
  restart_ = services_.mainQueue.after(restartDelay, [this] { start(); });
}

void UiProcess::kill() {
  if (process_) {
    process_->kill();
  }
}

void UiProcess::ended(const std::string& how) {
  process_.reset();
  if (!services_.isAttached()) {
    services_.log.error(uiProcessCategory, "the ui process has ended: " + how);
    startSoon();
  }
}

}  // namespace tallowin

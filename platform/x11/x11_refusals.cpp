#include "platform/x11/x11_refusals.h"

#include <thread>

namespace tallowin {

namespace {

constexpr Duration patience = std::chrono::milliseconds(100);
constexpr Duration patienceWithRefusers = std::chrono::milliseconds(10);

}  // namespace

bool waitUntil(const std::function<bool()>& happened, Duration limit) {
  const auto end = std::chrono::steady_clock::now() + limit;
  while (!happened()) {
    if (std::chrono::steady_clock::now() >= end) {
      return false;
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  return true;
}

bool X11Refusals::confirm(Request request, const std::function<bool()>& happened) {
  const bool done = waitUntil(happened, isRefused(request) ? patienceWithRefusers : patience);
  bool& worked = worked_[request];
  worked = worked || done;
  return done;
}

bool X11Refusals::isRefused(Request request) {
  noticeWindowManager();
  const auto found = worked_.find(request);
  return found != worked_.end() && !found->second;
}

void X11Refusals::noticeWindowManager() {
  const auto state = desktops_.read();
  // The number alone is no guide: one that is started after another is often given the ids of the one before.
  std::pair running(state.checkWindow, state.managerName);
  if (running != windowManager_) {
    windowManager_ = std::move(running);
    worked_.clear();
  }
}

}  // namespace tallowin

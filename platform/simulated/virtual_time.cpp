#include "platform/simulated/virtual_time.h"

#include <algorithm>

namespace tallowin {

Date SimulatedClock::now() const {
  return settings_.start + std::chrono::duration_cast<Date::duration>(elapsed() + wallOffset_);
}

std::uint64_t SimulatedClock::machAbsoluteTime() const {
  return static_cast<std::uint64_t>(systemUptime().count());
}

std::chrono::nanoseconds SimulatedClock::systemUptime() const {
  return settings_.uptime + elapsed();
}

void SimulatedClock::jumpWallClock(Duration by) {
  constexpr Duration most = std::chrono::years{60};
  const Duration jump = std::clamp(by, -most, most);
  wallOffset_ = std::clamp(wallOffset_ + jump, -most, most);
}

std::chrono::seconds SimulatedClock::localOffset(Date date) const {
  return settings_.timeZone.offsetAt(date);
}

CalendarDay SimulatedClock::localDay(Date date) const {
  return settings_.timeZone.localDay(date);
}

VirtualTime::VirtualTime(ClockSettings settings) : SimulatedClock(std::move(settings)), workQueues_(*this) {}

void VirtualTime::async(std::function<void()> work) {
  enter(elapsed_, std::make_shared<Work>(Work{std::move(work), std::nullopt, {}}));
}

WorkItem VirtualTime::after(Duration delay, std::function<void()> work) {
  return schedule(delay, std::move(work), std::nullopt);
}

WorkItem VirtualTime::every(Duration interval, Duration /*tolerance*/, std::function<void()> work) {
  const Duration period = std::max<Duration>(interval, std::chrono::milliseconds{1});
  return schedule(period, std::move(work), period);
}

WorkItem VirtualTime::schedule(Duration delay, std::function<void()> perform, std::optional<Duration> interval) {
  auto work = std::make_shared<Work>(Work{std::move(perform), interval, {}});
  enter(timeAfter(delay), work);
  return WorkItem([entry = std::weak_ptr(work), agenda = std::weak_ptr(agenda_)] {
    const auto cancelled = entry.lock();
    const auto entries = agenda.lock();
    if (cancelled != nullptr && entries != nullptr) {
      cancelled->wanted = false;
      entries->erase(cancelled->key);
    }
  });
}

void VirtualTime::enter(Duration due, const std::shared_ptr<Work>& work) {
  work->key = {due, asked_++};
  agenda_->emplace(work->key, work);
}

Duration VirtualTime::timeAfter(Duration delay) const {
  const Duration wait = std::max(delay, Duration::zero());
  return wait > Duration::max() - elapsed_ ? Duration::max() : elapsed_ + wait;
}

bool VirtualTime::runNextUntil(Duration limit) {
  if (agenda_->empty() || agenda_->begin()->first.first > limit) {
    return false;
  }
  const auto work = agenda_->begin()->second;
  agenda_->erase(agenda_->begin());
  elapsed_ = work->key.first;
  work->perform();
  if (work->interval && work->wanted) {
    enter(timeAfter(*work->interval), work);
  }
  return true;
}

int VirtualTime::run() {
  const Duration limit = end_.value_or(Duration::max());
  while (!stopped_ && runNextUntil(limit)) {
  }
  if (!stopped_ && end_) {
    elapsed_ = std::max(elapsed_, *end_);
  }
  return stopped_.value_or(0);
}

void VirtualTime::runFor(Duration duration) {
  const Duration limit = timeAfter(duration);
  while (!stopped_ && runNextUntil(limit)) {
  }
  if (!stopped_) {
    elapsed_ = limit;
  }
}

void VirtualTime::stop(int status) {
  stopped_ = status;
}

}  // namespace tallowin

#include "presentation/link/ui_link.h"

#include <utility>

namespace tallowin {

bool UiLink::attach(std::shared_ptr<Caller> caller, const std::string& ownVersion) {
  if (caller_) {
    return false;
  }
  caller_ = std::move(caller);
  caller_->whenGone(lifetime_.bound([this, gone = std::weak_ptr(caller_)] {
    if (gone.lock() == caller_) {
      drop();
    }
  }));
  send(ui::Hello{ownVersion});
  events_.onAttached();
  return true;
}

void UiLink::send(const ui::Message& message) {
  if (!caller_) {
    return;
  }
  unseen_.push_back({++lastNumber_, clock_.machAbsoluteTime()});
  caller_->out(ui::encode(lastNumber_, message));
  if (unseen_.size() == 1) {
    watchOldest();
  }
}

void UiLink::seen(std::uint64_t number) {
  const bool watched = !unseen_.empty();
  while (!unseen_.empty() && unseen_.front().number <= number) {
    unseen_.pop_front();
  }
  if (watched) {
    watchOldest();
  }
}

void UiLink::watchOldest() {
  watch_.cancel();
  if (unseen_.empty()) {
    return;
  }
  const auto waited = std::chrono::nanoseconds(clock_.machAbsoluteTime() - unseen_.front().sentAt);
  watch_ = queue_.after(patience - waited, [this] { events_.onSilent(); });
}

void UiLink::drop() {
  if (std::exchange(caller_, nullptr)) {
    unseen_.clear();
    watch_.cancel();
    events_.onGone();
  }
}

}  // namespace tallowin

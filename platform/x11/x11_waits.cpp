#include "platform/x11/x11_waits.h"

#include <utility>
#include <vector>

namespace tallowin {

void X11Waits::until(std::function<bool()> happened, Duration limit, std::function<void(bool)> then) {
  const int id = ++latest_;
  waits_[id] = {std::move(happened), std::move(then), queue_.after(limit, [this, id] { look(id, true); })};
}

void X11Waits::lookAgain() {
  std::vector<int> ids;
  for (const auto& [id, wait] : waits_) {
    ids.push_back(id);
  }
  for (const auto id : ids) {
    look(id, false);
  }
}

void X11Waits::look(int id, bool isLast) {
  const auto found = waits_.find(id);
  if (found == waits_.end()) {
    return;
  }
  const bool happened = found->second.happened();
  if (happened || isLast) {
    const auto node = waits_.extract(id);
    node.mapped().then(happened);
  }
}

}  // namespace tallowin

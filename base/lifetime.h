#pragma once

#include <memory>
#include <utility>

namespace tallowin {

/// Keeps work that may outlive its owner from touching it. A member of the owner; the work runs, and the owner goes, on
/// one thread, though the work may be carried there by others.
class Lifetime {
 public:
  Lifetime() = default;
  Lifetime(const Lifetime&) = delete;
  Lifetime& operator=(const Lifetime&) = delete;

  /// `work`, which does nothing any more once the owner has gone.
  template <typename Work>
  [[nodiscard]] auto bound(Work work) const {
    return [alive = std::weak_ptr(token_), work = std::move(work)]<typename... Arguments>(Arguments&&... arguments) {
      if (!alive.expired()) {
        work(std::forward<Arguments>(arguments)...);
      }
    };
  }

 private:
  std::shared_ptr<const bool> token_ = std::make_shared<const bool>(true);
};

}  // namespace tallowin

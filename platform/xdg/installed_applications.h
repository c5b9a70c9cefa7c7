#pragma once

#include <memory>
#include <mutex>

#include "platform/xdg/application_index.h"

namespace tallowin {

/// The installed applications as they are now: read when first asked for, and again when the folders have changed. Any
/// thread.
class InstalledApplications {
 public:
  explicit InstalledApplications(XdgEnvironment environment) : environment_(std::move(environment)) {}

  /// Looks at the folders' times, and reads the entries when one has changed. Owned by whoever still looks at it, and
  /// by this object until the next reading.
  [[nodiscard]] std::shared_ptr<const ApplicationIndex> current() {
    const std::lock_guard lock(mutex_);
    if (index_ == nullptr || !index_->isCurrent()) {
      index_ = std::make_shared<const ApplicationIndex>(ApplicationIndex::read(environment_));
    }
    return index_;
  }

  [[nodiscard]] const XdgEnvironment& environment() const { return environment_; }

 private:
  const XdgEnvironment environment_;
  std::mutex mutex_;
  std::shared_ptr<const ApplicationIndex> index_;  ///< guarded by mutex_
};

}  // namespace tallowin

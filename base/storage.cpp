#include "base/storage.h"

#include <algorithm>

#include "base/record_file.h"

namespace tallowin {

std::expected<void, FileError> Storage::saveNow() {
  std::expected<void, FileError> result;
  for (auto* const file : files_) {
    auto saved = file->isOwed() ? file->saveNow() : std::expected<void, FileError>();
    if (!saved && result) {
      result = std::move(saved);
    }
  }
  return result;
}

WorkQueue& Storage::queue() {
  if (!queue_) {
    queue_ = services_.workQueues.make("tallowin.files");
  }
  return *queue_;
}

bool Storage::isSound() const {
  return std::ranges::none_of(files_, [](const RecordFile* file) { return file->isFailing(); });
}

}  // namespace tallowin

#include "base/replaced_file_watch.h"

namespace tallowin {

namespace {

constexpr auto retryDelay = std::chrono::seconds(2);
/// The new file is in place by then.
constexpr auto replacementDelay = std::chrono::milliseconds(200);

}  // namespace

ReplacedFileWatch::ReplacedFileWatch(Files& files, MainQueue& mainQueue, std::filesystem::path file,
                                     std::function<void()> onChange)
    : files_(files), mainQueue_(mainQueue), file_(std::move(file)), onChange_(std::move(onChange)) {}

void ReplacedFileWatch::watch() {
  source_.cancel();
  auto source = files_.watch(file_, [this](const FileEvents& events) { changed(events); });
  if (source) {
    source_ = *std::move(source);
    if (onWatched) {
      onWatched();
    }
  } else {
    again_ = mainQueue_.after(retryDelay, [this] { watch(); });
  }
}

void ReplacedFileWatch::changed(const FileEvents& events) {
  if (events.deleted || events.renamed) {
    again_ = mainQueue_.after(replacementDelay, [this] { watch(); });
  }
  onChange_();
}

}  // namespace tallowin

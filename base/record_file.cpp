#include "base/record_file.h"

#include <algorithm>
#include <mutex>
#include <utility>

#include "base/date_text.h"
#include "base/json_text.h"

namespace tallowin {

namespace {

constexpr unsigned privateFile = 0600;
constexpr Duration firstRetry = std::chrono::seconds(1);
constexpr Duration longestRetry = std::chrono::seconds(30);

/// Any thread.
std::expected<void, FileError> writeWhole(Files& files, const std::filesystem::path& path, const std::string& text) {
  const auto made = files.createDirectory(path.parent_path(), privateFolder);
  return made ? files.writeAtomically(path, text, privateFile) : made;
}

}  // namespace

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
    queue_ = services_.workQueues->make("tallowin.files");
  }
  return *queue_;
}

bool Storage::isSound() const {
  return std::ranges::none_of(files_, [](const RecordFile* file) { return file->isFailing(); });
}

struct RecordFile::Writing {
  const std::uint64_t change;  ///< the number of the latest change that it writes
  std::mutex mutex = {};       ///< held while the file is written, and guards the others
  bool isWanted = true;
  std::optional<std::expected<void, FileError>> result = {};
};

RecordFile::RecordFile(Storage& storage, std::filesystem::path path, std::string_view category, SaveRule rule)
    : storage_(storage), path_(std::move(path)), category_(category), rule_(rule) {
  storage_.files_.push_back(this);
}

RecordFile::~RecordFile() {
  endWriting();
  std::erase(storage_.files_, this);
}

void RecordFile::log(Log::Level level, const std::string& message) const {
  services_.log.write(level, category_, message);
}

void RecordFile::takeOver(const std::filesystem::path& earlier) {
  if (earlier == path_ || services_.files.exists(path_) || !services_.files.exists(earlier)) {
    return;
  }
  if (const auto renamed = services_.files.rename(earlier, path_); !renamed) {
    log(Log::Level::error, "cannot rename " + earlier.string() + ": " + renamed.error().description);
  }
}

std::optional<std::string> RecordFile::readText() {
  if (unsavedText_) {
    return unsavedText_;
  }
  auto bytes = services_.files.read(path_);
  if (bytes) {
    return *std::move(bytes);
  }
  reading(bytes.error().notFound ? std::nullopt
                                 : std::optional("cannot read " + path_.string() + ": " + bytes.error().description),
          Standing::notReadable);
  return std::nullopt;
}

/// Takes note of how a reading went, and of what stands in the file if there is a fault.
void RecordFile::reading(std::optional<std::string> fault, Standing otherwise) {
  if (unsavedText_) {
    return;  // that was read, not the file
  }
  if (fault && fault != fault_) {
    log(Log::Level::error, *fault);
  }
  standing_ = fault ? otherwise : Standing::known;
  fault_ = std::move(fault);
}

PropertyList RecordFile::readList(const std::function<bool(const PropertyList&)>& isRecord) {
  const auto list = read([&isRecord](std::string_view text) {
    auto json = parseJSON(text);
    return json && !(json->is_array() && std::ranges::all_of(*json, isRecord))
               ? std::unexpected("a record has the wrong form")
               : std::move(json);
  });
  return list.value_or(PropertyList::array());
}

std::expected<void, FileError> RecordFile::makeReplaceable() {
  if (standing_ == Standing::notReadable) {
    return std::unexpected(FileError{false, "what stands in it cannot be read"});
  }
  if (standing_ == Standing::notUnderstood) {
    const auto aside = keepAside();
    if (!aside && !aside.error().notFound) {
      return std::unexpected(FileError{false, "what stands in it cannot be kept aside: " + aside.error().description});
    }
    if (aside) {
      log(Log::Level::error, "kept " + path_.string() + " as " + aside->filename().string());
    }
    standing_ = Standing::known;
    fault_.reset();
  }
  return {};
}

/// Renames the file to a free name beside it, such as "profiles.json.unreadable-20260301T090000Z".
std::expected<std::filesystem::path, FileError> RecordFile::keepAside() {
  const auto stamped = path_.string() + ".unreadable-" + fileNameDate(services_.clock.now());
  std::filesystem::path aside = stamped;
  for (int count = 2; services_.files.exists(aside); ++count) {
    aside = stamped + "-" + std::to_string(count);
  }
  if (auto renamed = services_.files.rename(path_, aside); !renamed) {
    return std::unexpected(renamed.error());
  }
  return aside;
}

void RecordFile::note(Content content) {
  ++changes_;
  content_ = std::move(content);
  unsavedText_.reset();
}

void RecordFile::changed(Content content) {
  note(std::move(content));
  if (rule_.limit && !latest_) {
    latest_ = services_.mainQueue.after(*rule_.limit, [this] { begin(); });
  }
  attempt_ = services_.mainQueue.after(rule_.delay, [this] { begin(); });
}

void RecordFile::replace(std::string text) {
  note([text] { return [text] { return text; }; });
  unsavedText_ = std::move(text);
  begin();
}

std::expected<void, FileError> RecordFile::write(Content content) {
  note(std::move(content));
  return saveNow();
}

std::expected<void, FileError> RecordFile::saveNow() {
  settleWriting();
  const auto text = take();
  if (!text) {
    return {};
  }
  auto written = makeReplaceable();
  if (written) {
    written = writeWhole(services_.files, path_, text());
  }
  return finished(changes_, std::move(written));
}

/// The attempt that was waited for. While one is under way its end begins the next.
void RecordFile::begin() {
  if (services_.workQueues == nullptr && unsavedText_) {
    static_cast<void>(saveNow());
    return;
  }
  if (services_.workQueues == nullptr) {
    latest_.cancel();
    attempt_ = services_.mainQueue.after(Duration::zero(), [this] { static_cast<void>(saveNow()); });
    return;
  }
  if (writing_) {
    attempt_.cancel();
    latest_.cancel();
    return;
  }
  auto text = take();
  if (!text) {
    return;
  }
  if (auto replaceable = makeReplaceable(); !replaceable) {
    static_cast<void>(finished(changes_, std::move(replaceable)));
    return;
  }
  writeInBackground(std::move(text));
}

/// The present content if it is unsaved. An attempt begins with it, in place of those that are waited for.
RecordFile::Text RecordFile::take() {
  attempt_.cancel();
  latest_.cancel();
  auto text = content_ ? content_() : nullptr;
  if (!text) {
    discardUnsaved();
  }
  return text;
}

void RecordFile::writeInBackground(Text text) {
  writing_ = std::make_shared<Writing>(changes_);
  auto told = lifetime_.bound([this, writing = writing_] {
    if (writing_ == writing) {
      settleWriting();
    }
  });
  storage_.queue().after(Duration::zero(), [&files = services_.files, &mainQueue = services_.mainQueue, path = path_,
                                            text = std::move(text), writing = writing_, told = std::move(told)] {
    const std::lock_guard lock(writing->mutex);
    if (writing->isWanted) {
      writing->result = writeWhole(files, path, text());
      mainQueue.async(told);
    }
  });
}

/// Waits for the write that is under way, and answers it; one that has not begun will not.
std::shared_ptr<RecordFile::Writing> RecordFile::endWriting() {
  if (writing_) {
    const std::lock_guard lock(writing_->mutex);
    writing_->isWanted = false;
  }
  return std::exchange(writing_, nullptr);
}

void RecordFile::settleWriting() {
  if (const auto writing = endWriting(); writing && writing->result) {
    static_cast<void>(finished(writing->change, *std::move(writing->result)));
  }
}

/// An attempt to write the content as it was after so many changes has ended. Answers how.
std::expected<void, FileError> RecordFile::finished(std::uint64_t change, std::expected<void, FileError> written) {
  const bool isLatest = change == changes_;
  if (!written) {
    if (!isFailing()) {
      log(Log::Level::error, "cannot write " + path_.string() + ": " + written.error().description);
    }
    retryDelay_ = std::clamp(2 * retryDelay_, firstRetry, longestRetry);
  } else if (std::exchange(retryDelay_, Duration::zero()) > Duration::zero()) {
    log(Log::Level::info, "wrote " + path_.string() + " after all");
  }
  if (written && isLatest) {
    discardUnsaved();
    if (onSaved) {
      onSaved();
    }
  } else if (!attempt_ && !latest_) {  // a later change may have an attempt of its own
    attempt_ = services_.mainQueue.after(retryDelay_, [this] { begin(); });
  }
  return written;
}

void RecordFile::discardUnsaved() {
  attempt_.cancel();
  latest_.cancel();
  content_ = nullptr;
  unsavedText_.reset();
  retryDelay_ = Duration::zero();
}

}  // namespace tallowin

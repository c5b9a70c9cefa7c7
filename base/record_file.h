#pragma once

#include <cstdint>
#include <expected>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "base/lifetime.h"
#include "platform/clock.h"
#include "platform/files.h"
#include "platform/log.h"
#include "platform/main_queue.h"
#include "platform/property_list.h"

namespace tallowin {

class RecordFile;

/// What the program's own files are written with, and which of them hold less than what was accepted. It must outlive
/// every RecordFile made with it. Main thread only.
class Storage {
 public:
  struct Services {
    Files& files;
    MainQueue& mainQueue;
    /// Null where waiting for the disk takes no time, as in a simulation: then the main thread writes, what was
    /// replaced at once, what was changed in the next turn of its queue.
    WorkQueues* workQueues;
    const Clock& clock;
    Log& log;
  };

  explicit Storage(Services services) : services_(services) {}
  Storage(const Storage&) = delete;
  Storage& operator=(const Storage&) = delete;

  /// Writes everything that was accepted and is not in its file yet before it returns. Every file gets one attempt; the
  /// error is that of the first that could not be written, which stays unsaved and is tried again later. Files whose
  /// content is not owed to anybody (SaveRule::isOwed) are left to their own time.
  [[nodiscard]] std::expected<void, FileError> saveNow();

  /// Whether the last attempt to write succeeded for every file. A change that waits for its first attempt counts as no
  /// failure.
  [[nodiscard]] bool isSound() const;

 private:
  friend class RecordFile;

  /// The one queue that changes of all files are written on, made for the first.
  [[nodiscard]] WorkQueue& queue();

  const Services services_;
  std::vector<RecordFile*> files_;  ///< in the order in which they were made
  std::unique_ptr<WorkQueue> queue_;
};

/// When changes of a file are written.
struct SaveRule {
  /// From the last of a run of changes to the write.
  Duration delay = Duration::zero();
  /// From the first of them, however many follow; nothing for no limit. Leaves time for the write within 5 seconds.
  std::optional<Duration> limit = std::chrono::milliseconds(4500);
  /// Whether the content was promised to somebody: it is then written whenever the program ends, and for
  /// Storage::saveNow().
  bool isOwed = true;
};

/// One file of the program's own records, read whole and replaced whole, readable by the user alone. What stands in it
/// and was not understood is kept aside under a time-stamped name before anything takes its place; what cannot be read,
/// or not be kept aside, is never replaced. A write that fails leaves the old content, is logged once, and is tried
/// again after 1, 2, 4 and so on up to 30 seconds, and with the next change, until one succeeds, which is logged too.
/// Changes are written on the storage's queue, if it has one, as waiting for the disk may take long; one that comes
/// while the file is being written is written after that. Main thread only.
class RecordFile {
 public:
  /// Makes the text of the file. Runs once, on the queue if there is one, and lives until the text is written: it owns
  /// what it needs.
  using Text = std::function<std::string()>;
  /// Takes the present content, on the main thread, when it is about to be written; null if there is nothing to write
  /// after all.
  using Content = std::function<Text()>;

  /// The folder is made when something is written. `category` is that of the log; it must outlive the file.
  RecordFile(Storage& storage, std::filesystem::path path, std::string_view category, SaveRule rule = {});
  /// Finishes the write that is running. What has not begun is dropped: whoever ends the program calls
  /// Storage::saveNow() before.
  ~RecordFile();
  RecordFile(const RecordFile&) = delete;
  RecordFile& operator=(const RecordFile&) = delete;

  /// Where there is no file yet, gives its name to the one that stands under an earlier name. That this was not
  /// possible is logged.
  void takeOver(const std::filesystem::path& earlier);

  /// What `parse` makes of the content: the value, or why there is none. Nothing where there is no file, or when it
  /// cannot be read or understood, which is logged unless the last reading found the same. A text given to replace()
  /// that is not in the file yet is read in its place.
  template <typename Parse>
  auto read(const Parse& parse) {
    using Value = typename std::invoke_result_t<Parse, std::string_view>::value_type;
    const auto text = readText();
    if (!text) {
      return std::optional<Value>();
    }
    auto value = parse(*text);
    reading(value ? std::nullopt : std::optional("cannot understand " + path_.string() + " (" + value.error() + ")"),
            Standing::notUnderstood);
    return value ? std::optional<Value>(*std::move(value)) : std::nullopt;
  }

  /// The file as a JSON list whose elements all satisfy `isRecord`; an empty one for anything else.
  [[nodiscard]] PropertyList readList(const std::function<bool(const PropertyList&)>& isRecord);

  /// Why the last reading gave nothing, as it was logged; nothing if it gave something or there is no file.
  [[nodiscard]] const std::optional<std::string>& fault() const { return fault_; }

  /// Whether the last reading could read the file, or found none.
  [[nodiscard]] bool isReadable() const { return standing_ != Standing::notReadable; }

  /// Keeps the content aside now if it was not understood. On failure the file must not be replaced.
  std::expected<void, FileError> makeReplaceable();

  /// The content has changed, and is to be written as the rule says; not inside this call.
  void changed(Content content);

  /// The content is this text from now on; it begins to be written at once. Who must know how that ends asks saveNow().
  void replace(std::string text);

  /// Replaces the content before it returns. On failure it stays unsaved and is tried again.
  [[nodiscard]] std::expected<void, FileError> write(Content content);

  /// Writes what is unsaved before it returns, and waits for the write that is under way. Success where there is
  /// nothing.
  [[nodiscard]] std::expected<void, FileError> saveNow();

  /// Forgets what is unsaved.
  void discardUnsaved();

  /// Told after every write of the latest content, on the main thread.
  std::function<void()> onSaved;

  [[nodiscard]] bool isOwed() const { return rule_.isOwed; }
  /// Whether the last attempt to write failed.
  [[nodiscard]] bool isFailing() const { return retryDelay_ > Duration::zero(); }

 private:
  /// What is known of the content that a write would replace.
  enum class Standing { known, notUnderstood, notReadable };
  /// A write on the queue.
  struct Writing;

  [[nodiscard]] std::optional<std::string> readText();
  void reading(std::optional<std::string> fault, Standing otherwise);
  void note(Content content);
  void begin();
  [[nodiscard]] Text take();
  void writeInBackground(Text text);
  std::shared_ptr<Writing> endWriting();
  void settleWriting();
  std::expected<void, FileError> finished(std::uint64_t change, std::expected<void, FileError> written);
  [[nodiscard]] std::expected<std::filesystem::path, FileError> keepAside();
  void log(Log::Level level, const std::string& message) const;

  Storage& storage_;
  const Storage::Services& services_ = storage_.services_;
  const std::filesystem::path path_;
  const std::string_view category_;
  const SaveRule rule_;

  Standing standing_ = Standing::known;
  std::optional<std::string> fault_;

  Content content_;                         ///< of what is unsaved; null when everything is in the file
  std::optional<std::string> unsavedText_;  ///< what replace() was given, as long as that is unsaved
  std::uint64_t changes_ = 0;               ///< counts those of the content
  Duration retryDelay_{};                   ///< from the last failure to the next attempt; zero while none has failed
  WorkItem attempt_;                        ///< after the delay, or after a failure
  WorkItem latest_;                         ///< at the limit
  std::shared_ptr<Writing> writing_;        ///< shared with the queue until it has ended there
  Lifetime lifetime_;
};

}  // namespace tallowin

#pragma once

#include <expected>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "platform/clock.h"
#include "platform/files.h"
#include "platform/log.h"
#include "platform/property_list.h"

namespace tallowin {

/// One file of the program's own records, read whole and replaced whole. What stands in it and was not understood is
/// kept aside before anything takes its place; what cannot be read, or not be kept aside, is never replaced. Every
/// failure is logged. Main thread only.
class RecordFile {
 public:
  struct Services {
    Files& files;
    const Clock& clock;
    Log& log;
  };

  /// `category` is that of the log; it must outlive the file.
  RecordFile(Services services, std::filesystem::path path, std::string_view category)
      : services_(services), path_(std::move(path)), category_(category) {}

  /// The content; nothing when there is none or it cannot be read.
  [[nodiscard]] std::optional<std::string> read();

  /// The file as a JSON list whose elements all satisfy `isRecord`; an empty one for anything else.
  [[nodiscard]] PropertyList readList(const std::function<bool(const PropertyList&)>& isRecord);

  /// Says that the content that was read is not what it should be.
  void notUnderstood(std::string_view why);

  /// Keeps the content aside if it was not understood. False when the file must not be replaced.
  [[nodiscard]] bool makeReplaceable();

  /// Replaces the content. False when that was not possible; then it is as it was.
  [[nodiscard]] bool write(std::string_view bytes);

  [[nodiscard]] const std::filesystem::path& path() const { return path_; }

 private:
  enum class Content { known, notUnderstood, notReadable };

  void log(std::string_view what, std::string_view why) const;

  const Services services_;
  const std::filesystem::path path_;
  const std::string_view category_;
  Content content_ = Content::known;
};

}  // namespace tallowin

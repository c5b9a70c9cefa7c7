#include "base/keep_aside.h"

#include "base/date_text.h"

namespace tallowin {

std::expected<std::filesystem::path, FileError> keepAside(Files& files, const Clock& clock,
                                                          const std::filesystem::path& file) {
  const auto stamped = file.string() + ".unreadable-" + fileNameDate(clock.now());
  std::filesystem::path aside = stamped;
  for (int count = 2; files.exists(aside); ++count) {
    aside = stamped + "-" + std::to_string(count);
  }
  if (auto renamed = files.rename(file, aside); !renamed) {
    return std::unexpected(renamed.error());
  }
  return aside;
}

}  // namespace tallowin

#include "base/keep_aside.h"

#include <string>

#include "base/date_text.h"
#include "base/json_text.h"

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

std::expected<std::optional<PropertyList>, FileError> contentToReplace(
    KeepAsideServices services, std::string_view category, const std::filesystem::path& file,
    const std::function<bool(const PropertyList&)>& isUnderstood) {
  const auto text = services.files.read(file);
  if (!text) {
    return text.error().notFound ? std::expected<std::optional<PropertyList>, FileError>(std::nullopt)
                                 : std::unexpected(text.error());
  }
  if (auto json = parseJSON(*text); json && isUnderstood(*json)) {
    return *std::move(json);
  }
  const auto aside = keepAside(services.files, services.clock, file);
  if (!aside) {
    return std::unexpected(aside.error());
  }
  services.log.error(category, "cannot understand " + file.string() + ", kept as " + aside->filename().string());
  return std::nullopt;
}

}  // namespace tallowin

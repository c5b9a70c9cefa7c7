#include "windows/layout_files.h"

#include <functional>

#include "base/app_paths.h"
#include "base/fnv1a.h"
#include "base/json_text.h"
#include "base/unicode.h"

namespace tallowin {

namespace {

constexpr std::size_t longest = 120;
constexpr std::size_t keptCharacters = 60;

template <typename Hash>
std::string fileName(std::string_view name, std::string_view displaySetup, Hash hash) {
  auto base = asFileName(std::string(name) + "--" + std::string(displaySetup));
  if (firstCharacters(base, longest).size() < base.size()) {
    base = std::string(firstCharacters(base, keptCharacters)) + std::to_string(hash(base));
  }
  return base + ".json";
}

std::expected<WindowLayout, std::string> parse(std::string_view text) {
  const auto json = parseJSON(text);
  auto layout = json ? layoutFromJson(*json) : std::nullopt;
  return layout ? std::expected<WindowLayout, std::string>(*std::move(layout))
                : std::unexpected(json ? "the record has the wrong form" : json.error());
}

}  // namespace

std::string layoutFileName(std::string_view name, std::string_view displaySetup) {
  return fileName(name, displaySetup, fnv1a);
}

std::string earlierLayoutFileName(std::string_view name, std::string_view displaySetup) {
  return fileName(name, displaySetup, std::hash<std::string>());
}

RecordFile& LayoutFiles::file(std::string_view name, std::string_view displaySetup) {
  const auto folder = paths_.supportDirectory() / "Layouts";
  const auto fileName = layoutFileName(name, displaySetup);
  const auto [file, isNew] = files_.try_emplace(fileName, storage_, folder / fileName, "LayoutManager");
  if (isNew) {
    file->second.takeOver(folder / earlierLayoutFileName(name, displaySetup));
  }
  return file->second;
}

void LayoutFiles::write(const WindowLayout& layout, std::string_view name) {
  auto& replaced = file(name, layout.displaySetup);
  replaced.read(parse);                                           // what is not understood is kept aside
  static_cast<void>(replaced.write(prettyJSON(toJson(layout))));  // who must know asks the storage
}

std::optional<WindowLayout> LayoutFiles::read(std::string_view name, std::string_view displaySetup) {
  return file(name, displaySetup).read(parse);
}

}  // namespace tallowin

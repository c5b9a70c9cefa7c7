#include "windows/layout_file_name.h"

#include <functional>

#include "base/app_paths.h"
#include "base/fnv1a.h"
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

}  // namespace

std::string layoutFileName(std::string_view name, std::string_view displaySetup) {
  return fileName(name, displaySetup, fnv1a);
}

std::string earlierLayoutFileName(std::string_view name, std::string_view displaySetup) {
  return fileName(name, displaySetup, std::hash<std::string>());
}

}  // namespace tallowin

#include "platform/xdg/known_browsers.h"

#include <algorithm>
#include <iterator>

namespace tallowin {

namespace {

struct Browser {
  std::string_view bundleIdentifier;
  std::span<const std::string_view> names;
};

// Names of the makers' packages; of Flatpaks where they differ from the bundle identifier.
constexpr std::string_view chrome[] = {"google-chrome", "google-chrome-stable"};
constexpr std::string_view brave[] = {"brave-browser", "brave-browser-stable", "brave"};
constexpr std::string_view edge[] = {"microsoft-edge", "microsoft-edge-stable", "com.microsoft.Edge"};
constexpr std::string_view vivaldi[] = {"vivaldi-stable", "vivaldi"};
constexpr std::string_view chromium[] = {"chromium", "chromium-browser"};

constexpr Browser browsers[] = {
    {"com.google.Chrome", chrome},    {"com.brave.Browser", brave},        {"com.microsoft.edgemac", edge},
    {"com.vivaldi.Vivaldi", vivaldi}, {"org.chromium.Chromium", chromium},
};

}  // namespace

std::span<const std::string_view> linuxNamesOf(std::string_view bundleIdentifier) {
  const auto found = std::ranges::find(browsers, bundleIdentifier, &Browser::bundleIdentifier);
  return found == std::end(browsers) ? std::span<const std::string_view>() : found->names;
}

}  // namespace tallowin

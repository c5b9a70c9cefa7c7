#include "platform/xdg/application_index.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <iterator>

#include "base/unicode.h"

namespace tallowin {

namespace {

/// Programs that run others: their name says nothing about the application.
constexpr std::array<std::string_view, 13> launchers = {
    "sh", "bash", "env", "python", "python3", "perl", "java", "flatpak", "snap", "electron", "pkexec", "sudo", "gjs"};

constexpr int deepestFolder = 8;

std::optional<std::filesystem::file_time_type> modified(const std::filesystem::path& folder) {
  std::error_code error;
  const auto time = std::filesystem::last_write_time(folder, error);
  return error ? std::nullopt : std::optional(time);
}

std::string readFile(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

/// The path below the "applications" folder with "-" for "/" (Desktop Entry Specification, desktop file id).
std::string idOf(const std::filesystem::path& file, const std::filesystem::path& top) {
  auto id = file.lexically_relative(top).replace_extension().string();
  std::ranges::replace(id, '/', '-');
  return id;
}

/// What the entry runs, without its folder; empty when that says nothing.
std::string programOf(const DesktopEntry& entry) {
  const auto words = splitExec(entry.exec);
  auto name = words.empty() ? std::string() : std::filesystem::path(words.front()).filename().string();
  return std::ranges::find(launchers, name) == launchers.end() ? name : std::string();
}

constexpr int sizes[] = {256, 192, 128, 96, 72, 64, 48, 512, 36, 32, 24, 22, 16};

bool isPicture(const std::filesystem::path& path) {
  std::error_code error;
  return path.extension() == ".png" && std::filesystem::is_regular_file(path, error);
}

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

ApplicationIndex ApplicationIndex::read(const XdgEnvironment& environment) {
  ApplicationIndex made;
  std::map<std::string, InstalledApplication> found;
  for (const auto& folder : environment.dataFolders) {
    made.readFolder(folder / "applications", environment, found);
  }
  for (auto& [id, application] : found) {
    const bool present = application.entry.tryExec.empty() ||
                         findProgram(application.entry.tryExec, environment.programFolders).has_value();
    if (!application.entry.hidden && present) {
      made.applications_.push_back(std::move(application));
    }
  }
  made.index(environment);
  return made;
}

void ApplicationIndex::readFolder(const std::filesystem::path& top, const XdgEnvironment& environment,
                                  std::map<std::string, InstalledApplication>& found) {
  const auto tags = localeTags(environment.locale);
  folders_[top] = modified(top);
  std::error_code error;
  auto each =
      std::filesystem::recursive_directory_iterator(top,
                                                    std::filesystem::directory_options::follow_directory_symlink |
                                                        std::filesystem::directory_options::skip_permission_denied,
                                                    error);
  for (; !error && each != std::filesystem::recursive_directory_iterator(); each.increment(error)) {
    const auto& path = each->path();
    std::error_code ignored;
    if (each->is_directory(ignored)) {
      folders_[path] = modified(path);
      if (each.depth() >= deepestFolder) {
        each.disable_recursion_pending();
      }
    } else if (path.extension() == ".desktop") {
      auto id = idOf(path, top);
      if (auto entry = found.contains(id) ? std::nullopt : parseDesktopEntry(readFile(path), tags)) {
        found.emplace(id, InstalledApplication{id, path, *std::move(entry)});
      }
    }
  }
}

void ApplicationIndex::index(const XdgEnvironment& environment) {
  const auto unoffered = std::ranges::stable_partition(applications_, [&](const InstalledApplication& application) {
    return application.entry.isOffered(environment.currentDesktops);
  });
  offered_ = applications_.size() - unoffered.size();
  for (std::size_t i = 0; i < applications_.size(); ++i) {
    const auto& [id, file, entry] = applications_[i];
    if (!entry.startupWMClass.empty()) {
      classes_.emplace(lowerCased(entry.startupWMClass), i);
    }
    ids_.emplace(lowerCased(id), i);
    if (const auto dot = id.rfind('.'); dot != id.npos && dot + 1 < id.size()) {
      ids_.emplace(lowerCased(id.substr(dot + 1)), i);
    }
    if (auto program = programOf(entry); !program.empty()) {
      programs_.emplace(std::move(program), i);
    }
  }
}

const InstalledApplication* ApplicationIndex::find(std::string_view id) const {
  const auto found = std::ranges::find(applications_, id, &InstalledApplication::id);
  return found == applications_.end() ? nullptr : &*found;
}

const InstalledApplication* ApplicationIndex::named(std::string_view name) const {
  const auto found = std::ranges::find_if(applications_, [&](const InstalledApplication& application) {
    return equalIgnoringCase(application.entry.name, name);
  });
  return found == applications_.end() ? nullptr : &*found;
}

const InstalledApplication* ApplicationIndex::match(const ApplicationHint& hint) const {
  for (const auto* name : {&hint.className, &hint.instance}) {
    if (const auto* found = byClass(*name)) {
      return found;
    }
  }
  for (const auto* name : {&hint.className, &hint.instance}) {
    if (const auto* found = byID(*name)) {
      return found;
    }
  }
  return byProgram(hint.executable);
}

const InstalledApplication* ApplicationIndex::byClass(std::string_view name) const {
  const auto [first, last] = classes_.equal_range(lowerCased(name));
  const auto exact = std::find_if(
      first, last, [&](const auto& item) { return applications_[item.second].entry.startupWMClass == name; });
  const auto chosen = exact == last ? first : exact;
  return chosen == last ? nullptr : &applications_[chosen->second];
}

const InstalledApplication* ApplicationIndex::byID(std::string_view name) const {
  const auto [first, last] = ids_.equal_range(lowerCased(name));
  const auto whole =
      std::find_if(first, last, [&](const auto& item) { return applications_[item.second].id.size() == name.size(); });
  const auto chosen = whole == last ? first : whole;
  return chosen == last ? nullptr : &applications_[chosen->second];
}

const InstalledApplication* ApplicationIndex::byProgram(std::string_view name) const {
  const auto [first, last] = programs_.equal_range(name);
  if (first == last) {
    return nullptr;
  }
  const auto second = std::next(first);
  const bool alone = second == last || (first->second < offered_ && second->second >= offered_);
  return alone ? &applications_[first->second] : nullptr;
}

bool ApplicationIndex::isCurrent() const {
  return std::ranges::all_of(folders_, [](const auto& item) { return modified(item.first) == item.second; });
}

std::optional<std::filesystem::path> findIcon(std::string_view icon, const XdgEnvironment& environment) {
  if (icon.empty() || icon.starts_with('/')) {
    return isPicture(icon) ? std::optional<std::filesystem::path>(icon) : std::nullopt;
  }
  const std::string name = std::string(icon) + (icon.ends_with(".png") ? "" : ".png");
  std::vector<std::filesystem::path> themes = {environment.home / ".icons"};
  for (const auto& folder : environment.dataFolders) {
    themes.push_back(folder / "icons");
  }
  for (const int size : sizes) {
    const auto folder = std::to_string(size) + "x" + std::to_string(size);
    for (const auto& theme : themes) {
      if (auto path = theme / "hicolor" / folder / "apps" / name; isPicture(path)) {
        return path;
      }
    }
  }
  for (const auto& folder : environment.dataFolders) {
    if (auto path = folder / "pixmaps" / name; isPicture(path)) {
      return path;
    }
  }
  return std::nullopt;
}

std::span<const std::string_view> linuxNamesOf(std::string_view bundleIdentifier) {
  const auto found = std::ranges::find(browsers, bundleIdentifier, &Browser::bundleIdentifier);
  return found == std::end(browsers) ? std::span<const std::string_view>() : found->names;
}

}  // namespace tallowin

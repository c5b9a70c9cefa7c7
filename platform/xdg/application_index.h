#pragma once

#include <filesystem>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/xdg/desktop_entry.h"
#include "platform/xdg/xdg_environment.h"

namespace tallowin {

/// An application that is installed.
struct InstalledApplication {
  std::string id;  ///< the desktop-entry id without ".desktop", such as "org.gnome.Terminal"
  std::filesystem::path file;
  DesktopEntry entry;
};

/// What a window says about the application that it belongs to. What is not known is empty.
struct ApplicationHint {
  std::string instance;    ///< the first part of WM_CLASS
  std::string className;   ///< the second part
  std::string executable;  ///< the file name of the process's program
  auto operator<=>(const ApplicationHint&) const = default;
};

/// The installed applications at one moment: the desktop entries in the "applications" folders. An entry hides those of
/// the same id in less important folders, also when it is marked as hidden itself. Entries whose TryExec is missing
/// are left out. Never changes, so any thread may read it.
class ApplicationIndex {
 public:
  [[nodiscard]] static ApplicationIndex read(const XdgEnvironment& environment);

  /// Nothing when there is no application with this id.
  [[nodiscard]] const InstalledApplication* find(std::string_view id) const;

  /// The application that menus show under this name, in any case. Null when there is none.
  [[nodiscard]] const InstalledApplication* named(std::string_view name) const;

  /// The application that a window belongs to: by StartupWMClass, by the id (or its last part) and by the program's
  /// name, in this order; case matters only among several that fit. A program's name that several offered entries
  /// share is no evidence. Null when none fits.
  [[nodiscard]] const InstalledApplication* match(const ApplicationHint& hint) const;

  /// Whether the folders are as they were when this was read. An entry that is rewritten in place is not noticed.
  [[nodiscard]] bool isCurrent() const;

 private:
  /// Key, lower-cased, to positions in applications_, those that menus offer first.
  using Lookup = std::multimap<std::string, std::size_t, std::less<>>;

  void readFolder(const std::filesystem::path& top, const XdgEnvironment& environment,
                  std::map<std::string, InstalledApplication>& found);
  void index(const XdgEnvironment& environment);
  [[nodiscard]] const InstalledApplication* byClass(std::string_view name) const;
  [[nodiscard]] const InstalledApplication* byID(std::string_view name) const;
  [[nodiscard]] const InstalledApplication* byProgram(std::string_view name) const;

  std::vector<InstalledApplication> applications_;  ///< those that menus offer first, then by id
  std::size_t offered_ = 0;                         ///< so many of them are offered by menus
  Lookup classes_;
  Lookup ids_;
  Lookup programs_;
  /// Every folder that was read or looked for, with its modification time then; nothing where there was none.
  std::map<std::filesystem::path, std::optional<std::filesystem::file_time_type>> folders_;
};

/// The installed applications as they are now: read when first asked for, and again when the folders have changed. Any
/// thread.
class InstalledApplications {
 public:
  explicit InstalledApplications(XdgEnvironment environment) : environment_(std::move(environment)) {}

  /// Looks at the folders' times, and reads the entries when one has changed. Owned by whoever still looks at it, and
  /// by this object until the next reading.
  [[nodiscard]] std::shared_ptr<const ApplicationIndex> current() {
    const std::lock_guard lock(mutex_);
    if (index_ == nullptr || !index_->isCurrent()) {
      index_ = std::make_shared<const ApplicationIndex>(ApplicationIndex::read(environment_));
    }
    return index_;
  }

  [[nodiscard]] const XdgEnvironment& environment() const { return environment_; }

 private:
  const XdgEnvironment environment_;
  std::mutex mutex_;
  std::shared_ptr<const ApplicationIndex> index_;  ///< guarded by mutex_
};

/// The PNG file of an application's icon: an absolute path as it stands, a name in the "hicolor" theme, the largest
/// size up to 256 pixels first, then among the pixmaps (Icon Theme Specification; other themes and vector icons are not
/// looked at). Nothing when there is none.
[[nodiscard]] std::optional<std::filesystem::path> findIcon(std::string_view icon, const XdgEnvironment& environment);

/// Under which names a browser is known on Linux: ids of desktop entries and programs, to be tried in this order. Empty
/// for everything but the browsers whose bundle identifiers are widely known.
[[nodiscard]] std::span<const std::string_view> linuxNamesOf(std::string_view bundleIdentifier);

}  // namespace tallowin

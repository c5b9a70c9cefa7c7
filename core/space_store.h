#pragma once

#include <filesystem>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>

#include "base/app_paths.h"
#include "base/broadcaster.h"
#include "base/record_file.h"
#include "base/settings.h"
#include "core/space.h"
#include "core/space_meta.h"
#include "platform/images.h"
#include "platform/workspace.h"

namespace tallowin {

/// Owns what the user has said about the Spaces, and is the only one to name a Space. Every change is told at once, and
/// saved 0.3 s after the last of a run of them. Main thread only.
class SpaceStore {
 public:
  struct Services {
    Files& files;
    Images& images;
    Workspace& workspace;
    Log& log;
    const Settings& settings;
    const AppPaths& paths;
  };

  /// Reads the file. One that is missing gives an empty store; so does one that cannot be understood, which is kept
  /// aside first. One that cannot be read, or not be kept aside, is never replaced.
  SpaceStore(Services services, Storage& storage, std::filesystem::path file);
  SpaceStore(const SpaceStore&) = delete;
  SpaceStore& operator=(const SpaceStore&) = delete;

  /// Supplies names for ordinary Spaces without one, while the setting "autoNameSpaces" is on.
  std::function<std::optional<std::string>(const Space&)> autoNameProvider;

  /// Calls `observer` before every change of the records.
  Subscription observeWillChange(std::function<void()> observer) { return willChange_.subscribe(std::move(observer)); }

  [[nodiscard]] const SpaceMetas& metas() const { return metas_; }
  /// The record with this key, or an empty one.
  [[nodiscard]] SpaceMeta meta(const std::string& id) const;

  /// Setters by Space id. An empty name, note or group clears it; symbol and colour are stored as given, and cleared by
  /// nothing; an automation that equals the empty one clears it.
  void setName(const std::string& name, const std::string& id);
  void setSymbol(std::optional<std::string> symbol, const std::string& id);
  void setColor(std::optional<std::string> colorHex, const std::string& id);
  void setNote(const std::string& note, const std::string& id);
  void setGroup(const std::string& group, const std::string& id);
  void setAutomation(const SpaceAutomation& automation, const std::string& id);
  /// Takes the image file as the Space's icon, scaled to 128 × 128 points; nothing, or a file that is no picture,
  /// leaves the Space without one. When the icon's own file cannot be written nothing has changed.
  std::expected<void, FileError> setCustomIcon(const std::optional<std::filesystem::path>& image,
                                               const std::string& id);

  /// Replaces all records.
  void replaceAll(SpaceMetas metas);

  /// Puts a name at the head of the recent names, which hold at most 20, none twice ignoring case.
  void remember(const std::string& name);

  /// The icon's picture; nothing when there is none or it cannot be read.
  [[nodiscard]] std::optional<Image> customIcon(const Space& space);
  /// What everybody calls the Space.
  [[nodiscard]] std::string displayName(const Space& space) const;
  [[nodiscard]] bool hasCustomName(const Space& space) const;
  /// The name of the system symbol image that stands for it.
  [[nodiscard]] std::string symbol(const Space& space) const;

  /// Drops the records of Spaces that are not among `existing`. Those of Spaces without UUID and of full-screen
  /// applications stay.
  void prune(const std::set<std::string>& existing);

  /// Notes which full-screen Spaces belong to which application, from the Spaces of a new snapshot.
  void noteFullscreenKeys(const std::vector<Space>& spaces);
  /// Gives each full-screen Space without a record the one that its application's last full-screen Space had.
  void adoptFullscreenMemory(const std::vector<Space>& spaces);

 private:
  using Change = std::function<void(SpaceMeta&)>;

  void update(const std::string& id, const Change& change);
  void put(const std::string& key, const SpaceMeta& meta);
  void scheduleSave();
  [[nodiscard]] std::optional<std::string> iconFrom(const std::filesystem::path& image) const;
  void removeIcon(const std::string& fileName);
  [[nodiscard]] std::filesystem::path iconPath(const std::string& fileName) const;
  [[nodiscard]] std::optional<RunningApplication> fullscreenOwner(const Space& space) const;

  const Services services_;
  RecordFile file_;

  SpaceMetas metas_;
  Broadcaster<> willChange_;
  std::map<std::string, std::string> fullscreenKeyByID_;  ///< for the full-screen Spaces of the last snapshot
  std::map<std::string, Image> iconCache_;                ///< by Space id
};

/// Makes new windows of an application belong on one Space and on no other.
void pinApplication(const std::string& bundleID, const Space& space, SpaceStore& store);

/// Makes them belong nowhere. False when they did already.
bool unpinApplication(const std::string& bundleID, SpaceStore& store);

}  // namespace tallowin

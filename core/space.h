#pragma once

#include <algorithm>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/clock.h"
#include "platform/identifiers.h"

namespace tallowin {

/// One of the user's Spaces (virtual desktops) at one moment.
struct Space {
  /// Stable identity: the window server's UUID text, or "managed-" and the managed id in decimal. The key of everything
  /// that is remembered about the Space.
  std::string id;
  ManagedSpaceID managedID = 0;  ///< what the window server's operations take
  std::string displayID;         ///< identifier of the display that owns it: a UUID text or "Main"
  /// Counted from 1 over the ordinary desktops of all displays, in the window server's order; absent for full-screen
  /// Spaces.
  std::optional<std::int64_t> desktopNumber;
  std::int64_t indexOnDisplay = 0;         ///< position in the display's raw list, from 0
  bool isFullscreen = false;               ///< an application's full-screen or tiled Space
  std::optional<ProcessID> fullscreenPID;  ///< who owns a full-screen Space, where that is known
  bool isActive = false;                   ///< the current Space of its display
  bool operator==(const Space&) const = default;
};

/// The Spaces of one display at one moment.
struct DisplaySpaces {
  std::string id;  ///< display identifier
  std::vector<Space> spaces;
  std::optional<std::string> activeSpaceID;
  bool isMenuBarDisplay = false;  ///< carries the active menu bar; one display of a snapshot does
  bool operator==(const DisplaySpaces&) const = default;

  /// The first Space with the active id; nothing when none has it.
  [[nodiscard]] std::optional<Space> activeSpace() const;
};

/// All Spaces at one moment. Two snapshots are equal only when they were also taken at the same instant: whoever asks
/// whether anything changed compares `displays`.
struct SpaceSnapshot {
  std::vector<DisplaySpaces> displays;  ///< in the window server's order
  Date timestamp;
  bool operator==(const SpaceSnapshot&) const = default;

  /// No displays, in the distant past.
  [[nodiscard]] static SpaceSnapshot empty();

  /// Every display's Spaces, displays in order.
  [[nodiscard]] std::vector<Space> allSpaces() const;
  /// The active Space of each display that has one, displays in order.
  [[nodiscard]] std::vector<Space> activeSpaces() const;
  /// Whether this is the id of a display's active Space.
  [[nodiscard]] bool isActive(std::string_view id) const;
  /// The active Space of the menu-bar display: what "the active Space" means without a display.
  [[nodiscard]] std::optional<Space> activeSpace() const;
  /// The first Space with this desktop number.
  [[nodiscard]] std::optional<Space> desktop(std::int64_t number) const;
  /// The first Space with this id.
  [[nodiscard]] std::optional<Space> space(std::string_view id) const;
  /// The first Space with this managed id.
  [[nodiscard]] std::optional<Space> managed(ManagedSpaceID id) const;
  /// The first display that carries the menu bar, else the first one; nothing only without displays.
  [[nodiscard]] std::optional<DisplaySpaces> menuBarDisplay() const;
  /// The first display that the Space says it belongs to.
  [[nodiscard]] std::optional<DisplaySpaces> display(const Space& space) const;
};

/// The Spaces that the user visited last, for going back. In memory only. Main thread only.
class SpaceHistory {
 public:
  static constexpr std::size_t limit = 20;

  /// Notes that a Space became active.
  void visit(const Space& space) {
    std::erase(recent_, space.id);
    recent_.insert(recent_.begin(), space.id);
    recent_.resize(std::min(recent_.size(), limit));
  }

  /// The Space to go back to: of those visited, the latest that still exists and is not the active Space of the
  /// menu-bar display.
  [[nodiscard]] std::optional<Space> previous(const SpaceSnapshot& snapshot) const {
    const auto current = snapshot.activeSpace();
    for (const auto& id : recent_) {
      if (auto space = snapshot.space(id); space && !(current && id == current->id)) {
        return space;
      }
    }
    return std::nullopt;
  }

  /// Space ids, the latest first, none twice; at most `limit`.
  [[nodiscard]] const std::vector<std::string>& recent() const { return recent_; }

 private:
  std::vector<std::string> recent_;
};

}  // namespace tallowin

template <>
struct std::hash<tallowin::Space> {
  std::size_t operator()(const tallowin::Space& space) const noexcept;
};

template <>
struct std::hash<tallowin::DisplaySpaces> {
  std::size_t operator()(const tallowin::DisplaySpaces& display) const noexcept;
};

template <>
struct std::hash<tallowin::SpaceSnapshot> {
  std::size_t operator()(const tallowin::SpaceSnapshot& snapshot) const noexcept;
};

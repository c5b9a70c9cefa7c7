#pragma once

#include <expected>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "core/space.h"
#include "core/space_store.h"
#include "platform/property_list.h"

namespace tallowin {

/// A line about a Space as the user wants it, such as "{number} {name}". The placeholders are {number} ("-" for a
/// full-screen Space), {name}, {id}, {symbol}, {color}, {note}, {group}, {display} and {active} ("*" for an active
/// Space); what is not set is empty. "{{" and "}}" stand for braces.
class SpaceFormat {
 public:
  /// The error is one line that says what is wrong and what would be right.
  [[nodiscard]] static std::expected<SpaceFormat, std::string> parse(std::string_view text);

  /// The line, with its line feed. Control characters in it are blanks.
  [[nodiscard]] std::string line(const Space& space, const SpaceStore& store) const;

 private:
  using Field = std::string (*)(const Space& space, const SpaceStore& store);
  struct Placeholder {
    std::string_view name;
    Field field;
  };
  /// A text, and what comes behind it, if anything.
  struct Part {
    std::string text;
    Field field = nullptr;
  };
  static const std::vector<Placeholder>& placeholders();
  [[nodiscard]] static std::expected<Field, std::string> fieldNamed(std::string_view name);

  std::vector<Part> parts_;
};

/// The desktop's number, "-" for a full-screen Space.
[[nodiscard]] std::string desktopNumberText(const Space& space);

/// The Spaces for reading, one line each: "*" for an active one, the desktop's number, the name; with several displays
/// also the display. Columns are aligned.
[[nodiscard]] std::string spaceList(const SpaceSnapshot& snapshot, const SpaceStore& store);

/// The names of the applications that have windows on a Space, front to back.
using AppNames = std::function<std::vector<std::string>(const Space&)>;

/// What other programs are told of one Space: "id", "name", "hasCustomName", "display", "isActive", "isFullscreen",
/// "symbol", "apps", and "number", "color" and "note", which may be null.
[[nodiscard]] PropertyList spaceRecord(const Space& space, const SpaceStore& store, const AppNames& apps);

/// What they are told of all: "version" 1, "updatedAt", "current" (the id of the active Space, or null) and "spaces".
[[nodiscard]] PropertyList stateRecord(const SpaceSnapshot& snapshot, const SpaceStore& store, const AppNames& apps,
                                       Date updatedAt);

}  // namespace tallowin

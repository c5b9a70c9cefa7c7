#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "core/space.h"
#include "core/space_store.h"

namespace tallowin {

/// What names a Space inside a command.
struct SpaceRef {
  /// A desktop number, from 1.
  struct Number {
    std::int64_t number;
    bool operator==(const Number&) const = default;
  };
  /// A display name, or a part of one.
  struct Name {
    std::string name;
    bool operator==(const Name&) const = default;
  };
  /// The active Space of the menu-bar display.
  struct Current {
    bool operator==(const Current&) const = default;
  };

  std::variant<Number, Name, Current> value = Current{};
  bool operator==(const SpaceRef&) const = default;

  static SpaceRef number(std::int64_t number) { return {Number{number}}; }
  static SpaceRef name(std::string name) { return {Name{std::move(name)}}; }
  static SpaceRef current() { return {Current{}}; }
};

/// A reference as a person writes it: "current" in any case, a decimal integer, else a name.
[[nodiscard]] SpaceRef spaceRefFromText(const std::string& text);

/// The Space that the reference names. A name is compared with every display name ignoring case: for being equal, then
/// for being its beginning, then for being part of it; the first Space of the first of these that finds one counts.
[[nodiscard]] std::optional<Space> resolve(const SpaceRef& ref, const SpaceSnapshot& snapshot, const SpaceStore& store);

/// What to say when it names nothing; nothing for the current Space.
[[nodiscard]] std::optional<std::string> notFoundMessage(const SpaceRef& ref);

/// What those who must say something then say of the current Space.
inline constexpr auto noActiveSpace = "there is no active Space";

}  // namespace tallowin

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

/// Everything that the program can be told to do, from wherever: plain values with equality.
namespace command {

/// A command without a payload.
template <int>
struct Plain {
  bool operator==(const Plain&) const = default;
};

struct SwitchTo {
  SpaceRef space;
  bool operator==(const SwitchTo&) const = default;
};
struct Step {
  bool right;
  bool operator==(const Step&) const = default;
};
struct MoveWindow {
  SpaceRef space;
  bool operator==(const MoveWindow&) const = default;
};
struct MoveWindowStep {
  bool right;
  bool operator==(const MoveWindowStep&) const = default;
};
struct Rename {
  SpaceRef space;
  std::optional<std::string> name;  ///< absent when none was given; empty removes the name
  bool operator==(const Rename&) const = default;
};
struct Note {
  SpaceRef space;
  std::optional<std::string> text;  ///< absent when none was given; empty removes the note
  bool operator==(const Note&) const = default;
};
struct Setup {
  SpaceRef space;
  bool operator==(const Setup&) const = default;
};
struct Profile {
  std::string name;
  bool operator==(const Profile&) const = default;
};
struct Template {
  std::string name;
  bool operator==(const Template&) const = default;
};
struct Windows {
  bool allSpaces;
  bool operator==(const Windows&) const = default;
};
struct RemoveDesktop {
  SpaceRef space;
  bool operator==(const RemoveDesktop&) const = default;
};
struct Notes {
  SpaceRef space;
  bool operator==(const Notes&) const = default;
};
struct Step2D {
  bool up;
  bool operator==(const Step2D&) const = default;
};
using Back = Plain<14>;
using Overview = Plain<15>;
using OpenSettings = Plain<16>;
using Diagnostics = Plain<17>;
using SaveLayout = Plain<18>;
using RestoreLayout = Plain<19>;
using Eject = Plain<20>;
using Launcher = Plain<21>;
using ToggleScratchpad = Plain<22>;
using MinimizeAll = Plain<23>;
using UndoMinimize = Plain<24>;
using SaveAndClose = Plain<25>;
using AddDesktop = Plain<26>;
using DemoTour = Plain<27>;

}  // namespace command

/// One command. The order of the alternatives is kept.
using SpaceCommand =
    std::variant<command::SwitchTo, command::Step, command::MoveWindow, command::MoveWindowStep, command::Rename,
                 command::Note, command::Setup, command::Profile, command::Template, command::Windows,
                 command::RemoveDesktop, command::Notes, command::Step2D, command::Back, command::Overview,
                 command::OpenSettings, command::Diagnostics, command::SaveLayout, command::RestoreLayout,
                 command::Eject, command::Launcher, command::ToggleScratchpad, command::MinimizeAll,
                 command::UndoMinimize, command::SaveAndClose, command::AddDesktop, command::DemoTour>;

/// The command's own name in the program's vocabulary, such as "switchTo".
[[nodiscard]] std::string_view nameOf(const SpaceCommand& command);

}  // namespace tallowin

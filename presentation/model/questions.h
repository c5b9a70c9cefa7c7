#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "presentation/model/status_item.h"

namespace tallowin {

/// What is asked in the dialog that names a Space.
struct NameQuestion {
  SpaceRow space = {};
  bool isNew = false;                         ///< the Space has just been made, and the user did not ask to name it
  std::string ownName = {};                   ///< what the user called it so far; empty for nothing
  std::vector<std::string> recentNames = {};  ///< to choose from, the newest first
  bool operator==(const NameQuestion&) const = default;
};

/// What the user says there. A text that is empty takes away what was said before; what is absent stays as it is.
struct GivenName {
  std::string name = {};
  std::optional<std::string> symbol = {};
  std::optional<std::string> colorHex = {};
  bool operator==(const GivenName&) const = default;
};

/// What is asked in the dialog for a Space's note.
struct NoteQuestion {
  SpaceRow space = {};
  std::string text = {};  ///< the note so far
  bool operator==(const NoteQuestion&) const = default;
};

/// What a Space can be given with one click.
struct Suggestion {
  std::string value;
  std::string words;  ///< what it is called, for those who do not see it
};

/// Colours, as "#RRGGBB".
[[nodiscard]] const std::vector<Suggestion>& suggestedColors();
/// Symbols, by the names of system symbol images; the first one is what a desktop shows without one of its own.
[[nodiscard]] const std::vector<Suggestion>& suggestedSymbols();

}  // namespace tallowin

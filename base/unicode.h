#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tallowin {

/// Unicode text as UTF-8, by rules that depend on no locale. Accents are never folded.

[[nodiscard]] bool isValidUTF8(std::string_view text);

/// The text in lower case, composed (NFC), so that texts which look the same compare equal. Text that is no UTF-8 is
/// answered as it stands.
[[nodiscard]] std::string lowerCased(std::string_view text);

/// Whether the texts are the same but for case and composition (Unicode's full case folding).
[[nodiscard]] bool equalIgnoringCase(std::string_view a, std::string_view b);

/// The text with a blank, or what is given, for every control character (C0, DEL, C1), so that a terminal or a
/// line-wise reader shows it and does nothing else with it.
[[nodiscard]] std::string printable(std::string_view text, std::string_view substitute = " ");

/// The text's first characters: so many, or as many as fit into so many bytes. A byte that is no UTF-8 counts as a
/// character.
[[nodiscard]] std::string_view firstCharacters(std::string_view text, std::size_t count);
[[nodiscard]] std::string_view charactersWithin(std::string_view text, std::size_t bytes);

/// The text without white space and line breaks at its ends.
[[nodiscard]] std::string_view trimmed(std::string_view text);

/// How many columns of a terminal the text takes. A byte that is no UTF-8 counts as one.
[[nodiscard]] std::size_t displayWidth(std::string_view text);

}  // namespace tallowin

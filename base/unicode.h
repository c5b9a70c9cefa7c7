#pragma once

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

}  // namespace tallowin

#pragma once

#include <expected>
#include <string>

namespace tallowin {

/// Whether something could be shown that the user asked for; if not, the sentence that he has been told.
using Shown = std::expected<void, std::string>;

}  // namespace tallowin

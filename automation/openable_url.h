#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace tallowin {

/// The URL to open for what a user wrote: a URL when there is "://" in it, else a file path, in which a leading "~"
/// stands for the home folder and which begins there when it is relative. Nothing when it is empty or no valid URL.
[[nodiscard]] std::optional<std::string> openableURL(const std::string& text, const std::filesystem::path& home);

}  // namespace tallowin

#pragma once

#include <filesystem>

namespace tallowin {

/// Where the user's things are. Absolute paths; the folders need not exist. On Linux they follow the XDG base directory
/// specification, in which an empty or relative variable counts as unset.
struct Folders {
  std::filesystem::path home;
  std::filesystem::path applicationSupport;  ///< $XDG_DATA_HOME, else ~/.local/share
  std::filesystem::path configuration;       ///< $XDG_CONFIG_HOME, else ~/.config
  std::filesystem::path cache;               ///< $XDG_CACHE_HOME, else ~/.cache
  std::filesystem::path documents;           ///< the user's Documents folder
  std::filesystem::path runtime;             ///< $XDG_RUNTIME_DIR; empty when there is none
  bool operator==(const Folders&) const = default;
};

}  // namespace tallowin

#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "base/app_paths.h"
#include "base/record_file.h"
#include "windows/window_layout.h"

namespace tallowin {

/// The name of the file that holds the layout of this name for the displays with this key: both with "--" between them,
/// every "/" replaced by "-". What is longer than 120 characters (Unicode scalar values; a byte that is no UTF-8 counts
/// as one) is cut after 60, and the FNV-1a hash of the whole stands in place of the rest.
[[nodiscard]] std::string layoutFileName(std::string_view name, std::string_view displaySetup);

/// What version 0.1.0 called that file: the hash was the standard library's, which another library computes otherwise.
[[nodiscard]] std::string earlierLayoutFileName(std::string_view name, std::string_view displaySetup);

/// The folder "Layouts" in the support folder, with one file per layout name and set of displays. Main thread only.
class LayoutFiles {
 public:
  LayoutFiles(Storage& storage, const AppPaths& paths) : storage_(storage), paths_(paths) {}

  /// Writes the layout under this name for the displays that it was made for, in place of an older one; what stands
  /// there and cannot be understood is kept aside. What cannot be written counts all the same, and is tried again.
  void write(const WindowLayout& layout, std::string_view name);

  /// The layout of this name for these displays. Nothing when there is none, or when the file cannot be read or
  /// understood, which is logged; the file stays as it is.
  [[nodiscard]] std::optional<WindowLayout> read(std::string_view name, std::string_view displaySetup);

 private:
  [[nodiscard]] RecordFile& file(std::string_view name, std::string_view displaySetup);

  Storage& storage_;
  const AppPaths& paths_;
  std::map<std::string, RecordFile> files_;  ///< those that were used, by their names in the folder
};

}  // namespace tallowin

#pragma once

#include <filesystem>
#include <optional>
#include <string_view>

#include "base/app_paths.h"
#include "platform/log.h"
#include "windows/window_layout.h"

namespace tallowin {

/// The folder "Layouts" in the support folder, with one file per layout name and set of displays. Main thread only.
class LayoutFiles {
 public:
  LayoutFiles(Files& files, const Clock& clock, const AppPaths& paths, Log& log)
      : files_(files), clock_(clock), paths_(paths), log_(log) {}

  /// Writes the layout under this name for the displays that it was made for, in place of an older one; what stands
  /// there and cannot be understood is kept aside. A failure is logged, and the file is as it was then.
  void write(const WindowLayout& layout, std::string_view name);

  /// The layout of this name for these displays. Nothing when there is none, or when the file cannot be read or
  /// understood, which is logged; the file stays as it is.
  [[nodiscard]] std::optional<WindowLayout> read(std::string_view name, std::string_view displaySetup);

 private:
  [[nodiscard]] std::filesystem::path folder() const;

  Files& files_;
  const Clock& clock_;
  const AppPaths& paths_;
  Log& log_;
};

}  // namespace tallowin

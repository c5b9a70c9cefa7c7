#pragma once

#include <string_view>

namespace tallowin {

/// The clipboard (NSPasteboard generalPasteboard). Main thread only.
class Pasteboard {
 public:
  virtual ~Pasteboard() = default;

  /// Replaces its content by this UTF-8 text. False when there is no clipboard.
  virtual bool setString(std::string_view text) = 0;
};

}  // namespace tallowin

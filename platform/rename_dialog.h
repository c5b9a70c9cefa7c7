#pragma once

#include <functional>
#include <optional>
#include <string>

#include "platform/shown.h"
#include "platform/shown_space.h"

namespace tallowin {

/// Asks for the name of a Space. Main thread only.
class RenameDialog {
 public:
  /// Told the name that the user gave, which may be empty, or nothing when he gave none.
  using Completion = std::function<void(const std::optional<std::string>& name)>;

  virtual ~RenameDialog() = default;

  /// Asks without blocking, in place of a dialog that is still open (which then ends without a name). `isNew`: the
  /// Space has just been made, and the user did not ask to name it. `completion` runs once, maybe inside this call,
  /// also when the dialog cannot be shown.
  virtual Shown present(const ShownSpace& space, bool isNew, Completion completion) = 0;
};

}  // namespace tallowin

#pragma once

#include "commands/outcome.h"
#include "platform/toasts.h"
#include "windows/saved_spaces.h"

namespace tallowin {

/// The user's commands about saved Spaces, with what the user is told of them. Main thread only.
class SavedSpaceCommands {
 public:
  SavedSpaceCommands(SavedSpaces& savedSpaces, Toasts& toasts) : savedSpaces_(savedSpaces), toasts_(toasts) {}

  /// Saves the Space, tells the user, and closes its windows. What could not be saved is not closed.
  Outcome saveAndClose(const Space& space);
  void reopen(const SavedSpace& space);

 private:
  SavedSpaces& savedSpaces_;
  Toasts& toasts_;
};

}  // namespace tallowin

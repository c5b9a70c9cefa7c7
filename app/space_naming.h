#pragma once

#include <functional>
#include <string>

#include "base/lifetime.h"
#include "core/space_store.h"
#include "platform/rename_dialog.h"

namespace tallowin {

/// Gives Spaces the names that the user wants. Main thread only.
class SpaceNaming {
 public:
  SpaceNaming(SpaceStore& store, RenameDialog& dialog) : store_(store), dialog_(dialog) {}
  SpaceNaming(const SpaceNaming&) = delete;
  SpaceNaming& operator=(const SpaceNaming&) = delete;

  /// Stores the name and remembers it for the next Space; an empty one removes the name.
  void give(const std::string& name, const std::string& spaceID);

  /// Asks the user for the name. `answered` runs once he has given one or not; not if this object goes before.
  Shown ask(const Space& space, bool isNew, std::function<void()> answered = [] {});

 private:
  SpaceStore& store_;
  RenameDialog& dialog_;
  Lifetime lifetime_;
};

}  // namespace tallowin

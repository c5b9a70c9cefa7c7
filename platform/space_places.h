#pragma once

#include <optional>
#include <vector>

#include "platform/identifiers.h"

namespace tallowin {

/// Which Space stands where, on systems that know desktops by their places only, so that the program itself keeps who
/// is who. Ids are managed ids, from left to right. Main thread only.
class SpacePlaces {
 public:
  virtual ~SpacePlaces() = default;

  /// The Spaces that there are; nothing where Spaces have an identity of their own, or none are known.
  [[nodiscard]] virtual std::optional<std::vector<ManagedSpaceID>> places() = 0;

  /// Those that are away for now, and come back when there are more desktops again.
  [[nodiscard]] virtual std::vector<ManagedSpaceID> parked() = 0;

  /// The desktops get the ids that another list has at their places, as when the records of another machine are taken
  /// over; windows stay where they are. Ids that are left over wait for more desktops. Does nothing where there are no
  /// places.
  virtual void adopt(const std::vector<ManagedSpaceID>& spaces) = 0;

  /// Makes desktops again for those of the list that were removed, and puts all into its order, with their windows;
  /// desktops that the list does not have follow. False when that is not possible here, or not seen to happen yet.
  virtual bool restore(const std::vector<ManagedSpaceID>& spaces) = 0;
};

}  // namespace tallowin

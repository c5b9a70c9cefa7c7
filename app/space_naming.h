#pragma once

#include <deque>
#include <functional>
#include <optional>
#include <set>
#include <string>

#include "base/lifetime.h"
#include "core/program_services.h"
#include "presentation/presentation.h"

namespace tallowin {

/// Gives Spaces the names and notes that the user wants. Main thread only.
class SpaceNaming {
 public:
  explicit SpaceNaming(const ProgramServices& services) : services_(services) {}
  SpaceNaming(const SpaceNaming&) = delete;
  SpaceNaming& operator=(const SpaceNaming&) = delete;

  /// Stores the name and remembers it for the next Space; an empty one removes the name.
  void give(const std::string& name, const std::string& spaceID);

  /// Asks the user for the name. `answered` runs once he has given one or not; not if this object goes before.
  Shown ask(const Space& space, bool isNew, std::function<void()> answered = [] {});
  /// Asks the user for the note.
  Shown askForNote(const Space& space);

 private:
  void take(const GivenName& given, const std::string& spaceID);

  const ProgramServices& services_;
  Lifetime lifetime_;
};

/// Offers to name Spaces that have just been made, one after the other, while the setting "askToNameNewSpaces" is on.
/// Main thread only.
class NewSpaces {
 public:
  /// `areExpected`: whether this program is making Spaces that it will name itself.
  NewSpaces(const ProgramServices& services, SpaceNaming& naming, std::function<bool()> areExpected)
      : services_(services), naming_(naming), areExpected_(std::move(areExpected)) {}
  NewSpaces(const NewSpaces&) = delete;
  NewSpaces& operator=(const NewSpaces&) = delete;

  /// To be called with every snapshot. Those of the first one are not new, nor are those that come with a display or
  /// come back.
  void look(const SpaceSnapshot& snapshot);

 private:
  /// What there ever was.
  struct Known {
    std::set<std::string> displays;
    std::set<std::string> spaces;
  };

  void learn(const SpaceSnapshot& snapshot);
  void enqueue(const SpaceSnapshot& snapshot);
  void askNext();

  const ProgramServices& services_;
  SpaceNaming& naming_;
  const std::function<bool()> areExpected_;
  std::optional<Known> known_;
  std::deque<Space> waiting_;
  bool asking_ = false;
};

}  // namespace tallowin

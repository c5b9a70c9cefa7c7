#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/desktop.h"
#include "platform/property_list.h"

namespace tallowin {

/// The window server's managed-display-spaces list in its raw form, which is the simulated desktop's only record of
/// Spaces. Changes edit just what they concern, so that entries that are malformed on purpose stay as they were
/// written; such entries are no Spaces to the queries here.
class RawSpaces {
 public:
  /// One display "Main" with four desktops, the first one active.
  RawSpaces();
  explicit RawSpaces(PropertyList list) : list_(std::move(list)) {}

  /// The list as the window server hands it out; null when it hands out nothing.
  [[nodiscard]] const PropertyList& list() const { return list_; }

  /// The well-formed displays with their well-formed Spaces; none is the menu bar's.
  [[nodiscard]] std::vector<DesktopDisplay> displays() const;

  /// The identifier of the display that has this Space, or nothing.
  [[nodiscard]] std::optional<std::string> displayOf(ManagedSpaceID space) const;

  /// The active Space of a display, or nothing.
  [[nodiscard]] std::optional<ManagedSpaceID> activeOn(std::string_view display) const;

  [[nodiscard]] bool isActive(ManagedSpaceID space) const;

  /// Makes a Space the current one of its display. False when there is no such Space.
  bool activate(ManagedSpaceID space);

  /// Adds a desktop behind the last ordinary desktop of a display and returns its id, which is one above the highest
  /// that ever was in use here. Nothing when there is no such display.
  std::optional<ManagedSpaceID> addDesktop(std::string_view display);

  /// Removes a Space; when it was the current one, its heir becomes it. Returns the Space that takes its windows: this
  /// heir, else the one before it, else the one behind it. Nothing, and no change, for the last desktop of a display
  /// and for a Space that does not exist.
  std::optional<ManagedSpaceID> remove(ManagedSpaceID space, std::optional<ManagedSpaceID> heir = {});

  /// Gives the Spaces of the first display these ids, from left to right, and no other identity; each gets the id of
  /// the same place. Answers the ids that they had.
  std::vector<ManagedSpaceID> renumber(const std::vector<ManagedSpaceID>& ids);

  /// Puts the Spaces of the first display into this order, which has all of them, with new ones where it has others.
  void arrange(const std::vector<ManagedSpaceID>& ids);

  /// Adds a display, unless the list has it: with the Spaces that it had when it was removed, as far as they still
  /// exist and no other display would be left without an ordinary desktop; with one new desktop if there are none.
  void addDisplay(std::string_view display);

  /// Removes a display, appending its Spaces to the first other one. Without another one they wait for its return.
  void removeDisplay(std::string_view display);

  bool operator==(const RawSpaces&) const = default;

 private:
  /// A display that was removed.
  struct AbsentDisplay {
    PropertyList entry;                ///< as it was
    bool spacesWereInherited = false;  ///< its Spaces are on other displays since
    bool operator==(const AbsentDisplay&) const = default;
  };

  AbsentDisplay takeAbsent(std::string_view display);
  [[nodiscard]] PropertyList* displayEntry(std::string_view display);
  /// The entry of the first display, or null.
  [[nodiscard]] PropertyList* firstEntry();
  /// The entry of the display that has the Space, or null. A malformed list may have several of the same display.
  [[nodiscard]] PropertyList* entryWith(ManagedSpaceID space);
  ManagedSpaceID newID();
  /// Takes a Space away from the display that has it. Nothing when there is none or it must stay.
  std::optional<PropertyList> take(ManagedSpaceID space);

  PropertyList list_;
  std::vector<AbsentDisplay> absent_;
  ManagedSpaceID lastNewID_ = 0;
};

}  // namespace tallowin

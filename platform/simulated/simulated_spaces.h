#pragma once

#include <filesystem>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "base/desktop_places.h"
#include "platform/desktop.h"
#include "platform/main_queue.h"
#include "platform/simulated/desktop_state.h"
#include "platform/simulated/journal.h"
#include "platform/simulated/scenario.h"
#include "platform/simulated/simulated_files.h"
#include "platform/window_server.h"

namespace tallowin {

/// What made the Dock switch.
enum class SwitchCause { gesture, hotKey, missionControl };

/// What becomes of the Spaces: switches that take their time and may bounce, desktops that come and go; and everybody
/// who is told of it. Main thread only.
class SimulatedSpaces : public SpacePlaces {
 public:
  /// The window server's event numbers for a change of the active Space and of the list of Spaces.
  static constexpr WindowServerEvent activeSpaceEvent = 1401;
  static constexpr WindowServerEvent listEvent = 1329;

  SimulatedSpaces(DesktopState& state, const ScenarioDock& dock, MainQueue& queue, Journal& journal)
      : state_(state),
        switchTime_(dock.switchTime),
        bounceAfter_(dock.bounceAfter),
        bounces_(dock.bounces),
        queue_(queue),
        journal_(journal) {}

  /// Told of window-server events, of a display whose active Space changed, and of changes of the list that the system
  /// saves to its preference file.
  std::function<void(WindowServerEvent)> onServerEvent = [](WindowServerEvent) {};
  std::function<void(const std::string& display, ManagedSpaceID space)> onArrival = [](const std::string&,
                                                                                       ManagedSpaceID) {};
  std::function<void()> onListChanged = [] {};

  /// The displays in the window server's order, as they are now.
  [[nodiscard]] std::vector<DesktopDisplay> displays() const { return state_.spaces.displays(); }
  /// The identifier of the display that holds the pointer; nothing when none does.
  [[nodiscard]] std::optional<std::string> displayUnderPointer() const;
  /// Begins to show a Space on its display, which takes its time. A Space that is gone is ignored.
  void switchTo(ManagedSpaceID space, SwitchCause cause);
  /// Adds a desktop at the right end of a display's ordinary desktops. False when there is no such display.
  bool addDesktop(const std::string& display);
  /// Removes a desktop, whose windows go to a neighbour: to this one, where the user goes too if he looked at it, else
  /// to any. False for the last one.
  bool removeDesktop(ManagedSpaceID space, std::optional<ManagedSpaceID> heir = {});

  std::optional<std::vector<ManagedSpaceID>> places() override;
  std::vector<ManagedSpaceID> parked() override;
  void adopt(const std::vector<ManagedSpaceID>& spaces) override;
  bool restore(const std::vector<ManagedSpaceID>& spaces) override;

  /// From now on desktops are known by their places, and this file tells who is who.
  void keepPlaces(Storage& storage, const std::filesystem::path& file);
  /// Somebody else sets the number of desktops, at least one: they come and go at the right end.
  void setDesktopCount(std::size_t count);
  /// Somebody else adds a desktop, by default to the first display, or removes one; where desktops are known by their
  /// places, at the right end.
  void addByOthers(const std::optional<std::string>& display);
  void removeByOthers(ManagedSpaceID space);

  /// A switch by other means than the Dock's, which takes no time. False when there is no such Space.
  bool switchNow(ManagedSpaceID space);

  /// The next `count` gesture switches go back `after` their arrival.
  void bounceNext(int count, Duration after);

  /// Puts another raw list in place of the present one.
  void replaceList(PropertyList list);

  /// One whose id is connected already is left as it is. One that was here before gets its Spaces back.
  void connectDisplay(const SimulatedDisplay& display);
  /// False when no such display is connected.
  bool disconnectDisplay(DisplayID display);

 private:
  void arrive(const std::string& display, ManagedSpaceID space, SwitchCause cause);
  void announceActive(const std::string& display, ManagedSpaceID space);
  void announceList();
  void announceCount(const std::string& display, bool activeHasGone);
  bool takeAway(ManagedSpaceID space, std::optional<ManagedSpaceID> heir = {});
  void renumber();

  DesktopState& state_;
  const Duration switchTime_;
  Duration bounceAfter_;
  int bounces_;
  MainQueue& queue_;
  Journal& journal_;
  std::optional<KeptDesktopPlaces> places_;   ///< where desktops are known by their places
  std::map<std::string, WorkItem> underWay_;  ///< by display: a switch or a bounce
};

}  // namespace tallowin

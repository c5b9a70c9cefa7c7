#pragma once

#include <cstdint>
#include <deque>
#include <expected>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>
#include <xcb/xcb.h>

#include "platform/desktop.h"
#include "platform/main_queue.h"
#include "platform/x11/x11_applications.h"
#include "platform/x11/x11_connection.h"
#include "platform/x11/x11_desktop_names.h"
#include "platform/x11/x11_desktop_reader.h"
#include "platform/x11/x11_window_actions.h"
#include "platform/x11/x11_window_carrier.h"

namespace tallowin {

/// The desktops of an EWMH window manager as the Spaces of one display, "Main", as all monitors switch together. A
/// desktop's managed id belongs to its place (DesktopPlaces); where desktops are dynamic it comes from the desktop's
/// name (namedSpaceIDs), and desktops are neither added nor removed: they come by being used. Main thread only.
///
/// EWMH knows a number of desktops only: the last one goes, and another one comes at the right end. For all else the
/// number is changed first, and once that has happened all windows are moved to where their desktops stand then, and
/// the view with them. Such requests are carried out one after the other, each on the list that the one before leaves.
class X11Desktop : public AskedDesktop, public SpacePlaces {
 public:
  static constexpr auto mainDisplay = "Main";

  /// What it works with, and `names`, who is told of changes first.
  struct Services {
    X11Connection& connection;
    X11DesktopReader& desktops;
    X11WindowReader& windows;
    X11Applications& applications;
    X11WindowActions& actions;
    X11Refusals& refusals;
    X11DesktopNames& names;
    KeptDesktopPlaces& places;
    MainQueue& queue;
  };

  explicit X11Desktop(const Services& services);

  /// While a switch of our own is under way its target counts as the current Space, so that the next one is counted
  /// from there however soon it comes.
  std::optional<DesktopReading> read() override;
  std::optional<ManagedSpaceID> activeSpace() override;
  CGSBridgeHealth health() override;
  /// One sign for all changes that were heard of together. Also when a switch of our own has not come in time.
  bool observe(std::function<void(const DesktopSign&)> observer) override;
  /// Answers from the reading of all windows that has just been made, where there is one; else in one round trip.
  std::optional<std::vector<ManagedSpaceID>> spacesOfWindow(WindowNumber window) override;
  bool moveWindow(WindowNumber window, ManagedSpaceID space) override;

  DesktopAbilities abilities() override;
  /// A window whose title bar is being dragged comes along, which takes a fifth of a second.
  bool switchTo(ManagedSpaceID space) override;
  void addSpace(const std::string& display, Completion completion) override;
  void removeSpace(ManagedSpaceID space, Completion completion) override;

  std::optional<std::vector<ManagedSpaceID>> places() override;
  std::vector<ManagedSpaceID> parked() override { return services_.places.get().parked(); }
  void adopt(const std::vector<ManagedSpaceID>& spaces) override;
  /// Waits a tenth of a second at most. What has not happened by then is taken in when it has.
  bool restore(const std::vector<ManagedSpaceID>& spaces) override;

  /// Takes an event of the server.
  void handle(const xcb_generic_event_t& event);
  /// To be called when all events that have come were handled.
  void allHandled();

 private:
  using Spaces = std::vector<ManagedSpaceID>;
  /// What the list is to be, from how it is.
  using Plan = std::function<std::expected<Spaces, DesktopRefusal>(const X11DesktopState&)>;

  struct Request {
    Plan plan;
    Completion completion;
  };

  /// A change of the desktops that takes several requests.
  struct Change {
    Spaces wanted;
    Completion completion;
    std::map<xcb_window_t, std::uint32_t> targets = {};  ///< the desktops, by index, of windows that still have to move
    std::optional<std::uint32_t> current = {};           ///< the index that the desktop in front gets, if another one
    X11DesktopState before = {};
    bool counted = false;  ///< there are as many desktops as wanted
    WorkItem end = {};
  };

  /// A switch of our own.
  struct Switch {
    ManagedSpaceID target = 0;
    std::optional<ManagedSpaceID> origin;  ///< what was active before
    WorkItem end;
  };

  [[nodiscard]] std::optional<ManagedSpaceID> shown(const X11DesktopState& desktops);
  void send(std::uint32_t desktop);
  void switchPlainly(ManagedSpaceID space);
  [[nodiscard]] bool canChangeCount(const X11DesktopState& desktops);
  void request(Plan plan, Completion completion);
  void nextRequest();
  void begin(const X11DesktopState& before, Spaces wanted, Completion completion);
  void advance();
  void countChanged();
  void finish(std::expected<void, DesktopRefusal> result);
  void windowManagerChanged();
  void rootPropertyChanged(const xcb_property_notify_event_t& event);
  void tell(const char* reason);

  const Services services_;
  X11Connection& connection_;
  X11DesktopReader& desktops_;
  X11WindowCarrier carrier_;
  std::function<void(const DesktopSign&)> observer_;
  const char* sign_ = nullptr;  ///< the reason of the sign that is to be given
  bool mayAdvance_ = false;     ///< something was heard that the change under way may wait for
  std::optional<Switch> switch_;
  std::deque<Request> requests_;
  std::optional<Change> change_;                ///< under way
  xcb_window_t checkWindow_ = XCB_WINDOW_NONE;  ///< the window whose life and properties are watched
  std::uint64_t managers_ = 0;                  ///< so many window managers were seen to come
};

}  // namespace tallowin

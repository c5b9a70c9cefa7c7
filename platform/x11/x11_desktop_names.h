#pragma once

#include <chrono>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "base/broadcaster.h"
#include "platform/clock.h"
#include "platform/desktop.h"
#include "platform/main_queue.h"
#include "platform/x11/x11_connection.h"
#include "platform/x11/x11_desktop_reader.h"

namespace tallowin {

/// What was last mirrored to _NET_DESKTOP_NAMES, and the window manager's own names under it. The property
/// _TALLOWIN_DESKTOP_NAMES of the root window holds it, so that the window manager's names outlive the program: a list
/// of texts, of which the first is the number of written names in decimal; these follow, then the others.
struct DesktopNamesRecord {
  std::vector<std::string> written;
  std::vector<std::string> own;
  bool operator==(const DesktopNamesRecord&) const = default;
};

/// Reads the property. One that is absent or makes no sense gives an empty record.
[[nodiscard]] DesktopNamesRecord parseDesktopNamesRecord(const X11Property& property);

/// The property's bytes.
[[nodiscard]] std::string encodeDesktopNamesRecord(const DesktopNamesRecord& record);

/// The texts, each followed by a zero byte, which none of them may contain.
[[nodiscard]] std::string encodeTexts(const std::vector<std::string>& texts);

/// The names that the window manager gave, when _NET_DESKTOP_NAMES is `current`.
///
/// A name that stands where the record says it was written stands for the one under it; all others are the window
/// manager's. Where desktops are `dynamic` the window manager writes all names anew whenever one comes or goes, so that
/// any of its names may stand where the same one was written for another desktop: there the list counts as a whole, as
/// written or as the window manager's.
[[nodiscard]] std::vector<std::string> ownDesktopNames(const std::vector<std::string>& current,
                                                       const DesktopNamesRecord& record, bool dynamic);

/// How the names of the desktops are, and how they are to be.
struct DesktopNamesPlan {
  std::vector<ManagedSpaceID> spaces;  ///< left to right
  bool dynamic = false;                ///< as in X11DesktopState
  std::vector<std::string> current;    ///< what stands in _NET_DESKTOP_NAMES
  DesktopNamesRecord recorded;         ///< what stands in _TALLOWIN_DESKTOP_NAMES
  std::vector<std::string> wanted;     ///< for _NET_DESKTOP_NAMES; empty for none
  DesktopNamesRecord record;           ///< for _TALLOWIN_DESKTOP_NAMES; empty for none, as nothing in `wanted` is ours
  bool operator==(const DesktopNamesPlan&) const = default;

  /// Whether there is anything to write.
  [[nodiscard]] bool changesAnything() const { return wanted != current || record != recorded; }
};

/// Puts the user's names, by managed id, over those of the window manager. Where the user has named a desktop, all have
/// a name: those that neither the user nor the window manager has named get one like the others of the window manager,
/// such as "Workspace 3" after "Workspace 1", else "Desktop 3". Zero bytes are left out of names, and what is no UTF-8
/// is replaced. Without a window manager, and where the lists are too long to be read back whole, everything stays as
/// it is. `state` is what was read from the properties.
[[nodiscard]] DesktopNamesPlan planDesktopNames(const X11DesktopProperties& properties, const X11DesktopState& state,
                                                const std::map<ManagedSpaceID, std::string>& names);

/// The window manager's own names, by managed id, that say more than which desktop it is: not its number (a mere number
/// where desktops are dynamic), nor the number after a stem, where all names have that stem. `state` is what was read
/// from the properties.
[[nodiscard]] std::map<ManagedSpaceID, std::string> tellingDesktopNames(const X11DesktopProperties& properties,
                                                                        const X11DesktopState& state);

/// Mirrors the user's names to _NET_DESKTOP_NAMES, 50 ms after the last change of anything that they depend on, and
/// only when that changes the property. The property has no owner: most window managers forget what others wrote there,
/// when they restart or when desktops come and go, and the names are written again. When somebody undoes them twice
/// within a second while the desktops stay the same, writing ends until other names are published or the window manager
/// restarts. Names that are left in place when the program ends are taken up again by the next one. Main thread only.
class X11DesktopNames : public DesktopNames {
 public:
  X11DesktopNames(X11Connection& connection, X11DesktopReader& desktops, MainQueue& queue, const Clock& clock)
      : connection_(connection), desktops_(desktops), queue_(queue), clock_(clock) {}

  void publish(const std::map<ManagedSpaceID, std::string>& names) override;
  /// Read when first asked for after a change.
  const std::map<ManagedSpaceID, std::string>& ownNames() override;
  Subscription observeOwnNames(std::function<void()> observer) override {
    return ownNamesChange_.subscribe(std::move(observer));
  }

  /// _NET_DESKTOP_NAMES has changed; `sequence` is that of the event.
  void namesChanged(std::uint16_t sequence);
  /// The desktops have changed in another way.
  void desktopsChanged();
  /// A window manager has come, gone or taken the place of another.
  void windowManagerChanged();

 private:
  void forgetRewrites();
  void forgetOwnNames();
  void applySoon();
  void apply();
  void write(const DesktopNamesPlan& plan);
  std::uint16_t writeTexts(X11Atom property, const std::string& bytes);
  [[nodiscard]] DesktopNamesPlan plan();
  [[nodiscard]] bool isRewrittenTooOften(const DesktopNamesPlan& plan);

  X11Connection& connection_;
  X11DesktopReader& desktops_;
  MainQueue& queue_;
  const Clock& clock_;

  std::optional<std::map<ManagedSpaceID, std::string>> names_;     ///< nothing before the first publish()
  std::optional<std::map<ManagedSpaceID, std::string>> ownNames_;  ///< nothing while they have to be read
  Broadcaster<> ownNamesChange_;
  WorkItem pending_;
  std::optional<std::uint16_t> ownChange_;  ///< the request whose event has not come yet: all before it are out of date
  bool dynamic_ = false;                    ///< as of the last look at the desktops
  std::optional<DesktopNamesPlan> written_;
  std::optional<std::chrono::nanoseconds> lastRewrite_;  ///< by somebody else, in system uptime
  bool stopped_ = false;
};

}  // namespace tallowin

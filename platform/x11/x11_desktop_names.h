#pragma once

#include <chrono>
#include <cstdint>
#include <map>
#include <optional>
#include <string>

#include "base/broadcaster.h"
#include "platform/clock.h"
#include "platform/desktop_names.h"
#include "platform/main_queue.h"
#include "platform/x11/x11_connection.h"
#include "platform/x11/x11_desktop_names_plan.h"
#include "platform/x11/x11_desktop_reader.h"

namespace tallowin {

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

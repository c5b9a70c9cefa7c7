#pragma once

#include <map>
#include <optional>
#include <string>
#include <utility>

#include "platform/main_queue.h"
#include "platform/x11/x11_desktop_reader.h"

namespace tallowin {

/// What the running window manager was seen to do and to ignore. What it says of itself (_NET_SUPPORTED) is no guide,
/// so every request is followed by a look at its effect; what was never seen to work is not waited for long again. Main
/// thread only.
class X11Refusals {
 public:
  enum class Request { minimize, restack, desktopCount };

  explicit X11Refusals(X11DesktopReader& desktops) : desktops_(desktops) {}

  /// Waits until `happened`, for at most a tenth of a second, or a hundredth where this request was ignored before and
  /// has never worked. Blocks. Whether it happened.
  bool confirm(Request request, const std::function<bool()>& happened);

  /// The request was seen to work after all, later than was waited for.
  void noteWorking(Request request) { worked_[request] = true; }

  /// Whether the request was ignored by this window manager and has never worked.
  [[nodiscard]] bool isRefused(Request request);

 private:
  /// Forgets everything when the window manager is another one.
  void noticeWindowManager();

  X11DesktopReader& desktops_;
  std::pair<std::uint32_t, std::string> windowManager_;
  std::map<Request, bool> worked_;  ///< nothing for what was not tried
};

/// Looks every millisecond whether something has happened, until the time is up. Blocks. Whether it happened.
[[nodiscard]] bool waitUntil(const std::function<bool()>& happened, Duration limit);

}  // namespace tallowin

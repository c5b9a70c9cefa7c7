#pragma once

#include "platform/driven_services.h"
#include "platform/property_list.h"
#include "platform/windows.h"
#include "windows/driven/ax.h"

namespace tallowin {

/// The windows of a list of the window server's (platform/window_list.h says which members an entry has). Entries with
/// required members missing or mistyped are left out; nothing at all when `list` is no list of dictionaries. Of an
/// entry "kCGWindowLayer", "kCGWindowOwnerPID", "kCGWindowNumber" and of "kCGWindowBounds" width and height are
/// required.
[[nodiscard]] std::optional<std::vector<DesktopWindow>> readWindowList(const PropertyList& list);

/// Windows as the window server lists them, changed through their applications' accessibility elements.
class DrivenWindows : public Windows {
 public:
  explicit DrivenWindows(DrivenServices services);

  std::optional<std::vector<DesktopWindow>> list(WindowScope scope) override;
  std::optional<DesktopWindow> window(WindowNumber window) override;
  std::optional<WindowNumber> focused(ProcessID pid) override { return ax_.focusedWindowID(pid); }
  bool mayChange() override { return ax_.isTrusted(); }
  bool raise(const WindowRef& window) override;
  bool setFrame(const WindowRef& window, const CGRect& frame) override;
  bool minimize(const WindowRef& window) override;
  bool unminimize(const WindowRef& window) override;
  bool close(const WindowRef& window, Duration atMost) override;
  bool observe(std::function<void()> /*observer*/) override { return false; }

 private:
  [[nodiscard]] AXUIElement element(const WindowRef& window) const { return ax_.element(window.id, window.pid); }

  WindowList& windowList_;
  const AX ax_;
};

}  // namespace tallowin

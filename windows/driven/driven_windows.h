#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/accessibility.h"
#include "platform/driven_services.h"
#include "platform/identifiers.h"
#include "platform/property_list.h"
#include "platform/window_server.h"
#include "platform/windows.h"

namespace tallowin {

/// What the window services share of accessibility: other applications' windows as elements that can be read and
/// changed. Without permission, and for what no longer exists, every query answers nothing and every request false.
/// Main thread only; each call on an application waits at most its messaging timeout.
class AX {
 public:
  static constexpr Duration messagingTimeout = Windows::patience;

  AX(Accessibility& accessibility, WindowServer& windowServer)
      : accessibility_(accessibility), windowServer_(windowServer) {}

  /// Whether this program may use accessibility. Asks nobody.
  [[nodiscard]] bool isTrusted() const { return accessibility_.AXIsProcessTrusted(); }

  /// The application element of a process, with its messaging timeout set. Null without permission.
  [[nodiscard]] AXUIElement application(ProcessID pid, Duration timeout = messagingTimeout) const;

  /// The window of an application that receives its key events. Never 0.
  [[nodiscard]] std::optional<WindowNumber> focusedWindowID(ProcessID pid) const;

  /// The windows of an application element, as the application lists them.
  [[nodiscard]] std::vector<AXUIElement> windows(const AXUIElement& appElement) const;

  /// The element of a window of this process, or null. Other elements that the application lists do not matter.
  [[nodiscard]] AXUIElement element(WindowNumber window, ProcessID pid, Duration timeout = messagingTimeout) const;

  /// The text of an attribute; nothing when it is absent or no text.
  [[nodiscard]] std::optional<std::string> text(const AXUIElement& element, std::string_view attribute) const;

  /// The elements of a list attribute such as "AXChildren"; none when it is absent or no list.
  [[nodiscard]] std::vector<AXUIElement> elements(const AXUIElement& element, std::string_view attribute) const;

  /// "AXPosition" and "AXSize", in screen coordinates, origin top left; nothing when either is missing.
  [[nodiscard]] std::optional<CGRect> frame(const AXUIElement& element) const;

  /// Sets "AXPosition" and then "AXSize", the second also if the first was refused. True when both were accepted, which
  /// does not mean that the window now has this frame.
  bool setFrame(const AXUIElement& element, const CGRect& rect) const;

  /// "AXMinimized"; false when it is missing.
  [[nodiscard]] bool isMinimized(const AXUIElement& element) const;
  bool setMinimized(const AXUIElement& element, bool minimized) const;

  /// Makes the window its application's main window and raises it among the application's windows. False when either
  /// was refused. Does not activate the application.
  bool raise(const AXUIElement& element) const;

  /// Presses an element, as a button. False when it was refused.
  bool press(const AXUIElement& element) const;

  /// Presses the window's close button. The application may ask its user and keep the window; true says only that the
  /// button was pressed.
  bool close(const AXUIElement& element) const;

 private:
  [[nodiscard]] AXValue value(const AXUIElement& element, std::string_view attribute) const;
  bool set(const AXUIElement& element, std::string_view attribute, const AXValue& value) const;
  bool perform(const AXUIElement& element, std::string_view action) const;

  Accessibility& accessibility_;
  WindowServer& windowServer_;
};

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

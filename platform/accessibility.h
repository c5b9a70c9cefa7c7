#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "platform/geometry.h"
#include "platform/identifiers.h"
#include "platform/main_queue.h"

namespace tallowin {

/// What a platform keeps behind an accessibility element. Opaque to everybody else.
class AXElementHandle {
 public:
  virtual ~AXElementHandle() = default;

  /// What C functions of the platform take for the element (AXUIElementRef). Valid as long as the element.
  [[nodiscard]] virtual const void* reference() const { return this; }
};

/// An element of another application's interface: the application, a window, a button. Elements are counted references,
/// as AXUIElementRef is: the owners are whoever copied one and the platform's own table of elements. Null is no
/// element.
using AXUIElement = std::shared_ptr<const AXElementHandle>;

/// The value of an attribute. The empty alternative stands for "no such attribute" and for every failure.
using AXValue = std::variant<std::monostate, bool, std::string, CGPoint, CGSize, AXUIElement, std::vector<AXUIElement>>;

/// Other applications' interfaces, under the names of HIServices. Without permission every query answers nothing and
/// every request false. Main thread only; a call is bounded by the element's messaging timeout.
class Accessibility {
 public:
  virtual ~Accessibility() = default;

  /// Whether this process may use accessibility and post events.
  virtual bool AXIsProcessTrusted() = 0;

  /// The same; with `prompt` (kAXTrustedCheckOptionPrompt) the system may also ask the user to allow it, without
  /// waiting for the answer.
  virtual bool AXIsProcessTrustedWithOptions(bool prompt) = 0;

  /// The application element of a process. Never null; queries answer nothing when there is no such process.
  virtual AXUIElement AXUIElementCreateApplication(ProcessID pid) = 0;

  /// Bounds every later call on this element and those reached through it.
  virtual void AXUIElementSetMessagingTimeout(const AXUIElement& element, Duration timeout) = 0;

  /// An attribute such as "AXWindows", "AXFocusedWindow", "AXTitle", "AXRole", "AXChildren", "AXDescription",
  /// "AXPosition", "AXSize", "AXCloseButton". Positions are in screen coordinates, origin top left.
  virtual AXValue AXUIElementCopyAttributeValue(const AXUIElement& element, std::string_view attribute) = 0;

  /// Sets an attribute such as "AXMain", "AXMinimized", "AXPosition", "AXSize". True when the application accepted it.
  virtual bool AXUIElementSetAttributeValue(const AXUIElement& element, std::string_view attribute,
                                            const AXValue& value) = 0;

  /// Performs "AXPress" or "AXRaise". True when the application accepted it.
  virtual bool AXUIElementPerformAction(const AXUIElement& element, std::string_view action) = 0;
};

}  // namespace tallowin

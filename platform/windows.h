#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/geometry.h"
#include "platform/identifiers.h"
#include "platform/main_queue.h"

namespace tallowin {

/// Names a window. The process is known to whoever knows the window, and spares a search.
struct WindowRef {
  WindowNumber id = 0;
  ProcessID pid = 0;  ///< of the application that owns it
  bool operator==(const WindowRef&) const = default;
};

/// A window of any program as it was when it was listed.
struct DesktopWindow {
  WindowNumber id = 0;
  ProcessID pid = 0;                     ///< of the application that owns it
  std::optional<std::string> ownerName;  ///< what that application is called, where that is known
  std::optional<std::string> title;
  CGRect frame;      ///< with its decoration, in screen coordinates, origin top left
  int layer = 0;     ///< 0 for ordinary windows
  double alpha = 1;  ///< 0 is invisible
  /// The Spaces that show it, where listing tells; else Desktop::spacesOfWindow() does.
  std::optional<std::vector<ManagedSpaceID>> spaces;
  bool operator==(const DesktopWindow&) const = default;
};

/// Which windows to list.
enum class WindowScope {
  all,       ///< on all Spaces, minimised ones too
  onScreen,  ///< on Spaces that are shown, and not minimised
};

/// The windows of all programs, and what can be done to them. No operation fails loudly: what cannot be had is nothing,
/// what cannot be done answers false. list() may be called on any thread, everything else on the main thread only.
class Windows {
 public:
  /// Long enough for an application that works, short enough not to hang with one that does not.
  static constexpr Duration patience = std::chrono::milliseconds(250);

  virtual ~Windows() = default;

  /// The windows, front to back. Entries that make no sense are left out. Nothing when they cannot be had.
  virtual std::optional<std::vector<DesktopWindow>> list(WindowScope scope) = 0;

  /// One window, wherever it is; nothing when there is none of this number.
  virtual std::optional<DesktopWindow> window(WindowNumber window) = 0;

  /// The window of this application that receives its key events. Never 0.
  virtual std::optional<WindowNumber> focused(ProcessID pid) = 0;

  /// Whether windows may be changed at all: where the user has to allow it, whether that was done.
  virtual bool mayChange() = 0;

  /// Brings a window to the front of its application's, and makes it the one that gets their keys. Does not activate
  /// the application. False when the window cannot be reached, as on some desktops those on other Spaces.
  virtual bool raise(const WindowRef& window) = 0;

  /// Gives a window this frame, unless it has it. Whether the window can be reached, not whether it now has the frame.
  virtual bool setFrame(const WindowRef& window, const CGRect& frame) = 0;

  /// Minimises a window. True when it was shown before and the request was accepted.
  virtual bool minimize(const WindowRef& window) = 0;

  /// Shows a minimised window again. True when the request was accepted.
  virtual bool unminimize(const WindowRef& window) = 0;

  /// Asks the application to close a window, as its close button does, waiting no longer than this for it to listen.
  /// The application may ask its user and keep the window.
  virtual bool close(const WindowRef& window, Duration patience) = 0;

  /// Makes `observer` the one who is told, on the main thread, when windows came, went, or changed in anything that
  /// list() tells. False where changes are not told, so that one has to look from time to time.
  virtual bool observe(std::function<void()> observer) = 0;
};

}  // namespace tallowin

#pragma once

#include <functional>
#include <optional>
#include <vector>

#include "platform/main_queue.h"
#include "platform/windows.h"
#include "platform/x11/x11_applications.h"
#include "platform/x11/x11_window_actions.h"
#include "platform/x11/x11_window_reader.h"

namespace tallowin {

/// The managed windows of other programs. Numbers are those of X11WindowNumbers, frames have their decoration, and
/// desktop pictures are not listed. Main thread only, list() too: there is one connection.
class X11Windows : public Windows {
 public:
  X11Windows(X11Connection& connection, X11WindowReader& reader, X11Applications& applications,
             X11WindowActions& actions, MainQueue& queue)
      : connection_(connection), reader_(reader), applications_(applications), actions_(actions), queue_(queue) {}

  /// At most three round trips, however many windows there are.
  std::optional<std::vector<DesktopWindow>> list(WindowScope scope) override;
  std::optional<DesktopWindow> window(WindowNumber window) override;
  std::optional<WindowNumber> focused(ProcessID pid) override;
  bool mayChange() override { return connection_.alive(); }
  bool raise(const WindowRef& window) override;
  bool setFrame(const WindowRef& window, const CGRect& frame) override;
  bool minimize(const WindowRef& window) override;
  bool unminimize(const WindowRef& window) override;
  bool close(const WindowRef& window, Duration patience) override;
  /// Told in the turn after a change, and then at most every tenth of a second.
  bool observe(std::function<void()> observer) override;

  /// Takes an event of the server.
  void handle(const xcb_generic_event_t& event);

 private:
  [[nodiscard]] DesktopWindow describe(const X11Window& window, WindowNumber number,
                                       const X11ApplicationSnapshot& snapshot) const;
  void tellAfter(Duration delay);
  [[nodiscard]] bool isChange(const xcb_generic_event_t& event) const;

  X11Connection& connection_;
  X11WindowReader& reader_;
  X11Applications& applications_;
  X11WindowActions& actions_;
  MainQueue& queue_;
  std::function<void()> observer_;
  bool hasChanged_ = false;  ///< since the observer was told
  WorkItem telling_;         ///< tells, or waits until the observer may be told again
};

}  // namespace tallowin

#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <vector>
#include <xcb/xcb.h>

#include "platform/identifiers.h"

namespace tallowin {

/// The numbers under which windows are known outside the X11 binding. The server gives the id of a window that has gone
/// to the next one, at once when a client ends; a number belongs to one window only. It is the window's id, unless that
/// id may have belonged to another one before: then it is a number that no id can be. Main thread only.
class X11WindowNumbers {
 public:
  /// No X resource has an id with one of the top three bits set (X11 protocol, Common Types).
  static constexpr WindowNumber firstThatIsNoID = 1U << 29;

  /// Asks the server for the end of a window (StructureNotify) and answers the sequence number of that request.
  using Watch = std::function<std::uint32_t(xcb_window_t)>;

  /// `resourceMask` are the bits of an id that a client chooses; the others tell which client it is.
  X11WindowNumbers(std::uint32_t resourceMask, Watch watch) : resourceMask_(resourceMask), watch_(std::move(watch)) {}

  /// Numbers the windows that have none yet. They are managed now.
  void noteManaged(const std::vector<xcb_window_t>& windows);
  /// Those with a number that are not among `windows`.
  [[nodiscard]] std::vector<xcb_window_t> missingFrom(const std::vector<xcb_window_t>& windows) const;
  /// Ends a window's number: what has its id from now on is another window.
  void noteGone(xcb_window_t window);
  /// Takes an event of the server; an error of an unchecked request is one too. Whether it ended a window that could be
  /// read when it got its number.
  bool handle(const xcb_generic_event_t& event);

  /// Nothing for a window that has no number or whose number has ended.
  [[nodiscard]] std::optional<WindowNumber> number(xcb_window_t window) const;
  /// The window with this number. An id that was never a number stands for itself, as a user may know it from
  /// elsewhere. Nothing when the number has ended.
  [[nodiscard]] std::optional<xcb_window_t> window(WindowNumber number) const;

 private:
  struct Numbered {
    WindowNumber number = 0;
    std::uint32_t watchedSince = 0;  ///< a sequence number: what the server said before is about an earlier window
  };

  [[nodiscard]] bool mayHaveBelongedToAnother(xcb_window_t window) const;
  void end(xcb_window_t window);

  const std::uint32_t resourceMask_;
  const Watch watch_;

  std::map<xcb_window_t, Numbered> numbered_;
  std::map<WindowNumber, xcb_window_t> windows_;  ///< for the numbers that are no ids
  /// The highest id of a window that has gone, for each client's bits: clients count upwards, and a number too many
  /// that is no id does no harm. So there are never more entries than the server takes clients.
  std::map<std::uint32_t, xcb_window_t> highestGone_;
  WindowNumber next_ = firstThatIsNoID;
};

}  // namespace tallowin

#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/program_services.h"
#include "platform/pinned.h"
#include "windows/window_mover.h"

namespace tallowin {

/// Windows marked with a letter, the letter keys that the user is asked for, and the commands about them, with what the
/// user is told. In memory only. Main thread only.
class WindowMarks : Pinned {
 public:
  /// How long a letter is waited for.
  static constexpr Duration captureTime = std::chrono::seconds(2);

  /// What went wrong, in the words that the user was told.
  using Fault = std::optional<std::string>;

  /// `switchTo` switches as this program's own doing.
  WindowMarks(const ProgramServices& services, WindowMover& mover, std::function<void(const Space&)> switchTo)
      : services_(services), mover_(mover), switchTo_(std::move(switchTo)) {}

  /// Marks the front window, as it is now, with the letter that the user presses next, or with a given one (as letter()
  /// answers it).
  Fault setMark();
  Fault setMark(const std::string& letter);

  /// Goes to the window marked with the letter that the user presses next, or with a given one: switches to its Space,
  /// if that is not active, and raises it, unless the user has gone elsewhere by then. A window that no longer exists
  /// changes nothing.
  void jumpToMark();
  Fault jumpToMark(const std::string& letter);

  /// Takes the letter keys A to Z from all other programs until one is pressed, which `onLetter` is told in upper case,
  /// or for two seconds; then nothing more happens. Letters that another program has taken cannot be pressed here. A
  /// capture that is going on is given up.
  void captureLetter(std::function<void(const std::string& letter)> onLetter);

  /// The letter of A to Z that a text writes in either case, in upper case; nothing for any other text.
  [[nodiscard]] static std::optional<std::string> letter(std::string_view text);

  /// The window marked with a letter in upper case; the last one, of several.
  [[nodiscard]] std::optional<WindowRef> find(const std::string& letter) const;

 private:
  void captured(std::string letter);
  void endCapture();
  Fault fail(const std::string& message);
  void mark(const FrontWindow& window, const std::string& letter);
  [[nodiscard]] std::optional<Space> spaceToSwitchTo(WindowNumber window) const;

  const ProgramServices& services_;
  WindowMover& mover_;
  const std::function<void(const Space&)> switchTo_;
  std::map<std::string, WindowRef> marks_;
  std::function<void(const std::string&)> onLetter_;
  std::vector<std::unique_ptr<HotKey>> pending_;  ///< the keys of the capture that is going on
  WorkItem timeout_;
};

}  // namespace tallowin

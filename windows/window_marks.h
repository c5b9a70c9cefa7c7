#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "base/subscriptions.h"
#include "core/program_services.h"
#include "core/space_watcher.h"
#include "platform/desktop.h"
#include "platform/global_hot_keys.h"
#include "platform/main_queue.h"
#include "platform/toasts.h"
#include "windows/window_mover.h"

namespace tallowin {

/// Windows marked with a letter, and the letter keys that the user is asked for. In memory only. Main thread only.
class WindowMarks {
 public:
  /// How long a letter is waited for.
  static constexpr Duration captureTime = std::chrono::seconds(2);

  WindowMarks(GlobalHotKeys& hotKeys, MainQueue& mainQueue) : hotKeys_(hotKeys), mainQueue_(mainQueue) {}
  WindowMarks(const WindowMarks&) = delete;
  WindowMarks& operator=(const WindowMarks&) = delete;

  /// Takes the letter keys A to Z from all other programs until one is pressed, which `onLetter` is told in upper case,
  /// or for two seconds; then nothing more happens. Letters that another program has taken cannot be pressed here. A
  /// capture that is going on is given up.
  void captureLetter(std::function<void(const std::string& letter)> onLetter);

  /// The letter of A to Z that a text writes in either case, in upper case; nothing for any other text.
  [[nodiscard]] static std::optional<std::string> letter(std::string_view text);

  /// Marks and looks up by a letter in upper case. A letter marks one window, the last.
  void set(const std::string& letter, WindowRef mark) { marks_.insert_or_assign(letter, mark); }
  [[nodiscard]] std::optional<WindowRef> find(const std::string& letter) const;

 private:
  void captured(std::string letter);
  void endCapture();

  GlobalHotKeys& hotKeys_;
  MainQueue& mainQueue_;
  std::map<std::string, WindowRef> marks_;
  std::function<void(const std::string&)> onLetter_;
  Subscriptions pending_;  ///< the keys of the capture that is going on
  WorkItem timeout_;
};

/// The user's commands about marks, with what the user is told of them. Main thread only.
class MarkCommands {
 public:
  MarkCommands(const ProgramServices& services, WindowMarks& marks, WindowMover& mover,
               std::function<void(const Space&)> switchTo)
      : services_(services), marks_(marks), mover_(mover), switchTo_(std::move(switchTo)) {}
  MarkCommands(const MarkCommands&) = delete;
  MarkCommands& operator=(const MarkCommands&) = delete;

  /// What went wrong, in the words that the user was told.
  using Fault = std::optional<std::string>;

  /// Marks the front window, as it is now, with the letter that the user presses next, or with a given one (as
  /// WindowMarks::letter() answers it).
  Fault setMark();
  Fault setMark(const std::string& letter);

  /// Goes to the window marked with the letter that the user presses next, or with a given one: switches to its Space,
  /// if that is not active, and raises it, unless the user has gone elsewhere by then. A window that no longer exists
  /// changes nothing.
  void jumpToMark();
  Fault jumpToMark(const std::string& letter);

 private:
  Fault fail(const std::string& message);
  void mark(const FrontWindow& window, const std::string& letter);
  [[nodiscard]] std::optional<Space> spaceToSwitchTo(WindowNumber window) const;

  const ProgramServices& services_;
  WindowMarks& marks_;
  WindowMover& mover_;
  std::function<void(const Space&)> switchTo_;
};

}  // namespace tallowin

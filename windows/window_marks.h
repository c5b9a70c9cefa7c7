#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "base/subscriptions.h"
#include "platform/global_hot_keys.h"
#include "platform/identifiers.h"
#include "platform/main_queue.h"

namespace tallowin {

/// Windows marked with a letter, and the letter keys that the user is asked for. In memory only. Main thread only.
class WindowMarks {
 public:
  /// How long a letter is waited for.
  static constexpr Duration captureTime = std::chrono::seconds(2);

  /// A window of an application.
  struct Mark {
    WindowNumber id = 0;
    ProcessID pid = 0;
    bool operator==(const Mark&) const = default;
  };

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
  void set(const std::string& letter, Mark mark) { marks_.insert_or_assign(letter, mark); }
  [[nodiscard]] std::optional<Mark> find(const std::string& letter) const;

 private:
  void captured(std::string letter);
  void endCapture();

  GlobalHotKeys& hotKeys_;
  MainQueue& mainQueue_;
  std::map<std::string, Mark> marks_;
  std::function<void(const std::string&)> onLetter_;
  Subscriptions pending_;  ///< the keys of the capture that is going on
  WorkItem timeout_;
};

}  // namespace tallowin

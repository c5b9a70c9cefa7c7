#include "windows/window_marks.h"

#include <algorithm>
#include <utility>

namespace tallowin {

namespace {

/// The virtual key codes of the letters A to Z on the ANSI keyboard (HIToolbox/Events.h, kVK_ANSI_A and so on).
constexpr VirtualKeyCode letterKeys[] = {0,  11, 8,  2,  14, 3, 5,  4,  34, 38, 40, 37, 46,
                                         45, 31, 35, 12, 15, 1, 17, 32, 9,  13, 7,  16, 6};

}  // namespace

void WindowMarks::captureLetter(std::function<void(const std::string& letter)> onLetter) {
  endCapture();
  onLetter_ = std::move(onLetter);
  char name = 'A';
  for (const auto key : letterKeys) {
    auto registered = hotKeys_.registerHotKey(key, 0, [this, letter = std::string(1, name)] { captured(letter); });
    if (registered) {
      pending_.add(*std::move(registered));
    }
    ++name;
  }
  timeout_ = mainQueue_.after(captureTime, [this] { endCapture(); });
}

/// Takes a copy of the letter: ending the capture ends the hot key whose press this is, and everything that it holds.
void WindowMarks::captured(std::string letter) {
  const auto onLetter = std::exchange(onLetter_, nullptr);
  endCapture();
  if (onLetter) {
    onLetter(letter);
  }
}

void WindowMarks::endCapture() {
  pending_.cancel();
  timeout_.cancel();
  onLetter_ = nullptr;
}

std::optional<std::string> WindowMarks::letter(std::string_view text) {
  constexpr char toUpperCase = 'A' - 'a';
  if (text.size() != 1) {
    return std::nullopt;
  }
  char c = text.front();
  c = static_cast<char>(c >= 'a' && c <= 'z' ? c + toUpperCase : c);
  return c >= 'A' && c <= 'Z' ? std::optional(std::string(1, c)) : std::nullopt;
}

std::optional<WindowMarks::Mark> WindowMarks::find(const std::string& letter) const {
  const auto found = marks_.find(letter);
  return found != marks_.end() ? std::optional(found->second) : std::nullopt;
}

}  // namespace tallowin

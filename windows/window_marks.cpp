#include "windows/window_marks.h"

#include <algorithm>
#include <utility>

namespace tallowin {

namespace {

/// The virtual key codes of the letters A to Z on the ANSI keyboard (HIToolbox/Events.h, kVK_ANSI_A and so on).
constexpr VirtualKeyCode letterKeys[] = {0,  11, 8,  2,  14, 3, 5,  4,  34, 38, 40, 37, 46,
                                         45, 31, 35, 12, 15, 1, 17, 32, 9,  13, 7,  16, 6};

constexpr auto noWindow = "No window to mark";

}  // namespace

void WindowMarks::captureLetter(std::function<void(const std::string& letter)> onLetter) {
  endCapture();
  onLetter_ = std::move(onLetter);
  char name = 'A';
  for (const auto key : letterKeys) {
    pending_.push_back(
        services_.globalHotKeys.registerHotKey(key, 0, [this, letter = std::string(1, name)] { captured(letter); }));
    ++name;
  }
  timeout_ = services_.mainQueue.after(captureTime, [this] { endCapture(); });
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
  pending_.clear();
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

std::optional<WindowRef> WindowMarks::find(const std::string& letter) const {
  const auto found = marks_.find(letter);
  return found != marks_.end() ? std::optional(found->second) : std::nullopt;
}

WindowMarks::Fault WindowMarks::fail(const std::string& message) {
  services_.toasts.show({message, std::nullopt});
  return message;
}

WindowMarks::Fault WindowMarks::setMark() {
  const auto window = mover_.frontWindow();
  if (!window) {
    return fail(noWindow);
  }
  services_.toasts.show({"Press a letter to mark this window", std::nullopt});
  captureLetter([this, window = *window](const std::string& letter) { mark(window, letter); });
  return std::nullopt;
}

WindowMarks::Fault WindowMarks::setMark(const std::string& letter) {
  const auto window = mover_.frontWindow();
  if (!window) {
    return fail(noWindow);
  }
  mark(*window, letter);
  return std::nullopt;
}

void WindowMarks::mark(const FrontWindow& window, const std::string& letter) {
  marks_.insert_or_assign(letter, WindowRef{window.id, window.pid});
  services_.toasts.show({"Marked as " + letter, "bookmark.fill"});
}

void WindowMarks::jumpToMark() {
  captureLetter([this](const std::string& letter) { jumpToMark(letter); });
}

WindowMarks::Fault WindowMarks::jumpToMark(const std::string& letter) {
  const auto mark = find(letter);
  if (!mark) {
    return fail("Nothing is marked as " + letter);
  }
  const FrontWindow window{mark->id, mark->pid, {}};
  const auto elsewhere = spaceToSwitchTo(window.id);
  if (!elsewhere) {
    mover_.raise(window);
    return std::nullopt;
  }
  switchTo_(*elsewhere);
  mover_.raiseAfterSwitch(window, elsewhere->managedID);
  return std::nullopt;
}

/// The first Space that shows a window; nothing when one that does is active, or none is known.
std::optional<Space> WindowMarks::spaceToSwitchTo(WindowNumber window) const {
  const auto& snapshot = services_.watcher.fresh();
  std::vector<Space> spaces;
  for (const auto id : services_.desktop.spacesOfWindow(window).value_or(std::vector<ManagedSpaceID>())) {
    if (const auto space = snapshot.managed(id)) {
      spaces.push_back(*space);
    }
  }
  return spaces.empty() || std::ranges::any_of(spaces, &Space::isActive) ? std::nullopt : std::optional(spaces.front());
}

}  // namespace tallowin

#include "app/switch_mode.h"

#include <algorithm>
#include <array>
#include <ios>
#include <string_view>

#include "base/property_list_reading.h"
#include "base/words.h"
#include "commands/driven/space_driver.h"
#include "commands/exit_status.h"
#include "commands/space_switcher.h"

namespace tallowin {

namespace {

struct Wait {
  Duration duration;
  std::string_view seconds;
};

constexpr auto waits = std::to_array<Wait>({{std::chrono::milliseconds(200), "0.2"},
                                            {std::chrono::milliseconds(500), "0.5"},
                                            {std::chrono::milliseconds(1000), "1.0"},
                                            {std::chrono::milliseconds(2000), "2.0"}});

/// The desktop that the menu-bar display shows; 0 for none and for a full-screen Space.
std::int64_t activeDesktop(const std::optional<SpaceSnapshot>& snapshot) {
  const auto active = snapshot ? snapshot->activeSpace() : std::nullopt;
  return active ? active->desktopNumber.value_or(0) : 0;
}

void printHotKey(const DesktopHotKey& key, std::ostream& out) {
  out << "hotkey " << key.hotKey << ": bound=" << trueOrFalse(key.isBound) << " keyCode=" << key.keyCode << " mods=0x"
      << std::hex << key.modifierFlags << std::dec << " enabled=" << trueOrFalse(key.isEnabled) << '\n';
}

bool screenIsLocked(System& system) {
  return property_list::member(system.CGSessionCopyCurrentDictionary(), "CGSSessionScreenIsLocked",
                               property_list::boolean)
      .value_or(false);
}

/// Lets time pass until the desktop is seen to be active. Answers whether it was.
bool observeSwitch(std::int64_t number, RunLoop& runLoop, const SpaceProvider& provider, std::ostream& out) {
  for (const auto& [duration, seconds] : waits) {
    runLoop.runFor(duration);
    if (runLoop.stopped()) {
      return false;
    }
    const auto active = activeDesktop(provider.snapshot());
    out << "  after " << seconds << "s active desktop: " << active << std::endl;
    if (active == number) {
      return true;
    }
  }
  return false;
}

}  // namespace

int runSwitch(const SwitchRequest& request, const Platform& platform, const SpaceProvider& provider,
              const Settings& settings, std::ostream& out, std::ostream& error) {
  if (request.classic && !settings.set(setting::switchMode, SwitchMode::classic)) {
    error << "tallowin: the setting switchMode could not be stored\n";
    return exit_status::cannotCreate;
  }
  if (screenIsLocked(platform.system)) {
    out << "warning: screen is locked, the Dock ignores space switches until it is unlocked\n";
  }
  const auto snapshot = provider.snapshot();
  if (!snapshot) {
    out << "no snapshot\n";
    return exit_status::failure;
  }
  const auto number = request.desktopNumber;
  const auto target = snapshot->desktop(number);
  if (!target) {
    out << "desktop " << number << " not found\n";
    return exit_status::failure;
  }
  printHotKey(hotKeyOfDesktop(number, platform.driven), out);
  out << "accessibility trusted: " << trueOrFalse(platform.windows.mayChange()) << '\n';
  SpaceSwitcher switcher({platform.asked, platform.driven, platform.events, platform.displays, platform.preferences,
                          platform.system, platform.mainQueue, platform.clock, settings, platform.log});
  out << "switch to desktop " << number << ": " << (switcher.switchTo(*target, *snapshot) ? "posted" : "failed")
      << std::endl;
  if (observeSwitch(number, platform.runLoop, provider, out)) {
    return exit_status::success;
  }
  // Being told to end early is no success.
  const int stopped = platform.runLoop.stopped().value_or(exit_status::success);
  return stopped != exit_status::success ? stopped : exit_status::notObserved;
}

}  // namespace tallowin

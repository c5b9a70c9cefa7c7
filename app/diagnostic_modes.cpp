#include "app/diagnostic_modes.h"

#include <algorithm>
#include <array>
#include <ios>
#include <string>
#include <string_view>

#include "app/previews.h"
#include "base/app_paths.h"
#include "base/property_list_reading.h"
#include "base/words.h"
#include "commands/driven/space_driver.h"
#include "commands/outcome.h"
#include "commands/space_switcher.h"
#include "core/display_lookup.h"

namespace tallowin {

namespace {

void print(const Space& space, std::ostream& out) {
  out << "  " << (space.isActive ? '*' : ' ') << " [" << space.indexOnDisplay << "] ";
  if (space.isFullscreen) {
    out << "fullscreen pid=" << space.fullscreenPID.value_or(0);
  } else {
    out << "desktop " << space.desktopNumber.value_or(0);
  }
  out << " managed=" << space.managedID << " id=" << space.id << '\n';
}

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

using Json = nlohmann::ordered_json;

template <typename Value>
Json orNull(const std::optional<Value>& value) {
  return value ? Json(*value) : Json();
}

Json describe(const Space& space) {
  return {{"id", space.id},
          {"managedID", space.managedID},
          {"desktopNumber", orNull(space.desktopNumber)},
          {"indexOnDisplay", space.indexOnDisplay},
          {"isFullscreen", space.isFullscreen},
          {"fullscreenPID", orNull(space.fullscreenPID)}};
}

Json describe(const DisplaySpaces& display) {
  auto spaces = Json::array();
  for (const auto& space : display.spaces) {
    spaces.push_back(describe(space));
  }
  return {{"id", display.id},
          {"isMenuBarDisplay", display.isMenuBarDisplay},
          {"activeSpaceID", orNull(display.activeSpaceID)},
          {"spaces", std::move(spaces)}};
}

Json describe(const std::vector<DisplaySpaces>& displays) {
  auto list = Json::array();
  for (const auto& display : displays) {
    list.push_back(describe(display));
  }
  return list;
}

}  // namespace

int runProbe(const Platform& platform, const SpaceProvider& provider, std::ostream& out) {
  const auto health = platform.desktop.health();
  out << "bridge health: 0b" << binary(health.bits()) << " healthy=" << trueOrFalse(health.healthy()) << '\n';
  if (const auto snapshot = provider.snapshot()) {
    for (const auto& display : snapshot->displays) {
      const auto screen = screenWithIdentifier(platform.displays, display.id);
      out << "display " << display.id << " menuBar=" << trueOrFalse(display.isMenuBarDisplay)
          << " name=" << (screen ? screen->localizedName : "Display") << '\n';
      for (const auto& space : display.spaces) {
        print(space, out);
      }
    }
  } else {
    out << "snapshot unavailable\n";
  }
  out << "accessibility=" << trueOrFalse(platform.windows.mayChange())
      << " screenRecording=" << trueOrFalse(platform.screenCapture.CGPreflightScreenCaptureAccess()) << '\n';
  return exit_status::success;
}

int runCapture(const Platform& platform, const SpaceProvider& provider, std::ostream& out) {
  constexpr auto slice = std::chrono::milliseconds(50);
  out << "screen recording granted: " << trueOrFalse(platform.screenCapture.CGPreflightScreenCaptureAccess()) << '\n';
  const auto snapshot = provider.snapshot();
  if (!snapshot) {
    out << "no snapshot\n";
    return exit_status::failure;
  }
  const AppPaths paths(platform.files, platform.folders);
  PreviewService previews(platform, paths);
  std::optional<std::set<std::string>> captured;
  previews.captureActiveSpaces(*snapshot, Duration::zero(),
                               [&captured](const std::set<std::string>& written) { captured = written; });
  while (!captured && !platform.runLoop.stopped()) {
    platform.runLoop.runFor(slice);
  }
  for (const auto& space : snapshot->activeSpaces()) {
    if (captured && captured->contains(space.id)) {
      out << previews.imageFile(space).string() << '\n';
    } else {
      out << "no image for " << space.id << '\n';
    }
  }
  return platform.runLoop.stopped().value_or(exit_status::success);
}

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
  SpaceSwitcher switcher({platform, settings});
  out << "switch to desktop " << number << ": " << (switcher.switchTo(*target, *snapshot) ? "posted" : "failed")
      << std::endl;
  if (observeSwitch(number, platform.runLoop, provider, out)) {
    return exit_status::success;
  }
  // Being told to end early is no success.
  const int stopped = platform.runLoop.stopped().value_or(exit_status::success);
  return stopped != exit_status::success ? stopped : exit_status::notObserved;
}

Json endState(const std::optional<std::vector<DisplaySpaces>>& displays, Preferences& preferences) {
  auto set = Json::object();
  for (const auto& [key, value] : preferences.persistentDomain()) {
    set[key] = value;
  }
  return {{"snapshot", displays ? describe(*displays) : Json()}, {"preferences", std::move(set)}};
}

}  // namespace tallowin

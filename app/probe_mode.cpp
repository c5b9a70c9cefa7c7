#include "app/probe_mode.h"

#include <bitset>
#include <string>

#include "base/words.h"
#include "commands/exit_status.h"
#include "core/display_lookup.h"

namespace tallowin {

namespace {

std::string binary(std::uint32_t bits) {
  const auto digits = std::bitset<32>(bits).to_string();
  const auto first = digits.find('1');
  return first == std::string::npos ? "0" : digits.substr(first);
}

void print(const Space& space, std::ostream& out) {
  out << "  " << (space.isActive ? '*' : ' ') << " [" << space.indexOnDisplay << "] ";
  if (space.isFullscreen) {
    out << "fullscreen pid=" << space.fullscreenPID.value_or(0);
  } else {
    out << "desktop " << space.desktopNumber.value_or(0);
  }
  out << " managed=" << space.managedID << " id=" << space.id << '\n';
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

}  // namespace tallowin

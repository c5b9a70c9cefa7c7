#include "app/program.h"

#include "app/app_delegate.h"
#include "app/diagnostic_modes.h"
#include "app/doctor.h"
#include "app/settings_mode.h"
#include "commands/outcome.h"

namespace tallowin {

int runProgram(const CommandLine& line, const Platform& platform, Storage& storage, std::ostream& out,
               std::ostream& error) {
  Settings settings(platform.preferences);
  settings.registerDefaults();
  if (line.demo) {
    settings.impose(setting::demoMode, true);
  }
  const SpaceProvider provider(platform.desktop, platform.clock, platform.log);
  switch (line.mode) {
    case Mode::probe:
      return runProbe(platform, provider, out);
    case Mode::switchSpace:
      return runSwitch({line.desktopNumber, line.classic}, platform, provider, settings, out, error);
    case Mode::capture:
      return runCapture(platform, provider, out);
    case Mode::listSettings:
      return listSettings(settings, out, error);
    case Mode::getSetting:
      return getSetting(settings, line.settingKey, out, error);
    case Mode::setSetting:
      return setSetting(settings, line.settingKey, line.settingValue, error);
    case Mode::unsetSetting:
      return unsetSetting(settings, line.settingKey, error);
    case Mode::resident: {
      AppDelegate delegate(platform, storage, settings, provider, {line.settingsTab, line.port}, error);
      delegate.applicationDidFinishLaunching();
      return platform.runLoop.run();
    }
    case Mode::doctor:
      return runDoctor(platform, storage, settings, line, out);
    case Mode::version:
    case Mode::help:
      break;
  }
  return exit_status::success;
}

ProgramVersion programVersion() {
  return {TALLOWIN_VERSION, TALLOWIN_BUILD};
}

}  // namespace tallowin

#include "app/program.h"

#include "app/capture_mode.h"
#include "app/doctor.h"
#include "app/probe_mode.h"
#include "app/resident_mode.h"
#include "app/settings_mode.h"
#include "app/switch_mode.h"
#include "commands/exit_status.h"

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
    case Mode::resident:
      return runResident(platform, storage, settings, provider, {line.settingsTab, line.port}, error);
    case Mode::doctor:
      return runDoctor(platform, storage, settings, line, out);
    case Mode::version:
    case Mode::help:
      break;
  }
  return exit_status::success;
}

}  // namespace tallowin

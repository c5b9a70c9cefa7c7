#include "automation/record_services.h"

#include <algorithm>
#include <iterator>

namespace tallowin {

RecordServices::RecordServices(const Context& context)
    : tracker({context.storage, context.paths, context.settings, context.platform.clock}),
      profiles({context.store, context.settings, context.storage, context.paths, context.platform.clock}),
      profileCommands(profiles, context.platform.toasts),
      automaticProfile({profiles, profileCommands, context.settings, context.platform.displays}),
      templates({context.store, context.platform.workspace, context.platform.files, context.storage, context.paths}),
      templateCommands({templates, context.management, context.platform.alerts, context.platform.toasts,
                        context.platform.mainQueue, desktopTexts(context.platform.desktopKind()), context.watcher}),
      transfer({context.settings, context.platform.spacePlaces, context.platform.files, context.platform.clock,
                context.platform.system, context.platform.desktop, context.platform.windows,
                context.platform.screenCapture, context.platform.displays, context.platform.desktopFacts,
                context.version,
                [platform = context.platform, &storage = context.storage] { return setUpChecks(platform, storage); }}),
      backups({transfer, context.store, context.settings, context.platform.spacePlaces, context.platform.files,
               context.paths, context.platform.clock, context.platform.log}),
      stateExporter({context.watcher, context.store, context.changes, context.contents, context.storage, context.paths,
                     context.platform.clock}) {}

Outcome RecordServices::useProfile(const std::string& name) {
  if (const auto profile = profiles.named(name)) {
    backups.keep("before profile " + profile->name);
  }
  return profileCommands.use(name);
}

Outcome RecordServices::applyTemplate(const std::string& name) {
  if (const auto layout = templates.named(name)) {
    backups.keep("before template " + layout->name);
  }
  return templateCommands.apply(name);
}

std::vector<SetUpCheck> setUpChecks(const Platform& platform, const Storage& storage) {
  const bool trusted = platform.windows.mayChange();
  const bool permitted = platform.screenCapture.CGPreflightScreenCaptureAccess();
  const bool saved = storage.isSound();
  const auto* const advice = platform.desktopKind() == DesktopKind::driven
                                 ? "Give Tallowin the permission in the system's settings."
                                 : "It takes a desktop for that; see what is said of the display.";
  std::vector<SetUpCheck> checks = {
      {"Accessibility", trusted, trusted ? "Windows can be moved." : "Windows cannot be moved.", trusted ? "" : advice},
      {"Screen Recording", permitted, permitted ? "Pictures can be taken." : "Pictures cannot be taken.",
       permitted ? "" : advice},
      {"Files saved", saved, saved ? "What was said is in its files." : "Files cannot be written.",
       saved ? "" : "The log says which, and why; they are tried again until they can be written."}};
  std::ranges::copy(platform.desktopFacts.checks(), std::back_inserter(checks));
  return checks;
}

}  // namespace tallowin

#pragma once

#include <string>

#include "base/app_paths.h"
#include "base/desktop_texts.h"
#include "base/record_file.h"
#include "base/settings.h"
#include "core/space_store.h"
#include "core/space_watcher.h"
#include "platform/platform.h"

namespace tallowin {

/// Which program this is.
struct ProgramVersion {
  std::string version;
  std::string build;
};

/// The platform, and what nearly everything else in the program works with. Whoever takes it keeps a reference.
struct ProgramServices : Platform {
  Storage& storage;
  const Settings& settings;
  const AppPaths& paths;
  SpaceStore& store;
  SpaceWatcher& watcher;
  ProgramVersion program;

  [[nodiscard]] const DesktopTexts& texts() const { return desktopTexts(desktopKind()); }
};

}  // namespace tallowin
